#include <KyTestEnvironment.h>
#include <KyTestMain.h>

#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
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

class tst_kyec_stages : public QObject
{
    Q_OBJECT

private slots:
    void help_data();
    void help();
    void wrongUsage_data();
    void wrongUsage();

    void templates_writesEveryIcon();
    void templates_printsTheGeometry();
    void templates_asJson();
    void templates_ofThisMachine();
    void templates_intoAFile_fails();

    void preview_writesThePicture_data();
    void preview_writesThePicture();
    void preview_intoAFolder_fails();

    void demo_namesTheFilesThatItWrites();
};

static Run start(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/kyec"), arguments);
    Run run;
    if (process.waitForFinished(120000) && process.exitStatus() == QProcess::NormalExit)
        run.code = process.exitCode();
    run.out = QString::fromUtf8(process.readAllStandardOutput().replace("\r\n", "\n"));
    run.err = QString::fromUtf8(process.readAllStandardError().replace("\r\n", "\n"));
    return run;
}

void tst_kyec_stages::help_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("begin");
    QTest::newRow("templates") << "templates"
                               << "Usage: kyec templates [OPTIONS] --out DIR\n";
    QTest::newRow("preview") << "preview"
                             << "Usage: kyec preview [OPTIONS] TEMPLATE-NUMBER --size WxH --out PNG\n";
}

void tst_kyec_stages::help()
{
    QFETCH(QString, command);
    QFETCH(QString, begin);
    const Run result = start({command, "--help"});
    QCOMPARE(result.code, 0);
    QVERIFY2(result.out.startsWith(begin), qPrintable(result.out));
    QVERIFY(start({"--help"}).out.contains(QStringLiteral("\n  %1 ").arg(command)));
}

void tst_kyec_stages::wrongUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    QTest::newRow("no folder") << QStringList{"templates"} << "--out DIR is needed.";
    QTest::newRow("empty folder") << QStringList{"templates", "--out", ""} << "--out DIR is needed.";
    QTest::newRow("argument") << QStringList{"templates", "--out", "x", "y"} << "Unexpected argument 'y'.";
    QTest::newRow("monitor without a size")
        << QStringList{"templates", "--out", "x", "--monitor", ""}
        << "--monitor needs a width and a height of 1 to 16384, as in 1920x1080, not ''.";
    for (const char *size :
         {"1920", "0x5", "5x0", "-5x5", "5x5x5", "5 x 5", "16385x1", "1x99999", "999999x1"})
        QTest::newRow(size) << QStringList{"templates", "--out", "x", "--monitor", size}
                            << QStringLiteral("--monitor needs a width and a height of 1 to 16384, as in "
                                              "1920x1080, not '%1'.")
                                   .arg(size);
    QTest::newRow("no template") << QStringList{"preview", "--size", "9x9", "--out", "x"}
                                 << "Which template?";
    QTest::newRow("no size") << QStringList{"preview", "1", "--out", "x"}
                             << "--size needs a width and a height of 1 to 16384, as in 1920x1080, not ''.";
    QTest::newRow("no file") << QStringList{"preview", "1", "--size", "9x9"} << "--out PNG is needed.";
    for (const char *number : {"0", "12", "one", "1.5"})
        QTest::newRow(number)
            << QStringList{"preview", number, "--size", "9x9", "--out", "x"}
            << QStringLiteral("The templates are numbered from 1 to 11; there is no '%1'.").arg(number);
}

void tst_kyec_stages::wrongUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    const QTemporaryDir folder;
    QDir::setCurrent(folder.path());
    const Run result = start(arguments);
    QCOMPARE(result.code, 2);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.startsWith(QStringLiteral("kyec: ") + message), qPrintable(result.err));
    QVERIFY(Test::namesIn(folder.path()).isEmpty());
}

