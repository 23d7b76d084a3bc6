#include "KyCnvSlides.h"

#include "KyCnvProcess.h"

#include <QImageWriter>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStandardPaths>
#include <QThread>

#include <atomic>
#include <memory>
#include <vector>

namespace Kyte {

static const QString PDF_READER = QStringLiteral("pdfinfo");
static const QString PDF_RENDERER = QStringLiteral("pdftoppm");
static const int PNG_QUALITY = 85; // to Qt this is zlib's fastest level, which saves most of the time
static const int POLL = 20; // milliseconds

bool canReadPdf()
{
    return !QStandardPaths::findExecutable(PDF_READER).isEmpty()
        && !QStandardPaths::findExecutable(PDF_RENDERER).isEmpty();
}

KyCnvPages pagesOf(const QString &pdf)
{
    KyCnvPages pages;
    KyCnvProcess info;
    info.start(PDF_READER, {pdf});
    if (!info.waitForSuccess())
        return pages;
    const QString text = QString::fromUtf8(info.readAllStandardOutput());
    static const QRegularExpression COUNT(QStringLiteral("Pages:\\s+(\\d+)"));
    static const QRegularExpression SIZE(QStringLiteral("Page size:\\s+([\\d.]+) x ([\\d.]+)"));
    const QRegularExpressionMatch count = COUNT.match(text);
    if (count.hasMatch())
        pages.count = count.captured(1).toInt();
    const QRegularExpressionMatch size = SIZE.match(text);
    pages.size = QSizeF(size.captured(1).toDouble(), size.captured(2).toDouble());
    return pages;
}

/** Null when it failed. */
static QImage render(const QString &pdf, int slide, const QSize &size)
{
    KyCnvProcess renderer;
    const QString number = QString::number(slide);
    renderer.start(PDF_RENDERER,
                   {QStringLiteral("-f"), number, QStringLiteral("-l"), number, QStringLiteral("-scale-to-x"),
                    QString::number(size.width()), QStringLiteral("-scale-to-y"),
                    QString::number(size.height()), pdf});
    if (!renderer.waitForSuccess())
        return QImage();
    return QImage::fromData(renderer.readAllStandardOutput(), "PPM");
}

int renderSlides(
    const QString &pdf, int count, const QSize &size, const SlideKeeper &keep, const SlideProgress &progress)
{
    std::atomic_int next{1};
    std::atomic_int done{0};
    std::atomic_int failed{0};
    const auto work = [&] {
        for (int slide = next++; slide <= count && failed == 0; slide = next++) {
            const QImage image = render(pdf, slide, size);
            if (image.isNull() || !keep(slide, image))
                failed = slide;
            else
                ++done;
        }
    };
    std::vector<std::unique_ptr<QThread>> threads;
    for (int i = 0; i < qBound(1, QThread::idealThreadCount(), count); ++i) {
        threads.emplace_back(QThread::create(work));
        threads.back()->start();
    }
    int told = 0;
    for (const std::unique_ptr<QThread> &thread : threads) {
        bool isRunning = true;
        while (isRunning) {
            isRunning = !thread->wait(POLL);
            if (failed == 0 && done > told) {
                told = done;
                progress(told);
            }
        }
    }
    return KyCnvProcess::isEndRequested() ? -1 : int(failed);
}

bool saveImage(const QImage &image, const QString &path, const QString &format, int quality)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QImageWriter writer(&file, format.toLatin1());
    writer.setQuality(format == QLatin1String("png") ? PNG_QUALITY : quality);
    // commit() does not see an error in what it writes itself.
    return writer.write(image) && file.flush() && file.error() == QFileDevice::NoError && file.commit();
}

} // namespace Kyte
