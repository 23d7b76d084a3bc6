#include "KyFolderWatch_p.h"

#include <QFile>

#include <sys/inotify.h>
#include <unistd.h>

namespace Kyte {
namespace FolderWatch {

bool isPossible(const QString &folder)
{
    // Not through QFileSystemWatcher, which falls back to polling without a word when the user's limits are
    // reached.
    const int notifier = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
    if (notifier < 0)
        return false;
    const int watch = inotify_add_watch(notifier, QFile::encodeName(folder).constData(),
                                        IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_MODIFY
                                            | IN_ATTRIB | IN_ONLYDIR);
    if (watch >= 0)
        inotify_rm_watch(notifier, watch);
    close(notifier);
    return watch >= 0;
}

} // namespace FolderWatch
} // namespace Kyte
