#include "KyBench.h"
#include "KyStageLayouts_p.h"
#include "KyStageReference.h"

#include <KyStageListWidgetItem.h>
#include <KyStagePreview.h>

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QPixmap>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>

#include <memory>
#include <vector>

using namespace Kyte;

// Both sides draw the same pixels. The references are the straightforward drawings that the tests compare
// with as well: the icon's content in an image of its own, and a preview that reads its background each time.

static const QString LABEL = QStringLiteral("Background");
static const QSize BACKGROUND_SIZE(1920, 1080);
static const unsigned long SETTLING_TIME = 3; // seconds until a written file may be kept in memory

static QString untranslated(const char *sourceText)
{
    return QString::fromUtf8(sourceText);
}

using Items = std::vector<std::unique_ptr<KyStageListWidgetItem>>;

static Items makeTemplates()
{
    Items items;
    for (int layout = 0; layout < StageLayouts::LAYOUT_COUNT; ++layout) {
        items.push_back(std::make_unique<KyStageListWidgetItem>());
        items.back()->setStage(StageLayouts::makeStage(static_cast<StageLayouts::Layout>(layout),
                                                       QRect(QPoint(), BACKGROUND_SIZE), untranslated)
                                   .release());
    }
    return items;
}

static void drawPlainly(KyStageListWidgetItem *item)
{
    QIcon icon;
    for (double factor : Test::iconFactors())
        icon.addPixmap(
            QPixmap::fromImage(Test::referenceIcon(*item->stage(), item->iconSize(), factor, LABEL)));
    item->setIcon(icon);
}

static std::vector<QImage> pixmapsOf(const Items &items)
{
    std::vector<QImage> images;
    for (const auto &item : items) {
        const QList<QSize> sizes = item->icon().availableSizes();
        for (const QSize &size : sizes)
            images.push_back(item->icon().pixmap(size).toImage());
    }
    return images;
}

static void measureIcons(Bench::Report *report)
{
    const Items items = makeTemplates();
    const auto drawn = [&] {
        return Bench::cpuTime([&] {
            for (const auto &item : items)
                item->createIconImage();
        });
    };
    const auto drawnPlainly = [&] {
        return Bench::cpuTime([&] {
            for (const auto &item : items)
                drawPlainly(item.get());
        });
    };
    drawn();
    const std::vector<QImage> images = pixmapsOf(items);
    drawnPlainly();
    Bench::requireEqual(images.size() == 99 && images == pixmapsOf(items), "icons");
    report->ratio(QStringLiteral("icons of the templates / through two ARGB32 images"), {0.6, 0.5}, drawn,
                  drawnPlainly);
}

/** Something between a drawing and a photograph. */
static void writeBackground(const QString &path)
{
    QRandomGenerator random(1);
    QImage image(BACKGROUND_SIZE, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int noise = random.bounded(8);
            line[x] = qRgb(x / 8 + noise, y / 5 + noise, (x / 240 + y / 240) % 2 * 200 + noise);
        }
    }
    Bench::requireEqual(image.save(path), "background");
}

/** What a user's dragging of a window's corner brings. */
static QVector<QSize> sizesAround(const QSize &size)
{
    QVector<QSize> sizes;
    for (int step = 0; step < 5; ++step)
        sizes.append(size - QSize(16 * step, 9 * step));
    return sizes;
}

static void measurePreview(Bench::Report *report,
                           const KyStage &stage,
                           const QString &file,
                           const QSize &size,
                           const Bench::Limits &limits)
{
    const QVector<QSize> sizes = sizesAround(size);
    KyStagePreview preview;
    for (const QSize &each : sizes) {
        preview.resize(each + QSize(1, 1));
        preview.setStage(stage);
        Bench::requireEqual(*preview.image() == Test::referencePicture(stage, file, each, preview.font()),
                            "pictures");
    }
    report->ratio(
        QStringLiteral("preview at %1 x %2, %3 / reading the background each time")
            .arg(size.width())
            .arg(size.height())
            .arg(QFileInfo(file).suffix().toUpper()),
        limits,
        [&] {
            return Bench::cpuTime([&] {
                for (const QSize &each : sizes) {
                    preview.resize(each + QSize(1, 1));
                    preview.setStage(stage);
                }
            });
        },
        [&] {
            return Bench::cpuTime([&] {
                for (const QSize &each : sizes)
                    Test::referencePicture(stage, file, each, preview.font());
            });
        });
}

static void measurePreviews(Bench::Report *report)
{
    const QTemporaryDir folder;
    KyStage stage(*makeTemplates().at(StageLayouts::TwoMultiMediaScreensAndOneTelopScreen)->stage());
    stage.setFilePath(folder.filePath(QStringLiteral("lobby.kystage")));
    const QString dataFolder = folder.filePath(QStringLiteral("lobby_data"));
    QDir().mkpath(dataFolder);
    const QString png = dataFolder + QStringLiteral("/background.png");
    const QString jpeg = dataFolder + QStringLiteral("/background.jpg");
    writeBackground(png);
    writeBackground(jpeg);
    QThread::sleep(SETTLING_TIME);
    stage.setBackgroundImage(QStringLiteral("background.png"));
    measurePreview(report, stage, png, QSize(640, 360), {0.35, 0.2});
    measurePreview(report, stage, png, QSize(1920, 1080), {0.6, 0.3});
    // Decoding a JPEG takes less time than drawing it, which both sides do in the same way.
    stage.setBackgroundImage(QStringLiteral("background.jpg"));
    measurePreview(report, stage, jpeg, QSize(640, 360), {0.6, 0.35});
    measurePreview(report, stage, jpeg, QSize(1920, 1080), {1.0, 0.8});
}

int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen"); // nothing is shown
    QApplication application(argc, argv);
    Bench::Report report;
    measureIcons(&report);
    measurePreviews(&report);
    return report.finish(QApplication::arguments());
}
