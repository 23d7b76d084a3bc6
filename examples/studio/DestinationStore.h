#pragma once

#include <KyUploadItemInfo.h>

#include <QList>
#include <QObject>

#include <memory>

class QFileSystemWatcher;
class QTimer;

namespace Kyte {
class KyDestination;
} // namespace Kyte

// Connections name this type as the library declares it, without the namespace.
using Kyte::KyUploadItemInfo;

/**
 * The destination database in setting mode, for a thread of its own: preparing and reading thousands of
 * destinations takes longer than a window may stand still. Talk to it through queued connections only. While
 * it works nobody else may use KyEditorConfig, which reading the database does.
 *
 * Everything that is asked for is answered, by the signal that tells that it was done or by failed().
 */
class DestinationStore : public QObject
{
    Q_OBJECT

public:
    explicit DestinationStore(QObject *parent = nullptr);
    ~DestinationStore() override;

public slots:
    /** Prepares the database and reads everything; edits that were not saved are dropped. */
    void open();
    /**
     * Puts the edits in the place of the database. Where another program has changed that since, nothing is
     * done and conflictFound() emitted, unless \a overwrite.
     */
    void save(bool overwrite);
    void addGroup(const QString &name);
    void renameGroup(int id, const QString &name);
    void removeGroup(int id);
    void moveDestinations(const QList<int> &ids, int categoryId, int type);

signals:
    void opened();
    /** Groups, channels, destinations, in this order and in as many lists as the library gives. */
    void itemsRead(const QList<KyUploadItemInfo> &items);
    void readingFinished();
    void groupAdded(int id, const QString &name);
    void groupRenamed(int id, const QString &name);
    void groupRemoved(int id);
    void destinationsMoved(const QList<int> &ids, int categoryId, int type);
    void saved();
    void conflictFound();
    /** The database was changed by another program. */
    void fileChanged();
    /** Whether there are edits that were not saved. */
    void editedChanged(bool edited);
    void failed(const QString &message);

private slots:
    void checkFile();

private:
    void watch();
    void tellEdited();
    QString fileFingerprint() const;

    std::unique_ptr<Kyte::KyDestination> m_destination;
    QString m_fileFingerprint; // of the database as it was opened or saved
    QString m_reportedFingerprint; // of the last change that was told
    QFileSystemWatcher *m_watcher = nullptr;
    QTimer *m_checking = nullptr;
};
