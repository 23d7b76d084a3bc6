#include "KyTestMain.h"

#include <KyWaitingImageWidget.h>

#include <QAccessible>
#include <QSvgRenderer>
#include <QVBoxLayout>

using namespace Kyte;

class tst_KyWaitingImageWidget : public QObject
{
    Q_OBJECT

private slots:
    void resource_isAnAnimatedSquare();
    void size_is24By24();
    void size_staysInLayout();
    void picture_isDrawn();
    void picture_turns();
    void isReadable_onAnyBackground_data();
    void isReadable_onAnyBackground();
    void isSharp_data();
    void isSharp();
    void accessible_hasName();
};

static QImage picture(KyWaitingImageWidget *widget, const QColor &background, qreal ratio = 1.0)
{
    QImage image(widget->size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(background);
    widget->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

static int countOf(const QImage &image, const QColor &background)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += qAbs(qGray(image.pixel(x, y)) - qGray(background.rgb())) > 48;
    }
    return count;
}

void tst_KyWaitingImageWidget::resource_isAnAnimatedSquare()
{
    QSvgRenderer renderer(QStringLiteral(":/images/waiting_circle_gray.svg"));
    QVERIFY(renderer.isValid());
    QVERIFY(renderer.animated());
    QCOMPARE(renderer.defaultSize(), QSize(24, 24));
}

void tst_KyWaitingImageWidget::size_is24By24()
{
    QWidget parent;
    const KyWaitingImageWidget widget(&parent);
    QCOMPARE(widget.parentWidget(), &parent);
    QCOMPARE(widget.size(), QSize(24, 24));
    QVERIFY(widget.renderer()->isValid());
    QVERIFY(widget.renderer()->animated());
}

void tst_KyWaitingImageWidget::size_staysInLayout()
{
    QWidget panel;
    auto *layout = new QVBoxLayout(&panel);
    auto *widget = new KyWaitingImageWidget(&panel);
    layout->addWidget(widget);
    panel.resize(400, 300);
    panel.show();
    QCOMPARE(widget->size(), QSize(24, 24));
}

void tst_KyWaitingImageWidget::picture_isDrawn()
{
    KyWaitingImageWidget widget;
    const QImage image = picture(&widget, Qt::white);
    QCOMPARE(QColor(image.pixel(0, 0)), QColor(Qt::white)); // round,
    QCOMPARE(QColor(image.pixel(12, 12)), QColor(Qt::white)); // and hollow
    QVERIFY(countOf(image, Qt::white) > 20);
}

void tst_KyWaitingImageWidget::picture_turns()
{
    KyWaitingImageWidget widget;
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    QSignalSpy repaints(widget.renderer(), SIGNAL(repaintNeeded()));
    const QImage first = picture(&widget, Qt::white);
    QTRY_VERIFY(picture(&widget, Qt::white) != first);
    QTRY_VERIFY(repaints.count() > 1);
}

void tst_KyWaitingImageWidget::isReadable_onAnyBackground_data()
{
    QTest::addColumn<QColor>("background");
    QTest::newRow("white") << QColor(Qt::white);
    QTest::newRow("panel") << QColor(0xef, 0xef, 0xef);
    QTest::newRow("dark") << QColor(0x2a, 0x2a, 0x2a);
    QTest::newRow("black") << QColor(Qt::black);
}

void tst_KyWaitingImageWidget::isReadable_onAnyBackground()
{
    QFETCH(QColor, background);
    KyWaitingImageWidget widget;
    QVERIFY(countOf(picture(&widget, background), background) > 20);
}

void tst_KyWaitingImageWidget::isSharp_data()
{
    QTest::addColumn<qreal>("ratio");
    QTest::newRow("1.0") << 1.0;
    QTest::newRow("1.5") << 1.5;
    QTest::newRow("2.0") << 2.0;
}

/** At any ratio the picture is drawn with its own pixels: the edge is one device pixel wide, not scaled up.
 */
void tst_KyWaitingImageWidget::isSharp()
{
    QFETCH(qreal, ratio);
    KyWaitingImageWidget widget;
    const QImage image = picture(&widget, Qt::white, ratio);
    const int side = qRound(24 * ratio);
    QCOMPARE(image.size(), QSize(side, side));
    // Doubled pixels would come in equal pairs everywhere.
    int unequalPairs = 0;
    for (int y = 0; y + 1 < side; y += 2) {
        for (int x = 0; x + 1 < side; x += 2)
            unequalPairs += image.pixel(x, y) != image.pixel(x + 1, y);
    }
    QVERIFY(unequalPairs > 10);
}

void tst_KyWaitingImageWidget::accessible_hasName()
{
    KyWaitingImageWidget widget;
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&widget);
    QVERIFY(accessible);
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Please wait."));
    QVERIFY(!accessible->state().focusable);
}

KYTE_TEST_MAIN(tst_KyWaitingImageWidget)
#include "tst_KyWaitingImageWidget.moc"
