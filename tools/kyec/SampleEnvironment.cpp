#include "SampleEnvironment.h"

#include <KyCommon.h>

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QSaveFile>
#include <QXmlStreamWriter>

namespace Kyte {

static const QString MARK_FILE = QStringLiteral(".kyec-demo");
static const QString CONFIG_FILE = QStringLiteral("kyteconfig.xml");
static const QString DATA_FOLDER = QStringLiteral("data");
static const QString LOG_FOLDER = QStringLiteral("log");
static const QString STAGES_FOLDER = QStringLiteral("stages");

struct SampleChannel
{
    QString name;
    QString sharedFolder;
    QStringList destinations;
};

static QStringList split(const QString &names)
{
    return names.split(QLatin1Char(';'));
}

/** The station. Destinations are numbered from 1 through all channels, channels from 0. */
static const QList<SampleChannel> &station()
{
    static const QList<SampleChannel> channels{
        {QStringLiteral("Concourse"), QStringLiteral("boards"),
         split(
             QStringLiteral("Bridge entrance;Bus stops;Clock wall;Concourse, arrivals;Concourse, departures;"
                            "Concourse, east pillar;Concourse, west pillar;Information desk;North entrance;"
                            "South entrance;Taxi rank;Ticket hall, counter 1;Ticket hall, counter 2;"
                            "Ticket hall, machines"))},
        {QStringLiteral("Platforms"), QStringLiteral("platforms"),
         split(
             QStringLiteral("Footbridge;Platform 1 north;Platform 1 south;Platform 2 north;Platform 2 south;"
                            "Platform 3 north;Platform 3 south;Platform 4 north;Platform 4 south;"
                            "Platform 5 north;Platform 5 south;Platform 6 north;Platform 6 south;"
                            "Platform 7 north;Platform 7 south;Platform 8 north;Platform 8 south;"
                            "Platform 9 north;Platform 9 south;Underpass"))},
        {QStringLiteral("Food and shops"), QStringLiteral("shops"),
         split(QStringLiteral(
             "Bakery;Bookshop;Café, gallery;Café, garden;Chemist;Flower stall;Food court, north;"
             "Food court, south;Ice cream stand;Kiosk, concourse;Kiosk, platform 5;Soup bar;"
             "Supermarket, door;Supermarket, till"))},
        {QStringLiteral("Staff"), QStringLiteral("staff"),
         split(QStringLiteral("Canteen;Control room;Crew room, conductors;Crew room, drivers;Dispatch office;"
                              "First-aid room;Locker room;Lost property;Maintenance depot;Meeting room;"
                              "Security gate;Training room"))},
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
    writer.writeStartElement(XML_ROOT_ELEMENT);
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
    const QString channelFolder = DATA_FOLDER + QLatin1Char('/') + CHANNEL_FOLDER;
    for (const QString &folder : {channelFolder, LOG_FOLDER}) {
        if (!QDir().mkpath(path(folder)))
            return fail(
                QStringLiteral("The folder cannot be made: %1").arg(QDir::toNativeSeparators(path(folder))));
    }
    for (int id = 0; id < station().size(); ++id) {
        if (!write(QStringLiteral("%1/channel%2.xml").arg(channelFolder).arg(id),
                   channelFile(id, station().at(id))))
            return false;
    }
    return write(channelFolder + QLatin1Char('/') + CHANNEL_MAIN_FILE, mainFile())
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

QString SampleEnvironment::stagesFolder() const
{
    return path(STAGES_FOLDER);
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

QList<int> SampleEnvironment::destinationIds(const QString &names)
{
    const QStringList wanted = split(names);
    QList<int> ids;
    int id = 0;
    for (const SampleChannel &channel : station()) {
        for (const QString &name : channel.destinations) {
            ++id;
            if (wanted.contains(name))
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
    for (const QString &name : {CONFIG_FILE, DATA_FOLDER, LOG_FOLDER, STAGES_FOLDER}) {
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
