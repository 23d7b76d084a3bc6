#include "KyFileSystemModel.h"

#include "KyDateTexts_p.h"
#include "KyFileSystemItemCache_p.h"
#include "KyFileTime_p.h"
#include "KyFolderListing_p.h"
#include "KyTextEpoch_p.h"

#include <QBrush>
#include <QDateTime>
#include <QLocale>
#include <QMessageBox>
#include <QMimeData>
#include <QPointer>
#include <QThread>
#include <QUrl>

#include <algorithm>

namespace Kyte {

static const QString URI_LIST = QStringLiteral("text/uri-list");

enum Column { NameColumn, SizeColumn, TypeColumn, ModifiedColumn, ColumnCount };

static QVector<QRegExp> compiled(const QStringList &patterns, Qt::CaseSensitivity cs)
{
    QVector<QRegExp> expressions;
    for (const QString &pattern : patterns)
        expressions.append(QRegExp(pattern, cs, QRegExp::RegExp));
    return expressions;
}

static bool matchesAny(const QVector<QRegExp> &expressions, const QString &name)
{
    return std::any_of(expressions.cbegin(), expressions.cend(), [&name](const QRegExp &expression) {
        return expression.exactMatch(name);
    });
}

static bool isSamePath(const QString &path, const QString &other)
{
    return path.compare(other, Qt::CaseInsensitive) == 0;
}

/** Nodes destroyed while it lives keep their memory, and so their addresses, until the outermost one ends. */
class KyFileSystemModel::Burial
{
    Q_DISABLE_COPY(Burial)

public:
    explicit Burial(KyFileSystemModel *model)
        : m_model(model)
    {
        ++m_model->m_burials;
    }

    ~Burial()
    {
        // A slot may have destroyed the model, and with it what lay here.
        if (m_model && --m_model->m_burials == 0)
            m_model->emptyGraveyard();
    }

private:
    const QPointer<KyFileSystemModel> m_model;
};

/** One fetching or refreshing: holds the mutex and lets the watcher's reports of that time follow it. */
class KyFileSystemModel::Run
{
    Q_DISABLE_COPY(Run)

public:
    explicit Run(KyFileSystemModel *model)
        : m_model(model)
        , m_lock(&model->m_mutex)
        , m_burial(model)
    {
        m_model->m_runningThread = QThread::currentThreadId();
    }

