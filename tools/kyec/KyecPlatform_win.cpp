#include "KyecPlatform.h"

#include <QObject>

#include <atomic>
#include <cstdlib>

#include <windows.h>

namespace Kyte {

namespace {

/** Emits its signal from the thread on which the system reports a Ctrl-C. */
class Interrupt : public QObject
{
    Q_OBJECT

signals:
    void caught();
};

} // namespace

static std::atomic<Interrupt *> interrupt;

void prepareConsole()
{
    SetConsoleOutputCP(CP_UTF8);
}

void prepareDrawing()
{
}

void setConfigFile(const QString &path)
{
    // Not qputenv(), which takes the path through the system's code page.
    _wputenv_s(L"KYTE_CONFIG_FILE", reinterpret_cast<const wchar_t *>(path.utf16()));
}

bool isErrorStreamTerminal()
{
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode);
}

/** @return FALSE leaves the event to the system, which ends the program */
static BOOL WINAPI onInterrupt(DWORD)
{
    Interrupt *caught = interrupt.exchange(nullptr);
    if (!caught)
        return FALSE;
    emit caught->caught();
    return TRUE;
}

void catchInterrupt(QObject *receiver, const char *slot)
{
    Interrupt *caught = new Interrupt;
    QObject::connect(caught, SIGNAL(caught()), receiver, slot, Qt::QueuedConnection);
    interrupt = caught;
    SetConsoleCtrlHandler(onInterrupt, TRUE);
}

} // namespace Kyte

#include "KyecPlatform_win.moc"
