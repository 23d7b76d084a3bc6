#include <KyByteCursor_p.h>
#include <KyPngExtent_p.h>
#include <KyTestMain.h>

#include <QBuffer>
#include <QDataStream>
#include <QImage>

using namespace Kyte;

class tst_KyByteCursor : public QObject
{
    Q_OBJECT

private slots:
    void values_areReadAsTheyWereWritten();
    void numbers_endWithTheBytes();
    void arrays_endWithTheBytes_data();
    void arrays_endWithTheBytes();
    void strings_areWhole_data();
    void strings_areWhole();
    void skip_staysInside();
    void overwrite_leavesTheRest();

    void png_isSkippedToItsEnd_data();
    void png_isSkippedToItsEnd();
    void png_countsPicturesByTheirPixels();
    void damagedPng_isRefused_data();
    void damagedPng_isRefused();
    void packedChunks_areLimited_data();
    void packedChunks_areLimited();
};

template<typename... Values>
static QByteArray bytesOf(const Values &...values)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    (stream << ... << values);
    return bytes;
}

void tst_KyByteCursor::values_areReadAsTheyWereWritten()
{
    KyByteCursor cursor(bytesOf(quint8(1), qint16(-2), quint32(3), qint64(-4), 0.25, QStringLiteral("größe"),
                                QByteArray("bytes"), QString(), quint8(9)));
    quint8 byte = 0;
    qint16 word = 0;
    quint32 number = 0;
    qint64 large = 0;
    double real = 0;
    QString text;
    QByteArray bytes;
    QVERIFY(cursor.read(&byte) && cursor.read(&word) && cursor.read(&number) && cursor.read(&large)
            && cursor.read(&real) && cursor.readString(&text) && cursor.readBytes(&bytes));
    QCOMPARE(byte, quint8(1));
    QCOMPARE(word, qint16(-2));
    QCOMPARE(number, quint32(3));
    QCOMPARE(large, qint64(-4));
    QCOMPARE(real, 0.25);
    QCOMPARE(text, QStringLiteral("größe"));
    QCOMPARE(bytes, QByteArray("bytes"));
    QVERIFY(cursor.readString(&text));
    QCOMPARE(text, QString());
    QVERIFY(!cursor.atEnd());
    QCOMPARE(cursor.rest(), QByteArray(1, '\x09'));
    QVERIFY(cursor.read(&byte));
    QVERIFY(cursor.atEnd());
}

void tst_KyByteCursor::numbers_endWithTheBytes()
{
    KyByteCursor cursor(QByteArray(7, '\0'));
    qint64 large = 0;
    double real = 0;
    quint32 number = 0;
    QVERIFY(!cursor.read(&large));
    QVERIFY(!cursor.read(&real));
    QVERIFY(cursor.read(&number));
    QVERIFY(!cursor.read(&number));
    QCOMPARE(cursor.left(), 3);
}

void tst_KyByteCursor::arrays_endWithTheBytes_data()
{
    QTest::addColumn<quint32>("count");
    QTest::addColumn<quint32>("limit");
    QTest::addColumn<bool>("isThere");
    QTest::newRow("none") << 0u << 5u << true;
    QTest::newRow("all") << 4u << 4u << true;
    QTest::newRow("beyond the limit") << 4u << 3u << false;
    QTest::newRow("beyond the bytes") << 5u << 5u << false;
    QTest::newRow("so many that the size overflows") << 0x40000001u << 0xffffffffu << false;
}

void tst_KyByteCursor::arrays_endWithTheBytes()
{
    QFETCH(quint32, count);
    QFETCH(quint32, limit);
    QFETCH(bool, isThere);
    KyByteCursor cursor(bytesOf(count) + QByteArray(4 * 4, 'x'));
    QCOMPARE(cursor.skipArray(4, limit), isThere);
    if (isThere)
        QCOMPARE(cursor.left(), 16 - int(count) * 4);
}

void tst_KyByteCursor::strings_areWhole_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isBytes");
    QTest::addColumn<bool>("isString");
    QTest::newRow("null") << bytesOf(0xffffffffu) << true << true;
    QTest::newRow("empty") << bytesOf(0u) << true << true;
    QTest::newRow("whole") << bytesOf(2u) + "ab" << true << true;
    QTest::newRow("half a character") << bytesOf(3u) + "abc" << true << false;
    QTest::newRow("cut off") << bytesOf(4u) + "abc" << false << false;
    QTest::newRow("size cut off") << QByteArray(3, '\0') << false << false;
    QTest::newRow("nearly null") << bytesOf(0xfffffffeu) + "ab" << false << false;
}

void tst_KyByteCursor::strings_areWhole()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isBytes);
    QFETCH(bool, isString);
    QCOMPARE(KyByteCursor(bytes).readBytes(), isBytes);
    QCOMPARE(KyByteCursor(bytes).readString(), isString);
}

void tst_KyByteCursor::skip_staysInside()
{
    KyByteCursor cursor("abc");
    QVERIFY(cursor.skip(0));
    QVERIFY(!cursor.skip(4));
    QVERIFY(!cursor.skip(-1));
    QVERIFY(cursor.skip(3));
    QVERIFY(!cursor.skip(1));
    QCOMPARE(cursor.position(), 3);
    cursor.seek(1);
    QCOMPARE(cursor.rest(), QByteArray("bc"));
}

