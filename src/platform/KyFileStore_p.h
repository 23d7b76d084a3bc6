#pragma once

#include <QString>

class QFileDevice;

namespace Kyte {

/**
 * What the system offers beyond QFile for replacing a file without a moment at which its content could get
 * lost.
 */
namespace FileStore {

/**
 * Whether the file \a path could be deleted now; where not, \a reason is the system's text. Nothing is
 * changed.
 */
bool canBeDeleted(const QString &path, QString *reason);

/** Brings everything written to the open \a file onto the disk. */
bool sync(QFileDevice *file, QString *reason);

enum class ReplaceResult {
    Done,
    TargetIsProtected, ///< the old file is there and may not be taken away
    Failed
};

/** Puts \a source in the place of \a target in one step: at every moment one of the two is there, whole. */
ReplaceResult replace(const QString &source, const QString &target, QString *reason);

/** Brings the names in \a folder onto the disk, as far as the system can be asked to. */
void syncFolder(const QString &folder);

} // namespace FileStore
} // namespace Kyte
