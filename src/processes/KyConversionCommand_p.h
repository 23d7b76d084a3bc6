#pragma once

#include <QString>

namespace Kyte {

/** What the presentation converter is asked for. */
struct ConversionJob
{
    QString inputPath;
    QString imageFormat;
    QString outputFolder; ///< absolute
    int width = 0;
    int height = 0;
    int defaultSlideDuration = 0; ///< seconds
    int vertResolution = 0;
    int framesPerSecond = 0;
    int quality = 0;
    bool useTimingsAndNarrations = false;
};

/**
 * The command line that runs \a converter on \a job, as one text in the form that QProcess::splitCommand()
 * takes apart. Whatever characters the paths hold, each of them stays one argument.
 */
QString conversionCommand(const QString &converter, const ConversionJob &job);

} // namespace Kyte
