#include "KyChannelConfig.h"

#include "KyXmlFile_p.h"

#include <KyCommon.h>
#include <KyEditorConfig.h>

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QVector>
#include <QXmlStreamReader>

namespace Kyte {

const QString KyChannelConfig::CHANNEL_CONFIG_FILE_NAME = CHANNEL_MAIN_FILE;

static const char XML_DECLARATION[] = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";
static const QString CHANNEL_FILE_PATTERN = QStringLiteral("channel*.xml");
static const QString CHANNEL_ELEMENT = QStringLiteral("channel");
static const QString DESTINATION_ELEMENT = QStringLiteral("destination");
static const QString ID_ATTRIBUTE = QStringLiteral("id");
static const QString NAME_ATTRIBUTE = QStringLiteral("name");
static const QString INDEX_ATTRIBUTE = QStringLiteral("index");

static const int MAX_CHANNEL_FILE_SIZE = 1 << 20;
static const int MAX_MAIN_FILE_SIZE = 64 << 20;
static const int MAX_DEPTH = 256;

static bool isElement(const QXmlStreamReader &reader, const QString &name)
{
    return reader.name().compare(name, Qt::CaseInsensitive) == 0;
}

/** Moves \a reader behind the start of the root element; false when the document has another one or none. */
static bool enterRoot(QXmlStreamReader *reader)
{
    reader->setNamespaceProcessing(false); // nothing here has a namespace, and nested declarations are slow
    return reader->readNextStartElement() && isElement(*reader, XML_ROOT_ELEMENT);
}

/** The next token. Absurdly deep nesting ends the document, because the reader keeps every open element. */
static QXmlStreamReader::TokenType readToken(QXmlStreamReader *reader, int *depth)
{
    const QXmlStreamReader::TokenType token = reader->readNext();
    if (token == QXmlStreamReader::EndElement)
        --*depth;
    else if (token == QXmlStreamReader::StartElement && ++*depth > MAX_DEPTH)
        reader->raiseError(QStringLiteral("Elements are nested too deeply."));
    return reader->tokenType();
}

static int integerAttribute(const QXmlStreamReader &reader, const QString &name, int fallback)
{
    bool ok = false;
    const int value = reader.attributes().value(name).toInt(&ok);
    return ok ? value : fallback;
}

/** The channel that the file \a path describes; its id is negative when the file describes none. */
static KyChannelConfig::ChannelInfo readChannelFile(const QString &path)
{
    KyChannelConfig::ChannelInfo channel;
    QString content;
    if (!XmlFile::read(path, MAX_CHANNEL_FILE_SIZE, &content))
        return channel;

    QXmlStreamReader reader(content);
    if (!enterRoot(&reader))
        return channel;
    int depth = 1;
    while (!reader.atEnd()) {
        // Letter case counts here, and only here: the applications write "channel", and files with another
        // spelling have never been taken for channel files.
        if (readToken(&reader, &depth) == QXmlStreamReader::StartElement
            && reader.name() == CHANNEL_ELEMENT) {
            channel.id = integerAttribute(reader, ID_ATTRIBUTE, -1);
            channel.name = reader.attributes().value(NAME_ATTRIBUTE).toString();
            channel.index = integerAttribute(reader, INDEX_ATTRIBUTE, -1);
            return channel; // whatever follows the first channel is none of ours, well-formed or not
        }
    }
    return channel;
}

/** What comes before the number in the tag of a channel or a destination. */
static QByteArray tagUpToId(int depth, const QString &element)
{
    return QByteArray(4 * depth, ' ') + '<' + element.toUtf8() + ' ' + ID_ATTRIBUTE.toUtf8() + "=\"";
}

/**
 * The main file, byte for byte as QXmlStreamWriter formats it. Numbers are all that is written and need no
 * escaping; the writer would take most of the time that saving many destinations takes.
 */
static QByteArray mainFileContent(const QList<KyChannelConfig::ChannelInfo> &channels,
                                  const QMap<int, int> &assignment)
{
    const QByteArray channelTag = tagUpToId(1, CHANNEL_ELEMENT);
    const QByteArray destinationTag = tagUpToId(2, DESTINATION_ELEMENT);
    const QByteArray root = XML_ROOT_ELEMENT.toUtf8();

    QHash<int, QByteArray> destinations; // the lines of each channel
    for (auto it = assignment.cbegin(); it != assignment.cend(); ++it)
        destinations[it.value()].append(destinationTag).append(QByteArray::number(it.key())).append("\"/>\n");

    QByteArray content = QByteArray(XML_DECLARATION) + '<' + root + (channels.isEmpty() ? "/>\n" : ">\n");
    for (const KyChannelConfig::ChannelInfo &channel : channels) {
        const QByteArray lines = destinations.value(channel.id);
        content.append(channelTag).append(QByteArray::number(channel.id));
        if (lines.isEmpty())
            content.append("\"/>\n");
        else
            content.append("\">\n").append(lines).append("    </" + CHANNEL_ELEMENT.toUtf8() + ">\n");
    }
    return channels.isEmpty() ? content : content.append("</" + root + ">\n");
}

KyChannelConfig::KyChannelConfig(QObject *parent)
    : QObject(parent)
{
}

KyChannelConfig::~KyChannelConfig() = default;

QString KyChannelConfig::channelDir()
{
    if (!KyEditorConfig::readStandardConfigFile()) {
        fail(tr("Application configuration file can not be found."));
        return QString();
    }
    return QDir(KyEditorConfig::dataDir()).absoluteFilePath(CHANNEL_FOLDER);
}

bool KyChannelConfig::getAllChannelInfoFromFiles(const QString &folder)
{
    clearLastErrorMessage();
    const QString path = folder.isEmpty() ? channelDir() : folder;
    if (path.isEmpty())
        return false;
    const QDir dir(path);
    if (!dir.exists())
        return fail(tr("The Channel folder \"%1\" does not exist.").arg(QDir::toNativeSeparators(path)));

    m_channelList.clear();
    const QStringList names = dir.entryList({CHANNEL_FILE_PATTERN}, QDir::Files, QDir::Unsorted);
    for (const QString &name : names) {
        if (name.compare(CHANNEL_FILE, Qt::CaseInsensitive) == 0)
            continue;
        ChannelInfo channel = readChannelFile(dir.absoluteFilePath(name));
        if (channel.id < 0)
            continue;
        if (channel.name.isEmpty())
            channel.name = QStringLiteral("Ch.%1").arg(channel.id);
        m_channelList.append(channel);
    }
    return !m_channelList.isEmpty() || fail(tr("The channel files were not read correctly."));
}

bool KyChannelConfig::readFile(const QString &path)
{
    const QString file = mainFilePath(path);
    if (file.isEmpty())
        return false;
    m_destChannelMap.clear();
    if (!QFileInfo::exists(file))
        return true; // nothing has been assigned yet
    QString content;
    if (!XmlFile::read(file, MAX_MAIN_FILE_SIZE, &content))
        return fail(tr("The channel config file can not be open to read."));

    QXmlStreamReader reader(content);
    if (!enterRoot(&reader))
        return true;
    int depth = 1;
    QVector<int> channelIds; // of the open channels, a negative one is invalid
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = readToken(&reader, &depth);
        if (token == QXmlStreamReader::StartElement && isElement(reader, CHANNEL_ELEMENT)) {
            channelIds.append(integerAttribute(reader, ID_ATTRIBUTE, -1));
        } else if (token == QXmlStreamReader::EndElement && isElement(reader, CHANNEL_ELEMENT)) {
            channelIds.removeLast();
        } else if (token == QXmlStreamReader::StartElement && isElement(reader, DESTINATION_ELEMENT)
                   && channelIds.value(channelIds.size() - 1, -1) >= 0) {
            const int destinationId = integerAttribute(reader, ID_ATTRIBUTE, -1);
            if (destinationId >= 0)
                insertDestination(destinationId, channelIds.last());
        }
    }
    return true;
}

