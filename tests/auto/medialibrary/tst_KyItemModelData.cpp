#include "KyItemSamples.h"
#include "KyTestMain.h"

#include <KyItemModelData.h>

#include <QBrush>
#include <QDateTime>
#include <QEasingCurve>
#include <QIcon>
#include <QMimeData>
#include <QPen>
#include <QRegExp>
#include <QStandardItemModel>

#include <limits>
#include <memory>

using namespace Kyte;
using namespace Kyte::Test;

using RoleMap = QMap<int, QVariant>;

class tst_KyItemModelData : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void nullData_leavesTheOutputs();
    void emptyPayload_meansNothing();
    void rowsAndColumns_areInTheOrderOfTheStream();
    void negativeRows_leaveTheMaximaAtZero();
    void outputs_mayBeNull();
    void payloadOfAModel_isReadBack();

    void value_isReadAsQtReadsIt_data();
    void value_isReadAsQtReadsIt();
    void defaultValue_isReadAsQtReadsIt_data();
    void defaultValue_isReadAsQtReadsIt();
    void severalValues_areReadAsQtReadsThem();
    void truncatedPayload_endsWithTheLastWholeRecord_data();
    void truncatedPayload_endsWithTheLastWholeRecord();

    void hostilePayload_endsInFrontOfTheRecord_data();
    void hostilePayload_endsInFrontOfTheRecord();
    void depth_isLimited_data();
    void depth_isLimited();
    void iconWithoutPicture_opensNoFile();
    void easingCurve_getsThisProcesssFunction();
    void randomDamage_neitherThrowsNorHangs();
};

static std::unique_ptr<QMimeData> mime(const QByteArray &payload)
{
    auto data = std::make_unique<QMimeData>();
    data->setData(QStringLiteral("application/x-qabstractitemmodeldatalist"), payload);
    return data;
}

static QVector<RoleMap> decode(const QByteArray &payload)
{
    return KyItemModelData::decodeData(mime(payload).get(), nullptr, nullptr, nullptr, nullptr, nullptr,
                                       nullptr);
}

static QVector<RoleMap> plainlyDecode(const QByteArray &payload)
{
    QVector<RoleMap> result;
    QDataStream stream(payload);
    while (!stream.atEnd()) {
        int row = 0;
        int column = 0;
        RoleMap map;
        stream >> row >> column >> map;
        result.append(map);
    }
    return result;
}

static QByteArray written(const QVector<RoleMap> &maps)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << maps;
    return bytes;
}

// The bytes of all the \a values one behind the other.
template<typename... T>
static QByteArray bytesOf(const T &...values)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    (void)std::initializer_list<int>{(stream << values, 0)...};
    return bytes;
}

// A record whose value is of \a type and has these \a bytes.
static QByteArray forgedRecord(int type, const QByteArray &bytes)
{
    return bytesOf(0, 0, quint32(1), int(Qt::DisplayRole), quint32(type), qint8(0)) + bytes;
}

static QByteArray forgedUserRecord(const char *typeName, const QByteArray &bytes)
{
    return forgedRecord(QMetaType::User, bytesOf(typeName) + bytes);
}

static QStringList messages;

static void keepMessage(QtMsgType, const QMessageLogContext &, const QString &message)
{
    messages.append(message);
}

void tst_KyItemModelData::initTestCase()
{
    registerItemTypes();
}

void tst_KyItemModelData::nullData_leavesTheOutputs()
{
    QVector<int> rows{7};
    QVector<int> columns{8};
    int numbers[] = {1, 2, 3, 4};
    QVERIFY(
        KyItemModelData::decodeData(nullptr, &rows, &columns, numbers, numbers + 1, numbers + 2, numbers + 3)
            .isEmpty());
    QCOMPARE(rows, QVector<int>{7});
    QCOMPARE(columns, QVector<int>{8});
    QCOMPARE(QVector<int>(std::begin(numbers), std::end(numbers)), (QVector<int>{1, 2, 3, 4}));
}

