#include "KyTestMain.h"

#include <KyCommandLinkButton.h>

#include <QAccessible>

using namespace Kyte;

class Listener : public QObject
{
    Q_OBJECT

public slots:
    void onClicked(bool checked)
    {
        heard.append(QStringLiteral("clicked %1").arg(checked));
    }
    void onClicked(KyCommandLinkButton *button)
    {
        heard.append(QStringLiteral("button %1").arg(button->buttonId()));
    }
    void onClicked(int buttonId)
    {
        heard.append(QStringLiteral("id %1").arg(buttonId));
    }

public:
    QStringList heard;
};

class tst_KyCommandLinkButton : public QObject
{
    Q_OBJECT

private slots:
    void constructors();
    void buttonId_isKept();
    void buttonId_isAProperty();
    void click_emitsButtonThenId_data();
    void click_emitsButtonThenId();
    void inheritedClicked_comesFirstComeFirstServed();
    void buttonSignal_carriesTheButton();
    void idIsTheOneOfTheMoment();
    void deletedByTheFirstListener_isHarmless();
    void keyboard_clicks_data();
    void keyboard_clicks();
    void disabled_emitsNothing();
    void accessible_readsTextAndDescription();
    void accessible_ownDescriptionStays();
};

static void listen(KyCommandLinkButton *button, Listener *listener)
{
    QObject::connect(button, SIGNAL(clicked(KyCommandLinkButton *)), listener,
                     SLOT(onClicked(KyCommandLinkButton *)));
    QObject::connect(button, SIGNAL(clicked(int)), listener, SLOT(onClicked(int)));
}

void tst_KyCommandLinkButton::constructors()
{
    QWidget parent;
    const KyCommandLinkButton plain(&parent);
    QCOMPARE(plain.parentWidget(), &parent);
    QCOMPARE(plain.buttonId(), 0);
    const KyCommandLinkButton withText(QStringLiteral("text"), &parent);
    QCOMPARE(withText.parentWidget(), &parent);
    QCOMPARE(withText.text(), QStringLiteral("text"));
    QCOMPARE(withText.description(), QString());
    QCOMPARE(withText.buttonId(), 0);
    const KyCommandLinkButton described(QStringLiteral("text"), QStringLiteral("description"), &parent);
    QCOMPARE(described.parentWidget(), &parent);
    QCOMPARE(described.text(), QStringLiteral("text"));
    QCOMPARE(described.description(), QStringLiteral("description"));
    QCOMPARE(described.buttonId(), 0);
    const KyCommandLinkButton numbered(QStringLiteral("text"), QStringLiteral("description"), 7, &parent);
    QCOMPARE(numbered.parentWidget(), &parent);
    QCOMPARE(numbered.text(), QStringLiteral("text"));
    QCOMPARE(numbered.description(), QStringLiteral("description"));
    QCOMPARE(numbered.buttonId(), 7);
}

void tst_KyCommandLinkButton::buttonId_isKept()
{
    KyCommandLinkButton button;
    for (int id : {3, -1, 0, std::numeric_limits<int>::max()}) {
        button.setButtonId(id);
        QCOMPARE(button.buttonId(), id);
    }
}

void tst_KyCommandLinkButton::buttonId_isAProperty()
{
    KyCommandLinkButton button;
    QVERIFY(button.setProperty("buttonId", 12));
    QCOMPARE(button.buttonId(), 12);
}

void tst_KyCommandLinkButton::click_emitsButtonThenId_data()
{
    QTest::addColumn<int>("constructor");
    QTest::newRow("plain") << 0;
    QTest::newRow("text") << 1;
    QTest::newRow("description") << 2;
    QTest::newRow("number") << 3;
}

void tst_KyCommandLinkButton::click_emitsButtonThenId()
{
    QFETCH(int, constructor);
    QScopedPointer<KyCommandLinkButton> button;
    switch (constructor) {
    case 0:
        button.reset(new KyCommandLinkButton);
        break;
    case 1:
        button.reset(new KyCommandLinkButton(QStringLiteral("text")));
        break;
    case 2:
        button.reset(new KyCommandLinkButton(QStringLiteral("text"), QStringLiteral("description")));
        break;
    default:
        button.reset(new KyCommandLinkButton(QStringLiteral("text"), QStringLiteral("description"), 1));
    }
    button->setButtonId(4);
    Listener listener;
    listen(button.data(), &listener);
    button->click();
    QCOMPARE(listener.heard, QStringList({QStringLiteral("button 4"), QStringLiteral("id 4")}));
}

