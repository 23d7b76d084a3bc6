#include "MediaPanel.h"

#include "EmptyHint.h"
#include "MediaModel.h"
#include "MessageBar.h"
#include "NameChecker.h"
#include "Thumbnails.h"

#include <KyCommonInputNameDialog.h>
#include <KyEditorCommon.h>
#include <KyExtension.h>
#include <Path.h>

#include <QAction>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QResizeEvent>
#include <QSplitter>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>

using namespace Kyte;

static const int NAME_COLUMN = 0;
static const int REFRESH_DELAY = 200; // milliseconds: a burst of changes is one refresh
static const int FILTER_DELAY = 200; // milliseconds: a word that is typed is one filter
static const QSize PICTURE_SIZE(96, 60);
static const QSize CELL_SIZE(112, 92);
static const int TREE_HEIGHT = 110;
static const int BATCH_SIZE = 500; // cells that are laid out at a time

/** All pictures take the same place, also those whose thumbnails are still to come. */
class CellDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const override
    {
        return CELL_SIZE;
    }
};

MediaPanel::MediaPanel(QWidget *parent)
    : QWidget(parent)
    , m_thumbnails(new Thumbnails(this))
    , m_folders(new MediaModel(nullptr, this))
    , m_files(new MediaModel(m_thumbnails, this))
    , m_messages(new MessageBar(this))
    , m_filter(new QLineEdit(this))
    , m_path(new QLabel(this))
    , m_status(new QLabel(this))
    , m_splitter(new QSplitter(Qt::Vertical, this))
    , m_tree(new QTreeView(m_splitter))
    , m_pictures(new QListView(m_splitter))
{
    for (MediaModel *model : {m_folders, m_files}) {
        model->setReadOnly(false);
        model->setRefreshDelay(REFRESH_DELAY);
    }
    m_folders->setFilter(QDir::Dirs | QDir::NoDotAndDotDot);
    m_files->setFilter(m_files->filter() | QDir::AllDirs); // the filter line leaves the folders
    m_filter->setObjectName(QStringLiteral("mediaFilter"));
    m_filter->setPlaceholderText(tr("Part of a name, or *.png"));
    m_filter->setClearButtonEnabled(true);
    m_path->setTextFormat(Qt::PlainText);
    makeActions();
    makeTree();
    makePictures();
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setSizes({TREE_HEIGHT, 2 * TREE_HEIGHT});
    m_splitter->setChildrenCollapsible(false);

    auto *bar = new QToolBar(this);
    const int icons = style()->pixelMetric(QStyle::PM_SmallIconSize);
    bar->setIconSize(QSize(icons, icons));
    bar->addAction(m_up);
    bar->addAction(m_newFolder);
    bar->addAction(m_convert);
    bar->addWidget(m_path);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(bar);
    layout->addWidget(m_filter);
    layout->addWidget(m_messages);
    layout->addWidget(m_splitter, 1);
    layout->addWidget(m_status);
    connectModels();
    refreshActions();
}

void MediaPanel::setRoot(const QString &path)
{
    m_root = QDir::cleanPath(QDir(path).absolutePath());
    if (!QDir().mkpath(m_root)) {
        m_messages->showError(tr("The folder %1 cannot be made.").arg(QDir::toNativeSeparators(m_root)));
        return;
    }
    // The library itself is the one row at the top.
    m_folders->setNameFiltersInRoot({QFileInfo(m_root).fileName()});
    m_folders->setRootPath(QFileInfo(m_root).absolutePath());
    m_expanded.insert(m_root);
    openFolder(m_root);
}

QString MediaPanel::folder() const
{
    return m_folder;
}

void MediaPanel::openFolder(const QString &path)
{
    showFolder(QDir::cleanPath(path));
    restoreTree();
}

/** The panel is high and narrow beside a stage, low and wide below one. */
void MediaPanel::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_splitter->setOrientation(width() > 1.3 * height() ? Qt::Horizontal : Qt::Vertical);
}

