#include "KyTestMain.h"

#include "KyDestinationTest.h"

#include <KyDestinationSql_p.h>

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <limits>

using namespace Kyte;
using namespace Kyte::Test;

static const QString CONNECTION = QStringLiteral("statements");

class tst_KyDestinationSql : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void names_areTheAgreedOnes();
    void limit_isACondition_data();
    void limit_isACondition();
    void statement_isExact_data();
    void statement_isExact();
    void destinations_areSelectedByConditions_data();
    void destinations_areSelectedByConditions();
    void statement_canBePrepared_data();
    void statement_canBePrepared();
    void singleQuotes_standInTheSchemaAndOneStatementOnly();
    void script_canBeRepeated();
    void deletion_isOfTheTable();
    void oddGroups_areFound();
    void upsert_keepsTheGroup();
    void storageFailure_isNoRefusedRow();
#ifdef Q_OS_UNIX
    void storageFailure_isAFullDisk();
#endif

private:
    /** An open connection to an empty database with the schema. */
    QSqlDatabase openDatabase();

    QTemporaryDir m_folder;
};

void tst_KyDestinationSql::cleanup()
{
    QSqlDatabase::removeDatabase(CONNECTION);
    QFile::remove(m_folder.filePath(QStringLiteral("database")));
}

QSqlDatabase tst_KyDestinationSql::openDatabase()
{
    QSqlDatabase database = QSqlDatabase::addDatabase(DestinationSql::DRIVER_NAME, CONNECTION);
    database.setDatabaseName(m_folder.filePath(QStringLiteral("database")));
    if (!database.open())
        qFatal("%s", qPrintable(database.lastError().text()));
    QSqlQuery(database).exec(QStringLiteral("PRAGMA synchronous = OFF"));
    for (const QString &statement : DestinationSql::creationScript())
        QSqlQuery(database).exec(statement);
    return database;
}

