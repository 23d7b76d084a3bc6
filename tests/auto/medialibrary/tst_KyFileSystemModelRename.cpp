#include "KyFileModelProbe.h"
#include "KyTestEnvironment.h"
#include "KyTestMain.h"

#include <QDir>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>
#include <QTranslator>

#include <memory>

using namespace Kyte;
using namespace Kyte::Test;

/** Closes every message box that comes up and keeps what it said: "icon|title|text|buttons|parent". */
class BoxReader : public QObject
{
    Q_OBJECT

public:
    BoxReader()
    {
        m_timer.setInterval(5);
        connect(&m_timer, SIGNAL(timeout()), this, SLOT(onTimeout()));
        m_timer.start();
    }

    QStringList boxes;
    QStringList watchedMeanwhile;
    FileModel *model = nullptr;

private slots:
    void onTimeout()
    {
        QMessageBox *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return;
        boxes.append(QStringLiteral("%1|%2|%3|%4|%5")
                         .arg(box->icon())
                         .arg(box->windowTitle(), box->text())
                         .arg(int(box->standardButtons()))
                         .arg(box->parentWidget() ? 1 : 0));
        if (model)
            watchedMeanwhile = model->watched();
        box->accept();
    }

private:
    QTimer m_timer;
};

static QString information(const QString &text)
{
    return QStringLiteral("1|Invalid filename|%1|1024|0").arg(text);
}

static const QString EMPTY_NAME =
    QStringLiteral("<b>The name is empty.</b><p>You have to specify valid name.");
static const QString BAD_NAME = QStringLiteral(
    "<b>The name \"%1\" can not be used.</b><p>Try using another name, with fewer characters or no "
    "punctuations marks.");
static const QString USED_NAME =
    QStringLiteral("<b>The name \"%1\" is alrady in use.</b><p>Try using another name.");
static const QString FAILURE = QStringLiteral("3|Filename changing error|<b>An error occurred while changing "
                                              "the filename.</b><p>Try using another name, "
                                              "with fewer characters or no punctuations marks.|1024|0");

class tst_KyFileSystemModelRename : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void rename_data();
    void rename();
    void rename_tellsEverythingInOrder();
    void rename_belowTheRoot_refreshesTheRoot();
    void renameToSameName_isAccepted();
    void refusal_data();
    void refusal();
    void failure_isShown();
    void checks_comeInOrder();
    void notEditable_data();
    void notEditable();
    void watcher_pausesForTheRename_data();
    void watcher_pausesForTheRename();
    void watcher_isBackBeforeTheFailureIsShown();
    void texts_areTranslated();

private:
    QModelIndex at(const QString &name) const;
    QString path(const QString &name) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FileModel> m_model;
    SignalRecorder *m_recorder = nullptr;
};

void tst_KyFileSystemModelRename::init()
{
    m_folder.reset(new QTemporaryDir);
    makeEntries(
        m_folder->path(),
        {"f/clip.mp4", "f/used.mp4", "f/a.b/", "f/plain", "f/x.tar.gz", "f/.hid", "f/:x.mp4", "f/%1.mp4"});
    m_model.reset(new FileModel);
    m_model->setReadOnly(false);
    m_model->setUseFileSystemWatcher(false);
    m_model->setFilter(m_model->filter() | QDir::Hidden);
    m_model->setRootPath(m_folder->path());
    m_model->fetchMore(m_model->index(0, 0));
    m_recorder = new SignalRecorder(m_model.get(), m_folder->path());
}

void tst_KyFileSystemModelRename::cleanup()
{
    m_model.reset();
    m_folder.reset();
}

QString tst_KyFileSystemModelRename::path(const QString &name) const
{
    return m_folder->filePath(name);
}

QModelIndex tst_KyFileSystemModelRename::at(const QString &name) const
{
    return m_model->at(path(QStringLiteral("f/") + name));
}

