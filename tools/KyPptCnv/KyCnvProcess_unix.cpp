#include "KyCnvProcess.h"

#include <QThread>

#include <csignal>

#include <sys/types.h>
#include <unistd.h>

namespace Kyte {

static const int END_PATIENCE = 2000; // milliseconds
static const int END_POLL = 5; // milliseconds

static volatile std::sig_atomic_t endRequested = 0;

static void onSignal(int)
{
    endRequested = 1;
}

KyCnvProcess::KyCnvProcess(QObject *parent)
    : QProcess(parent)
{
}

KyCnvProcess::~KyCnvProcess()
{
    endTree();
}

void KyCnvProcess::endTree()
{
    const qint64 group = state() == NotRunning ? m_startedId : processId();
    m_startedId = 0;
    if (group <= 0 || ::kill(-pid_t(group), SIGKILL) != 0) // the office's launcher passes nothing on
        return;
    if (state() != NotRunning)
        waitForFinished();
    // A process that dies may still write a file into a folder that is being removed.
    for (int waited = 0; waited < END_PATIENCE && ::kill(-pid_t(group), 0) == 0; waited += END_POLL)
        QThread::msleep(END_POLL);
}

void KyCnvProcess::prepareConverter()
{
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        sigaction(signal, &action, nullptr);
    std::signal(SIGPIPE, SIG_IGN); // who started us may be gone
}

bool KyCnvProcess::isEndRequested()
{
    return endRequested != 0;
}

void KyCnvProcess::setupChildProcess()
{
    ::setpgid(0, 0); // a group of its own, which is ended as a whole
}

} // namespace Kyte
