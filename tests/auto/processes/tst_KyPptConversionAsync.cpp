#include "KyConversionTest.h"

#include <KyTestEnvironment.h>
#include <KyTestMain.h>

#ifdef Q_OS_WIN
#include <windows.h>

#include <tlhelp32.h>
#else
#include <csignal>
#endif

using namespace Kyte;
using Kyte::Test::ConversionRecorder;
using Kyte::Test::ScriptedProgram;

static const QString CRASHED =
    QStringLiteral("error abort The process crashed some time after starting successfully.");
static const QString LOADING = QStringLiteral("info Loading PowerPoint Application...");

/** A presentation, which is a script to the converter, and a conversion of it on a worker thread. */
struct World
{
    explicit World(const QStringList &lines)
        : presentation(lines, "talk.pptx")
        , output(presentation.path("out"))
        , conversion(new KyPptConversion(presentation.script(), output, false))
        , recorder(conversion)
    {
    }
    ~World()
    {
        delete conversion.data();
    }

    ScriptedProgram presentation;
    QString output;
    QPointer<KyPptConversion> conversion;
    ConversionRecorder recorder;
};

/** The number of threads of this process. */
#ifdef Q_OS_WIN
static int threads()
{
    const DWORD id = GetCurrentProcessId();
    const HANDLE table = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 thread = {};
    thread.dwSize = sizeof thread;
    int count = 0;
    for (BOOL hasThread = Thread32First(table, &thread); hasThread; hasThread = Thread32Next(table, &thread))
        count += thread.th32OwnerProcessID == id;
    CloseHandle(table);
    return count;
}
#else
static int threads()
{
    return Test::namesIn("/proc/self/task").size();
}
#endif

class tst_KyPptConversionAsync : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void wholeRun_isRelayedInOrder();
    void signals_comeOnTheThreadOfTheController();
    void settings_reachTheWorker();
    void settingsChangedLater_doNotReachTheWorker();
    void nullOutputPath_staysNull();
    void failedPreparation_isRelayed();

    void finishedBeforeTheConverterEnds_endsNothing();
    void completionAtExit_afterTheEndOfTheOutput();
    void startNotice_thenCompletion_isNotCutOff();
    void exitWithoutAWord_endsTheThread_data();
    void exitWithoutAWord_endsTheThread();
    void converterThatCannotBeRun_endsTheThread();

    void abort_endsConverterAndThread();
    void abort_atOnce();
    void abort_ofAConverterThatTakesItsTime();
    void abort_afterAnError_isAnswered_data();
    void abort_afterAnError_isAnswered();
    void abort_afterTheEnd_isAnswered();
    void abort_beforeTheStart_isAnswered();
    void abort_twice_isAnsweredTwice();
    void startOnTheOwnThread_afterAnAsynchronousOne();

    void deletedController_leavesTheWorkerToItsEnd();
    void deletedControllerAtOnce_isSafe();
    void deletionInASlot_data();
    void deletionInASlot();
    void twoConversions_runSideBySide();
    void twoConversionsOfOneController();

    void applicationCanEndAtAnyMoment_data();
    void applicationCanEndAtAnyMoment();

private:
    int m_threads = 0;
};

void tst_KyPptConversionAsync::initTestCase()
{
    if (threads() == 0)
        QSKIP("Threads cannot be counted here");
    // Qt starts a thread of its own with the first process, in some builds.
    const ScriptedProgram program({"exit 0"});
    QProcess process;
    process.start(ScriptedProgram::program(), {program.script()});
    QVERIFY(process.waitForFinished());
    m_threads = threads();
}

void tst_KyPptConversionAsync::init()
{
    QVERIFY(Test::installConverter());
}

/** Whatever a test does, the worker's thread is gone in the end. */
void tst_KyPptConversionAsync::cleanup()
{
    QTRY_COMPARE(threads(), m_threads);
}

void tst_KyPptConversionAsync::cleanupTestCase()
{
    Test::removeConverter();
}

/** Lets the converter go on to its next chunk when a signal has come. */
static void goOnAfterEachSignal(World *world)
{
    world->recorder.listener = [world](const QString &) {
        world->presentation.touch(QString("go%1").arg(world->recorder.texts.size()));
    };
}

