#include "SampleEnvironment.h"

#include <KyChannelConfig.h>

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QSaveFile>
#include <QXmlStreamWriter>

namespace Kyte {

static const QString MARK_FILE = QStringLiteral(".kyec-demo");
static const QString CONFIG_FILE = QStringLiteral("kyteconfig.xml");
static const QString DATA_FOLDER = QStringLiteral("data");
static const QString CHANNEL_FOLDER = QStringLiteral("data/channel");
static const QString LOG_FOLDER = QStringLiteral("log");

struct SampleChannel
{
    QString name;
    QString sharedFolder;
    QStringList destinations;
};

/** The station. Destinations are numbered from 1 through all channels, channels from 0. */
static const QList<SampleChannel> &station()
{
    static const QList<SampleChannel> channels{
        {QStringLiteral("Concourse"),
         QStringLiteral("boards"),
         {QStringLiteral("Bridge entrance"), QStringLiteral("Bus stops"), QStringLiteral("Clock wall"),
          QStringLiteral("Concourse, arrivals"), QStringLiteral("Concourse, departures"),
          QStringLiteral("Concourse, east pillar"), QStringLiteral("Concourse, west pillar"),
          QStringLiteral("Information desk"), QStringLiteral("North entrance"),
          QStringLiteral("South entrance"), QStringLiteral("Taxi rank"),
          QStringLiteral("Ticket hall, counter 1"), QStringLiteral("Ticket hall, counter 2"),
          QStringLiteral("Ticket hall, machines")}},
        {QStringLiteral("Platforms"),
         QStringLiteral("platforms"),
         {QStringLiteral("Footbridge"),       QStringLiteral("Platform 1 north"),
          QStringLiteral("Platform 1 south"), QStringLiteral("Platform 2 north"),
          QStringLiteral("Platform 2 south"), QStringLiteral("Platform 3 north"),
          QStringLiteral("Platform 3 south"), QStringLiteral("Platform 4 north"),
          QStringLiteral("Platform 4 south"), QStringLiteral("Platform 5 north"),
          QStringLiteral("Platform 5 south"), QStringLiteral("Platform 6 north"),
          QStringLiteral("Platform 6 south"), QStringLiteral("Platform 7 north"),
          QStringLiteral("Platform 7 south"), QStringLiteral("Platform 8 north"),
          QStringLiteral("Platform 8 south"), QStringLiteral("Platform 9 north"),
          QStringLiteral("Platform 9 south"), QStringLiteral("Underpass")}},
        {QStringLiteral("Food and shops"),
         QStringLiteral("shops"),
         {QStringLiteral("Bakery"), QStringLiteral("Bookshop"), QStringLiteral("Café, gallery"),
          QStringLiteral("Café, garden"), QStringLiteral("Chemist"), QStringLiteral("Flower stall"),
          QStringLiteral("Food court, north"), QStringLiteral("Food court, south"),
          QStringLiteral("Ice cream stand"), QStringLiteral("Kiosk, concourse"),
          QStringLiteral("Kiosk, platform 5"), QStringLiteral("Soup bar"),
          QStringLiteral("Supermarket, door"), QStringLiteral("Supermarket, till")}},
        {QStringLiteral("Staff"),
         QStringLiteral("staff"),
         {QStringLiteral("Canteen"), QStringLiteral("Control room"), QStringLiteral("Crew room, conductors"),
          QStringLiteral("Crew room, drivers"), QStringLiteral("Dispatch office"),
          QStringLiteral("First-aid room"), QStringLiteral("Locker room"), QStringLiteral("Lost property"),
          QStringLiteral("Maintenance depot"), QStringLiteral("Meeting room"),
          QStringLiteral("Security gate"), QStringLiteral("Training room")}},
    };
    return channels;
}

/** An XML document in UTF-8 as \a writeContent fills its root element. */
template<typename Content>
static QByteArray document(Content writeContent)
{
    QByteArray bytes;
    QXmlStreamWriter writer(&bytes);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("Pelmora"));
    writeContent(writer);
    writer.writeEndDocument();
    return bytes;
}

static void writeDestinations(QXmlStreamWriter &writer)
{
    int id = 0;
    for (const SampleChannel &channel : station()) {
        for (const QString &name : channel.destinations) {
            ++id;
            writer.writeEmptyElement(QStringLiteral("destination"));
            writer.writeAttribute(QStringLiteral("id"), QString::number(id));
            writer.writeAttribute(QStringLiteral("name"), name);
            // Of the block that is reserved for documentation, in case somebody really uploads.
            writer.writeAttribute(QStringLiteral("address"), QStringLiteral("192.0.2.%1").arg(id + 10));
            writer.writeAttribute(QStringLiteral("shared"), channel.sharedFolder);
            writer.writeAttribute(QStringLiteral("user"), QStringLiteral("player"));
            writer.writeAttribute(QStringLiteral("password"), QStringLiteral("sample-%1").arg(id));
        }
    }
}

