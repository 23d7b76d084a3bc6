#include "KyFileModelProbe.h"
#include "KyTestEnvironment.h"
#include "KyTestMain.h"

#include <QDir>
#include <QMimeData>
#include <QTemporaryDir>
#include <QUrl>

#include <memory>

using namespace Kyte;
using namespace Kyte::Test;

class tst_KyFileSystemModelDrop : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void formatAndActions();
    void mimeData_countsARowOnce();
    void mimeData_keepsTheOrder();
    void mimeData_ofNothing();

    void drop_data();
    void drop();
    void drop_ignoresRowAndColumn();
    void drop_triesEveryFile_data();
    void drop_triesEveryFile();
    void drop_neverOverwrites_data();
    void drop_neverOverwrites();
    void moveToTheSameFolder_fails();
    void drop_ofNoUrls_succeeds();
    void drop_isRefused_data();
    void drop_isRefused();
    void drop_ofOtherAddresses_fails();
    void drop_onAFile_fails();
    void drop_leavesTheTreeToTheWatcher();

private:
    QString path(const QString &name) const;
    QModelIndex at(const QString &name) const;
    QMimeData *dragged(const QStringList &names);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FileModel> m_model;
    std::unique_ptr<QMimeData> m_data;
};

void tst_KyFileSystemModelDrop::init()
{
    m_folder.reset(new QTemporaryDir);
    makeEntries(m_folder->path(), {"from/a", "from/b c", "from/sub/x", "to/"});
    writeFile(path(QStringLiteral("from/a")), "content of a");
    m_model.reset(new FileModel);
    m_model->setUseFileSystemWatcher(false);
    m_model->setReadOnly(false);
    m_model->setRootPath(m_folder->path());
    m_model->fetchMore(at(QStringLiteral("from")));
}

void tst_KyFileSystemModelDrop::cleanup()
{
    m_model.reset();
    m_folder.reset();
}

QString tst_KyFileSystemModelDrop::path(const QString &name) const
{
    return m_folder->filePath(name);
}

QModelIndex tst_KyFileSystemModelDrop::at(const QString &name) const
{
    return m_model->at(path(name));
}

QMimeData *tst_KyFileSystemModelDrop::dragged(const QStringList &names)
{
    QList<QUrl> urls;
    for (const QString &name : names)
        urls.append(QUrl::fromLocalFile(path(name)));
    m_data.reset(new QMimeData);
    m_data->setUrls(urls);
    return m_data.get();
}

void tst_KyFileSystemModelDrop::formatAndActions()
{
    QCOMPARE(m_model->mimeTypes(), QStringList({"text/uri-list"}));
    QCOMPARE(m_model->supportedDropActions(), Qt::CopyAction | Qt::MoveAction | Qt::LinkAction);
}

void tst_KyFileSystemModelDrop::mimeData_countsARowOnce()
{
    QModelIndexList indexes;
    for (int row = 1; row < 3; ++row) {
        for (int column = 0; column < 4; ++column)
            indexes.append(m_model->index(row, column, at(QStringLiteral("from"))));
    }
    const std::unique_ptr<QMimeData> data(m_model->mimeData(indexes));
    QCOMPARE(data->urls(),
             QList<QUrl>({QUrl::fromLocalFile(path(QStringLiteral("from/a"))),
                          QUrl::fromLocalFile(path(QStringLiteral("from/b c")))}));
    QCOMPARE(data->formats(), m_model->mimeTypes());
}

void tst_KyFileSystemModelDrop::mimeData_keepsTheOrder()
{
    const std::unique_ptr<QMimeData> data(
        m_model->mimeData({at(QStringLiteral("from/b c")), at(QStringLiteral("to")),
                           at(QStringLiteral("from/a")), at(QStringLiteral("from/a"))}));
    QStringList files;
    for (const QUrl &url : data->urls())
        files.append(QDir(m_folder->path()).relativeFilePath(url.toLocalFile()));
    QCOMPARE(files, QStringList({"from/b c", "to", "from/a", "from/a"}));
}

void tst_KyFileSystemModelDrop::mimeData_ofNothing()
{
    for (const QModelIndexList &indexes :
         {QModelIndexList(), QModelIndexList({QModelIndex(), m_model->index(0, 1)})}) {
        const std::unique_ptr<QMimeData> data(m_model->mimeData(indexes));
        QVERIFY(data);
        QVERIFY(data->urls().isEmpty());
    }
}