void tst_KyPptConversionAsync::wholeRun_isRelayedInOrder()
{
    World world({"print [101](loading)", "wait go1", "print [220](3)", "wait go2", "print [121](100)",
                 "wait go4", "print [192](done)", "wait go7", "exit 0"});
    goOnAfterEachSignal(&world);
    world.conversion->startAsync();
    QTRY_COMPARE(world.recorder.texts,
                 QStringList({LOADING, "error abort The slide of (3 creation is failure.", "progress 100",
                              "info Creating image file...", "info Creation Finished.",
                              "completed " + world.output, "finished", "completed " + world.output}));
}

void tst_KyPptConversionAsync::signals_comeOnTheThreadOfTheController()
{
    World world({"print [101]()", "wait go1", "exit 0"});
    goOnAfterEachSignal(&world);
    QList<QThread *> seen;
    connect(
        world.conversion, &KyPptConversion::informationUpdated, world.conversion,
        [&seen](const QString &) {
            seen.append(QThread::currentThread());
        },
        Qt::DirectConnection);
    world.conversion->startAsync();
    QVERIFY(!world.conversion->findChild<QProcess *>());
    QTRY_COMPARE(world.recorder.texts, QStringList({LOADING, "completed " + world.output}));
    QCOMPARE(seen, QList<QThread *>{QThread::currentThread()});
}

void tst_KyPptConversionAsync::settings_reachTheWorker()
{
    World world({"arguments arguments"});
    world.conversion->setWidth(1);
    world.conversion->setHeight(2);
    world.conversion->setDefaultSlideDuration(3);
    world.conversion->setVertResolution(4);
    world.conversion->setFramesPerSecond(5);
    world.conversion->setQuality(6);
    world.conversion->setUseTimingsAndNarrations(false);
    world.conversion->setProperty("imageFormat", "mp4");
    world.conversion->startAsync();
    QTRY_VERIFY(world.presentation.has("arguments"));
    QCOMPARE(world.presentation.lines("arguments").mid(1), QStringList({"-i",  world.presentation.script(),
                                                                        "-t",  "mp4",
                                                                        "-d",  world.output,
                                                                        "-o",  "slide",
                                                                        "-w",  "1",
                                                                        "-h",  "2",
                                                                        "-sd", "3",
                                                                        "-vr", "4",
                                                                        "-fs", "5",
                                                                        "-qt", "6",
                                                                        "-ut", "false"}));
}

void tst_KyPptConversionAsync::settingsChangedLater_doNotReachTheWorker()
{
    World world({"arguments arguments"});
    world.conversion->startAsync();
    world.conversion->setWidth(1);
    QTRY_VERIFY(world.presentation.has("arguments"));
    QCOMPARE(world.presentation.lines("arguments").value(10), QString("1280"));
}

void tst_KyPptConversionAsync::nullOutputPath_staysNull()
{
    const QTemporaryDir current;
    const QString former = QDir::currentPath();
    QDir::setCurrent(current.path());
    const ScriptedProgram presentation({"exit 0"}, "talk.pptx");
    KyPptConversion conversion(presentation.script(), QString(), true);
    const ConversionRecorder recorder(&conversion);
    conversion.startAsync();
    QTRY_COMPARE(recorder.texts, QStringList({"info Copying the PowerPoint file...", "completed (null)"}));
    QDir::setCurrent(former);
    QVERIFY(QFile::exists(current.filePath("talk_ppt/talk.pptx")));
}

void tst_KyPptConversionAsync::failedPreparation_isRelayed()
{
    KyPptConversion conversion("/nowhere/talk.pptx", "/nowhere/out", false);
    const ConversionRecorder recorder(&conversion);
    conversion.startAsync();
    QTRY_COMPARE(recorder.texts, QStringList{"error abort File \"talk.pptx\" is Not found. "});
    QTRY_COMPARE(threads(), m_threads);
}

void tst_KyPptConversionAsync::finishedBeforeTheConverterEnds_endsNothing()
{
    World world({"pid pid", "print [192]()", "wait go", "touch done", "exit 0"});
    world.conversion->startAsync();
    const QStringList told = {"info Creation Finished.", "completed " + world.output, "finished"};
    QTRY_COMPARE(world.recorder.texts, told);
    // Longer than the worker would need to end.
    QTest::qWait(100);
    QCOMPARE(threads(), m_threads + 1);
    QVERIFY(Test::isRunning(world.presentation.processId()));

    world.presentation.touch("go");

    QTRY_COMPARE(world.recorder.texts, told + QStringList{"completed " + world.output});
    QVERIFY(world.presentation.has("done"));
}

