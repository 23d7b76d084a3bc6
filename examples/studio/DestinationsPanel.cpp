#include "DestinationsPanel.h"

#include "DestinationModel.h"
#include "DestinationStore.h"
#include "EmptyHint.h"
#include "MessageBar.h"
#include "NameChecker.h"

#include <KyCommandLinkDialog.h>
#include <KyCommonInputNameDialog.h>
#include <KyEditorUserConfig.h>
#include <KyMessageBoxWithCheckBox.h>
#include <KyWaitingImageWidget.h>

#include <QActionGroup>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

using namespace Kyte;

static const int FILLING_TIME = 8; // milliseconds at a time, so that the window goes on answering
static const int EXPANDED_COUNT = 200; // more destinations than these are folded away
static const int COLUMN_WIDTHS[] = {240, 130, 120, 140};

DestinationsPanel::DestinationsPanel(QWidget *parent)
    : QWidget(parent)
    , m_model(new DestinationModel(this))
    , m_store(new DestinationStore) // an object with a parent could not be moved
    , m_messages(new MessageBar(this))
    , m_tree(new QTreeView(this))
    , m_status(new QLabel(this))
    , m_waiting(new KyWaitingImageWidget(this))
{
    makeTree();
    makeActions();
    auto *bar = new QToolBar(this);
    bar->addActions({m_byChannel, m_byGroup});
    bar->addSeparator();
    bar->addActions({m_add, m_rename, m_remove, m_move});
    bar->addSeparator();
    bar->addActions({m_save, m_reload});
    static_cast<QToolButton *>(bar->widgetForAction(m_move))->setPopupMode(QToolButton::InstantPopup);
    auto *top = new QHBoxLayout;
    top->addWidget(bar, 1);
    top->addWidget(m_waiting);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(m_messages);
    layout->addWidget(m_tree, 1);
    layout->addWidget(m_status);
    m_waiting->hide();

    m_filling.setInterval(0);
    connect(&m_filling, SIGNAL(timeout()), this, SLOT(fillModel()));
    connect(m_model, SIGNAL(moveWanted(QList<int>, int)), this, SLOT(onMoveWanted(QList<int>, int)));
    connect(m_messages, SIGNAL(commandChosen()), this, SLOT(open()));
    connectStore();
    m_store->moveToThread(&m_thread);
    connect(&m_thread, SIGNAL(finished()), m_store, SLOT(deleteLater()));
    m_thread.start();
    refreshActions();
}

DestinationsPanel::~DestinationsPanel()
{
    m_thread.quit();
    m_thread.wait();
}

bool DestinationsPanel::isEdited() const
{
    return m_isEdited;
}

bool DestinationsPanel::isReading() const
{
    return !m_isReadingFinished || !m_unshown.isEmpty();
}

void DestinationsPanel::open()
{
    m_messages->clear();
    m_unshown.clear();
    m_model->clear();
    m_isReadingFinished = false;
    setBusy(true);
    emit openWanted();
}

void DestinationsPanel::save()
{
    if (isReading())
        return;
    setBusy(true);
    emit saveWanted(false);
}

void DestinationsPanel::makeTree()
{
    m_tree->setObjectName(QStringLiteral("destinations"));
    m_tree->setModel(m_model);
    m_tree->setUniformRowHeights(true);
    m_tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_tree->setDragDropMode(QAbstractItemView::InternalMove);
    m_tree->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    for (int column = 0; column < DestinationModel::ColumnCount; ++column)
        m_tree->setColumnWidth(column, COLUMN_WIDTHS[column]);
    new EmptyHint(tr("No destinations are read yet."), m_tree);
    connect(m_tree->selectionModel(), SIGNAL(selectionChanged(QItemSelection, QItemSelection)), this,
            SLOT(refreshActions()));
    connect(m_tree->selectionModel(), SIGNAL(currentChanged(QModelIndex, QModelIndex)), this,
            SLOT(refreshActions()));
}

