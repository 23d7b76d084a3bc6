#pragma once

#include <QString>

namespace Kyte {

/**
 * Makes arguments, file names and the output UTF-8, in the C locale too. Call it before anything looks at an
 * argument.
 */
void useUtf8();

/** Makes \a path the standard configuration file of this process. */
void setConfigFile(const QString &path);

} // namespace Kyte