bool KyChannelConfig::saveFile(const QString &path)
{
    const QString file = mainFilePath(path);
    if (file.isEmpty())
        return false; // an empty name would otherwise be looked for in the current directory

    const QByteArray content = mainFileContent(m_channelList, m_destChannelMap);
    return XmlFile::write(file, content) || fail(tr("The channel config file can not be open to write."));
}

void KyChannelConfig::insertDestination(int destinationId, int channelId)
{
    m_destChannelMap.insert(destinationId, channelId);
}

QList<KyChannelConfig::ChannelInfo> KyChannelConfig::channelList() const
{
    return m_channelList;
}

QList<KyChannelConfig::ChannelInfo> *KyChannelConfig::channelListPtr()
{
    return &m_channelList;
}

void KyChannelConfig::setChannelList(const QList<ChannelInfo> &channelList)
{
    m_channelList = channelList;
}

QList<KyChannelConfig::GroupInfo> KyChannelConfig::groupList() const
{
    return m_groupList;
}

void KyChannelConfig::setGroupList(const QList<GroupInfo> &groupList)
{
    m_groupList = groupList;
}

QMap<int, int> KyChannelConfig::destChannelMap() const
{
    return m_destChannelMap;
}

QMap<int, int> *KyChannelConfig::destChannelMapPtr()
{
    return &m_destChannelMap;
}

void KyChannelConfig::setDestChannelMap(const QMap<int, int> &destChannelMap)
{
    m_destChannelMap = destChannelMap;
}

QString KyChannelConfig::lastErrorMessage() const
{
    return m_lastErrorMessage;
}

void KyChannelConfig::clearLastErrorMessage()
{
    m_lastErrorMessage.clear();
}

bool KyChannelConfig::fail(const QString &message)
{
    m_lastErrorMessage = message;
    return false;
}

/** \a path, or the main file where it is empty; empty, with the error set, where no folder is known. */
QString KyChannelConfig::mainFilePath(const QString &path)
{
    if (!path.isEmpty())
        return path;
    const QString folder = channelDir();
    return folder.isEmpty() ? QString() : QDir(folder).absoluteFilePath(CHANNEL_CONFIG_FILE_NAME);
}

} // namespace Kyte
