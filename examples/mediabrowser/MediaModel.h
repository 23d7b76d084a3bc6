#pragma once

#include <KyFileSystemModel.h>

#include <QDateTime>
#include <QHash>
#include <QIcon>

/**
 * A media library whose files show their thumbnails where these have been read, and keep them when they are
 * renamed, moved or copied.
 */
class MediaModel : public Kyte::KyFileSystemModel
{
    Q_OBJECT

public:
    explicit MediaModel(QObject *parent = nullptr);

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool dropMimeData(const QMimeData *data,
                      Qt::DropAction action,
                      int row,
                      int column,
                      const QModelIndex &parent) override;

    /** Starts reading the thumbnails in a folder that are new since the last time. */
    void readThumbnails(const QModelIndex &folder);

signals:
    /** Views are to paint anew. They would take dataChanged() for another name and discard one being edited.
     */
    void thumbnailRead();

private slots:
    void onIconRead(const QString &path, QIcon *icon);
    void onFileRenamed(const QString &folder, const QString &oldName, const QString &newName);
    void readEmptyFolder(const QString &path);

private:
    QHash<QString, QIcon> m_thumbnails; // by the path of the file
    QHash<QString, QDateTime> m_asked; // how old the thumbnails were that were asked for
};
