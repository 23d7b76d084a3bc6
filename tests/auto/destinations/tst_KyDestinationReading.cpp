#include "KyTestMain.h"

#include "KyDestinationTest.h"

#include <QSqlDatabase>
#include <QSqlQuery>

#include <functional>
#include <memory>

using namespace Kyte;
using namespace Kyte::Test;

Q_DECLARE_METATYPE(std::function<void(KyDestination *)>)

static const auto NO_TYPE = static_cast<KyDestination::DataType>(7);
static const QString FINISHED = QStringLiteral("allItemsReadingFinished");
static const QString CATEGORY_STARTED = QStringLiteral("categoryReadingStarted");
static const QString CATEGORY_FINISHED = QStringLiteral("categoryReadingFinished");

static QString error(const QString &message)
{
    return QStringLiteral("errorOccured(") + message + QLatin1Char(')');
}

static QString readingError(const QString &table)
{
    return QStringLiteral("Error occured while the destination database is reading.\n"
                          "(no such table: %1 Unable to execute statement)")
        .arg(table);
}

/** The signal with the records \a ids, each "D1" or the like, blanks between them. */
static QString items(const QString &ids)
{
    return QStringLiteral("itemsHasRead(") + ids + QLatin1Char(')');
}

/** "D1 D2 D3" for 1 to 3. */
static QString destinations(int first, int last)
{
    QStringList texts;
    for (int id = first; id <= last; ++id)
        texts.append(QStringLiteral("D%1").arg(id));
    return texts.join(QLatin1Char(' '));
}

/** The signals for \a count destinations from 1 on, in tens. */
static QStringList batches(int count)
{
    QStringList texts;
    for (int first = 1; first <= count; first += 10)
        texts.append(items(destinations(first, qMin(first + 9, count))));
    return texts;
}

class tst_KyDestinationReading : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void readCategory_emitsOneListInOrder_data();
    void readCategory_emitsOneListInOrder();
    void readCategory_makesFullRecords();
    void readCategory_emitsAnEmptyList_data();
    void readCategory_emitsAnEmptyList();
    void readCategory_isLimitedByTheChannelMaximum_data();
    void readCategory_isLimitedByTheChannelMaximum();
    void readCategory_fillsItsMapOnly_data();
    void readCategory_fillsItsMapOnly();
    void readCategory_refusesAnUndefinedType();
    void readCategory_reportsAFailure_data();
    void readCategory_reportsAFailure();

    void readDestinations_filters_data();
    void readDestinations_filters();
    void readDestinations_emitsTens_data();
    void readDestinations_emitsTens();
    void readDestinations_isLimitedBeforeTheFilter_data();
    void readDestinations_isLimitedBeforeTheFilter();
    void readDestinations_makesFullRecords();
    void readDestinations_reportsAFailure();
    void readDestinations_leavesEverythingElse();

    void startToRead_emitsTheWholePicture_data();
    void startToRead_emitsTheWholePicture();
    void startToRead_countsModuloTen_data();
    void startToRead_countsModuloTen();
    void startToRead_sortsByPositionAndName();
    void startToRead_leavesDestinationsWithoutChannelOut();
    void startToRead_isLimited_data();
    void startToRead_isLimited();
    void startToRead_limitsWhatIsInAChannel();
    void startToRead_emitsAnEmptyCategoryList();
    void startToRead_fillsBothMaps_data();
    void startToRead_fillsBothMaps();
    void startToRead_inSingleMode_data();
    void startToRead_inSingleMode();
    void startToRead_readsDestinationsWhateverTheType();
    void startToRead_reportsTheFirstFailureOnly_data();
    void startToRead_reportsTheFirstFailureOnly();

    void reading_leavesTheDatabaseOpen_data();
    void reading_leavesTheDatabaseOpen();
    void reading_clearsTheError_data();
    void reading_clearsTheError();
    void reading_withoutInit_isAnError_data();
    void reading_withoutInit_isAnError();
    void reading_whatCannotBeOpened_isAnError_data();
    void reading_whatCannotBeOpened_isAnError();
    void reading_whileAnotherWrites_works();
    void nullMaps_areNotFilled();
    void replacedMaps_areFilled();
    void oddTexts_areRead_data();
    void oddTexts_areRead();
    void oddValues_areConverted();
    void columnsInAnotherOrder_areFound();
    void missingColumns_areEmpty();

    void spies_holdTheRecords();
    void queuedConnections_deliverTheRecords();
    void keptLists_stayAsTheyWere();

    void slotThatDeletesTheObject_endsTheReading_data();
    void slotThatDeletesTheObject_endsTheReading();
    void slotThatDeletesTheObjectOnAnError_endsTheReading_data();
    void slotThatDeletesTheObjectOnAnError_endsTheReading();
    void slotThatDropsTheConnection_endsTheReading_data();
    void slotThatDropsTheConnection_endsTheReading();
    void slotThatMoves_doesNotDisturb();
    void slotThatReads_doesNotDisturb();
    void slotThatChangesTheTypeOrLimits_isHeededByTheNextReading();

private:
    QString file() const;
    /** Channels 0 to 2, groups 4 and 5, and \a count destinations, all in channel 1. */
    std::unique_ptr<KyDestination> create(int count = 3) const;
    void addOperations() const;

    std::unique_ptr<Environment> m_environment;
    std::unique_ptr<MessageWatch> m_watch;
};

void tst_KyDestinationReading::init()
{
    m_environment = std::make_unique<Environment>();
    m_watch = std::make_unique<MessageWatch>();
}

void tst_KyDestinationReading::cleanup()
{
    const QStringList complaints = m_watch->take();
    m_watch.reset();
    m_environment.reset();
    QCOMPARE(complaints, QStringList());
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
}

QString tst_KyDestinationReading::file() const
{
    return m_environment->databaseFile();
}

std::unique_ptr<KyDestination> tst_KyDestinationReading::create(int count) const
{
    for (int id = 0; id < 3; ++id)
        m_environment->writeChannel(id, QStringLiteral("Channel %1").arg(id), id);
    m_environment->writeConfig(makeDestinations(1, count));
    auto destination = std::make_unique<KyDestination>(nullptr);
    if (!destination->init())
        qFatal("init failed: %s", qPrintable(destination->lastErrorMessage()));
    execute(
        file(),
        {QStringLiteral("INSERT INTO group_tbl (id, name, posindex) VALUES (4, 'Four', 0), (5, 'Five', 1)"),
         // Positions in the order of ids: by name, 10 would come before 2.
         QStringLiteral("UPDATE destination_tbl SET channel_id=1, posindex=id")});
    return destination;
}

/** Every operation that reads, as rows of "operation". */
void tst_KyDestinationReading::addOperations() const
{
    QTest::addColumn<std::function<void(KyDestination *)>>("operation");
    const auto add = [](const char *name, const std::function<void(KyDestination *)> &operation) {
        QTest::newRow(name) << operation;
    };
    add("startToRead", [](KyDestination *destination) {
        destination->startToRead();
    });
    add("startToRead, groups", [](KyDestination *destination) {
        destination->setDataType(KyDestination::Data_Group);
        destination->startToRead();
    });
    add("startToRead, single mode", [](KyDestination *destination) {
        destination->setMaxChannelCount(1);
        destination->setMaxDestinationCount(1);
        destination->startToRead();
    });
    add("startToRead, no type", [](KyDestination *destination) {
        destination->setDataType(NO_TYPE);
        destination->startToRead();
    });
    add("readCategory", [](KyDestination *destination) {
        destination->readCategory(KyDestination::Data_Group);
    });
    add("readChannels", [](KyDestination *destination) {
        destination->readChannels();
    });
    add("readGroups", [](KyDestination *destination) {
        destination->readGroups();
    });
    add("readDestinations", [](KyDestination *destination) {
        destination->readDestinations(-2, -2);
    });
    add("readDestinationsInChannel", [](KyDestination *destination) {
        destination->readDestinationsInChannel(1);
    });
    add("readDestinationsInGroup", [](KyDestination *destination) {
        destination->readDestinationsInGroup(-1);
    });
}

