#pragma once

#include <QFileInfo>

namespace Kyte {

/**
 * When the file was modified last, in milliseconds since 1970 in UTC; 0 when that is not to be had.
 *
 * Unlike QFileInfo::lastModified() this does not look at the system's time zone, which is read from disk at
 * every call on some systems.
 */
qint64 fileModificationTime(const QFileInfo &info);

} // namespace Kyte
