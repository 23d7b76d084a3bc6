#include "KyStartedProgram_p.h"

#include <KyWindowControl.h>

#include <QProcess>

#include <csignal>

namespace Kyte {
namespace StartedProgram {

quint64 mainWindow(const QProcess &process)
{
    PROCESS_INFORMATION information = {process.processId()};
    return KyWindowControl::getWindowHandle(&information, true);
}

void surviveBrokenPipes()
{
    // An ignored signal, unlike a handled one, stays so when the program is loaded.
    std::signal(SIGPIPE, SIG_IGN);
}

} // namespace StartedProgram
} // namespace Kyte
