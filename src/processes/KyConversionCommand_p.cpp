#include "KyConversionCommand_p.h"

namespace Kyte {

/** In double quotes; one inside is written three times, as QProcess reads it. */
static QString quoted(QString path)
{
    path.replace(QLatin1Char('"'), QLatin1String("\"\"\""));
    return QLatin1Char('"') + path + QLatin1Char('"');
}

static QString conversionArguments(const ConversionJob &job)
{
    // Put together, not with arg(): a path may hold "%1".
    return QLatin1String("-i ") + quoted(job.inputPath) + QLatin1String(" -t ") + job.imageFormat
        + QLatin1String(" -d ") + quoted(job.outputFolder) + QLatin1String(" -o slide -w ")
        + QString::number(job.width) + QLatin1String(" -h ") + QString::number(job.height)
        + QLatin1String(" -sd ") + QString::number(job.defaultSlideDuration) + QLatin1String(" -vr ")
        + QString::number(job.vertResolution) + QLatin1String(" -fs ") + QString::number(job.framesPerSecond)
        + QLatin1String(" -qt ") + QString::number(job.quality) + QLatin1String(" -ut ")
        + QLatin1String(job.useTimingsAndNarrations ? "true" : "false");
}

QString conversionCommand(const QString &converter, const ConversionJob &job)
{
    // Both at once: what is put in for %1 is not searched for %2.
    return QStringLiteral("%1 %2").arg(quoted(converter), conversionArguments(job));
}

} // namespace Kyte
