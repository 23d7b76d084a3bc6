#include "KyTestMain.h"

#include "KyDestinationTest.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <functional>
#include <limits>
#include <memory>

using namespace Kyte;
using namespace Kyte::Test;

/** An edit: answers whether it succeeded, and sets the id that was handed in where it hands one out. */
using Edit = std::function<bool(KyDestination *, int *)>;
Q_DECLARE_METATYPE(Edit)

static const auto NO_TYPE = static_cast<KyDestination::DataType>(7);
static const QString TYPE_UNDEFINED = QStringLiteral("The Data Type is not defined.");
static const QString NO_TRANSACTION = QStringLiteral("Transaction can not be started.");
static const QString NO_NEW_ID = QStringLiteral("Getting new id or new position index was failed.");

static QString error(const QString &message)
{
    return QStringLiteral("errorOccured(") + message + QLatin1Char(')');
}

static QString duplicateName(const QString &table)
{
    return QStringLiteral("Error occured: UNIQUE constraint failed: %1.name Unable to fetch row").arg(table);
}

static QString tableOf(int type)
{
    return type == KyDestination::Data_Channel ? QStringLiteral("channel_tbl") : QStringLiteral("group_tbl");
}

static KyDestination::DataType toType(int type)
{
    return static_cast<KyDestination::DataType>(type);
}

class tst_KyDestinationEditing : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newId_isTheLowestFreeOne_data();
    void newId_isTheLowestFreeOne();
    void newId_ofAnUndefinedType();
    void newPosIndex_isBehindTheLast_data();
    void newPosIndex_isBehindTheLast();

    void add_appendsACategory_data();
    void add_appendsACategory();
    void addNewGroup_addsAGroup();
    void add_usesIdsAgain_data();
    void add_usesIdsAgain();
    void add_needsNoPlaceForTheId();
    void add_refusesANameInUse_data();
    void add_refusesANameInUse();
    void add_refusesANullName();
    void add_commitsAFailureToo();
    void add_failsWithoutAnIdOrPosition_data();
    void add_failsWithoutAnIdOrPosition();

    void rename_changesTheNameOnly_data();
    void rename_changesTheNameOnly();
    void renameGroup_renamesAGroup();
    void renameToSameName_isAccepted();
    void renameOfAMissingId_isAccepted();
    void rename_refusesANameInUse_data();
    void rename_refusesANameInUse();
    void rename_takesAFailureBack();

    void remove_detachesTheDestinations_data();
    void remove_detachesTheDestinations();
    void removeGroup_leavesItsDestinationsReadable();
    void removeOfAMissingId_isAccepted();
    void remove_thatIsRefused_changesNothing();
    void remove_standsWhenDetachingFails();

    void move_setsOneColumn_data();
    void move_setsOneColumn();
    void move_answersWhatItWasGiven_data();
    void move_answersWhatItWasGiven();
    void move_passesOverWhatFails();
    void move_refusesAnUndefinedType();
    void move_withoutTransaction_isSilent();
    void move_thatCannotBeCommitted_movesNothing();
    void move_ofAMissingTable_movesNothing();
    void move_whileAnotherWrites_waitsOnce();
#ifdef Q_OS_UNIX
    void move_onAFullDisk_movesNothing();
#endif
    void move_leavesTheMapsAlone();

    void edit_closesTheDatabase_data();
    void edit_closesTheDatabase();
    void edit_clearsTheMapOfItsType_data();
    void edit_clearsTheMapOfItsType();
    void edit_withNullMaps_works_data();
    void edit_withNullMaps_works();
    void edit_ofAnUndefinedType_isRefused_data();
    void edit_ofAnUndefinedType_isRefused();
    void edit_withoutTransaction_isRefused_data();
    void edit_withoutTransaction_isRefused();
    void edit_withoutInit_isRefused_data();
    void edit_withoutInit_isRefused();
    void edit_ofWhatCannotBeOpened_isRefused_data();
    void edit_ofWhatCannotBeOpened_isRefused();
    void edit_ofAMissingTable_isRefused_data();
    void edit_ofAMissingTable_isRefused();
    void edit_whileAnotherWrites_isRefused_data();
    void edit_whileAnotherWrites_isRefused();
    void slotThatDeletesTheObject_endsTheEdit_data();
    void slotThatDeletesTheObject_endsTheEdit();
    void slotThatCallsBack_isServed_data();
    void slotThatCallsBack_isServed();
    void oddNames_areStored_data();
    void oddNames_areStored();

private:
    QString file() const;
    /** The channels 0 to 2, the groups 0 to 2 and the destinations 1 to 6: two in each channel and in each
     * group. */
    std::unique_ptr<KyDestination> create() const;
    QStringList rows(const QString &table) const;
    void addEdits() const;

    std::unique_ptr<Environment> m_environment;
    std::unique_ptr<MessageWatch> m_watch;
};

void tst_KyDestinationEditing::init()
{
    m_environment = std::make_unique<Environment>();
    m_watch = std::make_unique<MessageWatch>();
}

void tst_KyDestinationEditing::cleanup()
{
    const QStringList complaints = m_watch->take();
    m_watch.reset();
    m_environment.reset();
    QCOMPARE(complaints, QStringList());
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
}

QString tst_KyDestinationEditing::file() const
{
    return m_environment->databaseFile();
}

std::unique_ptr<KyDestination> tst_KyDestinationEditing::create() const
{
    m_environment->writeConfig(makeDestinations(1, 6));
    auto destination = std::make_unique<KyDestination>(nullptr);
    if (!destination->init())
        qFatal("init failed: %s", qPrintable(destination->lastErrorMessage()));
    QStringList statements;
    for (int id = 0; id < 3; ++id) {
        statements.append(
            QStringLiteral("INSERT INTO channel_tbl (id, name, posindex) VALUES (%1, 'Channel %1', %1)")
                .arg(id));
        statements.append(
            QStringLiteral("INSERT INTO group_tbl (id, name, posindex) VALUES (%1, 'Group %1', %1)").arg(id));
    }
    statements.append(
        QStringLiteral("UPDATE destination_tbl SET channel_id=(id - 1) / 2, group_id=(id - 1) % 3"));
    execute(file(), statements);
    backdate(file());
    return destination;
}

QStringList tst_KyDestinationEditing::rows(const QString &table) const
{
    return queryRows(file(),
                     table == QLatin1String("destination_tbl")
                         ? QStringLiteral("SELECT id, channel_id, group_id FROM destination_tbl ORDER BY id")
                         : QStringLiteral("SELECT id, name, posindex FROM %1 ORDER BY id").arg(table));
}

