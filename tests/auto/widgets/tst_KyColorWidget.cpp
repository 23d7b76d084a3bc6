#include "KyTestMain.h"

#include <KyColorWidget.h>

#include <QAccessible>
#include <QColorDialog>
#include <QImage>
#include <QSpinBox>
#include <QTimer>
#include <QVBoxLayout>

using namespace Kyte;

/** Waits for the colour dialog, looks at it and closes it with a colour or without. */
class Picker : public QObject
{
    Q_OBJECT

public:
    explicit Picker(const QColor &choice = QColor())
        : m_choice(choice)
    {
        m_timer.start(5);
        connect(&m_timer, SIGNAL(timeout()), this, SLOT(look()));
    }

    int count = 0;
    QString title;
    QColor initial;
    bool hasAlpha = false;
    QWidget *parentWidget = nullptr;

private slots:
    void look()
    {
        auto *dialog = qobject_cast<QColorDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        ++count;
        title = dialog->windowTitle();
        initial = dialog->currentColor();
        hasAlpha = dialog->testOption(QColorDialog::ShowAlphaChannel);
        parentWidget = dialog->parentWidget();
        if (m_choice.isValid()) {
            dialog->setCurrentColor(m_choice);
            dialog->accept();
        } else {
            dialog->reject();
        }
    }

private:
    QTimer m_timer;
    QColor m_choice;
};

/** A window that takes what its child passes on. */
class PressCounter : public QWidget
{
public:
    int count = 0;

protected:
    void mousePressEvent(QMouseEvent *event) override
    {
        ++count;
        QWidget::mousePressEvent(event);
    }
};

class tst_KyColorWidget : public QObject
{
    Q_OBJECT

private slots:
    void initialState();
    void setBackColor_announcesNewThenOld();
    void setBackColor_sameColor_isSilent();
    void setBackColor_listenerSeesTheNewColor();
    void setBackColor_repaints();
    void listenerThatDeletes_isHarmless();

    void leftClick_opensThePicker();
    void otherButtons_openNothing_data();
    void otherButtons_openNothing();
    void press_isPassedOn_data();
    void press_isPassedOn();
    void cancelledPicker_changesNothing();
    void samePick_isSilent();
    void alphaChannel_isOfferedWhenEnabled_data();
    void alphaChannel_isOfferedWhenEnabled();
    void disabled_getsNoClicksFromQt();
    void disabled_pressStillOpensThePicker();
    void listenerThatDeletes_afterThePick_isHarmless();

    void paint_opaqueColor();
    void paint_alphaZero_showsTheCheckerboard();
    void paint_alphaHalf_showsTheColorHalfOver();
    void paint_disabled_isOfTheDisabledTextColor();
    void paint_frameOnlyWhileHovered();
    void paint_disabled_hasNoFrame();
    void paint_disabledUnderTheMouse_keepsItsFrameForLater();
    void paint_tinySizes_areHarmless();
    void paint_isSharp_data();
    void paint_isSharp();
    void paint_darkPalette();
    void checkerboard_isOfTwoColors();

    void keyboard_opensThePicker_data();
    void keyboard_opensThePicker();
    void keyboard_otherKeysArePassedOn();
    void keyboard_tabFrames_clickDoesNot();
    void accessible_tellsNameAndColor();
};

static QColor pixel(QWidget *widget, int x, int y)
{
    return QColor(widget->grab().toImage().pixel(x, y));
}

static void enter(QWidget *widget)
{
    QEnterEvent event(QPointF(3, 3), QPointF(3, 3), QPointF(3, 3));
    QCoreApplication::sendEvent(widget, &event);
}

static void leave(QWidget *widget)
{
    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(widget, &event);
}

