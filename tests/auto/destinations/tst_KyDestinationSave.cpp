#include "KyTestMain.h"

#include "KyDestinationTest.h"

#include <KyChannelConfig.h>
#include <Path.h>

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <memory>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace Kyte;
using namespace Kyte::Test;

static const QString CONNECTION_MISSING = QStringLiteral("The database connection does not exist.");
static const QString FAILED_1 = QStringLiteral("Error occured while the data is saving.(1)\n");
static const QString FAILED_2 = QStringLiteral("Error occured while the data is saving.(2)\n");

/** Whether all assignments can be read. */
static bool isReadable(const QString &file)
{
    bool ok = false;
    {
        QSqlDatabase database =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("isReadable"));
        database.setDatabaseName(file);
        QSqlQuery query(database.open() ? QSqlQuery(database) : QSqlQuery());
        ok = query.exec(QStringLiteral("SELECT id, channel_id FROM destination_tbl"));
        while (query.next()) { }
        ok = ok && !query.lastError().isValid();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("isReadable"));
    return ok;
}

class tst_KyDestinationSave : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void normalMode_writesTheMainFileOnly();
    void settingMode_replacesTheStandardFile();
    void settingMode_makesAMissingStandardFile();
    void savingTwice_savesLaterEdits();
    void savedEdits_areThereInTheNextObject();
    void unsavedEdits_areNot();
    void oddNames_areSaved_data();
    void oddNames_areSaved();
    void savedFile_keepsItsRights();
    void linkInPlaceOfTheFile_isReplaced();
    void fingerprint_isTakenAnewInSettingModeOnly_data();
    void fingerprint_isTakenAnewInSettingModeOnly();
    void success_emitsNothingAndClearsTheError();

    void mainFile_followsMoves();
    void mainFile_keepsDestinationsThatNobodyKnows();
    void mainFile_leavesUnknownChannelsOut();
    void mainFile_ofOddChannels_data();
    void mainFile_ofOddChannels();

    void withoutInit_nothingIsSaved_data();
    void withoutInit_nothingIsSaved();
    void withoutConnection_nothingIsSaved_data();
    void withoutConnection_nothingIsSaved();
    void databaseThatCannotBeOpened_isNotSaved_data();
    void databaseThatCannotBeOpened_isNotSaved();
    void tableThatCannotBeRead_isNotSaved_data();
    void tableThatCannotBeRead_isNotSaved();
    void damagedTable_leavesTheMainFileAlone();
    void mainFileThatCannotBeWritten_isTheError_data();
    void mainFileThatCannotBeWritten_isTheError();
    void missingConfiguration_isTheError();

    void standardFileThatIsAFolder_isFailure1_data();
    void standardFileThatIsAFolder_isFailure1();
    void missingWorkingFile_isFailure2();
    void copyThatCannotBeMade_isFailure2();
#ifdef Q_OS_UNIX
    void protectedStandardFile_isFailure1();
    void fullDisk_isFailure2_data();
    void fullDisk_isFailure2();
#endif

    void staleJournalOfTheStandardFile_isNotApplied();
    void hotJournalOfTheStandardFile_outlivesAFailure();
    void hotJournalOfTheWorkingFile_isHonoured();
    void journalWithoutStandardFile_isRemoved();

private:
    QString standardFile() const;
    QString workingFile() const;
    /** The channels 0 to 2 and the destinations 1 to 6, two in each; then an object on them. */
    std::unique_ptr<KyDestination> create(bool settingMode) const;
    /** An object in setting mode whose working copy has a group more than the standard file. */
    std::unique_ptr<KyDestination> createEdited() const;
    QStringList groups(const QString &file) const;
    /** "chconfig.xml" with the \a destinations of each channel, the channels as their folder lists them. */
    QByteArray mainFile(const QList<QList<int>> &destinations) const;

    std::unique_ptr<Environment> m_environment;
    std::unique_ptr<MessageWatch> m_watch;
};

void tst_KyDestinationSave::init()
{
    m_environment = std::make_unique<Environment>();
    m_environment->writeConfig(makeDestinations(1, 6));
    for (int id = 0; id < 3; ++id)
        m_environment->writeChannel(id, QStringLiteral("Channel %1").arg(id), id);
    m_environment->writeMainFile({{0, {1, 2}}, {1, {3, 4}}, {2, {5, 6}}});
    m_watch = std::make_unique<MessageWatch>();
}

