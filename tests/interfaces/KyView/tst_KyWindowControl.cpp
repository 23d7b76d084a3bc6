#include "KyTestMain.h"
#include "KyWindowProgram.h"

using Kyte::KyWindowControl;
using Kyte::Test::WindowProgram;

static const QString PROGRAM = QStringLiteral("ky_window");

class tst_KyWindowControl : public QObject
{
    Q_OBJECT

private slots:
    void noProcess_hasNoWindow();
    void programWithoutWindows_hasNone();
    void mainWindow_isFound_data();
    void mainWindow_isFound();
    void minorWindow_isFoundOnlyWhereAnyWillDo_data();
    void minorWindow_isFoundOnlyWhereAnyWillDo();
    void hiddenWindow_isNotFound();
    void minimizedWindow_isFound();
    void windowsOfOtherProcesses_doNotCount();
    void ownWindow_isFound();
    void endedProgram_hasNone();
};

void tst_KyWindowControl::noProcess_hasNoWindow()
{
    PROCESS_INFORMATION none = {};
    for (bool mainWindowOnly : {true, false}) {
        QCOMPARE(KyWindowControl::getWindowHandle(nullptr, mainWindowOnly), quint64(0));
        QCOMPARE(KyWindowControl::getWindowHandle(&none, mainWindowOnly), quint64(0));
    }
}

void tst_KyWindowControl::programWithoutWindows_hasNone()
{
    WindowProgram program(PROGRAM, {});
    QVERIFY(program.waitUntilReady());
    QCOMPARE(program.mainWindow(), quint64(0));
    QCOMPARE(program.anyWindow(), quint64(0));
}

void tst_KyWindowControl::mainWindow_isFound_data()
{
    QTest::addColumn<QStringList>("windows");
    QTest::newRow("alone") << QStringList{"main"};
    QTest::newRow("late") << QStringList{"main:200"};
    QTest::newRow("after a splash screen") << QStringList{"splash", "main:200"};
    QTest::newRow("after a tool window") << QStringList{"tool", "main:200"};
#ifndef Q_OS_WIN // where a dialog without an owner is a main window
    QTest::newRow("after a dialog") << QStringList{"dialog", "main:200"};
#endif
    QTest::newRow("with a dialog") << QStringList{"main", "dialog"};
    QTest::newRow("among all kinds") << QStringList{"hidden", "splash", "tool",  "main",
                                                    "dialog", "tool",   "splash"};
}

void tst_KyWindowControl::mainWindow_isFound()
{
    QFETCH(QStringList, windows);
    WindowProgram program(PROGRAM, windows);
    quint64 found = 0;
    // What comes first counts: nothing else was found before.
    QTRY_VERIFY_WITH_TIMEOUT((found = program.mainWindow()) != 0, Kyte::Test::STARTING_TIME);
    QCOMPARE(found, program.handle(QStringLiteral("main")));
    QCOMPARE(program.anyWindow(), found);
}

void tst_KyWindowControl::minorWindow_isFoundOnlyWhereAnyWillDo_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"splash", "tool"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
#ifndef Q_OS_WIN // where a dialog without an owner is a main window
    QTest::newRow("dialog") << QStringLiteral("dialog");
#endif
}

void tst_KyWindowControl::minorWindow_isFoundOnlyWhereAnyWillDo()
{
    QFETCH(QString, kind);
    WindowProgram program(PROGRAM, {QStringLiteral("hidden"), kind});
    const quint64 window = program.handle(kind);
    QVERIFY(window != 0);
    QTRY_COMPARE(program.anyWindow(), window);
    QCOMPARE(program.mainWindow(), quint64(0));
}

void tst_KyWindowControl::hiddenWindow_isNotFound()
{
    WindowProgram program(PROGRAM, {QStringLiteral("hidden")});
    QVERIFY(program.handle(QStringLiteral("hidden")) != 0);
    QCOMPARE(program.mainWindow(), quint64(0));
    QCOMPARE(program.anyWindow(), quint64(0));
}

void tst_KyWindowControl::minimizedWindow_isFound()
{
    WindowProgram program(PROGRAM, {QStringLiteral("minimized")});
    const quint64 window = program.handle(QStringLiteral("minimized"));
    QVERIFY(window != 0);
    QTRY_COMPARE(program.mainWindow(), window);
}

void tst_KyWindowControl::windowsOfOtherProcesses_doNotCount()
{
    WindowProgram first(PROGRAM, {QStringLiteral("main")});
    WindowProgram second(PROGRAM, {QStringLiteral("main")});
    WindowProgram third(PROGRAM, {});
    QVERIFY(third.waitUntilReady());
    QTRY_VERIFY_WITH_TIMEOUT(first.mainWindow() != 0 && second.mainWindow() != 0, Kyte::Test::STARTING_TIME);
    QCOMPARE(first.mainWindow(), first.handle(QStringLiteral("main")));
    QCOMPARE(second.mainWindow(), second.handle(QStringLiteral("main")));
    QVERIFY(first.mainWindow() != second.mainWindow());
    QCOMPARE(third.anyWindow(), quint64(0));
}

void tst_KyWindowControl::ownWindow_isFound()
{
    QWidget window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    PROCESS_INFORMATION self = {};
    self.dwProcessId = decltype(self.dwProcessId)(QCoreApplication::applicationPid());
    QTRY_COMPARE(KyWindowControl::getWindowHandle(&self, true), quint64(window.winId()));
}

void tst_KyWindowControl::endedProgram_hasNone()
{
    WindowProgram program(PROGRAM, {QStringLiteral("main")});
    QTRY_VERIFY_WITH_TIMEOUT(program.mainWindow() != 0, Kyte::Test::STARTING_TIME);
    program.end();
    QTRY_COMPARE(program.anyWindow(), quint64(0));
}

KYTE_TEST_MAIN(tst_KyWindowControl)
#include "tst_KyWindowControl.moc"
