#include "KyScriptedProgram.h"

#include "KyTestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <csignal>
#endif

namespace Kyte {
namespace Test {

ScriptedProgram::ScriptedProgram(const QStringList &lines, const QString &name)
    : m_script(m_folder.filePath(name))
{
    QDir().mkpath(QFileInfo(m_script).path());
    writeFile(m_script, lines.join(QLatin1Char('\n')).toUtf8());
}

ScriptedProgram::~ScriptedProgram()
{
    const qint64 id = processId();
    if (!isRunning(id))
        return;
#ifdef Q_OS_WIN
    const HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, DWORD(id));
    TerminateProcess(process, 1);
    CloseHandle(process);
#else
    // The id may be another program's by now.
    if (readFile(QStringLiteral("/proc/%1/cmdline").arg(id)).contains(QFile::encodeName(m_script)))
        ::kill(pid_t(id), SIGKILL);
#endif
}

QString ScriptedProgram::program()
{
    return QStringLiteral(KYTE_TEST_PROGRAM_DIR "/ky_scripted" KYTE_TEST_PROGRAM_SUFFIX);
}

QString ScriptedProgram::script() const
{
    return m_script;
}

QString ScriptedProgram::path(const QString &name) const
{
    return QFileInfo(m_script).dir().filePath(name);
}

bool ScriptedProgram::has(const QString &name) const
{
    return QFile::exists(path(name));
}

QByteArray ScriptedProgram::read(const QString &name) const
{
    return readFile(path(name));
}

QStringList ScriptedProgram::lines(const QString &name) const
{
    return QString::fromUtf8(read(name)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void ScriptedProgram::touch(const QString &name) const
{
    writeFile(path(name), QByteArray());
}

qint64 ScriptedProgram::processId() const
{
    return read(QStringLiteral("pid")).toLongLong();
}

bool ScriptedProgram::isInProcessTable() const
{
    return Test::isInProcessTable(processId());
}

#ifdef Q_OS_WIN
bool isRunning(qint64 id)
{
    const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, DWORD(id));
    const bool runs = process && WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
    CloseHandle(process);
    return runs;
}

bool isInProcessTable(qint64 id)
{
    return isRunning(id);
}
#else
bool isRunning(qint64 id)
{
    const QByteArray status = readFile(QStringLiteral("/proc/%1/stat").arg(id));
    const QByteArray state = status.mid(status.lastIndexOf(')') + 2, 1);
    return id > 0 && !state.isEmpty() && state != "Z" && state != "X";
}

bool isInProcessTable(qint64 id)
{
    return id > 0 && QFile::exists(QStringLiteral("/proc/%1").arg(id));
}
#endif

} // namespace Test
} // namespace Kyte
