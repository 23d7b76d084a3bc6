#include "KyTestMain.h"
#include "KyWindowProgram.h"

#include <limits>

using Kyte::KyWindowControl;
using Kyte::Test::WindowProgram;

static const QString PROGRAM = QStringLiteral("ky_x11_window");
static const QString WINDOW = QStringLiteral("window");

/** An X server without a window manager, which ends with this object. */
class XServer
{
public:
    XServer()
    {
        m_server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_server.start(QStringLiteral(KYTE_TEST_HELPER_DIR "/with-xserver"),
                       {QStringLiteral("--no-wm"), QStringLiteral("sh"), QStringLiteral("-c"),
                        QStringLiteral("echo $DISPLAY; read line")});
        if (m_server.waitForReadyRead(60000))
            m_display = m_server.readLine().trimmed();
    }

    ~XServer()
    {
        m_server.closeWriteChannel();
        m_server.waitForFinished();
    }

    QByteArray display() const
    {
        return m_display;
    }

private:
    QProcess m_server;
    QByteArray m_display;
};

/** Lets a window manager come and die, which leaves its list of no windows on the server. */
static bool leaveWindowList(const QByteArray &display)
{
    QProcess manager;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), QString::fromLatin1(display));
    manager.setProcessEnvironment(environment);
    manager.start(
        QStringLiteral("openbox"),
        {QStringLiteral("--sm-disable"), QStringLiteral("--startup"), QStringLiteral("echo ready")});
    if (!manager.waitForReadyRead(60000))
        return false;
    manager.kill();
    return manager.waitForFinished();
}

class tst_KyWindowControlX11 : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data();
    void initTestCase();
    void cleanupTestCase();
    void init();

    void mainWindow_isFoundAmongOthers();
    void minorWindow_isFoundOnlyWhereAnyWillDo_data();
    void minorWindow_isFoundOnlyWhereAnyWillDo();
    void windowWithoutProcessId_isFoundThroughItsConnection();
    void windowType_decides_data();
    void windowType_decides();
    void overrideRedirectWindow_isNotFound();
    void windowInsideAForeignFrame_isFound();
    void impossibleProcess_hasNoWindow();
    void withoutXServer_thereIsNone_data();
    void withoutXServer_thereIsNone();

private:
    const QByteArray m_managedDisplay = qgetenv("DISPLAY");
    QScopedPointer<XServer> m_bareServer;
    QScopedPointer<XServer> m_abandonedServer;
};

void tst_KyWindowControlX11::initTestCase_data()
{
    m_bareServer.reset(new XServer);
    m_abandonedServer.reset(new XServer);
    QTest::addColumn<QByteArray>("display");
    QTest::newRow("window manager") << m_managedDisplay;
    QTest::newRow("no window manager") << m_bareServer->display();
    QTest::newRow("dead window manager") << m_abandonedServer->display();
}

void tst_KyWindowControlX11::initTestCase()
{
    QVERIFY(!m_managedDisplay.isEmpty());
    QVERIFY(!m_bareServer->display().isEmpty());
    QVERIFY(leaveWindowList(m_abandonedServer->display()));
}

void tst_KyWindowControlX11::cleanupTestCase()
{
    m_bareServer.reset();
    m_abandonedServer.reset();
    qputenv("DISPLAY", m_managedDisplay);
}

void tst_KyWindowControlX11::init()
{
    QFETCH_GLOBAL(QByteArray, display);
    qputenv("DISPLAY", display);
}

void tst_KyWindowControlX11::mainWindow_isFoundAmongOthers()
{
    WindowProgram program(QStringLiteral("ky_window"),
                          {"hidden", "splash", "tool", "main:100", "dialog:100", "tool:100"});
    quint64 found = 0;
    QTRY_VERIFY_WITH_TIMEOUT((found = program.mainWindow()) != 0, Kyte::Test::STARTING_TIME);
    QCOMPARE(found, program.handle(QStringLiteral("main")));
    QCOMPARE(program.anyWindow(), found);
}

void tst_KyWindowControlX11::minorWindow_isFoundOnlyWhereAnyWillDo_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"splash", "tool", "dialog"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void tst_KyWindowControlX11::minorWindow_isFoundOnlyWhereAnyWillDo()
{
    QFETCH(QString, kind);
    WindowProgram program(QStringLiteral("ky_window"), {QStringLiteral("hidden"), kind});
    const quint64 window = program.handle(kind);
    QVERIFY(window != 0);
    QTRY_COMPARE(program.anyWindow(), window);
    QCOMPARE(program.mainWindow(), quint64(0));
}

