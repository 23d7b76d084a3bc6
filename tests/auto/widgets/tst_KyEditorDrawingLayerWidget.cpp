#include "KyTestMain.h"

#include <KyEditorDrawingLayerWidget.h>

#include <QPushButton>

using namespace Kyte;

/** A panel of one colour that counts its children's paint events. */
class Panel : public QWidget
{
public:
    explicit Panel(const QColor &color, const QSize &size = QSize(60, 40))
    {
        QPalette filled = palette();
        filled.setColor(QPalette::Window, color);
        setPalette(filled);
        setAutoFillBackground(true);
        resize(size);
    }
};

class PaintCounter : public QObject
{
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        count += event->type() == QEvent::Paint;
        return QObject::eventFilter(watched, event);
    }
    int count = 0;
};

static QPixmap filled(const QSize &size, const QColor &color)
{
    QPixmap pixmap(size);
    pixmap.fill(color);
    return pixmap;
}

static QColor colorAt(QWidget *widget, int x, int y)
{
    return QColor(widget->grab().toImage().pixel(x, y));
}

class tst_KyEditorDrawingLayerWidget : public QObject
{
    Q_OBJECT

private slots:
    void construction();
    void withoutParent_isATopLevel();
    void startsWithTwoEmptyLayers();
    void setLayerCount_data();
    void setLayerCount();
    void setLayerCount_keepsTheFirstLayers();
    void appendedLayers_areEmptyAgain();
    void indexOutside_isIgnored_data();
    void indexOutside_isIgnored();
    void emptyOverlay_changesNothing();
    void noLayers_drawNothing();
    void layers_areMultipliedWithWhatLiesUnder();
    void layers_areMultipliedWithEachOther();
    void position_movesTheLayer();
    void transparentPixels_letThrough();
    void mouse_reachesWhatLiesUnder();
    void nothingRepaintsByItself();
    void doesNotFollowTheParentsSize();
    void pixmapOfADeviceRatio_isDrawnAtItsSize_data();
    void pixmapOfADeviceRatio_isDrawnAtItsSize();
    void rightToLeft_positionsStay();
};

void tst_KyEditorDrawingLayerWidget::construction()
{
    Panel panel(Qt::white, QSize(123, 45));
    const auto *layer = new KyEditorDrawingLayerWidget(&panel);
    QCOMPARE(layer->parentWidget(), &panel);
    QVERIFY(!layer->isWindow());
    QVERIFY(layer->windowFlags() & Qt::FramelessWindowHint);
    QVERIFY(layer->testAttribute(Qt::WA_TransparentForMouseEvents));
    QCOMPARE(layer->objectName(), QStringLiteral("KyDrawingLayerWidget"));
    QVERIFY(layer->autoFillBackground());
    QCOMPARE(layer->palette().color(QPalette::Window), QColor(0, 0, 0, 0));
    QCOMPARE(layer->geometry(), QRect(0, 0, 123, 45));
}

void tst_KyEditorDrawingLayerWidget::withoutParent_isATopLevel()
{
    const KyEditorDrawingLayerWidget layer(nullptr);
    QCOMPARE(layer.pos(), QPoint(0, 0));
    QVERIFY(layer.isWindow());
}

void tst_KyEditorDrawingLayerWidget::startsWithTwoEmptyLayers()
{
    KyEditorDrawingLayerWidget layer(nullptr);
    for (int index : {0, 1, 2}) {
        QVERIFY(layer.pixmap(index).isNull());
        QCOMPARE(layer.pixmapPos(index), QPoint(0, 0));
        layer.setPixmap(filled(QSize(3, 4), Qt::red), index);
        layer.setPixmapPos(QPoint(5, 6), index);
    }
    for (int index : {0, 1}) {
        QCOMPARE(layer.pixmap(index).size(), QSize(3, 4));
        QCOMPARE(layer.pixmapPos(index), QPoint(5, 6));
    }
    QVERIFY(layer.pixmap(2).isNull()); // the index that equals the count
    QCOMPARE(layer.pixmapPos(2), QPoint());
}

/** How many layers there are: those that keep what is set. */
static int countOf(KyEditorDrawingLayerWidget *layer)
{
    int count = 0;
    for (int index = 0; index < 20; ++index) {
        layer->setPixmapPos(QPoint(1, 1), index);
        count += layer->pixmapPos(index) == QPoint(1, 1);
    }
    return count;
}

void tst_KyEditorDrawingLayerWidget::setLayerCount_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("expected");
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("one") << 1 << 1;
    QTest::newRow("the same") << 2 << 2;
    QTest::newRow("more") << 5 << 5;
    QTest::newRow("negative") << -1 << 0;
    QTest::newRow("very negative") << std::numeric_limits<int>::min() << 0;
}

