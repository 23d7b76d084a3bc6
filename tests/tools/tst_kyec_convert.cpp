#include <KyScriptedProgram.h>
#include <KyTestEnvironment.h>
#include <KyTestMain.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#ifdef Q_OS_UNIX
#include <csignal>
#endif

using namespace Kyte;
using Kyte::Test::ScriptedProgram;

/** What a run of the program left behind. */
struct Run
{
    int code = -1; ///< -1 when it did not end by itself
    QString out;
    QString err;
};

class tst_kyec_convert : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void help();
    void wrongUsage_data();
    void wrongUsage();
    void images_areListed();
    void json_listsTheImages();
    void folder_isChosenByTheLibrary();
    void formerFiles_areNotListed();
    void anyFileName_isConverted_data();
    void anyFileName_isConverted();
    void video_isMade();
    void error_isPrinted_data();
    void error_isPrinted();
    void error_endsTheConverter();
    void missingConverter_isTold();
    void brokenConverter_isTold();
    void lostCompletion_isASuccess();
    void interrupt_aborts_data();
    void interrupt_aborts();
    void terminal_showsTheProgress();

private:
    Run start(const QStringList &arguments);

    QTemporaryDir m_programs; // the converter is looked for beside the program
    QString m_kyec;
    QString m_converter;
};

void tst_kyec_convert::initTestCase()
{
    m_kyec = m_programs.filePath("kyec");
    m_converter = m_programs.filePath("KyPptCnv.exe");
    QVERIFY(QFile::copy(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/kyec" KYTE_TEST_PROGRAM_SUFFIX), m_kyec));
}

void tst_kyec_convert::init()
{
    QFile::remove(m_converter);
    QVERIFY(QFile::copy(ScriptedProgram::program(), m_converter));
}

static Run finish(QProcess *process)
{
    Run run;
    if (process->waitForFinished() && process->exitStatus() == QProcess::NormalExit)
        run.code = process->exitCode();
    run.out = QString::fromUtf8(process->readAllStandardOutput().replace("\r\n", "\n"));
    run.err = QString::fromUtf8(process->readAllStandardError().replace("\r\n", "\n"));
    return run;
}

Run tst_kyec_convert::start(const QStringList &arguments)
{
    QProcess process;
    process.setWorkingDirectory(m_programs.path());
    process.start(m_kyec, QStringList{"convert"} + arguments);
    return finish(&process);
}

void tst_kyec_convert::help()
{
    const Run result = start({"--help"});
    QCOMPARE(result.code, 0);
    QVERIFY2(result.out.startsWith("Usage: kyec convert [OPTIONS] FILE\n"), qPrintable(result.out));
}

void tst_kyec_convert::wrongUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    QTest::newRow("no file") << QStringList() << "Which presentation?";
    QTest::newRow("empty file") << QStringList{""} << "Which presentation?";
    QTest::newRow("two files") << QStringList{"a", "b"} << "Unexpected argument 'b'.";
    QTest::newRow("empty folder") << QStringList{"a", "--out", ""} << "--out needs a folder.";
    QTest::newRow("unknown option") << QStringList{"a", "--quality"} << "Unknown option 'quality'.";
}

void tst_kyec_convert::wrongUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    const Run result = start(arguments);
    QCOMPARE(result.code, 2);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.startsWith("kyec: " + message), qPrintable(result.err));
}

void tst_kyec_convert::images_areListed()
{
    const ScriptedProgram presentation({"touch out/slide10.png", "touch out/slide2.png",
                                        "touch out/slide1.png", "touch out/other.png", "print [192]()",
                                        "exit 0"},
                                       "talk.pptx");
    const Run result = start({presentation.script(), "--out", presentation.path("out")});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.out,
             QString("3 files in %1\n  slide1.png\n  slide2.png\n  slide10.png\n")
                 .arg(QDir::toNativeSeparators(presentation.path("out"))));
    QCOMPARE(result.code, 0);
}

void tst_kyec_convert::json_listsTheImages()
{
    const ScriptedProgram presentation({"touch out/slide1.png", "print [192]()"}, "talk.pptx");
    const Run result = start({presentation.script(), "--json", "--out", presentation.path("out")});
    QCOMPARE(result.err, QString());
    QCOMPARE(QJsonDocument::fromJson(result.out.toUtf8()).object(),
             QJsonObject({{"folder", presentation.path("out")}, {"files", QJsonArray{"slide1.png"}}}));
    QCOMPARE(result.code, 0);
}

