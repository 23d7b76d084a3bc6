#include "KyTestEnvironment.h"
#include "KyTestMain.h"

#include <KyEditorCommon.h>
#include <KyEditorUserConfig.h>

#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>
#include <QRandomGenerator>
#include <QScreen>
#include <QSettings>

#include <memory>

using namespace Kyte;

/** A main window with docks named "a", "b", "c" ..., not in any area yet. */
class Window : public QMainWindow
{
public:
    explicit Window(int dockCount)
    {
        resize(900, 700);
        setCentralWidget(new QLabel(QStringLiteral("centre")));
        for (int i = 0; i < dockCount; ++i) {
            const QString name(QLatin1Char(static_cast<char>('a' + i)));
            auto *dock = new QDockWidget(name, this);
            dock->setObjectName(name);
            dock->setWidget(new QLabel(QStringLiteral("content of %1").arg(name)));
            docks.append(dock);
        }
    }

    void showAndWait()
    {
        show();
        QVERIFY(QTest::qWaitForWindowExposed(this));
    }

    QDockWidget *dock(char name) const
    {
        return docks.at(name - 'a');
    }

    QList<QDockWidget *> docks;
};

static QString names(const QList<QDockWidget *> &docks)
{
    QString text;
    for (const QDockWidget *dock : docks)
        text += dock->objectName();
    return text;
}

/**
 * The groups of \a window as texts, in alphabetical order. Two docks weigh the same whichever tab is first,
 * and their addresses decide, so a pair is put into alphabetical order here.
 */
static QStringList groups(Window *window)
{
    QStringList texts;
    const QList<QList<QDockWidget *>> docks = KyEditorCommon::getTabifiedDockGroups(window);
    for (const QList<QDockWidget *> &group : docks) {
        QString text = names(group);
        if (text.size() == 2)
            std::sort(text.begin(), text.end());
        texts.append(text);
    }
    texts.sort();
    return texts;
}

static QSettings *settings()
{
    return KyEditorUserConfig::settings();
}

class tst_KyDockPersistence : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void nullArguments_doNothing();
    void store_writesFourKeysOfTheirTypes();
    void store_doesNotWriteTheFile();
    void dockWithoutName_isNeitherStoredNorRestored();
    void restore_bringsDockIntoItsArea();
    void restore_withoutSettings_keepsEverything();
    void restore_areaThatIsNone_keepsTheDock_data();
    void restore_areaThatIsNone_keepsTheDock();
    void restore_movedDock_isShownAsItWas_data();
    void restore_movedDock_isShownAsItWas();
    void restore_floating();
    void restore_leavesFrameRectangle();
    void restore_nonsense_keepsWhatIs_data();
    void restore_nonsense_keepsWhatIs();
    void restore_floatingDockOfAnotherArea_hasItsPlace();

    void groups_ofNoWindow_areEmpty();
    void groups_areInTheOrderOfTheTabs();
    void storeTabs_writesArrays();
    void storeTabs_removesFormerKeys();
    void storeTabs_leavesNamelessDocksOut();
    void tabs_ofHiddenAndFloatingDocks_areRestored_data();
    void tabs_ofHiddenAndFloatingDocks_areRestored();
    void storeTabs_writesTheFile();
    void restoreTabs_moreThanTenGroups();
    void restoreTabs_ignoresUnusableArrays_data();
    void restoreTabs_ignoresUnusableArrays();
    void restoreTabs_damagedSize_isBounded();
    void restoreTabs_raisesTheLastActivated();

    void wholeLayout_survivesARestart();

    void reorder_emptyOrNull_doesNothing();
    void reorder_byPlace_data();
    void reorder_byPlace();
    void reorder_severalAreasAtOnce();
    void reorder_pinsForAMoment();
    void reorder_absurdSize_isBounded();
    void reorder_dockWithoutPlace_keepsItsLimits();
    void reorder_dockInNoArea_isNotLost();

    void mutatedSettings_areHarmless();
};

void tst_KyDockPersistence::init()
{
    while (!settings()->group().isEmpty())
        settings()->endGroup();
    settings()->clear();
    settings()->sync();
}

void tst_KyDockPersistence::nullArguments_doNothing()
{
    Window window(1);
    window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('a'));
    KyEditorCommon::storeDockWidgetGeometry(nullptr, &window);
    KyEditorCommon::storeDockWidgetGeometry(window.dock('a'), nullptr);
    KyEditorCommon::restoreDockWidgetGeometry(nullptr, &window);
    KyEditorCommon::restoreDockWidgetGeometry(window.dock('a'), nullptr);
    KyEditorCommon::storeTabifiedSettings(QStringLiteral("main"), nullptr);
    KyEditorCommon::restoreTabifiedSettings(QStringLiteral("main"), nullptr);
    QCOMPARE(settings()->allKeys(), QStringList());
    QVERIFY(!window.dock('a')->property("init_rect").isValid());
}