static void press(QWidget *widget, Qt::MouseButton button)
{
    QMouseEvent event(QEvent::MouseButtonPress, QPointF(5, 5), button, button, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

void tst_KyColorWidget::initialState()
{
    QWidget parent;
    const KyColorWidget widget(&parent);
    QCOMPARE(widget.parentWidget(), &parent);
    QCOMPARE(widget.backColor(), QColor());
    QVERIFY(!widget.alphaSettingEnabled());
    QVERIFY(!widget.sizeHint().isEmpty());
}

void tst_KyColorWidget::setBackColor_announcesNewThenOld()
{
    KyColorWidget widget;
    QSignalSpy spy(&widget, SIGNAL(colorChanged(QColor, QColor)));
    widget.setBackColor(Qt::red);
    widget.setBackColor(Qt::blue);
    QCOMPARE(widget.backColor(), QColor(Qt::blue));
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(0), QVariantList({QColor(Qt::red), QColor()}));
    QCOMPARE(spy.at(1), QVariantList({QColor(Qt::blue), QColor(Qt::red)}));
}

void tst_KyColorWidget::setBackColor_sameColor_isSilent()
{
    KyColorWidget widget;
    widget.setBackColor(QColor(1, 2, 3, 4));
    QSignalSpy spy(&widget, SIGNAL(colorChanged(QColor, QColor)));
    widget.setBackColor(QColor(1, 2, 3, 4));
    QCOMPARE(spy.count(), 0);
    widget.setBackColor(QColor(1, 2, 3, 5)); // the alpha counts
    QCOMPARE(spy.count(), 1);
}

void tst_KyColorWidget::setBackColor_listenerSeesTheNewColor()
{
    KyColorWidget widget;
    QColor seen;
    connect(&widget, &KyColorWidget::colorChanged, [&]() {
        seen = widget.backColor();
    });
    widget.setBackColor(Qt::green);
    QCOMPARE(seen, QColor(Qt::green));
}

void tst_KyColorWidget::setBackColor_repaints()
{
    KyColorWidget widget;
    widget.resize(30, 20);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    QCoreApplication::processEvents();
    struct Counter : QObject
    {
        bool eventFilter(QObject *, QEvent *event) override
        {
            count += event->type() == QEvent::Paint;
            return false;
        }
        int count = 0;
    } counter;
    widget.installEventFilter(&counter);
    widget.setBackColor(Qt::green);
    QTRY_COMPARE(counter.count, 1);
}

void tst_KyColorWidget::listenerThatDeletes_isHarmless()
{
    auto *widget = new KyColorWidget;
    const QPointer<KyColorWidget> guard(widget);
    connect(widget, &KyColorWidget::colorChanged, [widget]() {
        delete widget;
    });
    widget->setBackColor(Qt::red);
    QVERIFY(!guard);
}

void tst_KyColorWidget::leftClick_opensThePicker()
{
    KyColorWidget widget;
    widget.setBackColor(Qt::red);
    QSignalSpy spy(&widget, SIGNAL(colorChanged(QColor, QColor)));
    const Picker picker(Qt::yellow);
    QTest::mouseClick(&widget, Qt::LeftButton);
    QCOMPARE(picker.count, 1);
    QCOMPARE(picker.title, QStringLiteral("Please select a color."));
    QCOMPARE(picker.initial, QColor(Qt::red));
    QCOMPARE(picker.parentWidget, &widget);
    QCOMPARE(widget.backColor(), QColor(Qt::yellow));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0), QVariantList({QColor(Qt::yellow), QColor(Qt::red)}));
}

void tst_KyColorWidget::otherButtons_openNothing_data()
{
    QTest::addColumn<int>("button");
    QTest::newRow("right") << int(Qt::RightButton);
    QTest::newRow("middle") << int(Qt::MiddleButton);
}

void tst_KyColorWidget::otherButtons_openNothing()
{
    QFETCH(int, button);
    KyColorWidget widget;
    const Picker picker(Qt::yellow);
    QTest::mouseClick(&widget, static_cast<Qt::MouseButton>(button));
    QTest::qWait(30);
    QCOMPARE(picker.count, 0);
    QCOMPARE(widget.backColor(), QColor());
}

void tst_KyColorWidget::press_isPassedOn_data()
{
    QTest::addColumn<int>("button");
    QTest::newRow("left, after the picker") << int(Qt::LeftButton);
    QTest::newRow("right") << int(Qt::RightButton);
}

void tst_KyColorWidget::press_isPassedOn()
{
    QFETCH(int, button);
    PressCounter window;
    window.resize(100, 100);
    auto *widget = new KyColorWidget(&window);
    widget->resize(30, 20);
    const Picker picker;
    QTest::mousePress(widget, static_cast<Qt::MouseButton>(button));
    QCOMPARE(picker.count, button == Qt::LeftButton ? 1 : 0);
    QCOMPARE(window.count, 1);
}

