#include "KyFileModelProbe.h"
#include "KyTestEnvironment.h"
#include "KyTestMain.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QIdentityProxyModel>
#include <QStandardItemModel>
#include <QTemporaryDir>

#include <memory>

using namespace Kyte;
using namespace Kyte::Test;

using Item = KyFileSystemItem;

Q_DECLARE_METATYPE(QDir::Filters)
Q_DECLARE_METATYPE(QDir::SortFlags)

/** Structure, fetching, refreshing and removing; what is shown of a node is tested elsewhere. */
class tst_KyFileSystemModelTree : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void withoutRoot_everythingIsNeutral();
    void setRootPath_listsTheRoot();
    void setRootPath_ofNoFolder_changesNothing_data();
    void setRootPath_ofNoFolder_changesNothing();
    void setRootPath_again_data();
    void setRootPath_again();
    void setRootPath_ofAnotherFolder_replacesTheTree();
    void setRootPath_cleansThePath_data();
    void setRootPath_cleansThePath();
    void setRootPath_takesTheRootsFilters();
    void rootIndex_andInvalidIndex_areTheRoot();

    void index_data();
    void index();
    void parent_ofEveryLevel();
    void sibling();
    void foreignIndexes_areNothing();
    void proxies_reachTheNodes();
    void loadedModel_isConsistent();

    void canFetchMore_isTrueOnceForFolders();
    void fetchMore_appendsTheListing();
    void fetchMore_twice_appendsTwice();
    void fetchMore_ofTheRootIndex_appendsAgain();
    void fetchMore_ofNothing_data();
    void fetchMore_ofNothing();
    void fetchMore_ofAnEmptyFolder();
    void fetchMore_ofAFolderWithExcludedEntriesOnly();
    void fetchMore_ofAVanishedFolder();
    void listing_followsFiltersAndOrder_data();
    void listing_followsFiltersAndOrder();
    void exclusion_data();
    void exclusion();

    void update_ofAFolder_destroysEveryOtherChild_data();
    void update_ofAFolder_destroysEveryOtherChild();
    void update_ofAFolder_destroysSubtreesFromTheEnd();
    void update_ofAFolder_keepsTheUnlinkedResolvable();
    void update_ofAFolder_leavesTheFetchFlag();
    void update_ofAFolder_thatIsEmptyNow();
    void update_ofAFolder_withoutChildren();
    void update_ofTheRoot_takesTheRootsFilters();
    void update_ofAFile_replacesTheNode();
    void update_ofAFile_readsItAnew();
    void update_ofAFile_thatIsAFolderNow();
    void update_ofAnUnlinkedFile_insertsItAgain();
    void update_ofWhatIsGone_removesTheRow();
    void update_ofTheDeletedRoot_changesNothing();
    void update_ofAStaleIndex_changesNothing();
    void update_ofARootThatIsAFileNow();
    void refresh_givesNoAddressAgain_data();
    void refresh_givesNoAddressAgain();

    void removeRows_data();
    void removeRows();
    void removeRows_belowTheInvalidIndex_destroysNothing_data();
    void removeRows_belowTheInvalidIndex_destroysNothing();
    void removeRows_belowTheRootIndex_destroys();
    void removeRows_ofNothing_data();
    void removeRows_ofNothing();
    void removeRows_ofNothingOnDisk();

    void unlinkedNodes_endWithTheRoot();
    void indexesOfDestroyedNodes_areNothing();

    void findItem_data();
    void findItem();
    void findItem_fromAStart();
    void findItem_amongNamesThatDifferInCase();
    void findItem_afterChanges();
    void indexOfPath();

    void deleteItem_tellsTheNodesInOrder();
    void deleteItem_ofTheUnregistered_changesNothing();
    void deleteItem_ofTheRoot();
    void deleteItem_unregisteredChildren();
    void registry();
    void clearedRegistry_leavesNoLeak_data();
    void clearedRegistry_leavesNoLeak();

private:
    void open(const QStringList &paths);
    QModelIndex fetched(const QString &name);
    QString path(const QString &name) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FileModel> m_model;
    SignalRecorder *m_recorder = nullptr;
};

void tst_KyFileSystemModelTree::init()
{
    m_folder.reset(new QTemporaryDir);
    m_model.reset(new FileModel);
    m_model->setUseFileSystemWatcher(false);
    m_recorder = new SignalRecorder(m_model.get(), m_folder->path());
}

void tst_KyFileSystemModelTree::cleanup()
{
    m_model.reset();
    m_folder.reset();
}

QString tst_KyFileSystemModelTree::path(const QString &name) const
{
    return m_folder->filePath(name);
}

/** Shows the test's folder with these entries and forgets the signals so far. */
void tst_KyFileSystemModelTree::open(const QStringList &paths)
{
    makeEntries(m_folder->path(), paths);
    m_model->setRootPath(m_folder->path());
    m_recorder->learn();
    m_recorder->take();
}

QModelIndex tst_KyFileSystemModelTree::fetched(const QString &name)
{
    const QModelIndex index = m_model->at(path(name));
    m_model->fetchMore(index);
    m_recorder->learn();
    m_recorder->take();
    return m_model->at(path(name));
}

void tst_KyFileSystemModelTree::withoutRoot_everythingIsNeutral()
{
    FileModel &model = *m_model;
    const QModelIndex none;
    QVERIFY(!model.rootIndex().isValid());
    QCOMPARE(model.rootPath(), QString());
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), 4);
    QVERIFY(!model.hasChildren());
    QVERIFY(!model.canFetchMore(none));
    QVERIFY(!model.index(0, 0).isValid());
    QVERIFY(!model.index(QStringLiteral("/"), 0).isValid());
    QVERIFY(!model.index(QString(), 0).isValid());
    QVERIFY(!model.parent(none).isValid());
    QVERIFY(!model.sibling(0, 0, none).isValid());
    QVERIFY(!model.data(none).isValid());
    QVERIFY(!model.setData(none, QStringLiteral("a")));
    QCOMPARE(model.flags(none), Qt::NoItemFlags);
    QVERIFY(!model.removeRows(0, 1));
    QCOMPARE(model.fileInfo(none).filePath(), QString());
    QCOMPARE(model.filePath(none), QString());
    QCOMPARE(model.fileName(none), QString());
    QVERIFY(!model.isDir(none));
    QVERIFY(model.icon(none).isNull());
    QVERIFY(!model.getItem(none));
    QVERIFY(!model.getParent(nullptr));
    QVERIFY(!model.findItem(QStringLiteral("/")));
    QVERIFY(model.deleteItem(nullptr).isEmpty());
    model.fetchMore(none);
    model.update(none);
    model.onDirectoryChanged(QStringLiteral("/"));
    model.onFileChanged(QStringLiteral("/etc/passwd"));
    model.startFileSystemWatcher();
    model.stopFileSystemWatcher();
    QCOMPARE(m_recorder->take(), QStringList());
}

void tst_KyFileSystemModelTree::setRootPath_listsTheRoot()
{
    makeEntries(m_folder->path(), {"b/below/deep", "a/", "c", "D"});
    QVERIFY(!m_model->setRootPath(m_folder->path()).isValid());
    QCOMPARE(m_recorder->take(), QStringList({"layoutAboutToBeChanged", "layoutChanged"}));
    QCOMPARE(treeOf(*m_model), QStringList({"a/...", "b/...", "c", "D"}));
    QCOMPARE(m_model->rootPath(), m_folder->path());
    QVERIFY(m_model->getItem(QModelIndex())->canFetchMore()); // kept, though nothing is to be fetched
    QVERIFY(!m_model->canFetchMore(m_model->rootIndex()));
    QVERIFY(!m_model->canFetchMore(QModelIndex()));
}

