#include "KyDecodedImage_p.h"
#include "KyTestEnvironment.h"
#include "KyTestMain.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

using namespace Kyte;

class tst_KyDecodedImage : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void image_isThatOfTheFile();
    void image_ofAnythingElse_isNull_data();
    void image_ofAnythingElse_isNull();
    void image_ofASettledFile_isKept();
    void image_ofAFreshFile_isReadAgain();
    void image_ofAChangedFile_isReadAgain_data();
    void image_ofAChangedFile_isReadAgain();
    void image_ofAnotherFile_isThatOne();
    void image_ofAFileThatHasGone_isNull();
    void clear_letsTheImageGo();

private:
    QString path(const QString &name) const;
    void settle() const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

static void writeImage(const QString &path, const QColor &color, const QSize &size = QSize(4, 3))
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QVERIFY(image.save(path, "BMP")); // equal sizes make files of equal sizes
}

void tst_KyDecodedImage::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    writeImage(path(QStringLiteral("red.bmp")), Qt::red);
}

QString tst_KyDecodedImage::path(const QString &name) const
{
    return m_folder->filePath(name);
}

/** Waits until what is in the folder has settled, which no other clock can bring about. */
void tst_KyDecodedImage::settle() const
{
    const QFileInfo file(path(QStringLiteral("red.bmp")));
    QTRY_VERIFY_WITH_TIMEOUT(
        QFileInfo(file.filePath()).metadataChangeTime().msecsTo(QDateTime::currentDateTime()) > 2100, 10000);
}

static QColor colorOf(const QImage &image)
{
    return image.isNull() ? QColor() : image.pixelColor(0, 0);
}

void tst_KyDecodedImage::image_isThatOfTheFile()
{
    KyDecodedImage decoded;
    const QImage image = decoded.image(path(QStringLiteral("red.bmp")));
    QCOMPARE(image, QImage(path(QStringLiteral("red.bmp"))));
    QCOMPARE(image.size(), QSize(4, 3));
}

void tst_KyDecodedImage::image_ofAnythingElse_isNull_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << QStringLiteral("none.png");
    QTest::newRow("empty path") << QString();
    QTest::newRow("folder") << QStringLiteral(".");
    QTest::newRow("no image") << QStringLiteral("text.png");
    QTest::newRow("cut off") << QStringLiteral("cut.png");
    if (QFile::exists(QStringLiteral("/dev/zero")))
        QTest::newRow("device") << QStringLiteral("/dev/zero");
}

void tst_KyDecodedImage::image_ofAnythingElse_isNull()
{
    QFETCH(QString, name);
    Test::writeFile(path(QStringLiteral("text.png")), "no image");
    Test::writeFile(path(QStringLiteral("cut.png")), QByteArray("\x89PNG\r\n\x1a\n\0\0", 10));
    KyDecodedImage decoded;
    QVERIFY(decoded.image(name.isEmpty() ? name : QDir(m_folder->path()).absoluteFilePath(name)).isNull());
    QVERIFY(!decoded.image(path(QStringLiteral("red.bmp"))).isNull());
}

void tst_KyDecodedImage::image_ofASettledFile_isKept()
{
    settle();
    KyDecodedImage decoded;
    const QImage first = decoded.image(path(QStringLiteral("red.bmp")));
    const QImage second = decoded.image(path(QStringLiteral("red.bmp")));
    QCOMPARE(second.cacheKey(), first.cacheKey());
}

void tst_KyDecodedImage::image_ofAFreshFile_isReadAgain()
{
    // Two changes within one step of the clock leave the same times behind.
    KyDecodedImage decoded;
    for (const Qt::GlobalColor color : {Qt::green, Qt::blue, Qt::green, Qt::blue}) {
        writeImage(path(QStringLiteral("red.bmp")), color);
        QCOMPARE(colorOf(decoded.image(path(QStringLiteral("red.bmp")))), QColor(color));
    }
}

void tst_KyDecodedImage::image_ofAChangedFile_isReadAgain_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("isReplaced");
    QTest::addColumn<bool>("keepsItsTime");
    QTest::newRow("rewritten") << QSize(4, 3) << false << false;
    QTest::newRow("replaced") << QSize(4, 3) << true << false;
#ifndef Q_OS_WIN // which tells no time of a change that cannot be set back
    QTest::newRow("rewritten, with the former time") << QSize(4, 3) << false << true;
    QTest::newRow("replaced, with the former time") << QSize(4, 3) << true << true;
#endif
    QTest::newRow("larger, with the former time") << QSize(40, 30) << false << true;
}

void tst_KyDecodedImage::image_ofAChangedFile_isReadAgain()
{
    QFETCH(QSize, size);
    QFETCH(bool, isReplaced);
    QFETCH(bool, keepsItsTime);
    settle();
    const QString file = path(QStringLiteral("red.bmp"));
    const QDateTime formerTime = QFileInfo(file).lastModified();
    KyDecodedImage decoded;
    QCOMPARE(colorOf(decoded.image(file)), QColor(Qt::red));

    if (isReplaced) {
        writeImage(path(QStringLiteral("new.bmp")), Qt::blue, size);
        QVERIFY(QFile::remove(file));
        QVERIFY(QFile::rename(path(QStringLiteral("new.bmp")), file));
    } else {
        writeImage(file, Qt::blue, size);
    }
    if (keepsItsTime) {
        QFile opened(file);
        QVERIFY(opened.open(QIODevice::ReadWrite));
        QVERIFY(opened.setFileTime(formerTime, QFileDevice::FileModificationTime));
    }
    QCOMPARE(colorOf(decoded.image(file)), QColor(Qt::blue));
}

void tst_KyDecodedImage::image_ofAnotherFile_isThatOne()
{
    writeImage(path(QStringLiteral("blue.bmp")), Qt::blue);
    settle();
    KyDecodedImage decoded;
    QCOMPARE(colorOf(decoded.image(path(QStringLiteral("red.bmp")))), QColor(Qt::red));
    QCOMPARE(colorOf(decoded.image(path(QStringLiteral("blue.bmp")))), QColor(Qt::blue));
    QCOMPARE(colorOf(decoded.image(path(QStringLiteral("red.bmp")))), QColor(Qt::red));
}

void tst_KyDecodedImage::image_ofAFileThatHasGone_isNull()
{
    settle();
    KyDecodedImage decoded;
    QVERIFY(!decoded.image(path(QStringLiteral("red.bmp"))).isNull());
    QVERIFY(QFile::remove(path(QStringLiteral("red.bmp"))));
    QVERIFY(decoded.image(path(QStringLiteral("red.bmp"))).isNull());
}

void tst_KyDecodedImage::clear_letsTheImageGo()
{
    settle();
    KyDecodedImage decoded;
    const QImage first = decoded.image(path(QStringLiteral("red.bmp")));
    QVERIFY(!first.isDetached());
    decoded.clear();
    QVERIFY(first.isDetached());
    QVERIFY(decoded.image(path(QStringLiteral("red.bmp"))).cacheKey() != first.cacheKey());
}

KYTE_TEST_MAIN(tst_KyDecodedImage)
#include "tst_KyDecodedImage.moc"