void DestinationsPanel::makeActions()
{
    const auto make = [this](const QString &text, const char *name, const char *slot) {
        auto *action = new QAction(text, this);
        action->setObjectName(QLatin1String(name));
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        if (slot)
            connect(action, SIGNAL(triggered()), this, slot);
        return action;
    };
    m_byChannel = make(tr("Channels"), "byChannel", SLOT(onTypeChosen()));
    m_byGroup = make(tr("Groups"), "byGroup", SLOT(onTypeChosen()));
    auto *types = new QActionGroup(this);
    m_byChannel->setActionGroup(types);
    m_byGroup->setActionGroup(types);
    m_byChannel->setCheckable(true);
    m_byGroup->setCheckable(true);
    m_byChannel->setChecked(true);
    m_add = make(tr("New group…"), "addGroup", SLOT(addGroup()));
    m_rename = make(tr("Rename…"), "renameGroup", SLOT(renameGroup()));
    m_remove = make(tr("Remove"), "removeGroup", SLOT(removeGroup()));
    m_move = make(tr("Move to"), "moveTo", nullptr);
    m_save = make(tr("Save"), "saveDestinations", SLOT(save()));
    m_reload = make(tr("Reload"), "reloadDestinations", SLOT(reload()));
    m_rename->setShortcut(Qt::Key_F2);
    m_remove->setShortcut(QKeySequence::Delete);
    m_moveMenu = new QMenu(this);
    m_move->setMenu(m_moveMenu);
    m_tree->addActions({m_add, m_rename, m_remove, m_move});
    connect(m_moveMenu, SIGNAL(aboutToShow()), this, SLOT(fillMoveMenu()));
}

void DestinationsPanel::connectStore()
{
    connect(this, SIGNAL(openWanted()), m_store, SLOT(open()));
    connect(this, SIGNAL(saveWanted(bool)), m_store, SLOT(save(bool)));
    connect(this, SIGNAL(groupWanted(QString)), m_store, SLOT(addGroup(QString)));
    connect(this, SIGNAL(renamingWanted(int, QString)), m_store, SLOT(renameGroup(int, QString)));
    connect(this, SIGNAL(removalWanted(int)), m_store, SLOT(removeGroup(int)));
    connect(this, SIGNAL(moveWanted(QList<int>, int, int)), m_store,
            SLOT(moveDestinations(QList<int>, int, int)));

    connect(m_store, SIGNAL(itemsRead(QList<KyUploadItemInfo>)), this,
            SLOT(onItemsRead(QList<KyUploadItemInfo>)));
    connect(m_store, SIGNAL(readingFinished()), this, SLOT(onReadingFinished()));
    connect(m_store, SIGNAL(groupAdded(int, QString)), this, SLOT(onGroupAdded(int, QString)));
    connect(m_store, SIGNAL(groupRenamed(int, QString)), this, SLOT(onGroupRenamed(int, QString)));
    connect(m_store, SIGNAL(groupRemoved(int)), this, SLOT(onGroupRemoved(int)));
    connect(m_store, SIGNAL(destinationsMoved(QList<int>, int, int)), this,
            SLOT(onDestinationsMoved(QList<int>, int, int)));
    connect(m_store, SIGNAL(saved()), this, SLOT(onSaved()));
    connect(m_store, SIGNAL(conflictFound()), this, SLOT(onConflictFound()));
    connect(m_store, SIGNAL(fileChanged()), this, SLOT(onFileChanged()));
    connect(m_store, SIGNAL(editedChanged(bool)), this, SLOT(onEditedChanged(bool)));
    connect(m_store, SIGNAL(failed(QString)), this, SLOT(onFailed(QString)));
}

/** Lists of ten come by the thousand; the model takes them bit by bit. */
void DestinationsPanel::onItemsRead(const QList<KyUploadItemInfo> &items)
{
    m_unshown.enqueue(items);
    if (!m_filling.isActive())
        m_filling.start();
}

void DestinationsPanel::onReadingFinished()
{
    m_isReadingFinished = true;
    m_filling.start(); // also when nothing was read
}

