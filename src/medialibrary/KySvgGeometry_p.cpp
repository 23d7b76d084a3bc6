#include "KySvgGeometry_p.h"

#include "KyImageSize_p.h"

namespace Kyte {
namespace SvgGeometry {

/** Files hold any number, infinity and no number at all included: those have no integer. */
static int truncated(double side)
{
    return side >= 0 && side <= ImageSize::MAX_SIDE ? static_cast<int>(side) : 0;
}

/** Divides first and multiplies then: the other order truncates to other pixels. */
static int scaled(double numerator, double denominator, int side)
{
    return denominator == 0 ? 0 : truncated(numerator / denominator * side);
}

QSize renderedSize(const QSizeF &viewBox, const QSize &target, Qt::AspectRatioMode mode)
{
    const double width = viewBox.width();
    const double height = viewBox.height();
    const QSize fullHeight(scaled(width, height, target.height()), target.height());
    const QSize fullWidth(target.width(), scaled(height, width, target.width()));
    // The shape of the drawing alone decides, not that of the target: a drawing may exceed its image.
    switch (mode) {
    case Qt::KeepAspectRatio:
        return width < height ? fullHeight : fullWidth;
    case Qt::KeepAspectRatioByExpanding:
        return width >= height ? fullHeight : fullWidth;
    case Qt::IgnoreAspectRatio:
        break;
    }
    return target;
}

QSize ownSize(const QSizeF &viewBox)
{
    return {truncated(viewBox.width()), truncated(viewBox.height())};
}

} // namespace SvgGeometry
} // namespace Kyte
