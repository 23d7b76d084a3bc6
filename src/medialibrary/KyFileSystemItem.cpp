#include "KyFileSystemItem.h"

#include "KyFileSystemItemCache_p.h"

#include <Path.h>

#include <QDir>
#include <QFileIconProvider>
#include <QPixmap>

namespace Kyte {

static const QString ICON_CACHE_FOLDER = QStringLiteral("kyteeditoricons");
static const QString FOLDER_ICON_KEY = QStringLiteral("Folder");
static const QString FOLDER_ICON_FILE = QStringLiteral(":/images/folder_win10.svg");
static const int CACHED_ICON_SIZES[] = {16, 32, 48, 256};

static quint32 assignments = 0;

/** The name is used as a folder as it is, so one that names another place has no folder. */
static bool isFolderName(const QString &typeText)
{
    return !typeText.isEmpty() && typeText != QLatin1String(".") && typeText != QLatin1String("..")
        && !typeText.contains(QLatin1Char('/')) && !typeText.contains(QDir::separator());
}

static QIcon iconOf(const QList<QPixmap> &pixmaps)
{
    QIcon icon;
    for (const QPixmap &pixmap : pixmaps) {
        if (!pixmap.isNull())
            icon.addPixmap(pixmap, QIcon::Normal, QIcon::Off);
    }
    return icon;
}

static QList<QPixmap> pixmapsOf(const QIcon &icon)
{
    QList<QPixmap> pixmaps;
    for (const int size : CACHED_ICON_SIZES)
        pixmaps.append(icon.pixmap(size, size, QIcon::Normal, QIcon::Off));
    return pixmaps;
}

/** The row of \a node in \a rows, looked for around \a row; -1 when it is not there. */
static int nearestRow(const QList<KyFileSystemItem *> &rows, const KyFileSystemItem *node, int row)
{
    int before = qBound(-1, row, rows.size() - 1);
    int after = before + 1;
    while (before >= 0 || after < rows.size()) {
        if (before >= 0 && rows.at(before) == node)
            return before;
        if (after < rows.size() && rows.at(after) == node)
            return after;
        --before;
        ++after;
    }
    return -1;
}

KyFileSystemItem::KyFileSystemItem(const QFileInfo &info, KyFileSystemItem *parent, int row)
    : m_parent(parent)
    , m_fileInfo(info)
    , m_canFetchMore(info.isDir())
{
    if (parent && row < 0)
        parent->addChild(this);
    else if (parent)
        parent->insertChild(this, row);
    if (m_canFetchMore)
        m_icon = getFolderIcon();
}

KyFileSystemItem::KyFileSystemItem(KyFileSystemItem *parent, const QFileInfo &info, Qt::CaseSensitivity cs)
    : m_parent(parent)
    , m_fileInfo(info)
    , m_canFetchMore(info.isDir())
{
    if (parent)
        parent->insertChildByName(this, cs);
    if (m_canFetchMore)
        m_icon = getFolderIcon();
}

KyFileSystemItem::KyFileSystemItem(const KyFileSystemItem &other)
    : m_parent(other.m_parent)
    , m_children(other.m_children)
    , m_fileInfo(other.m_fileInfo)
    , m_icon(other.m_icon)
    , m_canFetchMore(other.m_canFetchMore)
{
}

KyFileSystemItem::~KyFileSystemItem()
{
    while (!m_children.isEmpty()) {
        KyFileSystemItem *child = m_children.takeLast();
        if (child->m_timesListed > 1)
            m_children.removeAll(child);
        delete child;
    }
}

KyFileSystemItem &KyFileSystemItem::operator=(const KyFileSystemItem &other)
{
    if (this == &other)
        return *this;
    m_parent = other.m_parent;
    m_children = other.m_children;
    m_fileInfo = other.m_fileInfo;
    m_icon = other.m_icon;
    m_canFetchMore = other.m_canFetchMore;
    m_cache.reset();
    m_greyOutEpoch = 0;
    ++assignments;
    return *this;
}

KyFileSystemItem *KyFileSystemItem::parent() const
{
    return m_parent;
}

int KyFileSystemItem::childCount() const
{
    return m_children.size();
}

QFileInfo KyFileSystemItem::fileInfo() const
{
    return m_fileInfo;
}

QString KyFileSystemItem::fileName() const
{
    return m_fileInfo.fileName();
}

QString KyFileSystemItem::absolutePath() const
{
    return m_fileInfo.absoluteFilePath();
}

bool KyFileSystemItem::canFetchMore() const
{
    return m_canFetchMore;
}

void KyFileSystemItem::setCanFetchMore(bool canFetchMore)
{
    m_canFetchMore = canFetchMore;
}

QIcon KyFileSystemItem::icon()
{
    if (m_icon.isNull())
        m_icon = getIcon(m_fileInfo);
    return m_icon;
}

void KyFileSystemItem::setIcon(const QIcon &icon)
{
    m_icon = icon;
}

void KyFileSystemItem::addChild(KyFileSystemItem *child)
{
    if (!child || (child->m_timesListed > 0 && m_children.contains(child)))
        return;
    enter(child, m_children.size());
    forgetNames();
}

void KyFileSystemItem::insertChild(KyFileSystemItem *child, int row)
{
    if (!child)
        return;
    enter(child, qBound(0, row, m_children.size()));
    forgetNames();
}

void KyFileSystemItem::insertChildByName(KyFileSystemItem *child, Qt::CaseSensitivity cs)
{
    if (!child)
        return;
    const QString name = child->fileName();
    const int count = m_children.size();
    const int row = names().insertionRow(m_children, name, cs);
    enter(child, row);
    names().noteInsertion(row, count, name);
}

KyFileSystemItem *KyFileSystemItem::childAt(int row) const
{
    return row >= 0 && row < m_children.size() ? m_children.at(row) : nullptr;
}

int KyFileSystemItem::childPosition(KyFileSystemItem *child) const
{
    return m_children.indexOf(child);
}

int KyFileSystemItem::positionInParent() const
{
    if (!m_parent)
        return -1;
    // A node that was listed once only has no row before the one where it is found, and is not far from the
    // last one.
    m_row = m_timesListed == 1 ? nearestRow(m_parent->m_children, this, m_row)
                               : m_parent->m_children.indexOf(const_cast<KyFileSystemItem *>(this));
    return m_row;
}

void KyFileSystemItem::clearChild(KyFileSystemItem *child)
{
    // The pointer may be that of a node that is gone: it is compared and never looked into.
    if (m_children.removeAll(child) > 0)
        forgetNames();
}

void KyFileSystemItem::clearChildren(int from, int to)
{
    const QPair<int, int> rows = rowsWithin(from, to);
    if (rows.second < rows.first)
        return;
    m_children.erase(m_children.begin() + rows.first, m_children.begin() + rows.second + 1);
    forgetNames();
}

void KyFileSystemItem::clearAllChildren()
{
    m_children.clear();
    forgetNames();
}

QFileIconProvider *KyFileSystemItem::getIconProvidoer()
{
    static QFileIconProvider *const provider = new QFileIconProvider;
    return provider;
}

QMap<QString, QIcon> *KyFileSystemItem::getIconList()
{
    static QMap<QString, QIcon> *const icons = new QMap<QString, QIcon>;
    return icons;
}

QIcon KyFileSystemItem::getFolderIcon()
{
    const auto known = getIconList()->constFind(FOLDER_ICON_KEY);
    if (known != getIconList()->constEnd())
        return *known;
    QIcon icon = getIconProvidoer()->icon(QFileIconProvider::Folder);
    icon.addFile(FOLDER_ICON_FILE, QSize(), QIcon::Normal, QIcon::Off);
    icon.addFile(FOLDER_ICON_FILE, QSize(), QIcon::Normal, QIcon::On);
    getIconList()->insert(FOLDER_ICON_KEY, icon);
    return icon;
}

QIcon KyFileSystemItem::getIcon(const QFileInfo &info)
{
    const QString key = getIconProvidoer()->type(info);
    const auto known = getIconList()->constFind(key);
    if (known != getIconList()->constEnd())
        return *known;

    const bool hasFolder = isFolderName(key);
    const QDir dir(iconCacheFolder(key));
    QList<QPixmap> pixmaps;
    QIcon icon;
    if (hasFolder && getIconPixmapFromFile(dir, &pixmaps))
        icon = iconOf(pixmaps);
    if (icon.isNull()) {
        icon = getIconProvidoer()->icon(info);
        pixmaps = pixmapsOf(icon);
        if (hasFolder)
            putIconPixmapToFile(dir, pixmaps);
    }
    getIconList()->insert(key, icon);
    return icon;
}

QString KyFileSystemItem::iconCacheFolder(const QString &name)
{
    const QDir dir(QDir(Path::getApplicationCacheFolderPath()).filePath(ICON_CACHE_FOLDER));
    return name.isEmpty() ? dir.absolutePath() : dir.absoluteFilePath(name);
}

bool KyFileSystemItem::getIconPixmapFromFile(const QDir &dir, QList<QPixmap> *pixmaps)
{
    if (!pixmaps || !dir.exists())
        return false;
    const QStringList names = dir.entryList({QStringLiteral("*.png")}, QDir::AllEntries, QDir::Unsorted);
    for (const QString &name : names) {
        const QPixmap pixmap(dir.filePath(name));
        if (!pixmap.isNull())
            pixmaps->append(pixmap);
    }
    return !pixmaps->isEmpty();
}

bool KyFileSystemItem::putIconPixmapToFile(const QDir &dir, QList<QPixmap> &pixmaps)
{
    if (pixmaps.isEmpty() || (!dir.exists() && !dir.mkpath(QStringLiteral("."))))
        return false;
    bool anySaved = false;
    for (const QPixmap &pixmap : qAsConst(pixmaps)) {
        if (pixmap.isNull())
            continue;
        const QString path =
            QStringLiteral("%1/%2.png").arg(dir.absolutePath(), QString::number(pixmap.width()));
        anySaved = pixmap.save(path, "PNG") || anySaved;
    }
    return anySaved;
}

void KyFileSystemItem::enter(KyFileSystemItem *child, int row)
{
    m_children.insert(row, child);
    child->m_row = row;
    if (child->m_timesListed < 2)
        ++child->m_timesListed;
}

/** The rows that clearChildren() takes out; the second is below the first for an empty list. */
QPair<int, int> KyFileSystemItem::rowsWithin(int from, int to) const
{
    const int last = m_children.size() - 1;
    const int first = qMax(qMin(qMax(from, 0), last), 0);
    return {first, qMin(qMax(to, first), last)};
}

void KyFileSystemItem::forgetNames()
{
    if (m_cache && m_cache->names)
        m_cache->names->clear();
}

void KyFileSystemItem::renumberChildren()
{
    for (int row = 0; row < m_children.size(); ++row)
        m_children.at(row)->m_row = row;
}

KyFileSystemItemCache &KyFileSystemItem::cache() const
{
    if (!m_cache)
        m_cache.reset(new KyFileSystemItemCache);
    return *m_cache;
}

KyChildNames &KyFileSystemItem::names() const
{
    std::unique_ptr<KyChildNames> &names = cache().names;
    if (!names)
        names.reset(new KyChildNames);
    names->validate(assignments);
    return *names;
}

} // namespace Kyte
