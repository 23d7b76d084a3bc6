#include <KyTestMain.h>

#include <KyEditorCommon.h>
#include <KyProcessInfo.h>

#include <windows.h>

#include <shellapi.h>

using namespace Kyte;

/** A shown top-level window of some process. */
struct Window
{
    HWND handle = nullptr;
    QString title;
    qint64 process = 0;
};

static BOOL CALLBACK addWindow(HWND handle, LPARAM list)
{
    if (!IsWindowVisible(handle))
        return TRUE;
    wchar_t title[1024] = {};
    DWORD process = 0;
    GetWindowTextW(handle, title, 1024);
    GetWindowThreadProcessId(handle, &process);
    reinterpret_cast<QList<Window> *>(list)->append(
        {handle, QString::fromWCharArray(title), qint64(process)});
    return TRUE;
}

static QList<Window> windowsOf(const QString &program)
{
    QList<qint64> ids;
    for (const KyProcessInfo &process : KyProcessInfo::getProcessesByName(program, nullptr, true))
        ids.append(process.processId());
    QList<Window> all;
    EnumWindows(addWindow, reinterpret_cast<LPARAM>(&all));
    QList<Window> windows;
    for (const Window &window : qAsConst(all)) {
        if (ids.contains(window.process))
            windows.append(window);
    }
    return windows;
}

/** The file manager's windows whose title names the folder \a name. */
static QList<Window> folderWindows(const QString &name)
{
    QList<Window> windows;
    for (const Window &window : windowsOf(QStringLiteral("explorer.exe"))) {
        if (window.title.contains(name))
            windows.append(window);
    }
    return windows;
}

/** Whether the explorer shows a folder that is named with the prefix for long paths; wine's does not. */
static bool opensLongPaths()
{
    return !GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version");
}

/** What is asked of the desktop shows there. */
class tst_windowsDesktop : public QObject
{
    Q_OBJECT

private slots:
    void shell_opensAWindowOnAFolder();
    void openFolderWithShell_opensAWindowOnTheFolder_data();
    void openFolderWithShell_opensAWindowOnTheFolder();
};

/** Otherwise the other tests would look for windows that cannot be found. */
void tst_windowsDesktop::shell_opensAWindowOnAFolder()
{
    const QTemporaryDir folder;
    const QString name = QStringLiteral("kyte plain");
    QVERIFY(QDir(folder.path()).mkdir(name));
    const QString path = QDir::toNativeSeparators(folder.filePath(name));
    ShellExecuteW(nullptr, L"explore", reinterpret_cast<const wchar_t *>(path.utf16()), nullptr, nullptr,
                  SW_SHOWNORMAL);
    QTRY_COMPARE_WITH_TIMEOUT(folderWindows(name).size(), 1, 30000);
    PostMessageW(folderWindows(name).first().handle, WM_CLOSE, 0, 0);
    QTRY_VERIFY_WITH_TIMEOUT(folderWindows(name).isEmpty(), 30000);
}

void tst_windowsDesktop::openFolderWithShell_opensAWindowOnTheFolder_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("opened");
    QTest::addColumn<bool>("hasParent");
    QTest::newRow("folder") << "kyte films"
                            << "kyte films" << false;
    QTest::newRow("folder, from a window") << "kyte films"
                                           << "kyte films" << true;
    QTest::newRow("file") << "kyte films/a.mp4"
                          << "kyte films" << false;
    QTest::newRow("other alphabet") << QStringLiteral("kyte \u6620\u753b")
                                    << QStringLiteral("kyte \u6620\u753b") << false;
}

void tst_windowsDesktop::openFolderWithShell_opensAWindowOnTheFolder()
{
    QFETCH(QString, path);
    QFETCH(QString, opened);
    QFETCH(bool, hasParent);
    if (!opensLongPaths())
        QSKIP("wine's explorer shows no folder that is named with the prefix for long paths");
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(opened));
    QWidget parent;
    parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&parent));
    QVERIFY(folderWindows(opened).isEmpty());

    KyEditorCommon::openFolderWithShell(folder.filePath(path), hasParent ? &parent : nullptr);

    QTRY_COMPARE_WITH_TIMEOUT(folderWindows(opened).size(), 1, 30000);
    PostMessageW(folderWindows(opened).first().handle, WM_CLOSE, 0, 0);
    QTRY_VERIFY_WITH_TIMEOUT(folderWindows(opened).isEmpty(), 30000);
}

KYTE_TEST_MAIN(tst_windowsDesktop)
#include "tst_windowsDesktop.moc"