void tst_KyDockPersistence::store_writesFourKeysOfTheirTypes()
{
    Window window(1);
    window.addDockWidget(Qt::RightDockWidgetArea, window.dock('a'));
    window.showAndWait();
    KyEditorCommon::storeDockWidgetGeometry(window.dock('a'), &window);
    QCOMPARE(settings()->allKeys(),
             QStringList({QStringLiteral("a/dockArea"), QStringLiteral("a/floating"),
                          QStringLiteral("a/geometry"), QStringLiteral("a/visible")}));
    QCOMPARE(settings()->value(QStringLiteral("a/dockArea")), QVariant(2));
    QCOMPARE(settings()->value(QStringLiteral("a/floating")), QVariant(false));
    QCOMPARE(settings()->value(QStringLiteral("a/geometry")), QVariant(window.dock('a')->saveGeometry()));
    QCOMPARE(settings()->value(QStringLiteral("a/visible")), QVariant(true));
    QCOMPARE(settings()->group(), QString());
}

void tst_KyDockPersistence::store_doesNotWriteTheFile()
{
    Window window(1);
    window.addDockWidget(Qt::RightDockWidgetArea, window.dock('a'));
    KyEditorCommon::storeDockWidgetGeometry(window.dock('a'), &window);
    QVERIFY(!Test::readFile(settings()->fileName()).contains("dockArea"));
    KyEditorUserConfig::sync();
    QVERIFY(Test::readFile(settings()->fileName()).contains("dockArea=2"));
}

void tst_KyDockPersistence::dockWithoutName_isNeitherStoredNorRestored()
{
    Window window(1);
    window.dock('a')->setObjectName(QString());
    window.addDockWidget(Qt::RightDockWidgetArea, window.dock('a'));
    KyEditorCommon::storeDockWidgetGeometry(window.dock('a'), &window);
    QCOMPARE(settings()->allKeys(), QStringList());
    KyEditorCommon::restoreDockWidgetGeometry(window.dock('a'), &window);
    QVERIFY(!window.dock('a')->property("init_rect").isValid());
}

void tst_KyDockPersistence::restore_bringsDockIntoItsArea()
{
    Window window(1);
    window.addDockWidget(Qt::TopDockWidgetArea, window.dock('a'));
    settings()->setValue(QStringLiteral("a/dockArea"), int(Qt::BottomDockWidgetArea));
    KyEditorCommon::restoreDockWidgetGeometry(window.dock('a'), &window);
    QCOMPARE(window.dockWidgetArea(window.dock('a')), Qt::BottomDockWidgetArea);
    QCOMPARE(settings()->group(), QString());
}

void tst_KyDockPersistence::restore_withoutSettings_keepsEverything()
{
    Window window(2);
    window.addDockWidget(Qt::TopDockWidgetArea, window.dock('a'));
    window.addDockWidget(Qt::TopDockWidgetArea, window.dock('b'));
    window.dock('b')->hide();
    window.showAndWait();
    const QSize size = window.dock('a')->size();
    for (QDockWidget *dock : qAsConst(window.docks))
        KyEditorCommon::restoreDockWidgetGeometry(dock, &window);
    QCOMPARE(window.dockWidgetArea(window.dock('a')), Qt::TopDockWidgetArea);
    QVERIFY(!window.dock('a')->isFloating());
    QVERIFY(window.dock('a')->isVisible());
    QVERIFY(!window.dock('b')->isVisible());
    QTRY_COMPARE(window.dock('a')->size(), size);
}

void tst_KyDockPersistence::restore_areaThatIsNone_keepsTheDock_data()
{
    QTest::addColumn<QVariant>("area");
    QTest::newRow("none") << QVariant(0);
    QTest::newRow("two areas") << QVariant(3);
    QTest::newRow("negative") << QVariant(-1);
    QTest::newRow("text") << QVariant(QStringLiteral("left"));
    QTest::newRow("list") << QVariant(QStringList({QStringLiteral("1"), QStringLiteral("2")}));
}

void tst_KyDockPersistence::restore_areaThatIsNone_keepsTheDock()
{
    QFETCH(QVariant, area);
    Window window(1);
    window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('a'));
    window.showAndWait();
    settings()->setValue(QStringLiteral("a/dockArea"), area);
    KyEditorCommon::restoreDockWidgetGeometry(window.dock('a'), &window);
    QCOMPARE(window.dockWidgetArea(window.dock('a')), Qt::LeftDockWidgetArea);
    QVERIFY(window.dock('a')->isVisible());
}

void tst_KyDockPersistence::restore_movedDock_isShownAsItWas_data()
{
    QTest::addColumn<bool>("isVisible");
    QTest::newRow("visible") << true;
    QTest::newRow("hidden") << false;
}