void tst_KyDestinationSave::cleanup()
{
    const QStringList complaints = m_watch->take();
    m_watch.reset();
    m_environment.reset();
    QCOMPARE(complaints, QStringList());
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
}

QString tst_KyDestinationSave::standardFile() const
{
    return m_environment->databaseFile();
}

QString tst_KyDestinationSave::workingFile() const
{
    return m_environment->workingFile();
}

std::unique_ptr<KyDestination> tst_KyDestinationSave::create(bool settingMode) const
{
    auto destination = std::make_unique<KyDestination>(nullptr);
    destination->setSettingMode(settingMode);
    if (!destination->init())
        qFatal("init failed: %s", qPrintable(destination->lastErrorMessage()));
    return destination;
}

std::unique_ptr<KyDestination> tst_KyDestinationSave::createEdited() const
{
    create(false);
    std::unique_ptr<KyDestination> destination = create(true);
    if (!destination->addNewGroup(QStringLiteral("New"), nullptr))
        qFatal("no group: %s", qPrintable(destination->lastErrorMessage()));
    return destination;
}

QStringList tst_KyDestinationSave::groups(const QString &file) const
{
    return queryRows(file, QStringLiteral("SELECT name FROM group_tbl ORDER BY id"));
}

QByteArray tst_KyDestinationSave::mainFile(const QList<QList<int>> &destinations) const
{
    KyChannelConfig config;
    config.getAllChannelInfoFromFiles(m_environment->channelDir());
    QByteArray content = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<Pelmora>\n";
    for (const KyChannelConfig::ChannelInfo &channel : config.channelList()) {
        const QList<int> ids = destinations.value(channel.id);
        content +=
            "    <channel id=\"" + QByteArray::number(channel.id) + (ids.isEmpty() ? "\"/>\n" : "\">\n");
        for (int id : ids)
            content += "        <destination id=\"" + QByteArray::number(id) + "\"/>\n";
        if (!ids.isEmpty())
            content += "    </channel>\n";
    }
    return content + "</Pelmora>\n";
}

void tst_KyDestinationSave::normalMode_writesTheMainFileOnly()
{
    const std::unique_ptr<KyDestination> destination = create(false);
    destination->changeDestinationCategory({1}, 2, KyDestination::Data_Channel);
    const QByteArray before = readFile(standardFile());
    const QStringList files = channelFolder(*m_environment);
    const QString fingerprint = destination->reservedDatabaseFileHashSha1();

    QVERIFY(destination->saveData());
    QCOMPARE(readFile(m_environment->mainFile()), mainFile({{2}, {3, 4}, {1, 5, 6}}));
    QCOMPARE(readFile(standardFile()), before);
    QCOMPARE(channelFolder(*m_environment), files);
    QCOMPARE(destination->reservedDatabaseFileHashSha1(), fingerprint);
}

void tst_KyDestinationSave::settingMode_replacesTheStandardFile()
{
    const std::unique_ptr<KyDestination> destination = createEdited();
    const QStringList files = channelFolder(*m_environment);
    QVERIFY(readFile(standardFile()) != readFile(workingFile()));

    QVERIFY(destination->saveData());
    QCOMPARE(readFile(standardFile()), readFile(workingFile()));
    QCOMPARE(groups(standardFile()), QStringList({QStringLiteral("New")}));
    QCOMPARE(channelFolder(*m_environment), files);
    QVERIFY(files.contains(QStringLiteral("destination.kyb.work")));
}

void tst_KyDestinationSave::settingMode_makesAMissingStandardFile()
{
    std::unique_ptr<KyDestination> destination = create(true);
    QVERIFY(!QFile::exists(standardFile()));
    QVERIFY(destination->saveData());
    QCOMPARE(readFile(standardFile()), readFile(workingFile()));
    destination.reset();
    QCOMPARE(queryRows(standardFile(), QStringLiteral("SELECT COUNT(*) FROM destination_tbl")),
             QStringList({QStringLiteral("6")}));
}

void tst_KyDestinationSave::savingTwice_savesLaterEdits()
{
    const std::unique_ptr<KyDestination> destination = createEdited();
    QVERIFY(destination->saveData());
    QVERIFY(destination->addNewGroup(QStringLiteral("Newer"), nullptr));
    QCOMPARE(groups(standardFile()), QStringList({QStringLiteral("New")}));
    QVERIFY(destination->saveData());
    QCOMPARE(groups(standardFile()), QStringList({QStringLiteral("New"), QStringLiteral("Newer")}));
}

