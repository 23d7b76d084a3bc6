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

void SaveKilledTest::killedAtRandomMoments_losesNothing()
{
    const int rounds = whyNotTraceable().isEmpty() ? 20 : 200;
    const SaveWorld world(SaveWorld::Journal::None);
    QRandomGenerator random(20);
    qint64 duration = 0; // of an undisturbed saving, in nanoseconds
    for (int round = 0; round < rounds; ++round) {
        Environment environment;
        world.furnish(environment);
        QProcess process;
        process.start(testProgram(QStringLiteral("ky_save")), world.arguments(environment));
        while (!process.canReadLine())
            QVERIFY(process.waitForReadyRead());
        QElapsedTimer timer;
        timer.start();
        const qint64 moment = duration > 0 ? random.bounded(static_cast<double>(duration)) : -1;
        while (timer.nsecsElapsed() < moment) { }
        if (duration > 0)
            process.kill();
        QVERIFY(process.waitForFinished());
        if (duration == 0)
            duration = timer.nsecsElapsed();
        const QString problem = world.problem(environment);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }
}

} // namespace Test
} // namespace Kyte

KYTE_TEST_MAIN(Kyte::Test::SaveKilledTest)

#include "tst_saveKilled.moc"