void tst_KyCommandLinkButton::inheritedClicked_comesFirstComeFirstServed()
{
    KyCommandLinkButton button;
    button.setCheckable(true);
    Listener listener;
    listen(&button, &listener);
    connect(&button, SIGNAL(clicked(bool)), &listener, SLOT(onClicked(bool)));
    QSignalSpy withoutArgument(&button, SIGNAL(clicked()));
    button.click();
    QCOMPARE(listener.heard,
             QStringList({QStringLiteral("button 0"), QStringLiteral("id 0"), QStringLiteral("clicked 1")}));
    QCOMPARE(withoutArgument.count(), 1);
}

void tst_KyCommandLinkButton::buttonSignal_carriesTheButton()
{
    KyCommandLinkButton button;
    QSignalSpy spy(&button, SIGNAL(clicked(KyCommandLinkButton *)));
    QVERIFY(spy.isValid());
    button.click();
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).value<KyCommandLinkButton *>(), &button);
}

void tst_KyCommandLinkButton::idIsTheOneOfTheMoment()
{
    KyCommandLinkButton button;
    QSignalSpy spy(&button, SIGNAL(clicked(int)));
    button.setButtonId(1);
    button.click();
    button.setButtonId(2);
    button.click();
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(0).at(0), QVariant(1));
    QCOMPARE(spy.at(1).at(0), QVariant(2));
}

void tst_KyCommandLinkButton::deletedByTheFirstListener_isHarmless()
{
    auto *button = new KyCommandLinkButton;
    const QPointer<KyCommandLinkButton> guard(button);
    Listener listener;
    connect(button, SIGNAL(clicked(int)), &listener, SLOT(onClicked(int)));
    connect(button, qOverload<KyCommandLinkButton *>(&KyCommandLinkButton::clicked),
            [](KyCommandLinkButton *clicked) {
                delete clicked;
            });
    button->click();
    QVERIFY(!guard);
    QCOMPARE(listener.heard, QStringList());
}

void tst_KyCommandLinkButton::keyboard_clicks_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::newRow("space") << int(Qt::Key_Space) << int(Qt::NoModifier);
    QTest::newRow("mnemonic") << int(Qt::Key_O) << int(Qt::AltModifier);
}

void tst_KyCommandLinkButton::keyboard_clicks()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    KyCommandLinkButton button(QStringLiteral("&Overwrite"), QStringLiteral("description"), 9);
    button.show();
    QApplication::setActiveWindow(&button);
    QVERIFY(QTest::qWaitForWindowActive(&button));
    button.setFocus();
    QSignalSpy spy(&button, SIGNAL(clicked(int)));
    QTest::keyClick(&button, static_cast<Qt::Key>(key), Qt::KeyboardModifiers(modifiers));
    QTRY_COMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0), QVariant(9));
}

void tst_KyCommandLinkButton::disabled_emitsNothing()
{
    KyCommandLinkButton button;
    button.setEnabled(false);
    Listener listener;
    listen(&button, &listener);
    QTest::mouseClick(&button, Qt::LeftButton);
    button.click();
    QCOMPARE(listener.heard, QStringList());
}

void tst_KyCommandLinkButton::accessible_readsTextAndDescription()
{
    KyCommandLinkButton button(QStringLiteral("&Overwrite"), QString());
    button.setDescription(QStringLiteral("The old stage is lost."));
    button.show();
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&button);
    QVERIFY(accessible);
    QCOMPARE(accessible->role(), QAccessible::Button);
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Overwrite"));
    QCOMPARE(accessible->text(QAccessible::Description), QStringLiteral("The old stage is lost."));
    QVERIFY(accessible->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
    QSignalSpy spy(&button, SIGNAL(clicked(int)));
    accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QTRY_COMPARE(spy.count(), 1);
}

void tst_KyCommandLinkButton::accessible_ownDescriptionStays()
{
    KyCommandLinkButton button(QStringLiteral("text"), QStringLiteral("description"));
    button.setAccessibleDescription(QStringLiteral("own"));
    button.show();
    QCOMPARE(button.accessibleDescription(), QStringLiteral("own"));
}

KYTE_TEST_MAIN(tst_KyCommandLinkButton)
#include "tst_KyCommandLinkButton.moc"
