#pragma once

#include <QString>

namespace Kyte {

/**
 * The form of an absolute folder path that the Windows shell takes whatever its length: with back-slashes,
 * and \\?\ in front, or \\?\UNC\ in the place of a network path's first two. Works on texts alone.
 */
QString longShellPath(const QString &absoluteFolder);

} // namespace Kyte
