#include "KyChildProcess_p.h"

#include <KyScriptedProgram.h>
#include <KyTestMain.h>

#ifdef Q_OS_UNIX
#include <csignal>

#include <fcntl.h>
#include <unistd.h>
#endif

using namespace Kyte;
using Kyte::Test::ScriptedProgram;

/** Passes the signals of a process on as its owner does, and does what the test wants in the chosen one. */
class Owner : public QObject
{
    Q_OBJECT

public:
    ~Owner() override
    {
        KyChildProcess::releaseChildrenOf(this);
    }

    KyChildProcess *start(const ScriptedProgram &program, int patience = 0)
    {
        KyChildProcess *process = new KyChildProcess(patience, this);
        connect(process, SIGNAL(stateChanged(QProcess::ProcessState)), this,
                SLOT(onStateChanged(QProcess::ProcessState)));
        connect(process, SIGNAL(error(QProcess::ProcessError)), this, SLOT(onError(QProcess::ProcessError)));
        connect(process, SIGNAL(readyReadStandardOutput()), this, SLOT(onReadyRead()));
        connect(process, SIGNAL(finished(int, QProcess::ExitStatus)), this, SLOT(onFinished()));
        process->start(ScriptedProgram::program(), {program.script()});
        return process;
    }

    std::function<void(const QString &)> listener;

private slots:
    void onStateChanged(QProcess::ProcessState state)
    {
        relay(QStringLiteral("state %1").arg(state));
    }
    void onError(QProcess::ProcessError error)
    {
        relay(QStringLiteral("error %1").arg(error));
    }
    void onReadyRead()
    {
        relay(QStringLiteral("ready"));
    }
    void onFinished()
    {
        relay(QStringLiteral("finished"));
    }

private:
    void relay(const QString &signal)
    {
        const KyChildProcess::Relay relay(sender());
        const auto call = listener; // the owner may be gone after it
        if (call)
            call(signal);
    }
};

class tst_KyChildProcess : public QObject
{
    Q_OBJECT

private slots:
    void ownerDeletedDuringASignal_data();
    void ownerDeletedDuringASignal();
    void ownerDeletedBetweenSignals_takesTheProgramAlong();
    void ownerDeletedWhileStarting_takesTheProgramAlong();
    void politeEnd_isWaitedFor();
    void deafProgram_isKilledAfterThePatience();
    void close_duringTheReportOfACrash_returns_data();
    void close_duringTheReportOfACrash_returns();
    void close_endsARunningProgram();
    void relayWithoutASender_isHarmless();
};

void tst_KyChildProcess::ownerDeletedDuringASignal_data()
{
    QTest::addColumn<QString>("signal");
    QTest::addColumn<QString>("end");
    QTest::newRow("starting") << "state 1"
                              << "wait never";
    QTest::newRow("running") << "state 2"
                             << "wait never";
    QTest::newRow("output") << "ready"
                            << "wait never";
    QTest::newRow("crash") << "error 1"
                           << "crash";
    QTest::newRow("not running") << "state 0"
                                 << "exit 3";
    QTest::newRow("not running after a crash") << "state 0"
                                               << "crash";
    QTest::newRow("finished") << "finished"
                              << "exit 3";
    QTest::newRow("finished after a crash") << "finished"
                                            << "crash";
}

void tst_KyChildProcess::ownerDeletedDuringASignal()
{
    QFETCH(QString, signal);
    QFETCH(QString, end);
    const ScriptedProgram program({"pid pid", "print x", end});
    QPointer<Owner> owner(new Owner);
    owner->listener = [&](const QString &emitted) {
        if (emitted == signal)
            delete owner.data();
    };
    const QPointer<KyChildProcess> process(owner->start(program));

    QTRY_VERIFY(!owner);
    QTRY_VERIFY(!process);
    QVERIFY(!program.isInProcessTable());
}

void tst_KyChildProcess::ownerDeletedBetweenSignals_takesTheProgramAlong()
{
    const ScriptedProgram program({"pid pid", "wait never"});
    Owner *owner = new Owner;
    QStringList emitted;
    owner->listener = [&](const QString &signal) {
        emitted.append(signal);
    };
    const QPointer<KyChildProcess> process(owner->start(program));
    QTRY_VERIFY(program.has("pid"));
    QVERIFY(program.isInProcessTable());
    emitted.clear();

    delete owner;

    QVERIFY(!process);
    QVERIFY(!program.isInProcessTable());
    QCOMPARE(emitted, QStringList());
}

