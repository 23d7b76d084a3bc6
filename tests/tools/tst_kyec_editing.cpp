#include <KyTestEnvironment.h>
#include <KyTestMain.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

using namespace Kyte;

/** What a run of the program left behind. */
struct Run
{
    int code = -1; ///< -1 when it did not end by itself
    QString out;
    QString err;
};

class tst_kyec_editing : public QObject
{
    Q_OBJECT

private slots:
    void help_data();
    void help();
    void wrongUsage_data();
    void wrongUsage();

    void uniqueName_data();
    void uniqueName();
    void uniqueName_ofAFileThatCannotBeRead_fails_data();
    void uniqueName_ofAFileThatCannotBeRead_fails();

    void duration_data();
    void duration();

    void watchProbe_ofAFolder_succeeds();
    void watchProbe_ofAnythingElse_fails_data();
    void watchProbe_ofAnythingElse_fails();
};

static Run start(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/kyec"), arguments);
    Run run;
    if (process.waitForFinished() && process.exitStatus() == QProcess::NormalExit)
        run.code = process.exitCode();
    run.out = QString::fromUtf8(process.readAllStandardOutput().replace("\r\n", "\n"));
    run.err = QString::fromUtf8(process.readAllStandardError().replace("\r\n", "\n"));
    return run;
}

void tst_kyec_editing::help_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("begin");
    QTest::newRow("unique-name") << "unique-name"
                                 << "Usage: kyec unique-name [OPTIONS] NAME --used FILE\n";
    QTest::newRow("duration") << "duration"
                              << "Usage: kyec duration [OPTIONS] SECONDS\n";
    QTest::newRow("watch-probe") << "watch-probe"
                                 << "Usage: kyec watch-probe [OPTIONS] FOLDER\n";
}

void tst_kyec_editing::help()
{
    QFETCH(QString, command);
    QFETCH(QString, begin);
    const Run result = start({command, "--help"});
    QCOMPARE(result.code, 0);
    QVERIFY2(result.out.startsWith(begin), qPrintable(result.out));
    QVERIFY(start({"--help"}).out.contains(QStringLiteral("\n  %1 ").arg(command)));
}

void tst_kyec_editing::wrongUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    QTest::newRow("no name") << QStringList{"unique-name", "--used", "x"} << "Which name?";
    QTest::newRow("no file") << QStringList{"unique-name", "x"} << "--used FILE is needed.";
    QTest::newRow("two names") << QStringList{"unique-name", "x", "y", "--used", "x"}
                               << "Unexpected argument 'y'.";
    QTest::newRow("no seconds") << QStringList{"duration", "--plus"} << "How many seconds?";
    QTest::newRow("no number") << QStringList{"duration", "1,5"} << "'1,5' is no number of seconds.";
    QTest::newRow("empty number") << QStringList{"duration", ""} << "'' is no number of seconds.";
    QTest::newRow("two numbers") << QStringList{"duration", "-1", "-2"} << "Unexpected argument '-2'.";
    QTest::newRow("no option") << QStringList{"duration", "1", "-p"} << "Unknown option 'p'.";
    QTest::newRow("no folder") << QStringList{"watch-probe"} << "Which folder?";
    QTest::newRow("empty folder") << QStringList{"watch-probe", ""} << "Which folder?";
}

void tst_kyec_editing::wrongUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    const Run result = start(arguments);
    QCOMPARE(result.code, 2);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.startsWith(QStringLiteral("kyec: ") + message), qPrintable(result.err));
}

