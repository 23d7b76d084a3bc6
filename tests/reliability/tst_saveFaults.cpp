#include "KySaveWorld.h"
#include "KyTestMain.h"
#include "KyTracedProgram.h"

#include <QRegularExpression>

#include <algorithm>

namespace Kyte {
namespace Test {

/** Whichever system call fails while a process saves, its answer is true to what is on the disk then. */
class SaveFaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void failingCall_isAnsweredTruly_data();
    void failingCall_isAnsweredTruly();
    void newContent_isOnTheDiskBeforeItTakesItsPlace_data();
    void newContent_isOnTheDiskBeforeItTakesItsPlace();
};

static const QString MAIN_FILE_ANSWER =
    QStringLiteral("failed The channel config file can not be open to write.");
static const QString DATABASE_ANSWER =
    QStringLiteral("failed Error occured while the data is saving.(2)\n%1");

void SaveFaultsTest::initTestCase()
{
    const QString reason = whyNotTraceable();
    if (!reason.isEmpty())
        QSKIP(qPrintable(reason));
}

/** The answer that a failure of \a call has to lead to; empty where saving may succeed without the call. */
static QString requiredAnswer(const SystemCall &call, const QString &errorText)
{
    if (!call.changesFile() || call.deletesFile())
        return QString();
    if (call.text.contains(QLatin1String(".save")))
        return DATABASE_ANSWER.arg(errorText);
    // QSaveFile does without nameless files where there are none, tries one name after the other, and brings
    // onto the disk once more what has been brought there.
    const bool isOnlyTry = call.text.contains(QLatin1String("O_TMPFILE"))
        || call.name == QLatin1String("linkat") || call.name == QLatin1String("fdatasync");
    const bool isMainFile = call.text.contains(QLatin1String("/chconfig.xml"))
        || call.text.contains(QLatin1String("/data/channel/#")); // the latter has no name yet
    return isMainFile && !isOnlyTry ? MAIN_FILE_ANSWER : QString();
}

void SaveFaultsTest::failingCall_isAnsweredTruly_data()
{
    QTest::addColumn<int>("journal");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("errorText");
    QTest::addColumn<bool>("onlyChanges");
    QTest::addColumn<bool>("lasts");
    const int none = static_cast<int>(SaveWorld::Journal::None);
    const int stale = static_cast<int>(SaveWorld::Journal::Stale);
    const int hot = static_cast<int>(SaveWorld::Journal::HotBeforeSaving);
    const QString full = QStringLiteral("No space left on device");
    const QString broken = QStringLiteral("Input/output error");
    QTest::newRow("one call, disk error") << none << QStringLiteral("EIO") << broken << false << false;
    QTest::newRow("one change, disk full") << none << QStringLiteral("ENOSPC") << full << true << false;
    QTest::newRow("all changes from one on, disk full")
        << none << QStringLiteral("ENOSPC") << full << true << true;
    QTest::newRow("hot journal, one call, disk error")
        << hot << QStringLiteral("EIO") << broken << false << false;
    QTest::newRow("hot journal, one change, disk full")
        << hot << QStringLiteral("ENOSPC") << full << true << false;
    QTest::newRow("hot journal, all changes from one on, disk error")
        << hot << QStringLiteral("EIO") << broken << true << true;
    QTest::newRow("stale journal, all changes from one on, disk error")
        << stale << QStringLiteral("EIO") << broken << true << true;
}

void SaveFaultsTest::failingCall_isAnsweredTruly()
{
    QFETCH(int, journal);
    QFETCH(QString, error);
    QFETCH(QString, errorText);
    QFETCH(bool, onlyChanges);
    QFETCH(bool, lasts);
    const SaveWorld world(static_cast<SaveWorld::Journal>(journal));
    Environment rehearsal;
    world.furnish(rehearsal);
    QList<SystemCall> calls = traceSaving(world.arguments(rehearsal)).calls;
    QVERIFY(calls.size() > 50);
    calls.removeLast(); // the mark

    // The undefined-behaviour sanitizer looks whether memory can be read by writing it to a pipe.
    const bool isSanitized = std::any_of(calls.cbegin(), calls.cend(), [](const SystemCall &call) {
        return call.text.contains(QLatin1String("<pipe:"));
    });
    int tried = 0;
    int failed = 0;
    for (int index = 0; index < calls.size(); index += onlyChanges ? 1 : KYTE_EVERY_NTH_CALL) {
        const SystemCall &call = calls.at(index);
        if (!call.isOfFile() || (onlyChanges && !call.changesFile())
            || (isSanitized && lasts && call.name == QLatin1String("write")))
            continue;
        Environment environment;
        world.furnish(environment);
        const TracedRun run = traceSaving(world.arguments(environment),
                                          injection(call, QStringLiteral("error=") + error, lasts));
        const QByteArray label = call.text.toUtf8();
        QVERIFY2(!run.isKilled && run.output.value(0) == QLatin1String("ready"), label);
        const QString required = requiredAnswer(call, errorText);
        if (!required.isEmpty())
            QVERIFY2(run.answer == required, label + ": " + run.answer.toUtf8());
        if (!call.deletesFile()) // which is what cleaning up takes
            QCOMPARE(world.leftovers(environment), QString());
        const QString problem = world.problemOfAnswer(environment, run.answer);
        QVERIFY2(problem.isEmpty(), label + ": " + run.answer.toUtf8() + ": " + problem.toUtf8());
        ++tried;
        failed += run.answer != QLatin1String("saved");
    }
    QVERIFY(failed > 0);
    qInfo("%d calls, not saved %d times", tried, failed);
}

void SaveFaultsTest::newContent_isOnTheDiskBeforeItTakesItsPlace_data()
{
    QTest::addColumn<QString>("newFile"); // patterns
    QTest::addColumn<QString>("file");
    QTest::newRow("main file") << QStringLiteral("/data/channel/(#|chconfig\\.xml\\.)[^\"]*>")
                               << QStringLiteral("/chconfig\\.xml\"\\)");
    QTest::newRow("database") << QStringLiteral("\\.save>") << QStringLiteral("/destination\\.kyb\"\\)");
}

/** All that can be done against a power failure, after which no test can look. */
void SaveFaultsTest::newContent_isOnTheDiskBeforeItTakesItsPlace()
{
    QFETCH(QString, newFile);
    QFETCH(QString, file);
    const SaveWorld world(SaveWorld::Journal::None);
    Environment environment;
    world.furnish(environment);
    QStringList steps;
    const QList<SystemCall> calls = traceSaving(world.arguments(environment)).calls;
    for (const SystemCall &call : calls) {
        QString step;
        if (call.text.contains(QRegularExpression(newFile)))
            step = call.name;
        else if (call.text.contains(QRegularExpression(file))
                 && call.name.startsWith(QLatin1String("rename")))
            step = QStringLiteral("rename");
        // What QSaveFile does by fdatasync() does not count: it ignores that this fails.
        const bool counts = step == QLatin1String("write") || step == QLatin1String("fsync")
            || step == QLatin1String("rename");
        if (counts && (steps.isEmpty() || steps.constLast() != step))
            steps.append(step);
    }
    QCOMPARE(steps.join(QLatin1Char(' ')), QStringLiteral("write fsync rename"));
}

} // namespace Test
} // namespace Kyte

KYTE_TEST_MAIN(Kyte::Test::SaveFaultsTest)

#include "tst_saveFaults.moc"
