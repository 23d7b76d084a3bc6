#include "KyTestEnvironment.h"
#include "KyTestMain.h"

#include <KyThumbnail.h>

#ifdef Q_OS_UNIX
#include <csignal>

#include <sys/resource.h>
#endif

using Kyte::KyThumbnail;
using Kyte::Test::readFile;
using Kyte::Test::writeFile;

static QPixmap makePixmap(const QColor &color, const QSize &size = QSize(40, 30))
{
    QPixmap pixmap(size);
    pixmap.fill(color);
    return pixmap;
}

class tst_KyThumbnail : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void property_namesTheThumbnail_data();
    void property_namesTheThumbnail();
    void property_ofRelativePath_isAbsolute();
    void property_leavesThePathAlone();
    void property_withoutThumbnail_isEmpty_data();
    void property_withoutThumbnail_isEmpty();
    void inspect_needsFileAndThumbnail();
    void inspect_refusesFolders();
    void write_makesFolderAndPngFile();
    void write_keepsSizeAndTransparency();
    void write_toTrue_replaces();
    void write_toFalse_keepsWhatIsThere();
    void write_withoutPixmap_changesNothing();
    void write_toImpossiblePlace_fails_data();
    void write_toImpossiblePlace_fails();
    void write_toFullDisk_failsAndKeepsTheOld();
    void construction_readsWhenAskedTo();
    void construction_readsEveryImageFormat();
    void construction_withGarbageThumbnail_hasNullPixmap();
    void construction_readsAThumbnailReplacedInTheSameSecond();
    void parent_deletes();

private:
    QString path(const QString &name) const;
    QString thumbnailPath(const QString &name) const;
    QStringList thumbnailFolder() const;

    QScopedPointer<QTemporaryDir> m_folder;
};

QString tst_KyThumbnail::path(const QString &name) const
{
    return m_folder->path() + QLatin1Char('/') + name;
}

QString tst_KyThumbnail::thumbnailPath(const QString &name) const
{
    return m_folder->path() + QStringLiteral("/._kythumb/") + name + QStringLiteral(".thumb");
}

/** The names of all that lies in the thumbnail folder. */
QStringList tst_KyThumbnail::thumbnailFolder() const
{
    return QDir(path(QStringLiteral("._kythumb")))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

void tst_KyThumbnail::init()
{
    m_folder.reset(new QTemporaryDir);
    QVERIFY(m_folder->isValid());
}

void tst_KyThumbnail::cleanup()
{
    m_folder.reset();
}

void tst_KyThumbnail::property_namesTheThumbnail_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << QStringLiteral("film.mp4");
    QTest::newRow("no extension") << QStringLiteral("film");
    QTest::newRow("two extensions") << QStringLiteral("film.tar.gz");
    QTest::newRow("hidden") << QStringLiteral(".film");
    QTest::newRow("dot at the end") << QStringLiteral("film.");
    QTest::newRow("blanks") << QStringLiteral(" my film .mp4");
    QTest::newRow("place markers") << QStringLiteral("100%1 %2.png");
    QTest::newRow("quotes") << QStringLiteral("it's.png");
    QTest::newRow("beyond ASCII") << QStringLiteral("Bücher 本.png");
    QTest::newRow("a thumbnail itself") << QStringLiteral("film.mp4.thumb");
}

void tst_KyThumbnail::property_namesTheThumbnail()
{
    QFETCH(QString, name);
    QVERIFY(QDir().mkdir(path(QStringLiteral("._kythumb"))));
    writeFile(thumbnailPath(name), QByteArray());
    QString file = path(name);
    QCOMPARE(KyThumbnail::getFilePropertyFromHashFile(file).thumbnailPath, thumbnailPath(name));
}

void tst_KyThumbnail::property_ofRelativePath_isAbsolute()
{
    QVERIFY(QDir().mkdir(path(QStringLiteral("._kythumb"))));
    writeFile(thumbnailPath(QStringLiteral("a.png")), QByteArray());
    // From the folder itself, because on Windows no relative path leads to another drive.
    const QString former = QDir::currentPath();
    QVERIFY(QDir::setCurrent(path(QString())));
    QString file = QStringLiteral("a.png");
    const QString found = KyThumbnail::getFilePropertyFromHashFile(file).thumbnailPath;
    QVERIFY(QDir::setCurrent(former));
    QCOMPARE(found, thumbnailPath(QStringLiteral("a.png")));
}

void tst_KyThumbnail::property_leavesThePathAlone()
{
    QString file = path(QStringLiteral("x/../a.png"));
    KyThumbnail::getFilePropertyFromHashFile(file);
    QCOMPARE(file, path(QStringLiteral("x/../a.png")));
}

void tst_KyThumbnail::property_withoutThumbnail_isEmpty_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no thumbnail") << QStringLiteral("film.mp4");
    QTest::newRow("folder in its place") << QStringLiteral("folder.mp4");
    QTest::newRow("folder path") << QString();
    QTest::newRow("missing folder") << QStringLiteral("missing/film.mp4");
    QTest::newRow("null character") << QStringLiteral("film.mp4") + QChar();
}

