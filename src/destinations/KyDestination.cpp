#include "KyDestination.h"

#include "KyChannelConfig.h"
#include "KyDestinationFiles_p.h"
#include "KyDestinationRows_p.h"
#include "KyDestinationSql_p.h"
#include "KyDestinationSync_p.h"

#include <JoCrypto.h>
#include <KyCommon.h>
#include <KyConfig.h>
#include <KyEditorConfig.h>
#include <Path.h>

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <limits>

namespace Kyte {

const QString KyDestination::DATABASE_FILE_NAME = DESTINATION_DATABASE_FILE;
const QString KyDestination::DATABASE_CONNECTION_NAME_STD = DESTINATION_CONNECTION_STD;
const QString KyDestination::DATABASE_CONNECTION_NAME_WORK = DESTINATION_CONNECTION_WORK;

static const QString WORKING_FILE_SUFFIX = QStringLiteral(".work");
static const int ANY_CATEGORY = -2;

/**
 * Closes the connection at the end of an edit, unless a slot has dropped it or deleted its object by then.
 */
class CloseAtEnd
{
    Q_DISABLE_COPY(CloseAtEnd)

public:
    CloseAtEnd(KyDestination *owner, QSqlDatabase *const *database)
        : m_owner(owner)
        , m_database(database)
    {
    }

