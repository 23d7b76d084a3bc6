#include "KyStageLayouts_p.h"
#include "KyTestMain.h"

#include <KyScreen.h>
#include <KyStage.h>

#include <QStringList>

using namespace Kyte;

/** A monitor, and the catalogue for it: the size of each stage and its screens. */
struct Catalogue
{
    QSize monitor;
    QStringList stages;
};

// The edges are computed as real numbers and rounded one by one; what is written with a fraction is not
// rounded.
static const Catalogue CATALOGUES[] = {
    {{1920, 1080},
     {"1920x1080 |", "1920x1080 | Multi 1 96,54,1728,972", "1920x1080 | Multi 1 0,0,1920,1080",
      "1920x1080 | Multi 1 96,54,1728,855; Telop 1 96,929,1728,97",
      "1920x1080 | Multi 1 0,0,1920,950; Telop 1 0,950.4,1920,129.6",
      "1920x1080 | Multi 1 96,54,1261,855; Multi 2 1392,54,432,855; Telop 1 96,929,1728,97",
      "1920x1080 | Multi 1 0,0,1402,972; Multi 2 1402,0,518,972; Telop 1 0,972,1920,108",
      "607x1080 | Multi 1 30,54,547,972", "607x1080 | Multi 1 0,0,607,1080",
      "607x1080 | Multi 1 30,54,547,486; Multi 2 30,540,547,486",
      "607x1080 | Multi 1 0,0,607,540; Multi 2 0,540,607,540"}},
    {{800, 600},
     {"800x600 |", "800x600 | Multi 1 40,30,720,540", "800x600 | Multi 1 0,0,800,600",
      "800x600 | Multi 1 40,30,720,475; Telop 1 40,516,720,54",
      "800x600 | Multi 1 0,0,800,528; Telop 1 0,528,800,72",
      "800x600 | Multi 1 40,30,526,475; Multi 2 580,30,180,475; Telop 1 40,516,720,54",
      "800x600 | Multi 1 0,0,584,540; Multi 2 584,0,216,540; Telop 1 0,540,800,60",
      "337x600 | Multi 1 17,30,303,540", "337x600 | Multi 1 0,0,337,600",
      "337x600 | Multi 1 17,30,303,270; Multi 2 17,300,303,270",
      "337x600 | Multi 1 0,0,337,300; Multi 2 0,300,337,300"}},
    {{1366, 768},
     {"1366x768 |", "1366x768 | Multi 1 68,38,1230,692", "1366x768 | Multi 1 0,0,1366,768",
      "1366x768 | Multi 1 68,38,1230,609; Telop 1 68,661,1230,69",
      "1366x768 | Multi 1 0,0,1366,676; Telop 1 0,675.84,1366,92.16",
      "1366x768 | Multi 1 68,38,898,609; Multi 2 991,38,307,609; Telop 1 68,661,1230,69",
      "1366x768 | Multi 1 0,0,997,691; Multi 2 997,0,369,691; Telop 1 0,691,1366,77",
      "432x768 | Multi 1 22,38,388,692", "432x768 | Multi 1 0,0,432,768",
      "432x768 | Multi 1 22,38,388,346; Multi 2 22,384,388,346",
      "432x768 | Multi 1 0,0,432,384; Multi 2 0,384,432,384"}},
    {{1366, 767},
     {"1366x767 |", "1366x767 | Multi 1 68,38,1230,691", "1366x767 | Multi 1 0,0,1366,767",
      "1366x767 | Multi 1 68,38,1230,608; Telop 1 68,660,1230,69",
      "1366x767 | Multi 1 0,0,1366,675; Telop 1 0,674.96,1366,92.04",
      "1366x767 | Multi 1 68,38,898,608; Multi 2 991,38,307,608; Telop 1 68,660,1230,69",
      "1366x767 | Multi 1 0,0,997,690; Multi 2 997,0,369,690; Telop 1 0,690,1366,77",
      "431x767 | Multi 1 22,38,387,691", "431x767 | Multi 1 0,0,431,767",
      "431x767 | Multi 1 22,38,387,346; Multi 2 22,384,387,345",
      "431x767 | Multi 1 0,0,431,384; Multi 2 0,383.5,431,383.5"}},
    {{2560, 1440},
     {"2560x1440 |", "2560x1440 | Multi 1 128,72,2304,1296", "2560x1440 | Multi 1 0,0,2560,1440",
      "2560x1440 | Multi 1 128,72,2304,1140; Telop 1 128,1238,2304,130",
      "2560x1440 | Multi 1 0,0,2560,1267; Telop 1 0,1267.2,2560,172.8",
      "2560x1440 | Multi 1 128,72,1682,1140; Multi 2 1856,72,576,1140; Telop 1 128,1238,2304,130",
      "2560x1440 | Multi 1 0,0,1869,1296; Multi 2 1869,0,691,1296; Telop 1 0,1296,2560,144",
      "810x1440 | Multi 1 41,72,729,1296", "810x1440 | Multi 1 0,0,810,1440",
      "810x1440 | Multi 1 41,72,729,648; Multi 2 41,720,729,648",
      "810x1440 | Multi 1 0,0,810,720; Multi 2 0,720,810,720"}},
    {{3840, 2160},
     {"3840x2160 |", "3840x2160 | Multi 1 192,108,3456,1944", "3840x2160 | Multi 1 0,0,3840,2160",
      "3840x2160 | Multi 1 192,108,3456,1711; Telop 1 192,1858,3456,194",
      "3840x2160 | Multi 1 0,0,3840,1901; Telop 1 0,1900.8,3840,259.2",
      "3840x2160 | Multi 1 192,108,2523,1711; Multi 2 2784,108,864,1711; Telop 1 192,1858,3456,194",
      "3840x2160 | Multi 1 0,0,2803,1944; Multi 2 2803,0,1037,1944; Telop 1 0,1944,3840,216",
      "1215x2160 | Multi 1 61,108,1093,1944", "1215x2160 | Multi 1 0,0,1215,2160",
      "1215x2160 | Multi 1 61,108,1093,972; Multi 2 61,1080,1093,972",
      "1215x2160 | Multi 1 0,0,1215,1080; Multi 2 0,1080,1215,1080"}},
    {{1080, 1920},
     {"1080x1920 |", "1080x1920 | Multi 1 54,96,972,1728", "1080x1920 | Multi 1 0,0,1080,1920",
      "1080x1920 | Multi 1 54,96,972,1521; Telop 1 54,1651,972,173",
      "1080x1920 | Multi 1 0,0,1080,1690; Telop 1 0,1689.6,1080,230.4",
      "1080x1920 | Multi 1 54,96,710,1521; Multi 2 783,96,243,1521; Telop 1 54,1651,972,173",
      "1080x1920 | Multi 1 0,0,788,1728; Multi 2 788,0,292,1728; Telop 1 0,1728,1080,192",
      "1080x1920 | Multi 1 54,96,972,1728", "1080x1920 | Multi 1 0,0,1080,1920",
      "1080x1920 | Multi 1 54,96,972,864; Multi 2 54,960,972,864",
      "1080x1920 | Multi 1 0,0,1080,960; Multi 2 0,960,1080,960"}},
    {{1, 1},
     {"1x1 |", "1x1 | Multi 1 0,0,1,1", "1x1 | Multi 1 0,0,1,1", "1x1 | Multi 1 0,0,1,1; Telop 1 0,1,1,0",
      "1x1 | Multi 1 0,0,1,1; Telop 1 0,0.88,1,0.12",
      "1x1 | Multi 1 0,0,1,1; Multi 2 1,0,0,1; Telop 1 0,1,1,0",
      "1x1 | Multi 1 0,0,1,1; Multi 2 1,0,0,1; Telop 1 0,1,1,0", "0x1 | Multi 1 0,0,0,1",
      "0x1 | Multi 1 0,0,0,1", "0x1 | Multi 1 0,0,0,1; Multi 2 0,1,0,0",
      "0x1 | Multi 1 0,0,0,1; Multi 2 0,0.5,0,0.5"}},
};