/** Every edit of a category, in a way that succeeds: rows of "edit" and "type". */
void tst_KyDestinationEditing::addEdits() const
{
    QTest::addColumn<Edit>("edit");
    QTest::addColumn<int>("type");
    for (const KyDestination::DataType type : {KyDestination::Data_Channel, KyDestination::Data_Group}) {
        const QByteArray kind = type == KyDestination::Data_Channel ? " channel" : " group";
        QTest::newRow("add" + kind) << Edit([=](KyDestination *destination, int *newId) {
            return destination->addNewCategory(type, QStringLiteral("New"), newId);
        }) << static_cast<int>(type);
        QTest::newRow("rename" + kind) << Edit([=](KyDestination *destination, int *) {
            return destination->renameCategory(type, 1, QStringLiteral("New"));
        }) << static_cast<int>(type);
        QTest::newRow("remove" + kind) << Edit([=](KyDestination *destination, int *) {
            return destination->removeCategory(type, 1);
        }) << static_cast<int>(type);
    }
    const int group = KyDestination::Data_Group;
    QTest::newRow("addNewGroup") << Edit([](KyDestination *destination, int *newId) {
        return destination->addNewGroup(QStringLiteral("New"), newId);
    }) << group;
    QTest::newRow("renameGroup") << Edit([](KyDestination *destination, int *) {
        return destination->renameGroup(1, QStringLiteral("New"));
    }) << group;
    QTest::newRow("removeGroup") << Edit([](KyDestination *destination, int *) {
        return destination->removeGroup(1);
    }) << group;
}

void tst_KyDestinationEditing::newId_isTheLowestFreeOne_data()
{
    QTest::addColumn<QString>("ids");
    QTest::addColumn<int>("expected");
    QTest::newRow("empty table") << QString() << 0;
    QTest::newRow("no gap") << QStringLiteral("0 1 2") << 3;
    QTest::newRow("gap") << QStringLiteral("0 1 3") << 2;
    QTest::newRow("two gaps") << QStringLiteral("0 2 4") << 1;
    QTest::newRow("begins at one") << QStringLiteral("1 2 3") << 0;
    QTest::newRow("far away") << QStringLiteral("2147483647") << 0;
    QTest::newRow("negative") << QStringLiteral("-1 0 1") << -1;
    QTest::newRow("only a negative one") << QStringLiteral("-7") << -7;
    QTest::newRow("two negative ones") << QStringLiteral("-9 -7 0") << -9;
    QTest::newRow("inserted in disorder") << QStringLiteral("3 0 1") << 2;
}

void tst_KyDestinationEditing::newId_isTheLowestFreeOne()
{
    QFETCH(QString, ids);
    QFETCH(int, expected);
    const std::unique_ptr<KyDestination> destination = create();
    for (const int type : {0, 1}) {
        QStringList statements = {QStringLiteral("DELETE FROM ") + tableOf(type)};
        for (const QString &id : ids.split(QLatin1Char(' '), Qt::SkipEmptyParts))
            statements.append(
                QStringLiteral("INSERT INTO %1 (id, name) VALUES (%2, 'n%2')").arg(tableOf(type), id));
        execute(file(), statements);
        destination->readCategory(toType(type)); // opens the database
        QCOMPARE(destination->getNewId(toType(type)), expected);
        QVERIFY(isOpen());
    }
}

void tst_KyDestinationEditing::newId_ofAnUndefinedType()
{
    const std::unique_ptr<KyDestination> destination = create();
    destination->readGroups();
    DestinationRecorder recorder(destination.get());
    QCOMPARE(destination->getNewId(NO_TYPE), -1);
    QCOMPARE(destination->getNewPosIndex(NO_TYPE), 0);
    QCOMPARE(recorder.takeSignals(), QStringList());
    QCOMPARE(destination->lastErrorMessage(), QString());
}

void tst_KyDestinationEditing::newPosIndex_isBehindTheLast_data()
{
    QTest::addColumn<QString>("positions");
    QTest::addColumn<int>("expected");
    QTest::newRow("empty table") << QString() << 0;
    QTest::newRow("no gap") << QStringLiteral("0 1 2") << 3;
    QTest::newRow("gaps") << QStringLiteral("5 2 9") << 10;
    QTest::newRow("all the same") << QStringLiteral("4 4") << 5;
    QTest::newRow("minus one") << QStringLiteral("-1") << 0;
    QTest::newRow("negative") << QStringLiteral("-5") << -4;
    QTest::newRow("real") << QStringLiteral("2.4") << 3;
    QTest::newRow("text") << QStringLiteral("'red'") << 1; // 'red'+1
    QTest::newRow("beyond 32 bits") << QStringLiteral("2147483647") << std::numeric_limits<int>::min();
}

void tst_KyDestinationEditing::newPosIndex_isBehindTheLast()
{
    QFETCH(QString, positions);
    QFETCH(int, expected);
    const std::unique_ptr<KyDestination> destination = create();
    for (const int type : {0, 1}) {
        QStringList statements = {QStringLiteral("DELETE FROM ") + tableOf(type)};
        for (const QString &position : positions.split(QLatin1Char(' '), Qt::SkipEmptyParts))
            statements.append(QStringLiteral("INSERT INTO %1 (name, posindex) VALUES ('n%2', %3)")
                                  .arg(tableOf(type))
                                  .arg(statements.size())
                                  .arg(position));
        execute(file(), statements);
        destination->readCategory(toType(type));
        QCOMPARE(destination->getNewPosIndex(toType(type)), expected);
        QVERIFY(isOpen());
    }
}

void tst_KyDestinationEditing::add_appendsACategory_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("channel") << 0;
    QTest::newRow("group") << 1;
}

