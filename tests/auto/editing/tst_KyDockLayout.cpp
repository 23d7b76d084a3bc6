#include "KyTestMain.h"

#include "../../../src/editing/KyDockLayout_p.h"
#include "../../../src/editing/KyDockSizePin_p.h"

#include <QDockWidget>
#include <QRandomGenerator>

using namespace Kyte;
using DockLayout::PlacedDock;
using DockLayout::TabView;

/** Addresses that are never followed, in ascending order. */
static QDockWidget *fake(int number)
{
    return reinterpret_cast<QDockWidget *>(static_cast<quintptr>(number + 1) * 64);
}

static QList<QDockWidget *> fakes(std::initializer_list<int> numbers)
{
    QList<QDockWidget *> docks;
    for (int number : numbers)
        docks.append(fake(number));
    return docks;
}

static QString toText(const QList<QList<QDockWidget *>> &groups)
{
    QStringList texts;
    for (const QList<QDockWidget *> &group : groups) {
        QString text;
        for (QDockWidget *dock : group)
            text += QString::number(reinterpret_cast<quintptr>(dock) / 64 - 1);
        texts.append(text);
    }
    return texts.join(QLatin1Char(' '));
}

/** The rules of grouping, step by step, with a list search in the place of every map. */
static QList<QList<QDockWidget *>> literalGroups(const QList<TabView> &views)
{
    struct Member
    {
        QDockWidget *dock;
        int weight;
    };
    QList<QList<Member>> groups;
    QList<QPair<QDockWidget *, int>> recorded;
    const auto find = [&recorded](QDockWidget *dock) {
        for (int i = 0; i < recorded.size(); ++i) {
            if (recorded.at(i).first == dock)
                return i;
        }
        return -1;
    };
    for (const TabView &view : views) {
        if (view.second.isEmpty())
            continue;
        if (find(view.first) < 0) {
            recorded.append({view.first, groups.size()});
            groups.append(QList<Member>{{view.first, 0}});
        }
        const int group = recorded.at(find(view.first)).second;
        for (int j = 0; j < view.second.size(); ++j) {
            QDockWidget *dock = view.second.at(j);
            bool isMember = false;
            for (Member &member : groups[group]) {
                if (member.dock == dock) {
                    member.weight += j;
                    isMember = true;
                }
            }
            if (!isMember)
                groups[group].append({dock, j});
            if (find(dock) < 0)
                recorded.append({dock, group});
            else
                recorded[find(dock)].second = group;
        }
    }

    std::sort(recorded.begin(), recorded.end());
    QList<QList<QDockWidget *>> result;
    QList<int> seen;
    for (const auto &entry : qAsConst(recorded)) {
        if (seen.contains(entry.second))
            continue;
        seen.append(entry.second);
        QList<Member> members = groups.at(entry.second);
        std::sort(members.begin(), members.end(), [](const Member &left, const Member &right) {
            return left.dock < right.dock;
        });
        QList<Member> ordered;
        for (const Member &member : qAsConst(members)) {
            int position = 0;
            while (position < ordered.size() && ordered.at(position).weight <= member.weight)
                ++position;
            ordered.insert(position, member);
        }
        QList<QDockWidget *> docks;
        for (const Member &member : qAsConst(ordered))
            docks.append(member.dock);
        result.append(docks);
    }
    return result;
}

class tst_KyDockLayout : public QObject
{
    Q_OBJECT

private slots:
    void groupTabs_data();
    void groupTabs();
    void groupTabs_randomViews_matchTheRules();
    void sortByPlace_data();
    void sortByPlace();
    void splitOrientation_data();
    void splitOrientation();
    void isArea_data();
    void isArea();
    void pin_holdsAndReleases();
    void pin_twice_keepsTheFirstLimits();
    void pin_again_beginsTheTimeAnew();
    void pin_deletedDock_isForgotten();
};

void tst_KyDockLayout::groupTabs_data()
{
    QTest::addColumn<QList<TabView>>("views");
    QTest::addColumn<QString>("groups");

    QTest::newRow("no docks") << QList<TabView>() << QString();
    QTest::newRow("single docks") << QList<TabView>{{fake(0), {}}, {fake(1), {}}} << QString();
    QTest::newRow("two tabs") << QList<TabView>{{fake(0), fakes({1})}, {fake(1), fakes({0})}} << "01";
    // Tabs 2, 0, 1: every view leaves its own dock out.
    QTest::newRow("order of tabs") << QList<TabView>{{fake(0), fakes({2, 1})},
                                                     {fake(1), fakes({2, 0})},
                                                     {fake(2), fakes({0, 1})}}
                                   << "201";
    QTest::newRow("two groups") << QList<TabView>{{fake(0), fakes({3})},
                                                  {fake(1), fakes({2})},
                                                  {fake(2), fakes({1})},
                                                  {fake(3), fakes({0})}}
                                << "03 12";
    QTest::newRow("a hidden dock is named and names nobody")
        << QList<TabView>{{fake(0), fakes({1, 2})}, {fake(1), {}}, {fake(2), fakes({0, 1})}} << "012";
    QTest::newRow("a dock that changes its group leaves the first one's record")
        << QList<TabView>{{fake(0), fakes({1})}, {fake(2), fakes({0, 1})}} << "021";
}

void tst_KyDockLayout::groupTabs()
{
    QFETCH(QList<TabView>, views);
    QFETCH(QString, groups);
    QCOMPARE(toText(DockLayout::groupTabs(views)), groups);
}

