#include "ky_requests.h"

#include <cstdio>
#include <cstdlib>

#include <windows.h>

static bool isDeaf = false;
static std::string endFile;

/** Ends with the exit code by which the system itself ends a program: QProcess takes it for a crash. */
[[noreturn]] static void endWith(DWORD status)
{
    TerminateProcess(GetCurrentProcess(), status);
    std::abort();
}

void ignoreRequests()
{
    isDeaf = true;
}

void makeFileOnRequest(const std::string &path)
{
    endFile = path;
}

void heedRequests()
{
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) { // the first call makes the queue
        if (message.message != WM_CLOSE || isDeaf)
            continue;
        if (endFile.empty())
            endWith(STATUS_CONTROL_C_EXIT);
        if (std::FILE *file = std::fopen(endFile.c_str(), "w"))
            std::fclose(file);
        std::_Exit(EXIT_CODE_ON_REQUEST);
    }
}

void crash()
{
    endWith(STATUS_ACCESS_VIOLATION);
}