void tst_KyWindowControlX11::windowWithoutProcessId_isFoundThroughItsConnection()
{
    WindowProgram program(PROGRAM, {});
    WindowProgram other(PROGRAM, {});
    const quint64 window = program.handle(WINDOW);
    QVERIFY(window != 0);
    QTRY_COMPARE(program.mainWindow(), window);
    QTRY_COMPARE(other.mainWindow(), other.handle(WINDOW));
}

void tst_KyWindowControlX11::windowType_decides_data()
{
    QTest::addColumn<QStringList>("types");
    QTest::addColumn<bool>("isMain");
    const QString prefix = QStringLiteral("_NET_WM_WINDOW_TYPE_");
    for (const char *type : {"NORMAL", "DIALOG"})
        QTest::newRow(type) << QStringList(prefix + QLatin1String(type)) << true;
    for (const char *type : {"DESKTOP", "DOCK", "TOOLBAR", "MENU", "UTILITY", "SPLASH", "DROPDOWN_MENU",
                             "POPUP_MENU", "TOOLTIP", "NOTIFICATION", "COMBO", "DND"})
        QTest::newRow(type) << QStringList(prefix + QLatin1String(type)) << false;
    QTest::newRow("unknown") << QStringList{"_KYTE_TYPE"} << true;
    QTest::newRow("unknown, normal") << QStringList{"_KYTE_TYPE", prefix + "NORMAL"} << true;
    QTest::newRow("unknown, utility") << QStringList{"_KYTE_TYPE", prefix + "UTILITY"} << false;
    QTest::newRow("utility, normal") << QStringList{prefix + "UTILITY", prefix + "NORMAL"} << false;
    QTest::newRow("normal, utility") << QStringList{prefix + "NORMAL", prefix + "UTILITY"} << true;
}

void tst_KyWindowControlX11::windowType_decides()
{
    QFETCH(QStringList, types);
    QFETCH(bool, isMain);
    WindowProgram program(PROGRAM, types);
    const quint64 window = program.handle(WINDOW);
    QVERIFY(window != 0);
    QTRY_COMPARE(program.anyWindow(), window);
    QCOMPARE(program.mainWindow(), isMain ? window : 0);
}

void tst_KyWindowControlX11::overrideRedirectWindow_isNotFound()
{
    WindowProgram program(PROGRAM, {QStringLiteral("--override-redirect")});
    QVERIFY(program.handle(WINDOW) != 0);
    QCOMPARE(program.mainWindow(), quint64(0));
    QCOMPARE(program.anyWindow(), quint64(0));
}

void tst_KyWindowControlX11::windowInsideAForeignFrame_isFound()
{
    QFETCH_GLOBAL(QByteArray, display);
    if (display == m_managedDisplay)
        QSKIP("the window manager makes the frames, and every other test finds windows inside them");
    WindowProgram frame(PROGRAM, {});
    const quint64 frameWindow = frame.handle(WINDOW);
    WindowProgram program(PROGRAM, {QStringLiteral("--inside"), QString::number(frameWindow)});
    const quint64 window = program.handle(WINDOW);
    QVERIFY(window != 0 && window != frameWindow);
    QCOMPARE(program.mainWindow(), window);
    QCOMPARE(frame.mainWindow(), frameWindow);
}

void tst_KyWindowControlX11::impossibleProcess_hasNoWindow()
{
    WindowProgram program(PROGRAM, {});
    QTRY_VERIFY_WITH_TIMEOUT(program.mainWindow() != 0, Kyte::Test::STARTING_TIME);
    const qint64 processId = program.process().dwProcessId;
    for (qint64 id :
         {qint64(-1), -processId, processId + (qint64(1) << 32), std::numeric_limits<qint64>::max()}) {
        PROCESS_INFORMATION process{id};
        QCOMPARE(KyWindowControl::getWindowHandle(&process, false), quint64(0));
    }
}

void tst_KyWindowControlX11::withoutXServer_thereIsNone_data()
{
    QTest::addColumn<QByteArray>("noDisplay");
    QTest::newRow("none named") << QByteArray();
    QTest::newRow("none there") << QByteArray(":59999");
    QTest::newRow("no display's name") << QByteArray("nonsense");
}

void tst_KyWindowControlX11::withoutXServer_thereIsNone()
{
    QFETCH(QByteArray, noDisplay);
    WindowProgram program(PROGRAM, {});
    QVERIFY(program.handle(WINDOW) != 0);
    if (noDisplay.isNull())
        qunsetenv("DISPLAY");
    else
        qputenv("DISPLAY", noDisplay);
    QCOMPARE(program.mainWindow(), quint64(0));
    QCOMPARE(program.anyWindow(), quint64(0));
}

KYTE_TEST_MAIN(tst_KyWindowControlX11)
#include "tst_KyWindowControlX11.moc"