void tst_KyDestinationEditing::add_appendsACategory()
{
    QFETCH(int, type);
    const std::unique_ptr<KyDestination> destination = create();
    const QString table = tableOf(type);
    const QStringList others = rows(tableOf(1 - type));
    const QStringList members = rows(QStringLiteral("destination_tbl"));
    execute(file(), {QStringLiteral("DELETE FROM ") + table});
    DestinationRecorder recorder(destination.get());

    int id = 77;
    const QString before = KyDestination::getCurrentTimeForDatabaseString();
    QVERIFY(destination->addNewCategory(toType(type), QStringLiteral("First"), &id));
    const QString after = KyDestination::getCurrentTimeForDatabaseString();
    QCOMPARE(id, 0);
    QCOMPARE(rows(table), QStringList({QStringLiteral("0|First|0")}));
    const QString stamp = queryRows(file(), QStringLiteral("SELECT updatetime FROM ") + table).value(0);
    QVERIFY2(stamp >= before && stamp <= after, qPrintable(stamp));

    QVERIFY(destination->addNewCategory(toType(type), QStringLiteral("Second"), &id));
    QCOMPARE(id, 1);
    QCOMPARE(rows(table), QStringList({QStringLiteral("0|First|0"), QStringLiteral("1|Second|1")}));
    QCOMPARE(destination->lastErrorMessage(), QString());
    QCOMPARE(recorder.takeSignals(), QStringList());
    QCOMPARE(rows(tableOf(1 - type)), others);
    QCOMPARE(rows(QStringLiteral("destination_tbl")), members);
}

void tst_KyDestinationEditing::addNewGroup_addsAGroup()
{
    const std::unique_ptr<KyDestination> destination = create();
    int id = -1;
    QVERIFY(destination->addNewGroup(QStringLiteral("New"), &id));
    QCOMPARE(id, 3);
    QCOMPARE(rows(QStringLiteral("group_tbl")).constLast(), QStringLiteral("3|New|3"));
    QCOMPARE(rows(QStringLiteral("channel_tbl")).size(), 3);
}

void tst_KyDestinationEditing::add_usesIdsAgain_data()
{
    add_appendsACategory_data();
}

void tst_KyDestinationEditing::add_usesIdsAgain()
{
    QFETCH(int, type);
    const std::unique_ptr<KyDestination> destination = create();
    int id = -1;
    QVERIFY(destination->removeCategory(toType(type), 1));
    QVERIFY(destination->addNewCategory(toType(type), QStringLiteral("New"), &id));
    QCOMPARE(id, 1);
    QCOMPARE(rows(tableOf(type)).value(1), QStringLiteral("1|New|3"));
    QVERIFY(destination->addNewCategory(toType(type), QStringLiteral("Newer"), &id));
    QCOMPARE(id, 3);
}

void tst_KyDestinationEditing::add_needsNoPlaceForTheId()
{
    const std::unique_ptr<KyDestination> destination = create();
    QVERIFY(destination->addNewGroup(QStringLiteral("New"), nullptr));
    QVERIFY(!destination->addNewGroup(QStringLiteral("New"), nullptr));
    QVERIFY(!destination->addNewCategory(NO_TYPE, QStringLiteral("New"), nullptr));
}

void tst_KyDestinationEditing::add_refusesANameInUse_data()
{
    add_appendsACategory_data();
}

void tst_KyDestinationEditing::add_refusesANameInUse()
{
    QFETCH(int, type);
    const std::unique_ptr<KyDestination> destination = create();
    const QStringList before = rows(tableOf(type));
    const QString name = before[2].section(QLatin1Char('|'), 1, 1);
    DestinationRecorder recorder(destination.get());
    int id = 77;
    QVERIFY(!destination->addNewCategory(toType(type), name, &id));
    QCOMPARE(id, -1);
    QCOMPARE(recorder.takeSignals(), QStringList({error(duplicateName(tableOf(type)))}));
    QCOMPARE(destination->lastErrorMessage(), duplicateName(tableOf(type)));
    QCOMPARE(rows(tableOf(type)), before);

    // Letter case makes a difference, and the transaction of the failure is over.
    QVERIFY(destination->addNewCategory(toType(type), name.toUpper(), &id));
    QCOMPARE(id, 3);
    QCOMPARE(destination->lastErrorMessage(), QString());
}

void tst_KyDestinationEditing::add_refusesANullName()
{
    const std::unique_ptr<KyDestination> destination = create();
    QVERIFY(!destination->addNewGroup(QString(), nullptr));
    QCOMPARE(destination->lastErrorMessage(),
             QStringLiteral("Error occured: NOT NULL constraint failed: group_tbl.name Unable to fetch row"));
    QVERIFY(destination->addNewGroup(QStringLiteral(""), nullptr)); // empty is another matter
}

void tst_KyDestinationEditing::add_commitsAFailureToo()
{
    const std::unique_ptr<KyDestination> destination = create();
    // A trigger can fail without taking back what the statement has done so far.
    execute(file(),
            {QStringLiteral("CREATE TRIGGER late AFTER INSERT ON group_tbl"
                            " BEGIN SELECT RAISE(FAIL, 'too late'); END")});
    DestinationRecorder recorder(destination.get());
    int id = 77;
    QVERIFY(!destination->addNewGroup(QStringLiteral("New"), &id));
    QCOMPARE(id, -1);
    QCOMPARE(recorder.takeSignals(),
             QStringList({error(QStringLiteral("Error occured: too late Unable to fetch row"))}));
    QCOMPARE(rows(QStringLiteral("group_tbl")).constLast(), QStringLiteral("3|New|3"));
}

void tst_KyDestinationEditing::add_failsWithoutAnIdOrPosition_data()
{
    QTest::addColumn<QString>("change");
    QTest::newRow("negative id") << QStringLiteral("UPDATE group_tbl SET id=-1 WHERE id=0");
    QTest::newRow("negative position") << QStringLiteral("UPDATE group_tbl SET posindex=-5");
    QTest::newRow("last position") << QStringLiteral("UPDATE group_tbl SET posindex=2147483647 WHERE id=1");
}

void tst_KyDestinationEditing::add_failsWithoutAnIdOrPosition()
{
    QFETCH(QString, change);
    const std::unique_ptr<KyDestination> destination = create();
    execute(file(), {change});
    const QStringList before = rows(QStringLiteral("group_tbl"));
    DestinationRecorder recorder(destination.get());
    int id = 77;
    QVERIFY(!destination->addNewGroup(QStringLiteral("New"), &id));
    QCOMPARE(id, -1);
    QCOMPARE(recorder.takeSignals(), QStringList({error(NO_NEW_ID)}));
    QCOMPARE(destination->lastErrorMessage(), NO_NEW_ID);
    QVERIFY(!isOpen());
    QCOMPARE(rows(QStringLiteral("group_tbl")), before);
}

void tst_KyDestinationEditing::rename_changesTheNameOnly_data()
{
    add_appendsACategory_data();
}

