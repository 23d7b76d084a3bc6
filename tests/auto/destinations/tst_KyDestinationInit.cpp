#include "KyTestMain.h"

#include "KyDestinationTest.h"

#include <KyEditorConfig.h>
#include <Path.h>

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <memory>

using namespace Kyte;
using namespace Kyte::Test;

static const QString STANDARD_NAME = QStringLiteral("destination.kyb");
static const QString WORKING_NAME = QStringLiteral("destination.kyb.work");
static const QString NO_CONFIGURATION = QStringLiteral("Application configuration file can not be found.");
static const QString DESTINATION_COLUMNS =
    QStringLiteral("id name posindex address shared user channel_id group_id");

/** What SQLite says about \a statement on the database \a file. */
static QString errorOf(const QString &file, const QString &statement)
{
    QString error;
    {
        QSqlDatabase database =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("errorOf"));
        database.setDatabaseName(file);
        if (!database.open())
            error = database.lastError().text();
        QSqlQuery query(database);
        if (database.isOpen() && !query.exec(statement))
            error = query.lastError().text();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("errorOf"));
    return error;
}

class tst_KyDestinationInit : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newObject_isEmptyAndOpensNothing();
    void constants_areTheAgreedNames();
    void connectionName_followsTheMode();

    void normalMode_createsTheStandardFile();
    void settingMode_createsTheWorkingFileOnly();
    void settingMode_worksOnACopy();
    void bothModes_workSideBySide();
    void missingFolder_isCreated();
    void folderThatIsAFile_isRefused_data();
    void folderThatIsAFile_isRefused();
    void missingConfiguration_isRefused();
    void malformedConfiguration_isRefused();

    void script_isExact();
    void script_isWhatTheDatabaseHas_data();
    void script_isWhatTheDatabaseHas();
    void columns_areReal_data();
    void columns_areReal();
    void indexes_areOnColumns_data();
    void indexes_areOnColumns();
    void foreignKeys_areDeclaredAndNotEnforced();
    void existingTables_areKept();

    void channels_comeFromTheFiles();
    void channels_areRebuilt();
    void channelsThatCannotBeWritten_areLeftOut_data();
    void channelsThatCannotBeWritten_areLeftOut();
    void withoutChannelFiles_initSucceeds();

    void destinations_areWritten();
    void destinations_keepTheirGroupAndNothingElse();
    void destinationsNoLongerListed_areDeleted();
    void destinationsWithoutStamp_areNotDeleted();
    void missingMainFile_assignsNothing();
    void mainFileThatCannotBeOpened_leavesTheDestinationsAlone();
    void malformedMainFile_countsAsFarAsItGoes();
    void swappedNames_areBothSwept();
    void nameInUse_isPassedOver();
    void repeatedId_endsWithTheLater();
    void oddGroup_becomesAnInteger_data();
    void oddGroup_becomesAnInteger();
    void idBeyond32Bits_hidesNoDestination();
    void oneSecond_sweepsNothing();
    void stamps_areOfThisSecond();
    void oddText_isStored_data();
    void oddText_isStored();
    void passwords_areStoredEnciphered();

    void fingerprint_isTakenAtTheEnd_data();
    void fingerprint_isTakenAtTheEnd();
    void fingerprint_showsChanges();

    void database_isClosedAfterwards_data();
    void database_isClosedAfterwards();
    void initTwice_isLikeOnce_data();
    void initTwice_isLikeOnce();
    void initTwice_changesTheMode_data();
    void initTwice_changesTheMode();
    void initThatFailsLater_leavesNoWorkingCopy();
    void settingModeAfterInit_sparesTheStandardFile();
    void normalModeAfterInit_stillRemovesTheWorkingCopy();
    void destructor_removesTheWorkingCopyAndNothingElse();
    void destructor_saysWhenTheWorkingCopyStays();
    void destructor_saysWhenTheWorkingCopyIsGone();
    void destructor_inNormalMode_leavesTheFile();
    void laterObjectOfTheSameMode_takesTheConnection_data();
    void laterObjectOfTheSameMode_takesTheConnection();
    void slotThatDeletesTheObject_endsInit_data();
    void slotThatDeletesTheObject_endsInit();

    void staleWorkingCopy_isReplaced();
    void staleWorkingJournal_isRemoved();
    void workingCopyThatCannotBeDeleted_isAnError();
    void standardFileThatIsAFolder_isAnError_data();
    void standardFileThatIsAFolder_isAnError();
    void hotJournal_isHonoured_data();
    void hotJournal_isHonoured();
    void writeAheadLog_isHonoured();
    void copyAsWorkingFile_answersThePath();

    void garbageFile_isAnError_data();
    void garbageFile_isAnError();
    void corruptFile_doesNotCrash_data();
    void corruptFile_doesNotCrash();
    void foreignTable_isAnError();
    void lockedFile_isAnErrorInNormalMode();
    void lockedFile_isCopiedInSettingMode();
#ifdef Q_OS_UNIX
    void fullDisk_leavesTheDestinationsAlone();
    void fullDisk_whileCopying_isAnError();
#endif

    void purgedDatabase_isMissing();
    void reconnectedDatabase_isClosedOnTheSameFile_data();
    void reconnectedDatabase_isClosedOnTheSameFile();
    void reconnectedBeforeInit_thereIsNothing();
    void cipher_isReversible_data();
    void cipher_isReversible();
    void foreignCipherText_isEmpty();
    void stampText_hasItsFormat();
    void stampText_isNotParsed();

private:
    QString standardFile() const;
    QString workingFile() const;
    /** An object that was initialised. */
    std::unique_ptr<KyDestination> create(bool settingMode = false) const;
    /** Makes the standard file with \a destinations and the channels 0 to 2, all stamps old. */
    void makeDatabase(const QList<Destination> &destinations) const;
    QStringList destinationIds(const QString &file) const;

    std::unique_ptr<Environment> m_environment;
    std::unique_ptr<MessageWatch> m_watch;
};

void tst_KyDestinationInit::init()
{
    m_environment = std::make_unique<Environment>();
    m_watch = std::make_unique<MessageWatch>();
}

void tst_KyDestinationInit::cleanup()
{
    const QStringList complaints = m_watch->take();
    m_watch.reset();
    m_environment.reset();
    QCOMPARE(complaints, QStringList());
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
}

QString tst_KyDestinationInit::standardFile() const
{
    return m_environment->databaseFile();
}

QString tst_KyDestinationInit::workingFile() const
{
    return m_environment->workingFile();
}

std::unique_ptr<KyDestination> tst_KyDestinationInit::create(bool settingMode) const
{
    auto destination = std::make_unique<KyDestination>(nullptr);
    destination->setSettingMode(settingMode);
    if (!destination->init())
        qFatal("init failed: %s", qPrintable(destination->lastErrorMessage()));
    return destination;
}

void tst_KyDestinationInit::makeDatabase(const QList<Destination> &destinations) const
{
    for (int id = 0; id < 3; ++id)
        m_environment->writeChannel(id, QStringLiteral("Channel %1").arg(id), id);
    m_environment->writeConfig(destinations);
    create();
    backdate(standardFile());
}

QStringList tst_KyDestinationInit::destinationIds(const QString &file) const
{
    return queryRows(file, QStringLiteral("SELECT id FROM destination_tbl ORDER BY id"));
}

void tst_KyDestinationInit::newObject_isEmptyAndOpensNothing()
{
    QObject parent;
    auto *const destination = new KyDestination(&parent);
    QCOMPARE(destination->parent(), &parent);
    QCOMPARE(destination->settingMode(), false);
    QCOMPARE(destination->dataType(), KyDestination::Data_Channel);
    QCOMPARE(destination->maxDestinationCount(), -1);
    QCOMPARE(destination->maxChannelCount(), -1);
    QCOMPARE(destination->lastErrorMessage(), QString());
    QCOMPARE(destination->reservedDatabaseFileHashSha1(), QString());
    QCOMPARE(destination->currentDatabaseFileHashSha1(), QString());
    QVERIFY(destination->channelNames() && destination->channelNames()->isEmpty());
    QVERIFY(destination->groupNames() && destination->groupNames()->isEmpty());
    QVERIFY(destination->channelNames() != destination->groupNames());
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
    QCOMPARE(channelFolder(*m_environment), QStringList());
    destination->purgeDatabase();
}

void tst_KyDestinationInit::constants_areTheAgreedNames()
{
    QCOMPARE(KyDestination::DATABASE_FILE_NAME, QStringLiteral("destination.kyb"));
    QCOMPARE(KyDestination::DATABASE_CONNECTION_NAME_STD,
             QStringLiteral("ky_sql_destination_connection_std"));
    QCOMPARE(KyDestination::DATABASE_CONNECTION_NAME_WORK,
             QStringLiteral("ky_sql_destination_connection_wrk"));
    QCOMPARE(static_cast<int>(KyDestination::Data_Channel), 0);
    QCOMPARE(static_cast<int>(KyDestination::Data_Group), 1);
}

