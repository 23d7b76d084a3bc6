#include "KyecPlatform.h"

#include <QFile>
#include <QLoggingCategory>
#include <QSocketNotifier>

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace Kyte {

static int interruptPipe[2]; // for the event loop: a signal handler itself may do next to nothing

void prepareConsole()
{
}

void prepareDrawing()
{
    // No window is ever opened, and there may be neither a display nor a session to miss.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
}

void setConfigFile(const QString &path)
{
    qputenv("KYTE_CONFIG_FILE", QFile::encodeName(path));
}

bool isErrorStreamTerminal()
{
    return isatty(STDERR_FILENO);
}

extern "C" void onInterrupt(int)
{
    const ssize_t written = write(interruptPipe[1], "", 1);
    Q_UNUSED(written)
}

void catchInterrupt(QObject *receiver, const char *slot)
{
    if (pipe2(interruptPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    QSocketNotifier *notifier = new QSocketNotifier(interruptPipe[0], QSocketNotifier::Read, receiver);
    QObject::connect(notifier, SIGNAL(activated(int)), receiver, slot);

    struct sigaction action = {};
    action.sa_handler = onInterrupt;
    action.sa_flags = SA_RESTART | int(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

} // namespace Kyte
