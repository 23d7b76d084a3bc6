#include "KyThumbnail.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QSaveFile>

namespace Kyte {

static const QLatin1String THUMBNAIL_FOLDER("._kythumb");
static const QLatin1String THUMBNAIL_EXTENSION(".thumb");

/** Where the thumbnail of \a filePath belongs; empty for a path that can name no file. */
static QString thumbnailPathOf(const QString &filePath)
{
    const QFileInfo file(filePath);
    if (file.fileName().isEmpty() || filePath.contains(QChar::Null))
        return QString();
    return file.absoluteDir().filePath(THUMBNAIL_FOLDER + QLatin1Char('/') + file.fileName()
                                       + THUMBNAIL_EXTENSION);
}

KyThumbnail::KyThumbnail(const QString &filePath, QObject *parent, bool load)
    : QObject(parent)
    , m_filePath(filePath)
{
    // Not QPixmap's own reading: its cache does not see that a thumbnail was replaced within the same second.
    const QString thumbnailPath = load ? getFilePropertyFromHashFile(m_filePath).thumbnailPath : QString();
    if (!thumbnailPath.isEmpty())
        m_pixmap = QPixmap::fromImage(QImage(thumbnailPath));
}

bool KyThumbnail::inspect(QString path) const
{
    return !getFilePropertyFromHashFile(path).thumbnailPath.isEmpty() && QFileInfo(path).isFile();
}

KyThumbnail::FileProperty KyThumbnail::getFilePropertyFromHashFile(QString &path)
{
    FileProperty property;
    const QString thumbnailPath = thumbnailPathOf(path);
    if (!thumbnailPath.isEmpty() && QFileInfo(thumbnailPath).isFile())
        property.thumbnailPath = thumbnailPath;
    return property;
}

void KyThumbnail::setPixmap(const QPixmap &pixmap)
{
    m_pixmap = pixmap;
}

QPixmap KyThumbnail::pixmap() const
{
    return m_pixmap;
}

bool KyThumbnail::write(bool overwrite)
{
    const QString thumbnailPath = thumbnailPathOf(m_filePath);
    if (thumbnailPath.isEmpty() || m_pixmap.isNull())
        return false;

    const QFileInfo thumbnail(thumbnailPath);
    if (!overwrite && thumbnail.isFile())
        return true;

    // The folder may also appear in between, made by another program.
    const QDir folder = thumbnail.absoluteDir();
    if (!folder.exists() && !QDir().mkdir(folder.path()) && !folder.exists())
        return false;

    // commit() alone does not notice when the last buffer did not fit on the disk.
    QSaveFile file(thumbnailPath);
    return file.open(QIODevice::WriteOnly) && m_pixmap.save(&file, "PNG") && file.flush()
        && file.error() == QFileDevice::NoError && file.commit();
}

} // namespace Kyte
