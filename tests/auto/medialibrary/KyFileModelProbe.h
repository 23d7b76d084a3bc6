#pragma once

#include <KyFileSystemModel.h>

#include <QHash>
#include <QStringList>

#include <functional>

namespace Kyte {
namespace Test {

/** A model whose protected operations a test may call. */
class FileModel : public KyFileSystemModel
{
    Q_OBJECT

public:
    using KyFileSystemModel::addValidItem;
    using KyFileSystemModel::clearValidItems;
    using KyFileSystemModel::createIndex;
    using KyFileSystemModel::deleteItem;
    using KyFileSystemModel::findItem;
    using KyFileSystemModel::getItem;
    using KyFileSystemModel::getParent;
    using KyFileSystemModel::isExclusionFileName;
    using KyFileSystemModel::isValidItem;
    using KyFileSystemModel::KyFileSystemModel;
    using KyFileSystemModel::onDirectoryChanged;
    using KyFileSystemModel::onFileChanged;
    using KyFileSystemModel::removeValidItem;

    QFileSystemWatcher *watcher() const;
    /** What is watched, folders first, each sorted. */
    QStringList watched() const;
    QModelIndex at(const QString &path) const;

    /** Called with the index of every update(), before it. */
    std::function<void(const QModelIndex &)> onUpdate;
    void update(const QModelIndex &index) override;
};

/**
 * All signals of a model that tell of its tree, in one order, each as a text: "layoutAboutToBeChanged",
 * "rowsRemoved(folder 1 2)", "directoryLoaded(path)", "itemDeleted(a b)". Paths are told below \a base, and
 * an address by the name that learn() last gave it.
 */
class SignalRecorder : public QObject
{
    Q_OBJECT

public:
    SignalRecorder(FileModel *model, const QString &base);

    /** Names every node in the tree by its path. */
    void learn();
    QString nameOf(void *address) const;
    QStringList take();
    /** Called for every signal, after it was recorded. */
    std::function<void(const QString &)> onSignal;

private slots:
    void onLayoutAboutToBeChanged();
    void onLayoutChanged();
    void onRowsAboutToBeRemoved(const QModelIndex &parent, int first, int last);
    void onRowsRemoved(const QModelIndex &parent, int first, int last);
    void onModelReset();
    void onRowsInserted();
    void onDataChanged();
    void onDirectoryLoaded(const QString &path);
    void onFileRenamed(const QString &path, const QString &oldName, const QString &newName);
    void onItemDeleted(const QList<void *> &items);

private:
    void record(const QString &text);
    QString relative(const QString &path) const;
    void learn(KyFileSystemItem *item);

    FileModel *m_model;
    QString m_base;
    QStringList m_texts;
    QHash<void *, QString> m_names;
};

/** The whole tree below \a parent, a line for each node: two spaces a level, the name, "/" for a folder, and
 * "..." while that is not read. */
QStringList treeOf(const QAbstractItemModel &model, const QModelIndex &parent = QModelIndex(), int level = 0);
/** The names in column 0 below \a parent. */
QStringList namesBelow(const QAbstractItemModel &model, const QModelIndex &parent = QModelIndex());
QStringList namesOf(const KyFileSystemItem &folder);

/** Makes empty files, and folders for paths that end with "/", below \a base. */
void makeEntries(const QString &base, const QStringList &paths);
/** Has another process change files: "create", "folder" or "remove" with a path, or "rename" with two. */
bool changeElsewhere(const QStringList &words);

} // namespace Test
} // namespace Kyte
