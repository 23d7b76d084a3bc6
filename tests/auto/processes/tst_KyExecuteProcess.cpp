#include <KyExecuteProcess.h>
#include <KyScriptedProgram.h>
#include <KyTestMain.h>

#include <csignal>

using namespace Kyte;
using Kyte::Test::ScriptedProgram;

namespace Kyte {

/** Writes the signals of an object down as short texts, in order, and calls back after each. */
class SignalRecorder : public QObject
{
    Q_OBJECT

public:
    explicit SignalRecorder(KyExecuteProcess *process, Qt::ConnectionType type = Qt::AutoConnection)
        : m_process(process)
    {
        connect(process, SIGNAL(processStarted(KyExecuteProcess *)), this,
                SLOT(onStarted(KyExecuteProcess *)), type);
        connect(process, SIGNAL(processError(QProcess::ProcessError, KyExecuteProcess *)), this,
                SLOT(onError(QProcess::ProcessError, KyExecuteProcess *)), type);
        connect(process, SIGNAL(processFinished(int, QProcess::ExitStatus, KyExecuteProcess *)), this,
                SLOT(onFinished(int, QProcess::ExitStatus, KyExecuteProcess *)), type);
        connect(process, SIGNAL(processStageChanged(QProcess::ProcessState, KyExecuteProcess *)), this,
                SLOT(onStageChanged(QProcess::ProcessState, KyExecuteProcess *)), type);
        connect(process, SIGNAL(windowHandleGotten(WId)), this, SLOT(onWindowHandle(WId)), type);
    }

    QStringList texts;
    std::function<void(const QString &)> listener;

private slots:
    void onStarted(KyExecuteProcess *process)
    {
        record(QStringLiteral("started"), process);
    }
    void onError(QProcess::ProcessError error, KyExecuteProcess *process)
    {
        record(QStringLiteral("error %1").arg(error), process);
    }
    void onFinished(int code, QProcess::ExitStatus status, KyExecuteProcess *process)
    {
        record(QStringLiteral("finished %1 %2").arg(code).arg(status), process);
    }
    void onStageChanged(QProcess::ProcessState state, KyExecuteProcess *process)
    {
        record(QStringLiteral("stage %1").arg(state), process);
    }
    void onWindowHandle(WId handle)
    {
        record(QStringLiteral("window %1").arg(handle), m_process);
    }

private:
    void record(const QString &name, KyExecuteProcess *process)
    {
        QString text = name;
        if (process != m_process)
            text += process ? QStringLiteral(" other") : QStringLiteral(" null");
        texts.append(text);
        if (listener)
            listener(text);
    }

    KyExecuteProcess *m_process = nullptr;
};

} // namespace Kyte

/** What a whole run of a program with the exit code \a code emits. */
static QStringList completeRun(int code)
{
    return {"stage 1", "started null", "stage 2", "started", "stage 0", QString("finished %1 0").arg(code)};
}

static const int CRASH_CODE = SIGABRT;

/** True once \a program runs and its start has been reported: a program may well write its id before that. */
static bool isRunning(const KyExecuteProcess &process, const ScriptedProgram &program)
{
    return program.has("pid") && process.process()->state() == QProcess::Running;
}

class tst_KyExecuteProcess : public QObject
{
    Q_OBJECT

private slots:
    void constructors_registerTheTypesOfTheSignals();
    void newObject_hasNeitherProcessNorWindow();
    void run_isRelayedInOrder();
    void crash_isRelayed();
    void missingProgram_isRelayed();
    void emptyProgram_isRelayed();
    void signals_travelQueued();
    void setters_countFromTheNextStart();
    void arguments_arriveUnharmed();
    void secondStart_endsTheFirst();
    void start_afterTheEnd_startsAgain();
    void closeProcess_endsTheProgram();
    void terminateProcess_asksTheProgram();
    void destructor_endsTheProgram();

    void copy_sharesTheProcess();
    void copy_relaysNothing();
    void deletedCopy_leavesTheProcess();
    void deletedSource_leavesTheCopyWithoutOne();
    void startOfACopy_endsTheSharedProcess();

    void deletionInASlot_data();
    void deletionInASlot();
    void restartInASlot_data();
    void restartInASlot();
    void restartByAListenerToARestart_stays();
    void closeAndTerminateInASlot_data();
    void closeAndTerminateInASlot();
};