    ~CloseAtEnd()
    {
        if (m_owner && *m_database)
            (*m_database)->close();
    }

private:
    QPointer<KyDestination> m_owner;
    QSqlDatabase *const *m_database = nullptr;
};

static int clampToInt(long value)
{
    return static_cast<int>(
        qBound<qint64>(std::numeric_limits<int>::min(), value, std::numeric_limits<int>::max()));
}

KyDestination::KyDestination(QObject *parent)
    : QObject(parent)
    , m_channelNames(new QMap<int, QString>)
    , m_groupNames(new QMap<int, QString>)
{
}

KyDestination::~KyDestination()
{
    dropDatabase();
    delete m_channelNames;
    delete m_groupNames;
    delete m_channelConfig;
}

bool KyDestination::init()
{
    clearLastErrorMessage();
    dropDatabase(); // of an earlier init(), in whatever mode and folder
    delete m_channelConfig;
    m_channelConfig = new KyChannelConfig(nullptr);
    m_channelDir = m_channelConfig->channelDir();
    if (m_channelDir.isEmpty())
        return fail(m_channelConfig->lastErrorMessage());
    if (!QDir(m_channelDir).exists() && !QDir().mkpath(QDir(m_channelDir).absolutePath()))
        return fail(tr("The channel folder can not be handle."));
    if (!initDataBase())
        return fail(m_lastErrorMessage);
    m_channelConfig->getAllChannelInfoFromFiles(QString()); // no channels are no error
    if (!mergeConfigData(*m_channelConfig))
        return fail(m_lastErrorMessage);
    m_reservedDatabaseFileHash = currentDatabaseFileHashSha1();
    emit initialized();
    return true;
}

bool KyDestination::saveData()
{
    if (!saveChannelConfigToFile())
        return false;
    clearLastErrorMessage();
    if (!m_settingMode || !hasWorkingCopy())
        return true;

    QString reason;
    switch (DestinationFiles::replace(m_databaseFilePath, getStandardDatabaseFilePath(), &reason)) {
    case DestinationFiles::ReplaceResult::TargetIsProtected:
        return refuse(tr("Error occured while the data is saving.(1)\n%1").arg(reason));
    case DestinationFiles::ReplaceResult::Failed:
        return refuse(tr("Error occured while the data is saving.(2)\n%1").arg(reason));
    case DestinationFiles::ReplaceResult::Done:
        break;
    }
    m_reservedDatabaseFileHash = currentDatabaseFileHashSha1();
    return true;
}

void KyDestination::reconnectDatabase()
{
    purgeDatabase();
    if (m_databaseFilePath.isEmpty())
        return; // SQLite would take the empty name for a temporary database
    m_database =
        new QSqlDatabase(QSqlDatabase::addDatabase(DestinationSql::DRIVER_NAME, getDatabaseConnectionName()));
    m_database->setDatabaseName(m_databaseFilePath);
}

void KyDestination::purgeDatabase()
{
    if (!m_database)
        return;
    // The name is asked of the handle: it is empty when a later object of the same mode has taken the name
    // over, whose connection must go on working. Qt warns when a connection is removed while there is a
    // handle on it.
    const QString name = m_database->connectionName();
    delete m_database;
    m_database = nullptr;
    if (!name.isEmpty())
        QSqlDatabase::removeDatabase(name);
}

QString KyDestination::copyDatabaseFileAsWorkingFile(const QString &standardPath, bool *ok)
{
    QString workingPath = getWorkingDatabaseFilePath();
    bool done = true;
    QString reason;
    if (!DestinationFiles::remove(workingPath, &reason))
        done = refuse(tr("The old working file can not be deleted.\n%1").arg(reason));
    else if (QFile::exists(standardPath) && !DestinationFiles::copy(standardPath, workingPath, &reason))
        done = refuse(tr("The working file can not be created.\n%1").arg(reason));
    if (ok)
        *ok = done;
    return workingPath;
}

QString KyDestination::getStandardDatabaseFilePath() const
{
    return QDir(m_channelDir).absoluteFilePath(DATABASE_FILE_NAME);
}

QString KyDestination::getWorkingDatabaseFilePath() const
{
    return getStandardDatabaseFilePath() + WORKING_FILE_SUFFIX;
}

QString KyDestination::getDatabaseConnectionName() const
{
    return m_settingMode ? DATABASE_CONNECTION_NAME_WORK : DATABASE_CONNECTION_NAME_STD;
}

QStringList KyDestination::getDataBaseCreationScript()
{
    return DestinationSql::creationScript();
}

QString KyDestination::reservedDatabaseFileHashSha1() const
{
    return m_reservedDatabaseFileHash;
}

void KyDestination::setReservedDatabaseFileHashSha1(const QString &hash)
{
    m_reservedDatabaseFileHash = hash;
}

QString KyDestination::currentDatabaseFileHashSha1() const
{
    return Path::getHashSha1(m_databaseFilePath);
}

bool KyDestination::settingMode() const
{
    return m_settingMode;
}

void KyDestination::setSettingMode(bool settingMode)
{
    m_settingMode = settingMode;
}

QString KyDestination::lastErrorMessage() const
{
    return m_lastErrorMessage;
}

void KyDestination::clearLastErrorMessage()
{
    m_lastErrorMessage.clear();
}

QString KyDestination::encryptString(const QString &text)
{
    static const Jomo::JoCrypto cipher(Jomo::JoCrypto::ENC_KEY_STORED, Jomo::JoCrypto::ENC_IV_STORED);
    return cipher.encryptString(text);
}

QString KyDestination::decryptString(const QString &text)
{
    static const Jomo::JoCrypto cipher(Jomo::JoCrypto::ENC_KEY_STORED, Jomo::JoCrypto::ENC_IV_STORED);
    return cipher.decryptString(text);
}

QString KyDestination::getCurrentTimeForDatabaseString()
{
    return QDateTime::currentDateTime().toString(DestinationSql::TIMESTAMP_FORMAT);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is fixed
QDateTime KyDestination::getDateTimeFromDatabaseString(QString text)
{
    // Not the format of our own stamps, which therefore do not parse. Applications rely on the invalid date.
    return QDateTime::fromString(text, Qt::TextDate);
}

void KyDestination::startToRead()
{
    if (!beginOperation())
        return;
    const bool isSingle = m_maxChannelCount == 1 && m_maxDestinationCount == 1;
    const DataType type = m_dataType;
    const QPointer<KyDestination> self(this);
    int firstCategoryId = 0;
    clearNames(Data_Channel);
    clearNames(Data_Group);

    if (!getTableName(type).isEmpty()) {
        QList<KyUploadItemInfo> categories;
        if (!selectCategories(type, &categories))
            return;
        if (isSingle && !categories.isEmpty())
            firstCategoryId = categories.constFirst().id();
        emit itemsHasRead(categories);
        if (!self)
            return;
        readNames(type == Data_Channel ? Data_Group : Data_Channel);
    }

    QSqlQuery query = select(DestinationSql::selectSortedDestinations(!isSingle, m_maxDestinationCount));
    KyRecordBatch batch;
    if (!emitFullBatches(&query, &batch))
        return;
    // The number of destinations in the incomplete batch, not of all that were read: what the applications
    // show is built on that.
    m_enabledCount = batch.count();
    if (batch.count() > 0) {
        if (isSingle) {
            batch.items().first().setChannelId(firstCategoryId);
            batch.items().first().setGroupId(-1);
        }
        emit itemsHasRead(batch.items());
    }
    if (self)
        emit allItemsReadingFinished();
}

void KyDestination::readCategory(DataType type)
{
    if (!beginOperation())
        return;
    clearNames(type);
    if (getTableName(type).isEmpty()) {
        fail(tr("The Data Type is not defined."));
        return;
    }
    const QPointer<KyDestination> self(this);
    QSqlQuery query = select(DestinationSql::selectCategories(getTableName(type), m_maxChannelCount));
    if (!query.isActive()) {
        fail(readingError(query));
        return;
    }
    emit categoryReadingStarted();
    if (!self)
        return;
    emit itemsHasRead(takeCategories(&query, type));
    if (self)
        emit categoryReadingFinished();
}

void KyDestination::readChannels()
{
    readCategory(Data_Channel);
}

void KyDestination::readGroups()
{
    readCategory(Data_Group);
}

void KyDestination::readDestinations(int channelId, int groupId)
{
    const QPointer<KyDestination> self(this);
    emit readingDestinationStarted(channelId, groupId);
    if (!self || !beginOperation())
        return;
    QSqlQuery query = select(DestinationSql::selectDestinations(channelId, groupId, m_maxDestinationCount));
    if (!query.isActive()) {
        fail(readingError(query));
        return;
    }
    KyRecordBatch batch;
    if (!emitFullBatches(&query, &batch))
        return;
    if (batch.count() > 0)
        emit itemsHasRead(batch.items());
    if (self)
        emit allItemsReadingFinished();
}

void KyDestination::readDestinationsInChannel(int channelId)
{
    readDestinations(channelId, ANY_CATEGORY);
}

void KyDestination::readDestinationsInGroup(int groupId)
{
    readDestinations(ANY_CATEGORY, groupId);
}

bool KyDestination::addNewCategory(DataType type, const QString &name, int *newId)
{
    const QPointer<KyDestination> self(this);
    const CloseAtEnd closeAtEnd(this, &m_database);
    if (newId)
        *newId = -1;
    if (!beginEdit(type))
        return false;

    const int id = getNewId(type);
    const int posIndex = getNewPosIndex(type);
    bool ok = false;
    if (id < 0 || posIndex < 0) {
        fail(tr("Getting new id or new position index was failed."));
    } else {
        QSqlQuery query(*m_database);
        query.prepare(DestinationSql::insertCategory(getTableName(type)));
        query.addBindValue(id);
        query.addBindValue(name);
        query.addBindValue(posIndex);
        query.addBindValue(getCurrentTimeForDatabaseString());
        ok = query.exec();
        if (!ok)
            fail(tr("Error occured: %1").arg(query.lastError().text()));
        else if (newId)
            *newId = id;
    }
    if (self && m_database)
        m_database->commit(); // after a failure as well: there is nothing to take back
    return ok;
}

bool KyDestination::addNewGroup(const QString &name, int *newId)
{
    return addNewCategory(Data_Group, name, newId);
}

bool KyDestination::renameCategory(DataType type, int id, const QString &name)
{
    const CloseAtEnd closeAtEnd(this, &m_database);
    if (!beginEdit(type))
        return false;
    QSqlQuery query(*m_database);
    query.prepare(DestinationSql::renameCategory(getTableName(type)));
    query.addBindValue(name);
    query.addBindValue(id);
    if (!query.exec())
        return rollback(query);
    m_database->commit();
    return true;
}

bool KyDestination::renameGroup(int id, const QString &name)
{
    return renameCategory(Data_Group, id, name);
}

bool KyDestination::removeCategory(DataType type, int id)
{
    const CloseAtEnd closeAtEnd(this, &m_database);
    if (!beginEdit(type))
        return false;
    QSqlQuery query(*m_database);
    query.prepare(DestinationSql::deleteCategory(getTableName(type)));
    query.addBindValue(id);
    if (!query.exec())
        return rollback(query);
    QSqlQuery detach(*m_database);
    detach.prepare(DestinationSql::detachDestinations(columnName(type)));
    detach.addBindValue(id);
    detach.exec(); // the category is gone either way
    m_database->commit();
    return true;
}

bool KyDestination::removeGroup(int id)
{
    return removeCategory(Data_Group, id);
}

QList<int>
KyDestination::changeDestinationCategory(const QList<int> &destinationIds, int categoryId, DataType type)
{
    QList<int> moved;
    if (!beginOperation())
        return moved;
    if (getTableName(type).isEmpty()) {
        fail(tr("DataType must be \"Data_Channel\" or \"Data_Group\"."));
        return moved;
    }
    if (!m_database->transaction())
        return moved;

    QSqlQuery query(*m_database);
    query.prepare(DestinationSql::moveDestination(columnName(type)));
    query.bindValue(0, categoryId);
    query.bindValue(1, getCurrentTimeForDatabaseString());
    for (int id : destinationIds) {
        query.bindValue(2, id);
        if (query.exec())
            moved.append(id); // an unknown id too: an update of no row succeeds
        else if (DestinationSql::isStorageFailure(query))
            break;
    }
    if (!m_database->commit()) {
        m_database->rollback(); // or no later operation could begin
        moved.clear();
    }
    return moved;
}

int KyDestination::getNewId(DataType type) const
{
    if (!m_database || !m_database->isOpen())
        return -1;
    QSqlQuery query = select(DestinationSql::selectIds(getTableName(type)));
    if (!query.isActive())
        return -1;
    int candidate = 0;
    int lastId = 0;
    while (query.next()) {
        bool ok = false;
        lastId = query.value(0).toInt(&ok);
        if (ok && lastId != candidate)
            break;
        ++candidate;
    }
    // A negative id is the first one read and stops the walk: adding is refused as long as there is such a
    // row.
    return lastId < 0 ? lastId : candidate;
}

int KyDestination::getNewPosIndex(DataType type) const
{
    if (!m_database)
        return -1;
    QSqlQuery query = select(DestinationSql::selectNextPosIndex(getTableName(type)));
    return query.next() ? query.value(0).toInt() : 0; // NULL, from an empty table, is 0 as well
}

bool KyDestination::saveChannelConfigToFile()
{
    // The messages of this operation are for its caller only: nothing is emitted.
    clearLastErrorMessage();
    if (!m_channelConfig)
        return refuse(tr("The channel config object has not be initialized."));
    const QString error = openDatabase();
    if (!error.isEmpty())
        return refuse(error);
    QSqlQuery query = select(DestinationSql::SELECT_ASSIGNMENT);
    if (!query.isActive())
        return refuse(readingError(query));
    while (query.next())
        m_channelConfig->insertDestination(query.value(0).toInt(), query.value(1).toInt());
    // A damaged page ends the rows. A file of what came before would lose all the other assignments.
    if (query.lastError().isValid())
        return refuse(readingError(query));
    return m_channelConfig->saveFile(QString()) || refuse(m_channelConfig->lastErrorMessage());
}

KyDestination::DataType KyDestination::dataType() const
{
    return m_dataType;
}

void KyDestination::setDataType(const DataType &dataType)
{
    m_dataType = dataType;
}

QMap<int, QString> *KyDestination::channelNames() const
{
    return m_channelNames;
}

void KyDestination::setChannelNames(QMap<int, QString> *channelNames)
{
    m_channelNames = channelNames;
}

QMap<int, QString> *KyDestination::groupNames() const
{
    return m_groupNames;
}

void KyDestination::setGroupNames(QMap<int, QString> *groupNames)
{
    m_groupNames = groupNames;
}

int KyDestination::enabledCount() const
{
    return m_enabledCount;
}

int KyDestination::maxDestinationCount() const
{
    return m_maxDestinationCount;
}

void KyDestination::setMaxDestinationCount(long maxDestinationCount)
{
    m_maxDestinationCount = clampToInt(maxDestinationCount);
}

int KyDestination::maxChannelCount() const
{
    return m_maxChannelCount;
}

void KyDestination::setMaxChannelCount(long maxChannelCount)
{
    m_maxChannelCount = clampToInt(maxChannelCount);
}

void KyDestination::onErrorOccured(const QString &message)
{
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the copy is needed
    const QString text = message; // may be a member of an object that a slot deletes
    m_lastErrorMessage = text;
    emit errorOccured(text);
}

/** The one place where an operation fails aloud. */
bool KyDestination::fail(const QString &message)
{
    onErrorOccured(message);
    return false;
}

/** The same in silence, for what tells nobody but its caller. */
bool KyDestination::refuse(const QString &message)
{
    m_lastErrorMessage = message;
    return false;
}

bool KyDestination::initDataBase()
{
    QString path = getStandardDatabaseFilePath();
    if (m_settingMode) {
        bool ok = false;
        path = copyDatabaseFileAsWorkingFile(path, &ok);
        if (!ok)
            return false; // without a connection: init() has dropped the earlier one
    }
    m_database =
        new QSqlDatabase(QSqlDatabase::addDatabase(DestinationSql::DRIVER_NAME, getDatabaseConnectionName()));
    m_database->setDatabaseName(path);
    if (!createSchema()) {
        QString ignored;
        if (m_settingMode)
            DestinationFiles::remove(path, &ignored); // nobody else would
        return false;
    }
    m_databaseFilePath = path;
    return true;
}

/**
 * Opens the connection, creates what is missing and closes it again; after a failure there is no
 * connection.
 */
bool KyDestination::createSchema()
{
    if (!m_database->open()) {
        closeDataBaseOnError(false);
        return false;
    }
    if (!m_database->transaction()) {
        closeDataBaseOnError(true);
        return false;
    }
    const QStringList script = getDataBaseCreationScript();
    for (const QString &statement : script) {
        QSqlQuery query(*m_database);
        if (query.exec(statement))
            continue;
        const QString error = query.lastError().text();
        m_database->rollback();
        closeDataBaseOnError(true);
        return refuse(error);
    }
    m_database->commit();
    m_database->close();
    return true;
}

bool KyDestination::mergeConfigData(KyChannelConfig &channelConfig)
{
    if (!m_database || (!m_database->isOpen() && !m_database->open()))
        return false;
    const CloseAtEnd closeAtEnd(this, &m_database);
    QSqlQuery deletion(*m_database);
    if (!deletion.exec(DestinationSql::DELETE_CHANNELS))
        return refuse(deletion.lastError().text());
    if (m_database->transaction()) {
        DestinationSync::writeChannels(*m_database, channelConfig.channelList(),
                                       getCurrentTimeForDatabaseString());
        m_database->commit();
    }

    // Without the assignment every destination would drop out of its channel, so the rows are left alone
    // instead.
    if (!channelConfig.readFile(QString()))
        return true;
    const KyConfig *config = KyEditorConfig::getConfig();
    if (!config)
        return false;
    if (!m_database->transaction())
        return true;
    if (DestinationSync::writeDestinations(*m_database, config->destinationList(),
                                           channelConfig.destChannelMap(), getCurrentTimeForDatabaseString()))
        m_database->commit();
    else
        m_database->rollback();
    return true;
}

void KyDestination::closeDataBaseOnError(bool close)
{
    m_lastErrorMessage = m_database->lastError().text();
    if (close)
        m_database->close();
    purgeDatabase();
}

/** Drops the connection and the working copy, and forgets which file it was. */
void KyDestination::dropDatabase()
{
    // A later object of the same mode that took the connection's name over has made the working copy anew.
    const bool isTakenOver = m_database && m_database->connectionName().isEmpty();
    purgeDatabase();
    if (hasWorkingCopy() && !isTakenOver)
        removeDataBaseFile();
    m_databaseFilePath.clear();
}

/** The path tells, not the mode: that can be changed after init(), and the standard file must survive it. */
bool KyDestination::hasWorkingCopy() const
{
    return !m_databaseFilePath.isEmpty() && m_databaseFilePath == getWorkingDatabaseFilePath();
}

void KyDestination::removeDataBaseFile()
{
    const bool exists = QFile::exists(m_databaseFilePath); // a file that is gone is worth the message, too
    QString ignored;
    if (!DestinationFiles::remove(m_databaseFilePath, &ignored) || !exists)
        qDebug("remove error");
}

/** Opens the connection where it is closed; answers the message when that cannot be, else an empty text. */
QString KyDestination::openDatabase()
{
    if (!m_database)
        return tr("The database connection does not exist.");
    if (!m_database->isOpen() && !m_database->open())
        return tr("The destination database can not be opened.");
    return QString();
}

bool KyDestination::beginOperation()
{
    clearLastErrorMessage();
    const QString error = openDatabase();
    return error.isEmpty() || fail(error);
}

/**
 * Opens an edit of a category table with a transaction. Its caller sees to it that the connection is
 * closed.
 */
bool KyDestination::beginEdit(DataType type)
{
    if (!beginOperation())
        return false;
    if (getTableName(type).isEmpty())
        return fail(tr("The Data Type is not defined."));
    clearNames(type);
    return m_database->transaction() || fail(tr("Transaction can not be started."));
}

/** Takes an edit back whose \a query failed, and reports that. */
bool KyDestination::rollback(const QSqlQuery &query)
{
    const QString error = tr("Error occured: %1").arg(query.lastError().text());
    m_database->rollback();
    return fail(error);
}

/**
 * Executes \a statement; the query is inactive when that fails, or when a slot closed or dropped the
 * connection.
 */
QSqlQuery KyDestination::select(const QString &statement) const
{
    if (!m_database || !m_database->isOpen())
        return QSqlQuery();
    QSqlQuery query(*m_database);
    query.setForwardOnly(true);
    query.exec(statement);
    return query;
}

/** Reads the categories of \a type into \a categories; a failure is reported. */
bool KyDestination::selectCategories(DataType type, QList<KyUploadItemInfo> *categories)
{
    QSqlQuery query = select(DestinationSql::selectCategories(getTableName(type), m_maxChannelCount));
    if (!query.isActive())
        return fail(readingError(query));
    *categories = takeCategories(&query, type);
    return true;
}

/** The records of all rows of \a query, whose names go into the map of \a type. */
QList<KyUploadItemInfo> KyDestination::takeCategories(QSqlQuery *query, DataType type)
{
    QList<KyUploadItemInfo> categories;
    QMap<int, QString> *const map = names(type);
    const auto itemType = static_cast<KyUploadItemInfo::ItemType>(type + 1);
    KyDestinationRows rows(query);
    KyUploadItemInfo category;
    while (rows.next()) {
        rows.readCategory(itemType, &category);
        categories.append(category);
        if (map)
            map->insert(category.id(), category.name());
    }
    return categories;
}

/** Fills the map of \a type without making records; it stays empty when the table cannot be read. */
void KyDestination::readNames(DataType type)
{
    QMap<int, QString> *const map = names(type);
    if (!map)
        return;
    QSqlQuery query = select(DestinationSql::selectAll(getTableName(type)));
    KyDestinationRows rows(&query);
    while (rows.next())
        map->insert(rows.id(), rows.name());
}

/**
 * Emits the rows of \a query ten by ten; the rest stays in \a batch. False when a slot deleted this
 * object.
 */
bool KyDestination::emitFullBatches(QSqlQuery *query, KyRecordBatch *batch)
{
    const QPointer<KyDestination> self(this);
    KyDestinationRows rows(query);
    while (rows.next()) {
        rows.readDestination(batch->append());
        if (!batch->isFull())
            continue;
        emit itemsHasRead(batch->items());
        if (!self)
            return false;
        batch->restart();
    }
    return true;
}

QString KyDestination::readingError(const QSqlQuery &query)
{
    return tr("Error occured while the destination database is reading.\n(%1)").arg(query.lastError().text());
}

QMap<int, QString> *KyDestination::names(DataType type) const
{
    switch (type) {
    case Data_Channel:
        return m_channelNames;
    case Data_Group:
        return m_groupNames;
    }
    return nullptr;
}

void KyDestination::clearNames(DataType type)
{
    if (QMap<int, QString> *const map = names(type))
        map->clear();
}

/** The table of a kind of category; empty for a value that is none. */
QString KyDestination::getTableName(DataType type)
{
    switch (type) {
    case Data_Channel:
        return DestinationSql::CHANNEL_TABLE;
    case Data_Group:
        return DestinationSql::GROUP_TABLE;
    }
    return QString();
}

/** The column of the destination table that names the category. */
QString KyDestination::columnName(DataType type)
{
    return type == Data_Channel ? DestinationSql::CHANNEL_COLUMN : DestinationSql::GROUP_COLUMN;
}

} // namespace Kyte
