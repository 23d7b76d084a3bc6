#include "KyDestinationTest.h"
#include "KyDestinationVisit.h"
#include "KyMutator.h"
#include "KyTestMain.h"

#include <KyDestination.h>

namespace Kyte {
namespace Test {

/** Database files that are damaged, or were made by something else than this library. */
class MutatedDatabasesTest : public QObject
{
    Q_OBJECT

private slots:
    void mutatedDatabase_doesNoHarm_data();
    void mutatedDatabase_doesNoHarm();
    void foreignDatabase_isUsedOrRefused_data();
    void foreignDatabase_isUsedOrRefused();
};

static const int SEEDS = 500;
static const int SEEDS_PER_ROW = 50;

static void makeEnvironment(const Environment &environment)
{
    environment.writeConfig(makeDestinations(0, 60));
    for (int channel = 0; channel < 3; ++channel)
        environment.writeChannel(channel, QStringLiteral("Channel %1").arg(channel), channel);
    environment.writeMainFile({{0, {0, 1, 2, 3}}, {1, {4, 5, 6}}, {2, {7, 8}}});
}

static void makeDatabase()
{
    KyDestination destination;
    if (!destination.init() || !destination.addNewGroup(QStringLiteral("Group"), nullptr))
        qFatal("Cannot make the database: %s", qPrintable(destination.lastErrorMessage()));
}

/** Deletes the database with everything beside it, and puts \a content in its place. */
static void replaceDatabase(const Environment &environment, const QByteArray &content)
{
    for (const QString &name : channelFolder(environment)) {
        if (name.startsWith(QLatin1String("destination.kyb")))
            QFile::remove(environment.channelDir() + QLatin1Char('/') + name);
    }
    writeFile(environment.databaseFile(), content);
}

/** What saving in setting mode promises: all or nothing. */
static bool isKept(const Environment &environment, const VisitResult &result, const QByteArray &former)
{
    const QByteArray wanted = result.isSaved ? readFile(environment.workingFile()) : former;
    return readFile(environment.databaseFile()) == wanted && (!result.isSaved || !wanted.isEmpty());
}

void MutatedDatabasesTest::mutatedDatabase_doesNoHarm_data()
{
    QTest::addColumn<int>("firstSeed");
    for (int seed = 0; seed < SEEDS; seed += SEEDS_PER_ROW)
        QTest::addRow("from seed %d", seed) << seed;
}

void MutatedDatabasesTest::mutatedDatabase_doesNoHarm()
{
    QFETCH(int, firstSeed);
    Environment environment;
    makeEnvironment(environment);
    makeDatabase();
    const QByteArray intact = readFile(environment.databaseFile());
    const MessageWatch watch;

    int refusals = 0;
    for (int seed = firstSeed; seed < firstSeed + SEEDS_PER_ROW; ++seed) {
        const QByteArray label = "seed " + QByteArray::number(seed);
        const QByteArray damaged = Mutator(seed).damagedDatabase(intact);
        for (bool settingMode : {true, false}) {
            replaceDatabase(environment, damaged);
            {
                KyDestination destination;
                destination.setSettingMode(settingMode);
                const VisitResult result = visit(&destination);
                QVERIFY2(!settingMode || isKept(environment, result, damaged), label);
                refusals += !result.isInitialized;
            }
            QCOMPARE(MessageWatch::take(), QStringList());
            QVERIFY2(channelFolder(environment).filter(QStringLiteral(".work")).isEmpty(), label);
        }
    }
    QVERIFY(refusals > 0 && refusals < 2 * SEEDS_PER_ROW);
}

void MutatedDatabasesTest::foreignDatabase_isUsedOrRefused_data()
{
    QTest::addColumn<QStringList>("statements"); // on an ordinary database
    QTest::addColumn<bool>("isInitialized");
    QTest::addColumn<bool>("isSaved");
    const auto row = [](const char *name, bool isInitialized, bool isSaved, const QStringList &statements) {
        QTest::newRow(name) << statements << isInitialized << isSaved;
    };
    const QString anyTable = QStringLiteral("DROP TABLE destination_tbl");
    row("huge ids", true, true,
        {QStringLiteral("INSERT INTO destination_tbl (id, name, channel_id, group_id) VALUES"
                        " (9223372036854775807, 'a', 4294967297, -9223372036854775808)"),
         QStringLiteral("INSERT INTO group_tbl (id, name, posindex) VALUES (9223372036854775807, 'a',"
                        " 9223372036854775807)")});
    row("text in integer columns", true, true,
        {QStringLiteral("UPDATE destination_tbl SET posindex='first', channel_id='1x', group_id='two'"),
         QStringLiteral("INSERT INTO group_tbl (id, name, posindex) VALUES (7, 'b', 'last')")});
    row("numbers and blobs in text columns", true, true,
        {QStringLiteral("UPDATE destination_tbl SET name=id, address=1.5, shared=zeroblob(70000),"
                        " user=x'00ff', password=-1, updatetime=5")});
    row("NULL wherever it is allowed", true, true,
        {QStringLiteral("UPDATE destination_tbl SET address=NULL, shared=NULL, user=NULL, password=NULL,"
                        " updatetime=NULL")});
    row("NULL everywhere", true, true,
        {anyTable,
         QStringLiteral("CREATE TABLE destination_tbl (id, name, posindex, address, shared, user, password,"
                        " channel_id, group_id, updatetime)"),
         QStringLiteral("INSERT INTO destination_tbl (id) VALUES (NULL), (NULL)")});
    row("missing columns", true, true,
        {anyTable,
         QStringLiteral(
             "CREATE TABLE destination_tbl (id INTEGER PRIMARY KEY, name TEXT, updatetime, channel_id,"
             " group_id)"),
         QStringLiteral("INSERT INTO destination_tbl VALUES (3, 'c', 'x', 1, 1)")});
    row("missing indexed column", false, false,
        {anyTable, QStringLiteral("CREATE TABLE destination_tbl (id INTEGER PRIMARY KEY, name TEXT)")});
    row("missing tables", true, true,
        {anyTable, QStringLiteral("DROP TABLE channel_tbl"), QStringLiteral("DROP TABLE group_tbl")});
    row("view named as a table", false, false,
        {QStringLiteral("DROP TABLE group_tbl"),
         QStringLiteral(
             "CREATE VIEW group_tbl AS SELECT 1 AS id, 'v' AS name, 0 AS posindex, '' AS updatetime")});
    row("index named as a table", false, false,
        {QStringLiteral("DROP TABLE group_tbl"),
         QStringLiteral("CREATE INDEX group_tbl ON channel_tbl(posindex)")});
    row("table without row ids", true, true,
        {anyTable,
         QStringLiteral(
             "CREATE TABLE destination_tbl (id TEXT PRIMARY KEY, name, posindex, address, shared, user,"
             " password, channel_id, group_id, updatetime) WITHOUT ROWID"),
         QStringLiteral("INSERT INTO destination_tbl (id, name) VALUES ('five', 'd')")});
    row("trigger that refuses", true, true,
        {QStringLiteral("CREATE TRIGGER destination_tbl BEFORE UPDATE ON destination_tbl"
                        " BEGIN SELECT RAISE(ABORT, 'no'); END")});
    row("trigger that rolls back", true, true,
        {QStringLiteral("CREATE TRIGGER group_tbl BEFORE INSERT ON group_tbl"
                        " BEGIN SELECT RAISE(ROLLBACK, 'no'); END"),
         QStringLiteral("CREATE TRIGGER channel_tbl BEFORE INSERT ON channel_tbl"
                        " BEGIN SELECT RAISE(ROLLBACK, 'no'); END")});
    row("trigger that deletes", true, true,
        {QStringLiteral(
            "CREATE TRIGGER other AFTER INSERT ON channel_tbl BEGIN DELETE FROM destination_tbl; END")});
    row("write-ahead log", true, true, {QStringLiteral("PRAGMA journal_mode=WAL")});
    row("journal that persists", true, true, {QStringLiteral("PRAGMA journal_mode=PERSIST")});
    row("large pages", true, true, {QStringLiteral("PRAGMA page_size=65536"), QStringLiteral("VACUUM")});
    row("other tables", true, true,
        {QStringLiteral("CREATE TABLE other (x)"),
         QStringLiteral("CREATE VIEW sight AS SELECT x FROM other")});
}

void MutatedDatabasesTest::foreignDatabase_isUsedOrRefused()
{
    QFETCH(QStringList, statements);
    QFETCH(bool, isInitialized);
    QFETCH(bool, isSaved);
    Environment environment;
    makeEnvironment(environment);
    makeDatabase();
    execute(environment.databaseFile(), statements);
    const QByteArray foreign = readFile(environment.databaseFile());
    const MessageWatch watch;

    for (bool settingMode : {true, false}) {
        replaceDatabase(environment, foreign);
        KyDestination destination;
        destination.setSettingMode(settingMode);
        const VisitResult result = visit(&destination);
        QCOMPARE(result.isInitialized, isInitialized);
        QCOMPARE(result.isSaved, isSaved);
        QVERIFY(!settingMode || isKept(environment, result, foreign));
    }
    QCOMPARE(MessageWatch::take(), QStringList());
}

} // namespace Test
} // namespace Kyte

KYTE_TEST_MAIN(Kyte::Test::MutatedDatabasesTest)

#include "tst_mutatedDatabases.moc"
