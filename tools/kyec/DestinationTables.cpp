#include "DestinationTables.h"

#include <KyDestination.h>

#include <QHash>
#include <QJsonValue>

namespace Kyte {

/** The number of destinations in each of \a categories, which are all of one kind. */
static QHash<int, int> countDestinations(const QList<KyUploadItemInfo> &categories,
                                         const QList<KyUploadItemInfo> &destinations)
{
    QHash<int, int> counts;
    if (categories.isEmpty())
        return counts;
    const bool isChannel = categories.first().itemType() == KyUploadItemInfo::Item_Channel;
    for (const KyUploadItemInfo &destination : destinations)
        ++counts[isChannel ? destination.channelId() : destination.groupId()];
    return counts;
}

TextTable categoryTable(const QList<KyUploadItemInfo> &categories,
                        const QList<KyUploadItemInfo> &destinations)
{
    TextTable table({{QStringLiteral("Id"), TextTable::Right},
                     {QStringLiteral("Name"), TextTable::Left},
                     {QStringLiteral("Position"), TextTable::Right},
                     {QStringLiteral("Destinations"), TextTable::Right}});
    const QHash<int, int> counts = countDestinations(categories, destinations);
    for (const KyUploadItemInfo &category : categories)
        table.addRow({QString::number(category.id()), category.name(), QString::number(category.posIndex()),
                      QString::number(counts.value(category.id()))});
    return table;
}

QJsonArray categoriesToJson(const QList<KyUploadItemInfo> &categories,
                            const QList<KyUploadItemInfo> &destinations)
{
    const QHash<int, int> counts = countDestinations(categories, destinations);
    QJsonArray array;
    for (const KyUploadItemInfo &category : categories)
        array.append(QJsonObject{{QStringLiteral("id"), category.id()},
                                 {QStringLiteral("name"), category.name()},
                                 {QStringLiteral("position"), category.posIndex()},
                                 {QStringLiteral("destinations"), counts.value(category.id())}});
    return array;
}

TextTable destinationTable(const DestinationPicture &picture, Passwords passwords)
{
    QVector<TextTable::Column> columns{
        {QStringLiteral("Id"), TextTable::Right},     {QStringLiteral("Name"), TextTable::Left},
        {QStringLiteral("Address"), TextTable::Left}, {QStringLiteral("Shared"), TextTable::Left},
        {QStringLiteral("User"), TextTable::Left},    {QStringLiteral("Channel"), TextTable::Left},
        {QStringLiteral("Group"), TextTable::Left}};
    if (passwords == Passwords::Shown)
        columns.append({QStringLiteral("Password"), TextTable::Left});
    TextTable table(columns);
    for (const KyUploadItemInfo &item : picture.destinations) {
        QStringList row{QString::number(item.id()),
                        item.name(),
                        item.address(),
                        item.sharedFolder(),
                        item.userName(),
                        categoryText(picture.channelNames, item.channelId()),
                        categoryText(picture.groupNames, item.groupId())};
        if (passwords == Passwords::Shown)
            row.append(KyDestination::decryptString(item.password()));
        table.addRow(row);
    }
    return table;
}

static QJsonValue nameOrNull(const QMap<int, QString> &names, int id)
{
    const auto name = names.find(id);
    return name == names.end() ? QJsonValue(QJsonValue::Null) : QJsonValue(*name);
}

QJsonArray destinationsToJson(const DestinationPicture &picture, Passwords passwords)
{
    QJsonArray array;
    for (const KyUploadItemInfo &item : picture.destinations) {
        QJsonObject object{{QStringLiteral("id"), item.id()},
                           {QStringLiteral("name"), item.name()},
                           {QStringLiteral("position"), item.posIndex()},
                           {QStringLiteral("address"), item.address()},
                           {QStringLiteral("sharedFolder"), item.sharedFolder()},
                           {QStringLiteral("user"), item.userName()},
                           {QStringLiteral("channelId"), item.channelId()},
                           {QStringLiteral("channel"), nameOrNull(picture.channelNames, item.channelId())},
                           {QStringLiteral("groupId"), item.groupId()},
                           {QStringLiteral("group"), nameOrNull(picture.groupNames, item.groupId())}};
        if (passwords == Passwords::Shown)
            object.insert(QStringLiteral("password"), KyDestination::decryptString(item.password()));
        array.append(object);
    }
    return array;
}

QString categoryText(const QMap<int, QString> &names, int id)
{
    if (id == -1)
        return QStringLiteral("-");
    return names.value(id, QStringLiteral("(%1)").arg(id));
}

} // namespace Kyte
