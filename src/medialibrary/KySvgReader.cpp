#include "KySvgReader.h"

#include "KyImageSize_p.h"
#include "KySvgGeometry_p.h"

#include <QFileInfo>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include <memory>

namespace Kyte {

/** A renderer without a drawing where \a path is no file: a pipe would keep its reader waiting. */
static QSvgRenderer *makeRenderer(const QString &path, QObject *parent)
{
    return QFileInfo(path).isFile() ? new QSvgRenderer(path, parent) : new QSvgRenderer(parent);
}

static QImage transparentImage(const QSize &size)
{
    if (!ImageSize::isSensible(size))
        return QImage();
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    return image;
}

static QImage render(QSvgRenderer *renderer, const QSize &size)
{
    QImage image = transparentImage(size);
    if (image.isNull())
        return image;
    QPainter painter(&image);
    renderer->render(&painter, image.rect());
    return image;
}

KySvgReader::KySvgReader(QObject *parent)
    : QObject(parent)
{
}

QString KySvgReader::filePath() const
{
    return m_filePath;
}

void KySvgReader::setFilePath(const QString &path)
{
    if (path == m_filePath)
        return;
    m_filePath = path;
    delete m_renderer;
    m_renderer = makeRenderer(m_filePath, this);
}

QIcon KySvgReader::getIcon(const QString &path, int width, int height, Qt::AspectRatioMode mode)
{
    return QIcon(QPixmap::fromImage(getImage(path, width, height, mode)));
}

QIcon KySvgReader::getIcon(QSvgRenderer *renderer, int width, int height, Qt::AspectRatioMode mode)
{
    return QIcon(QPixmap::fromImage(getImage(renderer, width, height, mode)));
}

QImage KySvgReader::getImage(const QString &path, int width, int height, Qt::AspectRatioMode mode)
{
    if (path.isEmpty())
        return QImage();
    const std::unique_ptr<QSvgRenderer> renderer(makeRenderer(path, nullptr));
    return getImage(renderer.get(), width, height, mode);
}

QImage KySvgReader::getImage(QSvgRenderer *renderer, int width, int height, Qt::AspectRatioMode mode)
{
    const QSize size(width, height);
    if (!renderer || !ImageSize::isSensible(size))
        return QImage();
    const QSizeF viewBox = renderer->viewBoxF().size();
    const QImage drawing = render(renderer, SvgGeometry::renderedSize(viewBox, size, mode));
    if (mode == Qt::IgnoreAspectRatio)
        return drawing;

    QImage image = transparentImage(size);
    if (!image.isNull())
        QPainter(&image).drawImage(0, 0, drawing); // at the top left: the product's list icons expect it
    return image;
}

QImage KySvgReader::getImage(QSvgRenderer *renderer)
{
    return renderer ? render(renderer, SvgGeometry::ownSize(renderer->viewBoxF().size())) : QImage();
}

} // namespace Kyte