void tst_KyDestinationReading::readCategory_emitsOneListInOrder_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("letter");
    QTest::newRow("channels") << static_cast<int>(KyDestination::Data_Channel) << QStringLiteral("C");
    QTest::newRow("groups") << static_cast<int>(KyDestination::Data_Group) << QStringLiteral("G");
}

void tst_KyDestinationReading::readCategory_emitsOneListInOrder()
{
    QFETCH(int, type);
    QFETCH(QString, letter);
    const bool isChannel = type == KyDestination::Data_Channel;
    const std::unique_ptr<KyDestination> destination = create();
    const QString table = isChannel ? QStringLiteral("channel_tbl") : QStringLiteral("group_tbl");
    execute(
        file(),
        {QStringLiteral("DELETE FROM ") + table,
         QStringLiteral("INSERT INTO %1 (id, name, posindex) VALUES (1, 'b', 1), (2, 'a', 1), (3, 'z', 0),"
                        " (4, 'c', -1), (5, 'B', 1)")
             .arg(table)});
    const QStringList expected = {
        CATEGORY_STARTED, items(QStringLiteral("%14 %13 %15 %12 %11").replace(QStringLiteral("%1"), letter)),
        CATEGORY_FINISHED};
    DestinationRecorder recorder(destination.get());
    destination->readCategory(static_cast<KyDestination::DataType>(type));
    QCOMPARE(recorder.takeSignals(), expected);
    isChannel ? destination->readChannels() : destination->readGroups();
    QCOMPARE(recorder.takeSignals(), expected);
}

void tst_KyDestinationReading::readCategory_makesFullRecords()
{
    const std::unique_ptr<KyDestination> destination = create();
    DestinationRecorder recorder(destination.get());
    destination->readChannels();
    QCOMPARE(
        recorder.takeRecords(),
        QStringList({QStringLiteral("1|0|Channel 0|0|||-1|-1||"), QStringLiteral("1|1|Channel 1|1|||-1|-1||"),
                     QStringLiteral("1|2|Channel 2|2|||-1|-1||")}));
    destination->readGroups();
    QCOMPARE(recorder.takeRecords(),
             QStringList({QStringLiteral("2|4|Four|0|||-1|-1||"), QStringLiteral("2|5|Five|1|||-1|-1||")}));
}

void tst_KyDestinationReading::readCategory_emitsAnEmptyList_data()
{
    readCategory_emitsOneListInOrder_data();
}

void tst_KyDestinationReading::readCategory_emitsAnEmptyList()
{
    QFETCH(int, type);
    const std::unique_ptr<KyDestination> destination = create();
    execute(file(), {QStringLiteral("DELETE FROM channel_tbl"), QStringLiteral("DELETE FROM group_tbl")});
    DestinationRecorder recorder(destination.get());
    destination->readCategory(static_cast<KyDestination::DataType>(type));
    QCOMPARE(recorder.takeSignals(), QStringList({CATEGORY_STARTED, items(QString()), CATEGORY_FINISHED}));
}

void tst_KyDestinationReading::readCategory_isLimitedByTheChannelMaximum_data()
{
    QTest::addColumn<int>("maximum");
    QTest::addColumn<QString>("channels");
    QTest::addColumn<QString>("groups");
    QTest::newRow("all") << -1 << QStringLiteral("C0 C1 C2") << QStringLiteral("G4 G5");
    QTest::newRow("all, too") << -5 << QStringLiteral("C0 C1 C2") << QStringLiteral("G4 G5");
    QTest::newRow("none") << 0 << QString() << QString();
    QTest::newRow("one") << 1 << QStringLiteral("C0") << QStringLiteral("G4");
    QTest::newRow("two") << 2 << QStringLiteral("C0 C1") << QStringLiteral("G4 G5");
    QTest::newRow("five") << 5 << QStringLiteral("C0 C1 C2") << QStringLiteral("G4 G5");
}

void tst_KyDestinationReading::readCategory_isLimitedByTheChannelMaximum()
{
    QFETCH(int, maximum);
    QFETCH(QString, channels);
    QFETCH(QString, groups);
    const std::unique_ptr<KyDestination> destination = create();
    destination->setMaxChannelCount(maximum);
    destination->setMaxDestinationCount(0); // limits destinations only
    QCOMPARE(destination->maxChannelCount(), maximum);
    DestinationRecorder recorder(destination.get());
    destination->readChannels();
    QCOMPARE(recorder.takeSignals(), QStringList({CATEGORY_STARTED, items(channels), CATEGORY_FINISHED}));
    destination->readGroups();
    QCOMPARE(recorder.takeSignals(), QStringList({CATEGORY_STARTED, items(groups), CATEGORY_FINISHED}));
}

void tst_KyDestinationReading::readCategory_fillsItsMapOnly_data()
{
    readCategory_emitsOneListInOrder_data();
}

void tst_KyDestinationReading::readCategory_fillsItsMapOnly()
{
    QFETCH(int, type);
    const bool isChannel = type == KyDestination::Data_Channel;
    const std::unique_ptr<KyDestination> destination = create();
    const QMap<int, QString> stale = {{99, QStringLiteral("Stale")}};
    *destination->channelNames() = stale;
    *destination->groupNames() = stale;
    destination->readCategory(static_cast<KyDestination::DataType>(type));
    const QMap<int, QString> channels = {
        {0, QStringLiteral("Channel 0")}, {1, QStringLiteral("Channel 1")}, {2, QStringLiteral("Channel 2")}};
    const QMap<int, QString> groups = {{4, QStringLiteral("Four")}, {5, QStringLiteral("Five")}};
    QCOMPARE(*destination->channelNames(), isChannel ? channels : stale);
    QCOMPARE(*destination->groupNames(), isChannel ? stale : groups);
}

void tst_KyDestinationReading::readCategory_refusesAnUndefinedType()
{
    const std::unique_ptr<KyDestination> destination = create();
    destination->startToRead();
    const QMap<int, QString> channels = *destination->channelNames();
    const QMap<int, QString> groups = *destination->groupNames();
    DestinationRecorder recorder(destination.get());
    for (const int type : {7, 2, -1}) {
        destination->readCategory(static_cast<KyDestination::DataType>(type));
        QCOMPARE(recorder.takeSignals(),
                 QStringList({error(QStringLiteral("The Data Type is not defined."))}));
        QCOMPARE(destination->lastErrorMessage(), QStringLiteral("The Data Type is not defined."));
    }
    QCOMPARE(*destination->channelNames(), channels);
    QCOMPARE(*destination->groupNames(), groups);
}

void tst_KyDestinationReading::readCategory_reportsAFailure_data()
{
    readCategory_emitsOneListInOrder_data();
}

