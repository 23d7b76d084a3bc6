#include "KyBench.h"
#include "KyBenchFiles.h"

#include <KyFileSystemModel.h>

#include <QApplication>
#include <QEventLoop>
#include <QFileSystemModel>
#include <QTreeView>

#ifdef KYTE_HAVE_KDIRMODEL
#include <KDirLister>
#include <KDirModel>
#endif

#include <memory>

using namespace Kyte;

static QString named(const char *text, int count)
{
    return QString::fromLatin1(text).arg(count);
}

static std::unique_ptr<KyFileSystemModel> loaded(const QString &path)
{
    std::unique_ptr<KyFileSystemModel> model(new KyFileSystemModel);
    model->setRootPath(path);
    return model;
}

static QModelIndex rootOf(const QFileSystemModel &model)
{
    return model.index(model.rootPath());
}

/** Waits until the model has \a count rows, which it reads on a thread of its own. */
static void settle(QFileSystemModel *model, int count)
{
    while (model->rowCount(rootOf(*model)) != count)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents);
}

static std::unique_ptr<QFileSystemModel> loadedQt(const QString &path, int count)
{
    std::unique_ptr<QFileSystemModel> model(new QFileSystemModel);
    model->setRootPath(path);
    settle(model.get(), count);
    return model;
}

#ifdef KYTE_HAVE_KDIRMODEL
/** The columns that the file model has: KDirModel has others, too, and in another order. */
static int readKde(const KDirModel &model)
{
    return Bench::readCells(model, QModelIndex(), Qt::DisplayRole,
                            {KDirModel::Name, KDirModel::Size, KDirModel::Type, KDirModel::ModifiedTime});
}

static std::unique_ptr<KDirModel> loadedKde(const QString &path)
{
    std::unique_ptr<KDirModel> model(new KDirModel);
    QEventLoop loop;
    QObject::connect(model->dirLister(), SIGNAL(completed()), &loop, SLOT(quit()));
    QObject::connect(model->dirLister(), SIGNAL(canceled()), &loop, SLOT(quit()));
    model->dirLister()->setAutoErrorHandlingEnabled(false);
    model->dirLister()->setAutoUpdate(false);
    model->openUrl(QUrl::fromLocalFile(path), KDirModel::Reload);
    loop.exec();
    return model;
}
#endif

static double timeOfLoading(const QString &path)
{
    std::unique_ptr<KyFileSystemModel> model;
    return Bench::cpuTime([&] {
        model = loaded(path);
    });
}

static double timeOfListing(const QString &path)
{
    QFileInfoList entries;
    return Bench::cpuTime([&] {
        entries = QDir(path).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot,
                                           QDir::Name | QDir::DirsFirst | QDir::IgnoreCase);
    });
}

static void measureLoading(Bench::Report *report, const Bench::FileFolder &folder)
{
    const QString path = folder.path();
    const int count = folder.count();
    report->ratio(
        named("load %1 / bare listing", count), {1.5, 1.2},
        [=] {
            return timeOfLoading(path);
        },
        [=] {
            return timeOfListing(path);
        });
    report->ratio(
        named("load %1 / QFileSystemModel", count), {0.25, 0.2},
        [=] {
            return timeOfLoading(path);
        },
        [=] {
            std::unique_ptr<QFileSystemModel> model;
            return Bench::cpuTime([&] {
                model = loadedQt(path, count);
            });
        });
#ifdef KYTE_HAVE_KDIRMODEL
    report->ratio(
        named("load %1 / KDirModel", count), {0.25, 0.2},
        [=] {
            return timeOfLoading(path);
        },
        [=] {
            std::unique_ptr<KDirModel> model;
            return Bench::cpuTime([&] {
                model = loadedKde(path);
            });
        });
#endif
}

static double timeOfFirstPass(const QString &path)
{
    std::unique_ptr<KyFileSystemModel> model;
    return Bench::cpuTime([&] {
        model = loaded(path);
        Bench::readCells(*model, QModelIndex());
    });
}