void tst_KyDestinationInit::connectionName_followsTheMode()
{
    KyDestination destination;
    QCOMPARE(destination.getDatabaseConnectionName(), QStringLiteral("ky_sql_destination_connection_std"));
    destination.setSettingMode(true);
    QVERIFY(destination.settingMode());
    QCOMPARE(destination.getDatabaseConnectionName(), QStringLiteral("ky_sql_destination_connection_wrk"));
}

void tst_KyDestinationInit::normalMode_createsTheStandardFile()
{
    KyDestination destination;
    DestinationRecorder recorder(&destination);
    QVERIFY(destination.init());
    QCOMPARE(recorder.takeSignals(), QStringList({QStringLiteral("initialized")}));
    QCOMPARE(destination.lastErrorMessage(), QString());
    QCOMPARE(channelFolder(*m_environment), QStringList({STANDARD_NAME}));
    QCOMPARE(destination.getStandardDatabaseFilePath(), standardFile());
    QCOMPARE(destination.getWorkingDatabaseFilePath(), workingFile());
    QCOMPARE(queryRows(standardFile(),
                       QStringLiteral("SELECT name FROM sqlite_master WHERE type='table' ORDER BY name")),
             QStringList({QStringLiteral("channel_tbl"), QStringLiteral("destination_tbl"),
                          QStringLiteral("group_tbl")}));
}

void tst_KyDestinationInit::settingMode_createsTheWorkingFileOnly()
{
    const std::unique_ptr<KyDestination> destination = create(true);
    QCOMPARE(channelFolder(*m_environment), QStringList({WORKING_NAME}));
    QCOMPARE(queryRows(workingFile(),
                       QStringLiteral("SELECT name FROM sqlite_master WHERE type='table' ORDER BY name")),
             QStringList({QStringLiteral("channel_tbl"), QStringLiteral("destination_tbl"),
                          QStringLiteral("group_tbl")}));
}

void tst_KyDestinationInit::settingMode_worksOnACopy()
{
    makeDatabase(makeDestinations(1, 3));
    execute(standardFile(), {QStringLiteral("INSERT INTO group_tbl (id, name) VALUES (5, 'Five')")});
    const QByteArray before = readFile(standardFile());

    const std::unique_ptr<KyDestination> destination = create(true);
    QVERIFY(destination->addNewGroup(QStringLiteral("New"), nullptr));
    QCOMPARE(readFile(standardFile()), before);
    QCOMPARE(queryRows(workingFile(), QStringLiteral("SELECT id, name FROM group_tbl ORDER BY id")),
             QStringList({QStringLiteral("0|New"), QStringLiteral("5|Five")}));
    QCOMPARE(destinationIds(workingFile()), destinationIds(standardFile()));
}

void tst_KyDestinationInit::bothModes_workSideBySide()
{
    const std::unique_ptr<KyDestination> normal = create();
    const std::unique_ptr<KyDestination> setting = create(true);
    QVERIFY(setting->addNewGroup(QStringLiteral("New"), nullptr));
    DestinationRecorder recorder(normal.get());
    normal->readGroups();
    QVERIFY(recorder.takeSignals().contains(QStringLiteral("itemsHasRead()")));
    QVERIFY(normal->addNewGroup(QStringLiteral("Other"), nullptr));
    QCOMPARE(queryRows(standardFile(), QStringLiteral("SELECT name FROM group_tbl")),
             QStringList({QStringLiteral("Other")}));
    QCOMPARE(queryRows(workingFile(), QStringLiteral("SELECT name FROM group_tbl")),
             QStringList({QStringLiteral("New")}));
}

void tst_KyDestinationInit::missingFolder_isCreated()
{
    QVERIFY(QDir(m_environment->dataDir()).removeRecursively());
    const std::unique_ptr<KyDestination> destination = create();
    QCOMPARE(channelFolder(*m_environment), QStringList({STANDARD_NAME}));
}

void tst_KyDestinationInit::folderThatIsAFile_isRefused_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("channel folder") << QStringLiteral("data/channel");
    QTest::newRow("data folder") << QStringLiteral("data");
}

void tst_KyDestinationInit::folderThatIsAFile_isRefused()
{
    QFETCH(QString, file);
    const QString path = m_environment->root() + QLatin1Char('/') + file;
    QVERIFY(QDir(path).removeRecursively());
    writeFile(path, "not a folder");

    KyDestination destination;
    DestinationRecorder recorder(&destination);
    QVERIFY(!destination.init());
    const QString message = QStringLiteral("The channel folder can not be handle.");
    QCOMPARE(destination.lastErrorMessage(), message);
    QCOMPARE(recorder.takeSignals(),
             QStringList({QStringLiteral("errorOccured(") + message + QLatin1Char(')')}));
    QCOMPARE(readFile(path), QByteArray("not a folder"));
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
}

void tst_KyDestinationInit::missingConfiguration_isRefused()
{
    QVERIFY(QFile::remove(m_environment->configFile()));
    KyDestination destination;
    DestinationRecorder recorder(&destination);
    QVERIFY(!destination.init());
    QCOMPARE(destination.lastErrorMessage(), NO_CONFIGURATION);
    QCOMPARE(recorder.takeSignals(),
             QStringList({QStringLiteral("errorOccured(Application configuration file can not be found.)")}));
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
    QCOMPARE(channelFolder(*m_environment), QStringList());
}

void tst_KyDestinationInit::malformedConfiguration_isRefused()
{
    writeFile(m_environment->configFile(), "<Pelmora><dataDir>data</dataDir>");
    KyDestination destination;
    QVERIFY(!destination.init());
    QCOMPARE(destination.lastErrorMessage(), NO_CONFIGURATION);
}

static QString categoryTable(const QString &name)
{
    return QStringLiteral("'%1'("
                          "'id' INTEGER PRIMARY KEY NOT NULL,"
                          "'name' TEXT NOT NULL,"
                          "'posindex' INTEGER NOT NULL DEFAULT 0,"
                          "'updatetime' DATETIME,"
                          "CONSTRAINT 'name_UNIQUE' UNIQUE('name'))")
        .arg(name);
}

static const QString DESTINATION_TABLE = QStringLiteral(
    "'destination_tbl'("
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
    "CONSTRAINT 'fk_destination_channel' FOREIGN KEY('channel_id') REFERENCES 'channel_tbl'('id'),"
    "CONSTRAINT 'fk_destination_group1' FOREIGN KEY('group_id') REFERENCES 'group_tbl'('id'))");

void tst_KyDestinationInit::script_isExact()
{
    const QString table = QStringLiteral("CREATE TABLE IF NOT EXISTS %1;");
    const QString index = QStringLiteral("CREATE INDEX IF NOT EXISTS '%1.%2' ON '%1'('%3');");
    const QString channels = QStringLiteral("channel_tbl");
    const QString groups = QStringLiteral("group_tbl");
    const QString destinations = QStringLiteral("destination_tbl");
    const QString updateTimeIndex = QStringLiteral("updatetime_idx");
    const QString updateTime = QStringLiteral("updatetime");
    const QStringList expected = {
        QStringLiteral("PRAGMA foreign_keys = OFF;"),
        table.arg(categoryTable(channels)),
        index.arg(channels, updateTimeIndex, updateTime),
        table.arg(categoryTable(groups)),
        index.arg(groups, updateTimeIndex, updateTime),
        table.arg(DESTINATION_TABLE),
        index.arg(destinations, QStringLiteral("fk_destination_channel_idx"), QStringLiteral("channel_id")),
        index.arg(destinations, QStringLiteral("fk_destination_group1_idx"), QStringLiteral("group_id")),
        index.arg(destinations, updateTimeIndex, updateTime),
    };
    QCOMPARE(KyDestination::getDataBaseCreationScript(), expected);
}

void tst_KyDestinationInit::script_isWhatTheDatabaseHas_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("sql");
    for (const QString &table : {QStringLiteral("channel_tbl"), QStringLiteral("group_tbl")})
        QTest::newRow(qPrintable(table)) << table << QStringLiteral("CREATE TABLE ") + categoryTable(table);
    QTest::newRow("destination_tbl") << QStringLiteral("destination_tbl")
                                     << QStringLiteral("CREATE TABLE ") + DESTINATION_TABLE;
    const QStringList indexes = {
        QStringLiteral("channel_tbl updatetime_idx updatetime"),
        QStringLiteral("group_tbl updatetime_idx updatetime"),
        QStringLiteral("destination_tbl updatetime_idx updatetime"),
        QStringLiteral("destination_tbl fk_destination_channel_idx channel_id"),
        QStringLiteral("destination_tbl fk_destination_group1_idx group_id"),
    };
    for (const QString &index : indexes) {
        const QStringList parts = index.split(QLatin1Char(' '));
        const QString name = parts[0] + QLatin1Char('.') + parts[1];
        QTest::newRow(qPrintable(name))
            << name << QStringLiteral("CREATE INDEX '%1' ON '%2'('%3')").arg(name, parts[0], parts[2]);
    }
}