void tst_KyDestinationSave::savedEdits_areThereInTheNextObject()
{
    std::unique_ptr<KyDestination> destination = createEdited();
    QCOMPARE(destination->changeDestinationCategory({1, 3}, 0, KyDestination::Data_Group),
             QList<int>({1, 3}));
    QCOMPARE(destination->changeDestinationCategory({6}, 0, KyDestination::Data_Channel), QList<int>({6}));
    QVERIFY(destination->renameGroup(0, QStringLiteral("Renamed")));
    QVERIFY(destination->saveData());
    destination.reset();

    destination = create(false);
    DestinationRecorder recorder(destination.get());
    destination->readGroups();
    destination->readDestinationsInGroup(0);
    destination->readDestinationsInChannel(0);
    QCOMPARE(recorder.takeSignals().filter(QStringLiteral("itemsHasRead")),
             QStringList({QStringLiteral("itemsHasRead(G0)"), QStringLiteral("itemsHasRead(D1 D3)"),
                          QStringLiteral("itemsHasRead(D1 D2 D6)")}));
    QCOMPARE(groups(standardFile()), QStringList({QStringLiteral("Renamed")}));
}

void tst_KyDestinationSave::unsavedEdits_areNot()
{
    std::unique_ptr<KyDestination> destination = createEdited();
    const QByteArray before = readFile(m_environment->mainFile());
    destination->changeDestinationCategory({1}, 2, KyDestination::Data_Channel);
    destination.reset();
    QCOMPARE(groups(standardFile()), QStringList());
    QCOMPARE(readFile(m_environment->mainFile()), before);
    QCOMPARE(queryRows(standardFile(), QStringLiteral("SELECT channel_id FROM destination_tbl WHERE id=1")),
             QStringList({QStringLiteral("0")}));
}

void tst_KyDestinationSave::oddNames_areSaved_data()
{
    addOddTexts();
}

void tst_KyDestinationSave::oddNames_areSaved()
{
    QFETCH(QString, text);
    m_environment->writeConfig({{1, text, text, text, text, text}});
    std::unique_ptr<KyDestination> destination = create(true);
    QVERIFY(destination->addNewGroup(text, nullptr));
    QVERIFY(destination->saveData());
    destination.reset();
    QCOMPARE(groups(standardFile()), QStringList({text}));
    QCOMPARE(queryRows(standardFile(), QStringLiteral("SELECT name FROM destination_tbl")),
             QStringList({text}));
}

void tst_KyDestinationSave::savedFile_keepsItsRights()
{
    create(false);
    const QFile::Permissions rights =
        QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser | QFile::ReadGroup;
    QVERIFY(QFile::setPermissions(standardFile(), rights));
    const QFile::Permissions former = QFile::permissions(standardFile()); // some systems know fewer
    const std::unique_ptr<KyDestination> destination = create(true);
    QVERIFY(destination->saveData());
    QCOMPARE(QFile::permissions(standardFile()), former);
}

void tst_KyDestinationSave::linkInPlaceOfTheFile_isReplaced()
{
#ifdef Q_OS_WIN
    QSKIP("A link is a file of its own here");
#endif
    create(false);
    const QString target = m_environment->root() + QStringLiteral("/elsewhere");
    QVERIFY(QFile::rename(standardFile(), target));
    QVERIFY(QFile::link(target, standardFile()));
    const QByteArray before = readFile(target);
    const std::unique_ptr<KyDestination> destination = create(true);
    QVERIFY(destination->addNewGroup(QStringLiteral("New"), nullptr));
    QVERIFY(destination->saveData());
    QVERIFY(!QFileInfo(standardFile()).isSymLink());
    QCOMPARE(groups(standardFile()), QStringList({QStringLiteral("New")}));
    QCOMPARE(readFile(target), before);
}

void tst_KyDestinationSave::fingerprint_isTakenAnewInSettingModeOnly_data()
{
    QTest::addColumn<bool>("settingMode");
    QTest::newRow("normal mode") << false;
    QTest::newRow("setting mode") << true;
}

