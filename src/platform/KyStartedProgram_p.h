#pragma once

#include <QtGlobal>

class QProcess;

namespace Kyte {

/** What the system tells and allows of a program that a QProcess has started. */
namespace StartedProgram {

/** The main window of the running program, 0 while it has none. */
quint64 mainWindow(const QProcess &process);

/**
 * Called in the started program before its own code runs: writing to a pipe that nobody reads any more shall
 * be an error to it, not its end. Windows has it so for every program.
 */
void surviveBrokenPipes();

} // namespace StartedProgram
} // namespace Kyte
