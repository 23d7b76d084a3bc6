#include "KyBench.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

#include <algorithm>

namespace Kyte {
namespace Bench {

static const int MIN_ROUNDS = 7;
static const int MAX_ROUNDS = 101;
static const double MIN_TIME = 1500; // milliseconds of both sides together: short work gets more rounds
static const double TOLERANCE = 1.25;

static QTextStream &output()
{
    static QTextStream stream(stdout);
    return stream;
}

static void showProgress(const QString &text)
{
    QTextStream(stderr) << text << '\n';
}

static double median(QVector<double> values)
{
    const auto middle = values.begin() + values.size() / 2;
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

static QJsonObject toJson(const Row &row)
{
    return {{QStringLiteral("name"), row.name},
            {QStringLiteral("measured"), row.measured},
            {QStringLiteral("required"), row.limits.required},
            {QStringLiteral("aim"), row.limits.aim},
            {QStringLiteral("subject"), row.subject},
            {QStringLiteral("reference"), row.reference},
            {QStringLiteral("unit"), row.unit}};
}

static Row fromJson(const QJsonObject &object)
{
    return {object[QStringLiteral("name")].toString(),
            object[QStringLiteral("measured")].toDouble(),
            {object[QStringLiteral("required")].toDouble(), object[QStringLiteral("aim")].toDouble()},
            object[QStringLiteral("subject")].toDouble(),
            object[QStringLiteral("reference")].toDouble(),
            object[QStringLiteral("unit")].toString()};
}

static QString verdict(const Row &row)
{
    if (row.measured <= row.limits.aim)
        return QStringLiteral("aim reached");
    return row.measured <= row.limits.required ? QStringLiteral("good") : QStringLiteral("MISSED");
}

static QString number(double value, int decimals = 2)
{
    return QString::number(value, 'f', decimals);
}

void Report::ratio(const QString &name,
                   const Limits &limits,
                   const Side &subject,
                   const Side &reference,
                   const QString &unit)
{
    showProgress(QStringLiteral("measuring ") + name);
    subject(); // the first round of either side pays for cold caches
    reference();
    QVector<double> subjects;
    QVector<double> references;
    double total = 0;
    while (subjects.size() < MIN_ROUNDS || (total < MIN_TIME && subjects.size() < MAX_ROUNDS)) {
        subjects.append(subject());
        references.append(reference());
        total += subjects.constLast() + references.constLast();
    }
    const double ours = median(subjects);
    const double theirs = median(references);
    m_rows.append({name, ours / theirs, limits, ours, theirs, unit});
    showProgress(QStringLiteral("  %1").arg(m_rows.constLast().measured, 0, 'f', 3));
}

void Report::value(const QString &name, const QString &unit, const Limits &limits, const Side &subject)
{
    showProgress(QStringLiteral("measuring ") + name);
    QVector<double> subjects;
    while (subjects.size() < MIN_ROUNDS)
        subjects.append(subject());
    const double ours = median(subjects);
    m_rows.append({name, ours, limits, ours, limits.required, unit});
}

bool Report::appendFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    const QJsonArray rows = document.array();
    for (const QJsonValue &row : rows)
        m_rows.append(fromJson(row.toObject()));
    return document.isArray();
}

int Report::finish(const QStringList &arguments) const
{
    print();
    const int option = arguments.indexOf(QStringLiteral("--json"));
    if (option < 0 || writeFile(arguments.value(option + 1)))
        return exitCode();
    QTextStream(stderr) << "cannot write the file that --json names\n";
    return 2;
}

void Report::print() const
{
    int width = 0;
    for (const Row &row : m_rows)
        width = std::max(width, row.name.size());
    output() << QStringLiteral("name").leftJustified(width)
             << "  measured  required    aim    subject  reference  unit\n";
    for (const Row &row : m_rows) {
        output() << row.name.leftJustified(width) << number(row.measured).rightJustified(10)
                 << number(row.limits.required).rightJustified(10) << number(row.limits.aim).rightJustified(7)
                 << number(row.subject).rightJustified(11) << number(row.reference).rightJustified(11) << "  "
                 << row.unit.leftJustified(4) << "  " << verdict(row) << '\n';
    }
    output() << "load average: " << QString::fromStdString(loadAverage()) << '\n' << Qt::flush;
}

bool Report::writeFile(const QString &path) const
{
    QJsonArray rows;
    for (const Row &row : m_rows)
        rows.append(toJson(row));
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        && file.write(QJsonDocument(rows).toJson()) > 0 && file.flush();
}

int Report::exitCode() const
{
    const bool isMissed = std::any_of(m_rows.cbegin(), m_rows.cend(), [](const Row &row) {
        return row.measured > row.limits.required * TOLERANCE;
    });
    return isMissed ? 1 : 0;
}

void requireEqual(bool equal, const char *what)
{
    if (!equal)
        qFatal("The two sides do not give the same %s: their times cannot be compared.", what);
}

} // namespace Bench
} // namespace Kyte
