#include "BrowserWindow.h"

#include "MediaModel.h"

#include <QLineEdit>
#include <QListView>
#include <QSplitter>
#include <QStatusBar>
#include <QStyledItemDelegate>
#include <QToolBar>
#include <QTreeView>

static const int REFRESH_DELAY = 100; // milliseconds: a burst of changes is one refresh
static const QSize PICTURE_SIZE(128, 96);
static const QSize CELL_SIZE(152, 136);
static const int COLUMN_WIDTHS[] = {160, 65, 70, 165};

/** All pictures take the same place, also those whose thumbnails are still to come. */
class PictureDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const override
    {
        return CELL_SIZE;
    }
};

BrowserWindow::BrowserWindow(const QString &root, QWidget *parent)
    : QMainWindow(parent)
    , m_model(new MediaModel(this))
    , m_filter(new QLineEdit(this))
    , m_tree(new QTreeView(this))
    , m_pictures(new QListView(this))
{
    setWindowTitle(tr("Media browser"));
    resize(1000, 480);
    m_model->setReadOnly(false);
    m_model->setRefreshDelay(REFRESH_DELAY);
    m_model->setFilter(m_model->filter() | QDir::AllDirs); // the filter line leaves the folders
    m_model->setRootPath(root);

    m_filter->setPlaceholderText(tr("Part of a name, or a wildcard such as *.png"));
    m_filter->setClearButtonEnabled(true);
    QToolBar *bar = addToolBar(tr("Filter"));
    bar->setMovable(false);
    bar->addWidget(m_filter);
    makeTree();
    makePictures();
    auto *splitter = new QSplitter(this);
    splitter->addWidget(m_tree);
    splitter->addWidget(m_pictures);
    splitter->setSizes({470, 530});
    setCentralWidget(splitter);
    statusBar();

    m_restoring.setSingleShot(true);
    connect(&m_restoring, SIGNAL(timeout()), this, SLOT(restoreViews()));
    // Only afterwards: the model may not be read further while it tells of a change.
    connect(m_model, SIGNAL(layoutChanged()), &m_restoring, SLOT(start()));
    connect(m_model, SIGNAL(rowsRemoved(QModelIndex, int, int)), &m_restoring, SLOT(start()));
    connect(m_model, SIGNAL(thumbnailRead()), m_tree->viewport(), SLOT(update()));
    connect(m_model, SIGNAL(thumbnailRead()), m_pictures->viewport(), SLOT(update()));
    connect(m_model, SIGNAL(fileRenamed(QString, QString, QString)), this,
            SLOT(onFileRenamed(QString, QString, QString)));
    connect(m_filter, SIGNAL(textChanged(QString)), this, SLOT(onFilterEdited(QString)));
    m_folder = m_model->rootPath();
    restoreViews();
}

void BrowserWindow::openFolder(const QString &path)
{
    const QModelIndex folder = reach(path);
    m_tree->setCurrentIndex(folder);
    m_tree->expand(folder);
}

/** Not when the current row changes: the first one becomes that as soon as the tree has the focus. */
void BrowserWindow::onSelectionChanged()
{
    const QModelIndex current = m_tree->selectionModel()->selectedRows().value(0);
    if (m_model->filePath(current).isEmpty() || !current.isValid())
        return; // nothing, or what a refresh has replaced
    m_current = m_model->filePath(current);
    m_folder = m_model->isDir(current) ? m_current : m_model->fileInfo(current).absolutePath();
    m_restoring.start();
}

void BrowserWindow::onActivated(const QModelIndex &index)
{
    if (m_model->isDir(index))
        openFolder(m_model->filePath(index));
}

void BrowserWindow::onExpanded(const QModelIndex &index)
{
    m_expanded.insert(m_model->filePath(index));
}

void BrowserWindow::onCollapsed(const QModelIndex &index)
{
    m_expanded.remove(m_model->filePath(index));
}

