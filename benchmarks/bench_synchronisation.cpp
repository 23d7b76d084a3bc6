#include "KyBench.h"
#include "KyBenchDestinations.h"
#include "KySqlite.h"

#include <KyDestination.h>
#include <KyDestinationSql_p.h>
#include <KyDestinationSync_p.h>

#include <QCoreApplication>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

using namespace Kyte;

// What is compared is the writing of a synchronisation: a connection is opened, the channels are rebuilt,
// every destination is written and the others are swept, the connection is closed. Both sides get the same
// lists in memory. Reading the XML files beforehand and the fingerprint afterwards belong to
// KyDestination::init() too, but nothing can be left out there: they would cost both sides the same and only
// bring the ratio nearer to 1. The cipher is replaced by one that does nothing, for the same reason.

static const char FORMER_STAMP[] = "2020-01-01 00:00:00";
static const char STAMP[] = "2021-02-03 04:05:06";

static const char INSERT_CHANNEL[] =
    "INSERT INTO channel_tbl (id, name, posindex, updatetime) VALUES (?, ?, ?, ?)";
static const char SELECT_GROUP[] = "SELECT group_id FROM destination_tbl WHERE id=?";
static const char UPDATE[] =
    "UPDATE destination_tbl SET name=?, posindex=?, address=?, shared=?, user=?, password=?,"
    " channel_id=?, group_id=?, updatetime=? WHERE id=?";
static const char INSERT[] =
    "INSERT INTO destination_tbl (id, name, posindex, address, shared, user, password,"
    " channel_id, group_id, updatetime) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)";
static const char UPSERT[] =
    "INSERT INTO destination_tbl (id, name, posindex, address, shared, user, password,"
    " channel_id, group_id, updatetime) VALUES (?, ?, 0, ?, ?, ?, ?, ?, -1, ?)"
    " ON CONFLICT(id) DO UPDATE SET name=excluded.name, posindex=excluded.posindex,"
    " address=excluded.address, shared=excluded.shared, user=excluded.user,"
    " password=excluded.password, channel_id=excluded.channel_id,"
    " updatetime=excluded.updatetime";
static const char SWEEP[] = "DELETE FROM destination_tbl WHERE updatetime<>?";

using Synchronisation = void (*)(const QString &path,
                                 const Bench::Configuration &configuration,
                                 const QString &stamp);

/** The library's steps, as in the first synchronisation of KyDestination. */
static void synchronise(const QString &path, const Bench::Configuration &configuration, const QString &stamp)
{
    const QString connection = QStringLiteral("bench");
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(DestinationSql::DRIVER_NAME, connection);
        database.setDatabaseName(path);
        database.open();
        QSqlQuery(database).exec(DestinationSql::DELETE_CHANNELS);
        database.transaction();
        DestinationSync::writeChannels(database, configuration.channels, stamp);
        database.commit();
        database.transaction();
        DestinationSync::writeDestinations(database, configuration.destinations, configuration.assignment,
                                           stamp);
        database.commit();
        database.close();
    }
    QSqlDatabase::removeDatabase(connection);
}

static void
writeChannelsRaw(Bench::Sqlite *database, const Bench::Configuration &configuration, const QString &stamp)
{
    database->execute("DELETE FROM channel_tbl");
    Bench::SqliteStatement insert(*database, INSERT_CHANNEL);
    for (const KyChannelConfig::ChannelInfo &channel : configuration.channels) {
        insert.bind(1, channel.id);
        insert.bind(2, channel.name);
        insert.bind(3, channel.index);
        insert.bind(4, stamp);
        insert.step();
        insert.reset();
    }
}

static void sweepRaw(const Bench::Sqlite &database, const QString &stamp)
{
    Bench::SqliteStatement sweep(database, SWEEP);
    sweep.bind(1, stamp);
    sweep.step();
}

/** Select, then update or insert, row by row, in three statements that are prepared once. */
static void
synchroniseRaw(const QString &path, const Bench::Configuration &configuration, const QString &stamp)
{
    Bench::Sqlite database(path);
    database.execute("BEGIN");
    writeChannelsRaw(&database, configuration, stamp);
    Bench::SqliteStatement select(database, SELECT_GROUP);
    Bench::SqliteStatement update(database, UPDATE);
    Bench::SqliteStatement insert(database, INSERT);
    for (const KyConfig::Destination &destination : configuration.destinations) {
        select.bind(1, destination.id);
        const bool exists = select.step();
        const int groupId = exists ? select.integer(0) : -1;
        select.reset();

        Bench::SqliteStatement &statement = exists ? update : insert;
        int number = 1;
        if (!exists)
            statement.bind(number++, destination.id);
        statement.bind(number++, destination.name);
        statement.bind(number++, 0);
        statement.bind(number++, destination.address);
        statement.bind(number++, destination.sharedFolder);
        statement.bind(number++, destination.user);
        statement.bind(number++, destination.password);
        statement.bind(number++, configuration.assignment.value(destination.id, -1));
        statement.bind(number++, groupId);
        statement.bind(number++, stamp);
        if (exists)
            statement.bind(number++, destination.id);
        statement.step();
        statement.reset();
    }
    sweepRaw(database, stamp);
    database.execute("COMMIT");
}

/** The same in one statement a row. */
static void upsertRaw(const QString &path, const Bench::Configuration &configuration, const QString &stamp)
{
    Bench::Sqlite database(path);
    database.execute("BEGIN");
    writeChannelsRaw(&database, configuration, stamp);
    Bench::SqliteStatement upsert(database, UPSERT);
    for (const KyConfig::Destination &destination : configuration.destinations) {
        upsert.bind(1, destination.id);
        upsert.bind(2, destination.name);
        upsert.bind(3, destination.address);
        upsert.bind(4, destination.sharedFolder);
        upsert.bind(5, destination.user);
        upsert.bind(6, destination.password);
        upsert.bind(7, configuration.assignment.value(destination.id, -1));
        upsert.bind(8, stamp);
        upsert.step();
        upsert.reset();
    }
    sweepRaw(database, stamp);
    database.execute("COMMIT");
}

