#pragma once

#include <QString>

#include <memory>

class QSqlDatabase;

namespace Kyte {

/** Copying and replacing of database files, as safe from crashes and full disks as the system allows. */
namespace DestinationFiles {

/**
 * Keeps other processes from writing to a database file while the object lives. Taking the lock also honours
 * a journal that a crashed process left beside the file, so that the bytes of the file alone are the whole
 * database. A missing file is not created. A file that is no database is simply not locked.
 */
class ReadLock
{
    Q_DISABLE_COPY(ReadLock)

public:
    explicit ReadLock(const QString &path);
    ~ReadLock();

    /**
     * Why the bytes of the file may be those of an unfinished change: another process is writing to it, or
     * the journal of one that crashed cannot be honoured. Empty when all is well.
     */
    QString error() const;

private:
    QString m_connectionName;
    QString m_error;
    std::unique_ptr<QSqlDatabase> m_database;
};

/** Deletes a database file, where it exists, and the journals beside it; on failure \a reason tells why. */
bool remove(const QString &path, QString *reason);

/** Copies the database \a source to \a target, which must not exist. */
bool copy(const QString &source, const QString &target, QString *reason);

enum class ReplaceResult {
    Done,
    TargetIsProtected, ///< the old file may not be taken away
    Failed
};

/**
 * Puts a copy of the database \a source in the place of \a target. The copy is completed beside \a target and
 * then takes its place in one step, so that whatever happens either the old or the new content is there.
 */
ReplaceResult replace(const QString &source, const QString &target, QString *reason);

} // namespace DestinationFiles
} // namespace Kyte