/** Moving a dock to another area hides it, and what the settings do not tell stays as it was before that. */
void tst_KyDockPersistence::restore_movedDock_isShownAsItWas()
{
    QFETCH(bool, isVisible);
    Window window(1);
    window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('a'));
    window.showAndWait();
    window.dock('a')->setVisible(isVisible);
    settings()->setValue(QStringLiteral("a/dockArea"), int(Qt::RightDockWidgetArea));
    KyEditorCommon::restoreDockWidgetGeometry(window.dock('a'), &window);
    QCOMPARE(window.dockWidgetArea(window.dock('a')), Qt::RightDockWidgetArea);
    QCOMPARE(window.dock('a')->isVisible(), isVisible);
}

void tst_KyDockPersistence::restore_floating()
{
    {
        Window window(1);
        window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('a'));
        window.showAndWait();
        window.dock('a')->setFloating(true);
        window.dock('a')->setGeometry(300, 200, 250, 150);
        QTRY_COMPARE(window.dock('a')->size(), QSize(250, 150));
        KyEditorCommon::storeDockWidgetGeometry(window.dock('a'), &window);
    }
    Window window(1);
    window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('a'));
    window.showAndWait();
    KyEditorCommon::restoreDockWidgetGeometry(window.dock('a'), &window);
    QVERIFY(window.dock('a')->isFloating());
    QVERIFY(window.dock('a')->isVisible());
    QTRY_COMPARE(window.dock('a')->size(), QSize(250, 150));
    QCOMPARE(window.dockWidgetArea(window.dock('a')), Qt::LeftDockWidgetArea);
}

void tst_KyDockPersistence::restore_leavesFrameRectangle()
{
    QDockWidget other;
    other.setGeometry(120, 80, 333, 222);
    const QByteArray geometry = other.saveGeometry();
    settings()->setValue(QStringLiteral("a/geometry"), geometry);
    QDockWidget restored;
    restored.restoreGeometry(geometry);
    Window window(1);
    window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('a'));
    KyEditorCommon::restoreDockWidgetGeometry(window.dock('a'), &window);
    const QVariant place = window.dock('a')->property("init_rect");
    QCOMPARE(place.type(), QVariant::Rect);
    QCOMPARE(place.toRect(), restored.frameGeometry());
    QCOMPARE(place.toRect().size(), QSize(333, 222));
}

void tst_KyDockPersistence::restore_nonsense_keepsWhatIs_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("floating, text") << "a/floating" << QVariant(QStringLiteral("garbage"));
    QTest::newRow("floating, empty") << "a/floating" << QVariant(QString());
    QTest::newRow("floating, list") << "a/floating"
                                    << QVariant(QStringList({QStringLiteral("1"), QString()}));
    QTest::newRow("visible, text") << "a/visible" << QVariant(QStringLiteral("no!"));
    QTest::newRow("visible, number") << "a/visible" << QVariant(17);
    QTest::newRow("geometry, text") << "a/geometry" << QVariant(QStringLiteral("junk"));
    QTest::newRow("geometry, empty") << "a/geometry" << QVariant(QByteArray());
}

void tst_KyDockPersistence::restore_nonsense_keepsWhatIs()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    Window window(1);
    window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('a'));
    window.showAndWait();
    window.dock('a')->setVisible(key != QLatin1String("a/visible"));
    const bool isVisible = window.dock('a')->isVisible();
    QDockWidget current;
    current.restoreGeometry(window.dock('a')->saveGeometry());
    settings()->setValue(key, value);
    KyEditorCommon::restoreDockWidgetGeometry(window.dock('a'), &window);
    QVERIFY(!window.dock('a')->isFloating());
    QCOMPARE(window.dock('a')->isVisible(), isVisible);
    QCOMPARE(window.dock('a')->property("init_rect").toRect(), current.frameGeometry());
}

void tst_KyDockPersistence::restore_floatingDockOfAnotherArea_hasItsPlace()
{
    const QRect place(350, 250, 240, 160);
    const auto makeWindow = [](Qt::DockWidgetArea area) {
        auto window = std::make_unique<Window>(1);
        window->addDockWidget(area, window->dock('a'));
        window->showAndWait();
        return window;
    };
    {
        const auto window = makeWindow(Qt::RightDockWidgetArea);
        window->dock('a')->setFloating(true);
        window->dock('a')->setGeometry(place);
        QTRY_COMPARE(window->dock('a')->geometry(), place);
        KyEditorCommon::storeDockWidgetGeometry(window->dock('a'), window.get());
    }
    const auto window = makeWindow(Qt::LeftDockWidgetArea);
    KyEditorCommon::restoreDockWidgetGeometry(window->dock('a'), window.get());
    QVERIFY(window->dock('a')->isFloating());
    QCOMPARE(window->dockWidgetArea(window->dock('a')), Qt::RightDockWidgetArea);
    QTRY_COMPARE(window->dock('a')->geometry(), place);
}

