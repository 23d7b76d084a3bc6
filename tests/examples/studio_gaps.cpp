#include <KyCommon.h>
#include <KyTestEnvironment.h>
#include <KyTestMain.h>
#include <MainWindow.h>

#include <DestinationModel.h>
#include <DestinationsPanel.h>
#include <MediaPanel.h>

#include <QAction>
#include <QLineEdit>
#include <QListView>
#include <QScrollBar>
#include <QTreeView>

#include <ctime>

// How long kystudio's event loop stands still with many destinations and many files, in a table. No test:
// times depend on the machine and on what else it does.

using namespace Kyte;
using namespace Kyte::Test;

/**
 * The longest time between two turns of the event loop while something happens: by the clock, and as far as
 * this thread worked in it. The difference was spent waiting, for the disk or for other programs.
 */
class GapWatch : public QObject
{
    Q_OBJECT

public:
    GapWatch()
    {
        m_ticking.setTimerType(Qt::PreciseTimer);
        m_ticking.setInterval(1);
        connect(&m_ticking, SIGNAL(timeout()), this, SLOT(tick()));
    }

    /** Does \a act in the event loop and waits for \a isDone; false, and -1 in the table, when that does not
     * come. */
    bool watch(const QString &name, const std::function<void()> &act, const std::function<bool()> &isDone)
    {
        m_isDone = isDone;
        m_longest = m_longestWork = 0;
        m_isActive = false;
        m_settling.invalidate();
        m_total.start();
        m_turn.start();
        m_work = processorTime();
        m_ticking.start();
        QTimer::singleShot(0, this, [this, act]() {
            act();
            m_isActive = true;
        });
        m_loop.exec();
        m_ticking.stop();
        printf("%-52s %8.1f %8.1f %8lld\n", qPrintable(name), m_longest / 1e6, m_longestWork / 1e6,
               m_settling.isValid() ? m_doneAfter : -1);
        fflush(stdout);
        return m_settling.isValid();
    }

private slots:
    void tick()
    {
        const qint64 gap = m_turn.nsecsElapsed();
        m_turn.start();
        const qint64 work = processorTime();
        if (gap > m_longest)
            m_longest = gap;
        m_longestWork = qMax(m_longestWork, work - m_work);
        m_work = work;
        if (!m_settling.isValid() && m_isActive && m_isDone()) {
            m_doneAfter = m_total.elapsed();
            m_settling.start(); // views do their layout and painting afterwards
        }
        if ((m_settling.isValid() && m_settling.hasExpired(SETTLING_TIME)) || m_total.hasExpired(PATIENCE))
            m_loop.quit();
    }

private:
    static const int PATIENCE = 60000; // milliseconds
    static const int SETTLING_TIME = 300; // milliseconds

    /** Nanoseconds that this thread has worked. */
    static qint64 processorTime()
    {
        timespec time;
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
    }

    QTimer m_ticking;
    QElapsedTimer m_turn;
    QElapsedTimer m_total;
    QElapsedTimer m_settling;
    qint64 m_doneAfter = 0;
    QEventLoop m_loop;
    std::function<bool()> m_isDone;
    qint64 m_longest = 0; // nanoseconds
    qint64 m_longestWork = 0;
    qint64 m_work = 0;
    bool m_isActive = false;
};

static void fillFolder(const QString &folder, int count, const QByteArray &picture)
{
    QDir().mkpath(folder);
    for (int i = 0; i < count; ++i)
        writeFile(QStringLiteral("%1/picture %2.png").arg(folder).arg(i, 5, 10, QLatin1Char('0')), picture);
}

