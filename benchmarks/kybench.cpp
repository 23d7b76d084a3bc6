#include "KyBench.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

using namespace Kyte;

/** Runs \a program, which writes its rows to \a jsonFile; false when it did not get that far. */
static bool run(const QString &program, const QString &jsonFile)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(QCoreApplication::applicationDirPath() + QLatin1Char('/') + program,
                  {QStringLiteral("--json"), jsonFile});
    // The exit code only repeats what the rows say.
    return process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit
        && QFile::exists(jsonFile);
}

/** Runs every benchmark of this build and joins their rows into one table. */
int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList programs = QStringLiteral(KYTE_BENCHMARKS).split(QLatin1Char(' '));
    QTemporaryDir folder;
    Bench::Report report;
    for (const QString &program : programs) {
        const QString jsonFile = folder.filePath(program);
        if (!run(program, jsonFile) || !report.appendFile(jsonFile)) {
            QTextStream(stderr) << program << " failed\n";
            return 2;
        }
    }
    return report.finish(QCoreApplication::arguments());
}
