#include "KyCnvProcess.h"

#include <QEventLoop>
#include <QTimer>

namespace Kyte {

static const int END_POLL = 50; // milliseconds

bool KyCnvProcess::waitForSuccess()
{
    m_startedId = processId();
    QEventLoop loop;
    QTimer poll;
    connect(this, SIGNAL(finished(int, QProcess::ExitStatus)), &loop, SLOT(quit()));
    connect(this, SIGNAL(errorOccurred(QProcess::ProcessError)), &loop, SLOT(quit()));
    connect(&poll, SIGNAL(timeout()), &loop, SLOT(quit()));
    poll.start(END_POLL);
    while (state() != NotRunning && !isEndRequested())
        loop.exec();
    if (state() != NotRunning)
        endTree();
    return !isEndRequested() && error() == UnknownError && exitStatus() == NormalExit && exitCode() == 0;
}

} // namespace Kyte
