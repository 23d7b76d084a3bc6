#include <KyTestEnvironment.h>
#include <KyTestMain.h>

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

using namespace Kyte;

/** What a run of the program left behind. */
struct Run
{
    int code = -1; ///< -1 when it did not end by itself
    QString out;
    QString err;

    QJsonDocument json() const
    {
        return QJsonDocument::fromJson(out.toUtf8());
    }
};

class tst_kyec : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void commandLine_data();
    void commandLine();
    void wrongUsage_data();
    void wrongUsage();
    void wrongUsage_changesNothing();

    void channels_showsNamesPositionsAndCounts();
    void channels_asJson();
    void groups_withoutAny();
    void destinations_areSortedByName();
    void destinations_asJson();
    void destinations_filtered_data();
    void destinations_filtered();
    void destinations_limitCountsWhatTheFilterLeaves();
    void destinations_ofMissingCategory_fails_data();
    void destinations_ofMissingCategory_fails();
    void reading_synchronisesWithTheConfiguration();

    void passwords_areShownOnDemandOnly_data();
    void passwords_areShownOnDemandOnly();

    void config_relativePath();
    void config_fromTheEnvironment();
    void config_optionWinsOverTheEnvironment();
    void config_missing_fails_data();
    void config_missing_fails();
    void config_malformed_fails();
    void config_withoutDataFolder_fails();

    void oddNames_comeThroughWhole_data();
    void oddNames_comeThroughWhole();
    void controlCharacters_doNotReachTheTerminal();
    void nonAsciiFolder_isFound_data();
    void nonAsciiFolder_isFound();

    void groups_added_persist();
    void groups_addTakesTheLowestFreeId();
    void groups_renamed_persist();
    void groups_removed_detachDestinations();
    void groups_refusedEdit_changesNothing_data();
    void groups_refusedEdit_changesNothing();

    void move_toGroup_persists();
    void move_toChannel_persists();
    void move_outOfAny();
    void move_idsGivenTwice_countOnce();
    void move_refused_changesNothing_data();
    void move_refused_changesNothing();

    void edits_leaveNoWorkingCopy();
    void edit_thatCannotBeSaved_fails();
    void corruptDatabase_failsAndStays_data();
    void corruptDatabase_failsAndStays();

    void verify_soundDatabase();
    void verify_databaseThatIsNotMadeYet();
    void verify_findsProblems_data();
    void verify_findsProblems();
    void verify_leavesBadDatabaseAsItIs();
    void verify_findsChannelWithoutFile();
    void verify_leavesTheWorkingCopyOfOthers();

    void demo_tellsTheStory();
    void demo_asJson();
    void demo_keptFolder_isUsable();
    void demo_runsAgainInItsOwnFolder();
    void demo_refusesForeignFolder_data();
    void demo_refusesForeignFolder();
    void demo_temporaryFolder_isRemoved();
    void demo_replacesLinkAndNotItsTarget();
    void demo_fitsInto100Columns();

    void output_thatCannotBeWritten_isFailure();

private:
    Run run(const QStringList &arguments) const;
    QJsonArray list(const QStringList &arguments) const;
    QStringList names(const QStringList &arguments) const;
    QByteArray files() const;

    QScopedPointer<Test::Environment> m_environment;
    QProcessEnvironment m_variables;
    QString m_workingFolder;
};

static const QString PROGRAM = QStringLiteral(KYTE_TEST_PROGRAM_DIR "/kyec");

static Run start(const QStringList &arguments, const QProcessEnvironment &variables, const QString &folder)
{
    QProcess process;
    process.setProcessEnvironment(variables);
    process.setWorkingDirectory(folder);
    process.start(PROGRAM, arguments);
    Run run;
    if (process.waitForFinished() && process.exitStatus() == QProcess::NormalExit)
        run.code = process.exitCode();
    run.out = QString::fromUtf8(process.readAllStandardOutput().replace("\r\n", "\n"));
    run.err = QString::fromUtf8(process.readAllStandardError().replace("\r\n", "\n"));
    return run;
}

/** "Sample" with four destinations: 1 and 2 in channel 0, 3 in channel 1, 4 in none. */
void tst_kyec::init()
{
    m_environment.reset(new Test::Environment);
    m_environment->writeConfig(
        {{1, QStringLiteral("Lobby"), QStringLiteral("192.0.2.1"), QStringLiteral("media"),
          QStringLiteral("player"), QStringLiteral("secret-one")},
         {2, QStringLiteral("Bar"), QStringLiteral("192.0.2.2"), QStringLiteral("media"),
          QStringLiteral("player"), QStringLiteral("secret-two")},
         {3, QStringLiteral("Kitchen"), QStringLiteral("192.0.2.3"), QStringLiteral("media"),
          QStringLiteral("player"), QStringLiteral("secret-three")},
         {4, QStringLiteral("Attic"), QStringLiteral("192.0.2.4"), QStringLiteral("media"),
          QStringLiteral("player"), QString()}});
    m_environment->writeChannel(0, QStringLiteral("Guests"), 1);
    m_environment->writeChannel(1, QStringLiteral("Staff"), 0);
    m_environment->writeMainFile({{0, {1, 2}}, {1, {3}}});
    m_variables = QProcessEnvironment::systemEnvironment();
    m_variables.remove(QStringLiteral("KYTE_CONFIG_FILE"));
    m_workingFolder = m_environment->root();
}

void tst_kyec::cleanup()
{
    m_environment.reset();
}

/** Runs a command on the configuration of the environment. */
Run tst_kyec::run(const QStringList &arguments) const
{
    return start(arguments + QStringList{QStringLiteral("--config"), m_environment->configFile()},
                 m_variables, m_workingFolder);
}

