#pragma once

#include <QByteArray>
#include <QString>

namespace Kyte {
namespace XmlFile {

/**
 * Reads the regular file \a path into \a content, line ends as "\n". False when it cannot be opened and read
 * whole, or has more than \a sizeLimit bytes.
 *
 * What could keep an XML reader busy or fill the memory out of all proportion is cut off, so that the
 * document ends there too early: the declarations of a document type, a tag with more than 64 attributes, and
 * what follows the first 32 KiB in another encoding than UTF-8.
 */
bool read(const QString &path, int sizeLimit, QByteArray *content);

/**
 * Replaces the regular file \a path, or makes it. When anything fails, a full disk at the last byte included,
 * the answer is false and the former file is untouched.
 */
bool write(const QString &path, const QByteArray &content);

} // namespace XmlFile
} // namespace Kyte