void tst_KyItemModelData::emptyPayload_meansNothing()
{
    const QMimeData withoutFormat;
    const auto withEmptyPayload = mime(QByteArray());
    for (const QMimeData *data : {&withoutFormat, static_cast<const QMimeData *>(withEmptyPayload.get())}) {
        QVector<int> rows{7};
        QVector<int> columns{8};
        int numbers[] = {1, 2, 3, 4};
        QVERIFY(
            KyItemModelData::decodeData(data, &rows, &columns, numbers, numbers + 1, numbers + 2, numbers + 3)
                .isEmpty());
        QVERIFY(rows.isEmpty());
        QVERIFY(columns.isEmpty());
        QCOMPARE(QVector<int>(std::begin(numbers), std::end(numbers)),
                 (QVector<int>{2147483647, 2147483647, 0, 0}));
    }
}

void tst_KyItemModelData::rowsAndColumns_areInTheOrderOfTheStream()
{
    QByteArray payload;
    for (int row : {3, 1}) {
        for (int column : {0, 2})
            payload += record(row, column, QStringLiteral("%1.%2").arg(row).arg(column));
    }
    QVector<int> rows;
    QVector<int> columns;
    int minRow, minColumn, maxRow, maxColumn;
    const QVector<RoleMap> maps = KyItemModelData::decodeData(mime(payload).get(), &rows, &columns, &minRow,
                                                              &minColumn, &maxRow, &maxColumn);
    QStringList texts;
    for (const RoleMap &map : maps)
        texts.append(map.value(Qt::DisplayRole).toString());
    QCOMPARE(texts.join(QLatin1Char(' ')), QStringLiteral("3.0 3.2 1.0 1.2"));
    QCOMPARE(rows, (QVector<int>{3, 3, 1, 1}));
    QCOMPARE(columns, (QVector<int>{0, 2, 0, 2}));
    QCOMPARE(minRow, 1);
    QCOMPARE(minColumn, 0);
    QCOMPARE(maxRow, 3);
    QCOMPARE(maxColumn, 2);
}

void tst_KyItemModelData::negativeRows_leaveTheMaximaAtZero()
{
    int minRow, minColumn, maxRow, maxColumn;
    KyItemModelData::decodeData(mime(record(-5, -6, 1)).get(), nullptr, nullptr, &minRow, &minColumn, &maxRow,
                                &maxColumn);
    QCOMPARE(minRow, -5);
    QCOMPARE(minColumn, -6);
    QCOMPARE(maxRow, 0);
    QCOMPARE(maxColumn, 0);
}

void tst_KyItemModelData::outputs_mayBeNull()
{
    const QByteArray payload = record(3, 0, 1) + record(1, 2, 2);
    QCOMPARE(decode(payload).size(), 2);
    int maxRow = 0;
    KyItemModelData::decodeData(mime(payload).get(), nullptr, nullptr, nullptr, nullptr, &maxRow, nullptr);
    QCOMPARE(maxRow, 3);
}

void tst_KyItemModelData::payloadOfAModel_isReadBack()
{
    QStandardItemModel model(2, 2);
    model.setData(model.index(1, 1), QStringLiteral("Foyer"));
    model.setData(model.index(1, 1), QColor(Qt::red), Qt::DecorationRole);
    const std::unique_ptr<QMimeData> data(model.mimeData({model.index(1, 1), model.index(0, 1)}));
    QVector<int> rows;
    const QVector<RoleMap> maps =
        KyItemModelData::decodeData(data.get(), &rows, nullptr, nullptr, nullptr, nullptr, nullptr);
    QCOMPARE(rows, (QVector<int>{1, 0}));
    QCOMPARE(maps.value(0), model.itemData(model.index(1, 1)));
}

void tst_KyItemModelData::value_isReadAsQtReadsIt_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<int>("type");

    const QVector<NamedVariant> samples = sampleVariants();
    for (const NamedVariant &sample : samples)
        QTest::newRow(sample.name) << record(1, 2, sample.value) << sample.value.userType();
}

void tst_KyItemModelData::value_isReadAsQtReadsIt()
{
    QFETCH(QByteArray, payload);
    QFETCH(int, type);

    const QVector<RoleMap> maps = decode(payload + record(3, 4, QStringLiteral("end")));
    QCOMPARE(maps.size(), 2);
    QCOMPARE(maps.at(0).value(Qt::DisplayRole).userType(), type);
    QCOMPARE(maps.at(0).value(Qt::DisplayRole).isNull(),
             plainlyDecode(payload).at(0).value(Qt::DisplayRole).isNull());
    QCOMPARE(written({maps.at(0)}), written(plainlyDecode(payload)));
    QCOMPARE(maps.at(1).value(Qt::DisplayRole), QVariant(QStringLiteral("end")));
}

