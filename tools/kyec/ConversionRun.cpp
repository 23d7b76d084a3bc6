#include "ConversionRun.h"

#include "KyecPlatform.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QProcess>
#include <QVariant>

#include <algorithm>
#include <cstdio>

namespace Kyte {

static const int BAR_WIDTH = 30; // characters
static const QString STOPPED = QStringLiteral("The conversion was aborted.");

ProgressLine::ProgressLine()
    : m_isShown(isErrorStreamTerminal())
{
}

ProgressLine::~ProgressLine()
{
    clear();
}

void ProgressLine::show(const QString &text, int percent)
{
    if (percent < 0)
        return write(text);
    const int done = qMin(percent, 100) * BAR_WIDTH / 100;
    write(QStringLiteral("[%1%2] %3 %  %4")
              .arg(QString(done, QLatin1Char('#')), QString(BAR_WIDTH - done, QLatin1Char('.')),
                   QString::number(percent).rightJustified(3), text));
}

void ProgressLine::clear()
{
    if (m_length > 0)
        write(QString());
}

void ProgressLine::write(const QString &line)
{
    if (!m_isShown)
        return;
    // Blanks over the rest of what stood there: not every terminal knows how to clear a line.
    std::fprintf(stderr, "\r%s", line.leftJustified(m_length).toUtf8().constData());
    if (line.isEmpty())
        std::fputc('\r', stderr);
    std::fflush(stderr);
    m_length = line.size();
}

ConversionRun::ConversionRun(const QString &inputPath, const QString &outputPath, Output output)
    : m_conversion(inputPath, outputPath, false)
    , m_isVideo(output == Output::Video)
{
    if (m_isVideo)
        m_conversion.setProperty("imageFormat", QStringLiteral("mp4"));
    connect(&m_conversion, SIGNAL(errorOccured(QString, bool)), this, SLOT(onErrorOccured(QString)));
    connect(&m_conversion, SIGNAL(informationUpdated(QString)), this, SLOT(onInformationUpdated(QString)));
    connect(&m_conversion, SIGNAL(progressUpdated(int)), this, SLOT(onProgressUpdated(int)));
    connect(&m_conversion, SIGNAL(creationCompleted(QString)), this, SLOT(onCreationCompleted()));
}

bool ConversionRun::run()
{
    catchInterrupt(this, SLOT(onInterrupt()));
    m_conversion.start();
    QProcess *converter = m_conversion.findChild<QProcess *>();
    if (!converter)
        return false;

    m_folder = converter->arguments().value(converter->arguments().indexOf(QStringLiteral("-d")) + 1);
    m_formerFiles = stampedFiles();
    // Not finished(): a converter that fails need not say so.
    connect(converter, SIGNAL(finished(int, QProcess::ExitStatus)), this, SLOT(onConverterEnded()));
    connect(converter, SIGNAL(error(QProcess::ProcessError)), this, SLOT(onConverterEnded()));
    m_exitCode = converter->exitCode();
    if (converter->state() != QProcess::NotRunning)
        QCoreApplication::exec(); // at its end the library deletes the process
    // A Ctrl-C on a terminal reaches the converter as well, which may be the faster one.
    QCoreApplication::processEvents();

    m_progress.clear();
    if (m_lastErrorMessage.isEmpty() && !m_isCompleted)
        fail(QStringLiteral("The converter ended without success, with the code %1.").arg(m_exitCode));
    return m_lastErrorMessage.isEmpty();
}

QString ConversionRun::lastErrorMessage() const
{
    return m_lastErrorMessage;
}

QString ConversionRun::folder() const
{
    return m_folder;
}

QStringList ConversionRun::files() const
{
    QStringList names;
    const QStringList stamped = stampedFiles();
    for (const QString &file : stamped) {
        if (!m_formerFiles.contains(file))
            names.append(file.section(QLatin1Char('/'), -1));
    }
    // They differ in their numbers only, which have no zeros before them.
    std::sort(names.begin(), names.end(), [](const QString &left, const QString &right) {
        return left.size() != right.size() ? left.size() < right.size() : left < right;
    });
    return names;
}

/** "time/size/name" of each file in the folder that could be a slide or a video. */
QStringList ConversionRun::stampedFiles() const
{
    QStringList stamped;
    const QFileInfoList files = QDir(m_folder).entryInfoList({QStringLiteral("slide*")}, QDir::Files);
    for (const QFileInfo &file : files)
        stamped.append(QStringLiteral("%1/%2/%3")
                           .arg(QString::number(file.lastModified().toMSecsSinceEpoch()),
                                QString::number(file.size()), file.fileName()));
    return stamped;
}

void ConversionRun::onErrorOccured(const QString &message)
{
    // The library tells the start of a video as an error.
    if (m_isVideo && message == KyPptConversion::tr("Start to create video file."))
        return onInformationUpdated(message);
    if (m_isEnding) // the end that was asked for may look like a crash
        return;
    m_isEnding = true;
    fail(message.trimmed());
    m_conversion.abort();
}

void ConversionRun::onInformationUpdated(const QString &info)
{
    if (!m_isEnding)
        m_progress.show(info, m_percent);
}

void ConversionRun::onProgressUpdated(int percent)
{
    m_percent = percent;
}

void ConversionRun::onCreationCompleted()
{
    m_isCompleted = true;
}

void ConversionRun::onConverterEnded()
{
    const QProcess *converter = m_conversion.findChild<QProcess *>();
    if (converter->state() != QProcess::NotRunning)
        return;
    m_exitCode = converter->exitCode();
    QCoreApplication::quit();
}

void ConversionRun::onInterrupt()
{
    fail(STOPPED);
    if (m_isEnding)
        return;
    m_isEnding = true;
    m_progress.show(QStringLiteral("Aborting..."), -1);
    m_conversion.abort();
}

void ConversionRun::fail(const QString &message)
{
    m_lastErrorMessage = message;
}

} // namespace Kyte
