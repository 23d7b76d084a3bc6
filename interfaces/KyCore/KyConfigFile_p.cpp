#include "KyConfigFile_p.h"

#include "KyCommon.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace Kyte {

static const qint64 MAX_FILE_SIZE = 64 << 20;
static const int MAX_ATTRIBUTES = 64;
static const int MAX_DEPTH = 256;

static const QString DATA_DIR_ELEMENT = QStringLiteral("dataDir");
static const QString LOG_DIR_ELEMENT = QStringLiteral("logDir");
static const QString DESTINATIONS_ELEMENT = QStringLiteral("destinations");
static const QString DESTINATION_ELEMENT = QStringLiteral("destination");

/** Passes over the element whose start was just read, however deep, as long as that is not absurd. */
static void skipElement(QXmlStreamReader &reader)
{
    int depth = 1;
    while (depth > 0 && !reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && ++depth > MAX_DEPTH)
            reader.raiseError(QStringLiteral("Elements are nested too deeply."));
        else if (reader.isEndElement())
            --depth;
    }
}

/** The text of a folder element as an absolute path in \a base, empty for an empty element. */
static QString readFolder(QXmlStreamReader &reader, const QDir &base)
{
    const QString path = QDir::fromNativeSeparators(reader.readElementText().trimmed());
    return path.isEmpty() ? path : QDir::cleanPath(base.absoluteFilePath(path));
}

/** Never null: a null text would become NULL where it is bound to a database statement. */
static QString attribute(const QXmlStreamAttributes &attributes, const char *name)
{
    const QStringRef value = attributes.value(QLatin1String(name));
    return value.isEmpty() ? QString(QLatin1String("")) : value.toString();
}

static QList<KyConfig::Destination> readDestinations(QXmlStreamReader &reader)
{
    QList<KyConfig::Destination> destinations;
    while (reader.readNextStartElement()) {
        const QXmlStreamAttributes attributes = reader.attributes();
        bool hasId = false;
        const int id = attributes.value(QLatin1String("id")).toInt(&hasId);
        if (reader.name() == DESTINATION_ELEMENT && hasId) {
            destinations.append({id, attribute(attributes, "name"), attribute(attributes, "address"),
                                 attribute(attributes, "shared"), attribute(attributes, "user"),
                                 attribute(attributes, "password")});
        }
        skipElement(reader);
    }
    return destinations;
}

static void readRootElement(QXmlStreamReader &reader, const QDir &base, KyConfigContent *content)
{
    while (reader.readNextStartElement()) {
        if (reader.name() == DATA_DIR_ELEMENT)
            content->dataDir = readFolder(reader, base);
        else if (reader.name() == LOG_DIR_ELEMENT)
            content->logDir = readFolder(reader, base);
        else if (reader.name() == DESTINATIONS_ELEMENT)
            content->destinations = readDestinations(reader);
        else
            skipElement(reader);
    }
}

/** The bytes of a regular file of a sane size; anything else, such as a pipe, is not even opened. */
static bool readBytes(const QString &path, QByteArray *bytes)
{
    const QFileInfo info(path);
    if (!info.isFile() || info.size() > MAX_FILE_SIZE)
        return false;

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    *bytes = file.readAll();
    return file.error() == QFileDevice::NoError;
}

static bool isUtf8(const QStringRef &encoding)
{
    return encoding.isEmpty() || encoding.compare(QLatin1String("UTF-8"), Qt::CaseInsensitive) == 0;
}

bool readConfigFile(const QString &path, KyConfigContent *content)
{
    QByteArray bytes;
    if (!readBytes(path, &bytes) || !isHarmlessXml(bytes))
        return false;

    QXmlStreamReader reader(bytes);
    reader.setNamespaceProcessing(false); // none are used, and a file could make looking them up slow
    if (reader.readNext() != QXmlStreamReader::StartDocument || !isUtf8(reader.documentEncoding())
        || !reader.readNextStartElement() || reader.name() != XML_ROOT_ELEMENT)
        return false;

    KyConfigContent read = *content;
    readRootElement(reader, QFileInfo(path).absoluteDir(), &read);
    while (!reader.atEnd()) // what follows the root element has to be well-formed too
        reader.readNext();
    if (reader.hasError())
        return false;
    *content = read;
    return true;
}

bool writeDefaultConfigFile(const QString &path, const QString &dataDir, const QString &logDir)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;

    QXmlStreamWriter writer(&file);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(XML_ROOT_ELEMENT);
    writer.writeTextElement(DATA_DIR_ELEMENT, dataDir);
    writer.writeTextElement(LOG_DIR_ELEMENT, logDir);
    writer.writeEmptyElement(DESTINATIONS_ELEMENT);
    writer.writeEndDocument();

    // commit() alone reports success for a last buffer that did not fit on the disk.
    return file.flush() && file.error() == QFileDevice::NoError && file.commit();
}

/** The position behind \a end, searched from \a position; the size of \a xml when it is not there. */
static int skipPast(const QByteArray &xml, const char *end, int position)
{
    const int found = xml.indexOf(end, position);
    return found < 0 ? xml.size() : found + int(qstrlen(end));
}

/**
 * The position behind the tag that begins at \a position, -1 when it has too many attributes. Every attribute
 * has a quoted value, and quotes hide the ">" between them.
 */
static int skipTag(const QByteArray &xml, int position)
{
    int attributes = 0;
    while (position < xml.size() && xml.at(position) != '>') {
        const char character = xml.at(position++);
        if (character != '"' && character != '\'')
            continue;
        if (++attributes > MAX_ATTRIBUTES)
            return -1;
        position = skipPast(xml, character == '"' ? "\"" : "'", position);
    }
    return position;
}

bool isHarmlessXml(const QByteArray &xml)
{
    if (xml.contains('\0'))
        return false;

    // Where the text is no XML this loses its way, but then the reader stops there as well.
    int position = xml.indexOf('<');
    while (position >= 0) {
        const auto startsWith = [&](const char *text) {
            return qstrncmp(xml.constData() + position, text, qstrlen(text)) == 0;
        };
        if (startsWith("<!--"))
            position = skipPast(xml, "-->", position + 4);
        else if (startsWith("<![CDATA["))
            position = skipPast(xml, "]]>", position + 9);
        else if (startsWith("<?"))
            position = skipPast(xml, "?>", position + 2);
        else if (startsWith("<!"))
            return false;
        else
            position = skipTag(xml, position);
        if (position < 0)
            return false;
        position = xml.indexOf('<', position);
    }
    return true;
}

} // namespace Kyte
