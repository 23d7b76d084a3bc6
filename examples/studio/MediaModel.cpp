#include "MediaModel.h"

#include "Thumbnails.h"

#include <QElapsedTimer>
#include <QMimeData>

using namespace Kyte;

static const int NAME_COLUMN = 0;
static const int DROPPING_TIME = 10; // milliseconds at a time

MediaModel::MediaModel(Thumbnails *thumbnails, QObject *parent)
    : KyFileSystemModel(parent)
    , m_thumbnails(thumbnails)
{
    m_dropping.setInterval(0);
    connect(&m_dropping, SIGNAL(timeout()), this, SLOT(dropNext()));
}

QVariant MediaModel::data(const QModelIndex &index, int role) const
{
    if (role == Qt::DecorationRole && index.column() == NAME_COLUMN && m_thumbnails && !isDir(index)) {
        const QIcon icon = m_thumbnails->icon(fileInfo(index));
        if (!icon.isNull())
            return icon;
    }
    return KyFileSystemModel::data(index, role);
}

Qt::ItemFlags MediaModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = KyFileSystemModel::flags(index);
    return index.isValid() || isReadOnly() ? flags : flags | Qt::ItemIsDropEnabled;
}

bool MediaModel::dropMimeData(
    const QMimeData *data, Qt::DropAction action, int, int, const QModelIndex &parent)
{
    const QString folder = filePath(parent);
    if (!data || isReadOnly() || folder.isEmpty())
        return false;
    const QList<QUrl> urls = data->urls();
    for (const QUrl &url : urls) {
        // A file that is dropped where it lies stays.
        if (QFileInfo(url.toLocalFile()).absolutePath() != folder)
            m_drops.enqueue({url, action, folder});
    }
    m_dropping.start();
    return true;
}

void MediaModel::dropNext()
{
    QElapsedTimer time;
    time.start();
    while (!m_drops.isEmpty() && !time.hasExpired(DROPPING_TIME)) {
        const Drop drop = m_drops.dequeue();
        if (!dropOne(drop))
            m_failed.append(drop.url.fileName());
    }
    if (!m_drops.isEmpty())
        return;
    m_dropping.stop();
    const QStringList failed = m_failed;
    m_failed.clear();
    emit dropFinished(failed);
}

bool MediaModel::dropOne(const Drop &drop)
{
    const bool isRoot = drop.folder == rootPath();
    const QModelIndex folder = isRoot ? rootIndex() : index(drop.folder, NAME_COLUMN);
    QMimeData data;
    data.setUrls({drop.url});
    if (!KyFileSystemModel::dropMimeData(&data, drop.action, -1, -1, folder))
        return false;
    const QString target = QDir(drop.folder).filePath(drop.url.fileName());
    emit fileCarried(drop.url.toLocalFile(), target);
    return true;
}
