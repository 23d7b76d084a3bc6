#include "KyExecuteProcess.h"

#include "KyChildProcess_p.h"
#include "KyStartedProgram_p.h"

#include <KyProcessInfo.h>

#include <QDebug>

namespace Kyte {

static const int WINDOW_POLL_INTERVAL = 50; // milliseconds

KyExecuteProcess::KyExecuteProcess(const QString &program,
                                   const QStringList &arguments,
                                   QIODevice::OpenMode mode,
                                   QObject *parent)
    : QObject(parent)
    , m_program(program)
    , m_arguments(arguments)
    , m_openMode(mode)
{
    initialize();
}

KyExecuteProcess::KyExecuteProcess(const KyExecuteProcess &other)
    : QObject(other.parent())
    , m_process(other.m_process)
    , m_environment(other.m_environment)
    , m_program(other.m_program)
    , m_arguments(other.m_arguments)
    , m_openMode(other.m_openMode)
    , m_windowHandle(other.m_windowHandle)
    , m_isWindowHandleWanted(other.m_isWindowHandleWanted)
{
    initialize();
}

KyExecuteProcess::~KyExecuteProcess()
{
    // Not m_process: in a copy that is the process of another object.
    KyChildProcess::releaseChildrenOf(this);
}

void KyExecuteProcess::initialize()
{
    // Under the very texts of the signals, by which a queued connection looks the types up.
    qRegisterMetaType<KyExecuteProcess *>("KyExecuteProcess*");
    qRegisterMetaType<WId>("WId");
    qRegisterMetaType<QProcess::ProcessError>("QProcess::ProcessError");
    qRegisterMetaType<QProcess::ExitStatus>("QProcess::ExitStatus");
    qRegisterMetaType<QProcess::ProcessState>("QProcess::ProcessState");

    m_windowTimer.setSingleShot(true);
    m_windowTimer.setInterval(WINDOW_POLL_INTERVAL);
    connect(&m_windowTimer, SIGNAL(timeout()), this, SLOT(onGetWindowHandle()));
}

void KyExecuteProcess::setProcessProgram(const QString &program)
{
    m_program = program;
}

void KyExecuteProcess::setProcessArguments(const QStringList &arguments)
{
    m_arguments = arguments;
}

void KyExecuteProcess::setProcessEnvironment(const QProcessEnvironment &environment)
{
    m_environment = environment;
}

void KyExecuteProcess::setProcessOpenMode(QIODevice::OpenMode mode)
{
    m_openMode = mode;
}

QProcess *KyExecuteProcess::process() const
{
    return m_process;
}

WId KyExecuteProcess::processWindowHandle() const
{
    return m_windowHandle;
}

void KyExecuteProcess::startProcess()
{
    if (!forgetProcess())
        return;
    KyChildProcess *process = new KyChildProcess(0, this);
    m_process = process;
    m_windowHandle = 0;
    connect(process, SIGNAL(started()), this, SLOT(onProcessStarted()));
    connect(process, SIGNAL(stateChanged(QProcess::ProcessState)), this,
            SLOT(onProcessStatateChanged(QProcess::ProcessState)));
    connect(process, SIGNAL(finished(int, QProcess::ExitStatus)), this,
            SLOT(onProcessFinished(int, QProcess::ExitStatus)));
    connect(process, SIGNAL(error(QProcess::ProcessError)), this,
            SLOT(onProcessErrorOccured(QProcess::ProcessError)));

    const QPointer<KyExecuteProcess> self(this);
    process->setProcessEnvironment(m_environment);
    process->start(m_program, m_arguments, m_openMode);
    // Null on purpose: the program was launched, but does not run yet.
    if (self)
        emit processStarted(nullptr);
}

/** False when a listener to the former process's end has deleted this object or started another process. */
bool KyExecuteProcess::forgetProcess()
{
    const QPointer<KyExecuteProcess> self(this);
    const QPointer<KyChildProcess> former = m_process;
    if (former)
        former->close();
    if (!self || m_process != former)
        return false;
    if (former)
        former->deleteLater();
    m_process.clear();
    return true;
}

void KyExecuteProcess::closeProcess()
{
    if (m_process)
        m_process->close();
}

void KyExecuteProcess::terminateProcess()
{
    if (m_process && !m_process->isEnding())
        m_process->terminate();
}

void KyExecuteProcess::onProcessStarted()
{
    const KyChildProcess::Relay relay(sender());
    emit processStarted(this);
}

void KyExecuteProcess::onProcessErrorOccured(QProcess::ProcessError error)
{
    const KyChildProcess::Relay relay(sender());
    emit processError(error, this);
}

void KyExecuteProcess::onProcessFinished(int exitCode, QProcess::ExitStatus exitStatus)
{
    const KyChildProcess::Relay relay(sender());
    emit processFinished(exitCode, exitStatus, this);
}

void KyExecuteProcess::onProcessStatateChanged(QProcess::ProcessState newState)
{
    const KyChildProcess::Relay relay(sender());
    const QPointer<KyExecuteProcess> self(this);
    emit processStageChanged(newState, this);
    if (self && newState == QProcess::Running && m_isWindowHandleWanted)
        m_windowTimer.start();
}

void KyExecuteProcess::onGetWindowHandle()
{
    if (!m_process || m_process->state() != QProcess::Running)
        return;
    const qint64 processId = KyProcessInfo::getProcessId(*m_process);
    if (processId == 0)
        return;

    qDebug() << "PID:" << Qt::hex << processId;
    const WId handle = WId(StartedProgram::mainWindow(*m_process));
    if (handle == 0) {
        m_windowTimer.start();
        return;
    }
    qDebug() << "Proc WID:" << Qt::hex << handle;
    m_windowHandle = handle;
    emit windowHandleGotten(handle);
}

} // namespace Kyte
