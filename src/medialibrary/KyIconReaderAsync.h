#pragma once

#include "KyEditorCommonExport.h"

#include <QImage>
#include <QObject>
#include <QString>
#include <QStringList>

class QIcon;
class QThread;

namespace Kyte {

class KyIconReader;

/**
 * Reads the thumbnails of media files on a thread of its own and hands them out as icons.
 *
 * Make it, name the files, connect and start() it once. By default it deletes itself when all files are read:
 * the caller keeps no pointer to it then. It may be deleted at any time before, and by a slot. The object
 * belongs to the GUI thread, where icons are made and signals come; only images cross the threads.
 */
class KYEDITORCOMMON_EXPORT KyIconReaderAsync : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(KyIconReaderAsync)

public:
    explicit KyIconReaderAsync(const QString &path, QObject *parent = nullptr);
    explicit KyIconReaderAsync(const QStringList &paths, QObject *parent = nullptr);
    explicit KyIconReaderAsync(QObject *parent = nullptr);
    /**
     * Waits up to half a second for the reading. One that takes longer goes on without an effect and ends by
     * itself, at the latest with the application.
     */
    ~KyIconReaderAsync() override;

    /** A single file; start() puts it before the list unless it is there. */
    QString path() const;
    void setPath(const QString &path);
    QStringList pathList() const;
    void setPathList(const QStringList &paths);
    /** Whether the object deletes itself at the end of the reading; true at first. start() looks at it. */
    bool isDeleteOnFinished() const;
    void setDeleteOnFinished(bool deleteOnFinished);

    /**
     * Reads the files as KyIconReader::readIconImage() does. A second start reads them once more, at the same
     * time on another thread; with deletion on finishing the object goes when the first of the two is done.
     */
    void start();
    /** Interrupts nothing: a reading that was started runs to its end. */
    void stop();

signals:
    /** The thumbnail of \a path as an icon of its stored size, which the receiver owns. */
    void iconReadCompleted(const QString &path, QIcon *icon);
    void iconReadFailed(const QString &path);

private slots:
    void makeIcon(const QString &path, QImage image);
    void onIconReadCompleted(const QString &path, QIcon *icon);
    void onIconReadFailed(const QString &path);

private:
    QString m_path;
    QStringList m_pathList;
    bool m_deleteOnFinished = true;
    KyIconReader *m_reader = nullptr; // stays null: the reader belongs to the thread
    QThread *m_thread = nullptr; // of the last start; like those before it a child
};

} // namespace Kyte