void DestinationsPanel::fillModel()
{
    QElapsedTimer time;
    time.start();
    while (!m_unshown.isEmpty() && !time.hasExpired(FILLING_TIME))
        m_model->append(m_unshown.dequeue());
    if (!m_unshown.isEmpty() || !m_isReadingFinished) {
        if (m_unshown.isEmpty())
            m_filling.stop();
        showStatus();
        return;
    }
    m_filling.stop();
    m_model->finish();
    if (m_model->destinationCount() <= EXPANDED_COUNT)
        m_tree->expandAll();
    setBusy(false);
    emit filled();
}

void DestinationsPanel::onGroupAdded(int id, const QString &name)
{
    m_model->addCategory(KyDestination::Data_Group, id, name);
    m_byGroup->trigger();
    m_tree->setCurrentIndex(m_model->categoryIndex(id));
    setBusy(false);
}

void DestinationsPanel::onGroupRenamed(int id, const QString &name)
{
    m_model->renameCategory(KyDestination::Data_Group, id, name);
    setBusy(false);
}

void DestinationsPanel::onGroupRemoved(int id)
{
    m_model->removeCategory(KyDestination::Data_Group, id);
    setBusy(false);
}

void DestinationsPanel::onDestinationsMoved(const QList<int> &ids, int categoryId, int type)
{
    m_model->moveDestinations(ids, categoryId, static_cast<KyDestination::DataType>(type));
    setBusy(false);
}

void DestinationsPanel::onSaved()
{
    m_messages->showSuccess(tr("The destinations are saved."));
    setBusy(false);
    emit saved();
}

void DestinationsPanel::onConflictFound()
{
    setBusy(false);
    switch (KyCommandLinkDialog::show(
        this, tr("Save destinations"), tr("Another program has changed the destinations."),
        tr("They are not as they were when they were read here."), tr("&Save all the same"),
        tr("What the other program changed is lost."), tr("&Reload"),
        tr("The destinations are read anew, and your changes are lost."))) {
    case 1:
        setBusy(true);
        emit saveWanted(true);
        break;
    case 2:
        open();
        break;
    default:
        break;
    }
}

void DestinationsPanel::onFileChanged()
{
    m_messages->showWarning(m_isEdited
                                ? tr("Another program has changed the destinations. Reloading them drops "
                                     "your changes.")
                                : tr("Another program has changed the destinations."));
    m_messages->offer(tr("Reload"));
}

void DestinationsPanel::onEditedChanged(bool edited)
{
    if (edited && !m_isEdited)
        m_messages->clear(); // "saved" is not true any more
    m_isEdited = edited;
    refreshActions();
    emit editedChanged(edited);
}

void DestinationsPanel::onFailed(const QString &message)
{
    m_isReadingFinished = true;
    setBusy(false);
    m_messages->showError(message);
}

void DestinationsPanel::onTypeChosen()
{
    m_model->setDataType(m_byGroup->isChecked() ? KyDestination::Data_Group : KyDestination::Data_Channel);
    if (m_model->destinationCount() <= EXPANDED_COUNT)
        m_tree->expandAll();
    refreshActions();
    showStatus();
}

void DestinationsPanel::onMoveWanted(const QList<int> &ids, int categoryId)
{
    setBusy(true);
    emit moveWanted(ids, categoryId, m_model->dataType());
}

void DestinationsPanel::fillMoveMenu()
{
    m_moveMenu->clear();
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QModelIndex category = m_model->index(row, DestinationModel::NameColumn);
        QAction *action =
            m_moveMenu->addAction(category.data(Qt::EditRole).toString(), this, SLOT(moveToChosen()));
        action->setData(m_model->categoryId(category));
    }
}

void DestinationsPanel::moveToChosen()
{
    const int target = qobject_cast<QAction *>(sender())->data().toInt();
    QList<int> ids;
    const QModelIndexList rows = m_tree->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows) {
        if (!m_model->isCategory(row) && m_model->categoryId(row) != target)
            ids.append(row.data(DestinationModel::IdRole).toInt());
    }
    if (!ids.isEmpty())
        onMoveWanted(ids, target);
}

void DestinationsPanel::addGroup()
{
    QString name;
    if (!askForName(tr("New group"), QString(), &name))
        return;
    setBusy(true);
    emit groupWanted(name);
}