void tst_KyDockPersistence::groups_ofNoWindow_areEmpty()
{
    QVERIFY(KyEditorCommon::getTabifiedDockGroups(nullptr).isEmpty());
    Window window(2);
    window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('a'));
    window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('b'));
    QVERIFY(KyEditorCommon::getTabifiedDockGroups(&window).isEmpty());
}

void tst_KyDockPersistence::groups_areInTheOrderOfTheTabs()
{
    Window window(5);
    for (char name : {'d', 'b', 'e'})
        window.addDockWidget(Qt::LeftDockWidgetArea, window.dock(name));
    for (char name : {'c', 'a'})
        window.addDockWidget(Qt::RightDockWidgetArea, window.dock(name));
    window.tabifyDockWidget(window.dock('d'), window.dock('b'));
    window.tabifyDockWidget(window.dock('d'), window.dock('e'));
    window.tabifyDockWidget(window.dock('c'), window.dock('a'));
    window.showAndWait();
    QCOMPARE(groups(&window), QStringList({QStringLiteral("ac"), QStringLiteral("dbe")}));
}

void tst_KyDockPersistence::storeTabs_writesArrays()
{
    Window window(4);
    for (QDockWidget *dock : qAsConst(window.docks))
        window.addDockWidget(Qt::LeftDockWidgetArea, dock);
    window.tabifyDockWidget(window.dock('c'), window.dock('a'));
    window.tabifyDockWidget(window.dock('c'), window.dock('d'));
    window.showAndWait();
    window.dock('a')->raise();
    QTRY_VERIFY(!window.dock('a')->visibleRegion().isEmpty());
    KyEditorCommon::storeTabifiedSettings(QStringLiteral("main"), &window);
    const QString array = QStringLiteral("tabified_main/group0/%1");
    QCOMPARE(settings()->value(array.arg(QStringLiteral("size"))).toInt(), 3);
    QCOMPARE(settings()->value(array.arg(QStringLiteral("1/name"))).toString(), QStringLiteral("c"));
    QCOMPARE(settings()->value(array.arg(QStringLiteral("1/activated"))), QVariant(false));
    QCOMPARE(settings()->value(array.arg(QStringLiteral("2/name"))).toString(), QStringLiteral("a"));
    QCOMPARE(settings()->value(array.arg(QStringLiteral("2/activated"))), QVariant(true));
    QCOMPARE(settings()->value(array.arg(QStringLiteral("3/name"))).toString(), QStringLiteral("d"));
    QCOMPARE(settings()->value(array.arg(QStringLiteral("3/activated"))), QVariant(false));
    QCOMPARE(settings()->allKeys().size(), 7);
    QCOMPARE(settings()->group(), QString());
}

void tst_KyDockPersistence::storeTabs_removesFormerKeys()
{
    settings()->setValue(QStringLiteral("tabified"), 1);
    settings()->setValue(QStringLiteral("tabified_main/group7/1/name"), QStringLiteral("a"));
    settings()->setValue(QStringLiteral("tabified_other/group0/1/name"), QStringLiteral("a"));
    Window window(2);
    for (QDockWidget *dock : qAsConst(window.docks))
        window.addDockWidget(Qt::LeftDockWidgetArea, dock);
    KyEditorCommon::storeTabifiedSettings(QStringLiteral("main"), &window);
    QCOMPARE(settings()->allKeys(), QStringList(QStringLiteral("tabified_other/group0/1/name")));

    settings()->setValue(QStringLiteral("tabified"), 1);
    window.tabifyDockWidget(window.dock('a'), window.dock('b'));
    KyEditorCommon::storeTabifiedSettings(QStringLiteral("main"), &window);
    QVERIFY(!settings()->contains(QStringLiteral("tabified")));
    QVERIFY(settings()->contains(QStringLiteral("tabified_main/group0/size")));
}

void tst_KyDockPersistence::storeTabs_leavesNamelessDocksOut()
{
    Window window(5);
    for (QDockWidget *dock : qAsConst(window.docks))
        window.addDockWidget(Qt::LeftDockWidgetArea, dock);
    window.tabifyDockWidget(window.dock('a'), window.dock('b'));
    window.tabifyDockWidget(window.dock('a'), window.dock('c'));
    window.tabifyDockWidget(window.dock('d'), window.dock('e'));
    window.dock('a')->setObjectName(QString());
    window.dock('d')->setObjectName(QString());
    KyEditorCommon::storeTabifiedSettings(QStringLiteral("main"), &window);
    QStringList stored;
    for (const QString &key : settings()->allKeys()) {
        if (key.endsWith(QLatin1String("/name")))
            stored.append(settings()->value(key).toString());
    }
    QCOMPARE(stored, QStringList({QStringLiteral("b"), QStringLiteral("c")}));
}