void tst_KyDestinationEditing::rename_changesTheNameOnly()
{
    QFETCH(int, type);
    const std::unique_ptr<KyDestination> destination = create();
    const QString columns = QStringLiteral("id name posindex updatetime");
    QStringList expected = literalRows(file(), tableOf(type), columns);
    expected[1].replace(QRegularExpression(QStringLiteral("'(Channel|Group) 1'")),
                        QStringLiteral("'Renamed'"));
    DestinationRecorder recorder(destination.get());
    QVERIFY(destination->renameCategory(toType(type), 1, QStringLiteral("Renamed")));
    QCOMPARE(literalRows(file(), tableOf(type), columns), expected);
    QCOMPARE(recorder.takeSignals(), QStringList());
    QCOMPARE(destination->lastErrorMessage(), QString());
}

void tst_KyDestinationEditing::renameGroup_renamesAGroup()
{
    const std::unique_ptr<KyDestination> destination = create();
    QVERIFY(destination->renameGroup(2, QStringLiteral("Renamed")));
    QCOMPARE(rows(QStringLiteral("group_tbl")).value(2), QStringLiteral("2|Renamed|2"));
    QCOMPARE(rows(QStringLiteral("channel_tbl")).value(2), QStringLiteral("2|Channel 2|2"));
}

void tst_KyDestinationEditing::renameToSameName_isAccepted()
{
    const std::unique_ptr<KyDestination> destination = create();
    QVERIFY(destination->renameGroup(2, QStringLiteral("Group 2")));
    QCOMPARE(rows(QStringLiteral("group_tbl")).value(2), QStringLiteral("2|Group 2|2"));
}

void tst_KyDestinationEditing::renameOfAMissingId_isAccepted()
{
    const std::unique_ptr<KyDestination> destination = create();
    const QStringList before = rows(QStringLiteral("group_tbl"));
    QVERIFY(destination->renameGroup(99, QStringLiteral("Group 2")));
    QCOMPARE(destination->lastErrorMessage(), QString());
    QCOMPARE(rows(QStringLiteral("group_tbl")), before);
}

void tst_KyDestinationEditing::rename_refusesANameInUse_data()
{
    add_appendsACategory_data();
}

void tst_KyDestinationEditing::rename_refusesANameInUse()
{
    QFETCH(int, type);
    const std::unique_ptr<KyDestination> destination = create();
    const QStringList before = rows(tableOf(type));
    DestinationRecorder recorder(destination.get());
    QVERIFY(!destination->renameCategory(toType(type), 1, before[2].section(QLatin1Char('|'), 1, 1)));
    QCOMPARE(recorder.takeSignals(), QStringList({error(duplicateName(tableOf(type)))}));
    QCOMPARE(destination->lastErrorMessage(), duplicateName(tableOf(type)));
    QCOMPARE(rows(tableOf(type)), before);
    QVERIFY(destination->renameCategory(toType(type), 1, QStringLiteral("Free")));
    QCOMPARE(destination->lastErrorMessage(), QString());
}

void tst_KyDestinationEditing::rename_takesAFailureBack()
{
    const std::unique_ptr<KyDestination> destination = create();
    const QStringList before = rows(QStringLiteral("group_tbl"));
    execute(file(),
            {QStringLiteral("CREATE TRIGGER late AFTER UPDATE ON group_tbl"
                            " BEGIN SELECT RAISE(FAIL, 'too late'); END")});
    DestinationRecorder recorder(destination.get());
    QVERIFY(!destination->renameGroup(1, QStringLiteral("New")));
    QCOMPARE(recorder.takeSignals(),
             QStringList({error(QStringLiteral("Error occured: too late Unable to fetch row"))}));
    QCOMPARE(rows(QStringLiteral("group_tbl")), before);
}

void tst_KyDestinationEditing::remove_detachesTheDestinations_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QStringList>("members"); // id, channel and group of the destinations
    QTest::newRow("channel") << 0
                             << QStringList({QStringLiteral("1|0|0"), QStringLiteral("2|0|1"),
                                             QStringLiteral("3|-1|2"), QStringLiteral("4|-1|0"),
                                             QStringLiteral("5|2|1"), QStringLiteral("6|2|2")});
    QTest::newRow("group") << 1
                           << QStringList({QStringLiteral("1|0|0"), QStringLiteral("2|0|-1"),
                                           QStringLiteral("3|1|2"), QStringLiteral("4|1|0"),
                                           QStringLiteral("5|2|-1"), QStringLiteral("6|2|2")});
}

void tst_KyDestinationEditing::remove_detachesTheDestinations()
{
    QFETCH(int, type);
    QFETCH(QStringList, members);
    const std::unique_ptr<KyDestination> destination = create();
    QStringList categories = rows(tableOf(type));
    const QStringList others = rows(tableOf(1 - type));
    const QString content = QStringLiteral("id name posindex address shared user password updatetime");
    const QStringList before = literalRows(file(), QStringLiteral("destination_tbl"), content);
    categories.removeAt(1);
    DestinationRecorder recorder(destination.get());
    QVERIFY(destination->removeCategory(toType(type), 1));
    QCOMPARE(rows(tableOf(type)), categories);
    QCOMPARE(rows(tableOf(1 - type)), others);
    QCOMPARE(rows(QStringLiteral("destination_tbl")), members);
    QCOMPARE(literalRows(file(), QStringLiteral("destination_tbl"), content), before);
    QCOMPARE(recorder.takeSignals(), QStringList());
    QCOMPARE(destination->lastErrorMessage(), QString());
}

void tst_KyDestinationEditing::removeGroup_leavesItsDestinationsReadable()
{
    const std::unique_ptr<KyDestination> destination = create();
    QVERIFY(destination->removeGroup(0));
    DestinationRecorder recorder(destination.get());
    destination->readDestinationsInGroup(-1);
    QVERIFY(recorder.takeSignals().contains(QStringLiteral("itemsHasRead(D1 D4)")));
    destination->startToRead();
    QVERIFY(recorder.takeSignals().contains(QStringLiteral("itemsHasRead(D1 D2 D3 D4 D5 D6)")));
}

void tst_KyDestinationEditing::removeOfAMissingId_isAccepted()
{
    const std::unique_ptr<KyDestination> destination = create();
    execute(file(), {QStringLiteral("UPDATE destination_tbl SET group_id=99 WHERE id=1")});
    QVERIFY(destination->removeGroup(99)); // and tidies up what still refers to it
    QCOMPARE(rows(QStringLiteral("group_tbl")).size(), 3);
    QCOMPARE(rows(QStringLiteral("destination_tbl")).value(0), QStringLiteral("1|0|-1"));
}

