#include "KyFileModelProbe.h"
#include "KyTestEnvironment.h"
#include "KyTestMain.h"

#include <QDir>
#include <QTemporaryDir>

#include <memory>

using namespace Kyte;
using namespace Kyte::Test;

class tst_KyFileSystemModelWatcher : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void root_isWatched();
    void root_isNotWatchedOnRequest();
    void anotherRoot_replacesAllWatches();
    void anotherRoot_withoutWatching_keepsTheAnswer();
    void fetchedFolders_areWatched_data();
    void fetchedFolders_areWatched();
    void changesHere_areFollowed();
    void changesElsewhere_areFollowed();
    void changesBelow_refreshTheFolderAlone();
    void changedContent_isNotAnnounced();

    void reports_data();
    void reports();
    void reports_withoutRoot();

    void stopAndStart();
    void stop_ofNothing_keepsTheSavedPaths();
    void start_whileWatching_changesNothing();
    void destruction_whileChangesArePending();
    void noWarnings();

    void refreshDelay();
    void refreshDelay_mergesABurst();
    void refreshDelay_ofTwoFolders_refreshesBoth();
    void refreshDelay_ofAFolderAndOneBelow_refreshesTheUpper();
    void refreshDelay_forgetsTheFormerRoot();
    void refreshDelay_backToZero();

private:
    QString path(const QString &name) const;
    void open(const QStringList &paths, const QStringList &fetched = {});

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FileModel> m_model;
    QStringList m_updates;
};

static QStringList warnings;
static QtMessageHandler formerHandler = nullptr;

static void collectWarnings(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtWarningMsg)
        warnings.append(message);
    formerHandler(type, context, message);
}

void tst_KyFileSystemModelWatcher::initTestCase()
{
    formerHandler = qInstallMessageHandler(collectWarnings);
}

void tst_KyFileSystemModelWatcher::init()
{
    warnings.clear();
    m_folder.reset(new QTemporaryDir);
    m_model.reset(new FileModel);
    m_updates.clear();
    m_model->onUpdate = [this](const QModelIndex &index) {
        m_updates.append(index.isValid() ? m_model->fileName(index) : QStringLiteral("root"));
    };
}

void tst_KyFileSystemModelWatcher::cleanup()
{
    m_model.reset();
    m_folder.reset();
    QCOMPARE(warnings, QStringList()); // the watcher complains about empty lists and paths
}

QString tst_KyFileSystemModelWatcher::path(const QString &name) const
{
    return m_folder->filePath(name);
}

void tst_KyFileSystemModelWatcher::open(const QStringList &paths, const QStringList &fetched)
{
    makeEntries(m_folder->path(), paths);
    m_model->setRootPath(m_folder->path());
    for (const QString &name : fetched)
        m_model->fetchMore(m_model->at(path(name)));
}

void tst_KyFileSystemModelWatcher::root_isWatched()
{
    QVERIFY(m_model->useFileSystemWatcher());
    QVERIFY(!m_model->canInstallFileSystemWatcher());
    QCOMPARE(m_model->watched(), QStringList());
    open({"a/"});
    QVERIFY(m_model->canInstallFileSystemWatcher());
    QCOMPARE(m_model->watched(), QStringList({m_folder->path()}));
}

void tst_KyFileSystemModelWatcher::root_isNotWatchedOnRequest()
{
    m_model->setUseFileSystemWatcher(false);
    open({"a/x"}, {"a"});
    QVERIFY(!m_model->canInstallFileSystemWatcher());
    QCOMPARE(m_model->watched(), QStringList());
    m_model->setUseFileSystemWatcher(true); // only stores it
    QCOMPARE(m_model->watched(), QStringList());
    m_model->fetchMore(m_model->at(path(QStringLiteral("a")))); // the root was never accepted
    QCOMPARE(m_model->watched(), QStringList());
}

void tst_KyFileSystemModelWatcher::anotherRoot_replacesAllWatches()
{
    open({"a/x", "b/y"}, {"a"});
    QCOMPARE(m_model->watched().size(), 2);
    m_model->setRootPath(path(QStringLiteral("b")));
    QCOMPARE(m_model->watched(), QStringList({path(QStringLiteral("b"))}));
    m_model->stopFileSystemWatcher();
    m_model->startFileSystemWatcher();
    QCOMPARE(m_model->watched(), QStringList({path(QStringLiteral("b"))})); // the former ones were not saved
}

void tst_KyFileSystemModelWatcher::anotherRoot_withoutWatching_keepsTheAnswer()
{
    open({"a/x"});
    m_model->setUseFileSystemWatcher(false);
    m_model->setRootPath(path(QStringLiteral("a")));
    QVERIFY(m_model->canInstallFileSystemWatcher());
    QCOMPARE(m_model->watched(), QStringList());
}