void tst_KyDestinationSql::names_areTheAgreedOnes()
{
    QCOMPARE(DestinationSql::DRIVER_NAME, QStringLiteral("QSQLITE"));
    QCOMPARE(DestinationSql::CHANNEL_TABLE, QStringLiteral("channel_tbl"));
    QCOMPARE(DestinationSql::GROUP_TABLE, QStringLiteral("group_tbl"));
    QCOMPARE(DestinationSql::CHANNEL_COLUMN, QStringLiteral("channel_id"));
    QCOMPARE(DestinationSql::GROUP_COLUMN, QStringLiteral("group_id"));
    QCOMPARE(DestinationSql::TIMESTAMP_FORMAT, QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

void tst_KyDestinationSql::limit_isACondition_data()
{
    QTest::addColumn<int>("maximum");
    QTest::addColumn<QString>("expected");
    QTest::newRow("none") << -1 << QString();
    QTest::newRow("negative") << std::numeric_limits<int>::min() << QString();
    QTest::newRow("no rows") << 0 << QStringLiteral(" LIMIT 0");
    QTest::newRow("one") << 1 << QStringLiteral(" LIMIT 1");
    QTest::newRow("most") << std::numeric_limits<int>::max() << QStringLiteral(" LIMIT 2147483647");
}

void tst_KyDestinationSql::limit_isACondition()
{
    QFETCH(int, maximum);
    QFETCH(QString, expected);
    QCOMPARE(DestinationSql::limitClause(maximum), expected);
}

void tst_KyDestinationSql::statement_isExact_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("expected");
    const QString channels = DestinationSql::CHANNEL_TABLE;
    const QString groups = DestinationSql::GROUP_TABLE;
    QTest::newRow("delete channels") << DestinationSql::DELETE_CHANNELS
                                     << QStringLiteral("DELETE FROM 'channel_tbl'");
    QTest::newRow("insert channel")
        << DestinationSql::INSERT_CHANNEL
        << QStringLiteral("INSERT INTO channel_tbl (id, name, posindex, updatetime) VALUES (?, ?, ?, ?)");
    QTest::newRow("sweep") << DestinationSql::DELETE_OTHER_DESTINATIONS
                           << QStringLiteral("DELETE FROM destination_tbl WHERE updatetime<>?");
    QTest::newRow("channels") << DestinationSql::selectCategories(channels, -1)
                              << QStringLiteral("SELECT * FROM channel_tbl ORDER BY posindex, name");
    QTest::newRow("groups, limited") << DestinationSql::selectCategories(
        groups, 3) << QStringLiteral("SELECT * FROM group_tbl ORDER BY posindex, name LIMIT 3");
    QTest::newRow("ids") << DestinationSql::selectIds(groups)
                         << QStringLiteral("SELECT id FROM group_tbl ORDER BY id");
    QTest::newRow("position") << DestinationSql::selectNextPosIndex(channels)
                              << QStringLiteral("SELECT MAX(posindex)+1 FROM channel_tbl");
    QTest::newRow("all") << DestinationSql::selectAll(groups) << QStringLiteral("SELECT * FROM group_tbl");
    QTest::newRow("insert")
        << DestinationSql::insertCategory(groups)
        << QStringLiteral("INSERT INTO group_tbl (id, name, posindex, updatetime) VALUES (?, ?, ?, ?)");
    QTest::newRow("rename") << DestinationSql::renameCategory(channels)
                            << QStringLiteral("UPDATE channel_tbl SET name=? WHERE id=?");
    QTest::newRow("delete") << DestinationSql::deleteCategory(groups)
                            << QStringLiteral("DELETE FROM group_tbl WHERE id=?");
    QTest::newRow("detach") << DestinationSql::detachDestinations(DestinationSql::GROUP_COLUMN)
                            << QStringLiteral("UPDATE destination_tbl SET group_id=-1 WHERE group_id=?");
    QTest::newRow("move") << DestinationSql::moveDestination(DestinationSql::CHANNEL_COLUMN)
                          << QStringLiteral(
                                 "UPDATE destination_tbl SET channel_id=?, updatetime=? WHERE id=?");
    QTest::newRow("sorted") << DestinationSql::selectSortedDestinations(
        false, 1) << QStringLiteral("SELECT * FROM destination_tbl ORDER BY posindex, name LIMIT 1");
    QTest::newRow("sorted, in a channel")
        << DestinationSql::selectSortedDestinations(true, -1)
        << QStringLiteral(
               "SELECT * FROM destination_tbl NOT INDEXED WHERE channel_id > -1 ORDER BY posindex, name");
}

void tst_KyDestinationSql::statement_isExact()
{
    QFETCH(QString, statement);
    QFETCH(QString, expected);
    QCOMPARE(statement, expected);
}

void tst_KyDestinationSql::destinations_areSelectedByConditions_data()
{
    QTest::addColumn<int>("channel");
    QTest::addColumn<int>("group");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<QString>("conditions");
    const QString all = QStringLiteral("id IN (SELECT id FROM destination_tbl ORDER BY posindex, name)");
    const QString five =
        QStringLiteral("id IN (SELECT id FROM destination_tbl ORDER BY posindex, name LIMIT 5)");
    QTest::newRow("any") << -2 << -2 << -1 << all;
    QTest::newRow("any, far") << -9 << std::numeric_limits<int>::min() << -1 << all;
    QTest::newRow("limited") << -2 << -2 << 5 << five;
    QTest::newRow("channel") << 3 << -2 << -1 << QStringLiteral("channel_id=3 AND ") + all;
    QTest::newRow("no channel") << -1 << -2 << -1 << QStringLiteral("channel_id=-1 AND ") + all;
    QTest::newRow("group") << -2 << 0 << 5 << QStringLiteral("group_id=0 AND ") + five;
    QTest::newRow("both") << 0 << -1 << 5 << QStringLiteral("channel_id=0 AND group_id=-1 AND ") + five;
}

void tst_KyDestinationSql::destinations_areSelectedByConditions()
{
    QFETCH(int, channel);
    QFETCH(int, group);
    QFETCH(int, maximum);
    QFETCH(QString, conditions);
    QCOMPARE(DestinationSql::selectDestinations(channel, group, maximum),
             QStringLiteral("SELECT * FROM destination_tbl WHERE ") + conditions);
}

void tst_KyDestinationSql::statement_canBePrepared_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<int>("values");
    const QString table = DestinationSql::GROUP_TABLE;
    const QString column = DestinationSql::CHANNEL_COLUMN;
    QTest::newRow("DELETE_CHANNELS") << DestinationSql::DELETE_CHANNELS << 0;
    QTest::newRow("INSERT_CHANNEL") << DestinationSql::INSERT_CHANNEL << 4;
    QTest::newRow("UPSERT_DESTINATION") << DestinationSql::UPSERT_DESTINATION << 8;
    QTest::newRow("UPDATE_DESTINATION") << DestinationSql::UPDATE_DESTINATION << 9;
    QTest::newRow("SELECT_ODD_GROUPS") << DestinationSql::SELECT_ODD_GROUPS << 0;
    QTest::newRow("DELETE_OTHER_DESTINATIONS") << DestinationSql::DELETE_OTHER_DESTINATIONS << 1;
    QTest::newRow("SELECT_ASSIGNMENT") << DestinationSql::SELECT_ASSIGNMENT << 0;
    QTest::newRow("selectCategories") << DestinationSql::selectCategories(table, 1) << 0;
    QTest::newRow("selectIds") << DestinationSql::selectIds(table) << 0;
    QTest::newRow("selectNextPosIndex") << DestinationSql::selectNextPosIndex(table) << 0;
    QTest::newRow("selectAll") << DestinationSql::selectAll(table) << 0;
    QTest::newRow("insertCategory") << DestinationSql::insertCategory(table) << 4;
    QTest::newRow("renameCategory") << DestinationSql::renameCategory(table) << 2;
    QTest::newRow("deleteCategory") << DestinationSql::deleteCategory(table) << 1;
    QTest::newRow("detachDestinations") << DestinationSql::detachDestinations(column) << 1;
    QTest::newRow("moveDestination") << DestinationSql::moveDestination(column) << 3;
    QTest::newRow("selectDestinations") << DestinationSql::selectDestinations(1, 1, 1) << 0;
    QTest::newRow("selectSortedDestinations") << DestinationSql::selectSortedDestinations(true, 1) << 0;
}

