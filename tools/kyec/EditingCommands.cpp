#include "KyecArguments.h"
#include "KyecCommand.h"
#include "KyecOutput.h"

#include <KyEditorCommon.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QTextStream>

namespace Kyte {

static const QString USED = QStringLiteral("used");
static const QString PLUS = QStringLiteral("plus");

/** Reads the lines of the file \a path; false, with the matter said, when it cannot be read. */
static bool readNames(const QString &path, QMap<QString, int> *names)
{
    QFile file(path);
    if (QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly)) { // a device might never end
        QTextStream stream(&file);
        stream.setCodec("UTF-8");
        QString line;
        while (stream.readLineInto(&line))
            names->insert(line, 0);
        if (file.error() == QFileDevice::NoError)
            return true;
    }
    printError(QStringLiteral("The file cannot be read: %1").arg(QDir::toNativeSeparators(path)));
    return false;
}

int runUniqueName(KyecArguments &arguments)
{
    arguments.addOption(USED, QStringLiteral("The names in use, one a line, in UTF-8."),
                        QStringLiteral("FILE"));
    if (!arguments.parse(1))
        return arguments.exitCode();
    if (arguments.positional().isEmpty())
        return arguments.wrongUsage(QStringLiteral("Which name?"));
    if (arguments.value(USED).isEmpty())
        return arguments.wrongUsage(QStringLiteral("--used FILE is needed."));

    QMap<QString, int> names;
    if (!readNames(arguments.value(USED), &names))
        return Exit_Failure;
    print(KyEditorCommon::checkName(arguments.positional().constFirst(), 0, &names) + QLatin1Char('\n'));
    return Exit_Success;
}

int runDuration(KyecArguments &arguments)
{
    arguments.addOption(PLUS, QStringLiteral("Mark it as open-ended."));
    arguments.allowNegativeNumbers();
    if (!arguments.parse(1))
        return arguments.exitCode();
    if (arguments.positional().isEmpty())
        return arguments.wrongUsage(QStringLiteral("How many seconds?"));
    const QString text = arguments.positional().constFirst();
    bool ok = false;
    const double seconds = text.toDouble(&ok);
    if (!ok)
        return arguments.wrongUsage(QStringLiteral("'%1' is no number of seconds.").arg(text));

    print(KyEditorCommon::getDurationString(seconds, arguments.isSet(PLUS)) + QLatin1Char('\n'));
    return Exit_Success;
}

int runWatchProbe(KyecArguments &arguments)
{
    if (!arguments.parse(1))
        return arguments.exitCode();
    const QString folder = arguments.positional().value(0);
    if (folder.isEmpty())
        return arguments.wrongUsage(QStringLiteral("Which folder?"));

    const bool isPossible = KyEditorCommon::tryInstallFileWatcher(folder);
    print(isPossible ? QStringLiteral("can be watched\n") : QStringLiteral("cannot be watched\n"));
    return isPossible ? Exit_Success : Exit_Failure;
}

} // namespace Kyte
