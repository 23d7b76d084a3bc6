#include "KyecPlatform.h"

#include <QFile>
#include <QTextCodec>

namespace Kyte {

void useUtf8()
{
    // In the C locale Qt would read every other byte of an argument or a file name as "?".
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

void setConfigFile(const QString &path)
{
    qputenv("KYTE_CONFIG_FILE", QFile::encodeName(path));
}

} // namespace Kyte
