#pragma once

#include <QByteArray>
#include <QString>

struct sqlite3;
struct sqlite3_stmt;

namespace Kyte {
namespace Bench {

/**
 * SQLite's C interface with nothing between: what the library's way through QtSql is measured against. A
 * failure ends the program; a row that a statement refuses is passed over, as the library does.
 */
class Sqlite
{
    Q_DISABLE_COPY(Sqlite)

public:
    explicit Sqlite(const QString &path);
    ~Sqlite();

    void execute(const char *statement);
    sqlite3 *handle() const;

private:
    sqlite3 *m_database = nullptr; // owned
};

/** A prepared statement. Texts are bound without a copy and have to live until it was stepped. */
class SqliteStatement
{
    Q_DISABLE_COPY(SqliteStatement)

public:
    SqliteStatement(const Sqlite &database, const char *statement);
    ~SqliteStatement();

    /** Values for the "?", of which the first is number 1. */
    void bind(int number, int value);
    void bind(int number, const QString &value);
    /** Whether there is a (next) row. */
    bool step();
    void reset();

    /** Values of the row; the first column is number 0. */
    int integer(int column) const;
    QString text(int column) const;
    int columnCount() const;

private:
    sqlite3_stmt *m_statement = nullptr; // owned
};

/** All rows of all tables of the database \a path with the types of their values, for a comparison. */
QByteArray dump(const QString &path);

} // namespace Bench
} // namespace Kyte
