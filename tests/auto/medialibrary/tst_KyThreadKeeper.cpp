#include <KyTestMain.h>

#include <KyThreadKeeper_p.h>

using namespace Kyte;

/** Each test makes the application object that it needs. */
class tst_KyThreadKeeper : public QObject
{
    Q_OBJECT

private slots:
    void orphan_isDeletedOnceFinished();
    void finishedThread_isDeleted();
    void unstartedThread_isDeletedWithItsRun();
    void endOfTheApplication_endsThreads();
    void endOfTheApplication_deletesOrphans();
    void endOfTheApplication_skipsDeletedThreads();
    void secondApplication_endsItsThreads();
};

/** Runs until its interruption is requested. */
class Worker : public QThread
{
public:
    using QThread::QThread;
    ~Worker() override
    {
        if (isRunning())
            qFatal("A thread is destroyed while it runs");
    }

    QSemaphore isAtWork;

protected:
    void run() override
    {
        isAtWork.release();
        while (!isInterruptionRequested())
            yieldCurrentThread();
    }
};

struct Application
{
    int count = 1;
    char name[5] = "test";
    char *arguments[2] = {name, nullptr};
    QCoreApplication object{count, arguments};
};

static Worker *startWorker(QObject *parent)
{
    auto *worker = new Worker(parent);
    worker->start();
    worker->isAtWork.acquire();
    return worker;
}

void tst_KyThreadKeeper::orphan_isDeletedOnceFinished()
{
    const Application application;
    auto *owner = new QObject;
    const QPointer<Worker> worker = startWorker(owner);
    ThreadKeeper::deleteWhenFinished(worker);
    delete owner;
    QVERIFY(worker);
    QVERIFY(worker->isRunning());

    worker->requestInterruption();
    QTRY_VERIFY(!worker);
}

void tst_KyThreadKeeper::finishedThread_isDeleted()
{
    const Application application;
    const QPointer<Worker> worker = startWorker(nullptr);
    worker->requestInterruption();
    QVERIFY(worker->wait());
    ThreadKeeper::deleteWhenFinished(worker);
    QTRY_VERIFY(!worker);
}

void tst_KyThreadKeeper::unstartedThread_isDeletedWithItsRun()
{
    const Application application;
    const QPointer<Worker> worker = new Worker;
    ThreadKeeper::deleteWhenFinished(worker);
    worker->start();
    worker->isAtWork.acquire();
    worker->requestInterruption();
    QTRY_VERIFY(!worker);
}

void tst_KyThreadKeeper::endOfTheApplication_endsThreads()
{
    QObject owner;
    {
        const Application application;
        for (int i = 0; i < 3; ++i)
            ThreadKeeper::endWithApplication(startWorker(&owner));
    }
    const QList<QThread *> threads = owner.findChildren<QThread *>();
    QCOMPARE(threads.size(), 3);
    for (const QThread *thread : threads)
        QVERIFY(thread->isFinished());
}

void tst_KyThreadKeeper::endOfTheApplication_deletesOrphans()
{
    QPointer<Worker> worker;
    {
        const Application application;
        worker = startWorker(nullptr);
        ThreadKeeper::endWithApplication(worker);
        ThreadKeeper::deleteWhenFinished(worker);
    }
    QVERIFY(!worker);
}

void tst_KyThreadKeeper::endOfTheApplication_skipsDeletedThreads()
{
    QObject owner;
    {
        const Application application;
        const QPointer<Worker> gone = startWorker(nullptr);
        ThreadKeeper::endWithApplication(gone);
        gone->requestInterruption();
        QVERIFY(gone->wait());
        delete gone;
        ThreadKeeper::endWithApplication(startWorker(&owner));
    }
    QVERIFY(owner.findChild<QThread *>()->isFinished());
}

void tst_KyThreadKeeper::secondApplication_endsItsThreads()
{
    for (int i = 0; i < 2; ++i) {
        QObject owner;
        {
            const Application application;
            ThreadKeeper::endWithApplication(startWorker(&owner));
        }
        QVERIFY(owner.findChild<QThread *>()->isFinished());
    }
}

int main(int argc, char **argv)
{
    Test::isolate();
    tst_KyThreadKeeper test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_KyThreadKeeper.moc"
