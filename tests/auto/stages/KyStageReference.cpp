#include "KyStageReference.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QRandomGenerator>

namespace Kyte {
namespace Test {

QVector<double> iconFactors()
{
    return {1.0, 1.25, 1.5, 1.75, 2.0, 2.25, 2.5, 2.75, 3.0};
}

static QImage referenceContent(
    const KyStage &stage, double areaWidth, double areaHeight, double factor, const QString &label)
{
    QRectF bounds = stage.rect();
    for (const KyScreen *screen : stage.screenList())
        bounds = bounds.united(screen->rect());
    const double s =
        bounds.width() < bounds.height() ? areaHeight / bounds.height() : areaWidth / bounds.width();
    const QPointF offset(-bounds.left() * s, -bounds.top() * s);

    QImage content(int(bounds.width() * s), int(bounds.height() * s), QImage::Format_ARGB32);
    content.fill(Qt::transparent);
    QPainter painter(&content);
    painter.setBrush(QBrush(Qt::lightGray, Qt::SolidPattern));
    painter.setPen(QPen(QBrush(Qt::black), 2.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    QRectF rect(stage.rect().left() * s, stage.rect().top() * s, stage.rect().width() * s,
                stage.rect().height() * s);
    rect.translate(offset);
    if (rect.width() - int(rect.width()) >= 0.5)
        rect.setWidth(rect.width() - 0.5);
    if (rect.height() - int(rect.height()) >= 0.5)
        rect.setHeight(rect.height() - 0.5);
    painter.drawRect(rect);
    QFont font(QStringLiteral("Yu Gothic UI"));
    font.setPixelSize(int(factor * 10));
    painter.setFont(font);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.drawText(rect, Qt::AlignHCenter | Qt::AlignVCenter, label);

    painter.setBrush(QBrush(Qt::darkGray, Qt::SolidPattern));
    painter.setPen(QPen(QBrush(Qt::black), 1.0, Qt::DotLine, Qt::SquareCap, Qt::BevelJoin));
    for (const KyScreen *screen : stage.screenList()) {
        rect = QRectF(screen->rect().left() * s, screen->rect().top() * s, screen->rect().width() * s - 1.0,
                      screen->rect().height() * s - 1.0);
        rect.translate(offset);
        painter.drawRect(rect);
        const QPen pen = painter.pen();
        painter.setPen(QPen(QBrush(Qt::white), 1.0, Qt::SolidLine));
        const QRectF box = QFontMetricsF(painter.font()).boundingRect(screen->name());
        if (rect.width() < box.width())
            rect.setWidth(box.width());
        if (rect.height() < box.height())
            rect.setHeight(box.height());
        painter.drawText(rect, Qt::AlignHCenter | Qt::AlignVCenter, screen->name());
        painter.setPen(pen);
    }
    return content;
}

QImage referenceIcon(const KyStage &stage, const QSize &iconSize, double factor, const QString &label)
{
    const QSizeF size(iconSize.width() * factor, iconSize.height() * factor);
    const QImage content = referenceContent(stage, size.width() - 10, size.height() - 10, factor, label);
    QImage icon(size.toSize(), QImage::Format_ARGB32);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    painter.drawImage(
        QPoint(int((icon.width() - content.width()) * 0.5), int((icon.height() - content.height()) * 0.5)),
        content);
    return icon;
}

static double referenceFactor(const QRect &bounds, const QSize &size)
{
    double d = 0;
    if (bounds.width() >= bounds.height()) {
        d = double(size.width()) / bounds.width();
        if (int(bounds.height() * d) > size.height())
            d = double(size.height()) / bounds.height();
    } else {
        d = double(size.height()) / bounds.height();
        if (int(bounds.width() * d) > size.width())
            d = double(size.width()) / bounds.width();
    }
    return d;
}

QImage
referencePicture(const KyStage &stage, const QString &backgroundFile, const QSize &size, const QFont &font)
{
    QRect bounds = stage.rect();
    for (const KyScreen *screen : stage.screenList())
        bounds = bounds.united(screen->rect().toRect());
    const double d = referenceFactor(bounds, size);
    const auto place = [&](QRect rect) {
        rect.translate(-bounds.left(), -bounds.top());
        return QRectF(rect.left() * d, rect.top() * d, rect.width() * d, rect.height() * d).toRect();
    };

    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setFont(font);
    const QRect stageRect = place(stage.rect());
    painter.fillRect(stageRect, stage.backgroundColor());
    if (!backgroundFile.isEmpty()) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(stageRect, QImage(backgroundFile));
    }
    painter.setPen(QPen(QBrush(Qt::gray), d, Qt::DotLine, Qt::SquareCap, Qt::BevelJoin));
    painter.drawRect(stageRect);
    for (const KyScreen *screen : stage.screenList()) {
        const QRect rect = place(screen->rect().toRect());
        painter.fillRect(rect, screen->backgoundColor());
        painter.setPen(QPen(QBrush(Qt::cyan), 1.0, Qt::DotLine, Qt::SquareCap, Qt::BevelJoin));
        painter.drawRect(rect);
        painter.setPen(screen->backgoundColor().lightnessF() > 0.6 ? Qt::black : Qt::white);
        painter.drawText(rect, Qt::AlignHCenter | Qt::AlignVCenter, screen->name());
    }
    return image;
}

KyScreen *addScreen(KyStage *stage, const QString &name, const QRectF &rect, const QColor &color)
{
    auto *screen = new KyScreen;
    screen->setName(name);
    screen->setRect(rect);
    screen->setBackgoundColor(color);
    stage->screenListPtr()->append(screen);
    return screen;
}

void fillAtRandom(KyStage *stage, quint32 seed)
{
    QRandomGenerator random(seed);
    const auto pixels = [&random](int from, int to) {
        return random.bounded(from, to);
    };
    const bool isWhole = seed % 2 == 0;
    stage->setRect(QRect(pixels(-100, 100), pixels(-100, 100), pixels(200, 2200), pixels(200, 2200)));
    stage->setBackgroundColor(QColor::fromRgba(random.generate()));
    const int count = pixels(0, 6);
    for (int number = 0; number < count; ++number) {
        QRectF rect(pixels(-300, 1600), pixels(-300, 1600), pixels(10, 1900), pixels(10, 900));
        if (!isWhole)
            rect.adjust(random.generateDouble(), random.generateDouble(), random.generateDouble(), 0);
        addScreen(stage, QStringLiteral("Multi %1").arg(number).repeated(1 + number % 3), rect,
                  QColor::fromRgba(random.generate()));
    }
}

} // namespace Test
} // namespace Kyte
