#pragma once

#include <QImage>
#include <QSize>
#include <QSizeF>
#include <QString>

#include <functional>

namespace Kyte {

/** What a PDF holds. */
struct KyCnvPages
{
    int count = -1; ///< -1 when it cannot be read
    QSizeF size; ///< of the first page, in points
};

/** False when the programs that read a PDF are not installed. */
bool canReadPdf();
KyCnvPages pagesOf(const QString &pdf);

/** Keeps the image of a slide, counted from 1; false when that fails. Called on several threads. */
using SlideKeeper = std::function<bool(int slide, const QImage &image)>;
/** Hears how many slides are done, on the thread that renders. */
using SlideProgress = std::function<void(int done)>;

/**
 * Renders the pages 1 to \a count of \a pdf in \a size, as many at once as there are processors. The answer
 * is 0, or the number of a slide that failed, or -1 when the converter was asked to end.
 */
int renderSlides(
    const QString &pdf, int count, const QSize &size, const SlideKeeper &keep, const SlideProgress &progress);

/** Writes \a image as a whole or not at all. */
bool saveImage(const QImage &image, const QString &path, const QString &format, int quality);

} // namespace Kyte
