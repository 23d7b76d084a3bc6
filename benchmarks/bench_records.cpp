#include "KyBench.h"
#include "KyBenchDestinations.h"

#include <KyDestinationRows_p.h>

#include <QCoreApplication>
#include <QStringList>

namespace Kyte {

// Both sides hand records to a receiver in lists of ten. All records have the same texts, and these are
// literals: the reference counts of shared texts would take most of the time of both sides and hide the
// records, which are what is compared here. What the texts cost is part of the reading benchmark.

class Sender : public QObject
{
    Q_OBJECT

signals:
    void itemsHasRead(QList<KyUploadItemInfo> itemInfoList);
};

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

/** Writes down every list. */
class Recorder : public QObject
{
    Q_OBJECT

public:
    QStringList lists;

public slots:
    void onItemsHasRead(const QList<KyUploadItemInfo> &items)
    {
        QString text;
        for (const KyUploadItemInfo &item : items)
            text += Bench::toText(item) + QLatin1Char('\n');
        lists.append(text);
    }
};

static const QString NAME = QStringLiteral("name");
static const QString ADDRESS = QStringLiteral("address");
static const QString FOLDER = QStringLiteral("folder");
static const QString USER = QStringLiteral("user");
static const QString PASSWORD = QStringLiteral("password");

static void sendBatches(Sender *sender, int count)
{
    KyRecordBatch batch;
    for (int id = 0; id < count; ++id) {
        KyUploadItemInfo *record = batch.append();
        record->setItemType(KyUploadItemInfo::Item_Destination);
        record->setId(id);
        record->setName(NAME);
        record->setPosIndex(0);
        record->setAddress(ADDRESS);
        record->setSharedFolder(FOLDER);
        record->setChannelId(1);
        record->setGroupId(-1);
        record->setUserName(USER);
        record->setPassword(PASSWORD);
        if (batch.isFull()) {
            emit sender->itemsHasRead(batch.items());
            batch.restart();
        }
    }
    if (batch.count() > 0)
        emit sender->itemsHasRead(batch.items());
}

static void sendConstructed(Sender *sender, int count)
{
    QList<KyUploadItemInfo> items;
    for (int id = 0; id < count; ++id) {
        const KyUploadItemInfo record(KyUploadItemInfo::Item_Destination, id, NAME, 0, ADDRESS, FOLDER, 1, -1,
                                      USER, PASSWORD, nullptr);
        items.append(record);
        if (items.size() == KyRecordBatch::SIZE) {
            emit sender->itemsHasRead(items);
            items.clear();
        }
    }
    if (!items.isEmpty())
        emit sender->itemsHasRead(items);
}

using Send = void (*)(Sender *sender, int count);

static QStringList sentLists(Send send, int count)
{
    Sender sender;
    Recorder recorder;
    QObject::connect(&sender, SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)), &recorder,
                     SLOT(onItemsHasRead(QList<KyUploadItemInfo>)));
    send(&sender, count);
    return recorder.lists;
}

static void measure(Bench::Report *report, int count)
{
    Bench::requireEqual(sentLists(sendBatches, count + 1) == sentLists(sendConstructed, count + 1), "lists");

    Sender sender;
    Receiver receiver;
    QObject::connect(&sender, SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)), &receiver,
                     SLOT(onItemsHasRead(QList<KyUploadItemInfo>)));
    const auto round = [&](Send send) {
        return Bench::cpuTime([&] {
            send(&sender, count);
        });
    };
    report->ratio(
        Bench::sizedName(QStringLiteral("records in tens / construct, append, emit"), count), {0.5, 0.25},
        [&] {
            return round(sendBatches);
        },
        [&] {
            return round(sendConstructed);
        });
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

#include "bench_records.moc"
