#include "KyItemSamples.h"

#include <QBitArray>
#include <QBitmap>
#include <QBrush>
#include <QCborArray>
#include <QCborMap>
#include <QColorSpace>
#include <QCursor>
#include <QDateTime>
#include <QEasingCurve>
#include <QIcon>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeySequence>
#include <QLine>
#include <QMatrix4x4>
#include <QMatrix>
#include <QPainter>
#include <QPalette>
#include <QPen>
#include <QQuaternion>
#include <QRegExp>
#include <QRegularExpression>
#include <QSizePolicy>
#include <QTemporaryDir>
#include <QTextFormat>
#include <QTextLength>
#include <QTimeZone>
#include <QUrl>
#include <QUuid>
#include <QVector2D>
#include <QVector3D>
#include <QVector4D>

#include <stdexcept>

namespace Kyte {
namespace Test {

using IntegerVectors = QVector<QVector<int>>;
using VariantsByNumber = QMap<int, QVariant>;
using MapsAndLists = QPair<QVariantMap, QVariantList>;

QDataStream &operator<<(QDataStream &stream, const Caption &caption)
{
    return stream << caption.text << caption.options;
}

QDataStream &operator>>(QDataStream &stream, Caption &caption)
{
    return stream >> caption.text >> caption.options;
}

QDataStream &operator<<(QDataStream &stream, const Thrower &thrower)
{
    return stream << thrower.number;
}

QDataStream &operator>>(QDataStream &, Thrower &)
{
    throw std::runtime_error("this type cannot be read");
}

void registerItemTypes()
{
    qRegisterMetaTypeStreamOperators<Caption>("Kyte::Test::Caption");
    qRegisterMetaTypeStreamOperators<Thrower>("Kyte::Test::Thrower");
    qRegisterMetaType<Unstreamed>("Kyte::Test::Unstreamed");
    qRegisterMetaTypeStreamOperators<QVector<int>>("QVector<int>");
    qRegisterMetaTypeStreamOperators<QList<QUrl>>("QList<QUrl>");
    qRegisterMetaTypeStreamOperators<IntegerVectors>("QVector<QVector<int>>");
    qRegisterMetaTypeStreamOperators<VariantsByNumber>("QMap<int,QVariant>");
    qRegisterMetaTypeStreamOperators<MapsAndLists>("QPair<QVariantMap,QVariantList>");
    qRegisterMetaTypeStreamOperators<QVector<Caption>>("QVector<Kyte::Test::Caption>");
}

static QImage picture(int width, int height, QImage::Format format)
{
    QImage image(width, height, format);
    if (format == QImage::Format_Mono || format == QImage::Format_Indexed8)
        image.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
    image.fill(1);
    image.setPixel(width / 2, height / 2, 0);
    return image;
}

static QPixmap pixmap(int size, const QColor &color)
{
    QPixmap result(size, size);
    result.fill(color);
    QPainter(&result).drawLine(0, 0, size, size);
    return result;
}

// A picture with all that a PNG file may carry beside its pixels.
static QImage annotatedPicture()
{
    QImage image = picture(20, 10, QImage::Format_ARGB32);
    image.setText(QStringLiteral("Title"), QStringLiteral("Foyer"));
    image.setText(QStringLiteral("Comment"), QString(200, QLatin1Char('c')));
    image.setText(QStringLiteral("Kommentar"), QString(200, QChar(0x00fc)));
    image.setColorSpace(QColorSpace(QColorSpace::AdobeRgb));
    image.setDotsPerMeterX(1000);
    image.setOffset(QPoint(3, 4));
    return image;
}

static QIcon icon()
{
    QIcon result(pixmap(16, Qt::red));
    result.addPixmap(pixmap(32, Qt::blue), QIcon::Disabled, QIcon::On);
    result.addPixmap(QBitmap::fromImage(picture(8, 8, QImage::Format_Mono)));
    return result;
}

static QIcon svgIcon()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("icon.svg"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return QIcon();
    file.write(
        "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'><rect width='8' height='8'/></svg>");
    file.close();
    QIcon result(path);
    result.addPixmap(pixmap(24, Qt::green));
    // What is written are the contents of the files, which have to be there until then.
    QByteArray written;
    QDataStream out(&written, QIODevice::WriteOnly);
    out << result;
    QDataStream in(written);
    in >> result;
    return result;
}

static QBrush gradientBrush(const QGradient &plain)
{
    QGradient gradient = plain;
    gradient.setColorAt(0, Qt::red);
    gradient.setColorAt(0.5, QColor::fromHsv(120, 255, 255));
    gradient.setColorAt(1, QColor::fromCmyk(1, 2, 3, 4));
    gradient.setSpread(QGradient::ReflectSpread);
    QBrush brush(gradient);
    brush.setTransform(QTransform().rotate(30));
    return brush;
}

static QPen pen()
{
    QPen result(gradientBrush(QLinearGradient(0, 0, 10, 10)), 2.5, Qt::CustomDashLine);
    result.setDashPattern({1, 2, 3, 4});
    result.setDashOffset(1.5);
    return result;
}

static QPalette palette()
{
    QPalette result(Qt::darkCyan);
    result.setBrush(QPalette::Disabled, QPalette::Base, QBrush(pixmap(4, Qt::yellow)));
    result.setBrush(QPalette::Button, gradientBrush(QConicalGradient(5, 5, 90)));
    return result;
}

static QTextFormat textFormat()
{
    QTextCharFormat result;
    result.setFontFamily(QStringLiteral("Noto"));
    result.setForeground(gradientBrush(QRadialGradient(5, 5, 4, 4, 3)));
    result.setProperty(QTextFormat::UserProperty, QVariantList{1, QStringLiteral("two")});
    result.setProperty(QTextFormat::TableColumnWidthConstraints,
                       QVariant::fromValue(QTextLength(QTextLength::FixedLength, 3)));
    return result;
}

static QEasingCurve curve(QEasingCurve::Type type)
{
    QEasingCurve result(type);
    if (type == QEasingCurve::BezierSpline)
        result.addCubicBezierSegment({0.1, 0.2}, {0.3, 0.4}, {1, 1});
    if (type == QEasingCurve::TCBSpline)
        result.addTCBSegment({1, 1}, 0.1, 0.2, 0.3);
    if (type == QEasingCurve::OutElastic)
        result.setAmplitude(2);
    return result;
}

static QRegion region()
{
    return QRegion(0, 0, 50, 50, QRegion::Ellipse)
        .united(QRect(60, 10, 20, 20))
        .subtracted(QRect(10, 10, 5, 5));
}

static QVariant nested(int depth)
{
    QVariant value = QStringLiteral("innermost");
    for (int i = 0; i < depth; ++i)
        value = i % 3 == 0 ? QVariant(QVariantList{value, i})
            : i % 3 == 1   ? QVariant(QVariantMap{{QStringLiteral("key"), value}})
                           : QVariant(QVariantHash{{QStringLiteral("key"), value}});
    return value;
}

static void addTexts(QVector<NamedVariant> *samples)
{
    const QString text = QStringLiteral("F\u00f6yer \u6620\u753b");
    *samples += QVector<NamedVariant>{
        {"string", text},
        {"null string", QString()},
        {"empty string", QStringLiteral("")},
        {"long string", QString(100000, QLatin1Char('x'))},
        {"string list", QStringList{text, QString(), QStringLiteral("")}},
        {"empty string list", QStringList()},
        {"byte array", QByteArray("a\0b", 3)},
        {"null byte array", QByteArray()},
        {"empty byte array", QByteArray("")},
        {"byte array list", QVariant::fromValue(QByteArrayList{"one", QByteArray(), ""})},
        {"char", QVariant(QChar(0x6620))},
        {"url", QUrl(QStringLiteral("file:///media/a%20b.mp4"))},
        {"international url", QUrl(QStringLiteral("http://b\u00fccher.example/\u6620?q=1#f"))},
        {"null url", QUrl()},
        {"locale", QLocale(QLocale::German, QLocale::Austria)},
        {"wildcard", QRegExp(QStringLiteral("*.mp[34]"), Qt::CaseInsensitive, QRegExp::Wildcard)},
        {"pattern", QRegExp(QStringLiteral("(\\d{4})-(?:\\d{2}|[])]{1,3})-\\{x+?"))},
        {"null pattern", QRegExp()},
        {"regular expression",
         QRegularExpression(QStringLiteral("(a|b){2,300}$"), QRegularExpression::MultilineOption)},
        {"uuid", QUuid(QStringLiteral("{01234567-89ab-cdef-0123-456789abcdef}"))},
    };
}

static void addNumbers(QVector<NamedVariant> *samples)
{
    QBitArray bits(21);
    bits.setBit(20);
    *samples += QVector<NamedVariant>{
        {"invalid", QVariant()},
        {"bool", true},
        {"int", -7},
        {"null int", QVariant(QVariant::Int)},
        {"uint", 7u},
        {"longlong", Q_INT64_C(-5000000000)},
        {"ulonglong", Q_UINT64_C(5000000000)},
        {"double", 0.25},
        {"float", QVariant(1.5f)},
        {"long", QVariant::fromValue(-9L)},
        {"ulong", QVariant::fromValue(9UL)},
        {"short", QVariant::fromValue(short(-3))},
        {"ushort", QVariant::fromValue(ushort(3))},
        {"plain char", QVariant::fromValue('c')},
        {"uchar", QVariant::fromValue(uchar(200))},
        {"signed char", QVariant::fromValue(static_cast<signed char>(-2))},
        {"nullptr", QVariant::fromValue(nullptr)},
        {"bits", bits},
        {"eight bits", QBitArray(8, true)},
        {"no bits", QBitArray()},
        {"date", QDate(2024, 2, 29)},
        {"null date", QDate()},
        {"time", QTime(23, 59, 59, 999)},
        {"null time", QTime()},
        {"local time", QDateTime(QDate(2024, 2, 29), QTime(1, 2, 3))},
        {"utc", QDateTime(QDate(2024, 2, 29), QTime(1, 2, 3), Qt::UTC)},
        {"offset", QDateTime(QDate(2024, 2, 29), QTime(1, 2, 3), Qt::OffsetFromUTC, 5400)},
        {"zone", QDateTime(QDate(2024, 7, 1), QTime(1, 2, 3), QTimeZone("Europe/Berlin"))},
        {"far zone", QDateTime(QDate(9999, 7, 1), QTime(1, 2, 3), QTimeZone("America/New_York"))},
        {"offset zone", QDateTime(QDate(2024, 7, 1), QTime(1, 2, 3), QTimeZone("UTC+03:00"))},
        {"own zone",
         QDateTime(QDate(2024, 7, 1), QTime(1, 2, 3),
                   QTimeZone("Own/Zone", 4000, QStringLiteral("Own"), QStringLiteral("O")))},
        {"null date and time", QDateTime()},
    };
    for (int type = QEasingCurve::Linear; type < QEasingCurve::Custom; ++type)
        samples->append({"curve " + QByteArray::number(type), curve(QEasingCurve::Type(type))});
}

static void addContainers(QVector<NamedVariant> *samples)
{
    const QVariantList list{1, QStringLiteral("two"), QVariant()};
    const QVariantMap map{{QStringLiteral("a"), 1}, {QStringLiteral("b"), list}};
    QMultiHash<QString, QVariant> multiHash;
    multiHash.insert(QStringLiteral("same"), 1);
    multiHash.insert(QStringLiteral("same"), 2);
    const QJsonObject object{{QStringLiteral("k"), QJsonArray{1, QStringLiteral("x"), QJsonValue()}}};
    const QCborMap cborMap{{1, QStringLiteral("x")}, {QStringLiteral("k"), QCborArray{1, 2.5, false}}};
    *samples += QVector<NamedVariant>{
        {"list", list},
        {"empty list", QVariantList()},
        {"map", map},
        {"empty map", QVariantMap()},
        {"hash", QVariantHash{{QStringLiteral("a"), 1}, {QStringLiteral("b"), map}}},
        {"hash with one key twice", QVariantHash(multiHash)},
        {"variant", QVariant::fromValue(QVariant::fromValue(QVariant(5)))},
        {"nested", nested(200)},
        {"json null", QVariant::fromValue(QJsonValue())},
        {"json undefined", QVariant::fromValue(QJsonValue(QJsonValue::Undefined))},
        {"json bool", QVariant::fromValue(QJsonValue(true))},
        {"json number", QVariant::fromValue(QJsonValue(1.5))},
        {"json string", QVariant::fromValue(QJsonValue(QStringLiteral("x")))},
        {"json array in value", QVariant::fromValue(QJsonValue(QJsonArray{1}))},
        {"json object in value", QVariant::fromValue(QJsonValue(object))},
        {"json object", object},
        {"json array", QJsonArray{1, object}},
        {"json document", QVariant::fromValue(QJsonDocument(object))},
        {"null json document", QVariant::fromValue(QJsonDocument())},
        {"cbor value", QVariant::fromValue(QCborValue(cborMap))},
        {"cbor bytes", QVariant::fromValue(QCborValue(QByteArray("\0\xff", 2)))},
        {"cbor date", QVariant::fromValue(QCborValue(QDateTime(QDate(2024, 1, 1), QTime(1, 2), Qt::UTC)))},
        {"undefined cbor", QVariant::fromValue(QCborValue())},
        {"cbor array", QVariant::fromValue(QCborArray{1, cborMap})},
        {"cbor map", QVariant::fromValue(cborMap)},
        {"cbor simple type", QVariant::fromValue(QCborSimpleType(32))},
    };
}

static void addGeometry(QVector<NamedVariant> *samples)
{
    *samples += QVector<NamedVariant>{
        {"rect", QRect(1, 2, 3, 4)},
        {"rectf", QRectF(1.5, 2, 3, 4)},
        {"size", QSize(3, 4)},
        {"sizef", QSizeF(3.5, 4)},
        {"line", QLine(1, 2, 3, 4)},
        {"linef", QLineF(1, 2.5, 3, 4)},
        {"point", QPoint(-1, 2)},
        {"pointf", QPointF(-1.5, 2)},
        {"polygon", QVariant::fromValue(QPolygon(QRect(1, 2, 3, 4)))},
        {"no polygon", QVariant::fromValue(QPolygon())},
        {"polygonf", QVariant::fromValue(QPolygonF(QRectF(1.5, 2, 3, 4)))},
        {"region", QVariant::fromValue(region())},
        {"rectangle as region", QVariant::fromValue(QRegion(1, 2, 3, 4))},
        {"no region", QVariant::fromValue(QRegion())},
        {"matrix", QVariant::fromValue(QMatrix(1, 2, 3, 4, 5, 6))},
        {"transform", QVariant::fromValue(QTransform(1, 2, 3, 4, 5, 6, 7, 8, 9))},
        {"matrix4x4", QVariant::fromValue(QMatrix4x4(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16))},
        {"vector2d", QVariant::fromValue(QVector2D(1, 2))},
        {"vector3d", QVariant::fromValue(QVector3D(1, 2, 3))},
        {"vector4d", QVariant::fromValue(QVector4D(1, 2, 3, 4))},
        {"quaternion", QVariant::fromValue(QQuaternion(1, 2, 3, 4))},
        {"size policy", QVariant::fromValue(QSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding))},
    };
}

static void addPainting(QVector<NamedVariant> *samples)
{
    const QBitmap bitmap = QBitmap::fromImage(picture(16, 16, QImage::Format_Mono));
    *samples += QVector<NamedVariant>{
        {"color", QColor(1, 2, 3, 4)},
        {"hsl color", QColor::fromHsl(10, 20, 30)},
        {"extended color", QColor::fromRgbF(1.5, -0.5, 0)},
        {"null color", QColor()},
        {"brush", QBrush(Qt::red, Qt::DiagCrossPattern)},
        {"no brush", QBrush()},
        {"linear gradient", gradientBrush(QLinearGradient(1, 2, 3, 4))},
        {"radial gradient", gradientBrush(QRadialGradient(1, 2, 3, 4, 5))},
        {"conical gradient", gradientBrush(QConicalGradient(1, 2, 3))},
        {"texture", QBrush(picture(6, 6, QImage::Format_RGB32))},
        {"bitmap texture", QBrush(Qt::blue, bitmap)},
        {"null texture", QBrush(QPixmap())},
        {"pen", pen()},
        {"no pen", QPen(Qt::NoPen)},
        {"palette", palette()},
        {"default palette", QPalette()},
        {"font", QFont(QStringLiteral("Noto"), 13, QFont::Bold, true)},
        {"default font", QFont()},
        {"text length", QVariant::fromValue(QTextLength(QTextLength::PercentageLength, 50))},
        {"text format", QVariant::fromValue(textFormat())},
        {"no text format", QVariant::fromValue(QTextFormat())},
        {"key", QKeySequence(Qt::CTRL | Qt::Key_A)},
        {"keys", QKeySequence(Qt::CTRL | Qt::Key_A, Qt::Key_B)},
        {"no key", QKeySequence()},
        {"color space", QVariant::fromValue(QColorSpace(QColorSpace::DisplayP3))},
        {"no color space", QVariant::fromValue(QColorSpace())},
        {"cursor", QVariant::fromValue(QCursor(Qt::WaitCursor))},
        {"bitmap cursor", QVariant::fromValue(QCursor(bitmap, bitmap))},
        {"pixmap cursor", QVariant::fromValue(QCursor(pixmap(16, Qt::red)))},
    };
}

static void addPictures(QVector<NamedVariant> *samples)
{
    *samples += QVector<NamedVariant>{
        {"pixmap", pixmap(10, Qt::red)},
        {"null pixmap", QPixmap()},
        {"bitmap", QVariant::fromValue(QBitmap::fromImage(picture(32, 9, QImage::Format_Mono)))},
        {"null bitmap", QVariant::fromValue(QBitmap())},
        {"annotated image", annotatedPicture()},
        {"null image", QImage()},
        {"large image", picture(2000, 1000, QImage::Format_RGB32)},
        {"icon", icon()},
        {"svg icon", svgIcon()},
        {"null icon", QIcon()},
    };
    const QImage::Format formats[] = {
        QImage::Format_Mono,   QImage::Format_Indexed8,   QImage::Format_ARGB32_Premultiplied,
        QImage::Format_RGB16,  QImage::Format_Grayscale8, QImage::Format_Grayscale16,
        QImage::Format_RGBA64, QImage::Format_Alpha8,     QImage::Format_RGB888};
    // Rows of whole words: nothing sets the bits behind shorter ones.
    for (QImage::Format format : formats)
        samples->append({"image " + QByteArray::number(format), picture(32, 5, format)});
}

static void addUserTypes(QVector<NamedVariant> *samples)
{
    const Caption caption{QStringLiteral("Foyer"), {{QStringLiteral("list"), QVariantList{1, 2}}}};
    *samples += QVector<NamedVariant>{
        {"caption", QVariant::fromValue(caption)},
        {"captions", QVariant::fromValue(QVector<Caption>{caption, Caption()})},
        {"integers", QVariant::fromValue(QVector<int>{1, 2, 3})},
        {"urls", QVariant::fromValue(QList<QUrl>{QUrl(QStringLiteral("file:///a")), QUrl()})},
        {"integer vectors", QVariant::fromValue(IntegerVectors{{1, 2}, {}, {3}})},
        {"variants by number", QVariant::fromValue(VariantsByNumber{{1, QStringLiteral("x")}, {2, icon()}})},
        {"pair", QVariant::fromValue(MapsAndLists{{{QStringLiteral("k"), 1}}, {1, 2}})},
    };
}

QVector<NamedVariant> sampleVariants()
{
    QVector<NamedVariant> samples;
    addTexts(&samples);
    addNumbers(&samples);
    addContainers(&samples);
    addGeometry(&samples);
    addPainting(&samples);
    addPictures(&samples);
    addUserTypes(&samples);
    return samples;
}

QByteArray record(int row, int column, const QVariant &value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << row << column << QMap<int, QVariant>{{Qt::DisplayRole, value}};
    return bytes;
}

} // namespace Test
} // namespace Kyte