void tst_kyec_convert::folder_isChosenByTheLibrary()
{
    const ScriptedProgram presentation({"print [192]()"}, "a talk.pptx");
    const Run result = start({presentation.script()});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.out,
             QString("0 files in %1\n").arg(QDir::toNativeSeparators(m_programs.filePath("a talk_ppt"))));
    QVERIFY(QDir(m_programs.filePath("a talk_ppt")).exists());
}

void tst_kyec_convert::formerFiles_areNotListed()
{
    const ScriptedProgram presentation({"arguments out/slide1.png", "print [192]()"}, "talk.pptx");
    QVERIFY(QDir().mkdir(presentation.path("out")));
    for (const char *name : {"out/slide1.png", "out/slide2.png"})
        Test::writeFile(presentation.path(name), "former");
    const Run result = start({presentation.script(), "--out", presentation.path("out")});
    QVERIFY2(result.out.endsWith("\n  slide1.png\n"), qPrintable(result.out));
    QVERIFY2(result.out.startsWith("1 file in "), qPrintable(result.out));
}

void tst_kyec_convert::anyFileName_isConverted_data()
{
    QTest::addColumn<QString>("name");
#ifndef Q_OS_WIN // which allows no such name
    QTest::newRow("blanks and quotes") << " a \"talk\" .pptx";
#endif
    QTest::newRow("percent signs") << "100%1.pptx";
    QTest::newRow("other letters") << QStringLiteral("\u6620\u753b.pptx");
}

void tst_kyec_convert::anyFileName_isConverted()
{
    QFETCH(QString, name);
    const ScriptedProgram presentation({"touch out/slide1.png", "print [192]()"}, name);
    const Run result = start({presentation.script(), "--out", presentation.path("out")});
    QCOMPARE(result.err, QString());
    QVERIFY2(result.out.startsWith("1 file in "), qPrintable(result.out));
}

void tst_kyec_convert::video_isMade()
{
    const ScriptedProgram presentation({"arguments arguments", "print [110](start)", "wait go",
                                        "touch out/slide.mp4", "print [192]()", "exit 0"},
                                       "talk.pptx");
    // The notice that the video begins is an error to the library, and none to the user.
    presentation.touch("go");
    const Run result = start({presentation.script(), "--video", "--out", presentation.path("out")});
    QCOMPARE(result.err, QString());
    QVERIFY2(result.out.endsWith("\n  slide.mp4\n"), qPrintable(result.out));
    QCOMPARE(result.code, 0);
    QCOMPARE(presentation.lines("arguments").mid(3, 2), QStringList({"-t", "mp4"}));
}

void tst_kyec_convert::error_isPrinted_data()
{
    QTest::addColumn<QStringList>("script");
    QTest::addColumn<QString>("message");
    QTest::newRow("by a message") << QStringList{"print [203]()", "exit 203"} << "Can NOT open file.";
    QTest::newRow("in an image conversion, also the notice of a video")
        << QStringList{"print [110]()", "wait never"} << "Start to create video file.";
    QTest::newRow("crash") << QStringList{"crash"}
                           << "The process crashed some time after starting successfully.";
    QTest::newRow("without a word") << QStringList{"exit 5"}
                                    << "The converter ended without success, with the code 5.";
}

void tst_kyec_convert::error_isPrinted()
{
    QFETCH(QStringList, script);
    QFETCH(QString, message);
    const ScriptedProgram presentation(script, "talk.pptx");
    const Run result = start({presentation.script(), "--out", presentation.path("out")});
    QCOMPARE(result.err, QString("kyec: %1\n").arg(message));
    QCOMPARE(result.out, QString());
    QCOMPARE(result.code, 1);
}

void tst_kyec_convert::error_endsTheConverter()
{
    const ScriptedProgram presentation({"pid pid", "print [204]()", "wait never"}, "talk.pptx");
    const Run result = start({presentation.script(), "--out", presentation.path("out")});
    QCOMPARE(result.err, QString("kyec: Can NOT open slides.\n"));
    QCOMPARE(result.code, 1);
    QVERIFY(!Test::isRunning(presentation.processId()));
}

