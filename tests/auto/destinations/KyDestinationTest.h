#pragma once

#include "KyTestEnvironment.h"

#include <KyDestination.h>

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <functional>

namespace Kyte {
namespace Test {

/** All fields: "type|id|name|position|address|shared|channel|group|user|password". */
QString describe(const KyUploadItemInfo &record);
QStringList describe(const QList<KyUploadItemInfo> &records);

/** The connection that an object of that mode uses, whether open or not. */
QSqlDatabase connection(bool settingMode = false);
bool isOpen(bool settingMode = false);

/** Every value of \a table as SQL literals, which tell texts, numbers and blobs apart, rows by id. */
QStringList literalRows(const QString &databaseFile, const QString &table, const QString &columns);

/**
 * Makes all stamps old, so that the next synchronisation sweeps although it may fall into the same second.
 */
void backdate(const QString &databaseFile);

/**
 * Leaves \a databaseFile and a journal beside it as a process does that is killed in the middle of a
 * transaction: the file has a part of what \a statement wrote, and the journal what it takes to undo that.
 * The changes have to exceed ten pages.
 */
void interruptTransaction(const QString &databaseFile, const QString &statement);

/** A text for every place that takes one: the rows "quote", "semicolon", ... of the column "text". */
void addOddTexts();

/** Everything that lies in the channel folder, by name. */
QStringList channelFolder(const Environment &environment);

/**
 * Collects what Qt's SQL classes have to complain about while the object lives, for instance a connection
 * that is removed while it is in use. Messages go on to QtTest.
 */
class MessageWatch
{
    Q_DISABLE_COPY(MessageWatch)

public:
    MessageWatch();
    ~MessageWatch();

    /** The complaints since the last call. */
    static QStringList take();
};

/**
 * Turns the signals of a KyDestination into texts, so that a test compares their order, number and arguments
 * at once: "initialized", "errorOccured(text)", "itemsHasRead(C0 G1 D2)", "readingDestinationStarted(-2,5)",
 * ...
 */
class DestinationRecorder : public QObject
{
    Q_OBJECT

public:
    explicit DestinationRecorder(KyDestination *destination);

    /** The texts since the last call. */
    QStringList takeSignals();
    /** The records of all lists since the last call, described in full. */
    QStringList takeRecords();
    /** The argument of the last errorOccured() as it was behind the reaction, which may have deleted the
     * sender. */
    QString lastMessage() const;
    /** To be called behind every signal with its text, in place of a slot of an application. */
    void setReaction(const std::function<void(const QString &signal)> &reaction);

private slots:
    void onInitialized();
    void onErrorOccured(const QString &message);
    void onItemsHasRead(QList<KyUploadItemInfo> itemInfoList);
    void onAllItemsReadingFinished();
    void onCategoryReadingStarted();
    void onCategoryReadingFinished();
    void onReadingDestinationStarted(int channelId, int groupId);

private:
    void record(const QString &signal);

    QStringList m_signals;
    QStringList m_records;
    QString m_lastMessage;
    std::function<void(const QString &)> m_reaction;
};

#ifdef Q_OS_UNIX
/** Files of this process cannot grow beyond \a size while the object lives, as on a full disk. */
class FileSizeLimit
{
    Q_DISABLE_COPY(FileSizeLimit)

public:
    explicit FileSizeLimit(qint64 size);
    ~FileSizeLimit();

private:
    quint64 m_formerLimit = 0;
};
#endif

} // namespace Test
} // namespace Kyte
