#pragma once

#include <KyScreen.h>
#include <KyStage.h>

#include <QColor>
#include <QFont>
#include <QImage>
#include <QRectF>
#include <QSize>
#include <QString>
#include <QVector>

namespace Kyte {
namespace Test {

/** The device-pixel ratios that icons are drawn for. */
QVector<double> iconFactors();

/** An icon drawn the straightforward way: the content in an image of its own, and that one into the icon. */
QImage referenceIcon(const KyStage &stage, const QSize &iconSize, double factor, const QString &label);

/** A preview's picture drawn the straightforward way, with the background read from \a backgroundFile. */
QImage
referencePicture(const KyStage &stage, const QString &backgroundFile, const QSize &size, const QFont &font);

/** Gives \a stage another screen, which is its own. */
KyScreen *
addScreen(KyStage *stage, const QString &name, const QRectF &rect, const QColor &color = QColor(Qt::black));

/** A stage with screens inside, outside, above each other, on fractions of pixels and with long names. */
void fillAtRandom(KyStage *stage, quint32 seed);

} // namespace Test
} // namespace Kyte
