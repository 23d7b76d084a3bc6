#pragma once

#include "KyEditorCommonExport.h"
#include "KyUploadItemInfo.h"

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

class QSqlDatabase;
class QSqlQuery;

namespace Kyte {

class KyChannelConfig;
class KyRecordBatch;

/**
 * The list of upload destinations, with the channels and groups that they belong to, in the SQLite file
 * "destination.kyb" of the channel folder.
 *
 * Create the object, choose the mode, call init(), then read and edit. In normal mode the object works on the
 * file itself. In setting mode it works on a copy ("destination.kyb.work") until saveData() puts that in the
 * place of the file; the copy is deleted with the object, and unsaved edits with it. A caller learns from the
 * fingerprint whether the file was changed since by anybody: it compares reservedDatabaseFileHashSha1() with
 * currentDatabaseFileHashSha1().
 *
 * An operation that fails answers false, an empty list or nothing, keeps a text in lastErrorMessage() and,
 * apart from saving, emits errorOccured() with it. Readings deliver through signals, which are emitted while
 * the operation runs: a slot may call back into the object, or delete it. An edit made by a slot closes the
 * database, and the reading then ends as if there were no more rows. Edits leave the database closed,
 * readings and changeDestinationCategory() leave it open.
 *
 * The object belongs to the thread that called init(). A process may hold one object of each mode: two of the
 * same mode share the name of their connection, and the later one takes it from the earlier one.
 */
class KYEDITORCOMMON_EXPORT KyDestination : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(KyDestination)

public:
    static const QString DATABASE_FILE_NAME; ///< "destination.kyb"
    static const QString DATABASE_CONNECTION_NAME_STD; ///< connection of normal mode
    static const QString DATABASE_CONNECTION_NAME_WORK; ///< connection of setting mode

    /**
     * The kind of category. Operations refuse any other integer, with which startToRead() reads destinations
     * only.
     */
    enum DataType : int { Data_Channel = 0, Data_Group = 1 };

    explicit KyDestination(QObject *parent = nullptr);
    /** Drops the connection and, in setting mode, the working copy. */
    ~KyDestination() override;

    /**
     * Prepares folder, file and schema and synchronises the database with the channel files and with the core
     * configuration: channels are rebuilt, destinations that the configuration no longer lists are deleted,
     * new ones inserted, known ones updated except for their group. Missing channel files and a missing
     * "chconfig.xml" are no errors; a "chconfig.xml" that cannot be opened leaves the destinations as they
     * were. Stamps have whole seconds, so of two synchronisations in one second the second deletes nothing
     * that the first wrote.
     *
     * Ends with initialized(), or with errorOccured() and false. The database is closed afterwards.
     */
    bool init();
    /**
     * Writes "chconfig.xml" and, in setting mode, puts the working copy in the place of the database file.
     * The working copy stays. Whatever fails, either the old or the new content of each file is there.
     * Putting the copy in place takes the reserved fingerprint anew; in normal mode that stays as it was.
     */
    bool saveData();
    /**
     * Drops the connection and makes it anew on the same file, not yet opened. Without a file, that is before
     * init() or after one that failed to make it, there is no connection afterwards either.
     */
    void reconnectDatabase();
    /** Drops the connection; later operations fail until reconnectDatabase() or init(). */
    void purgeDatabase();

    /**
     * Replaces the working copy by a copy of \a standardPath, if that exists; answers the working path in any
     * case. \a ok (may be null) tells whether all went well.
     */
    QString copyDatabaseFileAsWorkingFile(const QString &standardPath, bool *ok);
    QString getStandardDatabaseFilePath() const;
    QString getWorkingDatabaseFilePath() const;
    QString getDatabaseConnectionName() const;
    /** The statements that create tables and indexes where they are missing, in order. */
    static QStringList getDataBaseCreationScript();

    /**
     * SHA-1 of the database file in use, lower-case hex: as of the last init() or saveData() in setting mode,
     * and as of now. Saving in normal mode leaves the reserved one as it was.
     */
    QString reservedDatabaseFileHashSha1() const;
    void setReservedDatabaseFileHashSha1(const QString &hash);
    QString currentDatabaseFileHashSha1() const;

    /** Whether to work on a copy. To be set before init(). */
    bool settingMode() const;
    void setSettingMode(bool settingMode);

    QString lastErrorMessage() const;
    void clearLastErrorMessage();

    /** The cipher of stored passwords. A text that it did not produce deciphers to an empty one. */
    static QString encryptString(const QString &text);
    static QString decryptString(const QString &text);
    /** The local time as stored in "updatetime": "yyyy-MM-dd hh:mm:ss". */
    static QString getCurrentTimeForDatabaseString();
    /**
     * Parses Qt's text form of a date, which is not the form of getCurrentTimeForDatabaseString(): see
     * there.
     */
    static QDateTime getDateTimeFromDatabaseString(QString text);