void tst_KyColorWidget::cancelledPicker_changesNothing()
{
    KyColorWidget widget;
    widget.setBackColor(Qt::red);
    QSignalSpy spy(&widget, SIGNAL(colorChanged(QColor, QColor)));
    const Picker picker;
    QTest::mouseClick(&widget, Qt::LeftButton);
    QCOMPARE(picker.count, 1);
    QCOMPARE(widget.backColor(), QColor(Qt::red));
    QCOMPARE(spy.count(), 0);
}

void tst_KyColorWidget::samePick_isSilent()
{
    KyColorWidget widget;
    widget.setBackColor(Qt::red);
    QSignalSpy spy(&widget, SIGNAL(colorChanged(QColor, QColor)));
    const Picker picker(Qt::red);
    QTest::mouseClick(&widget, Qt::LeftButton);
    QCOMPARE(picker.count, 1);
    QCOMPARE(spy.count(), 0);
}

void tst_KyColorWidget::alphaChannel_isOfferedWhenEnabled_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::newRow("enabled") << true;
    QTest::newRow("not enabled") << false;
}

void tst_KyColorWidget::alphaChannel_isOfferedWhenEnabled()
{
    QFETCH(bool, enabled);
    KyColorWidget widget;
    widget.setAlphaSettingEnabled(enabled);
    QCOMPARE(widget.alphaSettingEnabled(), enabled);
    const Picker picker(QColor(10, 20, 30, 40));
    QTest::mouseClick(&widget, Qt::LeftButton);
    QCOMPARE(picker.hasAlpha, enabled);
    QCOMPARE(widget.backColor().alpha(), enabled ? 40 : 255);
}

void tst_KyColorWidget::disabled_getsNoClicksFromQt()
{
    QWidget window;
    KyColorWidget widget(&window);
    widget.setEnabled(false);
    const Picker picker(Qt::yellow);
    QTest::mouseClick(&widget, Qt::LeftButton);
    QTest::qWait(30);
    QCOMPARE(picker.count, 0);
}

/** The handler does not look at the state: it is Qt that keeps clicks from disabled widgets. */
void tst_KyColorWidget::disabled_pressStillOpensThePicker()
{
    class Presser : public KyColorWidget
    {
    public:
        void press()
        {
            QMouseEvent event(QEvent::MouseButtonPress, QPointF(5, 5), Qt::LeftButton, Qt::LeftButton,
                              Qt::NoModifier);
            mousePressEvent(&event);
        }
    } widget;
    widget.setEnabled(false);
    const Picker picker(Qt::yellow);
    widget.press();
    QCOMPARE(picker.count, 1);
    QCOMPARE(widget.backColor(), QColor(Qt::yellow));
}

void tst_KyColorWidget::listenerThatDeletes_afterThePick_isHarmless()
{
    auto *widget = new KyColorWidget;
    const QPointer<KyColorWidget> guard(widget);
    connect(widget, &KyColorWidget::colorChanged, [widget]() {
        delete widget;
    });
    const Picker picker(Qt::yellow);
    press(widget, Qt::LeftButton);
    QVERIFY(!guard);
}

void tst_KyColorWidget::paint_opaqueColor()
{
    KyColorWidget widget;
    widget.resize(30, 20);
    widget.setBackColor(QColor(10, 200, 30));
    const QColor background = widget.palette().color(QPalette::Window);
    QCOMPARE(pixel(&widget, 0, 0), background);
    QCOMPARE(pixel(&widget, 1, 1), QColor(Qt::darkGray));
    QCOMPARE(pixel(&widget, 28, 18), QColor(Qt::darkGray));
    QCOMPARE(pixel(&widget, 2, 2), QColor(10, 200, 30));
    QCOMPARE(pixel(&widget, 27, 17), QColor(10, 200, 30));
    QCOMPARE(pixel(&widget, 29, 19), background);
}

void tst_KyColorWidget::paint_alphaZero_showsTheCheckerboard()
{
    KyColorWidget widget;
    widget.resize(40, 30);
    widget.setBackColor(QColor(255, 0, 0, 0));
    const QImage board(QStringLiteral(":/images/transparent_background.png"));
    const QImage image = widget.grab().toImage();
    for (int y = 2; y < 27; ++y) {
        for (int x = 2; x < 37; ++x)
            QCOMPARE(QColor(image.pixel(x, y)), QColor(board.pixel(x % board.width(), y % board.height())));
    }
}

