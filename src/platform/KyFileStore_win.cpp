#include "KyFileStore_p.h"

#include <QDir>
#include <QFileDevice>
#include <QFileInfo>

#include <io.h>
#include <qt_windows.h>

namespace Kyte {
namespace FileStore {

static bool refuse(DWORD error, QString *reason)
{
    *reason = qt_error_string(static_cast<int>(error));
    return false;
}

/** The absolute native path with the prefix that lifts the limit of 260 characters. */
static QString systemPath(const QString &path)
{
    const QString native = QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
    if (native.startsWith(QLatin1String("\\\\?\\")))
        return native;
    if (native.startsWith(QLatin1String("\\\\")))
        return QLatin1String("\\\\?\\UNC") + native.mid(1);
    return QLatin1String("\\\\?\\") + native;
}

static const wchar_t *wide(const QString &text)
{
    return reinterpret_cast<const wchar_t *>(text.utf16());
}

bool canBeDeleted(const QString &path, QString *reason)
{
    const QString name = systemPath(path);
    const DWORD attributes = GetFileAttributesW(wide(name));
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return refuse(GetLastError(), reason);
    if (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY))
        return refuse(ERROR_ACCESS_DENIED, reason);
    // Asking for the right to delete fails while somebody holds the file open without sharing that right.
    const HANDLE file =
        CreateFileW(wide(name), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return refuse(GetLastError(), reason);
    CloseHandle(file);
    return true;
}

bool sync(QFileDevice *file, QString *reason)
{
    const HANDLE handle = reinterpret_cast<HANDLE>(_get_osfhandle(file->handle()));
    return FlushFileBuffers(handle) != 0 || refuse(GetLastError(), reason);
}

ReplaceResult replace(const QString &source, const QString &target, QString *reason)
{
    if (MoveFileExW(wide(systemPath(source)), wide(systemPath(target)),
                    MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return ReplaceResult::Done;
    const DWORD error = GetLastError();
    refuse(error, reason);
    const bool isProtected = error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION
        || error == ERROR_LOCK_VIOLATION || error == ERROR_USER_MAPPED_FILE;
    return isProtected && QFileInfo::exists(target) ? ReplaceResult::TargetIsProtected
                                                    : ReplaceResult::Failed;
}

void syncFolder(const QString &)
{
    // The move above is written through to the disk before it returns.
}

} // namespace FileStore
} // namespace Kyte