void tst_KyFileSystemModelTree::setRootPath_ofNoFolder_changesNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("file") << QStringLiteral("file");
    QTest::newRow("missing") << QStringLiteral("none");
    QTest::newRow("empty") << QString();
}

void tst_KyFileSystemModelTree::setRootPath_ofNoFolder_changesNothing()
{
    QFETCH(QString, name);
    open({"file"});
    QVERIFY(!m_model->setRootPath(name.isEmpty() ? name : path(name)).isValid());
    QCOMPARE(m_model->rootPath(), m_folder->path());
    QCOMPARE(m_recorder->take(), QStringList());
    QCOMPARE(namesBelow(*m_model), QStringList({"file"}));
}

void tst_KyFileSystemModelTree::setRootPath_again_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("the same text") << 0;
    QTest::newRow("trailing separator") << 1;
    QTest::newRow("not cleaned") << 2;
    QTest::newRow("other letter case") << 3;
}

void tst_KyFileSystemModelTree::setRootPath_again()
{
    QFETCH(int, kind);
    makeEntries(m_folder->path(), {"root/a", "ROOT/b"});
    const QString root = path(QStringLiteral("root"));
    m_model->setRootPath(root);
    m_recorder->take();
    const QStringList before = namesBelow(*m_model); // on Windows both spellings are one folder
    makeEntries(root, {"new"});
    const QStringList paths = {root, root + QLatin1Char('/'), root + QStringLiteral("/../root"),
                               path(QStringLiteral("ROOT"))};
    const QModelIndex index = m_model->setRootPath(paths.at(kind));
    QVERIFY(index.isValid());
    QCOMPARE(index, m_model->rootIndex());
    QCOMPARE(m_recorder->take(), QStringList());
    QCOMPARE(m_model->rootPath(), root);
    QCOMPARE(namesBelow(*m_model), before);
}

void tst_KyFileSystemModelTree::setRootPath_ofAnotherFolder_replacesTheTree()
{
    open({"a/x", "b/y/z"});
    const QPersistentModelIndex kept(fetched(QStringLiteral("a")));
    const QModelIndex root = m_model->rootIndex();
    QVERIFY(!m_model->setRootPath(path(QStringLiteral("b"))).isValid());
    QCOMPARE(m_recorder->take(), QStringList({"layoutAboutToBeChanged", "layoutChanged"}));
    QCOMPARE(treeOf(*m_model), QStringList({"y/..."}));
    QCOMPARE(m_model->rootPath(), path(QStringLiteral("b")));
    QVERIFY(!m_model->data(kept).isValid());
    QVERIFY(!m_model->data(root).isValid());
    QVERIFY(m_model->rootIndex() != root);
}

void tst_KyFileSystemModelTree::setRootPath_cleansThePath_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::newRow("trailing separator") << QStringLiteral("/");
    QTest::newRow("two trailing separators") << QStringLiteral("//");
    QTest::newRow("dot") << QStringLiteral("/.");
    QTest::newRow("there and back") << QStringLiteral("/a/..");
}

void tst_KyFileSystemModelTree::setRootPath_cleansThePath()
{
    QFETCH(QString, suffix);
    makeEntries(m_folder->path(), {"root/a/x"});
    const QString root = path(QStringLiteral("root"));
    m_model->setRootPath(root + suffix);
    QCOMPARE(m_model->rootPath(), root);
    QCOMPARE(m_model->filePath(m_model->rootIndex()), root);
    QCOMPARE(m_model->fileName(m_model->rootIndex()), QStringLiteral("root"));
    QCOMPARE(m_model->rootIndex().data().toString(), QStringLiteral("root"));
    QCOMPARE(m_model->filePath(m_model->index(0, 0)), root + QStringLiteral("/a"));
    QVERIFY(m_model->at(root + QStringLiteral("/a")).isValid());
}

void tst_KyFileSystemModelTree::setRootPath_takesTheRootsFilters()
{
    m_model->setNameFiltersInRoot({"*.mp4", "f*"});
    m_model->setNameFilters({"*.png"});
    open({"a.mp4", "b.png", "folder/a.mp4", "folder/b.png", "other/x"});
    QCOMPARE(namesBelow(*m_model), QStringList({"folder", "a.mp4"})); // folders are hidden as well
    QCOMPARE(namesBelow(*m_model, fetched(QStringLiteral("folder"))), QStringList({"b.png"}));
    // The root's filters hold however the root is read.
    m_model->fetchMore(m_model->rootIndex());
    QCOMPARE(namesBelow(*m_model), QStringList({"folder", "a.mp4", "folder", "a.mp4"}));
}

void tst_KyFileSystemModelTree::rootIndex_andInvalidIndex_areTheRoot()
{
    open({"a"});
    const QModelIndex root = m_model->rootIndex();
    QVERIFY(root.isValid());
    QCOMPARE(root.row(), 0);
    QCOMPARE(root.column(), 0);
    QCOMPARE(m_model->getItem(root), m_model->getItem(QModelIndex()));
    QCOMPARE(root.internalPointer(), static_cast<void *>(m_model->getItem(QModelIndex())));
    QVERIFY(!root.parent().isValid());
    QVERIFY(!m_model->sibling(0, 0, root).isValid());
    QCOMPARE(m_model->rowCount(root), 1);
    QVERIFY(m_model->hasChildren(root));
    QVERIFY(m_model->hasChildren(QModelIndex()));
    QCOMPARE(m_model->filePath(QModelIndex()), m_folder->path());
    QVERIFY(m_model->isDir(QModelIndex()));
    QVERIFY(!m_model->icon(QModelIndex()).isNull());
    QVERIFY(!m_model->index(0, 0).parent().isValid());
    QVERIFY(!m_model->index(0, 0, root).parent().isValid());
}

void tst_KyFileSystemModelTree::index_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<bool>("valid");
    QTest::newRow("first") << 0 << 0 << true;
    QTest::newRow("last") << 1 << 3 << true;
    QTest::newRow("row behind") << 2 << 0 << false;
    QTest::newRow("row below") << -1 << 0 << false;
    QTest::newRow("column behind") << 0 << 4 << false;
    QTest::newRow("column below") << 0 << -1 << false;
}

void tst_KyFileSystemModelTree::index()
{
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(bool, valid);
    open({"a", "b"});
    for (const QModelIndex &parent : {QModelIndex(), m_model->rootIndex()}) {
        const QModelIndex index = m_model->index(row, column, parent);
        QCOMPARE(index.isValid(), valid);
        QCOMPARE(m_model->sibling(row, column, m_model->index(0, 0)), index);
        if (valid) {
            QCOMPARE(index.row(), row);
            QCOMPARE(index.column(), column);
            QCOMPARE(m_model->fileName(index), row == 0 ? QStringLiteral("a") : QStringLiteral("b"));
        }
    }
    QVERIFY(!m_model->index(0, 0, m_model->index(0, 0)).isValid()); // below a file
}

