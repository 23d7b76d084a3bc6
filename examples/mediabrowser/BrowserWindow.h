#pragma once

#include <QMainWindow>
#include <QModelIndex>
#include <QSet>
#include <QTimer>

class MediaModel;
class QLineEdit;
class QListView;
class QTreeView;

/**
 * A media library as a tree and the files of one folder as pictures. Names are edited in place, files dragged
 * from folder to folder, and what other programs do on disk is shown.
 */
class BrowserWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit BrowserWindow(const QString &root, QWidget *parent = nullptr);

    /** Shows the pictures in the folder \a path, in the tree as well. */
    void openFolder(const QString &path);

private slots:
    void onSelectionChanged();
    void onActivated(const QModelIndex &index);
    void onExpanded(const QModelIndex &index);
    void onCollapsed(const QModelIndex &index);
    void onFilterEdited(const QString &text);
    void onFileRenamed(const QString &folder, const QString &oldName, const QString &newName);
    void restoreViews();

private:
    void makeTree();
    void makePictures();
    QModelIndex reach(const QString &path);
    void showPictures();

    MediaModel *m_model = nullptr;
    QLineEdit *m_filter = nullptr;
    QTreeView *m_tree = nullptr;
    QListView *m_pictures = nullptr;

    // A refresh replaces the nodes, and with them goes what the views remember. Paths stay.
    QString m_folder; // whose pictures are shown
    QString m_current; // in the tree
    QSet<QString> m_expanded;
    QTimer m_restoring;
};
