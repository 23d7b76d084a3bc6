#include "KySaveWorld.h"
#include "KyTestMain.h"
#include "KyTracedProgram.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>

namespace Kyte {
namespace Test {

/** Whatever moment a process is killed at while it saves, the old or the new data is there. */
class SaveKilledTest : public QObject
{
    Q_OBJECT

private slots:
    void killedAtEverySystemCall_losesNothing_data();
    void killedAtEverySystemCall_losesNothing();
    void killedAtRandomMoments_losesNothing();
};

void SaveKilledTest::killedAtEverySystemCall_losesNothing_data()
{
    QTest::addColumn<int>("journal");
    QTest::newRow("no journal") << static_cast<int>(SaveWorld::Journal::None);
    QTest::newRow("stale journal at the start") << static_cast<int>(SaveWorld::Journal::Stale);
    QTest::newRow("hot journal at the start") << static_cast<int>(SaveWorld::Journal::Hot);
    QTest::newRow("hot journal since the edits") << static_cast<int>(SaveWorld::Journal::HotBeforeSaving);
}

void SaveKilledTest::killedAtEverySystemCall_losesNothing()
{
    const QString reason = whyNotTraceable();
    if (!reason.isEmpty())
        QSKIP(qPrintable(reason + QStringLiteral("; random moments have to do")));
    QFETCH(int, journal);
    const SaveWorld world(static_cast<SaveWorld::Journal>(journal));
    Environment rehearsal;
    world.furnish(rehearsal);
    const QList<SystemCall> calls = traceSaving(world.arguments(rehearsal)).calls;
    QVERIFY(calls.size() > 50);

    for (int index = 0; index < calls.size(); index += KYTE_EVERY_NTH_CALL) {
        const SystemCall &call = calls.at(index);
        Environment environment;
        world.furnish(environment);
        const TracedRun run =
            traceSaving(world.arguments(environment), injection(call, QStringLiteral("signal=KILL")));
        const QByteArray label = call.text.toUtf8();
        QVERIFY2(run.isKilled && run.answer.isEmpty(), label);
        QCOMPARE(run.output, QStringList(QStringLiteral("ready")));
        const QString problem = world.problem(environment);
        QVERIFY2(problem.isEmpty(), label + ": " + problem.toUtf8());
    }
    qInfo("%d system calls", calls.size());
}

static void waitForLine(QProcess *process)
{
    while (!process->canReadLine()) {
        if (!process->waitForReadyRead())
            qFatal("ky_save says nothing");
    }
}

/** How long saving takes when nothing happens to it, in nanoseconds. */
static qint64 savingTime(const SaveWorld &world)
{
    Environment environment;
    world.furnish(environment);
    QProcess process;
    process.start(testProgram(QStringLiteral("ky_save")), world.arguments(environment));
    waitForLine(&process);
    process.readLine();
    QElapsedTimer timer;
    timer.start();
    waitForLine(&process);
    const qint64 time = timer.nsecsElapsed();
    process.waitForFinished();
    return time;
}

void SaveKilledTest::killedAtRandomMoments_losesNothing()
{
    const int rounds = whyNotTraceable().isEmpty() ? 20 : 200;
    const SaveWorld world(SaveWorld::Journal::None);
    qint64 longest = 0;
    for (int rehearsal = 0; rehearsal < 5; ++rehearsal)
        longest = qMax(longest, savingTime(world));
    QRandomGenerator random(20);
    for (int round = 0; round < rounds; ++round) {
        Environment environment;
        world.furnish(environment);
        QProcess process;
        process.start(testProgram(QStringLiteral("ky_save")), world.arguments(environment));
        waitForLine(&process);
        QElapsedTimer timer;
        timer.start();
        const auto moment = static_cast<qint64>(random.bounded(static_cast<double>(longest)));
        while (timer.nsecsElapsed() < moment) { }
        process.kill();
        QVERIFY(process.waitForFinished());
        const QString problem = world.problem(environment);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }
    qInfo("%d moments within %.1f milliseconds", rounds, static_cast<double>(longest) / 1e6);
}

} // namespace Test
} // namespace Kyte

KYTE_TEST_MAIN(Kyte::Test::SaveKilledTest)

#include "tst_saveKilled.moc"