    /**
     * Reads the categories of dataType() into one list and the destinations, by position and name, in lists
     * of ten, and ends with allItemsReadingFinished(). Destinations in no channel are left out, except in
     * single mode (both maxima are 1), where the one destination is shown in the first category that was
     * read.
     */
    void startToRead();
    /** Reads one kind of category: categoryReadingStarted(), one list, categoryReadingFinished(). */
    void readCategory(DataType type);
    void readChannels();
    void readGroups();
    /**
     * Reads the destinations of a channel and of a group (-1: those in none; -2 or less: any), in no order,
     * in lists of ten: readingDestinationStarted(), the lists, allItemsReadingFinished().
     */
    void readDestinations(int channelId, int groupId);
    void readDestinationsInChannel(int channelId);
    void readDestinationsInGroup(int groupId);

    /**
     * Adds a category at the end with the lowest free id, which \a newId (may be null) receives; -1 on
     * failure.
     */
    bool addNewCategory(DataType type, const QString &name, int *newId);
    bool addNewGroup(const QString &name, int *newId);
    /** Renames a category; a missing id is no error. */
    bool renameCategory(DataType type, int id, const QString &name);
    bool renameGroup(int id, const QString &name);
    /** Removes a category. Its destinations stay, in none. */
    bool removeCategory(DataType type, int id);
    bool removeGroup(int id);
    /**
     * Moves destinations to a category (-1: out of any) and answers the ids that were moved. Ids that no
     * destination has are among them.
     */
    QList<int> changeDestinationCategory(const QList<int> &destinationIds, int categoryId, DataType type);

    /**
     * The lowest free id, 0 or more; -1 when the database is not open; a negative id that is in the table
     * if any.
     */
    int getNewId(DataType type) const;
    /** The position behind the last one; 0 for an empty table and when the database is not open. */
    int getNewPosIndex(DataType type) const;

    /**
     * Writes the assignment of destinations to channels to "chconfig.xml". Sets the error text, emits
     * nothing.
     */
    bool saveChannelConfigToFile();

    /** The kind of category that startToRead() delivers. */
    DataType dataType() const;
    void setDataType(const DataType &dataType);

    /**
     * Names by id as of the last reading; an edit empties the map of its kind. The maps belong to the object,
     * also those handed in, which may be null; a replaced map does not any more and is not deleted.
     */
    QMap<int, QString> *channelNames() const;
    void setChannelNames(QMap<int, QString> *channelNames);
    QMap<int, QString> *groupNames() const;
    void setGroupNames(QMap<int, QString> *groupNames);

    /** The number of destinations in the last, incomplete list of startToRead(): their count modulo ten. */
    int enabledCount() const;
    /** How many destinations, or categories of either kind, are read at most; -1 means all, 0 none. */
    int maxDestinationCount() const;
    void setMaxDestinationCount(long maxDestinationCount);
    int maxChannelCount() const;
    void setMaxChannelCount(long maxChannelCount);

signals:
    /** init() has succeeded; its last act. */
    void initialized();
    /** An operation other than saving has failed; lastErrorMessage() is \a message by then. */
    void errorOccured(const QString &message);
    /** A list of categories of one kind, which may be empty, or of up to ten destinations. */
    void itemsHasRead(QList<KyUploadItemInfo> itemInfoList);
    /** startToRead() or a reading of destinations has delivered its last list. */
    void allItemsReadingFinished();
    /** The categories of one kind can be read: one list follows. */
    void categoryReadingStarted();
    /** That list was delivered. */
    void categoryReadingFinished();
    /** A reading of destinations begins, with the ids it was asked for; it may still fail. */
    void readingDestinationStarted(int channelId, int groupId);

private slots:
    void onErrorOccured(const QString &message);

private:
    bool fail(const QString &message);
    bool refuse(const QString &message);
    bool initDataBase();
    bool createSchema();
    bool mergeConfigData(KyChannelConfig &channelConfig);
    void closeDataBaseOnError(bool close);
    void dropDatabase();
    bool hasWorkingCopy() const;
    void removeDataBaseFile();

    QString openDatabase();
    bool beginOperation();
    bool beginEdit(DataType type);
    bool rollback(const QSqlQuery &query);
    QSqlQuery select(const QString &statement) const;
    bool selectCategories(DataType type, QList<KyUploadItemInfo> *categories);
    QList<KyUploadItemInfo> takeCategories(QSqlQuery *query, DataType type);
    void readNames(DataType type);
    bool emitFullBatches(QSqlQuery *query, KyRecordBatch *batch);
    static QString readingError(const QSqlQuery &query);

    QMap<int, QString> *names(DataType type) const;
    void clearNames(DataType type);
    static QString getTableName(DataType type);
    static QString columnName(DataType type);

    QSqlDatabase *m_database = nullptr; // owned
    QString m_channelDir;
    QString m_databaseFilePath;
    KyChannelConfig *m_channelConfig = nullptr; // owned
    QString m_lastErrorMessage;
    DataType m_dataType = Data_Channel;
    QMap<int, QString> *m_channelNames = nullptr; // owned
    QMap<int, QString> *m_groupNames = nullptr; // owned
    int m_enabledCount = 0;
    bool m_settingMode = false;
    QString m_reservedDatabaseFileHash;
    int m_maxDestinationCount = -1;
    int m_maxChannelCount = -1;
};

} // namespace Kyte
