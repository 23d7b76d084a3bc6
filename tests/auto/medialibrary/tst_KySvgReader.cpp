#include <KyTestEnvironment.h>
#include <KyTestMain.h>

#include <KySvgReader.h>

#include <QSvgRenderer>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace Kyte;

/** Red above, blue below. */
static const QByteArray WIDE = "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 200 100'>"
                               "<rect width='200' height='50' fill='#ff0000'/>"
                               "<rect y='50' width='200' height='50' fill='#0000ff'/></svg>";
/** Red on the left, blue on the right. */
static const QByteArray HIGH = "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 100 200'>"
                               "<rect width='50' height='200' fill='#ff0000'/>"
                               "<rect x='50' width='50' height='200' fill='#0000ff'/></svg>";

class tst_KySvgReader : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newReader_isEmpty();
    void setFilePath_makesARendererOfItsOwn();
    void setFilePath_toTheSame_keepsTheRenderer();
    void setFilePath_isCaseSensitive();
    void setFilePath_toNoFile_data();
    void setFilePath_toNoFile();

    void keep_wideDrawing_isInTheUpperHalf();
    void keep_highDrawing_isInTheLeftHalf();
    void keep_lowTarget_cutsTheDrawingOff();
    void expand_wideDrawing_isCutOff();
    void expand_highDrawing_isCutOff();
    void ignore_fillsTheImage();
    void images_areTransparentWhereNothingIsDrawn();
    void ownSize_isThatOfTheViewBox();
    void ownSize_isTruncated();

    void withoutViewBox_theContentCounts();
    void neutralImage_data();
    void neutralImage();
    void noFile_isANeutralImage_data();
    void noFile_isANeutralImage();
    void uselessSize_isANullImage_data();
    void uselessSize_isANullImage();
    void hugeDrawing_isLeftOut();
    void nullRenderer_givesNull();
    void emptyPath_givesNull();

    void fileAndRenderer_giveTheSame_data();
    void fileAndRenderer_giveTheSame();
    void compressedFile_isRead();

private:
    QString write(const QByteArray &content, const QString &name = QStringLiteral("a.svg")) const;

    QScopedPointer<QTemporaryDir> m_folder;
};

static const QList<Qt::AspectRatioMode> MODES = {Qt::IgnoreAspectRatio, Qt::KeepAspectRatio,
                                                 Qt::KeepAspectRatioByExpanding};

void tst_KySvgReader::init()
{
    m_folder.reset(new QTemporaryDir);
    QVERIFY(m_folder->isValid());
}

void tst_KySvgReader::cleanup()
{
    m_folder.reset();
}

QString tst_KySvgReader::write(const QByteArray &content, const QString &name) const
{
    const QString path = m_folder->filePath(name);
    Test::writeFile(path, content);
    return path;
}

static QColor colorAt(const QImage &image, int x, int y)
{
    const QColor color = image.pixelColor(x, y);
    return color.alpha() == 0 ? QColor(Qt::transparent) : color;
}

static bool isTransparent(const QImage &image)
{
    QImage empty(image.size(), QImage::Format_ARGB32);
    empty.fill(Qt::transparent);
    return image == empty;
}

static const QColor RED(Qt::red);
static const QColor BLUE(Qt::blue);
static const QColor NOTHING(Qt::transparent);

void tst_KySvgReader::newReader_isEmpty()
{
    const KySvgReader reader(this);
    QCOMPARE(reader.filePath(), QString());
    QVERIFY(!reader.findChild<QSvgRenderer *>());
    QCOMPARE(reader.parent(), this);
}

void tst_KySvgReader::setFilePath_makesARendererOfItsOwn()
{
    KySvgReader reader;
    reader.setFilePath(write(WIDE));
    QCOMPARE(reader.filePath(), m_folder->filePath("a.svg"));
    const QPointer<QSvgRenderer> first = reader.findChild<QSvgRenderer *>();
    QVERIFY(first && first->isValid());

    reader.setFilePath(write(HIGH, "b.svg"));
    QVERIFY(!first);
    QCOMPARE(reader.findChildren<QSvgRenderer *>().size(), 1);
    QCOMPARE(reader.findChild<QSvgRenderer *>()->viewBox().size(), QSize(100, 200));
}

