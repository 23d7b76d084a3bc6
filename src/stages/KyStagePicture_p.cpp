#include "KyStagePicture_p.h"

#include "KyStageGeometry_p.h"

#include <KyScreen.h>
#include <KyStage.h>

#include <QPainter>
#include <QPen>

namespace Kyte {
namespace StagePicture {

static const double LIGHT = 0.6; // names are black on screens that are lighter

static QPen dottedPen(Qt::GlobalColor color, double width)
{
    return QPen(QBrush(color, Qt::SolidPattern), width, Qt::DotLine, Qt::SquareCap, Qt::BevelJoin);
}

static void
drawStage(QPainter *painter, const KyStage &stage, const QImage &background, const QRect &rect, double scale)
{
    painter->fillRect(rect, stage.backgroundColor());
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(rect, background);
    painter->setPen(dottedPen(Qt::gray, scale));
    painter->drawRect(rect);
}

static void drawScreen(QPainter *painter, const KyScreen &screen, const QRect &rect)
{
    const QColor color = screen.backgoundColor();
    painter->fillRect(rect, color);
    painter->setPen(dottedPen(Qt::cyan, 1.0));
    painter->drawRect(rect);
    painter->setPen(color.lightnessF() <= LIGHT ? Qt::white : Qt::black);
    painter->drawText(rect, Qt::AlignCenter, screen.name());
}

QImage draw(const KyStage &stage, const QImage &background, const QSize &size, const QFont &font)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    const QRectF bounds = StageGeometry::snappedBounds(stage);
    const double scale = StageGeometry::previewScale(bounds, size);
    if (image.isNull() || scale <= 0)
        return image;

    QPainter painter(&image);
    painter.setFont(font);
    const auto place = [&](const QRectF &rect) {
        return StageGeometry::scaledRect(rect.translated(-bounds.topLeft()), scale);
    };
    if (!stage.rect().isEmpty())
        drawStage(&painter, stage, background, place(StageGeometry::toRectF(stage.rect())), scale);
    const QList<KyScreen *> screens = stage.screenList();
    for (const KyScreen *screen : screens) {
        const QRect rect = screen ? StageGeometry::snapped(screen->rect()) : QRect();
        if (!rect.isEmpty())
            drawScreen(&painter, *screen, place(rect));
    }
    return image;
}

} // namespace StagePicture
} // namespace Kyte
