#pragma once

#include <QFile>
#include <QString>

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace Kyte {
namespace Test {

/**
 * Makes \a path a device that is always full. An ordinary user gets a link to the system's own, which only
 * root could harm; root gets a device of the test's own, which broken code may replace. False where neither
 * can be made.
 */
inline bool makeFullDevice(const QString &path)
{
    if (geteuid() != 0)
        return QFile::link(QStringLiteral("/dev/full"), path);
    const int major = 1; // the memory devices
    const int minor = 7;
    return mknod(QFile::encodeName(path).constData(), S_IFCHR | 0666, makedev(major, minor)) == 0;
}

} // namespace Test
} // namespace Kyte
