#include "KyWindowControl.h"

#include <windows.h>

namespace Kyte {

struct WindowSearch
{
    DWORD processId = 0;
    HWND mainWindow = nullptr;
    HWND otherWindow = nullptr;
};

static bool isMainWindow(HWND window)
{
    return !GetWindow(window, GW_OWNER) && !(GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_TOOLWINDOW);
}

/** @return FALSE ends the enumeration */
static BOOL CALLBACK examineWindow(HWND window, LPARAM parameter)
{
    WindowSearch *search = reinterpret_cast<WindowSearch *>(parameter);
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    if (processId != search->processId || !IsWindowVisible(window))
        return TRUE;

    if (isMainWindow(window)) {
        search->mainWindow = window;
        return FALSE;
    }
    if (!search->otherWindow)
        search->otherWindow = window;
    return TRUE;
}

quint64 KyWindowControl::getWindowHandle(PROCESS_INFORMATION *process, bool mainWindowOnly)
{
    if (!process || process->dwProcessId == 0)
        return 0;

    WindowSearch search;
    search.processId = process->dwProcessId;
    EnumWindows(examineWindow, reinterpret_cast<LPARAM>(&search));
    const HWND window = search.mainWindow || mainWindowOnly ? search.mainWindow : search.otherWindow;
    return quint64(reinterpret_cast<quintptr>(window));
}

} // namespace Kyte
