#include "KyDestinationTest.h"

#include <KyTestMain.h>

#include <KyChannelConfig.h>
#include <KyEditorCommon.h>
#include <KyEditorConfig.h>
#include <KyEditorUserConfig.h>

#include <QSettings>

#include <windows.h>

using namespace Kyte;
using namespace Kyte::Test;

/** Paths, files and folders as Windows has them. */
class tst_windowsFiles : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void watchProbe_data();
    void watchProbe();
    void watchProbe_ofAnOpenFolder_isTrue();
    void relativePath_data();
    void relativePath();
    void message_namesTheFolderNatively();
    void userSettings_haveWindowsLineEnds();
    void userSettings_withEitherLineEnds_areRead_data();
    void userSettings_withEitherLineEnds_areRead();
    void openStandardFile_isFailure1AndLosesNothing_data();
    void openStandardFile_isFailure1AndLosesNothing();

private:
    std::unique_ptr<Environment> m_environment;
};

void tst_windowsFiles::init()
{
    m_environment = std::make_unique<Environment>();
}

void tst_windowsFiles::cleanup()
{
    m_environment.reset();
    KyEditorConfig::setDataDir(QString());
}

void tst_windowsFiles::watchProbe_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("expected");
    QTest::newRow("folder") << "films" << true;
    QTest::newRow("folder, natively") << "films\\old" << true;
    QTest::newRow("folder with a native separator") << "films\\" << true;
    QTest::newRow("missing") << "none" << false;
    QTest::newRow("file") << "film.mp4" << false;
    QTest::newRow("unreachable share") << "//kyte-no-such-host/share" << false;
    QTest::newRow("unreachable share, natively") << "\\\\kyte-no-such-host\\share" << false;
}

void tst_windowsFiles::watchProbe()
{
    QFETCH(QString, path);
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("films/old")));
    writeFile(folder.filePath(QStringLiteral("film.mp4")), "film");
    if (!QDir::fromNativeSeparators(path).startsWith(QLatin1String("//")))
        path.prepend(folder.path() + QLatin1Char('/'));
    QTEST(KyEditorCommon::tryInstallFileWatcher(path), "expected");
}

