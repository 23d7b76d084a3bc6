#include <KyTestMain.h>

#include <KyImageSize_p.h>

using namespace Kyte;

class tst_KyImageSize : public QObject
{
    Q_OBJECT

private slots:
    void isSensible_data();
    void isSensible();
};

void tst_KyImageSize::isSensible_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("expected");
    QTest::newRow("smallest") << QSize(1, 1) << true;
    QTest::newRow("icon") << QSize(64, 32) << true;
    QTest::newRow("longest line") << QSize(32767, 1) << true;
    QTest::newRow("highest line") << QSize(1, 32767) << true;
    QTest::newRow("most pixels") << QSize(16384, 8192) << true;
    QTest::newRow("a line too many") << QSize(16384, 8193) << false;
    QTest::newRow("too wide") << QSize(32768, 1) << false;
    QTest::newRow("too high") << QSize(1, 32768) << false;
    QTest::newRow("both longest") << QSize(32767, 32767) << false;
    QTest::newRow("product overflows") << QSize(INT_MAX, INT_MAX) << false;
    QTest::newRow("no width") << QSize(0, 10) << false;
    QTest::newRow("no height") << QSize(10, 0) << false;
    QTest::newRow("negative") << QSize(-10, -10) << false;
    QTest::newRow("most negative") << QSize(INT_MIN, INT_MIN) << false;
    QTest::newRow("none") << QSize() << false;
}

void tst_KyImageSize::isSensible()
{
    QFETCH(QSize, size);
    QFETCH(bool, expected);
    QCOMPARE(ImageSize::isSensible(size), expected);
}

KYTE_TEST_MAIN(tst_KyImageSize)
#include "tst_KyImageSize.moc"
