#include "KyThreadKeeper_p.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThread>
#include <QVector>

namespace Kyte {
namespace ThreadKeeper {

// Made before an application object that is static, too, and so still there when that ends.
static QVector<QPointer<QThread>> keptThreads; // clazy:exclude=non-pod-global-static

static void endAll()
{
    const QVector<QPointer<QThread>> threads = keptThreads;
    keptThreads.clear();
    for (QThread *thread : threads) {
        if (thread) {
            thread->requestInterruption();
            thread->quit();
        }
    }
    for (QThread *thread : threads) {
        if (thread)
            thread->wait();
        if (thread && !thread->parent())
            delete thread; // no event loop will do it any more
    }
}

void endWithApplication(QThread *thread)
{
    keptThreads.removeAll(nullptr);
    keptThreads.append(thread);
    qRemovePostRoutine(endAll); // once for every application object, should there be one after another
    qAddPostRoutine(endAll);
}

void deleteWhenFinished(QThread *thread)
{
    thread->setParent(nullptr);
    QObject::connect(thread, SIGNAL(finished()), thread, SLOT(deleteLater()));
    if (thread->isFinished()) // before it was connected
        thread->deleteLater();
}

} // namespace ThreadKeeper
} // namespace Kyte
