#include "KyThumbnailFolder.h"

#include <KyTestEnvironment.h>
#include <KyTestMain.h>

#include <KyIconReader.h>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace Kyte;

Q_DECLARE_METATYPE(QIcon *)

class tst_KyIconReader : public QObject
{
    Q_OBJECT

private slots:
    void newReader_isEmpty();
    void constructors_takePathOrList();
    void setters_replace();
    void parent_deletes();

    void read_addsTheThumbnailToTheSystemIcon();
    void read_ofARelativePath_tellsTheAbsoluteOne();
    void read_makesNoMediaTest();
    void read_ofAFolder_usesItsThumbnail();
    void read_fails_data();
    void read_fails();
    void read_ofABrokenThumbnail_makesTheSystemIcon();
    void read_ignoresListAndFlag();
    void read_ownIcons_areDeleted();
    void read_handedOutIcon_survives();
    void read_failingLater_keepsOrDropsTheIcon();
    void read_receiverDeletesTheReader_data();
    void read_receiverDeletesTheReader();
    void read_receiverReadsAgain();

    void list_imageFailureImage();
    void list_complete_isTrue();
    void list_empty_isDoneOnce();
    void list_fails_data();
    void list_fails();
    void list_images_haveTheirStoredSize();
    void list_brokenThumbnail_isANullImage();
    void list_upperCaseExtension_isMedia();
    void list_relativePath_isTheAbsoluteOne();
    void list_sameFileTwice_isReadTwice();
    void path_goesToTheFront_data();
    void path_goesToTheFront();

    void aborted_readsNothing();
    void abortInTheMiddle_endsBeforeTheNextFile();
    void abortFromAnotherThread_endsTheWalk();
    void interruptedThread_endsTheWalk();
    void receiverDeletesTheReader_data();
    void receiverDeletesTheReader();
    void receiverSetsAnotherList_forTheNextWalk();
    void worker_readsWithoutGui();
    void slots_emitTheMatchingSignal();
};

/** Notes a reader's signals as text: "image a.png 40x30", "done". */
class Log : public QObject
{
    Q_OBJECT

public:
    explicit Log(KyIconReader *reader)
    {
        connect(reader, SIGNAL(readingCompleted(QString, QIcon *)), SLOT(onIcon(QString, QIcon *)));
        connect(reader, SIGNAL(readingImageCompleted(QString, QImage)), SLOT(onImage(QString, QImage)));
        connect(reader, SIGNAL(readingFailed(QString)), SLOT(onFailed(QString)));
        connect(reader, SIGNAL(readingDone()), SLOT(onDone()));
    }

    QStringList lines;

public slots:
    void onIcon(const QString &path, QIcon *icon)
    {
        QVERIFY(icon);
        note("icon", path);
    }
    void onImage(const QString &path, const QImage &image)
    {
        note("image", path);
        lines.last() += QStringLiteral(" %1x%2").arg(image.width()).arg(image.height());
    }
    void onFailed(const QString &path)
    {
        note("failed", path);
    }
    void onDone()
    {
        lines.append(QStringLiteral("done"));
    }

private:
    void note(const char *what, const QString &path)
    {
        QVERIFY2(path.isEmpty() || QDir::isAbsolutePath(path), qPrintable(path));
        lines.append(QLatin1String(what) + QLatin1Char(' ') + QFileInfo(path).fileName());
    }
};

static QStringList text(const char *lines)
{
    return QString::fromUtf8(lines).split(QStringLiteral(", "));
}

void tst_KyIconReader::newReader_isEmpty()
{
    const KyIconReader reader;
    QCOMPARE(reader.path(), QString());
    QCOMPARE(reader.pathList(), QStringList());
    QVERIFY(!reader.icon());
    QVERIFY(!reader.parent());
}

void tst_KyIconReader::constructors_takePathOrList()
{
    const KyIconReader single(QStringLiteral("a.png"), this);
    QCOMPARE(single.path(), QStringLiteral("a.png"));
    QCOMPARE(single.pathList(), QStringList());
    QCOMPARE(single.parent(), this);

    QStringList paths{"a.png", "b.png"};
    const KyIconReader list(paths, this);
    QCOMPARE(list.path(), QString());
    QCOMPARE(list.pathList(), paths);
    QCOMPARE(list.parent(), this);
}

