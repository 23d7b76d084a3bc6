#pragma once

#include <KyCoreExport.h>

#include <QList>
#include <QString>

class QProcess;

namespace Kyte {

/**
 * A running process, as the system's process table showed it. A plain value that stays good when the process
 * ends: it remembers when the process started, so it is never taken for a later process with the same id. Any
 * thread may use it.
 */
class KYCORE_EXPORT KyProcessInfo
{
public:
    /** No process: the id is 0. */
    KyProcessInfo();

    qint64 processId() const;

    /** The image name: the name of the program's file without its folder ("POWERPNT.EXE"). */
    QString name() const;

    /**
     * Ends the process at once, without asking it and without waiting until it is gone.
     *
     * @return false when the process has ended already, whoever has its id now, or when it may not be ended.
     */
    bool kill();

    /**
     * The running processes whose image name is \a name, those of other users included. Names are compared
     * whole, on Windows without regard to letter case.
     *
     * The image name is that of the program's file; where the system does not tell it (a process of another
     * user), it is what the program was started as. It is not the name that a process gives itself.
     *
     * @param ok may be null; becomes false for an empty name and when the process table cannot be read
     * @param withExtension false: an ending ".exe" counts on neither side, "POWERPNT" finds "POWERPNT.EXE"
     */
    static QList<KyProcessInfo> getProcessesByName(const QString &name, bool *ok, bool withExtension);

    /** The system's id of a started process, 0 when it does not run. */
    static qint64 getProcessId(QProcess &process);

private:
    qint64 m_processId = 0;
    QString m_name;
    quint64 m_startTime = 0; // in the system's own unit, 0 when it is not known
};

} // namespace Kyte
