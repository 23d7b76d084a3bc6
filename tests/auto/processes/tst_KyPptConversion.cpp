#include "KyConversionTest.h"

#include <KyTestEnvironment.h>
#include <KyTestMain.h>

using namespace Kyte;
using Kyte::Test::ConversionRecorder;
using Kyte::Test::ScriptedProgram;

static const QString CRASHED =
    QStringLiteral("error abort The process crashed some time after starting successfully.");

static QStringList debugLines;
static QtMessageHandler formerHandler = nullptr;

static void recordDebug(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtDebugMsg)
        debugLines.append(text);
    else
        formerHandler(type, context, text);
}

/** A presentation, which is a script to the converter, and a conversion of it. */
struct World
{
    explicit World(const QStringList &lines, const QString &name = QStringLiteral("talk.pptx"))
        : presentation(lines, name)
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

class tst_KyPptConversion : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void cleanupTestCase();

    void newObject_hasTheDefaults();
    void setters_replaceOneSettingEach();
    void messageCode_andPercent();

    void missingConverter_isTold();
    void missingInput_isTold_data();
    void missingInput_isTold();
    void inputThatIsNoFile_isTold();
    void outputFolder_isMadeWithItsParents();
    void outputFolderThatCannotBeMade_isTold();
    void nullOutputPath_isAFolderInTheCurrentDirectory_data();
    void nullOutputPath_isAFolderInTheCurrentDirectory();
    void emptyOutputPath_isTheCurrentDirectory();
    void relativeOutputPath_isInTheCurrentDirectory();

    void copy_isMadeFirst();
    void copy_replacesAFormerOne();
    void copy_ofAPresentationInTheFolder_isSkipped_data();
    void copy_ofAPresentationInTheFolder_isSkipped();
    void copyThatCannotBeRemoved_isTold();
    void copyThatCannotBeMade_isTold();
    void abortDuringTheCopy_endsBeforeTheConverter();
    void canceledDuringTheCopy_endsBeforeTheConverter();

    void commandLine_hasTheDefaults();
    void commandLine_hasTheSettings();
    void anyFileName_reachesTheConverter_data();
    void anyFileName_reachesTheConverter();
    void environment_isPassedOn();

    void report_data();
    void report();
    void chunkWithoutAReport_isSilent_data();
    void chunkWithoutAReport_isSilent();
    void onlyTheFirstMessageOfAChunk_counts();
    void wholeRun_isReportedInOrder();
    void startNotice_isAnErrorAndTheConversionGoesOn();
    void exitWithoutCompletion_completesOnce();
    void exitWithAnError_isSilent();
    void crash_isTold();
    void converterThatCannotBeRun_isTold();
    void debugLog_followsTheProcess();

    void abort_withoutAProcess();
    void abort_beforeStart_isForgotten();
    void abort_whileStarting();
    void abort_whileRunning();
    void abort_ofAConverterThatExitsProperly_completesNothing();
    void abort_afterTheEnd();
    void abort_inASlot_data();
    void abort_inASlot();
    void abort_endsThePresentationProgramsOnly();
    void abort_withoutARunningConverter_sparesThePresentationPrograms();

    void secondStart_endsTheFirstConverter();
    void restartInASlot_data();
    void restartInASlot();
    void deletionInASlot_data();
    void deletionInASlot();
    void deletion_endsTheConverter();
    void deletion_endsADeafConverter();
};

void tst_KyPptConversion::init()
{
    QVERIFY(Test::installConverter());
    debugLines.clear();
    formerHandler = qInstallMessageHandler(recordDebug);
}

void tst_KyPptConversion::cleanup()
{
    qInstallMessageHandler(formerHandler);
}

void tst_KyPptConversion::cleanupTestCase()
{
    Test::removeConverter();
}

void tst_KyPptConversion::newObject_hasTheDefaults()
{
    QObject parent;
    const KyPptConversion *conversion = new KyPptConversion("in", "out", true, &parent);
    QCOMPARE(conversion->parent(), &parent);
    QCOMPARE(conversion->width(), 1280);
    QCOMPARE(conversion->height(), 720);
    QCOMPARE(conversion->useTimingsAndNarrations(), true);
    QCOMPARE(conversion->defaultSlideDuration(), 5);
    QCOMPARE(conversion->vertResolution(), 720);
    QCOMPARE(conversion->framesPerSecond(), 30);
    QCOMPARE(conversion->quality(), 85);
    QCOMPARE(conversion->canceled(), false);
}

