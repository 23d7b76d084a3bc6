#include "KyRandomFolder.h"
#include "KyTestEnvironment.h"
#include "KyTestMain.h"

#include <KyFileSystemModel.h>

#include <QTreeView>

namespace Kyte {
namespace Test {

/** A model that a view shows while its folders change on disk thousands of times. */
class WatchedFoldersTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void folderUnderAFormerName_isWatched();
    void model_followsRandomChanges_data();
    void model_followsRandomChanges();
};

static QtMessageHandler formerHandler = nullptr;
static const QString EXCLUSION = QStringLiteral("excluded-.*");

/** The entries as the model is to show them, folders with a separator at the end. */
static void appendDisk(const KyFileSystemModel &model, const QString &folder, QStringList *paths)
{
    const QRegExp exclusion(EXCLUSION, Qt::CaseInsensitive);
    const QFileInfoList entries = QDir(folder).entryInfoList(model.filter(), model.sortFlag());
    for (const QFileInfo &entry : entries) {
        if (exclusion.exactMatch(entry.fileName()))
            continue;
        paths->append(entry.filePath());
        if (entry.isDir())
            appendDisk(model, entry.filePath(), paths);
    }
}

/**
 * The entries that are shown. Folders that are not read yet are read, as a view does that expands them.
 * Where changes are not collected, a folder that changes before a view reads it is read twice and has each
 * entry twice: then only the first ones count, which are those that index() finds by path.
 */
static void
appendShown(KyFileSystemModel *model, const QModelIndex &folder, bool firstOnly, QStringList *paths)
{
    if (model->canFetchMore(folder) && model->rowCount(folder) == 0)
        model->fetchMore(folder);
    QSet<QString> names;
    for (int row = 0; row < model->rowCount(folder); ++row) {
        const QModelIndex index = model->index(row, 0, folder);
        if (firstOnly && names.contains(model->fileName(index)))
            continue;
        names.insert(model->fileName(index));
        paths->append(model->filePath(index));
        if (model->isDir(index))
            appendShown(model, index, firstOnly, paths);
    }
}

static QStringList onDisk(const KyFileSystemModel &model)
{
    QStringList paths;
    appendDisk(model, model.rootPath(), &paths);
    return paths;
}

static QStringList shown(KyFileSystemModel *model)
{
    QStringList paths;
    appendShown(model, QModelIndex(), model->refreshDelay() == 0, &paths);
    return paths;
}

/** Expands, collapses, scrolls or selects some row, as a user does meanwhile. */
static void touchView(RandomFolder *folder, QTreeView *view)
{
    QModelIndex index;
    for (int depth = 1 + folder->random(3); depth > 0; --depth) {
        const int rows = view->model()->rowCount(index);
        if (rows == 0)
            break;
        index = view->model()->index(folder->random(rows), 0, index);
    }
    switch (folder->random(4)) {
    case 0:
        view->collapse(index);
        break;
    case 1:
        view->setCurrentIndex(index);
        break;
    case 2:
        view->scrollTo(index);
        break;
    default:
        view->expand(index);
    }
}

/** Of a folder that vanishes, the neighbour leaves the tree unannounced until all is read again: Qt minds. */
static void skipExpectedWarnings(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (!message.startsWith(QLatin1String("QAbstractItemModel::endRemoveRows:  Invalid index")))
        formerHandler(type, context, message);
}

void WatchedFoldersTest::initTestCase()
{
    formerHandler = qInstallMessageHandler(skipExpectedWarnings);
}

void WatchedFoldersTest::cleanupTestCase()
{
    qInstallMessageHandler(formerHandler);
}

void WatchedFoldersTest::folderUnderAFormerName_isWatched()
{
    const QTemporaryDir folder;
    const QString menus = folder.filePath(QStringLiteral("Menus"));
    QVERIFY(QDir().mkdir(menus));
    writeFile(menus + QStringLiteral("/lunch.png"), "x");
    KyFileSystemModel model;
    model.setRootPath(folder.path());
    model.fetchMore(model.index(menus));

    QVERIFY(QDir().rename(menus, folder.filePath(QStringLiteral("Old menus"))));
    QTRY_VERIFY(!model.index(menus).isValid());
    QVERIFY(QDir().mkdir(menus));
    writeFile(menus + QStringLiteral("/dinner.png"), "x");
    QTRY_VERIFY(model.index(menus).isValid());
    model.fetchMore(model.index(menus));
    QCOMPARE(model.rowCount(model.index(menus)), 1);

    writeFile(menus + QStringLiteral("/brunch.png"), "x");
    QTRY_COMPARE(model.rowCount(model.index(menus)), 2);
}

void WatchedFoldersTest::model_followsRandomChanges_data()
{
    QTest::addColumn<int>("operations");
    QTest::addColumn<int>("largestBatch"); // between two looks at the event loop
    QTest::addColumn<int>("delay");
    QTest::newRow("each change at once") << 2000 << 1 << 0;
    QTest::newRow("batches at once") << 4000 << 40 << 0;
    QTest::newRow("collected changes") << 20000 << 40 << 5;
}

void WatchedFoldersTest::model_followsRandomChanges()
{
    QFETCH(int, operations);
    QFETCH(int, largestBatch);
    QFETCH(int, delay);
    RandomFolder folder(4711);
    KyFileSystemModel model;
    model.setRefreshDelay(delay);
    model.setExclusionNamePattern({EXCLUSION});
    model.setRootPath(folder.path());
    QVERIFY(model.canInstallFileSystemWatcher());
    QTreeView view;
    view.setModel(&model);
    view.show();

    while (operations > 0) {
        const int batch = qMin(1 + folder.random(largestBatch), operations);
        for (int i = 0; i < batch; ++i)
            folder.change();
        operations -= batch;
        QCoreApplication::processEvents();
        touchView(&folder, &view);
    }

    QTRY_COMPARE(shown(&model), onDisk(model));
    // Now that every folder is read: few changes leave most of them, the root above all, as they are.
    for (int round = 0; round < 30; ++round) {
        for (int i = 0; i < 3; ++i)
            folder.change();
        QTRY_COMPARE(shown(&model), onDisk(model));
    }
    for (const QString &path : onDisk(model))
        QCOMPARE(model.filePath(model.index(path)), path);
}

} // namespace Test
} // namespace Kyte

KYTE_TEST_MAIN(Kyte::Test::WatchedFoldersTest)

#include "tst_watchedFolders.moc"