void tst_KyFileSystemModelWatcher::fetchedFolders_areWatched_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("use");
    QTest::addColumn<bool>("watched");
    QTest::newRow("with entries") << QStringLiteral("full") << true << true;
    QTest::newRow("empty") << QStringLiteral("empty") << true << false;
    QTest::newRow("with excluded entries only") << QStringLiteral("hidden") << true << true;
    QTest::newRow("not used any more") << QStringLiteral("full") << false << false;
}

void tst_KyFileSystemModelWatcher::fetchedFolders_areWatched()
{
    QFETCH(QString, name);
    QFETCH(bool, use);
    QFETCH(bool, watched);
    m_model->setExclusionNamePattern({"excluded"});
    open({"full/x", "empty/", "hidden/excluded"});
    m_model->setUseFileSystemWatcher(use);
    m_model->fetchMore(m_model->at(path(name)));
    QCOMPARE(m_model->watched().contains(path(name)), watched);
    m_model->fetchMore(m_model->at(path(name)));
    QCOMPARE(m_model->watched().size(), watched ? 2 : 1);
}

void tst_KyFileSystemModelWatcher::changesHere_areFollowed()
{
    open({"a"});
    makeEntries(m_folder->path(), {"b"});
    QTRY_COMPARE(namesBelow(*m_model), QStringList({"a", "b"}));
    QVERIFY(QFile::rename(path(QStringLiteral("b")), path(QStringLiteral("c"))));
    QTRY_COMPARE(namesBelow(*m_model), QStringList({"a", "c"}));
    QVERIFY(QFile::remove(path(QStringLiteral("a"))));
    QTRY_COMPARE(namesBelow(*m_model), QStringList({"c"}));
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("d")));
    QTRY_COMPARE(treeOf(*m_model), QStringList({"d/...", "c"}));
    QVERIFY(QFile::remove(path(QStringLiteral("c"))));
    QVERIFY(QDir(m_folder->path()).rmdir(QStringLiteral("d")));
    QTRY_COMPARE(treeOf(*m_model), QStringList());
    makeEntries(m_folder->path(), {"again"}); // an emptied root is still watched
    QTRY_COMPARE(namesBelow(*m_model), QStringList({"again"}));
}

void tst_KyFileSystemModelWatcher::changesElsewhere_areFollowed()
{
    open({"a", "f/x"}, {"f"});
    const QString b = path(QStringLiteral("b"));
    const QString y = path(QStringLiteral("f/y"));
    QVERIFY(changeElsewhere({"create", b}));
    QTRY_COMPARE(treeOf(*m_model), QStringList({"f/...", "a", "b"}));
    m_model->fetchMore(m_model->at(path(QStringLiteral("f"))));
    QVERIFY(changeElsewhere({"create", y}));
    QTRY_COMPARE(treeOf(*m_model), QStringList({"f/", "  x", "  y", "a", "b"}));
    QVERIFY(changeElsewhere({"rename", y, path(QStringLiteral("f/z"))}));
    QTRY_COMPARE(treeOf(*m_model), QStringList({"f/", "  x", "  z", "a", "b"}));
    QVERIFY(changeElsewhere({"remove", path(QStringLiteral("f/x"))}));
    QVERIFY(changeElsewhere({"remove", path(QStringLiteral("f/z"))}));
    QTRY_COMPARE(treeOf(*m_model), QStringList({"f/", "a", "b"}));
    QVERIFY(changeElsewhere({"remove", path(QStringLiteral("f"))}));
    QTRY_COMPARE(treeOf(*m_model), QStringList({"a", "b"}));
}

void tst_KyFileSystemModelWatcher::changesBelow_refreshTheFolderAlone()
{
    open({"f/x", "g/y"}, {"f", "g"});
    const QModelIndex f = m_model->at(path(QStringLiteral("f")));
    const QModelIndex y = m_model->at(path(QStringLiteral("g/y")));
    makeEntries(m_folder->path(), {"f/z"});
    QTRY_COMPARE(treeOf(*m_model), QStringList({"f/", "  x", "  z", "g/", "  y"}));
    QCOMPARE(m_model->fileName(f), QStringLiteral("f"));
    QCOMPARE(m_model->fileName(y), QStringLiteral("y"));
    QVERIFY(!m_updates.contains(QStringLiteral("root")));
}

void tst_KyFileSystemModelWatcher::changedContent_isNotAnnounced()
{
    open({"a"});
    QCOMPARE(m_model->fileInfo(m_model->index(0, 0)).size(), 0);
    writeFile(path(QStringLiteral("a")), "12345");
    QTest::qWait(100);
#ifdef Q_OS_LINUX
    QCOMPARE(m_updates, QStringList());
#endif
    m_model->update(m_model->index(0, 0));
    QCOMPARE(m_model->fileInfo(m_model->index(0, 0)).size(), 5);
}

