#pragma once

#include <QModelIndex>
#include <QSet>
#include <QTimer>
#include <QWidget>

class MediaModel;
class MessageBar;
class QAction;
class QLabel;
class QLineEdit;
class QListView;
class QSplitter;
class QTreeView;
class Thumbnails;

/**
 * The media library: its folders as a tree, the files of one of them as pictures. Names are edited in place,
 * files dragged from folder to folder, and what other programs do on disk is shown.
 */
class MediaPanel : public QWidget
{
    Q_OBJECT

public:
    explicit MediaPanel(QWidget *parent = nullptr);

    /** The library's folder, which is made where it is missing. */
    void setRoot(const QString &path);
    QString folder() const;

public slots:
    /** Shows the files in \a path, a folder of the library. */
    void openFolder(const QString &path);

signals:
    void presentationChosen(const QString &path);

protected:
    void resizeEvent(QResizeEvent *event) override;

private slots:
    void onFolderSelected();
    void onExpanded(const QModelIndex &index);
    void onCollapsed(const QModelIndex &index);
    void onActivated(const QModelIndex &index);
    void onFileRenamed(const QString &folder, const QString &oldName, const QString &newName);
    void onFilesChanged();
    void refreshShownFolder();
    void onDropFinished(const QStringList &failed);
    void refreshActions();
    void applyFilter();
    void restoreTree();
    void goUp();
    void makeFolder();
    void rename();
    void convert();
    void showInFileManager();

private:
    void makeActions();
    void makeTree();
    void makePictures();
    void connectModels();
    void showFolder(const QString &path);
    QModelIndex reach(const QString &path);
    int shownFolderCount() const;
    bool isPresentation(const QModelIndex &index) const;

    QString m_root;
    QString m_folder; // whose files are shown
    QSet<QString> m_expanded; // a refresh replaces the nodes; paths stay
    Thumbnails *m_thumbnails = nullptr;
    MediaModel *m_folders = nullptr;
    MediaModel *m_files = nullptr;
    MessageBar *m_messages = nullptr;
    QLineEdit *m_filter = nullptr;
    QLabel *m_path = nullptr;
    QLabel *m_status = nullptr;
    QSplitter *m_splitter = nullptr;
    QTreeView *m_tree = nullptr;
    QListView *m_pictures = nullptr;
    QAction *m_up = nullptr;
    QAction *m_newFolder = nullptr;
    QAction *m_rename = nullptr;
    QAction *m_convert = nullptr;
    QAction *m_show = nullptr;
    QTimer m_filtering;
    QTimer m_restoring;
};