void tst_KyIconReader::setters_replace()
{
    KyIconReader reader;
    reader.setPath(QStringLiteral("a.png"));
    QCOMPARE(reader.path(), QStringLiteral("a.png"));
    QStringList paths{"b.png"};
    reader.setPathList(paths);
    paths.append("c.png");
    QCOMPARE(reader.pathList(), QStringList{"b.png"});
}

void tst_KyIconReader::parent_deletes()
{
    auto *parent = new QObject;
    const QPointer<KyIconReader> reader = new KyIconReader(parent);
    delete parent;
    QVERIFY(!reader);
}

void tst_KyIconReader::read_addsTheThumbnailToTheSystemIcon()
{
    const Test::ThumbnailFolder folder;
    const QString path = folder.addFile("a.png");
    folder.addThumbnail("a.png", Qt::red);
    KyIconReader reader(path);
    const Log log(&reader);
    QSignalSpy spy(&reader, SIGNAL(readingCompleted(QString, QIcon *)));

    QVERIFY(reader.read(true));

    QCOMPARE(log.lines, text("icon a.png, done"));
    QCOMPARE(spy.first().at(0).toString(), path);
    QCOMPARE(spy.first().at(1).value<QIcon *>(), reader.icon());
    const QList<QSize> systemSizes = QFileIconProvider().icon(QFileInfo(path)).availableSizes();
    QCOMPARE(reader.icon()->availableSizes(QIcon::Normal, QIcon::Off),
             systemSizes + QList<QSize>{QSize(32, 32)});
    // Asked for the first time, an added file answers for the size that it was added with.
    const QImage image = reader.icon()->pixmap(32, 32).toImage();
    QCOMPARE(image.pixelColor(image.rect().center()), QColor(Qt::red));
}

void tst_KyIconReader::read_ofARelativePath_tellsTheAbsoluteOne()
{
    const Test::ThumbnailFolder folder;
    const QString path = folder.addFile("a.png");
    folder.addThumbnail("a.png", Qt::red);
    KyIconReader reader(QDir::current().relativeFilePath(path));
    if (!QDir::isRelativePath(reader.path()))
        QSKIP("No relative path leads to another drive");
    QSignalSpy completed(&reader, SIGNAL(readingCompleted(QString, QIcon *)));
    QSignalSpy failed(&reader, SIGNAL(readingFailed(QString)));

    QVERIFY(reader.read(true));
    QCOMPARE(completed.first().at(0).toString(), path);

    reader.setPath(QDir::current().relativeFilePath(folder.path("none.png")));
    QVERIFY(!reader.read(true));
    QCOMPARE(failed.first().at(0).toString(), folder.path("none.png"));
}

void tst_KyIconReader::read_makesNoMediaTest()
{
    const Test::ThumbnailFolder folder;
    KyIconReader reader(folder.addFile("a.doc"));
    folder.addThumbnail("a.doc", Qt::red);
    QVERIFY(reader.read(true));
}

void tst_KyIconReader::read_ofAFolder_usesItsThumbnail()
{
    const Test::ThumbnailFolder folder;
    QVERIFY(QDir().mkdir(folder.path("films")));
    folder.addThumbnail("films", Qt::red);
    KyIconReader reader(folder.path("films"));
    QVERIFY(reader.read(true));
}

void tst_KyIconReader::read_fails_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("withFolder");
    QTest::newRow("no file") << "none.png" << true;
    QTest::newRow("no thumbnail folder") << "a.png" << false;
    QTest::newRow("no thumbnail") << "b.png" << true;
    QTest::newRow("folder as thumbnail") << "folder.png" << true;
    QTest::newRow("folder's own path") << "" << true;
}

void tst_KyIconReader::read_fails()
{
    QFETCH(QString, name);
    QFETCH(bool, withFolder);
    const Test::ThumbnailFolder folder;
    folder.addFile("a.png");
    folder.addFile("b.png");
    folder.addFile("folder.png");
    if (withFolder) {
        folder.addThumbnail("a.png", Qt::red);
        folder.addThumbnail("none.png", Qt::red);
        QVERIFY(QDir().mkdir(folder.thumbnailPath("folder.png")));
    }
    KyIconReader reader(folder.path(name));
    const Log log(&reader);

    QVERIFY(!reader.read(true));
    QCOMPARE(log.lines, QStringList({"failed " + name, "done"}));
    QVERIFY(!reader.icon());

    reader.setPath(QString());
    QVERIFY(!reader.read(false));
    QCOMPARE(log.lines.mid(2), QStringList({"failed ", "done"}));
}

