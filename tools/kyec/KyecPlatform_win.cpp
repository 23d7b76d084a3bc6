#include "KyecPlatform.h"

#include <cstdlib>

#include <windows.h>

namespace Kyte {

void prepareConsole()
{
    SetConsoleOutputCP(CP_UTF8);
}

void setConfigFile(const QString &path)
{
    // Not qputenv(), which takes the path through the system's code page.
    _wputenv_s(L"KYTE_CONFIG_FILE", reinterpret_cast<const wchar_t *>(path.utf16()));
}

} // namespace Kyte
