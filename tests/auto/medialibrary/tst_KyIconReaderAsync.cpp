#include "KyThumbnailFolder.h"

#include <KyTestMain.h>

#include <KyIconReader.h>
#include <KyIconReaderAsync.h>

using namespace Kyte;

class tst_KyIconReaderAsync : public QObject
{
    Q_OBJECT

private slots:
    void newObject_isEmpty();
    void constructors_takePathOrList();
    void setters_replace();

    void start_deliversInOrder();
    void start_deliversIconsOfStoredSize();
    void start_deliversOnTheGuiThread();
    void start_makesAThreadOfItsOwn();
    void start_putsThePathInFront_data();
    void start_putsThePathInFront();
    void emptyList_finishesSilently();
    void brokenThumbnail_isANullIcon();
    void longList_isDeliveredWhole();

    void finishing_deletesTheObject();
    void finishing_keepsTheObject_whenWanted();
    void deletingOnFinish_isDecidedAtTheStart();
    void stop_interruptsNothing();

    void neverStarted_isDeleted();
    void deletedRightAfterStart_data();
    void deletedRightAfterStart();
    void deletedInALongWalk_leavesItRunning();
    void deletedInALongWalk_waitsOnceForAll();
    void deletedByItsParent();
    void deletedByASlot_data();
    void deletedByASlot();
    void deletedAgainAndAgain();

    void secondStart_deliversTwice();
    void secondStart_deletesWithTheFirst();
    void startAfterFinish_deliversAgain();

    void privateSlots_emitTheSignals();

    void processEnds_inTheMiddleOfAWalk_data();
    void processEnds_inTheMiddleOfAWalk();
};

/** Takes the icons of a reader and notes them as text: "a.png 40x30", "failed b.png". */
class Receiver : public QObject
{
    Q_OBJECT

public:
    explicit Receiver(KyIconReaderAsync *reader)
    {
        // Direct: the slots run where the signals are emitted.
        connect(reader, SIGNAL(iconReadCompleted(QString, QIcon *)), SLOT(onIcon(QString, QIcon *)),
                Qt::DirectConnection);
        connect(reader, SIGNAL(iconReadFailed(QString)), SLOT(onFailed(QString)), Qt::DirectConnection);
    }

    QStringList lines;
    QVector<QColor> colors;
    QSet<QThread *> threads;

public slots:
    void onIcon(const QString &path, QIcon *icon)
    {
        const std::unique_ptr<QIcon> owned(icon);
        const QSize size = icon->availableSizes(QIcon::Normal, QIcon::Off).value(0, QSize(0, 0));
        QVERIFY(icon->availableSizes(QIcon::Normal, QIcon::On).isEmpty());
        note(path);
        lines.last() += QStringLiteral(" %1x%2").arg(size.width()).arg(size.height());
        if (!size.isEmpty())
            colors.append(icon->pixmap(size).toImage().pixelColor(0, 0));
    }
    void onFailed(const QString &path)
    {
        note(path);
        lines.last().prepend(QStringLiteral("failed "));
    }

private:
    void note(const QString &path)
    {
        QVERIFY(QDir::isAbsolutePath(path));
        lines.append(QFileInfo(path).fileName());
        threads.insert(QThread::currentThread());
    }
};

/** The same file so often that reading it takes minutes. */
static QStringList endlessList(const Test::ThumbnailFolder &folder)
{
    const QString path = folder.addMany(1).first();
    QStringList paths;
    for (int i = 0; i < 2000000; ++i)
        paths.append(path);
    return paths;
}

static QThread *threadOf(KyIconReaderAsync *reader)
{
    return reader->findChild<QThread *>();
}

void tst_KyIconReaderAsync::newObject_isEmpty()
{
    const KyIconReaderAsync reader;
    QCOMPARE(reader.path(), QString());
    QCOMPARE(reader.pathList(), QStringList());
    QVERIFY(reader.isDeleteOnFinished());
    QVERIFY(!reader.parent());
}

void tst_KyIconReaderAsync::constructors_takePathOrList()
{
    const KyIconReaderAsync single(QStringLiteral("a.png"), this);
    QCOMPARE(single.path(), QStringLiteral("a.png"));
    QCOMPARE(single.pathList(), QStringList());
    QCOMPARE(single.parent(), this);

    const KyIconReaderAsync list(QStringList{"a.png", "b.png"}, this);
    QCOMPARE(list.path(), QString());
    QCOMPARE(list.pathList(), QStringList({"a.png", "b.png"}));
    QCOMPARE(list.parent(), this);
}