static KyExecuteProcess *makeProcess(const ScriptedProgram &program, QObject *parent = nullptr)
{
    return new KyExecuteProcess(ScriptedProgram::program(), {program.script()}, QIODevice::ReadWrite, parent);
}

void tst_KyExecuteProcess::constructors_registerTheTypesOfTheSignals()
{
    KyExecuteProcess process(QString(), {}, QIODevice::ReadOnly, nullptr);
    QCOMPARE(QMetaType::type("KyExecuteProcess*"), qMetaTypeId<KyExecuteProcess *>());
    QCOMPARE(QMetaType::type("WId"), qMetaTypeId<WId>());
    for (const char *name : {"QProcess::ProcessError", "QProcess::ExitStatus", "QProcess::ProcessState"})
        QVERIFY2(QMetaType::type(name) != QMetaType::UnknownType, name);
}

void tst_KyExecuteProcess::newObject_hasNeitherProcessNorWindow()
{
    QObject parent;
    KyExecuteProcess *process = new KyExecuteProcess("program", {}, QIODevice::ReadOnly, &parent);
    const SignalRecorder recorder(process);
    QCOMPARE(process->parent(), &parent);
    QCOMPARE(process->process(), nullptr);
    QCOMPARE(process->processWindowHandle(), WId(0));
    process->closeProcess();
    process->terminateProcess();
    QVERIFY(QMetaObject::invokeMethod(process, "onGetWindowHandle"));
    QCOMPARE(recorder.texts, QStringList());
}

void tst_KyExecuteProcess::run_isRelayedInOrder()
{
    const ScriptedProgram program({"exit 3"});
    const std::unique_ptr<KyExecuteProcess> process(makeProcess(program));
    const SignalRecorder recorder(process.get());

    process->startProcess();

    QCOMPARE(recorder.texts, QStringList({"stage 1", "started null"}));
    QCOMPARE(process->process()->parent(), process.get());
    QTRY_COMPARE(recorder.texts, completeRun(3));
    QCOMPARE(process->process()->exitCode(), 3);
}

void tst_KyExecuteProcess::crash_isRelayed()
{
    const ScriptedProgram program({"crash"});
    const std::unique_ptr<KyExecuteProcess> process(makeProcess(program));
    const SignalRecorder recorder(process.get());

    process->startProcess();

    QTRY_COMPARE(recorder.texts,
                 QStringList({"stage 1", "started null", "stage 2", "started", "error 1", "stage 0",
                              QString("finished %1 1").arg(CRASH_CODE)}));
}

void tst_KyExecuteProcess::missingProgram_isRelayed()
{
    KyExecuteProcess process("/nowhere/program", {}, QIODevice::ReadOnly, nullptr);
    const SignalRecorder recorder(&process);

    process.startProcess();

    QTRY_COMPARE(recorder.texts, QStringList({"stage 1", "started null", "stage 0", "error 0"}));
}

void tst_KyExecuteProcess::emptyProgram_isRelayed()
{
    KyExecuteProcess process(QString(), {}, QIODevice::ReadOnly, nullptr);
    const SignalRecorder recorder(&process);

    process.startProcess();

    // Qt refuses it before anything else happens.
    QCOMPARE(recorder.texts, QStringList({"error 0", "started null"}));
}

void tst_KyExecuteProcess::signals_travelQueued()
{
    const ScriptedProgram program({"crash"});
    const std::unique_ptr<KyExecuteProcess> process(makeProcess(program));
    const SignalRecorder recorder(process.get(), Qt::QueuedConnection);

    process->startProcess();
    emit process->windowHandleGotten(4711);

    QTRY_COMPARE(recorder.texts,
                 QStringList({"stage 1", "started null", "window 4711", "stage 2", "started", "error 1",
                              "stage 0", QString("finished %1 1").arg(CRASH_CODE)}));
}

void tst_KyExecuteProcess::setters_countFromTheNextStart()
{
    const ScriptedProgram program({"pid pid", "environment value KYTE_TEST", "read input"});
    KyExecuteProcess process("/nowhere/program", {}, QIODevice::ReadOnly, nullptr);
    process.startProcess();
    QProcess *former = process.process();
    QTRY_COMPARE(former->error(), QProcess::FailedToStart);

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("KYTE_TEST", "value");
    process.setProcessProgram(ScriptedProgram::program());
    process.setProcessArguments({program.script()});
    process.setProcessEnvironment(environment);
    process.setProcessOpenMode(QIODevice::WriteOnly);
    QCOMPARE(process.process(), former);
    QVERIFY(!program.has("pid"));

    process.startProcess();
    QVERIFY(process.process() != former);
    QCOMPARE(process.process()->openMode(), QIODevice::WriteOnly);
    process.process()->write("text");
    process.process()->closeWriteChannel();

    QTRY_VERIFY(program.has("input"));
    QCOMPARE(program.read("input"), QByteArray("text"));
    QCOMPARE(program.read("value"), QByteArray("value"));
}