static void execute(const QSqlDatabase &database, const char *statement, const QVariantList &values)
{
    QSqlQuery query(database);
    query.prepare(QLatin1String(statement));
    for (const QVariant &value : values)
        query.addBindValue(value);
    query.exec();
}

/** QtSql used in the plain way, which prepares each statement where it is needed. */
static void synchronisePreparingEachRow(const QString &path,
                                        const Bench::Configuration &configuration,
                                        const QString &stamp)
{
    const QString connection = QStringLiteral("bench");
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(DestinationSql::DRIVER_NAME, connection);
        database.setDatabaseName(path);
        database.open();
        database.transaction();
        QSqlQuery(database).exec(QStringLiteral("DELETE FROM channel_tbl"));
        for (const KyChannelConfig::ChannelInfo &channel : configuration.channels)
            execute(database, INSERT_CHANNEL, {channel.id, channel.name, channel.index, stamp});
        for (const KyConfig::Destination &destination : configuration.destinations) {
            const int channelId = configuration.assignment.value(destination.id, -1);
            QSqlQuery select(database);
            select.prepare(QLatin1String(SELECT_GROUP));
            select.addBindValue(destination.id);
            if (select.exec() && select.next()) {
                execute(database, UPDATE,
                        {destination.name, 0, destination.address, destination.sharedFolder, destination.user,
                         destination.password, channelId, select.value(0).toInt(), stamp, destination.id});
            } else {
                execute(database, INSERT,
                        {destination.id, destination.name, 0, destination.address, destination.sharedFolder,
                         destination.user, destination.password, channelId, -1, stamp});
            }
        }
        execute(database, SWEEP, {stamp});
        database.commit();
        database.close();
    }
    QSqlDatabase::removeDatabase(connection);
}

/** The databases that a synchronisation starts from, and what it is to make of them. */
class Scene
{
public:
    Scene(const QString &startFile, const Bench::Configuration &configuration)
        : m_startFile(startFile)
        , m_configuration(configuration)
    {
    }

    /** A round of one side: the time that \a side takes on a fresh copy of the start. */
    Bench::Report::Side round(Synchronisation side) const
    {
        return [this, side] {
            copyStart();
            return Bench::cpuTime([&] {
                side(workFile(), m_configuration, QLatin1String(STAMP));
            });
        };
    }

    /** All rows that \a side leaves behind. */
    QByteArray result(Synchronisation side) const
    {
        round(side)();
        return Bench::dump(workFile());
    }

private:
    QString workFile() const
    {
        return m_startFile + QStringLiteral(".work");
    }

    void copyStart() const
    {
        QFile::remove(workFile());
        if (!QFile::copy(m_startFile, workFile()))
            qFatal("The database cannot be copied.");
    }

    QString m_startFile;
    Bench::Configuration m_configuration;
};

static void measureFirst(Bench::Report *report, const Scene &scene, int count)
{
    const QByteArray rows = scene.result(synchronise);
    Bench::requireEqual(rows == scene.result(synchroniseRaw), "rows");
    Bench::requireEqual(rows == scene.result(synchronisePreparingEachRow), "rows");
    report->ratio(Bench::sizedName(QStringLiteral("first synchronisation / raw sqlite3"), count), {1.8, 1.3},
                  scene.round(synchronise), scene.round(synchroniseRaw));
    report->ratio(Bench::sizedName(QStringLiteral("first synchronisation / QtSql preparing each row"), count),
                  {0.3, 0.22}, scene.round(synchronise), scene.round(synchronisePreparingEachRow));
}

static void measureSecond(Bench::Report *report, const Scene &scene, int count)
{
    const QByteArray rows = scene.result(synchronise);
    Bench::requireEqual(rows == scene.result(synchroniseRaw), "rows");
    Bench::requireEqual(rows == scene.result(upsertRaw), "rows");
    report->ratio(Bench::sizedName(QStringLiteral("second synchronisation / raw sqlite3 upsert"), count),
                  {1.8, 1.3}, scene.round(synchronise), scene.round(upsertRaw));
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (KyDestination::encryptString(QStringLiteral("plain")) != QLatin1String("plain"))
        qFatal("The cipher is not replaced.");

    QTemporaryDir folder;
    Bench::Report report;
    for (int count : Bench::DESTINATION_COUNTS) {
        Bench::Configuration configuration(count);
        const QString emptyFile = folder.filePath(QStringLiteral("empty%1").arg(count));
        const QStringList script = KyDestination::getDataBaseCreationScript();
        for (const QString &statement : script)
            Bench::Sqlite(emptyFile).execute(statement.toUtf8().constData());
        measureFirst(&report, Scene(emptyFile, configuration), count);

        const QString formerFile = folder.filePath(QStringLiteral("former%1").arg(count));
        QFile::copy(emptyFile, formerFile);
        synchroniseRaw(formerFile, configuration, QLatin1String(FORMER_STAMP));
        Bench::Sqlite(formerFile).execute("UPDATE destination_tbl SET group_id = id % 7");
        for (int index = count - 1; index >= 0; index -= 10)
            configuration.destinations.removeAt(index);
        measureSecond(&report, Scene(formerFile, configuration), count);
    }
    return report.finish(QCoreApplication::arguments());
}
