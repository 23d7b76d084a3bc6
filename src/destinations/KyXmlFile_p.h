#pragma once

#include <QByteArray>
#include <QString>

namespace Kyte {
namespace XmlFile {

/**
 * Reads the regular file \a path into \a content, decoded by its byte order mark or its declaration, else
 * from UTF-8. False when it cannot be opened and read whole, or has more than \a sizeLimit bytes.
 *
 * The document ends too early where its bytes are invalid, and in front of what could keep an XML reader busy
 * or fill the memory out of all proportion: a document type with declarations of its own and a tag with more
 * than 64 attributes. The XML reader normalises the line ends and refuses unknown encodings.
 */
bool read(const QString &path, int sizeLimit, QString *content);

/**
 * Replaces the regular file \a path, or makes it. When anything fails, a full disk at the last byte included,
 * the answer is false and the former file is untouched.
 */
bool write(const QString &path, const QByteArray &content);

} // namespace XmlFile
} // namespace Kyte