void tst_KySvgReader::setFilePath_toTheSame_keepsTheRenderer()
{
    KySvgReader reader;
    reader.setFilePath(QString());
    QVERIFY(!reader.findChild<QSvgRenderer *>());
    reader.setFilePath(write(WIDE));
    const QSvgRenderer *renderer = reader.findChild<QSvgRenderer *>();
    write(HIGH);
    reader.setFilePath(m_folder->filePath("a.svg"));
    QCOMPARE(reader.findChild<QSvgRenderer *>(), renderer);
    QCOMPARE(renderer->viewBox().size(), QSize(200, 100));
}

void tst_KySvgReader::setFilePath_isCaseSensitive()
{
    KySvgReader reader;
    reader.setFilePath(write(WIDE));
    const QPointer<QSvgRenderer> renderer = reader.findChild<QSvgRenderer *>();
    reader.setFilePath(m_folder->filePath("A.svg"));
    QCOMPARE(reader.filePath(), m_folder->filePath("A.svg"));
    QVERIFY(!renderer);
}

void tst_KySvgReader::setFilePath_toNoFile_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("missing") << "/none/a.svg";
    QTest::newRow("folder") << QDir::tempPath();
    QTest::newRow("empty") << "";
}

void tst_KySvgReader::setFilePath_toNoFile()
{
    QFETCH(QString, path);
    KySvgReader reader;
    reader.setFilePath(write(WIDE));
    reader.setFilePath(path);
    QCOMPARE(reader.filePath(), path);
    QVERIFY(!reader.findChild<QSvgRenderer *>()->isValid());
}

void tst_KySvgReader::keep_wideDrawing_isInTheUpperHalf()
{
    const QImage image = KySvgReader::getImage(write(WIDE), 64, 64, Qt::KeepAspectRatio);
    QCOMPARE(image.size(), QSize(64, 64));
    QCOMPARE(image.format(), QImage::Format_ARGB32);
    QCOMPARE(colorAt(image, 0, 0), RED);
    QCOMPARE(colorAt(image, 63, 14), RED);
    QCOMPARE(colorAt(image, 0, 17), BLUE);
    QCOMPARE(colorAt(image, 63, 31), BLUE);
    QCOMPARE(colorAt(image, 0, 32), NOTHING);
    QCOMPARE(colorAt(image, 63, 63), NOTHING);
}

void tst_KySvgReader::keep_highDrawing_isInTheLeftHalf()
{
    const QImage image = KySvgReader::getImage(write(HIGH), 64, 64, Qt::KeepAspectRatio);
    QCOMPARE(image.size(), QSize(64, 64));
    QCOMPARE(colorAt(image, 14, 63), RED);
    QCOMPARE(colorAt(image, 31, 0), BLUE);
    QCOMPARE(colorAt(image, 32, 0), NOTHING);
}

void tst_KySvgReader::keep_lowTarget_cutsTheDrawingOff()
{
    const QImage image = KySvgReader::getImage(write(WIDE), 64, 16, Qt::KeepAspectRatio);
    QCOMPARE(image.size(), QSize(64, 16));
    QCOMPARE(colorAt(image, 63, 0), RED);
    QCOMPARE(colorAt(image, 63, 14), RED); // blue would begin at 16
}

void tst_KySvgReader::expand_wideDrawing_isCutOff()
{
    const QImage image = KySvgReader::getImage(write(WIDE), 64, 64, Qt::KeepAspectRatioByExpanding);
    QCOMPARE(image.size(), QSize(64, 64));
    QCOMPARE(image.format(), QImage::Format_ARGB32);
    QCOMPARE(colorAt(image, 63, 30), RED);
    QCOMPARE(colorAt(image, 0, 33), BLUE);
    QCOMPARE(colorAt(image, 63, 63), BLUE);
}

void tst_KySvgReader::expand_highDrawing_isCutOff()
{
    const QImage image = KySvgReader::getImage(write(HIGH), 64, 64, Qt::KeepAspectRatioByExpanding);
    QCOMPARE(colorAt(image, 30, 63), RED);
    QCOMPARE(colorAt(image, 33, 0), BLUE);
    QCOMPARE(colorAt(image, 63, 63), BLUE);
}

void tst_KySvgReader::ignore_fillsTheImage()
{
    const QImage image = KySvgReader::getImage(write(WIDE), 20, 60, Qt::IgnoreAspectRatio);
    QCOMPARE(image.size(), QSize(20, 60));
    QCOMPARE(image.format(), QImage::Format_ARGB32);
    QCOMPARE(colorAt(image, 0, 28), RED);
    QCOMPARE(colorAt(image, 19, 31), BLUE);
    QCOMPARE(colorAt(image, 19, 59), BLUE);
}

