#include "KyStageGeometry_p.h"
#include "KyTestMain.h"

#include <KyScreen.h>
#include <KyStage.h>

#include <limits>

using namespace Kyte;

static const int INT_LOWEST = std::numeric_limits<int>::lowest();
static const int INT_HIGHEST = std::numeric_limits<int>::max();
static const double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();
static const double INFINITE = std::numeric_limits<double>::infinity();
static const int LIMIT = (1 << 30) - 1;

class tst_KyStageGeometry : public QObject
{
    Q_OBJECT

private slots:
    void toRectF_doesNotOverflow();
    void snapped_data();
    void snapped();
    void scaledRect_data();
    void scaledRect();
    void isDrawable_data();
    void isDrawable();

    void bounds_uniteTheStageAndItsScreens();
    void bounds_ofScreensOutside_growThatWay();
    void bounds_leaveOutWhatIsNotFinite();
    void bounds_leaveOutMissingScreens();
    void snappedBounds_snapEachScreen();

    void iconContent_ofAWideStage_isTruncated_data();
    void iconContent_ofAWideStage_isTruncated();
    void iconLayout_fitsTheLongerSide_data();
    void iconLayout_fitsTheLongerSide();
    void iconLayout_ofWhatCannotBeDrawn_isEmpty_data();
    void iconLayout_ofWhatCannotBeDrawn_isEmpty();

    void previewScale_data();
    void previewScale();
    void previewScale_ofWhatCannotBeDrawn_isZero_data();
    void previewScale_ofWhatCannotBeDrawn_isZero();
};

static void addScreen(KyStage *stage, const QRectF &rect)
{
    auto *screen = new KyScreen;
    screen->setRect(rect);
    stage->screenListPtr()->append(screen);
}

void tst_KyStageGeometry::toRectF_doesNotOverflow()
{
    QCOMPARE(StageGeometry::toRectF(QRect(-3, 4, 5, 6)), QRectF(-3, 4, 5, 6));
    QCOMPARE(StageGeometry::toRectF(QRect(-3, 4, -5, -6)), QRectF(-3, 4, -5, -6));
    QCOMPARE(StageGeometry::toRectF(QRect()), QRectF());
    const QRect widest(QPoint(INT_LOWEST, INT_LOWEST), QPoint(INT_HIGHEST, INT_HIGHEST));
    QCOMPARE(StageGeometry::toRectF(widest), QRectF(INT_LOWEST, INT_LOWEST, 4294967296.0, 4294967296.0));
}

void tst_KyStageGeometry::snapped_data()
{
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<QRect>("expected");
    QTest::newRow("whole") << QRectF(1, 2, 3, 4) << QRect(1, 2, 3, 4);
    QTest::newRow("edges, not the size") << QRectF(30.35, 54, 546.3, 972) << QRect(30, 54, 547, 972);
    QTest::newRow("half goes up") << QRectF(0.5, 1.5, 1, 1) << QRect(1, 2, 1, 1);
    QTest::newRow("half below zero goes up") << QRectF(-0.5, -1.5, 1, 1) << QRect(0, -1, 1, 1);
    QTest::newRow("thin") << QRectF(0.1, 0.1, 0.2, 0.2) << QRect(0, 0, 0, 0);
    QTest::newRow("negative size") << QRectF(10, 10, -4, -6) << QRect(10, 10, -4, -6);
    QTest::newRow("huge") << QRectF(-1e300, 5, 2e300, 1e18)
                          << QRect(QPoint(-LIMIT, 5), QPoint(LIMIT - 1, LIMIT - 1));
    QTest::newRow("infinite") << QRectF(0, 0, INFINITE, INFINITE) << QRect(0, 0, LIMIT, LIMIT);
    QTest::newRow("no number") << QRectF(NO_NUMBER, NO_NUMBER, NO_NUMBER, NO_NUMBER) << QRect(0, 0, 0, 0);
}

void tst_KyStageGeometry::snapped()
{
    QFETCH(QRectF, rect);
    QFETCH(QRect, expected);
    QCOMPARE(StageGeometry::snapped(rect), expected);
}

