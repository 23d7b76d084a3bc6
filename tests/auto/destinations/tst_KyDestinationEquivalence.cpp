#include "KyTestMain.h"

#include "KyDestinationTest.h"

#include <KyChannelConfig.h>
#include <KyConfig.h>
#include <KyEditorConfig.h>

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QXmlStreamWriter>

#include <memory>
#include <random>

using namespace Kyte;
using namespace Kyte::Test;

/**
 * Random worlds. Everything is drawn from small ranges, so that names and ids collide often. The seed of a
 * test is a row of it, which can be run alone.
 */
class Dice
{
public:
    explicit Dice(int seed)
        : m_engine(static_cast<std::mt19937::result_type>(seed))
    {
    }

    /** A number from \a first to \a last. The standard's distributions differ from library to library. */
    int roll(int first, int last)
    {
        return first
            + static_cast<int>(m_engine() % static_cast<std::mt19937::result_type>(last - first + 1));
    }

    bool isOneIn(int count)
    {
        return roll(1, count) == 1;
    }

    template<typename T>
    T pick(const QVector<T> &values)
    {
        return values[roll(0, values.size() - 1)];
    }

private:
    std::mt19937 m_engine;
};

/** A connection of the test's own to a database file. */
class OwnConnection
{
    Q_DISABLE_COPY(OwnConnection)

public:
    explicit OwnConnection(const QString &file)
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), NAME);
        database.setDatabaseName(file);
        if (!database.open())
            qFatal("Cannot open %s", qPrintable(file));
        QSqlQuery(database).exec(QStringLiteral("PRAGMA synchronous = OFF"));
    }

    ~OwnConnection()
    {
        QSqlDatabase::removeDatabase(NAME);
    }

    QSqlDatabase database() const
    {
        return QSqlDatabase::database(NAME);
    }

private:
    const QString NAME = QStringLiteral("kyte_test_reference");
};

/** What the stored value of a group or channel may look like. */
static const QVector<QString> MEMBERSHIPS = {
    QStringLiteral("-1"),         QStringLiteral("0"),
    QStringLiteral("1"),          QStringLiteral("2"),
    QStringLiteral("3"),          QStringLiteral("-2"),
    QStringLiteral("-7"),         QStringLiteral("'red'"),
    QStringLiteral("''"),         QStringLiteral("'2 '"),
    QStringLiteral("'1e0'"),      QStringLiteral("1.4"),
    QStringLiteral("-1.6"),       QStringLiteral("1e300"),
    QStringLiteral("x'32'"),      QStringLiteral("x''"),
    QStringLiteral("x'ff00'"),    QStringLiteral("2147483647"),
    QStringLiteral("2147483648"), QStringLiteral("-2147483649"),
    QStringLiteral("4294967298"), QStringLiteral("9223372036854775807"),
};