void tst_KyFileSystemModelTree::parent_ofEveryLevel()
{
    open({"a", "b/c/d"});
    const QModelIndex b = fetched(QStringLiteral("b"));
    const QModelIndex c = fetched(QStringLiteral("b/c"));
    QCOMPARE(b.row(), 0);
    const QModelIndex d = m_model->index(0, 2, c);
    QCOMPARE(d.parent(), c);
    QCOMPARE(d.parent().column(), 0);
    QCOMPARE(c.parent(), b);
    QVERIFY(!b.parent().isValid());
    QCOMPARE(m_model->rowCount(m_model->index(0, 3)), 1); // every column of a row is the same node
    // A parent that was taken out of the register is none.
    m_model->removeValidItem(m_model->getItem(b));
    QVERIFY(!c.parent().isValid());
    QVERIFY(!d.parent().isValid()); // the parent's parent is not registered
    m_model->addValidItem(static_cast<Item *>(b.internalPointer()));
    QCOMPARE(d.parent(), c);
    // A parent that left the list has no row.
    m_model->getItem(QModelIndex())->clearChild(m_model->getItem(b));
    QVERIFY(!c.parent().isValid());
    m_model->getItem(QModelIndex())->addChild(m_model->getItem(b));
    QCOMPARE(c.parent().row(), 1);
}

void tst_KyFileSystemModelTree::sibling()
{
    open({"a/x", "a/y", "b"});
    const QModelIndex a = fetched(QStringLiteral("a"));
    const QModelIndex x = m_model->index(0, 0, a);
    QCOMPARE(m_model->sibling(1, 2, x), m_model->index(1, 2, a));
    QCOMPARE(x.sibling(1, 0), m_model->index(1, 0, a));
    QVERIFY(!m_model->sibling(2, 0, x).isValid());
    QVERIFY(!m_model->sibling(0, 4, x).isValid());
    QVERIFY(!m_model->sibling(0, 0, QModelIndex()).isValid());
    QCOMPARE(m_model->sibling(1, 0, a), m_model->index(1, 0));
    m_model->removeRows(0, 1, m_model->rootIndex()); // destroys a
    QVERIFY(!m_model->sibling(1, 0, x).isValid());
}

void tst_KyFileSystemModelTree::foreignIndexes_areNothing()
{
    open({"a/x", "b"});
    QStandardItemModel other(3, 3);
    FileModel twin;
    twin.setUseFileSystemWatcher(false);
    twin.setRootPath(m_folder->path());
    for (const QModelIndex &index : {other.index(0, 0), twin.index(0, 0), twin.rootIndex()}) {
        QVERIFY(!m_model->getItem(index));
        QCOMPARE(m_model->rowCount(index), 0);
        QVERIFY(!m_model->hasChildren(index));
        QVERIFY(!m_model->canFetchMore(index));
        QVERIFY(!m_model->index(0, 0, index).isValid());
        QVERIFY(!m_model->parent(index).isValid());
        QVERIFY(!m_model->sibling(0, 0, index).isValid());
        QVERIFY(!m_model->data(index).isValid());
        QVERIFY(!m_model->setData(index, QStringLiteral("z")));
        QVERIFY(!m_model->removeRows(0, 1, index));
        QCOMPARE(m_model->filePath(index), QString());
        m_model->fetchMore(index);
        m_model->update(index);
    }
    QCOMPARE(m_recorder->take(), QStringList());
    QCOMPARE(treeOf(*m_model), QStringList({"a/...", "b"}));
}

void tst_KyFileSystemModelTree::proxies_reachTheNodes()
{
    open({"a/x", "b"});
    QIdentityProxyModel proxy;
    proxy.setSourceModel(m_model.get());
    fetched(QStringLiteral("a"));
    QCOMPARE(treeOf(proxy), QStringList({"a/", "  x", "b"}));
}

