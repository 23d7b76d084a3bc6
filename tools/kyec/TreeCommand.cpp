#include "KyecArguments.h"
#include "KyecCommand.h"
#include "KyecOutput.h"
#include "MediaTree.h"
#include "TextTable.h"
#include "TreeFollower.h"

#include <KyFileSystemModel.h>

#include <QCoreApplication>

#include <algorithm>

namespace Kyte {

static const QString FILTER = QStringLiteral("filter");
static const QString EXCLUDE = QStringLiteral("exclude");
static const QString FOLLOW = QStringLiteral("follow");

static void addOptions(KyecArguments *arguments)
{
    arguments->addOption(FILTER,
                         QStringLiteral("Show only the files whose names match this wildcard (\"*.mp4\"). "
                                        "May be given several times; folders are always shown."),
                         QStringLiteral("PATTERN"));
    arguments->addOption(EXCLUDE,
                         QStringLiteral("Leave out files and folders whose whole names match this regular "
                                        "expression, in any letter case. May be given several times."),
                         QStringLiteral("PATTERN"));
    arguments->addOption(FOLLOW,
                         QStringLiteral("Go on with the changes, until interrupted: \"+\" for a new "
                                        "entry, \"-\" for one that is gone, \"*\" for a file with "
                                        "other content."));
}

static QString treeText(const QString &root, const QVector<MediaEntry> &entries)
{
    QString text = TextTable::printable(QDir::toNativeSeparators(root)) + QLatin1Char('\n');
    for (const MediaEntry &entry : entries)
        text += entry.lead + entry.text + QLatin1Char('\n');
    return text;
}

/** Prints the tree when it is watched already, so that no change falls in between. */
static int follow(KyFileSystemModel *model, const QVector<MediaEntry> &entries)
{
    if (!model->canInstallFileSystemWatcher())
        return fail(QStringLiteral("The folder cannot be watched: %1")
                        .arg(QDir::toNativeSeparators(model->rootPath())));
    const TreeFollower follower(model, entries);
    print(treeText(model->rootPath(), entries));
    return finishOutput() ? QCoreApplication::exec() : int(Exit_Failure);
}

int runTree(KyecArguments &arguments)
{
    addOptions(&arguments);
    if (!arguments.parse(1))
        return arguments.exitCode();
    const QString folder = arguments.positional().value(0);
    if (folder.isEmpty())
        return arguments.wrongUsage(QStringLiteral("Which folder?"));
    const QStringList exclusions = arguments.values(EXCLUDE);
    for (const QString &pattern : exclusions) {
        if (!QRegExp(pattern).isValid())
            return arguments.wrongUsage(QStringLiteral("'%1' is no regular expression.").arg(pattern));
    }

    KyFileSystemModel model;
    model.setFilter(model.filter() | QDir::AllDirs); // filters hide folders, too, unless all are wanted
    model.setNameFilters(arguments.values(FILTER));
    model.setNameFiltersInRoot(arguments.values(FILTER));
    model.setExclusionNamePattern(exclusions);
    model.setUseFileSystemWatcher(arguments.isSet(FOLLOW));
    model.setRootPath(folder);
    if (!QFileInfo(folder).isReadable() || !model.rootIndex().internalPointer())
        return fail(QStringLiteral("The folder cannot be read: %1").arg(QDir::toNativeSeparators(folder)));

    const QVector<MediaEntry> entries = readMediaTree(&model);
    if (arguments.isSet(FOLLOW))
        return follow(&model, entries);
    print(treeText(model.rootPath(), entries));
    return Exit_Success;
}

} // namespace Kyte
