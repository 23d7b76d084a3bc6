#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace Kyte {
namespace Test {

struct ProgramRun
{
    QStringList output; ///< lines
    bool isKilled = false;
};

/** A system call of a traced program. */
struct SystemCall
{
    QString name;
    int number = 0; ///< counts the calls of that name since the program was started, from 1
    QString text; ///< with its arguments, descriptors with the names of their files

    bool isOfFile() const; ///< whether it fails on a broken disk
    bool changesFile() const; ///< writes, brings onto the disk, makes, renames, cuts or deletes it
    bool deletesFile() const;
};

struct TracedRun : ProgramRun
{
    QList<SystemCall> calls; ///< between the two that ky_save marks, the latter included
    QString answer; ///< the one in that latter call, where it was done
};

/** The path of the small program \a name that is built for tests. */
QString testProgram(const QString &name);

/** Runs \a program to its end; one that is not there has no output. */
ProgramRun runProgram(const QString &program, const QStringList &arguments);

/** Why programs cannot be traced on this machine, empty when they can. */
QString whyNotTraceable();

/** Runs ky_save and has \a injection happen to one of its system calls, as strace understands it. */
TracedRun traceSaving(const QStringList &arguments, const QString &injection = QString());

/** An injection for \a call: "signal=KILL" ends the program before the call, "error=EIO" has it fail. */
QString injection(const SystemCall &call, const QString &what, bool everyLaterCallToo = false);

} // namespace Test
} // namespace Kyte