void tst_KyStageGeometry::scaledRect_data()
{
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<double>("factor");
    QTest::addColumn<QRect>("expected");
    QTest::newRow("same") << QRectF(1, 2, 3, 4) << 1.0 << QRect(1, 2, 3, 4);
    QTest::newRow("half") << QRectF(3, 5, 7, 9) << 0.5 << QRect(2, 3, 3, 4);
    QTest::newRow("nothing") << QRectF(3, 5, 7, 9) << 0.0 << QRect(0, 0, 0, 0);
    QTest::newRow("mirrored") << QRectF(1, 2, 3, 4) << -1.0 << QRect(-1, -2, -3, -4);
    QTest::newRow("no number") << QRectF(1, 2, 3, 4) << NO_NUMBER << QRect(0, 0, 0, 0);
    QTest::newRow("huge") << QRectF(0, 0, 3, 4) << 1e300 << QRect(0, 0, LIMIT, LIMIT);
}

void tst_KyStageGeometry::scaledRect()
{
    QFETCH(QRectF, rect);
    QFETCH(double, factor);
    QFETCH(QRect, expected);
    QCOMPARE(StageGeometry::scaledRect(rect, factor), expected);
}

void tst_KyStageGeometry::isDrawable_data()
{
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<bool>("expected");
    QTest::newRow("some") << QRectF(-5, -5, 1, 0.1) << true;
    QTest::newRow("null") << QRectF() << false;
    QTest::newRow("no width") << QRectF(0, 0, 0, 1) << false;
    QTest::newRow("no height") << QRectF(0, 0, 1, 0) << false;
    QTest::newRow("negative width") << QRectF(0, 0, -1, 1) << false;
    QTest::newRow("negative height") << QRectF(0, 0, 1, -1) << false;
    QTest::newRow("infinite") << QRectF(0, 0, INFINITE, 1) << false;
    QTest::newRow("nowhere") << QRectF(NO_NUMBER, 0, 1, 1) << false;
}

void tst_KyStageGeometry::isDrawable()
{
    QFETCH(QRectF, rect);
    QFETCH(bool, expected);
    QCOMPARE(StageGeometry::isDrawable(rect), expected);
}

void tst_KyStageGeometry::bounds_uniteTheStageAndItsScreens()
{
    KyStage stage;
    stage.setRect(QRect(0, 0, 100, 50));
    QCOMPARE(StageGeometry::bounds(stage), QRectF(0, 0, 100, 50));
    addScreen(&stage, QRectF(10, 10, 20, 20));
    QCOMPARE(StageGeometry::bounds(stage), QRectF(0, 0, 100, 50));
}

void tst_KyStageGeometry::bounds_ofScreensOutside_growThatWay()
{
    KyStage stage;
    stage.setRect(QRect(0, 0, 100, 50));
    addScreen(&stage, QRectF(-10.5, 10, 20, 20));
    addScreen(&stage, QRectF(90, 40, 20.25, 20));
    QCOMPARE(StageGeometry::bounds(stage), QRectF(QPointF(-10.5, 0), QPointF(110.25, 60)));
}

void tst_KyStageGeometry::bounds_leaveOutWhatIsNotFinite()
{
    KyStage stage;
    stage.setRect(QRect(0, 0, 100, 50));
    addScreen(&stage, QRectF(0, 0, INFINITE, 10));
    addScreen(&stage, QRectF(0, NO_NUMBER, 10, 10));
    QCOMPARE(StageGeometry::bounds(stage), QRectF(0, 0, 100, 50));
    QCOMPARE(StageGeometry::snappedBounds(stage), QRectF(0, 0, 100, 50));
}

void tst_KyStageGeometry::bounds_leaveOutMissingScreens()
{
    KyStage stage;
    stage.setRect(QRect(0, 0, 100, 50));
    stage.screenListPtr()->append(nullptr);
    QCOMPARE(StageGeometry::bounds(stage), QRectF(0, 0, 100, 50));
    QCOMPARE(StageGeometry::snappedBounds(stage), QRectF(0, 0, 100, 50));
}

