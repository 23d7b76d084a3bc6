#include "KyDestinationTest.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <csignal>

#include <sys/resource.h>
#endif

namespace Kyte {
namespace Test {

static QtMessageHandler s_formerHandler = nullptr;
static QStringList s_complaints;

static void watchMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type != QtDebugMsg && message.contains(QLatin1String("QSql")))
        s_complaints.append(message);
    if (s_formerHandler)
        s_formerHandler(type, context, message);
}

QString describe(const KyUploadItemInfo &record)
{
    return QStringList({QString::number(record.itemType()), QString::number(record.id()), record.name(),
                        QString::number(record.posIndex()), record.address(), record.sharedFolder(),
                        QString::number(record.channelId()), QString::number(record.groupId()),
                        record.userName(), record.password()})
        .join(QLatin1Char('|'));
}

QStringList describe(const QList<KyUploadItemInfo> &records)
{
    QStringList texts;
    texts.reserve(records.size());
    for (const KyUploadItemInfo &record : records)
        texts.append(describe(record));
    return texts;
}

QSqlDatabase connection(bool settingMode)
{
    return QSqlDatabase::database(settingMode ? KyDestination::DATABASE_CONNECTION_NAME_WORK
                                              : KyDestination::DATABASE_CONNECTION_NAME_STD,
                                  false);
}

bool isOpen(bool settingMode)
{
    return connection(settingMode).isOpen();
}

QStringList literalRows(const QString &databaseFile, const QString &table, const QString &columns)
{
    QStringList expressions;
    for (const QString &column : columns.split(QLatin1Char(' ')))
        expressions.append(QStringLiteral("quote(%1)").arg(column));
    return queryRows(
        databaseFile,
        QStringLiteral("SELECT %1 FROM %2 ORDER BY id").arg(expressions.join(QLatin1String(", ")), table));
}

void backdate(const QString &databaseFile)
{
    QStringList statements;
    for (const char *table : {"channel_tbl", "group_tbl", "destination_tbl"})
        statements.append(
            QStringLiteral("UPDATE %1 SET updatetime='2001-02-03 04:05:06'").arg(QLatin1String(table)));
    execute(databaseFile, statements);
}

static void copyOver(const QString &source, const QString &target)
{
    QFile::remove(target);
    if (!QFile::copy(source, target))
        qFatal("Cannot copy %s", qPrintable(source));
}

void interruptTransaction(const QString &databaseFile, const QString &statement)
{
    const QTemporaryDir folder;
    const QString victim = folder.filePath(QStringLiteral("victim"));
    const QString connectionName = QStringLiteral("kyte_test_interrupted");
    const QString journal = QStringLiteral("-journal");
    copyOver(databaseFile, victim);
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName);
        database.setDatabaseName(victim);
        QSqlQuery query(database.open() ? QSqlQuery(database) : QSqlQuery());
        // A cache of few pages makes SQLite write changed pages into the file before the transaction is
        // committed.
        for (const QString &text :
             {QStringLiteral("PRAGMA cache_size=5"), QStringLiteral("BEGIN"), statement}) {
            if (!query.exec(text))
                qFatal("%s: %s", qPrintable(text), qPrintable(query.lastError().text()));
        }
        if (readFile(victim) == readFile(databaseFile))
            qFatal("The transaction did not reach the file");
        copyOver(victim, databaseFile);
        copyOver(victim + journal, databaseFile + journal);
    }
    QSqlDatabase::removeDatabase(connectionName);
}

void addOddTexts()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("single quote") << QStringLiteral("O'Hara's 'hall'");
    QTest::newRow("double quote") << QStringLiteral("the \"big\" hall");
    QTest::newRow("statement") << QStringLiteral("x'); DROP TABLE group_tbl; --");
    QTest::newRow("percent") << QStringLiteral("100 %1 %2 %%");
    QTest::newRow("question mark") << QStringLiteral("where? :name @here $x");
    QTest::newRow("markup") << QStringLiteral("<a href=\"b\">&amp;</a> ]]>");
    QTest::newRow("back-slash") << QStringLiteral("\\\\server\\share");
    QTest::newRow("umlauts") << QStringLiteral("Gr\u00f6\u00dfe \u00e9t\u00e9");
    QTest::newRow("other scripts") << QStringLiteral("\u6771\u4eac \u041c\u043e\u0441\u043a\u0432\u0430");
    QTest::newRow("outside the basic plane") << QStringLiteral("\U0001F600 \U00010348");
    QTest::newRow("blanks around") << QStringLiteral("  inside  ");
    QTest::newRow("digits") << QStringLiteral("007");
    QTest::newRow("null word") << QStringLiteral("NULL");
    QTest::newRow("10,000 characters") << QString(10000, QLatin1Char('n'));
}