/** The synchronisation as it is defined: row by row, two statements for each, prepared anew. */
static void synchronizeLiterally(const QSqlDatabase &database,
                                 const KyChannelConfig &channelConfig,
                                 bool isMainFileReadable,
                                 const QList<KyConfig::Destination> &destinations)
{
    QSqlDatabase connection = database;
    QSqlQuery query(database);
    query.exec(QStringLiteral("DELETE FROM 'channel_tbl'"));
    connection.transaction();
    const QString now = KyDestination::getCurrentTimeForDatabaseString();
    for (const KyChannelConfig::ChannelInfo &channel : channelConfig.channelList()) {
        query.prepare(
            QStringLiteral("INSERT INTO channel_tbl (id, name, posindex, updatetime) VALUES (?, ?, ?, ?)"));
        for (const QVariant &value :
             {QVariant(channel.id), QVariant(channel.name), QVariant(channel.index), QVariant(now)})
            query.addBindValue(value);
        query.exec();
    }
    connection.commit();
    if (!isMainFileReadable)
        return;

    connection.transaction();
    const QString stamp = KyDestination::getCurrentTimeForDatabaseString();
    for (const KyConfig::Destination &destination : destinations) {
        const int channel = channelConfig.destChannelMap().value(destination.id, -1);
        query.prepare(QStringLiteral("SELECT group_id FROM destination_tbl WHERE id=?"));
        query.addBindValue(destination.id);
        if (query.exec() && query.next()) {
            bool ok = false;
            int group = query.value(0).toInt(&ok);
            if (!ok)
                group = -1;
            query.prepare(
                QStringLiteral("UPDATE destination_tbl SET name=?, posindex=?, address=?, shared=?, user=?,"
                               " password=?, channel_id=?, group_id=?, updatetime=? WHERE id=?"));
            for (const QVariant &value :
                 {QVariant(destination.name), QVariant(0), QVariant(destination.address),
                  QVariant(destination.sharedFolder), QVariant(destination.user),
                  QVariant(KyDestination::encryptString(destination.password)), QVariant(channel),
                  QVariant(group), QVariant(stamp), QVariant(destination.id)})
                query.addBindValue(value);
        } else {
            query.prepare(QStringLiteral(
                "INSERT INTO destination_tbl (id, name, posindex, address, shared, user, password,"
                " channel_id, group_id, updatetime) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"));
            for (const QVariant &value :
                 {QVariant(destination.id), QVariant(destination.name), QVariant(0),
                  QVariant(destination.address), QVariant(destination.sharedFolder),
                  QVariant(destination.user), QVariant(KyDestination::encryptString(destination.password)),
                  QVariant(channel), QVariant(-1), QVariant(stamp)})
                query.addBindValue(value);
        }
        query.exec();
    }
    query.prepare(QStringLiteral("DELETE FROM destination_tbl WHERE updatetime<>?"));
    query.addBindValue(stamp);
    query.exec();
    connection.commit();
}

/** What a reading is to emit, as DestinationRecorder tells it, and what it is to leave behind. */
struct Reading
{
    QStringList signalTexts;
    QStringList records;
    QMap<int, QString> channels;
    QMap<int, QString> groups;
    int enabledCount = -1; // not touched
};

/** The readings as they are defined: row by row, columns by name, a list for each signal. */
class LiteralReader
{
public:
    LiteralReader(const QSqlDatabase &database, int maxChannels, int maxDestinations)
        : m_database(database)
        , m_maxChannels(maxChannels)
        , m_maxDestinations(maxDestinations)
    {
    }

    Reading startToRead(int type)
    {
        const bool isSingle = m_maxChannels == 1 && m_maxDestinations == 1;
        int firstCategory = 0;
        if (type == 0 || type == 1) {
            const QList<KyUploadItemInfo> categories = readCategories(type);
            emitItems(categories);
            if (isSingle && !categories.isEmpty())
                firstCategory = categories.first().id();
            QSqlQuery query(m_database);
            query.exec(QStringLiteral("SELECT * FROM %1").arg(table(1 - type)));
            while (query.next())
                names(1 - type)->insert(query.value(QStringLiteral("id")).toInt(),
                                        query.value(QStringLiteral("name")).toString());
        }
        const QString statement = isSingle
            ? QStringLiteral("SELECT * FROM destination_tbl ORDER BY posindex, name%1")
            : QStringLiteral("SELECT * FROM destination_tbl WHERE channel_id > -1 ORDER BY posindex, name%1");
        QList<KyUploadItemInfo> rest = readDestinations(statement.arg(limit(m_maxDestinations)));
        m_reading.enabledCount = rest.size();
        if (!rest.isEmpty()) {
            if (isSingle) {
                rest.first().setChannelId(firstCategory);
                rest.first().setGroupId(-1);
            }
            emitItems(rest);
        }
        m_reading.signalTexts.append(QStringLiteral("allItemsReadingFinished"));
        return m_reading;
    }

    Reading readCategory(int type)
    {
        const QList<KyUploadItemInfo> categories = readCategories(type);
        m_reading.signalTexts.append(QStringLiteral("categoryReadingStarted"));
        emitItems(categories);
        m_reading.signalTexts.append(QStringLiteral("categoryReadingFinished"));
        return m_reading;
    }