void tst_KyIconReader::read_ofABrokenThumbnail_makesTheSystemIcon()
{
    const Test::ThumbnailFolder folder;
    KyIconReader reader(folder.addFile("a.png"));
    folder.addThumbnail("a.png", QByteArray("no image"));
    QVERIFY(reader.read(true));
    QCOMPARE(reader.icon()->availableSizes(),
             QFileIconProvider().icon(QFileInfo(reader.path())).availableSizes());
}

void tst_KyIconReader::read_ignoresListAndFlag()
{
    const Test::ThumbnailFolder folder;
    QStringList paths = folder.addMany(2);
    KyIconReader reader(paths);
    reader.setPath(paths.last());
    reader.abort();
    const Log log(&reader);
    QVERIFY(reader.read(true));
    QCOMPARE(log.lines, text("icon 1.png, done"));
    QCOMPARE(reader.pathList(), paths);
}

/** The address sanitizer sees icons that are deleted twice or never; here only the pointers are compared. */
void tst_KyIconReader::read_ownIcons_areDeleted()
{
    const Test::ThumbnailFolder folder;
    KyIconReader reader(folder.addMany(1).first());
    QVERIFY(reader.read(true));
    QVERIFY(reader.read(true));
    QVERIFY(!reader.icon()->isNull());

    QVERIFY(reader.read(false)); // replaces the reader's own one
    const std::unique_ptr<QIcon> handedOut(reader.icon());
    QVERIFY(!handedOut->isNull());
}

void tst_KyIconReader::read_handedOutIcon_survives()
{
    const Test::ThumbnailFolder folder;
    auto *reader = new KyIconReader(folder.addMany(1).first());
    QVERIFY(reader->read(false));
    const std::unique_ptr<QIcon> first(reader->icon());
    QVERIFY(reader->read(false));
    const std::unique_ptr<QIcon> second(reader->icon());
    QVERIFY(first.get() != second.get());
    QVERIFY(reader->read(true));
    QVERIFY(reader->icon() != first.get() && reader->icon() != second.get());
    delete reader;
    QVERIFY(!first->isNull());
    QVERIFY(!second->isNull());
    QVERIFY(!first->pixmap(32, 32).isNull());
}

void tst_KyIconReader::read_failingLater_keepsOrDropsTheIcon()
{
    const Test::ThumbnailFolder folder;
    KyIconReader reader(folder.addMany(1).first());
    QVERIFY(reader.read(true));
    const QIcon *icon = reader.icon();

    reader.setPath(folder.path("none.png"));
    QVERIFY(!reader.read(false));
    QCOMPARE(reader.icon(), icon);
    QVERIFY(!reader.icon()->isNull());

    QVERIFY(!reader.read(true));
    QVERIFY(!reader.icon());
}

void tst_KyIconReader::read_receiverDeletesTheReader_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("icon") << "0.png";
    QTest::newRow("failure") << "none.png";
}

void tst_KyIconReader::read_receiverDeletesTheReader()
{
    QFETCH(QString, name);
    const Test::ThumbnailFolder folder;
    folder.addMany(1);
    const QPointer<KyIconReader> reader = new KyIconReader(folder.path(name));
    const auto deleteReader = [&reader] {
        delete reader;
    };
    connect(reader, &KyIconReader::readingCompleted, this, deleteReader);
    connect(reader, &KyIconReader::readingFailed, this, deleteReader);
    QCOMPARE(reader->read(true), name == QLatin1String("0.png"));
    QVERIFY(!reader);
}

void tst_KyIconReader::read_receiverReadsAgain()
{
    const Test::ThumbnailFolder folder;
    const QStringList paths = folder.addMany(2);
    KyIconReader reader(paths.first());
    const Log log(&reader);
    connect(&reader, &KyIconReader::readingCompleted, this, [&] {
        if (reader.path() == paths.first()) {
            reader.setPath(paths.last());
            reader.read(true);
        }
    });
    QVERIFY(reader.read(true));
    QCOMPARE(log.lines, text("icon 0.png, icon 1.png, done, done"));
}

