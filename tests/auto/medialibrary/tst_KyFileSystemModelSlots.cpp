#include "KyFileModelProbe.h"
#include "KyTestEnvironment.h"
#include "KyTestMain.h"

#include <QDir>
#include <QEventLoop>
#include <QMessageBox>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>

#include <memory>

using namespace Kyte;
using namespace Kyte::Test;

/** What listeners may do while the model is at work. A deadlock ends in the time limit of the test. */
class tst_KyFileSystemModelSlots : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void fetchMore_fromASlot_doesNothing_data();
    void fetchMore_fromASlot_doesNothing();
    void update_fromASlot_waits_data();
    void update_fromASlot_waits();
    void update_ofNothingFromASlot_asksForNothing();
    void messageBox_whileTheWatcherReports_data();
    void messageBox_whileTheWatcherReports();
    void eventLoop_withDelayedReports();
    void setRootPath_fromASlot_data();
    void setRootPath_fromASlot();
    void removeRows_fromASlot_data();
    void removeRows_fromASlot();
    void rename_fromASlot();
    void destruction_fromASlot_data();
    void destruction_fromASlot();
    void indexesAreQuiet_data();
    void indexesAreQuiet();
    void view_expandsEverything();

private:
    void act(const QString &operation);
    QString path(const QString &name) const;
    QModelIndex at(const QString &name) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FileModel> m_model;
    SignalRecorder *m_recorder = nullptr;
};

void tst_KyFileSystemModelSlots::init()
{
    m_folder.reset(new QTemporaryDir);
    makeEntries(m_folder->path(), {"f/a", "f/b", "g/c", "h/", "x"});
    m_model.reset(new FileModel);
    m_model->setReadOnly(false);
    m_model->setRootPath(m_folder->path());
    m_model->fetchMore(at(QStringLiteral("f")));
    m_recorder = new SignalRecorder(m_model.get(), m_folder->path());
}

void tst_KyFileSystemModelSlots::cleanup()
{
    m_model.reset();
    m_folder.reset();
}

QString tst_KyFileSystemModelSlots::path(const QString &name) const
{
    return m_folder->filePath(name);
}

QModelIndex tst_KyFileSystemModelSlots::at(const QString &name) const
{
    return m_model->at(path(name));
}

/** Starts what sends signals under the mutex. */
void tst_KyFileSystemModelSlots::act(const QString &operation)
{
    if (operation == QLatin1String("fetchMore"))
        m_model->fetchMore(at(QStringLiteral("g")));
    else if (operation == QLatin1String("update folder"))
        m_model->update(at(QStringLiteral("f")));
    else if (operation == QLatin1String("update file"))
        m_model->update(at(QStringLiteral("f/b")));
    else if (operation == QLatin1String("update gone")) {
        m_model->stopFileSystemWatcher(); // this time nobody else shall see it
        const QModelIndex index = at(QStringLiteral("f/b"));
        QFile::remove(path(QStringLiteral("f/b")));
        m_model->update(index);
    }
}

static void addSignals(const QStringList &operations = {"fetchMore", "update folder", "update file"})
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("signal");
    for (const QString &operation : operations) {
        for (const char *signal :
             {"layoutAboutToBeChanged", "itemDeleted", "layoutChanged", "directoryLoaded"}) {
            if (operation == QLatin1String("fetchMore") && qstrcmp(signal, "itemDeleted") == 0)
                continue;
            QTest::addRow("%s, %s", qPrintable(operation), signal) << operation << signal;
        }
    }
}

static void addAllSignals()
{
    addSignals();
    QTest::newRow("update gone, rowsAboutToBeRemoved") << "update gone"
                                                       << "rowsAboutToBeRemoved";
    QTest::newRow("update gone, rowsRemoved") << "update gone"
                                              << "rowsRemoved";
}

void tst_KyFileSystemModelSlots::fetchMore_fromASlot_doesNothing_data()
{
    addAllSignals();
}

void tst_KyFileSystemModelSlots::fetchMore_fromASlot_doesNothing()
{
    QFETCH(QString, operation);
    QFETCH(QString, signal);
    makeEntries(m_folder->path(), {"h/late"});
    int calls = 0;
    m_recorder->onSignal = [&](const QString &text) {
        if (text.startsWith(signal)) {
            ++calls;
            m_model->fetchMore(at(QStringLiteral("h")));
        }
    };
    act(operation);
    QCOMPARE(calls, 1);
    QCOMPARE(m_model->rowCount(at(QStringLiteral("h"))), 0);
    QVERIFY(m_model->canFetchMore(at(QStringLiteral("h")))); // so that the view asks again
    m_recorder->onSignal = nullptr;
    m_model->fetchMore(at(QStringLiteral("h")));
    QCOMPARE(m_model->rowCount(at(QStringLiteral("h"))), 1);
}