    Reading readDestinations(int channel, int group)
    {
        m_reading.signalTexts.append(
            QStringLiteral("readingDestinationStarted(%1,%2)").arg(channel).arg(group));
        QString condition;
        if (channel > -2 || group > -2)
            condition = QStringLiteral("WHERE");
        if (channel > -2)
            condition += QStringLiteral(" channel_id=%1").arg(channel);
        if (group > -2)
            condition += (channel > -2 ? QStringLiteral(" AND") : QString())
                + QStringLiteral(" group_id=%1").arg(group);
        const QString ids = QStringLiteral("SELECT id FROM destination_tbl ORDER BY posindex, name%1")
                                .arg(limit(m_maxDestinations));
        condition +=
            (condition.isEmpty() ? QStringLiteral("WHERE id IN (%1)") : QStringLiteral(" AND id IN (%1)"))
                .arg(ids);
        const QList<KyUploadItemInfo> rest =
            readDestinations(QStringLiteral("SELECT * FROM destination_tbl %1").arg(condition));
        if (!rest.isEmpty())
            emitItems(rest);
        m_reading.signalTexts.append(QStringLiteral("allItemsReadingFinished"));
        return m_reading;
    }

private:
    static QString table(int type)
    {
        return type == 0 ? QStringLiteral("channel_tbl") : QStringLiteral("group_tbl");
    }

    static QString limit(int maximum)
    {
        return maximum > -1 ? QStringLiteral(" LIMIT %1").arg(maximum) : QString();
    }

    QMap<int, QString> *names(int type)
    {
        return type == 0 ? &m_reading.channels : &m_reading.groups;
    }

    QList<KyUploadItemInfo> readCategories(int type)
    {
        QList<KyUploadItemInfo> categories;
        QSqlQuery query(m_database);
        query.exec(QStringLiteral("SELECT * FROM %1 ORDER BY posindex, name%2")
                       .arg(table(type), limit(m_maxChannels)));
        while (query.next()) {
            const KyUploadItemInfo category(static_cast<KyUploadItemInfo::ItemType>(type + 1),
                                            query.value(QStringLiteral("id")).toInt(),
                                            query.value(QStringLiteral("name")).toString(),
                                            query.value(QStringLiteral("posindex")).toInt(), QString(),
                                            QString(), -1, -1, QString(), QString(), nullptr);
            categories.append(category);
            names(type)->insert(category.id(), category.name());
        }
        return categories;
    }

    /** Emits every ten records and answers the rest. */
    QList<KyUploadItemInfo> readDestinations(const QString &statement)
    {
        QList<KyUploadItemInfo> batch;
        QSqlQuery query(m_database);
        query.exec(statement);
        while (query.next()) {
            batch.append(KyUploadItemInfo(KyUploadItemInfo::Item_Destination,
                                          query.value(QStringLiteral("id")).toInt(),
                                          query.value(QStringLiteral("name")).toString(),
                                          query.value(QStringLiteral("posindex")).toInt(),
                                          query.value(QStringLiteral("address")).toString(),
                                          query.value(QStringLiteral("shared")).toString(),
                                          query.value(QStringLiteral("channel_id")).toInt(),
                                          query.value(QStringLiteral("group_id")).toInt(),
                                          query.value(QStringLiteral("user")).toString(),
                                          query.value(QStringLiteral("password")).toString(), nullptr));
            if (batch.size() == 10) {
                emitItems(batch);
                batch.clear();
            }
        }
        return batch;
    }

    void emitItems(const QList<KyUploadItemInfo> &items)
    {
        QStringList texts;
        for (const KyUploadItemInfo &item : items)
            texts.append(QLatin1Char("DCG"[item.itemType()]) + QString::number(item.id()));
        m_reading.signalTexts.append(QStringLiteral("itemsHasRead(") + texts.join(QLatin1Char(' '))
                                     + QLatin1Char(')'));
        m_reading.records.append(describe(items));
    }

    QSqlDatabase m_database;
    int m_maxChannels = -1;
    int m_maxDestinations = -1;
    Reading m_reading;
};

