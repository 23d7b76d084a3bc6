#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

namespace Kyte {

/** A video of still pictures. */
struct KyCnvVideo
{
    QStringList pictures; ///< paths, in order, all of one size with even sides
    QVector<int> durations; ///< milliseconds of each
    int framesPerSecond = 30;
    int quality = 85; ///< 0 to 100

    qint64 totalDuration() const;
};

/** Makes \a path; false when that fails, and nothing is left then. \a progress hears percentages. */
bool makeVideo(const KyCnvVideo &video,
               const QString &path,
               const std::function<void(int percent)> &progress);

} // namespace Kyte
