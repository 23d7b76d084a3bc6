#pragma once

#include <QString>

class QObject;

namespace Kyte {

/** Makes the console take the output for the UTF-8 that it is, where it has to be told. */
void prepareConsole();

/** Makes drawing possible without a display, where it has to be asked for; before there is an application. */
void prepareDrawing();

/** Makes \a path the standard configuration file of this process. */
void setConfigFile(const QString &path);

/** Whether the standard error stream is shown on a terminal. */
bool isErrorStreamTerminal();

/**
 * The first Ctrl-C, or request to end, calls \a slot of \a receiver from the event loop; the next one ends
 * the program. Once in the life of a program.
 */
void catchInterrupt(QObject *receiver, const char *slot);

} // namespace Kyte