void tst_KyFileSystemModelDrop::drop_data()
{
    QTest::addColumn<int>("action");
    QTest::addColumn<bool>("sourceStays");
    QTest::addColumn<bool>("isLink");
    QTest::newRow("copy") << int(Qt::CopyAction) << true << false;
    QTest::newRow("move") << int(Qt::MoveAction) << false << false;
    QTest::newRow("link") << int(Qt::LinkAction) << true << true;
}

void tst_KyFileSystemModelDrop::drop()
{
    QFETCH(int, action);
    QFETCH(bool, sourceStays);
    QFETCH(bool, isLink);
    QVERIFY(m_model->dropMimeData(dragged({"from/a", "from/b c"}), Qt::DropAction(action), -1, -1,
                                  at(QStringLiteral("to"))));
    QCOMPARE(namesIn(path(QStringLiteral("to"))), QStringList({"a", "b c"}));
#ifdef Q_OS_WIN
    if (isLink)
        QSKIP("What Qt makes here is a shortcut, which it reads only under a name that ends in .lnk");
#endif
    QCOMPARE(readFile(path(QStringLiteral("to/a"))), QByteArray("content of a"));
    QCOMPARE(QFileInfo(path(QStringLiteral("to/a"))).isSymLink(), isLink);
    if (isLink)
        QCOMPARE(QFileInfo(path(QStringLiteral("to/a"))).symLinkTarget(), path(QStringLiteral("from/a")));
    QCOMPARE(namesIn(path(QStringLiteral("from"))),
             sourceStays ? QStringList({"a", "b c", "sub"}) : QStringList({"sub"}));
}

void tst_KyFileSystemModelDrop::drop_ignoresRowAndColumn()
{
    QVERIFY(m_model->dropMimeData(dragged({"from/a"}), Qt::CopyAction, 7, 3, at(QStringLiteral("to"))));
    QCOMPARE(namesIn(path(QStringLiteral("to"))), QStringList({"a"}));
    // The root is a target like any other, by the index that is valid.
    QVERIFY(m_model->dropMimeData(dragged({"from/a"}), Qt::CopyAction, 0, 0, m_model->rootIndex()));
    QVERIFY(QFileInfo::exists(path(QStringLiteral("a"))));
    // Any column of the folder's row is the folder.
    QVERIFY(m_model->dropMimeData(dragged({"from/b c"}), Qt::CopyAction, 0, 0,
                                  m_model->index(path(QStringLiteral("to")), 2)));
    QCOMPARE(namesIn(path(QStringLiteral("to"))), QStringList({"a", "b c"}));
}

void tst_KyFileSystemModelDrop::drop_triesEveryFile_data()
{
    drop_data();
}

void tst_KyFileSystemModelDrop::drop_triesEveryFile()
{
    QFETCH(int, action);
    makeEntries(m_folder->path(), {"to/a"});
    QVERIFY(!m_model->dropMimeData(dragged({"from/a", "from/b c"}), Qt::DropAction(action), -1, -1,
                                   at(QStringLiteral("to"))));
    QCOMPARE(namesIn(path(QStringLiteral("to"))), QStringList({"a", "b c"}));
    // A failure at the end is not forgotten, nor one that is followed by a success.
    makeEntries(m_folder->path(), {"from/1", "from/2"});
    makeEntries(m_folder->path(), {"to/2"});
    QVERIFY(!m_model->dropMimeData(dragged({"from/1", "from/2"}), Qt::DropAction(action), -1, -1,
                                   at(QStringLiteral("to"))));
    QCOMPARE(namesIn(path(QStringLiteral("to"))), QStringList({"1", "2", "a", "b c"}));
}

void tst_KyFileSystemModelDrop::drop_neverOverwrites_data()
{
    drop_data();
}

void tst_KyFileSystemModelDrop::drop_neverOverwrites()
{
    QFETCH(int, action);
    writeFile(path(QStringLiteral("to/a")), "mine");
    QVERIFY(!m_model->dropMimeData(dragged({"from/a"}), Qt::DropAction(action), -1, -1,
                                   at(QStringLiteral("to"))));
    QCOMPARE(readFile(path(QStringLiteral("to/a"))), QByteArray("mine"));
    QCOMPARE(readFile(path(QStringLiteral("from/a"))), QByteArray("content of a"));
}

void tst_KyFileSystemModelDrop::moveToTheSameFolder_fails()
{
    QVERIFY(!m_model->dropMimeData(dragged({"from/a"}), Qt::MoveAction, -1, -1, at(QStringLiteral("from"))));
    QCOMPARE(readFile(path(QStringLiteral("from/a"))), QByteArray("content of a"));
}