void tst_KyDestinationSql::statement_canBePrepared()
{
    QFETCH(QString, statement);
    QFETCH(int, values);
    QSqlQuery query(openDatabase());
    QVERIFY2(query.prepare(statement), qPrintable(query.lastError().text()));
    for (int i = 0; i < values; ++i)
        query.addBindValue(i);
    QVERIFY2(query.exec(), qPrintable(query.lastError().text())); // not with a value too many or too few
}

void tst_KyDestinationSql::singleQuotes_standInTheSchemaAndOneStatementOnly()
{
    // Elsewhere they would make a text of a name. 'integer' is one.
    const QString quote = QStringLiteral("'");
    QVERIFY(DestinationSql::DELETE_CHANNELS.contains(quote));
    QVERIFY(DestinationSql::SELECT_ODD_GROUPS.contains(QStringLiteral("'integer'")));
    QCOMPARE(DestinationSql::SELECT_ODD_GROUPS.count(quote), 2);
    const QStringList others = {DestinationSql::INSERT_CHANNEL,
                                DestinationSql::UPSERT_DESTINATION,
                                DestinationSql::UPDATE_DESTINATION,
                                DestinationSql::DELETE_OTHER_DESTINATIONS,
                                DestinationSql::SELECT_ASSIGNMENT,
                                DestinationSql::selectCategories(DestinationSql::GROUP_TABLE, 1),
                                DestinationSql::selectIds(DestinationSql::GROUP_TABLE),
                                DestinationSql::selectNextPosIndex(DestinationSql::GROUP_TABLE),
                                DestinationSql::selectAll(DestinationSql::GROUP_TABLE),
                                DestinationSql::insertCategory(DestinationSql::GROUP_TABLE),
                                DestinationSql::renameCategory(DestinationSql::GROUP_TABLE),
                                DestinationSql::deleteCategory(DestinationSql::GROUP_TABLE),
                                DestinationSql::detachDestinations(DestinationSql::GROUP_COLUMN),
                                DestinationSql::moveDestination(DestinationSql::GROUP_COLUMN),
                                DestinationSql::selectDestinations(1, 1, 1),
                                DestinationSql::selectSortedDestinations(true, 1)};
    for (const QString &statement : others)
        QVERIFY2(!statement.contains(quote), qPrintable(statement));
    const QStringList script = DestinationSql::creationScript();
    QCOMPARE(script.size(), 9);
    for (int i = 1; i < script.size(); ++i)
        QVERIFY(script[i].contains(quote));
}

void tst_KyDestinationSql::script_canBeRepeated()
{
    QSqlDatabase database = openDatabase();
    for (const QString &statement : DestinationSql::creationScript()) {
        QSqlQuery query(database);
        QVERIFY2(query.exec(statement), qPrintable(query.lastError().text()));
    }
}

