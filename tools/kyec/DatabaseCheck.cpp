#include "DatabaseCheck.h"

#include <KyDestination.h>

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace Kyte {

static const QString CONNECTION_NAME = QStringLiteral("kyec_verify");

/** Each selects a text for every row that must not be. */
static const char *const ROW_CHECKS[] = {
    "SELECT printf('channel %s: the id is negative', id) FROM channel_tbl WHERE id < 0",
    "SELECT printf('group %s: the id is negative', id) FROM group_tbl WHERE id < 0",
    "SELECT printf('destination %s: the id is negative', id) FROM destination_tbl WHERE id < 0",

    "SELECT printf('channel %s has no name', id) FROM channel_tbl WHERE trim(ifnull(name, '')) = ''",
    "SELECT printf('group %s has no name', id) FROM group_tbl WHERE trim(ifnull(name, '')) = ''",
    "SELECT printf('destination %s has no name', id) FROM destination_tbl WHERE trim(ifnull(name, '')) = ''",

    "SELECT printf('%d channels have the name \"%s\"', count(*), name) FROM channel_tbl"
    " GROUP BY name HAVING count(*) > 1",
    "SELECT printf('%d groups have the name \"%s\"', count(*), name) FROM group_tbl"
    " GROUP BY name HAVING count(*) > 1",
    "SELECT printf('%d destinations have the name \"%s\"', count(*), name) FROM destination_tbl"
    " GROUP BY name HAVING count(*) > 1",

    "SELECT printf('destination %s \"%s\" is in channel %s, which does not exist', id, name, channel_id)"
    " FROM destination_tbl WHERE channel_id IS NOT -1 AND channel_id NOT IN (SELECT id FROM channel_tbl)",
    "SELECT printf('destination %s \"%s\" is in group %s, which does not exist', id, name, group_id)"
    " FROM destination_tbl WHERE group_id IS NOT -1 AND group_id NOT IN (SELECT id FROM group_tbl)",
};

/** Takes every row of \a statement for a problem, but for the one that says "ok". */
static void collect(const QSqlDatabase &database, const QString &statement, QStringList *problems)
{
    QSqlQuery query(database);
    if (!query.exec(statement))
        problems->append(query.lastError().text());
    while (query.next()) {
        const QString result = query.value(0).toString();
        if (result != QLatin1String("ok"))
            problems->append(result);
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
    collect(database, QStringLiteral("PRAGMA integrity_check"), problems);
    if (!problems->isEmpty())
        return; // what a damaged file answers means nothing
    for (const char *check : ROW_CHECKS)
        collect(database, QLatin1String(check), problems);
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