void tst_KyDestinationReading::readCategory_reportsAFailure()
{
    QFETCH(int, type);
    const bool isChannel = type == KyDestination::Data_Channel;
    const std::unique_ptr<KyDestination> destination = create();
    destination->startToRead();
    const QString table = isChannel ? QStringLiteral("channel_tbl") : QStringLiteral("group_tbl");
    execute(file(), {QStringLiteral("DROP TABLE ") + table});
    destination
        ->reconnectDatabase(); // it would learn later that the table is gone, and say so in other words
    DestinationRecorder recorder(destination.get());
    destination->readCategory(static_cast<KyDestination::DataType>(type));
    QCOMPARE(recorder.takeSignals(), QStringList({error(readingError(table))}));
    QCOMPARE(destination->lastErrorMessage(), readingError(table));
    QVERIFY((isChannel ? destination->channelNames() : destination->groupNames())->isEmpty());
}

void tst_KyDestinationReading::readDestinations_filters_data()
{
    QTest::addColumn<int>("channel");
    QTest::addColumn<int>("group");
    QTest::addColumn<QString>("expected");
    // The destinations 1 to 8, each with channel and group: 1 -1/-1, 2 -1/4, 3 0/-1, 4 0/4, 5 0/5, 6 1/4, 7
    // 1/5, 8 -2/-2
    QTest::newRow("any") << -2 << -2 << QStringLiteral("D1 D2 D3 D4 D5 D6 D7 D8");
    QTest::newRow("any, less") << -100 << -3 << QStringLiteral("D1 D2 D3 D4 D5 D6 D7 D8");
    QTest::newRow("channel") << 0 << -2 << QStringLiteral("D3 D4 D5");
    QTest::newRow("no channel") << -1 << -2 << QStringLiteral("D1 D2");
    QTest::newRow("group") << -2 << 4 << QStringLiteral("D2 D4 D6");
    QTest::newRow("no group") << -2 << -1 << QStringLiteral("D1 D3");
    QTest::newRow("channel and group") << 0 << 5 << QStringLiteral("D5");
    QTest::newRow("no channel, a group") << -1 << 4 << QStringLiteral("D2");
    QTest::newRow("a channel, no group") << 0 << -1 << QStringLiteral("D3");
    QTest::newRow("neither") << -1 << -1 << QStringLiteral("D1");
    QTest::newRow("unknown channel") << 99 << -2 << QString();
    QTest::newRow("unknown group") << -2 << 99 << QString();
}

void tst_KyDestinationReading::readDestinations_filters()
{
    QFETCH(int, channel);
    QFETCH(int, group);
    QFETCH(QString, expected);
    const std::unique_ptr<KyDestination> destination = create(8);
    const int memberships[][2] = {{-1, -1}, {-1, 4}, {0, -1}, {0, 4}, {0, 5}, {1, 4}, {1, 5}, {-2, -2}};
    QStringList statements;
    for (int id = 1; id <= 8; ++id)
        statements.append(QStringLiteral("UPDATE destination_tbl SET channel_id=%1, group_id=%2 WHERE id=%3")
                              .arg(memberships[id - 1][0])
                              .arg(memberships[id - 1][1])
                              .arg(id));
    execute(file(), statements);

    DestinationRecorder recorder(destination.get());
    destination->readDestinations(channel, group);
    QStringList signal = {QStringLiteral("readingDestinationStarted(%1,%2)").arg(channel).arg(group)};
    if (!expected.isEmpty())
        signal.append(items(expected));
    signal.append(FINISHED);
    QCOMPARE(recorder.takeSignals(), signal);

    if (group == -2) {
        destination->readDestinationsInChannel(channel);
        QCOMPARE(recorder.takeSignals(), signal);
    }
    if (channel == -2) {
        destination->readDestinationsInGroup(group);
        QCOMPARE(recorder.takeSignals(), signal);
    }
}

void tst_KyDestinationReading::readDestinations_emitsTens_data()
{
    QTest::addColumn<int>("count");
    for (const int count : {0, 1, 9, 10, 11, 19, 20, 21, 25})
        QTest::newRow(qPrintable(QString::number(count))) << count;
}

void tst_KyDestinationReading::readDestinations_emitsTens()
{
    QFETCH(int, count);
    const std::unique_ptr<KyDestination> destination = create(count);
    DestinationRecorder recorder(destination.get());
    destination->readDestinations(-2, -2);
    QCOMPARE(recorder.takeSignals(),
             QStringList({QStringLiteral("readingDestinationStarted(-2,-2)")}) + batches(count)
                 + QStringList({FINISHED}));
    QCOMPARE(destination->lastErrorMessage(), QString());
}

void tst_KyDestinationReading::readDestinations_isLimitedBeforeTheFilter_data()
{
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("channel");
    QTest::addColumn<QString>("expected");
    // By position and name: 6 5 4 3 2 1; those with even ids are in channel 2, the others in channel 1.
    QTest::newRow("no limit") << -1 << -2 << QStringLiteral("D1 D2 D3 D4 D5 D6");
    QTest::newRow("no limit, filtered") << -1 << 2 << QStringLiteral("D2 D4 D6");
    QTest::newRow("none") << 0 << -2 << QString();
    QTest::newRow("none, filtered") << 0 << 2 << QString();
    QTest::newRow("one") << 1 << -2 << QStringLiteral("D6");
    QTest::newRow("one, filtered") << 1 << 2 << QStringLiteral("D6");
    QTest::newRow("one, filtered out") << 1 << 1 << QString();
    QTest::newRow("three, filtered") << 3 << 2 << QStringLiteral("D4 D6");
    QTest::newRow("five") << 5 << -2 << QStringLiteral("D2 D3 D4 D5 D6");
    QTest::newRow("five, filtered") << 5 << 1 << QStringLiteral("D3 D5");
    QTest::newRow("more than there are") << 100 << -2 << QStringLiteral("D1 D2 D3 D4 D5 D6");
}

void tst_KyDestinationReading::readDestinations_isLimitedBeforeTheFilter()
{
    QFETCH(int, maximum);
    QFETCH(int, channel);
    QFETCH(QString, expected);
    const std::unique_ptr<KyDestination> destination = create(6);
    execute(file(),
            {QStringLiteral("UPDATE destination_tbl SET posindex=-(id / 2), channel_id=2 - id % 2"),
             QStringLiteral("UPDATE destination_tbl SET name='a' || (9 - id)")});
    destination->setMaxDestinationCount(maximum);
    destination->setMaxChannelCount(0); // limits categories only
    DestinationRecorder recorder(destination.get());
    destination->readDestinations(channel, -2);
    // The rows come in no particular order.
    QStringList ids;
    for (const QString &record : recorder.takeRecords())
        ids.append(QLatin1Char('D') + record.section(QLatin1Char('|'), 1, 1));
    ids.sort();
    QCOMPARE(ids.join(QLatin1Char(' ')), expected);
    QCOMPARE(recorder.takeSignals().constLast(), FINISHED);
}

void tst_KyDestinationReading::readDestinations_makesFullRecords()
{
    const std::unique_ptr<KyDestination> destination = create(2);
    execute(file(),
            {QStringLiteral(
                "UPDATE destination_tbl SET group_id=5, posindex=3, password='cipher text' WHERE id=2")});
    DestinationRecorder recorder(destination.get());
    destination->readDestinations(1, 5);
    QCOMPARE(recorder.takeRecords(),
             QStringList({QStringLiteral("0|2|Destination 2|3|10.0.0.2|share2|1|5|user2|cipher text")}));
    destination->readDestinations(1, -1);
    const QString record = recorder.takeRecords().value(0);
    const QString password = record.section(QLatin1Char('|'), 9);
    QVERIFY(record.startsWith(QStringLiteral("0|1|Destination 1|1|10.0.0.1|share1|1|-1|user1|")));
    QVERIFY(!password.contains(QStringLiteral("secret")));
    QCOMPARE(KyDestination::decryptString(password), QStringLiteral("secret1"));
}

