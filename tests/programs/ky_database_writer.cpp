/*
 * ky_database_writer FILE [exclusive]: takes a write lock on an SQLite database, prints "ready" and holds the
 * lock until the standard input ends. An exclusive one keeps readers out as well. Nothing is changed.
 */

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <cstdio>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
    database.setDatabaseName(application.arguments().value(1));
    QSqlQuery query(database.open() ? QSqlQuery(database) : QSqlQuery());
    const bool isExclusive = application.arguments().value(2) == QLatin1String("exclusive");
    if (!query.exec(isExclusive ? QStringLiteral("BEGIN EXCLUSIVE") : QStringLiteral("BEGIN IMMEDIATE"))) {
        std::fprintf(stderr, "%s\n", qPrintable(database.lastError().text() + query.lastError().text()));
        return 1;
    }
    std::puts("ready");
    std::fflush(stdout);
    while (std::getchar() != EOF) { }
    query.exec(QStringLiteral("ROLLBACK"));
    return 0;
}
