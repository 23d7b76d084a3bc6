#pragma once

#include <QString>

class QFileInfo;
class QIcon;

namespace Kyte {

/**
 * Where the thumbnail of a file lies: beside it, in a hidden folder, under its name with an extension added.
 * Nothing here needs the GUI thread but addTo().
 */
namespace ThumbnailFile {

/** Whether the extension of \a file is that of a media type. The disk is not asked. */
bool isMedia(const QFileInfo &file);

/** The absolute path at which the thumbnail of \a file belongs; empty for a path that ends with a separator
 * and so names no file. The disk is not asked. */
QString pathOf(const QFileInfo &file);

/** pathOf() if a file lies there, else empty. A folder or a pipe in its place is no thumbnail. */
QString find(const QFileInfo &file);

/** Adds the thumbnail \a path to \a icon at 32 by 32; nothing happens if it is no image. */
void addTo(QIcon *icon, const QString &path);

} // namespace ThumbnailFile
} // namespace Kyte