void tst_KyDestinationSave::fingerprint_isTakenAnewInSettingModeOnly()
{
    QFETCH(bool, settingMode);
    const std::unique_ptr<KyDestination> destination = create(settingMode);
    const QString before = destination->reservedDatabaseFileHashSha1();
    QVERIFY(destination->addNewGroup(QStringLiteral("New"), nullptr));
    const QString edited = destination->currentDatabaseFileHashSha1();
    QVERIFY(edited != before);
    QVERIFY(destination->saveData());
    QCOMPARE(destination->reservedDatabaseFileHashSha1(), settingMode ? edited : before);
    QCOMPARE(destination->currentDatabaseFileHashSha1(), edited);
    QCOMPARE(Path::getHashSha1(standardFile()), edited);
}

void tst_KyDestinationSave::success_emitsNothingAndClearsTheError()
{
    const std::unique_ptr<KyDestination> destination = createEdited();
    destination->readCategory(static_cast<KyDestination::DataType>(7));
    QVERIFY(!destination->lastErrorMessage().isEmpty());
    DestinationRecorder recorder(destination.get());
    QVERIFY(destination->saveData());
    QCOMPARE(destination->lastErrorMessage(), QString());
    QCOMPARE(recorder.takeSignals(), QStringList());
}

void tst_KyDestinationSave::mainFile_followsMoves()
{
    const std::unique_ptr<KyDestination> destination = create(true);
    destination->changeDestinationCategory({6, 4, 2}, 1, KyDestination::Data_Channel);
    destination->changeDestinationCategory({5}, -1, KyDestination::Data_Channel);
    QVERIFY(destination->saveData());
    QCOMPARE(readFile(m_environment->mainFile()), mainFile({{1}, {2, 3, 4, 6}, {}}));
    QVERIFY(destination->removeCategory(KyDestination::Data_Channel, 1));
    QVERIFY(destination->saveData());
    QCOMPARE(readFile(m_environment->mainFile()), mainFile({{1}, {}, {}}));
}

void tst_KyDestinationSave::mainFile_keepsDestinationsThatNobodyKnows()
{
    m_environment->writeMainFile({{0, {1, 99}}});
    const std::unique_ptr<KyDestination> destination = create(false);
    QVERIFY(destination->saveData());
    QCOMPARE(readFile(m_environment->mainFile()), mainFile({{1, 99}, {}, {}}));
}

void tst_KyDestinationSave::mainFile_leavesUnknownChannelsOut()
{
    m_environment->writeMainFile({{0, {1}}, {8, {2}}});
    const std::unique_ptr<KyDestination> destination = create(false);
    QCOMPARE(queryRows(standardFile(), QStringLiteral("SELECT channel_id FROM destination_tbl WHERE id=2")),
             QStringList({QStringLiteral("8")}));
    QVERIFY(destination->saveData());
    QCOMPARE(readFile(m_environment->mainFile()), mainFile({{1}, {}, {}}));
}

void tst_KyDestinationSave::mainFile_ofOddChannels_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("channel"); // that the destination goes to; -1 for none
    QTest::newRow("text") << QStringLiteral("'red'") << 0; // what is no number counts as 0
    QTest::newRow("number as text") << QStringLiteral("'2'") << 2;
    QTest::newRow("real") << QStringLiteral("1.2") << 1;
    QTest::newRow("blob") << QStringLiteral("x'32'") << 2;
    QTest::newRow("beyond 32 bits") << QStringLiteral("4294967298") << 2;
    QTest::newRow("negative") << QStringLiteral("-5") << -1;
}

void tst_KyDestinationSave::mainFile_ofOddChannels()
{
    QFETCH(QString, stored);
    QFETCH(int, channel);
    m_environment->writeMainFile({});
    const std::unique_ptr<KyDestination> destination = create(false);
    execute(standardFile(),
            {QStringLiteral("UPDATE destination_tbl SET channel_id=%1 WHERE id=1").arg(stored)});
    QVERIFY(destination->saveData());
    QList<QList<int>> expected = {{}, {}, {}};
    if (channel >= 0)
        expected[channel].append(1);
    QCOMPARE(readFile(m_environment->mainFile()), mainFile(expected));
}

void tst_KyDestinationSave::withoutInit_nothingIsSaved_data()
{
    QTest::addColumn<bool>("settingMode");
    QTest::newRow("normal mode") << false;
    QTest::newRow("setting mode") << true;
}