void tst_KyFileSystemModelRename::rename_data()
{
    QTest::addColumn<QString>("oldName");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("newName");
    QTest::newRow("without suffix") << "clip.mp4"
                                    << "clip2"
                                    << "clip2.mp4";
    QTest::newRow("with the suffix") << "clip.mp4"
                                     << "clip2.mp4"
                                     << "clip2.mp4";
    QTest::newRow("with another suffix") << "clip.mp4"
                                         << "clip.avi"
                                         << "clip.avi";
    QTest::newRow("folder keeps no suffix") << "a.b"
                                            << "c"
                                            << "c";
    QTest::newRow("file without suffix") << "plain"
                                         << "bare"
                                         << "bare";
    QTest::newRow("last suffix only") << "x.tar.gz"
                                      << "y"
                                      << "y.gz";
    QTest::newRow("a dot first is a suffix") << "clip.mp4"
                                             << ".hidden"
                                             << ".hidden";
    QTest::newRow("the suffix of a hidden file") << ".hid"
                                                 << "shown"
                                                 << "shown.hid";
    QTest::newRow("trailing dot is none") << "clip.mp4"
                                          << "clip."
                                          << "clip..mp4";
    QTest::newRow("spaces") << "clip.mp4"
                            << " a b "
                            << " a b .mp4";
    QTest::newRow("non-ASCII") << "clip.mp4" << QString::fromUtf8("größe") << QString::fromUtf8("größe.mp4");
#ifndef Q_OS_WIN // where that is a name in use, and a colon stands in no name
    QTest::newRow("other letter case") << "clip.mp4"
                                       << "CLIP"
                                       << "CLIP.mp4";
#endif
    QTest::newRow("place marker") << "%1.mp4"
                                  << "%2%1"
                                  << "%2%1.mp4";
    // To Qt's paths a colon in front means a resource; in a folder it is a name like any other.
    QTest::newRow("to a colon in front") << "clip.mp4"
                                         << ":clip"
                                         << ":clip.mp4";
    QTest::newRow("from a colon in front") << ":x.mp4"
                                           << "y"
                                           << "y.mp4";
}

void tst_KyFileSystemModelRename::rename()
{
    QFETCH(QString, oldName);
    QFETCH(QString, typed);
    QFETCH(QString, newName);
    const bool isFolder = m_model->isDir(at(oldName));
    BoxReader reader;
    QVERIFY(m_model->setData(at(oldName), typed));
    QCOMPARE(reader.boxes, QStringList());
    const QStringList names = namesIn(path(QStringLiteral("f")));
    QVERIFY(names.contains(newName));
    QVERIFY(!names.contains(oldName));
    QCOMPARE(names.size(), 8);
    QVERIFY(namesBelow(*m_model, m_model->index(0, 0)).contains(newName));
    QCOMPARE(m_model->isDir(at(newName)), isFolder);
    QVERIFY(m_recorder->take().contains(QStringLiteral("fileRenamed(f %1 %2)").arg(oldName, newName)));
}

void tst_KyFileSystemModelRename::rename_tellsEverythingInOrder()
{
    QDir(path(QStringLiteral("f"))).removeRecursively();
    makeEntries(m_folder->path(), {"f/1.x", "f/2.x"});
    m_model->update(m_model->index(0, 0));
    m_recorder->learn();
    m_recorder->take();
    QSignalSpy spy(m_model.get(), SIGNAL(fileRenamed(QString, QString, QString)));
    QVERIFY(m_model->setData(at(QStringLiteral("2.x")), QStringLiteral("3")));
    QCOMPARE(m_recorder->take(),
             QStringList({"layoutAboutToBeChanged", "itemDeleted(f/1.x)", "layoutChanged",
                          "directoryLoaded(f)", "fileRenamed(f 2.x 3.x)"}));
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.first().first().toString(), path(QStringLiteral("f"))); // the folder's whole path
}

void tst_KyFileSystemModelRename::rename_belowTheRoot_refreshesTheRoot()
{
    QVERIFY(m_model->setData(m_model->index(0, 0), QStringLiteral("g"), Qt::EditRole));
    QCOMPARE(
        m_recorder->take(),
        QStringList({"layoutAboutToBeChanged",
                     "itemDeleted(f/x.tar.gz f/used.mp4 f/plain f/clip.mp4 f/:x.mp4 f/.hid f/%1.mp4 f/a.b f)",
                     "layoutChanged", "directoryLoaded(.)", "fileRenamed(. f g)"}));
    QCOMPARE(treeOf(*m_model), QStringList({"g/..."}));
}

