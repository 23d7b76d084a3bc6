#include "KyTracedProgram.h"

#include "KyTestEnvironment.h"

#include <QHash>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace Kyte {
namespace Test {

static const int TIME_LIMIT = 60000; // milliseconds
static const QString BEGIN_MARK = QStringLiteral("\"kyte-save-begins\"");

static QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

bool SystemCall::isOfFile() const
{
    const bool namesFile = text.contains(QLatin1String("</")) || text.contains(QLatin1String("\"/"));
    return namesFile && name != QLatin1String("close");
}

bool SystemCall::changesFile() const
{
    static const QStringList NAMES = words("write pwrite64 writev fsync fdatasync ftruncate fallocate rename"
                                           " renameat renameat2 link linkat sendfile copy_file_range");
    return isOfFile()
        && (NAMES.contains(name) || deletesFile()
            || (name.startsWith(QLatin1String("open")) && !text.contains(QLatin1String("O_RDONLY"))));
}

bool SystemCall::deletesFile() const
{
    return name.startsWith(QLatin1String("unlink"));
}

QString testProgram(const QString &name)
{
    return QStringLiteral(KYTE_TEST_PROGRAM_DIR "/") + name;
}

static void run(const QString &program, const QStringList &arguments, ProgramRun *result)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // Leaks cannot be looked for in a process that is traced.
    environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    if (!process.waitForFinished(TIME_LIMIT) && process.error() != QProcess::FailedToStart)
        qFatal("%s: %s", qPrintable(program), qPrintable(process.errorString()));
    result->isKilled = process.exitStatus() == QProcess::CrashExit;
    result->output =
        QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

ProgramRun runProgram(const QString &program, const QStringList &arguments)
{
    ProgramRun result;
    run(program, arguments, &result);
    return result;
}

QString whyNotTraceable()
{
    if (QStandardPaths::findExecutable(QStringLiteral("strace")).isEmpty())
        return QStringLiteral("strace is not installed");
    const ProgramRun run = runProgram(QStringLiteral("strace"),
                                      {QStringLiteral("-o"), QStringLiteral("/dev/null"),
                                       QStringLiteral("echo"), QStringLiteral("traced")});
    return run.output.contains(QLatin1String("traced")) ? QString()
                                                        : QStringLiteral("strace cannot trace programs here");
}

/** The calls between the marks in the log of strace, and the answer behind the second mark. */
static void parse(const QString &log, TracedRun *run)
{
    static const QRegularExpression CALL(QStringLiteral("^(\\w+)\\("));
    static const QRegularExpression END_MARK(QStringLiteral("\"kyte-save-ended (.*)\".* = (.*)$"));
    QHash<QString, int> numbers;
    bool isSaving = false;
    const QStringList lines = log.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QRegularExpressionMatch match = CALL.match(line);
        if (!match.hasMatch())
            continue;
        const QString name = match.captured(1);
        const int number = ++numbers[name];
        if (isSaving && run->answer.isEmpty())
            run->calls.append({name, number, line});
        if (line.contains(BEGIN_MARK))
            isSaving = true;
        const QRegularExpressionMatch end = END_MARK.match(line);
        if (end.hasMatch() && end.captured(2) != QLatin1String("?"))
            run->answer = end.captured(1).replace(QLatin1String("\\n"), QLatin1String("\n"));
    }
}

TracedRun traceSaving(const QStringList &arguments, const QString &injection)
{
    const QTemporaryDir folder;
    const QString log = folder.filePath(QStringLiteral("log"));
    QStringList options = {QStringLiteral("-y"), QStringLiteral("-s"), QStringLiteral("200"),
                           QStringLiteral("-o"), log};
    if (!injection.isEmpty())
        options.append({QStringLiteral("-e"), QStringLiteral("inject=") + injection});
    TracedRun result;
    run(QStringLiteral("strace"), options + QStringList(testProgram(QStringLiteral("ky_save"))) + arguments,
        &result);
    parse(QString::fromUtf8(readFile(log)), &result);
    return result;
}

QString injection(const SystemCall &call, const QString &what, bool everyLaterCallToo)
{
    return QStringLiteral("%1:%2:when=%3%4")
        .arg(call.name, what)
        .arg(call.number)
        .arg(everyLaterCallToo ? QStringLiteral("+") : QString());
}

} // namespace Test
} // namespace Kyte