void tst_KyDestinationSave::withoutInit_nothingIsSaved()
{
    QFETCH(bool, settingMode);
    const QStringList files = channelFolder(*m_environment);
    KyDestination destination;
    destination.setSettingMode(settingMode);
    DestinationRecorder recorder(&destination);
    const QString message = QStringLiteral("The channel config object has not be initialized.");
    QVERIFY(!destination.saveData());
    QCOMPARE(destination.lastErrorMessage(), message);
    destination.clearLastErrorMessage();
    QCOMPARE(destination.lastErrorMessage(), QString());
    QVERIFY(!destination.saveChannelConfigToFile());
    QCOMPARE(destination.lastErrorMessage(), message);
    QCOMPARE(recorder.takeSignals(), QStringList());
    QCOMPARE(channelFolder(*m_environment), files);
}

void tst_KyDestinationSave::withoutConnection_nothingIsSaved_data()
{
    withoutInit_nothingIsSaved_data();
}

void tst_KyDestinationSave::withoutConnection_nothingIsSaved()
{
    QFETCH(bool, settingMode);
    create(false);
    const std::unique_ptr<KyDestination> destination = create(settingMode);
    const QByteArray before = readFile(m_environment->mainFile());
    const QByteArray database = readFile(standardFile());
    destination->purgeDatabase();
    DestinationRecorder recorder(destination.get());
    QVERIFY(!destination->saveData());
    QCOMPARE(destination->lastErrorMessage(), CONNECTION_MISSING);
    QVERIFY(!destination->saveChannelConfigToFile());
    QCOMPARE(destination->lastErrorMessage(), CONNECTION_MISSING);
    QCOMPARE(recorder.takeSignals(), QStringList());
    QCOMPARE(readFile(m_environment->mainFile()), before);
    QCOMPARE(readFile(standardFile()), database);
}

void tst_KyDestinationSave::databaseThatCannotBeOpened_isNotSaved_data()
{
    withoutInit_nothingIsSaved_data();
}

void tst_KyDestinationSave::databaseThatCannotBeOpened_isNotSaved()
{
    QFETCH(bool, settingMode);
    const std::unique_ptr<KyDestination> destination = create(settingMode);
    const QByteArray before = readFile(m_environment->mainFile());
    const QString file = settingMode ? workingFile() : standardFile();
    QVERIFY(QFile::remove(file));
    QVERIFY(QDir().mkdir(file));
    DestinationRecorder recorder(destination.get());
    QVERIFY(!destination->saveData());
    QCOMPARE(destination->lastErrorMessage(), QStringLiteral("The destination database can not be opened."));
    QCOMPARE(recorder.takeSignals(), QStringList());
    QCOMPARE(readFile(m_environment->mainFile()), before);
    QVERIFY(QDir().rmdir(file));
}

void tst_KyDestinationSave::tableThatCannotBeRead_isNotSaved_data()
{
    withoutInit_nothingIsSaved_data();
}

void tst_KyDestinationSave::tableThatCannotBeRead_isNotSaved()
{
    QFETCH(bool, settingMode);
    create(false);
    const std::unique_ptr<KyDestination> destination = create(settingMode);
    const QByteArray before = readFile(m_environment->mainFile());
    execute(settingMode ? workingFile() : standardFile(), {QStringLiteral("DROP TABLE destination_tbl")});
    const QByteArray database = readFile(standardFile());
    DestinationRecorder recorder(destination.get());
    QVERIFY(!destination->saveData());
    QCOMPARE(destination->lastErrorMessage(),
             QStringLiteral("Error occured while the destination database is reading.\n"
                            "(no such table: destination_tbl Unable to execute statement)"));
    QCOMPARE(recorder.takeSignals(), QStringList());
    QCOMPARE(readFile(m_environment->mainFile()), before);
    QCOMPARE(readFile(standardFile()), database);
}

