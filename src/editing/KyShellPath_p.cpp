#include "KyShellPath_p.h"

namespace Kyte {

QString longShellPath(const QString &absoluteFolder)
{
    QString path = absoluteFolder;
    path.replace(QLatin1Char('/'), QLatin1Char('\\'));
    if (path.startsWith(QLatin1String("\\\\")))
        return path.insert(2, QLatin1String("?\\UNC\\"));
    return path.prepend(QLatin1String("\\\\?\\"));
}

} // namespace Kyte