/** The main file as it is defined: for each channel a walk through all assignments. */
static QByteArray mainFileLiterally(const KyChannelConfig &config)
{
    QByteArray content;
    QXmlStreamWriter writer(&content);
    writer.setAutoFormatting(true);
    writer.setCodec("utf-8");
    writer.writeStartDocument(QStringLiteral("1.0"), true);
    writer.writeStartElement(QStringLiteral("Pelmora"));
    for (const KyChannelConfig::ChannelInfo &channel : config.channelList()) {
        writer.writeStartElement(QStringLiteral("channel"));
        writer.writeAttribute(QStringLiteral("id"), QString::number(channel.id));
        const QMap<int, int> channels = config.destChannelMap();
        for (auto it = channels.cbegin(); it != channels.cend(); ++it) {
            if (it.value() != channel.id)
                continue;
            writer.writeEmptyElement(QStringLiteral("destination"));
            writer.writeAttribute(QStringLiteral("id"), QString::number(it.key()));
        }
        writer.writeEndElement();
    }
    writer.writeEndElement();
    writer.writeEndDocument();
    return content;
}

/** A receiver that changes its copy of every list, and keeps some. */
class Meddler : public QObject
{
    Q_OBJECT

public:
    explicit Meddler(int keepEvery)
        : m_keepEvery(keepEvery)
    {
    }

    QStringList kept() const
    {
        QStringList records;
        for (const QList<KyUploadItemInfo> &items : m_kept)
            records.append(describe(items));
        return records;
    }

    QStringList expected;

public slots:
    void onItemsHasRead(QList<KyUploadItemInfo> itemInfoList)
    {
        const bool isKept = m_keepEvery > 0 && ++m_count % m_keepEvery == 0;
        if (isKept) {
            m_kept.append(itemInfoList);
            expected.append(describe(itemInfoList));
        }
        for (KyUploadItemInfo &item : itemInfoList) {
            item.setName(QStringLiteral("meddled with"));
            item.setId(-99);
        }
        itemInfoList.append(KyUploadItemInfo());
    }

private:
    int m_keepEvery = 0;
    int m_count = 0;
    QList<QList<KyUploadItemInfo>> m_kept;
};

class tst_KyDestinationEquivalence : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void synchronisation_isLikeRowByRow_data();
    void synchronisation_isLikeRowByRow();
    void reading_isLikeRowByRow_data();
    void reading_isLikeRowByRow();
    void mainFile_isLikeAWalkForEachChannel_data();
    void mainFile_isLikeAWalkForEachChannel();
    void savedAssignment_isLikeRowByRow_data();
    void savedAssignment_isLikeRowByRow();

private:
    void writeRandomFiles(Dice *dice) const;
    void spoilRows(Dice *dice) const;
    QStringList synchronizedRows(const QString &file) const;
    void makeRandomRows(Dice *dice) const;

    std::unique_ptr<Environment> m_environment;
    std::unique_ptr<MessageWatch> m_watch;
};

static void addSeeds(int count)
{
    QTest::addColumn<int>("seed");
    for (int seed = 1; seed <= count; ++seed)
        QTest::newRow(qPrintable(QString::number(seed))) << seed;
}

void tst_KyDestinationEquivalence::init()
{
    m_environment = std::make_unique<Environment>();
    m_watch = std::make_unique<MessageWatch>();
}

void tst_KyDestinationEquivalence::cleanup()
{
    const QStringList complaints = m_watch->take();
    m_watch.reset();
    m_environment.reset();
    QCOMPARE(complaints, QStringList());
}