void tst_KyIconReader::list_imageFailureImage()
{
    const Test::ThumbnailFolder folder;
    QStringList paths{folder.addFile("a.png"), folder.addFile("b.mp4"), folder.addFile("c.wav")};
    folder.addThumbnail("a.png", Qt::red, QSize(40, 30));
    folder.addThumbnail("c.wav", Qt::blue, QSize(20, 10));
    KyIconReader reader(paths);
    const Log log(&reader);
    QSignalSpy images(&reader, SIGNAL(readingImageCompleted(QString, QImage)));
    QSignalSpy failures(&reader, SIGNAL(readingFailed(QString)));

    QVERIFY(!reader.readIconImage());

    QCOMPARE(log.lines, text("image a.png 40x30, done, failed b.mp4, image c.wav 20x10, done, done"));
    QCOMPARE(images.at(0).at(0).toString(), paths.at(0));
    QCOMPARE(images.at(0).at(1).value<QImage>().pixelColor(3, 3), QColor(Qt::red));
    QCOMPARE(images.at(1).at(0).toString(), paths.at(2));
    QCOMPARE(images.at(1).at(1).value<QImage>().pixelColor(3, 3), QColor(Qt::blue));
    QCOMPARE(failures.first().at(0).toString(), paths.at(1));
    QVERIFY(!reader.icon());
}

void tst_KyIconReader::list_complete_isTrue()
{
    const Test::ThumbnailFolder folder;
    QStringList paths = folder.addMany(2);
    KyIconReader reader(paths);
    const Log log(&reader);
    QVERIFY(reader.readIconImage());
    QCOMPARE(log.lines, text("image 0.png 40x30, done, image 1.png 40x30, done, done"));
    QVERIFY(reader.readIconImage()); // and again
    QCOMPARE(log.lines.size(), 10);
}

void tst_KyIconReader::list_empty_isDoneOnce()
{
    KyIconReader reader;
    const Log log(&reader);
    QVERIFY(reader.readIconImage());
    QCOMPARE(log.lines, text("done"));
}

void tst_KyIconReader::list_fails_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no file") << "none.png";
    QTest::newRow("no media file") << "a.doc";
    QTest::newRow("no extension") << "a";
    QTest::newRow("no thumbnail") << "b.png";
    QTest::newRow("folder as thumbnail") << "folder.png";
    QTest::newRow("no thumbnail folder") << "sub/a.png";
#ifdef Q_OS_UNIX
    QTest::newRow("pipe as thumbnail") << "pipe.png";
#endif
}

void tst_KyIconReader::list_fails()
{
    QFETCH(QString, name);
    const Test::ThumbnailFolder folder;
    QVERIFY(QDir().mkdir(folder.path("sub")));
    for (const char *file : {"a.doc", "a", "b.png", "folder.png", "pipe.png", "sub/a.png"})
        folder.addFile(QLatin1String(file));
    for (const char *file : {"none.png", "a.doc", "a"})
        folder.addThumbnail(QLatin1String(file), Qt::red);
    QVERIFY(QDir().mkdir(folder.thumbnailPath("folder.png")));
#ifdef Q_OS_UNIX
    QCOMPARE(::mkfifo(QFile::encodeName(folder.thumbnailPath("pipe.png")).constData(), 0600), 0);
#endif
    KyIconReader reader(folder.path(name));
    const Log log(&reader);
    QVERIFY(!reader.readIconImage());
    QCOMPARE(log.lines, QStringList({"failed " + QFileInfo(name).fileName(), "done"}));
}

void tst_KyIconReader::list_images_haveTheirStoredSize()
{
    const Test::ThumbnailFolder folder;
    folder.addThumbnail("a.png", Qt::red, QSize(300, 7));
    KyIconReader reader(folder.addFile("a.png"));
    const Log log(&reader);
    QVERIFY(reader.readIconImage());
    QCOMPARE(log.lines, text("image a.png 300x7, done, done"));
}

void tst_KyIconReader::list_brokenThumbnail_isANullImage()
{
    const Test::ThumbnailFolder folder;
    folder.addThumbnail("a.png", QByteArray("no image"));
    folder.addThumbnail("b.png", QByteArray());
    QStringList paths{folder.addFile("a.png"), folder.addFile("b.png")};
    KyIconReader reader(paths);
    const Log log(&reader);
    QVERIFY(reader.readIconImage());
    QCOMPARE(log.lines, text("image a.png 0x0, done, image b.png 0x0, done, done"));
}

void tst_KyIconReader::list_upperCaseExtension_isMedia()
{
    const Test::ThumbnailFolder folder;
    folder.addThumbnail("A.PNG", Qt::red);
    KyIconReader reader(folder.addFile("A.PNG"));
    QVERIFY(reader.readIconImage());
}

