#include "KyTestMain.h"

#include <KyReadOnlyLineEdit.h>

#include <QAccessible>
#include <QClipboard>
#include <QFormLayout>
#include <QLabel>
#include <QScrollArea>
#include <QStyle>
#include <QVBoxLayout>

using namespace Kyte;

class tst_KyReadOnlyLineEdit : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void bothConstructors_setUpAlike_data();
    void bothConstructors_setUpAlike();
    void background_isThePanels();
    void background_isTakenWhenItIsMade();
    void typing_changesNothing();
    void textIsSelectedAndCopied_byKeyboard();
    void isDrawnOnThePanelsColour();
    void darkPalette_textIsReadable();
    void fillsWidthInLayout_heightStays();
    void accessible_readsAsReadOnlyText();
};

void tst_KyReadOnlyLineEdit::cleanup()
{
    QApplication::setPalette(QApplication::style()->standardPalette());
}

void tst_KyReadOnlyLineEdit::bothConstructors_setUpAlike_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("without text") << QString();
    QTest::newRow("with text") << QStringLiteral("Foyer");
}

void tst_KyReadOnlyLineEdit::bothConstructors_setUpAlike()
{
    QFETCH(QString, text);
    QWidget parent;
    const auto *edit =
        text.isNull() ? new KyReadOnlyLineEdit(&parent) : new KyReadOnlyLineEdit(text, &parent);
    QCOMPARE(edit->parentWidget(), &parent);
    QCOMPARE(edit->text(), text);
    QCOMPARE(edit->maximumWidth(), 16777215);
    QCOMPARE(edit->maximumHeight(), 20);
    QCOMPARE(edit->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(edit->sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
    QVERIFY(edit->isReadOnly());
    QCOMPARE(edit->styleSheet(),
             QStringLiteral("background-color:%1; border:none;")
                 .arg(QScrollArea().palette().color(QPalette::Window).name()));
}

void tst_KyReadOnlyLineEdit::background_isThePanels()
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0x12, 0x34, 0x56));
    QApplication::setPalette(palette);
    QCOMPARE(KyReadOnlyLineEdit().styleSheet(), QStringLiteral("background-color:#123456; border:none;"));
}

void tst_KyReadOnlyLineEdit::background_isTakenWhenItIsMade()
{
    const KyReadOnlyLineEdit edit;
    const QString before = edit.styleSheet();
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0xab, 0xcd, 0xef));
    QApplication::setPalette(palette);
    QCOMPARE(edit.styleSheet(), before);
    QCOMPARE(KyReadOnlyLineEdit().styleSheet(), QStringLiteral("background-color:#abcdef; border:none;"));
}

void tst_KyReadOnlyLineEdit::typing_changesNothing()
{
    KyReadOnlyLineEdit edit(QStringLiteral("Foyer"));
    QSignalSpy spy(&edit, SIGNAL(textChanged(QString)));
    QTest::keyClicks(&edit, QStringLiteral("abc"));
    QTest::keyClick(&edit, Qt::Key_Backspace);
    QCOMPARE(edit.text(), QStringLiteral("Foyer"));
    QCOMPARE(spy.count(), 0);
}

void tst_KyReadOnlyLineEdit::textIsSelectedAndCopied_byKeyboard()
{
    QApplication::clipboard()->clear();
    KyReadOnlyLineEdit edit(QStringLiteral("Foyer"));
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    edit.setFocus();
    QTest::keySequence(&edit, QKeySequence::SelectAll);
    QTest::keySequence(&edit, QKeySequence::Copy);
    QCOMPARE(edit.selectedText(), QStringLiteral("Foyer"));
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("Foyer"));
}

void tst_KyReadOnlyLineEdit::isDrawnOnThePanelsColour()
{
    KyReadOnlyLineEdit edit(QStringLiteral("x"));
    edit.resize(120, 20);
    const QImage image = edit.grab().toImage();
    const QColor panel = QScrollArea().palette().color(QPalette::Window);
    for (const QPoint &point :
         {QPoint(0, 0), QPoint(119, 0), QPoint(0, 19), QPoint(119, 19), QPoint(100, 10)})
        QCOMPARE(QColor(image.pixel(point)).name(), panel.name()); // no frame either
}

void tst_KyReadOnlyLineEdit::darkPalette_textIsReadable()
{
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(0x20, 0x20, 0x20));
    dark.setColor(QPalette::Base, QColor(0x10, 0x10, 0x10));
    dark.setColor(QPalette::Text, Qt::white);
    QApplication::setPalette(dark);
    KyReadOnlyLineEdit edit(QStringLiteral("MMMMMM"));
    edit.resize(120, 20);
    const QImage image = edit.grab().toImage();
    int brightest = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            brightest = qMax(brightest, qGray(image.pixel(x, y)));
    }
    QCOMPARE(QColor(image.pixel(119, 10)).name(), QStringLiteral("#202020"));
    QVERIFY(brightest > 200);
}

void tst_KyReadOnlyLineEdit::fillsWidthInLayout_heightStays()
{
    QWidget panel;
    auto *layout = new QVBoxLayout(&panel);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *edit = new KyReadOnlyLineEdit(QStringLiteral("Foyer"), &panel);
    layout->addWidget(edit);
    panel.resize(900, 300);
    panel.show();
    QCOMPARE(edit->width(), 900);
    QVERIFY(edit->height() <= 20);
}

void tst_KyReadOnlyLineEdit::accessible_readsAsReadOnlyText()
{
    QWidget panel;
    auto *layout = new QFormLayout(&panel);
    auto *edit = new KyReadOnlyLineEdit(QStringLiteral("10.0.0.7"), &panel);
    layout->addRow(QStringLiteral("&Address"), edit);
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(edit);
    QVERIFY(accessible);
    QCOMPARE(accessible->role(), QAccessible::EditableText);
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Address"));
    QCOMPARE(accessible->text(QAccessible::Value), QStringLiteral("10.0.0.7"));
    QVERIFY(accessible->state().readOnly);
    QVERIFY(accessible->state().focusable);
}

KYTE_TEST_MAIN(tst_KyReadOnlyLineEdit)
#include "tst_KyReadOnlyLineEdit.moc"