void tst_KySvgReader::images_areTransparentWhereNothingIsDrawn()
{
    const QString path = write("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 10 10'>"
                               "<rect width='5' height='10' fill='#ff0000' fill-opacity='0.5'/></svg>");
    for (const Qt::AspectRatioMode mode : MODES) {
        const QImage image = KySvgReader::getImage(path, 20, 20, mode);
        QCOMPARE(image.pixelColor(2, 2).red(), 255);
        QVERIFY(qAbs(image.pixelColor(2, 2).alpha() - 128) <= 1);
        QCOMPARE(colorAt(image, 15, 10), NOTHING);
    }
}

void tst_KySvgReader::ownSize_isThatOfTheViewBox()
{
    QSvgRenderer renderer(WIDE);
    const QImage image = KySvgReader::getImage(&renderer);
    QCOMPARE(image.size(), QSize(200, 100));
    QCOMPARE(image.format(), QImage::Format_ARGB32);
    QCOMPARE(colorAt(image, 199, 48), RED);
    QCOMPARE(colorAt(image, 199, 99), BLUE);
}

void tst_KySvgReader::ownSize_isTruncated()
{
    QSvgRenderer renderer(QByteArray("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 10.9 20.5'>"
                                     "<rect width='5' height='5'/></svg>"));
    QCOMPARE(KySvgReader::getImage(&renderer).size(), QSize(10, 20));
}

void tst_KySvgReader::withoutViewBox_theContentCounts()
{
    const QByteArray content = "<svg xmlns='http://www.w3.org/2000/svg'>"
                               "<rect x='10' y='10' width='40' height='20' fill='#ff0000'/></svg>";
    const QImage image = KySvgReader::getImage(write(content), 64, 64, Qt::KeepAspectRatio);
    QCOMPARE(image.size(), QSize(64, 64));
    QCOMPARE(colorAt(image, 32, 16), RED);
    QCOMPARE(colorAt(image, 32, 40), NOTHING);
}

void tst_KySvgReader::neutralImage_data()
{
    QTest::addColumn<QByteArray>("content");
    const auto svg = [](const char *attributes, const char *content) {
        return QByteArray("<svg xmlns='http://www.w3.org/2000/svg' ") + attributes + '>' + content + "</svg>";
    };
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("no SVG") << QByteArray("no drawing at all");
    QTest::newRow("other XML") << QByteArray("<html><body/></html>");
    QTest::newRow("cut off") << QByteArray("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 10");
    QTest::newRow("bytes") << QByteArray("\x00\xff\xfe\x1f\x8b\x08", 6);
    QTest::newRow("no view box, no content") << svg("", "");
    QTest::newRow("empty view box, no content") << svg("viewBox='0 0 0 0'", "");
    QTest::newRow("line view box") << svg("viewBox='0 0 10 0'", "");
    QTest::newRow("view box of words") << svg("viewBox='a b c d'", "");
    QTest::newRow("negative view box") << svg("viewBox='0 0 -10 10'", "");
    QTest::newRow("infinite view box") << svg("viewBox='0 0 1e999 1e999'", "");
}

void tst_KySvgReader::neutralImage()
{
    QFETCH(QByteArray, content);
    const QString path = write(content);
    for (const Qt::AspectRatioMode mode : MODES) {
        const QImage image = KySvgReader::getImage(path, 64, 48, mode);
        QCOMPARE(image.size(), QSize(64, 48));
        QVERIFY(isTransparent(image));
        QCOMPARE(KySvgReader::getIcon(path, 64, 48, mode).availableSizes(), QList<QSize>{QSize(64, 48)});
    }
    QSvgRenderer renderer(path);
    const QImage own = KySvgReader::getImage(&renderer);
    QVERIFY(own.isNull() || isTransparent(own));
}

void tst_KySvgReader::noFile_isANeutralImage_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << "none.svg";
    QTest::newRow("folder") << ".";
#ifdef Q_OS_UNIX
    QTest::newRow("pipe") << "pipe.svg";
#endif
}

void tst_KySvgReader::noFile_isANeutralImage()
{
    QFETCH(QString, name);
#ifdef Q_OS_UNIX
    QCOMPARE(::mkfifo(QFile::encodeName(m_folder->filePath("pipe.svg")).constData(), 0600), 0);
#endif
    for (const Qt::AspectRatioMode mode : MODES) {
        const QImage image = KySvgReader::getImage(m_folder->filePath(name), 10, 20, mode);
        QCOMPARE(image.size(), QSize(10, 20));
        QVERIFY(isTransparent(image));
    }
}