QJsonArray tst_kyec::list(const QStringList &arguments) const
{
    const Run result = run(arguments + QStringList(QStringLiteral("--json")));
    return result.code == 0 ? result.json().array() : QJsonArray{result.err};
}

/** "id name" of each object that a listing prints. */
QStringList tst_kyec::names(const QStringList &arguments) const
{
    QStringList names;
    const QJsonArray array = list(arguments);
    for (const QJsonValue &value : array)
        names.append(QStringLiteral("%1 %2")
                         .arg(value.toObject().value(QStringLiteral("id")).toInt())
                         .arg(value.toObject().value(QStringLiteral("name")).toString()));
    return names;
}

/** What an edit may change. */
QByteArray tst_kyec::files() const
{
    return Test::readFile(m_environment->databaseFile()) + Test::readFile(m_environment->mainFile());
}

void tst_kyec::commandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("begin");
    QTest::newRow("help") << QStringList{"--help"} << QStringLiteral("Usage: kyec COMMAND");
    QTest::newRow("short help") << QStringList{"-h"} << QStringLiteral("Usage: kyec COMMAND");
    QTest::newRow("version") << QStringList{"--version"} << QStringLiteral("kyec 1.");
    const QStringList commands{"demo", "destinations", "channels", "groups", "move", "verify"};
    for (const QString &command : commands)
        QTest::newRow(qPrintable(command + QStringLiteral(" help")))
            << QStringList{command, "--help"} << QStringLiteral("Usage: kyec %1 [OPTIONS]").arg(command);
    QTest::newRow("help in spite of a wrong option")
        << QStringList{"move", "--nonsense", "-h"} << QStringLiteral("Usage: kyec move [OPTIONS] ID...");
}

void tst_kyec::commandLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, begin);
    const Run result = start(arguments, m_variables, m_workingFolder);
    QCOMPARE(result.code, 0);
    QCOMPARE(result.err, QString());
    QVERIFY2(result.out.startsWith(begin), qPrintable(result.out));
    const QStringList lines = result.out.split(QLatin1Char('\n'));
    for (const QString &line : lines)
        QVERIFY2(line.size() <= 100, qPrintable(line));
}

void tst_kyec::wrongUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    QTest::newRow("nothing") << QStringList() << "Which command?";
    QTest::newRow("no command") << QStringList{"bogus"} << "There is no command 'bogus'.";
    QTest::newRow("no option") << QStringList{"--bogus"} << "Unknown option 'bogus'.";
    QTest::newRow("no option of the command")
        << QStringList{"channels", "--limit", "3"} << "Unknown option 'limit'.";
    QTest::newRow("too many words") << QStringList{"channels", "add"} << "Unexpected argument 'add'.";
    QTest::newRow("config without a file")
        << QStringList{"channels", "--config"} << "Missing value after '--config'.";
    QTest::newRow("empty config") << QStringList{"channels", "--config", ""} << "--config needs a file.";
    QTest::newRow("limit is no number") << QStringList{"destinations", "--limit", "ten"}
                                        << "--limit needs an integer of 0 or more, not 'ten'.";
    QTest::newRow("negative limit") << QStringList{"destinations", "--limit", "-1"}
                                    << "--limit needs an integer of 0 or more, not '-1'.";
    QTest::newRow("channel below -1") << QStringList{"destinations", "--channel=-2"}
                                      << "--channel needs an integer of -1 or more, not '-2'.";
    QTest::newRow("group is no number")
        << QStringList{"destinations", "--group", ""} << "--group needs an integer of -1 or more, not ''.";
    QTest::newRow("number too large") << QStringList{"destinations", "--group", "99999999999"}
                                      << "--group needs an integer of -1 or more, not '99999999999'.";
    QTest::newRow("no such group edit")
        << QStringList{"groups", "delete", "3"} << "'delete 3' is not one of add NAME";
    QTest::newRow("add without name") << QStringList{"groups", "add"} << "'add' is not one of add NAME";
    QTest::newRow("add two names") << QStringList{"groups", "add", "a", "b"}
                                   << "'add a b' is not one of add NAME";
    QTest::newRow("add empty name") << QStringList{"groups", "add", " "} << "A group needs a name.";
    QTest::newRow("rename without name")
        << QStringList{"groups", "rename", "1"} << "'rename 1' is not one of";
    QTest::newRow("rename no id") << QStringList{"groups", "rename", "x", "y"} << "'x' is no id.";
    QTest::newRow("rename to empty name")
        << QStringList{"groups", "rename", "1", ""} << "A group needs a name.";
    QTest::newRow("remove no id") << QStringList{"groups", "remove", "1.5"} << "'1.5' is no id.";
    QTest::newRow("move nothing") << QStringList{"move", "--to-group", "1"} << "Which destinations?";
    QTest::newRow("move nowhere") << QStringList{"move", "1"}
                                  << "One of --to-channel and --to-group is needed.";
    QTest::newRow("move to both") << QStringList{"move", "1", "--to-channel", "0", "--to-group", "0"}
                                  << "One of --to-channel and --to-group is needed.";
    QTest::newRow("move no id") << QStringList{"move", "1", "x", "--to-channel", "0"} << "'x' is no id.";
    QTest::newRow("move to no id") << QStringList{"move", "1", "--to-channel", "x"}
                                   << "--to-channel needs an integer of -1 or more, not 'x'.";
    QTest::newRow("keep without a folder") << QStringList{"demo", "--keep", ""} << "--keep needs a folder.";
    QTest::newRow("demo of a configuration")
        << QStringList{"demo", "--config", "x"} << "Unknown option 'config'.";
}

void tst_kyec::wrongUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    const Run result = start(arguments, m_variables, m_workingFolder);
    QCOMPARE(result.code, 2);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.startsWith(QStringLiteral("kyec: ") + message), qPrintable(result.err));
    QVERIFY2(result.err.contains(QStringLiteral("--help")), qPrintable(result.err));
}