void tst_KyIconReader::list_relativePath_isTheAbsoluteOne()
{
    const Test::ThumbnailFolder folder;
    const QString path = folder.addMany(1).first();
    QStringList paths{QDir::current().relativeFilePath(path),
                      QDir::current().relativeFilePath(folder.path("none.png")), QString()};
    KyIconReader reader(paths);
    QSignalSpy images(&reader, SIGNAL(readingImageCompleted(QString, QImage)));
    QSignalSpy failures(&reader, SIGNAL(readingFailed(QString)));
    QVERIFY(!reader.readIconImage());
    QCOMPARE(images.size(), 1);
    QCOMPARE(images.first().at(0).toString(), path);
    QCOMPARE(failures.size(), 2);
    QCOMPARE(failures.at(0).at(0).toString(), folder.path("none.png"));
    QCOMPARE(failures.at(1).at(0).toString(), QString());
}

void tst_KyIconReader::list_sameFileTwice_isReadTwice()
{
    const Test::ThumbnailFolder folder;
    const QString path = folder.addMany(1).first();
    QStringList paths{path, path};
    KyIconReader reader(paths);
    const Log log(&reader);
    QVERIFY(reader.readIconImage());
    QCOMPARE(log.lines, text("image 0.png 40x30, done, image 0.png 40x30, done, done"));
}

void tst_KyIconReader::path_goesToTheFront_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("alone") << "a.png" << QStringList() << QStringList{"a.png"};
    QTest::newRow("new") << "a.png" << QStringList{"b.png"} << QStringList({"a.png", "b.png"});
    QTest::newRow("in the list") << "a.png" << QStringList({"b.png", "a.png"})
                                 << QStringList({"b.png", "a.png"});
    QTest::newRow("other case") << "a.png" << QStringList{"A.png"} << QStringList({"a.png", "A.png"});
    QTest::newRow("empty") << "" << QStringList{"b.png"} << QStringList{"b.png"};
}

void tst_KyIconReader::path_goesToTheFront()
{
    QFETCH(QString, path);
    QFETCH(QStringList, list);
    QFETCH(QStringList, expected);
    KyIconReader reader(path);
    reader.setPathList(list);
    const Log log(&reader);
    reader.readIconImage();
    QCOMPARE(reader.pathList(), expected);
    QCOMPARE(reader.path(), path);
    QStringList lines;
    for (const QString &name : qAsConst(expected))
        lines.append("failed " + name);
    QCOMPARE(log.lines, lines + QStringList{"done"});
}

void tst_KyIconReader::aborted_readsNothing()
{
    const Test::ThumbnailFolder folder;
    QStringList paths = folder.addMany(2);
    paths.append(folder.path("none.png"));
    KyIconReader reader(paths);
    const Log log(&reader);
    reader.abort();
    QVERIFY(reader.readIconImage()); // nothing failed
    QCOMPARE(log.lines, text("done"));
    QVERIFY(reader.readIconImage()); // the flag stays
    QCOMPARE(log.lines, text("done, done"));

    reader.setAborting(false);
    QVERIFY(!reader.readIconImage());
    QCOMPARE(log.lines.size(), 2 + 6);
    reader.setAborting(true);
    QVERIFY(reader.readIconImage());
}

void tst_KyIconReader::abortInTheMiddle_endsBeforeTheNextFile()
{
    const Test::ThumbnailFolder folder;
    QStringList paths = folder.addMany(3);
    paths.prepend(folder.path("none.png"));
    KyIconReader reader(paths);
    const Log log(&reader);
    connect(&reader, SIGNAL(readingImageCompleted(QString, QImage)), &reader, SLOT(onReadingDone()));
    connect(&reader, &KyIconReader::readingImageCompleted, &reader, &KyIconReader::abort);
    QVERIFY(!reader.readIconImage());
    QCOMPARE(log.lines, text("failed none.png, image 0.png 40x30, done, done, done"));
}

void tst_KyIconReader::abortFromAnotherThread_endsTheWalk()
{
    const Test::ThumbnailFolder folder;
    const QString path = folder.addMany(1).first();
    QStringList paths;
    for (int i = 0; i < 1000000; ++i)
        paths.append(path);
    KyIconReader reader(paths);
    QThread thread;
    reader.moveToThread(&thread);
    connect(&thread, SIGNAL(started()), &reader, SLOT(readIconImage()));
    QAtomicInt images;
    connect(
        &reader, &KyIconReader::readingImageCompleted, &reader,
        [&images] {
            images.ref();
        },
        Qt::DirectConnection);
    thread.start();
    QTRY_VERIFY(images.loadAcquire() > 5);
    reader.abort();
    thread.quit();
    QVERIFY(thread.wait(10000)); // the whole walk takes far longer
    QVERIFY(images.loadAcquire() < paths.size());
}

