#include "KyDestinationSync_p.h"

#include "KyDestination.h"
#include "KyDestinationSql_p.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

namespace Kyte {
namespace DestinationSync {

/**
 * The groups that are no integers of 32 bits, by destination, as what QVariant makes of them: -1 unless
 * they convert.
 */
static QHash<qint64, int> readOddGroups(const QSqlDatabase &database)
{
    QHash<qint64, int> groups; // an id of 64 bits, cut off, would be taken for another destination's
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(DestinationSql::SELECT_ODD_GROUPS))
        return groups;
    while (query.next()) {
        bool ok = false;
        const int group = query.value(1).toInt(&ok);
        groups.insert(query.value(0).toLongLong(), ok ? group : -1);
    }
    return groups;
}

void writeChannels(const QSqlDatabase &database,
                   const QList<KyChannelConfig::ChannelInfo> &channels,
                   const QString &now)
{
    QSqlQuery query(database);
    query.prepare(DestinationSql::INSERT_CHANNEL);
    query.bindValue(3, now);
    for (const KyChannelConfig::ChannelInfo &channel : channels) {
        query.bindValue(0, channel.id);
        query.bindValue(1, channel.name);
        query.bindValue(2, channel.index);
        if (!query.exec() && DestinationSql::isStorageFailure(query))
            return;
    }
}

/**
 * Binds what both statements set from \a destination, beginning at \a position; answers the position
 * behind it.
 */
static int
bindDestination(QSqlQuery *query, int position, const KyConfig::Destination &destination, int channelId)
{
    query->bindValue(position++, destination.name);
    query->bindValue(position++, destination.address);
    query->bindValue(position++, destination.sharedFolder);
    query->bindValue(position++, destination.user);
    query->bindValue(position++, KyDestination::encryptString(destination.password));
    query->bindValue(position++, channelId);
    return position;
}

bool writeDestinations(const QSqlDatabase &database,
                       const QList<KyConfig::Destination> &destinations,
                       const QMap<int, int> &channels,
                       const QString &stamp)
{
    const QHash<qint64, int> oddGroups = readOddGroups(database);
    QSqlQuery upsert(database);
    upsert.prepare(DestinationSql::UPSERT_DESTINATION);
    upsert.bindValue(7, stamp);
    QSqlQuery update(database);
    update.prepare(DestinationSql::UPDATE_DESTINATION);

    for (const KyConfig::Destination &destination : destinations) {
        const int channelId = channels.value(destination.id, -1);
        const auto oddGroup = oddGroups.constFind(destination.id);
        const bool isOdd = oddGroup != oddGroups.cend();
        QSqlQuery &query = isOdd ? update : upsert;
        if (isOdd) {
            const int position = bindDestination(&query, 0, destination, channelId);
            query.bindValue(position, *oddGroup);
            query.bindValue(position + 1, stamp);
            query.bindValue(position + 2, destination.id);
        } else {
            query.bindValue(0, destination.id);
            bindDestination(&query, 1, destination, channelId);
        }
        // Two destinations that swap their names fail here both, and are swept below: the product has always
        // behaved so, and the next synchronisation brings them back.
        if (!query.exec() && DestinationSql::isStorageFailure(query))
            return false;
    }

    QSqlQuery sweep(database);
    sweep.prepare(DestinationSql::DELETE_OTHER_DESTINATIONS);
    sweep.bindValue(0, stamp);
    return sweep.exec() || !DestinationSql::isStorageFailure(sweep);
}

} // namespace DestinationSync
} // namespace Kyte