// Every type that Qt can stream, so that none is forgotten when Qt gets a new one.
void tst_KyItemModelData::defaultValue_isReadAsQtReadsIt_data()
{
    QTest::addColumn<QByteArray>("payload");

    for (int type = 1; type < QMetaType::User; ++type) {
        if (type == QMetaType::Void || !QMetaType::isRegistered(type))
            continue;
        const QVariant value(type, nullptr);
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        if (value.userType() == type && QMetaType::save(stream, type, value.constData()))
            QTest::newRow(QMetaType::typeName(type)) << record(0, 0, value);
    }
}

void tst_KyItemModelData::defaultValue_isReadAsQtReadsIt()
{
    QFETCH(QByteArray, payload);
    QCOMPARE(written(decode(payload)), written(plainlyDecode(payload)));
}

void tst_KyItemModelData::severalValues_areReadAsQtReadsThem()
{
    RoleMap roles;
    const QVector<NamedVariant> samples = sampleVariants();
    for (const NamedVariant &sample : samples)
        roles.insert(Qt::UserRole + roles.size(), sample.value);
    const QByteArray payload = bytesOf(1, 2, roles) + bytesOf(3, 4, roles);
    QCOMPARE(decode(payload).size(), 2);
    const QVector<RoleMap> expected = plainlyDecode(payload);
    const QVector<RoleMap> decoded = decode(payload);
    for (int i = 0; i < samples.size(); ++i) {
        const int role = Qt::UserRole + i;
        for (int j = 0; j < 2; ++j)
            QVERIFY2(written({{{role, decoded.at(j).value(role)}}})
                         == written({{{role, expected.at(j).value(role)}}}),
                     samples.at(i).name);
    }
}

void tst_KyItemModelData::truncatedPayload_endsWithTheLastWholeRecord_data()
{
    value_isReadAsQtReadsIt_data();
}

void tst_KyItemModelData::truncatedPayload_endsWithTheLastWholeRecord()
{
    QFETCH(QByteArray, payload);

    messages.clear();
    const auto handler = qInstallMessageHandler(keepMessage);
    const QByteArray first = record(7, 8, 9);
    const int step = qMax(1, payload.size() / 200);
    QVector<int> wrong;
    for (int size = 0; size < payload.size(); size += step) {
        QVector<int> rows;
        KyItemModelData::decodeData(mime(first + payload.left(size)).get(), &rows, nullptr, nullptr, nullptr,
                                    nullptr, nullptr);
        if (rows != QVector<int>{7})
            wrong.append(size);
    }
    qInstallMessageHandler(handler);
    QCOMPARE(wrong, QVector<int>());
    QCOMPARE(messages, QStringList());
}

static QByteArray nestedLists(int depth)
{
    QByteArray bytes;
    for (int i = 0; i < depth; ++i)
        bytes += bytesOf(quint32(1), quint32(QMetaType::QVariantList), qint8(0));
    return bytes + bytesOf(quint32(0));
}

static QByteArray pngOf(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes;
}

static QByteArray bmpOf(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "BMP");
    return bytes;
}

// The file of a small picture that says that it is larger. The reader looks at the checksums only later.
static QByteArray giantPng()
{
    QByteArray bytes = pngOf(QImage(8, 8, QImage::Format_RGB32));
    return bytes.replace(16, 8, bytesOf(quint32(60000), quint32(60000)));
}

static QByteArray stops(quint32 count, double position)
{
    QByteArray bytes = bytesOf(quint32(count));
    for (quint32 i = 0; i < qMin(count, 5000u); ++i)
        bytes += bytesOf(position, QColor(Qt::red));
    return bytes;
}

static QByteArray gradient(const QByteArray &stopBytes)
{
    return bytesOf(quint8(Qt::LinearGradientPattern), QColor(Qt::red), 0, 0, 0, 0) + stopBytes
        + bytesOf(QPointF(), QPointF(), QTransform());
}

static QByteArray regionOf(quint32 count, const QVector<QRect> &rectangles)
{
    QByteArray bytes = bytesOf(quint32(10), count);
    for (const QRect &rectangle : rectangles)
        bytes += bytesOf(rectangle);
    return bytesOf(bytes);
}

static QByteArray zone(const QString &name)
{
    return bytesOf(QDate(2024, 1, 1), QTime(1, 2), qint8(Qt::TimeZone), name);
}

