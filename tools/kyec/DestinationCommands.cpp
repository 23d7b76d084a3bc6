#include "DestinationReader.h"
#include "DestinationTables.h"
#include "KyecArguments.h"
#include "KyecCommand.h"
#include "KyecOutput.h"

#include <KyDestination.h>

#include <QSet>

#include <algorithm>
#include <functional>

namespace Kyte {

static const QString CHANNEL = QStringLiteral("channel");
static const QString GROUP = QStringLiteral("group");
static const QString LIMIT = QStringLiteral("limit");
static const QString SHOW_PASSWORDS = QStringLiteral("show-passwords");
static const QString TO_CHANNEL = QStringLiteral("to-channel");
static const QString TO_GROUP = QStringLiteral("to-group");
static const QString NUMBER = QStringLiteral("N");

/** Opens in normal mode and reads everything; a failure is printed. */
static bool readAll(DestinationPicture *picture)
{
    KyDestination destination;
    if (!openDestinations(&destination))
        return false;
    DestinationReader reader(&destination);
    if (reader.read(picture))
        return true;
    printError(destination.lastErrorMessage());
    return false;
}

/** Edits what \a picture shows; answers what to complain about, nothing when all went well. */
using Edit = std::function<QString(KyDestination *destination, const DestinationPicture &picture)>;

/** Opens in setting mode, edits, saves and reads the result into \a picture; a failure is printed. */
static bool editAndSave(const Edit &edit, DestinationPicture *picture)
{
    KyDestination destination;
    destination.setSettingMode(true);
    if (!openDestinations(&destination))
        return false;
    DestinationReader reader(&destination);
    if (reader.read(picture)) {
        const QString complaint = edit(&destination, *picture);
        if (!complaint.isEmpty()) {
            printError(complaint);
            return false;
        }
        if (destination.saveData() && reader.read(picture))
            return true;
    }
    printError(destination.lastErrorMessage());
    return false;
}

static QString missing(const QString &kind, const QString &id)
{
    return QStringLiteral("There is no %1 %2.").arg(kind, id);
}

static void printCategories(const QString &kind,
                            const QList<KyUploadItemInfo> &categories,
                            const QList<KyUploadItemInfo> &destinations,
                            bool json)
{
    if (json) {
        print(jsonText(QJsonDocument(categoriesToJson(categories, destinations))));
        return;
    }
    if (!categories.isEmpty())
        print(categoryTable(categories, destinations).toString());
    print(counted(categories.size(), kind) + QLatin1Char('\n'));
}

int runChannels(KyecArguments &arguments)
{
    arguments.addConfigOption();
    arguments.addJsonOption();
    if (!arguments.parse())
        return arguments.exitCode();
    DestinationPicture picture;
    if (!readAll(&picture))
        return Exit_Failure;
    printCategories(CHANNEL, picture.channels, picture.destinations, arguments.isJsonWanted());
    return Exit_Success;
}

/** What `kyec groups` shall change: nothing, or what its first word says. */
struct GroupChange
{
    enum Kind { None, Add, Rename, Remove };

