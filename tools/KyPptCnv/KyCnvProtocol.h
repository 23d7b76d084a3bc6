#pragma once

#include <QString>

namespace Kyte {

/** The codes of what the converter says. A failure ends it with the negated code. */
enum class KyCnvCode {
    LoadingOffice = 101,
    OfficeLoaded = 102,
    SlideCount = 103,
    VideoStarted = 110,
    VideoProgress = 111,
    VideoTime = 112,
    ImagesStarted = 120,
    ImagesProgress = 121,
    Finished = 192,
    BadArguments = 200,
    NoOffice = 201,
    NoPresentation = 202,
    CannotOpen = 203,
    NoSlideCount = 205,
    NoSlides = 206,
    CannotStartVideo = 210,
    VideoFailed = 211,
    SlideFailed = 220
};

/**
 * Writes "[code](text)" to the standard output. The library's driver takes one message from whatever it reads
 * at once, so each is flushed alone and keeps a distance to the one before.
 */
void say(KyCnvCode code, const QString &text);

} // namespace Kyte
