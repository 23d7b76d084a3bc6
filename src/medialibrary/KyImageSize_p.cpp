#include "KyImageSize_p.h"

#include <QSize>

namespace Kyte {
namespace ImageSize {

bool isSensible(const QSize &size)
{
    return !size.isEmpty() && size.width() <= MAX_SIDE && size.height() <= MAX_SIDE
        && size.width() <= MAX_PIXELS / size.height();
}

} // namespace ImageSize
} // namespace Kyte
