#include "KyFileStore_p.h"

#include <QFile>
#include <QFileDevice>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Kyte {
namespace FileStore {

static bool refuse(int error, QString *reason)
{
    *reason = qt_error_string(error);
    return false;
}

/** In a sticky folder only the owner of the file, or of the folder, may delete it. */
static bool isStuck(const struct stat &folder, const struct stat &file)
{
    const uid_t user = geteuid();
    return (folder.st_mode & S_ISVTX) && user != 0 && user != file.st_uid && user != folder.st_uid;
}

/** Whether the user as whom the process acts may access \a path so. */
static bool mayAccess(const QByteArray &path, int mode)
{
    return faccessat(AT_FDCWD, path.constData(), mode, AT_EACCESS) == 0;
}

bool canBeDeleted(const QString &path, QString *reason)
{
    const QByteArray name = QFile::encodeName(path);
    const QByteArray folderName = QFile::encodeName(QFileInfo(path).absolutePath());
    struct stat file = {};
    struct stat folder = {};
    if (lstat(name.constData(), &file) != 0 || stat(folderName.constData(), &folder) != 0)
        return refuse(errno, reason);
    if (S_ISDIR(file.st_mode))
        return refuse(EISDIR, reason);
    if (isStuck(folder, file))
        return refuse(EPERM, reason);
    if (!mayAccess(folderName, W_OK | X_OK))
        return refuse(errno, reason);
    // A file without write permission can be deleted all the same; one that is marked immutable answers
    // EPERM.
    if (!S_ISLNK(file.st_mode) && !mayAccess(name, W_OK) && errno == EPERM)
        return refuse(EPERM, reason);
    return true;
}

bool sync(QFileDevice *file, QString *reason)
{
    int result = 0;
    do {
        result = fsync(file->handle());
    } while (result != 0 && errno == EINTR);
    return result == 0 || refuse(errno, reason);
}

ReplaceResult replace(const QString &source, const QString &target, QString *reason)
{
    if (rename(QFile::encodeName(source).constData(), QFile::encodeName(target).constData()) == 0)
        return ReplaceResult::Done;
    const int error = errno;
    refuse(error, reason);
    const bool isProtected = error == EPERM || error == EACCES || error == EBUSY || error == EISDIR
        || error == ENOTEMPTY || error == EEXIST || error == EROFS;
    return isProtected && QFileInfo::exists(target) ? ReplaceResult::TargetIsProtected
                                                    : ReplaceResult::Failed;
}

void syncFolder(const QString &folder)
{
    const int descriptor = open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    fsync(descriptor);
    close(descriptor);
}

} // namespace FileStore
} // namespace Kyte