void BrowserWindow::onFilterEdited(const QString &text)
{
    QStringList filters;
    if (text.contains(QLatin1Char('*')) || text.contains(QLatin1Char('?')))
        filters.append(text);
    else if (!text.isEmpty())
        filters.append(QStringLiteral("*%1*").arg(text));
    m_model->setNameFilters(filters);
    m_model->setNameFiltersInRoot(filters);
    m_model->update(QModelIndex());
}

void BrowserWindow::onFileRenamed(const QString &folder, const QString &oldName, const QString &newName)
{
    const auto renamed = [from = QDir(folder).filePath(oldName),
                          to = QDir(folder).filePath(newName)](const QString &path) {
        return path == from || path.startsWith(from + QLatin1Char('/')) ? to + path.mid(from.size()) : path;
    };
    m_current = renamed(m_current);
    m_folder = renamed(m_folder);
    QSet<QString> expanded;
    for (const QString &path : qAsConst(m_expanded))
        expanded.insert(renamed(path));
    m_expanded = expanded;
    statusBar()->showMessage(tr("%1 is %2 now").arg(oldName, newName));
}

/** Brings both views back to where they were, as far as the folders are still there. */
void BrowserWindow::restoreViews()
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
    const QModelIndex current = reach(m_current);
    if (current.isValid() && current != m_tree->currentIndex())
        m_tree->setCurrentIndex(current);
    showPictures();
}

void BrowserWindow::makeTree()
{
    m_tree->setModel(m_model);
    for (int column = 0; column < m_model->columnCount(); ++column)
        m_tree->setColumnWidth(column, COLUMN_WIDTHS[column]);
    m_tree->setUniformRowHeights(true);
    m_tree->setEditTriggers(QAbstractItemView::EditKeyPressed);
    m_tree->setDragDropMode(QAbstractItemView::DragDrop);
    m_tree->setDefaultDropAction(Qt::MoveAction);
    connect(m_tree->selectionModel(), SIGNAL(selectionChanged(QItemSelection, QItemSelection)), this,
            SLOT(onSelectionChanged()));
    connect(m_tree, SIGNAL(expanded(QModelIndex)), this, SLOT(onExpanded(QModelIndex)));
    connect(m_tree, SIGNAL(collapsed(QModelIndex)), this, SLOT(onCollapsed(QModelIndex)));
}

void BrowserWindow::makePictures()
{
    m_pictures->setViewMode(QListView::IconMode); // before the rest, of which it changes the defaults
    m_pictures->setMovement(QListView::Static);
    m_pictures->setModel(m_model);
    m_pictures->setResizeMode(QListView::Adjust);
    m_pictures->setIconSize(PICTURE_SIZE);
    m_pictures->setGridSize(CELL_SIZE);
    m_pictures->setItemDelegate(new PictureDelegate(m_pictures));
    m_pictures->setWordWrap(true);
    m_pictures->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_pictures->setEditTriggers(QAbstractItemView::EditKeyPressed);
    m_pictures->setDragDropMode(QAbstractItemView::DragDrop);
    m_pictures->setDefaultDropAction(Qt::MoveAction);
    connect(m_pictures, SIGNAL(activated(QModelIndex)), this, SLOT(onActivated(QModelIndex)));
}

/** The index of \a path, once all folders above are read; invalid for the root and what is not there. */
QModelIndex BrowserWindow::reach(const QString &path)
{
    const QModelIndex known = m_model->index(path);
    const QString root = m_model->rootPath();
    if (known.isValid() || !path.startsWith(root) || path == root)
        return known;
    const QModelIndex folder = reach(QFileInfo(path).absolutePath());
    if (folder.isValid() && m_model->canFetchMore(folder))
        m_model->fetchMore(folder);
    return m_model->index(path);
}

void BrowserWindow::showPictures()
{
    while (!QFileInfo(m_folder).isDir() && m_folder != m_model->rootPath())
        m_folder = QFileInfo(m_folder).absolutePath();
    const QModelIndex folder = reach(m_folder);
    if (m_model->canFetchMore(folder))
        m_model->fetchMore(folder);
    if (m_pictures->rootIndex() != folder)
        m_pictures->setRootIndex(folder);
    m_model->readThumbnails(folder);
}