void tst_kyec::wrongUsage_changesNothing()
{
    QCOMPARE(run({"groups", "remove"}).code, 2);
    QVERIFY(!QFile::exists(m_environment->databaseFile()));
}

void tst_kyec::channels_showsNamesPositionsAndCounts()
{
    const Run result = run({"channels"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    QCOMPARE(result.out,
             QStringLiteral("  Id  Name    Position  Destinations\n"
                            "  --  ------  --------  ------------\n"
                            "   1  Staff          0             1\n"
                            "   0  Guests         1             2\n"
                            "2 channels\n"));
}

void tst_kyec::channels_asJson()
{
    const QJsonArray expected{
        QJsonObject{{"id", 1}, {"name", "Staff"}, {"position", 0}, {"destinations", 1}},
        QJsonObject{{"id", 0}, {"name", "Guests"}, {"position", 1}, {"destinations", 2}},
    };
    QCOMPARE(list({"channels"}), expected);
}

void tst_kyec::groups_withoutAny()
{
    const Run result = run({"groups"});
    QCOMPARE(result.code, 0);
    QCOMPARE(result.out, QStringLiteral("0 groups\n"));
    QCOMPARE(run({"groups", "--json"}).json(), QJsonDocument(QJsonArray()));
}

void tst_kyec::destinations_areSortedByName()
{
    const Run result = run({"destinations"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    QCOMPARE(result.out,
             QStringLiteral("  Id  Name     Address    Shared  User    Channel  Group\n"
                            "  --  -------  ---------  ------  ------  -------  -----\n"
                            "   4  Attic    192.0.2.4  media   player  -        -\n"
                            "   2  Bar      192.0.2.2  media   player  Guests   -\n"
                            "   3  Kitchen  192.0.2.3  media   player  Staff    -\n"
                            "   1  Lobby    192.0.2.1  media   player  Guests   -\n"
                            "4 destinations\n"));
}

void tst_kyec::destinations_asJson()
{
    QCOMPARE(run({"groups", "add", "Day"}).code, 0);
    QCOMPARE(run({"move", "2", "--to-group", "0"}).code, 0);
    const QJsonArray array = list({"destinations"});
    QCOMPARE(array.size(), 4);
    const QJsonObject attic{{"id", 4},
                            {"name", "Attic"},
                            {"position", 0},
                            {"address", "192.0.2.4"},
                            {"sharedFolder", "media"},
                            {"user", "player"},
                            {"channelId", -1},
                            {"channel", QJsonValue::Null},
                            {"groupId", -1},
                            {"group", QJsonValue::Null}};
    QCOMPARE(array.at(0).toObject(), attic);
    const QJsonObject bar = array.at(1).toObject();
    QCOMPARE(bar.value("channelId").toInt(), 0);
    QCOMPARE(bar.value("channel").toString(), QStringLiteral("Guests"));
    QCOMPARE(bar.value("groupId").toInt(), 0);
    QCOMPARE(bar.value("group").toString(), QStringLiteral("Day"));
}

void tst_kyec::destinations_filtered_data()
{
    QTest::addColumn<QStringList>("filter");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("none") << QStringList() << QStringList{"4 Attic", "2 Bar", "3 Kitchen", "1 Lobby"};
    QTest::newRow("channel") << QStringList{"--channel", "0"} << QStringList{"2 Bar", "1 Lobby"};
    QTest::newRow("in no channel") << QStringList{"--channel", "-1"} << QStringList{"4 Attic"};
    QTest::newRow("group") << QStringList{"--group", "0"} << QStringList{"2 Bar", "3 Kitchen"};
    QTest::newRow("in no group") << QStringList{"--group", "-1"} << QStringList{"4 Attic", "1 Lobby"};
    QTest::newRow("both") << QStringList{"--channel", "0", "--group", "0"} << QStringList{"2 Bar"};
    QTest::newRow("both, nothing left") << QStringList{"--channel", "-1", "--group", "0"} << QStringList();
    QTest::newRow("limit") << QStringList{"--limit", "2"} << QStringList{"4 Attic", "2 Bar"};
    QTest::newRow("limit 0") << QStringList{"--limit", "0"} << QStringList();
    QTest::newRow("limit above") << QStringList{"--limit", "9", "--channel", "1"} << QStringList{"3 Kitchen"};
}

void tst_kyec::destinations_filtered()
{
    QFETCH(QStringList, filter);
    QCOMPARE(run({"groups", "add", "Day"}).code, 0);
    QCOMPARE(run({"move", "2", "3", "--to-group", "0"}).code, 0);
    QTEST(names(QStringList("destinations") + filter), "expected");
}

void tst_kyec::destinations_limitCountsWhatTheFilterLeaves()
{
    // Lobby is the last of all destinations by name, and within the limit all the same.
    QCOMPARE(names({"destinations", "--channel", "0", "--limit", "2"}), QStringList({"2 Bar", "1 Lobby"}));
    QVERIFY(run({"destinations", "--channel", "0", "--limit", "1"}).out.endsWith("1 of 2 destinations\n"));
}

void tst_kyec::destinations_ofMissingCategory_fails_data()
{
    QTest::addColumn<QStringList>("filter");
    QTest::addColumn<QString>("message");
    QTest::newRow("channel") << QStringList{"--channel", "7"} << "kyec: There is no channel 7.\n";
    QTest::newRow("group") << QStringList{"--group", "0"} << "kyec: There is no group 0.\n";
}

void tst_kyec::destinations_ofMissingCategory_fails()
{
    QFETCH(QStringList, filter);
    const Run result = run(QStringList("destinations") + filter);
    QCOMPARE(result.code, 1);
    QCOMPARE(result.out, QString());
    QTEST(result.err, "message");
}

void tst_kyec::reading_synchronisesWithTheConfiguration()
{
    QCOMPARE(names({"destinations"}).size(), 4);
    m_environment->writeConfig(Test::makeDestinations(3, 3));
    QVERIFY(names({"destinations"}).contains("5 Destination 5"));
    QCOMPARE(Test::queryRows(m_environment->databaseFile(), "SELECT name FROM destination_tbl WHERE id = 5"),
             QStringList("Destination 5"));
}

void tst_kyec::passwords_areShownOnDemandOnly_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("shown");
    QTest::newRow("table") << QStringList{"destinations"} << false;
    QTest::newRow("JSON") << QStringList{"destinations", "--json"} << false;
    QTest::newRow("channels") << QStringList{"channels", "--json"} << false;
    QTest::newRow("move") << QStringList{"move", "1", "2", "3", "--to-channel", "0"} << false;
    QTest::newRow("verify") << QStringList{"verify"} << false;
    QTest::newRow("table on demand") << QStringList{"destinations", "--show-passwords"} << true;
    QTest::newRow("JSON on demand") << QStringList{"destinations", "--json", "--show-passwords"} << true;
}

void tst_kyec::passwords_areShownOnDemandOnly()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, shown);
    const Run result = run(arguments);
    QCOMPARE(result.code, 0);
    for (const char *password : {"secret-one", "secret-two", "secret-three"})
        QCOMPARE(result.out.contains(QLatin1String(password)), shown);
    const QStringList stored =
        Test::queryRows(m_environment->databaseFile(), "SELECT password FROM destination_tbl");
    QCOMPARE(stored.size(), 4);
    for (const QString &cipherText : stored) {
        QVERIFY(cipherText.size() > 16);
        QVERIFY(!result.out.contains(cipherText.left(16)));
    }
    QVERIFY(!result.err.contains("secret"));
}

void tst_kyec::config_relativePath()
{
    QVERIFY(QDir(m_environment->root()).mkpath("elsewhere"));
    m_workingFolder = m_environment->root() + QStringLiteral("/elsewhere");
    const Run result = start({"channels", "--config", "../kyteconfig.xml"}, m_variables, m_workingFolder);
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    QVERIFY(QFile::exists(m_environment->databaseFile()));
    QVERIFY(QDir(m_workingFolder).isEmpty());
}

void tst_kyec::config_fromTheEnvironment()
{
    m_variables.insert("KYTE_CONFIG_FILE", m_environment->configFile());
    const Run result = start({"channels"}, m_variables, m_workingFolder);
    QCOMPARE(result.code, 0);
    QVERIFY(result.out.endsWith("2 channels\n"));
}

void tst_kyec::config_optionWinsOverTheEnvironment()
{
    m_variables.insert("KYTE_CONFIG_FILE", m_environment->root() + QStringLiteral("/missing.xml"));
    QCOMPARE(run({"channels"}).code, 0);
}

void tst_kyec::config_missing_fails_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("destinations") << QStringList{"destinations"};
    QTest::newRow("channels") << QStringList{"channels"};
    QTest::newRow("groups") << QStringList{"groups"};
    QTest::newRow("groups add") << QStringList{"groups", "add", "a"};
    QTest::newRow("move") << QStringList{"move", "1", "--to-channel", "0"};
    QTest::newRow("verify") << QStringList{"verify"};
}

