#include "DemoRun.h"
#include "DestinationTables.h"
#include "KyecArguments.h"
#include "KyecCommand.h"
#include "KyecOutput.h"
#include "SampleEnvironment.h"
#include "StageFiles.h"
#include "TextTable.h"

#include <KyStage.h>

#include <QCoreApplication>
#include <QDir>
#include <QHash>
#include <QTemporaryDir>

#include <memory>

namespace Kyte {

static const QString KEEP = QStringLiteral("keep");
static const QSize SAMPLE_MONITOR(1920, 1080);
static const QSize SAMPLE_PREVIEW(640, 361);

/** A destination that is in another channel or group than before. */
struct Change
{
    KyUploadItemInfo before;
    KyUploadItemInfo after;
};

static QList<Change> changes(const DemoResult &result)
{
    QHash<int, KyUploadItemInfo> former;
    for (const KyUploadItemInfo &item : result.before.destinations)
        former.insert(item.id(), item);
    QList<Change> list;
    for (const KyUploadItemInfo &item : result.after.destinations) {
        const KyUploadItemInfo before = former.value(item.id());
        if (before.channelId() != item.channelId() || before.groupId() != item.groupId())
            list.append({before, item});
    }
    return list;
}

static QString milliseconds(double value)
{
    return QString::number(value, 'f', 1);
}

static double totalMilliseconds(const DemoResult &result)
{
    double total = 0;
    for (const DemoStep &step : result.steps)
        total += step.milliseconds;
    return total;
}

static QString section(const QString &heading, const QString &content)
{
    return QStringLiteral("\n%1\n\n%2").arg(heading, content);
}

static QString stepsText(const DemoResult &result)
{
    TextTable table(
        {{QStringLiteral("Step"), TextTable::Left}, {QStringLiteral("Milliseconds"), TextTable::Right}});
    for (const DemoStep &step : result.steps)
        table.addRow({step.text, milliseconds(step.milliseconds)});
    table.addRow({QStringLiteral("altogether"), milliseconds(totalMilliseconds(result))});
    return table.toString();
}

static QString signalsText(const DemoResult &result)
{
    TextTable table(
        {{QStringLiteral("Signal"), TextTable::Left}, {QStringLiteral("Brought"), TextTable::Left}});
    for (const DemoSignal &signal : result.readingSignals)
        table.addRow({signal.name, signal.content});
    return table.toString();
}

static QString transition(const QString &before, const QString &after)
{
    return before == after ? after : QStringLiteral("%1 → %2").arg(before, after);
}

static QString changesText(const DemoResult &result)
{
    TextTable table({{QStringLiteral("Id"), TextTable::Right},
                     {QStringLiteral("Destination"), TextTable::Left},
                     {QStringLiteral("Channel"), TextTable::Left},
                     {QStringLiteral("Group"), TextTable::Left}});
    const QList<Change> list = changes(result);
    for (const Change &change : list)
        table.addRow({QString::number(change.after.id()), change.after.name(),
                      transition(categoryText(result.before.channelNames, change.before.channelId()),
                                 categoryText(result.after.channelNames, change.after.channelId())),
                      transition(categoryText(result.before.groupNames, change.before.groupId()),
                                 categoryText(result.after.groupNames, change.after.groupId()))});
    return table.toString();
}

static QString fingerprintsText(const DemoResult &result)
{
    TextTable table({{QStringLiteral("Moment"), TextTable::Left},
                     {QStringLiteral("File"), TextTable::Left},
                     {QStringLiteral("SHA-1"), TextTable::Left},
                     {QStringLiteral("State"), TextTable::Left}});
    for (const DemoFingerprint &fingerprint : result.fingerprints)
        table.addRow({fingerprint.moment, fingerprint.file, fingerprint.hash,
                      fingerprint.isReserved ? QStringLiteral("as reserved") : QStringLiteral("changed")});
    return table.toString()
        + QStringLiteral("\n  before  %1\n  after   %2\n")
              .arg(result.fingerprintBefore, result.fingerprintAfter);
}

static QString entriesText(const SampleEnvironment &environment)
{
    QString text;
    const QString stages = QDir(environment.folder()).relativeFilePath(environment.stagesFolder());
    const QStringList entries = environment.entries();
    for (const QString &entry : entries) {
        if (!entry.startsWith(stages)) // in a table of their own
            text += QStringLiteral("  %1\n").arg(QDir::toNativeSeparators(entry));
    }
    return text;
}

/** The pictures of a stage template. */
struct StagePictures
{
    QString title;
    QStringList icons;
    QString preview;
};

/** Draws the stage templates into \a folder; false, with the matter said, when they cannot be written. */
static bool drawStages(const QString &folder, QList<StagePictures> *pictures)
{
    const StageItems items = makeStageTemplates(SAMPLE_MONITOR);
    for (const auto &item : items) {
        const int number = pictures->size() + 1;
        const QString preview = QStringLiteral("preview-%1.png").arg(number, 2, 10, QLatin1Char('0'));
        StageFiles icons(folder);
        StageFiles previews(folder);
        if (!icons.writeIcons(*item, number)) {
            printError(icons.lastErrorMessage());
            return false;
        }
        if (!previews.writePreview(*item->stage(), SAMPLE_PREVIEW, preview)) {
            printError(previews.lastErrorMessage());
            return false;
        }
        pictures->append({item->text(), icons.names(), preview});
    }
    return true;
}

static QString stagesText(const QList<StagePictures> &pictures)
{
    TextTable table({{QStringLiteral("Template"), TextTable::Left},
                     {QStringLiteral("Icons"), TextTable::Left},
                     {QStringLiteral("Preview"), TextTable::Left}});
    for (const StagePictures &stage : pictures)
        table.addRow({stage.title,
                      QStringLiteral("%1 … %2").arg(stage.icons.first(),
                                                    stage.icons.last().section(QLatin1Char('-'), 2)),
                      stage.preview});
    return table.toString();
}

static QString resultText(const DemoResult &result,
                          const QList<StagePictures> &stages,
                          const SampleEnvironment &environment,
                          bool isKept)
{
    const DestinationPicture &after = result.after;
    const QString folder = QDir::toNativeSeparators(environment.folder());
    QString text = QStringLiteral("Sample environment: %1 in %2, in %3\n")
                       .arg(counted(result.before.destinations.size(), QStringLiteral("destination")),
                            counted(result.before.channels.size(), QStringLiteral("channel")), folder);
    text += section(QStringLiteral("Signals of the reading in normal mode, in order"), signalsText(result));
    text += section(QStringLiteral("Steps of the reading, the editing in setting mode and the reopening"),
                    stepsText(result));
    text += section(QStringLiteral("What changed (before → after)"), changesText(result));
    text += section(QStringLiteral("Channels, as read back"),
                    categoryTable(after.channels, after.destinations).toString());
    text +=
        section(QStringLiteral("Groups, as read back; there were %1 before").arg(result.before.groups.size()),
                categoryTable(after.groups, after.destinations).toString());
    text += section(QStringLiteral("Destinations, as read back"), destinationTable(after).toString());
    text += section(QStringLiteral("Fingerprint of the database file, reserved by init() and saveData()"),
                    fingerprintsText(result));
    text += section(QStringLiteral("Stage templates for a monitor of %1 x %2, in %3")
                        .arg(SAMPLE_MONITOR.width())
                        .arg(SAMPLE_MONITOR.height())
                        .arg(QDir::toNativeSeparators(environment.stagesFolder())),
                    stagesText(stages));
    text += section(QStringLiteral("Other files in %1").arg(folder), entriesText(environment));
    text += isKept ? QStringLiteral("\nTry: %1 destinations --config %2\n")
                         .arg(QDir::toNativeSeparators(QCoreApplication::applicationFilePath()),
                              QDir::toNativeSeparators(environment.configFile()))
                   : QStringLiteral("\nThe folder was temporary; --keep DIR makes one that stays.\n");
    return text;
}

static QJsonArray stepsToJson(const DemoResult &result)
{
    QJsonArray array;
    for (const DemoStep &step : result.steps)
        array.append(QJsonObject{{QStringLiteral("step"), step.text},
                                 {QStringLiteral("milliseconds"), step.milliseconds}});
    return array;
}

static QJsonArray signalsToJson(const DemoResult &result)
{
    QJsonArray array;
    for (const DemoSignal &signal : result.readingSignals)
        array.append(QJsonObject{{QStringLiteral("signal"), signal.name},
                                 {QStringLiteral("items"), signal.items},
                                 {QStringLiteral("content"), signal.content}});
    return array;
}

static QJsonObject pictureToJson(const DestinationPicture &picture)
{
    return {{QStringLiteral("channels"), categoriesToJson(picture.channels, picture.destinations)},
            {QStringLiteral("groups"), categoriesToJson(picture.groups, picture.destinations)},
            {QStringLiteral("destinations"), destinationsToJson(picture)}};
}

static QJsonArray changesToJson(const DemoResult &result)
{
    const auto transitionToJson = [](int before, int after) {
        return QJsonObject{{QStringLiteral("before"), before}, {QStringLiteral("after"), after}};
    };
    QJsonArray array;
    const QList<Change> list = changes(result);
    for (const Change &change : list)
        array.append(QJsonObject{
            {QStringLiteral("id"), change.after.id()},
            {QStringLiteral("name"), change.after.name()},
            {QStringLiteral("channelId"),
             transitionToJson(change.before.channelId(), change.after.channelId())},
            {QStringLiteral("groupId"), transitionToJson(change.before.groupId(), change.after.groupId())}});
    return array;
}

static QJsonObject fingerprintsToJson(const DemoResult &result)
{
    QJsonArray moments;
    for (const DemoFingerprint &fingerprint : result.fingerprints)
        moments.append(QJsonObject{{QStringLiteral("moment"), fingerprint.moment},
                                   {QStringLiteral("file"), fingerprint.file},
                                   {QStringLiteral("sha1"), fingerprint.hash},
                                   {QStringLiteral("asReserved"), fingerprint.isReserved}});
    return {{QStringLiteral("before"), result.fingerprintBefore},
            {QStringLiteral("after"), result.fingerprintAfter},
            {QStringLiteral("moments"), moments}};
}

static QJsonObject environmentToJson(const SampleEnvironment &environment, bool isKept)
{
    return {{QStringLiteral("folder"), environment.folder()},
            {QStringLiteral("configFile"), environment.configFile()},
            {QStringLiteral("kept"), isKept},
            {QStringLiteral("entries"), QJsonArray::fromStringList(environment.entries())}};
}

static QJsonArray stagesToJson(const QList<StagePictures> &pictures)
{
    QJsonArray array;
    for (const StagePictures &stage : pictures)
        array.append(QJsonObject{{QStringLiteral("title"), stage.title},
                                 {QStringLiteral("icons"), QJsonArray::fromStringList(stage.icons)},
                                 {QStringLiteral("preview"), stage.preview}});
    return array;
}

static QJsonObject resultToJson(const DemoResult &result,
                                const QList<StagePictures> &stages,
                                const SampleEnvironment &environment,
                                bool isKept)
{
    return {{QStringLiteral("environment"), environmentToJson(environment, isKept)},
            {QStringLiteral("signals"), signalsToJson(result)},
            {QStringLiteral("steps"), stepsToJson(result)},
            {QStringLiteral("milliseconds"), totalMilliseconds(result)},
            {QStringLiteral("before"), pictureToJson(result.before)},
            {QStringLiteral("changes"), changesToJson(result)},
            {QStringLiteral("after"), pictureToJson(result.after)},
            {QStringLiteral("fingerprint"), fingerprintsToJson(result)},
            {QStringLiteral("stages"), stagesToJson(stages)}};
}

int runDemo(KyecArguments &arguments)
{
    arguments.addOption(
        KEEP,
        QStringLiteral("Make the sample environment in this folder, which is new, empty or of "
                       "an earlier run; else it is a temporary one."),
        QStringLiteral("DIR"));
    arguments.addJsonOption();
    if (!arguments.parse())
        return arguments.exitCode();
    const bool isKept = arguments.isSet(KEEP);
    if (isKept && arguments.value(KEEP).isEmpty())
        return arguments.wrongUsage(QStringLiteral("--keep needs a folder."));

    std::unique_ptr<QTemporaryDir> temporary;
    if (!isKept) {
        temporary = std::make_unique<QTemporaryDir>();
        if (!temporary->isValid())
            return fail(temporary->errorString());
    }
    SampleEnvironment environment(isKept ? arguments.value(KEEP) : temporary->path());
    DemoRun run;
    if (!run.run(&environment))
        return fail(run.lastErrorMessage());
    QList<StagePictures> stages;
    if (!drawStages(environment.stagesFolder(), &stages))
        return Exit_Failure;
    const QString output = arguments.isJsonWanted()
        ? jsonText(QJsonDocument(resultToJson(run.result(), stages, environment, isKept)))
        : resultText(run.result(), stages, environment, isKept);
    temporary.reset(); // before printing, which ends the process when the reader has gone
    print(output);
    return Exit_Success;
}

} // namespace Kyte
