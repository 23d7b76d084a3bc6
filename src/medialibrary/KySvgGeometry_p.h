#pragma once

#include <QSize>

namespace Kyte {
namespace SvgGeometry {

/**
 * The size at which a drawing of \a viewBox is rendered for an image of \a target. A side that follows from
 * the view box is truncated; it is 0 where the view box gives none, or none that an image can have.
 */
QSize renderedSize(const QSizeF &viewBox, const QSize &target, Qt::AspectRatioMode mode);

/** \a viewBox with truncated sides; a side is 0 where an image cannot have it. */
QSize ownSize(const QSizeF &viewBox);

} // namespace SvgGeometry
} // namespace Kyte