    ~Run()
    {
        m_model->m_runningThread = nullptr;
        if (!m_model->m_changedPaths.isEmpty() && !m_model->m_refreshTimer.isActive())
            m_model->m_refreshTimer.start();
    }

private:
    KyFileSystemModel *m_model;
    QMutexLocker m_lock;
    Burial m_burial;
};

KyFileSystemModel::KyFileSystemModel(QObject *parent)
    : QAbstractItemModel(parent)
    , m_headerLabels({tr("Name"), tr("Size"), tr("Type"), tr("Date Modified")})
    , m_watcher(this)
    , m_dateTexts(new KyDateTexts)
    , m_refreshTimer(this)
{
    m_refreshTimer.setSingleShot(true);
    connect(&m_watcher, SIGNAL(directoryChanged(QString)), this, SLOT(onDirectoryChanged(QString)));
    connect(&m_watcher, SIGNAL(fileChanged(QString)), this, SLOT(onFileChanged(QString)));
    connect(&m_refreshTimer, SIGNAL(timeout()), this, SLOT(onRefreshTimeout()));
}

KyFileSystemModel::~KyFileSystemModel()
{
    watchNothing();
    ++m_burials; // one end for all, whatever is going on
    deleteItem(m_rootItem);
    if (m_rootItem)
        bury(m_rootItem); // a derived class cleared the register
    buryUnlinked();
    emptyGraveyard();
}

QModelIndex KyFileSystemModel::index(int row, int column, const QModelIndex &parent) const
{
    const KyFileSystemItem *item = column >= 0 && column < ColumnCount ? getItem(parent) : nullptr;
    KyFileSystemItem *child = item ? item->childAt(row) : nullptr;
    return child ? createIndex(row, column, child) : QModelIndex();
}

QModelIndex KyFileSystemModel::index(const QString &path, int column) const
{
    return indexOf(findItem(path), column);
}

QModelIndex KyFileSystemModel::parent(const QModelIndex &index) const
{
    KyFileSystemItem *item = index.isValid() ? getItem(index) : nullptr;
    if (!item || item == m_rootItem)
        return QModelIndex();
    return indexOf(getParent(item), NameColumn);
}

QModelIndex KyFileSystemModel::sibling(int row, int column, const QModelIndex &index) const
{
    if (!index.isValid() || column < 0 || column >= ColumnCount)
        return QModelIndex();
    const KyFileSystemItem *parent = getParent(getItem(index));
    KyFileSystemItem *child = parent ? parent->childAt(row) : nullptr;
    return child ? createIndex(row, column, child) : QModelIndex();
}

int KyFileSystemModel::rowCount(const QModelIndex &parent) const
{
    const KyFileSystemItem *item = getItem(parent);
    return item ? item->childCount() : 0;
}

int KyFileSystemModel::columnCount(const QModelIndex &) const
{
    return ColumnCount;
}

bool KyFileSystemModel::hasChildren(const QModelIndex &parent) const
{
    if (!parent.isValid() && m_rootItem)
        return true;
    const KyFileSystemItem *item = getItem(parent);
    return item && item->m_fileInfo.isDir();
}

QVariant KyFileSystemModel::data(const QModelIndex &index, int role) const
{
    if (role == Qt::TextAlignmentRole && index.column() == SizeColumn)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole && role != Qt::DecorationRole && role != Qt::EditRole
        && role != Qt::ForegroundRole)
        return QVariant();
    KyFileSystemItem *item = getItem(index);
    if (!item)
        return QVariant();

    if (role == Qt::DecorationRole)
        return index.column() == NameColumn ? QVariant(item->icon()) : QVariant();
    if (role == Qt::EditRole)
        return index.column() == NameColumn ? QVariant(item->fileName()) : QVariant();
    if (role == Qt::ForegroundRole && isGreyedOut(item))
        return QBrush(Qt::gray);
    // The foreground of other names is the display text on purpose: no colour, so that views take their own.
    return displayData(item, index.column());
}

bool KyFileSystemModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || index.column() != NameColumn || role != Qt::EditRole
        || !(flags(index) & Qt::ItemIsEditable))
        return false;
    if (!getParent(getItem(index)))
        return false;
    const QString newName = value.toString();
    const QString oldName = data(index, Qt::DisplayRole).toString();
    return newName == oldName || renameItem(index, oldName, newName);
}

QVariant KyFileSystemModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return QVariant();
    if (orientation == Qt::Vertical)
        return section;
    return section >= 0 && section < m_headerLabels.size() ? QVariant(m_headerLabels.at(section))
                                                           : QVariant();
}

QStringList KyFileSystemModel::mimeTypes() const
{
    return {URI_LIST};
}

QMimeData *KyFileSystemModel::mimeData(const QModelIndexList &indexes) const
{
    QList<QUrl> urls;
    for (const QModelIndex &index : indexes) {
        if (index.column() == NameColumn)
            urls.append(QUrl::fromLocalFile(filePath(index)));
    }
    QMimeData *data = new QMimeData;
    data->setUrls(urls);
    return data;
}

bool KyFileSystemModel::dropMimeData(
    const QMimeData *data, Qt::DropAction action, int, int, const QModelIndex &parent)
{
    // Without a node there is no folder, and the files would go to the root of the disk.
    if (!data || !parent.isValid() || m_readOnly || !getItem(parent))
        return false;
    if (action != Qt::CopyAction && action != Qt::MoveAction && action != Qt::LinkAction)
        return false;

    const QString folder = filePath(parent) + QDir::separator();
    bool success = true;
    const QList<QUrl> urls = data->urls();
    for (const QUrl &url : urls) {
        const QString source = url.toLocalFile();
        const QString destination = folder + QFileInfo(source).fileName();
        if (source.isEmpty())
            success = false;
        else if (action == Qt::CopyAction)
            success = QFile::copy(source, destination) && success;
        else if (action == Qt::MoveAction)
            success = QFile::rename(source, destination) && success;
        else
            success = !QFileInfo::exists(destination) // a shortcut of Windows would take the file's place
                && QFile::link(source, destination) && success;
    }
    return success;
}

