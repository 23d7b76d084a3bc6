#include <KyDetachableProcess.h>
#include <KyScriptedProgram.h>
#include <KyTestMain.h>

using namespace Kyte;
using Kyte::Test::ScriptedProgram;

class tst_KyDetachableProcess : public QObject
{
    Q_OBJECT

private slots:
    void newObject_isEmpty();
    void start_runsTheProgram();
    void commandLine_isUsedWithoutArguments_data();
    void commandLine_isUsedWithoutArguments();
    void blanksInTheProgram_needNoQuotesWithArguments();
    void failedStart_isToldOnce_data();
    void failedStart_isToldOnce();
    void crash_isTold();
    void secondStart_connectsNoSecondTime();

    void deletionWithoutDetaching_endsTheProgram();
    void detachedProgram_outlivesTheObject();
    void detach_whileStarting_waits();
    void detach_ofAFailedStart_isTold_data();
    void detach_ofAFailedStart_isTold();
    void detach_beforeTheStart_isTold();
    void detach_afterTheEnd_isTold();
    void detachedProgram_survivesItsNextWrite();
    void detachedProgram_leavesNoZombie_data();
    void detachedProgram_leavesNoZombie();
    void deletionInTheSlotOfDetached_isSafe();
    void deletionInTheSlotOfTheStateChange_isSafe();
    void deletionLaterInTheSlotOfAnError_isSafe();
};

namespace {

/** Deletes the sender of a signal. */
class Deleter : public QObject
{
    Q_OBJECT

public slots:
    void onSignal()
    {
        delete sender();
    }
};

} // namespace

static std::unique_ptr<KyDetachableProcess> makeProcess(const ScriptedProgram &program)
{
    std::unique_ptr<KyDetachableProcess> process = std::make_unique<KyDetachableProcess>(nullptr);
    process->setProgram(ScriptedProgram::program());
    process->setArguments({program.script()});
    return process;
}

void tst_KyDetachableProcess::newObject_isEmpty()
{
    QObject parent;
    KyDetachableProcess *process = new KyDetachableProcess(&parent);
    QCOMPARE(process->parent(), &parent);
    QCOMPARE(process->program(), QString());
    QCOMPARE(process->arguments(), QStringList());
    process->setProgram("a program");
    process->setArguments({"a", "b"});
    QCOMPARE(process->program(), QString("a program"));
    QCOMPARE(process->arguments(), QStringList({"a", "b"}));
}

void tst_KyDetachableProcess::start_runsTheProgram()
{
    const ScriptedProgram program({"print text", "read input", "exit 4"});
    const std::unique_ptr<KyDetachableProcess> process = makeProcess(program);
    QSignalSpy errors(process.get(), SIGNAL(errorOccured()));
    QSignalSpy detached(process.get(), SIGNAL(detached()));
    QSignalSpy finished(process.get(), SIGNAL(finished(int, QProcess::ExitStatus)));

    process->start();
    QCOMPARE(process->openMode(), QIODevice::ReadWrite);
    process->write("input");
    process->closeWriteChannel();

    QTRY_COMPARE(finished.size(), 1);
    QCOMPARE(process->readAllStandardOutput(), QByteArray("text"));
    QCOMPARE(program.read("input"), QByteArray("input"));
    QCOMPARE(process->exitCode(), 4);
    QCOMPARE(errors.size(), 0);
    QCOMPARE(detached.size(), 0);
}

void tst_KyDetachableProcess::commandLine_isUsedWithoutArguments_data()
{
    QTest::addColumn<QString>("rest");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("nothing more") << "" << QStringList();
    QTest::newRow("one") << " one" << QStringList{"one"};
    QTest::newRow("blanks") << "  one   two " << QStringList{"one", "two"};
    QTest::newRow("quotes") << " \"one two\" three" << QStringList{"one two", "three"};
    QTest::newRow("quote") << " \"\"\"one\"\"\"" << QStringList{"\"one\""};
}

void tst_KyDetachableProcess::commandLine_isUsedWithoutArguments()
{
    QFETCH(QString, rest);
    QFETCH(QStringList, expected);
    const ScriptedProgram program({"arguments arguments"}, "a folder/a script");
    KyDetachableProcess process(nullptr);
    const QString command =
        QStringLiteral("\"%1\" \"%2\"").arg(ScriptedProgram::program(), program.script()) + rest;
    process.setProgram(command);

    process.start();

    QTRY_VERIFY(program.has("arguments"));
    QCOMPARE(program.lines("arguments").mid(1), QStringList{program.script()} + expected);
    QCOMPARE(process.program(), command);
    QCOMPARE(process.arguments(), QStringList());
}

