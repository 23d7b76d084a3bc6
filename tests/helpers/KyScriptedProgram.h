#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace Kyte {
namespace Test {

/**
 * A folder with a script for the program ky_scripted and with the files by which the running program and the
 * test tell each other how far they are.
 */
class ScriptedProgram
{
    Q_DISABLE_COPY(ScriptedProgram)

public:
    /** Writes \a lines as the script \a name; folders in the name are made. */
    explicit ScriptedProgram(const QStringList &lines, const QString &name = QStringLiteral("script"));
    /** Kills the program, if it told its process id in the file "pid". */
    ~ScriptedProgram();

    static QString program(); ///< the path of ky_scripted
    QString script() const;
    QString path(const QString &name) const; ///< of a file in the script's folder
    bool has(const QString &name) const;
    QByteArray read(const QString &name) const;
    QStringList lines(const QString &name) const; ///< without the line ends
    void touch(const QString &name) const;

    /** The id that the program wrote into the file "pid", 0 while it did not. */
    qint64 processId() const;
    /** Whether a process has the id that the program told, one that ended and was not reaped included. */
    bool isInProcessTable() const;

private:
    QTemporaryDir m_folder;
    QString m_script;
};

/** Whether there is a process \a id that has not ended. */
bool isRunning(qint64 id);
/** Whether \a id is in the process table, be it of a process that ended and was not reaped. */
bool isInProcessTable(qint64 id);

} // namespace Test
} // namespace Kyte