Qt::DropActions KyFileSystemModel::supportedDropActions() const
{
    return Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
}

bool KyFileSystemModel::removeRows(int row, int count, const QModelIndex &parent)
{
    KyFileSystemItem *item = getItem(parent);
    if (!item || row < 0 || count <= 0 || row >= item->childCount())
        return false;
    const int last = count > item->childCount() - row ? item->childCount() - 1 : row + count - 1;

    const Burial burial(this);
    beginRemoveRows(parent, row, last);
    // The invalid index has no child indexes, so nothing is destroyed below it.
    if (parent.isValid() && isValidItem(item))
        destroyWalking(item, row, last);
    if (isValidItem(item)) // a slot may have set another root
        unlink(item, row, last);
    endRemoveRows();
    return true;
}

void KyFileSystemModel::fetchMore(const QModelIndex &parent)
{
    if (isRunning())
        return;
    const Run run(this);
    KyFileSystemItem *item = parent.isValid() && parent.column() == NameColumn ? getItem(parent) : nullptr;
    if (!item || !item->m_fileInfo.isDir())
        return;

    const QString path = item->absolutePath();
    emit layoutAboutToBeChanged();
    bool anyEntry = false;
    if (isValidItem(item)) {
        item->setCanFetchMore(false);
        anyEntry = appendListing(item);
    }
    emit layoutChanged();
    if (!anyEntry)
        return;
    emit directoryLoaded(path);
    if (isWatching() && isValidItem(item)) {
        // What is watched under this path may be a folder that had the name before and has another one now.
        if (m_watcher.directories().contains(path))
            m_watcher.removePath(path);
        m_watcher.addPath(path);
    }
}

bool KyFileSystemModel::canFetchMore(const QModelIndex &parent) const
{
    const KyFileSystemItem *item = getItem(parent);
    return item && item != m_rootItem && item->canFetchMore();
}

Qt::ItemFlags KyFileSystemModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = QAbstractItemModel::flags(index) & ~Qt::ItemFlags(Qt::ItemIsEditable);
    if (!index.isValid())
        return flags;
    const KyFileSystemItem *item = getItem(index);
    if (!item)
        return flags & ~Qt::ItemFlags(Qt::ItemIsEnabled);
    flags |= Qt::ItemIsDragEnabled;
    if (m_readOnly || index.column() != NameColumn || !item->m_fileInfo.permission(QFile::WriteUser))
        return flags;
    flags |= Qt::ItemIsEditable;
    return item->m_fileInfo.isDir() ? flags | Qt::ItemIsDropEnabled : flags;
}

QModelIndex KyFileSystemModel::setRootPath(const QString &path)
{
    if (!QFileInfo(path).isDir())
        return QModelIndex();
    const QString absolutePath = QDir::cleanPath(QDir(path).absolutePath()); // "a//" keeps a separator
    if (m_rootItem && isSamePath(m_rootPath, absolutePath))
        return rootIndex();

    watchNothing();
    const Burial burial(this);
    emit layoutAboutToBeChanged();
    m_validItems.clear();
    if (m_rootItem)
        m_graveyard.append(m_rootItem);
    buryUnlinked();
    m_changedPaths.clear(); // everything is read anew
    m_rootPath = absolutePath;
    m_rootItem = new KyFileSystemItem(QFileInfo(absolutePath), nullptr, -1);
    m_validItems.insert(m_rootItem);
    appendListing(m_rootItem);
    if (m_useFileSystemWatcher) {
        m_watcher.addPath(m_rootPath);
        m_canInstallFileSystemWatcher = m_watcher.directories().contains(m_rootPath);
    }
    emit layoutChanged();
    return QModelIndex();
}

QString KyFileSystemModel::rootPath() const
{
    return m_rootPath;
}