void tst_KyExecuteProcess::arguments_arriveUnharmed()
{
    const ScriptedProgram program({"arguments arguments"});
    const QStringList arguments = {program.script(), "two words", "\"quoted\"",           "%1 %2",
                                   QString(),        "-x",        QStringLiteral("größe")};
    KyExecuteProcess process(ScriptedProgram::program(), arguments, QIODevice::ReadOnly, nullptr);
    process.startProcess();
    QTRY_VERIFY(program.has("arguments"));
    QCOMPARE(QString::fromUtf8(program.read("arguments")).split('\n').mid(1, arguments.size()), arguments);
}

void tst_KyExecuteProcess::secondStart_endsTheFirst()
{
    const ScriptedProgram first({"pid pid", "wait never"});
    const ScriptedProgram second({"exit 5"});
    const std::unique_ptr<KyExecuteProcess> process(makeProcess(first));
    SignalRecorder recorder(process.get());
    process->startProcess();
    QTRY_VERIFY(isRunning(*process, first));
    const QPointer<QProcess> former(process->process());
    recorder.texts.clear();

    process->setProcessArguments({second.script()});
    process->startProcess();

    QVERIFY(!first.isInProcessTable());
    QVERIFY(process->process() != former);
    QTRY_COMPARE(recorder.texts, QStringList({"error 1", "stage 0", "finished 9 1"}) + completeRun(5));
    QTRY_VERIFY(!former);
}

void tst_KyExecuteProcess::start_afterTheEnd_startsAgain()
{
    const ScriptedProgram program({"exit 0"});
    const std::unique_ptr<KyExecuteProcess> process(makeProcess(program));
    const SignalRecorder recorder(process.get());
    process->startProcess();
    QTRY_COMPARE(recorder.texts, completeRun(0));
    process->startProcess();
    QTRY_COMPARE(recorder.texts, completeRun(0) + completeRun(0));
}

void tst_KyExecuteProcess::closeProcess_endsTheProgram()
{
    const ScriptedProgram program({"ignore-end", "pid pid", "wait never"});
    const std::unique_ptr<KyExecuteProcess> process(makeProcess(program));
    SignalRecorder recorder(process.get());
    process->startProcess();
    QTRY_VERIFY(isRunning(*process, program));
    recorder.texts.clear();

    process->closeProcess();

    QVERIFY(!program.isInProcessTable());
    QCOMPARE(recorder.texts, QStringList({"error 1", "stage 0", "finished 9 1"}));
    QVERIFY(process->process());
}

void tst_KyExecuteProcess::terminateProcess_asksTheProgram()
{
    const ScriptedProgram program({"on-end asked", "pid pid", "wait never"});
    const std::unique_ptr<KyExecuteProcess> process(makeProcess(program));
    const SignalRecorder recorder(process.get());
    process->startProcess();
    QTRY_VERIFY(isRunning(*process, program));

    process->terminateProcess();

    QTRY_COMPARE(recorder.texts, completeRun(7));
    QVERIFY(program.has("asked"));
    process->terminateProcess();
    process->closeProcess();
    QCOMPARE(recorder.texts, completeRun(7));
}

void tst_KyExecuteProcess::destructor_endsTheProgram()
{
    const ScriptedProgram program({"ignore-end", "pid pid", "wait never"});
    KyExecuteProcess *process = makeProcess(program);
    SignalRecorder recorder(process);
    process->startProcess();
    QTRY_VERIFY(isRunning(*process, program));
    recorder.texts.clear();

    delete process;

    QVERIFY(!program.isInProcessTable());
    QCOMPARE(recorder.texts, QStringList());
}

