#include "KyFolderWatch_p.h"

#include <QDir>

#include <qt_windows.h>

#include <array>

namespace Kyte {
namespace FolderWatch {

/** Starts an asynchronous read of changes in the open \a folder and cancels it; false if it cannot start. */
static bool probe(HANDLE folder, HANDLE event)
{
    const DWORD filter = FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_DIR_NAME | FILE_NOTIFY_CHANGE_SIZE
        | FILE_NOTIFY_CHANGE_LAST_WRITE;
    alignas(DWORD) std::array<char, 16384> buffer; // bytes
    OVERLAPPED operation = {};
    operation.hEvent = event;
    if (!ReadDirectoryChangesW(folder, buffer.data(), static_cast<DWORD>(buffer.size()), FALSE, filter,
                               nullptr, &operation, nullptr))
        return false;
    // The system writes into the buffer and the operation until the cancellation is through.
    CancelIoEx(folder, &operation);
    DWORD transferred = 0;
    GetOverlappedResult(folder, &operation, &transferred, TRUE);
    return true;
}

bool isPossible(const QString &folder)
{
    const QString path = QDir::toNativeSeparators(folder);
    const HANDLE handle =
        CreateFileW(reinterpret_cast<const wchar_t *>(path.utf16()), FILE_LIST_DIRECTORY, FILE_SHARE_READ,
                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OVERLAPPED, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return false;
    const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    const bool started = event && probe(handle, event);
    if (event)
        CloseHandle(event);
    CloseHandle(handle);
    return started;
}

} // namespace FolderWatch
} // namespace Kyte
