#pragma once

#include <KyChannelConfig.h>
#include <KyConfig.h>
#include <KyUploadItemInfo.h>

#include <QList>
#include <QMap>
#include <QTemporaryDir>

namespace Kyte {
namespace Bench {

/** The sizes that everything about destinations is measured at. A channel has a hundred destinations. */
extern const QList<int> DESTINATION_COUNTS;

/** "NAME, 10,000 destinations": the name of a row that is measured at several sizes. */
QString sizedName(const QString &name, int count);

/** All that a record says, for a comparison. */
QString toText(const KyUploadItemInfo &record);

/** The input of a synchronisation, in memory. */
struct Configuration
{
    explicit Configuration(int destinationCount);

    QList<KyChannelConfig::ChannelInfo> channels;
    QList<KyConfig::Destination> destinations;
    QMap<int, int> assignment; ///< destination id to channel id
};

/**
 * A product environment in a temporary folder: a configuration that lists no destinations, so that reading it
 * takes no time worth mentioning, and channel files. KYTE_CONFIG_FILE names it.
 */
class Environment
{
    Q_DISABLE_COPY(Environment)

public:
    explicit Environment(int channelCount);

    QString channelDir() const;
    QString databaseFile() const;
    QString mainFile() const;
    /**
     * Puts destinations into the database, which init() has made, in the channels by turns. The rows are made
     * by SQLite itself: they pass through this process without a trace in its heap.
     */
    void fillDatabase(int destinationCount) const;

private:
    QTemporaryDir m_folder;
    int m_channelCount = 0;
};

} // namespace Bench
} // namespace Kyte