void tst_KyDockPersistence::tabs_ofHiddenAndFloatingDocks_areRestored_data()
{
    QTest::addColumn<char>("odd");
    QTest::addColumn<bool>("isFloating");
    for (char name : {'a', 'b', 'c'}) {
        QTest::newRow(qPrintable(QStringLiteral("hidden %1").arg(QLatin1Char(name)))) << name << false;
        QTest::newRow(qPrintable(QStringLiteral("floating %1").arg(QLatin1Char(name)))) << name << true;
    }
}

void tst_KyDockPersistence::tabs_ofHiddenAndFloatingDocks_areRestored()
{
    QFETCH(char, odd);
    QFETCH(bool, isFloating);
    const auto addAll = [](Window *window) {
        for (QDockWidget *dock : qAsConst(window->docks))
            window->addDockWidget(Qt::LeftDockWidgetArea, dock);
    };
    {
        Window window(4);
        addAll(&window);
        window.tabifyDockWidget(window.dock('a'), window.dock('b'));
        window.tabifyDockWidget(window.dock('a'), window.dock('c'));
        window.showAndWait();
        if (isFloating)
            window.dock(odd)->setFloating(true);
        else
            window.dock(odd)->hide();
        for (QDockWidget *dock : qAsConst(window.docks))
            KyEditorCommon::storeDockWidgetGeometry(dock, &window);
        KyEditorCommon::storeTabifiedSettings(QStringLiteral("main"), &window);
    }
    Window window(4);
    addAll(&window);
    window.showAndWait();
    for (QDockWidget *dock : qAsConst(window.docks))
        KyEditorCommon::restoreDockWidgetGeometry(dock, &window);
    KyEditorCommon::restoreTabifiedSettings(QStringLiteral("main"), &window);
    // The members are those that were stacked; the order of what is not in its stack is not known.
    QString members;
    for (const QString &group : groups(&window))
        members += group;
    std::sort(members.begin(), members.end());
    QVERIFY2(members == QLatin1String("abc")
                 || members == QString(QLatin1String("abc")).remove(QLatin1Char(odd)),
             qPrintable(members));
}

void tst_KyDockPersistence::storeTabs_writesTheFile()
{
    Window window(2);
    for (QDockWidget *dock : qAsConst(window.docks))
        window.addDockWidget(Qt::LeftDockWidgetArea, dock);
    window.tabifyDockWidget(window.dock('a'), window.dock('b'));
    KyEditorCommon::storeTabifiedSettings(QStringLiteral("main"), &window);
    QVERIFY(Test::readFile(settings()->fileName()).contains("group0\\size=2"));
}

void tst_KyDockPersistence::restoreTabs_moreThanTenGroups()
{
    const int groupCount = 12;
    const auto addAll = [](Window *window) {
        for (QDockWidget *dock : qAsConst(window->docks))
            window->addDockWidget(Qt::LeftDockWidgetArea, dock);
    };
    QStringList stored;
    {
        Window window(2 * groupCount);
        addAll(&window);
        for (int i = 0; i < groupCount; ++i)
            window.tabifyDockWidget(window.docks.at(2 * i), window.docks.at(2 * i + 1));
        stored = groups(&window);
        KyEditorCommon::storeTabifiedSettings(QStringLiteral("main"), &window);
    }
    QCOMPARE(stored.size(), groupCount);
    Window window(2 * groupCount);
    addAll(&window);
    KyEditorCommon::restoreTabifiedSettings(QStringLiteral("main"), &window);
    QCOMPARE(groups(&window), stored);
}

void tst_KyDockPersistence::restoreTabs_ignoresUnusableArrays_data()
{
    QTest::addColumn<QStringList>("tabs");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("one entry") << QStringList({"a"}) << QStringList();
    QTest::newRow("first unknown") << QStringList({"x", "a", "b"}) << QStringList();
    QTest::newRow("first nameless") << QStringList({"", "a", "b"}) << QStringList();
    QTest::newRow("another unknown") << QStringList({"a", "x", "b"}) << QStringList("ab");
    QTest::newRow("first again") << QStringList({"a", "a", "b"}) << QStringList("ab");
    QTest::newRow("twice the same") << QStringList({"a", "b", "b"}) << QStringList("ab");
    QTest::newRow("a dock in no area first") << QStringList({"d", "a", "b"}) << QStringList();
    QTest::newRow("a dock in no area joins") << QStringList({"a", "d"}) << QStringList("ad");
}

void tst_KyDockPersistence::restoreTabs_ignoresUnusableArrays()
{
    QFETCH(QStringList, tabs);
    QFETCH(QStringList, expected);
    settings()->beginWriteArray(QStringLiteral("tabified_main/group3"), tabs.size());
    for (int i = 0; i < tabs.size(); ++i) {
        settings()->setArrayIndex(i);
        settings()->setValue(QStringLiteral("name"), tabs.at(i));
    }
    settings()->endArray();
    Window window(4);
    for (char name : {'a', 'b', 'c'})
        window.addDockWidget(Qt::LeftDockWidgetArea, window.dock(name));
    KyEditorCommon::restoreTabifiedSettings(QStringLiteral("main"), &window);
    QCOMPARE(groups(&window), expected);
    QCOMPARE(settings()->group(), QString());
}