void tst_KyFileSystemModelTree::loadedModel_isConsistent()
{
    // The tester wants children below the first column alone; here every column of a row is the same node.
    open({"a/", "b"});
    fetched(QStringLiteral("a"));
    const QAbstractItemModelTester tester(m_model.get(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(treeOf(*m_model), QStringList({"a/", "b"}));
}

void tst_KyFileSystemModelTree::canFetchMore_isTrueOnceForFolders()
{
    open({"a/x", "b"});
    const QModelIndex a = m_model->index(0, 0);
    const QModelIndex b = m_model->index(1, 0);
    QVERIFY(m_model->canFetchMore(a));
    QVERIFY(m_model->hasChildren(a));
    QVERIFY(!m_model->canFetchMore(b));
    QVERIFY(!m_model->hasChildren(b));
    QVERIFY(!m_model->canFetchMore(m_model->rootIndex()));
    m_model->fetchMore(a);
    QVERIFY(!m_model->canFetchMore(a));
    QVERIFY(m_model->hasChildren(a));
}

void tst_KyFileSystemModelTree::fetchMore_appendsTheListing()
{
    open({"a/x", "a/Y/deep", "b"});
    const QModelIndex a = m_model->index(0, 0);
    QStringList treeAtSignal;
    bool canFetch = true;
    m_recorder->onSignal = [&](const QString &text) {
        if (text == QLatin1String("layoutAboutToBeChanged"))
            QCOMPARE(m_model->rowCount(a), 0);
        if (text == QLatin1String("layoutChanged")) {
            treeAtSignal = treeOf(*m_model);
            canFetch = m_model->canFetchMore(a);
        }
    };
    m_model->fetchMore(a);
    QCOMPARE(m_recorder->take(),
             QStringList({"layoutAboutToBeChanged", "layoutChanged", "directoryLoaded(a)"}));
    QCOMPARE(treeAtSignal, QStringList({"a/", "  Y/...", "  x", "b"}));
    QVERIFY(!canFetch);
    QCOMPARE(treeOf(*m_model), treeAtSignal);
}

void tst_KyFileSystemModelTree::fetchMore_twice_appendsTwice()
{
    open({"a/x", "a/y"});
    const QModelIndex a = fetched(QStringLiteral("a"));
    m_model->fetchMore(a);
    QCOMPARE(namesBelow(*m_model, a), QStringList({"x", "y", "x", "y"}));
    QVERIFY(m_model->getItem(m_model->index(0, 0, a)) != m_model->getItem(m_model->index(2, 0, a)));
}

void tst_KyFileSystemModelTree::fetchMore_ofTheRootIndex_appendsAgain()
{
    open({"a", "b"});
    m_model->fetchMore(m_model->rootIndex());
    QCOMPARE(m_recorder->take(),
             QStringList({"layoutAboutToBeChanged", "layoutChanged", "directoryLoaded(.)"}));
    QCOMPARE(namesBelow(*m_model), QStringList({"a", "b", "a", "b"}));
}

void tst_KyFileSystemModelTree::fetchMore_ofNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("column");
    QTest::newRow("invalid") << QString() << 0;
    QTest::newRow("column 1") << QStringLiteral("a") << 1;
    QTest::newRow("column 3") << QStringLiteral("a") << 3;
    QTest::newRow("file") << QStringLiteral("b") << 0;
}

void tst_KyFileSystemModelTree::fetchMore_ofNothing()
{
    QFETCH(QString, name);
    QFETCH(int, column);
    open({"a/x", "b"});
    const QModelIndex index = name.isEmpty() ? QModelIndex() : m_model->index(path(name), column);
    QCOMPARE(index.isValid(), !name.isEmpty());
    m_model->fetchMore(index);
    QCOMPARE(m_recorder->take(), QStringList());
    QCOMPARE(treeOf(*m_model), QStringList({"a/...", "b"}));
}

void tst_KyFileSystemModelTree::fetchMore_ofAnEmptyFolder()
{
    open({"a/"});
    const QModelIndex a = m_model->index(0, 0);
    m_model->fetchMore(a);
    QCOMPARE(m_recorder->take(), QStringList({"layoutAboutToBeChanged", "layoutChanged"}));
    QVERIFY(!m_model->canFetchMore(a));
    QCOMPARE(m_model->rowCount(a), 0);
}

void tst_KyFileSystemModelTree::fetchMore_ofAFolderWithExcludedEntriesOnly()
{
    open({"a/thumbs.db"});
    m_model->setExclusionNamePattern({"thumbs\\.db"});
    const QModelIndex a = m_model->index(0, 0);
    m_model->fetchMore(a); // the listing was not empty
    QCOMPARE(m_recorder->take(),
             QStringList({"layoutAboutToBeChanged", "layoutChanged", "directoryLoaded(a)"}));
    QCOMPARE(m_model->rowCount(a), 0);
}

void tst_KyFileSystemModelTree::fetchMore_ofAVanishedFolder()
{
    open({"a/x"});
    const QModelIndex a = m_model->index(0, 0);
    QVERIFY(QDir(path(QStringLiteral("a"))).removeRecursively());
    m_model->fetchMore(a);
    QCOMPARE(m_recorder->take(), QStringList({"layoutAboutToBeChanged", "layoutChanged"}));
    QCOMPARE(treeOf(*m_model), QStringList({"a/"}));
}

void tst_KyFileSystemModelTree::listing_followsFiltersAndOrder_data()
{
    QTest::addColumn<QDir::Filters>("filter");
    QTest::addColumn<QDir::SortFlags>("order");
    QTest::addColumn<QStringList>("names");
    const QDir::Filters all = QDir::AllEntries | QDir::NoDotAndDotDot;
    const QDir::SortFlags standard = QDir::Name | QDir::DirsFirst | QDir::IgnoreCase;
    QTest::newRow("standard") << all << standard << QStringList({"Y", "z", "a", "B"});
    QTest::newRow("folders") << QDir::Filters(QDir::Dirs | QDir::NoDotAndDotDot) << standard
                             << QStringList({"Y", "z"});
    QTest::newRow("hidden") << QDir::Filters(all | QDir::Hidden) << standard
                            << QStringList({"Y", "z", ".hidden", "a", "B"});
    QTest::newRow("reversed") << all << QDir::SortFlags(standard | QDir::Reversed)
                              << QStringList({"z", "Y", "B", "a"});
    QTest::newRow("with case, mixed")
        << all << QDir::SortFlags(QDir::Name) << QStringList({"B", "Y", "a", "z"});
}

void tst_KyFileSystemModelTree::listing_followsFiltersAndOrder()
{
    QFETCH(QDir::Filters, filter);
    QFETCH(QDir::SortFlags, order);
    QFETCH(QStringList, names);
    open({"f/z/", "f/Y/", "f/a", "f/B", "f/.hidden"});
    m_model->setFilter(filter);
    m_model->setSortFlag(order);
    const QStringList expected = QDir(path(QStringLiteral("f"))).entryList(QStringList(), filter, order);
    QCOMPARE(expected, names);
    QCOMPARE(namesBelow(*m_model, fetched(QStringLiteral("f"))), expected);
    m_model->setRootPath(path(QStringLiteral("f")));
    QCOMPARE(namesBelow(*m_model), expected);
}

void tst_KyFileSystemModelTree::exclusion_data()
{
    QTest::addColumn<QStringList>("patterns");
    QTest::addColumn<QStringList>("names");
    const QStringList all = {"folder", "a.tmp", "B.TMP", "c"};
    QTest::newRow("none") << QStringList() << all;
    QTest::newRow("whole names only") << QStringList({"tmp", "a", "\\.tmp"}) << all;
    QTest::newRow("in any case") << QStringList({".*\\.tmp"}) << QStringList({"folder", "c"});
    QTest::newRow("folders too") << QStringList({"FOLDER"}) << QStringList({"a.tmp", "B.TMP", "c"});
    QTest::newRow("several") << QStringList({"x", "c", "b.tmp"}) << QStringList({"folder", "a.tmp"});
    QTest::newRow("no wildcards") << QStringList({"*.tmp"}) << all;
    QTest::newRow("broken") << QStringList({"(", "[a"}) << all;
    QTest::newRow("empty") << QStringList({""}) << all;
}

void tst_KyFileSystemModelTree::exclusion()
{
    QFETCH(QStringList, patterns);
    QFETCH(QStringList, names);
    m_model->setExclusionNamePattern(patterns);
    open({"folder/", "a.tmp", "B.TMP", "c"});
    QCOMPARE(namesBelow(*m_model), names);
    for (const char *name : {"folder", "a.tmp", "B.TMP", "c"}) {
        const QString text = QString::fromLatin1(name);
        QCOMPARE(m_model->isExclusionFileName(QFileInfo(QStringLiteral("/x/") + text)),
                 !names.contains(text));
    }
    m_model->setExclusionNamePattern({});
    QCOMPARE(namesBelow(*m_model), names); // nothing is read anew
    m_model->update(QModelIndex());
    QCOMPARE(namesBelow(*m_model), QStringList({"folder", "a.tmp", "B.TMP", "c"}));
}

void tst_KyFileSystemModelTree::update_ofAFolder_destroysEveryOtherChild_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("destroyed");
    QTest::newRow("1") << QStringList({"0"}) << "f/0";
    QTest::newRow("2") << QStringList({"0", "1"}) << "f/0";
    QTest::newRow("3") << QStringList({"0", "1", "2"}) << "f/0 f/2";
    QTest::newRow("4") << QStringList({"0", "1", "2", "3"}) << "f/0 f/2";
    QTest::newRow("7") << QStringList({"0", "1", "2", "3", "4", "5", "6"}) << "f/0 f/2 f/4 f/6";
}

void tst_KyFileSystemModelTree::update_ofAFolder_destroysEveryOtherChild()
{
    QFETCH(QStringList, names);
    QFETCH(QString, destroyed);
    QStringList entries;
    for (const QString &name : names)
        entries.append(QStringLiteral("f/") + name);
    open(entries);
    const QModelIndex f = fetched(QStringLiteral("f"));
    int rowsWhenDeleted = -1;
    m_recorder->onSignal = [&](const QString &text) {
        if (text.startsWith(QLatin1String("itemDeleted")))
            rowsWhenDeleted = m_model->rowCount(f);
    };
    m_model->update(f);
    QCOMPARE(m_recorder->take(),
             QStringList({"layoutAboutToBeChanged", QStringLiteral("itemDeleted(%1)").arg(destroyed),
                          "layoutChanged", "directoryLoaded(f)"}));
    QCOMPARE(rowsWhenDeleted, 0); // the rest is unlinked by then and the listing not yet read
    QCOMPARE(namesBelow(*m_model, f), names);
}

void tst_KyFileSystemModelTree::update_ofAFolder_destroysSubtreesFromTheEnd()
{
    open({"a/b/1", "a/b/2", "a/c", "a/d", "e", "f/g"});
    fetched(QStringLiteral("a"));
    fetched(QStringLiteral("a/b"));
    fetched(QStringLiteral("f"));
    m_model->update(QModelIndex());
    // f, the second folder, is unlinked with all below it.
    QCOMPARE(m_recorder->take(),
             QStringList({"layoutAboutToBeChanged", "itemDeleted(a/d a/c a/b/2 a/b/1 a/b a e)",
                          "layoutChanged", "directoryLoaded(.)"}));
    QCOMPARE(treeOf(*m_model), QStringList({"a/...", "f/...", "e"}));
}

