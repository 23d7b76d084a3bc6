#pragma once

#include <QDir>

namespace Kyte {

/** The same entries in the same order as QDir::entryInfoList() gives, in less time where the order is the
 * usual one. */
QFileInfoList
listFolder(const QString &path, const QStringList &nameFilters, QDir::Filters filter, QDir::SortFlags sort);

} // namespace Kyte