void tst_KyDetachableProcess::blanksInTheProgram_needNoQuotesWithArguments()
{
    const ScriptedProgram program({"arguments arguments"}, "a folder/a script");
#ifdef Q_OS_WIN // without links to programs, and quotes in names
    const QString executable = program.path("a program.exe");
    QVERIFY(QFile::copy(ScriptedProgram::program(), executable));
#else
    const QString executable = program.path("a \"program\"");
    QVERIFY(QFile::link(ScriptedProgram::program(), executable));
#endif
    KyDetachableProcess process(nullptr);
    process.setProgram(executable);
    process.setArguments({program.script(), "one two", QString()});

    process.start();

    QTRY_VERIFY(program.has("arguments"));
    QCOMPARE(QString::fromUtf8(program.read("arguments")).split('\n').mid(1, 3),
             QStringList({program.script(), "one two", QString()}));
}

void tst_KyDetachableProcess::failedStart_isToldOnce_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("missing") << "/nowhere/program" << QStringList{"a"};
    QTest::newRow("missing, as a command line") << "/nowhere/program a" << QStringList();
    QTest::newRow("empty") << "" << QStringList();
    QTest::newRow("blank") << "  " << QStringList();
    QTest::newRow("empty with arguments") << "" << QStringList{"a"};
}

void tst_KyDetachableProcess::failedStart_isToldOnce()
{
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    KyDetachableProcess process(nullptr);
    QSignalSpy errors(&process, SIGNAL(errorOccured()));
    process.setProgram(program);
    process.setArguments(arguments);
    process.start();
    QTRY_COMPARE(errors.size(), 1);
    QTRY_COMPARE(process.state(), QProcess::NotRunning);
    QCOMPARE(process.error(), QProcess::FailedToStart);
    QCOMPARE(errors.size(), 1);
}

void tst_KyDetachableProcess::crash_isTold()
{
    const ScriptedProgram program({"crash"});
    const std::unique_ptr<KyDetachableProcess> process = makeProcess(program);
    QSignalSpy errors(process.get(), SIGNAL(errorOccured()));
    process->start();
    QTRY_COMPARE(process->exitStatus(), QProcess::CrashExit);
    QCOMPARE(errors.size(), 1);
}

void tst_KyDetachableProcess::secondStart_connectsNoSecondTime()
{
    const ScriptedProgram program({"crash"});
    const std::unique_ptr<KyDetachableProcess> process = makeProcess(program);
    QSignalSpy errors(process.get(), SIGNAL(errorOccured()));
    QSignalSpy finished(process.get(), SIGNAL(finished(int, QProcess::ExitStatus)));
    process->start();
    QTRY_COMPARE(finished.size(), 1);
    process->start();
    QTRY_COMPARE(finished.size(), 2);
    QCOMPARE(errors.size(), 2);
}

void tst_KyDetachableProcess::deletionWithoutDetaching_endsTheProgram()
{
    const ScriptedProgram program({"pid pid", "wait never"});
    std::unique_ptr<KyDetachableProcess> process = makeProcess(program);
    process->start();
    QTRY_VERIFY(program.has("pid"));
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression("QProcess: Destroyed while process .* is still running"));
    process.reset();
    QVERIFY(!program.isInProcessTable());
}

void tst_KyDetachableProcess::detachedProgram_outlivesTheObject()
{
    const ScriptedProgram program({"pid pid", "wait go", "touch done"});
    std::unique_ptr<KyDetachableProcess> process = makeProcess(program);
    QSignalSpy detached(process.get(), SIGNAL(detached()));
    QSignalSpy errors(process.get(), SIGNAL(errorOccured()));
    process->start();
    QTRY_VERIFY(program.has("pid"));

    process->detach();

    QCOMPARE(detached.size(), 1);
    QCOMPARE(errors.size(), 0);
    QCOMPARE(process->state(), QProcess::NotRunning);
    process.reset();
    QVERIFY(Test::isRunning(program.processId()));
    program.touch("go");
    QTRY_VERIFY(program.has("done"));
}

void tst_KyDetachableProcess::detach_whileStarting_waits()
{
#ifdef Q_OS_WIN
    QSKIP("A program runs here before start() returns");
#endif
    const ScriptedProgram program({"pid pid", "wait go", "touch done"});
    std::unique_ptr<KyDetachableProcess> process = makeProcess(program);
    QSignalSpy started(process.get(), SIGNAL(started()));
    QSignalSpy detached(process.get(), SIGNAL(detached()));
    process->start();
    QCOMPARE(process->state(), QProcess::Starting);

    process->detach();

    QCOMPARE(started.size(), 1);
    QCOMPARE(detached.size(), 1);
    process.reset();
    QTRY_VERIFY(program.has("pid"));
    program.touch("go");
    QTRY_VERIFY(program.has("done"));
}