void tst_KyPptConversion::setters_replaceOneSettingEach()
{
    KyPptConversion conversion("in", "out", false);
    const auto settings = [&conversion]() {
        return QList<int>({conversion.width(), conversion.height(), conversion.useTimingsAndNarrations(),
                           conversion.defaultSlideDuration(), conversion.vertResolution(),
                           conversion.framesPerSecond(), conversion.quality(), conversion.canceled()});
    };
    conversion.setWidth(1);
    QCOMPARE(settings(), QList<int>({1, 720, 1, 5, 720, 30, 85, 0}));
    conversion.setHeight(-2);
    QCOMPARE(settings(), QList<int>({1, -2, 1, 5, 720, 30, 85, 0}));
    conversion.setUseTimingsAndNarrations(false);
    QCOMPARE(settings(), QList<int>({1, -2, 0, 5, 720, 30, 85, 0}));
    conversion.setDefaultSlideDuration(3);
    QCOMPARE(settings(), QList<int>({1, -2, 0, 3, 720, 30, 85, 0}));
    conversion.setVertResolution(4);
    QCOMPARE(settings(), QList<int>({1, -2, 0, 3, 4, 30, 85, 0}));
    conversion.setFramesPerSecond(0);
    QCOMPARE(settings(), QList<int>({1, -2, 0, 3, 4, 0, 85, 0}));
    conversion.setQuality(6);
    QCOMPARE(settings(), QList<int>({1, -2, 0, 3, 4, 0, 6, 0}));
    conversion.setCanceled(true);
    QCOMPARE(settings(), QList<int>({1, -2, 0, 3, 4, 0, 6, 1}));
}

void tst_KyPptConversion::messageCode_andPercent()
{
    QString message;
    QCOMPARE(KyPptConversion::getMessageCode("[111](45)", &message), 111);
    QCOMPARE(message, QString("(45"));
    QCOMPARE(KyPptConversion::getPercent(message), 45);
    QCOMPARE(KyPptConversion::getMessageCode("[abc](x)", &message), 0);
    QCOMPARE(KyPptConversion::getMessageCode("text", &message), 0);
    QCOMPARE(message, QString());
    QCOMPARE(KyPptConversion::getPercent(message), -1);
    QCOMPARE(KyPptConversion::getMessageCode("[111](45)", nullptr), 111);
}

void tst_KyPptConversion::missingConverter_isTold()
{
    Test::removeConverter();
    World world({});
    world.conversion->start();
    QCOMPARE(world.recorder.texts,
             QStringList({"error abort PowerPoint File Conversion Software is Not Found. You should "
                          "reinstall."}));
    QVERIFY(!QFile::exists(world.output));
}

void tst_KyPptConversion::missingInput_isTold_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("message");
    QTest::newRow("missing") << "/nowhere/the talk.pptx"
                             << "File \"the talk.pptx\" is Not found. ";
    QTest::newRow("percent") << "/nowhere/%1.pptx"
                             << "File \"%1.pptx\" is Not found. ";
    QTest::newRow("empty") << ""
                           << "File \"\" is Not found. ";
}

void tst_KyPptConversion::missingInput_isTold()
{
    QFETCH(QString, path);
    QFETCH(QString, message);
    const QTemporaryDir folder;
    KyPptConversion conversion(path, folder.filePath("out"), true);
    const ConversionRecorder recorder(&conversion);
    conversion.start();
    QCOMPARE(recorder.texts, QStringList{"error abort " + message});
    QVERIFY(!QFile::exists(folder.filePath("out")));
}

void tst_KyPptConversion::inputThatIsNoFile_isTold()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir("a talk"));
    KyPptConversion conversion(folder.filePath("a talk"), folder.filePath("out"), false);
    const ConversionRecorder recorder(&conversion);
    conversion.start();
    QCOMPARE(recorder.texts, QStringList{"error abort \"a talk\" is Not File."});
}

void tst_KyPptConversion::outputFolder_isMadeWithItsParents()
{
    const ScriptedProgram presentation({"arguments arguments"});
    const QString output = presentation.path("a/b c/%1");
    KyPptConversion conversion(presentation.script(), output, false);
    conversion.start();
    QVERIFY(QFileInfo(output).isDir());
    QTRY_VERIFY(presentation.has("arguments"));
    QCOMPARE(presentation.lines("arguments").value(6), output);
}

void tst_KyPptConversion::outputFolderThatCannotBeMade_isTold()
{
    const ScriptedProgram presentation({"touch started"});
    presentation.touch("file");
    for (const QString &output : {presentation.path("file"), presentation.path("file/folder")}) {
        KyPptConversion conversion(presentation.script(), output, true);
        const ConversionRecorder recorder(&conversion);
        conversion.start();
        QCOMPARE(recorder.texts, QStringList{"error abort Can Not create an output folder."});
        QVERIFY(!conversion.findChild<QProcess *>());
    }
}

/** Makes a folder the current directory while it lives. */
class CurrentDirectory
{
public:
    CurrentDirectory()
    {
        QDir::setCurrent(folder.path());
    }
    ~CurrentDirectory()
    {
        QDir::setCurrent(former);
    }

    QTemporaryDir folder;

private:
    QString former = QDir::currentPath();
};