void DestinationsPanel::renameGroup()
{
    const QModelIndex group = current();
    const QString oldName = group.data(Qt::EditRole).toString();
    const int id = m_model->categoryId(group);
    QString name;
    if (!askForName(tr("Rename group"), oldName, &name) || name == oldName)
        return;
    setBusy(true);
    emit renamingWanted(id, name);
}

void DestinationsPanel::removeGroup()
{
    const QModelIndex group = current();
    const int id = m_model->categoryId(group);
    // The answer is remembered by the text, so the name stands apart from it.
    KyMessageBoxWithCheckBox box(QMessageBox::Question, tr("Remove group"),
                                 tr("Remove the group? Its destinations stay, in no group."),
                                 QMessageBox::Ok | QMessageBox::Cancel, this);
    box.setInformativeText(group.data(Qt::EditRole).toString());
    box.setSettings(KyEditorUserConfig::settings());
    if (box.exec() != QMessageBox::Ok)
        return;
    setBusy(true);
    emit removalWanted(id);
}

void DestinationsPanel::reload()
{
    if (m_isEdited) {
        KyMessageBoxWithCheckBox box(QMessageBox::Question, tr("Reload destinations"),
                                     tr("Reload the destinations? Changes that were not saved are lost."),
                                     QMessageBox::Ok | QMessageBox::Cancel, this);
        box.setSettings(KyEditorUserConfig::settings());
        if (box.exec() != QMessageBox::Ok)
            return;
    }
    open();
}

void DestinationsPanel::refreshActions()
{
    const bool isIdle = !isReading() && !m_waiting->isVisibleTo(this);
    const bool byGroup = m_model->dataType() == KyDestination::Data_Group;
    const QModelIndex index = current();
    const bool isGroup =
        byGroup && m_model->isCategory(index) && m_model->categoryId(index) != DestinationModel::NO_CATEGORY;
    const QString reason = byGroup ? QString() : tr("Channels are what the channel files say.");
    m_add->setEnabled(isIdle);
    m_rename->setEnabled(isIdle && isGroup);
    m_remove->setEnabled(isIdle && isGroup);
    m_rename->setToolTip(reason.isEmpty() ? m_rename->text() : reason);
    m_remove->setToolTip(reason.isEmpty() ? m_remove->text() : reason);
    m_move->setEnabled(isIdle && index.isValid() && !m_model->isCategory(index));
    m_save->setEnabled(isIdle && m_isEdited);
    m_reload->setEnabled(isIdle);
}

/** While the store works, no further edit is taken. */
void DestinationsPanel::setBusy(bool busy)
{
    m_waiting->setVisible(busy);
    m_tree->setDragEnabled(!busy);
    m_tree->setAcceptDrops(!busy);
    refreshActions();
    showStatus();
}

void DestinationsPanel::showStatus()
{
    if (isReading()) {
        m_status->setText(tr("Reading…  Destinations: %1").arg(m_model->destinationCount()));
        return;
    }
    const bool byGroup = m_model->dataType() == KyDestination::Data_Group;
    const QString text =
        byGroup ? tr("Destinations: %1   Groups: %2") : tr("Destinations: %1   Channels: %2");
    m_status->setText(text.arg(m_model->destinationCount()).arg(m_model->categoryCount()));
}

/** The first column of the current row. */
QModelIndex DestinationsPanel::current() const
{
    const QModelIndex current = m_tree->currentIndex();
    return current.isValid() ? current.sibling(current.row(), DestinationModel::NameColumn) : current;
}

bool DestinationsPanel::askForName(const QString &title, const QString &oldName, QString *name)
{
    QStringList usedNames = m_model->categoryNames(KyDestination::Data_Group);
    usedNames.removeOne(oldName); // another letter case of its own name is free
    KyCommonInputNameDialog dialog(this, title, tr("Name of the group:"), oldName, new NameChecker(usedNames),
                                   !oldName.isEmpty());
    if (dialog.exec() != QDialog::Accepted)
        return false;
    *name = dialog.text().trimmed();
    return !name->isEmpty();
}