void tst_KyDestinationEditing::remove_thatIsRefused_changesNothing()
{
    const std::unique_ptr<KyDestination> destination = create();
    const QStringList members = rows(QStringLiteral("destination_tbl"));
    execute(
        file(),
        {QStringLiteral(
            "CREATE TRIGGER refuse BEFORE DELETE ON group_tbl BEGIN SELECT RAISE(ABORT, 'not now'); END")});
    DestinationRecorder recorder(destination.get());
    QVERIFY(!destination->removeGroup(1));
    const QString message = QStringLiteral("Error occured: not now Unable to fetch row");
    QCOMPARE(recorder.takeSignals(), QStringList({error(message)}));
    QCOMPARE(destination->lastErrorMessage(), message);
    QCOMPARE(rows(QStringLiteral("group_tbl")).size(), 3);
    QCOMPARE(rows(QStringLiteral("destination_tbl")), members);
    QVERIFY(!isOpen());
}

void tst_KyDestinationEditing::remove_standsWhenDetachingFails()
{
    const std::unique_ptr<KyDestination> destination = create();
    const QStringList members = rows(QStringLiteral("destination_tbl"));
    execute(file(),
            {QStringLiteral("CREATE TRIGGER refuse BEFORE UPDATE ON destination_tbl BEGIN SELECT "
                            "RAISE(ABORT, 'not now'); END")});
    DestinationRecorder recorder(destination.get());
    QVERIFY(destination->removeGroup(1));
    QCOMPARE(recorder.takeSignals(), QStringList());
    QCOMPARE(destination->lastErrorMessage(), QString());
    QCOMPARE(rows(QStringLiteral("group_tbl")).size(), 2);
    QCOMPARE(rows(QStringLiteral("destination_tbl")), members);
}

void tst_KyDestinationEditing::move_setsOneColumn_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("category");
    QTest::addColumn<QStringList>("members");
    QTest::newRow("channel") << 0 << 2
                             << QStringList({QStringLiteral("1|2|0"), QStringLiteral("2|0|1"),
                                             QStringLiteral("3|2|2")});
    QTest::newRow("no channel") << 0 << -1
                                << QStringList({QStringLiteral("1|-1|0"), QStringLiteral("2|0|1"),
                                                QStringLiteral("3|-1|2")});
    QTest::newRow("unknown channel") << 0 << 99
                                     << QStringList({QStringLiteral("1|99|0"), QStringLiteral("2|0|1"),
                                                     QStringLiteral("3|99|2")});
    QTest::newRow("group") << 1 << 1
                           << QStringList({QStringLiteral("1|0|1"), QStringLiteral("2|0|1"),
                                           QStringLiteral("3|1|1")});
    QTest::newRow("no group") << 1 << -1
                              << QStringList({QStringLiteral("1|0|-1"), QStringLiteral("2|0|1"),
                                              QStringLiteral("3|1|-1")});
}

void tst_KyDestinationEditing::move_setsOneColumn()
{
    QFETCH(int, type);
    QFETCH(int, category);
    QFETCH(QStringList, members);
    const std::unique_ptr<KyDestination> destination = create();
    const QString content = QStringLiteral("id name posindex address shared user password");
    const QStringList before = literalRows(file(), QStringLiteral("destination_tbl"), content);
    DestinationRecorder recorder(destination.get());
    const QString begin = KyDestination::getCurrentTimeForDatabaseString();
    QCOMPARE(destination->changeDestinationCategory({1, 3}, category, toType(type)), QList<int>({1, 3}));
    const QString end = KyDestination::getCurrentTimeForDatabaseString();
    QVERIFY(isOpen());
    QCOMPARE(rows(QStringLiteral("destination_tbl")).mid(0, 3), members);
    QCOMPARE(literalRows(file(), QStringLiteral("destination_tbl"), content), before);
    const QStringList stamps =
        queryRows(file(), QStringLiteral("SELECT updatetime FROM destination_tbl ORDER BY id"));
    QVERIFY(stamps[0] >= begin && stamps[0] <= end);
    QCOMPARE(stamps[2], stamps[0]);
    QCOMPARE(stamps[1], QStringLiteral("2001-02-03 04:05:06"));
    QCOMPARE(recorder.takeSignals(), QStringList());
    QCOMPARE(destination->lastErrorMessage(), QString());
}

void tst_KyDestinationEditing::move_answersWhatItWasGiven_data()
{
    QTest::addColumn<QList<int>>("ids");
    QTest::newRow("none") << QList<int>();
    QTest::newRow("in order") << QList<int>({5, 1, 3});
    QTest::newRow("unknown") << QList<int>({99, -1, 1000000});
    QTest::newRow("repeated") << QList<int>({2, 2, 2});
    QTest::newRow("mixed") << QList<int>({99, 2, 99, 2});
}

void tst_KyDestinationEditing::move_answersWhatItWasGiven()
{
    QFETCH(QList<int>, ids);
    const std::unique_ptr<KyDestination> destination = create();
    QCOMPARE(destination->changeDestinationCategory(ids, 1, KyDestination::Data_Group), ids);
    QVERIFY(isOpen());
    QCOMPARE(queryRows(file(), QStringLiteral("SELECT COUNT(*) FROM destination_tbl")),
             QStringList({QStringLiteral("6")}));
    for (int id = 1; id <= 6; ++id)
        QCOMPARE(rows(QStringLiteral("destination_tbl")).value(id - 1).section(QLatin1Char('|'), 2).toInt(),
                 ids.contains(id) ? 1 : (id - 1) % 3);
}

void tst_KyDestinationEditing::move_passesOverWhatFails()
{
    const std::unique_ptr<KyDestination> destination = create();
    execute(file(),
            {QStringLiteral("CREATE TRIGGER refuse BEFORE UPDATE ON destination_tbl WHEN OLD.id=3"
                            " BEGIN SELECT RAISE(ABORT, 'not that one'); END")});
    DestinationRecorder recorder(destination.get());
    QCOMPARE(destination->changeDestinationCategory({2, 3, 4}, 0, KyDestination::Data_Group),
             QList<int>({2, 4}));
    QCOMPARE(rows(QStringLiteral("destination_tbl")).mid(1, 3),
             QStringList({QStringLiteral("2|0|0"), QStringLiteral("3|1|2"), QStringLiteral("4|1|0")}));
    QCOMPARE(recorder.takeSignals(), QStringList());
    QCOMPARE(destination->lastErrorMessage(), QString());
}

