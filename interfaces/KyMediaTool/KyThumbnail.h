#pragma once

#include <KyMediaToolExport.h>

#include <QObject>
#include <QPixmap>
#include <QString>

namespace Kyte {

/**
 * The stored thumbnail of a file. The thumbnail of "/a/film.mp4" is the image file
 * "/a/._kythumb/film.mp4.thumb"; this class writes PNG files and reads whatever image format is there.
 *
 * inspect() and getFilePropertyFromHashFile() may be called on any thread. The rest handles pixmaps and
 * belongs to the GUI thread.
 */
class KYMEDIATOOL_EXPORT KyThumbnail : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(KyThumbnail)

public:
    /** What is stored about a file. */
    struct FileProperty
    {
        QString thumbnailPath; ///< the absolute path of the thumbnail's image file, empty when there is none
    };

    /**
     * The thumbnail of the file \a filePath, which need not exist yet.
     *
     * @param load true: pixmap() starts as the stored thumbnail, as far as there is a readable one; false: as
     * a null pixmap, and nothing is read
     */
    KyThumbnail(const QString &filePath, QObject *parent, bool load);

    /** Whether \a path is a file, not a folder, that has a stored thumbnail. Any file may be asked about. */
    bool inspect(QString path) const;

    /** What is stored about the file \a path, which stays as it is. Whether that file exists makes no
     * difference. */
    static FileProperty getFilePropertyFromHashFile(QString &path);

    /** The pixmap that write() stores. */
    void setPixmap(const QPixmap &pixmap);
    QPixmap pixmap() const;

    /**
     * Stores the pixmap in its own size, and creates the thumbnail folder where it is missing, though not the
     * folder of the file. A thumbnail is stored whole or not at all.
     *
     * @param overwrite true: a stored thumbnail is replaced; false: it is kept, which counts as success
     * @return false when the pixmap is null or cannot be stored; a thumbnail stored before is still there
     * then
     */
    bool write(bool overwrite);

private:
    QString m_filePath;
    QPixmap m_pixmap;
};

} // namespace Kyte