#ifdef Q_OS_UNIX
static int requests[2]; // a pipe

extern "C" void onRequest(int)
{
    const ssize_t written = ::write(requests[1], "x", 1);
    Q_UNUSED(written)
}

void tst_KyChildProcess::ownerDeletedWhileStarting_takesTheProgramAlong()
{
    // Between fork and exec the child is a copy of this program and shares the pipe.
    QCOMPARE(::pipe2(requests, O_CLOEXEC | O_NONBLOCK), 0);
    const auto former = std::signal(SIGTERM, onRequest);
    const ScriptedProgram program({"wait never"});
    for (int i = 0; i < 20; ++i) {
        std::unique_ptr<Owner> owner = std::make_unique<Owner>();
        const qint64 id = owner->start(program, 30000)->processId();
        QVERIFY(id > 0);
        owner.reset();
        QVERIFY(!Test::isInProcessTable(id));
    }
    std::signal(SIGTERM, former);
    char byte = 0;
    QCOMPARE(::read(requests[0], &byte, 1), ssize_t(-1));
    ::close(requests[0]);
    ::close(requests[1]);
}
#else
void tst_KyChildProcess::ownerDeletedWhileStarting_takesTheProgramAlong()
{
    QSKIP("Programs do not begin as copies of the application here");
}
#endif

void tst_KyChildProcess::politeEnd_isWaitedFor()
{
    const ScriptedProgram program({"on-end ended", "pid pid", "wait never"});
    Owner *owner = new Owner;
    owner->start(program, 30000);
    QTRY_VERIFY(program.has("pid"));

    delete owner;

    QVERIFY(program.has("ended"));
    QVERIFY(!program.isInProcessTable());
}

void tst_KyChildProcess::deafProgram_isKilledAfterThePatience()
{
    const ScriptedProgram program({"ignore-end", "pid pid", "wait never"});
    Owner *owner = new Owner;
    owner->start(program, 1);
    QTRY_VERIFY(program.has("pid"));

    delete owner;

    QVERIFY(!program.isInProcessTable());
}

void tst_KyChildProcess::close_duringTheReportOfACrash_returns_data()
{
    QTest::addColumn<QString>("signal");
    QTest::addColumn<bool>("isEnding");
    QTest::newRow("error") << "error 1" << true;
    QTest::newRow("not running") << "state 0" << true;
    QTest::newRow("finished") << "finished" << false;
}

void tst_KyChildProcess::close_duringTheReportOfACrash_returns()
{
    QFETCH(QString, signal);
    QFETCH(bool, isEnding);
    const ScriptedProgram program({"crash"});
    Owner owner;
    KyChildProcess *process = nullptr;
    QList<bool> endings;
    owner.listener = [&](const QString &emitted) {
        if (emitted != signal)
            return;
        endings.append(process->isEnding());
        process->close();
    };
    process = owner.start(program);
    QVERIFY(!process->isEnding());

    QTRY_COMPARE(endings, QList<bool>({isEnding}));
    QTRY_COMPARE(process->state(), QProcess::NotRunning);
    QVERIFY(!process->isEnding());
}

void tst_KyChildProcess::close_endsARunningProgram()
{
    const ScriptedProgram program({"pid pid", "wait never"});
    Owner owner;
    KyChildProcess *process = owner.start(program);
    QTRY_VERIFY(program.has("pid"));
    QVERIFY(!process->isEnding());

    process->close();

    QCOMPARE(process->state(), QProcess::NotRunning);
    QVERIFY(!process->isOpen());
    QVERIFY(!program.isInProcessTable());
    process->close();
}

void tst_KyChildProcess::relayWithoutASender_isHarmless()
{
    const KyChildProcess::Relay none(nullptr);
    const KyChildProcess::Relay other(this);
}

KYTE_TEST_MAIN(tst_KyChildProcess)
#include "tst_KyChildProcess.moc"