void tst_KyFileSystemModelTree::update_ofAFolder_keepsTheUnlinkedResolvable()
{
    open({"f/0", "f/1/x", "f/2"});
    const QModelIndex f = fetched(QStringLiteral("f"));
    const QModelIndex folder = fetched(QStringLiteral("f/1")); // folders first: row 0
    QCOMPARE(folder.row(), 0);
    m_model->update(f);
    QVERIFY(!m_model->data(folder).isValid());

    const QModelIndex second = m_model->index(1, 0, f);
    const QModelIndex third = m_model->index(2, 0, f);
    m_recorder->learn();
    m_model->update(f);
    QVERIFY(!m_model->data(third).isValid());
    QCOMPARE(second.data().toString(), QStringLiteral("0"));
    QCOMPARE(m_model->filePath(second), path(QStringLiteral("f/0")));
    QVERIFY(m_model->flags(second) & Qt::ItemIsEnabled);
    Item *orphan = m_model->getItem(second);
    QVERIFY(orphan);
    QVERIFY(m_model->isValidItem(orphan));
    QCOMPARE(m_model->getParent(orphan), m_model->getItem(f)); // it still knows its folder
    QCOMPARE(second.parent(), f);
    QCOMPARE(orphan->positionInParent(), -1);
    QVERIFY(m_model->at(path(QStringLiteral("f/0"))) != second); // the tree holds another node

    // It stays when its folder goes, and ends on request.
    m_model->removeRows(0, 1, m_model->rootIndex());
    QCOMPARE(second.data().toString(), QStringLiteral("0"));
    QVERIFY(!m_model->getParent(orphan));
    QVERIFY(!second.parent().isValid());
    QCOMPARE(m_model->deleteItem(orphan), QList<void *>({orphan}));
    QVERIFY(!m_model->data(second).isValid());
}

void tst_KyFileSystemModelTree::update_ofAFolder_leavesTheFetchFlag()
{
    open({"f/x", "g/y"});
    const QModelIndex f = m_model->index(0, 0);
    m_model->update(f);
    QCOMPARE(m_recorder->take(),
             QStringList({"layoutAboutToBeChanged", "layoutChanged", "directoryLoaded(f)"}));
    QCOMPARE(treeOf(*m_model), QStringList({"f/...", "  x", "g/..."}));
    fetched(QStringLiteral("g"));
    m_model->update(m_model->index(1, 0));
    QCOMPARE(treeOf(*m_model), QStringList({"f/...", "  x", "g/", "  y"}));
}

void tst_KyFileSystemModelTree::update_ofAFolder_thatIsEmptyNow()
{
    open({"f/x", "f/y"});
    const QModelIndex f = fetched(QStringLiteral("f"));
    QFile::remove(path(QStringLiteral("f/x")));
    QFile::remove(path(QStringLiteral("f/y")));
    m_model->update(f);
    QCOMPARE(m_recorder->take(),
             QStringList({"layoutAboutToBeChanged", "itemDeleted(f/x)", "layoutChanged"}));
    QCOMPARE(m_model->rowCount(f), 0);
}

void tst_KyFileSystemModelTree::update_ofAFolder_withoutChildren()
{
    open({"f/"});
    const QModelIndex f = fetched(QStringLiteral("f"));
    m_model->update(f);
    QCOMPARE(m_recorder->take(), QStringList({"layoutAboutToBeChanged", "layoutChanged"}));
    makeEntries(m_folder->path(), {"f/x"});
    m_model->update(f);
    QCOMPARE(m_recorder->take(),
             QStringList({"layoutAboutToBeChanged", "layoutChanged", "directoryLoaded(f)"}));
}

void tst_KyFileSystemModelTree::update_ofTheRoot_takesTheRootsFilters()
{
    m_model->setNameFiltersInRoot({"r*"});
    m_model->setNameFilters({"f*"});
    open({"r1", "f1", "r2/r3", "r2/f3"});
    makeEntries(m_folder->path(), {"r4", "f4"});
    for (const QModelIndex &root : {QModelIndex(), m_model->rootIndex()}) {
        m_model->update(root);
        QCOMPARE(namesBelow(*m_model), QStringList({"r2", "r1", "r4"}));
    }
    m_model->update(m_model->index(0, 0));
    QCOMPARE(namesBelow(*m_model, m_model->index(0, 0)), QStringList({"f3"}));
}

void tst_KyFileSystemModelTree::update_ofAFile_replacesTheNode()
{
    open({"a", "b", "c"});
    const QModelIndex b = m_model->index(1, 2);
    Item *former = m_model->getItem(b);
    m_recorder->onSignal = [this](const QString &text) {
        if (text.startsWith(QLatin1String("itemDeleted")))
            QCOMPARE(namesBelow(*m_model), QStringList({"a", "b", "c"})); // the new node is there already
    };
    m_model->update(b);
    QCOMPARE(
        m_recorder->take(),
        QStringList({"layoutAboutToBeChanged", "itemDeleted(b)", "layoutChanged", "directoryLoaded(b)"}));
    QCOMPARE(namesBelow(*m_model), QStringList({"a", "b", "c"}));
    QVERIFY(m_model->getItem(m_model->index(1, 0)) != former);
    QVERIFY(!m_model->isValidItem(former));
    QVERIFY(!m_model->data(b).isValid());
}

void tst_KyFileSystemModelTree::update_ofAFile_readsItAnew()
{
    open({"f/a"});
    fetched(QStringLiteral("f"));
    const QModelIndex a = m_model->at(path(QStringLiteral("f/a")));
    QCOMPARE(m_model->fileInfo(a).size(), 0);
    writeFile(path(QStringLiteral("f/a")), "12345");
    QCOMPARE(m_model->fileInfo(a).size(), 0); // a snapshot
    m_model->update(a);
    QCOMPARE(
        m_recorder->take(),
        QStringList({"layoutAboutToBeChanged", "itemDeleted(f/a)", "layoutChanged", "directoryLoaded(f/a)"}));
    QCOMPARE(m_model->fileInfo(m_model->at(path(QStringLiteral("f/a")))).size(), 5);
}

void tst_KyFileSystemModelTree::update_ofAFile_thatIsAFolderNow()
{
    open({"a"});
    const QModelIndex a = m_model->index(0, 0);
    QVERIFY(!m_model->isDir(a)); // known before it changes
    QFile::remove(path(QStringLiteral("a")));
    makeEntries(m_folder->path(), {"a/x"});
    m_model->update(a);
    QCOMPARE(m_recorder->take(),
             QStringList({"layoutAboutToBeChanged", "layoutChanged", "directoryLoaded(a)"}));
    QCOMPARE(namesBelow(*m_model, a), QStringList({"x"}));
    QVERIFY(!m_model->isDir(a)); // the node keeps what it was
}

void tst_KyFileSystemModelTree::update_ofAnUnlinkedFile_insertsItAgain()
{
    open({"f/0", "f/1", "f/2"});
    const QModelIndex f = fetched(QStringLiteral("f"));
    const QModelIndex orphan = m_model->index(1, 0, f);
    m_model->update(f);
    m_recorder->take();
    m_model->update(orphan);
    QCOMPARE(
        m_recorder->take(),
        QStringList({"layoutAboutToBeChanged", "itemDeleted(f/1)", "layoutChanged", "directoryLoaded(f/1)"}));
    QCOMPARE(namesBelow(*m_model, f), QStringList({"0", "1", "1", "2"}));
    QVERIFY(!m_model->data(orphan).isValid());
}