void tst_KyDockLayout::groupTabs_randomViews_matchTheRules()
{
    QRandomGenerator random(20);
    for (int round = 0; round < 3000; ++round) {
        const int count = random.bounded(1, 8);
        QList<TabView> views;
        for (int i = 0; i < count; ++i) {
            QList<QDockWidget *> named;
            const int names = random.bounded(0, 4);
            for (int j = 0; j < names; ++j)
                named.append(fake(random.bounded(count)));
            views.append({fake(random.bounded(count)), named});
        }
        QCOMPARE(toText(DockLayout::groupTabs(views)), toText(literalGroups(views)));
    }
}

void tst_KyDockLayout::sortByPlace_data()
{
    QTest::addColumn<int>("area");
    QTest::addColumn<QString>("order");
    QTest::newRow("left by top") << int(Qt::LeftDockWidgetArea) << "2013";
    QTest::newRow("right by top") << int(Qt::RightDockWidgetArea) << "2013";
    QTest::newRow("top by left") << int(Qt::TopDockWidgetArea) << "3120";
    QTest::newRow("bottom by left") << int(Qt::BottomDockWidgetArea) << "3120";
}

void tst_KyDockLayout::sortByPlace()
{
    QFETCH(int, area);
    QFETCH(QString, order);
    // Docks 0 and 1 have one top, docks 1 and 2 one left edge.
    QList<PlacedDock> docks = {{fake(0), QRect(90, 50, 10, 10)},
                               {fake(1), QRect(20, 50, 10, 10)},
                               {fake(2), QRect(20, 10, 10, 10)},
                               {fake(3), QRect(-5, 80, 10, 10)}};
    DockLayout::sortByPlace(static_cast<Qt::DockWidgetArea>(area), &docks);
    QList<QDockWidget *> sorted;
    for (const PlacedDock &placed : qAsConst(docks))
        sorted.append(placed.first);
    QCOMPARE(toText({sorted}), order);
}

void tst_KyDockLayout::splitOrientation_data()
{
    QTest::addColumn<int>("area");
    QTest::addColumn<int>("orientation");
    QTest::newRow("left") << int(Qt::LeftDockWidgetArea) << int(Qt::Vertical);
    QTest::newRow("right") << int(Qt::RightDockWidgetArea) << int(Qt::Vertical);
    QTest::newRow("top") << int(Qt::TopDockWidgetArea) << int(Qt::Horizontal);
    QTest::newRow("bottom") << int(Qt::BottomDockWidgetArea) << int(Qt::Horizontal);
}

void tst_KyDockLayout::splitOrientation()
{
    QFETCH(int, area);
    QFETCH(int, orientation);
    QCOMPARE(int(DockLayout::splitOrientation(static_cast<Qt::DockWidgetArea>(area))), orientation);
}

void tst_KyDockLayout::isArea_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<bool>("expected");
    QTest::newRow("none") << 0 << false;
    QTest::newRow("left") << 1 << true;
    QTest::newRow("right") << 2 << true;
    QTest::newRow("left and right") << 3 << false;
    QTest::newRow("top") << 4 << true;
    QTest::newRow("bottom") << 8 << true;
    QTest::newRow("all") << 15 << false;
    QTest::newRow("negative") << -1 << false;
}

void tst_KyDockLayout::isArea()
{
    QFETCH(int, value);
    QFETCH(bool, expected);
    QCOMPARE(DockLayout::isArea(value), expected);
}

void tst_KyDockLayout::pin_holdsAndReleases()
{
    QDockWidget dock;
    dock.setMinimumSize(10, 20);
    dock.setMaximumSize(500, 600);
    KyDockSizePin::pin(&dock, QSize(200, 300));
    QCOMPARE(dock.minimumSize(), QSize(200, 300));
    QCOMPARE(dock.maximumSize(), QSize(200, 300));
    QTRY_COMPARE(dock.minimumSize(), QSize(10, 20));
    QCOMPARE(dock.maximumSize(), QSize(500, 600));
}

void tst_KyDockLayout::pin_twice_keepsTheFirstLimits()
{
    QDockWidget dock;
    dock.setMinimumSize(10, 20);
    dock.setMaximumSize(500, 600);
    KyDockSizePin::pin(&dock, QSize(200, 300));
    KyDockSizePin::pin(&dock, QSize(250, 350));
    QCOMPARE(dock.minimumSize(), QSize(250, 350));
    QTRY_COMPARE(dock.minimumSize(), QSize(10, 20));
    QCOMPARE(dock.maximumSize(), QSize(500, 600));

    // Afterwards the dock's limits are its own again and may change.
    dock.setMinimumSize(30, 40);
    KyDockSizePin::pin(&dock, QSize(200, 300));
    QTRY_COMPARE(dock.minimumSize(), QSize(30, 40));
}

void tst_KyDockLayout::pin_again_beginsTheTimeAnew()
{
    QDockWidget dock;
    dock.setMinimumSize(10, 20);
    QElapsedTimer timer;
    for (int i = 0; i < 5; ++i) {
        KyDockSizePin::pin(&dock, QSize(200, 300));
        timer.start();
        while (timer.elapsed() < 4) // milliseconds
            QCoreApplication::processEvents();
    }
    QTRY_COMPARE(dock.minimumSize(), QSize(10, 20));
    QVERIFY(timer.elapsed() >= 9);
}

void tst_KyDockLayout::pin_deletedDock_isForgotten()
{
    auto *dock = new QDockWidget;
    KyDockSizePin::pin(dock, QSize(200, 300));
    delete dock;
    QTest::qWait(30); // nothing happens
}

KYTE_TEST_MAIN(tst_KyDockLayout)
#include "tst_KyDockLayout.moc"
