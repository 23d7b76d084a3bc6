#pragma once

#include "KyChannelConfig.h"

#include <KyConfig.h>

#include <QList>
#include <QMap>
#include <QString>

class QSqlDatabase;

namespace Kyte {

/**
 * The writing half of the first synchronisation. Each function expects an open connection with a
 * transaction begun.
 */
namespace DestinationSync {

/**
 * Writes \a channels, stamped \a now. A channel that cannot be written, its name being taken, is left out.
 */
void writeChannels(const QSqlDatabase &database,
                   const QList<KyChannelConfig::ChannelInfo> &channels,
                   const QString &now);

/**
 * Makes the destination table list exactly \a destinations: known ones keep their group, all others of the
 * table are swept by their stamp being another than \a stamp. A destination that cannot be written, its name
 * being taken, is left out, and swept. \a channels maps destination ids to channel ids.
 *
 * False when the disk is full or fails. What was written is incomplete then and has to be rolled back.
 */
bool writeDestinations(const QSqlDatabase &database,
                       const QList<KyConfig::Destination> &destinations,
                       const QMap<int, int> &channels,
                       const QString &stamp);

} // namespace DestinationSync
} // namespace Kyte
