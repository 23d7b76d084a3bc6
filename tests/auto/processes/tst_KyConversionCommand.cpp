#include "KyConversionCommand_p.h"

#include <KyTestMain.h>

#include <QProcess>

using namespace Kyte;

class tst_KyConversionCommand : public QObject
{
    Q_OBJECT

private slots:
    void command_isOneTextInOrder();
    void timings_areTrueOrFalse();
    void anyPath_staysOneArgument_data();
    void anyPath_staysOneArgument();
    void madeUpPaths_stayOneArgument();
};

static ConversionJob makeJob()
{
    ConversionJob job;
    job.inputPath = "C:/in/talk.pptx";
    job.imageFormat = "png";
    job.outputFolder = "C:/work/talk_ppt";
    job.width = 1280;
    job.height = 720;
    job.defaultSlideDuration = 5;
    job.vertResolution = 720;
    job.framesPerSecond = 30;
    job.quality = 85;
    job.useTimingsAndNarrations = true;
    return job;
}

static QStringList argumentsWith(const QString &input, const QString &folder)
{
    return {"-i",  input, "-t", "png", "-d",  folder, "-o", "slide", "-w", "1280", "-h",
            "720", "-sd", "5",  "-vr", "720", "-fs",  "30", "-qt",   "85", "-ut",  "true"};
}

void tst_KyConversionCommand::command_isOneTextInOrder()
{
    QCOMPARE(
        conversionCommand("C:/Program Files/KyPptCnv.exe", makeJob()),
        QString("\"C:/Program Files/KyPptCnv.exe\" -i \"C:/in/talk.pptx\" -t png -d \"C:/work/talk_ppt\" "
                "-o slide -w 1280 -h 720 -sd 5 -vr 720 -fs 30 -qt 85 -ut true"));
}

void tst_KyConversionCommand::timings_areTrueOrFalse()
{
    ConversionJob job = makeJob();
    job.useTimingsAndNarrations = false;
    QVERIFY(conversionCommand("x", job).endsWith(" -ut false"));
}

void tst_KyConversionCommand::anyPath_staysOneArgument_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("plain") << "/in/talk.pptx";
    QTest::newRow("blanks") << "/in/ a  talk .pptx ";
    QTest::newRow("quote") << "/in/a\"b.pptx";
    QTest::newRow("quotes around") << "\"talk\"";
    QTest::newRow("quotes side by side") << "/in/a\"\"b\"\"\"c.pptx";
    QTest::newRow("quote alone") << "\"";
    QTest::newRow("another argument") << "/in/a\" -o other -x \"b";
    QTest::newRow("dash") << "-t";
    QTest::newRow("places") << "/in/%1 %2 %3 100%.pptx";
    QTest::newRow("back-slashes") << "C:\\in\\talk.pptx\\";
    QTest::newRow("line end and tab") << "/in/a\nb\tc";
    QTest::newRow("shell") << "/in/$(x) `y` 'z' ; & | > * ?";
    QTest::newRow("other letters") << QStringLiteral("/in/größe \u6620\u753b \U0001F600.pptx");
}

void tst_KyConversionCommand::anyPath_staysOneArgument()
{
    QFETCH(QString, path);
    ConversionJob job = makeJob();
    job.inputPath = path;
    job.outputFolder = "/out";
    QCOMPARE(QProcess::splitCommand(conversionCommand("/bin/c", job)),
             QStringList{"/bin/c"} + argumentsWith(path, "/out"));
    job.inputPath = "/in";
    job.outputFolder = path;
    QCOMPARE(QProcess::splitCommand(conversionCommand("/bin/c", job)),
             QStringList{"/bin/c"} + argumentsWith("/in", path));
    QCOMPARE(QProcess::splitCommand(conversionCommand(path, job)),
             QStringList{path} + argumentsWith("/in", path));
}

void tst_KyConversionCommand::madeUpPaths_stayOneArgument()
{
    const QString letters = QStringLiteral("a\"\" %12-\\");
    QRandomGenerator random(20260101);
    for (int i = 0; i < 2000; ++i) {
        QString paths[3];
        for (QString &path : paths) {
            for (int length = random.bounded(1, 12); path.size() < length;)
                path += letters.at(random.bounded(letters.size()));
        }
        ConversionJob job = makeJob();
        job.inputPath = paths[1];
        job.outputFolder = paths[2];
        QCOMPARE(QProcess::splitCommand(conversionCommand(paths[0], job)),
                 QStringList{paths[0]} + argumentsWith(paths[1], paths[2]));
    }
}

KYTE_TEST_MAIN(tst_KyConversionCommand)
#include "tst_KyConversionCommand.moc"