void tst_KyIconReader::interruptedThread_endsTheWalk()
{
    const Test::ThumbnailFolder folder;
    QStringList paths = folder.addMany(3);
    KyIconReader reader(paths);
    const Log log(&reader);
    QThread thread;
    reader.moveToThread(&thread);
    connect(&thread, SIGNAL(started()), &reader, SLOT(readIconImage()));
    connect(
        &reader, &KyIconReader::readingImageCompleted, &reader,
        [&thread] {
            thread.requestInterruption();
        },
        Qt::DirectConnection);
    connect(&reader, SIGNAL(readingDone()), &thread, SLOT(quit()));
    thread.start();
    QTRY_VERIFY(thread.isFinished());
    QCOMPARE(log.lines, text("image 0.png 40x30, done, done"));
}

void tst_KyIconReader::receiverDeletesTheReader_data()
{
    QTest::addColumn<QString>("when");
    QTest::newRow("image") << "image";
    QTest::newRow("failure") << "failed";
    QTest::newRow("done") << "done";
}

void tst_KyIconReader::receiverDeletesTheReader()
{
    QFETCH(QString, when);
    const Test::ThumbnailFolder folder;
    QStringList paths = folder.addMany(2);
    if (when == QLatin1String("failed"))
        paths.prepend(folder.path("none.png"));
    const QPointer<KyIconReader> reader = new KyIconReader(paths);
    const Log log(reader);
    const auto deleteReader = [&reader] {
        delete reader;
    };
    if (when == QLatin1String("image"))
        connect(reader, &KyIconReader::readingImageCompleted, this, deleteReader);
    else if (when == QLatin1String("done"))
        connect(reader, &KyIconReader::readingDone, this, deleteReader);
    else
        connect(reader, &KyIconReader::readingFailed, this, deleteReader);
    reader->readIconImage();
    QVERIFY(!reader);
    QVERIFY(log.lines.size() <= 2);
}

void tst_KyIconReader::receiverSetsAnotherList_forTheNextWalk()
{
    const Test::ThumbnailFolder folder;
    QStringList paths = folder.addMany(2);
    KyIconReader reader(paths);
    const Log log(&reader);
    connect(&reader, &KyIconReader::readingImageCompleted, this, [&] {
        QStringList others{folder.path("none.png")};
        reader.setPathList(others);
    });
    QVERIFY(reader.readIconImage());
    QCOMPARE(log.lines, text("image 0.png 40x30, done, image 1.png 40x30, done, done"));
    QVERIFY(!reader.readIconImage());
    QCOMPARE(log.lines.mid(5), text("failed none.png, done"));
}

void tst_KyIconReader::worker_readsWithoutGui()
{
    const Test::ThumbnailFolder folder;
    QStringList paths = folder.addMany(20);
    auto *reader = new KyIconReader(paths);
    QThread thread;
    reader->moveToThread(&thread);
    connect(&thread, SIGNAL(started()), reader, SLOT(readIconImage()));
    connect(&thread, SIGNAL(finished()), reader, SLOT(deleteLater()));
    connect(reader, SIGNAL(readingDone()), &thread, SLOT(quit()));
    QSignalSpy images(reader, SIGNAL(readingImageCompleted(QString, QImage)));
    QSignalSpy finished(&thread, SIGNAL(finished()));
    thread.start();
    QVERIFY(finished.wait());
    QVERIFY(thread.wait());
    QCOMPARE(images.size(), 20);
}

void tst_KyIconReader::slots_emitTheMatchingSignal()
{
    const Test::ThumbnailFolder folder;
    QStringList paths = folder.addMany(1);
    paths.append(folder.path("none.png"));
    KyIconReader source(paths);
    KyIconReader chained;
    const Log log(&chained);
    connect(&source, SIGNAL(readingImageCompleted(QString, QImage)), &chained,
            SLOT(onReadingImageCompleted(QString, QImage)));
    connect(&source, SIGNAL(readingFailed(QString)), &chained, SLOT(onReadingFailed(QString)));
    connect(&source, SIGNAL(readingDone()), &chained, SLOT(onReadingDone()));
    source.readIconImage();
    QCOMPARE(log.lines, text("image 0.png 40x30, done, failed none.png, done"));
}

KYTE_TEST_MAIN(tst_KyIconReader)
#include "tst_KyIconReader.moc"
