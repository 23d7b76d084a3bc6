#pragma once

#include <QString>

namespace Kyte {
namespace FolderWatch {

/**
 * Whether the system can announce changes in \a folder, which exists: names, sizes and times of last writing,
 * not recursively. Starts such a watch and ends it at once.
 */
bool isPossible(const QString &folder);

} // namespace FolderWatch
} // namespace Kyte
