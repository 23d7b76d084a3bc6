#include "KyBenchSystem.h"

#include <windows.h>

#include <psapi.h>

namespace Kyte {
namespace Bench {

static double milliseconds(const FILETIME &time)
{
    ULARGE_INTEGER ticks = {};
    ticks.LowPart = time.dwLowDateTime;
    ticks.HighPart = time.dwHighDateTime;
    return static_cast<double>(ticks.QuadPart) / 1e4; // a tick is 100 ns
}

double cpuMilliseconds()
{
    FILETIME creation = {};
    FILETIME exit = {};
    FILETIME kernel = {};
    FILETIME user = {};
    if (!GetProcessTimes(GetCurrentProcess(), &creation, &exit, &kernel, &user))
        return 0;
    return milliseconds(kernel) + milliseconds(user);
}

double residentMemory()
{
    PROCESS_MEMORY_COUNTERS counters = {};
    if (!GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters))
        return 0;
    return static_cast<double>(counters.WorkingSetSize) / (1 << 20);
}

double peakMemory()
{
    PROCESS_MEMORY_COUNTERS counters = {};
    if (!GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters))
        return 0;
    return static_cast<double>(counters.PeakWorkingSetSize) / (1 << 20);
}

bool resetPeakMemory()
{
    return false; // Windows keeps the peak of the whole life of a process
}

double heapBytes()
{
    return 0; // walking the heap would take longer than any benchmark
}

std::string loadAverage()
{
    return "unknown"; // Windows keeps no such number
}

} // namespace Bench
} // namespace Kyte
