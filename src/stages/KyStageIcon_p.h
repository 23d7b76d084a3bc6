#pragma once

#include <QImage>
#include <QSize>
#include <QString>

namespace Kyte {

class KyStage;

/** The schematic drawing of a stage and its screens. It may be made on any thread. */
namespace StageIcon {

/**
 * The image for one device-pixel ratio, as large as \a iconSize times \a factor. It is transparent around the
 * stage, and altogether when the stage cannot be drawn; null for a size of nothing and
 * for one above 8192 pixels.
 *
 * @param label written into the stage
 */
QImage draw(const KyStage &stage, const QSize &iconSize, double factor, const QString &label);

} // namespace StageIcon
} // namespace Kyte