void tst_KyPptConversion::nullOutputPath_isAFolderInTheCurrentDirectory_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("folder");
    QTest::newRow("plain") << "talk.pptx"
                           << "talk_ppt";
    QTest::newRow("two dots") << "talk.v2.pptx"
                              << "talk.v2_ppt";
    QTest::newRow("no extension") << "talk"
                                  << "talk_ppt";
    QTest::newRow("percent") << "100%1.pptx"
                             << "100%1_ppt";
    QTest::newRow("in a folder") << "a folder/talk.pptx"
                                 << "talk_ppt";
}

void tst_KyPptConversion::nullOutputPath_isAFolderInTheCurrentDirectory()
{
    QFETCH(QString, name);
    QFETCH(QString, folder);
    const CurrentDirectory current;
    const ScriptedProgram presentation({"arguments arguments", "print [192]()", "exit 0"}, name);
    KyPptConversion conversion(presentation.script(), QString(), false);
    const ConversionRecorder recorder(&conversion);
    conversion.start();
    QVERIFY(QFileInfo(current.folder.filePath(folder)).isDir());
    QVERIFY(!presentation.has(folder));
    QTRY_VERIFY(recorder.texts.contains("finished"));
    QCOMPARE(presentation.lines("arguments").value(6), current.folder.filePath(folder));
    // What was given is told, not what was made of it.
    QTRY_COMPARE(recorder.texts.filter("completed"), QStringList({"completed (null)", "completed (null)"}));
}

void tst_KyPptConversion::emptyOutputPath_isTheCurrentDirectory()
{
    const CurrentDirectory current;
    const ScriptedProgram presentation({"arguments arguments"}, "talk.pptx");
    KyPptConversion conversion(presentation.script(), "", false);
    const ConversionRecorder recorder(&conversion);
    conversion.start();
    QTRY_COMPARE(recorder.texts, QStringList{"completed "});
    QCOMPARE(presentation.lines("arguments").value(6), current.folder.path());
    QCOMPARE(Test::namesIn(current.folder.path()), QStringList());
}

void tst_KyPptConversion::relativeOutputPath_isInTheCurrentDirectory()
{
    const CurrentDirectory current;
    const ScriptedProgram presentation({"arguments arguments"}, "talk.pptx");
    KyPptConversion conversion(presentation.script(), "a/b", false);
    const ConversionRecorder recorder(&conversion);
    conversion.start();
    QTRY_COMPARE(recorder.texts, QStringList{"completed a/b"});
    QCOMPARE(presentation.lines("arguments").value(6), current.folder.filePath("a/b"));
}

static const QString COPYING = QStringLiteral("info Copying the PowerPoint file...");

void tst_KyPptConversion::copy_isMadeFirst()
{
    const ScriptedProgram presentation({"arguments arguments"}, "talk.pptx");
    KyPptConversion conversion(presentation.script(), presentation.path("out"), true);
    ConversionRecorder recorder(&conversion);
    bool isEarly = false;
    recorder.listener = [&](const QString &text) {
        if (text == COPYING)
            isEarly = !presentation.has("out/talk.pptx");
    };
    conversion.start();
    QCOMPARE(presentation.read("out/talk.pptx"), presentation.read("talk.pptx"));
    QVERIFY(isEarly);
    QTRY_COMPARE(recorder.texts, QStringList({COPYING, "completed " + presentation.path("out")}));
    // The converter reads the original.
    QCOMPARE(presentation.lines("arguments").value(2), presentation.script());
}

void tst_KyPptConversion::copy_replacesAFormerOne()
{
    const ScriptedProgram presentation({"exit 0"}, "talk.pptx");
    QVERIFY(QDir().mkdir(presentation.path("out")));
    Test::writeFile(presentation.path("out/talk.pptx"), "former");
    KyPptConversion conversion(presentation.script(), presentation.path("out"), true);
    conversion.start();
    QCOMPARE(presentation.read("out/talk.pptx"), QByteArray("exit 0"));
}

void tst_KyPptConversion::copy_ofAPresentationInTheFolder_isSkipped_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("output");
    QTest::newRow("the same path") << "talk.pptx"
                                   << ".";
    QTest::newRow("by a detour") << "talk.pptx"
                                 << "folder/..";
#ifndef Q_OS_WIN // where Qt makes no links
    QTest::newRow("folder by a link") << "talk.pptx"
                                      << "folder/link";
    QTest::newRow("presentation by a link") << "folder/link/talk.pptx"
                                            << ".";
    QTest::newRow("link beside a link") << "folder/talk.pptx"
                                        << ".";
#endif
}