void tst_kyec::config_missing_fails()
{
    QFETCH(QStringList, arguments);
    const QString missing = m_environment->root() + QStringLiteral("/missing.xml");
    const Run result = start(arguments + QStringList{"--config", missing}, m_variables, m_workingFolder);
    QCOMPARE(result.code, 1);
    QCOMPARE(result.out, QString());
    QCOMPARE(result.err,
             QStringLiteral("kyec: Application configuration file can not be found. (%1)\n").arg(missing));
}

void tst_kyec::config_malformed_fails()
{
    Test::writeFile(m_environment->configFile(), "<Pelmora><dataDir>data</dataDir>");
    const Run result = run({"channels"});
    QCOMPARE(result.code, 1);
    QVERIFY(result.err.startsWith("kyec: Application configuration file can not be found."));
    QVERIFY(!QFile::exists(m_environment->databaseFile()));
}

void tst_kyec::config_withoutDataFolder_fails()
{
    QVERIFY(QDir(m_environment->root()).mkpath("elsewhere"));
    m_workingFolder = m_environment->root() + QStringLiteral("/elsewhere");
    Test::writeFile(m_environment->configFile(), "<Pelmora/>");
    const Run result = run({"channels"});
    QCOMPARE(result.code, 1);
    QVERIFY(result.err.startsWith("kyec: The configuration file names no data folder."));
    QVERIFY(QDir(m_workingFolder).isEmpty());
}

static void addLocaleRows()
{
    QTest::newRow("UTF-8 locale") << QStringLiteral("C.UTF-8");
    QTest::newRow("C locale") << QStringLiteral("C");
}

void tst_kyec::oddNames_comeThroughWhole_data()
{
    QTest::addColumn<QString>("locale");
    addLocaleRows();
}

void tst_kyec::oddNames_comeThroughWhole()
{
    QFETCH(QString, locale);
    m_variables.insert("LC_ALL", locale);
    const QStringList groupNames{QStringLiteral("two words"),
                                 QStringLiteral("it's \"quoted\"; DROP TABLE group_tbl;--"),
                                 QStringLiteral("100 %1 %2"), QStringLiteral("Grüße aus 東京 \U0001F600"),
                                 QStringLiteral("back\\slash")};
    for (const QString &name : groupNames)
        QCOMPARE(run({"groups", "add", name}).code, 0);
    QCOMPARE(run({"groups", "add", "--", "--dashes"}).code, 2); // then --config is a name as well
    QStringList expected;
    for (const QString &name : groupNames)
        expected.append(QStringLiteral("%1 %2").arg(QString::number(expected.size()), name));
    QCOMPARE(names({"groups"}), expected);

    const Run table = run({"groups"});
    for (const QString &name : groupNames)
        QVERIFY2(table.out.contains(name), qPrintable(table.out));
    QCOMPARE(run({"groups", "rename", "3", QStringLiteral("Übergröße")}).code, 0);
    QCOMPARE(names({"groups"}).at(3), QStringLiteral("3 Übergröße"));
}