void tst_KyDestinationReading::readDestinations_reportsAFailure()
{
    const std::unique_ptr<KyDestination> destination = create();
    execute(file(), {QStringLiteral("DROP TABLE destination_tbl")});
    DestinationRecorder recorder(destination.get());
    destination->readDestinations(3, 4);
    const QString message = readingError(QStringLiteral("destination_tbl"));
    QCOMPARE(recorder.takeSignals(),
             QStringList({QStringLiteral("readingDestinationStarted(3,4)"), error(message)}));
    QCOMPARE(destination->lastErrorMessage(), message);
}

void tst_KyDestinationReading::readDestinations_leavesEverythingElse()
{
    const std::unique_ptr<KyDestination> destination = create(7);
    destination->startToRead();
    QCOMPARE(destination->enabledCount(), 7);
    const QMap<int, QString> channels = *destination->channelNames();
    const QMap<int, QString> groups = *destination->groupNames();
    destination->setMaxDestinationCount(2);
    destination->readDestinations(-2, -2);
    QCOMPARE(destination->enabledCount(), 7);
    QCOMPARE(*destination->channelNames(), channels);
    QCOMPARE(*destination->groupNames(), groups);
}

void tst_KyDestinationReading::startToRead_emitsTheWholePicture_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("categories");
    QTest::newRow("channels") << static_cast<int>(KyDestination::Data_Channel) << QStringLiteral("C0 C1 C2");
    QTest::newRow("groups") << static_cast<int>(KyDestination::Data_Group) << QStringLiteral("G4 G5");
}

void tst_KyDestinationReading::startToRead_emitsTheWholePicture()
{
    QFETCH(int, type);
    QFETCH(QString, categories);
    const std::unique_ptr<KyDestination> destination = create(25);
    destination->setDataType(static_cast<KyDestination::DataType>(type));
    QCOMPARE(static_cast<int>(destination->dataType()), type);
    DestinationRecorder recorder(destination.get());
    destination->startToRead();
    QCOMPARE(recorder.takeSignals(),
             QStringList({items(categories)}) + batches(25) + QStringList({FINISHED}));
    const QStringList records = recorder.takeRecords();
    QCOMPARE(records.value(0),
             type == KyDestination::Data_Channel ? QStringLiteral("1|0|Channel 0|0|||-1|-1||")
                                                 : QStringLiteral("2|4|Four|0|||-1|-1||"));
    QVERIFY(records.constLast().startsWith(
        QStringLiteral("0|25|Destination 25|25|10.0.0.25|share25|1|-1|user25|")));
    QCOMPARE(KyDestination::decryptString(records.constLast().section(QLatin1Char('|'), 9)),
             QStringLiteral("secret25"));
}

void tst_KyDestinationReading::startToRead_countsModuloTen_data()
{
    readDestinations_emitsTens_data();
}

void tst_KyDestinationReading::startToRead_countsModuloTen()
{
    QFETCH(int, count);
    const std::unique_ptr<KyDestination> destination = create(count);
    DestinationRecorder recorder(destination.get());
    destination->startToRead();
    QCOMPARE(recorder.takeSignals(),
             QStringList({items(QStringLiteral("C0 C1 C2"))}) + batches(count) + QStringList({FINISHED}));
    QCOMPARE(destination->enabledCount(), count % 10);
}

void tst_KyDestinationReading::startToRead_sortsByPositionAndName()
{
    const std::unique_ptr<KyDestination> destination = create(5);
    execute(
        file(),
        {QStringLiteral("UPDATE destination_tbl SET posindex=1, name=CASE id WHEN 1 THEN 'b' WHEN 2 THEN 'B'"
                        " WHEN 3 THEN 'a' WHEN 4 THEN 'z' ELSE '\u00e4' END"),
         QStringLiteral("UPDATE destination_tbl SET posindex=0 WHERE id=4")});
    DestinationRecorder recorder(destination.get());
    destination->startToRead();
    QCOMPARE(recorder.takeSignals().value(1), items(QStringLiteral("D4 D2 D3 D1 D5")));
}

void tst_KyDestinationReading::startToRead_leavesDestinationsWithoutChannelOut()
{
    const std::unique_ptr<KyDestination> destination = create(5);
    execute(file(),
            {QStringLiteral("UPDATE destination_tbl SET channel_id=-1, group_id=4 WHERE id=2"),
             QStringLiteral("UPDATE destination_tbl SET channel_id=-3 WHERE id=3"),
             QStringLiteral("UPDATE destination_tbl SET channel_id=99 WHERE id=4")});
    DestinationRecorder recorder(destination.get());
    for (const KyDestination::DataType type : {KyDestination::Data_Channel, KyDestination::Data_Group}) {
        destination->setDataType(type);
        destination->startToRead();
        QCOMPARE(recorder.takeSignals().mid(1), QStringList({items(QStringLiteral("D1 D4 D5")), FINISHED}));
    }
}

void tst_KyDestinationReading::startToRead_isLimited_data()
{
    QTest::addColumn<int>("maxChannels");
    QTest::addColumn<int>("maxDestinations");
    QTest::addColumn<QString>("channels");
    QTest::addColumn<int>("count");
    QTest::newRow("no limits") << -1 << -1 << QStringLiteral("C0 C1 C2") << 12;
    QTest::newRow("no channels") << 0 << -1 << QString() << 12;
    QTest::newRow("no destinations") << -1 << 0 << QStringLiteral("C0 C1 C2") << 0;
    QTest::newRow("nothing") << 0 << 0 << QString() << 0;
    QTest::newRow("one channel") << 1 << -1 << QStringLiteral("C0") << 12;
    QTest::newRow("one destination") << -1 << 1 << QStringLiteral("C0 C1 C2") << 1;
    QTest::newRow("five of each") << 5 << 5 << QStringLiteral("C0 C1 C2") << 5;
    QTest::newRow("a full list") << 2 << 10 << QStringLiteral("C0 C1") << 10;
    QTest::newRow("one channel, none") << 1 << 0 << QStringLiteral("C0") << 0;
    QTest::newRow("no channel, one") << 0 << 1 << QString() << 1;
    QTest::newRow("negative") << -7 << -2 << QStringLiteral("C0 C1 C2") << 12;
}

void tst_KyDestinationReading::startToRead_isLimited()
{
    QFETCH(int, maxChannels);
    QFETCH(int, maxDestinations);
    QFETCH(QString, channels);
    QFETCH(int, count);
    const std::unique_ptr<KyDestination> destination = create(12);
    destination->setMaxChannelCount(maxChannels);
    destination->setMaxDestinationCount(maxDestinations);
    QCOMPARE(destination->maxDestinationCount(), maxDestinations);
    DestinationRecorder recorder(destination.get());
    destination->startToRead();
    QCOMPARE(recorder.takeSignals(),
             QStringList({items(channels)}) + batches(count) + QStringList({FINISHED}));
    QCOMPARE(destination->enabledCount(), count % 10);
    for (const QString &record : recorder.takeRecords().filter(QStringLiteral("Destination")))
        QCOMPARE(record.section(QLatin1Char('|'), 6, 6),
                 QStringLiteral("1")); // only single mode changes that
}

