#include "KyTestMain.h"

#include "KyDestinationTest.h"

#include <KyDestinationSql_p.h>
#include <KyDestinationSync_p.h>

#include <QSqlDatabase>
#include <QSqlQuery>

#include <memory>

using namespace Kyte;
using namespace Kyte::Test;

static const QString CONNECTION = QStringLiteral("synchronisation");
static const QString STAMP = QStringLiteral("2020-01-01 00:00:00");

static QList<KyConfig::Destination> configured(int count)
{
    QList<KyConfig::Destination> destinations;
    for (const Destination &source : makeDestinations(1, count)) {
        KyConfig::Destination destination;
        destination.id = source.id;
        destination.name = source.name;
        destination.address = source.address;
        destination.sharedFolder = source.shared;
        destination.user = source.user;
        destination.password = source.password;
        destinations.append(destination);
    }
    return destinations;
}

class tst_KyDestinationSync : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void destinations_areWritten();
    void channels_areWritten();
    void refusedRow_isNoFailure();
    void lockedDatabase_isAFailureAtOnce();
    void lockedDatabase_endsTheChannels();
#ifdef Q_OS_UNIX
    void fullDisk_isAFailure();
#endif

private:
    QSqlDatabase database() const;
    QString file() const;
    QStringList values(const QString &sql) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_KyDestinationSync::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QSqlDatabase database = QSqlDatabase::addDatabase(DestinationSql::DRIVER_NAME, CONNECTION);
    database.setDatabaseName(file());
    database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=0"));
    QVERIFY(database.open());
    QSqlQuery(database).exec(QStringLiteral("PRAGMA synchronous = OFF"));
    for (const QString &statement : DestinationSql::creationScript())
        QVERIFY(QSqlQuery(database).exec(statement));
    QVERIFY(database.transaction());
}

void tst_KyDestinationSync::cleanup()
{
    QSqlDatabase::removeDatabase(CONNECTION);
    m_folder.reset();
}

QSqlDatabase tst_KyDestinationSync::database() const
{
    return QSqlDatabase::database(CONNECTION, false);
}

QString tst_KyDestinationSync::file() const
{
    return m_folder->filePath(QStringLiteral("database"));
}

QStringList tst_KyDestinationSync::values(const QString &sql) const
{
    return queryRows(file(), sql);
}

void tst_KyDestinationSync::destinations_areWritten()
{
    QVERIFY(DestinationSync::writeDestinations(database(), configured(2), {{2, 5}}, STAMP));
    QVERIFY(database().commit());
    QCOMPARE(values(QStringLiteral(
                 "SELECT id, name, posindex, address, shared, user, channel_id, group_id, updatetime"
                 " FROM destination_tbl ORDER BY id")),
             QStringList({QStringLiteral("1|Destination 1|0|10.0.0.1|share1|user1|-1|-1|") + STAMP,
                          QStringLiteral("2|Destination 2|0|10.0.0.2|share2|user2|5|-1|") + STAMP}));

    QVERIFY(database().transaction());
    QVERIFY(DestinationSync::writeDestinations(database(), configured(1), {}, QStringLiteral("later")));
    QVERIFY(database().commit());
    QCOMPARE(values(QStringLiteral("SELECT id, updatetime FROM destination_tbl")),
             QStringList({QStringLiteral("1|later")}));
}

void tst_KyDestinationSync::channels_areWritten()
{
    DestinationSync::writeChannels(database(),
                                   {{3, QStringLiteral("Three"), 1},
                                    {3, QStringLiteral("Twin"), 2},
                                    {4, QStringLiteral("Three"), 3},
                                    {5, QStringLiteral("Five"), -1}},
                                   STAMP);
    QVERIFY(database().commit());
    QCOMPARE(values(QStringLiteral("SELECT * FROM channel_tbl ORDER BY id")),
             QStringList({QStringLiteral("3|Three|1|") + STAMP, QStringLiteral("5|Five|-1|") + STAMP}));
}