void tst_KyDestinationInit::script_isWhatTheDatabaseHas()
{
    QFETCH(QString, name);
    QFETCH(QString, sql);
    create();
    QCOMPARE(
        queryRows(standardFile(), QStringLiteral("SELECT sql FROM sqlite_master WHERE name='%1'").arg(name)),
        QStringList({sql}));
    QCOMPARE(
        queryRows(standardFile(), QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE sql NOT NULL")),
        QStringList({QStringLiteral("8")}));
}

void tst_KyDestinationInit::columns_areReal_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QStringList>("columns");
    const QStringList category = {
        QStringLiteral("0|id|INTEGER|1|NULL|1"),
        QStringLiteral("1|name|TEXT|1|NULL|0"),
        QStringLiteral("2|posindex|INTEGER|1|0|0"),
        QStringLiteral("3|updatetime|DATETIME|0|NULL|0"),
    };
    QTest::newRow("channels") << QStringLiteral("channel_tbl") << category;
    QTest::newRow("groups") << QStringLiteral("group_tbl") << category;
    QTest::newRow("destinations") << QStringLiteral("destination_tbl")
                                  << QStringList({
                                         QStringLiteral("0|id|INTEGER|1|NULL|1"),
                                         QStringLiteral("1|name|TEXT|1|NULL|0"),
                                         QStringLiteral("2|posindex|INTEGER|1|0|0"),
                                         QStringLiteral("3|address|TEXT|0|NULL|0"),
                                         QStringLiteral("4|shared|TEXT|0|NULL|0"),
                                         QStringLiteral("5|user|VARCHAR(255)|0|NULL|0"),
                                         QStringLiteral("6|password|VARCHAR(255)|0|NULL|0"),
                                         QStringLiteral("7|channel_id|INTEGER|1|-1|0"),
                                         QStringLiteral("8|group_id|INTEGER|1|-1|0"),
                                         QStringLiteral("9|updatetime|DATETIME|0|NULL|0"),
                                     });
}

void tst_KyDestinationInit::columns_areReal()
{
    QFETCH(QString, table);
    QFETCH(QStringList, columns);
    create();
    QCOMPARE(queryRows(standardFile(), QStringLiteral("PRAGMA table_info(%1)").arg(table)), columns);
}

void tst_KyDestinationInit::indexes_areOnColumns_data()
{
    QTest::addColumn<QString>("index");
    QTest::addColumn<QString>("column"); // rank in the index, rank in the table, name
    QTest::newRow("channel stamps") << QStringLiteral("channel_tbl.updatetime_idx")
                                    << QStringLiteral("0|3|updatetime");
    QTest::newRow("group stamps") << QStringLiteral("group_tbl.updatetime_idx")
                                  << QStringLiteral("0|3|updatetime");
    QTest::newRow("destination stamps")
        << QStringLiteral("destination_tbl.updatetime_idx") << QStringLiteral("0|9|updatetime");
    QTest::newRow("channels") << QStringLiteral("destination_tbl.fk_destination_channel_idx")
                              << QStringLiteral("0|7|channel_id");
    QTest::newRow("groups") << QStringLiteral("destination_tbl.fk_destination_group1_idx")
                            << QStringLiteral("0|8|group_id");
    for (const char *table : {"channel_tbl", "group_tbl", "destination_tbl"})
        QTest::newRow(table) << QStringLiteral("sqlite_autoindex_%1_1").arg(QLatin1String(table))
                             << QStringLiteral("0|1|name");
}

void tst_KyDestinationInit::indexes_areOnColumns()
{
    QFETCH(QString, index);
    QFETCH(QString, column);
    create();
    QCOMPARE(queryRows(standardFile(), QStringLiteral("PRAGMA index_info('%1')").arg(index)),
             QStringList({column}));
}

void tst_KyDestinationInit::foreignKeys_areDeclaredAndNotEnforced()
{
    m_environment->writeConfig({makeDestination(1)});
    m_environment->writeMainFile({{77, {1}}}); // a channel that nobody has described
    const std::unique_ptr<KyDestination> destination = create();
    QCOMPARE(queryRows(standardFile(), QStringLiteral("PRAGMA foreign_key_list(destination_tbl)")),
             QStringList({QStringLiteral("0|0|group_tbl|group_id|id|NO ACTION|NO ACTION|NONE"),
                          QStringLiteral("1|0|channel_tbl|channel_id|id|NO ACTION|NO ACTION|NONE")}));
    QCOMPARE(queryRows(standardFile(), QStringLiteral("SELECT channel_id FROM destination_tbl")),
             QStringList({QStringLiteral("77")}));
}

void tst_KyDestinationInit::existingTables_areKept()
{
    execute(standardFile(),
            {QStringLiteral("CREATE TABLE group_tbl(id INTEGER PRIMARY KEY, name TEXT, posindex INTEGER,"
                            " updatetime DATETIME, colour TEXT)"),
             QStringLiteral("INSERT INTO group_tbl VALUES (3, 'Three', 1, NULL, 'red')")});
    create();
    create();
    QCOMPARE(queryRows(standardFile(), QStringLiteral("SELECT * FROM group_tbl")),
             QStringList({QStringLiteral("3|Three|1|NULL|red")}));
}

void tst_KyDestinationInit::channels_comeFromTheFiles()
{
    m_environment->writeChannel(4, QStringLiteral("Four"), 1);
    m_environment->writeChannel(2, QString(), 0);
    writeFile(m_environment->channelDir() + QStringLiteral("/channel_none.xml"),
              "<Pelmora><channel id=\"9\" name=\"Nine\"/></Pelmora>");
    writeFile(m_environment->channelDir() + QStringLiteral("/channel.xml"),
              "<Pelmora><channel id=\"8\" name=\"Eight\"/></Pelmora>");
    create();
    QCOMPARE(literalRows(standardFile(), QStringLiteral("channel_tbl"), QStringLiteral("id name posindex")),
             QStringList({QStringLiteral("2|'Ch.2'|0"), QStringLiteral("4|'Four'|1"),
                          QStringLiteral("9|'Nine'|-1")}));
}

void tst_KyDestinationInit::channels_areRebuilt()
{
    makeDatabase({});
    QVERIFY(QFile::remove(m_environment->channelDir() + QStringLiteral("/channel1.xml")));
    m_environment->writeChannel(2, QStringLiteral("Renamed"), 7);
    execute(standardFile(), {QStringLiteral("INSERT INTO channel_tbl (id, name) VALUES (50, 'By hand')")});
    create();
    QCOMPARE(literalRows(standardFile(), QStringLiteral("channel_tbl"), QStringLiteral("id name posindex")),
             QStringList({QStringLiteral("0|'Channel 0'|0"), QStringLiteral("2|'Renamed'|7")}));
}

void tst_KyDestinationInit::channelsThatCannotBeWritten_areLeftOut_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("name");
    QTest::newRow("same id") << 0 << QStringLiteral("Other");
    QTest::newRow("same name") << 1 << QStringLiteral("Channel 0");
}

void tst_KyDestinationInit::channelsThatCannotBeWritten_areLeftOut()
{
    QFETCH(int, id);
    QFETCH(QString, name);
    const QString content = QStringLiteral("<Pelmora><channel id=\"%1\" name=\"%2\" index=\"5\"/></Pelmora>");
    m_environment->writeChannel(0, QStringLiteral("Channel 0"), 5);
    writeFile(m_environment->channelDir() + QStringLiteral("/channel_twin.xml"),
              content.arg(id).arg(name).toUtf8());
    m_environment->writeChannel(3, QStringLiteral("Channel 3"), 6);
    create();
    const QStringList rows =
        queryRows(standardFile(), QStringLiteral("SELECT posindex FROM channel_tbl ORDER BY posindex"));
    QCOMPARE(rows, QStringList({QStringLiteral("5"), QStringLiteral("6")}));
}

void tst_KyDestinationInit::withoutChannelFiles_initSucceeds()
{
    m_environment->writeConfig(makeDestinations(1, 2));
    KyDestination destination;
    DestinationRecorder recorder(&destination);
    destination.readChannels();
    QVERIFY(!destination.lastErrorMessage().isEmpty()); // of the time before
    recorder.takeSignals();
    QVERIFY(destination.init());
    QCOMPARE(destination.lastErrorMessage(), QString());
    QCOMPARE(recorder.takeSignals(), QStringList({QStringLiteral("initialized")}));
    QCOMPARE(queryRows(standardFile(), QStringLiteral("SELECT id FROM channel_tbl")), QStringList());
    QCOMPARE(destinationIds(standardFile()), QStringList({QStringLiteral("1"), QStringLiteral("2")}));
}

