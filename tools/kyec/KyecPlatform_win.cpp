#include "KyecPlatform.h"

#include <cstdlib>

#include <windows.h>

namespace Kyte {

void useUtf8()
{
    // Arguments and file names are UTF-16 here; only the console has to be told.
    SetConsoleOutputCP(CP_UTF8);
}

void setConfigFile(const QString &path)
{
    // Not qputenv(), which takes the path through the system's code page.
    _wputenv_s(L"KYTE_CONFIG_FILE", reinterpret_cast<const wchar_t *>(path.utf16()));
}

} // namespace Kyte
