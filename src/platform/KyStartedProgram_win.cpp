#include "KyStartedProgram_p.h"

#include <KyWindowControl.h>

#include <QProcess>

#include <qt_windows.h>

namespace Kyte {
namespace StartedProgram {

quint64 mainWindow(const QProcess &process)
{
    return KyWindowControl::getWindowHandle(process.pid(), true);
}

void surviveBrokenPipes()
{
}

} // namespace StartedProgram
} // namespace Kyte
