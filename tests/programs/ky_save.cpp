/*
 * Edits the destinations of the environment that KYTE_CONFIG_FILE names in setting mode and saves them.
 * Prints "ready" before saving, then "saved" or "failed" and the error text. With --before COMMAND, a shell
 * runs COMMAND between the edits and "ready". Whoever traces the program finds saving between the looks for
 * two files that never exist, and the answer once more in the name of the second: a program whose writes are
 * made to fail cannot print it.
 */

#include <KyDestination.h>

#include <QCoreApplication>
#include <QFileInfo>

#include <cstdio>
#include <cstdlib>

using Kyte::KyDestination;

static bool edit(KyDestination *destination)
{
    int nightShift = -1;
    if (!destination->addNewGroup(QStringLiteral("Night shift"), &nightShift) || !destination->removeGroup(0)
        || !destination->renameGroup(1, QStringLiteral("Weekend")))
        return false;
    QList<int> ids;
    for (int id = 0; id < 100; id += 2)
        ids.append(id);
    return destination->changeDestinationCategory(ids, nightShift, KyDestination::Data_Group) == ids
        && destination->changeDestinationCategory(ids, 1, KyDestination::Data_Channel) == ids;
}

static void print(const QString &line)
{
    std::puts(qUtf8Printable(line));
    std::fflush(stdout);
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    KyDestination destination;
    destination.setSettingMode(true);
    if (!destination.init() || !edit(&destination)) {
        print(QStringLiteral("unprepared ") + destination.lastErrorMessage());
        return 1;
    }
    if (arguments.value(1) == QLatin1String("--before")
        && std::system(qUtf8Printable(arguments.value(2))) != 0)
        return 1;

    print(QStringLiteral("ready"));
    QFileInfo::exists(QStringLiteral("kyte-save-begins"));
    const bool saved = destination.saveData();
    const QString answer =
        saved ? QStringLiteral("saved") : QStringLiteral("failed ") + destination.lastErrorMessage();
    QFileInfo::exists(QStringLiteral("kyte-save-ended ") + answer);
    print(answer);
    return 0;
}