void tst_KyFileSystemModelDrop::drop_ofNoUrls_succeeds()
{
    QVERIFY(m_model->dropMimeData(dragged({}), Qt::CopyAction, -1, -1, at(QStringLiteral("to"))));
    QMimeData text;
    text.setText(QStringLiteral("text"));
    QVERIFY(m_model->dropMimeData(&text, Qt::MoveAction, -1, -1, at(QStringLiteral("to"))));
    QCOMPARE(namesIn(path(QStringLiteral("to"))), QStringList());
}

void tst_KyFileSystemModelDrop::drop_isRefused_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("invalid parent") << 0;
    QTest::newRow("read-only model") << 1;
    QTest::newRow("ignore action") << 2;
    QTest::newRow("two actions") << 3;
    QTest::newRow("target move action") << 4;
    QTest::newRow("no data") << 5;
    QTest::newRow("destroyed folder") << 6;
}

void tst_KyFileSystemModelDrop::drop_isRefused()
{
    QFETCH(int, kind);
    QModelIndex parent = at(QStringLiteral("to"));
    Qt::DropAction action = Qt::MoveAction;
    if (kind == 0)
        parent = QModelIndex();
    else if (kind == 1)
        m_model->setReadOnly(true);
    else if (kind == 2)
        action = Qt::IgnoreAction;
    else if (kind == 3)
        action = Qt::DropAction(int(Qt::CopyAction | Qt::MoveAction));
    else if (kind == 4)
        action = Qt::TargetMoveAction;
    else if (kind == 6)
        m_model->deleteItem(m_model->getItem(parent));
    QMimeData *data = dragged({"from/a"});
    QVERIFY(!m_model->dropMimeData(kind == 5 ? nullptr : data, action, -1, -1, parent));
    QCOMPARE(namesIn(m_folder->path()), QStringList({"from", "to"}));
    QCOMPARE(namesIn(path(QStringLiteral("to"))), QStringList());
    QCOMPARE(namesIn(path(QStringLiteral("from"))), QStringList({"a", "b c", "sub"}));
}

void tst_KyFileSystemModelDrop::drop_ofOtherAddresses_fails()
{
    QMimeData data;
    data.setUrls({QUrl(QStringLiteral("http://example.org/x.png")), QUrl(),
                  QUrl::fromLocalFile(path(QStringLiteral("from/a")))});
    QVERIFY(!m_model->dropMimeData(&data, Qt::CopyAction, -1, -1, at(QStringLiteral("to"))));
    QCOMPARE(namesIn(path(QStringLiteral("to"))), QStringList({"a"}));
    QVERIFY(!m_model->dropMimeData(dragged({"from/none"}), Qt::MoveAction, -1, -1, at(QStringLiteral("to"))));
}

void tst_KyFileSystemModelDrop::drop_onAFile_fails()
{
    QVERIFY(
        !m_model->dropMimeData(dragged({"from/b c"}), Qt::CopyAction, -1, -1, at(QStringLiteral("from/a"))));
    QCOMPARE(readFile(path(QStringLiteral("from/a"))), QByteArray("content of a"));
}

void tst_KyFileSystemModelDrop::drop_leavesTheTreeToTheWatcher()
{
    auto *recorder = new SignalRecorder(m_model.get(), m_folder->path());
    const QStringList tree = treeOf(*m_model);
    QVERIFY(m_model->dropMimeData(dragged({"from/a"}), Qt::MoveAction, -1, -1, at(QStringLiteral("to"))));
    QCOMPARE(treeOf(*m_model), tree);
    QCOMPARE(recorder->take(), QStringList());

    FileModel watching;
    watching.setReadOnly(false);
    watching.setRootPath(m_folder->path());
    watching.fetchMore(watching.at(path(QStringLiteral("from"))));
    watching.fetchMore(watching.at(path(QStringLiteral("to"))));
    QVERIFY(watching.dropMimeData(dragged({"from/b c"}), Qt::MoveAction, -1, -1,
                                  watching.at(path(QStringLiteral("to")))));
    QTRY_COMPARE(treeOf(watching), QStringList({"from/", "  sub/...", "to/", "  a", "  b c"}));
}

KYTE_TEST_MAIN(tst_KyFileSystemModelDrop)
#include "tst_KyFileSystemModelDrop.moc"