void tst_KyFileSystemModelTree::update_ofWhatIsGone_removesTheRow()
{
    open({"a", "f/0", "f/1", "f/2", "f/3"});
    const QModelIndex f = fetched(QStringLiteral("f"));
    QFile::remove(path(QStringLiteral("f/1")));
    m_model->update(m_model->index(1, 0, f));
    QCOMPARE(m_recorder->take(), QStringList({"rowsAboutToBeRemoved(f 1 1)", "rowsRemoved(f 1 1)"}));
    QCOMPARE(namesBelow(*m_model, f), QStringList({"0", "3"})); // one row more than was told

    QFile::remove(path(QStringLiteral("a")));
    m_model->update(m_model->index(1, 0));
    QCOMPARE(m_recorder->take(), QStringList({"rowsAboutToBeRemoved(- 1 1)", "rowsRemoved(- 1 1)"}));
    QCOMPARE(namesBelow(*m_model), QStringList({"f"}));
}

void tst_KyFileSystemModelTree::update_ofTheDeletedRoot_changesNothing()
{
    makeEntries(m_folder->path(), {"root/a", "root/b"});
    m_model->setRootPath(path(QStringLiteral("root")));
    m_recorder->take();
    QVERIFY(QDir(path(QStringLiteral("root"))).removeRecursively());
    m_model->update(QModelIndex());
    QCOMPARE(m_recorder->take(), QStringList());
    QCOMPARE(namesBelow(*m_model), QStringList({"a", "b"})); // above all not without its first child
}

void tst_KyFileSystemModelTree::update_ofAStaleIndex_changesNothing()
{
    open({"a", "b"});
    const QModelIndex a = m_model->index(0, 0);
    m_model->update(QModelIndex());
    m_recorder->take();
    m_model->update(a);
    QCOMPARE(m_recorder->take(), QStringList());
}

void tst_KyFileSystemModelTree::update_ofARootThatIsAFileNow()
{
    makeEntries(m_folder->path(), {"root/a"});
    m_model->setRootPath(path(QStringLiteral("root")));
    m_recorder->take();
    QVERIFY(QDir(path(QStringLiteral("root"))).removeRecursively());
    writeFile(path(QStringLiteral("root")), QByteArray());
    m_model->update(QModelIndex());
    QCOMPARE(m_recorder->take(), QStringList());
    QCOMPARE(namesBelow(*m_model), QStringList({"a"}));
    QCOMPARE(m_model->rowCount(m_model->rootIndex()), 1);
}

void tst_KyFileSystemModelTree::refresh_givesNoAddressAgain_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("folder") << QStringLiteral("f");
    QTest::newRow("file") << QStringLiteral("f/7");
    QTest::newRow("root") << QString();
}

void tst_KyFileSystemModelTree::refresh_givesNoAddressAgain()
{
    QFETCH(QString, name);
    QStringList entries;
    for (int i = 0; i < 40; ++i)
        entries << QStringLiteral("f/%1").arg(i) << QString::number(i);
    open(entries);
    const QModelIndex f = fetched(QStringLiteral("f"));
    const auto addresses = [&] {
        QSet<void *> items;
        for (int row = 0; row < m_model->rowCount(f); ++row)
            items.insert(m_model->index(row, 0, f).internalPointer());
        for (int row = 0; row < m_model->rowCount(); ++row)
            items.insert(m_model->index(row, 0).internalPointer());
        return items;
    };
    QSignalSpy spy(m_model.get(), SIGNAL(itemDeleted(QList<void *>)));
    for (int round = 0; round < 5; ++round) {
        const QModelIndex index = name.isEmpty() ? QModelIndex() : m_model->at(path(name));
        spy.clear();
        m_model->update(index);
        QCOMPARE(spy.size(), 1);
        const QList<void *> destroyed = spy.first().first().value<QList<void *>>();
        QVERIFY(!destroyed.isEmpty());
        const QSet<void *> now = addresses();
        for (void *item : destroyed)
            QVERIFY(!now.contains(item));
        if (name.isEmpty())
            m_model->fetchMore(m_model->at(path(QStringLiteral("f"))));
    }
}

void tst_KyFileSystemModelTree::removeRows_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("told");
    QTest::addColumn<QString>("destroyed");
    QTest::addColumn<QString>("left");
    // The walk destroys at row, row + 1 ... of the list as it shrinks; then the same rows are unlinked.
    QTest::newRow("first of 5") << 5 << 0 << 1 << "0 0"
                                << "0"
                                << "2 3 4";
    QTest::newRow("first two of 5") << 5 << 0 << 2 << "0 1"
                                    << "0 2"
                                    << "4";
    QTest::newRow("middle two of 6") << 6 << 2 << 2 << "2 3"
                                     << "2 4"
                                     << "0 1";
    QTest::newRow("all of 5") << 5 << 0 << 5 << "0 4"
                              << "0 2 4"
                              << "";
    QTest::newRow("more than there are") << 4 << 0 << 99 << "0 3"
                                         << "0 2"
                                         << "";
    QTest::newRow("count that overflows") << 3 << 1 << INT_MAX << "1 2"
                                          << "1"
                                          << "0";
    QTest::newRow("last of 3, and one before") << 3 << 2 << 1 << "2 2"
                                               << "2"
                                               << "0";
    QTest::newRow("the only one") << 1 << 0 << 1 << "0 0"
                                  << "0"
                                  << "";
    QTest::newRow("last of 2, and the other") << 2 << 1 << 1 << "1 1"
                                              << "1"
                                              << "";
}

void tst_KyFileSystemModelTree::removeRows()
{
    QFETCH(int, count);
    QFETCH(int, row);
    QFETCH(int, rows);
    QFETCH(QString, told);
    QFETCH(QString, destroyed);
    QFETCH(QString, left);
    QStringList entries;
    for (int i = 0; i < count; ++i)
        entries.append(QStringLiteral("f/%1").arg(i));
    open(entries);
    const QModelIndex f = fetched(QStringLiteral("f"));
    QList<QModelIndex> indexes;
    for (int i = 0; i < count; ++i)
        indexes.append(m_model->index(i, 0, f));
    QVERIFY(m_model->removeRows(row, rows, f));
    QCOMPARE(m_recorder->take(),
             QStringList({QStringLiteral("rowsAboutToBeRemoved(f %1)").arg(told),
                          QStringLiteral("rowsRemoved(f %1)").arg(told)}));
    QCOMPARE(namesBelow(*m_model, f).join(QLatin1Char(' ')), left);
    QStringList gone;
    for (int i = 0; i < count; ++i) {
        if (!m_model->getItem(indexes.at(i)))
            gone.append(QString::number(i));
    }
    QCOMPARE(gone.join(QLatin1Char(' ')), destroyed);
}

void tst_KyFileSystemModelTree::removeRows_belowTheInvalidIndex_destroysNothing_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("told");
    QTest::addColumn<QString>("left");
    QTest::newRow("first") << 0 << 1 << "0 0"
                           << "1 2 3";
    QTest::newRow("middle") << 1 << 2 << "1 2"
                            << "0 3";
    QTest::newRow("last") << 3 << 1 << "3 3"
                          << "0 1 2";
    QTest::newRow("all") << 0 << 9 << "0 3"
                         << "";
}

void tst_KyFileSystemModelTree::removeRows_belowTheInvalidIndex_destroysNothing()
{
    QFETCH(int, row);
    QFETCH(int, rows);
    QFETCH(QString, told);
    QFETCH(QString, left);
    open({"0", "1", "2", "3"});
    QList<QModelIndex> indexes;
    for (int i = 0; i < 4; ++i)
        indexes.append(m_model->index(i, 0));
    QVERIFY(m_model->removeRows(row, rows));
    QCOMPARE(m_recorder->take(),
             QStringList({QStringLiteral("rowsAboutToBeRemoved(- %1)").arg(told),
                          QStringLiteral("rowsRemoved(- %1)").arg(told)}));
    QCOMPARE(namesBelow(*m_model).join(QLatin1Char(' ')), left);
    for (int i = 0; i < 4; ++i)
        QCOMPARE(m_model->fileName(indexes.at(i)), QString::number(i));
}

