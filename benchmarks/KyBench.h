#pragma once

#include "KyBenchSystem.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

namespace Kyte {
namespace Bench {

/** What is asked of a measurement: it must stay below \a required and should stay below \a aim. */
struct Limits
{
    double required = 0;
    double aim = 0;
};

/** A line of the table: what was measured, and the absolute values that it comes from, in \a unit. */
struct Row
{
    QString name;
    double measured = 0;
    Limits limits;
    double subject = 0;
    double reference = 0;
    QString unit;
};

/** The milliseconds of processor time that \a work takes. */
template<typename Work>
double cpuTime(Work &&work)
{
    const double begin = cpuMilliseconds();
    work();
    return cpuMilliseconds() - begin;
}

/**
 * The measurements of one program, or of all. A benchmark is a program that hands two sides of a comparison,
 * which it has found to give equal results, to ratio() and ends with finish():
 *
 * @code{.cpp}
 * int main(int argc, char *argv[])
 * {
 *     QCoreApplication application(argc, argv);
 *     Kyte::Bench::Report report;
 *     report.ratio(QStringLiteral("ours / theirs"), {1.8, 1.3}, timeOurs, timeTheirs);
 *     return report.finish(application.arguments());
 * }
 * @endcode
 */
class Report
{
public:
    /** One round of one side: prepares, works, and answers what the work alone took. */
    using Side = std::function<double()>;

    /**
     * Measures \a subject / \a reference: medians of rounds in which the two take turns. \a unit is that of
     * what a side answers.
     */
    void ratio(const QString &name,
               const Limits &limits,
               const Side &subject,
               const Side &reference,
               const QString &unit = QStringLiteral("ms"));
    /** Measures \a subject alone: a median of rounds. The reference of the row is what is required. */
    void value(const QString &name, const QString &unit, const Limits &limits, const Side &subject);

    /** Adds the rows of a file that another report wrote; false when it cannot be read. */
    bool appendFile(const QString &path);

    /**
     * Prints the table, and writes it as JSON where \a arguments say "--json FILE". Answers the exit code: 1
     * when a required value is missed by more than a quarter, which noise does not explain, 2 when FILE
     * cannot be written.
     */
    int finish(const QStringList &arguments) const;

private:
    void print() const;
    bool writeFile(const QString &path) const;
    int exitCode() const;

    QVector<Row> m_rows;
};

/** Ends the program unless the two sides of a comparison gave equal results. */
void requireEqual(bool equal, const char *what);

} // namespace Bench
} // namespace Kyte
