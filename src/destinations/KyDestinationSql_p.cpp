#include "KyDestinationSql_p.h"

#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>
#include <array>

namespace Kyte {
namespace DestinationSql {

const QString DRIVER_NAME = QStringLiteral("QSQLITE");
const QString CHANNEL_TABLE = QStringLiteral("channel_tbl");
const QString GROUP_TABLE = QStringLiteral("group_tbl");
const QString CHANNEL_COLUMN = QStringLiteral("channel_id");
const QString GROUP_COLUMN = QStringLiteral("group_id");
const QString TIMESTAMP_FORMAT = QStringLiteral("yyyy-MM-dd hh:mm:ss");

// Single quotes belong here and in the creation script only: SQLite takes them for identifiers where nothing
// else can stand, and for string literals everywhere else.
const QString DELETE_CHANNELS = QStringLiteral("DELETE FROM 'channel_tbl'");

const QString INSERT_CHANNEL =
    QStringLiteral("INSERT INTO channel_tbl (id, name, posindex, updatetime) VALUES (?, ?, ?, ?)");

// One statement in place of looking the row up, then updating or inserting it. A group is not among the
// updated columns: membership survives a synchronisation, while the position is reset every time, on purpose.
const QString UPSERT_DESTINATION = QStringLiteral(
    "INSERT INTO destination_tbl (id, name, posindex, address, shared, user, password, channel_id, group_id, "
    "updatetime)"
    " VALUES (?, ?, 0, ?, ?, ?, ?, ?, -1, ?)"
    " ON CONFLICT(id) DO UPDATE SET name=excluded.name, posindex=excluded.posindex, address=excluded.address,"
    " shared=excluded.shared, user=excluded.user, password=excluded.password, channel_id=excluded.channel_id,"
    " updatetime=excluded.updatetime");

const QString UPDATE_DESTINATION = QStringLiteral("UPDATE destination_tbl SET name=?, posindex=0, address=?, "
                                                  "shared=?, user=?, password=?, channel_id=?, group_id=?,"
                                                  " updatetime=? WHERE id=?");

const QString SELECT_ODD_GROUPS =
    QStringLiteral("SELECT id, group_id FROM destination_tbl"
                   " WHERE typeof(group_id)<>'integer' OR group_id NOT BETWEEN -2147483648 AND 2147483647");

const QString DELETE_OTHER_DESTINATIONS = QStringLiteral("DELETE FROM destination_tbl WHERE updatetime<>?");

// No order and no further columns: the pairs go into a map from the destination to its channel.
const QString SELECT_ASSIGNMENT = QStringLiteral("SELECT id, channel_id FROM destination_tbl");

static QString categoryTable(const QString &table)
{
    return QStringLiteral("CREATE TABLE IF NOT EXISTS '%1'("
                          "'id' INTEGER PRIMARY KEY NOT NULL,"
                          "'name' TEXT NOT NULL,"
                          "'posindex' INTEGER NOT NULL DEFAULT 0,"
                          "'updatetime' DATETIME,"
                          "CONSTRAINT 'name_UNIQUE' UNIQUE('name'));")
        .arg(table);
}

static QString destinationTable()
{
    return QStringLiteral("CREATE TABLE IF NOT EXISTS 'destination_tbl'("
                          "'id' INTEGER PRIMARY KEY NOT NULL,"
                          "'name' TEXT NOT NULL,"
                          "'posindex' INTEGER NOT NULL DEFAULT 0,"
                          "'address' TEXT,"
                          "'shared' TEXT,"
                          "'user' VARCHAR(255),"
                          "'password' VARCHAR(255),"
                          "'channel_id' INTEGER NOT NULL DEFAULT -1,"
                          "'group_id' INTEGER NOT NULL DEFAULT -1,"
                          "'updatetime' DATETIME,"
                          "CONSTRAINT 'name_UNIQUE' UNIQUE('name'),"
                          "CONSTRAINT 'fk_destination_channel' FOREIGN KEY('channel_id')"
                          " REFERENCES 'channel_tbl'('id'),"
                          "CONSTRAINT 'fk_destination_group1' FOREIGN KEY('group_id')"
                          " REFERENCES 'group_tbl'('id'));");
}

static QString index(const QString &name, const QString &table, const QString &column)
{
    return QStringLiteral("CREATE INDEX IF NOT EXISTS '%1.%2' ON '%1'('%3');").arg(table, name, column);
}

QStringList creationScript()
{
    const QString destinations = QStringLiteral("destination_tbl");
    const QString updateTimeIndex = QStringLiteral("updatetime_idx");
    const QString updateTime = QStringLiteral("updatetime");
    return {
        QStringLiteral("PRAGMA foreign_keys = OFF;"),
        categoryTable(CHANNEL_TABLE),
        index(updateTimeIndex, CHANNEL_TABLE, updateTime),
        categoryTable(GROUP_TABLE),
        index(updateTimeIndex, GROUP_TABLE, updateTime),
        destinationTable(),
        index(QStringLiteral("fk_destination_channel_idx"), destinations, CHANNEL_COLUMN),
        index(QStringLiteral("fk_destination_group1_idx"), destinations, GROUP_COLUMN),
        index(updateTimeIndex, destinations, updateTime),
    };
}

QString limitClause(int maximum)
{
    return maximum > -1 ? QStringLiteral(" LIMIT %1").arg(maximum) : QString();
}

QString selectCategories(const QString &table, int maximum)
{
    return QStringLiteral("SELECT * FROM %1 ORDER BY posindex, name%2").arg(table, limitClause(maximum));
}

QString selectIds(const QString &table)
{
    return QStringLiteral("SELECT id FROM %1 ORDER BY id").arg(table);
}

QString selectNextPosIndex(const QString &table)
{
    return QStringLiteral("SELECT MAX(posindex)+1 FROM %1").arg(table);
}

QString selectAll(const QString &table)
{
    return QStringLiteral("SELECT * FROM %1").arg(table);
}

QString insertCategory(const QString &table)
{
    return QStringLiteral("INSERT INTO %1 (id, name, posindex, updatetime) VALUES (?, ?, ?, ?)").arg(table);
}

QString renameCategory(const QString &table)
{
    return QStringLiteral("UPDATE %1 SET name=? WHERE id=?").arg(table);
}

QString deleteCategory(const QString &table)
{
    return QStringLiteral("DELETE FROM %1 WHERE id=?").arg(table);
}

QString detachDestinations(const QString &column)
{
    return QStringLiteral("UPDATE destination_tbl SET %1=-1 WHERE %1=?").arg(column);
}

QString moveDestination(const QString &column)
{
    return QStringLiteral("UPDATE destination_tbl SET %1=?, updatetime=? WHERE id=?").arg(column);
}

QString selectDestinations(int channelId, int groupId, int maximum)
{
    QStringList conditions;
    if (channelId > -2)
        conditions.append(QStringLiteral("channel_id=%1").arg(channelId));
    if (groupId > -2)
        conditions.append(QStringLiteral("group_id=%1").arg(groupId));
    conditions.append(QStringLiteral("id IN (SELECT id FROM destination_tbl ORDER BY posindex, name%1)")
                          .arg(limitClause(maximum)));
    return QStringLiteral("SELECT * FROM destination_tbl WHERE %1")
        .arg(conditions.join(QLatin1String(" AND ")));
}

QString selectSortedDestinations(bool assignedOnly, int maximum)
{
    // Nearly every destination is in a channel. The index on the channels, which SQLite would choose by
    // itself, only fetches the same rows one by one from all over the file.
    const QString condition = assignedOnly ? QStringLiteral("NOT INDEXED WHERE channel_id > -1 ") : QString();
    return QStringLiteral("SELECT * FROM destination_tbl %1ORDER BY posindex, name%2")
        .arg(condition, limitClause(maximum));
}

int resultCode(const QSqlQuery &query)
{
    return query.lastError().nativeErrorCode().toInt() & 0xff;
}

bool isStorageFailure(const QSqlQuery &query)
{
    static const std::array<int, 6> FAILURES = {Busy, Memory, Io, Corrupt, Full, CannotOpen};
    return std::find(FAILURES.cbegin(), FAILURES.cend(), resultCode(query)) != FAILURES.cend();
}

} // namespace DestinationSql
} // namespace Kyte