void tst_KyDestinationSave::damagedTable_leavesTheMainFileAlone()
{
    const int pageSize = 4096;
    const int count = 1000;
    QList<QList<int>> channels = {{}, {}, {}};
    for (int id = 1; id <= count; ++id)
        channels[id % 3].append(id);
    const QByteArray whole = mainFile(channels);
    m_environment->writeConfig(makeDestinations(1, count));
    m_environment->writeMainFile({});
    const std::unique_ptr<KyDestination> destination = create(false);
    execute(standardFile(), {QStringLiteral("UPDATE destination_tbl SET channel_id=id % 3")});
    const QByteArray content = readFile(standardFile());

    int failures = 0;
    for (int page = 1; page < content.size() / pageSize; ++page) {
        const QByteArray damaged =
            QByteArray(content).replace(page * pageSize, pageSize, QByteArray(pageSize, 'x'));
        writeFile(standardFile(), damaged);
        if (isReadable(standardFile()))
            continue; // the page is none of those that the assignment is read from
        ++failures;
        writeFile(standardFile(), content);
        m_environment->writeMainFile({});
        QVERIFY(destination->init());
        writeFile(standardFile(), damaged);
        writeFile(m_environment->mainFile(), "former");
        QVERIFY(!destination->saveData());
        QCOMPARE(destination->lastErrorMessage(),
                 QStringLiteral("Error occured while the destination database is reading.\n"
                                "(database disk image is malformed Unable to fetch row)"));
        QCOMPARE(readFile(m_environment->mainFile()), QByteArray("former"));
    }
    QVERIFY(failures > 2); // of which all but the first are met in the middle of the rows

    writeFile(standardFile(), content);
    destination->reconnectDatabase(); // it has the damaged page in its cache
    QVERIFY(destination->saveData());
    QCOMPARE(readFile(m_environment->mainFile()), whole);
}

void tst_KyDestinationSave::mainFileThatCannotBeWritten_isTheError_data()
{
    withoutInit_nothingIsSaved_data();
}

void tst_KyDestinationSave::mainFileThatCannotBeWritten_isTheError()
{
    QFETCH(bool, settingMode);
    create(false);
    const std::unique_ptr<KyDestination> destination = create(settingMode);
    const QByteArray database = readFile(standardFile());
    QVERIFY(QFile::remove(m_environment->mainFile()));
    QVERIFY(QDir().mkdir(m_environment->mainFile()));
    QVERIFY(destination->addNewGroup(QStringLiteral("New"), nullptr));
    DestinationRecorder recorder(destination.get());
    const QString message = QStringLiteral("The channel config file can not be open to write.");
    QVERIFY(!destination->saveChannelConfigToFile());
    QCOMPARE(destination->lastErrorMessage(), message);
    destination->clearLastErrorMessage();
    QVERIFY(!destination->saveData());
    QCOMPARE(destination->lastErrorMessage(), message);
    QCOMPARE(recorder.takeSignals(), QStringList());
    if (settingMode)
        QCOMPARE(readFile(standardFile()), database);
}

void tst_KyDestinationSave::missingConfiguration_isTheError()
{
    const std::unique_ptr<KyDestination> destination = createEdited();
    const QByteArray before = readFile(m_environment->mainFile());
    const QByteArray database = readFile(standardFile());
    QVERIFY(QFile::remove(m_environment->configFile()));
    DestinationRecorder recorder(destination.get());
    QVERIFY(!destination->saveData());
    QCOMPARE(destination->lastErrorMessage(),
             QStringLiteral("Application configuration file can not be found."));
    QCOMPARE(recorder.takeSignals(), QStringList());
    QCOMPARE(readFile(m_environment->mainFile()), before);
    QCOMPARE(readFile(standardFile()), database);
    QVERIFY(!QFile::exists(QStringLiteral("chconfig.xml")));
}

void tst_KyDestinationSave::standardFileThatIsAFolder_isFailure1_data()
{
    QTest::addColumn<bool>("isEmpty");
    QTest::addColumn<bool>("isStagingPossible");
    QTest::newRow("empty") << true << true;
    QTest::newRow("not empty") << false << true;
    QTest::newRow("no staging either") << false << false;
}

