#include <KyExecuteProcess.h>
#include <KyScriptedProgram.h>
#include <KyTestMain.h>

using namespace Kyte;
using Kyte::Test::ScriptedProgram;

static const int INTERVAL = 50; // milliseconds between two questions for the window

static QStringList debugLines;

static void recordDebug(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtDebugMsg)
        debugLines.append(text);
}

/** How often a window was asked for: each time begins with a line in the debug log. */
static int questions()
{
    return debugLines.filter(QStringLiteral("PID:")).size();
}

class tst_KyExecuteProcessWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void lateWindow_isFound();
    void dialogFirst_mainWindowIsFound();
    void programWithoutWindow_isAskedUntilItEnds();
    void restart_doesNotAskTwice();
    void secondProgram_hasItsOwnWindow();
    void deletionInTheSlot_isSafe();
    void copy_hasTheHandle();

private:
    QtMessageHandler m_formerHandler = nullptr;
};

void tst_KyExecuteProcessWindow::init()
{
    debugLines.clear();
    m_formerHandler = qInstallMessageHandler(recordDebug);
}

void tst_KyExecuteProcessWindow::cleanup()
{
    qInstallMessageHandler(m_formerHandler);
}

static KyExecuteProcess *makeProcess(const QStringList &windows)
{
    return new KyExecuteProcess(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/ky_window"), windows,
                                QIODevice::ReadOnly, nullptr);
}

/** The handle that the program has printed for its window \a kind. */
static WId printedHandle(QProcess *process, const QString &kind)
{
    const QStringList lines = QString::fromUtf8(process->readAllStandardOutput()).split('\n');
    for (const QString &line : lines) {
        if (line.section(' ', 0, 0) == kind)
            return WId(line.section(' ', 1).toULongLong());
    }
    return 0;
}

void tst_KyExecuteProcessWindow::lateWindow_isFound()
{
    const std::unique_ptr<KyExecuteProcess> process(makeProcess({"main:400"}));
    QSignalSpy spy(process.get(), SIGNAL(windowHandleGotten(WId)));
    process->startProcess();
    QCOMPARE(process->processWindowHandle(), WId(0));

    QTRY_COMPARE_WITH_TIMEOUT(spy.size(), 1, 30000);

    const WId handle = spy.first().first().value<WId>();
    QVERIFY(handle != 0);
    QCOMPARE(handle, printedHandle(process->process(), "main"));
    QCOMPARE(process->processWindowHandle(), handle);
    QVERIFY(questions() > 1);
    QVERIFY(
        debugLines.contains(QStringLiteral("PID: ") + QString::number(process->process()->processId(), 16)));
    QCOMPARE(debugLines.last(), QStringLiteral("Proc WID: ") + QString::number(handle, 16));

    // Nobody asks any more.
    const int asked = questions();
    QTest::qWait(3 * INTERVAL);
    QCOMPARE(questions(), asked);
    QCOMPARE(spy.size(), 1);
}

void tst_KyExecuteProcessWindow::dialogFirst_mainWindowIsFound()
{
    const std::unique_ptr<KyExecuteProcess> process(makeProcess({"splash", "tool", "main:300"}));
    QSignalSpy spy(process.get(), SIGNAL(windowHandleGotten(WId)));
    process->startProcess();
    QTRY_COMPARE_WITH_TIMEOUT(spy.size(), 1, 30000);
    QCOMPARE(spy.first().first().value<WId>(), printedHandle(process->process(), "main"));
}

void tst_KyExecuteProcessWindow::programWithoutWindow_isAskedUntilItEnds()
{
    const ScriptedProgram program({"pid pid", "wait go"});
    KyExecuteProcess process(ScriptedProgram::program(), {program.script()}, QIODevice::ReadOnly, nullptr);
    QSignalSpy windows(&process, SIGNAL(windowHandleGotten(WId)));
    QSignalSpy ends(&process, SIGNAL(processFinished(int, QProcess::ExitStatus, KyExecuteProcess *)));
    process.startProcess();
    QTRY_VERIFY(questions() > 5);

    program.touch("go");
    QTRY_COMPARE(ends.size(), 1);

    const int asked = questions();
    QTest::qWait(3 * INTERVAL);
    QCOMPARE(questions(), asked);
    QCOMPARE(windows.size(), 0);
    QCOMPARE(process.processWindowHandle(), WId(0));
}

void tst_KyExecuteProcessWindow::restart_doesNotAskTwice()
{
    const std::unique_ptr<KyExecuteProcess> process(makeProcess({"main:200"}));
    QSignalSpy spy(process.get(), SIGNAL(windowHandleGotten(WId)));
    process->startProcess();
    QVERIFY(process->process()->waitForStarted()); // the first question is due in 50 ms
    process->startProcess();
    QVERIFY(process->process()->waitForStarted());

    QTRY_COMPARE_WITH_TIMEOUT(spy.size(), 1, 30000);
    QTest::qWait(3 * INTERVAL);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(process->processWindowHandle(), printedHandle(process->process(), "main"));
}

void tst_KyExecuteProcessWindow::secondProgram_hasItsOwnWindow()
{
    const std::unique_ptr<KyExecuteProcess> process(makeProcess({"main"}));
    QSignalSpy spy(process.get(), SIGNAL(windowHandleGotten(WId)));
    process->startProcess();
    QTRY_COMPARE_WITH_TIMEOUT(spy.size(), 1, 30000);

    process->setProcessArguments({"dialog", "main:100"});
    process->startProcess();
    QCOMPARE(process->processWindowHandle(), WId(0));

    QTRY_COMPARE_WITH_TIMEOUT(spy.size(), 2, 30000);
    QCOMPARE(process->processWindowHandle(), printedHandle(process->process(), "main"));
}

namespace {

class Deleter : public QObject
{
    Q_OBJECT

public slots:
    void onWindowHandle(WId)
    {
        delete sender();
    }
};

} // namespace

void tst_KyExecuteProcessWindow::deletionInTheSlot_isSafe()
{
    Deleter deleter;
    QPointer<KyExecuteProcess> process(makeProcess({"main"}));
    connect(process, SIGNAL(windowHandleGotten(WId)), &deleter, SLOT(onWindowHandle(WId)));
    process->startProcess();
    const qint64 id = process->process()->processId();
    QTRY_VERIFY_WITH_TIMEOUT(!process, 30000);
    QVERIFY(!Test::isInProcessTable(id));
}

void tst_KyExecuteProcessWindow::copy_hasTheHandle()
{
    const std::unique_ptr<KyExecuteProcess> process(makeProcess({"main"}));
    QSignalSpy spy(process.get(), SIGNAL(windowHandleGotten(WId)));
    process->startProcess();
    QTRY_COMPARE_WITH_TIMEOUT(spy.size(), 1, 30000);
    const KyExecuteProcess copy(*process);
    QCOMPARE(copy.processWindowHandle(), process->processWindowHandle());
}

KYTE_TEST_MAIN(tst_KyExecuteProcessWindow)
#include "tst_KyExecuteProcessWindow.moc"