void tst_KyDestinationInit::destinations_areWritten()
{
    m_environment->writeChannel(3, QStringLiteral("Three"), 0);
    m_environment->writeMainFile({{3, {7}}});
    m_environment->writeConfig({makeDestination(7), {8, QStringLiteral("Bare"), {}, {}, {}, {}}});
    create();
    QCOMPARE(literalRows(standardFile(), QStringLiteral("destination_tbl"), DESTINATION_COLUMNS),
             QStringList({QStringLiteral("7|'Destination 7'|0|'10.0.0.7'|'share7'|'user7'|3|-1"),
                          QStringLiteral("8|'Bare'|0|''|''|''|-1|-1")}));
    const QStringList passwords =
        queryRows(standardFile(), QStringLiteral("SELECT password FROM destination_tbl ORDER BY id"));
    QCOMPARE(KyDestination::decryptString(passwords[0]), QStringLiteral("secret7"));
    QVERIFY(!passwords[1].isEmpty());
    QCOMPARE(KyDestination::decryptString(passwords[1]), QString());
}

void tst_KyDestinationInit::destinations_keepTheirGroupAndNothingElse()
{
    makeDatabase(makeDestinations(1, 2));
    execute(standardFile(),
            {QStringLiteral("UPDATE destination_tbl SET name='Old', posindex=9, address='old', shared=NULL,"
                            " user='old', password='old', channel_id=9, group_id=4 WHERE id=2")});
    m_environment->writeMainFile({{1, {2}}});
    create();
    QCOMPARE(literalRows(standardFile(), QStringLiteral("destination_tbl"), DESTINATION_COLUMNS),
             QStringList({QStringLiteral("1|'Destination 1'|0|'10.0.0.1'|'share1'|'user1'|-1|-1"),
                          QStringLiteral("2|'Destination 2'|0|'10.0.0.2'|'share2'|'user2'|1|4")}));
    const QStringList passwords =
        queryRows(standardFile(), QStringLiteral("SELECT password FROM destination_tbl ORDER BY id"));
    QCOMPARE(KyDestination::decryptString(passwords[1]), QStringLiteral("secret2"));
}

void tst_KyDestinationInit::destinationsNoLongerListed_areDeleted()
{
    makeDatabase(makeDestinations(1, 4));
    m_environment->writeConfig({makeDestination(3), makeDestination(9)});
    create();
    QCOMPARE(destinationIds(standardFile()), QStringList({QStringLiteral("3"), QStringLiteral("9")}));

    backdate(standardFile());
    m_environment->writeConfig({});
    create();
    QCOMPARE(destinationIds(standardFile()), QStringList());
}

void tst_KyDestinationInit::destinationsWithoutStamp_areNotDeleted()
{
    makeDatabase(makeDestinations(1, 2));
    execute(standardFile(), {QStringLiteral("UPDATE destination_tbl SET updatetime=NULL WHERE id=2")});
    m_environment->writeConfig({});
    create();
    QCOMPARE(destinationIds(standardFile()), QStringList({QStringLiteral("2")})); // NULL<>? is not true
}

void tst_KyDestinationInit::missingMainFile_assignsNothing()
{
    makeDatabase(makeDestinations(1, 2));
    m_environment->writeMainFile({{1, {1, 2}}});
    create();
    QCOMPARE(queryRows(standardFile(), QStringLiteral("SELECT channel_id FROM destination_tbl")),
             QStringList({QStringLiteral("1"), QStringLiteral("1")}));
    QVERIFY(QFile::remove(m_environment->mainFile()));
    create();
    QCOMPARE(queryRows(standardFile(), QStringLiteral("SELECT channel_id FROM destination_tbl")),
             QStringList({QStringLiteral("-1"), QStringLiteral("-1")}));
}

void tst_KyDestinationInit::mainFileThatCannotBeOpened_leavesTheDestinationsAlone()
{
    makeDatabase(makeDestinations(1, 3));
    execute(standardFile(), {QStringLiteral("UPDATE destination_tbl SET channel_id=2, posindex=8")});
    const QString allColumns = DESTINATION_COLUMNS + QStringLiteral(" password updatetime");
    const QStringList before = literalRows(standardFile(), QStringLiteral("destination_tbl"), allColumns);
    m_environment->writeConfig({makeDestination(9)});
    m_environment->writeChannel(1, QStringLiteral("Renamed"), 1);
    QVERIFY(QDir().mkpath(m_environment->mainFile()));

    KyDestination destination;
    DestinationRecorder recorder(&destination);
    QVERIFY(destination.init());
    QCOMPARE(recorder.takeSignals(), QStringList({QStringLiteral("initialized")}));
    QCOMPARE(destination.lastErrorMessage(), QString());
    QVERIFY(!isOpen());
    QCOMPARE(literalRows(standardFile(), QStringLiteral("destination_tbl"), allColumns), before);
    QCOMPARE(queryRows(standardFile(), QStringLiteral("SELECT name FROM channel_tbl WHERE id=1")),
             QStringList({QStringLiteral("Renamed")}));
}

void tst_KyDestinationInit::malformedMainFile_countsAsFarAsItGoes()
{
    m_environment->writeConfig(makeDestinations(1, 2));
    writeFile(m_environment->mainFile(),
              "<Pelmora><channel id=\"5\"><destination id=\"1\"/></oops><destination id=\"2\"/>");
    create();
    QCOMPARE(
        queryRows(standardFile(), QStringLiteral("SELECT id, channel_id FROM destination_tbl ORDER BY id")),
        QStringList({QStringLiteral("1|5"), QStringLiteral("2|-1")}));
}

void tst_KyDestinationInit::swappedNames_areBothSwept()
{
    makeDatabase(makeDestinations(1, 3));
    Destination first = makeDestination(1);
    Destination second = makeDestination(2);
    std::swap(first.name, second.name);
    m_environment->writeConfig({first, second, makeDestination(3)});
    create();
    QCOMPARE(destinationIds(standardFile()), QStringList({QStringLiteral("3")}));

    create(); // the next synchronisation brings them back
    QCOMPARE(queryRows(standardFile(), QStringLiteral("SELECT id, name FROM destination_tbl ORDER BY id")),
             QStringList({QStringLiteral("1|Destination 2"), QStringLiteral("2|Destination 1"),
                          QStringLiteral("3|Destination 3")}));
}

void tst_KyDestinationInit::nameInUse_isPassedOver()
{
    Destination twin = makeDestination(2);
    twin.name = makeDestination(1).name;
    m_environment->writeConfig({makeDestination(1), twin, makeDestination(3)});
    create();
    QCOMPARE(destinationIds(standardFile()), QStringList({QStringLiteral("1"), QStringLiteral("3")}));
}

void tst_KyDestinationInit::repeatedId_endsWithTheLater()
{
    Destination later = makeDestination(1);
    later.name = QStringLiteral("Later");
    m_environment->writeConfig({makeDestination(1), later});
    create();
    QCOMPARE(queryRows(standardFile(), QStringLiteral("SELECT id, name FROM destination_tbl")),
             QStringList({QStringLiteral("1|Later")}));
}

void tst_KyDestinationInit::oddGroup_becomesAnInteger_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("kept");
    QTest::newRow("integer") << QStringLiteral("4") << QStringLiteral("4");
    QTest::newRow("largest") << QStringLiteral("2147483647") << QStringLiteral("2147483647");
    QTest::newRow("smallest") << QStringLiteral("-2147483648") << QStringLiteral("-2147483648");
    QTest::newRow("text") << QStringLiteral("'red'") << QStringLiteral("-1");
    QTest::newRow("empty text") << QStringLiteral("''") << QStringLiteral("-1");
    QTest::newRow("number as text") << QStringLiteral("'12'") << QStringLiteral("12");
    QTest::newRow("real") << QStringLiteral("2.4") << QStringLiteral("2");
    QTest::newRow("negative real") << QStringLiteral("-7.5") << QString::number(QVariant(-7.5).toInt());
    QTest::newRow("blob") << QStringLiteral("x'ff00'") << QStringLiteral("-1");
    QTest::newRow("digits in a blob") << QStringLiteral("x'3132'") << QStringLiteral("12");
    QTest::newRow("beyond 32 bits") << QStringLiteral("4294967301") << QStringLiteral("5");
}

void tst_KyDestinationInit::oddGroup_becomesAnInteger()
{
    QFETCH(QString, stored);
    QFETCH(QString, kept);
    makeDatabase(makeDestinations(1, 2));
    execute(standardFile(),
            {QStringLiteral("UPDATE destination_tbl SET name='Old', posindex=3, channel_id=3,"
                            " group_id=%1 WHERE id=1")
                 .arg(stored)});
    m_environment->writeMainFile({{2, {1}}});
    create();
    QCOMPARE(literalRows(standardFile(), QStringLiteral("destination_tbl"), DESTINATION_COLUMNS),
             QStringList({QStringLiteral("1|'Destination 1'|0|'10.0.0.1'|'share1'|'user1'|2|%1").arg(kept),
                          QStringLiteral("2|'Destination 2'|0|'10.0.0.2'|'share2'|'user2'|-1|-1")}));
}

