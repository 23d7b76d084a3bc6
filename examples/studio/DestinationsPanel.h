#pragma once

#include <KyUploadItemInfo.h>

#include <QQueue>
#include <QThread>
#include <QTimer>
#include <QWidget>

class DestinationModel;
class DestinationStore;
class MessageBar;
class QAction;
class QLabel;
class QMenu;
class QModelIndex;
class QTreeView;

namespace Kyte {
class KyWaitingImageWidget;
} // namespace Kyte

// Connections name this type as the library declares it, without the namespace.
using Kyte::KyUploadItemInfo;

/**
 * The upload destinations by channel or by group: groups can be added, renamed and removed, destinations
 * moved. Edits are kept apart until they are saved. The database is worked on by a thread of its own.
 */
class DestinationsPanel : public QWidget
{
    Q_OBJECT

public:
    explicit DestinationsPanel(QWidget *parent = nullptr);
    ~DestinationsPanel() override;

    bool isEdited() const;
    bool isReading() const;

public slots:
    /** Reads everything anew and drops edits that were not saved. */
    void open();
    void save();

signals:
    /** Everything that was read is shown. */
    void filled();
    void saved();
    void editedChanged(bool edited);

    void openWanted();
    void saveWanted(bool overwrite);
    void groupWanted(const QString &name);
    void renamingWanted(int id, const QString &name);
    void removalWanted(int id);
    void moveWanted(const QList<int> &ids, int categoryId, int type);

private slots:
    void onItemsRead(const QList<KyUploadItemInfo> &items);
    void onReadingFinished();
    void fillModel();
    void onGroupAdded(int id, const QString &name);
    void onGroupRenamed(int id, const QString &name);
    void onGroupRemoved(int id);
    void onDestinationsMoved(const QList<int> &ids, int categoryId, int type);
    void onSaved();
    void onConflictFound();
    void onFileChanged();
    void onEditedChanged(bool edited);
    void onFailed(const QString &message);
    void onTypeChosen();
    void onMoveWanted(const QList<int> &ids, int categoryId);
    void moveToChosen();
    void addGroup();
    void renameGroup();
    void removeGroup();
    void reload();
    void fillMoveMenu();
    void refreshActions();

private:
    void makeActions();
    void makeTree();
    void connectStore();
    void setBusy(bool busy);
    void showStatus();
    QModelIndex current() const;
    bool askForName(const QString &title, const QString &oldName, QString *name);

    DestinationModel *m_model = nullptr;
    DestinationStore *m_store = nullptr; // lives in m_thread, which deletes it
    QThread m_thread;
    QQueue<QList<KyUploadItemInfo>> m_unshown;
    QTimer m_filling;
    bool m_isReadingFinished = true;
    bool m_isEdited = false;

    MessageBar *m_messages = nullptr;
    QTreeView *m_tree = nullptr;
    QLabel *m_status = nullptr;
    Kyte::KyWaitingImageWidget *m_waiting = nullptr;
    QAction *m_byChannel = nullptr;
    QAction *m_byGroup = nullptr;
    QAction *m_add = nullptr;
    QAction *m_rename = nullptr;
    QAction *m_remove = nullptr;
    QAction *m_move = nullptr;
    QMenu *m_moveMenu = nullptr;
    QAction *m_save = nullptr;
    QAction *m_reload = nullptr;
};
