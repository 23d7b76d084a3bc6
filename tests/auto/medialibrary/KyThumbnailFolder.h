#pragma once

#include <QColor>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace Kyte {
namespace Test {

/** A temporary folder of media files, which are empty, and of their thumbnails. */
class ThumbnailFolder
{
    Q_DISABLE_COPY(ThumbnailFolder)

public:
    ThumbnailFolder();

    /** The absolute path of the file \a name and of its thumbnail, whether they are there or not. */
    QString path(const QString &name) const;
    QString thumbnailPath(const QString &name) const;

    QString addFile(const QString &name) const;
    /** Writes the thumbnail of \a name: one plain colour, or \a content as it is. */
    void addThumbnail(const QString &name, const QColor &color, const QSize &size = QSize(40, 30)) const;
    void addThumbnail(const QString &name, const QByteArray &content) const;
    /** "0.png", "1.png" and so on with thumbnails of \a size; answers their paths. */
    QStringList addMany(int count, const QSize &size = QSize(40, 30)) const;

private:
    QTemporaryDir m_folder;
};

} // namespace Test
} // namespace Kyte
