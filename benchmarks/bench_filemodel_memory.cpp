#include "KyBench.h"
#include "KyBenchFiles.h"

#include <KyFileSystemModel.h>

#include <QApplication>
#include <QEventLoop>
#include <QFileSystemModel>
#include <QTextStream>

#include <memory>

using namespace Kyte;

// What is still allocated when a side is done, divided by the number of files. Each side is made anew for
// every round, and the caches of the process are filled by a round before.

template<typename Make>
static double bytesPerFile(int count, Make make)
{
    const double before = Bench::heapBytes();
    const auto kept = make();
    const double bytes = Bench::heapBytes() - before;
    Bench::requireEqual(bytes > 0, "memory");
    return bytes / count;
}

static std::unique_ptr<KyFileSystemModel> loaded(const QString &path, bool read)
{
    std::unique_ptr<KyFileSystemModel> model(new KyFileSystemModel);
    model->setRootPath(path);
    if (read)
        Bench::readCells(*model, QModelIndex());
    return model;
}

static std::unique_ptr<QFileInfoList> listed(const QString &path)
{
    return std::unique_ptr<QFileInfoList>(new QFileInfoList(QDir(path).entryInfoList(
        QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name | QDir::DirsFirst | QDir::IgnoreCase)));
}

static std::unique_ptr<QFileSystemModel> loadedQt(const QString &path, int count)
{
    std::unique_ptr<QFileSystemModel> model(new QFileSystemModel);
    model->setRootPath(path);
    const QModelIndex root = model->index(path);
    while (model->rowCount(root) != count)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents);
    Bench::readCells(*model, root);
    return model;
}

static void measure(Bench::Report *report, const Bench::FileFolder &folder)
{
    const QString path = folder.path();
    const int count = folder.count();
    const QString unit = QStringLiteral("B");
    const auto subject = [=](bool read) {
        return [=] {
            return bytesPerFile(count, [&] {
                return loaded(path, read);
            });
        };
    };
    report->ratio(
        QStringLiteral("memory of a loaded node / of its QFileInfo"), {1.35, 1.25}, subject(false),
        [=] {
            return bytesPerFile(count, [&] {
                return listed(path);
            });
        },
        unit);
    report->ratio(
        QStringLiteral("memory of a node once read / QFileSystemModel"), {1.05, 1.0}, subject(true),
        [=] {
            return bytesPerFile(count, [&] {
                return loadedQt(path, count);
            });
        },
        unit);
}

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    Bench::Report report;
    if (Bench::heapBytes() > 0)
        measure(&report, Bench::FileFolder(10000));
    else
        QTextStream(stderr) << "This system does not tell how much of the heap is in use.\n";
    return report.finish(QCoreApplication::arguments());
}
