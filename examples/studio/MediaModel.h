#pragma once

#include <KyFileSystemModel.h>

#include <QQueue>
#include <QTimer>
#include <QUrl>

class Thumbnails;

/**
 * Files of the media library with their thumbnails. Dropped files are moved and copied one after the other
 * while the window goes on answering, also those dropped between the rows, into the root.
 */
class MediaModel : public Kyte::KyFileSystemModel
{
    Q_OBJECT

public:
    /** Without \a thumbnails, which stay the caller's, files have the icons of their types. */
    explicit MediaModel(Thumbnails *thumbnails, QObject *parent = nullptr);

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool dropMimeData(const QMimeData *data,
                      Qt::DropAction action,
                      int row,
                      int column,
                      const QModelIndex &parent) override;

signals:
    /** All that was dropped is done, but for the files \a failed. */
    void dropFinished(const QStringList &failed);
    void fileCarried(const QString &from, const QString &to);

private slots:
    void dropNext();

private:
    struct Drop
    {
        QUrl url;
        Qt::DropAction action;
        QString folder;
    };

    bool dropOne(const Drop &drop);

    Thumbnails *m_thumbnails = nullptr;
    QQueue<Drop> m_drops;
    QStringList m_failed;
    QTimer m_dropping;
};
