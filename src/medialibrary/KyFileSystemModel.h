#pragma once

#include "KyEditorCommonExport.h"
#include "KyFileSystemItem.h"

#include <QAbstractItemModel>
#include <QDir>
#include <QFileIconProvider>
#include <QFileSystemWatcher>
#include <QHash>
#include <QMutex>
#include <QRegExp>
#include <QSet>
#include <QTimer>
#include <QVector>

#include <atomic>
#include <memory>

namespace Kyte {

class KyDateTexts;

/**
 * The files and folders below one root folder as a tree of four columns (name, size, type, date modified):
 * filled folder by folder as views expand them, filtered, renamed in place and kept up to date by a watcher.
 *
 * The model owns its nodes. An index carries its node, and is looked up in a register of the live ones before
 * that is looked into: an index or address kept from earlier is harmless and stands for nothing. The root
 * node is both the invalid index and rootIndex(). Everything happens on the GUI thread.
 *
 * fetchMore() and update() hold a mutex that is not recursive, signals included. A slot that one of their
 * signals calls may read the model, set another root and open a message box, but may not delete the model.
 * fetchMore() from there does nothing; update() from there, and changes that the watcher reports meanwhile,
 * wait until the running one is over.
 *
 * Reading a folder announces a new layout, not inserted rows: a QSortFilterProxyModel between this model and
 * a QTreeView that expands cannot follow that and crashes. Views use the model as it is. Nodes that a refresh
 * drops stay in memory until the next root or the end of the model, see update().
 */
class KYEDITORCOMMON_EXPORT KyFileSystemModel : public QAbstractItemModel
{
    Q_OBJECT
    Q_DISABLE_COPY(KyFileSystemModel)

public:
    explicit KyFileSystemModel(QObject *parent = nullptr);
    ~KyFileSystemModel() override;

    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    /** The index of the entry \a path, in any letter case; invalid for the root and what was not fetched. */
    QModelIndex index(const QString &path, int column = 0) const;
    QModelIndex parent(const QModelIndex &index) const override;
    using QObject::parent;
    QModelIndex sibling(int row, int column, const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    bool hasChildren(const QModelIndex &parent = QModelIndex()) const override;
    /**
     * Display, edit (the name), decoration (the icon), foreground and text alignment. Foreground is grey for
     * names that match a grey-out pattern and otherwise the same value as display, which views take for none.
     */
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /**
     * Gives the entry another name on disk. What stands in the way is shown to the user in a message box and
     * gives false. A name without a suffix keeps the file's.
     */
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    /** "text/uri-list" alone. */
    QStringList mimeTypes() const override;
    /** The local-file URLs of the indexes in column 0; the caller owns it. */
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    /**
     * Copies, moves or links the dragged files into the folder \a parent; an entry of the same name stays and
     * makes the result false, the other files are tried all the same. The tree changes only when the watcher
     * sees the files.
     */
    bool dropMimeData(const QMimeData *data,
                      Qt::DropAction action,
                      int row,
                      int column,
                      const QModelIndex &parent) override;
    Qt::DropActions supportedDropActions() const override;
    /**
     * Takes rows of nodes out of the tree; nothing happens on disk. Below a valid parent more rows than
     * announced go, because the rows are counted on the shrinking list; the signals name the rows asked for.
     */
    bool removeRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;
    /** Reads a folder. Calling it again for the same folder, or for rootIndex(), adds the entries again. */
    void fetchMore(const QModelIndex &parent) override;
    /** Whether the folder is still to be read; always false for the root, which is read when it is set. */
    bool canFetchMore(const QModelIndex &parent) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    /**
     * Shows the folder \a path. The result is the invalid index, which stands for the root; only when the
     * folder is the root already, letter case aside, nothing is done and rootIndex() returned.
     */
    virtual QModelIndex setRootPath(const QString &path);
    virtual QString rootPath() const;
    virtual QModelIndex rootIndex() const;
    /** What the entry was when its node was made; empty values for an index without a node. */
    virtual QFileInfo fileInfo(const QModelIndex &index) const;
    virtual QString filePath(const QModelIndex &index) const;
    virtual QString fileName(const QModelIndex &index) const;
    virtual bool isDir(const QModelIndex &index) const;
    virtual QIcon icon(const QModelIndex &index) const;
    /**
     * Reads one node anew. Of a folder every child is replaced: every other one is destroyed and reported by
     * itemDeleted(), the rest leaves the tree but its indexes still work. A file gets a new node. An entry
     * that is gone from disk is removed by removeRows().
     */
    virtual void update(const QModelIndex &index);

    /** Wildcards for entries below folders other than the root; they hide folders, too. None of the setters
     * down to setSortFlag() reads anything anew. */
    QStringList nameFilters() const;
    void setNameFilters(const QStringList &filters);
    QStringList nameFiltersInRoot() const;
    void setNameFiltersInRoot(const QStringList &filters);
    /** Regular expressions (QRegExp) of whole names that are not shown, in any letter case. */
    QStringList exclusionNamePattern() const;
    void setExclusionNamePattern(const QStringList &patterns);
    /** Regular expressions (QRegExp) of whole names that are drawn grey, in the same letter case. */
    QStringList grayoutNamePattern() const;
    void setGrayoutNamePattern(const QStringList &patterns);
    QDir::Filters filter() const;
    void setFilter(QDir::Filters filter);
    QDir::SortFlags sortFlag() const;
    void setSortFlag(QDir::SortFlags flag);
    /** While true, no name can be edited and nothing dropped. */
    bool isReadOnly() const;
    void setReadOnly(bool readOnly);
    /** Whether folders that are set or fetched from now on are watched. */
    bool useFileSystemWatcher() const;
    void setUseFileSystemWatcher(bool use);
    /** Whether the watcher accepted the root. */
    bool canInstallFileSystemWatcher() const;

    /** Watches again what stopFileSystemWatcher() stopped watching, unless anything is watched. */
    void startFileSystemWatcher();
    void stopFileSystemWatcher();

    /**
     * How long, in milliseconds, changes that the watcher reports are collected before each folder concerned
     * is refreshed once. 0, the default, refreshes at every report.
     */
    int refreshDelay() const;
    void setRefreshDelay(int milliseconds);

    /** "1 KB", "1.5 MB": the number as the default locale writes it, kilobytes without a fraction. */
    QString getFileSizeString(qint64 size) const;

signals:
    /** A folder was read: its path. After update() of a file the path of that file. Sent under the mutex. */
    void directoryLoaded(const QString &path);
    void fileRenamed(const QString &path, const QString &oldName, const QString &newName);
    /** The addresses of nodes that update() destroyed, for who keyed anything by them. Sent under the mutex.
     */
    void itemDeleted(const QList<void *> &items);

protected:
    /** The node of an index, the root for the invalid one; null unless the node is registered. */
    KyFileSystemItem *getItem(const QModelIndex &index) const;
    /** The parent of \a item; null unless both are registered. */
    KyFileSystemItem *getParent(KyFileSystemItem *item) const;
    /** The node of \a path in any letter case below \a start, the root for null; null when there is none. */
    KyFileSystemItem *findItem(const QString &path, KyFileSystemItem *start = nullptr) const;
    /** Destroys a registered node and all below it. The addresses, children before their folder. */
    QList<void *> deleteItem(KyFileSystemItem *item);
    bool isExclusionFileName(const QFileInfo &info) const;
    /** The register of live nodes. */
    void addValidItem(KyFileSystemItem *item);
    void removeValidItem(KyFileSystemItem *item);
    bool isValidItem(KyFileSystemItem *item) const;
    void clearValidItems();

protected slots:
    void onDirectoryChanged(const QString &path);
    void onFileChanged(const QString &path);

private slots:
    void onRefreshTimeout();

private:
    class Burial;
    class Run;

    bool isRunning() const;
    void emptyGraveyard();
    void bury(KyFileSystemItem *item);
    void buryUnlinked();
    void destroyBelow(KyFileSystemItem *item, QList<void *> *destroyed);
    QList<void *> destroyWalking(KyFileSystemItem *folder, int first, int last);
    QList<void *> destroyWalkingOneByOne(KyFileSystemItem *folder, int first, int last);
    void unlink(KyFileSystemItem *folder, int first, int last);
    bool appendListing(KyFileSystemItem *folder);
    void refreshFile(KyFileSystemItem *item, const QFileInfo &info, int row);
    void refreshFolder(KyFileSystemItem *folder);
    QModelIndex indexOf(KyFileSystemItem *item, int column) const;
    void onPathChanged(const QString &path);
    void collect(const QString &path);
    void watchNothing();
    bool isWatching() const;
    QVariant displayData(KyFileSystemItem *item, int column) const;
    QString makeText(const QFileInfo &info, int column) const;
    bool isGreyedOut(const KyFileSystemItem *item) const;
    bool renameItem(const QModelIndex &index, const QString &oldName, QString newName);
    bool refuseName(const QString &text) const;

    QStringList m_headerLabels;
    QString m_rootPath;
    KyFileSystemItem *m_rootItem = nullptr; // owned
    QFileIconProvider m_typeProvider;
    QSet<KyFileSystemItem *> m_validItems;
    QDir::Filters m_filter = QDir::AllEntries | QDir::NoDotAndDotDot;
    QDir::SortFlags m_sortFlag = QDir::Name | QDir::DirsFirst | QDir::IgnoreCase;
    QStringList m_nameFilters;
    QStringList m_nameFiltersInRoot;
    QStringList m_exclusionNamePattern;
    QFileSystemWatcher m_watcher;
    bool m_canInstallFileSystemWatcher = false;
    bool m_useFileSystemWatcher = true;
    QMutex m_mutex;
    bool m_readOnly = true;
    QStringList m_savedWatchPaths;
    QStringList m_grayoutNamePattern;

    QVector<QRegExp> m_exclusions;
    QVector<QRegExp> m_greyOuts;
    quint32 m_greyOutEpoch = 1; // grows with every change of the patterns
    mutable QHash<QString, QString> m_fileTypes; // by suffix
    mutable quint32 m_fileTypesEpoch = 0; // of the texts
    const std::unique_ptr<KyDateTexts> m_dateTexts;
    QVector<KyFileSystemItem *> m_unlinked; // owned: left the tree alive, with all below them
    QVector<KyFileSystemItem *>
        m_graveyard; // owned: destroyed, but new nodes may not have their addresses yet
    int m_burials = 0;
    std::atomic<Qt::HANDLE> m_runningThread{nullptr};
    QTimer m_refreshTimer;
    QStringList m_changedPaths; // reported by the watcher and not refreshed yet
};

} // namespace Kyte