void tst_KyDetachableProcess::detach_ofAFailedStart_isTold_data()
{
    QTest::addColumn<bool>("isWaitedFor");
    QTest::newRow("at once") << false;
    QTest::newRow("later") << true;
}

void tst_KyDetachableProcess::detach_ofAFailedStart_isTold()
{
    QFETCH(bool, isWaitedFor);
    KyDetachableProcess process(nullptr);
    QSignalSpy detached(&process, SIGNAL(detached()));
    QSignalSpy errors(&process, SIGNAL(errorOccured()));
    process.setProgram("/nowhere/program");
    process.start();
    if (isWaitedFor)
        QTRY_COMPARE(errors.size(), 1);

    process.detach();

    QCOMPARE(detached.size(), 1);
    QCOMPARE(errors.size(), 1);
}

void tst_KyDetachableProcess::detach_beforeTheStart_isTold()
{
    KyDetachableProcess process(nullptr);
    QSignalSpy detached(&process, SIGNAL(detached()));
    process.detach();
    QCOMPARE(detached.size(), 1);
}

void tst_KyDetachableProcess::detach_afterTheEnd_isTold()
{
    const ScriptedProgram program({"exit 1"});
    const std::unique_ptr<KyDetachableProcess> process = makeProcess(program);
    QSignalSpy detached(process.get(), SIGNAL(detached()));
    process->start();
    QVERIFY(process->waitForFinished());
    process->detach();
    QCOMPARE(detached.size(), 1);
    QCOMPARE(process->exitCode(), 1);
}

void tst_KyDetachableProcess::detachedProgram_survivesItsNextWrite()
{
    const ScriptedProgram program({"pid pid", "write-forever refused", "wait go", "touch done"});
    std::unique_ptr<KyDetachableProcess> process = makeProcess(program);
    process->start();
    QTRY_VERIFY(program.has("pid"));
    process->detach();
    QVERIFY(!program.has("refused"));

    process.reset();

    QTRY_VERIFY(program.has("refused"));
    program.touch("go");
    QTRY_VERIFY(program.has("done"));
}

void tst_KyDetachableProcess::detachedProgram_leavesNoZombie_data()
{
    QTest::addColumn<bool>("isDeletedFirst");
    QTest::newRow("ends after the object") << true;
    QTest::newRow("ends before the object") << false;
}

void tst_KyDetachableProcess::detachedProgram_leavesNoZombie()
{
    QFETCH(bool, isDeletedFirst);
    const ScriptedProgram program({"pid pid", "wait go"});
    std::unique_ptr<KyDetachableProcess> process = makeProcess(program);
    process->start();
    QTRY_VERIFY(program.has("pid"));
    process->detach();
    if (isDeletedFirst)
        process.reset();

    program.touch("go");

    QTRY_VERIFY(!program.isInProcessTable());
}

void tst_KyDetachableProcess::deletionInTheSlotOfDetached_isSafe()
{
    const ScriptedProgram program({"pid pid", "wait go", "touch done"});
    Deleter deleter;
    QPointer<KyDetachableProcess> process(makeProcess(program).release());
    connect(process, SIGNAL(detached()), &deleter, SLOT(onSignal()));
    process->start();
    process->detach();
    QVERIFY(!process);
    program.touch("go");
    QTRY_VERIFY(program.has("done"));
}

void tst_KyDetachableProcess::deletionInTheSlotOfTheStateChange_isSafe()
{
    const ScriptedProgram program({"pid pid", "wait go", "touch done"});
    Deleter deleter;
    QPointer<KyDetachableProcess> process(makeProcess(program).release());
    QSignalSpy detached(process, SIGNAL(detached()));
    process->start();
    QTRY_VERIFY(program.has("pid"));
    connect(process, SIGNAL(stateChanged(QProcess::ProcessState)), &deleter, SLOT(onSignal()));
    process->detach();
    QVERIFY(!process);
    QCOMPARE(detached.size(), 0);
    program.touch("go");
    QTRY_VERIFY(program.has("done"));
}

void tst_KyDetachableProcess::deletionLaterInTheSlotOfAnError_isSafe()
{
    for (const char *name : {"/nowhere/program", ""}) {
        QPointer<KyDetachableProcess> process(new KyDetachableProcess(nullptr));
        process->setProgram(QString::fromLatin1(name));
        connect(process, SIGNAL(errorOccured()), process, SLOT(deleteLater()));
        process->start();
        QTRY_VERIFY(!process);
    }
}

KYTE_TEST_MAIN(tst_KyDetachableProcess)
#include "tst_KyDetachableProcess.moc"
