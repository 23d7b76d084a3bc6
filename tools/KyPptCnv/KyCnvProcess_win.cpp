#include "KyCnvProcess.h"

#include <atomic>

#include <windows.h>

namespace Kyte {

static std::atomic_bool endRequested{false};

static BOOL WINAPI onConsoleEvent(DWORD)
{
    endRequested = true;
    return TRUE;
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
    if (state() == NotRunning)
        return;
    kill(); // what it has started ends with the converter's job
    waitForFinished();
}

void KyCnvProcess::prepareConverter()
{
    SetConsoleCtrlHandler(onConsoleEvent, TRUE);
    // Everything that is started belongs to this job, which ends with its last handle, that is, with us.
    const HANDLE job = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    if (job && SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits))
        AssignProcessToJobObject(job, GetCurrentProcess());
}

bool KyCnvProcess::isEndRequested()
{
    return endRequested;
}

void KyCnvProcess::setupChildProcess()
{
}

} // namespace Kyte