/** A configuration with channel files and a main file. */
void tst_KyDestinationEquivalence::writeRandomFiles(Dice *dice) const
{
    QList<Destination> destinations;
    const int count = dice->roll(0, 20);
    for (int i = 0; i < count; ++i) {
        Destination destination = makeDestination(dice->roll(-1, 14));
        destination.name = QStringLiteral("Name %1").arg(dice->roll(1, 20));
        if (dice->isOneIn(10))
            destination.name.clear();
        destination.password = QStringLiteral("secret %1").arg(dice->roll(1, 5));
        destinations.append(destination);
    }
    m_environment->writeConfig(destinations);

    for (const QString &name :
         QDir(m_environment->channelDir()).entryList({QStringLiteral("ch*.xml")}, QDir::Files))
        QFile::remove(m_environment->channelDir() + QLatin1Char('/') + name);
    QDir().rmdir(m_environment->mainFile());
    for (int id = 0; id < 5; ++id)
        if (dice->isOneIn(2))
            m_environment->writeChannel(id, QStringLiteral("Channel %1").arg(dice->roll(1, 4)),
                                        dice->roll(-1, 3));

    QList<QPair<int, QList<int>>> assignment;
    for (int channel = 0; channel < 5; ++channel) {
        QList<int> ids;
        while (!dice->isOneIn(4))
            ids.append(dice->roll(-1, 16));
        assignment.append({channel, ids});
    }
    if (dice->isOneIn(10))
        QDir().mkdir(m_environment->mainFile());
    else if (!dice->isOneIn(10))
        m_environment->writeMainFile(assignment);
}

/** Changes rows, and adds some, as other releases or tools may have left them. */
void tst_KyDestinationEquivalence::spoilRows(Dice *dice) const
{
    QStringList statements = {QStringLiteral("UPDATE destination_tbl SET updatetime='2001-01-01 00:00:00'")};
    for (int id = -2; id <= 14; ++id) {
        if (dice->isOneIn(2))
            statements.append(
                QStringLiteral(
                    "UPDATE destination_tbl SET posindex=%1, group_id=%2, channel_id=%3 WHERE id=%4")
                    .arg(dice->roll(-3, 3))
                    .arg(dice->pick(MEMBERSHIPS), dice->pick(MEMBERSHIPS))
                    .arg(id));
        if (dice->isOneIn(5))
            statements.append(
                QStringLiteral("UPDATE destination_tbl SET updatetime=NULL WHERE id=%1").arg(id));
        if (dice->isOneIn(5))
            statements.append(
                QStringLiteral("INSERT OR IGNORE INTO destination_tbl (id, name, group_id, updatetime)"
                               " VALUES (%1, 'Name %2', %3, 'old')")
                    .arg(dice->isOneIn(3) ? id + 4294967296 : id)
                    .arg(dice->roll(1, 20))
                    .arg(dice->pick(MEMBERSHIPS)));
    }
    execute(m_environment->databaseFile(), statements);
}

/** All rows with the types of their values; passwords deciphered, of stamps only whether there is one and a
 * new one. */
QStringList tst_KyDestinationEquivalence::synchronizedRows(const QString &file) const
{
    const QString stamp = QStringLiteral("updatetime IS NULL, updatetime > '2010'");
    QStringList rows = queryRows(
        file,
        QStringLiteral("SELECT quote(id), quote(name), quote(posindex), quote(address), quote(shared),"
                       " quote(user), quote(channel_id), quote(group_id), %1, password"
                       " FROM destination_tbl ORDER BY id")
            .arg(stamp));
    for (QString &row : rows) {
        const int column = row.lastIndexOf(QLatin1Char('|')) + 1;
        row.replace(column, row.size(), KyDestination::decryptString(row.mid(column)));
    }
    for (const char *table : {"channel_tbl", "group_tbl"})
        rows +=
            queryRows(file,
                      QStringLiteral("SELECT quote(id), quote(name), quote(posindex), %1 FROM %2 ORDER BY id")
                          .arg(stamp, QLatin1String(table)));
    return rows;
}

void tst_KyDestinationEquivalence::synchronisation_isLikeRowByRow_data()
{
    addSeeds(100);
}

