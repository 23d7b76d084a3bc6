#include "KyCnvConversion.h"

#include "KyCnvProcess.h"
#include "KyCnvVideo.h"

#include <QDir>
#include <QFile>
#include <QMutex>
#include <QMutexLocker>
#include <QTime>

namespace Kyte {

static int even(double number)
{
    return qMax(2, qRound(number / 2) * 2);
}

KyCnvConversion::KyCnvConversion(const KyCnvArguments &arguments)
    : m_arguments(arguments)
{
}

int KyCnvConversion::run()
{
    const int code = convert();
    if (code == 0) {
        say(KyCnvCode::Finished, QStringLiteral("Finished"));
        return 0;
    }
    for (const QString &path : qAsConst(m_files))
        QFile::remove(path);
    return KyCnvProcess::isEndRequested() ? END_REQUESTED : code;
}

/** Says what went wrong, unless it did because the converter is to end. */
int KyCnvConversion::fail(KyCnvCode code, const QString &text)
{
    if (!KyCnvProcess::isEndRequested())
        say(code, text);
    return -int(code);
}

int KyCnvConversion::convert()
{
    say(KyCnvCode::LoadingOffice, QStringLiteral("Loading"));
    if (!m_office.isInstalled())
        return fail(KyCnvCode::NoOffice, QStringLiteral("There is no office suite"));
    if (!canReadPdf())
        return fail(KyCnvCode::NoPresentation, QStringLiteral("pdfinfo and pdftoppm are missing"));
    if (!QDir().mkpath(m_arguments.outputFolder))
        return fail(KyCnvCode::CannotOpen, QStringLiteral("The output folder cannot be made"));
    const KyCnvOffice::Slides slides = KyCnvOffice::slidesIn(m_arguments.inputPath);
    if (slides == KyCnvOffice::Slides::Unreadable)
        return fail(KyCnvCode::CannotOpen, QStringLiteral("The file cannot be read"));
    if (slides == KyCnvOffice::Slides::None)
        return fail(KyCnvCode::NoSlides, QStringLiteral("There is no slide"));

    const QString pdf = m_office.toPdf(m_arguments.inputPath, [] {
        say(KyCnvCode::OfficeLoaded, QStringLiteral("Loaded"));
    });
    if (pdf.isEmpty())
        return fail(KyCnvCode::CannotOpen, QStringLiteral("The file cannot be opened"));
    const KyCnvPages pages = pagesOf(pdf);
    if (pages.count < 0)
        return fail(KyCnvCode::NoSlideCount, QStringLiteral("The slides cannot be counted"));
    if (pages.count == 0)
        return fail(KyCnvCode::NoSlides, QStringLiteral("There is no slide"));
    say(KyCnvCode::SlideCount, QString::number(pages.count));
    return m_arguments.isVideo() ? makeVideo(pdf, pages) : makeImages(pdf, pages.count);
}

int KyCnvConversion::makeImages(const QString &pdf, int count)
{
    say(KyCnvCode::ImagesStarted, QStringLiteral("Started"));
    QMutex mutex; // guards m_files
    const int failed = renderSlides(
        pdf, count, m_arguments.imageSize,
        [&](int slide, const QImage &image) {
            const QString path =
                pathOf(QStringLiteral("%1.%2").arg(QString::number(slide), m_arguments.format));
            if (!saveImage(image, path, m_arguments.format, m_arguments.quality))
                return false;
            const QMutexLocker locker(&mutex);
            m_files.append(path);
            return true;
        },
        [count](int done) {
            say(KyCnvCode::ImagesProgress, QString::number(done * 100 / count));
        });
    return failed == 0 ? 0 : fail(KyCnvCode::SlideFailed, QString::number(failed));
}

int KyCnvConversion::makeVideo(const QString &pdf, const KyCnvPages &pages)
{
    const QString encoder = findProgram({QStringLiteral("ffmpeg")});
    if (encoder.isEmpty())
        return fail(KyCnvCode::CannotStartVideo, QStringLiteral("There is no video encoder"));
    say(KyCnvCode::VideoStarted, QStringLiteral("Started"));

    KyCnvVideo video;
    video.framesPerSecond = m_arguments.framesPerSecond;
    video.quality = m_arguments.quality;
    video.durations = durations(pages.count);
    for (int slide = 1; slide <= pages.count; ++slide)
        video.pictures.append(
            QStringLiteral("%1/frame%2.bmp").arg(m_office.folder(), QString::number(slide)));
    const int height = even(m_arguments.verticalResolution);
    const QSize size(even(height * pages.size.width() / qMax(1.0, pages.size.height())), height);
    // Rendering is the smaller part of the work: it has the first fifth of the progress.
    const int failed = renderSlides(
        pdf, pages.count, size,
        [&](int slide, const QImage &image) {
            return saveImage(image, video.pictures.at(slide - 1), QStringLiteral("bmp"), 100);
        },
        [&](int done) {
            say(KyCnvCode::VideoProgress, QString::number(done * 20 / pages.count));
        });
    if (failed != 0)
        return fail(KyCnvCode::VideoFailed, QString::number(failed));

    const QString path = pathOf(QLatin1Char('.') + m_arguments.format);
    const bool isMade = Kyte::makeVideo(video, path, [](int percent) {
        say(KyCnvCode::VideoProgress, QString::number(20 + percent * 80 / 100));
    });
    if (!isMade)
        return fail(KyCnvCode::VideoFailed, QStringLiteral("The video cannot be made"));
    m_files = QStringList(path);
    const QTime time = QTime::fromMSecsSinceStartOfDay(int(video.totalDuration() % (24LL * 60 * 60 * 1000)));
    say(KyCnvCode::VideoTime, time.toString(QStringLiteral("HH:mm:ss")));
    return 0;
}

/** Milliseconds of each slide: its own timing where that is wanted and there is one. */
QVector<int> KyCnvConversion::durations(int count)
{
    QVector<int> durations(count, m_arguments.defaultSlideDuration * 1000);
    if (!m_arguments.useTimings)
        return durations;
    const QVector<int> timings = m_office.timings(m_arguments.inputPath);
    for (int slide = 0; slide < qMin(count, timings.size()); ++slide) {
        if (timings.at(slide) > 0)
            durations[slide] = timings.at(slide);
    }
    return durations;
}

QString KyCnvConversion::pathOf(const QString &name) const
{
    return QDir(m_arguments.outputFolder).absoluteFilePath(m_arguments.baseName + name);
}

} // namespace Kyte