class tst_KyStageLayouts : public QObject
{
    Q_OBJECT

private slots:
    void catalogue_data();
    void catalogue();
    void catalogue_ofAMonitorElsewhere_beginsAtTheOrigin();
    void catalogue_ofNoMonitor_isEmpty();
    void types_areMultimediaAndTelop();
    void texts_data();
    void texts();
    void texts_goThroughTranslation();
    void options_data();
    void options();
    void screens_haveTheDefaultsOfNewScreens();
};

static StageLayouts::Layout layoutAt(int index)
{
    return static_cast<StageLayouts::Layout>(index);
}

static QString untranslated(const char *sourceText)
{
    return QString::fromUtf8(sourceText);
}

static QString bracketed(const char *sourceText)
{
    return QLatin1Char('[') + untranslated(sourceText) + QLatin1Char(']');
}

static std::unique_ptr<KyStage> makeStage(int index, const QRect &monitor)
{
    return StageLayouts::makeStage(layoutAt(index), monitor, untranslated);
}

static QString text(double number)
{
    QString text = QString::number(number, 'f', 4);
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    return text.endsWith(QLatin1Char('.')) ? text.chopped(1) : text;
}

/** "1920x1080 | Multi 1 0,0,1920,950; Telop 1 0,950.4,1920,129.6" */
static QString text(const KyStage &stage)
{
    QStringList screens;
    for (const KyScreen *screen : stage.screenList()) {
        const QRectF rect = screen->rect();
        screens.append(QStringLiteral("%1 %2,%3,%4,%5")
                           .arg(screen->name(), text(rect.left()), text(rect.top()), text(rect.width()),
                                text(rect.height())));
    }
    return QStringLiteral("%1x%2 | %3")
        .arg(stage.rect().width())
        .arg(stage.rect().height())
        .arg(screens.join(QStringLiteral("; ")))
        .trimmed();
}

