#pragma once

namespace Kyte {

class KyecArguments;

/** What the program ends with. */
enum KyecExitCode {
    Exit_Success = 0,
    Exit_Failure = 1, ///< the operation failed
    Exit_WrongUsage = 2 ///< the command line was wrong, nothing was done
};

/** A command: a line of the table in main.cpp. All texts are UTF-8. */
struct KyecCommand
{
    const char *name;
    const char *synopsis; ///< what follows the name; one line for each way to call the command
    const char *description; ///< one line
    /** Declares the options, parses, does the work and answers the exit code. */
    int (*run)(KyecArguments &arguments);
    bool draws = false; ///< whether it handles icons or pixmaps, which the program has to be prepared for
};

int runDemo(KyecArguments &arguments);

int runChannels(KyecArguments &arguments);
int runDestinations(KyecArguments &arguments);
int runGroups(KyecArguments &arguments);
int runMove(KyecArguments &arguments);

int runSvg(KyecArguments &arguments);
int runThumbnails(KyecArguments &arguments);
int runTree(KyecArguments &arguments);
int runPreview(KyecArguments &arguments);
int runTemplates(KyecArguments &arguments);

int runVerify(KyecArguments &arguments);

int runConvert(KyecArguments &arguments);

int runDuration(KyecArguments &arguments);
int runUniqueName(KyecArguments &arguments);
int runWatchProbe(KyecArguments &arguments);

} // namespace Kyte