QModelIndex KyFileSystemModel::rootIndex() const
{
    return m_rootItem ? createIndex(0, 0, m_rootItem) : QModelIndex();
}

QFileInfo KyFileSystemModel::fileInfo(const QModelIndex &index) const
{
    const KyFileSystemItem *item = getItem(index);
    return item ? item->fileInfo() : QFileInfo();
}

QString KyFileSystemModel::filePath(const QModelIndex &index) const
{
    const KyFileSystemItem *item = getItem(index);
    return item ? item->absolutePath() : QString();
}

QString KyFileSystemModel::fileName(const QModelIndex &index) const
{
    const KyFileSystemItem *item = getItem(index);
    return item ? item->fileName() : QString();
}

bool KyFileSystemModel::isDir(const QModelIndex &index) const
{
    return fileInfo(index).isDir();
}

QIcon KyFileSystemModel::icon(const QModelIndex &index) const
{
    KyFileSystemItem *item = getItem(index);
    return item ? item->icon() : QIcon();
}

void KyFileSystemModel::update(const QModelIndex &index)
{
    KyFileSystemItem *item = getItem(index);
    if (!item)
        return;
    if (isRunning()) {
        collect(item->absolutePath());
        return;
    }
    const Run run(this);
    const QModelIndex parentIndex = index.parent();
    QFileInfo info = item->m_fileInfo;
    info.refresh();
    if (!info.exists())
        removeRows(index.row(), 1, parentIndex);
    else if (info.isDir())
        refreshFolder(item);
    else
        refreshFile(item, info, index.row());
}

QStringList KyFileSystemModel::nameFilters() const
{
    return m_nameFilters;
}

void KyFileSystemModel::setNameFilters(const QStringList &filters)
{
    m_nameFilters = filters;
}

QStringList KyFileSystemModel::nameFiltersInRoot() const
{
    return m_nameFiltersInRoot;
}

void KyFileSystemModel::setNameFiltersInRoot(const QStringList &filters)
{
    m_nameFiltersInRoot = filters;
}

QStringList KyFileSystemModel::exclusionNamePattern() const
{
    return m_exclusionNamePattern;
}

void KyFileSystemModel::setExclusionNamePattern(const QStringList &patterns)
{
    m_exclusionNamePattern = patterns;
    m_exclusions = compiled(patterns, Qt::CaseInsensitive);
}

QStringList KyFileSystemModel::grayoutNamePattern() const
{
    return m_grayoutNamePattern;
}

void KyFileSystemModel::setGrayoutNamePattern(const QStringList &patterns)
{
    m_grayoutNamePattern = patterns;
    m_greyOuts = compiled(patterns, Qt::CaseSensitive);
    ++m_greyOutEpoch;
}

QDir::Filters KyFileSystemModel::filter() const
{
    return m_filter;
}

void KyFileSystemModel::setFilter(QDir::Filters filter)
{
    m_filter = filter;
}

QDir::SortFlags KyFileSystemModel::sortFlag() const
{
    return m_sortFlag;
}

void KyFileSystemModel::setSortFlag(QDir::SortFlags flag)
{
    m_sortFlag = flag;
}

bool KyFileSystemModel::isReadOnly() const
{
    return m_readOnly;
}

void KyFileSystemModel::setReadOnly(bool readOnly)
{
    m_readOnly = readOnly;
}

bool KyFileSystemModel::useFileSystemWatcher() const
{
    return m_useFileSystemWatcher;
}

void KyFileSystemModel::setUseFileSystemWatcher(bool use)
{
    m_useFileSystemWatcher = use;
}

bool KyFileSystemModel::canInstallFileSystemWatcher() const
{
    return m_canInstallFileSystemWatcher;
}

void KyFileSystemModel::startFileSystemWatcher()
{
    if (m_watcher.directories().isEmpty() && m_watcher.files().isEmpty() && !m_savedWatchPaths.isEmpty())
        m_watcher.addPaths(m_savedWatchPaths);
}