void tst_KyDestinationEditing::move_refusesAnUndefinedType()
{
    const std::unique_ptr<KyDestination> destination = create();
    const QStringList before = rows(QStringLiteral("destination_tbl"));
    DestinationRecorder recorder(destination.get());
    QCOMPARE(destination->changeDestinationCategory({1, 2}, 0, NO_TYPE), QList<int>());
    const QString message = QStringLiteral("DataType must be \"Data_Channel\" or \"Data_Group\".");
    QCOMPARE(recorder.takeSignals(), QStringList({error(message)}));
    QCOMPARE(destination->lastErrorMessage(), message);
    QVERIFY(isOpen()); // moving does not close, whatever happens
    QCOMPARE(rows(QStringLiteral("destination_tbl")), before);
}

void tst_KyDestinationEditing::move_withoutTransaction_isSilent()
{
    const std::unique_ptr<KyDestination> destination = create();
    destination->readGroups();
    QVERIFY(connection().transaction());
    DestinationRecorder recorder(destination.get());
    QCOMPARE(destination->changeDestinationCategory({1, 2}, 0, KyDestination::Data_Group), QList<int>());
    QCOMPARE(recorder.takeSignals(), QStringList());
    QCOMPARE(destination->lastErrorMessage(), QString());
    QVERIFY(isOpen());
    QVERIFY(connection().rollback());
    QCOMPARE(destination->changeDestinationCategory({1, 2}, 0, KyDestination::Data_Group),
             QList<int>({1, 2}));
}

void tst_KyDestinationEditing::move_thatCannotBeCommitted_movesNothing()
{
    const std::unique_ptr<KyDestination> destination = create();
    const QStringList before = rows(QStringLiteral("destination_tbl"));
    destination->readGroups();
    QVERIFY(QSqlQuery(connection()).exec(QStringLiteral("PRAGMA busy_timeout = 0")));
    DestinationRecorder recorder(destination.get());
    {
        // Somebody who reads keeps changes from getting into the file, though not from being prepared.
        QSqlDatabase reader = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("reader"));
        reader.setDatabaseName(file());
        QVERIFY(reader.open());
        QSqlQuery query(reader);
        QVERIFY(query.exec(QStringLiteral("BEGIN")));
        QVERIFY(query.exec(QStringLiteral("SELECT * FROM destination_tbl")));
        QCOMPARE(destination->changeDestinationCategory({1, 2}, 0, KyDestination::Data_Group), QList<int>());
    }
    QSqlDatabase::removeDatabase(QStringLiteral("reader"));
    QCOMPARE(recorder.takeSignals(), QStringList());
    QCOMPARE(destination->lastErrorMessage(), QString());
    QCOMPARE(rows(QStringLiteral("destination_tbl")), before);
    QCOMPARE(destination->changeDestinationCategory({1, 2}, 0, KyDestination::Data_Group),
             QList<int>({1, 2}));
}

void tst_KyDestinationEditing::move_ofAMissingTable_movesNothing()
{
    const std::unique_ptr<KyDestination> destination = create();
    execute(file(), {QStringLiteral("DROP TABLE destination_tbl")});
    DestinationRecorder recorder(destination.get());
    QCOMPARE(destination->changeDestinationCategory({1, 2}, 0, KyDestination::Data_Group), QList<int>());
    QCOMPARE(recorder.takeSignals(), QStringList());
    QVERIFY(destination->addNewGroup(QStringLiteral("New"), nullptr)); // no transaction was left behind
}