void tst_KyDestinationSave::standardFileThatIsAFolder_isFailure1()
{
    QFETCH(bool, isEmpty);
    QFETCH(bool, isStagingPossible);
    const std::unique_ptr<KyDestination> destination = create(true);
    const QString fingerprint = destination->reservedDatabaseFileHashSha1();
    QVERIFY(QDir().mkdir(standardFile()));
    if (!isEmpty)
        writeFile(standardFile() + QStringLiteral("/file"), "kept");
    if (!isStagingPossible)
        QVERIFY(QDir().mkdir(
            QStringLiteral("%1.%2.save").arg(standardFile()).arg(QCoreApplication::applicationPid())));
    const QStringList files = channelFolder(*m_environment);
    QVERIFY(destination->addNewGroup(QStringLiteral("New"), nullptr));

    DestinationRecorder recorder(destination.get());
    QVERIFY(!destination->saveData());
    QFile file(standardFile());
    QVERIFY(!file.remove());
    QVERIFY(!file.errorString().isEmpty());
    QCOMPARE(destination->lastErrorMessage(), FAILED_1 + file.errorString());
    QCOMPARE(recorder.takeSignals(), QStringList());
    QCOMPARE(channelFolder(*m_environment), files);
    QVERIFY(QFileInfo(standardFile()).isDir());
    QCOMPARE(destination->reservedDatabaseFileHashSha1(), fingerprint);
    QCOMPARE(readFile(m_environment->mainFile()), mainFile({{1, 2}, {3, 4}, {5, 6}}));
}

void tst_KyDestinationSave::missingWorkingFile_isFailure2()
{
#ifdef Q_OS_WIN
    QSKIP("Nobody can take an open file away here");
#endif
    const std::unique_ptr<KyDestination> destination = createEdited();
    const QByteArray database = readFile(standardFile());
    const QString fingerprint = destination->reservedDatabaseFileHashSha1();
    destination->startToRead(); // leaves the connection open, which then outlives its file
    QVERIFY(QFile::remove(workingFile()));

    DestinationRecorder recorder(destination.get());
    QVERIFY(!destination->saveData());
    QFile file(workingFile());
    QVERIFY(!file.open(QIODevice::ReadOnly));
    QCOMPARE(destination->lastErrorMessage(), FAILED_2 + file.errorString());
    QCOMPARE(recorder.takeSignals(), QStringList());
    QCOMPARE(readFile(standardFile()), database);
    QCOMPARE(destination->reservedDatabaseFileHashSha1(), fingerprint);
}

void tst_KyDestinationSave::copyThatCannotBeMade_isFailure2()
{
    const std::unique_ptr<KyDestination> destination = createEdited();
    const QByteArray database = readFile(standardFile());
    const QString staged =
        QStringLiteral("%1.%2.save").arg(standardFile()).arg(QCoreApplication::applicationPid());
    QVERIFY(QDir().mkdir(staged));
    QVERIFY(!destination->saveData());
    QFile file(staged);
    QVERIFY(!file.open(QIODevice::WriteOnly));
    QCOMPARE(destination->lastErrorMessage(), FAILED_2 + file.errorString());
    QCOMPARE(readFile(standardFile()), database);

    QVERIFY(QDir().rmdir(staged));
    QVERIFY(destination->saveData());
    QCOMPARE(groups(standardFile()), QStringList({QStringLiteral("New")}));
}

#ifdef Q_OS_UNIX
void tst_KyDestinationSave::protectedStandardFile_isFailure1()
{
    if (geteuid() != 0)
        QSKIP("Takes the rights to hand a file over to somebody else");
    std::unique_ptr<KyDestination> destination = createEdited();
    const QByteArray database = readFile(standardFile());
    // In a folder like /tmp everybody can make files and nobody can take somebody else's away.
    const uid_t nobody = 65534;
    const QByteArray folder = QFile::encodeName(m_environment->channelDir());
    QCOMPARE(::chmod(folder.constData(), 01777), 0);
    QCOMPARE(::chmod(QFile::encodeName(m_environment->root()).constData(), 0755), 0);
    for (const QString &path : {workingFile(), m_environment->mainFile()})
        QCOMPARE(::chown(QFile::encodeName(path).constData(), nobody, nobody), 0);

    QCOMPARE(::seteuid(nobody), 0);
    const bool isSaved = destination->saveData();
    const QString message = destination->lastErrorMessage();
    QFile file(standardFile());
    const bool isRemoved = file.remove();
    QCOMPARE(::seteuid(0), 0);

    QVERIFY(!isRemoved);
    QVERIFY(!isSaved);
    QCOMPARE(message, FAILED_1 + file.errorString());
    QCOMPARE(readFile(standardFile()), database);
    QCOMPARE(channelFolder(*m_environment).filter(QStringLiteral(".save")), QStringList());
}

void tst_KyDestinationSave::fullDisk_isFailure2_data()
{
    QTest::addColumn<int>("limit");
    QTest::newRow("nothing of it fits") << 4096;
    QTest::newRow("half of it fits") << 100 * 1024;
    QTest::newRow("all but a byte fits") << -1;
}