void tst_KyDestinationReading::startToRead_limitsWhatIsInAChannel()
{
    const std::unique_ptr<KyDestination> destination = create(6);
    execute(file(), {QStringLiteral("UPDATE destination_tbl SET channel_id=-1 WHERE id < 3")});
    destination->setMaxDestinationCount(2);
    DestinationRecorder recorder(destination.get());
    destination->startToRead();
    QCOMPARE(recorder.takeSignals().value(1), items(QStringLiteral("D3 D4")));
}

void tst_KyDestinationReading::startToRead_emitsAnEmptyCategoryList()
{
    const std::unique_ptr<KyDestination> destination = create(1);
    execute(file(), {QStringLiteral("DELETE FROM channel_tbl")});
    DestinationRecorder recorder(destination.get());
    destination->startToRead();
    QCOMPARE(recorder.takeSignals(), QStringList({items(QString()), items(QStringLiteral("D1")), FINISHED}));
}

void tst_KyDestinationReading::startToRead_fillsBothMaps_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<QList<int>>("channels");
    QTest::addColumn<QList<int>>("groups");
    const QList<int> channels = {0, 1, 2};
    const QList<int> groups = {4, 5};
    QTest::newRow("channels") << 0 << -1 << channels << groups;
    QTest::newRow("groups") << 1 << -1 << channels << groups;
    QTest::newRow("channels, limited") << 0 << 1 << channels.mid(0, 1) << groups; // the other kind is not
    QTest::newRow("groups, limited") << 1 << 1 << channels << groups.mid(0, 1);
    QTest::newRow("neither") << 7 << -1 << QList<int>() << QList<int>();
}

void tst_KyDestinationReading::startToRead_fillsBothMaps()
{
    QFETCH(int, type);
    QFETCH(int, maximum);
    QFETCH(QList<int>, channels);
    QFETCH(QList<int>, groups);
    const std::unique_ptr<KyDestination> destination = create();
    destination->channelNames()->insert(99, QStringLiteral("Stale"));
    destination->groupNames()->insert(99, QStringLiteral("Stale"));
    destination->setDataType(static_cast<KyDestination::DataType>(type));
    destination->setMaxChannelCount(maximum);
    destination->startToRead();
    QCOMPARE(destination->channelNames()->keys(), channels);
    QCOMPARE(destination->groupNames()->keys(), groups);
    if (!channels.isEmpty())
        QCOMPARE(destination->channelNames()->value(0), QStringLiteral("Channel 0"));
    if (!groups.isEmpty())
        QCOMPARE(destination->groupNames()->value(4), QStringLiteral("Four"));
}

void tst_KyDestinationReading::startToRead_inSingleMode_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("change");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QString>("record"); // id, then channel and group
    const QStringList channel = {items(QStringLiteral("C0")), items(QStringLiteral("D1")), FINISHED};
    const QStringList group = {items(QStringLiteral("G4")), items(QStringLiteral("D1")), FINISHED};
    const QString noChange = QStringLiteral("PRAGMA user_version");
    QTest::newRow("channels") << 0 << noChange << channel << QStringLiteral("1 0 -1");
    QTest::newRow("destination without channel")
        << 0 << QStringLiteral("UPDATE destination_tbl SET channel_id=-1, group_id=5") << channel
        << QStringLiteral("1 0 -1");
    QTest::newRow("groups: the group's id becomes the channel")
        << 1 << noChange << group << QStringLiteral("1 4 -1");
    QTest::newRow("no categories") << 0 << QStringLiteral("DELETE FROM channel_tbl")
                                   << QStringList({items(QString()), items(QStringLiteral("D1")), FINISHED})
                                   << QStringLiteral("1 0 -1");
    QTest::newRow("no destinations") << 0 << QStringLiteral("DELETE FROM destination_tbl")
                                     << QStringList({items(QStringLiteral("C0")), FINISHED}) << QString();
    QTest::newRow("neither type") << 7 << noChange << QStringList(channel.mid(1)) << QStringLiteral("1 0 -1");
    QTest::newRow("first by position")
        << 0 << QStringLiteral("UPDATE channel_tbl SET posindex=-id")
        << QStringList({items(QStringLiteral("C2")), items(QStringLiteral("D1")), FINISHED})
        << QStringLiteral("1 2 -1");
}

void tst_KyDestinationReading::startToRead_inSingleMode()
{
    QFETCH(int, type);
    QFETCH(QString, change);
    QFETCH(QStringList, expected);
    QFETCH(QString, record);
    const std::unique_ptr<KyDestination> destination = create(3);
    execute(file(), {change});
    destination->setDataType(static_cast<KyDestination::DataType>(type));
    destination->setMaxChannelCount(1);
    destination->setMaxDestinationCount(1);
    DestinationRecorder recorder(destination.get());
    destination->startToRead();
    QCOMPARE(recorder.takeSignals(), expected);
    QCOMPARE(destination->enabledCount(), record.isEmpty() ? 0 : 1);
    if (!record.isEmpty()) {
        const QStringList fields = recorder.takeRecords().constLast().split(QLatin1Char('|'));
        QCOMPARE(QStringList({fields[1], fields[6], fields[7]}).join(QLatin1Char(' ')), record);
    }
}

void tst_KyDestinationReading::startToRead_readsDestinationsWhateverTheType()
{
    const std::unique_ptr<KyDestination> destination = create(12);
    destination->setDataType(NO_TYPE);
    DestinationRecorder recorder(destination.get());
    destination->startToRead();
    QCOMPARE(recorder.takeSignals(), batches(12) + QStringList({FINISHED}));
    QCOMPARE(destination->enabledCount(), 2);
    QCOMPARE(destination->lastErrorMessage(), QString());
}

void tst_KyDestinationReading::startToRead_reportsTheFirstFailureOnly_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("table");
    QTest::addColumn<QStringList>("expected");
    const QStringList all = {items(QStringLiteral("C0 C1 C2")), items(QStringLiteral("D1 D2 D3")), FINISHED};
    const QString channels = QStringLiteral("channel_tbl");
    const QString groups = QStringLiteral("group_tbl");
    const QString third = QStringLiteral("destination_tbl");
    QTest::newRow("own table") << 0 << channels << QStringList({error(readingError(channels))});
    QTest::newRow("own table, groups") << 1 << groups << QStringList({error(readingError(groups))});
    QTest::newRow("other table") << 0 << groups << all;
    QTest::newRow("other table, groups")
        << 1 << channels << QStringList({items(QStringLiteral("G4 G5"))}) + QStringList(all.mid(1));
    QTest::newRow("destinations") << 0 << third << QStringList({all[0], FINISHED});
    QTest::newRow("destinations, neither type") << 7 << third << QStringList({FINISHED});
    QTest::newRow("channels, neither type") << 7 << channels << QStringList(all.mid(1));
}