static void addHugeCounts()
{
    const quint32 huge = 2000000000;
    const QByteArray count = bytesOf(huge);
    const int types[] = {QMetaType::QString,        QMetaType::QByteArray,    QMetaType::QStringList,
                         QMetaType::QVariantList,   QMetaType::QVariantMap,   QMetaType::QVariantHash,
                         QMetaType::QByteArrayList, QMetaType::QBitArray,     QMetaType::QPolygon,
                         QMetaType::QPolygonF,      QMetaType::QRegion,       QMetaType::QKeySequence,
                         QMetaType::QUrl,           QMetaType::QJsonDocument, QMetaType::QCborValue,
                         QMetaType::QColorSpace,    QMetaType::QRegExp};
    for (int type : types) {
        QTest::addRow("huge %s", QMetaType::typeName(type)) << forgedRecord(type, count);
        QTest::addRow("largest %s", QMetaType::typeName(type))
            << forgedRecord(type, bytesOf(quint32(0xfffffffe)) + QByteArray(64, '\0'));
    }
    QTest::newRow("huge role map") << bytesOf(0, 0, huge);
    QTest::newRow("all bits set") << forgedRecord(QMetaType::QBitArray, bytesOf(quint32(0xffffffff)));
    QTest::newRow("huge text format") << forgedRecord(QMetaType::QTextFormat, bytesOf(1, huge));
    QTest::newRow("huge icon") << forgedRecord(QMetaType::QIcon,
                                               bytesOf(QStringLiteral("QPixmapIconEngine"), int(huge)));
    QTest::newRow("huge svg icon") << forgedRecord(QMetaType::QIcon, bytesOf(QStringLiteral("svg"), huge));
    QTest::newRow("huge gradient") << forgedRecord(QMetaType::QBrush, gradient(bytesOf(huge)));
    QTest::newRow("huge dash pattern")
        << forgedRecord(QMetaType::QPen, bytesOf(quint16(1), false, 1.0, QBrush(Qt::red), 2.0, huge));
    QTest::newRow("huge curve") << forgedRecord(
        QMetaType::QEasingCurve,
        bytesOf(quint8(QEasingCurve::BezierSpline), quint64(0), true, 1.0, 1.0, 1.0, huge));
    QTest::newRow("huge vector of integers") << forgedUserRecord("QVector<int>", count);
    QTest::newRow("huge vector inside")
        << forgedUserRecord("QVector<QVector<int>>", bytesOf(quint32(1), huge));
    QTest::newRow("huge vector of captions") << forgedUserRecord("QVector<Kyte::Test::Caption>", count);
    QTest::newRow("huge CBOR array") << forgedRecord(QMetaType::QCborArray,
                                                     bytesOf(QByteArray("\x9a\x77\x35\x94\x00", 5)));
    QTest::newRow("huge CBOR string")
        << forgedRecord(QMetaType::QCborValue, bytesOf(QByteArray("\x5a\x77\x35\x94\x00", 5)));
}

static void addPictures()
{
    const QByteArray there = bytesOf(1);
    const QImage small(8, 8, QImage::Format_RGB32);
    QByteArray broken = pngOf(small);
    broken[broken.size() - 20] = char(~broken.at(broken.size() - 20));
    for (int type : {QMetaType::QImage, QMetaType::QPixmap, QMetaType::QBitmap}) {
        const char *name = QMetaType::typeName(type);
        QTest::addRow("giant %s", name) << forgedRecord(type, there + giantPng());
        QTest::addRow("BMP as %s", name) << forgedRecord(type, there + bmpOf(small));
        QTest::addRow("SVG as %s", name) << forgedRecord(type, there + "<svg width='60000' height='60000'/>");
        QTest::addRow("broken %s", name) << forgedRecord(type, there + broken);
    }
    const QByteArray iconHead = bytesOf(QStringLiteral("QPixmapIconEngine"), 1);
    QTest::newRow("giant icon") << forgedRecord(QMetaType::QIcon, iconHead + there + giantPng());
    QTest::newRow("BMP as icon") << forgedRecord(QMetaType::QIcon, iconHead + there + bmpOf(small));
    QTest::newRow("negative icon") << forgedRecord(QMetaType::QIcon,
                                                   bytesOf(QStringLiteral("QPixmapIconEngine"), -1));
    QTest::newRow("icon without engine")
        << forgedRecord(QMetaType::QIcon, bytesOf(QStringLiteral("NoSuchEngine"), 1) + QByteArray(50, '\1'));
    QTest::newRow("svg icon with giant") << forgedRecord(
        QMetaType::QIcon, bytesOf(QStringLiteral("SVG"), 0, 1, 0, 1, 1, 5) + there + giantPng());
    QTest::newRow("giant texture") << forgedRecord(
        QMetaType::QBrush, bytesOf(quint8(Qt::TexturePattern), QColor(Qt::red)) + there + giantPng());
    QTest::newRow("giant cursor") << forgedRecord(
        QMetaType::QCursor, bytesOf(qint16(Qt::BitmapCursor), true) + there + giantPng());
    QTest::newRow("cursor of unlike bitmaps")
        << forgedRecord(QMetaType::QCursor,
                        bytesOf(qint16(Qt::BitmapCursor), false, QImage(8, 8, QImage::Format_Mono),
                                QImage(9, 9, QImage::Format_Mono), QPoint()));
}