void tst_KyFileSystemModelTree::removeRows_belowTheRootIndex_destroys()
{
    open({"0", "1", "2", "3"});
    const QModelIndex first = m_model->index(0, 0);
    const QModelIndex second = m_model->index(1, 0);
    QVERIFY(m_model->removeRows(0, 1, m_model->rootIndex()));
    QCOMPARE(m_recorder->take(), QStringList({"rowsAboutToBeRemoved(. 0 0)", "rowsRemoved(. 0 0)"}));
    QCOMPARE(namesBelow(*m_model), QStringList({"2", "3"}));
    QVERIFY(!m_model->getItem(first));
    QCOMPARE(m_model->fileName(second), QStringLiteral("1"));
}

void tst_KyFileSystemModelTree::removeRows_ofNothing_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("rows");
    QTest::newRow("negative row") << -1 << 1;
    QTest::newRow("negative row, many") << -1 << 9;
    QTest::newRow("behind") << 2 << 1;
    QTest::newRow("no row") << 0 << 0;
    QTest::newRow("negative count") << 1 << -1;
    QTest::newRow("extremes") << INT_MAX << INT_MAX;
    QTest::newRow("lowest") << INT_MIN << INT_MIN;
}

void tst_KyFileSystemModelTree::removeRows_ofNothing()
{
    QFETCH(int, row);
    QFETCH(int, rows);
    open({"f/0", "f/1", "x"});
    const QModelIndex f = fetched(QStringLiteral("f"));
    QVERIFY(!m_model->removeRows(row, rows, f));
    QVERIFY(!m_model->removeRows(row, rows));
    QVERIFY(!m_model->removeRows(0, 1, m_model->index(1, 0))); // a file
    QCOMPARE(m_recorder->take(), QStringList());
    QCOMPARE(treeOf(*m_model), QStringList({"f/", "  0", "  1", "x"}));
}

void tst_KyFileSystemModelTree::removeRows_ofNothingOnDisk()
{
    open({"f/0", "f/1"});
    QVERIFY(m_model->removeRows(0, 1));
    QVERIFY(QFileInfo::exists(path(QStringLiteral("f/0"))));
}

/** Without it the leak check of a sanitizer build fails. */
void tst_KyFileSystemModelTree::unlinkedNodes_endWithTheRoot()
{
    open({"f/0", "f/1/x", "f/1/y", "f/2", "g/1"});
    for (int round = 0; round < 3; ++round) {
        const QModelIndex f = fetched(QStringLiteral("f"));
        fetched(QStringLiteral("f/1"));
        m_model->update(m_model->at(path(QStringLiteral("f/1"))));
        m_model->update(f);
        m_model->update(QModelIndex());
    }
    const QModelIndex orphan = m_model->index(1, 0);
    m_model->removeRows(1, 1);
    QVERIFY(m_model->getItem(orphan));
    m_model->setRootPath(path(QStringLiteral("f")));
    QVERIFY(!m_model->getItem(orphan));
    m_model->update(QModelIndex());
}

void tst_KyFileSystemModelTree::indexesOfDestroyedNodes_areNothing()
{
    m_model->setReadOnly(false);
    open({"a", "b"});
    const QModelIndex a = m_model->index(0, 0);
    m_model->update(QModelIndex());
    QVERIFY(a.isValid());
    QVERIFY(!m_model->data(a).isValid());
    QVERIFY(!m_model->data(a, Qt::DecorationRole).isValid());
    QCOMPARE(m_model->flags(a), Qt::ItemFlags(Qt::ItemIsSelectable));
    QCOMPARE(m_model->filePath(a), QString());
    QVERIFY(m_model->icon(a).isNull());
    QCOMPARE(m_model->rowCount(a), 0);
    QVERIFY(!m_model->setData(a, QStringLiteral("z")));
    QVERIFY(!a.parent().isValid());
}

void tst_KyFileSystemModelTree::findItem_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("found");
    QTest::newRow("root") << ""
                          << ".";
    QTest::newRow("file") << "/x.mp4"
                          << "x.mp4";
    QTest::newRow("file in other case") << "/X.MP4"
                                        << "x.mp4";
    QTest::newRow("folder") << "/Folder"
                            << "Folder";
    QTest::newRow("below") << "/Folder/below/y"
                           << "Folder/below/y";
    QTest::newRow("below, in other case") << "/fOLDER/BELOW/Y"
                                          << "Folder/below/y";
    QTest::newRow("not fetched") << "/closed/z"
                                 << "";
    QTest::newRow("missing") << "/none"
                             << "";
    QTest::newRow("only the beginning of a name") << "/Fold"
                                                  << "";
    QTest::newRow("more than a name") << "/Folder2"
                                      << "";
    QTest::newRow("trailing separator") << "/Folder/"
                                        << "";
    QTest::newRow("doubled separator") << "//Folder"
                                       << "";
    QTest::newRow("root with a separator") << "/"
                                           << "";
    QTest::newRow("a file as a folder") << "/x.mp4/y"
                                        << "";
    QTest::newRow("dots") << "/Folder/../x.mp4"
                          << "";
}

void tst_KyFileSystemModelTree::findItem()
{
    QFETCH(QString, text);
    QFETCH(QString, found);
    open({"x.mp4", "Folder/below/y", "closed/z"});
    fetched(QStringLiteral("Folder"));
    fetched(QStringLiteral("Folder/below"));
    Item *item = m_model->findItem(m_folder->path() + text);
    QCOMPARE(item ? m_recorder->nameOf(item) : QString(), found);
}

void tst_KyFileSystemModelTree::findItem_fromAStart()
{
    open({"x", "f/x", "f/g/y"});
    const QModelIndex f = fetched(QStringLiteral("f"));
    fetched(QStringLiteral("f/g"));
    Item *start = m_model->getItem(f);
    QCOMPARE(m_recorder->nameOf(m_model->findItem(path(QStringLiteral("f/x")), start)),
             QStringLiteral("f/x"));
    QCOMPARE(m_recorder->nameOf(m_model->findItem(path(QStringLiteral("f/g/y")), start)),
             QStringLiteral("f/g/y"));
    QCOMPARE(m_model->findItem(path(QStringLiteral("F")), start), start);
    QVERIFY(!m_model->findItem(path(QStringLiteral("x")), start));
    QVERIFY(!m_model->findItem(QString(), start));
    Item foreign(QFileInfo(path(QStringLiteral("f"))), nullptr, -1);
    QVERIFY(!m_model->findItem(path(QStringLiteral("f")), &foreign));
    // What is not registered is passed over with all below it.
    Item *g = m_model->findItem(path(QStringLiteral("f/g")));
    m_model->removeValidItem(g);
    QVERIFY(!m_model->findItem(path(QStringLiteral("f/g"))));
    QVERIFY(!m_model->findItem(path(QStringLiteral("f/g/y"))));
    m_model->addValidItem(g);
    QVERIFY(m_model->findItem(path(QStringLiteral("f/g/y"))));
}