void tst_KyThumbnail::property_withoutThumbnail_isEmpty()
{
    QFETCH(QString, name);
    QVERIFY(QDir().mkpath(thumbnailPath(QStringLiteral("folder.mp4"))));
    writeFile(path(QStringLiteral("film.mp4")), QByteArray());
    writeFile(thumbnailPath(QString()), QByteArray()); // "<folder>/._kythumb/.thumb" is nobody's
    QString file = path(name);
    QCOMPARE(KyThumbnail::getFilePropertyFromHashFile(file).thumbnailPath, QString());
    QString empty;
    QCOMPARE(KyThumbnail::getFilePropertyFromHashFile(empty).thumbnailPath, QString());
}

void tst_KyThumbnail::inspect_needsFileAndThumbnail()
{
    const QString name = QStringLiteral("film.mp4");
    const KyThumbnail thumbnail(path(QStringLiteral("another.mp4")), nullptr, false);
    QVERIFY(!thumbnail.inspect(path(name)));

    writeFile(path(name), QByteArray());
    QVERIFY(!thumbnail.inspect(path(name)));

    QVERIFY(QDir().mkdir(path(QStringLiteral("._kythumb"))));
    writeFile(thumbnailPath(name), QByteArray());
    QVERIFY(thumbnail.inspect(path(name)));

    QVERIFY(QFile::remove(path(name)));
    QVERIFY(!thumbnail.inspect(path(name)));
}

void tst_KyThumbnail::inspect_refusesFolders()
{
    const KyThumbnail thumbnail(QString(), nullptr, false);
    QVERIFY(QDir().mkdir(path(QStringLiteral("._kythumb"))));
    QVERIFY(QDir().mkdir(path(QStringLiteral("films"))));
    writeFile(thumbnailPath(QStringLiteral("films")), QByteArray());
    QVERIFY(!thumbnail.inspect(path(QStringLiteral("films"))));
    QVERIFY(!thumbnail.inspect(m_folder->path()));
    QVERIFY(!thumbnail.inspect(QString()));
}

void tst_KyThumbnail::write_makesFolderAndPngFile()
{
    KyThumbnail thumbnail(path(QStringLiteral("film.mp4")), nullptr, false);
    thumbnail.setPixmap(makePixmap(Qt::red));
    QVERIFY(thumbnail.write(true));
    QCOMPARE(thumbnailFolder(), QStringList(QStringLiteral("film.mp4.thumb")));
    const QByteArray content = readFile(thumbnailPath(QStringLiteral("film.mp4")));
    QCOMPARE(content.left(8), QByteArray("\x89PNG\r\n\x1a\n"));
    QCOMPARE(QImage::fromData(content).pixelColor(20, 15), QColor(Qt::red));
}

void tst_KyThumbnail::write_keepsSizeAndTransparency()
{
    const QColor color(10, 20, 30, 51);
    KyThumbnail thumbnail(path(QStringLiteral("film.mp4")), nullptr, false);
    thumbnail.setPixmap(makePixmap(color, QSize(1921, 3)));
    QVERIFY(thumbnail.write(true));
    const QImage image(thumbnailPath(QStringLiteral("film.mp4")));
    QCOMPARE(image.size(), QSize(1921, 3));
    QCOMPARE(image.pixelColor(1920, 2).alpha(), color.alpha());
}

void tst_KyThumbnail::write_toTrue_replaces()
{
    KyThumbnail thumbnail(path(QStringLiteral("film.mp4")), nullptr, false);
    thumbnail.setPixmap(makePixmap(Qt::red));
    QVERIFY(thumbnail.write(true));
    thumbnail.setPixmap(makePixmap(Qt::blue));
    QVERIFY(thumbnail.write(true));
    QCOMPARE(QImage(thumbnailPath(QStringLiteral("film.mp4"))).pixelColor(0, 0), QColor(Qt::blue));
}

void tst_KyThumbnail::write_toFalse_keepsWhatIsThere()
{
    KyThumbnail thumbnail(path(QStringLiteral("film.mp4")), nullptr, false);
    thumbnail.setPixmap(makePixmap(Qt::red));
    QVERIFY(thumbnail.write(false));
    thumbnail.setPixmap(makePixmap(Qt::blue));
    QVERIFY(thumbnail.write(false));
    QCOMPARE(QImage(thumbnailPath(QStringLiteral("film.mp4"))).pixelColor(0, 0), QColor(Qt::red));
}

void tst_KyThumbnail::write_withoutPixmap_changesNothing()
{
    KyThumbnail thumbnail(path(QStringLiteral("film.mp4")), nullptr, false);
    QVERIFY(!thumbnail.write(true));
    QVERIFY(!thumbnail.write(false));
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("._kythumb"))));
}

void tst_KyThumbnail::write_toImpossiblePlace_fails_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("no path") << QString();
    QTest::newRow("folder path") << QStringLiteral("%1/folder/");
    QTest::newRow("missing folder") << QStringLiteral("%1/missing/film.mp4");
    QTest::newRow("file in place of the folder") << QStringLiteral("%1/file/film.mp4");
    QTest::newRow("file in place of the thumbnail folder") << QStringLiteral("%1/blocked/film.mp4");
    QTest::newRow("folder in place of the thumbnail") << QStringLiteral("%1/folder/film.mp4");
    QTest::newRow("name too long") << QStringLiteral("%1/folder/") + QString(252, QLatin1Char('n'));
    QTest::newRow("null character") << QStringLiteral("%1/folder/fi") + QChar() + QStringLiteral("lm.mp4");
}

