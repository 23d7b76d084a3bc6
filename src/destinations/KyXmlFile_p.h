#pragma once

#include <QByteArray>
#include <QString>

namespace Kyte {
namespace XmlFile {

/**
 * How much of a file is handed to the XML reader. The reader compares every attribute of a tag with every other, so a
 * tag of a megabyte would keep it busy for a minute; \a markup bounds what may lie between one "<" and the next.
 */
struct Limits
{
    qint64 fileSize; ///< bytes
    int markup;      ///< bytes
};

/** Reads the regular file \a path into \a content, line ends as "\n". False when it cannot be opened or exceeds a limit. */
bool read(const QString &path, const Limits &limits, QByteArray *content);

/**
 * Replaces the regular file \a path, or makes it. When anything fails, a full disk at the last byte included, the
 * answer is false and the former file is untouched.
 */
bool write(const QString &path, const QByteArray &content);

} // namespace XmlFile
} // namespace Kyte