static void measurePasses(Bench::Report *report, const Bench::FileFolder &folder)
{
    const QString path = folder.path();
    const int count = folder.count();
    const std::unique_ptr<KyFileSystemModel> model = loaded(path);
    const std::unique_ptr<QFileSystemModel> qt = loadedQt(path, count);
    Bench::requireEqual(Bench::readCells(*model, QModelIndex()) == 4 * count, "cells");
    Bench::requireEqual(Bench::readCells(*qt, rootOf(*qt)) == 4 * count, "cells of QFileSystemModel");
    const auto pass = [&model](int role) {
        return [&model, role] {
            return Bench::cpuTime([&] {
                Bench::readCells(*model, QModelIndex(), role);
            });
        };
    };
    report->ratio(
        named("load and first pass %1 / QFileSystemModel", count), {0.7, 0.5},
        [=] {
            return timeOfFirstPass(path);
        },
        [=] {
            std::unique_ptr<QFileSystemModel> other;
            return Bench::cpuTime([&] {
                other = loadedQt(path, count);
                Bench::readCells(*other, rootOf(*other));
            });
        });
    report->ratio(named("repeated pass %1 / QFileSystemModel", count), {0.25, 0.06}, pass(Qt::DisplayRole),
                  [&] {
                      return Bench::cpuTime([&] {
                          Bench::readCells(*qt, rootOf(*qt));
                      });
                  });
#ifdef KYTE_HAVE_KDIRMODEL
    const std::unique_ptr<KDirModel> kde = loadedKde(path);
    Bench::requireEqual(readKde(*kde) == 4 * count, "cells of KDirModel");
    report->ratio(
        named("load and first pass %1 / KDirModel", count), {0.12, 0.08},
        [=] {
            return timeOfFirstPass(path);
        },
        [=] {
            std::unique_ptr<KDirModel> other;
            return Bench::cpuTime([&] {
                other = loadedKde(path);
                readKde(*other);
            });
        });
    report->ratio(named("repeated pass %1 / KDirModel", count), {0.12, 0.03}, pass(Qt::DisplayRole), [&] {
        return Bench::cpuTime([&] {
            readKde(*kde);
        });
    });
#endif
    model->setGrayoutNamePattern(
        {QStringLiteral(".*_secret\\..*"), QStringLiteral("draft.*"), QStringLiteral("old")});
    Bench::readCells(*model, QModelIndex(), Qt::ForegroundRole);
    report->ratio(named("foreground pass %1, 3 patterns / display pass", count), {1.3, 1.1},
                  pass(Qt::ForegroundRole), pass(Qt::DisplayRole));
}

/** The milliseconds that \a count look-ups of files all over the folder take. */
template<typename LookUp>
static double timeOfLookUps(const Bench::FileFolder &folder, int count, LookUp lookUp)
{
    QStringList paths;
    for (int i = 0; i < count; ++i)
        paths.append(folder.filePath(int(qint64(i) * 7919 % folder.count())));
    bool found = true;
    const double time = Bench::cpuTime([&] {
        for (const QString &path : qAsConst(paths))
            found = lookUp(path) && found;
    });
    Bench::requireEqual(found, "index of a path");
    return time;
}

static void
measureLookUps(Bench::Report *report, const Bench::FileFolder &small, const Bench::FileFolder &large)
{
    const std::unique_ptr<KyFileSystemModel> inSmall = loaded(small.path());
    const std::unique_ptr<KyFileSystemModel> inLarge = loaded(large.path());
    const int count = 1000;
    const auto lookUps = [](const KyFileSystemModel &model, const Bench::FileFolder &folder) {
        return timeOfLookUps(folder, count, [&model](const QString &path) {
            return model.index(path).isValid();
        });
    };
    lookUps(*inSmall, small);
    lookUps(*inLarge, large);
    report->ratio(
        named("index(path) in %1 / in 1000", large.count()), {3, 2},
        [&] {
            return lookUps(*inLarge, large);
        },
        [&] {
            return lookUps(*inSmall, small);
        });
}

#ifdef KYTE_HAVE_KDIRMODEL
static void measureLookUpsAgainstKde(Bench::Report *report, const Bench::FileFolder &folder)
{
    const int count = 100; // it walks the folder at every look-up
    const std::unique_ptr<KyFileSystemModel> model = loaded(folder.path());
    const std::unique_ptr<KDirModel> kde = loadedKde(folder.path());
    report->ratio(
        named("index(path) in %1 / KDirModel::indexForUrl", folder.count()), {0.5, 0.3},
        [&] {
            return timeOfLookUps(folder, count, [&model](const QString &path) {
                return model->index(path).isValid();
            });
        },
        [&] {
            return timeOfLookUps(folder, count, [&kde](const QString &path) {
                return kde->indexForUrl(QUrl::fromLocalFile(path)).isValid();
            });
        });
}
#endif