void tst_KyFileSystemModelSlots::update_fromASlot_waits_data()
{
    addAllSignals();
}

void tst_KyFileSystemModelSlots::update_fromASlot_waits()
{
    QFETCH(QString, operation);
    QFETCH(QString, signal);
    m_model->stopFileSystemWatcher();
    makeEntries(m_folder->path(), {"new"});
    bool asked = false;
    m_recorder->onSignal = [&](const QString &text) {
        if (!asked && text.startsWith(signal)) {
            asked = true;
            m_model->update(QModelIndex());
            QVERIFY(!at(QStringLiteral("new")).isValid());
        }
    };
    act(operation);
    QVERIFY(asked);
    QVERIFY(!at(QStringLiteral("new")).isValid());
    QTRY_VERIFY(at(QStringLiteral("new")).isValid());
}

void tst_KyFileSystemModelSlots::update_ofNothingFromASlot_asksForNothing()
{
    m_model->stopFileSystemWatcher();
    const QModelIndex stale = at(QStringLiteral("f/a")); // no node has its address before this is over
    bool asked = false;
    m_recorder->onSignal = [&](const QString &text) {
        if (text == QLatin1String("layoutChanged")) {
            asked = true;
            m_model->update(stale);
        }
    };
    m_model->update(at(QStringLiteral("f")));
    QVERIFY(asked);
    m_recorder->onSignal = nullptr;
    m_recorder->take();
    QTest::qWait(30);
    QCOMPARE(m_recorder->take(), QStringList());
}

void tst_KyFileSystemModelSlots::messageBox_whileTheWatcherReports_data()
{
    addSignals();
}

void tst_KyFileSystemModelSlots::messageBox_whileTheWatcherReports()
{
    QFETCH(QString, operation);
    QFETCH(QString, signal);
    QSignalSpy reports(m_model->watcher(), SIGNAL(directoryChanged(QString)));
    bool shown = false;
    bool seenInside = false;
    m_recorder->onSignal = [&](const QString &text) {
        if (shown || !text.startsWith(signal))
            return;
        shown = true;
        QMessageBox box;
        makeEntries(m_folder->path(), {"while"});
        QTimer timer;
        connect(&timer, &QTimer::timeout, &box, [&] {
            if (!reports.isEmpty()) // the model's slot has been called before this one
                box.accept();
        });
        timer.start(5);
        box.exec();
        seenInside = at(QStringLiteral("while")).isValid();
    };
    act(operation);
    QVERIFY(shown);
    QVERIFY(!reports.isEmpty());
    QVERIFY(!seenInside);
    QTRY_VERIFY(at(QStringLiteral("while")).isValid());
}

void tst_KyFileSystemModelSlots::eventLoop_withDelayedReports()
{
    m_model->setRefreshDelay(1);
    bool shown = false;
    m_recorder->onSignal = [&](const QString &text) {
        if (shown || text != QLatin1String("layoutChanged"))
            return;
        shown = true;
        m_model->onDirectoryChanged(m_folder->path());
        m_model->onDirectoryChanged(path(QStringLiteral("f")));
        QEventLoop loop;
        QTimer::singleShot(30, &loop, SLOT(quit()));
        loop.exec(); // longer than the delay
    };
    m_model->stopFileSystemWatcher();
    makeEntries(m_folder->path(), {"new"});
    m_model->fetchMore(at(QStringLiteral("g")));
    QVERIFY(shown);
    QVERIFY(!at(QStringLiteral("new")).isValid());
    QTRY_VERIFY(at(QStringLiteral("new")).isValid());
}

void tst_KyFileSystemModelSlots::setRootPath_fromASlot_data()
{
    addAllSignals();
}

void tst_KyFileSystemModelSlots::setRootPath_fromASlot()
{
    QFETCH(QString, operation);
    QFETCH(QString, signal);
    makeEntries(m_folder->path(), {"h/late"});
    bool done = false;
    m_recorder->onSignal = [&](const QString &text) {
        if (done || !text.startsWith(signal))
            return;
        done = true;
        m_model->setRootPath(path(QStringLiteral("h")));
    };
    act(operation);
    QVERIFY(done);
    QCOMPARE(m_model->rootPath(), path(QStringLiteral("h")));
    QCOMPARE(treeOf(*m_model), QStringList({"late"}));
    if (operation != QLatin1String("update gone"))
        QCOMPARE(m_model->watched(), QStringList({path(QStringLiteral("h"))}));
    m_recorder->onSignal = nullptr;
    m_model->update(QModelIndex());
    QCOMPARE(treeOf(*m_model), QStringList({"late"}));
}

