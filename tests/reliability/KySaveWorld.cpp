#include "KySaveWorld.h"

#include "KyDestinationTest.h"
#include "KyTracedProgram.h"

#include <KyDestination.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QVariant>
#include <QXmlStreamReader>

namespace Kyte {
namespace Test {

static const int DESTINATIONS = 150;
static const int ASSIGNED_DESTINATIONS = 120;
static const int CHANNELS = 3;

static const QString DATABASE = QStringLiteral("data/channel/destination.kyb");
static const QString JOURNAL_SUFFIX = QStringLiteral("-journal");
static const QString SECOND_DATABASE = QStringLiteral("interrupted/destination.kyb");
static const QString EXPECTED_DATABASE = QStringLiteral("expected.kyb");

static QString inEnvironment(const Environment &environment, const QString &name)
{
    return environment.root() + QLatin1Char('/') + name;
}

/** The rows of \a statement, columns joined by "|"; an error ends them. */
static QStringList select(const QSqlDatabase &database, const QString &statement)
{
    QStringList rows;
    QSqlQuery query(database);
    query.exec(statement);
    while (query.next()) {
        QStringList columns;
        for (int column = 0; column < query.record().count(); ++column)
            columns.append(query.value(column).toString());
        rows.append(columns.join(QLatin1Char('|')));
    }
    if (query.lastError().isValid())
        rows.append(statement + QLatin1String(": ") + query.lastError().text());
    return rows;
}

/** Reading honours a journal, which must not happen to the file \a path itself: it stays as it was left. */
static QStringList selectFromCopy(const QString &path, const QStringList &statements)
{
    if (!QFile::exists(path))
        return {QStringLiteral("no file")};
    const QTemporaryDir folder;
    const QString copy = folder.filePath(QStringLiteral("copy"));
    const QString connectionName = QStringLiteral("kyte_test_content");
    QFile::copy(path, copy);
    QFile::copy(path + JOURNAL_SUFFIX, copy + JOURNAL_SUFFIX);
    QStringList rows;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName);
        database.setDatabaseName(copy);
        if (!database.open())
            rows.append(database.lastError().text());
        for (const QString &statement : statements)
            rows.append(select(database, statement));
    }
    QSqlDatabase::removeDatabase(connectionName);
    return rows;
}

/** An integrity check and all rows of the database \a path, or what keeps it from being read. */
static QStringList databaseContent(const QString &path)
{
    return selectFromCopy(path,
                          {QStringLiteral("PRAGMA integrity_check"),
                           QStringLiteral("SELECT * FROM channel_tbl ORDER BY id"),
                           QStringLiteral("SELECT * FROM group_tbl ORDER BY id"),
                           QStringLiteral("SELECT * FROM destination_tbl ORDER BY id")});
}

/** What a synchronisation takes over from the database: destinations with their groups, and the groups. */
static QStringList lastingContent(const QString &path)
{
    return selectFromCopy(path,
                          {QStringLiteral("SELECT id, name, address, shared, user, group_id"
                                          " FROM destination_tbl ORDER BY id"),
                           QStringLiteral("SELECT * FROM group_tbl ORDER BY id")});
}

/**
 * The main file with its channels in a fixed order: saving keeps the order in which the folder lists them,
 * and that differs from disk to disk. All else is there byte for byte.
 */
static QByteArray mainFileContent(const Environment &environment)
{
    static const QRegularExpression CHANNEL(QStringLiteral("<channel [^>]*/>|<channel .*?</channel>"),
                                            QRegularExpression::DotMatchesEverythingOption);
    const QString content = QString::fromLatin1(readFile(environment.mainFile())); // byte by byte
    QString sorted = content;
    QStringList channels;
    for (auto match = CHANNEL.globalMatch(content); match.hasNext();)
        channels.append(match.next().captured());
    channels.sort();
    int shift = 0;
    for (auto match = CHANNEL.globalMatch(content); match.hasNext();) {
        const QRegularExpressionMatch found = match.next();
        const QString channel = channels.takeFirst();
        sorted.replace(found.capturedStart() + shift, found.capturedLength(), channel);
        shift += channel.size() - found.capturedLength();
    }
    return sorted.toLatin1();
}