void tst_kyec_editing::uniqueName_data()
{
    QTest::addColumn<QByteArray>("used");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");

    QTest::newRow("free") << QByteArray("Other\n") << "Screen"
                          << "Screen\n";
    QTest::newRow("empty file") << QByteArray() << "Screen"
                                << "Screen\n";
    QTest::newRow("taken") << QByteArray("Screen\nScreen (1)\n") << "Screen"
                           << "Screen (2)\n";
    QTest::newRow("last line without an end") << QByteArray("Screen\nScreen (1)") << "Screen (1)"
                                              << "Screen (2)\n";
    QTest::newRow("lines of Windows") << QByteArray("\xef\xbb\xbfScreen\r\nScreen (1)\r\n") << "Screen"
                                      << "Screen (2)\n";
    QTest::newRow("blanks count") << QByteArray("A  B (3)\nA B\n") << "A  B (3)"
                                  << "A B (1)\n";
    QTest::newRow("other alphabets") << QStringLiteral("\u6620\u753b\n").toUtf8()
                                     << QStringLiteral("\u6620\u753b")
                                     << QStringLiteral("\u6620\u753b (1)\n");
}

void tst_kyec_editing::uniqueName()
{
    QFETCH(QByteArray, used);
    QFETCH(QString, name);
    QFETCH(QString, expected);
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("used names"));
    Test::writeFile(file, used);

    const Run result = start({"unique-name", name, "--used", file});

    QCOMPARE(result.err, QString());
    QCOMPARE(result.out, expected);
    QCOMPARE(result.code, 0);
    QCOMPARE(Test::readFile(file), used);
}

void tst_kyec_editing::uniqueName_ofAFileThatCannotBeRead_fails_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("missing") << QStringLiteral("none");
    QTest::newRow("folder") << QStringLiteral(".");
    if (QFile::exists(QStringLiteral("/dev/zero")))
        QTest::newRow("device") << QStringLiteral("/dev/zero");
}

void tst_kyec_editing::uniqueName_ofAFileThatCannotBeRead_fails()
{
    QFETCH(QString, file);
    const QTemporaryDir folder;
    const QString path = QDir(folder.path()).absoluteFilePath(file);

    const Run result = start({"unique-name", "Screen", "--used", path});

    QCOMPARE(result.code, 1);
    QCOMPARE(result.out, QString());
    QCOMPARE(result.err,
             QStringLiteral("kyec: The file cannot be read: %1\n").arg(QDir::toNativeSeparators(path)));
}

void tst_kyec_editing::duration_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("expected");
    QTest::newRow("seconds") << QStringList{"59.99"} << "00:00:59.9\n";
    QTest::newRow("plus") << QStringList{"65.5", "--plus"} << "00:01:05.5+\n";
    QTest::newRow("plus first") << QStringList{"--plus", "360000"} << "100:00:00.0+\n";
    QTest::newRow("negative") << QStringList{"-0.1"} << "--:--:--\n";
    QTest::newRow("negative, plus") << QStringList{"-1e3", "--plus"} << "--:--:--\n";
    QTest::newRow("negative behind the options") << QStringList{"--", "-1"} << "--:--:--\n";
    QTest::newRow("no number") << QStringList{"nan"} << "--:--:--\n";
    QTest::newRow("infinity") << QStringList{"inf"} << "596523:14:07.9\n";
}

void tst_kyec_editing::duration()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, expected);
    const Run result = start(QStringList("duration") + arguments);
    QCOMPARE(result.err, QString());
    QCOMPARE(result.out, expected);
    QCOMPARE(result.code, 0);
}

void tst_kyec_editing::watchProbe_ofAFolder_succeeds()
{
    const QTemporaryDir folder;
    const Run result = start({"watch-probe", folder.path()});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.out, QStringLiteral("can be watched\n"));
    QCOMPARE(result.code, 0);
}

void tst_kyec_editing::watchProbe_ofAnythingElse_fails_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << QStringLiteral("none");
    QTest::newRow("file") << QStringLiteral("film.mp4");
}

void tst_kyec_editing::watchProbe_ofAnythingElse_fails()
{
    QFETCH(QString, name);
    const QTemporaryDir folder;
    Test::writeFile(folder.filePath(QStringLiteral("film.mp4")), "film");
    const Run result = start({"watch-probe", folder.filePath(name)});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.out, QStringLiteral("cannot be watched\n"));
    QCOMPARE(result.code, 1);
}

KYTE_TEST_MAIN(tst_kyec_editing)
#include "tst_kyec_editing.moc"
