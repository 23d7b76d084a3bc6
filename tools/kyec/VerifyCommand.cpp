#include "DatabaseCheck.h"
#include "DestinationReader.h"
#include "KyecArguments.h"
#include "KyecCommand.h"
#include "KyecOutput.h"

#include <KyDestination.h>

#include <QDir>
#include <QFileInfo>

namespace Kyte {

static const QString SOUND = QStringLiteral("sound");

static void printLine(const QString &what, const QString &result)
{
    print(QStringLiteral("%1 %2\n").arg(what + QLatin1Char(':'), -13).arg(result));
}

/** Prints a line of the report, and as errors what is wrong; false when something is. */
static bool report(const QString &what, const QStringList &problems, const QString &good)
{
    printLine(what, problems.isEmpty() ? good : counted(problems.size(), QStringLiteral("problem")));
    for (const QString &problem : problems)
        printError(QStringLiteral("%1: %2").arg(what, problem));
    return problems.isEmpty();
}

int runVerify(KyecArguments &arguments)
{
    arguments.addConfigOption();
    if (!arguments.parse())
        return arguments.exitCode();
    const QString channelDir = findChannelDir();
    if (channelDir.isEmpty())
        return Exit_Failure;

    const QString path = QDir(channelDir).absoluteFilePath(KyDestination::DATABASE_FILE_NAME);
    printLine(QStringLiteral("Database"), QDir::toNativeSeparators(path));
    const bool exists = QFileInfo::exists(path);
    if (!report(QStringLiteral("As it is"), exists ? findProblems(path) : QStringList(),
                exists ? SOUND : QStringLiteral("not made yet")))
        return Exit_Failure; // initialising would write into a database that somebody has to look at first

    // Normal mode: setting mode would take away the working copy of an application that is just editing.
    KyDestination destination;
    if (!openDestinations(&destination))
        return Exit_Failure;
    if (!report(QStringLiteral("Synchronised"), findProblems(path), SOUND))
        return Exit_Failure;
    const QString reserved = destination.reservedDatabaseFileHashSha1();
    const QString current = destination.currentDatabaseFileHashSha1();
    QStringList changes;
    if (current != reserved)
        changes.append(
            QStringLiteral("the file was changed meanwhile, from %1 to %2").arg(reserved, current));
    return report(QStringLiteral("Fingerprint"), changes, current) ? Exit_Success : Exit_Failure;
}

} // namespace Kyte
