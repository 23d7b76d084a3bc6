#include "KyConversionThread_p.h"

#include <QCoreApplication>
#include <QMutex>
#include <QSet>

namespace Kyte {

struct ThreadRegister
{
    QMutex mutex;
    QSet<KyConversionThread *> threads;
};

/** Lives as long as the process: applications may be made and ended again. */
static ThreadRegister &threadRegister()
{
    static ThreadRegister threads;
    return threads;
}

KyConversionThread::KyConversionThread()
{
    ThreadRegister &all = threadRegister();
    const QMutexLocker locker(&all.mutex);
    all.threads.insert(this);
    if (!QCoreApplication::instance())
        return;
    // An application object that is never deleted announces its end only so ...
    connect(QCoreApplication::instance(), SIGNAL(aboutToQuit()), this, SLOT(end()), Qt::DirectConnection);
    // ... and one whose event loop never ran only so.
    qRemovePostRoutine(endAll);
    qAddPostRoutine(endAll);
}

KyConversionThread::~KyConversionThread()
{
    ThreadRegister &all = threadRegister();
    const QMutexLocker locker(&all.mutex);
    all.threads.remove(this);
}

void KyConversionThread::end()
{
    quit();
    wait();
}

void KyConversionThread::endAll()
{
    ThreadRegister &all = threadRegister();
    QList<KyConversionThread *> ended;
    {
        // No thread object can go while the register is locked.
        const QMutexLocker locker(&all.mutex);
        for (KyConversionThread *thread : qAsConst(all.threads)) {
            thread->end();
            if (thread->thread() == QThread::currentThread())
                ended.append(thread);
        }
    }
    // No event loop comes any more to do it.
    qDeleteAll(ended);
}

} // namespace Kyte
