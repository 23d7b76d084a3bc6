#include "KyThumbnailFolder.h"

#include <KyTestEnvironment.h>
#include <KyTestMain.h>

#include <KyThumbnail.h>
#include <KyThumbnailFile_p.h>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace Kyte;

class tst_KyThumbnailFile : public QObject
{
    Q_OBJECT

private slots:
    void isMedia_looksAtTheExtension_data();
    void isMedia_looksAtTheExtension();
    void path_isBesideTheFile_data();
    void path_isBesideTheFile();
    void path_ofARelativePath_isAbsolute();
    void path_isWhereThumbnailsAreWritten();
    void find_needsAFile();
    void addTo_addsAnEntry();
};

void tst_KyThumbnailFile::isMedia_looksAtTheExtension_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("expected");
    QTest::newRow("image") << "/none/a.png" << true;
    QTest::newRow("upper case") << "/none/a.PNG" << true;
    QTest::newRow("film") << "/none/a.tar.mp4" << true;
    QTest::newRow("document") << "/none/a.doc" << false;
    QTest::newRow("none") << "/none/a" << false;
    QTest::newRow("hidden file, no extension") << "/none/.png" << false;
    QTest::newRow("extension of the folder") << "/none.png/a" << false;
    QTest::newRow("folder") << "/none/a.png/" << false;
    QTest::newRow("empty") << "" << false;
}

void tst_KyThumbnailFile::isMedia_looksAtTheExtension()
{
    QFETCH(QString, path);
    QFETCH(bool, expected);
    QCOMPARE(ThumbnailFile::isMedia(QFileInfo(path)), expected);
}

void tst_KyThumbnailFile::path_isBesideTheFile_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    QTest::newRow("file") << "/m/a.png"
                          << "/m/._kythumb/a.png.thumb";
    QTest::newRow("no extension") << "/m/a"
                                  << "/m/._kythumb/a.thumb";
    QTest::newRow("in the root") << "/a.png"
                                 << "/._kythumb/a.png.thumb";
    QTest::newRow("place markers") << "/m%2/100%1 %2.png"
                                   << "/m%2/._kythumb/100%1 %2.png.thumb";
    QTest::newRow("blanks") << "/m/ a .png"
                            << "/m/._kythumb/ a .png.thumb";
    QTest::newRow("winding") << "/m/x/../a.png"
                             << "/m/._kythumb/a.png.thumb";
    QTest::newRow("separators") << "/m//x///a.png"
                                << "/m/x/._kythumb/a.png.thumb";
    QTest::newRow("other alphabets") << QStringLiteral("/m/\u6620\u753b.png")
                                     << QStringLiteral("/m/._kythumb/\u6620\u753b.png.thumb");
    QTest::newRow("a thumbnail") << "/m/._kythumb/a.png.thumb"
                                 << "/m/._kythumb/._kythumb/a.png.thumb.thumb";
    QTest::newRow("a folder") << "/m/films/" << QString();
    QTest::newRow("empty") << QString() << QString();
}

void tst_KyThumbnailFile::path_isBesideTheFile()
{
    QFETCH(QString, path);
    QFETCH(QString, expected);
    if (!expected.isEmpty())
        expected = QDir::current().absoluteFilePath(expected); // on Windows with a drive
    QCOMPARE(ThumbnailFile::pathOf(QFileInfo(path)), expected);
}

void tst_KyThumbnailFile::path_ofARelativePath_isAbsolute()
{
    QCOMPARE(ThumbnailFile::pathOf(QFileInfo(QStringLiteral("m/a.png"))),
             QDir::currentPath() + QStringLiteral("/m/._kythumb/a.png.thumb"));
}

void tst_KyThumbnailFile::path_isWhereThumbnailsAreWritten()
{
    const Test::ThumbnailFolder folder;
    QPixmap pixmap(40, 30);
    pixmap.fill(Qt::red);
    KyThumbnail thumbnail(folder.path("a.b.mp4"), nullptr, false);
    thumbnail.setPixmap(pixmap);
    QVERIFY(thumbnail.write(true));

    const QString found = ThumbnailFile::find(QFileInfo(folder.path("a.b.mp4")));
    QCOMPARE(found, folder.thumbnailPath("a.b.mp4"));
    QCOMPARE(QImage(found).size(), QSize(40, 30));
}

void tst_KyThumbnailFile::find_needsAFile()
{
    const Test::ThumbnailFolder folder;
    QCOMPARE(ThumbnailFile::find(QFileInfo(folder.path("a.png"))), QString());
    QCOMPARE(ThumbnailFile::find(QFileInfo()), QString());

    folder.addThumbnail("a.png", QByteArray());
    QCOMPARE(ThumbnailFile::find(QFileInfo(folder.path("a.png"))), folder.thumbnailPath("a.png"));
    QCOMPARE(ThumbnailFile::find(QFileInfo(folder.path("b.png"))), QString());

    folder.addThumbnail("", QByteArray()); // "._kythumb/.thumb" is nobody's
    QCOMPARE(ThumbnailFile::find(QFileInfo(folder.path(""))), QString());

    QVERIFY(QDir().mkdir(folder.thumbnailPath("folder.png")));
    QCOMPARE(ThumbnailFile::find(QFileInfo(folder.path("folder.png"))), QString());
#ifdef Q_OS_UNIX
    QCOMPARE(::mkfifo(QFile::encodeName(folder.thumbnailPath("pipe.png")).constData(), 0600), 0);
    QCOMPARE(ThumbnailFile::find(QFileInfo(folder.path("pipe.png"))), QString());
#endif
}

void tst_KyThumbnailFile::addTo_addsAnEntry()
{
    const Test::ThumbnailFolder folder;
    folder.addThumbnail("a.png", Qt::red, QSize(64, 48));
    folder.addThumbnail("broken.png", QByteArray("no image"));

    QIcon icon;
    ThumbnailFile::addTo(&icon, folder.thumbnailPath("broken.png"));
    QCOMPARE(icon.availableSizes(), QList<QSize>());

    ThumbnailFile::addTo(&icon, folder.thumbnailPath("a.png"));
    QCOMPARE(icon.availableSizes(QIcon::Normal, QIcon::Off), QList<QSize>{QSize(32, 32)});
    QCOMPARE(icon.availableSizes(QIcon::Normal, QIcon::On), QList<QSize>());
    QCOMPARE(icon.availableSizes(QIcon::Disabled, QIcon::Off), QList<QSize>());
    QCOMPARE(icon.pixmap(32, 32).toImage().pixelColor(5, 5), QColor(Qt::red));
}

KYTE_TEST_MAIN(tst_KyThumbnailFile)
#include "tst_KyThumbnailFile.moc"