    Kind kind = None;
    int id = -1;
    QString name;
};

/** False when the words make no sense, which has been said then. */
static bool parseGroupChange(KyecArguments &arguments, GroupChange *change)
{
    static const struct
    {
        QLatin1String word;
        int count; ///< of words, this one included
        GroupChange::Kind kind;
    } CHANGES[] = {
        {QLatin1String("add"), 2, GroupChange::Add},
        {QLatin1String("rename"), 3, GroupChange::Rename},
        {QLatin1String("remove"), 2, GroupChange::Remove},
    };

    const QStringList words = arguments.positional();
    if (words.isEmpty())
        return true;
    const auto found = std::find_if(std::begin(CHANGES), std::end(CHANGES), [&words](const auto &entry) {
        return words.first() == entry.word;
    });
    if (found == std::end(CHANGES) || words.size() != found->count) {
        arguments.wrongUsage(QStringLiteral("'%1' is not one of add NAME, rename ID NAME and remove ID.")
                                 .arg(words.join(QLatin1Char(' '))));
        return false;
    }
    change->kind = found->kind;
    if (found->kind != GroupChange::Add && !arguments.readId(words.at(1), &change->id))
        return false;
    if (found->kind == GroupChange::Remove)
        return true;
    change->name = words.last();
    if (change->name.trimmed().isEmpty()) {
        arguments.wrongUsage(QStringLiteral("A group needs a name."));
        return false;
    }
    return true;
}

static QString
changeGroups(const GroupChange &change, KyDestination *destination, const DestinationPicture &picture)
{
    // The library renames and removes a group that does not exist without complaint.
    if (change.kind != GroupChange::Add && !picture.groupNames.contains(change.id))
        return missing(GROUP, QString::number(change.id));
    bool done = false;
    switch (change.kind) {
    case GroupChange::Add:
        done = destination->addNewGroup(change.name, nullptr);
        break;
    case GroupChange::Rename:
        done = destination->renameGroup(change.id, change.name);
        break;
    case GroupChange::Remove:
        done = destination->removeGroup(change.id);
        break;
    case GroupChange::None:
        return QString();
    }
    return done ? QString() : destination->lastErrorMessage();
}

int runGroups(KyecArguments &arguments)
{
    arguments.addConfigOption();
    arguments.addJsonOption();
    GroupChange change;
    if (!arguments.parse(KyecArguments::ANY_NUMBER) || !parseGroupChange(arguments, &change))
        return arguments.exitCode();

    DestinationPicture picture;
    const Edit edit = [&change](KyDestination *destination, const DestinationPicture &before) {
        return changeGroups(change, destination, before);
    };
    if (!(change.kind == GroupChange::None ? readAll(&picture) : editAndSave(edit, &picture)))
        return Exit_Failure;
    printCategories(GROUP, picture.groups, picture.destinations, arguments.isJsonWanted());
    return Exit_Success;
}

/** The complaint when \a id is none of the ids in \a names; -1 and less stand for none and any. */
static QString checkCategory(const QString &kind, const QMap<int, QString> &names, int id)
{
    return id < 0 || names.contains(id) ? QString() : missing(kind, QString::number(id));
}

static void printDestinations(const DestinationPicture &picture, int total, Passwords passwords, bool json)
{
    if (json) {
        print(jsonText(QJsonDocument(destinationsToJson(picture, passwords))));
        return;
    }
    const int shown = picture.destinations.size();
    if (shown > 0)
        print(destinationTable(picture, passwords).toString());
    print((shown < total ? QStringLiteral("%1 of ").arg(shown) : QString())
          + counted(total, QStringLiteral("destination")) + QLatin1Char('\n'));
}

int runDestinations(KyecArguments &arguments)
{
    arguments.addOption(CHANNEL, QStringLiteral("Only those in this channel; -1: in none."), NUMBER);
    arguments.addOption(GROUP, QStringLiteral("Only those in this group; -1: in none."), NUMBER);
    arguments.addOption(LIMIT, QStringLiteral("At most this many."), NUMBER);
    arguments.addOption(SHOW_PASSWORDS, QStringLiteral("Show the passwords, deciphered."));
    arguments.addConfigOption();
    arguments.addJsonOption();
    int channelId = DestinationReader::ANY_CATEGORY;
    int groupId = DestinationReader::ANY_CATEGORY;
    int limit = -1;
    if (!arguments.parse() || !arguments.readInteger(CHANNEL, -1, &channelId)
        || !arguments.readInteger(GROUP, -1, &groupId) || !arguments.readInteger(LIMIT, 0, &limit))
        return arguments.exitCode();

    KyDestination destination;
    if (!openDestinations(&destination))
        return Exit_Failure;
    DestinationReader reader(&destination);
    DestinationPicture picture;
    if (!reader.read(&picture, channelId, groupId))
        return fail(destination.lastErrorMessage());
    QString complaint = checkCategory(CHANNEL, picture.channelNames, channelId);
    if (complaint.isEmpty())
        complaint = checkCategory(GROUP, picture.groupNames, groupId);
    if (!complaint.isEmpty())
        return fail(complaint);

    // Not the library's maximum: that one counts destinations before they are filtered.
    const int total = picture.destinations.size();
    if (limit >= 0 && limit < total)
        picture.destinations.erase(picture.destinations.begin() + limit, picture.destinations.end());
    printDestinations(picture, total, arguments.isSet(SHOW_PASSWORDS) ? Passwords::Shown : Passwords::Hidden,
                      arguments.isJsonWanted());
    return Exit_Success;
}

/** What `kyec move` shall do. */
struct Move
{
    QList<int> ids;
    KyDestination::DataType type = KyDestination::Data_Channel;
    int categoryId = -1;
};

static bool parseMove(KyecArguments &arguments, Move *move)
{
    const bool isToGroup = arguments.isSet(TO_GROUP);
    if (arguments.isSet(TO_CHANNEL) == isToGroup) {
        arguments.wrongUsage(QStringLiteral("One of --to-channel and --to-group is needed."));
        return false;
    }
    if (arguments.positional().isEmpty()) {
        arguments.wrongUsage(QStringLiteral("Which destinations?"));
        return false;
    }
    const QStringList texts = arguments.positional();
    for (const QString &text : texts) {
        int id = -1;
        if (!arguments.readId(text, &id))
            return false;
        move->ids.append(id);
    }
    move->type = isToGroup ? KyDestination::Data_Group : KyDestination::Data_Channel;
    return arguments.readInteger(isToGroup ? TO_GROUP : TO_CHANNEL, -1, &move->categoryId);
}

static QString
moveDestinations(const Move &move, KyDestination *destination, const DestinationPicture &picture)
{
    const bool isToGroup = move.type == KyDestination::Data_Group;
    QString complaint = isToGroup ? checkCategory(GROUP, picture.groupNames, move.categoryId)
                                  : checkCategory(CHANNEL, picture.channelNames, move.categoryId);
    if (!complaint.isEmpty())
        return complaint;

    // The library answers an id that no destination has as moved.
    QSet<int> known;
    for (const KyUploadItemInfo &item : picture.destinations)
        known.insert(item.id());
    QStringList unknown;
    for (int id : move.ids) {
        if (!known.contains(id))
            unknown.append(QString::number(id));
    }
    if (!unknown.isEmpty())
        return missing(QStringLiteral("destination"), unknown.join(QLatin1String(", ")));

    if (destination->changeDestinationCategory(move.ids, move.categoryId, move.type) == move.ids)
        return QString();
    complaint = destination->lastErrorMessage(); // which may be empty
    return complaint.isEmpty() ? QStringLiteral("The destinations could not be moved.") : complaint;
}

int runMove(KyecArguments &arguments)
{
    arguments.addOption(TO_CHANNEL, QStringLiteral("Move to this channel; -1: out of any."), NUMBER);
    arguments.addOption(TO_GROUP, QStringLiteral("Move to this group; -1: out of any."), NUMBER);
    arguments.addConfigOption();
    Move move;
    if (!arguments.parse(KyecArguments::ANY_NUMBER) || !parseMove(arguments, &move))
        return arguments.exitCode();

    DestinationPicture picture;
    const Edit edit = [&move](KyDestination *destination, const DestinationPicture &before) {
        return moveDestinations(move, destination, before);
    };
    if (!editAndSave(edit, &picture))
        return Exit_Failure;

    QList<KyUploadItemInfo> &destinations = picture.destinations;
    destinations.erase(std::remove_if(destinations.begin(), destinations.end(),
                                      [&move](const KyUploadItemInfo &item) {
                                          return !move.ids.contains(item.id());
                                      }),
                       destinations.end());
    print(destinationTable(picture).toString());
    print(QStringLiteral("%1 moved\n").arg(counted(destinations.size(), QStringLiteral("destination"))));
    return Exit_Success;
}

} // namespace Kyte