void tst_KyPptConversion::copy_ofAPresentationInTheFolder_isSkipped()
{
    QFETCH(QString, input);
    QFETCH(QString, output);
    const ScriptedProgram presentation({"arguments ../arguments"}, "in/talk.pptx");
    QVERIFY(QDir().mkdir(presentation.path("folder")));
    QVERIFY(QFile::link(presentation.path("."), presentation.path("folder/link")));
    QVERIFY(QFile::link(presentation.path("talk.pptx"), presentation.path("folder/talk.pptx")));
    const QByteArray content = presentation.read("talk.pptx");

    KyPptConversion conversion(presentation.path(input), presentation.path(output), true);
    const ConversionRecorder recorder(&conversion);
    conversion.start();

    QCOMPARE(presentation.read("talk.pptx"), content);
    QTRY_COMPARE(recorder.texts, QStringList({COPYING, "completed " + presentation.path(output)}));
}

void tst_KyPptConversion::copyThatCannotBeRemoved_isTold()
{
    const ScriptedProgram presentation({"touch started"}, "talk.pptx");
    QVERIFY(QDir().mkpath(presentation.path("out/talk.pptx")));
    KyPptConversion conversion(presentation.script(), presentation.path("out"), true);
    const ConversionRecorder recorder(&conversion);
    conversion.start();
    QCOMPARE(recorder.texts, QStringList({COPYING, "error abort Can Not remove the PowerPoint file."}));
    QVERIFY(!conversion.findChild<QProcess *>());
}

void tst_KyPptConversion::copyThatCannotBeMade_isTold()
{
    const Test::SmallDisk disk(64);
    if (!disk.isValid())
        QSKIP("No small disk here");
    const ScriptedProgram presentation({"touch started", QString(100000, 'x')}, "talk.pptx");
    KyPptConversion conversion(presentation.script(), disk.path(), true);
    const ConversionRecorder recorder(&conversion);
    conversion.start();
    QCOMPARE(recorder.texts, QStringList({COPYING, "error abort Can Not copy the PowerPoint file."}));
    QVERIFY(!conversion.findChild<QProcess *>());
    QCOMPARE(Test::namesIn(disk.path()), QStringList());
}

void tst_KyPptConversion::abortDuringTheCopy_endsBeforeTheConverter()
{
    const ScriptedProgram presentation({"touch started"}, "talk.pptx");
    KyPptConversion conversion(presentation.script(), presentation.path("out"), true);
    ConversionRecorder recorder(&conversion);
    recorder.listener = [&](const QString &text) {
        if (text == COPYING)
            conversion.abort();
    };
    conversion.start();
    // Once for the abort itself, once for the preparation that finds it.
    QCOMPARE(recorder.texts, QStringList({COPYING, "aborted", "aborted"}));
    QVERIFY(!conversion.findChild<QProcess *>());
}

void tst_KyPptConversion::canceledDuringTheCopy_endsBeforeTheConverter()
{
    const ScriptedProgram presentation({"touch started"}, "talk.pptx");
    KyPptConversion conversion(presentation.script(), presentation.path("out"), true);
    ConversionRecorder recorder(&conversion);
    recorder.listener = [&](const QString &) {
        conversion.setCanceled(true);
    };
    conversion.start();
    QCOMPARE(recorder.texts, QStringList({COPYING, "aborted"}));
    QVERIFY(!conversion.findChild<QProcess *>());
}

static QStringList argumentsOf(const World &world)
{
    return world.presentation.lines("arguments").mid(1);
}

void tst_KyPptConversion::commandLine_hasTheDefaults()
{
    World world({"arguments arguments"});
    world.conversion->start();
    QTRY_VERIFY(world.presentation.has("arguments"));
    QCOMPARE(argumentsOf(world), QStringList({"-i",  world.presentation.script(),
                                              "-t",  "png",
                                              "-d",  world.output,
                                              "-o",  "slide",
                                              "-w",  "1280",
                                              "-h",  "720",
                                              "-sd", "5",
                                              "-vr", "720",
                                              "-fs", "30",
                                              "-qt", "85",
                                              "-ut", "true"}));
}

void tst_KyPptConversion::commandLine_hasTheSettings()
{
    World world({"arguments arguments"});
    world.conversion->setWidth(1);
    world.conversion->setHeight(-2);
    world.conversion->setDefaultSlideDuration(3);
    world.conversion->setVertResolution(4);
    world.conversion->setFramesPerSecond(5);
    world.conversion->setQuality(6);
    world.conversion->setUseTimingsAndNarrations(false);
    QCOMPARE(world.conversion->property("imageFormat").toString(), QString("png"));
    QVERIFY(world.conversion->setProperty("imageFormat", "mp4"));
    world.conversion->start();
    QTRY_VERIFY(world.presentation.has("arguments"));
    QCOMPARE(argumentsOf(world).mid(2, 2), QStringList({"-t", "mp4"}));
    QCOMPARE(
        argumentsOf(world).mid(8),
        QStringList({"-w", "1", "-h", "-2", "-sd", "3", "-vr", "4", "-fs", "5", "-qt", "6", "-ut", "false"}));
}

