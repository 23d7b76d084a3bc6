#include "DatabaseCheck.h"

#include <KyDestination.h>

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace Kyte {

static const QString CONNECTION_NAME = QStringLiteral("kyec_verify");

/** Rows that must not be: each gives \a text with the columns of \a statement in the places of %1, %2 and so
 * on. */
struct RowCheck
{
    const char *statement;
    const char *text;
};

static const RowCheck ROW_CHECKS[] = {
    {"SELECT 'channel', id FROM channel_tbl WHERE id < 0"
     " UNION ALL SELECT 'group', id FROM group_tbl WHERE id < 0"
     " UNION ALL SELECT 'destination', id FROM destination_tbl WHERE id < 0",
     "%1 %2: the id is negative"},
    {"SELECT 'channel', id FROM channel_tbl WHERE trim(ifnull(name, '')) = ''"
     " UNION ALL SELECT 'group', id FROM group_tbl WHERE trim(ifnull(name, '')) = ''"
     " UNION ALL SELECT 'destination', id FROM destination_tbl WHERE trim(ifnull(name, '')) = ''",
     "%1 %2 has no name"},
    {"SELECT 'channels', count(*), name FROM channel_tbl GROUP BY name HAVING count(*) > 1"
     " UNION ALL SELECT 'groups', count(*), name FROM group_tbl GROUP BY name HAVING count(*) > 1"
     " UNION ALL SELECT 'destinations', count(*), name FROM destination_tbl GROUP BY name HAVING count(*) > "
     "1",
     "%2 %1 have the name \"%3\""},
    {"SELECT id, name, channel_id FROM destination_tbl"
     " WHERE channel_id IS NOT -1 AND channel_id NOT IN (SELECT id FROM channel_tbl)",
     "destination %1 \"%2\" is in channel %3, which does not exist"},
    {"SELECT id, name, group_id FROM destination_tbl"
     " WHERE group_id IS NOT -1 AND group_id NOT IN (SELECT id FROM group_tbl)",
     "destination %1 \"%2\" is in group %3, which does not exist"},
};

static void checkIntegrity(const QSqlDatabase &database, QStringList *problems)
{
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("PRAGMA integrity_check")))
        problems->append(query.lastError().text());
    while (query.next()) {
        const QString result = query.value(0).toString();
        if (result != QLatin1String("ok"))
            problems->append(result);
    }
}

static void checkRows(const QSqlDatabase &database, const RowCheck &check, QStringList *problems)
{
    QSqlQuery query(database);
    if (!query.exec(QLatin1String(check.statement)))
        problems->append(query.lastError().text());
    while (query.next()) {
        // All at once: a name may contain a "%1" of its own.
        const QString text = QLatin1String(check.text);
        const QString first = query.value(0).toString();
        const QString second = query.value(1).toString();
        problems->append(text.contains(QLatin1String("%3"))
                             ? text.arg(first, second, query.value(2).toString())
                             : text.arg(first, second));
    }
}

static void checkPasswords(const QSqlDatabase &database, QStringList *problems)
{
    // What does not decipher gives an empty text, as an enciphered empty password does; that one has a
    // certain length.
    const int emptyLength = KyDestination::encryptString(QString()).length();
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("SELECT id, name, password FROM destination_tbl WHERE password <> ''")))
        problems->append(query.lastError().text());
    while (query.next()) {
        const QString stored = query.value(2).toString();
        if (stored.length() != emptyLength && KyDestination::decryptString(stored).isEmpty())
            problems->append(QStringLiteral("destination %1 \"%2\": the password cannot be deciphered")
                                 .arg(query.value(0).toString(), query.value(1).toString()));
    }
}

static void checkDatabase(const QString &path, QStringList *problems)
{
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), CONNECTION_NAME);
    database.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    database.setDatabaseName(path);
    if (!database.open()) {
        problems->append(database.lastError().text());
        return;
    }
    checkIntegrity(database, problems);
    if (!problems->isEmpty())
        return; // what a damaged file answers means nothing
    for (const RowCheck &check : ROW_CHECKS)
        checkRows(database, check, problems);
    checkPasswords(database, problems);
}

QStringList findProblems(const QString &path)
{
    QStringList problems;
    checkDatabase(path, &problems);
    QSqlDatabase::removeDatabase(CONNECTION_NAME); // no handle on it is left here
    return problems;
}

} // namespace Kyte