void tst_KyExecuteProcess::copy_sharesTheProcess()
{
    const ScriptedProgram program({"pid pid", "environment value KYTE_TEST", "wait go"});
    QObject parent;
    KyExecuteProcess *source = makeProcess(program, &parent);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("KYTE_TEST", "copied");
    source->setProcessEnvironment(environment);
    source->startProcess();
    QTRY_VERIFY(isRunning(*source, program));

    KyExecuteProcess *copy = new KyExecuteProcess(*source);

    QCOMPARE(copy->parent(), &parent);
    QCOMPARE(copy->process(), source->process());
    QCOMPARE(copy->processWindowHandle(), WId(0));
    program.touch("go");
    QTRY_COMPARE(copy->process()->state(), QProcess::NotRunning);

    // Program, arguments, environment and mode were copied as well.
    QFile::remove(program.path("value"));
    copy->startProcess();
    QCOMPARE(copy->process()->openMode(), QIODevice::ReadWrite);
    QTRY_COMPARE(program.read("value"), QByteArray("copied"));
}

void tst_KyExecuteProcess::copy_relaysNothing()
{
    const ScriptedProgram program({"pid pid", "wait go", "exit 2"});
    const std::unique_ptr<KyExecuteProcess> source(makeProcess(program));
    const SignalRecorder sourceRecorder(source.get());
    source->startProcess();
    KyExecuteProcess copy(*source);
    const SignalRecorder copyRecorder(&copy);
    program.touch("go");
    QTRY_COMPARE(sourceRecorder.texts, completeRun(2));
    QCOMPARE(copyRecorder.texts, QStringList());
}

void tst_KyExecuteProcess::deletedCopy_leavesTheProcess()
{
    const ScriptedProgram program({"pid pid", "wait go", "exit 2"});
    const std::unique_ptr<KyExecuteProcess> source(makeProcess(program));
    const SignalRecorder recorder(source.get());
    source->startProcess();
    QTRY_VERIFY(isRunning(*source, program));

    delete new KyExecuteProcess(*source);

    QCOMPARE(source->process()->state(), QProcess::Running);
    program.touch("go");
    QTRY_COMPARE(recorder.texts, completeRun(2));
}

void tst_KyExecuteProcess::deletedSource_leavesTheCopyWithoutOne()
{
    const ScriptedProgram program({"pid pid", "wait never"});
    KyExecuteProcess *source = makeProcess(program);
    source->startProcess();
    QTRY_VERIFY(isRunning(*source, program));
    KyExecuteProcess copy(*source);

    delete source;

    QCOMPARE(copy.process(), nullptr);
    copy.closeProcess();
    copy.terminateProcess();
    QVERIFY(!program.isInProcessTable());
}

void tst_KyExecuteProcess::startOfACopy_endsTheSharedProcess()
{
    const ScriptedProgram program({"pid pid", "wait never"});
    const std::unique_ptr<KyExecuteProcess> source(makeProcess(program));
    SignalRecorder recorder(source.get());
    source->startProcess();
    QTRY_VERIFY(isRunning(*source, program));
    const qint64 id = program.processId();
    QFile::remove(program.path("pid"));
    recorder.texts.clear();

    KyExecuteProcess copy(*source);
    copy.startProcess();

    QVERIFY(!Test::isInProcessTable(id));
    QCOMPARE(recorder.texts, QStringList({"error 1", "stage 0", "finished 9 1"}));
    QTRY_COMPARE(source->process(), nullptr);
    QTRY_VERIFY(program.has("pid"));
    QCOMPARE(copy.process()->processId(), program.processId());
}

void tst_KyExecuteProcess::deletionInASlot_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("end");
    QTest::addColumn<QString>("signal");
    const QString scripted = ScriptedProgram::program();
    for (const char *signal : {"stage 1", "started", "stage 2"})
        QTest::newRow(signal) << scripted << "wait never" << signal;
    for (const char *signal : {"stage 0", "finished 3 0"})
        QTest::newRow(signal) << scripted << "exit 3" << signal;
    QTest::newRow("crash: error") << scripted << "crash"
                                  << "error 1";
    QTest::newRow("crash: stage 0") << scripted << "crash"
                                    << "stage 0";
    QTest::newRow("crash: finished") << scripted << "crash" << QString("finished %1 1").arg(CRASH_CODE);
    QTest::newRow("missing: stage 0") << "/nowhere/program"
                                      << ""
                                      << "stage 0";
    QTest::newRow("missing: error") << "/nowhere/program"
                                    << ""
                                    << "error 0";
    QTest::newRow("empty: error") << ""
                                  << ""
                                  << "error 0";
    QTest::newRow("window") << scripted << "wait never"
                            << "window 1";
}

