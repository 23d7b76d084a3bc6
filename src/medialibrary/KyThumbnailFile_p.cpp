#include "KyThumbnailFile_p.h"

#include <KyCommon.h>
#include <KyExtension.h>
#include <Path.h>

#include <QFileInfo>
#include <QIcon>

namespace Kyte {
namespace ThumbnailFile {

static const QSize ICON_SIZE(32, 32);

bool isMedia(const QFileInfo &file)
{
    return KyExtension().getMediaType(Path::getExtension(file.fileName())) != MediaType::None;
}

QString pathOf(const QFileInfo &file)
{
    const QString name = file.fileName();
    if (name.isEmpty())
        return QString();
    QString folder = file.absolutePath();
    if (!folder.endsWith(QLatin1Char('/'))) // as only a root does
        folder += QLatin1Char('/');
    return folder + THUMBNAIL_FOLDER + QLatin1Char('/') + name + QLatin1Char('.') + EXTENSION_THUMBNAIL;
}

QString find(const QFileInfo &file)
{
    const QString path = pathOf(file);
    return !path.isEmpty() && QFileInfo(path).isFile() ? path : QString();
}

void addTo(QIcon *icon, const QString &path)
{
    icon->addFile(path, ICON_SIZE, QIcon::Normal, QIcon::Off);
}

} // namespace ThumbnailFile
} // namespace Kyte