void tst_KyFileSystemModelTree::findItem_amongNamesThatDifferInCase()
{
    m_model->setSortFlag(QDir::Name);
    open({"A/x", "a/x", "a/y", "a/Y"});
    if (m_model->rowCount() != 2)
        QSKIP("The file system ignores letter case");
    fetched(QStringLiteral("A"));
    m_model->fetchMore(m_model->index(1, 0));
    m_recorder->learn();
    QCOMPARE(m_recorder->nameOf(m_model->findItem(path(QStringLiteral("a/x")))), QStringLiteral("A/x"));
    QCOMPARE(m_recorder->nameOf(m_model->findItem(path(QStringLiteral("a")))), QStringLiteral("A"));
    QCOMPARE(m_recorder->nameOf(m_model->findItem(path(QStringLiteral("A/y")))), QStringLiteral("a/Y"));
}

void tst_KyFileSystemModelTree::findItem_afterChanges()
{
    open({"b", "c"});
    QVERIFY(m_model->findItem(path(QStringLiteral("c"))));
    Item *root = m_model->getItem(QModelIndex());
    const std::unique_ptr<Item> d(new Item(QFileInfo(path(QStringLiteral("d"))), nullptr, -1));
    m_model->addValidItem(d.get());
    root->insertChild(d.get(), 0);
    QCOMPARE(m_model->findItem(path(QStringLiteral("d"))), d.get());
    QCOMPARE(m_model->findItem(path(QStringLiteral("c")))->fileName(), QStringLiteral("c"));
    root->clearChild(d.get());
    m_model->removeValidItem(d.get());
    QVERIFY(!m_model->findItem(path(QStringLiteral("d"))));
    m_model->removeRows(0, 1);
    QVERIFY(!m_model->findItem(path(QStringLiteral("b"))));
    QVERIFY(m_model->findItem(path(QStringLiteral("c"))));
    makeEntries(m_folder->path(), {"a"});
    m_model->update(QModelIndex());
    for (const char *name : {"a", "b", "c"})
        QCOMPARE(m_model->findItem(path(QLatin1String(name)))->fileName(), QLatin1String(name));
}

void tst_KyFileSystemModelTree::indexOfPath()
{
    open({"a", "f/x", "f/y"});
    fetched(QStringLiteral("f"));
    const QModelIndex y = m_model->index(path(QStringLiteral("f/Y")), 3);
    QCOMPARE(y.row(), 1);
    QCOMPARE(y.column(), 3);
    QCOMPARE(y.sibling(1, 0).data().toString(), QStringLiteral("y"));
    QCOMPARE(m_model->index(path(QStringLiteral("a"))), m_model->index(1, 0));
    QVERIFY(!m_model->index(m_folder->path(), 0).isValid()); // the root
    QVERIFY(!m_model->index(path(QStringLiteral("z")), 0).isValid());
    QVERIFY(!m_model->index(QString(), 0).isValid());
}

void tst_KyFileSystemModelTree::deleteItem_tellsTheNodesInOrder()
{
    open({"a/b/1", "a/b/2", "a/c", "d"});
    const QModelIndex a = fetched(QStringLiteral("a"));
    fetched(QStringLiteral("a/b"));
    QStringList names;
    for (void *item : m_model->deleteItem(m_model->getItem(a)))
        names.append(m_recorder->nameOf(item));
    QCOMPARE(names, QStringList({"a/c", "a/b/2", "a/b/1", "a/b", "a"}));
    QCOMPARE(treeOf(*m_model), QStringList({"d"}));
    QCOMPARE(m_recorder->take(), QStringList());
}

void tst_KyFileSystemModelTree::deleteItem_ofTheUnregistered_changesNothing()
{
    open({"a", "b"});
    Item *a = m_model->getItem(m_model->index(0, 0));
    m_model->removeValidItem(a);
    QVERIFY(m_model->deleteItem(a).isEmpty());
    QCOMPARE(m_model->rowCount(), 2);
    m_model->addValidItem(a);
    QCOMPARE(m_model->deleteItem(a), QList<void *>({a}));
    QVERIFY(m_model->deleteItem(a).isEmpty()); // only an address by now
    QCOMPARE(namesBelow(*m_model), QStringList({"b"}));
}

void tst_KyFileSystemModelTree::deleteItem_ofTheRoot()
{
    open({"a", "b"});
    QCOMPARE(m_model->deleteItem(m_model->getItem(QModelIndex())).size(), 3);
    QCOMPARE(m_model->rowCount(), 0);
    QVERIFY(!m_model->rootIndex().isValid());
    QVERIFY(!m_model->hasChildren());
    QVERIFY(!m_model->setRootPath(m_folder->path()).isValid());
    QCOMPARE(namesBelow(*m_model), QStringList({"a", "b"}));
}

void tst_KyFileSystemModelTree::deleteItem_unregisteredChildren()
{
    open({"f/a", "f/g/x"});
    const QModelIndex f = fetched(QStringLiteral("f"));
    fetched(QStringLiteral("f/g"));
    Item *g = m_model->getItem(m_model->index(0, 0, f));
    Item *a = m_model->getItem(m_model->index(1, 0, f));
    m_model->removeValidItem(a); // without children: destroyed all the same
    m_model->removeValidItem(g); // with children: left alone
    const std::unique_ptr<Item> kept(g);
    QCOMPARE(m_model->deleteItem(m_model->getItem(f)), QList<void *>({a, f.internalPointer()}));
    QCOMPARE(namesOf(*kept), QStringList({"x"}));
    m_model->deleteItem(kept->childAt(0));
    QCOMPARE(kept->childCount(), 0);
}

void tst_KyFileSystemModelTree::registry()
{
    open({"a"});
    const QModelIndex a = m_model->index(0, 0);
    Item *item = m_model->getItem(a);
    QVERIFY(m_model->isValidItem(item));
    QVERIFY(!m_model->isValidItem(nullptr));
    m_model->addValidItem(item); // is in it already
    m_model->removeValidItem(item);
    QVERIFY(!m_model->isValidItem(item));
    QVERIFY(!m_model->data(a).isValid());
    QVERIFY(!m_model->getParent(item));
    m_model->addValidItem(item);
    QCOMPARE(m_model->getParent(item), m_model->getItem(QModelIndex()));
    QVERIFY(!m_model->getParent(m_model->getItem(QModelIndex())));
    Item *root = m_model->getItem(QModelIndex());
    m_model->clearValidItems();
    QVERIFY(!m_model->isValidItem(item));
    QVERIFY(!m_model->getItem(QModelIndex()));
    QCOMPARE(item->fileName(), QStringLiteral("a")); // nothing was destroyed
    QCOMPARE(m_model->rowCount(), 0);
    QVERIFY(m_model->hasChildren()); // there is a root
    m_model->addValidItem(root);
    QCOMPARE(m_model->rowCount(), 1);
}

void tst_KyFileSystemModelTree::clearedRegistry_leavesNoLeak_data()
{
    QTest::addColumn<bool>("newRoot");
    QTest::newRow("destroyed") << false;
    QTest::newRow("new root") << true;
}

void tst_KyFileSystemModelTree::clearedRegistry_leavesNoLeak()
{
    QFETCH(bool, newRoot);
    open({"a/x", "b"});
    fetched(QStringLiteral("a"));
    m_model->update(QModelIndex());
    m_model->clearValidItems();
    if (newRoot)
        m_model->setRootPath(path(QStringLiteral("a")));
    QCOMPARE(m_model->rowCount(), newRoot ? 1 : 0);
}

KYTE_TEST_MAIN(tst_KyFileSystemModelTree)
#include "tst_KyFileSystemModelTree.moc"