void tst_KyColorWidget::paint_alphaHalf_showsTheColorHalfOver()
{
    KyColorWidget widget;
    widget.resize(40, 30);
    widget.setBackColor(QColor(200, 0, 0, 128));
    const QImage board(QStringLiteral(":/images/transparent_background.png"));
    const QImage image = widget.grab().toImage();
    for (const QPoint &point : {QPoint(3, 3), QPoint(11, 3), QPoint(11, 11), QPoint(30, 20)}) {
        const QColor under(board.pixel(point.x() % board.width(), point.y() % board.height()));
        const QColor over(image.pixel(point));
        QVERIFY(qAbs(over.red() - (200 * 128 + under.red() * 127) / 255) <= 1);
        QVERIFY(qAbs(over.green() - under.green() * 127 / 255) <= 1);
        QVERIFY(qAbs(over.blue() - under.blue() * 127 / 255) <= 1);
    }
    QCOMPARE(QImage(QStringLiteral(":/images/transparent_background.png")), board); // painted on a copy
    widget.setBackColor(QColor(200, 0, 0, 0));
    QCOMPARE(pixel(&widget, 3, 3), QColor(board.pixel(3, 3)));
}

void tst_KyColorWidget::paint_disabled_isOfTheDisabledTextColor()
{
    KyColorWidget widget;
    widget.resize(30, 20);
    widget.setBackColor(Qt::red);
    QPalette palette;
    palette.setColor(QPalette::Active, QPalette::Text, Qt::blue);
    palette.setColor(QPalette::Disabled, QPalette::Text, QColor(1, 2, 3));
    widget.setPalette(palette);
    widget.setEnabled(false);
    QCOMPARE(pixel(&widget, 1, 1), QColor(1, 2, 3));
    QCOMPARE(pixel(&widget, 15, 10), QColor(1, 2, 3));
    widget.setEnabled(true);
    QCOMPARE(pixel(&widget, 15, 10), QColor(Qt::red));
}

void tst_KyColorWidget::paint_frameOnlyWhileHovered()
{
    KyColorWidget widget;
    widget.resize(30, 20);
    widget.setBackColor(Qt::red);
    QVERIFY(pixel(&widget, 0, 0) != QColor(Qt::cyan));
    enter(&widget);
    for (const QPoint &point : {QPoint(0, 0), QPoint(29, 0), QPoint(0, 19), QPoint(29, 19), QPoint(15, 0)})
        QCOMPARE(pixel(&widget, point.x(), point.y()), QColor(Qt::cyan));
    QCOMPARE(pixel(&widget, 1, 1), QColor(Qt::darkGray)); // the frame is around the swatch
    QCOMPARE(pixel(&widget, 15, 10), QColor(Qt::red));
    leave(&widget);
    QVERIFY(pixel(&widget, 0, 0) != QColor(Qt::cyan));
}

void tst_KyColorWidget::paint_disabled_hasNoFrame()
{
    KyColorWidget widget;
    widget.resize(30, 20);
    widget.setEnabled(false);
    enter(&widget);
    QVERIFY(pixel(&widget, 0, 0) != QColor(Qt::cyan));
    widget.setEnabled(true); // hovering was not even noticed
    QVERIFY(pixel(&widget, 0, 0) != QColor(Qt::cyan));
}

void tst_KyColorWidget::paint_disabledUnderTheMouse_keepsItsFrameForLater()
{
    KyColorWidget widget;
    widget.resize(30, 20);
    enter(&widget);
    widget.setEnabled(false);
    QVERIFY(pixel(&widget, 0, 0) != QColor(Qt::cyan));
    leave(&widget);
    widget.setEnabled(true);
    QCOMPARE(pixel(&widget, 0, 0), QColor(Qt::cyan));
}

void tst_KyColorWidget::paint_tinySizes_areHarmless()
{
    KyColorWidget widget;
    widget.setBackColor(QColor(1, 2, 3, 4));
    enter(&widget);
    for (const QSize &size : {QSize(0, 0), QSize(1, 1), QSize(2, 2), QSize(3, 3), QSize(4, 1)}) {
        widget.resize(size);
        QImage image(5, 5, QImage::Format_ARGB32_Premultiplied);
        widget.render(&image);
    }
}

void tst_KyColorWidget::paint_isSharp_data()
{
    QTest::addColumn<qreal>("ratio");
    QTest::newRow("1.0") << 1.0;
    QTest::newRow("1.5") << 1.5;
    QTest::newRow("2.0") << 2.0;
}

