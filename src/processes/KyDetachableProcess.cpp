#include "KyDetachableProcess.h"

#include "KyStartedProgram_p.h"

#include <QPointer>

namespace Kyte {

static const int STARTING_TIME = 30000; // milliseconds

KyDetachableProcess::KyDetachableProcess(QObject *parent)
    : QProcess(parent)
{
}

QString KyDetachableProcess::program() const
{
    return m_program;
}

void KyDetachableProcess::setProgram(const QString &program)
{
    m_program = program;
}

QStringList KyDetachableProcess::arguments() const
{
    return m_arguments;
}

void KyDetachableProcess::setArguments(const QStringList &arguments)
{
    m_arguments = arguments;
}

void KyDetachableProcess::start()
{
    connect(this, SIGNAL(error(QProcess::ProcessError)), this, SLOT(onErrorOccured(QProcess::ProcessError)),
            Qt::UniqueConnection);
    QString program = m_program;
    QStringList arguments = m_arguments;
    if (arguments.isEmpty()) {
        arguments = splitCommand(m_program);
        program = arguments.isEmpty() ? QString() : arguments.takeFirst();
    }
    QProcess::start(program, arguments, QIODevice::ReadWrite);
}

void KyDetachableProcess::detach()
{
    const QPointer<KyDetachableProcess> self(this);
    if (state() == QProcess::Starting)
        waitForStarted(STARTING_TIME);
    setProcessState(QProcess::NotRunning);
    if (self)
        emit detached();
}

void KyDetachableProcess::setupChildProcess()
{
    StartedProgram::surviveBrokenPipes();
}

void KyDetachableProcess::onErrorOccured(QProcess::ProcessError)
{
    emit errorOccured();
}

} // namespace Kyte
