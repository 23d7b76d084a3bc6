#include "KyThumbnailFolder.h"

#include <KyTestEnvironment.h>

#include <QBuffer>
#include <QDir>
#include <QImage>

namespace Kyte {
namespace Test {

static QByteArray pngFile(const QColor &color, const QSize &size)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data();
}

ThumbnailFolder::ThumbnailFolder()
{
    if (!m_folder.isValid())
        qFatal("No temporary folder for the test");
}

QString ThumbnailFolder::path(const QString &name) const
{
    return m_folder.path() + QLatin1Char('/') + name;
}

QString ThumbnailFolder::thumbnailPath(const QString &name) const
{
    return m_folder.path() + QStringLiteral("/._kythumb/") + name + QStringLiteral(".thumb");
}

QString ThumbnailFolder::addFile(const QString &name) const
{
    writeFile(path(name), QByteArray());
    return path(name);
}

void ThumbnailFolder::addThumbnail(const QString &name, const QColor &color, const QSize &size) const
{
    addThumbnail(name, pngFile(color, size));
}

void ThumbnailFolder::addThumbnail(const QString &name, const QByteArray &content) const
{
    QDir(m_folder.path()).mkdir(QStringLiteral("._kythumb"));
    writeFile(thumbnailPath(name), content);
}

QStringList ThumbnailFolder::addMany(int count, const QSize &size) const
{
    const QByteArray content = pngFile(Qt::red, size);
    QStringList paths;
    for (int i = 0; i < count; ++i) {
        const QString name = QStringLiteral("%1.png").arg(i);
        paths.append(addFile(name));
        addThumbnail(name, content);
    }
    return paths;
}

} // namespace Test
} // namespace Kyte
