#pragma once

#include <QString>

namespace Kyte {

/**
 * The form of an absolute folder path that the Windows shell takes whatever its length: back-slashes, and the
 * prefix
 * \\?\ in front, or \\?\UNC\ in the place of the two back-slashes of a network path. Works on texts alone.
 */
QString longShellPath(const QString &absoluteFolder);

} // namespace Kyte
