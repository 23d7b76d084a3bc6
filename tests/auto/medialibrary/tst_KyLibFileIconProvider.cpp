#include "KyThumbnailFolder.h"

#include <KyTestMain.h>

#include <KyLibFileIconProvider.h>

#include <QFileSystemModel>

using namespace Kyte;

class tst_KyLibFileIconProvider : public QObject
{
    Q_OBJECT

private slots:
    void icon_withThumbnail_hasOneMoreEntry_data();
    void icon_withThumbnail_hasOneMoreEntry();
    void icon_withoutThumbnail_isTheSystems_data();
    void icon_withoutThumbnail_isTheSystems();
    void icon_ofAType_isTheSystems();
    void icon_throughTheBaseClass_hasTheThumbnail();
    void getIcon_addsTheImage_data();
    void getIcon_addsTheImage();
    void thumbnailFilePath_data();
    void thumbnailFilePath();
    void thumbnailFilePath_isAbsolute();
    void thumbnailFilePath_ofNoMediaFile_isEmptyEvenWithThumbnail();
    void iconImage_isStretched();
    void iconImage_isSmooth();
    void iconImage_isNull_data();
    void iconImage_isNull();
};

static QList<QSize> systemSizes(const QString &path)
{
    return QFileIconProvider().icon(QFileInfo(path)).availableSizes(QIcon::Normal, QIcon::Off);
}

void tst_KyLibFileIconProvider::icon_withThumbnail_hasOneMoreEntry_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("media file") << "a.png";
    QTest::newRow("no media file") << "a.doc";
    QTest::newRow("no extension") << "a";
    QTest::newRow("missing file") << "none.png";
    QTest::newRow("folder") << "films";
}

void tst_KyLibFileIconProvider::icon_withThumbnail_hasOneMoreEntry()
{
    QFETCH(QString, name);
    const Test::ThumbnailFolder folder;
    QVERIFY(QDir().mkdir(folder.path("films")));
    for (const char *file : {"a.png", "a.doc", "a"})
        folder.addFile(QLatin1String(file));
    folder.addThumbnail(name, Qt::red);

    const KyLibFileIconProvider provider;
    const QIcon icon = provider.icon(QFileInfo(folder.path(name)));
    QCOMPARE(icon.availableSizes(QIcon::Normal, QIcon::Off),
             systemSizes(folder.path(name)) + QList<QSize>{QSize(32, 32)});
    const QImage image = icon.pixmap(32, 32).toImage(); // the first time it answers for the size given
    QCOMPARE(image.pixelColor(image.rect().center()), QColor(Qt::red));
}

void tst_KyLibFileIconProvider::icon_withoutThumbnail_isTheSystems_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("file") << "a.png";
    QTest::newRow("broken thumbnail") << "broken.png";
    QTest::newRow("folder as thumbnail") << "folder.png";
    QTest::newRow("missing file") << "none.png";
    QTest::newRow("folder") << "";
}

void tst_KyLibFileIconProvider::icon_withoutThumbnail_isTheSystems()
{
    QFETCH(QString, name);
    const Test::ThumbnailFolder folder;
    folder.addFile("a.png");
    folder.addFile("broken.png");
    folder.addFile("folder.png");
    folder.addThumbnail("broken.png", QByteArray("no image"));
    folder.addThumbnail("", Qt::red); // "._kythumb/.thumb" is nobody's
    QVERIFY(QDir().mkdir(folder.thumbnailPath("folder.png")));
    const QIcon icon = KyLibFileIconProvider().icon(QFileInfo(folder.path(name)));
    QCOMPARE(icon.availableSizes(QIcon::Normal, QIcon::Off), systemSizes(folder.path(name)));
    QCOMPARE(KyLibFileIconProvider().icon(QFileInfo()).isNull(),
             QFileIconProvider().icon(QFileInfo()).isNull());
}

void tst_KyLibFileIconProvider::icon_ofAType_isTheSystems()
{
    const KyLibFileIconProvider provider;
    QVERIFY(!provider.icon(QFileIconProvider::Folder).isNull());
    QCOMPARE(provider.icon(QFileIconProvider::Folder).availableSizes(),
             QFileIconProvider().icon(QFileIconProvider::Folder).availableSizes());
}

void tst_KyLibFileIconProvider::icon_throughTheBaseClass_hasTheThumbnail()
{
    const Test::ThumbnailFolder folder;
    const QString path = folder.addMany(1).first();
    KyLibFileIconProvider provider;
    QFileSystemModel model;
    model.setIconProvider(&provider);
    const QFileIconProvider *base = model.iconProvider();
    QCOMPARE(base->icon(QFileInfo(path)).availableSizes().size(), systemSizes(path).size() + 1);
}

void tst_KyLibFileIconProvider::getIcon_addsTheImage_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("media file") << "a.png";
    QTest::newRow("no media file") << "a.doc";
    QTest::newRow("missing file") << "none.png";
}

void tst_KyLibFileIconProvider::getIcon_addsTheImage()
{
    QFETCH(QString, name);
    const Test::ThumbnailFolder folder;
    folder.addFile("a.png");
    folder.addFile("a.doc");
    folder.addThumbnail(name, Qt::red); // which is not looked at
    const QFileInfo file(folder.path(name));
    QImage image(300, 200, QImage::Format_RGB32);
    image.fill(Qt::blue);

    const KyLibFileIconProvider provider;
    const QIcon icon = provider.getIcon(image, file);
    QCOMPARE(icon.availableSizes(QIcon::Normal, QIcon::Off),
             systemSizes(file.filePath()) + QList<QSize>{image.size()});
    QCOMPARE(icon.pixmap(300, 200).toImage().pixelColor(150, 100), QColor(Qt::blue));
    QCOMPARE(provider.getIcon(QImage(), file).availableSizes(), systemSizes(file.filePath()));
}