static void addUnreadableTypes()
{
    for (int type : {int(QMetaType::VoidStar), int(QMetaType::QObjectStar), int(QMetaType::QModelIndex),
                     int(QMetaType::QPersistentModelIndex), int(QMetaType::Void), 63, 120, 500,
                     qMetaTypeId<Caption>(), 100000, -1})
        QTest::addRow("type %d", type) << forgedRecord(type, QByteArray(64, '\0'));
    QTest::newRow("unknown type") << forgedUserRecord("NoSuchType", QByteArray(64, '\0'));
    QTest::newRow("type without a name") << forgedRecord(QMetaType::User, bytesOf(quint32(0xffffffff)));
    QTest::newRow("type without operators")
        << forgedUserRecord("Kyte::Test::Unstreamed", QByteArray(64, '\0'));
    QTest::newRow("type that throws") << forgedUserRecord("Kyte::Test::Thrower", bytesOf(1));
}

void tst_KyItemModelData::hostilePayload_endsInFrontOfTheRecord_data()
{
    QTest::addColumn<QByteArray>("payload");

    addHugeCounts();
    addPictures();
    addUnreadableTypes();
    const QByteArray deep = nestedLists(50000);
    QTest::newRow("50,000 nested lists") << forgedRecord(QMetaType::QVariantList, deep);
    QTest::newRow("50,000 nested lists in a caption") << forgedUserRecord(
        "Kyte::Test::Caption",
        bytesOf(QString(), quint32(1), QString(), quint32(QMetaType::QVariantList), qint8(0)) + deep);
    QTest::newRow("50,000 nested CBOR arrays")
        << forgedRecord(QMetaType::QCborValue, bytesOf(QByteArray(50000, '\x81') + '\x00'));
    QTest::newRow("50,000 nested JSON arrays")
        << forgedRecord(QMetaType::QJsonArray, bytesOf(QByteArray(50000, '[') + QByteArray(50000, ']')));
    QTest::newRow("string of half a character")
        << forgedRecord(QMetaType::QString, bytesOf(quint32(1)) + "x");
    QTest::newRow("too many stops") << forgedRecord(QMetaType::QBrush, gradient(stops(5000, 0.5)));
    QTest::newRow("stop outside") << forgedRecord(QMetaType::QBrush, gradient(stops(1, 1.5)));
    QTest::newRow("region of commands")
        << forgedRecord(QMetaType::QRegion,
                        bytesOf(bytesOf(quint32(6)) + bytesOf(QByteArray(20, '\0'), QByteArray(20, '\0'))));
    QTest::newRow("region with overlaps")
        << forgedRecord(QMetaType::QRegion, regionOf(2, {QRect(0, 0, 10, 10), QRect(5, 5, 10, 10)}));
    QTest::newRow("five keys") << forgedRecord(QMetaType::QKeySequence, bytesOf(5, 1, 2, 3, 4, 5));
    QTest::newRow("repeated repetitions")
        << forgedRecord(QMetaType::QRegExp, bytesOf(QRegExp(QStringLiteral("((a{50}){50})"))));
    QTest::newRow("many large patterns") << forgedRecord(
        QMetaType::QVariantList,
        bytesOf(quint32(60)) + bytesOf(QVariant(QRegExp(QStringLiteral("a{256}")))).repeated(60));
    QTest::newRow("50,000 parentheses") << forgedRecord(
        QMetaType::QRegExp, bytesOf(QString(50000, QLatin1Char('(')), quint8(1), quint8(0), quint8(0)));
    QTest::newRow("zone of a file") << forgedRecord(QMetaType::QDateTime,
                                                    zone(QStringLiteral("../../../dev/zero")));
    QTest::newRow("no such curve") << forgedRecord(QMetaType::QEasingCurve,
                                                   bytesOf(quint8(200), quint64(0), false));
    QTest::newRow("own curve") << forgedRecord(
        QMetaType::QEasingCurve, bytesOf(quint8(QEasingCurve::Custom), quint64(0x41414141), false));
    QTest::newRow("broken JSON") << forgedRecord(QMetaType::QJsonDocument, bytesOf(QByteArray("{")));
}