void tst_KyPptConversionAsync::completionAtExit_afterTheEndOfTheOutput()
{
    World world({"print [192]()", "exit 0"});
    world.conversion->startAsync();
    QTRY_COMPARE(world.recorder.texts.size(), 4);
    QCOMPARE(world.recorder.texts.filter("completed").size(), 2);
    QCOMPARE(world.recorder.texts.filter("finished").size(), 1);
}

void tst_KyPptConversionAsync::startNotice_thenCompletion_isNotCutOff()
{
    World world({"print [110]()", "wait go1", "print [192]()", "exit 0"});
    goOnAfterEachSignal(&world);
    world.conversion->startAsync();
    QTRY_COMPARE(threads(), m_threads);
    QTRY_COMPARE(world.recorder.texts.size(), 5);
    QCOMPARE(world.recorder.texts.first(), QString("error abort Start to create video file."));
    QCOMPARE(world.recorder.texts.filter("completed").size(), 2);
    QCOMPARE(world.recorder.texts.filter("finished").size(), 1);
}

void tst_KyPptConversionAsync::exitWithoutAWord_endsTheThread_data()
{
    QTest::addColumn<QString>("end");
    QTest::addColumn<QStringList>("told");
    QTest::newRow("success") << "exit 0" << QStringList{"completed"};
    QTest::newRow("failure") << "exit 7" << QStringList();
    QTest::newRow("crash") << "crash" << QStringList{CRASHED};
}

void tst_KyPptConversionAsync::exitWithoutAWord_endsTheThread()
{
    QFETCH(QString, end);
    QFETCH(QStringList, told);
    World world({"pid pid", end});
    world.conversion->startAsync();
    QTRY_VERIFY(world.presentation.has("pid"));
    QTRY_COMPARE(threads(), m_threads);
    told.replaceInStrings("completed", "completed " + world.output);
    QTRY_COMPARE(world.recorder.texts, told);
}

void tst_KyPptConversionAsync::converterThatCannotBeRun_endsTheThread()
{
    Test::removeConverter();
    Test::writeFile(Test::converterPath(), "no program");
    World world({});
    world.conversion->startAsync();
    QTRY_COMPARE(world.recorder.texts.size(), 1);
    QVERIFY(world.recorder.texts.first().startsWith("error abort The process failed to start."));
    QTRY_COMPARE(threads(), m_threads);
}

void tst_KyPptConversionAsync::abort_endsConverterAndThread()
{
    World world({"pid pid", "print [101]()", "wait never"});
    world.conversion->startAsync();
    QTRY_COMPARE(world.recorder.texts, QStringList{LOADING});

    world.conversion->abort();

    QCOMPARE(world.recorder.texts, QStringList({LOADING, "request"}));
    QVERIFY(world.conversion->canceled());
    QTRY_COMPARE(world.recorder.texts, QStringList({LOADING, "request", "aborted", CRASHED}));
    QTRY_COMPARE(threads(), m_threads);
    QVERIFY(!world.presentation.isInProcessTable());
}

void tst_KyPptConversionAsync::abort_atOnce()
{
    World world({"pid pid", "wait never"});
    world.conversion->startAsync();
    world.conversion->abort();
    QTRY_VERIFY(world.recorder.texts.contains("aborted"));
    QTRY_COMPARE(threads(), m_threads);
    QCOMPARE(world.recorder.texts.mid(0, 2), QStringList({"request", "aborted"}));
    QVERIFY(!world.presentation.isInProcessTable());
}

void tst_KyPptConversionAsync::abort_ofAConverterThatTakesItsTime()
{
    World world({"ignore-end", "pid pid", "print [101]()", "wait go", "exit 0"});
    world.conversion->startAsync();
    QTRY_COMPARE(world.recorder.texts, QStringList{LOADING});
    world.conversion->abort();
    QTRY_COMPARE(world.recorder.texts, QStringList({LOADING, "request", "aborted"}));
    QTest::qWait(100);
    QCOMPARE(threads(), m_threads + 1);

    world.presentation.touch("go");

    QTRY_COMPARE(threads(), m_threads);
    QCOMPARE(world.recorder.texts, QStringList({LOADING, "request", "aborted"}));
}

void tst_KyPptConversionAsync::abort_afterAnError_isAnswered_data()
{
    QTest::addColumn<bool>("isInTheSlot");
    QTest::addColumn<bool>("isThreadOver");
    QTest::newRow("at once") << true << false;
    QTest::newRow("when the thread has ended unnoticed") << true << true;
    QTest::newRow("when the thread has ended") << false << true;
}

