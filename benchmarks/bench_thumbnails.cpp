#include "KyBench.h"

#include <KyIconReader.h>
#include <KyIconReaderAsync.h>

#include <QDir>
#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>

#include <memory>

using namespace Kyte;

// The first row reads the same thumbnails on both sides; the reference neither tests the files nor tells
// anybody. In the second one all images are read before, so that only the GUI thread works: the library takes
// them out of its event queue and makes icons, the reference makes icons of images in a list.

static const int COUNT = 1000;
static const QSize SIZE(160, 120);

/** A photograph's worth of detail: a plain colour would be decoded too easily. */
static QImage makeImage(QRandomGenerator *random)
{
    QImage image(SIZE, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int noise = random->bounded(16);
            image.setPixel(x, y, qRgb(x + noise, y + noise, 100 + noise));
        }
    }
    return image;
}

static QStringList makeFiles(const QTemporaryDir &folder)
{
    QDir(folder.path()).mkdir(QStringLiteral("._kythumb"));
    QRandomGenerator random(1);
    QStringList paths;
    for (int i = 0; i < COUNT; ++i) {
        const QString name = QStringLiteral("media file %1.jpg").arg(i);
        QFile file(folder.filePath(name));
        file.open(QIODevice::WriteOnly);
        makeImage(&random).save(folder.filePath(QStringLiteral("._kythumb/%1.thumb").arg(name)), "PNG");
        paths.append(file.fileName());
    }
    return paths;
}

static QList<QImage> readPlainly(const QStringList &paths)
{
    QList<QImage> images;
    for (const QString &path : paths) {
        const int slash = path.lastIndexOf(QLatin1Char('/'));
        images.append(QImage(path.left(slash) + QLatin1String("/._kythumb") + path.midRef(slash)
                             + QLatin1String(".thumb")));
    }
    return images;
}

static QList<QImage> readWithReader(QStringList paths)
{
    QList<QImage> images;
    KyIconReader reader(paths);
    QObject::connect(&reader, &KyIconReader::readingImageCompleted,
                     [&images](const QString &, const QImage &image) {
                         images.append(image);
                     });
    reader.readIconImage();
    return images;
}

/** Answers the time of the GUI thread and counts the icons. */
static double deliver(const QStringList &paths, int *icons)
{
    auto *reader = new KyIconReaderAsync(paths);
    QObject::connect(reader, &KyIconReaderAsync::iconReadCompleted, [icons](const QString &, QIcon *icon) {
        const std::unique_ptr<QIcon> owned(icon);
        *icons += icon->isNull() ? 0 : 1;
    });
    reader->start();
    auto *thread = reader->findChild<QThread *>();
    thread->quit();
    thread->wait();
    return Bench::cpuTime([] {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    });
}

static double makeIcons(const QList<QImage> &images, int *icons)
{
    return Bench::cpuTime([&] {
        for (const QImage &image : images) {
            const auto icon = std::make_unique<QIcon>();
            icon->addPixmap(QPixmap::fromImage(image));
            *icons += icon->isNull() ? 0 : 1;
        }
    });
}

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    const QTemporaryDir folder;
    const QStringList paths = makeFiles(folder);
    const QList<QImage> images = readPlainly(paths);
    Bench::requireEqual(images.size() == COUNT && readWithReader(paths) == images, "images");
    int delivered = 0;
    int made = 0;
    deliver(paths, &delivered);
    makeIcons(images, &made);
    Bench::requireEqual(delivered == COUNT && made == COUNT, "number of icons");

    Bench::Report report;
    report.ratio(
        QStringLiteral("readIconImage of %1 thumbnails / QImage in a loop").arg(COUNT), {1.08, 1.03},
        [&] {
            return Bench::cpuTime([&] {
                readWithReader(paths);
            });
        },
        [&] {
            return Bench::cpuTime([&] {
                readPlainly(paths);
            });
        });
    report.ratio(
        QStringLiteral("GUI time of %1 delivered thumbnails / fromImage and addPixmap").arg(COUNT), {3, 2},
        [&] {
            return deliver(paths, &delivered);
        },
        [&] {
            return makeIcons(images, &made);
        });
    return report.finish(QCoreApplication::arguments());
}