/** Visits every node below \a parent and asks it for its parent. */
static int visit(const QAbstractItemModel &model, const QModelIndex &parent)
{
    int steps = 0;
    const int rows = model.rowCount(parent);
    for (int row = 0; row < rows; ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        steps += model.parent(index).row() + index.row() + 2;
        steps += visit(model, index);
    }
    return steps;
}

static void measureDeepTree(Bench::Report *report)
{
    const int folders = 300;
    const Bench::FileFolder folder(0, folders);
    const std::unique_ptr<KyFileSystemModel> model = loaded(folder.path());
    const std::unique_ptr<QFileSystemModel> qt = loadedQt(folder.path(), folders);
    for (int row = 0; row < folders; ++row) {
        model->fetchMore(model->index(row, 0));
        const QModelIndex index = qt->index(row, 0, rootOf(*qt));
        qt->fetchMore(index);
        while (qt->rowCount(index) != folders)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents);
    }
    Bench::requireEqual(visit(*model, QModelIndex()) > 0, "tree");
    report->ratio(
        QStringLiteral("parent and row in 300 folders x 300 files / QFileSystemModel"), {0.3, 0.15},
        [&] {
            return Bench::cpuTime([&] {
                visit(*model, QModelIndex());
            });
        },
        [&] {
            return Bench::cpuTime([&] {
                visit(*qt, rootOf(*qt));
            });
        });
}

static void measureUpdate(Bench::Report *report, Bench::FileFolder *folder)
{
    const QString extra = QStringLiteral("extra.mp4");
    const int count = folder->count();
    std::unique_ptr<KyFileSystemModel> model(new KyFileSystemModel);
    model->setUseFileSystemWatcher(false);
    model->setRootPath(folder->path());
    const auto ours = [&] {
        folder->addFile(extra);
        const double time = Bench::cpuTime([&] {
            model->update(QModelIndex());
        });
        Bench::requireEqual(model->rowCount() == count + 1, "rows after the update");
        folder->removeFile(extra);
        return time;
    };
    report->ratio(named("update %1 after one file / bare listing", count), {2.2, 1.6}, ours, [&] {
        return timeOfListing(folder->path());
    });
    const std::unique_ptr<QFileSystemModel> qt = loadedQt(folder->path(), count);
    report->ratio(named("update %1 after one file / QFileSystemModel", count), {0.3, 0.2}, ours, [&] {
        folder->addFile(extra);
        const double time = Bench::cpuTime([&] {
            settle(qt.get(), count + 1);
        });
        folder->removeFile(extra);
        settle(qt.get(), count);
        return time;
    });
    const auto refreshes = [&](int passes) {
        std::unique_ptr<KyFileSystemModel> fresh(new KyFileSystemModel);
        fresh->setUseFileSystemWatcher(false);
        fresh->setRootPath(folder->path());
        for (int i = 1; i < passes; ++i)
            fresh->update(QModelIndex());
        return Bench::cpuTime([&] {
            fresh->update(QModelIndex());
        });
    };
    report->ratio(
        named("50th refresh of %1 / 2nd", count), {1.2, 1.1},
        [&] {
            return refreshes(50);
        },
        [&] {
            return refreshes(2);
        });
}

static double timeOfShowing(QAbstractItemModel *model, const QModelIndex &root)
{
    return Bench::cpuTime([&] {
        QTreeView view;
        view.setModel(model);
        view.setRootIndex(root);
        view.resize(800, 600);
        view.show();
        QCoreApplication::processEvents();
        view.grab();
    });
}

static void measureView(Bench::Report *report, const Bench::FileFolder &folder)
{
    const std::unique_ptr<KyFileSystemModel> model = loaded(folder.path());
    const std::unique_ptr<QFileSystemModel> qt = loadedQt(folder.path(), folder.count());
    report->ratio(
        named("QTreeView shown on %1 / on QFileSystemModel", folder.count()), {1.0, 0.8},
        [&] {
            return timeOfShowing(model.get(), QModelIndex());
        },
        [&] {
            return timeOfShowing(qt.get(), rootOf(*qt));
        });
}

using Operation = double (*)(const QString &path);

static double timeOfPass(const QString &path)
{
    const std::unique_ptr<KyFileSystemModel> model = loaded(path);
    return Bench::cpuTime([&] {
        Bench::readCells(*model, QModelIndex());
    });
}

static double timeOfDestroying(const QString &path)
{
    std::unique_ptr<KyFileSystemModel> model = loaded(path);
    return Bench::cpuTime([&] {
        model.reset();
    });
}