QStringList channelFolder(const Environment &environment)
{
    return QDir(environment.channelDir())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

MessageWatch::MessageWatch()
{
    s_complaints.clear();
    s_formerHandler = qInstallMessageHandler(watchMessage);
}

MessageWatch::~MessageWatch()
{
    qInstallMessageHandler(s_formerHandler);
    s_formerHandler = nullptr;
}

QStringList MessageWatch::take()
{
    const QStringList complaints = s_complaints;
    s_complaints.clear();
    return complaints;
}

DestinationRecorder::DestinationRecorder(KyDestination *destination)
{
    connect(destination, SIGNAL(initialized()), SLOT(onInitialized()));
    connect(destination, SIGNAL(errorOccured(QString)), SLOT(onErrorOccured(QString)));
    connect(destination, SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)),
            SLOT(onItemsHasRead(QList<KyUploadItemInfo>)));
    connect(destination, SIGNAL(allItemsReadingFinished()), SLOT(onAllItemsReadingFinished()));
    connect(destination, SIGNAL(categoryReadingStarted()), SLOT(onCategoryReadingStarted()));
    connect(destination, SIGNAL(categoryReadingFinished()), SLOT(onCategoryReadingFinished()));
    connect(destination, SIGNAL(readingDestinationStarted(int, int)),
            SLOT(onReadingDestinationStarted(int, int)));
}

QStringList DestinationRecorder::takeSignals()
{
    const QStringList texts = m_signals;
    m_signals.clear();
    return texts;
}

QStringList DestinationRecorder::takeRecords()
{
    const QStringList records = m_records;
    m_records.clear();
    return records;
}

QString DestinationRecorder::lastMessage() const
{
    return m_lastMessage;
}

void DestinationRecorder::setReaction(const std::function<void(const QString &)> &reaction)
{
    m_reaction = reaction;
}

void DestinationRecorder::onInitialized()
{
    record(QStringLiteral("initialized"));
}

void DestinationRecorder::onErrorOccured(const QString &message)
{
    record(QStringLiteral("errorOccured(") + message + QLatin1Char(')'));
    m_lastMessage = message;
}

void DestinationRecorder::onItemsHasRead(QList<KyUploadItemInfo> itemInfoList)
{
    static const char TYPES[] = {'D', 'C', 'G'};
    QStringList items;
    for (const KyUploadItemInfo &item : qAsConst(itemInfoList))
        items.append(QLatin1Char(TYPES[item.itemType()]) + QString::number(item.id()));
    m_records.append(describe(itemInfoList));
    record(QStringLiteral("itemsHasRead(") + items.join(QLatin1Char(' ')) + QLatin1Char(')'));
}

void DestinationRecorder::onAllItemsReadingFinished()
{
    record(QStringLiteral("allItemsReadingFinished"));
}

void DestinationRecorder::onCategoryReadingStarted()
{
    record(QStringLiteral("categoryReadingStarted"));
}

void DestinationRecorder::onCategoryReadingFinished()
{
    record(QStringLiteral("categoryReadingFinished"));
}

void DestinationRecorder::onReadingDestinationStarted(int channelId, int groupId)
{
    record(QStringLiteral("readingDestinationStarted(%1,%2)").arg(channelId).arg(groupId));
}

void DestinationRecorder::record(const QString &signal)
{
    m_signals.append(signal);
    if (m_reaction)
        m_reaction(signal);
}

#ifdef Q_OS_UNIX
FileSizeLimit::FileSizeLimit(qint64 size)
{
    std::signal(SIGXFSZ, SIG_IGN); // a write is to fail, not to kill
    rlimit limit = {};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    m_formerLimit = limit.rlim_cur;
    limit.rlim_cur = static_cast<rlim_t>(size);
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

FileSizeLimit::~FileSizeLimit()
{
    rlimit limit = {};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = m_formerLimit;
    ::setrlimit(RLIMIT_FSIZE, &limit);
}
#endif

} // namespace Test
} // namespace Kyte
