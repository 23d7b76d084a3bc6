#include "KyecPlatform.h"

#include <QFile>

namespace Kyte {

void prepareConsole()
{
}

void setConfigFile(const QString &path)
{
    qputenv("KYTE_CONFIG_FILE", QFile::encodeName(path));
}

} // namespace Kyte
