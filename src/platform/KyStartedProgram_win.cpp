#include "KyStartedProgram_p.h"

#include <KyWindowControl.h>

#include <QProcess>

#include <qt_windows.h>

namespace Kyte {
namespace StartedProgram {

quint64 mainWindow(const QProcess &process)
{
    PROCESS_INFORMATION program = {};
    program.dwProcessId = static_cast<DWORD>(process.processId());
    return KyWindowControl::getWindowHandle(&program, true);
}

void surviveBrokenPipes()
{
}

} // namespace StartedProgram
} // namespace Kyte
