#include "KyProcessTable_p.h"

#include <windows.h>

#include <tlhelp32.h>

namespace Kyte {

static quint64 toNumber(const FILETIME &time)
{
    return quint64(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

/** When the open process was created, in units of 100 ns; 0 when the system does not tell. */
static quint64 creationTime(HANDLE process)
{
    FILETIME created = {};
    FILETIME ended = {};
    FILETIME inKernel = {};
    FILETIME inProgram = {};
    return GetProcessTimes(process, &created, &ended, &inKernel, &inProgram) ? toNumber(created) : 0;
}

/** 0 when the process is gone or may not be asked, as may be with one of another user. */
static quint64 startTimeOf(DWORD id)
{
    const HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id);
    if (!process)
        return 0;
    const quint64 time = creationTime(process);
    CloseHandle(process);
    return time;
}

bool findProcesses(const std::function<bool(const QString &)> &isWanted, QVector<KyProcessEntry> *found)
{
    FILETIME now = {};
    GetSystemTimeAsFileTime(&now);
    const HANDLE table = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (table == INVALID_HANDLE_VALUE)
        return false;

    PROCESSENTRY32W process = {};
    process.dwSize = sizeof process;
    BOOL hasProcess = Process32FirstW(table, &process);
    const bool isRead = hasProcess;
    for (; hasProcess; hasProcess = Process32NextW(table, &process)) {
        const QString name = QString::fromWCharArray(process.szExeFile);
        if (name.isEmpty() || !isWanted(name))
            continue;
        const quint64 startTime = startTimeOf(process.th32ProcessID);
        if (startTime <= toNumber(now)) // a later one has taken the id over since
            found->append({qint64(process.th32ProcessID), name, startTime});
    }
    CloseHandle(table);
    return isRead;
}

bool killProcess(qint64 id, quint64 startTime)
{
    // The handle keeps the id from being given to another process.
    const HANDLE process =
        OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | PROCESS_TERMINATE | SYNCHRONIZE, FALSE, DWORD(id));
    if (!process)
        return false;
    // An ended process stays in the table while somebody, who has started it, holds a handle to it.
    const bool runs = WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
    const bool isKilled = runs && creationTime(process) == startTime && TerminateProcess(process, 1);
    CloseHandle(process);
    return isKilled;
}

} // namespace Kyte