void tst_KyDestinationInit::idBeyond32Bits_hidesNoDestination()
{
    makeDatabase({});
    // Cut to 32 bits, the id of this row would be that of the destination.
    execute(standardFile(),
            {QStringLiteral("INSERT INTO destination_tbl (id, name, group_id, updatetime)"
                            " VALUES (4294967303, 'Far', 'red', 'old')")});
    m_environment->writeConfig({makeDestination(7)});
    create();
    QCOMPARE(queryRows(standardFile(), QStringLiteral("SELECT id, group_id FROM destination_tbl")),
             QStringList({QStringLiteral("7|-1")}));
}

void tst_KyDestinationInit::oneSecond_sweepsNothing()
{
    QString stamp;
    bool isOneSecond = false;
    for (int attempt = 0; attempt < 20 && !isOneSecond; ++attempt) { // the second may end in the middle
        QTRY_VERIFY(QTime::currentTime().msec() < 200);
        stamp = KyDestination::getCurrentTimeForDatabaseString();
        m_environment->writeConfig(makeDestinations(1, 2));
        create();
        m_environment->writeConfig({makeDestination(2)});
        create();
        isOneSecond = KyDestination::getCurrentTimeForDatabaseString() == stamp;
    }
    QVERIFY(isOneSecond);
    QCOMPARE(destinationIds(standardFile()), QStringList({QStringLiteral("1"), QStringLiteral("2")}));

    QTRY_VERIFY(KyDestination::getCurrentTimeForDatabaseString() != stamp);
    create();
    QCOMPARE(destinationIds(standardFile()), QStringList({QStringLiteral("2")}));
}

void tst_KyDestinationInit::stamps_areOfThisSecond()
{
    makeDatabase(makeDestinations(1, 2));
    const QString before = KyDestination::getCurrentTimeForDatabaseString();
    create();
    const QString after = KyDestination::getCurrentTimeForDatabaseString();
    const QStringList stamps = queryRows(standardFile(),
                                         QStringLiteral("SELECT updatetime FROM channel_tbl"
                                                        " UNION ALL SELECT updatetime FROM destination_tbl"));
    QCOMPARE(stamps.size(), 5);
    for (const QString &stamp : stamps)
        QVERIFY2(stamp >= before && stamp <= after, qPrintable(stamp));
}

void tst_KyDestinationInit::oddText_isStored_data()
{
    addOddTexts();
}

void tst_KyDestinationInit::oddText_isStored()
{
    QFETCH(QString, text);
    m_environment->writeChannel(0, text, 0);
    m_environment->writeConfig({{1, text, text, text, text, text}});
    for (int round = 0; round < 2; ++round) { // inserted, then updated
        create();
        QCOMPARE(queryRows(standardFile(), QStringLiteral("SELECT name FROM channel_tbl")),
                 QStringList({text}));
        QCOMPARE(queryRows(standardFile(),
                           QStringLiteral("SELECT name, address, shared, user FROM destination_tbl")),
                 QStringList({QStringList({text, text, text, text}).join(QLatin1Char('|'))}));
        QCOMPARE(
            KyDestination::decryptString(
                queryRows(standardFile(), QStringLiteral("SELECT password FROM destination_tbl")).value(0)),
            text);
    }
}

void tst_KyDestinationInit::passwords_areStoredEnciphered()
{
    const QString secret = QStringLiteral("Opensesame-\u00e4\u6771");
    QList<Destination> destinations = makeDestinations(1, 2);
    destinations[0].password = secret;
    destinations[1].password = secret;
    m_environment->writeConfig(destinations);
    const std::unique_ptr<KyDestination> setting = create(true);
    QVERIFY(setting->saveData());

    const QStringList stored =
        queryRows(standardFile(), QStringLiteral("SELECT password FROM destination_tbl"));
    QCOMPARE(stored.size(), 2);
    QVERIFY(stored[0] != stored[1]);
    for (const QString &text : stored) {
        QVERIFY(!text.contains(secret));
        QCOMPARE(KyDestination::decryptString(text), secret);
    }
    for (const QString &file : {standardFile(), workingFile(), m_environment->mainFile()}) {
        const QByteArray content = readFile(file);
        QVERIFY(!content.isEmpty());
        QVERIFY(!content.contains("Opensesame"));
        QVERIFY(!content.contains(QByteArray("Opensesame").toBase64().left(12)));
    }
}

void tst_KyDestinationInit::fingerprint_isTakenAtTheEnd_data()
{
    QTest::addColumn<bool>("settingMode");
    QTest::newRow("normal mode") << false;
    QTest::newRow("setting mode") << true;
}

void tst_KyDestinationInit::fingerprint_isTakenAtTheEnd()
{
    QFETCH(bool, settingMode);
    m_environment->writeConfig(makeDestinations(1, 3));
    KyDestination destination;
    destination.setSettingMode(settingMode);
    QString atSignal;
    DestinationRecorder recorder(&destination);
    recorder.setReaction([&](const QString &) {
        atSignal = destination.reservedDatabaseFileHashSha1();
    });
    QVERIFY(destination.init());
    const QString expected = Path::getHashSha1(settingMode ? workingFile() : standardFile());
    QCOMPARE(expected.size(), 40);
    QCOMPARE(destination.reservedDatabaseFileHashSha1(), expected);
    QCOMPARE(destination.currentDatabaseFileHashSha1(), expected);
    QCOMPARE(atSignal, expected);
}

void tst_KyDestinationInit::fingerprint_showsChanges()
{
    const std::unique_ptr<KyDestination> destination = create();
    const QString before = destination->reservedDatabaseFileHashSha1();
    execute(standardFile(), {QStringLiteral("INSERT INTO group_tbl (id, name) VALUES (1, 'One')")});
    QCOMPARE(destination->reservedDatabaseFileHashSha1(), before);
    QVERIFY(destination->currentDatabaseFileHashSha1() != before);
    QCOMPARE(destination->currentDatabaseFileHashSha1(), Path::getHashSha1(standardFile()));

    destination->setReservedDatabaseFileHashSha1(destination->currentDatabaseFileHashSha1());
    QCOMPARE(destination->reservedDatabaseFileHashSha1(), destination->currentDatabaseFileHashSha1());
    QVERIFY(destination->addNewGroup(QStringLiteral("Two"), nullptr));
    QVERIFY(destination->reservedDatabaseFileHashSha1() != destination->currentDatabaseFileHashSha1());
}

void tst_KyDestinationInit::database_isClosedAfterwards_data()
{
    fingerprint_isTakenAtTheEnd_data();
}

void tst_KyDestinationInit::database_isClosedAfterwards()
{
    QFETCH(bool, settingMode);
    const std::unique_ptr<KyDestination> destination = create(settingMode);
    QCOMPARE(QSqlDatabase::connectionNames(), QStringList({destination->getDatabaseConnectionName()}));
    QVERIFY(connection(settingMode).isValid());
    QCOMPARE(connection(settingMode).driverName(), QStringLiteral("QSQLITE"));
    QCOMPARE(connection(settingMode).databaseName(), settingMode ? workingFile() : standardFile());
    QVERIFY(!isOpen(settingMode));

    QCOMPARE(destination->getNewId(KyDestination::Data_Group), -1);
    QCOMPARE(destination->getNewPosIndex(KyDestination::Data_Group), 0);
    QVERIFY(!isOpen(settingMode));
    QCOMPARE(destination->lastErrorMessage(), QString());
}

void tst_KyDestinationInit::initTwice_isLikeOnce_data()
{
    fingerprint_isTakenAtTheEnd_data();
}

void tst_KyDestinationInit::initTwice_isLikeOnce()
{
    QFETCH(bool, settingMode);
    makeDatabase(makeDestinations(1, 3));
    const std::unique_ptr<KyDestination> destination = create(settingMode);
    DestinationRecorder recorder(destination.get());
    QVERIFY(destination->addNewGroup(QStringLiteral("New"), nullptr));
    destination->startToRead(); // leaves the connection open
    recorder.takeSignals();

    QVERIFY(destination->init());
    QCOMPARE(recorder.takeSignals(), QStringList({QStringLiteral("initialized")}));
    QVERIFY(!isOpen(settingMode));
    QCOMPARE(QSqlDatabase::connectionNames().size(), 1);
    destination->readGroups();
    QCOMPARE(recorder.takeSignals().value(1),
             settingMode ? QStringLiteral("itemsHasRead()") : QStringLiteral("itemsHasRead(G0)"));
}

void tst_KyDestinationInit::initTwice_changesTheMode_data()
{
    fingerprint_isTakenAtTheEnd_data();
}

