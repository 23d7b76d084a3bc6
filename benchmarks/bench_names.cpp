#include "KyBench.h"

#include <KyEditorCommon.h>

#include <QCoreApplication>
#include <QMap>

using namespace Kyte;

// Both sides make the same names unique in maps of the same names. The reference tries one counter after the
// other.

using Names = QMap<QString, int>;
using CheckName = QString (*)(QString name, int value, Names *usedNames);

static const QString BASE = QStringLiteral("Screen");

/** For a name without a counter. */
static QString probeOneByOne(QString name, int value, Names *usedNames)
{
    QString unique = name;
    for (int number = 1; usedNames->contains(unique); ++number)
        unique = name + QLatin1String(" (") + QString::number(number) + QLatin1Char(')');
    usedNames->insert(unique, value);
    return unique;
}

static Names namesOfBase(int count)
{
    Names names;
    names.insert(BASE, 0);
    for (int number = 1; number < count; ++number)
        names.insert(QStringLiteral("%1 (%2)").arg(BASE).arg(number), number);
    return names;
}

static void measureOneCall(Bench::Report *report, int count)
{
    Names names = namesOfBase(count);
    QString unique;
    const auto round = [&](CheckName check) {
        const double time = Bench::cpuTime([&] {
            unique = check(BASE, count, &names);
        });
        names.remove(unique);
        return time;
    };
    round(KyEditorCommon::checkName);
    const QString expected = unique;
    round(probeOneByOne);
    Bench::requireEqual(unique == expected, "name");

    report->ratio(
        QStringLiteral("unique name among %1 of its base / probing one by one").arg(count), {0.2, 0.12},
        [&] {
            return round(KyEditorCommon::checkName);
        },
        [&] {
            return round(probeOneByOne);
        });
}

static void measureBuilding(Bench::Report *report, int count)
{
    Names names;
    const auto round = [&](CheckName check) {
        names.clear();
        return Bench::cpuTime([&] {
            for (int i = 0; i < count; ++i)
                check(BASE, i, &names);
        });
    };
    round(KyEditorCommon::checkName);
    const Names expected = names;
    round(probeOneByOne);
    Bench::requireEqual(names == expected, "names");

    report->ratio(
        QStringLiteral("%1 unique names of one base / probing one by one").arg(count), {0.1, 0.05},
        [&] {
            return round(KyEditorCommon::checkName);
        },
        [&] {
            return round(probeOneByOne);
        });
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    Bench::Report report;
    measureOneCall(&report, 10000);
    measureBuilding(&report, 5000);
    return report.finish(QCoreApplication::arguments());
}