void KyFileSystemModel::stopFileSystemWatcher()
{
    const QStringList paths = m_watcher.directories() + m_watcher.files();
    if (paths.isEmpty())
        return;
    m_savedWatchPaths = paths;
    m_watcher.removePaths(paths);
}

int KyFileSystemModel::refreshDelay() const
{
    return m_refreshTimer.interval();
}

void KyFileSystemModel::setRefreshDelay(int milliseconds)
{
    m_refreshTimer.setInterval(qMax(milliseconds, 0));
}

QString KyFileSystemModel::getFileSizeString(qint64 size) const
{
    const qint64 kilo = 1024;
    const qint64 mega = kilo * kilo;
    const qint64 giga = mega * kilo;
    const qint64 tera = giga * kilo;
    const QLocale locale;
    if (size >= tera)
        return tr("%1 TB").arg(locale.toString(double(size) / tera, 'f', 3));
    if (size >= giga)
        return tr("%1 GB").arg(locale.toString(double(size) / giga, 'f', 2));
    if (size >= mega)
        return tr("%1 MB").arg(locale.toString(double(size) / mega, 'f', 1));
    if (size < kilo)
        return tr("%1 bytes").arg(locale.toString(size));
    return tr("%1 KB").arg(locale.toString(size >> 10));
}

KyFileSystemItem *KyFileSystemModel::getItem(const QModelIndex &index) const
{
    KyFileSystemItem *item =
        index.isValid() ? static_cast<KyFileSystemItem *>(index.internalPointer()) : m_rootItem;
    return isValidItem(item) ? item : nullptr;
}

KyFileSystemItem *KyFileSystemModel::getParent(KyFileSystemItem *item) const
{
    return isValidItem(item) && isValidItem(item->parent()) ? item->parent() : nullptr;
}

KyFileSystemItem *KyFileSystemModel::findItem(const QString &path, KyFileSystemItem *start) const
{
    KyFileSystemItem *folder = start ? start : m_rootItem;
    if (!isValidItem(folder))
        return nullptr;
    const QString folderPath = folder->absolutePath();
    if (isSamePath(path, folderPath))
        return folder;
    if (folder->childCount() == 0 || !path.startsWith(folderPath, Qt::CaseInsensitive))
        return nullptr;

    // A child's path is the folder's, a separator (a root's path has it already) and its name.
    int nameStart = folderPath.size();
    if (!folderPath.endsWith(QLatin1Char('/')) && path.at(nameStart++) != QLatin1Char('/'))
        return nullptr;
    const int separator = path.indexOf(QLatin1Char('/'), nameStart);
    const int nameEnd = separator < 0 ? path.size() : separator;
    const QStringRef name = path.midRef(nameStart, nameEnd - nameStart);
    const QVector<int> rows = folder->names().rowsLike(folder->m_children, name);
    for (const int row : rows) {
        KyFileSystemItem *child = folder->m_children.at(row);
        if (!isValidItem(child) || name.compare(child->fileName(), Qt::CaseInsensitive) != 0)
            continue;
        // Names that differ in case only lead to several folders: the first that holds the entry counts.
        KyFileSystemItem *item = nameEnd == path.size() ? child : findItem(path, child);
        if (item)
            return item;
    }
    return nullptr;
}

QList<void *> KyFileSystemModel::deleteItem(KyFileSystemItem *item)
{
    QList<void *> destroyed;
    if (!isValidItem(item))
        return destroyed;
    const Burial burial(this);
    // A node that left the tree alive may have outlived its parent; in the tree the parent is there.
    KyFileSystemItem *parent = item->m_unlinkedRow >= 0 ? getParent(item) : item->parent();
    destroyBelow(item, &destroyed);
    if (parent)
        parent->clearChild(item);
    if (item == m_rootItem)
        m_rootItem = nullptr;
    return destroyed;
}

bool KyFileSystemModel::isExclusionFileName(const QFileInfo &info) const
{
    return !m_exclusions.isEmpty() && matchesAny(m_exclusions, info.fileName());
}

void KyFileSystemModel::addValidItem(KyFileSystemItem *item)
{
    m_validItems.insert(item);
}