void tst_KyFileSystemModelRename::renameToSameName_isAccepted()
{
    BoxReader reader;
    QVERIFY(m_model->setData(at(QStringLiteral("clip.mp4")), QStringLiteral("clip.mp4")));
    QCOMPARE(m_recorder->take(), QStringList());
    QCOMPARE(reader.boxes, QStringList());
}

void tst_KyFileSystemModelRename::refusal_data()
{
    QTest::addColumn<QVariant>("typed");
    QTest::addColumn<QString>("box");
    QTest::newRow("empty") << QVariant(QString()) << information(EMPTY_NAME);
    QTest::newRow("no text at all") << QVariant() << information(EMPTY_NAME);
    QTest::newRow("separator") << QVariant("x/y") << information(BAD_NAME.arg("x/y"));
    QTest::newRow("only the separator") << QVariant("/") << information(BAD_NAME.arg("/"));
    QTest::newRow("absolute") << QVariant("/tmp/x.mp4") << information(BAD_NAME.arg("/tmp/x.mp4"));
    QTest::newRow("used") << QVariant("used.mp4") << information(USED_NAME.arg("used.mp4"));
    QTest::newRow("used once the suffix is added")
        << QVariant("used") << information(USED_NAME.arg("used.mp4"));
    QTest::newRow("used by a folder") << QVariant("a.b") << information(USED_NAME.arg("a.b"));
    QTest::newRow("itself without suffix") << QVariant("clip") << information(USED_NAME.arg("clip.mp4"));
    QTest::newRow("used, with a colon in front") << QVariant(":x") << information(USED_NAME.arg(":x.mp4"));
    QTest::newRow("markup is left alone") << QVariant("<i>/") << information(BAD_NAME.arg("<i>/"));
}

void tst_KyFileSystemModelRename::refusal()
{
    QFETCH(QVariant, typed);
    QFETCH(QString, box);
    const QStringList names = namesIn(path(QStringLiteral("f")));
    BoxReader reader;
    QVERIFY(!m_model->setData(at(QStringLiteral("clip.mp4")), typed));
    QCOMPARE(reader.boxes, QStringList({box}));
    QCOMPARE(namesIn(path(QStringLiteral("f"))), names);
    QCOMPARE(m_recorder->take(), QStringList());
}

void tst_KyFileSystemModelRename::failure_isShown()
{
    BoxReader reader;
    const QString tooLong = QString(300, QLatin1Char('n'));
    QVERIFY(!m_model->setData(at(QStringLiteral("clip.mp4")), tooLong));
    QCOMPARE(reader.boxes, QStringList({FAILURE}));
    QVERIFY(QFileInfo::exists(path(QStringLiteral("f/clip.mp4"))));

    QVERIFY(QFile::remove(path(QStringLiteral("f/clip.mp4")))); // the model does not know yet
    QVERIFY(!m_model->setData(at(QStringLiteral("clip.mp4")), QStringLiteral("other")));
    QCOMPARE(reader.boxes, QStringList({FAILURE, FAILURE}));
    QCOMPARE(m_recorder->take(), QStringList());
}

void tst_KyFileSystemModelRename::checks_comeInOrder()
{
    // With a separator the suffix is not added and nobody looks whether there is such an entry.
    BoxReader reader;
    makeEntries(m_folder->path(), {"f/a.b/used.mp4"});
    QVERIFY(!m_model->setData(at(QStringLiteral("clip.mp4")), QStringLiteral("a.b/used")));
    QCOMPARE(reader.boxes, QStringList({information(BAD_NAME.arg("a.b/used"))}));
}

void tst_KyFileSystemModelRename::notEditable_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("read-only model") << 0;
    QTest::newRow("other column") << 1;
    QTest::newRow("other role") << 2;
    QTest::newRow("invalid index") << 3;
    QTest::newRow("the root itself") << 4;
    QTest::newRow("destroyed node") << 5;
    QTest::newRow("parent not registered") << 6;
}