void tst_KySvgReader::uselessSize_isANullImage_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("empty") << 0 << 0;
    QTest::newRow("no width") << 0 << 10;
    QTest::newRow("no height") << 10 << 0;
    QTest::newRow("negative") << -10 << -10;
    QTest::newRow("negative width") << -10 << 10;
    QTest::newRow("most negative") << INT_MIN << INT_MIN;
    QTest::newRow("huge") << INT_MAX << INT_MAX;
    QTest::newRow("40 GB") << 100000 << 100000;
    QTest::newRow("4 GB") << 32767 << 32767;
    QTest::newRow("very wide") << 32768 << 1;
}

void tst_KySvgReader::uselessSize_isANullImage()
{
    QFETCH(int, width);
    QFETCH(int, height);
    const QString path = write(WIDE);
    for (const Qt::AspectRatioMode mode : MODES) {
        QVERIFY(KySvgReader::getImage(path, width, height, mode).isNull());
        QVERIFY(KySvgReader::getIcon(path, width, height, mode).isNull());
    }
}

/** A drawing that would take more memory than images may is not drawn; the image has the wanted size. */
void tst_KySvgReader::hugeDrawing_isLeftOut()
{
    const QByteArray line = "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 1 1000000'>"
                            "<rect width='1' height='1000000'/></svg>";
    const QImage image = KySvgReader::getImage(write(line), 64, 64, Qt::KeepAspectRatioByExpanding);
    QCOMPARE(image.size(), QSize(64, 64));
    QVERIFY(isTransparent(image));
    QSvgRenderer renderer(line);
    QVERIFY(KySvgReader::getImage(&renderer).isNull());
}

void tst_KySvgReader::nullRenderer_givesNull()
{
    QVERIFY(KySvgReader::getImage(nullptr).isNull());
    for (const Qt::AspectRatioMode mode : MODES) {
        QVERIFY(KySvgReader::getImage(static_cast<QSvgRenderer *>(nullptr), 10, 10, mode).isNull());
        QVERIFY(KySvgReader::getIcon(static_cast<QSvgRenderer *>(nullptr), 10, 10, mode).isNull());
    }
}

void tst_KySvgReader::emptyPath_givesNull()
{
    for (const Qt::AspectRatioMode mode : MODES) {
        QVERIFY(KySvgReader::getImage(QString(), 10, 10, mode).isNull());
        QVERIFY(KySvgReader::getIcon(QString(), 10, 10, mode).isNull());
    }
}

void tst_KySvgReader::fileAndRenderer_giveTheSame_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("wide") << WIDE;
    QTest::newRow("high") << HIGH;
}

void tst_KySvgReader::fileAndRenderer_giveTheSame()
{
    QFETCH(QByteArray, content);
    const QString path = write(content);
    QSvgRenderer renderer(path);
    for (const Qt::AspectRatioMode mode : MODES) {
        const QImage image = KySvgReader::getImage(path, 50, 40, mode);
        QCOMPARE(KySvgReader::getImage(&renderer, 50, 40, mode), image);
        for (const QIcon &icon :
             {KySvgReader::getIcon(path, 50, 40, mode), KySvgReader::getIcon(&renderer, 50, 40, mode)}) {
            QCOMPARE(icon.availableSizes(), QList<QSize>{QSize(50, 40)});
            QCOMPARE(icon.pixmap(50, 40).toImage().convertToFormat(QImage::Format_ARGB32), image);
        }
    }
    QVERIFY(renderer.isValid()); // it stays the caller's
}

void tst_KySvgReader::compressedFile_isRead()
{
    // gzip, one stored block
    const QByteArray content = WIDE;
    QByteArray file("\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\x03\x01", 11);
    const auto append = [&file](quint32 number, int bytes) {
        for (int i = 0; i < bytes; ++i)
            file.append(char(number >> (8 * i)));
    };
    append(quint32(content.size()), 2);
    append(~quint32(content.size()), 2);
    file.append(content);
    quint32 crc = 0xffffffffU;
    for (const char byte : content) {
        crc ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc & 1U ? (crc >> 1) ^ 0xedb88320U : crc >> 1;
    }
    append(~crc, 4);
    append(quint32(content.size()), 4);

    const QImage image = KySvgReader::getImage(write(file, "a.svgz"), 64, 64, Qt::KeepAspectRatio);
    QCOMPARE(colorAt(image, 0, 0), RED);
}

KYTE_TEST_MAIN(tst_KySvgReader)
#include "tst_KySvgReader.moc"