/** The destinations that are in a channel, as the main file lists them or as the database does. */
static QStringList assignment(const QByteArray &mainFile)
{
    QStringList pairs;
    QString channel;
    QXmlStreamReader reader(mainFile);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QString id = reader.attributes().value(QLatin1String("id")).toString();
        if (reader.name() == QLatin1String("channel"))
            channel = id;
        else if (reader.name() == QLatin1String("destination"))
            pairs.append(id + QLatin1Char('|') + channel);
    }
    if (reader.hasError())
        return {reader.errorString()};
    pairs.sort();
    return pairs;
}

static QStringList assignment(const QString &path)
{
    QStringList pairs = selectFromCopy(
        path, {QStringLiteral("SELECT id, channel_id FROM destination_tbl WHERE channel_id > -1")});
    pairs.sort();
    return pairs;
}

static void makeEnvironment(const Environment &environment)
{
    environment.writeConfig(makeDestinations(0, DESTINATIONS));
    QList<QPair<int, QList<int>>> channels;
    QList<QList<int>> groups;
    for (int channel = 0; channel < CHANNELS; ++channel) {
        environment.writeChannel(channel, QStringLiteral("Channel %1").arg(channel), channel);
        channels.append({channel, {}});
        groups.append(QList<int>());
    }
    for (int id = 0; id < DESTINATIONS; ++id) {
        groups[id % CHANNELS].append(id);
        if (id < ASSIGNED_DESTINATIONS)
            channels[id / 5 % CHANNELS].second.append(id);
    }
    environment.writeMainFile(channels);

    KyDestination destination;
    bool ok = destination.init();
    for (int group = 0; group < CHANNELS; ++group) {
        ok = ok && destination.addNewGroup(QStringLiteral("Group %1").arg(group), nullptr)
            && destination.changeDestinationCategory(groups[group], group, KyDestination::Data_Group).size()
                == groups[group].size();
    }
    if (!ok)
        qFatal("Cannot make the database: %s", qPrintable(destination.lastErrorMessage()));
    destination.purgeDatabase();
    backdate(environment.databaseFile());
}

SaveWorld::SaveWorld(Journal journal)
    : m_hasSecondPair(journal == Journal::HotBeforeSaving)
{
    const Environment environment;
    makeEnvironment(environment);
    m_old = {mainFileContent(environment), databaseContent(environment.databaseFile())};

    const QStringList names =
        QDir(environment.channelDir()).entryList({QStringLiteral("*.xml")}, QDir::Files);
    for (const QString &name : names)
        m_files.append({QStringLiteral("data/channel/") + name,
                        readFile(environment.channelDir() + QLatin1Char('/') + name)});
    m_files.append({QStringLiteral("kyteconfig.xml"), readFile(environment.configFile())});

    const QByteArray intact = readFile(environment.databaseFile());
    interruptTransaction(
        environment.databaseFile(),
        QStringLiteral("UPDATE destination_tbl SET name = 'Half written ' || id, group_id = 7,"
                       " address = hex(randomblob(200)), updatetime = 'never'"));
    const QByteArray torn = readFile(environment.databaseFile());
    QByteArray log = readFile(environment.databaseFile() + JOURNAL_SUFFIX);
    m_files.append({DATABASE, journal == Journal::Hot ? torn : intact});
    if (journal == Journal::HotBeforeSaving)
        m_files.append({{SECOND_DATABASE, torn}, {SECOND_DATABASE + JOURNAL_SUFFIX, log}});
    if (journal == Journal::Stale)
        log.replace(0, 28, QByteArray(28, '\0'));
    if (journal == Journal::Stale || journal == Journal::Hot)
        m_files.append({DATABASE + JOURNAL_SUFFIX, log});

    // One undisturbed run tells what the new main file looks like. Only the new rows differ from run to run,
    // because they have stamps.
    Environment rehearsal;
    furnish(rehearsal);
    const ProgramRun run = runProgram(testProgram(QStringLiteral("ky_save")), arguments(rehearsal));
    m_newMainFile = mainFileContent(rehearsal);
    if (run.output != QStringList({QStringLiteral("ready"), QStringLiteral("saved")}))
        qFatal("ky_save: %s", qPrintable(run.output.join(QLatin1Char('\n'))));
}

void SaveWorld::furnish(const Environment &environment) const
{
    QDir(environment.root()).mkpath(QStringLiteral("interrupted"));
    for (const QPair<QString, QByteArray> &file : m_files)
        writeFile(inEnvironment(environment, file.first), file.second);
}

