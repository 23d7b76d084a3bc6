#pragma once

#include <QFont>
#include <QImage>
#include <QSize>

namespace Kyte {

class KyStage;

/** The picture of a stage in its preview. */
namespace StagePicture {

/**
 * The stage, with \a background stretched over it, and its screens, fitted into \a size from the top left
 * corner on. The rest is transparent, and so is everything when the stage cannot be drawn; null for a size of
 * nothing.
 *
 * @param background null for none
 * @param font of the screens' names
 */
QImage draw(const KyStage &stage, const QImage &background, const QSize &size, const QFont &font);

} // namespace StagePicture
} // namespace Kyte