void tst_KyDestinationReading::startToRead_reportsTheFirstFailureOnly()
{
    QFETCH(int, type);
    QFETCH(QString, table);
    QFETCH(QStringList, expected);
    const std::unique_ptr<KyDestination> destination = create(3);
    destination->startToRead();
    QCOMPARE(destination->enabledCount(), 3);
    execute(file(), {QStringLiteral("DROP TABLE ") + table});
    destination->reconnectDatabase();
    destination->setDataType(static_cast<KyDestination::DataType>(type));
    DestinationRecorder recorder(destination.get());
    destination->startToRead();
    QCOMPARE(recorder.takeSignals(), expected);
    const bool isFailure = expected.size() == 1 && expected[0] != FINISHED;
    QCOMPARE(destination->lastErrorMessage(), isFailure ? readingError(table) : QString());
    if (table == QLatin1String("destination_tbl"))
        QCOMPARE(destination->enabledCount(), 0);
    if (isFailure || table == QLatin1String("channel_tbl"))
        QVERIFY(destination->channelNames()->isEmpty());
    if (isFailure || table == QLatin1String("group_tbl"))
        QVERIFY(destination->groupNames()->isEmpty());
}

void tst_KyDestinationReading::reading_leavesTheDatabaseOpen_data()
{
    addOperations();
}

void tst_KyDestinationReading::reading_leavesTheDatabaseOpen()
{
    QFETCH(std::function<void(KyDestination *)>, operation);
    const std::unique_ptr<KyDestination> destination = create();
    QVERIFY(!isOpen());
    operation(destination.get());
    QVERIFY(isOpen());
    operation(destination.get());
    QVERIFY(isOpen());
    QCOMPARE(destination->lastErrorMessage(), QString());
}

void tst_KyDestinationReading::reading_clearsTheError_data()
{
    addOperations();
}

void tst_KyDestinationReading::reading_clearsTheError()
{
    QFETCH(std::function<void(KyDestination *)>, operation);
    const std::unique_ptr<KyDestination> destination = create();
    destination->readCategory(NO_TYPE);
    QVERIFY(!destination->lastErrorMessage().isEmpty());
    operation(destination.get());
    QCOMPARE(destination->lastErrorMessage(), QString());
}

void tst_KyDestinationReading::reading_withoutInit_isAnError_data()
{
    addOperations();
}

void tst_KyDestinationReading::reading_withoutInit_isAnError()
{
    QFETCH(std::function<void(KyDestination *)>, operation);
    KyDestination destination;
    DestinationRecorder recorder(&destination);
    operation(&destination);
    const QString message = QStringLiteral("The database connection does not exist.");
    QStringList signal = recorder.takeSignals();
    if (signal.value(0).startsWith(QLatin1String("readingDestinationStarted(")))
        signal.removeFirst();
    QCOMPARE(signal, QStringList({error(message)}));
    QCOMPARE(destination.lastErrorMessage(), message);
}

void tst_KyDestinationReading::reading_whatCannotBeOpened_isAnError_data()
{
    addOperations();
}

void tst_KyDestinationReading::reading_whatCannotBeOpened_isAnError()
{
    QFETCH(std::function<void(KyDestination *)>, operation);
    const std::unique_ptr<KyDestination> destination = create();
    QVERIFY(QFile::remove(file()));
    QVERIFY(QDir().mkdir(file()));
    DestinationRecorder recorder(destination.get());
    operation(destination.get());
    const QString message = QStringLiteral("The destination database can not be opened.");
    QStringList signal = recorder.takeSignals();
    if (signal.value(0).startsWith(QLatin1String("readingDestinationStarted(")))
        signal.removeFirst();
    QCOMPARE(signal, QStringList({error(message)}));
    QCOMPARE(destination->lastErrorMessage(), message);
    QVERIFY(!isOpen());
}

void tst_KyDestinationReading::reading_whileAnotherWrites_works()
{
    const std::unique_ptr<KyDestination> destination = create();
    QProcess writer;
    writer.start(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/ky_database_writer"), {file()});
    QVERIFY(writer.waitForReadyRead());
    QCOMPARE(writer.readAll().trimmed(), QByteArray("ready"));
    DestinationRecorder recorder(destination.get());
    destination->startToRead();
    QCOMPARE(recorder.takeSignals(),
             QStringList({items(QStringLiteral("C0 C1 C2")), items(QStringLiteral("D1 D2 D3")), FINISHED}));
    writer.closeWriteChannel();
    QVERIFY(writer.waitForFinished());
}

void tst_KyDestinationReading::nullMaps_areNotFilled()
{
    const std::unique_ptr<KyDestination> destination = create();
    const std::unique_ptr<QMap<int, QString>> channels(destination->channelNames());
    const std::unique_ptr<QMap<int, QString>> groups(destination->groupNames());
    destination->setChannelNames(nullptr);
    destination->setGroupNames(nullptr);
    QCOMPARE(destination->channelNames(), nullptr);
    QCOMPARE(destination->groupNames(), nullptr);
    DestinationRecorder recorder(destination.get());
    destination->startToRead();
    QCOMPARE(recorder.takeSignals(),
             QStringList({items(QStringLiteral("C0 C1 C2")), items(QStringLiteral("D1 D2 D3")), FINISHED}));
    destination->setDataType(KyDestination::Data_Group);
    destination->startToRead();
    QCOMPARE(recorder.takeSignals().value(0), items(QStringLiteral("G4 G5")));
    destination->readChannels();
    QCOMPARE(recorder.takeSignals().value(1), items(QStringLiteral("C0 C1 C2")));
    destination->readGroups();
    QCOMPARE(recorder.takeSignals().value(1), items(QStringLiteral("G4 G5")));
}

void tst_KyDestinationReading::replacedMaps_areFilled()
{
    const std::unique_ptr<KyDestination> destination = create();
    destination->startToRead();
    const std::unique_ptr<QMap<int, QString>> channels(destination->channelNames());
    const std::unique_ptr<QMap<int, QString>> groups(destination->groupNames());
    const QMap<int, QString> before = *channels;
    destination->setChannelNames(new QMap<int, QString>); // deleted with the object
    destination->setGroupNames(new QMap<int, QString>);
    QVERIFY(destination->channelNames() != channels.get());
    execute(file(), {QStringLiteral("UPDATE channel_tbl SET name='Renamed' WHERE id=0")});
    destination->startToRead();
    QCOMPARE(destination->channelNames()->value(0), QStringLiteral("Renamed"));
    QCOMPARE(destination->groupNames()->size(), 2);
    QCOMPARE(*channels, before); // alive, and no longer touched
}

void tst_KyDestinationReading::oddTexts_areRead_data()
{
    addOddTexts();
}

void tst_KyDestinationReading::oddTexts_areRead()
{
    QFETCH(QString, text);
    m_environment->writeConfig({{1, text, text, text, text, text}});
    m_environment->writeMainFile({{0, {1}}});
    m_environment->writeChannel(0, text, 0);
    KyDestination destination;
    QVERIFY(destination.init());
    int group = -1;
    QVERIFY(destination.addNewGroup(text, &group));
    QSignalSpy spy(&destination, SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)));
    destination.startToRead();
    destination.readGroups();
    QCOMPARE(spy.count(), 3);
    for (const QList<QVariant> &arguments : qAsConst(spy))
        QCOMPARE(arguments[0].value<QList<KyUploadItemInfo>>().value(0).name(), text);
    const KyUploadItemInfo record = spy[1][0].value<QList<KyUploadItemInfo>>().value(0);
    QCOMPARE(record.address(), text);
    QCOMPARE(record.sharedFolder(), text);
    QCOMPARE(record.userName(), text);
    QCOMPARE(KyDestination::decryptString(record.password()), text);
    QCOMPARE(destination.channelNames()->value(0), text);
    QCOMPARE(destination.groupNames()->value(group), text);
}

