#pragma once

#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSize>
#include <QSizeF>

namespace Kyte {

class KyStage;

/**
 * The arithmetic of drawing stages. Rectangles come from files and may hold anything: nothing here overflows,
 * and what cannot be drawn is told apart from what can.
 */
namespace StageGeometry {

/** Where a stage is drawn in its icon. */
struct IconLayout
{
    double scale = 0;
    QPointF offset; ///< added to scaled positions
    QRect content; ///< the part of the icon that is drawn in; empty when there is nothing to draw
};

bool isFinite(const QRectF &rect);
/** Whether \a rect is finite and larger than nothing. */
bool isDrawable(const QRectF &rect);

/** The same rectangle, also where the width or height is no int. */
QRectF toRectF(const QRect &rect);

/**
 * Snaps the edges to whole pixels as QRectF::toRect() does. Edges are bounded to 2^30 - 1 either way, and
 * what is not a number counts as 0.
 */
QRect snapped(const QRectF &rect);

/** Position and size times \a factor, snapped. */
QRect scaledRect(const QRectF &rect, double factor);

/** The stage and all its screens; what is not finite takes no part. */
QRectF bounds(const KyStage &stage);
/** The same with each screen snapped first. */
QRectF snappedBounds(const KyStage &stage);

/**
 * Fits \a bounds into an icon by the longer side alone, with a border of five pixels. The other side may get
 * larger than an icon that is not square; there it is cut off.
 */
IconLayout iconLayout(const QRectF &bounds, const QSizeF &iconSize);

/**
 * The factor by which \a bounds fit into \a target: the longer side is fitted, the width when both are equal,
 * and the other one only when it overflows then. 0 when there is nothing to draw.
 */
double previewScale(const QRectF &bounds, const QSize &target);

} // namespace StageGeometry
} // namespace Kyte