void tst_KyDestinationSync::refusedRow_isNoFailure()
{
    QList<KyConfig::Destination> destinations = configured(3);
    destinations[1].name = destinations[0].name;
    QVERIFY(DestinationSync::writeDestinations(database(), destinations, {}, STAMP));
    QVERIFY(database().commit());
    QCOMPARE(values(QStringLiteral("SELECT id FROM destination_tbl ORDER BY id")),
             QStringList({QStringLiteral("1"), QStringLiteral("3")}));
}

void tst_KyDestinationSync::lockedDatabase_isAFailureAtOnce()
{
    const QString other = QStringLiteral("other");
    QVERIFY(database().rollback());
    QVERIFY(QSqlQuery(database()).exec(QStringLiteral("PRAGMA busy_timeout = 300")));
    QVERIFY(database().transaction());
    {
        QSqlDatabase writer = QSqlDatabase::addDatabase(DestinationSql::DRIVER_NAME, other);
        writer.setDatabaseName(file());
        QVERIFY(writer.open());
        QVERIFY(QSqlQuery(writer).exec(QStringLiteral("BEGIN IMMEDIATE")));
        // Passed over like a refused row, the destinations that met the lock would be swept once it is gone.
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!DestinationSync::writeDestinations(database(), configured(1000), {}, STAMP));
        QVERIFY(timer.elapsed() < 60000); // once for each destination would be five minutes
    }
    QSqlDatabase::removeDatabase(other);
    QVERIFY(database().rollback());
    QVERIFY(database().transaction());
    QVERIFY(DestinationSync::writeDestinations(database(), configured(3), {}, STAMP));
    QVERIFY(database().commit());
}

void tst_KyDestinationSync::lockedDatabase_endsTheChannels()
{
    const QString other = QStringLiteral("other");
    QList<KyChannelConfig::ChannelInfo> channels;
    for (int id = 0; id < 1000; ++id)
        channels.append({id, QString::number(id), id});
    QVERIFY(database().commit());
    QVERIFY(QSqlQuery(database()).exec(QStringLiteral("PRAGMA busy_timeout = 300")));
    QVERIFY(database().transaction());
    {
        QSqlDatabase writer = QSqlDatabase::addDatabase(DestinationSql::DRIVER_NAME, other);
        writer.setDatabaseName(file());
        QVERIFY(writer.open());
        QVERIFY(QSqlQuery(writer).exec(QStringLiteral("BEGIN IMMEDIATE")));
        QElapsedTimer timer;
        timer.start();
        DestinationSync::writeChannels(database(), channels, STAMP);
        QVERIFY(timer.elapsed() < 60000); // once for each channel would be five minutes
    }
    QSqlDatabase::removeDatabase(other);
    QVERIFY(database().commit());
    QCOMPARE(values(QStringLiteral("SELECT COUNT(*) FROM channel_tbl")), QStringList({QStringLiteral("0")}));
}

#ifdef Q_OS_UNIX
void tst_KyDestinationSync::fullDisk_isAFailure()
{
    QVERIFY(DestinationSync::writeDestinations(database(), configured(3000), {}, STAMP));
    QVERIFY(database().commit());
    QList<KyConfig::Destination> destinations = configured(3000);
    for (KyConfig::Destination &destination : destinations)
        destination.address = QString(500, QLatin1Char('a'));
    QVERIFY(database().transaction());
    {
        const FileSizeLimit limit(100 * 1024); // which the journal exceeds on the way
        QVERIFY(!DestinationSync::writeDestinations(database(), destinations, {}, QStringLiteral("later")));
    }
    database().rollback(); // fails where SQLite has done so by itself
    QCOMPARE(values(QStringLiteral("SELECT COUNT(*) FROM destination_tbl WHERE updatetime='%1'").arg(STAMP)),
             QStringList({QStringLiteral("3000")}));
}
#endif

KYTE_TEST_MAIN(tst_KyDestinationSync)
#include "tst_KyDestinationSync.moc"
