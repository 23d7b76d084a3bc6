#include "KyBenchSystem.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include <time.h>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace Kyte {
namespace Bench {

/** The line \a name of the process's status, in MiB; 0 where there is none. */
static double statusValue(const std::string &name)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.compare(0, name.size(), name) == 0)
            return std::strtod(line.c_str() + name.size(), nullptr) / 1024; // it is in kB
    }
    return 0;
}

double cpuMilliseconds()
{
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return time.tv_sec * 1e3 + time.tv_nsec / 1e6;
}

double residentMemory()
{
    return statusValue("VmRSS:");
}

double peakMemory()
{
    return statusValue("VmHWM:");
}

bool resetPeakMemory()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
    std::ofstream references("/proc/self/clear_refs");
    references << '5' << std::flush; // the kernel's code for "the peak is what is in use now"
    return references.good();
}

double heapBytes()
{
#if defined(__GLIBC__) && __GLIBC_PREREQ(2, 33)
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks) + double(info.hblkhd);
#else
    return 0;
#endif
}

std::string loadAverage()
{
    double loads[3] = {};
    if (getloadavg(loads, 3) != 3)
        return "unknown";
    char text[64];
    std::snprintf(text, sizeof text, "%.2f %.2f %.2f", loads[0], loads[1], loads[2]);
    return text;
}

} // namespace Bench
} // namespace Kyte
