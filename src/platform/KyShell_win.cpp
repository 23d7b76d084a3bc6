#include "KyShell_p.h"

#include "KyShellPath_p.h"

#include <QWidget>

#include <qt_windows.h>
#include <shellapi.h>

namespace Kyte {
namespace Shell {

void openFolder(const QString &absoluteFolder, QWidget *parent)
{
    const QString path = longShellPath(absoluteFolder);
    const HWND window = parent ? reinterpret_cast<HWND>(parent->winId()) : nullptr;
    ShellExecuteW(window, L"explore", reinterpret_cast<const wchar_t *>(path.utf16()), nullptr, nullptr,
                  SW_SHOWNORMAL);
}

} // namespace Shell
} // namespace Kyte