void tst_KyDestinationInit::initTwice_changesTheMode()
{
    QFETCH(bool, settingMode);
    makeDatabase({});
    const std::unique_ptr<KyDestination> destination = create(!settingMode);
    destination->setSettingMode(settingMode);
    QVERIFY(destination->init());
    QCOMPARE(QSqlDatabase::connectionNames(), QStringList({destination->getDatabaseConnectionName()}));
    QVERIFY(QFile::exists(standardFile()));
    QCOMPARE(QFile::exists(workingFile()), settingMode);
}

void tst_KyDestinationInit::initThatFailsLater_leavesNoWorkingCopy()
{
    makeDatabase({});
    const QStringList files = channelFolder(*m_environment);
    std::unique_ptr<KyDestination> destination = create(true);
    QVERIFY(QFile::remove(m_environment->configFile()));
    QVERIFY(!destination->init());
    QCOMPARE(destination->lastErrorMessage(), NO_CONFIGURATION);

    m_environment->writeConfig({});
    QVERIFY(!destination->saveData()); // there is nothing that could be saved any more
    QCOMPARE(destination->lastErrorMessage(), QStringLiteral("The database connection does not exist."));
    destination.reset();
    QCOMPARE(channelFolder(*m_environment), files);
}

void tst_KyDestinationInit::settingModeAfterInit_sparesTheStandardFile()
{
    makeDatabase(makeDestinations(1, 2));
    std::unique_ptr<KyDestination> destination = create();
    QVERIFY(destination->addNewGroup(QStringLiteral("New"), nullptr));
    const QString fingerprint = destination->reservedDatabaseFileHashSha1();
    const QByteArray before = readFile(standardFile());
    destination->setSettingMode(true);
    QVERIFY(destination->saveData());
    QCOMPARE(readFile(standardFile()), before);
    QCOMPARE(destination->reservedDatabaseFileHashSha1(), fingerprint); // nothing was saved
    destination.reset();
    QCOMPARE(readFile(standardFile()), before);
}

void tst_KyDestinationInit::normalModeAfterInit_stillRemovesTheWorkingCopy()
{
    makeDatabase({});
    std::unique_ptr<KyDestination> destination = create(true);
    destination->setSettingMode(false);
    destination.reset();
    QVERIFY(!QFile::exists(workingFile()));
    QVERIFY(QFile::exists(standardFile()));
}

void tst_KyDestinationInit::destructor_removesTheWorkingCopyAndNothingElse()
{
    makeDatabase(makeDestinations(1, 2));
    m_environment->writeMainFile({{0, {1}}});
    for (const char *name : {"destination.kyb.bak", "destination.kyb.work2", "destination.kyb.work.old"})
        writeFile(m_environment->channelDir() + QLatin1Char('/') + QLatin1String(name), "kept");
    const QStringList files = channelFolder(*m_environment);
    const QByteArray standard = readFile(standardFile());

    std::unique_ptr<KyDestination> destination = create(true);
    QVERIFY(destination->addNewGroup(QStringLiteral("Lost"), nullptr));
    destination->startToRead(); // open until the end
    writeFile(workingFile() + QStringLiteral("-journal"), "");
    destination.reset();
    QCOMPARE(channelFolder(*m_environment), files);
    QCOMPARE(readFile(standardFile()), standard);
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
}

void tst_KyDestinationInit::destructor_saysWhenTheWorkingCopyStays()
{
    std::unique_ptr<KyDestination> destination = create(true);
    QVERIFY(QFile::remove(workingFile()));
    QVERIFY(QDir().mkdir(workingFile()));
    QTest::ignoreMessage(QtDebugMsg, "remove error");
    destination.reset();
    QVERIFY(QFileInfo(workingFile()).isDir());
}

void tst_KyDestinationInit::destructor_saysWhenTheWorkingCopyIsGone()
{
    std::unique_ptr<KyDestination> destination = create(true);
    QVERIFY(QFile::remove(workingFile()));
    QTest::ignoreMessage(QtDebugMsg, "remove error");
    destination.reset();
    QCOMPARE(channelFolder(*m_environment), QStringList());
}

void tst_KyDestinationInit::destructor_inNormalMode_leavesTheFile()
{
    makeDatabase({});
    writeFile(workingFile(), "somebody else's");
    const QStringList files = channelFolder(*m_environment);
    create().reset();
    QCOMPARE(channelFolder(*m_environment), files);
    QCOMPARE(readFile(workingFile()), QByteArray("somebody else's"));
}

void tst_KyDestinationInit::laterObjectOfTheSameMode_takesTheConnection_data()
{
    fingerprint_isTakenAtTheEnd_data();
}

void tst_KyDestinationInit::laterObjectOfTheSameMode_takesTheConnection()
{
    QFETCH(bool, settingMode);
    makeDatabase(makeDestinations(1, 2));
    std::unique_ptr<KyDestination> earlier = create(settingMode);
    const QByteArray name = earlier->getDatabaseConnectionName().toUtf8();
    QTest::ignoreMessage(QtWarningMsg,
                         "QSqlDatabasePrivate::removeDatabase: connection '" + name
                             + "' is still in use, all queries will cease to work.");
    QTest::ignoreMessage(QtWarningMsg,
                         "QSqlDatabasePrivate::addDatabase: duplicate connection name '" + name
                             + "', old connection removed.");
    const std::unique_ptr<KyDestination> later = create(settingMode);
    QCOMPARE(m_watch->take().size(), 2);

    DestinationRecorder recorder(earlier.get());
    earlier->readGroups();
    QCOMPARE(recorder.takeSignals(),
             QStringList({QStringLiteral("errorOccured(The destination database can not be opened.)")}));
    QVERIFY(later->addNewGroup(QStringLiteral("Before"), nullptr));
    later->readGroups();
    QVERIFY(isOpen(settingMode));

    earlier.reset(); // takes neither the connection nor the working copy along
    QVERIFY(isOpen(settingMode));
    QVERIFY(later->addNewGroup(QStringLiteral("After"), nullptr));
    QCOMPARE(queryRows(settingMode ? workingFile() : standardFile(),
                       QStringLiteral("SELECT name FROM group_tbl ORDER BY id")),
             QStringList({QStringLiteral("Before"), QStringLiteral("After")}));
}

void tst_KyDestinationInit::slotThatDeletesTheObject_endsInit_data()
{
    QTest::addColumn<QString>("obstacle");
    QTest::addColumn<bool>("settingMode");
    QTest::newRow("initialized") << QString() << false;
    QTest::newRow("initialized, setting mode") << QString() << true;
    QTest::newRow("no configuration") << QStringLiteral("configuration") << false;
    QTest::newRow("no folder") << QStringLiteral("folder") << false;
    QTest::newRow("garbage") << QStringLiteral("garbage") << false;
    QTest::newRow("garbage, setting mode") << QStringLiteral("garbage") << true;
}

void tst_KyDestinationInit::slotThatDeletesTheObject_endsInit()
{
    QFETCH(QString, obstacle);
    QFETCH(bool, settingMode);
    if (obstacle == QLatin1String("configuration")) {
        QVERIFY(QFile::remove(m_environment->configFile()));
    } else if (obstacle == QLatin1String("folder")) {
        QVERIFY(QDir().rmdir(m_environment->channelDir()));
        writeFile(m_environment->channelDir(), "x");
    } else if (obstacle == QLatin1String("garbage")) {
        writeFile(standardFile(), QByteArray(5000, 'x'));
    }
    auto *const destination = new KyDestination;
    destination->setSettingMode(settingMode);
    DestinationRecorder recorder(destination);
    recorder.setReaction([=](const QString &) {
        delete destination;
    });
    QCOMPARE(destination->init(), obstacle.isEmpty());
    QCOMPARE(recorder.takeSignals(),
             QStringList({obstacle.isEmpty() ? QStringLiteral("initialized")
                                             : QStringLiteral("errorOccured(") + recorder.lastMessage()
                                  + QLatin1Char(')')}));
    QVERIFY(!QFile::exists(workingFile()));
}

void tst_KyDestinationInit::staleWorkingCopy_isReplaced()
{
    makeDatabase({});
    execute(standardFile(), {QStringLiteral("INSERT INTO group_tbl (id, name) VALUES (1, 'Standard')")});
    QVERIFY(QFile::copy(standardFile(), workingFile()));
    execute(workingFile(), {QStringLiteral("UPDATE group_tbl SET name='Stale'")});
    const std::unique_ptr<KyDestination> destination = create(true);
    QCOMPARE(queryRows(workingFile(), QStringLiteral("SELECT name FROM group_tbl")),
             QStringList({QStringLiteral("Standard")}));
}