void tst_KyExecuteProcess::deletionInASlot()
{
    QFETCH(QString, program);
    QFETCH(QString, end);
    QFETCH(QString, signal);
    const ScriptedProgram script({"pid pid", end});
    QPointer<KyExecuteProcess> process(
        new KyExecuteProcess(program, {script.script()}, QIODevice::ReadOnly, nullptr));
    SignalRecorder recorder(process);
    recorder.listener = [&](const QString &text) {
        if (text == QLatin1String("started") && signal.startsWith(QLatin1String("window")))
            emit process->windowHandleGotten(1);
        if (text == signal)
            delete process.data();
    };
    process->startProcess();
    QTRY_VERIFY(!process);
    QCOMPARE(recorder.texts.last().section(' ', 0, 1), signal.section(' ', 0, 1));
    QTRY_VERIFY(!script.isInProcessTable());
}

void tst_KyExecuteProcess::restartInASlot_data()
{
    QTest::addColumn<QString>("end");
    QTest::addColumn<QString>("signal");
    QTest::newRow("running") << "wait never"
                             << "stage 2";
    QTest::newRow("started") << "wait never"
                             << "started";
    QTest::newRow("not running") << "exit 3"
                                 << "stage 0";
    QTest::newRow("finished") << "exit 3"
                              << "finished 3 0";
    QTest::newRow("crash: error") << "crash"
                                  << "error 1";
    QTest::newRow("crash: not running") << "crash"
                                        << "stage 0";
    QTest::newRow("crash: finished") << "crash" << QString("finished %1 1").arg(CRASH_CODE);
}

void tst_KyExecuteProcess::restartInASlot()
{
    QFETCH(QString, end);
    QFETCH(QString, signal);
    const ScriptedProgram first({"pid pid", end});
    const ScriptedProgram second({"pid pid", "wait go", "exit 5"});
    const std::unique_ptr<KyExecuteProcess> process(makeProcess(first));
    SignalRecorder recorder(process.get());
    bool isRestarted = false;
    recorder.listener = [&](const QString &text) {
        if (isRestarted || text != signal)
            return;
        isRestarted = true;
        process->setProcessArguments({second.script()});
        process->startProcess();
    };
    process->startProcess();

    QTRY_VERIFY(second.has("pid"));
    QCOMPARE(process->process()->processId(), second.processId());
    QTRY_VERIFY(!first.isInProcessTable());
    second.touch("go");
    QTRY_COMPARE(recorder.texts.filter("finished 5 0").size(), 1);
    QCOMPARE(recorder.texts.filter("finished").size(), 2);
}

void tst_KyExecuteProcess::restartByAListenerToARestart_stays()
{
    const ScriptedProgram first({"pid pid", "wait never"});
    const ScriptedProgram second({"pid pid", "wait go"});
    const ScriptedProgram third({"pid pid"});
    const std::unique_ptr<KyExecuteProcess> process(makeProcess(first));
    SignalRecorder recorder(process.get());
    process->startProcess();
    QTRY_VERIFY(isRunning(*process, first));
    recorder.texts.clear();
    recorder.listener = [&](const QString &text) {
        if (!text.startsWith("finished 9"))
            return;
        process->setProcessArguments({second.script()});
        process->startProcess();
        process->setProcessArguments({third.script()});
    };

    process->startProcess();
    second.touch("go");

    QTRY_COMPARE(recorder.texts, QStringList({"error 1", "stage 0", "finished 9 1"}) + completeRun(0));
    QVERIFY(second.has("pid"));
    QVERIFY(!third.has("pid"));
}

void tst_KyExecuteProcess::closeAndTerminateInASlot_data()
{
    restartInASlot_data();
}

void tst_KyExecuteProcess::closeAndTerminateInASlot()
{
    QFETCH(QString, end);
    QFETCH(QString, signal);
    const ScriptedProgram program({"pid pid", end});
    const std::unique_ptr<KyExecuteProcess> process(makeProcess(program));
    SignalRecorder recorder(process.get());
    int called = 0;
    recorder.listener = [&](const QString &text) {
        if (text != signal)
            return;
        ++called;
        process->terminateProcess();
        process->closeProcess();
    };
    process->startProcess();
    QTRY_COMPARE(recorder.texts.filter("finished").size(), 1);
    QCOMPARE(called, 1);
    QCOMPARE(process->process()->state(), QProcess::NotRunning);
    QVERIFY(!program.isInProcessTable());
}

KYTE_TEST_MAIN(tst_KyExecuteProcess)
#include "tst_KyExecuteProcess.moc"
