#include "KyCnvVideo.h"

#include "KyCnvProcess.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <QTextStream>

#include <numeric>

namespace Kyte {

// The encoder's scale goes the other way: 51 is the worst, and below 13 nothing is seen to get better.
static const int WORST_RATE = 51;
static const int BEST_RATE = 13;

qint64 KyCnvVideo::totalDuration() const
{
    return std::accumulate(durations.cbegin(), durations.cend(), qint64(0));
}

static QString seconds(qint64 milliseconds)
{
    return QString::number(double(milliseconds) / 1000, 'f', 3);
}

/** In single quotes, in which nothing but a quote is special: that one stands outside of them. */
static QString quoted(QString path)
{
    return QLatin1Char('\'') + path.replace(QLatin1Char('\''), QLatin1String("'\\''")) + QLatin1Char('\'');
}

/** The list that the encoder reads. It takes no duration for the last picture, which is so named twice. */
static bool writeList(const KyCnvVideo &video, QTemporaryFile *file)
{
    if (!file->open())
        return false;
    QTextStream list(file);
    list.setCodec("UTF-8");
    for (int i = 0; i < video.pictures.size(); ++i)
        list << "file " << quoted(video.pictures.at(i)) << "\nduration " << seconds(video.durations.at(i))
             << '\n';
    list << "file " << quoted(video.pictures.constLast()) << '\n';
    list.flush();
    return file->flush();
}

/** The last time, in microseconds, that the encoder's reports in \a text tell; -1 without one. */
static qint64 encodedTime(const QByteArray &text)
{
    const QByteArray key = "out_time_us=";
    const int begin = text.lastIndexOf(key);
    if (begin < 0)
        return -1;
    bool ok = false;
    const int end = text.indexOf('\n', begin);
    const qint64 time = text.mid(begin + key.size(), end - begin - key.size()).toLongLong(&ok);
    return ok ? time : -1;
}

bool makeVideo(const KyCnvVideo &video, const QString &path, const std::function<void(int percent)> &progress)
{
    QTemporaryFile list;
    if (!writeList(video, &list))
        return false;
    const QString unfinished = path + QLatin1String(".part");
    const qint64 total = qMax<qint64>(1, video.totalDuration());
    KyCnvProcess encoder;
    QObject::connect(&encoder, &QProcess::readyReadStandardOutput, [&] {
        const qint64 time = encodedTime(encoder.readAllStandardOutput());
        if (time >= 0)
            progress(int(qMin<qint64>(99, time / 10 / total)));
    });
    encoder.setStandardErrorFile(QProcess::nullDevice());
    encoder.setStandardInputFile(QProcess::nullDevice());
    const int rate = WORST_RATE - (WORST_RATE - BEST_RATE) * video.quality / 100;
    encoder.start(QStringLiteral("ffmpeg"),
                  {QStringLiteral("-y"),
                   QStringLiteral("-xerror"), // without it a full disk is no failure at the end of the file
                   QStringLiteral("-nostats"),
                   QStringLiteral("-f"),
                   QStringLiteral("concat"),
                   QStringLiteral("-safe"),
                   QStringLiteral("0"),
                   QStringLiteral("-i"),
                   list.fileName(),
                   QStringLiteral("-t"),
                   seconds(total),
                   QStringLiteral("-vf"),
                   QStringLiteral("fps=%1,format=yuv420p").arg(video.framesPerSecond),
                   QStringLiteral("-c:v"),
                   QStringLiteral("libx264"),
                   QStringLiteral("-crf"),
                   QString::number(rate),
                   QStringLiteral("-movflags"),
                   QStringLiteral("+faststart"),
                   QStringLiteral("-progress"),
                   QStringLiteral("pipe:1"),
                   QStringLiteral("-f"),
                   QStringLiteral("mp4"),
                   unfinished});
    if (!encoder.waitForSuccess() || QFileInfo(unfinished).size() == 0) {
        QFile::remove(unfinished);
        return false;
    }
    QFile::remove(path);
    progress(100);
    return QFile::rename(unfinished, path);
}

} // namespace Kyte
