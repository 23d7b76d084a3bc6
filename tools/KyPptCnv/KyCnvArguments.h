#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

namespace Kyte {

/** What the converter is to do: its command line, checked. */
struct KyCnvArguments
{
    QString inputPath;
    QString format; ///< "png", "jpg" or "bmp" for images, "mp4" for a video
    QString outputFolder;
    QString baseName; ///< of the files made: "slide" gives slide1.png, or slide.mp4
    QSize imageSize; ///< pixels
    int defaultSlideDuration = 5; ///< seconds
    int verticalResolution = 720; ///< of a video, in pixels
    int framesPerSecond = 30;
    int quality = 85; ///< 0 to 100
    bool useTimings = true; ///< those that the presentation holds

    bool isVideo() const;

    /**
     * Reads \a arguments, without the program's name, in any order. The answer is 0, or the number, counted
     * from 1, of the first argument that is wrong; one more than there are when something is missing.
     */
    int read(const QStringList &arguments);
};

} // namespace Kyte
