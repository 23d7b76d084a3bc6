#include "KyBench.h"
#include "KyBenchDestinations.h"

#include <KyDestination.h>

#include <QCoreApplication>
#include <QTextStream>

namespace Kyte {

// A program of its own, so that no other benchmark has left a large heap behind. The rows were put into the
// database without passing through this process.

/** Keeps nothing of what it is given. */
class Receiver : public QObject
{
    Q_OBJECT

public:
    int count = 0;

public slots:
    void onItemsHasRead(const QList<KyUploadItemInfo> &items)
    {
        count += items.size();
    }
};

static double peakGrowth(KyDestination *destination)
{
    destination->reconnectDatabase(); // drops the pages that an earlier round has cached
    Bench::resetPeakMemory();
    const double before = Bench::residentMemory();
    destination->startToRead();
    return Bench::peakMemory() - before;
}

static void measure(Bench::Report *report)
{
    const int count = 100000;
    const int channelCount = 1000;
    const Bench::Environment environment(channelCount);
    KyDestination destination;
    destination.init();
    environment.fillDatabase(count);

    Receiver receiver;
    QObject::connect(&destination, SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)), &receiver,
                     SLOT(onItemsHasRead(QList<KyUploadItemInfo>)));
    peakGrowth(&destination);
    Bench::requireEqual(receiver.count == channelCount + count, "number of records");
    report->value(Bench::sizedName(QStringLiteral("peak memory growth of startToRead"), count),
                  QStringLiteral("MiB"), {8, 5}, [&] {
                      return peakGrowth(&destination);
                  });
}

} // namespace Kyte

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    Kyte::Bench::Report report;
    if (Kyte::Bench::resetPeakMemory())
        Kyte::measure(&report);
    else
        QTextStream(stderr) << "This system does not tell the peak memory of a part of a process.\n";
    return report.finish(QCoreApplication::arguments());
}

#include "bench_reading_memory.moc"