void tst_KyDestinationEditing::move_whileAnotherWrites_waitsOnce()
{
    const std::unique_ptr<KyDestination> destination = create();
    const QStringList before = rows(QStringLiteral("destination_tbl"));
    QProcess writer;
    writer.start(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/ky_database_writer"), {file()});
    QVERIFY(writer.waitForReadyRead());
    QCOMPARE(writer.readAll().trimmed(), QByteArray("ready"));
    destination->readGroups();
    QVERIFY(QSqlQuery(connection()).exec(QStringLiteral("PRAGMA busy_timeout = 300")));

    QList<int> ids;
    for (int id = 1; id <= 1000; ++id)
        ids.append(id);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(destination->changeDestinationCategory(ids, 0, KyDestination::Data_Group), QList<int>());
    QVERIFY(timer.elapsed() < 60000); // once for each destination would be five minutes
    writer.closeWriteChannel();
    QVERIFY(writer.waitForFinished());
    QCOMPARE(rows(QStringLiteral("destination_tbl")), before);
    QCOMPARE(destination->changeDestinationCategory(ids, 0, KyDestination::Data_Group), ids);
}

#ifdef Q_OS_UNIX
void tst_KyDestinationEditing::move_onAFullDisk_movesNothing()
{
    m_environment->writeConfig(makeDestinations(1, 3000));
    std::unique_ptr<KyDestination> destination = create();
    m_environment->writeConfig(makeDestinations(1, 3000));
    QVERIFY(destination->init());
    QList<int> ids;
    for (int id = 1; id <= 3000; ++id)
        ids.append(id);
    {
        const FileSizeLimit limit(100 * 1024); // which the journal exceeds on the way
        destination->readGroups();
        QCOMPARE(destination->changeDestinationCategory(ids, 5, KyDestination::Data_Group), QList<int>());
    }
    QCOMPARE(queryRows(file(), QStringLiteral("SELECT COUNT(*) FROM destination_tbl WHERE group_id=5")),
             QStringList({QStringLiteral("0")}));
    QCOMPARE(destination->changeDestinationCategory(ids, 5, KyDestination::Data_Group), ids);
}
#endif

void tst_KyDestinationEditing::move_leavesTheMapsAlone()
{
    const std::unique_ptr<KyDestination> destination = create();
    destination->startToRead();
    destination->changeDestinationCategory({1}, 0, KyDestination::Data_Group);
    destination->changeDestinationCategory({1}, 0, KyDestination::Data_Channel);
    QCOMPARE(destination->channelNames()->size(), 3);
    QCOMPARE(destination->groupNames()->size(), 3);
}

void tst_KyDestinationEditing::edit_closesTheDatabase_data()
{
    addEdits();
}

void tst_KyDestinationEditing::edit_closesTheDatabase()
{
    QFETCH(Edit, edit);
    const std::unique_ptr<KyDestination> destination = create();
    destination->readGroups();
    QVERIFY(isOpen());
    QVERIFY(edit(destination.get(), nullptr));
    QVERIFY(!isOpen());
    edit(destination.get(), nullptr); // what is added already cannot be added again
    QVERIFY(!isOpen());
}

void tst_KyDestinationEditing::edit_clearsTheMapOfItsType_data()
{
    addEdits();
}

void tst_KyDestinationEditing::edit_clearsTheMapOfItsType()
{
    QFETCH(Edit, edit);
    QFETCH(int, type);
    const std::unique_ptr<KyDestination> destination = create();
    for (const bool isRefused : {false, true}) {
        destination->startToRead();
        const int channels = destination->channelNames()->size();
        const int groups = destination->groupNames()->size();
        QVERIFY(channels > 0 && groups > 0);
        if (isRefused)
            QVERIFY(connection().transaction());
        QCOMPARE(edit(destination.get(), nullptr), !isRefused);
        QCOMPARE(destination->channelNames()->size(), type == KyDestination::Data_Channel ? 0 : channels);
        QCOMPARE(destination->groupNames()->size(), type == KyDestination::Data_Group ? 0 : groups);
    }
}

void tst_KyDestinationEditing::edit_withNullMaps_works_data()
{
    addEdits();
}

void tst_KyDestinationEditing::edit_withNullMaps_works()
{
    QFETCH(Edit, edit);
    const std::unique_ptr<KyDestination> destination = create();
    const std::unique_ptr<QMap<int, QString>> channels(destination->channelNames());
    const std::unique_ptr<QMap<int, QString>> groups(destination->groupNames());
    destination->setChannelNames(nullptr);
    destination->setGroupNames(nullptr);
    QVERIFY(edit(destination.get(), nullptr));
}

void tst_KyDestinationEditing::edit_ofAnUndefinedType_isRefused_data()
{
    QTest::addColumn<Edit>("edit");
    QTest::newRow("add") << Edit([](KyDestination *destination, int *newId) {
        return destination->addNewCategory(NO_TYPE, QStringLiteral("New"), newId);
    });
    QTest::newRow("rename") << Edit([](KyDestination *destination, int *) {
        return destination->renameCategory(NO_TYPE, 1, QStringLiteral("New"));
    });
    QTest::newRow("remove") << Edit([](KyDestination *destination, int *) {
        return destination->removeCategory(static_cast<KyDestination::DataType>(-1), 1);
    });
}

void tst_KyDestinationEditing::edit_ofAnUndefinedType_isRefused()
{
    QFETCH(Edit, edit);
    const std::unique_ptr<KyDestination> destination = create();
    destination->startToRead();
    const QByteArray before = readFile(file());
    DestinationRecorder recorder(destination.get());
    int id = -1;
    QVERIFY(!edit(destination.get(), &id));
    QCOMPARE(id, -1);
    QCOMPARE(recorder.takeSignals(), QStringList({error(TYPE_UNDEFINED)}));
    QCOMPARE(destination->lastErrorMessage(), TYPE_UNDEFINED);
    QVERIFY(!isOpen());
    QCOMPARE(destination->channelNames()->size(), 3);
    QCOMPARE(destination->groupNames()->size(), 3);
    QCOMPARE(readFile(file()), before);
}

void tst_KyDestinationEditing::edit_withoutTransaction_isRefused_data()
{
    addEdits();
}

void tst_KyDestinationEditing::edit_withoutTransaction_isRefused()
{
    QFETCH(Edit, edit);
    const std::unique_ptr<KyDestination> destination = create();
    const QByteArray before = readFile(file());
    destination->readGroups();
    QVERIFY(connection().transaction());
    DestinationRecorder recorder(destination.get());
    int id = -1;
    QVERIFY(!edit(destination.get(), &id));
    QCOMPARE(id, -1);
    QCOMPARE(recorder.takeSignals(), QStringList({error(NO_TRANSACTION)}));
    QCOMPARE(destination->lastErrorMessage(), NO_TRANSACTION);
    QVERIFY(!isOpen());
    QCOMPARE(readFile(file()), before);
    QVERIFY(edit(destination.get(), &id));
}

void tst_KyDestinationEditing::edit_withoutInit_isRefused_data()
{
    addEdits();
    QTest::newRow("move") << Edit([](KyDestination *destination, int *) {
        return !destination->changeDestinationCategory({1}, 0, KyDestination::Data_Group).isEmpty();
    }) << 1;
}

void tst_KyDestinationEditing::edit_withoutInit_isRefused()
{
    QFETCH(Edit, edit);
    KyDestination destination;
    DestinationRecorder recorder(&destination);
    int id = -1;
    QVERIFY(!edit(&destination, &id));
    QCOMPARE(id, -1);
    const QString message = QStringLiteral("The database connection does not exist.");
    QCOMPARE(recorder.takeSignals(), QStringList({error(message)}));
    QCOMPARE(destination.lastErrorMessage(), message);
}

void tst_KyDestinationEditing::edit_ofWhatCannotBeOpened_isRefused_data()
{
    edit_withoutInit_isRefused_data();
}

void tst_KyDestinationEditing::edit_ofWhatCannotBeOpened_isRefused()
{
    QFETCH(Edit, edit);
    const std::unique_ptr<KyDestination> destination = create();
    QVERIFY(QFile::remove(file()));
    QVERIFY(QDir().mkdir(file()));
    DestinationRecorder recorder(destination.get());
    int id = -1;
    QVERIFY(!edit(destination.get(), &id));
    QCOMPARE(id, -1);
    const QString message = QStringLiteral("The destination database can not be opened.");
    QCOMPARE(recorder.takeSignals(), QStringList({error(message)}));
    QCOMPARE(destination->lastErrorMessage(), message);
    QVERIFY(!isOpen());
}

void tst_KyDestinationEditing::edit_ofAMissingTable_isRefused_data()
{
    addEdits();
}

void tst_KyDestinationEditing::edit_ofAMissingTable_isRefused()
{
    QFETCH(Edit, edit);
    QFETCH(int, type);
    const std::unique_ptr<KyDestination> destination = create();
    execute(file(), {QStringLiteral("DROP TABLE ") + tableOf(type)});
    DestinationRecorder recorder(destination.get());
    int id = -1;
    QVERIFY(!edit(destination.get(), &id));
    QCOMPARE(id, -1);
    const QString message = destination->lastErrorMessage();
    QVERIFY2(message == NO_NEW_ID || message.startsWith(QStringLiteral("Error occured: ")),
             qPrintable(message));
    QCOMPARE(recorder.takeSignals(), QStringList({error(message)}));
    QVERIFY(!isOpen());
}

void tst_KyDestinationEditing::edit_whileAnotherWrites_isRefused_data()
{
    addEdits();
}

void tst_KyDestinationEditing::edit_whileAnotherWrites_isRefused()
{
    QFETCH(Edit, edit);
    const std::unique_ptr<KyDestination> destination = create();
    const QByteArray before = readFile(file());
    QProcess writer;
    writer.start(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/ky_database_writer"), {file()});
    QVERIFY(writer.waitForReadyRead());
    QCOMPARE(writer.readAll().trimmed(), QByteArray("ready"));
    destination->readGroups();
    QVERIFY(QSqlQuery(connection()).exec(QStringLiteral("PRAGMA busy_timeout = 0")));

    DestinationRecorder recorder(destination.get());
    int id = -1;
    QVERIFY(!edit(destination.get(), &id));
    QCOMPARE(id, -1);
    const QString message = QStringLiteral("Error occured: database is locked Unable to fetch row");
    QCOMPARE(recorder.takeSignals(), QStringList({error(message)}));
    QCOMPARE(destination->lastErrorMessage(), message);
    QVERIFY(!isOpen());
    writer.closeWriteChannel();
    QVERIFY(writer.waitForFinished());
    QCOMPARE(readFile(file()), before);
    QVERIFY(edit(destination.get(), &id));
}

/** What makes an edit fail, by name. */
static QStringList obstacles()
{
    return {QStringLiteral("no connection"), QStringLiteral("folder"), QStringLiteral("transaction"),
            QStringLiteral("refusal"), QStringLiteral("no table")};
}

/** Puts \a obstacle in the way of the edits of \a destination. */
static void obstruct(KyDestination *destination, const QString &obstacle, const QString &file)
{
    if (obstacle == obstacles()[0]) {
        destination->purgeDatabase();
    } else if (obstacle == obstacles()[1]) {
        QFile::remove(file);
        QDir().mkdir(file);
    } else if (obstacle == obstacles()[2]) {
        destination->readGroups();
        connection().transaction();
    } else if (obstacle == obstacles()[3]) {
        for (const char *table : {"channel_tbl", "group_tbl"})
            for (const char *event : {"INSERT", "UPDATE", "DELETE"})
                execute(file,
                        {QStringLiteral(
                             "CREATE TRIGGER %1_%2 BEFORE %2 ON %1 BEGIN SELECT RAISE(ABORT, 'no'); END")
                             .arg(QLatin1String(table), QLatin1String(event))});
    } else {
        execute(file, {QStringLiteral("DROP TABLE channel_tbl"), QStringLiteral("DROP TABLE group_tbl")});
    }
}

void tst_KyDestinationEditing::slotThatDeletesTheObject_endsTheEdit_data()
{
    addEdits();
}

void tst_KyDestinationEditing::slotThatDeletesTheObject_endsTheEdit()
{
    QFETCH(Edit, edit);
    for (const QString &obstacle : obstacles()) {
        KyDestination *const victim = create().release();
        obstruct(victim, obstacle, file());
        DestinationRecorder recorder(victim);
        recorder.setReaction([=](const QString &) {
            delete victim;
        });
        int id = 77;
        QVERIFY(!edit(victim, &id));
        QVERIFY(id == -1 || id == 77); // those that hand one out say that there is none
        QCOMPARE(recorder.takeSignals().size(), 1);
        QVERIFY(QSqlDatabase::connectionNames().isEmpty());
        if (QFileInfo(file()).isDir())
            QVERIFY(QDir().rmdir(file()));
        else
            QVERIFY(QFile::remove(file()));
    }
    KyDestination *const victim = create().release();
    DestinationRecorder recorder(victim);
    recorder.setReaction([=](const QString &) {
        delete victim;
    });
    QCOMPARE(victim->changeDestinationCategory({1}, 0, NO_TYPE), QList<int>());
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
}

void tst_KyDestinationEditing::slotThatCallsBack_isServed_data()
{
    addEdits();
}

void tst_KyDestinationEditing::slotThatCallsBack_isServed()
{
    QFETCH(Edit, edit);
    const std::function<void(KyDestination *)> reactions[] = {
        [](KyDestination *destination) {
            destination->startToRead();
        },
        [](KyDestination *destination) {
            destination->purgeDatabase();
        },
        [](KyDestination *destination) {
            destination->reconnectDatabase();
        },
        [](KyDestination *destination) {
            destination->init();
        },
        [](KyDestination *destination) {
            destination->changeDestinationCategory({1}, 0, KyDestination::Data_Group);
        },
        [](KyDestination *destination) {
            destination->addNewGroup(QStringLiteral("From a slot"), nullptr);
        },
    };
    for (const auto &reaction : reactions) {
        const std::unique_ptr<KyDestination> destination = create();
        obstruct(destination.get(), QStringLiteral("refusal"), file());
        DestinationRecorder recorder(destination.get());
        bool isDone = false;
        recorder.setReaction([&](const QString &) {
            if (isDone)
                return;
            isDone = true;
            reaction(destination.get());
        });
        int id = -1;
        QVERIFY(!edit(destination.get(), &id));
        QCOMPARE(id, -1);
        QVERIFY(isDone);
        QVERIFY(!isOpen());
        QVERIFY(QFile::remove(file()));
    }
}

void tst_KyDestinationEditing::oddNames_areStored_data()
{
    addOddTexts();
}

void tst_KyDestinationEditing::oddNames_areStored()
{
    QFETCH(QString, text);
    const std::unique_ptr<KyDestination> destination = create();
    int id = -1;
    for (const int type : {0, 1}) {
        QVERIFY(destination->addNewCategory(toType(type), text, &id));
        QCOMPARE(rows(tableOf(type)).constLast(), QStringLiteral("3|") + text + QStringLiteral("|3"));
        QVERIFY(!destination->addNewCategory(toType(type), text, &id));
        QVERIFY(destination->renameCategory(toType(type), 0, text + QStringLiteral("!")));
        QCOMPARE(rows(tableOf(type)).constFirst(), QStringLiteral("0|") + text + QStringLiteral("!|0"));
        QVERIFY(!destination->renameCategory(toType(type), 1, text));
    }
}

KYTE_TEST_MAIN(tst_KyDestinationEditing)
#include "tst_KyDestinationEditing.moc"
