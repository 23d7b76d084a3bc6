#include "MediaModel.h"

#include <KyIconReaderAsync.h>
#include <KyLibFileIconProvider.h>
#include <KyThumbnail.h>

#include <QMimeData>
#include <QUrl>

#include <memory>

using namespace Kyte;

static const int NAME_COLUMN = 0;

static void copyThumbnail(const QString &from, const QString &to)
{
    KyThumbnail target(to, nullptr, false);
    target.setPixmap(KyThumbnail(from, nullptr, true).pixmap());
    target.write(false);
}

MediaModel::MediaModel(QObject *parent)
    : KyFileSystemModel(parent)
{
    connect(this, SIGNAL(fileRenamed(QString, QString, QString)), this,
            SLOT(onFileRenamed(QString, QString, QString)));
}

QVariant MediaModel::data(const QModelIndex &index, int role) const
{
    if (role == Qt::DecorationRole && index.column() == NAME_COLUMN) {
        const auto thumbnail = m_thumbnails.constFind(filePath(index));
        if (thumbnail != m_thumbnails.constEnd())
            return *thumbnail;
    }
    return KyFileSystemModel::data(index, role);
}

bool MediaModel::dropMimeData(
    const QMimeData *data, Qt::DropAction action, int row, int column, const QModelIndex &parent)
{
    const QString folder = filePath(parent);
    const bool wasEmpty = rowCount(parent) == 0;
    const bool success = KyFileSystemModel::dropMimeData(data, action, row, column, parent);
    const QList<QUrl> urls = data->urls();
    for (const QUrl &url : urls) {
        const QString target = QDir(folder).filePath(url.fileName());
        if (QFileInfo::exists(target))
            copyThumbnail(url.toLocalFile(), target);
    }
    // A folder that was empty when it was read is not watched. Views are in the middle of the drop yet.
    if (wasEmpty && !canFetchMore(parent))
        QMetaObject::invokeMethod(this, "readEmptyFolder", Qt::QueuedConnection, Q_ARG(QString, folder));
    return success;
}

void MediaModel::readThumbnails(const QModelIndex &folder)
{
    const KyLibFileIconProvider provider;
    QStringList paths;
    for (int row = 0; row < rowCount(folder); ++row) {
        const QFileInfo file = fileInfo(index(row, NAME_COLUMN, folder));
        const QFileInfo thumbnail(provider.getThumbnailFilePath(file));
        const QString path = file.absoluteFilePath();
        if (!thumbnail.isFile() || m_asked.value(path) == thumbnail.lastModified())
            continue;
        m_asked.insert(path, thumbnail.lastModified());
        paths.append(path);
    }
    if (paths.isEmpty())
        return;
    auto *reader = new KyIconReaderAsync(paths, this); // deletes itself
    connect(reader, SIGNAL(iconReadCompleted(QString, QIcon *)), this, SLOT(onIconRead(QString, QIcon *)));
    reader->start();
}

void MediaModel::onIconRead(const QString &path, QIcon *icon)
{
    const std::unique_ptr<QIcon> thumbnail(icon);
    m_thumbnails.insert(path, *thumbnail);
    emit thumbnailRead();
}

void MediaModel::onFileRenamed(const QString &folder, const QString &oldName, const QString &newName)
{
    copyThumbnail(QDir(folder).filePath(oldName), QDir(folder).filePath(newName));
}

void MediaModel::readEmptyFolder(const QString &path)
{
    const QModelIndex folder = index(path, NAME_COLUMN);
    if (folder.isValid() && rowCount(folder) == 0)
        fetchMore(folder);
}