void tst_KyIconReaderAsync::setters_replace()
{
    KyIconReaderAsync reader;
    reader.setPath(QStringLiteral("a.png"));
    reader.setPathList({"b.png"});
    reader.setDeleteOnFinished(false);
    QCOMPARE(reader.path(), QStringLiteral("a.png"));
    QCOMPARE(reader.pathList(), QStringList{"b.png"});
    QVERIFY(!reader.isDeleteOnFinished());
}

void tst_KyIconReaderAsync::start_deliversInOrder()
{
    const Test::ThumbnailFolder folder;
    const QStringList paths{folder.addFile("a.png"), folder.addFile("b.mp4"), folder.addFile("c.wav"),
                            folder.addFile("d.doc")};
    folder.addThumbnail("a.png", Qt::red);
    folder.addThumbnail("c.wav", Qt::blue);
    folder.addThumbnail("d.doc", Qt::green);
    const QPointer<KyIconReaderAsync> reader = new KyIconReaderAsync(paths);
    const Receiver receiver(reader);
    QSignalSpy failures(reader, SIGNAL(iconReadFailed(QString)));
    reader->start();
    QTRY_VERIFY(!reader);
    QCOMPARE(receiver.lines, QStringList({"a.png 40x30", "failed b.mp4", "c.wav 40x30", "failed d.doc"}));
    QCOMPARE(receiver.colors, QVector<QColor>({Qt::red, Qt::blue}));
    QCOMPARE(failures.first().first().toString(), paths.at(1));
}

void tst_KyIconReaderAsync::start_deliversIconsOfStoredSize()
{
    const Test::ThumbnailFolder folder;
    folder.addThumbnail("a.png", Qt::red, QSize(300, 7));
    const QPointer<KyIconReaderAsync> reader = new KyIconReaderAsync(folder.addFile("a.png"));
    const Receiver receiver(reader);
    reader->start();
    QTRY_VERIFY(!reader);
    QCOMPARE(receiver.lines, QStringList{"a.png 300x7"});
}

void tst_KyIconReaderAsync::start_deliversOnTheGuiThread()
{
    const Test::ThumbnailFolder folder;
    QStringList paths = folder.addMany(5);
    paths.append(folder.path("none.png"));
    const QPointer<KyIconReaderAsync> reader = new KyIconReaderAsync(paths);
    const Receiver receiver(reader);
    reader->start();
    QCOMPARE(receiver.lines, QStringList()); // nothing before the event loop
    QTRY_VERIFY(!reader);
    QCOMPARE(receiver.lines.size(), 6);
    QCOMPARE(receiver.threads, QSet<QThread *>{thread()});
}

void tst_KyIconReaderAsync::start_makesAThreadOfItsOwn()
{
    const Test::ThumbnailFolder folder;
    KyIconReaderAsync reader(folder.addMany(1));
    reader.setDeleteOnFinished(false);
    QVERIFY(!threadOf(&reader));
    reader.start();
    QVERIFY(threadOf(&reader));
    QCOMPARE(threadOf(&reader)->parent(), &reader);
    QVERIFY(reader.findChildren<KyIconReader *>().isEmpty());
    QTRY_VERIFY(threadOf(&reader)->isFinished());
}

void tst_KyIconReaderAsync::start_putsThePathInFront_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("alone") << "/a.png" << QStringList() << QStringList{"/a.png"};
    QTest::newRow("new") << "/a.png" << QStringList{"/b.png"} << QStringList({"/a.png", "/b.png"});
    QTest::newRow("in the list") << "/a.png" << QStringList({"/b.png", "/a.png"})
                                 << QStringList({"/b.png", "/a.png"});
    QTest::newRow("other case") << "/a.png" << QStringList{"/A.png"} << QStringList({"/a.png", "/A.png"});
    QTest::newRow("empty") << "" << QStringList{"/b.png"} << QStringList{"/b.png"};
}