void tst_KyStageGeometry::snappedBounds_snapEachScreen()
{
    KyStage stage;
    stage.setRect(QRect(0, 0, 100, 50));
    addScreen(&stage, QRectF(-10.5, 10, 20, 20));
    addScreen(&stage, QRectF(90, 40, 20.25, 20));
    QCOMPARE(StageGeometry::snappedBounds(stage), QRectF(QPointF(-10, 0), QPointF(110, 60)));
}

void tst_KyStageGeometry::iconContent_ofAWideStage_isTruncated_data()
{
    QTest::addColumn<double>("factor");
    QTest::addColumn<QRect>("expected");
    // The products fall short of 246 and 138.375 in places, and what is short of a pixel is cut off.
    QTest::newRow("1.00") << 1.0 << QRect(5, 31, 118, 66);
    QTest::newRow("1.25") << 1.25 << QRect(5, 38, 150, 84);
    QTest::newRow("1.50") << 1.5 << QRect(5, 45, 182, 102);
    QTest::newRow("1.75") << 1.75 << QRect(5, 52, 214, 120);
    QTest::newRow("2.00") << 2.0 << QRect(5, 59, 245, 138);
    QTest::newRow("2.25") << 2.25 << QRect(5, 66, 278, 156);
    QTest::newRow("2.50") << 2.5 << QRect(5, 73, 310, 174);
    QTest::newRow("2.75") << 2.75 << QRect(5, 80, 342, 192);
    QTest::newRow("3.00") << 3.0 << QRect(5, 87, 374, 210);
}

void tst_KyStageGeometry::iconContent_ofAWideStage_isTruncated()
{
    QFETCH(double, factor);
    QFETCH(QRect, expected);
    const QSizeF size = QSizeF(128, 128) * factor;
    QCOMPARE(StageGeometry::iconLayout(QRectF(0, 0, 1920, 1080), size).content, expected);
}

void tst_KyStageGeometry::iconLayout_fitsTheLongerSide_data()
{
    QTest::addColumn<QRectF>("bounds");
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QRect>("content");
    const QSizeF square(110, 110);
    QTest::newRow("wide") << QRectF(0, 0, 200, 50) << square << 0.5 << QRect(5, 42, 100, 25);
    QTest::newRow("high") << QRectF(0, 0, 50, 200) << square << 0.5 << QRect(42, 5, 25, 100);
    QTest::newRow("square") << QRectF(0, 0, 50, 50) << square << 2.0 << QRect(5, 5, 100, 100);
    QTest::newRow("square by its width")
        << QRectF(0, 0, 50, 50) << QSizeF(60, 110) << 1.0 << QRect(5, 30, 50, 50);
    QTest::newRow("wide in a flat icon overflows")
        << QRectF(0, 0, 200, 100) << QSizeF(210, 60) << 1.0 << QRect(5, -20, 200, 100);
    QTest::newRow("high in a narrow icon overflows")
        << QRectF(0, 0, 100, 200) << QSizeF(60, 210) << 1.0 << QRect(-20, 5, 100, 200);
    QTest::newRow("odd rest, cut off towards zero")
        << QRectF(0, 0, 200, 100) << QSizeF(210, 61) << 1.0 << QRect(5, -19, 200, 100);
}

void tst_KyStageGeometry::iconLayout_fitsTheLongerSide()
{
    QFETCH(QRectF, bounds);
    QFETCH(QSizeF, size);
    QFETCH(double, scale);
    QFETCH(QRect, content);
    bounds.translate(-30, 20);
    const StageGeometry::IconLayout layout = StageGeometry::iconLayout(bounds, size);
    QCOMPARE(layout.scale, scale);
    QCOMPARE(layout.offset, QPointF(30 * scale, -20 * scale));
    QCOMPARE(layout.content, content);
}