void tst_KyByteCursor::overwrite_leavesTheRest()
{
    const QByteArray bytes("abcdef");
    KyByteCursor cursor(bytes);
    QVERIFY(cursor.skip(4));
    cursor.overwrite(1, "XY");
    QCOMPARE(cursor.bytes(), QByteArray("aXYdef"));
    QCOMPARE(cursor.position(), 4);
    QCOMPARE(bytes, QByteArray("abcdef"));
}

static QByteArray png(const QImage &image)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data();
}

static QByteArray chunk(const QByteArray &name, const QByteArray &content)
{
    return bytesOf(quint32(content.size())) + name + content + QByteArray(4, '\0');
}

static const QByteArray SIGNATURE("\x89PNG\r\n\x1a\n");

static QByteArray header(quint32 width, quint32 height, quint8 bits)
{
    return chunk("IHDR", bytesOf(width, height, bits, quint8(6), quint8(0), quint8(0), quint8(0)));
}

void tst_KyByteCursor::png_isSkippedToItsEnd_data()
{
    QTest::addColumn<int>("format");
    QTest::newRow("monochrome") << int(QImage::Format_Mono);
    QTest::newRow("palette") << int(QImage::Format_Indexed8);
    QTest::newRow("opaque") << int(QImage::Format_RGB32);
    QTest::newRow("transparent") << int(QImage::Format_ARGB32);
    QTest::newRow("16 bits") << int(QImage::Format_RGBA64);
}

void tst_KyByteCursor::png_isSkippedToItsEnd()
{
    QFETCH(int, format);
    QImage image(70, 30, QImage::Format(format));
    image.fill(1);
    image.setText("Title", "a title");
    const QByteArray file = png(image);
    KyByteCursor cursor(file + "behind");
    const qint64 size = skipPng(&cursor);
    QCOMPARE(cursor.position(), file.size());
    QVERIFY(size >= QImage::fromData(file, "PNG").sizeInBytes());
}

void tst_KyByteCursor::png_countsPicturesByTheirPixels()
{
    const QByteArray end = chunk("IEND", QByteArray());
    KyByteCursor eight(SIGNATURE + header(1000, 100, 8) + end);
    QCOMPARE(skipPng(&eight), qint64(1000 * 4 + sizeof(void *)) * 100);
    KyByteCursor sixteen(SIGNATURE + header(1000, 100, 16) + end);
    QCOMPARE(skipPng(&sixteen), qint64(1000 * 8 + sizeof(void *)) * 100);
}

void tst_KyByteCursor::damagedPng_isRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray end = chunk("IEND", QByteArray());
    const QByteArray good = header(2, 2, 8);
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("another format") << QByteArray("GIF89a..........");
    QTest::newRow("no header") << SIGNATURE + end;
    QTest::newRow("header behind another chunk") << SIGNATURE + chunk("tEXt", "x") + good + end;
    QTest::newRow("two headers") << SIGNATURE + good + good + end;
    QTest::newRow("short header") << SIGNATURE + chunk("IHDR", bytesOf(2u, 2u, quint8(8))) + end;
    QTest::newRow("no end") << SIGNATURE + good;
    QTest::newRow("end without its checksum") << SIGNATURE + good + end.chopped(1);
    QTest::newRow("chunk beyond the bytes") << SIGNATURE + good + bytesOf(0xffffffffu) + "IDAT" + end;
    QTest::newRow("no width") << SIGNATURE + header(0, 2, 8) + end;
    QTest::newRow("no height") << SIGNATURE + header(2, 0, 8) + end;
    QTest::newRow("width beyond 31 bits") << SIGNATURE + header(0x80000000u, 2, 8) + end;
    QTest::newRow("height beyond 31 bits") << SIGNATURE + header(2, 0x80000000u, 8) + end;
    QTest::newRow("row beyond 31 bits") << SIGNATURE + header(0x20000000u, 2, 8) + end;
    QTest::newRow("row beyond 31 bits at 16") << SIGNATURE + header(0x10000000u, 2, 16) + end;
}

void tst_KyByteCursor::damagedPng_isRefused()
{
    QFETCH(QByteArray, bytes);
    KyByteCursor cursor(bytes);
    QCOMPARE(skipPng(&cursor), qint64(-1));
}

void tst_KyByteCursor::packedChunks_areLimited_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("isRead");
    const int limit = 256 * 1024;
    for (const char *name : {"zTXt", "iTXt", "iCCP"}) {
        QTest::newRow(qPrintable(QString(name) + " up to the limit"))
            << QByteArray(name) << limit / 2 << true;
        QTest::newRow(qPrintable(QString(name) + " beyond")) << QByteArray(name) << limit / 2 + 1 << false;
    }
    QTest::newRow("plain text") << QByteArray("tEXt") << limit << true;
}

void tst_KyByteCursor::packedChunks_areLimited()
{
    QFETCH(QByteArray, name);
    QFETCH(int, size);
    QFETCH(bool, isRead);
    const QByteArray packed = chunk(name, QByteArray(size, 'x'));
    KyByteCursor cursor(SIGNATURE + header(2, 2, 8) + packed + packed + chunk("IEND", QByteArray()));
    QCOMPARE(skipPng(&cursor) > 0, isRead);
}

KYTE_TEST_MAIN(tst_KyByteCursor)
#include "tst_KyByteCursor.moc"