void tst_KyIconReaderAsync::start_putsThePathInFront()
{
    QFETCH(QString, path);
    QFETCH(QStringList, list);
    QFETCH(QStringList, expected);
    KyIconReaderAsync reader(path);
    reader.setPathList(list);
    reader.setDeleteOnFinished(false);
    QSignalSpy failures(&reader, SIGNAL(iconReadFailed(QString)));
    reader.start();
    QCOMPARE(reader.pathList(), expected);
    QTRY_COMPARE(failures.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i)
        QCOMPARE(failures.at(i).first().toString(), QFileInfo(expected.at(i)).absoluteFilePath());
}

void tst_KyIconReaderAsync::emptyList_finishesSilently()
{
    const QPointer<KyIconReaderAsync> reader = new KyIconReaderAsync;
    const Receiver receiver(reader);
    reader->start();
    QTRY_VERIFY(!reader);
    QCOMPARE(receiver.lines, QStringList());
}

void tst_KyIconReaderAsync::brokenThumbnail_isANullIcon()
{
    const Test::ThumbnailFolder folder;
    folder.addThumbnail("a.png", QByteArray("no image"));
    const QPointer<KyIconReaderAsync> reader = new KyIconReaderAsync(folder.addFile("a.png"));
    const Receiver receiver(reader);
    reader->start();
    QTRY_VERIFY(!reader);
    QCOMPARE(receiver.lines, QStringList{"a.png 0x0"});
}

void tst_KyIconReaderAsync::longList_isDeliveredWhole()
{
    const Test::ThumbnailFolder folder;
    const QStringList paths = folder.addMany(2000, QSize(4, 3));
    QStringList expected;
    for (int i = 0; i < paths.size(); ++i)
        expected.append(QStringLiteral("%1.png 4x3").arg(i));
    const QPointer<KyIconReaderAsync> reader = new KyIconReaderAsync(paths);
    const Receiver receiver(reader);
    reader->start();
    QTRY_VERIFY_WITH_TIMEOUT(!reader, 60000);
    QCOMPARE(receiver.lines, expected);
}

void tst_KyIconReaderAsync::finishing_deletesTheObject()
{
    const Test::ThumbnailFolder folder;
    const QPointer<KyIconReaderAsync> reader = new KyIconReaderAsync(folder.addMany(3), this);
    const Receiver receiver(reader);
    reader->start();
    const QPointer<QThread> thread = threadOf(reader);
    QTRY_VERIFY(!reader);
    QVERIFY(!thread);
    QCOMPARE(receiver.lines.size(), 3);
}

void tst_KyIconReaderAsync::finishing_keepsTheObject_whenWanted()
{
    const Test::ThumbnailFolder folder;
    const QPointer<KyIconReaderAsync> reader = new KyIconReaderAsync(folder.addMany(3));
    const std::unique_ptr<KyIconReaderAsync> owner(reader);
    const Receiver receiver(reader);
    reader->setDeleteOnFinished(false);
    reader->start();
    QTRY_VERIFY(threadOf(reader)->isFinished());
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(reader);
    QCOMPARE(receiver.lines.size(), 3);
}

void tst_KyIconReaderAsync::deletingOnFinish_isDecidedAtTheStart()
{
    const Test::ThumbnailFolder folder;
    const QPointer<KyIconReaderAsync> reader = new KyIconReaderAsync(folder.addMany(1));
    const Receiver receiver(reader);
    reader->start();
    reader->setDeleteOnFinished(false);
    QTRY_VERIFY(!reader);
    QCOMPARE(receiver.lines.size(), 1);
}

void tst_KyIconReaderAsync::stop_interruptsNothing()
{
    const Test::ThumbnailFolder folder;
    const QPointer<KyIconReaderAsync> reader = new KyIconReaderAsync(folder.addMany(200));
    const Receiver receiver(reader);
    reader->stop(); // before a start
    reader->start();
    reader->stop();
    QTRY_VERIFY(!receiver.lines.isEmpty());
    if (reader)
        reader->stop();
    QTRY_VERIFY(!reader);
    QCOMPARE(receiver.lines.size(), 200);
}

void tst_KyIconReaderAsync::neverStarted_isDeleted()
{
    QElapsedTimer timer;
    timer.start();
    delete new KyIconReaderAsync(QStringList{"/a.png"});
    QVERIFY(timer.elapsed() < 500);
}

void tst_KyIconReaderAsync::deletedRightAfterStart_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("deleteOnFinished");
    for (const int count : {0, 1, 10}) {
        QTest::addRow("%d", count) << count << true;
        QTest::addRow("%d, kept on finishing", count) << count << false;
    }
}