void tst_KyPptConversionAsync::abort_afterAnError_isAnswered()
{
    QFETCH(bool, isInTheSlot);
    QFETCH(bool, isThreadOver);
    KyPptConversion conversion("/nowhere/talk.pptx", "/nowhere/out", false);
    ConversionRecorder recorder(&conversion);
    const QString error = "error abort File \"talk.pptx\" is Not found. ";
    recorder.listener = [&](const QString &text) {
        if (text != error || !isInTheSlot)
            return;
        // Without the event loop, so that the object cannot learn of it.
        while (isThreadOver && threads() > m_threads)
            QThread::msleep(1);
        conversion.abort();
    };
    conversion.startAsync();
    QTRY_VERIFY(!recorder.texts.isEmpty());
    QTRY_COMPARE(threads(), m_threads);
    if (!isInTheSlot) {
        QTest::qWait(0);
        conversion.abort();
    }
    QTRY_COMPARE(recorder.texts, QStringList({error, "request", "aborted"}));
}

void tst_KyPptConversionAsync::abort_afterTheEnd_isAnswered()
{
    World world({"exit 1"});
    world.conversion->startAsync();
    QTRY_COMPARE(threads(), m_threads);
    world.conversion->abort();
    QTRY_COMPARE(world.recorder.texts, QStringList({"request", "aborted"}));
}

void tst_KyPptConversionAsync::abort_beforeTheStart_isAnswered()
{
    World world({"exit 0"});
    world.conversion->abort();
    QCOMPARE(world.recorder.texts, QStringList{"aborted"});
    world.conversion->startAsync();
    QTRY_COMPARE(world.recorder.texts, QStringList({"aborted", "completed " + world.output}));
}

void tst_KyPptConversionAsync::abort_twice_isAnsweredTwice()
{
    World world({"ignore-end", "pid pid", "print [101]()", "wait go"});
    world.conversion->startAsync();
    QTRY_COMPARE(world.recorder.texts, QStringList{LOADING});
    world.conversion->abort();
    world.conversion->abort();
    QTRY_COMPARE(world.recorder.texts, QStringList({LOADING, "request", "request", "aborted", "aborted"}));
    world.presentation.touch("go");
    QTRY_COMPARE(threads(), m_threads);
    QTest::qWait(0);
    QCOMPARE(world.recorder.texts.filter("aborted").size(), 2);
}

void tst_KyPptConversionAsync::startOnTheOwnThread_afterAnAsynchronousOne()
{
    World world({"pid pid", "print [101]()", "wait go"});
    world.presentation.touch("go");
    world.conversion->startAsync();
    QTRY_COMPARE(world.recorder.texts, QStringList({LOADING, "completed " + world.output}));
    QTRY_COMPARE(threads(), m_threads);
    QTest::qWait(0);
    QFile::remove(world.presentation.path("go"));
    world.recorder.texts.clear();

    world.conversion->start();
    QTRY_COMPARE(world.recorder.texts, QStringList{LOADING});
    world.conversion->abort();

    QTRY_COMPARE(world.recorder.texts, QStringList({LOADING, "aborted", CRASHED}));
    QVERIFY(!world.presentation.isInProcessTable());
}

void tst_KyPptConversionAsync::deletedController_leavesTheWorkerToItsEnd()
{
    World world({"pid pid", "print [101]()", "wait go", "print [192]()", "touch done"});
    world.conversion->startAsync();
    QTRY_COMPARE(world.recorder.texts, QStringList{LOADING});

    delete world.conversion.data();
    QVERIFY(Test::isRunning(world.presentation.processId()));
    world.presentation.touch("go");

    QTRY_VERIFY(world.presentation.has("done"));
    QTRY_COMPARE(threads(), m_threads);
    QCOMPARE(world.recorder.texts, QStringList{LOADING});
}

void tst_KyPptConversionAsync::deletedControllerAtOnce_isSafe()
{
    World world({"pid pid", "touch done"});
    world.conversion->startAsync();
    delete world.conversion.data();
    QTRY_VERIFY(world.presentation.has("done"));
}

