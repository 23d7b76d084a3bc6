#pragma once

#include <QString>

namespace Kyte {

/** Makes the console take the output for the UTF-8 that it is, where it has to be told. */
void prepareConsole();

/** Makes \a path the standard configuration file of this process. */
void setConfigFile(const QString &path);

} // namespace Kyte