void tst_KyDestinationSave::fullDisk_isFailure2()
{
    QFETCH(int, limit);
    m_environment->writeConfig(makeDestinations(1, 1000));
    const std::unique_ptr<KyDestination> destination = createEdited();
    const QByteArray database = readFile(standardFile());
    const QStringList files = channelFolder(*m_environment);
    const qint64 size = QFileInfo(workingFile()).size();
    QVERIFY(size > 200 * 1024);
    {
        const FileSizeLimit fileSize(limit < 0 ? size - 1 : limit);
        QVERIFY(!destination->saveData());
    }
    QCOMPARE(destination->lastErrorMessage(), FAILED_2 + qt_error_string(EFBIG));
    QCOMPARE(readFile(standardFile()), database);
    QCOMPARE(channelFolder(*m_environment), files);
    QVERIFY(destination->saveData());
    QCOMPARE(readFile(standardFile()), readFile(workingFile()));
}
#endif

void tst_KyDestinationSave::staleJournalOfTheStandardFile_isNotApplied()
{
    m_environment->writeConfig(makeDestinations(1, 200));
    const std::unique_ptr<KyDestination> destination = createEdited();
    interruptTransaction(standardFile(),
                         QStringLiteral("UPDATE destination_tbl SET address=hex(randomblob(300))"));
    QVERIFY(destination->saveData());
    QCOMPARE(channelFolder(*m_environment).filter(QStringLiteral("journal")), QStringList());
    QCOMPARE(readFile(standardFile()), readFile(workingFile()));
    QCOMPARE(groups(standardFile()), QStringList({QStringLiteral("New")}));
    QCOMPARE(readFile(standardFile()), readFile(workingFile())); // reading did not roll anything back
}

void tst_KyDestinationSave::hotJournalOfTheStandardFile_outlivesAFailure()
{
    m_environment->writeConfig(makeDestinations(1, 200));
    const std::unique_ptr<KyDestination> destination = createEdited();
    interruptTransaction(
        standardFile(),
        QStringLiteral("UPDATE destination_tbl SET address='spoiled ' || hex(randomblob(300))"));
    QVERIFY(QDir().mkdir(
        QStringLiteral("%1.%2.save").arg(standardFile()).arg(QCoreApplication::applicationPid())));
    QVERIFY(!destination->saveData());
    QVERIFY(destination->lastErrorMessage().startsWith(FAILED_2));
    QCOMPARE(queryRows(standardFile(),
                       QStringLiteral("SELECT COUNT(*) FROM destination_tbl WHERE address LIKE '10.0.%'")),
             QStringList({QStringLiteral("200")}));
}

void tst_KyDestinationSave::hotJournalOfTheWorkingFile_isHonoured()
{
    m_environment->writeConfig(makeDestinations(1, 200));
    const std::unique_ptr<KyDestination> destination = createEdited();
    interruptTransaction(
        workingFile(),
        QStringLiteral("UPDATE destination_tbl SET address='spoiled ' || hex(randomblob(300))"));
    QVERIFY(destination->saveData());
    QCOMPARE(queryRows(standardFile(),
                       QStringLiteral("SELECT COUNT(*) FROM destination_tbl WHERE address LIKE '10.0.%'")),
             QStringList({QStringLiteral("200")}));
    QCOMPARE(queryRows(standardFile(), QStringLiteral("PRAGMA integrity_check")),
             QStringList({QStringLiteral("ok")}));
}

void tst_KyDestinationSave::journalWithoutStandardFile_isRemoved()
{
    m_environment->writeConfig(makeDestinations(1, 200));
    const std::unique_ptr<KyDestination> destination = createEdited();
    interruptTransaction(standardFile(),
                         QStringLiteral("UPDATE destination_tbl SET address=hex(randomblob(300))"));
    QVERIFY(QFile::remove(standardFile()));
    QVERIFY(destination->saveData());
    QCOMPARE(channelFolder(*m_environment).filter(QStringLiteral("journal")), QStringList());
    QCOMPARE(groups(standardFile()), QStringList({QStringLiteral("New")}));
    QCOMPARE(readFile(standardFile()), readFile(workingFile()));
}

KYTE_TEST_MAIN(tst_KyDestinationSave)
#include "tst_KyDestinationSave.moc"