static QByteArray samplePicture()
{
    QImage image(640, 360, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

static void watchDestinations(GapWatch *watch, MainWindow *window)
{
    auto *panel = window->findChild<DestinationsPanel *>();
    auto *model = panel->findChild<DestinationModel *>();
    auto *tree = panel->findChild<QTreeView *>();
    const auto isIdle = [panel, model]() {
        return !panel->isReading() && model->destinationCount() > 0
            && panel->findChild<QAction *>(QStringLiteral("addGroup"))->isEnabled();
    };
    watch->watch(
        "destinations: read and shown",
        [window]() {
            window->open();
        },
        isIdle);
    watch->watch(
        "destinations: all unfolded",
        [tree]() {
            tree->expandAll();
        },
        isIdle);
    watch->watch(
        "destinations: by group",
        [panel]() {
            panel->findChild<QAction *>(QStringLiteral("byGroup"))->trigger();
        },
        isIdle);
    watch->watch(
        "destinations: by group, all unfolded",
        [tree]() {
            tree->expandAll();
        },
        isIdle);
    watch->watch(
        "destinations: all selected",
        [tree]() {
            tree->selectAll();
        },
        isIdle);
    watch->watch(
        "destinations: group added",
        [panel]() {
            emit panel->groupWanted(QStringLiteral("All"));
        },
        [model]() {
            return model->categoryCount() == 1;
        });
    watch->watch(
        "destinations: all moved into it",
        [model]() {
            QModelIndexList all;
            const QModelIndex none = model->index(1, 0);
            for (int row = 0; row < model->rowCount(none); ++row)
                all.append(model->index(row, 0, none));
            const QScopedPointer<QMimeData> dragged(model->mimeData(all));
            model->dropMimeData(dragged.data(), Qt::MoveAction, -1, -1, model->index(0, 0));
        },
        [model]() {
            return model->rowCount(model->index(1, 0)) == 0;
        });
    watch->watch(
        "destinations: saved",
        [panel]() {
            panel->save();
        },
        [panel, isIdle]() {
            return isIdle() && !panel->isEdited();
        });
    watch->watch(
        "destinations: read again",
        [panel]() {
            panel->open();
        },
        isIdle);
}

static void watchMedia(GapWatch *watch, MainWindow *window, const QString &folder, int count)
{
    auto *panel = window->findChild<MediaPanel *>();
    auto *files = panel->findChild<QListView *>();
    auto *filter = panel->findChild<QLineEdit *>();
    const auto waited = [](int milliseconds) {
        QElapsedTimer time;
        time.start();
        return [time, milliseconds]() {
            return time.hasExpired(milliseconds);
        };
    };
    const auto hasRows = [files](int rows) {
        return [files, rows]() {
            return files->model()->rowCount() == rows;
        };
    };
    watch->watch(
        "media: folder opened",
        [panel, folder]() {
            panel->openFolder(folder);
        },
        hasRows(count));
    watch->watch(
        "media: thumbnails of what is seen made", []() {}, waited(1500));
    watch->watch(
        "media: scrolled to the end",
        [files]() {
            files->verticalScrollBar()->setValue(files->verticalScrollBar()->maximum());
        },
        waited(1500));
    watch->watch(
        "media: a file arrives",
        [folder]() {
            writeFile(folder + QStringLiteral("/another.png"), samplePicture());
        },
        hasRows(count + 1));
    watch->watch(
        "media: filtered",
        [filter]() {
            filter->setText(QStringLiteral("0007"));
        },
        [files, count]() {
            return files->model()->rowCount() <= count;
        });
    watch->watch(
        "media: filter taken back",
        [filter]() {
            filter->clear();
        },
        hasRows(count + 1));
    watch->watch(
        "media: all selected",
        [files]() {
            files->selectAll();
        },
        waited(500));
    watch->watch(
        "media: 1000 files moved",
        [files, folder]() {
            QModelIndexList dragged;
            for (int row = 1; row <= 1000; ++row)
                dragged.append(files->model()->index(row, 0));
            const QScopedPointer<QMimeData> data(files->model()->mimeData(dragged));
            const QString target = QFileInfo(folder).path() + QStringLiteral("/Other");
            QDir().mkpath(target);
            auto *folders = files->window()->findChild<QTreeView *>(QStringLiteral("mediaFolders"));
            folders->model()->dropMimeData(data.data(), Qt::MoveAction, -1, -1,
                                           folders->model()->index(0, 0));
        },
        hasRows(count + 1 - 1000));
    watch->watch(
        "media: folder left",
        [panel, folder]() {
            panel->openFolder(QFileInfo(folder).path());
        },
        waited(500));
}

int main(int argc, char **argv)
{
    isolate();
    QApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    const int count = argc > 1 ? QByteArray(argv[1]).toInt() : 10000;
    const int channelCount = 4;
    Environment environment;
    environment.writeConfig(makeDestinations(1, count));
    QList<QPair<int, QList<int>>> assignment;
    for (int channel = 0; channel < channelCount; ++channel) {
        environment.writeChannel(channel, QStringLiteral("Channel %1").arg(channel), channel);
        QList<int> ids;
        for (int id = 1 + channel; id <= count; id += channelCount + 1) // the fifth part is in none
            ids.append(id);
        assignment.append({channel, ids});
    }
    environment.writeMainFile(assignment);
    const QString folder = environment.dataDir() + QStringLiteral("/media/Many");
    fillFolder(folder, count, samplePicture());

    MainWindow window;
    window.setLayoutRemembered(false);
    window.show();
    GapWatch watch;
    printf("%-52s %8s %8s %8s\n", "milliseconds", "gap", "work", "in all");
    watch.watch(
        "nothing", []() {},
        []() {
            return true;
        });
    watchDestinations(&watch, &window);
    watchMedia(&watch, &window, folder, count);
    return 0;
}

#include "studio_gaps.moc"
