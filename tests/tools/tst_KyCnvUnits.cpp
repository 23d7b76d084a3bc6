#include "KyTestMain.h"

#include "KyCnvArguments.h"
#include "KyCnvTimings.h"

#include <QBuffer>

using namespace Kyte;

class tst_KyCnvUnits : public QObject
{
    Q_OBJECT

private slots:
    void completeArguments_areRead();
    void firstWrongArgument_isTold_data();
    void firstWrongArgument_isTold();
    void duration_data();
    void duration();
    void timings_ofShownSlides();
};

static QStringList completeArguments()
{
    return {QStringLiteral("-i"), QStringLiteral("/in/a talk.pptx"),
            QStringLiteral("-t"), QStringLiteral("png"),
            QStringLiteral("-d"), QStringLiteral("/out"),
            QStringLiteral("-o"), QStringLiteral("slide")};
}

void tst_KyCnvUnits::completeArguments_areRead()
{
    KyCnvArguments arguments;
    const QString rest = QStringLiteral("-w 640 -h 360 -sd 7 -vr 480 -fs 25 -qt 60 -ut false");
    QCOMPARE(arguments.read(completeArguments() + rest.split(QLatin1Char(' '))), 0);
    QCOMPARE(arguments.inputPath, QStringLiteral("/in/a talk.pptx"));
    QCOMPARE(arguments.format, QStringLiteral("png"));
    QCOMPARE(arguments.outputFolder, QStringLiteral("/out"));
    QCOMPARE(arguments.baseName, QStringLiteral("slide"));
    QCOMPARE(arguments.imageSize, QSize(640, 360));
    QCOMPARE(arguments.defaultSlideDuration, 7);
    QCOMPARE(arguments.verticalResolution, 480);
    QCOMPARE(arguments.framesPerSecond, 25);
    QCOMPARE(arguments.quality, 60);
    QVERIFY(!arguments.useTimings);
    QVERIFY(!arguments.isVideo());

    KyCnvArguments defaults;
    QCOMPARE(defaults.read(completeArguments()), 0);
    QCOMPARE(defaults.imageSize, QSize(1280, 720));
    QVERIFY(defaults.useTimings);
}

void tst_KyCnvUnits::firstWrongArgument_isTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("wrong");
    const QStringList complete = completeArguments();
    const auto with = [&complete](const char *name, const char *value) {
        return QStringList(complete + QStringList({QString::fromLatin1(name), QString::fromLatin1(value)}));
    };
    QTest::newRow("none") << QStringList() << 1;
    QTest::newRow("unknown") << with("-x", "1") << 9;
    QTest::newRow("no value") << QStringList(complete + QStringList(QStringLiteral("-w"))) << 10;
    QTest::newRow("nothing to read") << QStringList(complete.mid(2)) << 7;
    QTest::newRow("no format") << QStringList(complete.mid(0, 2) + complete.mid(4)) << 7;
    QTest::newRow("no folder") << QStringList(complete.mid(0, 4) + complete.mid(6)) << 7;
    QTest::newRow("no name") << QStringList(complete.mid(0, 6)) << 7;
    QTest::newRow("unknown format") << with("-t", "gif") << 10;
    QTest::newRow("name with a folder") << with("-o", "../slide") << 10;
    QTest::newRow("width of no pixel") << with("-w", "0") << 10;
    QTest::newRow("height that is none") << with("-h", "high") << 10;
    QTest::newRow("huge height") << with("-h", "99999") << 10;
    QTest::newRow("no duration") << with("-sd", "0") << 10;
    QTest::newRow("no lines") << with("-vr", "1") << 10;
    QTest::newRow("no frames") << with("-fs", "0") << 10;
    QTest::newRow("quality above 100") << with("-qt", "101") << 10;
    QTest::newRow("neither true nor false") << with("-ut", "yes") << 10;
}

void tst_KyCnvUnits::firstWrongArgument_isTold()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, wrong);
    QCOMPARE(KyCnvArguments().read(arguments), wrong);
}

void tst_KyCnvUnits::duration_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("milliseconds");
    QTest::newRow("seconds") << "PT00H00M05S" << 5000;
    QTest::newRow("fraction") << "PT00H00M01.5S" << 1500;
    QTest::newRow("all parts") << "PT1H2M3S" << 3723000;
    QTest::newRow("seconds alone") << "PT4S" << 4000;
    QTest::newRow("empty") << "" << -1;
    QTest::newRow("nothing in it") << "PT" << -1;
    QTest::newRow("days") << "P1D" << -1;
    QTest::newRow("beyond all limits") << "PT99999999999H" << -1;
}

void tst_KyCnvUnits::duration()
{
    QFETCH(QString, text);
    QTEST(durationOf(text), "milliseconds");
}

void tst_KyCnvUnits::timings_ofShownSlides()
{
    QByteArray xml =
        "<office:document xmlns:office='o' xmlns:style='s' xmlns:draw='d' xmlns:presentation='p'>"
        "<style:style style:name='timed'><style:drawing-page-properties "
        "presentation:transition-type='automatic' presentation:duration='PT2S'/></style:style>"
        "<style:style style:name='clicked'><style:drawing-page-properties "
        "presentation:duration='PT3S'/></style:style>"
        "<style:style style:name='hidden'><style:drawing-page-properties "
        "presentation:visibility='hidden'/></style:style>"
        "<draw:page draw:style-name='timed'/><draw:page draw:style-name='hidden'/>"
        "<draw:page draw:style-name='clicked'/><draw:page/></office:document>";
    QBuffer buffer(&xml);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QCOMPARE(slideTimings(&buffer), QVector<int>({2000, -1, -1}));
}

KYTE_TEST_MAIN(tst_KyCnvUnits)
#include "tst_KyCnvUnits.moc"