QStringList SaveWorld::arguments(const Environment &environment, const QString &command) const
{
    QStringList commands = {
        QStringLiteral("cd \"$(dirname \"$KYTE_CONFIG_FILE\")\""),
        QStringLiteral("cp %1.work '%2'").arg(DATABASE, inEnvironment(environment, EXPECTED_DATABASE))};
    if (m_hasSecondPair)
        commands.append(QStringLiteral("cp interrupted/* data/channel"));
    if (!command.isEmpty())
        commands.append(command);
    return {QStringLiteral("--before"), commands.join(QLatin1String(" && "))};
}

/** What ky_save, started in \a environment, has in mind to save. */
SavedContent SaveWorld::newContent(const Environment &environment) const
{
    return {m_newMainFile, databaseContent(inEnvironment(environment, EXPECTED_DATABASE))};
}

static SavedContent presentContent(const Environment &environment)
{
    return {mainFileContent(environment), databaseContent(environment.databaseFile())};
}

QString SaveWorld::problemOfContent(const SavedContent &present, const SavedContent &wanted) const
{
    if (m_old.rows.value(0) != QLatin1String("ok") || m_old.rows.size() < DESTINATIONS
        || wanted.rows == m_old.rows || wanted.mainFile == m_old.mainFile
        || assignment(wanted.mainFile).size() < ASSIGNED_DESTINATIONS)
        return QStringLiteral("the test itself is wrong");
    if (present.mainFile != m_old.mainFile && present.mainFile != wanted.mainFile)
        return QStringLiteral("the main file is neither the old nor the new one:\n")
            + QString::fromUtf8(present.mainFile);
    if (present.rows != m_old.rows && present.rows != wanted.rows)
        return QStringLiteral("the database is neither the old nor the new one:\n")
            + present.rows.join(QLatin1Char('\n'));
    if (present.rows == wanted.rows && present.mainFile != wanted.mainFile)
        return QStringLiteral("the database is new and the main file is not, which is written first");
    return QString();
}

/** What the next start of an application in either mode finds wrong. */
static QString problemOfNextStart(const Environment &environment, const QStringList &lasting)
{
    const QStringList assigned = assignment(readFile(environment.mainFile()));
    for (bool settingMode : {true, false}) {
        const QString mode = settingMode ? QStringLiteral("setting mode: ") : QStringLiteral("normal mode: ");
        KyDestination destination;
        destination.setSettingMode(settingMode);
        if (!destination.init())
            return mode + destination.lastErrorMessage();
        const QString file = settingMode ? environment.workingFile() : environment.databaseFile();
        if (lastingContent(file) != lasting)
            return mode + QStringLiteral("rows have changed:\n")
                + lastingContent(file).join(QLatin1Char('\n'));
        if (assignment(file) != assigned)
            return mode + QStringLiteral("destinations are in other channels");
    }
    if (QFile::exists(environment.workingFile()))
        return QStringLiteral("the working copy has outlived the object");
    return QString();
}

QString SaveWorld::problem(const Environment &environment) const
{
    const QString problem = problemOfContent(presentContent(environment), newContent(environment));
    if (!problem.isEmpty())
        return problem;
    return problemOfNextStart(environment, lastingContent(environment.databaseFile()));
}

QString SaveWorld::problemOfAnswer(const Environment &environment, const QString &answer) const
{
    const SavedContent present = presentContent(environment);
    const SavedContent wanted = newContent(environment);
    const bool isSaved = answer == QLatin1String("saved");
    if (!isSaved && !answer.startsWith(QLatin1String("failed ")))
        return QStringLiteral("no answer");
    if (present.rows != (isSaved ? wanted : m_old).rows)
        return QStringLiteral("the rows are not those that the answer promises");
    // The main file is written first, and stays new when the database cannot follow.
    const bool isMainFileSaved = isSaved || answer.contains(QLatin1String("while the data is saving"));
    if (present.mainFile != (isMainFileSaved ? wanted : m_old).mainFile)
        return QStringLiteral("the main file is not the one that the answer promises");
    if (isSaved && QFile::exists(environment.databaseFile() + JOURNAL_SUFFIX))
        return QStringLiteral("saved, with the journal of the old database");
    return problem(environment);
}

QString SaveWorld::leftovers(const Environment &environment) const
{
    QStringList files = channelFolder(environment);
    for (const QPair<QString, QByteArray> &file : m_files)
        files.removeAll(QFileInfo(file.first).fileName());
    return files.join(QLatin1Char(' '));
}

} // namespace Test
} // namespace Kyte
