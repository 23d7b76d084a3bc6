#include "KyBench.h"
#include "KyBenchDestinations.h"

#include <KyDestination.h>

#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>
#include <QVector>
#include <QXmlStreamWriter>

using namespace Kyte;

// The library reads which destination is in which channel out of the database, merges that into what
// "chconfig.xml" said, groups it by channel and writes the file. The reference only writes: it has the
// destinations of every channel in a list. Both replace the file in one step and wait until it is on the
// disk. The configuration file, which the library reads anew to learn the folder, lists no destinations here:
// reading a long one would outweigh the rest, on both sides if the reference did it too.

struct Channel
{
    int id = -1;
    QVector<int> destinations;
};

static void writeGrouped(const QString &path, const QVector<Channel> &channels)
{
    QSaveFile file(path);
    file.open(QIODevice::WriteOnly);
    QXmlStreamWriter writer(&file);
    writer.setCodec("utf-8");
    writer.setAutoFormatting(true);
    writer.writeStartDocument(QStringLiteral("1.0"), true);
    writer.writeStartElement(QStringLiteral("Pelmora"));
    for (const Channel &channel : channels) {
        writer.writeStartElement(QStringLiteral("channel"));
        writer.writeAttribute(QStringLiteral("id"), QString::number(channel.id));
        for (int destination : channel.destinations) {
            writer.writeEmptyElement(QStringLiteral("destination"));
            writer.writeAttribute(QStringLiteral("id"), QString::number(destination));
        }
        writer.writeEndElement();
    }
    writer.writeEndElement();
    writer.writeEndDocument();
    file.commit();
}

static QByteArray content(const QString &path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

/** What the file is to say, in the order in which the folder lists the channel files. */
static QVector<Channel> groupedChannels(int destinationCount)
{
    KyChannelConfig config;
    config.getAllChannelInfoFromFiles(QString());
    QVector<Channel> channels;
    for (const KyChannelConfig::ChannelInfo &info : qAsConst(*config.channelListPtr())) {
        Channel channel{info.id, {}};
        for (int id = info.id; id < destinationCount; id += config.channelListPtr()->size())
            channel.destinations.append(id);
        channels.append(channel);
    }
    return channels;
}

static void measure(Bench::Report *report, int count)
{
    const int channelCount = count / 100;
    const Bench::Environment environment(channelCount);
    KyDestination destination;
    destination.init();
    environment.fillDatabase(count);
    const QVector<Channel> channels = groupedChannels(count);
    const QString path = environment.mainFile();
    const auto save = [&] {
        return Bench::cpuTime([&] {
            destination.saveChannelConfigToFile();
        });
    };
    const auto write = [&] {
        return Bench::cpuTime([&] {
            writeGrouped(path, channels);
        });
    };
    save();
    const QByteArray saved = content(path);
    write();
    Bench::requireEqual(saved == content(path), "file");
    report->ratio(Bench::sizedName(QStringLiteral("channel file / writing the same XML"), count), {1.8, 1.4},
                  save, write);
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    Bench::Report report;
    for (int count : Bench::DESTINATION_COUNTS)
        measure(&report, count);
    return report.finish(QCoreApplication::arguments());
}