void tst_KyDockPersistence::restoreTabs_damagedSize_isBounded()
{
    settings()->setValue(QStringLiteral("tabified_main/group0/size"), 2000000000);
    settings()->setValue(QStringLiteral("tabified_main/group0/1/name"), QStringLiteral("a"));
    settings()->setValue(QStringLiteral("tabified_main/group0/1000000/name"), QStringLiteral("b"));
    Window window(2);
    for (QDockWidget *dock : qAsConst(window.docks))
        window.addDockWidget(Qt::LeftDockWidgetArea, dock);
    KyEditorCommon::restoreTabifiedSettings(QStringLiteral("main"), &window);
    QCOMPARE(groups(&window), QStringList(QStringLiteral("ab")));
}

void tst_KyDockPersistence::restoreTabs_raisesTheLastActivated()
{
    const QString array = QStringLiteral("tabified_main/group0/%1/%2");
    settings()->setValue(QStringLiteral("tabified_main/group0/size"), 4);
    for (int i = 0; i < 4; ++i) {
        settings()->setValue(array.arg(i + 1).arg(QStringLiteral("name")), QString(QChar('a' + i)));
        settings()->setValue(array.arg(i + 1).arg(QStringLiteral("activated")), i == 0 || i == 2);
    }
    Window window(4);
    for (QDockWidget *dock : qAsConst(window.docks))
        window.addDockWidget(Qt::LeftDockWidgetArea, dock);
    window.showAndWait();
    KyEditorCommon::restoreTabifiedSettings(QStringLiteral("main"), &window);
    QTRY_VERIFY(!window.dock('c')->visibleRegion().isEmpty());
    QVERIFY(window.dock('a')->visibleRegion().isEmpty());
    QVERIFY(window.dock('b')->visibleRegion().isEmpty());
    QVERIFY(window.dock('d')->visibleRegion().isEmpty());
}

void tst_KyDockPersistence::wholeLayout_survivesARestart()
{
    const auto store = [](Window *window) {
        for (QDockWidget *dock : qAsConst(window->docks))
            KyEditorCommon::storeDockWidgetGeometry(dock, window);
        KyEditorCommon::storeTabifiedSettings(QStringLiteral("main"), window);
    };
    const auto restore = [](Window *window) {
        for (QDockWidget *dock : qAsConst(window->docks))
            KyEditorCommon::restoreDockWidgetGeometry(dock, window);
        KyEditorCommon::restoreTabifiedSettings(QStringLiteral("main"), window);
    };

    // Left a over b, right the tabs d, c, g with c in front, e floating, f hidden at the bottom.
    QMap<QString, QSize> sizes;
    {
        Window window(7);
        window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('a'));
        window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('b'));
        window.addDockWidget(Qt::RightDockWidgetArea, window.dock('d'));
        window.addDockWidget(Qt::RightDockWidgetArea, window.dock('c'));
        window.addDockWidget(Qt::RightDockWidgetArea, window.dock('g'));
        window.addDockWidget(Qt::TopDockWidgetArea, window.dock('e'));
        window.addDockWidget(Qt::BottomDockWidgetArea, window.dock('f'));
        window.tabifyDockWidget(window.dock('d'), window.dock('c'));
        window.tabifyDockWidget(window.dock('d'), window.dock('g'));
        window.showAndWait();
        window.resizeDocks({window.dock('a')}, {260}, Qt::Horizontal);
        window.resizeDocks({window.dock('a'), window.dock('b')}, {200, 450}, Qt::Vertical);
        window.dock('c')->raise();
        window.dock('e')->setFloating(true);
        window.dock('e')->setGeometry(350, 250, 240, 160);
        window.dock('f')->hide();
        QTRY_COMPARE(window.dock('a')->width(), 260);
        QTRY_COMPARE(window.dock('e')->size(), QSize(240, 160));
        QTRY_VERIFY(!window.dock('c')->visibleRegion().isEmpty());
        for (char name : {'a', 'b'})
            sizes.insert(window.dock(name)->objectName(), window.dock(name)->size());
        store(&window);
    }

    // The second window begins with everything at another place.
    Window window(7);
    for (QDockWidget *dock : qAsConst(window.docks))
        window.addDockWidget(Qt::TopDockWidgetArea, dock);
    window.showAndWait();
    restore(&window);
    const QSize limit = window.dock('a')->maximumSize();
    KyEditorCommon::reorderDockWidgets({window.dock('a'), window.dock('b')}, &window);
    QTRY_COMPARE(window.dock('a')->maximumSize(), limit); // nothing holds the docks any more

    QCOMPARE(window.dockWidgetArea(window.dock('a')), Qt::LeftDockWidgetArea);
    QCOMPARE(window.dockWidgetArea(window.dock('b')), Qt::LeftDockWidgetArea);
    QCOMPARE(window.dockWidgetArea(window.dock('c')), Qt::RightDockWidgetArea);
    QCOMPARE(window.dockWidgetArea(window.dock('d')), Qt::RightDockWidgetArea);
    QCOMPARE(window.dockWidgetArea(window.dock('f')), Qt::BottomDockWidgetArea);
    QCOMPARE(groups(&window), QStringList(QStringLiteral("dcg")));
    QTRY_VERIFY(!window.dock('c')->visibleRegion().isEmpty());
    QVERIFY(window.dock('d')->visibleRegion().isEmpty());
    QVERIFY(window.dock('g')->visibleRegion().isEmpty());
    QVERIFY(window.dock('e')->isFloating());
    QTRY_COMPARE(window.dock('e')->size(), QSize(240, 160));
    QVERIFY(window.dock('e')->isVisible());
    QVERIFY(!window.dock('f')->isVisible());
    QTest::qWait(300); // and the layout does not take the sizes back
    QCOMPARE(window.dock('a')->size(), sizes.value(QStringLiteral("a")));
    QCOMPARE(window.dock('b')->size(), sizes.value(QStringLiteral("b")));
    QVERIFY(window.dock('a')->mapTo(&window, QPoint()).y() < window.dock('b')->mapTo(&window, QPoint()).y());
}