static double timeOfRemoving(const QString &path)
{
    const std::unique_ptr<KyFileSystemModel> model = loaded(path);
    return Bench::cpuTime([&] {
        model->removeRows(0, model->rowCount() / 2, model->rootIndex());
    });
}

static double timeOfUpdating(const QString &path)
{
    const std::unique_ptr<KyFileSystemModel> model = loaded(path);
    return Bench::cpuTime([&] {
        model->update(QModelIndex());
    });
}

static void
measureGrowth(Bench::Report *report, const Bench::FileFolder &small, const Bench::FileFolder &large)
{
    const struct
    {
        const char *name;
        Operation operation;
    } operations[] = {
        {"load 100000 / 10000", timeOfLoading},
        {"first pass 100000 / 10000", timeOfPass},
        {"destroy 100000 / 10000", timeOfDestroying},
        {"removeRows half of 100000 / of 10000", timeOfRemoving},
        {"update 100000 / 10000", timeOfUpdating},
    };
    for (const auto &entry : operations) {
        report->ratio(
            QString::fromLatin1(entry.name), {20, 15},
            [&] {
                return entry.operation(large.path());
            },
            [&] {
                return entry.operation(small.path());
            });
    }
    report->ratio(
        QStringLiteral("destroy 100000 / load"), {0.4, 0.25},
        [&] {
            return timeOfDestroying(large.path());
        },
        [&] {
            return timeOfLoading(large.path());
        });
}

/** insertChildByName() as it is told: every name is looked at until one is less. */
static void insertWalking(QList<KyFileSystemItem *> *children, KyFileSystemItem *child)
{
    int row = 0;
    for (const KyFileSystemItem *existing : qAsConst(*children)) {
        ++row;
        if (QString::compare(child->fileName(), existing->fileName(), Qt::CaseInsensitive) > 0)
            break;
    }
    children->insert(row, child);
}

static void measureInsertion(Bench::Report *report)
{
    const int count = 10000;
    QVector<QFileInfo> infos;
    for (int number = count; number > 0; --number)
        infos.append(QFileInfo(QStringLiteral("/media/clip_%1.mp4").arg(number, 6, 10, QLatin1Char('0'))));
    QStringList rows;
    const auto note = [&rows](const QList<KyFileSystemItem *> &children) {
        rows.clear();
        for (const KyFileSystemItem *child : children)
            rows.append(child->fileName());
    };
    const auto byName = [&] {
        KyFileSystemItem folder(QFileInfo(QStringLiteral("/media")), nullptr, -1);
        const double time = Bench::cpuTime([&] {
            for (const QFileInfo &info : qAsConst(infos))
                new KyFileSystemItem(&folder, info, Qt::CaseInsensitive);
        });
        QList<KyFileSystemItem *> children;
        for (int row = 0; row < folder.childCount(); ++row)
            children.append(folder.childAt(row));
        note(children);
        return time;
    };
    const auto walking = [&] {
        QList<KyFileSystemItem *> children;
        const double time = Bench::cpuTime([&] {
            for (const QFileInfo &info : qAsConst(infos))
                insertWalking(&children, new KyFileSystemItem(info, nullptr, -1));
        });
        note(children);
        qDeleteAll(children);
        return time;
    };
    byName();
    const QStringList expected = rows;
    walking();
    Bench::requireEqual(rows == expected, "rows by name");
    report->ratio(QStringLiteral("insertChildByName, 10000 descending names / walking"), {0.01, 0.002},
                  byName, walking);
}

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    Bench::Report report;
    const Bench::FileFolder thousand(1000);
    Bench::FileFolder tenThousand(10000);
    const Bench::FileFolder hundredThousand(100000);
    measureLoading(&report, thousand);
    measureLoading(&report, tenThousand);
    measurePasses(&report, thousand);
    measurePasses(&report, tenThousand);
    measureLookUps(&report, thousand, tenThousand);
#ifdef KYTE_HAVE_KDIRMODEL
    measureLookUpsAgainstKde(&report, tenThousand);
#endif
    measureLookUps(&report, thousand, hundredThousand);
    measureDeepTree(&report);
    measureUpdate(&report, &tenThousand);
    measureView(&report, tenThousand);
    measureGrowth(&report, tenThousand, hundredThousand);
    measureInsertion(&report);
    return report.finish(QCoreApplication::arguments());
}
