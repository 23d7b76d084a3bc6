#include "KyStageGeometry_p.h"

#include <KyScreen.h>
#include <KyStage.h>

#include <cmath>

namespace Kyte {
namespace StageGeometry {

static const double ICON_BORDER = 5.0; // pixels, whatever the scale
static const double COORDINATE_LIMIT = 1073741823.0; // 2^30 - 1: distances of edges are ints as well

bool isFinite(const QRectF &rect)
{
    return std::isfinite(rect.x()) && std::isfinite(rect.y()) && std::isfinite(rect.width())
        && std::isfinite(rect.height());
}

bool isDrawable(const QRectF &rect)
{
    return isFinite(rect) && rect.width() > 0 && rect.height() > 0;
}

QRectF toRectF(const QRect &rect)
{
    const double left = rect.left();
    const double top = rect.top();
    return {left, top, rect.right() - left + 1, rect.bottom() - top + 1};
}

static double bounded(double coordinate)
{
    return std::isnan(coordinate) ? 0 : qBound(-COORDINATE_LIMIT, coordinate, COORDINATE_LIMIT);
}

QRect snapped(const QRectF &rect)
{
    const QPointF topLeft(bounded(rect.left()), bounded(rect.top()));
    const QPointF bottomRight(bounded(rect.right()), bounded(rect.bottom()));
    return QRectF(topLeft, bottomRight).toRect();
}

QRect scaledRect(const QRectF &rect, double factor)
{
    return snapped(
        QRectF(rect.left() * factor, rect.top() * factor, rect.width() * factor, rect.height() * factor));
}

/** The stage united with its screens as \a placeOf gives them. */
template<typename PlaceOf>
static QRectF unitedWithScreens(const KyStage &stage, PlaceOf placeOf)
{
    QRectF united = toRectF(stage.rect());
    const QList<KyScreen *> screens = stage.screenList();
    for (const KyScreen *screen : screens) {
        if (screen && isFinite(screen->rect()))
            united = united.united(placeOf(screen->rect()));
    }
    return united;
}

QRectF bounds(const KyStage &stage)
{
    return unitedWithScreens(stage, [](const QRectF &rect) {
        return rect;
    });
}

QRectF snappedBounds(const KyStage &stage)
{
    return unitedWithScreens(stage, [](const QRectF &rect) {
        return toRectF(snapped(rect));
    });
}

IconLayout iconLayout(const QRectF &bounds, const QSizeF &iconSize)
{
    IconLayout layout;
    if (!isDrawable(bounds))
        return layout;
    const QSizeF area(iconSize.width() - 2 * ICON_BORDER, iconSize.height() - 2 * ICON_BORDER);
    layout.scale =
        bounds.width() < bounds.height() ? area.height() / bounds.height() : area.width() / bounds.width();
    layout.offset = QPointF(-bounds.left() * layout.scale, -bounds.top() * layout.scale);
    // Truncated as the products come out: 1920 times 246 / 1920 makes 245.
    const QSize content(int(bounds.width() * layout.scale), int(bounds.height() * layout.scale));
    const QSize icon = iconSize.toSize();
    layout.content = QRect(
        QPoint(int((icon.width() - content.width()) * 0.5), int((icon.height() - content.height()) * 0.5)),
        content);
    return layout;
}

double previewScale(const QRectF &bounds, const QSize &target)
{
    if (!isDrawable(bounds) || target.isEmpty())
        return 0;
    const double byWidth = target.width() / bounds.width();
    const double byHeight = target.height() / bounds.height();
    if (bounds.width() >= bounds.height())
        return int(bounds.height() * byWidth) > target.height() ? byHeight : byWidth;
    return int(bounds.width() * byHeight) > target.width() ? byWidth : byHeight;
}

} // namespace StageGeometry
} // namespace Kyte