static QByteArray configuration()
{
    return document([](QXmlStreamWriter &writer) {
        writer.writeTextElement(QStringLiteral("dataDir"), DATA_FOLDER);
        writer.writeTextElement(QStringLiteral("logDir"), LOG_FOLDER);
        writer.writeStartElement(QStringLiteral("destinations"));
        writeDestinations(writer);
        writer.writeEndElement();
    });
}

static QByteArray channelFile(int id, const SampleChannel &channel)
{
    return document([id, &channel](QXmlStreamWriter &writer) {
        writer.writeEmptyElement(QStringLiteral("channel"));
        writer.writeAttribute(QStringLiteral("id"), QString::number(id));
        writer.writeAttribute(QStringLiteral("name"), channel.name);
        writer.writeAttribute(QStringLiteral("index"), QString::number(id));
    });
}

static QByteArray mainFile()
{
    return document([](QXmlStreamWriter &writer) {
        int destinationId = 0;
        for (int id = 0; id < station().size(); ++id) {
            writer.writeStartElement(QStringLiteral("channel"));
            writer.writeAttribute(QStringLiteral("id"), QString::number(id));
            for (int i = 0; i < station().at(id).destinations.size(); ++i) {
                writer.writeEmptyElement(QStringLiteral("destination"));
                writer.writeAttribute(QStringLiteral("id"), QString::number(++destinationId));
            }
            writer.writeEndElement();
        }
    });
}

SampleEnvironment::SampleEnvironment(const QString &folder)
    : m_folder(QDir::cleanPath(QFileInfo(folder).absoluteFilePath()))
{
}

bool SampleEnvironment::create()
{
    if (!clear())
        return false;
    // The mark comes first: a run that is interrupted leaves a folder that the next one may take over.
    if (!write(MARK_FILE,
               "Made by \"kyec demo\", which replaces the files in this folder when it runs again.\n"))
        return false;
    for (const QString &folder : {CHANNEL_FOLDER, LOG_FOLDER}) {
        if (!QDir().mkpath(path(folder)))
            return fail(
                QStringLiteral("The folder cannot be made: %1").arg(QDir::toNativeSeparators(path(folder))));
    }
    for (int id = 0; id < station().size(); ++id) {
        if (!write(QStringLiteral("%1/channel%2.xml").arg(CHANNEL_FOLDER).arg(id),
                   channelFile(id, station().at(id))))
            return false;
    }
    return write(CHANNEL_FOLDER + QLatin1Char('/') + KyChannelConfig::CHANNEL_CONFIG_FILE_NAME, mainFile())
        && write(CONFIG_FILE, configuration());
}

QString SampleEnvironment::lastErrorMessage() const
{
    return m_lastErrorMessage;
}

QString SampleEnvironment::folder() const
{
    return m_folder;
}

QString SampleEnvironment::configFile() const
{
    return path(CONFIG_FILE);
}

QStringList SampleEnvironment::entries() const
{
    QStringList entries;
    QDirIterator iterator(m_folder, QDir::AllEntries | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (iterator.hasNext()) {
        const QString entry = QDir(m_folder).relativeFilePath(iterator.next());
        entries.append(iterator.fileInfo().isDir() ? entry + QLatin1Char('/') : entry);
    }
    entries.sort();
    return entries;
}

QList<int> SampleEnvironment::destinationIds(const QStringList &names)
{
    QList<int> ids;
    int id = 0;
    for (const SampleChannel &channel : station()) {
        for (const QString &name : channel.destinations) {
            ++id;
            if (names.contains(name))
                ids.append(id);
        }
    }
    return ids;
}

bool SampleEnvironment::fail(const QString &message)
{
    m_lastErrorMessage = message;
    return false;
}

/** Makes the folder, or removes what an earlier run made in it. */
bool SampleEnvironment::clear()
{
    const QString shown = QDir::toNativeSeparators(m_folder);
    const QDir folder(m_folder);
    if (!folder.exists())
        return QDir().mkpath(m_folder) || fail(QStringLiteral("The folder cannot be made: %1").arg(shown));
    if (folder.isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
        return true;
    if (!folder.exists(MARK_FILE))
        return fail(
            QStringLiteral("The folder is not empty and was not made by this command: %1").arg(shown));
    for (const QString &name : {CONFIG_FILE, DATA_FOLDER, LOG_FOLDER}) {
        const QFileInfo entry(path(name));
        const bool isFolder = entry.isDir() && !entry.isSymLink(); // what a link points to is not ours
        if ((entry.exists() || entry.isSymLink())
            && !(isFolder ? QDir(entry.filePath()).removeRecursively() : QFile::remove(entry.filePath())))
            return fail(QStringLiteral("An earlier file cannot be removed: %1")
                            .arg(QDir::toNativeSeparators(entry.filePath())));
    }
    return true;
}

bool SampleEnvironment::write(const QString &name, const QByteArray &content)
{
    QSaveFile file(path(name));
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush()
        && file.commit())
        return true;
    return fail(QStringLiteral("%1 (%2)").arg(file.errorString(), QDir::toNativeSeparators(path(name))));
}

QString SampleEnvironment::path(const QString &name) const
{
    return m_folder + QLatin1Char('/') + name;
}

} // namespace Kyte
