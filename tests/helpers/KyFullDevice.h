#pragma once

#include <QFile>
#include <QString>

#include <cerrno>

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace Kyte {
namespace Test {

/**
 * Makes \a path a device that is always full. Root gets a device of the test's own, which broken code may
 * replace. Everybody else gets a link to the system's own, which only root could harm; so does the root of a
 * container, who is not allowed to make devices. False where neither can be made.
 */
inline bool makeFullDevice(const QString &path)
{
    const int major = 1; // the memory devices
    const int minor = 7;
    if (geteuid() == 0) {
        if (mknod(QFile::encodeName(path).constData(), S_IFCHR | 0666, makedev(major, minor)) == 0)
            return true;
        if (errno != EPERM)
            return false;
    }
    return QFile::link(QStringLiteral("/dev/full"), path);
}

} // namespace Test
} // namespace Kyte
