#pragma once

#include <KyViewExport.h>

#include <QtGlobal>

#ifdef Q_OS_WIN
struct _PROCESS_INFORMATION;
using PROCESS_INFORMATION = _PROCESS_INFORMATION;
#else
/** What names a started process on Windows, as far as this library asks for it. */
struct PROCESS_INFORMATION
{
    qint64 dwProcessId;
};
#endif

namespace Kyte {

/**
 * Finds windows of other programs. Everything is asked of the window system at the call, nothing is kept.
 * For the GUI thread: on X11, connections may not be opened by several threads at once.
 */
class KYVIEW_EXPORT KyWindowControl
{
public:
    KyWindowControl() = delete;

    /**
     * The main top-level window of a process: one that is shown (it may be minimised), that belongs to no
     * other window, as a dialog does, and that is no tool window, splash screen, panel or menu. Where a
     * process has several such windows, the first one that the system lists; on X11 with a window manager
     * that is the oldest. On Windows a dialog that belongs to no window is one of its own.
     *
     * On X11 this opens the display that the environment variable DISPLAY names, for the duration of the
     * call.
     *
     * @param process only its process id is read; windows of processes that this one has started do not count
     * @param mainWindowOnly false: while the process has no main window, any other shown top-level window
     * will do
     * @return the system's handle of the window; 0 when there is none yet, when \a process is null or no
     * process, and when there is no X server
     */
    static quint64 getWindowHandle(PROCESS_INFORMATION *process, bool mainWindowOnly);
};

} // namespace Kyte