void tst_KyStageLayouts::catalogue_data()
{
    QTest::addColumn<QRect>("monitor");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("expected");
    for (const Catalogue &catalogue : CATALOGUES) {
        QCOMPARE(catalogue.stages.size(), StageLayouts::LAYOUT_COUNT);
        for (int index = 0; index < catalogue.stages.size(); ++index)
            QTest::addRow("%d x %d, #%d", catalogue.monitor.width(), catalogue.monitor.height(), index + 1)
                << QRect(QPoint(), catalogue.monitor) << index << catalogue.stages.at(index);
    }
}

void tst_KyStageLayouts::catalogue()
{
    QFETCH(QRect, monitor);
    QFETCH(int, index);
    QFETCH(QString, expected);
    const auto stage = makeStage(index, monitor);
    QCOMPARE(text(*stage), expected);
    QCOMPARE(stage->rect().topLeft(), QPoint(0, 0));
}

void tst_KyStageLayouts::catalogue_ofAMonitorElsewhere_beginsAtTheOrigin()
{
    for (int index = 0; index < StageLayouts::LAYOUT_COUNT; ++index) {
        const auto stage = makeStage(index, QRect(-1920, 300, 1920, 1080));
        QCOMPARE(text(*stage), CATALOGUES[0].stages.at(index));
        QCOMPARE(stage->rect().topLeft(), QPoint(0, 0));
    }
}

void tst_KyStageLayouts::catalogue_ofNoMonitor_isEmpty()
{
    for (int index = 0; index < StageLayouts::LAYOUT_COUNT; ++index) {
        const auto stage = makeStage(index, QRect());
        QVERIFY(stage->rect().isEmpty());
        for (const KyScreen *screen : stage->screenList())
            QVERIFY(screen->rect().isEmpty());
    }
}

void tst_KyStageLayouts::types_areMultimediaAndTelop()
{
    for (int index = 0; index < StageLayouts::LAYOUT_COUNT; ++index) {
        const auto stage = makeStage(index, QRect(0, 0, 1920, 1080));
        for (const KyScreen *screen : stage->screenList())
            QCOMPARE(int(screen->type()), screen->name().startsWith(QLatin1String("Telop")) ? 2 : 1);
    }
}