/** No colours between those of the swatch, its border and the background: no edge is smeared. */
void tst_KyColorWidget::paint_isSharp()
{
    QFETCH(qreal, ratio);
    KyColorWidget widget;
    widget.resize(30, 20);
    widget.setBackColor(Qt::red);
    QImage image(widget.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    QSet<QRgb> colors;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            colors.insert(image.pixel(x, y));
    }
    QCOMPARE(colors,
             QSet<QRgb>({QColor(Qt::white).rgb(), QColor(Qt::darkGray).rgb(), QColor(Qt::red).rgb()}));
}

void tst_KyColorWidget::paint_darkPalette()
{
    KyColorWidget widget;
    widget.resize(30, 20);
    widget.setBackColor(QColor(250, 240, 230));
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(0x20, 0x20, 0x20));
    widget.setPalette(dark);
    QCOMPARE(pixel(&widget, 0, 0), QColor(0x20, 0x20, 0x20));
    QCOMPARE(pixel(&widget, 1, 1), QColor(Qt::darkGray));
    QCOMPARE(pixel(&widget, 15, 10), QColor(250, 240, 230)); // a colour is the same in any palette
}

void tst_KyColorWidget::checkerboard_isOfTwoColors()
{
    const QImage board(QStringLiteral(":/images/transparent_background.png"));
    QVERIFY(!board.isNull());
    QSet<QRgb> colors;
    for (int y = 0; y < board.height(); ++y) {
        for (int x = 0; x < board.width(); ++x)
            colors.insert(board.pixel(x, y));
    }
    QCOMPARE(colors.size(), 2);
    QCOMPARE(board.pixel(0, 0), board.pixel(board.width() / 2, board.height() / 2)); // it continues as a tile
}

void tst_KyColorWidget::keyboard_opensThePicker_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("space") << int(Qt::Key_Space);
    QTest::newRow("return") << int(Qt::Key_Return);
    QTest::newRow("enter") << int(Qt::Key_Enter);
}

void tst_KyColorWidget::keyboard_opensThePicker()
{
    QFETCH(int, key);
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    auto *first = new QSpinBox(&window);
    auto *widget = new KyColorWidget(&window);
    layout->addWidget(first);
    layout->addWidget(widget);
    window.show();
    QApplication::setActiveWindow(&window);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    first->setFocus();
    QTest::keyClick(first, Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), widget);
    const Picker picker(Qt::yellow);
    QTest::keyClick(widget, static_cast<Qt::Key>(key));
    QCOMPARE(picker.count, 1);
    QCOMPARE(widget->backColor(), QColor(Qt::yellow));
}

void tst_KyColorWidget::keyboard_otherKeysArePassedOn()
{
    KyColorWidget widget;
    QKeyEvent event(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"));
    QCoreApplication::sendEvent(&widget, &event);
    QVERIFY(!event.isAccepted());
}

void tst_KyColorWidget::keyboard_tabFrames_clickDoesNot()
{
    KyColorWidget widget;
    widget.resize(30, 20);
    const auto focus = [&widget](QEvent::Type type, Qt::FocusReason reason) {
        QFocusEvent event(type, reason);
        QCoreApplication::sendEvent(&widget, &event);
    };
    for (Qt::FocusReason reason : {Qt::TabFocusReason, Qt::BacktabFocusReason, Qt::ShortcutFocusReason}) {
        focus(QEvent::FocusIn, reason);
        QCOMPARE(pixel(&widget, 0, 0), QColor(Qt::cyan));
        focus(QEvent::FocusOut, Qt::OtherFocusReason);
        QVERIFY(pixel(&widget, 0, 0) != QColor(Qt::cyan));
    }
    focus(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
    QVERIFY(pixel(&widget, 0, 0) != QColor(Qt::cyan));
}

void tst_KyColorWidget::accessible_tellsNameAndColor()
{
    KyColorWidget widget;
    widget.setBackColor(QColor(0x11, 0x22, 0x33, 0x44));
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&widget);
    QVERIFY(accessible);
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Please select a color."));
    QCOMPARE(accessible->text(QAccessible::Description), QStringLiteral("#44112233"));
    QVERIFY(accessible->state().focusable);
}

KYTE_TEST_MAIN(tst_KyColorWidget)
#include "tst_KyColorWidget.moc"
