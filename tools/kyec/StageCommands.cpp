#include "KyecArguments.h"
#include "KyecCommand.h"
#include "KyecOutput.h"
#include "StageFiles.h"
#include "TextTable.h"

#include <KyScreen.h>
#include <KyStage.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace Kyte {

static const QString OUT = QStringLiteral("out");
static const QString SIZE = QStringLiteral("size");
static const QString MONITOR = QStringLiteral("monitor");
static const int MAX_SIDE = 16384; // pixels

static void addMonitorOption(KyecArguments &arguments)
{
    arguments.addOption(MONITOR,
                        QStringLiteral("The size of the monitor that the stages are for, as in 1920x1080; "
                                       "without it this machine's."),
                        QStringLiteral("WxH"));
}

/** Reads "1920x1080"; false, with the matter said, for any other text. */
static bool readSize(KyecArguments &arguments, const QString &option, QSize *size)
{
    static const QRegularExpression pattern(QStringLiteral("\\A([0-9]{1,5})x([0-9]{1,5})\\z"));
    const QRegularExpressionMatch match = pattern.match(arguments.value(option));
    *size = QSize(match.captured(1).toInt(), match.captured(2).toInt());
    if (!size->isEmpty() && size->width() <= MAX_SIDE && size->height() <= MAX_SIDE)
        return true;
    arguments.wrongUsage(
        QStringLiteral("--%1 needs a width and a height of 1 to %2, as in 1920x1080, not '%3'.")
            .arg(option, QString::number(MAX_SIDE), arguments.value(option)));
    return false;
}

static bool readMonitor(KyecArguments &arguments, QSize *size)
{
    return !arguments.isSet(MONITOR) || readSize(arguments, MONITOR, size);
}

static QString typeName(ScreenType::ScreenTypes type)
{
    return type == ScreenType::Telop ? QStringLiteral("Telop") : QStringLiteral("Multimedia");
}

static QStringList numbers(const QRectF &rect)
{
    return {QString::number(rect.x()), QString::number(rect.y()), QString::number(rect.width()),
            QString::number(rect.height())};
}

static QString templatesText(const StageItems &items)
{
    TextTable table({{QStringLiteral("#"), TextTable::Right},
                     {QStringLiteral("Stage and screens"), TextTable::Left},
                     {QStringLiteral("Type"), TextTable::Left},
                     {QStringLiteral("Left"), TextTable::Right},
                     {QStringLiteral("Top"), TextTable::Right},
                     {QStringLiteral("Width"), TextTable::Right},
                     {QStringLiteral("Height"), TextTable::Right}});
    int number = 0;
    for (const auto &item : items) {
        const KyStage &stage = *item->stage();
        table.addRow(QStringList{QString::number(++number), stage.name(), QStringLiteral("Stage")}
                     + numbers(stage.rect()));
        const QList<KyScreen *> screens = stage.screenList();
        for (const KyScreen *screen : screens)
            table.addRow(
                QStringList{QString(), QStringLiteral("  ") + screen->name(), typeName(screen->type())}
                + numbers(screen->rect()));
    }
    return table.toString();
}

static QJsonArray rectToJson(const QRectF &rect)
{
    return {rect.x(), rect.y(), rect.width(), rect.height()};
}

static QJsonArray templatesToJson(const StageItems &items)
{
    QJsonArray array;
    for (const auto &item : items) {
        const KyStage &stage = *item->stage();
        QJsonArray screens;
        const QList<KyScreen *> list = stage.screenList();
        for (const KyScreen *screen : list)
            screens.append(QJsonObject{{QStringLiteral("name"), screen->name()},
                                       {QStringLiteral("type"), int(screen->type())},
                                       {QStringLiteral("rect"), rectToJson(screen->rect())}});
        array.append(QJsonObject{{QStringLiteral("number"), array.size() + 1},
                                 {QStringLiteral("title"), stage.name()},
                                 {QStringLiteral("description"), stage.description()},
                                 {QStringLiteral("options"), int(stage.options())},
                                 {QStringLiteral("rect"), rectToJson(stage.rect())},
                                 {QStringLiteral("screens"), screens}});
    }
    return array;
}

int runTemplates(KyecArguments &arguments)
{
    arguments.addOption(OUT,
                        QStringLiteral("The folder for the icons, one PNG file for each template and "
                                       "device-pixel ratio; files that are there are replaced."),
                        QStringLiteral("DIR"));
    addMonitorOption(arguments);
    arguments.addJsonOption();
    QSize monitor;
    if (!arguments.parse() || !readMonitor(arguments, &monitor))
        return arguments.exitCode();
    if (arguments.value(OUT).isEmpty())
        return arguments.wrongUsage(QStringLiteral("--out DIR is needed."));

    const StageItems items = makeStageTemplates(monitor);
    StageFiles files(arguments.value(OUT));
    int number = 0;
    for (const auto &item : items) {
        if (!files.writeIcons(*item, ++number))
            return fail(files.lastErrorMessage());
    }
    const QString folder = QFileInfo(arguments.value(OUT)).absoluteFilePath();
    if (arguments.isJsonWanted())
        print(jsonText(QJsonDocument(
            QJsonObject{{QStringLiteral("templates"), templatesToJson(items)},
                        {QStringLiteral("folder"), folder},
                        {QStringLiteral("files"), QJsonArray::fromStringList(files.names())}})));
    else
        print(templatesText(items)
              + QStringLiteral("\n%1 in %2\n")
                    .arg(counted(files.names().size(), QStringLiteral("icon")),
                         QDir::toNativeSeparators(folder)));
    return Exit_Success;
}

int runPreview(KyecArguments &arguments)
{
    arguments.addOption(SIZE, QStringLiteral("Width and height of the preview, as in 640x360."),
                        QStringLiteral("WxH"));
    arguments.addOption(OUT, QStringLiteral("The file to write; one that is there is replaced."),
                        QStringLiteral("PNG"));
    addMonitorOption(arguments);
    QSize monitor;
    QSize size;
    if (!arguments.parse(1))
        return arguments.exitCode();
    if (arguments.positional().isEmpty())
        return arguments.wrongUsage(QStringLiteral("Which template?"));
    if (!readSize(arguments, SIZE, &size) || !readMonitor(arguments, &monitor))
        return arguments.exitCode();
    const QString out = arguments.value(OUT);
    if (out.isEmpty())
        return arguments.wrongUsage(QStringLiteral("--out PNG is needed."));
    const StageItems items = makeStageTemplates(monitor);
    const QString text = arguments.positional().constFirst();
    const int number = text.toInt();
    if (number < 1 || number > int(items.size()))
        return arguments.wrongUsage(
            QStringLiteral("The templates are numbered from 1 to %1; there is no '%2'.")
                .arg(QString::number(items.size()), text));

    const QFileInfo file(out);
    StageFiles files(file.path());
    return files.writePreview(*items.at(size_t(number - 1))->stage(), size, file.fileName())
        ? int(Exit_Success)
        : fail(files.lastErrorMessage());
}

} // namespace Kyte