void tst_KyIconReaderAsync::deletedRightAfterStart()
{
    QFETCH(int, count);
    QFETCH(bool, deleteOnFinished);
    const Test::ThumbnailFolder folder;
    auto *reader = new KyIconReaderAsync(folder.addMany(count));
    reader->setDeleteOnFinished(deleteOnFinished);
    const Receiver receiver(reader);
    reader->start();
    const QPointer<QThread> thread = threadOf(reader);
    delete reader;
    QVERIFY(!thread); // it was asked to quit before it was waited for
    QCoreApplication::processEvents();
    QCOMPARE(receiver.lines, QStringList());
}

void tst_KyIconReaderAsync::deletedInALongWalk_leavesItRunning()
{
    const Test::ThumbnailFolder folder;
    auto *reader = new KyIconReaderAsync(endlessList(folder));
    const Receiver receiver(reader);
    reader->start();
    QTRY_VERIFY(receiver.lines.size() > 3);
    const QPointer<QThread> thread = threadOf(reader);
    const int delivered = receiver.lines.size();
    QElapsedTimer timer;
    timer.start();
    delete reader;
    QVERIFY2(timer.elapsed() >= 490, qPrintable(QString::number(timer.elapsed())));

    QVERIFY(thread);
    QVERIFY(thread->isRunning());
    QVERIFY(!thread->parent());
    QCoreApplication::processEvents();
    QCOMPARE(receiver.lines.size(), delivered);

    thread->requestInterruption(); // the test has no time for the rest
    QTRY_VERIFY(!thread);
    QCOMPARE(receiver.lines.size(), delivered);
}

void tst_KyIconReaderAsync::deletedInALongWalk_waitsOnceForAll()
{
    const Test::ThumbnailFolder folder;
    auto *reader = new KyIconReaderAsync(endlessList(folder));
    for (int i = 0; i < 4; ++i)
        reader->start();
    const QList<QThread *> threads = reader->findChildren<QThread *>();
    QCOMPARE(threads.size(), 4);
    QVector<QPointer<QThread>> running;
    for (QThread *thread : threads)
        running.append(thread);
    QElapsedTimer timer;
    timer.start();
    delete reader;
    QVERIFY2(timer.elapsed() < 4 * 500, qPrintable(QString::number(timer.elapsed())));
    for (const QPointer<QThread> &thread : qAsConst(running)) {
        QVERIFY(thread && thread->isRunning());
        thread->requestInterruption();
    }
    for (const QPointer<QThread> &thread : qAsConst(running))
        QTRY_VERIFY(!thread);
}

void tst_KyIconReaderAsync::deletedByItsParent()
{
    const Test::ThumbnailFolder folder;
    auto *parent = new QObject;
    const QPointer<KyIconReaderAsync> reader = new KyIconReaderAsync(folder.addMany(50), parent);
    const Receiver receiver(reader);
    reader->start();
    const QPointer<QThread> thread = threadOf(reader);
    delete parent;
    QVERIFY(!reader);
    QTRY_VERIFY(!thread);
    QCOMPARE(receiver.lines, QStringList());
}

void tst_KyIconReaderAsync::deletedByASlot_data()
{
    QTest::addColumn<bool>("withFailure");
    QTest::newRow("icon") << false;
    QTest::newRow("failure") << true;
}

void tst_KyIconReaderAsync::deletedByASlot()
{
    QFETCH(bool, withFailure);
    const Test::ThumbnailFolder folder;
    QStringList paths = folder.addMany(20);
    if (withFailure)
        paths.prepend(folder.path("none.png"));
    const QPointer<KyIconReaderAsync> reader = new KyIconReaderAsync(paths);
    const Receiver receiver(reader);
    const auto deleteReader = [&reader] {
        delete reader;
    };
    connect(reader, &KyIconReaderAsync::iconReadCompleted, this, deleteReader);
    connect(reader, &KyIconReaderAsync::iconReadFailed, this, deleteReader);
    reader->start();
    const QPointer<QThread> thread = threadOf(reader);
    QTRY_VERIFY(!reader);
    QTRY_VERIFY(!thread);
    QCOMPARE(receiver.lines.size(), 1);
}