void tst_KyFileSystemModelWatcher::reports_data()
{
    QTest::addColumn<QString>("reported");
    QTest::addColumn<QString>("updated");
    QTest::newRow("root") << ""
                          << "root";
    QTest::newRow("file in the root") << "/x"
                                      << "x";
    QTest::newRow("folder") << "/f"
                            << "f";
    QTest::newRow("folder in other case") << "/F"
                                          << "f";
    QTest::newRow("below") << "/f/y"
                           << "y";
    QTest::newRow("not in the tree") << "/none"
                                     << "root";
    QTest::newRow("not fetched") << "/g/z"
                                 << "root";
}

void tst_KyFileSystemModelWatcher::reports()
{
    QFETCH(QString, reported);
    QFETCH(QString, updated);
    m_model->setUseFileSystemWatcher(false);
    open({"x", "f/y", "g/z"}, {"f"});
    m_model->onDirectoryChanged(m_folder->path() + reported);
    QCOMPARE(m_updates, QStringList({updated}));
    m_updates.clear();
    m_model->setRootPath(path(QStringLiteral("g")));
    m_model->setRootPath(m_folder->path());
    m_model->fetchMore(m_model->at(path(QStringLiteral("f"))));
    m_model->onFileChanged(m_folder->path() + reported);
    QCOMPARE(m_updates, QStringList({updated}));
    m_updates.clear();
    m_model->onFileChanged(QStringLiteral("/elsewhere"));
    m_model->onDirectoryChanged(QString());
    QCOMPARE(m_updates, QStringList({"root", "root"}));

    // A node whose parent is not registered is not refreshed by itself.
    m_updates.clear();
    m_model->clearValidItems();
    m_model->onDirectoryChanged(m_folder->path() + reported);
    QCOMPARE(m_updates, QStringList({"root"}));
}

void tst_KyFileSystemModelWatcher::reports_withoutRoot()
{
    SignalRecorder *recorder = new SignalRecorder(m_model.get(), m_folder->path());
    m_model->onDirectoryChanged(m_folder->path());
    m_model->onFileChanged(m_folder->path());
    QCOMPARE(recorder->take(), QStringList());
}

void tst_KyFileSystemModelWatcher::stopAndStart()
{
    open({"f/x"}, {"f"});
    m_model->watcher()->addPath(path(QStringLiteral("f/x")));
    const QStringList watched = m_model->watched();
    QCOMPARE(watched,
             QStringList({m_folder->path(), path(QStringLiteral("f")), path(QStringLiteral("f/x"))}));
    m_model->stopFileSystemWatcher();
    QCOMPARE(m_model->watched(), QStringList());
    makeEntries(m_folder->path(), {"a"});
    QTest::qWait(50);
    QCOMPARE(m_updates, QStringList());
    m_model->startFileSystemWatcher();
    QCOMPARE(m_model->watched(), watched);
    QCOMPARE(namesBelow(*m_model), QStringList({"f"})); // what happened meanwhile is not made up for
    makeEntries(m_folder->path(), {"b"});
    QTRY_COMPARE(namesBelow(*m_model), QStringList({"f", "a", "b"}));
}

void tst_KyFileSystemModelWatcher::stop_ofNothing_keepsTheSavedPaths()
{
    open({"a"});
    m_model->stopFileSystemWatcher();
    m_model->stopFileSystemWatcher();
    m_model->startFileSystemWatcher();
    QCOMPARE(m_model->watched(), QStringList({m_folder->path()}));
    // They are kept after a start as well, for when the watches went in another way.
    m_model->watcher()->removePath(m_folder->path());
    m_model->startFileSystemWatcher();
    QCOMPARE(m_model->watched(), QStringList({m_folder->path()}));
}

void tst_KyFileSystemModelWatcher::start_whileWatching_changesNothing()
{
    open({"f/x"}, {"f"});
    m_model->stopFileSystemWatcher();
    m_model->watcher()->addPath(path(QStringLiteral("f")));
    m_model->startFileSystemWatcher();
    QCOMPARE(m_model->watched(), QStringList({path(QStringLiteral("f"))}));
    m_model->watcher()->removePath(path(QStringLiteral("f")));
    m_model->watcher()->addPath(path(QStringLiteral("f/x")));
    m_model->startFileSystemWatcher();
    QCOMPARE(m_model->watched(), QStringList({path(QStringLiteral("f/x"))}));
}

