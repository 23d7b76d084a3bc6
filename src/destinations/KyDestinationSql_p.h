#pragma once

#include <QString>
#include <QStringList>

class QSqlQuery;

namespace Kyte {

/**
 * Names and statements of the destination database. Every text is complete SQL; values are bound where a "?"
 * stands.
 */
namespace DestinationSql {

extern const QString DRIVER_NAME;
extern const QString CHANNEL_TABLE;
extern const QString GROUP_TABLE;
extern const QString CHANNEL_COLUMN; ///< of the destination table
extern const QString GROUP_COLUMN; ///< of the destination table
extern const QString TIMESTAMP_FORMAT;

extern const QString DELETE_CHANNELS;
extern const QString INSERT_CHANNEL; ///< id, name, posindex, updatetime
extern const QString UPSERT_DESTINATION; ///< id, name, address, shared, user, password, channel, updatetime
extern const QString UPDATE_DESTINATION; ///< as above without the id, then group, updatetime and the id
extern const QString SELECT_ODD_GROUPS; ///< id and group_id where that is no integer of 32 bits
extern const QString DELETE_OTHER_DESTINATIONS; ///< updatetime
extern const QString SELECT_ASSIGNMENT; ///< id and channel_id of every destination

/** The statements that create what is missing, in their order. */
QStringList creationScript();

/** " LIMIT n", or nothing when \a maximum is negative. 0 means no rows. */
QString limitClause(int maximum);

QString selectCategories(const QString &table, int maximum);
QString selectIds(const QString &table);
QString selectNextPosIndex(const QString &table);
QString selectAll(const QString &table);
QString insertCategory(const QString &table); ///< id, name, posindex, updatetime
QString renameCategory(const QString &table); ///< name, id
QString deleteCategory(const QString &table); ///< id
QString detachDestinations(const QString &column); ///< category
QString moveDestination(const QString &column); ///< category, updatetime, id

/**
 * The destinations of one channel and group; -2 or less in \a channelId or \a groupId means any. The limit
 * picks the first destinations of the whole table by position and name, and the filter applies to those; the
 * rows themselves come in no order.
 */
QString selectDestinations(int channelId, int groupId, int maximum);
/** All destinations by position and name; with \a assignedOnly those that are in a channel. */
QString selectSortedDestinations(bool assignedOnly, int maximum);

/** Those of SQLite's result codes that are told apart. */
enum ResultCode { Busy = 5, Memory = 7, ReadOnly = 8, Io = 10, Corrupt = 11, Full = 13, CannotOpen = 14 };
/** The result code of what \a query did last, without its extension. */
int resultCode(const QSqlQuery &query);

/**
 * Whether \a query failed because the database cannot be written, as opposed to a row that it refuses. SQLite
 * may end the transaction by itself then, after which further statements would be committed one by one; and
 * while another process writes, every further statement would wait for it anew.
 */
bool isStorageFailure(const QSqlQuery &query);

} // namespace DestinationSql
} // namespace Kyte