void tst_KyLibFileIconProvider::thumbnailFilePath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    QTest::newRow("image") << "/m/a.png"
                           << "/m/._kythumb/a.png.thumb";
    QTest::newRow("film, upper case") << "/m/b/A.MP4"
                                      << "/m/b/._kythumb/A.MP4.thumb";
    QTest::newRow("in the root") << "/a.png"
                                 << "/._kythumb/a.png.thumb";
    QTest::newRow("place markers") << "/m%2/%1.png"
                                   << "/m%2/._kythumb/%1.png.thumb";
    QTest::newRow("winding") << "/m/x/../a.png"
                             << "/m/._kythumb/a.png.thumb";
    QTest::newRow("no media file") << "/m/a.doc"
                                   << "";
    QTest::newRow("no extension") << "/m/png"
                                  << "";
    QTest::newRow("folder") << "/m/a.png/"
                            << "";
    QTest::newRow("empty") << ""
                           << "";
}

void tst_KyLibFileIconProvider::thumbnailFilePath()
{
    QFETCH(QString, path);
    QFETCH(QString, expected);
    if (!expected.isEmpty())
        expected = QDir::current().absoluteFilePath(expected); // on Windows with a drive
    QCOMPARE(KyLibFileIconProvider().getThumbnailFilePath(QFileInfo(path)), expected);
}

void tst_KyLibFileIconProvider::thumbnailFilePath_isAbsolute()
{
    QCOMPARE(KyLibFileIconProvider().getThumbnailFilePath(QFileInfo("m/a.png")),
             QDir::currentPath() + QStringLiteral("/m/._kythumb/a.png.thumb"));
    QCOMPARE(KyLibFileIconProvider().getThumbnailFilePath(QFileInfo()), QString());
}

void tst_KyLibFileIconProvider::thumbnailFilePath_ofNoMediaFile_isEmptyEvenWithThumbnail()
{
    const Test::ThumbnailFolder folder;
    const QFileInfo file(folder.addFile("a.doc"));
    folder.addThumbnail("a.doc", Qt::red);
    QCOMPARE(KyLibFileIconProvider().getThumbnailFilePath(file), QString());
    QVERIFY(KyLibFileIconProvider().getIconImage(file, QSize(10, 10)).isNull());
}

void tst_KyLibFileIconProvider::iconImage_isStretched()
{
    const Test::ThumbnailFolder folder;
    folder.addThumbnail("a.png", Qt::red, QSize(40, 30));
    const KyLibFileIconProvider provider;
    const QFileInfo file(folder.path("a.png")); // only its thumbnail has to be there
    for (const QSize &size : {QSize(100, 10), QSize(7, 90), QSize(40, 30), QSize(1, 1)}) {
        const QImage image = provider.getIconImage(file, size);
        QCOMPARE(image.size(), size);
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::red));
        QCOMPARE(image.pixelColor(size.width() - 1, size.height() - 1), QColor(Qt::red));
    }
}

void tst_KyLibFileIconProvider::iconImage_isSmooth()
{
    const Test::ThumbnailFolder folder;
    QImage stripes(64, 64, QImage::Format_RGB32);
    for (int x = 0; x < 64; ++x) {
        for (int y = 0; y < 64; ++y)
            stripes.setPixelColor(x, y, x % 2 ? Qt::white : Qt::black);
    }
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly) && stripes.save(&buffer, "PNG"));
    folder.addThumbnail("a.png", buffer.data());
    const QImage image = KyLibFileIconProvider().getIconImage(QFileInfo(folder.path("a.png")), QSize(8, 8));
    const int gray = image.pixelColor(4, 4).red();
    QVERIFY2(gray > 100 && gray < 160, qPrintable(QString::number(gray)));
}

void tst_KyLibFileIconProvider::iconImage_isNull_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QSize>("size");
    QTest::newRow("no thumbnail") << "none.png" << QSize(10, 10);
    QTest::newRow("broken thumbnail") << "broken.png" << QSize(10, 10);
    QTest::newRow("empty size") << "a.png" << QSize(0, 0);
    QTest::newRow("no size") << "a.png" << QSize();
    QTest::newRow("no width") << "a.png" << QSize(0, 10);
    QTest::newRow("negative") << "a.png" << QSize(-5, -5);
    QTest::newRow("huge") << "a.png" << QSize(INT_MAX, INT_MAX);
    QTest::newRow("very wide") << "a.png" << QSize(32768, 1);
}

void tst_KyLibFileIconProvider::iconImage_isNull()
{
    QFETCH(QString, name);
    QFETCH(QSize, size);
    const Test::ThumbnailFolder folder;
    folder.addThumbnail("a.png", Qt::red);
    folder.addThumbnail("broken.png", QByteArray("no image"));
    QVERIFY(KyLibFileIconProvider().getIconImage(QFileInfo(folder.path(name)), size).isNull());
}

KYTE_TEST_MAIN(tst_KyLibFileIconProvider)
#include "tst_KyLibFileIconProvider.moc"
