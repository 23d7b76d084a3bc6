#pragma once

#include "DestinationReader.h"
#include "TextTable.h"

#include <QJsonArray>
#include <QJsonObject>

namespace Kyte {

enum class Passwords {
    Hidden,
    Shown ///< deciphered
};

/** Channels or groups, with the number of destinations in each. */
TextTable categoryTable(const QList<KyUploadItemInfo> &categories,
                        const QList<KyUploadItemInfo> &destinations);
QJsonArray categoriesToJson(const QList<KyUploadItemInfo> &categories,
                            const QList<KyUploadItemInfo> &destinations);

/** The destinations, with the names of their channels and groups. */
TextTable destinationTable(const DestinationPicture &picture, Passwords passwords = Passwords::Hidden);
QJsonArray destinationsToJson(const DestinationPicture &picture, Passwords passwords = Passwords::Hidden);

/** A channel's or group's name in a table: "-" for none, "(9)" for an id that does not exist. */
QString categoryText(const QMap<int, QString> &names, int id);

} // namespace Kyte