void tst_KyDestinationEquivalence::synchronisation_isLikeRowByRow()
{
    QFETCH(int, seed);
    Dice dice(seed);
    const QString file = m_environment->databaseFile();
    const QString reference = m_environment->root() + QStringLiteral("/reference.kyb");
    for (int round = 0; round < 4; ++round) {
        writeRandomFiles(&dice);
        if (round == 0) {
            KyDestination destination; // makes the tables
            QVERIFY(destination.init());
        }
        spoilRows(&dice);
        QFile::remove(reference);
        QVERIFY(QFile::copy(file, reference));

        KyDestination destination;
        QVERIFY(destination.init());
        {
            KyChannelConfig channels;
            channels.getAllChannelInfoFromFiles(QString());
            const bool isReadable = channels.readFile(QString());
            const OwnConnection connection(reference);
            synchronizeLiterally(connection.database(), channels, isReadable,
                                 KyEditorConfig::getConfig()->destinationList());
        }
        QCOMPARE(synchronizedRows(file), synchronizedRows(reference));
    }
}

/** Fills the tables of the database with what a reading may meet. */
void tst_KyDestinationEquivalence::makeRandomRows(Dice *dice) const
{
    QStringList statements;
    for (const char *table : {"channel_tbl", "group_tbl"}) {
        const int count = dice->roll(0, 5);
        for (int i = 0; i < count; ++i)
            statements.append(
                QStringLiteral("INSERT OR IGNORE INTO %1 (id, name, posindex) VALUES (%2, 'Name %3', %4)")
                    .arg(QLatin1String(table))
                    .arg(dice->roll(-1, 6))
                    .arg(dice->roll(1, 9))
                    .arg(dice->roll(-1, 2)));
    }
    const QVector<QString> positions = {QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("-1"),
                                        QStringLiteral("'red'"), QStringLiteral("1.5")};
    const QVector<QString> texts = {QStringLiteral("NULL"), QStringLiteral("''"), QStringLiteral("'text'"),
                                    QStringLiteral("12"), QStringLiteral("x'c3a4'")};
    const QVector<QString> usualMemberships = MEMBERSHIPS.mid(0, 5);
    const int count = dice->roll(0, 45);
    for (int id = 0; id < count; ++id) {
        const auto membership = [&] {
            return dice->pick(dice->isOneIn(4) ? MEMBERSHIPS : usualMemberships);
        };
        statements.append(QStringLiteral("INSERT INTO destination_tbl (id, name, posindex, address, shared, "
                                         "user, password, channel_id, group_id)"
                                         " VALUES (%1, 'n%2', %3, %4, %5, %6, %7, %8, %9)")
                              .arg(id)
                              .arg((id * 7) % 50)
                              .arg(dice->pick(positions), dice->pick(texts), dice->pick(texts),
                                   dice->pick(texts), dice->pick(texts), membership(), membership()));
    }
    execute(m_environment->databaseFile(), statements);
}

void tst_KyDestinationEquivalence::reading_isLikeRowByRow_data()
{
    addSeeds(100);
}

