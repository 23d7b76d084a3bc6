#pragma once

#include <QList>
#include <QMap>
#include <QPair>
#include <QRect>

class QDockWidget;

namespace Kyte {

/** The arithmetic of dock layouts, apart from any window. */
namespace DockLayout {

/** A dock, and the docks that its window names as stacked with it. */
using TabView = QPair<QDockWidget *, QList<QDockWidget *>>;

/**
 * Groups of stacked docks, each in the order of its tabs, which no single view tells: a view leaves its own
 * dock out, and hidden or floating docks are named by others without naming them back. So every view adds the
 * positions at which it names the docks to their weights, and the weights order the group. Addresses are
 * compared and never followed.
 */
QList<QList<QDockWidget *>> groupTabs(const QList<TabView> &views);

/** A dock and the frame rectangle that it had. */
using PlacedDock = QPair<QDockWidget *, QRect>;

/**
 * The docks of each area in the order in which they go there: from top to bottom in the left and right areas,
 * from left to right in the others. Docks at the same place keep their order.
 */
void sortByPlace(Qt::DockWidgetArea area, QList<PlacedDock> *docks);

/** How neighbours in \a area are split. */
Qt::Orientation splitOrientation(Qt::DockWidgetArea area);

/** Whether \a value, which comes from a settings file, is one of the four areas. */
bool isArea(int value);

} // namespace DockLayout

} // namespace Kyte