void tst_KyDestinationReading::oddValues_areConverted()
{
    const std::unique_ptr<KyDestination> destination = create(1);
    execute(
        file(),
        {QStringLiteral("UPDATE destination_tbl SET posindex='red', address=NULL, shared=12, user=x'4142',"
                        " password=NULL, channel_id=4294967298, group_id='4.6'"),
         QStringLiteral("UPDATE channel_tbl SET posindex=2.4 WHERE id=0")});
    DestinationRecorder recorder(destination.get());
    destination->startToRead();
    const QStringList records = recorder.takeRecords();
    QCOMPARE(records.constFirst(), QStringLiteral("1|1|Channel 1|1|||-1|-1||"));
    QCOMPARE(records[1], QStringLiteral("1|2|Channel 2|2|||-1|-1||"));
    QCOMPARE(records[2], QStringLiteral("1|0|Channel 0|2|||-1|-1||")); // sorted as 2.4
    QCOMPARE(records[3], QStringLiteral("0|1|Destination 1|0||12|2|5|AB|"));
}

void tst_KyDestinationReading::columnsInAnotherOrder_areFound()
{
    const std::unique_ptr<KyDestination> destination = create(1);
    execute(
        file(),
        {QStringLiteral("DROP TABLE destination_tbl"), QStringLiteral("DROP TABLE channel_tbl"),
         QStringLiteral(
             "CREATE TABLE destination_tbl(updatetime, extra, password, user, group_id, channel_id,"
             " shared, address, posindex, name, id INTEGER PRIMARY KEY)"),
         QStringLiteral("CREATE TABLE channel_tbl(colour, posindex, NAME, id INTEGER PRIMARY KEY)"),
         QStringLiteral("INSERT INTO destination_tbl VALUES ('t', 'x', 'p', 'u', 4, 3, 's', 'a', 2, 'n', 1)"),
         QStringLiteral("INSERT INTO channel_tbl VALUES ('red', 8, 'Channel', 3)")});
    DestinationRecorder recorder(destination.get());
    destination->startToRead();
    QCOMPARE(recorder.takeRecords(),
             QStringList({QStringLiteral("1|3|Channel|8|||-1|-1||"), QStringLiteral("0|1|n|2|a|s|3|4|u|p")}));
    QCOMPARE(destination->channelNames()->value(3), QStringLiteral("Channel"));
}

void tst_KyDestinationReading::missingColumns_areEmpty()
{
    const std::unique_ptr<KyDestination> destination = create(1);
    execute(
        file(),
        {QStringLiteral("DROP TABLE destination_tbl"),
         QStringLiteral("CREATE TABLE destination_tbl(id INTEGER PRIMARY KEY, name, posindex, channel_id)"),
         QStringLiteral("INSERT INTO destination_tbl VALUES (1, 'n', 2, 0)")});
    DestinationRecorder recorder(destination.get());
    destination->startToRead();
    QCOMPARE(recorder.takeRecords().constLast(), QStringLiteral("0|1|n|2|||0|-1||"));
}

void tst_KyDestinationReading::spies_holdTheRecords()
{
    const std::unique_ptr<KyDestination> destination = create(12);
    QSignalSpy spy(destination.get(), SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)));
    QVERIFY(spy.isValid());
    destination->startToRead();
    QCOMPARE(spy.count(), 3);
    const auto first = spy[1][0].value<QList<KyUploadItemInfo>>();
    const auto second = spy[2][0].value<QList<KyUploadItemInfo>>();
    QCOMPARE(first.size(), 10);
    QCOMPARE(second.size(), 2);
    QCOMPARE(first[0].name(), QStringLiteral("Destination 1"));
    QCOMPARE(second[0].name(), QStringLiteral("Destination 11"));
}

void tst_KyDestinationReading::queuedConnections_deliverTheRecords()
{
    const std::unique_ptr<KyDestination> destination = create(12);
    DestinationRecorder later(destination.get());
    later.disconnect(destination.get());
    destination->disconnect(&later);
    connect(destination.get(), SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)), &later,
            SLOT(onItemsHasRead(QList<KyUploadItemInfo>)), Qt::QueuedConnection);
    destination->startToRead();
    QCOMPARE(later.takeSignals(), QStringList());
    QCoreApplication::processEvents();
    QCOMPARE(later.takeSignals(), QStringList({items(QStringLiteral("C0 C1 C2"))}) + batches(12));
    const QStringList records = later.takeRecords();
    QVERIFY(records[3].startsWith(QStringLiteral("0|1|Destination 1|1|10.0.0.1|share1|1|-1|user1|")));
    QVERIFY(records[14].startsWith(QStringLiteral("0|12|Destination 12|12|10.0.0.12|share12|1|-1|user12|")));
}

/** A receiver that keeps every list, or only every second one. */
class Keeper : public QObject
{
    Q_OBJECT

public:
    explicit Keeper(int keepEvery)
        : m_keepEvery(keepEvery)
    {
    }

    QList<QList<KyUploadItemInfo>> lists;
    QStringList descriptions;

public slots:
    void onItemsHasRead(const QList<KyUploadItemInfo> &itemInfoList)
    {
        if (++m_count % m_keepEvery != 0)
            return;
        lists.append(itemInfoList);
        descriptions.append(describe(itemInfoList).join(QLatin1Char('\n')));
    }

private:
    int m_keepEvery = 1;
    int m_count = 0;
};

void tst_KyDestinationReading::keptLists_stayAsTheyWere()
{
    const std::unique_ptr<KyDestination> destination = create(57);
    for (const int keepEvery : {1, 2, 3}) {
        Keeper keeper(keepEvery);
        connect(destination.get(), SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)), &keeper,
                SLOT(onItemsHasRead(QList<KyUploadItemInfo>)));
        destination->startToRead();
        destination->readDestinations(-2, -2);
        QCOMPARE(keeper.lists.size(), 13 / keepEvery);
        for (int i = 0; i < keeper.lists.size(); ++i)
            QCOMPARE(describe(keeper.lists[i]).join(QLatin1Char('\n')), keeper.descriptions[i]);
    }
}

void tst_KyDestinationReading::slotThatDeletesTheObject_endsTheReading_data()
{
    addOperations();
}

void tst_KyDestinationReading::slotThatDeletesTheObject_endsTheReading()
{
    QFETCH(std::function<void(KyDestination *)>, operation);
    std::unique_ptr<KyDestination> destination = create(25);
    DestinationRecorder recorder(destination.get());
    operation(destination.get());
    const QStringList expected = recorder.takeSignals();
    QVERIFY(!expected.isEmpty());
    destination.reset();

    for (int last = 0; last < expected.size(); ++last) {
        auto *const victim = new KyDestination;
        QVERIFY(victim->init());
        execute(file(), {QStringLiteral("UPDATE destination_tbl SET channel_id=1, posindex=id")});
        DestinationRecorder killer(victim);
        int count = 0;
        killer.setReaction([&](const QString &) {
            if (count++ == last)
                delete victim;
        });
        operation(victim);
        QCOMPARE(killer.takeSignals(), expected.mid(0, last + 1));
        QVERIFY(QSqlDatabase::connectionNames().isEmpty());
    }
}

void tst_KyDestinationReading::slotThatDeletesTheObjectOnAnError_endsTheReading_data()
{
    addOperations();
}