void tst_KyDockPersistence::reorder_emptyOrNull_doesNothing()
{
    Window window(1);
    window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('a'));
    window.dock('a')->setProperty("init_rect", QRect(0, 0, 77, 77));
    KyEditorCommon::reorderDockWidgets({window.dock('a')}, nullptr);
    KyEditorCommon::reorderDockWidgets({}, &window);
    KyEditorCommon::reorderDockWidgets({nullptr}, &window);
    QVERIFY(window.dock('a')->minimumSize() != QSize(77, 77));
}

void tst_KyDockPersistence::reorder_byPlace_data()
{
    QTest::addColumn<int>("area");
    QTest::newRow("left") << int(Qt::LeftDockWidgetArea);
    QTest::newRow("right") << int(Qt::RightDockWidgetArea);
    QTest::newRow("top") << int(Qt::TopDockWidgetArea);
    QTest::newRow("bottom") << int(Qt::BottomDockWidgetArea);
}

void tst_KyDockPersistence::reorder_byPlace()
{
    QFETCH(int, area);
    const auto dockArea = static_cast<Qt::DockWidgetArea>(area);
    const bool isSide = dockArea == Qt::LeftDockWidgetArea || dockArea == Qt::RightDockWidgetArea;
    Window window(3);
    for (QDockWidget *dock : qAsConst(window.docks))
        window.addDockWidget(dockArea, dock);
    window.showAndWait();
    // c before a before b.
    window.dock('a')->setProperty("init_rect", isSide ? QRect(0, 200, 150, 120) : QRect(200, 0, 150, 120));
    window.dock('b')->setProperty("init_rect", isSide ? QRect(0, 400, 150, 120) : QRect(400, 0, 150, 120));
    window.dock('c')->setProperty("init_rect", QRect(0, 0, 150, 120));
    KyEditorCommon::reorderDockWidgets(window.docks, &window);
    const auto place = [&](char name) {
        const QPoint point = window.dock(name)->mapTo(&window, QPoint());
        return isSide ? point.y() : point.x();
    };
    QTRY_VERIFY(place('c') < place('a') && place('a') < place('b'));
    for (QDockWidget *dock : qAsConst(window.docks))
        QCOMPARE(window.dockWidgetArea(dock), dockArea);
}

void tst_KyDockPersistence::reorder_severalAreasAtOnce()
{
    Window window(4);
    window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('a'));
    window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('b'));
    window.addDockWidget(Qt::BottomDockWidgetArea, window.dock('c'));
    window.addDockWidget(Qt::BottomDockWidgetArea, window.dock('d'));
    window.showAndWait();
    window.dock('a')->setProperty("init_rect", QRect(0, 300, 150, 200));
    window.dock('b')->setProperty("init_rect", QRect(0, 0, 150, 200));
    window.dock('c')->setProperty("init_rect", QRect(500, 600, 300, 100));
    window.dock('d')->setProperty("init_rect", QRect(0, 600, 300, 100));
    KyEditorCommon::reorderDockWidgets(window.docks, &window);
    QTRY_VERIFY(window.dock('b')->mapTo(&window, QPoint()).y()
                < window.dock('a')->mapTo(&window, QPoint()).y());
    QTRY_VERIFY(window.dock('d')->mapTo(&window, QPoint()).x()
                < window.dock('c')->mapTo(&window, QPoint()).x());
    QCOMPARE(window.dockWidgetArea(window.dock('a')), Qt::LeftDockWidgetArea);
    QCOMPARE(window.dockWidgetArea(window.dock('d')), Qt::BottomDockWidgetArea);
}

