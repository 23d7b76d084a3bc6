#pragma once

#include "MediaTree.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

namespace Kyte {

/**
 * Prints what changes in a media library, a line for each entry: "+" for a new one, "-" for one that is gone,
 * "*" for a file with other content. Ends the event loop when the root folder or the output is gone.
 */
class TreeFollower : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(TreeFollower)

public:
    /** \a entries are those of \a model that are known already. */
    TreeFollower(KyFileSystemModel *model, const QVector<MediaEntry> &entries);

private slots:
    void onTreeChanged();
    void onFolderChanged(const QString &path);
    void printChanges();

private:
    void watchEmptyFolders();

    KyFileSystemModel *m_model;
    QVector<MediaEntry> m_entries;
    QFileSystemWatcher m_watcher; // of what the model does not watch: empty folders, and the root's own end
    QTimer m_timer;
};

} // namespace Kyte
