#include "ConversionRun.h"
#include "KyecArguments.h"
#include "KyecCommand.h"
#include "KyecOutput.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QLoggingCategory>

namespace Kyte {

static const QString OUT = QStringLiteral("out");
static const QString VIDEO = QStringLiteral("video");

static QString resultText(const ConversionRun &run)
{
    QString text =
        QStringLiteral("%1 in %2\n")
            .arg(counted(run.files().size(), QStringLiteral("file")), QDir::toNativeSeparators(run.folder()));
    const QStringList files = run.files();
    for (const QString &file : files)
        text += QStringLiteral("  %1\n").arg(file);
    return text;
}

static QString resultJson(const ConversionRun &run)
{
    const QJsonObject result{{QStringLiteral("folder"), run.folder()},
                             {QStringLiteral("files"), QJsonArray::fromStringList(run.files())}};
    return jsonText(QJsonDocument(result));
}

int runConvert(KyecArguments &arguments)
{
    arguments.addOption(OUT,
                        QStringLiteral("The folder to write to; NAME_ppt in the current one if not given."),
                        QStringLiteral("DIR"));
    arguments.addOption(VIDEO, QStringLiteral("Make a video in place of an image for each slide."));
    arguments.addJsonOption();
    if (!arguments.parse(1))
        return arguments.exitCode();
    const QString file = arguments.positional().value(0);
    if (file.isEmpty())
        return arguments.wrongUsage(QStringLiteral("Which presentation?"));
    if (arguments.isSet(OUT) && arguments.value(OUT).isEmpty())
        return arguments.wrongUsage(QStringLiteral("--out needs a folder."));

    // What the library notes down about the converter's process is there for who asks for it.
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    ConversionRun run(QFileInfo(file).absoluteFilePath(),
                      arguments.isSet(OUT) ? arguments.value(OUT) : QString(),
                      arguments.isSet(VIDEO) ? ConversionRun::Output::Video : ConversionRun::Output::Images);
    if (!run.run())
        return fail(run.lastErrorMessage());
    print(arguments.isJsonWanted() ? resultJson(run) : resultText(run));
    return Exit_Success;
}

} // namespace Kyte