/** At every moment of a short walk, as chance will have it. */
void tst_KyIconReaderAsync::deletedAgainAndAgain()
{
    const Test::ThumbnailFolder folder;
    const QStringList paths = folder.addMany(8);
    for (int round = 0; round < 300; ++round) {
        const QPointer<KyIconReaderAsync> reader = new KyIconReaderAsync(paths);
        const Receiver receiver(reader);
        reader->start();
        for (int i = 0; i < round % 12; ++i)
            QCoreApplication::processEvents();
        delete reader;
        QVERIFY(receiver.lines.size() <= 8);
    }
}

void tst_KyIconReaderAsync::secondStart_deliversTwice()
{
    const Test::ThumbnailFolder folder;
    KyIconReaderAsync reader(folder.addMany(50));
    reader.setDeleteOnFinished(false);
    const Receiver receiver(&reader);
    reader.start();
    reader.start();
    QCOMPARE(reader.findChildren<QThread *>().size(), 2);
    QTRY_COMPARE(receiver.lines.size(), 100);
    QCOMPARE(receiver.lines.count(QStringLiteral("0.png 40x30")), 2);
    QCOMPARE(receiver.lines.count(QStringLiteral("49.png 40x30")), 2);
}

void tst_KyIconReaderAsync::secondStart_deletesWithTheFirst()
{
    const Test::ThumbnailFolder folder;
    const QPointer<KyIconReaderAsync> reader = new KyIconReaderAsync(folder.addMany(1));
    const Receiver receiver(reader);
    reader->start();
    reader->setPathList(endlessList(folder));
    reader->start();
    const QPointer<QThread> second = reader->findChildren<QThread *>().value(1);
    QTRY_VERIFY(!reader);
    QVERIFY(!receiver.lines.isEmpty());
    QVERIFY(second && second->isRunning());
    second->requestInterruption();
    QTRY_VERIFY(!second);
}

void tst_KyIconReaderAsync::startAfterFinish_deliversAgain()
{
    const Test::ThumbnailFolder folder;
    KyIconReaderAsync reader(folder.addMany(3));
    reader.setDeleteOnFinished(false);
    const Receiver receiver(&reader);
    reader.start();
    QTRY_VERIFY(threadOf(&reader)->isFinished());
    reader.start();
    QTRY_COMPARE(receiver.lines.size(), 6);
}

void tst_KyIconReaderAsync::privateSlots_emitTheSignals()
{
    KyIconReaderAsync reader;
    const Receiver receiver(&reader);
    const QString path = QStringLiteral("/a.png");
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(Qt::green);
    QVERIFY(QMetaObject::invokeMethod(&reader, "makeIcon", Q_ARG(QString, path), Q_ARG(QImage, image)));
    QVERIFY(QMetaObject::invokeMethod(&reader, "onIconReadCompleted", Q_ARG(QString, path),
                                      Q_ARG(QIcon *, new QIcon)));
    QVERIFY(QMetaObject::invokeMethod(&reader, "onIconReadFailed", Q_ARG(QString, path)));
    QCOMPARE(receiver.lines, QStringList({"a.png 4x3", "a.png 0x0", "failed a.png"}));
    QCOMPARE(receiver.colors, QVector<QColor>{Qt::green});
}

void tst_KyIconReaderAsync::processEnds_inTheMiddleOfAWalk_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("object kept") << "keep";
    QTest::newRow("object deleted") << "delete";
    QTest::newRow("object deleted with the application") << "child";
    QTest::newRow("worker only, no pixmaps possible") << "nogui";
}

void tst_KyIconReaderAsync::processEnds_inTheMiddleOfAWalk()
{
    QFETCH(QString, how);
    const Test::ThumbnailFolder folder;
    QProcess process;
    process.start(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/ky_icon_walk"), {how, folder.addMany(1).first()});
    QVERIFY(process.waitForFinished(60000));
    const QByteArray errors = process.readAllStandardError();
    QVERIFY2(process.exitStatus() == QProcess::NormalExit, errors.constData());
    QCOMPARE(process.exitCode(), 0);
    QVERIFY2(!errors.contains("QThread"), errors.constData());
    QCOMPARE(process.readAllStandardOutput().trimmed(), QByteArray("ended"));
}

KYTE_TEST_MAIN(tst_KyIconReaderAsync)
#include "tst_KyIconReaderAsync.moc"