void KyFileSystemModel::removeValidItem(KyFileSystemItem *item)
{
    m_validItems.remove(item);
}

bool KyFileSystemModel::isValidItem(KyFileSystemItem *item) const
{
    return item && m_validItems.contains(item);
}

void KyFileSystemModel::clearValidItems()
{
    m_validItems.clear();
}

void KyFileSystemModel::onDirectoryChanged(const QString &path)
{
    onPathChanged(path);
}

void KyFileSystemModel::onFileChanged(const QString &path)
{
    onPathChanged(path);
}

void KyFileSystemModel::onRefreshTimeout()
{
    // A message box that a slot opened during a run brings us here: the end of the run starts the timer
    // again.
    if (isRunning())
        return;
    m_changedPaths.removeDuplicates();
    const QStringList paths = m_changedPaths;
    m_changedPaths.clear();
    const bool rootChanged = std::any_of(paths.cbegin(), paths.cend(), [this](const QString &path) {
        return !index(path, NameColumn).isValid();
    });
    if (rootChanged) {
        update(QModelIndex());
        return;
    }
    for (const QString &path : paths) {
        const QModelIndex changed = index(path, NameColumn);
        // A folder above it was refreshed just now, and this one is new and not read yet.
        if (changed.isValid() && !canFetchMore(changed))
            update(changed);
    }
}

bool KyFileSystemModel::isRunning() const
{
    return m_runningThread == QThread::currentThreadId();
}

void KyFileSystemModel::emptyGraveyard()
{
    const QVector<KyFileSystemItem *> items = m_graveyard;
    m_graveyard.clear();
    qDeleteAll(items);
}

void KyFileSystemModel::bury(KyFileSystemItem *item)
{
    m_validItems.remove(item);
    if (item->m_unlinkedRow >= 0) {
        KyFileSystemItem *last = m_unlinked.takeLast();
        last->m_unlinkedRow = item->m_unlinkedRow;
        if (last != item)
            m_unlinked[item->m_unlinkedRow] = last;
        item->m_unlinkedRow = -1;
    }
    m_graveyard.append(item);
}

void KyFileSystemModel::buryUnlinked()
{
    for (KyFileSystemItem *item : qAsConst(m_unlinked))
        item->m_unlinkedRow = -1;
    m_graveyard += m_unlinked;
    m_unlinked.clear();
}

/** Destroys \a item, the last of its children first; the list that it stands in itself is left alone. */
void KyFileSystemModel::destroyBelow(KyFileSystemItem *item, QList<void *> *destroyed)
{
    m_validItems.remove(item);
    QList<KyFileSystemItem *> &children = item->m_children;
    while (!children.isEmpty()) {
        KyFileSystemItem *child = children.takeLast();
        if (child->m_timesListed > 1)
            children.removeAll(child);
        if (child->childCount() == 0) {
            bury(child);
            destroyed->append(child);
        } else if (isValidItem(child)) {
            destroyBelow(child, destroyed);
        }
    }
    item->forgetNames();
    bury(item);
    destroyed->append(item);
}

/**
 * Destroys the children at the positions \a first to \a last, each counted when its turn comes: the list is
 * shorter by then, so every other node is passed over. Views and caches of the product know exactly these
 * nodes as gone, so the walk must not be mended.
 */
QList<void *> KyFileSystemModel::destroyWalking(KyFileSystemItem *folder, int first, int last)
{
    QList<KyFileSystemItem *> &children = folder->m_children;
    QVector<int> rows; // in the list as it is now
    for (int position = first; position <= last && position + rows.size() < children.size(); ++position) {
        const int row = position + rows.size();
        const KyFileSystemItem *child = children.at(row);
        if (child->m_timesListed > 1 || child->m_parent != folder)
            return destroyWalkingOneByOne(folder, first, last);
        if (isValidItem(children.at(row)))
            rows.append(row);
    }

    QList<void *> destroyed;
    const Burial burial(this);
    for (const int row : qAsConst(rows)) {
        destroyBelow(children.at(row), &destroyed);
        children[row] = nullptr;
    }
    children.removeAll(nullptr);
    folder->forgetNames();
    folder->renumberChildren();
    return destroyed;
}