void tst_KyDestinationInit::staleWorkingJournal_isRemoved()
{
    makeDatabase(makeDestinations(1, 200));
    QVERIFY(QFile::copy(standardFile(), workingFile()));
    execute(workingFile(), {QStringLiteral("UPDATE destination_tbl SET user='stale'")});
    interruptTransaction(workingFile(),
                         QStringLiteral("UPDATE destination_tbl SET address=hex(randomblob(300))"));
    QVERIFY(QFile::exists(workingFile() + QStringLiteral("-journal")));

    // Applied to the new copy, the journal would write old pages into it.
    const std::unique_ptr<KyDestination> destination = create(true);
    QCOMPARE(queryRows(workingFile(), QStringLiteral("PRAGMA integrity_check")),
             QStringList({QStringLiteral("ok")}));
    QCOMPARE(queryRows(workingFile(),
                       QStringLiteral("SELECT COUNT(*) FROM destination_tbl WHERE user<>'user' || id")),
             QStringList({QStringLiteral("0")}));
    QCOMPARE(channelFolder(*m_environment).filter(QStringLiteral("journal")), QStringList());
}

void tst_KyDestinationInit::workingCopyThatCannotBeDeleted_isAnError()
{
    makeDatabase({});
    QVERIFY(QDir().mkdir(workingFile()));
    KyDestination destination;
    destination.setSettingMode(true);
    DestinationRecorder recorder(&destination);
    QVERIFY(!destination.init());
    QFile file(workingFile());
    QVERIFY(!file.remove());
    const QString message = QStringLiteral("The old working file can not be deleted.\n") + file.errorString();
    QCOMPARE(destination.lastErrorMessage(), message);
    QCOMPARE(recorder.takeSignals(), QStringList({QStringLiteral("errorOccured(%1)").arg(message)}));
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
    QVERIFY(QFileInfo(workingFile()).isDir());
    for (const bool isReconnected : {false, true}) {
        if (isReconnected)
            destination.reconnectDatabase(); // there is no file that it could connect to
        destination.readChannels();
        QCOMPARE(recorder.takeSignals(),
                 QStringList({QStringLiteral("errorOccured(The database connection does not exist.)")}));
    }
}

void tst_KyDestinationInit::standardFileThatIsAFolder_isAnError_data()
{
    fingerprint_isTakenAtTheEnd_data();
}

void tst_KyDestinationInit::standardFileThatIsAFolder_isAnError()
{
    QFETCH(bool, settingMode);
    QVERIFY(QDir().mkdir(standardFile()));
    KyDestination destination;
    destination.setSettingMode(settingMode);
    DestinationRecorder recorder(&destination);
    QVERIFY(!destination.init());

    QString message = errorOf(standardFile(), QString());
    if (settingMode) {
        QFile file(standardFile());
        QVERIFY(!file.copy(m_environment->root() + QStringLiteral("/copy")));
        message = QStringLiteral("The working file can not be created.\n") + file.errorString();
    }
    QVERIFY(!message.isEmpty());
    QCOMPARE(destination.lastErrorMessage(), message);
    QCOMPARE(recorder.takeSignals(), QStringList({QStringLiteral("errorOccured(%1)").arg(message)}));
    QCOMPARE(channelFolder(*m_environment), QStringList({STANDARD_NAME}));
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
}

void tst_KyDestinationInit::hotJournal_isHonoured_data()
{
    fingerprint_isTakenAtTheEnd_data();
}

void tst_KyDestinationInit::hotJournal_isHonoured()
{
    QFETCH(bool, settingMode);
    makeDatabase(makeDestinations(1, 200));
    QStringList inserts;
    for (int id = 0; id < 200; ++id)
        inserts.append(
            QStringLiteral("INSERT INTO group_tbl (id, name, posindex) VALUES (%1, 'Group %1', 5)").arg(id));
    execute(standardFile(), inserts);
    interruptTransaction(
        standardFile(), QStringLiteral("UPDATE group_tbl SET posindex=6, name=name || hex(randomblob(300))"));

    const std::unique_ptr<KyDestination> destination = create(settingMode);
    const QString file = settingMode ? workingFile() : standardFile();
    QCOMPARE(queryRows(file, QStringLiteral("PRAGMA integrity_check")), QStringList({QStringLiteral("ok")}));
    QCOMPARE(
        queryRows(file,
                  QStringLiteral("SELECT COUNT(*) FROM group_tbl WHERE posindex=5 AND name='Group ' || id")),
        QStringList({QStringLiteral("200")}));
    QCOMPARE(channelFolder(*m_environment).filter(QStringLiteral("journal")), QStringList());
}

void tst_KyDestinationInit::writeAheadLog_isHonoured()
{
    makeDatabase({});
    const QTemporaryDir folder;
    const QString victim = folder.filePath(QStringLiteral("victim"));
    QVERIFY(QFile::copy(standardFile(), victim));
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("wal"));
        database.setDatabaseName(victim);
        QVERIFY(database.open());
        QSqlQuery query(database);
        QVERIFY(query.exec(QStringLiteral("PRAGMA journal_mode=WAL")));
        QVERIFY(query.exec(QStringLiteral("INSERT INTO group_tbl (id, name) VALUES (1, 'In the log')")));
        QVERIFY(QFile::remove(standardFile()));
        QVERIFY(QFile::copy(victim, standardFile()));
        QVERIFY(QFile::copy(victim + QStringLiteral("-wal"), standardFile() + QStringLiteral("-wal")));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("wal"));

    const std::unique_ptr<KyDestination> destination = create(true);
    DestinationRecorder recorder(destination.get());
    destination->readGroups();
    QVERIFY(recorder.takeSignals().contains(QStringLiteral("itemsHasRead(G1)")));
    QVERIFY(destination->addNewGroup(QStringLiteral("New"), nullptr));
    QVERIFY(destination->saveData());
    QCOMPARE(queryRows(standardFile(), QStringLiteral("SELECT name FROM group_tbl ORDER BY id")),
             QStringList({QStringLiteral("New"), QStringLiteral("In the log")}));
}

void tst_KyDestinationInit::copyAsWorkingFile_answersThePath()
{
    const std::unique_ptr<KyDestination> destination = create();
    const QByteArray content = readFile(standardFile());
    bool ok = false;
    QCOMPARE(destination->copyDatabaseFileAsWorkingFile(standardFile(), &ok), workingFile());
    QVERIFY(ok);
    QCOMPARE(readFile(workingFile()), content);

    ok = false;
    const QString missing = m_environment->root() + QStringLiteral("/missing");
    QCOMPARE(destination->copyDatabaseFileAsWorkingFile(missing, &ok), workingFile());
    QVERIFY(ok); // SQLite makes the file when it is opened
    QVERIFY(!QFile::exists(workingFile()));

    ok = true;
    QCOMPARE(destination->copyDatabaseFileAsWorkingFile(m_environment->root(), &ok), workingFile());
    QVERIFY(!ok);
    QVERIFY(
        destination->lastErrorMessage().startsWith(QStringLiteral("The working file can not be created.\n")));
    QCOMPARE(destination->copyDatabaseFileAsWorkingFile(standardFile(), nullptr), workingFile());
    QVERIFY(QFile::remove(workingFile()));
}

void tst_KyDestinationInit::garbageFile_isAnError_data()
{
    fingerprint_isTakenAtTheEnd_data();
}

void tst_KyDestinationInit::garbageFile_isAnError()
{
    QFETCH(bool, settingMode);
    const QByteArray garbage(5000, 'x');
    writeFile(standardFile(), garbage);
    KyDestination destination;
    destination.setSettingMode(settingMode);
    DestinationRecorder recorder(&destination);
    QVERIFY(!destination.init());
    const QString message = errorOf(standardFile(), KyDestination::getDataBaseCreationScript().at(1));
    QVERIFY(message.contains(QStringLiteral("file is not a database")));
    QCOMPARE(destination.lastErrorMessage(), message);
    QCOMPARE(recorder.takeSignals(), QStringList({QStringLiteral("errorOccured(%1)").arg(message)}));
    QCOMPARE(channelFolder(*m_environment), QStringList({STANDARD_NAME}));
    QCOMPARE(readFile(standardFile()), garbage);
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());

    destination.startToRead();
    QCOMPARE(destination.lastErrorMessage(), QStringLiteral("The database connection does not exist."));
}

void tst_KyDestinationInit::corruptFile_doesNotCrash_data()
{
    QTest::addColumn<int>("page");
    QTest::newRow("schema") << 0;
    for (int page = 1; page < 12; ++page)
        QTest::newRow(qPrintable(QStringLiteral("page %1").arg(page + 1))) << page;
    QTest::newRow("cut off") << -1;
}

