#include "KyBench.h"
#include "KyBenchDestinations.h"
#include "KySqlite.h"

#include <KyDestination.h>

#include <QCoreApplication>
#include <QStringList>

#include <array>

namespace Kyte {

// Both sides open the database, read the channels with their names, the names of the groups, and all
// destinations in their order by the same statements; every text becomes a QString. The library makes records
// of them, ten a signal, besides.

/** Looks at every record and keeps none. */
class Receiver : public QObject
{
    Q_OBJECT

public:
    qint64 sum = 0;

public slots:
    void onItemsHasRead(const QList<KyUploadItemInfo> &items)
    {
        for (const KyUploadItemInfo &item : items)
            sum += item.id();
    }
};

/** Writes down every record. */
class Recorder : public QObject
{
    Q_OBJECT

public:
    QStringList records;

public slots:
    void onItemsHasRead(const QList<KyUploadItemInfo> &items)
    {
        for (const KyUploadItemInfo &item : items)
            records.append(Bench::toText(item));
    }
};

/** What the reference fills again and again: the cheapest record that could be handed on. */
struct PlainRecord
{
    KyUploadItemInfo::ItemType itemType = KyUploadItemInfo::Item_Destination;
    int id = -1;
    int posIndex = 0;
    int channelId = -1;
    int groupId = -1;
    QString name;
    QString address;
    QString sharedFolder;
    QString userName;
    QString password;
};

template<typename Take>
static void readRaw(const QString &path, Take &&take)
{
    const Bench::Sqlite database(path);
    QMap<int, QString> channelNames;
    QMap<int, QString> groupNames;

    Bench::SqliteStatement channels(database, "SELECT * FROM channel_tbl ORDER BY posindex, name");
    PlainRecord record;
    record.itemType = KyUploadItemInfo::Item_Channel;
    while (channels.step()) {
        record.id = channels.integer(0);
        record.name = channels.text(1);
        record.posIndex = channels.integer(2);
        channelNames.insert(record.id, record.name);
        take(record);
    }
    Bench::SqliteStatement groups(database, "SELECT * FROM group_tbl");
    while (groups.step())
        groupNames.insert(groups.integer(0), groups.text(1));

    Bench::SqliteStatement destinations(
        database, "SELECT * FROM destination_tbl WHERE channel_id > -1 ORDER BY posindex, name");
    record.itemType = KyUploadItemInfo::Item_Destination;
    while (destinations.step()) {
        record.id = destinations.integer(0);
        record.name = destinations.text(1);
        record.posIndex = destinations.integer(2);
        record.address = destinations.text(3);
        record.sharedFolder = destinations.text(4);
        record.userName = destinations.text(5);
        record.password = destinations.text(6);
        record.channelId = destinations.integer(7);
        record.groupId = destinations.integer(8);
        take(record);
    }
}

static void requireEqualRecords(KyDestination *destination, const QString &path)
{
    Recorder recorder;
    QObject::connect(destination, SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)), &recorder,
                     SLOT(onItemsHasRead(QList<KyUploadItemInfo>)));
    destination->startToRead();
    QStringList records;
    readRaw(path, [&](const PlainRecord &record) {
        records.append(Bench::toText({record.itemType, record.id, record.name, record.posIndex,
                                      record.address, record.sharedFolder, record.channelId, record.groupId,
                                      record.userName, record.password, nullptr}));
    });
    Bench::requireEqual(recorder.records == records, "records");
}

static void measure(Bench::Report *report, int count)
{
    const Bench::Environment environment(count / 100);
    KyDestination destination;
    destination.init();
    environment.fillDatabase(count);
    const QString path = environment.databaseFile();
    requireEqualRecords(&destination, path);

    Receiver receiver;
    QObject::connect(&destination, SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)), &receiver,
                     SLOT(onItemsHasRead(QList<KyUploadItemInfo>)));
    const auto read = [&] {
        destination.reconnectDatabase(); // both sides open the file
        receiver.sum = 0;
        return Bench::cpuTime([&] {
            destination.startToRead();
        });
    };
    qint64 sum = 0;
    const auto readReference = [&] {
        sum = 0;
        return Bench::cpuTime([&] {
            readRaw(path, [&](const PlainRecord &record) {
                sum += record.id;
            });
        });
    };
    report->ratio(Bench::sizedName(QStringLiteral("startToRead / raw sqlite3 to QString"), count), {1.5, 1.2},
                  read, readReference);
    Bench::requireEqual(receiver.sum == sum, "sum");
}

} // namespace Kyte

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    Kyte::Bench::Report report;
    for (int count : Kyte::Bench::DESTINATION_COUNTS)
        Kyte::measure(&report, count);
    return report.finish(QCoreApplication::arguments());
}

#include "bench_reading.moc"