void MediaPanel::onFolderSelected()
{
    const QModelIndex selected = m_tree->selectionModel()->selectedRows().value(0);
    const QString path = selected.isValid() ? m_folders->filePath(selected) : QString();
    if (!path.isEmpty() && path != m_folder)
        showFolder(path);
}

void MediaPanel::onExpanded(const QModelIndex &index)
{
    m_expanded.insert(m_folders->filePath(index));
}

void MediaPanel::onCollapsed(const QModelIndex &index)
{
    m_expanded.remove(m_folders->filePath(index));
}

void MediaPanel::onActivated(const QModelIndex &index)
{
    if (m_files->isDir(index))
        openFolder(m_files->filePath(index));
    else if (isPresentation(index))
        emit presentationChosen(m_files->filePath(index));
}

void MediaPanel::onFileRenamed(const QString &folder, const QString &oldName, const QString &newName)
{
    const QString from = QDir(folder).filePath(oldName);
    const QString to = QDir(folder).filePath(newName);
    const auto renamed = [from, to](const QString &path) {
        return path == from || path.startsWith(from + QLatin1Char('/')) ? to + path.mid(from.size()) : path;
    };
    QSet<QString> expanded;
    for (const QString &path : qAsConst(m_expanded))
        expanded.insert(renamed(path));
    m_expanded = expanded;
    if (renamed(m_folder) != m_folder)
        showFolder(renamed(m_folder));
    if (QFileInfo(to).isFile())
        m_thumbnails->carry(from, to);
    m_messages->clear();
}

/** A folder without folders is not watched for them: what is seen among its files is told to the tree. */
void MediaPanel::onFilesChanged()
{
    m_status->setText(tr("Entries: %1").arg(m_files->rowCount()));
    const QModelIndex folder = m_folders->index(m_folder, NAME_COLUMN);
    if (folder.isValid() && !m_folders->canFetchMore(folder)
        && shownFolderCount() != m_folders->rowCount(folder))
        QTimer::singleShot(0, this, SLOT(refreshShownFolder())); // not while a model tells of a change
    refreshActions();
}

void MediaPanel::refreshShownFolder()
{
    const QModelIndex folder = m_folders->index(m_folder, NAME_COLUMN);
    if (folder.isValid())
        m_folders->update(folder);
}

void MediaPanel::onDropFinished(const QStringList &failed)
{
    const int namedFiles = 3;
    if (failed.isEmpty())
        m_messages->clear();
    else if (failed.size() <= namedFiles)
        m_messages->showError(tr("Not moved or copied, because the name is in use there or the folder is "
                                 "protected: %1")
                                  .arg(failed.join(QStringLiteral(", "))));
    else
        m_messages->showError(tr("Not moved or copied, because the names are in use there or the folder is "
                                 "protected: %1 and %2 more")
                                  .arg(QStringList(failed.mid(0, namedFiles)).join(QStringLiteral(", ")))
                                  .arg(failed.size() - namedFiles));
}

void MediaPanel::refreshActions()
{
    m_up->setEnabled(m_folder != m_root && !m_folder.isEmpty());
    m_newFolder->setEnabled(!m_folder.isEmpty());
    const QModelIndex current = m_pictures->currentIndex();
    m_rename->setEnabled(current.isValid());
    m_convert->setEnabled(isPresentation(current));
}

void MediaPanel::applyFilter()
{
    const QString text = m_filter->text();
    QStringList filters;
    if (text.contains(QLatin1Char('*')) || text.contains(QLatin1Char('?')))
        filters.append(text);
    else if (!text.isEmpty())
        filters.append(QStringLiteral("*%1*").arg(text));
    m_files->setNameFiltersInRoot(filters);
    m_files->update(QModelIndex());
}