void tst_KyEditorDrawingLayerWidget::setLayerCount()
{
    QFETCH(int, count);
    QFETCH(int, expected);
    KyEditorDrawingLayerWidget layer(nullptr);
    layer.setLayerCount(count);
    QCOMPARE(countOf(&layer), expected);
}

void tst_KyEditorDrawingLayerWidget::setLayerCount_keepsTheFirstLayers()
{
    KyEditorDrawingLayerWidget layer(nullptr);
    layer.setLayerCount(3);
    for (int index : {0, 1, 2}) {
        layer.setPixmap(filled(QSize(index + 1, 1), Qt::red), index);
        layer.setPixmapPos(QPoint(index, 10), index);
    }
    layer.setLayerCount(2);
    QCOMPARE(layer.pixmap(0).width(), 1);
    QCOMPARE(layer.pixmap(1).width(), 2);
    QVERIFY(layer.pixmap(2).isNull());
    QCOMPARE(layer.pixmapPos(1), QPoint(1, 10));
    QCOMPARE(layer.pixmapPos(2), QPoint());
}

void tst_KyEditorDrawingLayerWidget::appendedLayers_areEmptyAgain()
{
    KyEditorDrawingLayerWidget layer(nullptr);
    layer.setPixmap(filled(QSize(3, 3), Qt::red), 1);
    layer.setPixmapPos(QPoint(9, 9), 1);
    layer.setLayerCount(1);
    layer.setLayerCount(2);
    QVERIFY(layer.pixmap(1).isNull());
    QCOMPARE(layer.pixmapPos(1), QPoint(0, 0));
}

void tst_KyEditorDrawingLayerWidget::indexOutside_isIgnored_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("count") << 2;
    QTest::newRow("negative") << -1;
    QTest::newRow("largest") << std::numeric_limits<int>::max();
    QTest::newRow("smallest") << std::numeric_limits<int>::min();
}

void tst_KyEditorDrawingLayerWidget::indexOutside_isIgnored()
{
    QFETCH(int, index);
    KyEditorDrawingLayerWidget layer(nullptr);
    layer.setPixmap(filled(QSize(3, 3), Qt::red), index);
    layer.setPixmapPos(QPoint(7, 7), index);
    QVERIFY(layer.pixmap(index).isNull());
    QCOMPARE(layer.pixmapPos(index), QPoint());
    for (int other : {0, 1}) {
        QVERIFY(layer.pixmap(other).isNull());
        QCOMPARE(layer.pixmapPos(other), QPoint());
    }
}

void tst_KyEditorDrawingLayerWidget::emptyOverlay_changesNothing()
{
    Panel panel(QColor(10, 200, 30));
    const QImage before = panel.grab().toImage();
    new KyEditorDrawingLayerWidget(&panel);
    QCOMPARE(panel.grab().toImage(), before);
}

void tst_KyEditorDrawingLayerWidget::noLayers_drawNothing()
{
    Panel panel(QColor(10, 200, 30));
    const QImage before = panel.grab().toImage();
    auto *layer = new KyEditorDrawingLayerWidget(&panel);
    layer->setPixmap(filled(QSize(20, 20), Qt::black), 0);
    QVERIFY(panel.grab().toImage() != before);
    layer->setLayerCount(0);
    QCOMPARE(panel.grab().toImage(), before);
}

void tst_KyEditorDrawingLayerWidget::layers_areMultipliedWithWhatLiesUnder()
{
    Panel panel(QColor(200, 100, 50));
    auto *layer = new KyEditorDrawingLayerWidget(&panel);
    layer->setPixmap(filled(QSize(10, 10), QColor(128, 128, 255)), 0);
    const QColor multiplied = colorAt(&panel, 5, 5);
    QVERIFY(qAbs(multiplied.red() - 200 * 128 / 255) <= 1);
    QVERIFY(qAbs(multiplied.green() - 100 * 128 / 255) <= 1);
    QVERIFY(qAbs(multiplied.blue() - 50) <= 1);
    QCOMPARE(colorAt(&panel, 15, 5), QColor(200, 100, 50));
    layer->setPixmap(filled(QSize(10, 10), Qt::white), 0); // white darkens nothing
    QCOMPARE(colorAt(&panel, 5, 5), QColor(200, 100, 50));
}

void tst_KyEditorDrawingLayerWidget::layers_areMultipliedWithEachOther()
{
    Panel panel(Qt::white);
    auto *layer = new KyEditorDrawingLayerWidget(&panel);
    layer->setPixmap(filled(QSize(20, 20), Qt::yellow), 0);
    layer->setPixmap(filled(QSize(10, 10), Qt::cyan), 1);
    QCOMPARE(colorAt(&panel, 15, 15), QColor(Qt::yellow));
    QCOMPARE(colorAt(&panel, 5, 5), QColor(Qt::green)); // neither covers the other
}