void tst_kyec::controlCharacters_doNotReachTheTerminal()
{
    QCOMPARE(run({"groups", "add", "\x1b]0;title\x07"}).code, 0);
    const Run result = run({"groups"});
    QVERIFY(!result.out.contains(QChar(0x1b)));
    QVERIFY(result.out.contains(QStringLiteral("\uFFFD]0;title\uFFFD")));
}

void tst_kyec::nonAsciiFolder_isFound_data()
{
    QTest::addColumn<QString>("locale");
    addLocaleRows();
}

void tst_kyec::nonAsciiFolder_isFound()
{
    QFETCH(QString, locale);
    m_variables.insert("LC_ALL", locale);
    const QString folder = m_environment->root() + QStringLiteral("/Straße zum Café");
    const Run demo = start({"demo", "--keep", folder}, m_variables, m_workingFolder);
    QCOMPARE(demo.err, QString());
    QVERIFY(demo.out.contains(folder));
    QVERIFY(QFile::exists(folder + QStringLiteral("/data/channel/destination.kyb")));
    const Run result = start({"channels", "--config", folder + QStringLiteral("/kyteconfig.xml")},
                             m_variables, m_workingFolder);
    QVERIFY2(result.out.endsWith("4 channels\n"), qPrintable(result.err));
}

void tst_kyec::groups_added_persist()
{
    const Run result = run({"groups", "add", "Day"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    QVERIFY(result.out.contains("   0  Day          0             0\n1 group\n"));
    QCOMPARE(names({"groups"}), QStringList("0 Day"));
    QCOMPARE(names({"groups", "add", "Night"}), QStringList({"0 Day", "1 Night"}));
    QCOMPARE(names({"groups"}), QStringList({"0 Day", "1 Night"}));
}

void tst_kyec::groups_addTakesTheLowestFreeId()
{
    for (const char *name : {"a", "b", "c"})
        QCOMPARE(run({"groups", "add", QLatin1String(name)}).code, 0);
    QCOMPARE(run({"groups", "remove", "1"}).code, 0);
    QCOMPARE(names({"groups", "add", "d"}), QStringList({"0 a", "2 c", "1 d"}));
}

void tst_kyec::groups_renamed_persist()
{
    QCOMPARE(run({"groups", "add", "Day"}).code, 0);
    QCOMPARE(names({"groups", "rename", "0", "Noon"}), QStringList("0 Noon"));
    QCOMPARE(names({"groups"}), QStringList("0 Noon"));
    QCOMPARE(names({"groups", "rename", "0", "Noon"}), QStringList("0 Noon"));
}

void tst_kyec::groups_removed_detachDestinations()
{
    QCOMPARE(run({"groups", "add", "Day"}).code, 0);
    QCOMPARE(run({"move", "1", "2", "--to-group", "0"}).code, 0);
    QCOMPARE(names({"groups", "remove", "0"}), QStringList());
    QCOMPARE(names({"destinations", "--group", "-1"}).size(), 4);
}

void tst_kyec::groups_refusedEdit_changesNothing_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    QTest::newRow("add existing name") << QStringList{"groups", "add", "Day"}
                                       << "kyec: Error occured: UNIQUE constraint failed: group_tbl.name";
    QTest::newRow("rename to existing name")
        << QStringList{"groups", "rename", "1", "Day"}
        << "kyec: Error occured: UNIQUE constraint failed: group_tbl.name";
    QTest::newRow("rename missing id")
        << QStringList{"groups", "rename", "2", "x"} << "kyec: There is no group 2.";
    QTest::newRow("remove missing id")
        << QStringList{"groups", "remove", "9"} << "kyec: There is no group 9.";
}

void tst_kyec::groups_refusedEdit_changesNothing()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    QCOMPARE(run({"groups", "add", "Day"}).code, 0);
    QCOMPARE(run({"groups", "add", "Night"}).code, 0);
    const QByteArray before = files();
    const Run result = run(arguments);
    QCOMPARE(result.code, 1);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.startsWith(message), qPrintable(result.err));
    QCOMPARE(files(), before);
    QVERIFY(!QFile::exists(m_environment->workingFile()));
}