void tst_KyFileSystemModelWatcher::destruction_whileChangesArePending()
{
    open({"f/x"}, {"f"});
    makeEntries(m_folder->path(), {"a", "f/b"});
    m_model.reset();
    QTest::qWait(50);
}

void tst_KyFileSystemModelWatcher::noWarnings()
{
    // All that hands paths to the watcher, with none to hand.
    m_model->stopFileSystemWatcher();
    m_model->startFileSystemWatcher();
    open({"e/"}, {"e"});
    m_model->stopFileSystemWatcher();
    m_model->setRootPath(path(QStringLiteral("e")));
    m_model->stopFileSystemWatcher();
    m_model->setRootPath(m_folder->path());
    m_model->watcher()->removePath(m_folder->path());
    m_model.reset();
    FileModel().setRootPath(QStringLiteral("/none"));
    FileModel().setRootPath(QStringLiteral(":/images")); // nothing to watch
    QCOMPARE(warnings, QStringList());
}

void tst_KyFileSystemModelWatcher::refreshDelay()
{
    QCOMPARE(m_model->refreshDelay(), 0);
    m_model->setRefreshDelay(25);
    QCOMPARE(m_model->refreshDelay(), 25);
    m_model->setRefreshDelay(-1);
    QCOMPARE(m_model->refreshDelay(), 0);
    open({"a"});
    m_model->onDirectoryChanged(m_folder->path());
    m_model->onDirectoryChanged(m_folder->path());
    QCOMPARE(m_updates, QStringList({"root", "root"})); // at every report, at once
}

void tst_KyFileSystemModelWatcher::refreshDelay_mergesABurst()
{
    open({"f/x"}, {"f"});
    m_model->setRefreshDelay(30);
    for (int i = 0; i < 100; ++i)
        m_model->onDirectoryChanged(path(QStringLiteral("f")));
    QCOMPARE(m_updates, QStringList());
    QTRY_COMPARE(m_updates, QStringList({"f"}));
    QTest::qWait(60);
    QCOMPARE(m_updates, QStringList({"f"}));

    // The root takes everything with it.
    m_updates.clear();
    m_model->onDirectoryChanged(path(QStringLiteral("f")));
    m_model->onDirectoryChanged(m_folder->path());
    QTRY_COMPARE(m_updates, QStringList({"root"}));
    QTest::qWait(60);
    QCOMPARE(m_updates, QStringList({"root"}));

    m_updates.clear();
    for (int i = 0; i < 50; ++i)
        makeEntries(m_folder->path(), {QStringLiteral("new%1").arg(i)});
    QTRY_COMPARE(m_model->rowCount(), 51);
    QVERIFY(m_updates.size() < 10);
}

void tst_KyFileSystemModelWatcher::refreshDelay_ofTwoFolders_refreshesBoth()
{
    open({"f/x", "g/y"}, {"f", "g"});
    m_model->setRefreshDelay(1);
    m_model->onDirectoryChanged(path(QStringLiteral("g")));
    m_model->onDirectoryChanged(path(QStringLiteral("f")));
    m_model->onFileChanged(path(QStringLiteral("g")));
    QTRY_COMPARE(m_updates, QStringList({"g", "f"}));
}

void tst_KyFileSystemModelWatcher::refreshDelay_ofAFolderAndOneBelow_refreshesTheUpper()
{
    open({"f/g/x"}, {"f", "f/g"});
    m_model->setRefreshDelay(1);
    m_model->onDirectoryChanged(path(QStringLiteral("f")));
    m_model->onDirectoryChanged(path(QStringLiteral("f/g")));
    QTRY_COMPARE(m_updates, QStringList({"f"}));
    QCOMPARE(treeOf(*m_model), QStringList({"f/", "  g/..."})); // not filled before it is asked for
    QTest::qWait(20);
    QCOMPARE(m_updates, QStringList({"f"}));
}

void tst_KyFileSystemModelWatcher::refreshDelay_forgetsTheFormerRoot()
{
    open({"f/x"}, {"f"});
    m_model->setRefreshDelay(1);
    m_model->onDirectoryChanged(m_folder->path());
    m_model->setRootPath(path(QStringLiteral("f")));
    QTest::qWait(30);
    QCOMPARE(m_updates, QStringList());
}

void tst_KyFileSystemModelWatcher::refreshDelay_backToZero()
{
    open({"f/x"}, {"f"});
    m_model->setRefreshDelay(1000000);
    m_model->onDirectoryChanged(path(QStringLiteral("f")));
    m_model->setRefreshDelay(0);
    QTRY_COMPARE(m_updates, QStringList({"f"})); // what was collected is not lost
}

KYTE_TEST_MAIN(tst_KyFileSystemModelWatcher)
#include "tst_KyFileSystemModelWatcher.moc"