void tst_KyStageLayouts::texts_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("description");
    int index = 0;
    const auto addRow = [&index](const char *title, const char *description) {
        QTest::addRow("#%d", index + 1) << index << title << description;
        ++index;
    };
    addRow("Background Only", "This template has no screen.<br /><br />You should add the screen manually.");
    addRow("1 Multimedia Screen",
           "This template has one Multimedia Screen.<br /><br />You can add immediately the content to the "
           "screen.");
    addRow("1 Multimedia Screen (no margin)",
           "This template has one Multimedia Screen. It is no margin on the screen.<br /><br />You can add "
           "immediately the content to the screen.");
    addRow("1 Multimedia Screen and 1 Telop Screen",
           "This template has one Multimedia Screen and one Telop Screen.<br /><br />You can add immediately "
           "the content to the screens.");
    addRow("1 Multimedia Screen and 1 Telop Screen",
           "This template has one Multimedia Screen and one Telop Screen. It is no margin on the screens.<br "
           "/><br />You can add immediately the content to the screens.");
    addRow("2 Multimedia Screens and 1 Telop Screen",
           "This template has two Multimedia Screens and one Telop Screen.<br /><br />You can add "
           "immediately the content to the screens.");
    addRow("2 Multimedia Screens and 1 Telop Screen (no margin)",
           "This template has two Multimedia Screens and one Telop Screen. It is no margin on the "
           "screens.<br /><br />You can add immediately the content to the screens.");
    addRow("1 Multimedia Screen on vertical Stage",
           "This template is a vertical Stage to have one Multimedia Screen. <br /><br />This template is "
           "\"Use the desktop size\" and \"Automatic adjustment\" option has been disabled. You can add "
           "immediately the content to the screen.");
    addRow("1 Multimedia Screen on vertical Stage (no margin",
           "This template is a vertical Stage to have one Multimedia Screen. It is no margin on the "
           "screens.<br /><br />This template is \"Use the desktop size\" and \"Automatic adjustment\" "
           "option has been disabled. You can add immediately the content to the screen.");
    addRow("2 Multimedia Screens on vertical Stage",
           "This template is a vertical Stage to have two Multimedia Screens. <br /><br />This template is "
           "\"Use the desktop size\" and \"Automatic adjustment\" option has been disabled. You can add "
           "immediately the content to the screen.");
    addRow("2 Multimedia Screens on vertical Stage (no margin)",
           "This template is a vertical Stage to have two Multimedia Screens. It is no margin on the "
           "screens.<br /><br />This template is \"Use the desktop size\" and \"Automatic adjustment\" "
           "option has been disabled. You can add immediately the content to the screen.");
    QCOMPARE(index, StageLayouts::LAYOUT_COUNT);
}

void tst_KyStageLayouts::texts()
{
    QFETCH(int, index);
    QFETCH(QString, title);
    QFETCH(QString, description);
    const auto stage = makeStage(index, QRect(0, 0, 1920, 1080));
    QCOMPARE(stage->name(), title);
    QCOMPARE(stage->description(), description);
}

void tst_KyStageLayouts::texts_goThroughTranslation()
{
    for (int index = 0; index < StageLayouts::LAYOUT_COUNT; ++index) {
        const QRect monitor(0, 0, 1920, 1080);
        const auto source = makeStage(index, monitor);
        const auto stage = StageLayouts::makeStage(layoutAt(index), monitor, bracketed);
        QCOMPARE(stage->name(), QStringLiteral("[%1]").arg(source->name()));
        QCOMPARE(stage->description(), QStringLiteral("[%1]").arg(source->description()));
        QCOMPARE(stage->screenList().size(), source->screenList().size());
        for (int i = 0; i < stage->screenList().size(); ++i)
            QCOMPARE(stage->screenList().at(i)->name(),
                     QStringLiteral("[%1]").arg(source->screenList().at(i)->name()));
    }
}

void tst_KyStageLayouts::options_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<unsigned int>("expected");
    // A new stage has "Use the desktop size" set, which only vertical stages take back.
    for (int index = 0; index < StageLayouts::LAYOUT_COUNT; ++index)
        QTest::addRow("#%d", index + 1) << index << (index < 7 ? 3u : 0u);
}

void tst_KyStageLayouts::options()
{
    QFETCH(int, index);
    QFETCH(unsigned int, expected);
    QCOMPARE(makeStage(index, QRect(0, 0, 1920, 1080))->options(), expected);
}

void tst_KyStageLayouts::screens_haveTheDefaultsOfNewScreens()
{
    const KyScreen newScreen;
    for (int index = 0; index < StageLayouts::LAYOUT_COUNT; ++index) {
        const auto stage = makeStage(index, QRect(0, 0, 1920, 1080));
        for (const KyScreen *screen : stage->screenList()) {
            QCOMPARE(screen->zIndex(), newScreen.zIndex());
            QCOMPARE(screen->id(), newScreen.id());
            QCOMPARE(screen->backgoundColor(), newScreen.backgoundColor());
        }
    }
}

KYTE_TEST_MAIN(tst_KyStageLayouts)
#include "tst_KyStageLayouts.moc"
