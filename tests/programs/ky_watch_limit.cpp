/*
 * Takes one of the user's inotify limits, "instances" or "watches", away from itself and prints "1" when a
 * folder can be watched then, else "0". Ends with 77 where the system does not let it.
 *
 * In a user namespace of its own a process may lower the limits without anybody else noticing.
 */

#include <KyEditorCommon.h>

#include <QFile>

#include <cstdio>

#include <sched.h>
#include <unistd.h>

static const int CANNOT = 77;

static bool write(const QString &path, const QByteArray &text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(text) == text.size();
}

static bool takeLimit(const char *name)
{
    const QByteArray identity = "0 " + QByteArray::number(getuid()) + " 1";
    return unshare(CLONE_NEWUSER) == 0 && write(QStringLiteral("/proc/self/uid_map"), identity)
        && write(QStringLiteral("/proc/sys/user/max_inotify_") + QLatin1String(name), "0");
}

int main(int argc, char **argv)
{
    if (argc != 3 || !takeLimit(argv[1]))
        return CANNOT;
    std::puts(Kyte::KyEditorCommon::tryInstallFileWatcher(QFile::decodeName(argv[2])) ? "1" : "0");
    return 0;
}