void tst_kyec_stages::templates_writesEveryIcon()
{
    const QTemporaryDir folder;
    const QString icons = folder.filePath(QStringLiteral("new/icons"));
    const Run result = start({"templates", "--out", icons, "--monitor", "1920x1080"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    QVERIFY(result.out.endsWith(QStringLiteral("\n99 icons in %1\n").arg(QDir::toNativeSeparators(icons))));
    QCOMPARE(Test::namesIn(icons).size(), 99);
    QCOMPARE(Test::namesIn(icons).first(), QStringLiteral("template-01-1.00x.png"));
    QCOMPARE(Test::namesIn(icons).last(), QStringLiteral("template-11-3.00x.png"));
    const QImage icon(icons + QStringLiteral("/template-08-2.25x.png"));
    QCOMPARE(icon.size(), QSize(288, 288));
    QCOMPARE(qAlpha(icon.pixel(2, 2)), 0);
    QCOMPARE(icon.pixelColor(144, 30), QColor(Qt::darkGray)); // a vertical stage with one screen
}

void tst_kyec_stages::templates_printsTheGeometry()
{
    const QTemporaryDir folder;
    const Run result = start({"templates", "--out", folder.path(), "--monitor", "1920x1080"});
    const QStringList lines = result.out.split(QLatin1Char('\n'));
    const auto words = [&lines](int row) {
        return lines.value(row).simplified();
    };
    QCOMPARE(words(0), QStringLiteral("# Stage and screens Type Left Top Width Height"));
    QCOMPARE(words(2), QStringLiteral("1 Background Only Stage 0 0 1920 1080"));
    QCOMPARE(words(4), QStringLiteral("Multi 1 Multimedia 96 54 1728 972"));
    QVERIFY(result.out.simplified().contains(QStringLiteral("Telop 1 Telop 0 950.4 1920 129.6")));
    for (const QString &line : lines)
        QVERIFY2(line.size() <= 100 || line.contains(folder.path()), qPrintable(line));
}

void tst_kyec_stages::templates_asJson()
{
    const QTemporaryDir folder;
    const Run result = start({"templates", "--out", folder.path(), "--monitor", "1920x1080", "--json"});
    QCOMPARE(result.err, QString());
    const QJsonObject object = QJsonDocument::fromJson(result.out.toUtf8()).object();
    QCOMPARE(object["files"].toArray().size(), 99);
    QCOMPARE(object["folder"].toString(), folder.path());
    const QJsonArray templates = object["templates"].toArray();
    QCOMPARE(templates.size(), 11);
    const QJsonObject eighth = templates.at(7).toObject();
    QCOMPARE(eighth["number"].toInt(), 8);
    QCOMPARE(eighth["title"].toString(), QStringLiteral("1 Multimedia Screen on vertical Stage"));
    QVERIFY(eighth["description"].toString().contains(QStringLiteral("\"Use the desktop size\"")));
    QCOMPARE(eighth["options"].toInt(), 0);
    QCOMPARE(templates.at(0).toObject()["options"].toInt(), 3);
    QCOMPARE(eighth["rect"].toArray(), (QJsonArray{0, 0, 607, 1080}));
    const QJsonObject screen = eighth["screens"].toArray().first().toObject();
    QCOMPARE(screen["rect"].toArray(), (QJsonArray{30, 54, 547, 972}));
    QCOMPARE(screen["type"].toInt(), 1);
}

void tst_kyec_stages::templates_ofThisMachine()
{
    const QTemporaryDir folder;
    const Run result = start({"templates", "--out", folder.path(), "--json"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    const QJsonArray templates = QJsonDocument::fromJson(result.out.toUtf8()).object()["templates"].toArray();
    QCOMPARE(templates.size(), 11);
    const QJsonArray rect = templates.at(0).toObject()["rect"].toArray();
    QVERIFY(rect.at(2).toInt() > 0);
    QVERIFY(rect.at(3).toInt() > 0);
}

void tst_kyec_stages::templates_intoAFile_fails()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("precious"));
    Test::writeFile(file, "precious");
    const Run result = start({"templates", "--out", file});
    QCOMPARE(result.code, 1);
    QCOMPARE(result.out, QString());
    QCOMPARE(result.err,
             QStringLiteral("kyec: The file cannot be written: %1\n")
                 .arg(QDir::toNativeSeparators(file + QStringLiteral("/template-01-1.00x.png"))));
    QCOMPARE(Test::readFile(file), QByteArray("precious"));
}

void tst_kyec_stages::preview_writesThePicture_data()
{
    QTest::addColumn<QString>("size");
    QTest::addColumn<QSize>("expected");
    QTest::newRow("usual") << QStringLiteral("640x361") << QSize(640, 361);
    QTest::newRow("high") << QStringLiteral("100x300") << QSize(100, 300);
    QTest::newRow("tiny") << QStringLiteral("1x1") << QSize(1, 1);
}

void tst_kyec_stages::preview_writesThePicture()
{
    QFETCH(QString, size);
    QFETCH(QSize, expected);
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("preview.png"));
    Test::writeFile(file, "an earlier one");
    const Run result = start({"preview", "2", "--size", size, "--out", file, "--monitor", "1920x1080"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.out, QString());
    QCOMPARE(result.code, 0);
    const QImage image(file);
    QCOMPARE(image.size(), expected);
    QCOMPARE(Test::namesIn(folder.path()), QStringList(QStringLiteral("preview.png")));
    if (expected.width() > 1)
        QCOMPARE(image.pixelColor(expected.width() / 2, 1), QColor(Qt::black)); // the stage
    QVERIFY(image.pixelColor(expected.width() - 1, expected.height() - 1).blue() > 70); // the gradient
}

void tst_kyec_stages::preview_intoAFolder_fails()
{
    const QTemporaryDir folder;
    const Run result = start({"preview", "1", "--size", "64x64", "--out", folder.path()});
    QCOMPARE(result.code, 1);
    QVERIFY2(result.err.startsWith(QStringLiteral("kyec: The file cannot be written: ")),
             qPrintable(result.err));
}

void tst_kyec_stages::demo_namesTheFilesThatItWrites()
{
    const QTemporaryDir folder;
    const QString kept = folder.filePath(QStringLiteral("demo"));
    for (int round = 0; round < 2; ++round) { // the second one replaces them
        const Run result = start({"demo", "--keep", kept, "--json"});
        QCOMPARE(result.err, QString());
        QCOMPARE(result.code, 0);
        QStringList files;
        const QJsonArray stages = QJsonDocument::fromJson(result.out.toUtf8()).object()["stages"].toArray();
        QCOMPARE(stages.size(), 11);
        for (const QJsonValue &stage : stages) {
            const QJsonArray icons = stage.toObject()["icons"].toArray();
            for (const QJsonValue &icon : icons)
                files.append(icon.toString());
            files.append(stage.toObject()["preview"].toString());
        }
        files.sort();
        QCOMPARE(files.size(), 110);
        QCOMPARE(Test::namesIn(kept + QStringLiteral("/stages")), files);
    }
    const Run result = start({"demo", "--keep", kept});
    const QString text = result.out.simplified();
    QVERIFY(text.contains(QStringLiteral("Stage templates for a monitor of 1920 x 1080, in ")));
    QVERIFY(
        text.contains(QStringLiteral("Background Only template-01-1.00x.png … 3.00x.png preview-01.png")));
}

KYTE_TEST_MAIN(tst_kyec_stages)
#include "tst_kyec_stages.moc"