void tst_KyFileSystemModelRename::notEditable()
{
    QFETCH(int, kind);
    QModelIndex index = at(QStringLiteral("clip.mp4"));
    KyFileSystemItem *folder = m_model->getItem(m_model->index(0, 0));
    int role = Qt::EditRole;
    if (kind == 0)
        m_model->setReadOnly(true);
    else if (kind == 1)
        index = index.sibling(index.row(), 1);
    else if (kind == 2)
        role = Qt::DisplayRole;
    else if (kind == 3)
        index = QModelIndex();
    else if (kind == 4)
        index = m_model->rootIndex();
    else if (kind == 5)
        m_model->deleteItem(m_model->getItem(index));
    else
        m_model->removeValidItem(folder);
    BoxReader reader;
    const QStringList names = namesIn(path(QStringLiteral("f")));
    // Even an empty name is not complained about.
    QVERIFY(!m_model->setData(index, QString(), role));
    QVERIFY(!m_model->setData(index, QStringLiteral("z"), role));
    QCOMPARE(reader.boxes, QStringList());
    QCOMPARE(namesIn(path(QStringLiteral("f"))), names);
    QCOMPARE(m_recorder->take(), QStringList());
    m_model->addValidItem(folder);
}

void tst_KyFileSystemModelRename::watcher_pausesForTheRename_data()
{
    QTest::addColumn<bool>("use");
    QTest::newRow("used") << true;
    QTest::newRow("not used") << false;
}

void tst_KyFileSystemModelRename::watcher_pausesForTheRename()
{
    QFETCH(bool, use);
    FileModel model;
    model.setReadOnly(false);
    model.setRootPath(m_folder->path());
    model.fetchMore(model.index(0, 0));
    const QStringList watched = {m_folder->path(), path(QStringLiteral("f"))};
    QCOMPARE(model.watched(), watched);
    model.setUseFileSystemWatcher(use);
    QStringList duringUpdate = {QStringLiteral("?")};
    QStringList whenRenamed;
    auto *recorder = new SignalRecorder(&model, m_folder->path());
    model.onUpdate = [&](const QModelIndex &) {
        duringUpdate = model.watched();
    };
    recorder->onSignal = [&](const QString &text) {
        if (text.startsWith(QLatin1String("fileRenamed")))
            whenRenamed = model.watched();
    };
    QVERIFY(model.setData(model.at(path(QStringLiteral("f/clip.mp4"))), QStringLiteral("other")));
    QCOMPARE(duringUpdate, use ? QStringList() : watched);
    QCOMPARE(whenRenamed, watched); // started again before anyone hears of it
    QCOMPARE(model.watched(), watched);
}

void tst_KyFileSystemModelRename::watcher_isBackBeforeTheFailureIsShown()
{
    FileModel model;
    model.setReadOnly(false);
    model.setRootPath(m_folder->path());
    model.fetchMore(model.index(0, 0));
    const QStringList watched = model.watched();
    BoxReader reader;
    reader.model = &model;
    QVERIFY(!model.setData(model.at(path(QStringLiteral("f/clip.mp4"))), QString(300, QLatin1Char('n'))));
    QCOMPARE(reader.boxes.size(), 1);
    QCOMPARE(reader.watchedMeanwhile, watched);
    QCOMPARE(model.watched(), watched);
}

/** Puts every text of the model's context between brackets. */
class Brackets : public QTranslator
{
    Q_OBJECT

public:
    bool isEmpty() const override
    {
        return false;
    }

    QString translate(const char *context, const char *text, const char *, int) const override
    {
        if (qstrcmp(context, "Kyte::KyFileSystemModel") != 0)
            return QString();
        return QStringLiteral("[%1]").arg(QString::fromUtf8(text));
    }
};

void tst_KyFileSystemModelRename::texts_areTranslated()
{
    Brackets brackets;
    QCoreApplication::installTranslator(&brackets);
    BoxReader reader;
    for (const QString &name :
         {QString(), QStringLiteral("x/y"), QStringLiteral("used"), QString(300, QLatin1Char('n'))})
        QVERIFY(!m_model->setData(at(QStringLiteral("clip.mp4")), name));
    QCOMPARE(reader.boxes.size(), 4);
    for (const QString &box : qAsConst(reader.boxes)) {
        const QStringList parts = box.split(QLatin1Char('|'));
        QVERIFY2(parts.at(1).startsWith(QLatin1Char('[')), qPrintable(box));
        QVERIFY2(parts.at(2).startsWith(QLatin1Char('[')), qPrintable(box));
    }
    QVERIFY(reader.boxes.at(1).contains(QStringLiteral("\"x/y\"")));
}

KYTE_TEST_MAIN(tst_KyFileSystemModelRename)
#include "tst_KyFileSystemModelRename.moc"