void tst_KyDestinationSql::deletion_isOfTheTable()
{
    QSqlQuery query(openDatabase());
    QVERIFY(query.exec(QStringLiteral("INSERT INTO channel_tbl (id, name) VALUES (1, 'a'), (2, 'b')")));
    QVERIFY(query.exec(DestinationSql::DELETE_CHANNELS));
    QCOMPARE(query.numRowsAffected(), 2);
}

void tst_KyDestinationSql::oddGroups_areFound()
{
    QSqlQuery query(openDatabase());
    QVERIFY(query.exec(QStringLiteral(
        "INSERT INTO destination_tbl (id, name, group_id) VALUES (1, 'a', 5), (2, 'b', 'red'), (3, 'c', 1.5),"
        " (4, 'd', x'31'), (5, 'e', 2147483647), (6, 'f', 2147483648), (7, 'g', -2147483648),"
        " (8, 'h', -2147483649), (9, 'i', '12'), (10, 'j', 3.0), (11, 'k', -1)")));
    QVERIFY(query.exec(DestinationSql::SELECT_ODD_GROUPS + QStringLiteral(" ORDER BY id")));
    QList<int> ids;
    while (query.next())
        ids.append(query.value(0).toInt());
    QCOMPARE(ids, QList<int>({2, 3, 4, 6, 8})); // '12' and 3.0 are stored as integers
}

void tst_KyDestinationSql::upsert_keepsTheGroup()
{
    QSqlDatabase database = openDatabase();
    QSqlQuery query(database);
    QVERIFY(query.exec(QStringLiteral(
        "INSERT INTO destination_tbl VALUES (1, 'old', 9, 'old', 'old', 'old', 'old', 9, 4, 'old')")));
    for (const int id : {1, 2}) {
        QVERIFY(query.prepare(DestinationSql::UPSERT_DESTINATION));
        query.addBindValue(id);
        for (const char *text : {"name", "address", "shared", "user", "password"})
            query.addBindValue(QStringLiteral("%1 %2").arg(QLatin1String(text)).arg(id));
        query.addBindValue(3);
        query.addBindValue(QStringLiteral("now"));
        QVERIFY(query.exec());
    }
    query = QSqlQuery();
    database.close();
    QCOMPARE(queryRows(m_folder.filePath(QStringLiteral("database")),
                       QStringLiteral("SELECT * FROM destination_tbl ORDER BY id")),
             QStringList({QStringLiteral("1|name 1|0|address 1|shared 1|user 1|password 1|3|4|now"),
                          QStringLiteral("2|name 2|0|address 2|shared 2|user 2|password 2|3|-1|now")}));
}

void tst_KyDestinationSql::storageFailure_isNoRefusedRow()
{
    QSqlDatabase database = openDatabase();
    QSqlQuery query(database);
    const QString insertion = QStringLiteral("INSERT INTO group_tbl (id, name) VALUES (1, 'a')");
    QVERIFY(query.exec(insertion));
    QVERIFY(!DestinationSql::isStorageFailure(query));
    QVERIFY(!query.exec(insertion)); // the id is in use
    QVERIFY(!DestinationSql::isStorageFailure(query));
    QVERIFY(!query.exec(QStringLiteral("no statement")));
    QVERIFY(!DestinationSql::isStorageFailure(query));
    QVERIFY(query.exec(QStringLiteral("PRAGMA busy_timeout = 0")));
    {
        QSqlDatabase other = QSqlDatabase::addDatabase(DestinationSql::DRIVER_NAME, QStringLiteral("other"));
        other.setDatabaseName(database.databaseName());
        QVERIFY(other.open());
        QVERIFY(QSqlQuery(other).exec(QStringLiteral("BEGIN IMMEDIATE")));
        QVERIFY(!query.exec(QStringLiteral("INSERT INTO group_tbl (id, name) VALUES (2, 'b')")));
        QVERIFY(DestinationSql::isStorageFailure(query));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("other"));
}

#ifdef Q_OS_UNIX
void tst_KyDestinationSql::storageFailure_isAFullDisk()
{
    QSqlQuery query(openDatabase());
    const FileSizeLimit limit(16);
    QVERIFY(!query.exec(QStringLiteral("INSERT INTO group_tbl (id, name) VALUES (1, 'a')")));
    QVERIFY(DestinationSql::isStorageFailure(query));
}
#endif

KYTE_TEST_MAIN(tst_KyDestinationSql)
#include "tst_KyDestinationSql.moc"