void tst_KyThumbnail::write_toImpossiblePlace_fails()
{
    QFETCH(QString, path);
    QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("folder/._kythumb/film.mp4.thumb")));
    QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("blocked")));
    writeFile(m_folder->filePath(QStringLiteral("file")), QByteArray());
    writeFile(m_folder->filePath(QStringLiteral("blocked/._kythumb")), QByteArray());

    KyThumbnail thumbnail(path.replace(QStringLiteral("%1"), m_folder->path()), nullptr, false);
    thumbnail.setPixmap(makePixmap(Qt::red));
    QVERIFY(!thumbnail.write(true));
    QVERIFY(!thumbnail.write(false));
    QVERIFY(!QFileInfo::exists(m_folder->filePath(QStringLiteral("missing"))));
    QCOMPARE(QDir(m_folder->filePath(QStringLiteral("folder/._kythumb")))
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList(QStringLiteral("film.mp4.thumb")));
}

void tst_KyThumbnail::write_toFullDisk_failsAndKeepsTheOld()
{
#ifdef Q_OS_UNIX
    KyThumbnail thumbnail(path(QStringLiteral("film.mp4")), nullptr, false);
    thumbnail.setPixmap(makePixmap(Qt::red));
    QVERIFY(thumbnail.write(true));
    thumbnail.setPixmap(makePixmap(Qt::blue));

    // To the program a limit for the size of files is a disk that is full; the signal would end it.
    rlimit former;
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &former), 0);
    const rlimit small{20, former.rlim_max};
    const auto formerHandler = std::signal(SIGXFSZ, SIG_IGN);
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool isWritten = thumbnail.write(true);
    setrlimit(RLIMIT_FSIZE, &former);
    std::signal(SIGXFSZ, formerHandler);

    QVERIFY(!isWritten);
    QCOMPARE(thumbnailFolder(), QStringList(QStringLiteral("film.mp4.thumb")));
    QCOMPARE(QImage(thumbnailPath(QStringLiteral("film.mp4"))).pixelColor(0, 0), QColor(Qt::red));
#else
    QSKIP("the size of files cannot be limited here");
#endif
}

void tst_KyThumbnail::construction_readsWhenAskedTo()
{
    const QString file = path(QStringLiteral("film.mp4"));
    QVERIFY(KyThumbnail(file, nullptr, true).pixmap().isNull());

    KyThumbnail writer(file, nullptr, false);
    writer.setPixmap(makePixmap(Qt::red));
    QVERIFY(writer.write(true));

    QVERIFY(KyThumbnail(file, nullptr, false).pixmap().isNull());
    const QPixmap pixmap = KyThumbnail(file, nullptr, true).pixmap();
    QCOMPARE(pixmap.size(), QSize(40, 30));
    QCOMPARE(pixmap.toImage().pixelColor(39, 29), QColor(Qt::red));
}

void tst_KyThumbnail::construction_readsEveryImageFormat()
{
    QVERIFY(QDir().mkdir(path(QStringLiteral("._kythumb"))));
    QVERIFY(makePixmap(Qt::white).save(thumbnailPath(QStringLiteral("film.mp4")), "JPG"));
    QCOMPARE(KyThumbnail(path(QStringLiteral("film.mp4")), nullptr, true).pixmap().size(), QSize(40, 30));
}

void tst_KyThumbnail::construction_withGarbageThumbnail_hasNullPixmap()
{
    QVERIFY(QDir().mkdir(path(QStringLiteral("._kythumb"))));
    writeFile(thumbnailPath(QStringLiteral("film.mp4")), "\x89PNG\r\n\x1a\nnot a picture");
    QVERIFY(KyThumbnail(path(QStringLiteral("film.mp4")), nullptr, true).pixmap().isNull());
}

void tst_KyThumbnail::construction_readsAThumbnailReplacedInTheSameSecond()
{
    const QString file = path(QStringLiteral("film.mp4"));
    for (Qt::GlobalColor color : {Qt::red, Qt::blue, Qt::green}) {
        KyThumbnail writer(file, nullptr, true);
        writer.setPixmap(makePixmap(color));
        QVERIFY(writer.write(true));
        QCOMPARE(KyThumbnail(file, nullptr, true).pixmap().toImage().pixelColor(0, 0), QColor(color));
    }
}

void tst_KyThumbnail::parent_deletes()
{
    QObject *parent = new QObject;
    const QPointer<KyThumbnail> thumbnail = new KyThumbnail(QString(), parent, false);
    QCOMPARE(thumbnail->parent(), parent);
    delete parent;
    QVERIFY(thumbnail.isNull());
}

KYTE_TEST_MAIN(tst_KyThumbnail)
#include "tst_KyThumbnail.moc"
