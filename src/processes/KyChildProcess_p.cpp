#include "KyChildProcess_p.h"

#include <QCoreApplication>

namespace Kyte {

KyChildProcess::Relay::Relay(QObject *sender)
    : m_process(qobject_cast<KyChildProcess *>(sender))
{
    if (m_process)
        ++m_process->m_relays;
}

KyChildProcess::Relay::~Relay()
{
    if (m_process)
        --m_process->m_relays;
}

KyChildProcess::KyChildProcess(int patience, QObject *owner)
    : QProcess(owner)
    , m_patience(patience)
{
}

KyChildProcess::~KyChildProcess()
{
    if (state() == NotRunning)
        return;
    if (m_patience > 0) {
        // A request to what is still a copy of this application would be taken as one to the application.
        waitForStarted(m_patience);
        terminate();
        waitForFinished(m_patience);
    }
    if (state() != NotRunning) {
        kill();
        waitForFinished();
    }
}

void KyChildProcess::releaseChildrenOf(QObject *owner)
{
    const QList<KyChildProcess *> processes =
        owner->findChildren<KyChildProcess *>(QString(), Qt::FindDirectChildrenOnly);
    for (KyChildProcess *process : processes)
        process->release();
}

bool KyChildProcess::isEnding() const
{
    return state() == Running ? error() == Crashed : state() == NotRunning && processId() != 0;
}

void KyChildProcess::close()
{
    if (!isEnding())
        QProcess::close();
}

void KyChildProcess::release()
{
    disconnect(this, nullptr, parent(), nullptr);
    if (m_relays == 0) {
        delete this;
        return;
    }
    QCoreApplication *application = QCoreApplication::instance();
    setParent(application && application->thread() == thread() ? application : nullptr);
    deleteLater();
}

} // namespace Kyte