void tst_kyec::move_toGroup_persists()
{
    QCOMPARE(run({"groups", "add", "Day"}).code, 0);
    const Run result = run({"move", "4", "1", "--to-group", "0"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    QVERIFY(result.out.contains("Attic"));
    QVERIFY(!result.out.contains("Bar"));
    QVERIFY(result.out.endsWith("2 destinations moved\n"));
    QCOMPARE(names({"destinations", "--group", "0"}), QStringList({"4 Attic", "1 Lobby"}));
}

void tst_kyec::move_toChannel_persists()
{
    QVERIFY(run({"move", "1", "4", "--to-channel", "1"}).out.endsWith("2 destinations moved\n"));
    QCOMPARE(names({"destinations", "--channel", "1"}), QStringList({"4 Attic", "3 Kitchen", "1 Lobby"}));
    // The next synchronisation takes the channels from this file, so a new database shows them as well.
    QVERIFY(QFile::remove(m_environment->databaseFile()));
    QCOMPARE(names({"destinations", "--channel", "1"}), QStringList({"4 Attic", "3 Kitchen", "1 Lobby"}));
}

void tst_kyec::move_outOfAny()
{
    QCOMPARE(run({"groups", "add", "Day"}).code, 0);
    QCOMPARE(run({"move", "1", "2", "--to-group", "0"}).code, 0);
    QCOMPARE(run({"move", "1", "--to-group", "-1"}).code, 0);
    QCOMPARE(run({"move", "2", "--to-channel", "-1"}).code, 0);
    QCOMPARE(names({"destinations", "--group", "0"}), QStringList("2 Bar"));
    QCOMPARE(names({"destinations", "--channel", "-1"}), QStringList({"4 Attic", "2 Bar"}));
}

void tst_kyec::move_idsGivenTwice_countOnce()
{
    QVERIFY(run({"move", "1", "01", "1", "--to-channel", "1"}).out.endsWith("1 destination moved\n"));
}

void tst_kyec::move_refused_changesNothing_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    QTest::newRow("unknown destinations") << QStringList{"move", "1", "99", "2", "77", "--to-channel", "1"}
                                          << "kyec: There is no destination 99, 77.\n";
    QTest::newRow("unknown channel") << QStringList{"move", "1", "--to-channel", "5"}
                                     << "kyec: There is no channel 5.\n";
    QTest::newRow("unknown group") << QStringList{"move", "1", "--to-group", "0"}
                                   << "kyec: There is no group 0.\n";
}

void tst_kyec::move_refused_changesNothing()
{
    QFETCH(QStringList, arguments);
    QCOMPARE(run({"channels"}).code, 0);
    const QByteArray before = files();
    const Run result = run(arguments);
    QCOMPARE(result.code, 1);
    QCOMPARE(result.out, QString());
    QTEST(result.err, "message");
    QCOMPARE(files(), before);
}

void tst_kyec::edits_leaveNoWorkingCopy()
{
    QCOMPARE(run({"groups", "add", "Day"}).code, 0);
    QCOMPARE(run({"move", "1", "--to-group", "0"}).code, 0);
    QCOMPARE(QDir(m_environment->channelDir()).entryList(QDir::Files),
             QStringList({"channel0.xml", "channel1.xml", "chconfig.xml", "destination.kyb"}));
}

void tst_kyec::edit_thatCannotBeSaved_fails()
{
    QCOMPARE(run({"channels"}).code, 0);
    const QByteArray before = Test::readFile(m_environment->databaseFile());
    QVERIFY(QFile::remove(m_environment->mainFile()));
    QVERIFY(QDir().mkdir(m_environment->mainFile())); // cannot be written
    const Run result = run({"groups", "add", "Day"});
    QCOMPARE(result.code, 1);
    QCOMPARE(result.out, QString());
    QCOMPARE(result.err, QStringLiteral("kyec: The channel config file can not be open to write.\n"));
    QCOMPARE(Test::readFile(m_environment->databaseFile()), before);
}

void tst_kyec::corruptDatabase_failsAndStays_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("destinations") << QStringList{"destinations"};
    QTest::newRow("groups add") << QStringList{"groups", "add", "Day"};
    QTest::newRow("move") << QStringList{"move", "1", "--to-channel", "0"};
    QTest::newRow("verify") << QStringList{"verify"};
}

void tst_kyec::corruptDatabase_failsAndStays()
{
    QFETCH(QStringList, arguments);
    const QByteArray garbage(10000, 'x');
    Test::writeFile(m_environment->databaseFile(), garbage);
    const Run result = run(arguments);
    QCOMPARE(result.code, 1);
    QVERIFY2(result.err.contains("file is not a database"), qPrintable(result.err));
    QCOMPARE(Test::readFile(m_environment->databaseFile()), garbage);
}

