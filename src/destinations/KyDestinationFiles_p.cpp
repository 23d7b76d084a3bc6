#include "KyDestinationFiles_p.h"

#include "KyDestinationSql_p.h"
#include "KyFileStore_p.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <array>
#include <cerrno>

namespace Kyte {
namespace DestinationFiles {

static const int COPY_BLOCK = 1 << 20; // bytes

static QStringList journals(const QString &path)
{
    return {path + QLatin1String("-journal"), path + QLatin1String("-wal"), path + QLatin1String("-shm")};
}

/** Whether \a query failed for another reason than the file being no database. */
static bool isKeptOut(const QSqlQuery &query)
{
    static const std::array<int, 4> REASONS = {DestinationSql::Busy, DestinationSql::ReadOnly,
                                               DestinationSql::Io, DestinationSql::CannotOpen};
    return std::find(REASONS.cbegin(), REASONS.cend(), DestinationSql::resultCode(query)) != REASONS.cend();
}

ReadLock::ReadLock(const QString &path)
{
    if (!QFileInfo(path).isFile())
        return;
    m_connectionName = QStringLiteral("ky_sql_destination_lock_%1").arg(reinterpret_cast<quintptr>(this));
    m_database = std::make_unique<QSqlDatabase>(
        QSqlDatabase::addDatabase(DestinationSql::DRIVER_NAME, m_connectionName));
    m_database->setDatabaseName(path);
    if (!m_database->open())
        return;
    QSqlQuery query(*m_database);
    // Tools that put the database into write-ahead mode leave changes in a log, which is brought into the
    // file here.
    const bool isLocked = query.exec(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)"))
        && query.exec(QStringLiteral("BEGIN")) // the lock comes with the first reading
        && query.exec(QStringLiteral("SELECT COUNT(*) FROM sqlite_master"));
    if (!isLocked && isKeptOut(query))
        m_error = query.lastError().text();
}

ReadLock::~ReadLock()
{
    if (!m_database)
        return;
    m_database->close();
    m_database.reset(); // Qt warns about a connection that is removed while a handle on it exists
    QSqlDatabase::removeDatabase(m_connectionName);
}

QString ReadLock::error() const
{
    return m_error;
}

static bool removeAll(const QStringList &paths, QString *reason)
{
    for (const QString &path : paths) {
        QFile file(path);
        if (file.exists() && !file.remove()) {
            *reason = file.errorString();
            return false;
        }
    }
    return true;
}

bool remove(const QString &path, QString *reason)
{
    return removeAll(QStringList(path) + journals(path), reason);
}

/** Whether copying \a path could last for ever, as with a device or a pipe. */
static bool isEndless(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isFile() && !info.isDir();
}

bool copy(const QString &source, const QString &target, QString *reason)
{
    if (isEndless(source)) {
        *reason = qt_error_string(EINVAL);
        return false;
    }
    const ReadLock lock(source);
    *reason = lock.error();
    if (!reason->isEmpty())
        return false;
    QFile file(source);
    if (file.copy(target))
        return true;
    *reason = file.errorString();
    return false;
}

/** Writes all of \a block; a disk that takes only a part of it tells why when it is given the rest. */
static bool writeBlock(QFile *file, const char *block, qint64 size)
{
    while (size > 0) {
        const qint64 written = file->write(block, size);
        if (written <= 0)
            return false;
        block += written;
        size -= written;
    }
    return true;
}

/** Writes a copy of \a source to \a target and brings it onto the disk. */
static bool stage(const QString &source, const QString &target, QString *reason)
{
    QFile from(source);
    QFile to(target);
    if (!from.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        *reason = from.errorString();
        return false;
    }
    if (!to.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        *reason = to.errorString();
        return false;
    }
    QByteArray block(COPY_BLOCK, Qt::Uninitialized);
    qint64 size = 0;
    while ((size = from.read(block.data(), block.size())) > 0) {
        if (!writeBlock(&to, block.constData(), size)) {
            *reason = to.errorString();
            return false;
        }
    }
    if (size < 0) {
        *reason = from.errorString();
        return false;
    }
    to.setPermissions(from.permissions());
    return FileStore::sync(&to, reason);
}

ReplaceResult replace(const QString &source, const QString &target, QString *reason)
{
    if (QFileInfo::exists(target) && !FileStore::canBeDeleted(target, reason))
        return ReplaceResult::TargetIsProtected;

    // Named after the process, so that two processes that save at the same time do not write into one file.
    const QString staged = QStringLiteral("%1.%2.save").arg(target).arg(QCoreApplication::applicationPid());
    {
        const ReadLock lock(source);
        *reason = lock.error();
        if (!reason->isEmpty() || !stage(source, staged, reason)) {
            QFile::remove(staged);
            return ReplaceResult::Failed;
        }
    }

    // A journal of the old file would be applied to the new one. It is honoured before it is deleted, because
    // the old file may still be the one that stays.
    {
        const ReadLock lock(target);
    }
    if (!removeAll(journals(target), reason)) {
        QFile::remove(staged);
        return ReplaceResult::Failed;
    }

    const FileStore::ReplaceResult result = FileStore::replace(staged, target, reason);
    if (result != FileStore::ReplaceResult::Done) {
        QFile::remove(staged);
        return result == FileStore::ReplaceResult::TargetIsProtected ? ReplaceResult::TargetIsProtected
                                                                     : ReplaceResult::Failed;
    }
    FileStore::syncFolder(QFileInfo(target).absolutePath());
    return ReplaceResult::Done;
}

} // namespace DestinationFiles
} // namespace Kyte