void tst_windowsFiles::watchProbe_ofAnOpenFolder_isTrue()
{
    const QTemporaryDir folder;
    const QString path = QDir::toNativeSeparators(folder.path());
    const HANDLE handle = CreateFileW(reinterpret_cast<const wchar_t *>(path.utf16()), FILE_LIST_DIRECTORY,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    QVERIFY(handle != INVALID_HANDLE_VALUE);
    const bool isPossible = KyEditorCommon::tryInstallFileWatcher(folder.path());
    CloseHandle(handle);
    QVERIFY(isPossible);
}

void tst_windowsFiles::relativePath_data()
{
    QTest::addColumn<QString>("dataDir");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    QTest::newRow("folder natively") << "C:\\data"
                                     << "C:/data/films/a.mp4"
                                     << "films/a.mp4";
    QTest::newRow("folder natively, separator") << "C:\\data\\"
                                                << "C:/data/films/a.mp4"
                                                << "films/a.mp4";
    QTest::newRow("rest natively") << "C:\\data"
                                   << "C:/data\\films\\a.mp4"
                                   << "films/a.mp4";
    QTest::newRow("both natively") << "C:\\data"
                                   << "C:\\data\\a.mp4"
                                   << "C:\\data\\a.mp4";
    QTest::newRow("path natively") << "C:/data"
                                   << "C:\\data\\a.mp4"
                                   << "C:\\data\\a.mp4";
    QTest::newRow("other case") << "c:\\DATA"
                                << "C:/data/a.mp4"
                                << "a.mp4";
    QTest::newRow("other drive") << "C:\\data"
                                 << "D:/data/a.mp4"
                                 << "D:/data/a.mp4";
    QTest::newRow("share") << "\\\\server\\data"
                           << "//server/data/a.mp4"
                           << "a.mp4";
}

void tst_windowsFiles::relativePath()
{
    QFETCH(QString, dataDir);
    QFETCH(QString, path);
    KyEditorConfig::setDataDir(dataDir);
    QTEST(KyEditorConfig::getRelativePath(path), "expected");
}

void tst_windowsFiles::message_namesTheFolderNatively()
{
    KyChannelConfig config;
    QVERIFY(!config.getAllChannelInfoFromFiles(QStringLiteral("C:/kyte/no such/folder")));
    QCOMPARE(config.lastErrorMessage(),
             QStringLiteral("The Channel folder \"C:\\kyte\\no such\\folder\" does not exist."));
}

void tst_windowsFiles::userSettings_haveWindowsLineEnds()
{
    KyEditorUserConfig::settings()->clear();
    KyEditorUserConfig::setValue(QStringLiteral("dock/width"), 12);
    KyEditorUserConfig::sync();
    QCOMPARE(readFile(KyEditorUserConfig::settings()->fileName()), QByteArray("[dock]\r\nwidth=12\r\n"));
}

void tst_windowsFiles::userSettings_withEitherLineEnds_areRead_data()
{
    QTest::addColumn<QByteArray>("lineEnd");
    QTest::newRow("of Windows") << QByteArray("\r\n");
    QTest::newRow("of Unix") << QByteArray("\n");
}

void tst_windowsFiles::userSettings_withEitherLineEnds_areRead()
{
    QFETCH(QByteArray, lineEnd);
    const QByteArray content = "[dock]\nwidth=12\nname=left\nfolder=C:\\\\data\n";
    KyEditorUserConfig::settings()->clear();
    KyEditorUserConfig::sync();
    writeFile(KyEditorUserConfig::settings()->fileName(), QByteArray(content).replace("\n", lineEnd));
    KyEditorUserConfig::sync();
    QCOMPARE(KyEditorUserConfig::value(QStringLiteral("dock/width")).toInt(), 12);
    QCOMPARE(KyEditorUserConfig::value(QStringLiteral("dock/name")).toString(), QStringLiteral("left"));
    QCOMPARE(KyEditorUserConfig::value(QStringLiteral("dock/folder")).toString(), QStringLiteral("C:\\data"));
}

void tst_windowsFiles::openStandardFile_isFailure1AndLosesNothing_data()
{
    QTest::addColumn<int>("sharing");
    QTest::newRow("nothing shared") << 0;
    QTest::newRow("reading shared") << int(FILE_SHARE_READ);
    QTest::newRow("reading and writing shared") << int(FILE_SHARE_READ | FILE_SHARE_WRITE);
}

void tst_windowsFiles::openStandardFile_isFailure1AndLosesNothing()
{
    QFETCH(int, sharing);
    m_environment->writeConfig(makeDestinations(1, 6));
    const QString standard = m_environment->databaseFile();
    const QString query = QStringLiteral("SELECT name FROM group_tbl");
    QVERIFY(KyDestination(nullptr).init());
    KyDestination destination(nullptr);
    destination.setSettingMode(true);
    QVERIFY(destination.init());
    QVERIFY(destination.addNewGroup(QStringLiteral("New"), nullptr));
    const QByteArray former = readFile(standard);
    QVERIFY(!former.isEmpty());
    const QStringList files = channelFolder(*m_environment);

    const QString native = QDir::toNativeSeparators(standard);
    const HANDLE other = CreateFileW(reinterpret_cast<const wchar_t *>(native.utf16()), GENERIC_READ,
                                     DWORD(sharing), nullptr, OPEN_EXISTING, 0, nullptr);
    QVERIFY(other != INVALID_HANDLE_VALUE);
    const bool isSaved = destination.saveData();
    CloseHandle(other);

    QVERIFY(!isSaved);
    const QString begin = QStringLiteral("Error occured while the data is saving.(1)\n");
    const QString message = destination.lastErrorMessage();
    QVERIFY2(message.startsWith(begin) && message.size() > begin.size(), qPrintable(message));
    QCOMPARE(readFile(standard), former);
    QCOMPARE(queryRows(m_environment->workingFile(), query), QStringList(QStringLiteral("New")));
    QStringList now = channelFolder(*m_environment);
    now.removeOne(QStringLiteral("chconfig.xml"));
    QCOMPARE(now, files);

    QVERIFY(destination.saveData());
    QCOMPARE(queryRows(standard, query), QStringList(QStringLiteral("New")));
}

KYTE_TEST_MAIN(tst_windowsFiles)
#include "tst_windowsFiles.moc"