void tst_KyEditorDrawingLayerWidget::position_movesTheLayer()
{
    Panel panel(Qt::white);
    auto *layer = new KyEditorDrawingLayerWidget(&panel);
    layer->setPixmap(filled(QSize(10, 10), Qt::blue), 0);
    layer->setPixmapPos(QPoint(20, 5), 0);
    QCOMPARE(colorAt(&panel, 19, 8), QColor(Qt::white));
    QCOMPARE(colorAt(&panel, 20, 5), QColor(Qt::blue));
    QCOMPARE(colorAt(&panel, 29, 14), QColor(Qt::blue));
    QCOMPARE(colorAt(&panel, 30, 8), QColor(Qt::white));
    layer->setPixmapPos(QPoint(-5, -5), 0); // partly outside
    QCOMPARE(colorAt(&panel, 4, 4), QColor(Qt::blue));
    QCOMPARE(colorAt(&panel, 5, 5), QColor(Qt::white));
}

void tst_KyEditorDrawingLayerWidget::transparentPixels_letThrough()
{
    Panel panel(QColor(10, 200, 30));
    auto *layer = new KyEditorDrawingLayerWidget(&panel);
    layer->setPixmap(filled(QSize(20, 20), Qt::transparent), 0);
    QCOMPARE(colorAt(&panel, 5, 5), QColor(10, 200, 30));
}

void tst_KyEditorDrawingLayerWidget::mouse_reachesWhatLiesUnder()
{
    Panel panel(Qt::white);
    auto *button = new QPushButton(&panel);
    button->setGeometry(0, 0, 60, 40);
    auto *layer = new KyEditorDrawingLayerWidget(&panel);
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    QVERIFY(layer->isVisible());
    QSignalSpy clicks(button, SIGNAL(clicked()));
    QTest::mouseClick(panel.windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(30, 20));
    QCOMPARE(clicks.count(), 1);
    QCOMPARE(panel.childAt(30, 20), button);
}

void tst_KyEditorDrawingLayerWidget::nothingRepaintsByItself()
{
    Panel panel(Qt::white);
    auto *layer = new KyEditorDrawingLayerWidget(&panel);
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    QCoreApplication::processEvents();
    PaintCounter counter;
    layer->installEventFilter(&counter);
    layer->setLayerCount(4);
    layer->setPixmap(filled(QSize(10, 10), Qt::black), 3);
    layer->setPixmapPos(QPoint(1, 1), 3);
    layer->setLayerCount(3);
    QTest::qWait(50); // proves that nothing happens
    QCOMPARE(counter.count, 0);
    layer->update();
    QTRY_COMPARE(counter.count, 1);
}

void tst_KyEditorDrawingLayerWidget::doesNotFollowTheParentsSize()
{
    Panel panel(Qt::white, QSize(60, 40));
    const auto *layer = new KyEditorDrawingLayerWidget(&panel);
    panel.resize(200, 200);
    QCOMPARE(layer->size(), QSize(60, 40));
}

void tst_KyEditorDrawingLayerWidget::pixmapOfADeviceRatio_isDrawnAtItsSize_data()
{
    QTest::addColumn<qreal>("ratio");
    QTest::newRow("1.0") << 1.0;
    QTest::newRow("1.5") << 1.5;
    QTest::newRow("2.0") << 2.0;
}

void tst_KyEditorDrawingLayerWidget::pixmapOfADeviceRatio_isDrawnAtItsSize()
{
    QFETCH(qreal, ratio);
    Panel panel(Qt::white);
    auto *layer = new KyEditorDrawingLayerWidget(&panel);
    QPixmap pixmap = filled(QSize(qRound(20 * ratio), qRound(20 * ratio)), Qt::blue);
    pixmap.setDevicePixelRatio(ratio);
    layer->setPixmap(pixmap, 0);
    QImage image(panel.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    panel.render(&image);
    const int last = qRound(20 * ratio) - 1;
    QCOMPARE(QColor(image.pixel(last, last)), QColor(Qt::blue));
    QCOMPARE(QColor(image.pixel(last + 1, last)), QColor(Qt::white));
}

void tst_KyEditorDrawingLayerWidget::rightToLeft_positionsStay()
{
    Panel panel(Qt::white);
    panel.setLayoutDirection(Qt::RightToLeft);
    auto *layer = new KyEditorDrawingLayerWidget(&panel);
    layer->setPixmap(filled(QSize(10, 10), Qt::blue), 0);
    QCOMPARE(layer->pos(), QPoint(0, 0));
    QCOMPARE(colorAt(&panel, 5, 5), QColor(Qt::blue)); // a drawing is not mirrored
}

KYTE_TEST_MAIN(tst_KyEditorDrawingLayerWidget)
#include "tst_KyEditorDrawingLayerWidget.moc"