void tst_KyPptConversion::anyFileName_reachesTheConverter_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("blanks") << " a  talk .pptx";
#ifndef Q_OS_WIN // which allows no such names
    QTest::newRow("quotes") << "\"a\" \"\"talk\"";
    QTest::newRow("another argument") << "a\" -o other \"b.pptx";
    QTest::newRow("back-slash") << "a\\b\\";
#endif
    QTest::newRow("percent signs") << "%1 %2 100%.pptx";
    QTest::newRow("dash") << "-t";
    QTest::newRow("other letters") << QStringLiteral("größe \u6620\u753b \U0001F600.pptx");
}

void tst_KyPptConversion::anyFileName_reachesTheConverter()
{
    QFETCH(QString, name);
    World world({"arguments ../arguments"}, name + "/" + name);
    world.conversion->start();
    QTRY_VERIFY(world.presentation.has("../arguments"));
    const QStringList arguments = world.presentation.lines("../arguments").mid(1);
    QCOMPARE(arguments.size(), 22);
    QCOMPARE(arguments.mid(0, 7),
             QStringList({"-i", world.presentation.script(), "-t", "png", "-d", world.output, "-o"}));
}

void tst_KyPptConversion::environment_isPassedOn()
{
    World world({"environment value KYTE_TEST"});
    qputenv("KYTE_TEST", "from the application");
    world.conversion->start();
    qunsetenv("KYTE_TEST");
    QTRY_COMPARE(world.presentation.read("value"), QByteArray("from the application"));
}

void tst_KyPptConversion::report_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QStringList>("reports");
    const auto add = [](const char *message, const QStringList &reports) {
        QTest::newRow(message) << message << reports;
    };
    add("[101]()", {"info Loading PowerPoint Application..."});
    add("[102]()", {"info PowerPoint Application has been loaded."});
    add("[103](12)", {"info The number of slides: 12"});
    add("[103]()", {"info The number of slides: -1"});
    add("[110]()", {"error abort Start to create video file."});
    add("[111](45)", {"progress 45", "info Creating video file..."});
    add("[112](00:01:30)", {"info Total Time: <HH:mm:ss>"});
    add("[120]()", {"info Start to create image file."});
    add("[121](45)", {"progress 45", "info Creating image file..."});
    add("[121]()", {"progress -1", "info Creating image file..."});
    add("[200](3)", {"error abort Checking Command Line Arguments is failure. (3)"});
    add("[201]()", {"error abort PowerPoint Application has NOT been loaded."});
    add("[202]()", {"error abort Can NOT get a presentaion object."});
    add("[203]()", {"error abort Can NOT open file."});
    add("[204]()", {"error abort Can NOT open slides."});
    add("[205]()", {"error abort Can NOT get the number of slides."});
    add("[206]()", {"error abort The PPT file has no slide."});
    add("[210]()", {"error abort Can NOT start to create video file."});
    add("[211]()", {"error abort Video file creation was failed."});
    add("[220](3)", {"error abort The slide of (3 creation is failure."});
    add("[220](%1 \xe6\x98\xa0)",
        {QStringLiteral("error abort The slide of (%1 \u6620 creation is failure.")});
}

void tst_KyPptConversion::report()
{
    QFETCH(QString, message);
    QFETCH(QStringList, reports);
    World world({"print " + message, "exit 1"});
    QSignalSpy ends(world.conversion, SIGNAL(finished()));
    world.conversion->start();
    QTRY_COMPARE(world.recorder.texts, reports);
    QTRY_COMPARE(world.conversion->findChild<QProcess *>()->state(), QProcess::NotRunning);
    QCOMPARE(world.recorder.texts, reports);
}

void tst_KyPptConversion::chunkWithoutAReport_isSilent_data()
{
    QTest::addColumn<QString>("chunk");
    for (const char *chunk : {"text", "[abc](x)", "[0](x)", "[100](x)", "[104](x)", "[193](x)", "[221](x)",
                              "[-201](x)", "(101)", "[]", "[1[01]()"})
        QTest::newRow(chunk) << chunk;
}

void tst_KyPptConversion::chunkWithoutAReport_isSilent()
{
    QFETCH(QString, chunk);
    World world({"print " + chunk, "exit 1"});
    world.conversion->start();
    QTRY_COMPARE(debugLines.filter("exitCode:").size(), 1);
    QCOMPARE(debugLines.filter("onReadyRead").size(), 1);
    QCOMPARE(world.recorder.texts, QStringList());
}

void tst_KyPptConversion::onlyTheFirstMessageOfAChunk_counts()
{
    World world({"print [101]()[102]()[192]()", "exit 0"});
    world.conversion->start();
    QTRY_COMPARE(world.recorder.texts.size(), 2);
    QTest::qWait(50);
    // The completion by message went down with the second and third message.
    QCOMPARE(world.recorder.texts,
             QStringList({"info Loading PowerPoint Application...", "completed " + world.output}));
}