/** Brings the tree back to what was expanded and current, as far as the folders are still there. */
void MediaPanel::restoreTree()
{
    QStringList expanded = m_expanded.values();
    expanded.sort(); // a folder before those in it
    for (const QString &path : qAsConst(expanded)) {
        const QModelIndex folder = reach(path);
        if (!folder.isValid() && !QFileInfo::exists(path))
            m_expanded.remove(path);
        else if (folder.isValid() && !m_tree->isExpanded(folder))
            m_tree->expand(folder);
    }
    QString shown = m_folder;
    while (!QFileInfo(shown).isDir() && shown.startsWith(m_root) && shown != m_root)
        shown = QFileInfo(shown).absolutePath();
    if (shown != m_folder)
        showFolder(shown);
    const QModelIndex current = reach(m_folder);
    if (current.isValid() && !m_tree->selectionModel()->isSelected(current))
        m_tree->setCurrentIndex(current);
}

void MediaPanel::goUp()
{
    openFolder(QFileInfo(m_folder).absolutePath());
}

void MediaPanel::makeFolder()
{
    const QStringList used = QDir(m_folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    KyCommonInputNameDialog dialog(this, tr("New folder"), tr("Name of the folder:"), QString(),
                                   new NameChecker(used), false);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString name = dialog.text().trimmed();
    if (name.isEmpty())
        return;
    if (!QDir(m_folder).mkdir(name))
        m_messages->showError(tr("The folder \"%1\" cannot be made here.").arg(name));
}

void MediaPanel::rename()
{
    m_pictures->edit(m_pictures->currentIndex());
}

void MediaPanel::convert()
{
    emit presentationChosen(m_files->filePath(m_pictures->currentIndex()));
}

void MediaPanel::showInFileManager()
{
    KyEditorCommon::openFolderWithShell(m_folder, this);
}

void MediaPanel::makeActions()
{
    m_up = new QAction(style()->standardIcon(QStyle::SP_FileDialogToParent), tr("Up"), this);
    m_newFolder = new QAction(style()->standardIcon(QStyle::SP_FileDialogNewFolder), tr("New folder…"), this);
    m_rename = new QAction(tr("Rename"), this); // the view knows the key
    m_convert = new QAction(tr("Convert…"), this);
    m_show = new QAction(tr("Show in the file manager"), this);
    m_convert->setToolTip(tr("Turn the presentation into pictures"));
    const QPair<QAction *, const char *> triggers[] = {{m_up, SLOT(goUp())},
                                                       {m_newFolder, SLOT(makeFolder())},
                                                       {m_rename, SLOT(rename())},
                                                       {m_convert, SLOT(convert())},
                                                       {m_show, SLOT(showInFileManager())}};
    for (const auto &trigger : triggers)
        connect(trigger.first, SIGNAL(triggered()), this, trigger.second);
}

void MediaPanel::makeTree()
{
    m_tree->setObjectName(QStringLiteral("mediaFolders"));
    m_tree->setModel(m_folders);
    m_tree->setHeaderHidden(true);
    for (int column = NAME_COLUMN + 1; column < m_folders->columnCount(); ++column)
        m_tree->hideColumn(column);
    m_tree->setUniformRowHeights(true);
    m_tree->setEditTriggers(QAbstractItemView::EditKeyPressed);
    m_tree->setDragDropMode(QAbstractItemView::DragDrop);
    m_tree->setDefaultDropAction(Qt::MoveAction);
    m_tree->setMinimumHeight(60);
    connect(m_tree->selectionModel(), SIGNAL(selectionChanged(QItemSelection, QItemSelection)), this,
            SLOT(onFolderSelected()));
    connect(m_tree, SIGNAL(expanded(QModelIndex)), this, SLOT(onExpanded(QModelIndex)));
    connect(m_tree, SIGNAL(collapsed(QModelIndex)), this, SLOT(onCollapsed(QModelIndex)));
}

void MediaPanel::makePictures()
{
    m_pictures->setObjectName(QStringLiteral("mediaFiles"));
    m_pictures->setViewMode(QListView::IconMode); // before the rest, of which it changes the defaults
    m_pictures->setMovement(QListView::Static);
    m_pictures->setModel(m_files);
    m_pictures->setResizeMode(QListView::Adjust);
    m_pictures->setIconSize(PICTURE_SIZE);
    m_pictures->setGridSize(CELL_SIZE);
    m_pictures->setUniformItemSizes(true);
    m_pictures->setLayoutMode(QListView::Batched);
    m_pictures->setBatchSize(BATCH_SIZE);
    m_pictures->setItemDelegate(new CellDelegate(m_pictures));
    m_pictures->setWordWrap(true);
    m_pictures->setTextElideMode(Qt::ElideMiddle);
    m_pictures->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_pictures->setEditTriggers(QAbstractItemView::EditKeyPressed);
    m_pictures->setDragDropMode(QAbstractItemView::DragDrop);
    m_pictures->setDefaultDropAction(Qt::MoveAction);
    m_pictures->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_pictures->addActions({m_rename, m_convert, m_newFolder, m_show});
    new EmptyHint(tr("Nothing is here. Drop files into this folder, or clear the filter."), m_pictures);
    connect(m_pictures, SIGNAL(activated(QModelIndex)), this, SLOT(onActivated(QModelIndex)));
    connect(m_pictures->selectionModel(), SIGNAL(currentChanged(QModelIndex, QModelIndex)), this,
            SLOT(refreshActions()));
}

void MediaPanel::connectModels()
{
    m_filtering.setSingleShot(true);
    m_filtering.setInterval(FILTER_DELAY);
    m_restoring.setSingleShot(true);
    connect(m_filter, SIGNAL(textChanged(QString)), &m_filtering, SLOT(start()));
    connect(&m_filtering, SIGNAL(timeout()), this, SLOT(applyFilter()));
    connect(&m_restoring, SIGNAL(timeout()), this, SLOT(restoreTree()));
    // Only afterwards: the model may not be read further while it tells of a change.
    connect(m_folders, SIGNAL(layoutChanged()), &m_restoring, SLOT(start()));
    connect(m_folders, SIGNAL(rowsRemoved(QModelIndex, int, int)), &m_restoring, SLOT(start()));
    connect(m_files, SIGNAL(layoutChanged()), this, SLOT(onFilesChanged()));
    connect(m_thumbnails, SIGNAL(changed()), m_pictures->viewport(), SLOT(update()));
    for (MediaModel *model : {m_folders, m_files}) {
        connect(model, SIGNAL(fileRenamed(QString, QString, QString)), this,
                SLOT(onFileRenamed(QString, QString, QString)));
        connect(model, SIGNAL(dropFinished(QStringList)), this, SLOT(onDropFinished(QStringList)));
        connect(model, SIGNAL(fileCarried(QString, QString)), m_thumbnails, SLOT(carry(QString, QString)));
    }
}

void MediaPanel::showFolder(const QString &path)
{
    m_folder = path;
    m_thumbnails->forgetWaiting();
    m_pictures->setCurrentIndex(QModelIndex());
    m_files->setRootPath(path);
    m_pictures->scrollToTop();
    m_path->setText(QDir::toNativeSeparators(QDir(QFileInfo(m_root).absolutePath()).relativeFilePath(path)));
    m_messages->clear();
    refreshActions();
}

/** The index of \a path, once all folders above are read; invalid for what is not there. */
QModelIndex MediaPanel::reach(const QString &path)
{
    const QModelIndex known = m_folders->index(path, NAME_COLUMN);
    if (known.isValid() || !path.startsWith(m_root))
        return known;
    const QModelIndex above = reach(QFileInfo(path).absolutePath());
    if (above.isValid() && m_folders->canFetchMore(above))
        m_folders->fetchMore(above);
    return m_folders->index(path, NAME_COLUMN);
}

int MediaPanel::shownFolderCount() const
{
    int count = 0; // folders come first
    while (count < m_files->rowCount() && m_files->isDir(m_files->index(count, NAME_COLUMN)))
        ++count;
    return count;
}

bool MediaPanel::isPresentation(const QModelIndex &index) const
{
    return index.isValid()
        && KyExtension::getMediaType(Path::getExtension(m_files->fileName(index))) == MediaType::Presentation;
}