void tst_KyDestinationReading::slotThatDeletesTheObjectOnAnError_endsTheReading()
{
    QFETCH(std::function<void(KyDestination *)>, operation);
    create();
    const std::function<void(KyDestination *)> obstacles[] = {
        [](KyDestination *destination) {
            destination->purgeDatabase();
        },
        [this](KyDestination *) {
            for (const char *table : {"channel_tbl", "group_tbl", "destination_tbl"})
                execute(file(), {QStringLiteral("DROP TABLE %1").arg(QLatin1String(table))});
        },
    };
    for (const auto &obstacle : obstacles) {
        auto *const victim = new KyDestination;
        QVERIFY(victim->init());
        obstacle(victim);
        DestinationRecorder killer(victim);
        QPointer<KyDestination> alive(victim);
        killer.setReaction([&](const QString &signal) {
            if (signal.startsWith(QLatin1String("errorOccured(")))
                delete victim;
        });
        operation(victim);
        QVERIFY(!alive
                || victim->lastErrorMessage().isEmpty()); // a reading without category has nothing to report
        delete alive.data();
        QVERIFY(QSqlDatabase::connectionNames().isEmpty());
    }
}

void tst_KyDestinationReading::slotThatDropsTheConnection_endsTheReading_data()
{
    QTest::addColumn<std::function<void(KyDestination *)>>("operation");
    const auto add = [](const char *name, const std::function<void(KyDestination *)> &operation) {
        QTest::newRow(name) << operation;
    };
    add("adding", [](KyDestination *destination) {
        destination->addNewGroup(QStringLiteral("New"), nullptr);
    });
    add("failing to add", [](KyDestination *destination) {
        destination->addNewGroup(QStringLiteral("Four"), nullptr);
    });
    add("renaming", [](KyDestination *destination) {
        destination->renameGroup(4, QStringLiteral("Renamed"));
    });
    add("removing", [](KyDestination *destination) {
        destination->removeGroup(4);
    });
    add("refused edit", [](KyDestination *destination) {
        destination->removeCategory(NO_TYPE, 4);
    });
    add("purging", [](KyDestination *destination) {
        destination->purgeDatabase();
    });
    add("reconnecting", [](KyDestination *destination) {
        destination->reconnectDatabase();
    });
    add("initialising", [](KyDestination *destination) {
        destination->init();
    });
    add("an edit and a reading", [](KyDestination *destination) {
        destination->renameGroup(4, QStringLiteral("Renamed"));
        destination->readGroups();
    });
}

void tst_KyDestinationReading::slotThatDropsTheConnection_endsTheReading()
{
    QFETCH(std::function<void(KyDestination *)>, operation);
    const std::unique_ptr<KyDestination> destination = create(25);
    DestinationRecorder recorder(destination.get());
    QString trigger;
    bool isDone = false;
    recorder.setReaction([&](const QString &signal) {
        if (isDone || !signal.startsWith(trigger))
            return;
        isDone = true;
        recorder.takeSignals();
        operation(destination.get());
        recorder.takeSignals(); // what the operation itself emits
    });
    const auto read = [&](const QString &at, const std::function<void(KyDestination *)> &reading) {
        trigger = at;
        isDone = false;
        reading(destination.get());
        return isDone ? recorder.takeSignals() : QStringList({QStringLiteral("not met")});
    };
    const auto prepare = [&] {
        destination->reconnectDatabase();
        execute(file(),
                {QStringLiteral("DELETE FROM group_tbl"),
                 QStringLiteral("INSERT INTO group_tbl (id, name) VALUES (4, 'Four')"),
                 QStringLiteral("UPDATE destination_tbl SET channel_id=1, posindex=id")});
    };
    const auto startToRead = [](KyDestination *object) {
        object->startToRead();
    };
    const auto readAll = [](KyDestination *object) {
        object->readDestinations(-2, -2);
    };

    // Behind a full list there is no rest.
    prepare();
    QCOMPARE(read(items(destinations(1, 10)), startToRead), QStringList({FINISHED}));
    QCOMPARE(destination->enabledCount(), 0);
    prepare();
    QCOMPARE(read(items(destinations(11, 20)), readAll), QStringList({FINISHED}));
    // Behind the rest nothing is read any more anyway.
    prepare();
    QCOMPARE(read(items(destinations(21, 25)), startToRead), QStringList({FINISHED}));
    QCOMPARE(destination->enabledCount(), 5);
    // Before the first row of a category there may be one that the driver has fetched already.
    prepare();
    const QStringList category = read(CATEGORY_STARTED, [](KyDestination *object) {
        object->readChannels();
    });
    QCOMPARE(category.size(), 2);
    QVERIFY(category[0] == items(QString()) || category[0] == items(QStringLiteral("C0")));
    QCOMPARE(category[1], CATEGORY_FINISHED);
    prepare();
    QCOMPARE(read(QStringLiteral("itemsHasRead(C"),
                  [](KyDestination *object) {
                      object->readChannels();
                  }),
             QStringList({CATEGORY_FINISHED}));
}

void tst_KyDestinationReading::slotThatMoves_doesNotDisturb()
{
    const std::unique_ptr<KyDestination> destination = create(25);
    DestinationRecorder recorder(destination.get());
    int moves = 0;
    recorder.setReaction([&](const QString &signal) {
        if (signal.startsWith(QLatin1String("itemsHasRead(D")))
            moves +=
                destination->changeDestinationCategory({1 + moves, 99}, 4, KyDestination::Data_Group).size();
    });
    destination->startToRead();
    QCOMPARE(recorder.takeSignals(),
             QStringList({items(QStringLiteral("C0 C1 C2"))}) + batches(25) + QStringList({FINISHED}));
    QCOMPARE(moves, 6);
    QCOMPARE(destination->enabledCount(), 5);
}

void tst_KyDestinationReading::slotThatReads_doesNotDisturb()
{
    const std::unique_ptr<KyDestination> destination = create(15);
    DestinationRecorder recorder(destination.get());
    bool isNested = false;
    recorder.setReaction([&](const QString &) {
        if (isNested)
            return;
        isNested = true;
        destination->readGroups();
        destination->readDestinationsInChannel(1);
        isNested = false;
    });
    destination->startToRead();
    const QStringList nested =
        QStringList({CATEGORY_STARTED, items(QStringLiteral("G4 G5")), CATEGORY_FINISHED,
                     QStringLiteral("readingDestinationStarted(1,-2)")})
        + batches(15) + QStringList({FINISHED});
    QStringList expected;
    for (const QString &signal :
         QStringList({items(QStringLiteral("C0 C1 C2"))}) + batches(15) + QStringList({FINISHED}))
        expected += QStringList({signal}) + nested;
    QCOMPARE(recorder.takeSignals(), expected);
    QCOMPARE(destination->enabledCount(), 5);
}

void tst_KyDestinationReading::slotThatChangesTheTypeOrLimits_isHeededByTheNextReading()
{
    const std::unique_ptr<KyDestination> destination = create(3);
    DestinationRecorder recorder(destination.get());
    recorder.setReaction([&](const QString &) {
        destination->setDataType(KyDestination::Data_Group);
    });
    destination->startToRead();
    QCOMPARE(recorder.takeSignals().value(0), items(QStringLiteral("C0 C1 C2")));
    QCOMPARE(destination->groupNames()->size(), 2); // the other kind is that of the reading
    QCOMPARE(destination->channelNames()->size(), 3);
    destination->startToRead();
    QCOMPARE(recorder.takeSignals().value(0), items(QStringLiteral("G4 G5")));
}

KYTE_TEST_MAIN(tst_KyDestinationReading)
#include "tst_KyDestinationReading.moc"