/** Lets the converter go on to its next chunk when a signal has come. */
static void goOnAfterEachSignal(World *world)
{
    world->recorder.listener = [world](const QString &) {
        world->presentation.touch(QString("go%1").arg(world->recorder.texts.size()));
    };
}

void tst_KyPptConversion::wholeRun_isReportedInOrder()
{
    World world({"print [101](loading)", "wait go1", "print [103](1)", "wait go2", "print [121](100)",
                 "wait go4", "print [192](done)", "wait go7", "exit 0"});
    goOnAfterEachSignal(&world);
    world.conversion->start();
    QTRY_COMPARE(world.recorder.texts,
                 QStringList({"info Loading PowerPoint Application...", "info The number of slides: 1",
                              "progress 100", "info Creating image file...", "info Creation Finished.",
                              "completed " + world.output, "finished", "completed " + world.output}));
}

void tst_KyPptConversion::startNotice_isAnErrorAndTheConversionGoesOn()
{
    World world({"print [110](start)", "wait go1", "print [111](7)", "wait go3", "print [192]()", "exit 0"});
    goOnAfterEachSignal(&world);
    world.conversion->start();
    QTRY_COMPARE(world.recorder.texts.size(), 7);
    QCOMPARE(
        world.recorder.texts.mid(0, 5),
        QStringList({"error abort Start to create video file.", "progress 7", "info Creating video file...",
                     "info Creation Finished.", "completed " + world.output}));
    QVERIFY(world.recorder.texts.contains("finished"));
}

void tst_KyPptConversion::exitWithoutCompletion_completesOnce()
{
    World world({"exit 0"});
    world.conversion->start();
    QTRY_COMPARE(world.recorder.texts, QStringList{"completed " + world.output});
    QTest::qWait(50);
    QCOMPARE(world.recorder.texts, QStringList{"completed " + world.output});
}

void tst_KyPptConversion::exitWithAnError_isSilent()
{
    World world({"exit 201"});
    world.conversion->start();
    QTRY_COMPARE(debugLines.filter("exitCode: 201").size(), 1);
    QTest::qWait(50);
    QCOMPARE(world.recorder.texts, QStringList());
}

void tst_KyPptConversion::crash_isTold()
{
    World world({"crash"});
    world.conversion->start();
    QTRY_COMPARE(debugLines.filter("exitCode:").size(), 1);
    QCOMPARE(world.recorder.texts, QStringList{CRASHED});
}

void tst_KyPptConversion::converterThatCannotBeRun_isTold()
{
    Test::removeConverter();
    Test::writeFile(Test::converterPath(), "no program");
    World world({});
    world.conversion->start();
    QTRY_COMPARE(
        world.recorder.texts,
        QStringList({"error abort The process failed to start. Either the invoked program is missing, "
                     "or you may have insufficient permissions to invoke the program."}));
    QVERIFY(QFileInfo(world.output).isDir());
}

void tst_KyPptConversion::debugLog_followsTheProcess()
{
    World world({"wait running", "print x", "exit 3"});
    world.conversion->start();
    QTRY_COMPARE(debugLines.size(), 2);
    world.presentation.touch("running");
    QTRY_COMPARE(
        debugLines,
        QStringList({"ProcessState Changed: QProcess::Starting", "ProcessState Changed: QProcess::Running",
                     "onReadyRead", "ProcessState Changed: QProcess::NotRunning",
                     "exitCode: 3  status: QProcess::NormalExit"}));
}

void tst_KyPptConversion::abort_withoutAProcess()
{
    World world({});
    world.conversion->abort();
    QCOMPARE(world.recorder.texts, QStringList{"aborted"});
    QVERIFY(world.conversion->canceled());
    world.conversion->abort();
    QCOMPARE(world.recorder.texts, QStringList({"aborted", "aborted"}));
}

void tst_KyPptConversion::abort_beforeStart_isForgotten()
{
    World world({"exit 0"});
    world.conversion->abort();
    world.conversion->start();
    QVERIFY(!world.conversion->canceled());
    QTRY_COMPARE(world.recorder.texts, QStringList({"aborted", "completed " + world.output}));
}

void tst_KyPptConversion::abort_whileStarting()
{
    World world({"pid pid", "touch started", "wait never"});
    world.conversion->start();
    QProcess *process = world.conversion->findChild<QProcess *>();
    QCOMPARE(process->state(), QProcess::Starting);

    world.conversion->abort();

    QCOMPARE(world.recorder.texts, QStringList{"aborted"});
    QTRY_COMPARE(process->state(), QProcess::NotRunning);
    QVERIFY(!world.presentation.isInProcessTable());
    QCOMPARE(world.recorder.texts, QStringList({"aborted", CRASHED}));
}

