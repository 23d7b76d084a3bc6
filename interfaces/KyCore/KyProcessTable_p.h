#pragma once

#include <QString>
#include <QVector>

#include <functional>

namespace Kyte {

/** A process in the system's table. Id and start time together name it for as long as the system runs. */
struct KyProcessEntry
{
    qint64 id = 0;
    QString name; ///< of the program's file, without its folder
    quint64 startTime = 0; ///< in the system's own unit, 0 when it is not known
};

/**
 * Appends the running processes to \a found whose image name \a isWanted accepts.
 *
 * @return false when the process table cannot be read
 */
bool findProcesses(const std::function<bool(const QString &)> &isWanted, QVector<KyProcessEntry> *found);

/** Ends the process \a id if it is still the one that started at \a startTime. @return whether it was ended.
 */
bool killProcess(qint64 id, quint64 startTime);

} // namespace Kyte