void tst_KyDestinationEquivalence::reading_isLikeRowByRow()
{
    QFETCH(int, seed);
    Dice dice(seed);
    KyDestination destination;
    QVERIFY(destination.init());
    makeRandomRows(&dice);
    const OwnConnection connection(m_environment->databaseFile());
    const QVector<int> maxima = {-1, -1, 0, 1, 1, 2, 5, 10, 20, 100};
    for (int round = 0; round < 20; ++round) {
        const int maxChannels = dice.pick(maxima);
        const int maxDestinations = dice.isOneIn(3) ? maxChannels : dice.pick(maxima);
        destination.setMaxChannelCount(maxChannels);
        destination.setMaxDestinationCount(maxDestinations);
        LiteralReader reader(connection.database(), maxChannels, maxDestinations);

        DestinationRecorder recorder(&destination);
        Meddler forgetful(0);
        Meddler keeper(dice.roll(1, 3));
        for (const Meddler *receiver : {&forgetful, &keeper})
            connect(&destination, SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)), receiver,
                    SLOT(onItemsHasRead(QList<KyUploadItemInfo>)));
        DestinationRecorder late(&destination);
        destination.disconnect(&late);
        if (dice.isOneIn(2))
            connect(&destination, SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)), &late,
                    SLOT(onItemsHasRead(QList<KyUploadItemInfo>)), Qt::QueuedConnection);

        Reading expected;
        switch (dice.roll(0, 2)) {
        case 0: {
            const int type = dice.pick(QVector<int>({0, 1, 7}));
            destination.setDataType(static_cast<KyDestination::DataType>(type));
            destination.startToRead();
            expected = reader.startToRead(type);
            QCOMPARE(destination.enabledCount(), expected.enabledCount);
            QCOMPARE(*destination.channelNames(), expected.channels);
            QCOMPARE(*destination.groupNames(), expected.groups);
            break;
        }
        case 1: {
            const int type = dice.roll(0, 1);
            destination.readCategory(static_cast<KyDestination::DataType>(type));
            expected = reader.readCategory(type);
            if (type == 0)
                QCOMPARE(*destination.channelNames(), expected.channels);
            else
                QCOMPARE(*destination.groupNames(), expected.groups);
            break;
        }
        default: {
            const int channel = dice.roll(-3, 3);
            const int group = dice.roll(-3, 3);
            destination.readDestinations(channel, group);
            expected = reader.readDestinations(channel, group);
        }
        }
        QCOMPARE(recorder.takeSignals(), expected.signalTexts);
        QCOMPARE(recorder.takeRecords(), expected.records);
        QCOMPARE(keeper.kept(), keeper.expected);
        QCoreApplication::processEvents();
        const QStringList lateRecords = late.takeRecords();
        QCOMPARE(lateRecords, late.takeSignals().isEmpty() ? QStringList() : expected.records);
    }
}

void tst_KyDestinationEquivalence::mainFile_isLikeAWalkForEachChannel_data()
{
    addSeeds(100);
}

void tst_KyDestinationEquivalence::mainFile_isLikeAWalkForEachChannel()
{
    QFETCH(int, seed);
    Dice dice(seed);
    KyChannelConfig config;
    const int channels = dice.roll(0, 6);
    for (int i = 0; i < channels; ++i) // an id may come twice, and be listed twice
        config.channelListPtr()->append({dice.roll(-1, 5), QStringLiteral("Channel"), i});
    const int destinations = dice.roll(0, 40);
    for (int i = 0; i < destinations; ++i)
        config.insertDestination(dice.roll(-2, 60), dice.roll(-1, 6));
    QVERIFY(config.saveFile(m_environment->mainFile()));
    QCOMPARE(readFile(m_environment->mainFile()), mainFileLiterally(config));
}

void tst_KyDestinationEquivalence::savedAssignment_isLikeRowByRow_data()
{
    addSeeds(40);
}

void tst_KyDestinationEquivalence::savedAssignment_isLikeRowByRow()
{
    QFETCH(int, seed);
    Dice dice(seed);
    writeRandomFiles(&dice);
    KyDestination destination;
    QVERIFY(destination.init());
    spoilRows(&dice);
    // Of two ids that are the same in 32 bits it takes the order of the rows to know the later. There are
    // none.
    execute(m_environment->databaseFile(),
            {QStringLiteral("DELETE FROM destination_tbl WHERE id > 2147483647")});

    KyChannelConfig config;
    config.getAllChannelInfoFromFiles(QString());
    config.readFile(QString());
    {
        const OwnConnection connection(m_environment->databaseFile());
        QSqlQuery query(connection.database());
        QVERIFY(query.exec(QStringLiteral("SELECT * FROM destination_tbl ORDER BY posindex, name")));
        while (query.next())
            config.insertDestination(query.value(QStringLiteral("id")).toInt(),
                                     query.value(QStringLiteral("channel_id")).toInt());
    }
    QCOMPARE(destination.saveChannelConfigToFile(), !QFileInfo(m_environment->mainFile()).isDir());
    if (destination.lastErrorMessage().isEmpty())
        QCOMPARE(readFile(m_environment->mainFile()), mainFileLiterally(config));
}

KYTE_TEST_MAIN(tst_KyDestinationEquivalence)
#include "tst_KyDestinationEquivalence.moc"