void tst_KyDestinationInit::corruptFile_doesNotCrash()
{
    QFETCH(int, page);
    makeDatabase(makeDestinations(1, 300));
    QByteArray content = readFile(standardFile());
    if (page < 0)
        content.truncate(content.size() / 2);
    else
        content.replace(page * 4096 + (page == 0 ? 100 : 0), 2000, QByteArray(2000, '\xa5'));
    writeFile(standardFile(), content);

    for (const bool settingMode : {true, false}) {
        KyDestination destination;
        destination.setSettingMode(settingMode);
        DestinationRecorder recorder(&destination);
        const bool ok = destination.init();
        QCOMPARE(ok, destination.lastErrorMessage().isEmpty());
        QCOMPARE(recorder.takeSignals().size(), 1);
        destination.startToRead();
        destination.readDestinations(-2, -2);
        destination.addNewGroup(QStringLiteral("New"), nullptr);
        destination.changeDestinationCategory({1, 2, 3}, 1, KyDestination::Data_Channel);
        destination.removeCategory(KyDestination::Data_Channel, 1);
        if (settingMode)
            QVERIFY(!destination.saveChannelConfigToFile() || destination.lastErrorMessage().isEmpty());
    }
    QVERIFY(!QFile::exists(workingFile()));
}

void tst_KyDestinationInit::foreignTable_isAnError()
{
    execute(standardFile(),
            {QStringLiteral("CREATE TABLE channel_tbl(id INTEGER)")}); // nothing to be indexed
    KyDestination destination;
    QVERIFY(!destination.init());
    QCOMPARE(destination.lastErrorMessage(),
             errorOf(standardFile(), KyDestination::getDataBaseCreationScript().at(2)));
    QVERIFY(destination.lastErrorMessage().contains(QStringLiteral("updatetime")));
    QCOMPARE(queryRows(standardFile(), QStringLiteral("SELECT name FROM sqlite_master")),
             QStringList({QStringLiteral("channel_tbl")})); // rolled back
}

/** A process that holds a write lock on a database until the object dies. */
class OtherWriter
{
    Q_DISABLE_COPY(OtherWriter)

public:
    explicit OtherWriter(const QString &file)
    {
        m_process.start(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/ky_database_writer"), {file});
        if (!m_process.waitForReadyRead(30000) || m_process.readAll().trimmed() != "ready")
            qFatal("No other process: %s", m_process.readAllStandardError().constData());
    }

    ~OtherWriter()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
};

void tst_KyDestinationInit::lockedFile_isAnErrorInNormalMode()
{
    makeDatabase(makeDestinations(1, 3));
    const QByteArray before = readFile(standardFile());
    const OtherWriter writer(standardFile());
    KyDestination destination;
    DestinationRecorder recorder(&destination);
    QVERIFY(!destination.init());
    QVERIFY(destination.lastErrorMessage().contains(QStringLiteral("database is locked")));
    QCOMPARE(recorder.takeSignals(),
             QStringList({QStringLiteral("errorOccured(%1)").arg(destination.lastErrorMessage())}));
    QVERIFY(!isOpen());
    QCOMPARE(readFile(standardFile()), before);
}

void tst_KyDestinationInit::lockedFile_isCopiedInSettingMode()
{
    makeDatabase(makeDestinations(1, 3));
    const OtherWriter writer(standardFile());
    const std::unique_ptr<KyDestination> destination =
        create(true); // what the other has not committed is not there
    QCOMPARE(destinationIds(workingFile()),
             QStringList({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")}));
    QVERIFY(destination->addNewGroup(QStringLiteral("New"), nullptr));
}

#ifdef Q_OS_UNIX
void tst_KyDestinationInit::fullDisk_leavesTheDestinationsAlone()
{
    makeDatabase(makeDestinations(1, 500));
    execute(standardFile(), {QStringLiteral("UPDATE destination_tbl SET group_id=id")});
    const QString allColumns = DESTINATION_COLUMNS + QStringLiteral(" password updatetime");
    const QStringList before = literalRows(standardFile(), QStringLiteral("destination_tbl"), allColumns);
    QList<Destination> destinations = makeDestinations(1, 500);
    for (Destination &destination : destinations)
        destination.address = QString(2000, QLatin1Char('a'));
    m_environment->writeConfig(destinations);

    for (const int spare : {16, 64, 200, 400}) { // KiB: how far the changes come
        const FileSizeLimit limit(QFileInfo(standardFile()).size() + spare * 1024);
        KyDestination destination;
        QVERIFY(destination.init());
        QVERIFY(!isOpen());
        QCOMPARE(literalRows(standardFile(), QStringLiteral("destination_tbl"), allColumns), before);
    }
}

void tst_KyDestinationInit::fullDisk_whileCopying_isAnError()
{
    makeDatabase(makeDestinations(1, 200));
    const QStringList files = channelFolder(*m_environment);
    {
        const FileSizeLimit limit(8192);
        KyDestination destination;
        destination.setSettingMode(true);
        QVERIFY(!destination.init());
        QVERIFY(destination.lastErrorMessage().startsWith(
            QStringLiteral("The working file can not be created.\n")));
        QVERIFY(!destination.lastErrorMessage().endsWith(QLatin1Char('\n')));
    }
    QCOMPARE(channelFolder(*m_environment), files);
}
#endif

void tst_KyDestinationInit::purgedDatabase_isMissing()
{
    const std::unique_ptr<KyDestination> destination = create();
    DestinationRecorder recorder(destination.get());
    destination->startToRead();
    recorder.takeSignals();
    destination->purgeDatabase();
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
    destination->readChannels();
    QCOMPARE(recorder.takeSignals(),
             QStringList({QStringLiteral("errorOccured(The database connection does not exist.)")}));
    QCOMPARE(destination->getNewId(KyDestination::Data_Channel), -1);
    QCOMPARE(destination->getNewPosIndex(KyDestination::Data_Channel), -1);
    destination->purgeDatabase();
    QVERIFY(QFile::exists(standardFile()));
}

void tst_KyDestinationInit::reconnectedDatabase_isClosedOnTheSameFile_data()
{
    fingerprint_isTakenAtTheEnd_data();
}

void tst_KyDestinationInit::reconnectedDatabase_isClosedOnTheSameFile()
{
    QFETCH(bool, settingMode);
    makeDatabase({});
    const std::unique_ptr<KyDestination> destination = create(settingMode);
    for (const bool isPurged : {false, true}) {
        destination->startToRead();
        if (isPurged)
            destination->purgeDatabase();
        destination->reconnectDatabase();
        QVERIFY(connection(settingMode).isValid());
        QVERIFY(!isOpen(settingMode));
        QCOMPARE(connection(settingMode).databaseName(), settingMode ? workingFile() : standardFile());
    }
    DestinationRecorder recorder(destination.get());
    destination->readChannels();
    QCOMPARE(recorder.takeSignals().value(1), QStringLiteral("itemsHasRead(C0 C1 C2)"));
}

void tst_KyDestinationInit::reconnectedBeforeInit_thereIsNothing()
{
    KyDestination destination;
    destination.reconnectDatabase();
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
    DestinationRecorder recorder(&destination);
    destination.readChannels();
    QCOMPARE(recorder.takeSignals(),
             QStringList({QStringLiteral("errorOccured(The database connection does not exist.)")}));
    QVERIFY(destination.init());
    QCOMPARE(connection().databaseName(), standardFile());
    QCOMPARE(channelFolder(*m_environment), QStringList({STANDARD_NAME}));
}

void tst_KyDestinationInit::cipher_isReversible_data()
{
    addOddTexts();
    QTest::newRow("empty") << QString();
}

void tst_KyDestinationInit::cipher_isReversible()
{
    QFETCH(QString, text);
    const QString stored = KyDestination::encryptString(text);
    QVERIFY(!stored.isEmpty());
    QVERIFY(stored != text);
    QCOMPARE(KyDestination::decryptString(stored), text);
}

void tst_KyDestinationInit::foreignCipherText_isEmpty()
{
    QCOMPARE(KyDestination::decryptString(QStringLiteral("secret")), QString());
    QCOMPARE(KyDestination::decryptString(QString()), QString());
}

void tst_KyDestinationInit::stampText_hasItsFormat()
{
    const QDateTime before = QDateTime::currentDateTime();
    const QString text = KyDestination::getCurrentTimeForDatabaseString();
    const QDateTime stamp = QDateTime::fromString(text, QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    QVERIFY2(QRegularExpression(QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d$"))
                 .match(text)
                 .hasMatch(),
             qPrintable(text));
    QVERIFY(stamp.secsTo(before) <= 1 && before.secsTo(stamp) <= 5);
}

void tst_KyDestinationInit::stampText_isNotParsed()
{
    QVERIFY(!KyDestination::getDateTimeFromDatabaseString(KyDestination::getCurrentTimeForDatabaseString())
                 .isValid());
    QVERIFY(!KyDestination::getDateTimeFromDatabaseString(QString()).isValid());
    QCOMPARE(KyDestination::getDateTimeFromDatabaseString(QStringLiteral("Sat Feb 3 04:05:06 2001")),
             QDateTime(QDate(2001, 2, 3), QTime(4, 5, 6)));
}

KYTE_TEST_MAIN(tst_KyDestinationInit)
#include "tst_KyDestinationInit.moc"
