#pragma once

#include <QStringList>

namespace Kyte {

/**
 * Looks into the database file \a path, read-only, for everything that an application could stumble over;
 * answers a line for each such thing, none for a sound file.
 */
QStringList findProblems(const QString &path);

} // namespace Kyte