void tst_KyFileSystemModelSlots::removeRows_fromASlot_data()
{
    addSignals();
}

void tst_KyFileSystemModelSlots::removeRows_fromASlot()
{
    QFETCH(QString, operation);
    QFETCH(QString, signal);
    bool done = false;
    m_recorder->onSignal = [&](const QString &text) {
        if (done || !text.startsWith(signal))
            return;
        done = true;
        m_model->removeRows(0, m_model->rowCount(), m_model->rootIndex());
    };
    act(operation);
    QVERIFY(done);
    QCOMPARE(m_model->rowCount(), 0);
    QVERIFY(m_recorder->take().contains(QStringLiteral("layoutChanged"))); // begun is ended
    m_model->update(QModelIndex());
    QCOMPARE(treeOf(*m_model), QStringList({"f/...", "g/...", "h/...", "x"}));
}

void tst_KyFileSystemModelSlots::rename_fromASlot()
{
    bool renamed = false;
    m_recorder->onSignal = [&](const QString &text) {
        if (text == QLatin1String("directoryLoaded(g)"))
            renamed = m_model->setData(at(QStringLiteral("g/c")), QStringLiteral("d"));
    };
    m_model->fetchMore(at(QStringLiteral("g")));
    QVERIFY(renamed);
    QVERIFY(QFileInfo::exists(path(QStringLiteral("g/d"))));
    QTRY_VERIFY(at(QStringLiteral("g/d")).isValid());
}

void tst_KyFileSystemModelSlots::destruction_fromASlot_data()
{
    QTest::addColumn<QString>("signal");
    QTest::newRow("setRootPath") << "layoutChanged";
    QTest::newRow("removeRows") << "rowsRemoved";
    QTest::newRow("setData") << "fileRenamed";
}

/** Outside the mutex a listener may delete the model at the last signal. A sanitizer build sees more. */
void tst_KyFileSystemModelSlots::destruction_fromASlot()
{
    QFETCH(QString, signal);
    m_model->update(at(QStringLiteral("f"))); // leaves an unlinked node
    QPointer<FileModel> model = m_model.get();
    m_recorder->setParent(nullptr);
    const std::unique_ptr<SignalRecorder> recorder(m_recorder);
    m_recorder->onSignal = [&](const QString &text) {
        if (text.startsWith(signal))
            m_model.reset();
    };
    if (signal == QLatin1String("layoutChanged"))
        m_model->setRootPath(path(QStringLiteral("f")));
    else if (signal == QLatin1String("rowsRemoved"))
        m_model->removeRows(0, 1, at(QStringLiteral("f")));
    else
        m_model->setData(at(QStringLiteral("f/a")), QStringLiteral("z"));
    QVERIFY(!model);
}

void tst_KyFileSystemModelSlots::indexesAreQuiet_data()
{
    addAllSignals();
}

/** Whoever looks in the middle finds a whole tree. */
void tst_KyFileSystemModelSlots::indexesAreQuiet()
{
    QFETCH(QString, operation);
    QFETCH(QString, signal);
    int looks = 0;
    m_recorder->onSignal = [&](const QString &text) {
        if (!text.startsWith(signal))
            return;
        ++looks;
        QVERIFY(treeOf(*m_model).size() >= 4);
        for (int row = 0; row < m_model->rowCount(); ++row) {
            for (int column = 0; column < 4; ++column) {
                for (int role = 0; role < 20; ++role)
                    m_model->data(m_model->index(row, column), role);
            }
        }
        m_model->findItem(path(QStringLiteral("f/b")));
    };
    act(operation);
    QCOMPARE(looks, 1);
}

void tst_KyFileSystemModelSlots::view_expandsEverything()
{
    QTreeView view;
    view.setModel(m_model.get());
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    for (const char *name : {"f", "g", "h"})
        view.expand(at(QLatin1String(name)));
    QTRY_COMPARE(treeOf(*m_model), QStringList({"f/", "  a", "  b", "g/", "  c", "h/", "x"}));
    QVERIFY(changeElsewhere({"create", path(QStringLiteral("new"))}));
    QTRY_VERIFY(at(QStringLiteral("new")).isValid());
    view.expandAll();
    QVERIFY(changeElsewhere({"remove", path(QStringLiteral("f"))}));
    QTRY_VERIFY(!at(QStringLiteral("f")).isValid());
    view.grab();
}

KYTE_TEST_MAIN(tst_KyFileSystemModelSlots)
#include "tst_KyFileSystemModelSlots.moc"