void tst_kyec_convert::missingConverter_isTold()
{
    QFile::remove(m_converter);
    const Run result = start({"/nowhere/talk.pptx"});
    QCOMPARE(result.err,
             QString("kyec: PowerPoint File Conversion Software is Not Found. You should "
                     "reinstall.\n"));
    QCOMPARE(result.code, 1);
    QVERIFY(QFile::copy(ScriptedProgram::program(), m_converter));
    QCOMPARE(start({"/nowhere/talk.pptx"}).err, QString("kyec: File \"talk.pptx\" is Not found.\n"));
}

void tst_kyec_convert::brokenConverter_isTold()
{
    QFile::remove(m_converter);
    Test::writeFile(m_converter, "no program");
    const ScriptedProgram presentation({}, "talk.pptx");
    const Run result = start({presentation.script(), "--out", presentation.path("out")});
    QVERIFY2(result.err.startsWith("kyec: The process failed to start."), qPrintable(result.err));
    QCOMPARE(result.err.count('\n'), 1);
    QCOMPARE(result.code, 1);
}

void tst_kyec_convert::lostCompletion_isASuccess()
{
    const ScriptedProgram presentation({"print [121](100)[192]()", "exit 0"}, "talk.pptx");
    const Run result = start({presentation.script(), "--out", presentation.path("out")});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
}

void tst_kyec_convert::interrupt_aborts_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<QString>("preparation");
#ifdef Q_OS_UNIX
    QTest::newRow("Ctrl-C") << SIGINT << "on-end ended";
    QTest::newRow("Ctrl-C, crash") << SIGINT << "touch x";
    QTest::newRow("request to end") << SIGTERM << "on-end ended";
#endif
}

void tst_kyec_convert::interrupt_aborts()
{
#ifdef Q_OS_UNIX
    QFETCH(int, signal);
    QFETCH(QString, preparation);
    const ScriptedProgram presentation({preparation, "pid pid", "print [101]()", "wait never"}, "talk.pptx");
    QProcess process;
    process.start(m_kyec, {"convert", presentation.script(), "--out", presentation.path("out")});
    QTRY_VERIFY(presentation.has("pid"));
    ::kill(pid_t(process.processId()), signal);
    const Run result = finish(&process);
    QCOMPARE(result.err, QString("kyec: The conversion was aborted.\n"));
    QCOMPARE(result.out, QString());
    QCOMPARE(result.code, 1);
    QVERIFY(!Test::isRunning(presentation.processId()));
    QCOMPARE(presentation.has("ended"), preparation.startsWith("on-end"));
#endif
}

void tst_kyec_convert::terminal_showsTheProgress()
{
    const QString script = QStandardPaths::findExecutable("script");
    if (script.isEmpty())
        QSKIP("No terminal without the program script");
    const ScriptedProgram presentation({"print [101]()", "wait go1", "print [121](50)", "wait go2",
                                        "print [121](100)", "wait go3", "print [192]()", "exit 0"},
                                       "talk.pptx");
    QProcess process;
    process.start(
        script,
        {"-qec",
         QString("%1 convert %2 --out %3").arg(m_kyec, presentation.script(), presentation.path("out")),
         "/dev/null"});
    const QString bar = QStringLiteral("\r[%1%2] %3 %  Creating image file...");
    QByteArray shown;
    const auto shows = [&](const QString &text) {
        shown += process.readAllStandardOutput();
        return shown.contains(text.toUtf8());
    };
    QTRY_VERIFY(shows("\rLoading PowerPoint Application..."));
    presentation.touch("go1");
    QTRY_VERIFY(shows(bar.arg(QString(15, '#'), QString(15, '.'), " 50")));
    presentation.touch("go2");
    QTRY_VERIFY(shows(bar.arg(QString(30, '#'), QString(), "100")));
    presentation.touch("go3");
    QVERIFY(process.waitForFinished());
    shown += process.readAllStandardOutput();
    // The line is gone when the result comes.
    QVERIFY2(shown.contains(" \r0 files in "), shown.constData());
    QCOMPARE(process.exitCode(), 0);
}

KYTE_TEST_MAIN(tst_kyec_convert)
#include "tst_kyec_convert.moc"