void tst_KyPptConversion::abort_whileRunning()
{
    World world({"pid pid", "print [101]()", "wait never"});
    world.recorder.listener = [&](const QString &text) {
        if (text.startsWith("info"))
            world.conversion->abort();
    };
    world.conversion->start();
    QTRY_COMPARE(world.recorder.texts,
                 QStringList({"info Loading PowerPoint Application...", "aborted", CRASHED}));
    QTRY_VERIFY(!world.presentation.isInProcessTable());
    QVERIFY(world.conversion->canceled());
}

void tst_KyPptConversion::abort_ofAConverterThatExitsProperly_completesNothing()
{
    World world({"pid pid", "print [101]()", "wait go", "exit 0"});
    QSignalSpy information(world.conversion, SIGNAL(informationUpdated(QString)));
    world.conversion->start();
    QTRY_COMPARE(information.size(), 1);
    // Before it is asked to end it ends by itself: the abort is what counts.
    world.conversion->setCanceled(true);
    world.presentation.touch("go");
    QTRY_COMPARE(debugLines.filter("exitCode: 0").size(), 1);
    QCOMPARE(world.recorder.texts, QStringList{"info Loading PowerPoint Application..."});
}

void tst_KyPptConversion::abort_afterTheEnd()
{
    World world({"exit 1"});
    world.conversion->start();
    QTRY_COMPARE(debugLines.filter("exitCode: 1").size(), 1);
    world.conversion->abort();
    QCOMPARE(world.recorder.texts, QStringList{"aborted"});
}

/** Scripts that lead to a signal, and the beginning of its text. */
static void addSignals()
{
    QTest::addColumn<QStringList>("script");
    QTest::addColumn<QString>("signal");
    const QString pid = "pid pid";
    const QString endless = "wait never";
    QTest::newRow("copying") << QStringList{pid, endless} << COPYING;
    QTest::newRow("information") << QStringList{pid, "print [101]()", endless} << "info Loading";
    QTest::newRow("progress") << QStringList{pid, "print [121](4)", endless} << "progress";
    QTest::newRow("information after progress")
        << QStringList{pid, "print [121](4)", endless} << "info Creating";
    QTest::newRow("error by message") << QStringList{pid, "print [203]()", endless} << "error";
    QTest::newRow("completion by message, information")
        << QStringList{pid, "print [192]()", endless} << "info Creation";
    QTest::newRow("completion by message") << QStringList{pid, "print [192]()", endless} << "completed";
    QTest::newRow("finished") << QStringList{pid, "print [192]()", endless} << "finished";
    QTest::newRow("completion by exit") << QStringList{pid, "exit 0"} << "completed";
    QTest::newRow("crash") << QStringList{pid, "crash"} << "error";
}

void tst_KyPptConversion::abort_inASlot_data()
{
    addSignals();
}

void tst_KyPptConversion::abort_inASlot()
{
    QFETCH(QStringList, script);
    QFETCH(QString, signal);
    const ScriptedProgram presentation(script, "talk.pptx");
    KyPptConversion conversion(presentation.script(), presentation.path("out"), true);
    ConversionRecorder recorder(&conversion);
    recorder.listener = [&](const QString &text) {
        if (text.startsWith(signal) && !conversion.canceled())
            conversion.abort();
    };
    conversion.start();
    QTRY_VERIFY(recorder.texts.contains("aborted"));
    QProcess *process = conversion.findChild<QProcess *>();
    QTRY_VERIFY(!process || process->state() == QProcess::NotRunning);
    QVERIFY(!presentation.isInProcessTable());
}