void tst_KyStageGeometry::iconLayout_ofWhatCannotBeDrawn_isEmpty_data()
{
    QTest::addColumn<QRectF>("bounds");
    QTest::addColumn<QSizeF>("size");
    const QSizeF size(128, 128);
    QTest::newRow("nothing") << QRectF() << size;
    QTest::newRow("negative") << QRectF(100, 100, -50, -50) << size;
    QTest::newRow("one side negative") << QRectF(100, 100, 50, -50) << size;
    QTest::newRow("infinite") << QRectF(0, 0, INFINITE, 1) << size;
    QTest::newRow("flat") << QRectF(0, 0, INT_HIGHEST, 10) << size;
    QTest::newRow("thin") << QRectF(0, 0, 10, INT_HIGHEST) << size;
    QTest::newRow("tiny icon") << QRectF(0, 0, 10, 10) << QSizeF(10, 10);
    QTest::newRow("tinier than its border") << QRectF(0, 0, 10, 10) << QSizeF(4, 4);
    QTest::newRow("no icon") << QRectF(0, 0, 10, 10) << QSizeF();
}

void tst_KyStageGeometry::iconLayout_ofWhatCannotBeDrawn_isEmpty()
{
    QFETCH(QRectF, bounds);
    QFETCH(QSizeF, size);
    QVERIFY(StageGeometry::iconLayout(bounds, size).content.isEmpty());
}

void tst_KyStageGeometry::previewScale_data()
{
    QTest::addColumn<QSizeF>("bounds");
    QTest::addColumn<QSize>("target");
    QTest::addColumn<double>("expected");
    QTest::newRow("wide") << QSizeF(200, 100) << QSize(100, 100) << 0.5;
    QTest::newRow("wide, overflows") << QSizeF(200, 100) << QSize(100, 40) << 0.4;
    QTest::newRow("wide, less than a pixel over") << QSizeF(200, 81) << QSize(100, 40) << 0.5;
    QTest::newRow("wide, a pixel over") << QSizeF(200, 82) << QSize(100, 40) << 40.0 / 82;
    QTest::newRow("high") << QSizeF(100, 200) << QSize(100, 100) << 0.5;
    QTest::newRow("high, overflows") << QSizeF(100, 200) << QSize(40, 100) << 0.4;
    QTest::newRow("high, less than a pixel over") << QSizeF(81, 200) << QSize(40, 100) << 0.5;
    QTest::newRow("high, a pixel over") << QSizeF(82, 200) << QSize(40, 100) << 40.0 / 82;
    QTest::newRow("square") << QSizeF(50, 50) << QSize(100, 200) << 2.0;
    QTest::newRow("square, overflows") << QSizeF(50, 50) << QSize(200, 100) << 2.0;
    // 1920 * (246 / 1920) comes out below 246 and passes for fitting a height of 245.
    QTest::newRow("square, by its width first") << QSizeF(1920, 1920) << QSize(246, 245) << 246.0 / 1920;
}

void tst_KyStageGeometry::previewScale()
{
    QFETCH(QSizeF, bounds);
    QFETCH(QSize, target);
    QFETCH(double, expected);
    QCOMPARE(StageGeometry::previewScale(QRectF(QPointF(-7, 9), bounds), target), expected);
}

void tst_KyStageGeometry::previewScale_ofWhatCannotBeDrawn_isZero_data()
{
    QTest::addColumn<QRectF>("bounds");
    QTest::addColumn<QSize>("target");
    const QRectF some(0, 0, 10, 10);
    QTest::newRow("nothing") << QRectF() << QSize(10, 10);
    QTest::newRow("negative") << QRectF(0, 0, -10, 10) << QSize(10, 10);
    QTest::newRow("no number") << QRectF(0, 0, NO_NUMBER, 10) << QSize(10, 10);
    QTest::newRow("null target") << some << QSize();
    QTest::newRow("target without a width") << some << QSize(0, 10);
    QTest::newRow("target without a height") << some << QSize(10, 0);
    QTest::newRow("negative target") << some << QSize(-1, -1);
}

void tst_KyStageGeometry::previewScale_ofWhatCannotBeDrawn_isZero()
{
    QFETCH(QRectF, bounds);
    QFETCH(QSize, target);
    QCOMPARE(StageGeometry::previewScale(bounds, target), 0.0);
}

KYTE_TEST_MAIN(tst_KyStageGeometry)
#include "tst_KyStageGeometry.moc"
