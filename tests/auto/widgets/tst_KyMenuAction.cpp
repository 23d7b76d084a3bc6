#include "KyTestMain.h"

#include <KyMenuAction.h>

#include <QMenu>

using namespace Kyte;

/** One slot for many actions, as the applications have it. */
class Listener : public QObject
{
    Q_OBJECT

public slots:
    void onTriggered(const QString &objectName, bool checked)
    {
        heard.append(QStringLiteral("%1 %2").arg(objectName).arg(checked));
    }
    void onInheritedTriggered(bool checked)
    {
        heard.append(QStringLiteral("inherited %1").arg(checked));
    }

public:
    QStringList heard;
};

class tst_KyMenuAction : public QObject
{
    Q_OBJECT

private slots:
    void constructors_setTextAndIcon();
    void oneSlot_servesManyActions();
    void objectName_isReadWhenTriggered();
    void withoutObjectName_nameIsEmpty();
    void checkable_tellsItsState();
    void inheritedSignal_goesOnWorking();
    void bothSignals_byAddress();
    void disabled_emitsNothing();
    void everyConstructor_connectsOnce_data();
    void everyConstructor_connectsOnce();
    void keyboard_triggersInMenu();
    void deletedByListener_isHarmless();
};

void tst_KyMenuAction::constructors_setTextAndIcon()
{
    QObject parent;
    QPixmap pixmap(8, 8);
    pixmap.fill(Qt::red);
    const KyMenuAction plain(&parent);
    QCOMPARE(plain.parent(), &parent);
    QCOMPARE(plain.text(), QString());
    const KyMenuAction withText(QStringLiteral("Open"), &parent);
    QCOMPARE(withText.parent(), &parent);
    QCOMPARE(withText.text(), QStringLiteral("Open"));
    QVERIFY(withText.icon().isNull());
    const KyMenuAction withIcon(QIcon(pixmap), QStringLiteral("Open"), &parent);
    QCOMPARE(withIcon.parent(), &parent);
    QCOMPARE(withIcon.text(), QStringLiteral("Open"));
    QVERIFY(!withIcon.icon().isNull());
}

void tst_KyMenuAction::oneSlot_servesManyActions()
{
    Listener listener;
    KyMenuAction open(nullptr);
    KyMenuAction close(nullptr);
    for (KyMenuAction *action : {&open, &close})
        connect(action, SIGNAL(triggered(QString, bool)), &listener, SLOT(onTriggered(QString, bool)));
    open.setObjectName(QStringLiteral("open"));
    close.setObjectName(QStringLiteral("close"));
    close.trigger();
    open.trigger();
    QCOMPARE(listener.heard, QStringList({QStringLiteral("close 0"), QStringLiteral("open 0")}));
}

void tst_KyMenuAction::objectName_isReadWhenTriggered()
{
    KyMenuAction action(nullptr);
    QSignalSpy spy(&action, SIGNAL(triggered(QString, bool)));
    action.setObjectName(QStringLiteral("first"));
    action.setObjectName(QStringLiteral("second"));
    action.trigger();
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0), QVariantList({QStringLiteral("second"), false}));
}

void tst_KyMenuAction::withoutObjectName_nameIsEmpty()
{
    KyMenuAction action(QStringLiteral("text"), nullptr);
    QSignalSpy spy(&action, SIGNAL(triggered(QString, bool)));
    action.trigger();
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0), QVariantList({QString(), false}));
}

void tst_KyMenuAction::checkable_tellsItsState()
{
    KyMenuAction action(nullptr);
    action.setObjectName(QStringLiteral("grid"));
    action.setCheckable(true);
    QSignalSpy spy(&action, SIGNAL(triggered(QString, bool)));
    action.trigger();
    action.trigger();
    action.toggle(); // not triggered by the user
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(0), QVariantList({QStringLiteral("grid"), true}));
    QCOMPARE(spy.at(1), QVariantList({QStringLiteral("grid"), false}));
}

void tst_KyMenuAction::inheritedSignal_goesOnWorking()
{
    Listener listener;
    KyMenuAction action(nullptr);
    action.setObjectName(QStringLiteral("a"));
    connect(&action, SIGNAL(triggered(bool)), &listener, SLOT(onInheritedTriggered(bool)));
    connect(&action, SIGNAL(triggered(QString, bool)), &listener, SLOT(onTriggered(QString, bool)));
    QSignalSpy withoutArgument(&action, SIGNAL(triggered()));
    action.trigger();
    QCOMPARE(listener.heard, QStringList({QStringLiteral("a 0"), QStringLiteral("inherited 0")}));
    QCOMPARE(withoutArgument.count(), 1);
}

void tst_KyMenuAction::bothSignals_byAddress()
{
    KyMenuAction action(nullptr);
    QSignalSpy own(&action, &KyMenuAction::triggered);
    QSignalSpy inherited(&action, &QAction::triggered);
    action.trigger();
    QCOMPARE(own.count(), 1);
    QCOMPARE(own.at(0).size(), 2);
    QCOMPARE(inherited.count(), 1);
    QCOMPARE(inherited.at(0).size(), 1);
}

void tst_KyMenuAction::disabled_emitsNothing()
{
    QMenu menu;
    auto *action = new KyMenuAction(QStringLiteral("&Delete"), &menu);
    action->setEnabled(false);
    menu.addAction(action);
    QSignalSpy spy(action, SIGNAL(triggered(QString, bool)));
    menu.popup(QPoint(10, 10));
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    QTest::keyClick(&menu, Qt::Key_D);
    QTest::mouseClick(&menu, Qt::LeftButton, Qt::NoModifier, menu.actionGeometry(action).center());
    QCOMPARE(spy.count(), 0);
}

void tst_KyMenuAction::everyConstructor_connectsOnce_data()
{
    QTest::addColumn<int>("constructor");
    QTest::newRow("parent") << 0;
    QTest::newRow("text") << 1;
    QTest::newRow("icon") << 2;
}

void tst_KyMenuAction::everyConstructor_connectsOnce()
{
    QFETCH(int, constructor);
    QObject parent;
    KyMenuAction *action = constructor == 0 ? new KyMenuAction(&parent)
        : constructor == 1                  ? new KyMenuAction(QStringLiteral("text"), &parent)
                                            : new KyMenuAction(QIcon(), QStringLiteral("text"), &parent);
    QSignalSpy spy(action, SIGNAL(triggered(QString, bool)));
    action->trigger();
    QCOMPARE(spy.count(), 1);
}

void tst_KyMenuAction::keyboard_triggersInMenu()
{
    QMenu menu;
    auto *action = new KyMenuAction(QStringLiteral("&Delete"), &menu);
    action->setObjectName(QStringLiteral("delete"));
    menu.addAction(new KyMenuAction(QStringLiteral("&Open"), &menu));
    menu.addAction(action);
    QSignalSpy spy(action, SIGNAL(triggered(QString, bool)));
    menu.popup(QPoint(10, 10));
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    QTest::keyClick(&menu, Qt::Key_D);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("delete"));
}

void tst_KyMenuAction::deletedByListener_isHarmless()
{
    auto *action = new KyMenuAction(nullptr);
    const QPointer<KyMenuAction> guard(action);
    connect(action, &KyMenuAction::triggered, [action]() {
        delete action;
    });
    action->trigger();
    QVERIFY(!guard);
}

KYTE_TEST_MAIN(tst_KyMenuAction)
#include "tst_KyMenuAction.moc"
