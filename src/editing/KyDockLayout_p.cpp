#include "KyDockLayout_p.h"

#include <algorithm>

namespace Kyte {
namespace DockLayout {

static bool isSideArea(Qt::DockWidgetArea area)
{
    return area == Qt::LeftDockWidgetArea || area == Qt::RightDockWidgetArea;
}

/** The docks of \a weights by weight; equal weights in the order of the map. */
static QList<QDockWidget *> sortedByWeight(const QMap<QDockWidget *, int> &weights)
{
    QList<QDockWidget *> docks = weights.keys();
    std::stable_sort(docks.begin(), docks.end(), [&weights](QDockWidget *left, QDockWidget *right) {
        return weights.value(left) < weights.value(right);
    });
    return docks;
}

QList<QList<QDockWidget *>> groupTabs(const QList<TabView> &views)
{
    // A map, for groups and docks of equal weight come in its order.
    QMap<QDockWidget *, int> groupOfDock; // index in weightsOfGroups; clazy:exclude=qmap-with-pointer-key
    QList<QMap<QDockWidget *, int>> weightsOfGroups;
    for (const TabView &view : views) {
        if (view.second.isEmpty())
            continue;
        if (!groupOfDock.contains(view.first)) {
            groupOfDock.insert(view.first, weightsOfGroups.size());
            weightsOfGroups.append({{view.first, 0}});
        }
        const int group = groupOfDock.value(view.first);
        QMap<QDockWidget *, int> &weights = weightsOfGroups[group];
        for (int position = 0; position < view.second.size(); ++position) {
            weights[view.second.at(position)] += position;
            groupOfDock.insert(view.second.at(position), group);
        }
    }

    QList<QList<QDockWidget *>> groups;
    QList<int> listed;
    for (int group : qAsConst(groupOfDock)) {
        if (listed.contains(group))
            continue;
        listed.append(group);
        groups.append(sortedByWeight(weightsOfGroups.at(group)));
    }
    return groups;
}

void sortByPlace(Qt::DockWidgetArea area, QList<PlacedDock> *docks)
{
    const bool isSide = isSideArea(area);
    std::stable_sort(docks->begin(), docks->end(), [isSide](const PlacedDock &left, const PlacedDock &right) {
        return isSide ? left.second.top() < right.second.top() : left.second.left() < right.second.left();
    });
}

Qt::Orientation splitOrientation(Qt::DockWidgetArea area)
{
    return isSideArea(area) ? Qt::Vertical : Qt::Horizontal;
}

bool isArea(int value)
{
    return value == Qt::LeftDockWidgetArea || value == Qt::RightDockWidgetArea
        || value == Qt::TopDockWidgetArea || value == Qt::BottomDockWidgetArea;
}

} // namespace DockLayout

} // namespace Kyte
