#include "KyFileTime_p.h"

#include <QDateTime>

namespace Kyte {

// The listing of a folder brings the time along, and the time zone is asked of the system.
qint64 fileModificationTime(const QFileInfo &info)
{
    const QDateTime modified = info.lastModified();
    return modified.isValid() ? modified.toMSecsSinceEpoch() : 0;
}

} // namespace Kyte
