#pragma once

#include "KyEditorCommonExport.h"

#include <QImage>
#include <QMutex>
#include <QObject>
#include <QString>
#include <QStringList>

class QIcon;

namespace Kyte {

/**
 * Reads stored thumbnails of media files: read() makes the icon of one file, readIconImage() reads the images
 * of many. Thumbnails are written by the media library, see KyThumbnail; none is made or changed here.
 *
 * read() makes icons and belongs to the GUI thread. readIconImage() makes none and may run on any thread,
 * which must be the reader's own; KyIconReaderAsync gives it one. abort() and setAborting() may be called
 * from any thread at any time. The path in every signal is the absolute path of the file, not of its
 * thumbnail. Slots may call back into the reader or delete it.
 */
class KYEDITORCOMMON_EXPORT KyIconReader : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(KyIconReader)

public:
    explicit KyIconReader(QObject *parent = nullptr);
    explicit KyIconReader(QString path, QObject *parent = nullptr);
    explicit KyIconReader(QStringList &paths, QObject *parent = nullptr);
    /** Deletes the icon if that is the reader's own. */
    ~KyIconReader() override;

    /** The file that read() is about; readIconImage() takes it before the list. */
    QString path() const;
    void setPath(QString path);
    /** The files that readIconImage() is about. A slot that sets them means the next walk, not this one. */
    QStringList pathList() const;
    void setPathList(QStringList &paths);
    /** The icon that read() has made last, null before. If it was handed out, its owner may have deleted it
     * since. */
    QIcon *icon() const;

    /**
     * Makes a walk of readIconImage() end before its next file, and every later walk before its first, until
     * the flag is taken back.
     */
    void abort();
    void setAborting(bool aborting);

    /**
     * Makes the file's system icon and adds its thumbnail at 32 by 32. Emits readingCompleted() or
     * readingFailed(), then readingDone(); false when there is no such file or no thumbnail. Any file may
     * have one, also one that is no media file.
     *
     * @param deleting true: the icon is the reader's, which deletes it with itself and before it makes
     * another; false: it is the receiver's. An icon that was handed out is never deleted here.
     */
    bool read(bool deleting);

public slots:
    /**
     * Reads the thumbnails of all files, first path() unless the list has it, then the list in its order.
     * Each file gives either readingImageCompleted(), followed at once by readingDone(), or readingFailed():
     * when it does not exist, is no media file or has no thumbnail. A thumbnail that is no image is delivered
     * as a null image. At the end, also of an aborted walk, readingDone() is emitted once more. True when no
     * file failed. A walk also ends where the interruption of its thread is requested.
     */
    bool readIconImage();

    /** Slots that emit the matching signal, so that readers can be chained. */
    void onReadingDone();
    void onReadingFailed(QString path);
    void onReadingImageCompleted(QString path, QImage image);

signals:
    void readingCompleted(QString path, QIcon *icon);
    void readingImageCompleted(QString path, QImage image);
    void readingFailed(QString path);
    void readingDone();

private:
    bool isAborting() const;
    void dropIcon();

    QString m_path;
    QStringList m_pathList;
    QIcon *m_icon = nullptr; // owned while m_deleting
    mutable QMutex m_mutex; // guards m_aborting
    bool m_aborting = false;
    bool m_deleting = false;
};

} // namespace Kyte