/** The walk as it is told, for lists in which a node stands twice or that of another folder stands. */
QList<void *> KyFileSystemModel::destroyWalkingOneByOne(KyFileSystemItem *folder, int first, int last)
{
    QList<void *> destroyed;
    const Burial burial(this);
    for (int position = first; position <= last && position < folder->childCount(); ++position)
        destroyed.append(deleteItem(folder->childAt(position)));
    return destroyed;
}

/** clearChildren(), with the model keeping what was taken out: indexes of such nodes go on working. */
void KyFileSystemModel::unlink(KyFileSystemItem *folder, int first, int last)
{
    const QPair<int, int> rows = folder->rowsWithin(first, last);
    for (int row = rows.first; row <= rows.second; ++row) {
        KyFileSystemItem *child = folder->childAt(row);
        if (!isValidItem(child) || child->m_unlinkedRow >= 0)
            continue;
        child->m_unlinkedRow = m_unlinked.size();
        m_unlinked.append(child);
    }
    folder->clearChildren(first, last);
    folder->renumberChildren();
}

/** False when there was nothing to read, not even an entry that is excluded. */
bool KyFileSystemModel::appendListing(KyFileSystemItem *folder)
{
    const QStringList &filters = folder == m_rootItem ? m_nameFiltersInRoot : m_nameFilters;
    const QFileInfoList entries = listFolder(folder->absolutePath(), filters, m_filter, m_sortFlag);
    for (const QFileInfo &entry : entries) {
        if (!isExclusionFileName(entry))
            m_validItems.insert(new KyFileSystemItem(entry, folder, -1));
    }
    return !entries.isEmpty();
}

void KyFileSystemModel::refreshFile(KyFileSystemItem *item, const QFileInfo &info, int row)
{
    KyFileSystemItem *parent = getParent(item);
    if (!parent)
        return;
    emit layoutAboutToBeChanged();
    QList<void *> destroyed;
    if (isValidItem(item) && isValidItem(parent)) {
        parent->clearChild(item);
        destroyed = deleteItem(item);
        m_validItems.insert(new KyFileSystemItem(info, parent, row));
    }
    emit itemDeleted(destroyed);
    emit layoutChanged();
    // The path of the file, not of its folder: listeners wait for the path that they asked to be refreshed.
    emit directoryLoaded(info.absoluteFilePath());
}

void KyFileSystemModel::refreshFolder(KyFileSystemItem *folder)
{
    const QString path = folder->absolutePath();
    emit layoutAboutToBeChanged();
    if (isValidItem(folder) && folder->childCount() > 0) {
        const int last = folder->childCount() - 1;
        const QList<void *> destroyed = destroyWalking(folder, 0, last);
        unlink(folder, 0, last);
        emit itemDeleted(destroyed);
    }
    const bool anyEntry = isValidItem(folder) && appendListing(folder);
    emit layoutChanged();
    if (anyEntry)
        emit directoryLoaded(path);
}

/** Invalid for the root and for what does not hang together with it. */
QModelIndex KyFileSystemModel::indexOf(KyFileSystemItem *item, int column) const
{
    if (!item || item == m_rootItem || !isValidItem(item->parent()))
        return QModelIndex();
    const int row = item->positionInParent();
    return row >= 0 ? createIndex(row, column, item) : QModelIndex();
}

void KyFileSystemModel::onPathChanged(const QString &path)
{
    // Every change that cannot be told apart, outside the tree even, refreshes the root.
    if (m_refreshTimer.interval() > 0 || isRunning())
        collect(path);
    else
        update(index(path, NameColumn));
}

void KyFileSystemModel::collect(const QString &path)
{
    m_changedPaths.append(path);
    if (!isRunning() && !m_refreshTimer.isActive())
        m_refreshTimer.start();
}

void KyFileSystemModel::watchNothing()
{
    const QStringList paths = m_watcher.directories() + m_watcher.files();
    if (!paths.isEmpty())
        m_watcher.removePaths(paths);
}

