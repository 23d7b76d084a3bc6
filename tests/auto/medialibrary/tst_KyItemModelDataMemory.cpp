#include "KyAllocations.h"
#include "KyItemSamples.h"
#include "KyTestMain.h"

#include <KyItemModelData.h>

#include <QCborArray>
#include <QJsonArray>
#include <QMimeData>

using namespace Kyte;
using namespace Kyte::Test;

static const qint64 SLACK = 1024 * 1024; // what Qt loads once, and its first step for a long string
static const qint64 BYTES_PER_BYTE = 128;
static const qint64 PICTURE_BYTES = 256 * 1024 * 1024;

class tst_KyItemModelDataMemory : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void values_takeASmallMultiple_data();
    void values_takeASmallMultiple();
    void hugeCounts_takeNothing_data();
    void hugeCounts_takeNothing();
    void pictures_shareOneAllowance();
};

static qint64 peakOfDecoding(const QByteArray &payload, int *records)
{
    QMimeData data;
    data.setData(QStringLiteral("application/x-qabstractitemmodeldatalist"), payload);
    resetPeak();
    const auto maps =
        KyItemModelData::decodeData(&data, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    *records = maps.size();
    return peakBytes();
}

void tst_KyItemModelDataMemory::initTestCase()
{
    registerItemTypes();
    int records = 0;
    const QVector<NamedVariant> samples = sampleVariants(); // loads what Qt loads once
    for (const NamedVariant &sample : samples)
        peakOfDecoding(record(0, 0, sample.value), &records);
}

void tst_KyItemModelDataMemory::values_takeASmallMultiple_data()
{
    QTest::addColumn<QByteArray>("payload");

    QVariantList nulls;
    QVariantList lists;
    QVariantMap map;
    QVariantHash hash;
    QVariantList letters;
    QStringList nullStrings;
    QCborArray cbor;
    QJsonArray json;
    QVariantList fonts;
    QVariantList brushes;
    QVariantList icons;
    for (int i = 0; i < 20000; ++i) {
        nulls.append(QVariant());
        lists.append(QVariant(QVariantList{1}));
        map.insert(QString::number(i), i);
        hash.insert(QString::number(i), i);
        letters.append(QStringLiteral("a"));
        nullStrings.append(QString());
        cbor.append(QCborArray{QCborArray()});
        json.append(QJsonArray{QJsonArray{1}});
        fonts.append(QFont());
        brushes.append(QBrush(Qt::red));
        icons.append(QIcon::fromTheme(QStringLiteral("no-such-icon")));
    }
    QTest::newRow("invalid") << record(0, 0, nulls);
    QTest::newRow("lists") << record(0, 0, lists);
    QTest::newRow("map") << record(0, 0, map);
    QTest::newRow("hash") << record(0, 0, hash);
    QTest::newRow("letters") << record(0, 0, letters);
    QTest::newRow("null strings") << record(0, 0, nullStrings);
    QTest::newRow("cbor") << record(0, 0, QVariant::fromValue(cbor));
    QTest::newRow("json") << record(0, 0, json);
    QTest::newRow("fonts") << record(0, 0, fonts);
    QTest::newRow("brushes") << record(0, 0, brushes);
    QTest::newRow("icons") << record(0, 0, icons);
    QTest::newRow("records") << record(0, 0, QVariant()).repeated(20000);
}

void tst_KyItemModelDataMemory::values_takeASmallMultiple()
{
    QFETCH(QByteArray, payload);
    int records = 0;
    const qint64 peak = peakOfDecoding(payload, &records);
    QVERIFY(records > 0);
    QVERIFY2(peak <= BYTES_PER_BYTE * payload.size() + SLACK,
             qPrintable(QStringLiteral("%1 bytes for %2").arg(peak).arg(payload.size())));
    qInfo("%.1f bytes a byte", double(peak) / payload.size());
}

void tst_KyItemModelDataMemory::hugeCounts_takeNothing_data()
{
    QTest::addColumn<int>("type");

    for (int type = 1; type < QMetaType::User; ++type) {
        if (type != QMetaType::Void && QMetaType::isRegistered(type))
            QTest::newRow(QMetaType::typeName(type)) << type;
    }
}

// Any four bytes may be a count; here they all are.
void tst_KyItemModelDataMemory::hugeCounts_takeNothing()
{
    QFETCH(int, type);

    const auto quiet = [](QtMsgType, const QMessageLogContext &, const QString &) {};
    const auto handler = qInstallMessageHandler(quiet);
    qint64 highest = 0;
    for (int zeros = 0; zeros < 256; ++zeros) {
        QByteArray payload;
        QDataStream stream(&payload, QIODevice::WriteOnly);
        stream << 0 << 0 << quint32(1) << 0 << quint32(type) << qint8(0);
        payload += QByteArray(zeros, '\0') + QByteArray("\x77\x35\x94\x00", 4).repeated(8);
        int records = 0;
        highest = qMax(highest, peakOfDecoding(payload, &records));
    }
    qInstallMessageHandler(handler);
    QVERIFY2(highest <= SLACK, qPrintable(QString::number(highest)));
}

void tst_KyItemModelDataMemory::pictures_shareOneAllowance()
{
    QImage blank(4096, 2048, QImage::Format_RGB32); // 32 MiB
    blank.fill(Qt::white);
    const QByteArray payload = record(0, 0, blank).repeated(20);
    int records = 0;
    const qint64 peak = peakOfDecoding(payload, &records);
    QVERIFY2(records >= 7 && records < 20, qPrintable(QString::number(records)));
    QVERIFY2(peak <= PICTURE_BYTES + 32 * payload.size() + SLACK, qPrintable(QString::number(peak)));
}

KYTE_TEST_MAIN(tst_KyItemModelDataMemory)
#include "tst_KyItemModelDataMemory.moc"
