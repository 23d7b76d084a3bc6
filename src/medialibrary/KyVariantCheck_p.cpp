#include "KyVariantCheck_p.h"

#include "KyPatternSize_p.h"
#include "KyPngExtent_p.h"
#include "KyShallowBuffer_p.h"

#include <QBuffer>
#include <QCborValue>
#include <QColorSpace>
#include <QEasingCurve>
#include <QGradient>
#include <QIcon>
#include <QImage>
#include <QImageReader>
#include <QJsonDocument>
#include <QJsonValue>
#include <QPalette>
#include <QRegExp>
#include <QVariant>

#include <algorithm>

namespace Kyte {

static const int MAX_DEPTH = 256; // values inside each other; QDataStream calls itself for each
static const int MAX_SLOW_ENTRIES = 4096; // what Qt takes the square of a count for
static const int MAX_PATTERN_SIZE = 256;
// QRegExp takes at least the square of a pattern's size; so many of the largest ones may be in a payload.
static const qint64 PATTERN_COST = 16 * MAX_PATTERN_SIZE * MAX_PATTERN_SIZE;
static const int PATTERN_COST_PER_BYTE = 20; // keeps short ones from counting
static const qint64 PICTURE_BYTES = 256 * 1024 * 1024; // for all pictures of a payload together,
static const int PICTURE_BYTES_PER_BYTE = 32; // and for each byte of it

static const int POINT_SIZE = 8;
static const int POINT_F_SIZE = 16;
static const int RECT_SIZE = 16;
static const int REAL_SIZE = 8; // QDataStream writes each real number as a double
static const int TRANSFORM_SIZE = 9 * REAL_SIZE;

// How values of Qt's own types are built. Types that are not here cannot be written into a payload.
const KyVariantCheck::Layout KyVariantCheck::LAYOUTS[] = {
    {QMetaType::UnknownType, 0, nullptr},
    {QMetaType::Bool, 1, nullptr},
    {QMetaType::Int, 4, nullptr},
    {QMetaType::UInt, 4, nullptr},
    {QMetaType::LongLong, 8, nullptr},
    {QMetaType::ULongLong, 8, nullptr},
    {QMetaType::Double, REAL_SIZE, nullptr},
    {QMetaType::QChar, 2, nullptr},
    {QMetaType::QVariantMap, 0, &KyVariantCheck::skipVariantMap},
    {QMetaType::QVariantList, 0, &KyVariantCheck::skipVariantList},
    {QMetaType::QString, 0, &KyVariantCheck::skipString},
    {QMetaType::QStringList, 0, &KyVariantCheck::skipStringList},
    {QMetaType::QByteArray, 0, &KyVariantCheck::skipBytes},
    {QMetaType::QBitArray, 0, &KyVariantCheck::skipBitArray},
    {QMetaType::QDate, 8, nullptr},
    {QMetaType::QTime, 4, nullptr},
    {QMetaType::QDateTime, 0, &KyVariantCheck::skipDateTime},
    {QMetaType::QUrl, 0, &KyVariantCheck::skipBytes},
    {QMetaType::QLocale, 0, &KyVariantCheck::skipString},
    {QMetaType::QRect, RECT_SIZE, nullptr},
    {QMetaType::QRectF, 4 * REAL_SIZE, nullptr},
    {QMetaType::QSize, 8, nullptr},
    {QMetaType::QSizeF, 2 * REAL_SIZE, nullptr},
    {QMetaType::QLine, 2 * POINT_SIZE, nullptr},
    {QMetaType::QLineF, 2 * POINT_F_SIZE, nullptr},
    {QMetaType::QPoint, POINT_SIZE, nullptr},
    {QMetaType::QPointF, POINT_F_SIZE, nullptr},
    {QMetaType::QRegExp, 0, &KyVariantCheck::skipRegExp},
    {QMetaType::QVariantHash, 0, &KyVariantCheck::skipVariantMap},
    {QMetaType::QEasingCurve, 0, &KyVariantCheck::skipEasingCurve},
    {QMetaType::QUuid, 16, nullptr},
    {QMetaType::Long, 8, nullptr},
    {QMetaType::Short, 2, nullptr},
    {QMetaType::Char, 1, nullptr},
    {QMetaType::ULong, 8, nullptr},
    {QMetaType::UShort, 2, nullptr},
    {QMetaType::UChar, 1, nullptr},
    {QMetaType::Float, REAL_SIZE, nullptr},
    {QMetaType::SChar, 1, nullptr},
    {QMetaType::QVariant, 0, &KyVariantCheck::skipVariant},
    {QMetaType::QRegularExpression, 0, &KyVariantCheck::skipRegularExpression},
    {QMetaType::QJsonValue, 0, &KyVariantCheck::skipJsonValue},
    {QMetaType::QJsonObject, 0, &KyVariantCheck::skipJsonDocument},
    {QMetaType::QJsonArray, 0, &KyVariantCheck::skipJsonDocument},
    {QMetaType::QJsonDocument, 0, &KyVariantCheck::skipJsonDocument},
    {QMetaType::QByteArrayList, 0, &KyVariantCheck::skipByteArrayList},
    {QMetaType::Nullptr, 0, nullptr},
    {QMetaType::QCborSimpleType, 1, nullptr},
    {QMetaType::QCborValue, 0, &KyVariantCheck::skipCbor},
    {QMetaType::QCborArray, 0, &KyVariantCheck::skipCbor},
    {QMetaType::QCborMap, 0, &KyVariantCheck::skipCbor},
    {QMetaType::QFont, 0, &KyVariantCheck::skipFont},
    {QMetaType::QPixmap, 0, &KyVariantCheck::skipPicture},
    {QMetaType::QBrush, 0, &KyVariantCheck::skipBrush},
    {QMetaType::QColor, 0, &KyVariantCheck::skipColor},
    {QMetaType::QPalette, 0, &KyVariantCheck::skipPalette},
    {QMetaType::QIcon, 0, &KyVariantCheck::skipIcon},
    {QMetaType::QImage, 0, &KyVariantCheck::skipPicture},
    {QMetaType::QPolygon, 0, &KyVariantCheck::skipPolygon},
    {QMetaType::QRegion, 0, &KyVariantCheck::skipRegion},
    {QMetaType::QBitmap, 0, &KyVariantCheck::skipPicture},
    {QMetaType::QCursor, 0, &KyVariantCheck::skipCursor},
    {QMetaType::QKeySequence, 0, &KyVariantCheck::skipKeySequence},
    {QMetaType::QPen, 0, &KyVariantCheck::skipPen},
    {QMetaType::QTextLength, 4 + REAL_SIZE, nullptr},
    {QMetaType::QTextFormat, 0, &KyVariantCheck::skipTextFormat},
    {QMetaType::QMatrix, 6 * REAL_SIZE, nullptr},
    {QMetaType::QTransform, TRANSFORM_SIZE, nullptr},
    {QMetaType::QMatrix4x4, 16 * REAL_SIZE, nullptr},
    {QMetaType::QVector2D, 2 * REAL_SIZE, nullptr},
    {QMetaType::QVector3D, 3 * REAL_SIZE, nullptr},
    {QMetaType::QVector4D, 4 * REAL_SIZE, nullptr},
    {QMetaType::QQuaternion, 4 * REAL_SIZE, nullptr},
    {QMetaType::QPolygonF, 0, &KyVariantCheck::skipPolygonF},
    {QMetaType::QColorSpace, 0, &KyVariantCheck::skipBytes},
    {QMetaType::QSizePolicy, 4, nullptr},
};

// Containers whose stream operators are templates: a count, and as many times the types in their names.
static const char *const CONTAINERS[] = {"QList",       "QVector", "QStack", "QQueue",    "QSet",
                                         "QLinkedList", "QMap",    "QHash",  "QMultiMap", "QMultiHash"};
static const char *const PAIRS[] = {"QPair", "std::pair"};

template<int count>
static bool isOneOf(const char *const (&names)[count], const QByteArray &name)
{
    return std::find(names, names + count, name) != names + count;
}

// The types in the angle brackets of a template's name.
static QList<QByteArray> argumentsOf(const QByteArray &typeName)
{
    QList<QByteArray> arguments;
    int depth = 0;
    int begin = typeName.indexOf('<') + 1;
    for (int i = begin; i > 0 && i < typeName.size(); ++i) {
        const char character = typeName.at(i);
        if (depth == 0 && (character == ',' || (character == '>' && i == typeName.size() - 1))) {
            arguments.append(typeName.mid(begin, i - begin).trimmed());
            begin = i + 1;
        }
        depth += character == '<' ? 1 : character == '>' ? -1 : 0;
    }
    return arguments;
}

// Whether values of this type, or of the types in its name, are all built as Qt builds them.
static bool isBuiltOfQtTypes(const QByteArray &typeName)
{
    const int type = QMetaType::type(typeName);
    if (type != QMetaType::UnknownType && type < QMetaType::User)
        return true;
    const QByteArray outer = typeName.left(typeName.indexOf('<'));
    if (!isOneOf(CONTAINERS, outer) && !isOneOf(PAIRS, outer))
        return false;
    const QList<QByteArray> arguments = argumentsOf(typeName);
    return !arguments.isEmpty() && std::all_of(arguments.cbegin(), arguments.cend(), isBuiltOfQtTypes);
}

KyVariantCheck::KyVariantCheck(const QByteArray &bytes)
    : m_cursor(bytes)
    , m_patternCostLeft(PATTERN_COST + qint64(bytes.size()) * PATTERN_COST_PER_BYTE)
    , m_pictureBytesLeft(PICTURE_BYTES + qint64(bytes.size()) * PICTURE_BYTES_PER_BYTE)
{
}

const KyVariantCheck::Layout *KyVariantCheck::layout(int type)
{
    const auto end = std::end(LAYOUTS);
    const auto found = std::find_if(std::begin(LAYOUTS), end, [type](const Layout &layout) {
        return layout.type == type;
    });
    return found == end ? nullptr : found;
}

bool KyVariantCheck::skipRoleMap()
{
    return skipIntegerMap(0xffffffff);
}

bool KyVariantCheck::skipVariant()
{
    quint32 type = 0;
    if (m_depth == MAX_DEPTH || !m_cursor.read(&type) || !m_cursor.skip(1)) // 1: whether it is null
        return false;
    ++m_depth;
    const bool skipped = type == QMetaType::User ? skipUserType() : skipValue(int(type));
    --m_depth;
    return skipped;
}

bool KyVariantCheck::skipValue(int type)
{
    const Layout *valueLayout = layout(type);
    if (!valueLayout)
        return false;
    return valueLayout->skip ? (this->*valueLayout->skip)() : m_cursor.skip(valueLayout->size);
}

bool KyVariantCheck::skipUserType()
{
    QByteArray content;
    if (!m_cursor.readBytes(&content))
        return false;
    const QByteArray name(content.constData(), int(qstrnlen(content.constData(), uint(content.size()))));
    const int type = QMetaType::type(name);
    if (type == QMetaType::UnknownType)
        return false;
    if (type < QMetaType::User)
        return skipValue(type);
    return skipKnownUserType(type, name);
}

// Even a container that has been walked over is read for trial: its type may lack operators, or have its own
// ones.
bool KyVariantCheck::skipKnownUserType(int type, const QByteArray &name)
{
    const int begin = m_cursor.position();
    const bool walked = isBuiltOfQtTypes(name);
    if (walked ? !skipContainer(name) : !isCountBelievable(name))
        return false;
    const int end = m_cursor.position();
    m_cursor.seek(begin);
    const auto read = [type](QDataStream &stream) {
        QVariant value(type, nullptr);
        return QMetaType::load(stream, type, value.data());
    };
    return skipByReading(read) && (!walked || m_cursor.position() == end);
}

// Containers of the application's types reserve room for as many entries as they are said to have.
bool KyVariantCheck::isCountBelievable(const QByteArray &typeName) const
{
    KyByteCursor cursor = m_cursor;
    quint32 count = 0;
    return !isOneOf(CONTAINERS, typeName.left(typeName.indexOf('<')))
        || (cursor.read(&count) && qint64(count) <= cursor.left());
}

bool KyVariantCheck::skipContainer(const QByteArray &typeName)
{
    const QList<QByteArray> elements = argumentsOf(typeName);
    quint32 count = 1;
    if (isOneOf(CONTAINERS, typeName.left(typeName.indexOf('<'))) && !m_cursor.read(&count))
        return false;
    if (qint64(count) > m_cursor.left())
        return false;
    for (quint32 i = 0; i < count; ++i) {
        for (const QByteArray &element : elements) {
            const int type = QMetaType::type(element);
            const bool isQtType = type != QMetaType::UnknownType && type < QMetaType::User;
            if (isQtType ? !skipValue(type) : !skipContainer(element))
                return false;
        }
    }
    return true;
}

template<typename Read>
bool KyVariantCheck::skipByReading(Read read)
{
    KyShallowBuffer buffer(m_cursor.rest());
    QDataStream stream(&buffer);
    return read(stream) && stream.status() == QDataStream::Ok && m_cursor.skip(buffer.pos());
}

bool KyVariantCheck::skipStringList()
{
    quint32 count = 0;
    if (!m_cursor.read(&count))
        return false;
    for (quint32 i = 0; i < count; ++i) {
        if (!m_cursor.readString())
            return false;
    }
    return true;
}

bool KyVariantCheck::skipByteArrayList()
{
    quint32 count = 0;
    if (!m_cursor.read(&count))
        return false;
    for (quint32 i = 0; i < count; ++i) {
        if (!m_cursor.readBytes())
            return false;
    }
    return true;
}

bool KyVariantCheck::skipVariantList()
{
    quint32 count = 0;
    if (!m_cursor.read(&count))
        return false;
    for (quint32 i = 0; i < count; ++i) {
        if (!skipVariant())
            return false;
    }
    return true;
}

bool KyVariantCheck::skipVariantMap()
{
    quint32 count = 0;
    if (!m_cursor.read(&count))
        return false;
    for (quint32 i = 0; i < count; ++i) {
        if (!m_cursor.readString() || !skipVariant())
            return false;
    }
    return true;
}

bool KyVariantCheck::skipIntegerMap(quint32 limit)
{
    quint32 count = 0;
    if (!m_cursor.read(&count) || count > limit)
        return false;
    for (quint32 i = 0; i < count; ++i) {
        if (!skipInt() || !skipVariant())
            return false;
    }
    return true;
}

bool KyVariantCheck::skipBitArray()
{
    quint32 bits = 0;
    return m_cursor.read(&bits) && m_cursor.skip((qint64(bits) + 7) / 8);
}

bool KyVariantCheck::skipDateTime()
{
    const int dateAndTimeSize = 8 + 4;
    quint8 spec = 0;
    if (!m_cursor.skip(dateAndTimeSize) || !m_cursor.read(&spec))
        return false;
    switch (spec) {
    case Qt::LocalTime:
    case Qt::UTC:
        return true;
    case Qt::OffsetFromUTC:
        return m_cursor.skip(4);
    case Qt::TimeZone:
        return skipTimeZone();
    }
    return false;
}

// On most systems a zone is the file of that name, somewhere below a folder.
static bool isZoneName(const QString &name)
{
    const auto isControl = [](QChar character) {
        return character < QLatin1Char(' ');
    };
    return !name.contains(QLatin1String("..")) && std::none_of(name.cbegin(), name.cend(), isControl);
}

bool KyVariantCheck::skipTimeZone()
{
    QString name;
    if (!m_cursor.readString(&name) || !isZoneName(name))
        return false;
    if (name != QLatin1String("OffsetFromUtc"))
        return true;
    return m_cursor.readString(&name) && isZoneName(name) && m_cursor.skip(4) // its offset
        && skipString() && skipString() // its names
        && m_cursor.skip(4) && skipString(); // its country and a comment
}

bool KyVariantCheck::skipRegExp()
{
    QString pattern;
    quint8 caseSensitivity = 0;
    quint8 syntax = 0;
    if (!m_cursor.readString(&pattern) || !m_cursor.read(&caseSensitivity) || !m_cursor.read(&syntax)
        || !m_cursor.skip(1) || caseSensitivity > Qt::CaseSensitive || syntax > QRegExp::W3CXmlSchema11)
        return false;
    const qint64 size = regExpPatternSize(pattern, MAX_PATTERN_SIZE);
    m_patternCostLeft -= size * size;
    return size <= MAX_PATTERN_SIZE && m_patternCostLeft >= 0;
}

bool KyVariantCheck::skipRegularExpression()
{
    return skipString() && m_cursor.skip(4);
}

// QDataStream takes the address of the curve's function as it comes, from whatever process.
bool KyVariantCheck::skipEasingCurve()
{
    quint8 type = 0;
    if (!m_cursor.read(&type) || type >= QEasingCurve::Custom)
        return false;
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    stream << QEasingCurve(QEasingCurve::Type(type));
    const QByteArray function = written.mid(sizeof type, sizeof(quint64));
    const int begin = m_cursor.position();
    quint8 isConfigured = 0;
    if (!m_cursor.skip(function.size()) || !m_cursor.read(&isConfigured))
        return false;
    m_cursor.overwrite(begin, function);
    const int tcbPointSize = POINT_F_SIZE + 3 * REAL_SIZE;
    return !isConfigured
        || (m_cursor.skip(3 * REAL_SIZE) && m_cursor.skipArray(POINT_F_SIZE)
            && m_cursor.skipArray(tcbPointSize));
}

bool KyVariantCheck::skipJsonDocument()
{
    QByteArray text;
    if (!m_cursor.readBytes(&text))
        return false;
    QJsonParseError error;
    QJsonDocument::fromJson(text, &error);
    return text.isEmpty() || error.error == QJsonParseError::NoError;
}

bool KyVariantCheck::skipJsonValue()
{
    quint8 type = 0;
    if (!m_cursor.read(&type))
        return false;
    switch (type) {
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        return true;
    case QJsonValue::Bool:
        return m_cursor.skip(1);
    case QJsonValue::Double:
        return m_cursor.skip(REAL_SIZE);
    case QJsonValue::String:
        return skipString();
    case QJsonValue::Array:
    case QJsonValue::Object:
        return skipJsonDocument();
    }
    return false;
}

bool KyVariantCheck::skipCbor()
{
    QByteArray content;
    if (!m_cursor.readBytes(&content))
        return false;
    QCborParserError error;
    QCborValue::fromCbor(content, &error);
    return error.error == QCborError::NoError;
}

bool KyVariantCheck::skipColor()
{
    quint8 spec = 0;
    return m_cursor.read(&spec) && spec <= QColor::ExtendedRgb && m_cursor.skip(5 * 2);
}

bool KyVariantCheck::skipBrush()
{
    quint8 style = 0;
    if (!m_cursor.read(&style) || !skipColor())
        return false;
    switch (style) {
    case Qt::TexturePattern:
        return skipPicture() && m_cursor.skip(TRANSFORM_SIZE);
    case Qt::LinearGradientPattern:
    case Qt::RadialGradientPattern:
    case Qt::ConicalGradientPattern:
        return skipGradient() && m_cursor.skip(TRANSFORM_SIZE);
    default:
        return m_cursor.skip(TRANSFORM_SIZE);
    }
}

bool KyVariantCheck::skipGradient()
{
    const int modesSize = 3 * 4;
    quint32 type = 0;
    quint32 stops = 0;
    if (!m_cursor.read(&type) || !m_cursor.skip(modesSize) || !m_cursor.read(&stops)
        || stops > MAX_SLOW_ENTRIES)
        return false;
    for (quint32 i = 0; i < stops; ++i) {
        double position = 0;
        if (!m_cursor.read(&position) || !skipColor())
            return false;
        if (position < 0 || position > 1) // a gradient warns of these; it takes what is not a number
            return false;
    }
    switch (type) {
    case QGradient::LinearGradient:
        return m_cursor.skip(2 * POINT_F_SIZE);
    case QGradient::RadialGradient:
        return m_cursor.skip(2 * POINT_F_SIZE + REAL_SIZE);
    case QGradient::ConicalGradient:
        return m_cursor.skip(POINT_F_SIZE + REAL_SIZE);
    }
    return false;
}

bool KyVariantCheck::skipPen()
{
    const int styleSize = 2 + 1;
    return m_cursor.skip(styleSize + REAL_SIZE) && skipBrush() && m_cursor.skip(REAL_SIZE)
        && m_cursor.skipArray(REAL_SIZE) && m_cursor.skip(REAL_SIZE + 1);
}

bool KyVariantCheck::skipPalette()
{
    for (int i = 0; i < QPalette::NColorGroups * QPalette::NColorRoles; ++i) {
        if (!skipBrush())
            return false;
    }
    return true;
}

bool KyVariantCheck::skipFont()
{
    const int sizes = REAL_SIZE + 4;
    const int styles = 1 + 2 + 1 + 1 + 1 + 2 + 1;
    const int spacings = 4 + 4;
    return skipString() && skipString() && m_cursor.skip(sizes + styles + spacings + 2) && skipStringList();
}

bool KyVariantCheck::skipPolygon()
{
    return m_cursor.skipArray(POINT_SIZE);
}

bool KyVariantCheck::skipPolygonF()
{
    return m_cursor.skipArray(POINT_F_SIZE);
}

// Regions are read by uniting their rectangles one by one. Only in the order in which Qt writes them, in
// bands from top to bottom and from left to right, does that cost no more than a few copies.
bool KyVariantCheck::skipRegion()
{
    QByteArray content;
    if (!m_cursor.readBytes(&content))
        return false;
    if (content.isEmpty())
        return true;

    const qint32 rectanglesFollow = 10;
    KyByteCursor cursor(content);
    qint32 command = 0;
    quint32 count = 0;
    if (!cursor.read(&command) || command != rectanglesFollow || !cursor.read(&count)
        || count > MAX_SLOW_ENTRIES || cursor.left() != int(count) * RECT_SIZE)
        return false;
    QRect before;
    for (quint32 i = 0; i < count; ++i) {
        qint32 left = 0, top = 0, right = 0, bottom = 0;
        cursor.read(&left), cursor.read(&top), cursor.read(&right), cursor.read(&bottom);
        const bool isInBand = top == before.top() && bottom == before.bottom() && left > before.right();
        if (left > right || top > bottom || (i > 0 && !isInBand && top <= before.bottom()))
            return false;
        before.setCoords(left, top, right, bottom);
    }
    return true;
}

bool KyVariantCheck::skipKeySequence()
{
    quint32 count = 0;
    return m_cursor.read(&count) && (count == 1 || count == 4) && m_cursor.skip(count * 4);
}

bool KyVariantCheck::skipTextFormat()
{
    return skipInt() && skipIntegerMap(MAX_SLOW_ENTRIES);
}

bool KyVariantCheck::skipCursor()
{
    quint16 shape = 0;
    if (!m_cursor.read(&shape))
        return false;
    if (shape != Qt::BitmapCursor)
        return true;
    quint8 isPixmap = 0;
    QImage picture;
    if (!m_cursor.read(&isPixmap) || !readPicture(&picture) || picture.isNull())
        return false;
    if (isPixmap)
        return m_cursor.skip(POINT_SIZE);
    QImage mask;
    return readPicture(&mask) && picture.depth() == 1 && mask.depth() == 1 && picture.size() == mask.size()
        && m_cursor.skip(POINT_SIZE);
}

bool KyVariantCheck::skipPicture()
{
    QImage picture;
    return readPicture(&picture);
}

static qint64 sizeBesidePixels(const QImage &picture)
{
    qint64 size = picture.colorSpace().iccProfile().size();
    const QStringList keys = picture.textKeys();
    for (const QString &key : keys)
        size += (key.size() + picture.text(key).size()) * qint64(sizeof(QChar));
    return size;
}

// A picture that cannot be read leaves QDataStream somewhere in the middle of it, where anything may follow.
bool KyVariantCheck::readPicture(QImage *picture)
{
    quint32 isThere = 0;
    if (!m_cursor.read(&isThere))
        return false;
    if (!isThere)
        return true;

    QByteArray png = m_cursor.rest();
    const qint64 size = skipPng(&m_cursor);
    m_pictureBytesLeft -= size;
    if (size < 0 || m_pictureBytesLeft < 0)
        return false;
    png.truncate(png.size() - m_cursor.left());
    QBuffer buffer(&png);
    buffer.open(QIODevice::ReadOnly);
    *picture = QImageReader(&buffer, "png").read();
    m_pictureBytesLeft -= sizeBesidePixels(*picture);
    return !picture->isNull() && buffer.atEnd() && m_pictureBytesLeft >= 0;
}

bool KyVariantCheck::skipIcon()
{
    const int begin = m_cursor.position();
    QString engine;
    if (!m_cursor.readString(&engine))
        return false;
    if (engine.isEmpty())
        return true;
    if (engine == QLatin1String("QPixmapIconEngine"))
        return skipPixmapIcon();
    if (engine == QLatin1String("QIconLoaderEngine"))
        return skipString();
    return skipPluginIcon(begin, engine);
}

bool KyVariantCheck::skipPixmapIcon()
{
    qint32 count = 0;
    if (!m_cursor.read(&count) || count < 0)
        return false;
    for (qint32 i = 0; i < count; ++i) {
        if (!skipPixmapIconEntry())
            return false;
    }
    return true;
}

// An entry that is written without its picture makes the icon read all pictures of the file that it names,
// were it a pipe or on somebody else's computer. No file has the name that is put in its place.
bool KyVariantCheck::skipPixmapIconEntry()
{
    QImage picture;
    QByteArray fileName;
    if (!readPicture(&picture) || !m_cursor.readBytes(&fileName) || fileName.size() % 2 != 0)
        return false;
    if (picture.isNull()) {
        const QByteArray noFile = QByteArray("\0:", 2).repeated(fileName.size() / 2);
        m_cursor.overwrite(m_cursor.position() - noFile.size(), noFile);
    }
    const int sizeModeAndState = 8 + 4 + 4;
    return m_cursor.skip(sizeModeAndState);
}

bool KyVariantCheck::skipSvgIcon()
{
    quint32 count = 0;
    if (!m_cursor.read(&count))
        return false;
    for (quint32 i = 0; i < count; ++i) { // names of files
        if (!skipInt() || !skipString())
            return false;
    }
    quint32 isCompressed = 0;
    if (!m_cursor.read(&isCompressed) || isCompressed != 1 || !m_cursor.read(&count))
        return false;
    for (quint32 i = 0; i < count; ++i) { // contents of files
        if (!skipInt() || !skipBytes())
            return false;
    }
    quint32 hasPictures = 0;
    if (!m_cursor.read(&hasPictures))
        return false;
    if (!hasPictures)
        return true;
    if (!m_cursor.read(&count))
        return false;
    for (quint32 i = 0; i < count; ++i) {
        if (!skipInt() || !skipPicture())
            return false;
    }
    return true;
}

// Icons of other engines are read for trial: without the engine, QDataStream stops behind its name.
bool KyVariantCheck::skipPluginIcon(int begin, const QString &engine)
{
    const bool isSvg = engine.startsWith(QLatin1String("svg"), Qt::CaseInsensitive);
    if (isSvg && !skipSvgIcon())
        return false;
    const int end = m_cursor.position();
    m_cursor.seek(begin);
    const auto read = [](QDataStream &stream) {
        QIcon icon;
        stream >> icon;
        return !icon.isNull();
    };
    return skipByReading(read) && (!isSvg || m_cursor.position() == end);
}

} // namespace Kyte