/** A running program called \a name. */
static std::unique_ptr<QProcess> startNamed(const QTemporaryDir &folder, const QString &name)
{
    const QString program = folder.filePath(name);
    std::unique_ptr<QProcess> process = std::make_unique<QProcess>();
    if (QFile::copy(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/ky_sleeper" KYTE_TEST_PROGRAM_SUFFIX), program)) {
        process->start(program, QStringList());
        process->waitForReadyRead();
    }
    return process;
}

void tst_KyPptConversion::abort_endsThePresentationProgramsOnly()
{
    const QTemporaryDir folder;
    const std::unique_ptr<QProcess> first = startNamed(folder, "POWERPNT");
    const std::unique_ptr<QProcess> second = startNamed(folder, "POWERPNT.EXE");
    std::vector<std::unique_ptr<QProcess>> others;
    for (const char *name : {"POWERPNT2", "XPOWERPNT", "powerpnt", "POWERPNT.com", "KyPptCnv.exe"})
        others.push_back(startNamed(folder, name));

    World world({"pid pid", "print [101]()", "wait never"});
    QSignalSpy information(world.conversion, SIGNAL(informationUpdated(QString)));
    world.conversion->start();
    QTRY_COMPARE(information.size(), 1);
    QCOMPARE(first->state(), QProcess::Running);
    QCOMPARE(second->state(), QProcess::Running);

    world.conversion->abort();

    QTRY_COMPARE(first->state(), QProcess::NotRunning);
    QTRY_COMPARE(second->state(), QProcess::NotRunning);
    QTRY_VERIFY(!world.presentation.isInProcessTable());
    for (const std::unique_ptr<QProcess> &other : others) {
        QCOMPARE(other->state(), QProcess::Running);
        other->closeWriteChannel();
        QVERIFY(other->waitForFinished());
        QCOMPARE(other->exitStatus(), QProcess::NormalExit);
    }
}

void tst_KyPptConversion::abort_withoutARunningConverter_sparesThePresentationPrograms()
{
    const QTemporaryDir folder;
    const std::unique_ptr<QProcess> program = startNamed(folder, "POWERPNT");
    World world({});
    world.conversion->abort();
    QCOMPARE(world.recorder.texts, QStringList{"aborted"});
    program->closeWriteChannel();
    QVERIFY(program->waitForFinished());
    QCOMPARE(program->exitStatus(), QProcess::NormalExit);
}

void tst_KyPptConversion::secondStart_endsTheFirstConverter()
{
    World world({"pid pid", "print [101]()", "wait go", "exit 0"});
    QSignalSpy information(world.conversion, SIGNAL(informationUpdated(QString)));
    world.conversion->start();
    QTRY_COMPARE(information.size(), 1);
    const qint64 first = world.presentation.processId();

    world.conversion->start();

    QVERIFY(!Test::isInProcessTable(first));
    QTRY_COMPARE(information.size(), 2);
    world.presentation.touch("go");
    QTRY_COMPARE(world.recorder.texts,
                 QStringList({"info Loading PowerPoint Application...",
                              "info Loading PowerPoint Application...", "completed " + world.output}));
}

void tst_KyPptConversion::restartInASlot_data()
{
    addSignals();
}

void tst_KyPptConversion::restartInASlot()
{
    QFETCH(QStringList, script);
    QFETCH(QString, signal);
    const ScriptedProgram presentation(script, "talk.pptx");
    KyPptConversion conversion(presentation.script(), presentation.path("out"), false);
    if (signal == COPYING)
        QSKIP("Nothing runs yet");
    ConversionRecorder recorder(&conversion);
    qint64 first = 0;
    recorder.listener = [&](const QString &text) {
        if (!text.startsWith(signal) || first)
            return;
        first = presentation.processId();
        Test::writeFile(presentation.script(), "pid pid\nprint [103](77)\nexit 1");
        conversion.start();
    };
    conversion.start();
    QTRY_VERIFY(recorder.texts.contains("info The number of slides: 77"));
    QTRY_VERIFY(!Test::isInProcessTable(first));
    QTRY_COMPARE(conversion.findChild<QProcess *>()->state(), QProcess::NotRunning);
    QCOMPARE(conversion.findChildren<QProcess *>().size(), 1);
}

void tst_KyPptConversion::deletionInASlot_data()
{
    addSignals();
    QTest::newRow("aborted") << QStringList{"pid pid", "print [101]()", "wait never"} << "aborted";
    QTest::newRow("missing program") << QStringList() << "error";
}

void tst_KyPptConversion::deletionInASlot()
{
    QFETCH(QStringList, script);
    QFETCH(QString, signal);
    if (script.isEmpty())
        Test::removeConverter();
    const ScriptedProgram presentation(script, "talk.pptx");
    QPointer<KyPptConversion> conversion(
        new KyPptConversion(presentation.script(), presentation.path("out"), true));
    ConversionRecorder recorder(conversion);
    recorder.listener = [&](const QString &text) {
        if (text.startsWith(signal))
            delete conversion.data();
        else if (signal == "aborted" && text.startsWith("info Loading"))
            conversion->abort();
    };
    conversion->start();
    QTRY_VERIFY(!conversion);
    QVERIFY(recorder.texts.last().startsWith(signal));
    QTRY_VERIFY(!presentation.isInProcessTable());
}

void tst_KyPptConversion::deletion_endsTheConverter()
{
    World world({"on-end ended", "pid pid", "print [101]()", "wait never"});
    QSignalSpy information(world.conversion, SIGNAL(informationUpdated(QString)));
    world.conversion->start();
    QTRY_COMPARE(information.size(), 1);
    world.recorder.texts.clear();

    delete world.conversion.data();

    QVERIFY(world.presentation.has("ended"));
    QVERIFY(!world.presentation.isInProcessTable());
    QCOMPARE(world.recorder.texts, QStringList());
}

void tst_KyPptConversion::deletion_endsADeafConverter()
{
    World world({"ignore-end", "pid pid", "print [101]()", "wait never"});
    QSignalSpy information(world.conversion, SIGNAL(informationUpdated(QString)));
    world.conversion->start();
    QTRY_COMPARE(information.size(), 1);
    delete world.conversion.data();
    QVERIFY(!world.presentation.isInProcessTable());
}

KYTE_TEST_MAIN(tst_KyPptConversion)
#include "tst_KyPptConversion.moc"
