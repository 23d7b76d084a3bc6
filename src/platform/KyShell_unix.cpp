#include "KyShell_p.h"

#include <QDesktopServices>
#include <QUrl>

namespace Kyte {
namespace Shell {

void openFolder(const QString &absoluteFolder, QWidget *)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(absoluteFolder));
}

} // namespace Shell
} // namespace Kyte
