#include "KySqlite.h"

#include <QFile>

#include <sqlite3.h>

namespace Kyte {
namespace Bench {

static void check(sqlite3 *database, int result)
{
    if (result != SQLITE_OK)
        qFatal("SQLite: %s", sqlite3_errmsg(database));
}

Sqlite::Sqlite(const QString &path)
{
    check(m_database, sqlite3_open(QFile::encodeName(path).constData(), &m_database));
}

Sqlite::~Sqlite()
{
    check(m_database, sqlite3_close(m_database));
}

void Sqlite::execute(const char *statement)
{
    check(m_database, sqlite3_exec(m_database, statement, nullptr, nullptr, nullptr));
}

sqlite3 *Sqlite::handle() const
{
    return m_database;
}

SqliteStatement::SqliteStatement(const Sqlite &database, const char *statement)
{
    check(database.handle(), sqlite3_prepare_v2(database.handle(), statement, -1, &m_statement, nullptr));
}

SqliteStatement::~SqliteStatement()
{
    sqlite3_finalize(m_statement);
}

void SqliteStatement::bind(int number, int value)
{
    sqlite3_bind_int(m_statement, number, value);
}

void SqliteStatement::bind(int number, const QString &value)
{
    sqlite3_bind_text16(m_statement, number, value.utf16(), value.size() * int(sizeof(QChar)), SQLITE_STATIC);
}

bool SqliteStatement::step()
{
    return sqlite3_step(m_statement) == SQLITE_ROW;
}

void SqliteStatement::reset()
{
    sqlite3_reset(m_statement);
}

int SqliteStatement::integer(int column) const
{
    return sqlite3_column_int(m_statement, column);
}

QString SqliteStatement::text(int column) const
{
    const auto text = static_cast<const QChar *>(sqlite3_column_text16(m_statement, column));
    return QString(text, sqlite3_column_bytes16(m_statement, column) / int(sizeof(QChar)));
}

int SqliteStatement::columnCount() const
{
    return sqlite3_column_count(m_statement);
}

QByteArray dump(const QString &path)
{
    static const char *const STATEMENTS[] = {
        "SELECT quote(id), quote(name), quote(posindex), quote(updatetime) FROM channel_tbl ORDER BY id",
        "SELECT quote(id), quote(name), quote(posindex), quote(updatetime) FROM group_tbl ORDER BY id",
        "SELECT quote(id), quote(name), quote(posindex), quote(address), quote(shared), quote(user), "
        "quote(password),"
        " quote(channel_id), quote(group_id), quote(updatetime) FROM destination_tbl ORDER BY id"};

    const Sqlite database(path);
    QByteArray rows;
    for (const char *text : STATEMENTS) {
        SqliteStatement statement(database, text);
        while (statement.step()) {
            for (int column = 0; column < statement.columnCount(); ++column)
                rows += statement.text(column).toUtf8() + '|';
            rows += '\n';
        }
    }
    return rows;
}

} // namespace Bench
} // namespace Kyte
