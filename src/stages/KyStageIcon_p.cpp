#include "KyStageIcon_p.h"

#include "KyStageGeometry_p.h"

#include <KyScreen.h>
#include <KyStage.h>

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPen>
#include <QVector>

#include <algorithm>
#include <cmath>

namespace Kyte {
namespace StageIcon {

static const QString FONT_FAMILY = QStringLiteral("Yu Gothic UI");
static const double FONT_SIZE = 10.0; // pixels at factor 1
static const double MAX_SIDE = 8192; // pixels: no icon is larger, but a size may come from anywhere

/** A screen in the drawing. */
struct Place
{
    QString name;
    QRectF outline;
    QRectF text; ///< the outline, larger where the name is
};

/** The drawing before it is drawn. */
struct Plan
{
    QSize size;
    QFont font;
    QRectF stage;
    QVector<Place> screens;
};

static double withoutHalf(double length)
{
    return length - std::trunc(length) >= 0.5 ? length - 0.5 : length;
}

static QRectF scaled(const QRectF &rect, const StageGeometry::IconLayout &layout)
{
    return QRectF(rect.topLeft() * layout.scale, rect.size() * layout.scale).translated(layout.offset);
}

static Plan makePlan(const KyStage &stage, const StageGeometry::IconLayout &layout, int fontSize)
{
    Plan plan;
    plan.size = layout.content.size();
    plan.font = QFont(FONT_FAMILY);
    plan.font.setPixelSize(fontSize);
    plan.stage = scaled(StageGeometry::toRectF(stage.rect()), layout);
    plan.stage.setWidth(withoutHalf(plan.stage.width()));
    plan.stage.setHeight(withoutHalf(plan.stage.height()));

    const QFontMetricsF metrics(plan.font);
    const QList<KyScreen *> screens = stage.screenList();
    plan.screens.reserve(screens.size());
    for (const KyScreen *screen : screens) {
        if (!screen || !StageGeometry::isFinite(screen->rect()))
            continue;
        Place place;
        place.name = screen->name();
        place.outline = scaled(screen->rect(), layout).adjusted(0, 0, -1.0, -1.0);
        place.text = place.outline;
        place.text.setSize(place.outline.size().expandedTo(metrics.boundingRect(place.name).size()));
        plan.screens.append(place);
    }
    return plan;
}

/**
 * Whether every name lies on its screen or on the stage. Over nothing, text comes out darker in an image that
 * is not premultiplied, and that is how the icons look.
 */
static bool isTextOnGround(const Plan &plan)
{
    const QRectF content(QPointF(), plan.size);
    return std::all_of(plan.screens.cbegin(), plan.screens.cend(), [&](const Place &place) {
        return place.text == place.outline || plan.stage.contains(place.text.intersected(content));
    });
}

static void drawStage(QPainter *painter, const Plan &plan, const QString &label)
{
    painter->setBrush(Qt::lightGray);
    painter->setPen(QPen(Qt::black, 2.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    painter->drawRect(plan.stage);
    painter->drawText(plan.stage, Qt::AlignCenter, label);
}

/** Later screens cover earlier ones: the list is in drawing order. */
static void drawScreens(QPainter *painter, const Plan &plan)
{
    const QPen outlinePen(Qt::black, 1.0, Qt::DotLine, Qt::SquareCap, Qt::BevelJoin);
    const QPen textPen(Qt::white, 1.0);
    painter->setBrush(Qt::darkGray);
    for (const Place &place : plan.screens) {
        painter->setPen(outlinePen);
        painter->drawRect(place.outline);
        painter->setPen(textPen);
        painter->drawText(place.text, Qt::AlignCenter, place.name);
    }
}

static QImage transparentImage(const QSize &size, QImage::Format format)
{
    QImage image(size, format);
    image.fill(Qt::transparent);
    return image;
}

static void drawContent(QImage *content, const Plan &plan, const QString &label)
{
    QPainter painter(content);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(plan.font);
    drawStage(&painter, plan, label);
    drawScreens(&painter, plan);
}

/**
 * The pixels of \a image within \a rect as an image of their own. A clip would not do: the dots of a line
 * depend on where the image ends.
 */
static QImage partOf(QImage *image, const QRect &rect)
{
    return QImage(image->scanLine(rect.top()) + rect.left() * image->depth() / 8, rect.width(), rect.height(),
                  image->bytesPerLine(), image->format());
}

QImage draw(const KyStage &stage, const QSize &iconSize, double factor, const QString &label)
{
    const QSizeF size = QSizeF(iconSize) * factor;
    if (size.isEmpty() || size.width() > MAX_SIDE || size.height() > MAX_SIDE)
        return QImage();
    const StageGeometry::IconLayout layout = StageGeometry::iconLayout(StageGeometry::bounds(stage), size);
    if (layout.content.isEmpty())
        return transparentImage(size.toSize(), QImage::Format_ARGB32_Premultiplied);

    const Plan plan = makePlan(stage, layout, int(FONT_SIZE * factor));
    // Pixmaps are premultiplied, and drawing is several times faster in such an image.
    const QImage::Format format =
        isTextOnGround(plan) ? QImage::Format_ARGB32_Premultiplied : QImage::Format_ARGB32;
    QImage image = transparentImage(size.toSize(), format);
    if (image.rect().contains(layout.content)) {
        QImage content = partOf(&image, layout.content);
        drawContent(&content, plan, label);
    } else { // cut off by the icon
        QImage content = transparentImage(layout.content.size(), format);
        drawContent(&content, plan, label);
        QPainter(&image).drawImage(layout.content.topLeft(), content);
    }
    return image;
}

} // namespace StageIcon
} // namespace Kyte
