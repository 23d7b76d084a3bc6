#include "KyLibFileIconProvider.h"

#include "KyImageSize_p.h"
#include "KyThumbnailFile_p.h"

#include <QFileInfo>
#include <QIcon>
#include <QPixmap>

namespace Kyte {

QIcon KyLibFileIconProvider::icon(const QFileInfo &info) const
{
    QIcon icon = QFileIconProvider::icon(info);
    const QString thumbnail = ThumbnailFile::find(info);
    if (!thumbnail.isEmpty())
        ThumbnailFile::addTo(&icon, thumbnail);
    return icon;
}

QIcon KyLibFileIconProvider::getIcon(const QImage &image, const QFileInfo &info) const
{
    QIcon icon = QFileIconProvider::icon(info);
    icon.addPixmap(QPixmap::fromImage(image), QIcon::Normal, QIcon::Off);
    return icon;
}

QImage KyLibFileIconProvider::getIconImage(const QFileInfo &info, const QSize &size) const
{
    if (!ThumbnailFile::isMedia(info) || !ImageSize::isSensible(size))
        return QImage();
    const QImage image(ThumbnailFile::find(info));
    return image.isNull() ? QImage() : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QString KyLibFileIconProvider::getThumbnailFilePath(const QFileInfo &info) const
{
    return ThumbnailFile::isMedia(info) ? ThumbnailFile::pathOf(info) : QString();
}

} // namespace Kyte