bool KyFileSystemModel::isWatching() const
{
    return m_canInstallFileSystemWatcher && m_useFileSystemWatcher;
}

QVariant KyFileSystemModel::displayData(KyFileSystemItem *item, int column) const
{
    if (column == NameColumn)
        return item->fileName();
    if (column < 0 || column >= ColumnCount || (column == SizeColumn && item->m_fileInfo.isDir()))
        return QVariant();

    // Views ask at every paint.
    KyFileSystemItemCache &cache = item->cache();
    const quint32 epoch = KyTextEpoch::current();
    if (cache.textsEpoch != epoch) {
        cache.size = cache.type = cache.modified = QString();
        cache.textsEpoch = epoch;
    }
    QString &text = column == SizeColumn ? cache.size : column == TypeColumn ? cache.type : cache.modified;
    if (text.isNull())
        text = makeText(item->m_fileInfo, column);
    return text;
}

QString KyFileSystemModel::makeText(const QFileInfo &info, int column) const
{
    if (column == SizeColumn)
        return getFileSizeString(info.size());
    if (column == ModifiedColumn) {
        const qint64 modified = fileModificationTime(info);
        return modified != 0 ? m_dateTexts->text(modified)
                             : QLocale().toString(info.lastModified(), QLocale::ShortFormat);
    }
    if (!info.isFile())
        return m_typeProvider.type(info);
    // Of a file a plain provider looks at the suffix alone.
    if (m_fileTypesEpoch != KyTextEpoch::current()) {
        m_fileTypes.clear();
        m_fileTypesEpoch = KyTextEpoch::current();
    }
    QString &type = m_fileTypes[info.suffix()];
    if (type.isNull())
        type = m_typeProvider.type(info);
    return type;
}

bool KyFileSystemModel::isGreyedOut(const KyFileSystemItem *item) const
{
    if (item->m_greyOutEpoch != m_greyOutEpoch) {
        item->m_greyedOut = matchesAny(m_greyOuts, item->fileName());
        item->m_greyOutEpoch = m_greyOutEpoch;
    }
    return item->m_greyedOut;
}

bool KyFileSystemModel::renameItem(const QModelIndex &index, const QString &oldName, QString newName)
{
    const QModelIndex parentIndex = index.parent();
    const QString folder = getItem(index)->parent()->absolutePath();
    if (newName.isEmpty())
        return refuseName(tr("<b>The name is empty.</b><p>You have to specify valid name."));
    if (newName.contains(QDir::separator()))
        return refuseName(tr("<b>The name \"%1\" can not be used.</b><p>Try using another name, with fewer "
                             "characters or no punctuations marks.")
                              .arg(newName));
    const QString oldSuffix = QFileInfo(oldName).suffix();
    if (QFileInfo(newName).suffix().isEmpty() && !isDir(index) && !oldSuffix.isEmpty())
        newName += QLatin1Char('.') + oldSuffix;
    // Not through QDir, to which a name such as ":a" is the path of a resource and not one in the folder.
    const QString newPath = folder + QLatin1Char('/') + newName;
    if (QFileInfo::exists(newPath))
        return refuseName(
            tr("<b>The name \"%1\" is alrady in use.</b><p>Try using another name.").arg(newName));

    // Some systems rename no folder that is being watched.
    const bool watching = isWatching();
    if (watching)
        stopFileSystemWatcher();
    const bool renamed = QFile::rename(folder + QLatin1Char('/') + oldName, newPath);
    if (renamed)
        update(parentIndex);
    if (watching)
        startFileSystemWatcher();
    if (renamed) {
        emit fileRenamed(folder, oldName, newName);
        return true;
    }
    QMessageBox::critical(
        nullptr, tr("Filename changing error"),
        tr("<b>An error occurred while changing the filename.</b><p>Try using another name, "
           "with fewer characters or no punctuations marks."),
        QMessageBox::Ok);
    return false;
}

/** Shows \a text and gives false. */
bool KyFileSystemModel::refuseName(const QString &text) const
{
    QMessageBox::information(nullptr, tr("Invalid filename"), text, QMessageBox::Ok);
    return false;
}

} // namespace Kyte