void tst_KyPptConversionAsync::deletionInASlot_data()
{
    QTest::addColumn<QStringList>("script");
    QTest::addColumn<QString>("signal");
    QTest::newRow("information") << QStringList{"print [101]()", "wait go"} << "info";
    QTest::newRow("progress") << QStringList{"print [121](5)", "wait go"} << "progress";
    QTest::newRow("error") << QStringList{"print [203]()", "wait go"} << "error";
    QTest::newRow("completed") << QStringList{"print [192]()", "wait go"} << "completed";
    QTest::newRow("finished") << QStringList{"print [192]()", "wait go"} << "finished";
    QTest::newRow("request") << QStringList{"wait go"} << "request";
    QTest::newRow("aborted") << QStringList{"wait go"} << "aborted";
}

void tst_KyPptConversionAsync::deletionInASlot()
{
    QFETCH(QStringList, script);
    QFETCH(QString, signal);
    World world(QStringList{"pid pid"} + script);
    world.recorder.listener = [&](const QString &text) {
        if (text.startsWith(signal))
            delete world.conversion.data();
    };
    world.conversion->startAsync();
    if (signal == "request" || signal == "aborted")
        world.conversion->abort();
    QTRY_VERIFY(!world.conversion);
    world.presentation.touch("go");
    QTRY_COMPARE(threads(), m_threads);
    QVERIFY(world.recorder.texts.last().startsWith(signal));
}

void tst_KyPptConversionAsync::twoConversions_runSideBySide()
{
    World first({"print [103](1)", "wait go1", "exit 0"});
    World second({"print [103](2)", "wait go1", "exit 0"});
    first.conversion->startAsync();
    second.conversion->startAsync();
    QTRY_COMPARE(first.recorder.texts, QStringList{"info The number of slides: 1"});
    QTRY_COMPARE(second.recorder.texts, QStringList{"info The number of slides: 2"});
    second.presentation.touch("go1");
    QTRY_COMPARE(second.recorder.texts.last(), "completed " + second.output);
    QCOMPARE(first.recorder.texts.size(), 1);
    first.presentation.touch("go1");
    QTRY_COMPARE(first.recorder.texts.last(), "completed " + first.output);
}

void tst_KyPptConversionAsync::twoConversionsOfOneController()
{
    World world({"print [101]()", "wait never"});
    world.conversion->startAsync();
    world.conversion->startAsync();
    QTRY_COMPARE(world.recorder.texts, QStringList({LOADING, LOADING}));
    world.conversion->abort();
    QTRY_COMPARE(threads(), m_threads);
    QTRY_COMPARE(world.recorder.texts.filter("aborted").size(), 2);
}

void tst_KyPptConversionAsync::applicationCanEndAtAnyMoment_data()
{
    QTest::addColumn<QString>("way");
    QTest::addColumn<QString>("preparation");
    for (const char *way : {"quit", "at-once", "return", "leaked", "deleted", "sync", "twice"})
        QTest::newRow(way) << way << "on-end ended";
    QTest::newRow("quit, deaf converter") << "quit"
                                          << "ignore-end";
    QTest::newRow("quit, converter that knows nothing") << "quit"
                                                        << "touch started";
}

void tst_KyPptConversionAsync::applicationCanEndAtAnyMoment()
{
    QFETCH(QString, way);
    QFETCH(QString, preparation);
    const ScriptedProgram presentation({preparation, "pid pid", "print [101]()", "wait never"}, "talk.pptx");
    QProcess application;
    application.setProcessChannelMode(QProcess::MergedChannels);
    // Some ways leave objects behind on purpose.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("ASAN_OPTIONS", environment.value("ASAN_OPTIONS") + ":detect_leaks=0");
    application.setProcessEnvironment(environment);
    application.start(QCoreApplication::applicationDirPath() + "/ky_conversion",
                      {presentation.script(), presentation.path("out"), way});
    QVERIFY(application.waitForFinished());
    const QByteArray output = application.readAll();
    QVERIFY2(output.trimmed().endsWith("ended"), output.constData());
    QVERIFY2(!output.contains("QThread: ") && !output.contains("QProcess: "), output.constData());
    QCOMPARE(application.exitStatus(), QProcess::NormalExit);
    QCOMPARE(application.exitCode(), 0);
    QVERIFY(!presentation.isInProcessTable());
    if (preparation.startsWith("on-end") && presentation.has("pid"))
        QVERIFY(presentation.has("ended"));
}

KYTE_TEST_MAIN(tst_KyPptConversionAsync)
#include "tst_KyPptConversionAsync.moc"
