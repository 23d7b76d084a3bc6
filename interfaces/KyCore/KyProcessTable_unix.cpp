#include "KyProcessTable_p.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <csignal>

#include <sys/syscall.h>
#include <unistd.h>

namespace Kyte {

static QString processFile(qint64 id, const char *name)
{
    return QStringLiteral("/proc/%1/%2").arg(id).arg(QLatin1String(name));
}

static QByteArray readProcessFile(qint64 id, const char *name)
{
    QFile file(processFile(id, name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

static QString baseName(const QString &path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

/** The target of /proc/ID/exe, empty when it may not be read. */
static QString executablePath(qint64 id)
{
    char target[4096];
    const QByteArray link = QFile::encodeName(processFile(id, "exe"));
    const ssize_t length = ::readlink(link.constData(), target, sizeof target);
    return length < 0 ? QString() : QFile::decodeName(QByteArray(target, int(length)));
}

/**
 * The image name; empty for kernel threads and for processes that ended. Not /proc/ID/comm: that is cut after
 * fifteen characters, and the process can change it.
 */
static QString imageName(qint64 id)
{
    const QString path = executablePath(id);
    if (path.isEmpty()) {
        const QByteArray arguments = readProcessFile(id, "cmdline");
        return baseName(QFile::decodeName(arguments.left(arguments.indexOf('\0'))));
    }
    const QLatin1String replaced(" (deleted)"); // the file was replaced or removed while the program runs
    return baseName(path.endsWith(replaced) ? path.chopped(replaced.size()) : path);
}

/** Clock ticks from the system's start to the process's; 0 when there is no such process or when it ended. */
static quint64 startTimeOf(qint64 id)
{
    // "id (name) state parent ...", where the name may hold blanks and parentheses; the start time is
    // field 22.
    const QByteArray status = readProcessFile(id, "stat");
    const QList<QByteArray> fields = status.mid(status.lastIndexOf(')') + 2).split(' ');
    if (fields.size() < 20 || fields.at(0) == "Z" || fields.at(0) == "X")
        return 0;
    return fields.at(19).toULongLong();
}

bool findProcesses(const std::function<bool(const QString &)> &isWanted, QVector<KyProcessEntry> *found)
{
    const QStringList names = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    bool hasProcesses = false;
    for (const QString &directory : names) {
        bool isProcess = false;
        const qint64 id = directory.toLongLong(&isProcess);
        if (!isProcess)
            continue;
        hasProcesses = true;

        KyProcessEntry entry{id, imageName(id), 0};
        if (entry.name.isEmpty() || !isWanted(entry.name))
            continue;
        entry.startTime = startTimeOf(id);
        // The name once more: the id may have gone over to another process before its start time was read.
        if (entry.startTime != 0 && imageName(id) == entry.name)
            found->append(entry);
    }
    return hasProcesses;
}

bool killProcess(qint64 id, quint64 startTime)
{
    // The descriptor holds on to one process, so what is compared below is also what the signal reaches.
    const int process = int(::syscall(SYS_pidfd_open, pid_t(id), 0));
    if (process < 0 && errno == ESRCH)
        return false;

    bool isKilled = false;
    if (startTimeOf(id) == startTime) {
        // Kernels before 5.3 and some containers refuse the call; the moment between test and signal then
        // stays open.
        isKilled = process < 0 ? ::kill(pid_t(id), SIGKILL) == 0
                               : ::syscall(SYS_pidfd_send_signal, process, SIGKILL, nullptr, 0) == 0;
    }
    if (process >= 0)
        ::close(process);
    return isKilled;
}

} // namespace Kyte
