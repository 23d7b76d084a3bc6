#include <KyTestMain.h>

#include <KySvgGeometry_p.h>

#include <limits>

using namespace Kyte;

class tst_KySvgGeometry : public QObject
{
    Q_OBJECT

private slots:
    void renderedSize_data();
    void renderedSize();
    void ownSize_data();
    void ownSize();
};

static const double INFINITE = std::numeric_limits<double>::infinity();
static const double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();

void tst_KySvgGeometry::renderedSize_data()
{
    QTest::addColumn<QSizeF>("viewBox");
    QTest::addColumn<QSize>("target");
    QTest::addColumn<QSize>("kept");
    QTest::addColumn<QSize>("expanded");

    const QSize square(64, 64);
    QTest::newRow("wide") << QSizeF(200, 100) << square << QSize(64, 32) << QSize(128, 64);
    QTest::newRow("high") << QSizeF(100, 200) << square << QSize(32, 64) << QSize(64, 128);
    QTest::newRow("square") << QSizeF(10, 10) << square << QSize(64, 64) << QSize(64, 64);
    QTest::newRow("wide into high") << QSizeF(200, 100) << QSize(20, 64) << QSize(20, 10) << QSize(128, 64);
    QTest::newRow("wide into low: exceeds it")
        << QSizeF(200, 100) << QSize(64, 16) << QSize(64, 32) << QSize(32, 16);
    QTest::newRow("high into narrow: exceeds it")
        << QSizeF(100, 200) << QSize(16, 64) << QSize(32, 64) << QSize(16, 32);
    QTest::newRow("square into wide: exceeds it")
        << QSizeF(10, 10) << QSize(64, 16) << QSize(64, 64) << QSize(16, 16);
    QTest::newRow("truncated, wide") << QSizeF(3, 2) << QSize(10, 11) << QSize(10, 6) << QSize(16, 11);
    QTest::newRow("truncated, high") << QSizeF(2, 3) << QSize(10, 11) << QSize(7, 11) << QSize(10, 15);
    QTest::newRow("fractions") << QSizeF(0.2, 0.1) << square << QSize(64, 32) << QSize(128, 64);
    // 29 / 100 * 100 is 28.999999999999996
    QTest::newRow("divided first") << QSizeF(100, 29) << QSize(100, 50) << QSize(100, 28) << QSize(172, 50);
    QTest::newRow("too thin for a pixel") << QSizeF(1000, 1) << square << QSize(64, 0) << QSize(0, 64);
    QTest::newRow("empty") << QSizeF(0, 0) << square << QSize(64, 0) << QSize(0, 64);
    QTest::newRow("no width") << QSizeF(0, 10) << square << QSize(0, 64) << QSize(64, 0);
    QTest::newRow("no height") << QSizeF(10, 0) << square << QSize(64, 0) << QSize(0, 64);
    QTest::newRow("negative width") << QSizeF(-10, 10) << square << QSize(0, 64) << QSize(64, 0);
    QTest::newRow("infinite") << QSizeF(INFINITE, INFINITE) << square << QSize(64, 0) << QSize(0, 64);
    QTest::newRow("infinite width") << QSizeF(INFINITE, 1) << square << QSize(64, 0) << QSize(0, 64);
    QTest::newRow("no numbers") << QSizeF(NO_NUMBER, NO_NUMBER) << square << QSize(64, 0) << QSize(64, 0);
    QTest::newRow("negative target") << QSizeF(2, 1) << QSize(-64, -64) << QSize(-64, 0) << QSize(0, -64);
    QTest::newRow("empty target") << QSizeF(2, 1) << QSize(0, 0) << QSize(0, 0) << QSize(0, 0);
    QTest::newRow("longest side") << QSizeF(1, 32767) << QSize(1, 1) << QSize(0, 1) << QSize(1, 32767);
    QTest::newRow("longer") << QSizeF(1, 32768) << QSize(1, 1) << QSize(0, 1) << QSize(1, 0);
}

void tst_KySvgGeometry::renderedSize()
{
    QFETCH(QSizeF, viewBox);
    QFETCH(QSize, target);
    QTEST(SvgGeometry::renderedSize(viewBox, target, Qt::KeepAspectRatio), "kept");
    QTEST(SvgGeometry::renderedSize(viewBox, target, Qt::KeepAspectRatioByExpanding), "expanded");
    QCOMPARE(SvgGeometry::renderedSize(viewBox, target, Qt::IgnoreAspectRatio), target);
}

void tst_KySvgGeometry::ownSize_data()
{
    QTest::addColumn<QSizeF>("viewBox");
    QTest::addColumn<QSize>("expected");
    QTest::newRow("whole") << QSizeF(200, 100) << QSize(200, 100);
    QTest::newRow("truncated") << QSizeF(10.9, 0.9) << QSize(10, 0);
    QTest::newRow("negative") << QSizeF(-1, -0.5) << QSize(0, 0);
    QTest::newRow("huge") << QSizeF(1e300, 32768) << QSize(0, 0);
    QTest::newRow("infinite, no number") << QSizeF(INFINITE, NO_NUMBER) << QSize(0, 0);
}

void tst_KySvgGeometry::ownSize()
{
    QFETCH(QSizeF, viewBox);
    QTEST(SvgGeometry::ownSize(viewBox), "expected");
}

KYTE_TEST_MAIN(tst_KySvgGeometry)
#include "tst_KySvgGeometry.moc"
