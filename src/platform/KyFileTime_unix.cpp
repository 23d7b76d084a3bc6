#include "KyFileTime_p.h"

#include <QFile>

#include <sys/stat.h>

namespace Kyte {

qint64 fileModificationTime(const QFileInfo &info)
{
    struct stat status;
    if (stat(QFile::encodeName(info.filePath()).constData(), &status) != 0)
        return 0;
#ifdef Q_OS_DARWIN
    const timespec &time = status.st_mtimespec;
#else
    const timespec &time = status.st_mtim;
#endif
    return qint64(time.tv_sec) * 1000 + time.tv_nsec / 1000000;
}

} // namespace Kyte