void tst_KyDockPersistence::reorder_pinsForAMoment()
{
    Window window(1);
    window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('a'));
    const QSize minimum = window.dock('a')->minimumSize();
    const QSize maximum = window.dock('a')->maximumSize();
    window.dock('a')->setProperty("init_rect", QRect(0, 0, 222, 333));
    KyEditorCommon::reorderDockWidgets(window.docks, &window);
    KyEditorCommon::reorderDockWidgets(window.docks, &window);
    QCOMPARE(window.dock('a')->minimumSize(), QSize(222, 333));
    QCOMPARE(window.dock('a')->maximumSize(), QSize(222, 333));
    QTRY_COMPARE(window.dock('a')->minimumSize(), minimum);
    QCOMPARE(window.dock('a')->maximumSize(), maximum);
}

void tst_KyDockPersistence::reorder_absurdSize_isBounded()
{
    Window window(1);
    window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('a'));
    window.dock('a')->setProperty("init_rect", QRect(0, 0, 2000000000, 50));
    KyEditorCommon::reorderDockWidgets(window.docks, &window);
    QCOMPARE(window.dock('a')->maximumSize(), QSize(window.screen()->virtualSize().width(), 50));
}

void tst_KyDockPersistence::reorder_dockWithoutPlace_keepsItsLimits()
{
    Window window(1);
    window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('a'));
    const QSize maximum = window.dock('a')->maximumSize();
    KyEditorCommon::reorderDockWidgets(window.docks, &window);
    QCOMPARE(window.dock('a')->maximumSize(), maximum);
}

void tst_KyDockPersistence::reorder_dockInNoArea_isNotLost()
{
    Window window(2);
    window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('a'));
    window.dock('b')->setProperty("init_rect", QRect(0, 0, 50, 60));
    KyEditorCommon::reorderDockWidgets(window.docks, &window);
    QCOMPARE(window.dockWidgetArea(window.dock('a')), Qt::LeftDockWidgetArea);
    QCOMPARE(window.dockWidgetArea(window.dock('b')), Qt::NoDockWidgetArea);
}

/** A valid file with bytes changed, dropped, doubled and swapped: what is left of it is restored. */
void tst_KyDockPersistence::mutatedSettings_areHarmless()
{
    QByteArray valid;
    {
        Window window(4);
        window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('a'));
        window.addDockWidget(Qt::LeftDockWidgetArea, window.dock('b'));
        window.addDockWidget(Qt::RightDockWidgetArea, window.dock('c'));
        window.addDockWidget(Qt::BottomDockWidgetArea, window.dock('d'));
        window.tabifyDockWidget(window.dock('a'), window.dock('b'));
        window.showAndWait();
        window.dock('c')->setFloating(true);
        window.dock('d')->hide();
        for (QDockWidget *dock : qAsConst(window.docks))
            KyEditorCommon::storeDockWidgetGeometry(dock, &window);
        KyEditorCommon::storeTabifiedSettings(QStringLiteral("main"), &window);
        valid = Test::readFile(settings()->fileName());
    }
    QVERIFY(valid.size() > 300);

    QRandomGenerator random(303);
    Window window(4);
    for (QDockWidget *dock : qAsConst(window.docks))
        window.addDockWidget(Qt::TopDockWidgetArea, dock);
    window.showAndWait();
    for (int round = 0; round < 2000; ++round) {
        QByteArray mutated = valid;
        const int changes = random.bounded(1, 12);
        for (int i = 0; i < changes; ++i) {
            const int position = random.bounded(mutated.size());
            switch (random.bounded(4)) {
            case 0:
                mutated[position] = static_cast<char>(random.bounded(256));
                break;
            case 1:
                mutated.remove(position, random.bounded(1, 20));
                break;
            case 2:
                mutated.insert(position, mutated.mid(random.bounded(mutated.size()), random.bounded(1, 60)));
                break;
            default:
                mutated.insert(position, QByteArray::number(random.generate()));
            }
            if (mutated.isEmpty())
                mutated = valid;
        }
        settings()->clear();
        settings()->sync();
        Test::writeFile(settings()->fileName(), mutated);
        settings()->sync();
        for (QDockWidget *dock : qAsConst(window.docks))
            KyEditorCommon::restoreDockWidgetGeometry(dock, &window);
        KyEditorCommon::restoreTabifiedSettings(QStringLiteral("main"), &window);
        KyEditorCommon::reorderDockWidgets(window.docks, &window);
        if (round % 10 == 0)
            QCoreApplication::processEvents();
        for (QDockWidget *dock : qAsConst(window.docks))
            QVERIFY(window.dockWidgetArea(dock) != Qt::NoDockWidgetArea);
        QCOMPARE(settings()->group(), QString());
    }
}

KYTE_TEST_MAIN(tst_KyDockPersistence)
#include "tst_KyDockPersistence.moc"