void tst_kyec::verify_soundDatabase()
{
    QCOMPARE(run({"groups", "add", "Day"}).code, 0);
    QCOMPARE(run({"move", "1", "--to-group", "0"}).code, 0);
    const Run result = run({"verify"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    const QByteArray hash =
        QCryptographicHash::hash(Test::readFile(m_environment->databaseFile()), QCryptographicHash::Sha1)
            .toHex();
    QCOMPARE(result.out,
             QStringLiteral("Database:     %1\n"
                            "As it is:     sound\n"
                            "Synchronised: sound\n"
                            "Fingerprint:  %2\n")
                 .arg(QDir::toNativeSeparators(m_environment->databaseFile()), QLatin1String(hash)));
}

void tst_kyec::verify_databaseThatIsNotMadeYet()
{
    const Run result = run({"verify"});
    QCOMPARE(result.code, 0);
    QVERIFY(result.out.contains("As it is:     not made yet\nSynchronised: sound\n"));
}

void tst_kyec::verify_findsProblems_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("problem");
    QTest::newRow("negative channel") << "UPDATE channel_tbl SET id = -3 WHERE id = 1"
                                      << "channel -3: the id is negative";
    QTest::newRow("negative group") << "INSERT INTO group_tbl (id, name) VALUES (-2, 'x')"
                                    << "group -2: the id is negative";
    QTest::newRow("negative destination") << "UPDATE destination_tbl SET id = -5 WHERE id = 2"
                                          << "destination -5: the id is negative";
    QTest::newRow("channel without name") << "UPDATE channel_tbl SET name = '' WHERE id = 1"
                                          << "channel 1 has no name";
    QTest::newRow("group without name") << "INSERT INTO group_tbl (id, name) VALUES (2, '  ')"
                                        << "group 2 has no name";
    QTest::newRow("destination without name") << "UPDATE destination_tbl SET name = '' WHERE id = 2"
                                              << "destination 2 has no name";
    QTest::newRow("missing channel")
        << "UPDATE destination_tbl SET channel_id = 9, name = '50 %1' WHERE id = 2"
        << "destination 2 \"50 %1\" is in channel 9, which does not exist";
    QTest::newRow("missing group") << "UPDATE destination_tbl SET group_id = 4 WHERE id = 2"
                                   << "destination 2 \"Bar\" is in group 4, which does not exist";
    QTest::newRow("group that is no number") << "UPDATE destination_tbl SET group_id = 'x' WHERE id = 2"
                                             << "destination 2 \"Bar\" is in group x, which does not exist";
    QTest::newRow("password") << "UPDATE destination_tbl SET password = 'garbage' WHERE id = 2"
                              << "destination 2 \"Bar\": the password cannot be deciphered";
    QTest::newRow("tampered password")
        << "UPDATE destination_tbl SET password = 'AAAA' || substr(password, 5) WHERE id = 2"
        << "destination 2 \"Bar\": the password cannot be deciphered";
    QTest::newRow("missing table") << "DROP TABLE group_tbl"
                                   << "no such table: group_tbl";
}

void tst_kyec::verify_findsProblems()
{
    QFETCH(QString, statement);
    QFETCH(QString, problem);
    QCOMPARE(run({"groups", "add", "Day"}).code, 0);
    Test::execute(m_environment->databaseFile(), {statement});
    const Run result = run({"verify"});
    QCOMPARE(result.code, 1);
    QVERIFY2(result.err.contains(problem), qPrintable(result.err));
    QVERIFY2(!result.out.contains("sound"), qPrintable(result.out));
}

void tst_kyec::verify_leavesBadDatabaseAsItIs()
{
    QCOMPARE(run({"channels"}).code, 0);
    Test::execute(m_environment->databaseFile(),
                  {"DROP TABLE destination_tbl",
                   "CREATE TABLE destination_tbl (id, name, channel_id, group_id, password)",
                   "INSERT INTO destination_tbl VALUES (1, 'a', -1, -1, ''), (2, 'a', -1, -1, NULL)"});
    const QByteArray before = files();
    const Run result = run({"verify"});
    QCOMPARE(result.code, 1);
    QCOMPARE(result.err, QStringLiteral("kyec: As it is: 2 destinations have the name \"a\"\n"));
    QVERIFY(result.out.endsWith("As it is:     1 problem\n"));
    QCOMPARE(files(), before);
}

void tst_kyec::verify_findsChannelWithoutFile()
{
    m_environment->writeMainFile({{0, {1, 2}}, {6, {3}}});
    const Run result = run({"verify"});
    QCOMPARE(result.code, 1);
    QCOMPARE(result.err,
             QStringLiteral("kyec: Synchronised: destination 3 \"Kitchen\" is in channel 6, "
                            "which does not exist\n"));
}

void tst_kyec::verify_leavesTheWorkingCopyOfOthers()
{
    QCOMPARE(run({"channels"}).code, 0);
    Test::writeFile(m_environment->workingFile(), "somebody is editing");
    QCOMPARE(run({"verify"}).code, 0);
    QCOMPARE(run({"destinations"}).code, 0);
    QCOMPARE(Test::readFile(m_environment->workingFile()), QByteArray("somebody is editing"));
}

void tst_kyec::demo_tellsTheStory()
{
    const Run result = start({"demo"}, m_variables, m_workingFolder);
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    QVERIFY(result.out.startsWith("Sample environment: 60 destinations in 4 channels"));
    const QStringList expected{"initialized",
                               "4 channels: Concourse … Staff",
                               "batch 6, 10 destinations",
                               "allItemsReadingFinished",
                               "add group \"Entrances\"",
                               "rename group \"Evening\" to \"Open late\"",
                               "saveData()",
                               "Staff → Concourse",
                               "- → Open late",
                               "  before  ",
                               "  after   ",
                               "data/channel/chconfig.xml"};
    int position = 0;
    for (const QString &text : expected) {
        position = result.out.indexOf(text, position);
        QVERIFY2(position >= 0, qPrintable(text));
    }
    QVERIFY(!result.out.contains("sample-1")); // the beginning of a password
}

void tst_kyec::demo_asJson()
{
    const Run result = start({"demo", "--json"}, m_variables, m_workingFolder);
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    const QJsonObject story = result.json().object();

    QStringList record;
    const QJsonArray signalList = story.value("signals").toArray();
    for (const QJsonValue &value : signalList)
        record.append(QStringLiteral("%1 %2")
                          .arg(value.toObject().value("signal").toString())
                          .arg(value.toObject().value("items").toInt()));
    QStringList expectedRecord{"initialized 0", "itemsHasRead 4"};
    for (int batch = 0; batch < 6; ++batch)
        expectedRecord.append("itemsHasRead 10");
    expectedRecord.append("allItemsReadingFinished 0");
    QCOMPARE(record, expectedRecord);

    const QJsonObject before = story.value("before").toObject();
    const QJsonObject after = story.value("after").toObject();
    QCOMPARE(before.value("destinations").toArray().size(), 60);
    QCOMPARE(after.value("destinations").toArray().size(), 60);
    QCOMPARE(before.value("channels").toArray().size(), 4);
    QCOMPARE(before.value("groups").toArray().size(), 0);
    QCOMPARE(after.value("groups").toArray().size(), 2);
    QVERIFY(!result.out.contains("sample-1"));

    const QJsonArray changes = story.value("changes").toArray();
    QCOMPARE(changes.size(), 14);
    int channelChanges = 0;
    for (const QJsonValue &value : changes) {
        const QJsonObject channel = value.toObject().value("channelId").toObject();
        channelChanges += channel.value("before") != channel.value("after");
    }
    QCOMPARE(channelChanges, 3);

    const QJsonObject fingerprint = story.value("fingerprint").toObject();
    QCOMPARE(fingerprint.value("before").toString().size(), 40);
    QCOMPARE(fingerprint.value("after").toString().size(), 40);
    QVERIFY(fingerprint.value("before") != fingerprint.value("after"));
    QVERIFY(story.value("milliseconds").toDouble() > 0);
}

void tst_kyec::demo_keptFolder_isUsable()
{
    const QString folder = m_environment->root() + QStringLiteral("/kept/demo");
    QCOMPARE(start({"demo", "--keep", "kept/demo"}, m_variables, m_workingFolder).code, 0);
    QVERIFY(QFileInfo(folder + QStringLiteral("/log")).isDir());
    QVERIFY(!QFile::exists(folder + QStringLiteral("/data/channel/destination.kyb.work")));
    const QString config = folder + QStringLiteral("/kyteconfig.xml");
    const Run verification = start({"verify", "--config", config}, m_variables, m_workingFolder);
    QCOMPARE(verification.err, QString());
    QCOMPARE(verification.code, 0);
    const Run groups = start({"groups", "--config", config}, m_variables, m_workingFolder);
    QVERIFY(groups.out.contains("Open late"));
    QVERIFY(groups.out.endsWith("2 groups\n"));
}

void tst_kyec::demo_runsAgainInItsOwnFolder()
{
    const QString folder = m_environment->root() + QStringLiteral("/demo");
    for (int round = 0; round < 3; ++round) {
        const Run result = start({"demo", "--keep", folder, "--json"}, m_variables, m_workingFolder);
        QCOMPARE(result.err, QString());
        QCOMPARE(result.code, 0);
        QCOMPARE(result.json().object().value("before").toObject().value("groups").toArray().size(), 0);
    }
}

void tst_kyec::demo_refusesForeignFolder_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("a file") << QStringLiteral("precious.txt");
    QTest::newRow("hidden file") << QStringLiteral(".precious");
    QTest::newRow("a configuration") << QStringLiteral("kyteconfig.xml");
    QTest::newRow("a file in a folder") << QStringLiteral("data/precious.txt");
}