void tst_KyItemModelData::hostilePayload_endsInFrontOfTheRecord()
{
    QFETCH(QByteArray, payload);

    messages.clear();
    const auto handler = qInstallMessageHandler(keepMessage);
    const QVector<RoleMap> maps = decode(record(1, 2, QStringLiteral("first")) + payload + record(3, 4, 5));
    qInstallMessageHandler(handler);
    QCOMPARE(maps.size(), 1);
    QCOMPARE(maps.at(0).value(Qt::DisplayRole), QVariant(QStringLiteral("first")));
    // Whether packed pixels are whole is known only when they are unpacked, and then libpng has spoken
    // already.
    for (const QString &message : qAsConst(messages))
        QVERIFY2(message.startsWith(QLatin1String("libpng ")), qPrintable(message));
}

void tst_KyItemModelData::depth_isLimited_data()
{
    QTest::addColumn<int>("depth");
    QTest::addColumn<int>("records");

    QTest::newRow("256") << 256 << 1;
    QTest::newRow("257") << 257 << 0;
}

void tst_KyItemModelData::depth_isLimited()
{
    QFETCH(int, depth);
    QFETCH(int, records);
    QCOMPARE(decode(forgedRecord(QMetaType::QVariantList, nestedLists(depth - 1))).size(), records);
}

void tst_KyItemModelData::iconWithoutPicture_opensNoFile()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("secret.png"));
    QVERIFY(QImage(4, 4, QImage::Format_RGB32).save(path));
    const QByteArray payload = forgedRecord(QMetaType::QIcon,
                                            bytesOf(QStringLiteral("QPixmapIconEngine"), 1, QPixmap(), path,
                                                    QSize(), uint(QIcon::Normal), uint(QIcon::Off)));
    QVERIFY(!plainlyDecode(payload).at(0).value(Qt::DisplayRole).value<QIcon>().availableSizes().isEmpty());
    QCOMPARE(decode(payload).size(), 1);
    const QIcon icon = decode(payload).at(0).value(Qt::DisplayRole).value<QIcon>();
    QVERIFY(icon.availableSizes().isEmpty());
}

void tst_KyItemModelData::easingCurve_getsThisProcesssFunction()
{
    const QByteArray payload = forgedRecord(
        QMetaType::QEasingCurve, bytesOf(quint8(QEasingCurve::InQuad), quint64(0x4141414141414141), false));
    QCOMPARE(decode(payload).size(), 1);
    const QEasingCurve curve = decode(payload).at(0).value(Qt::DisplayRole).toEasingCurve();
    QCOMPARE(curve, QEasingCurve(QEasingCurve::InQuad));
    QCOMPARE(curve.valueForProgress(0.5), 0.25);
}

void tst_KyItemModelData::randomDamage_neitherThrowsNorHangs()
{
    const auto handler = qInstallMessageHandler(keepMessage);
    QRandomGenerator random(4711);
    const QVector<NamedVariant> samples = sampleVariants();
    for (const NamedVariant &sample : samples) {
        const QByteArray whole = record(1, 2, sample.value);
        for (int i = 0; i < 50 && whole.size() < 5000; ++i) {
            QByteArray damaged = whole;
            for (int changes = random.bounded(1, 4); changes > 0; --changes)
                damaged[random.bounded(damaged.size())] = char(random.bounded(256));
            QVERIFY(decode(damaged + whole).size() <= 3);
        }
    }
    qInstallMessageHandler(handler);
}

KYTE_TEST_MAIN(tst_KyItemModelData)
#include "tst_KyItemModelData.moc"