void tst_kyec::demo_refusesForeignFolder()
{
    QFETCH(QString, file);
    const QString folder = m_environment->root() + QStringLiteral("/foreign");
    const QString path = folder + QLatin1Char('/') + file;
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    Test::writeFile(path, "precious");
    const Run result = start({"demo", "--keep", folder}, m_variables, m_workingFolder);
    QCOMPARE(result.code, 1);
    QCOMPARE(result.out, QString());
    QCOMPARE(result.err,
             QStringLiteral("kyec: The folder is not empty and was not made by this command: %1\n")
                 .arg(QDir::toNativeSeparators(folder)));
    QCOMPARE(Test::readFile(path), QByteArray("precious"));
    const QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
    QCOMPARE(QDir(folder).entryList(all), QStringList(file.section(QLatin1Char('/'), 0, 0)));
    QCOMPARE(start({"demo", "--keep", path}, m_variables, m_workingFolder).code,
             1); // a file in place of a folder
    QCOMPARE(Test::readFile(path), QByteArray("precious"));
}

void tst_kyec::demo_temporaryFolder_isRemoved()
{
    QVERIFY(QDir(m_environment->root()).mkpath("temporary"));
    const QString folder = m_environment->root() + QStringLiteral("/temporary");
    m_variables.insert("TMPDIR", folder);
    m_variables.insert("TMP", folder);
    // Without it Qt makes a folder of its own among the temporary files.
    m_variables.insert("XDG_RUNTIME_DIR", m_environment->root());
    const Run result = start({"demo"}, m_variables, m_workingFolder);
    QCOMPARE(result.code, 0);
    QVERIFY(result.out.contains(QDir::toNativeSeparators(folder)));
    QVERIFY(QDir(folder).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

void tst_kyec::demo_replacesLinkAndNotItsTarget()
{
    const QString target = m_environment->dataDir();
    Test::writeFile(target + QStringLiteral("/precious.txt"), "precious");
    const QString folder = m_environment->root() + QStringLiteral("/demo");
    QCOMPARE(start({"demo", "--keep", folder}, m_variables, m_workingFolder).code, 0);
    QVERIFY(QDir(folder + QStringLiteral("/data")).removeRecursively());
    QVERIFY(QFile::link(target, folder + QStringLiteral("/data")));
    QCOMPARE(start({"demo", "--keep", folder}, m_variables, m_workingFolder).code, 0);
    QVERIFY(!QFileInfo(folder + QStringLiteral("/data")).isSymLink());
    QCOMPARE(Test::readFile(target + QStringLiteral("/precious.txt")), QByteArray("precious"));
}

void tst_kyec::demo_fitsInto100Columns()
{
    const Run result = start({"demo", "--keep", "d"}, m_variables, m_workingFolder);
    const QStringList lines = result.out.split(QLatin1Char('\n'));
    QVERIFY(lines.size() > 100);
    for (const QString &line : lines)
        QVERIFY2(line.trimmed().size() <= 100
                     || line.contains(QDir::toNativeSeparators(m_environment->root())),
                 qPrintable(line));
    QVERIFY(!result.out.contains(QChar(0x1b)));
}

void tst_kyec::output_thatCannotBeWritten_isFailure()
{
    const QFileInfo fullDevice(QStringLiteral("/dev/full"));
    if (!fullDevice.exists() || fullDevice.isFile())
        return; // this system has no device that is always full
    QProcess process;
    process.setProcessEnvironment(m_variables);
    process.setStandardOutputFile(fullDevice.filePath());
    process.start(PROGRAM, {"channels", "--config", m_environment->configFile()});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 1);
    QCOMPARE(process.readAllStandardError(), QByteArray("kyec: The output could not be written.\n"));
}

KYTE_TEST_MAIN(tst_kyec)
#include "tst_kyec.moc"
