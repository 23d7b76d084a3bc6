#include "KyTestMain.h"

#include "KyTestEnvironment.h"

#include <KyConfig.h>
#include <KyEditorConfig.h>
#include <KyProductInformation.h>

#include <type_traits>

#ifdef Q_OS_LINUX
#include <sys/inotify.h>
#include <unistd.h>
#endif

using namespace Kyte;

static_assert(!std::is_default_constructible<KyEditorConfig>::value, "only getInstance() makes one");
static_assert(!std::is_copy_constructible<KyEditorConfig>::value, "there is only one");
static_assert(std::is_destructible<KyEditorConfig>::value, "the destructor is public");

static QByteArray inRoot(const QByteArray &content)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><Pelmora>" + content + "</Pelmora>";
}

#ifdef Q_OS_LINUX
/** How often \a action opens the file \a path. */
static int countOpenings(const QString &path, const std::function<void()> &action)
{
    const int handle = ::inotify_init1(IN_NONBLOCK);
    // The closings keep the openings apart, which would be told as one otherwise.
    if (::inotify_add_watch(handle, QFile::encodeName(path).constData(), IN_OPEN | IN_CLOSE) < 0)
        qFatal("Cannot watch %s", qPrintable(path));
    action();
    int openings = 0;
    inotify_event event = {};
    while (::read(handle, &event, sizeof event)
           == ssize_t(sizeof event)) // a watched file's events have no name
        openings += event.mask & IN_OPEN ? 1 : 0;
    ::close(handle);
    return openings;
}
#endif

class tst_KyEditorConfig : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void instance_isAlwaysTheSame();
    void readStandardConfigFile_readsTheFile();
    void readStandardConfigFile_ofAMissingFile_isAnError();
    void createDefaultEnvironment_makesIt();
    void createDefaultEnvironment_whereNothingCanBeMade_isAnError();
    void setCommonConfigFile_readsThatFile();
    void setCommonConfigFile_ofABadFile_isAnErrorAndChangesNothing();
    void clearCommonConfigFilePath_forgetsThePathAlone();

    void setters_replaceTheFolders();
    void dataDir_known_isNotReadAgain();
    void dataDir_unknown_isRead();
    void dataDir_thatTheFileDoesNotName_isReadAtEveryCall();
    void dataDir_withoutFile_isEmpty();
    void logDir_known_isNotReadAgain();
    void logDir_unknown_isRead();
    void logDir_thatTheFileDoesNotName_isTheDefault();
    void logDir_withoutFile_isTheDefault();
#ifdef Q_OS_LINUX
    void folders_areReadOncePerCall();
#endif

    void absolutePath_data();
    void absolutePath();
    void absolutePath_ofAnExistingFile_ignoresTheDataFolder();
    void absolutePath_withUnknownDataFolder_readsTheConfiguration();
    void absolutePath_withoutDataFolder_isBelowTheCurrentFolder();
    void relativePath_data();
    void relativePath();
    void relativePath_doesNotReadTheConfiguration();

    void uploadManagerProcess_replaced_isNotDeleted();
    void channelExporterProcess_replaced_isNotDeleted();
    void productInformation_isTheOneHandedIn();

private:
    /** The standard configuration file. */
    void writeConfig(const QByteArray &content);

    std::unique_ptr<Test::Environment> m_environment;
    QString m_currentFolder;
};

void tst_KyEditorConfig::init()
{
    m_environment = std::make_unique<Test::Environment>();
    m_currentFolder = QDir::currentPath();
    QVERIFY(KyEditorConfig::readStandardConfigFile()); // no error, whatever happened before
    KyEditorConfig::clearCommonConfigFilePath();
    KyEditorConfig::setDataDir(QString());
    KyEditorConfig::setLogDir(QString());
}

void tst_KyEditorConfig::cleanup()
{
    QDir::setCurrent(m_currentFolder);
    KyEditorConfig::setUploadManagerProcess(nullptr);
    KyEditorConfig::setChannelExporterProcess(nullptr);
    KyEditorConfig::setProductInformation(nullptr);
    m_environment.reset();
}

void tst_KyEditorConfig::writeConfig(const QByteArray &content)
{
    Test::writeFile(m_environment->configFile(), inRoot(content));
}

void tst_KyEditorConfig::instance_isAlwaysTheSame()
{
    KyEditorConfig *instance = KyEditorConfig::getInstance();
    KyConfig *config = KyEditorConfig::getConfig();

    QVERIFY(instance && config);
    QCOMPARE(KyEditorConfig::getInstance(), instance);
    QCOMPARE(KyEditorConfig::getConfig(), config);
    QCOMPARE(int(config->configType()), 1);
}

void tst_KyEditorConfig::readStandardConfigFile_readsTheFile()
{
    QVERIFY(KyEditorConfig::readStandardConfigFile());

    QVERIFY(!KyEditorConfig::hasError());
    QCOMPARE(KyEditorConfig::getConfig()->filePath(), m_environment->configFile());
    QCOMPARE(KyEditorConfig::getConfig()->dataDir(), m_environment->dataDir());
    QCOMPARE(KyEditorConfig::getConfig()->logDir(), m_environment->root() + QStringLiteral("/log"));
}

void tst_KyEditorConfig::readStandardConfigFile_ofAMissingFile_isAnError()
{
    QVERIFY(QFile::remove(m_environment->configFile()));

    QVERIFY(!KyEditorConfig::readStandardConfigFile());

    QVERIFY(KyEditorConfig::hasError());
    QCOMPARE(KyEditorConfig::getConfig()->dataDir(), QString());
}

void tst_KyEditorConfig::createDefaultEnvironment_makesIt()
{
    const QString root = m_environment->root() + QStringLiteral("/new");
    qputenv("KYTE_CONFIG_FILE", QFile::encodeName(root + QStringLiteral("/config.xml")));

    QVERIFY(KyEditorConfig::createDefaultEnvironment());

    QVERIFY(!KyEditorConfig::hasError());
    QCOMPARE(KyEditorConfig::dataDir(), root + QStringLiteral("/data"));
    QCOMPARE(KyEditorConfig::logDir(), root + QStringLiteral("/log"));
    QCOMPARE(Test::namesIn(root), QStringList({"config.xml", "data", "log"}));
    QCOMPARE(Test::namesIn(root + QStringLiteral("/data")), QStringList({"channel"}));
}

void tst_KyEditorConfig::createDefaultEnvironment_whereNothingCanBeMade_isAnError()
{
    qputenv("KYTE_CONFIG_FILE",
            QFile::encodeName(m_environment->configFile() + QStringLiteral("/config.xml")));

    QVERIFY(!KyEditorConfig::createDefaultEnvironment());

    QVERIFY(KyEditorConfig::hasError());
}

void tst_KyEditorConfig::setCommonConfigFile_readsThatFile()
{
    const QString file = m_environment->root() + QStringLiteral("/other.xml");
    Test::writeFile(file, inRoot("<dataDir>/other</dataDir>"));

    KyEditorConfig::setCommonConfigFile(file);

    QVERIFY(!KyEditorConfig::hasError());
    QCOMPARE(KyEditorConfig::getConfig()->filePath(), file);
    QCOMPARE(KyEditorConfig::dataDir(), Test::rooted("/other"));
}

void tst_KyEditorConfig::setCommonConfigFile_ofABadFile_isAnErrorAndChangesNothing()
{
    const QString file = m_environment->root() + QStringLiteral("/other.xml");
    Test::writeFile(file, "<Pelmora><dataDir>/other</dataDir>");
    KyEditorConfig::setDataDir(QStringLiteral("/former"));

    KyEditorConfig::setCommonConfigFile(file);

    QVERIFY(KyEditorConfig::hasError());
    QCOMPARE(KyEditorConfig::dataDir(), QStringLiteral("/former"));
    QVERIFY(KyEditorConfig::readStandardConfigFile());
    QVERIFY(!KyEditorConfig::hasError());
}

void tst_KyEditorConfig::clearCommonConfigFilePath_forgetsThePathAlone()
{
    KyEditorConfig::setCommonConfigFile(m_environment->configFile());
    QCOMPARE(KyEditorConfig::getConfig()->filePath(), m_environment->configFile());

    KyEditorConfig::clearCommonConfigFilePath();

    QCOMPARE(KyEditorConfig::getConfig()->filePath(), QString());
    QCOMPARE(KyEditorConfig::getConfig()->dataDir(), m_environment->dataDir());
}

void tst_KyEditorConfig::setters_replaceTheFolders()
{
    KyEditorConfig::setDataDir(QStringLiteral("/new data"));
    KyEditorConfig::setLogDir(QStringLiteral("/new log"));

    QCOMPARE(KyEditorConfig::dataDir(), QStringLiteral("/new data"));
    QCOMPARE(KyEditorConfig::logDir(), QStringLiteral("/new log"));
    QCOMPARE(KyEditorConfig::getConfig()->dataDir(), QStringLiteral("/new data"));
    QCOMPARE(KyEditorConfig::getConfig()->logDir(), QStringLiteral("/new log"));
}

void tst_KyEditorConfig::dataDir_known_isNotReadAgain()
{
    QCOMPARE(KyEditorConfig::dataDir(), m_environment->dataDir());
    writeConfig("<dataDir>/moved</dataDir>");

    QCOMPARE(KyEditorConfig::dataDir(), m_environment->dataDir());
}

void tst_KyEditorConfig::dataDir_unknown_isRead()
{
    QCOMPARE(KyEditorConfig::getConfig()->dataDir(), QString());

    QCOMPARE(KyEditorConfig::dataDir(), m_environment->dataDir());

    QCOMPARE(KyEditorConfig::getConfig()->filePath(), m_environment->configFile());
    QCOMPARE(KyEditorConfig::getConfig()->dataDir(), m_environment->dataDir());
}

void tst_KyEditorConfig::dataDir_thatTheFileDoesNotName_isReadAtEveryCall()
{
    writeConfig("<destinations><destination id='1'/></destinations>");
    QCOMPARE(KyEditorConfig::dataDir(), QString());
    QCOMPARE(KyEditorConfig::getConfig()->destinationList().size(), 1);

    writeConfig("<destinations><destination id='1'/><destination id='2'/></destinations>");
    QCOMPARE(KyEditorConfig::dataDir(), QString());
    QCOMPARE(KyEditorConfig::getConfig()->destinationList().size(), 2);

    writeConfig("<dataDir>found</dataDir>");
    QCOMPARE(KyEditorConfig::dataDir(), m_environment->root() + QStringLiteral("/found"));
}

void tst_KyEditorConfig::dataDir_withoutFile_isEmpty()
{
    QVERIFY(QFile::remove(m_environment->configFile()));

    QCOMPARE(KyEditorConfig::dataDir(), QString());

    QVERIFY(KyEditorConfig::hasError());
}

void tst_KyEditorConfig::logDir_known_isNotReadAgain()
{
    QCOMPARE(KyEditorConfig::logDir(), m_environment->root() + QStringLiteral("/log"));
    writeConfig("<logDir>/moved</logDir>");

    QCOMPARE(KyEditorConfig::logDir(), m_environment->root() + QStringLiteral("/log"));
}

void tst_KyEditorConfig::logDir_unknown_isRead()
{
    writeConfig("<logDir>/read</logDir>");

    QCOMPARE(KyEditorConfig::logDir(), Test::rooted("/read"));

    QCOMPARE(KyEditorConfig::getConfig()->logDir(), Test::rooted("/read"));
}

void tst_KyEditorConfig::logDir_thatTheFileDoesNotName_isTheDefault()
{
    writeConfig("<dataDir>/data</dataDir>");
    const QString defaultFolder = m_environment->root() + QStringLiteral("/log");

    QCOMPARE(KyEditorConfig::logDir(), defaultFolder);

    QCOMPARE(KyEditorConfig::getConfig()->dataDir(), Test::rooted("/data")); // the file has been read
    QCOMPARE(KyEditorConfig::getConfig()->logDir(), defaultFolder);
    writeConfig("<logDir>/late</logDir>");
    QCOMPARE(KyEditorConfig::logDir(), defaultFolder); // known from now on
}

void tst_KyEditorConfig::logDir_withoutFile_isTheDefault()
{
    QVERIFY(QFile::remove(m_environment->configFile()));

    QCOMPARE(KyEditorConfig::logDir(), m_environment->root() + QStringLiteral("/log"));

    QVERIFY(KyEditorConfig::hasError());
}

#ifdef Q_OS_LINUX
void tst_KyEditorConfig::folders_areReadOncePerCall()
{
    const QString file = m_environment->configFile();
    writeConfig("");

    QCOMPARE(countOpenings(file,
                           [] {
                               KyEditorConfig::dataDir();
                           }),
             1);
    QCOMPARE(countOpenings(file,
                           [] {
                               KyEditorConfig::dataDir();
                           }),
             1);
    QCOMPARE(countOpenings(file,
                           [] {
                               KyEditorConfig::getAbsolutePath(QStringLiteral("missing"));
                           }),
             1);
    QCOMPARE(countOpenings(file,
                           [] {
                               KyEditorConfig::logDir();
                           }),
             1);
    QCOMPARE(countOpenings(file,
                           [] {
                               KyEditorConfig::logDir();
                           }),
             0);
    KyEditorConfig::setDataDir(QStringLiteral("/known"));
    QCOMPARE(countOpenings(file,
                           [] {
                               KyEditorConfig::dataDir();
                           }),
             0);
}
#endif

void tst_KyEditorConfig::absolutePath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");

    QTest::newRow("missing file") << "a.png"
                                  << "/data/a.png";
    QTest::newRow("missing file in a folder") << "a/b.png"
                                              << "/data/a/b.png";
    QTest::newRow("missing file above") << "../a.png"
                                        << "/data/../a.png";
    QTest::newRow("missing absolute file")
        << Test::rooted("/missing/a.png") << Test::rooted("/missing/a.png");
    QTest::newRow("empty path") << ""
                                << "/data";
    QTest::newRow("other script") << QStringLiteral("\u753B\u50CF.png")
                                  << QStringLiteral("/data/\u753B\u50CF.png");
}

void tst_KyEditorConfig::absolutePath()
{
    QFETCH(QString, path);
    KyEditorConfig::setDataDir(QStringLiteral("/data"));

    QTEST(KyEditorConfig::getAbsolutePath(path), "expected");
}

void tst_KyEditorConfig::absolutePath_ofAnExistingFile_ignoresTheDataFolder()
{
    const QString root = m_environment->root();
    Test::writeFile(root + QStringLiteral("/a.png"), "current");
    Test::writeFile(m_environment->dataDir() + QStringLiteral("/a.png"), "data");
    KyEditorConfig::setDataDir(m_environment->dataDir());
    QVERIFY(QDir::setCurrent(root));

    QCOMPARE(KyEditorConfig::getAbsolutePath(QStringLiteral("a.png")),
             QDir::currentPath() + QStringLiteral("/a.png"));
    QCOMPARE(KyEditorConfig::getAbsolutePath(root + QStringLiteral("/a.png")),
             root + QStringLiteral("/a.png"));
    QCOMPARE(KyEditorConfig::getAbsolutePath(QStringLiteral("b.png")),
             m_environment->dataDir() + QStringLiteral("/b.png"));
}

void tst_KyEditorConfig::absolutePath_withUnknownDataFolder_readsTheConfiguration()
{
    QCOMPARE(KyEditorConfig::getAbsolutePath(QStringLiteral("b.png")),
             m_environment->dataDir() + QStringLiteral("/b.png"));
}

void tst_KyEditorConfig::absolutePath_withoutDataFolder_isBelowTheCurrentFolder()
{
    QVERIFY(QFile::remove(m_environment->configFile()));
    QVERIFY(QDir::setCurrent(m_environment->root()));

    QCOMPARE(KyEditorConfig::getAbsolutePath(QStringLiteral("b.png")),
             QDir::currentPath() + QStringLiteral("/b.png"));
}

void tst_KyEditorConfig::relativePath_data()
{
    QTest::addColumn<QString>("dataDir");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const char *dataDir, const char *path, const char *expected) {
        QTest::newRow(name) << QString::fromUtf8(dataDir) << QString::fromUtf8(path)
                            << QString::fromUtf8(expected);
    };
    row("file", "/data", "/data/a.png", "a.png");
    row("file in a folder", "/data", "/data/a/b.png", "a/b.png");
    row("several separators", "/data", "/data///a//b.png", "a//b.png");
    row("data folder with separator", "/data/", "/data/a.png", "a.png");
    row("the data folder itself", "/data", "/data", "");
    row("the data folder and a separator", "/data", "/data/", "");
    row("the data folder without its separator", "/data/", "/data", "/data");
    row("root as data folder", "/", "/a/b.png", "a/b.png");
    row("dots are kept", "/data", "/data/./a/../b.png", "./a/../b.png");
    row("spaces are kept", "/data", "/data/ a ", " a ");
    row("one leading part only", "/data", "/data/data/a", "data/a");

    row("other letter case", "/data", "/DATA/A.png", "A.png");
    row("other letter case of the folder", "/DaTa", "/data/a.png", "a.png");
    row("other letter case beyond ASCII", "/D\xC3\x84TA", "/d\xC3\xA4ta/a.png", "a.png");

    // The prefix is one of the text: a sibling whose name only begins alike counts as inside.
    row("sibling that begins alike", "/data", "/data2/a.png", "2/a.png");
    row("file that begins alike", "/data", "/data.png", ".png");

    // A path is compared as it is given, with a data folder whose separators are normalised.
    row("drive", "C:/Data", "C:/Data/a.png", "a.png");
    row("drive in other letter case", "C:/Data", "c:/data/a.png", "a.png");
    row("data folder with back-slashes", "C:\\Data", "C:/Data/a.png", "a.png");
    row("path with back-slashes", "C:/Data", "C:\\Data\\a.png", "C:\\Data\\a.png");
    row("both with back-slashes", "C:\\Data", "C:\\Data\\a.png", "C:\\Data\\a.png");
    row("back-slashes behind the data folder", "C:/Data", "C:/Data\\a\\b.png", "a/b.png");
    row("mixed separators behind the data folder", "C:/Data", "C:/Data\\/\\a", "a");

    row("outside", "/data", "/other/a.png", "/other/a.png");
    row("outside, byte for byte", "/data", "\\other//\\a\\.\\ ", "\\other//\\a\\.\\ ");
    row("above", "/data/sub", "/data", "/data");
    row("relative", "/data", "data/a.png", "data/a.png");
    row("empty path", "/data", "", "");
    row("no data folder", "", "/data\\a.png", "/data\\a.png");
}

void tst_KyEditorConfig::relativePath()
{
    QFETCH(QString, dataDir);
    QFETCH(QString, path);
    KyEditorConfig::setDataDir(dataDir);

    QTEST(KyEditorConfig::getRelativePath(path), "expected");
}

void tst_KyEditorConfig::relativePath_doesNotReadTheConfiguration()
{
    const QString path = m_environment->dataDir() + QStringLiteral("/a.png");

    QCOMPARE(KyEditorConfig::getRelativePath(path), path);

    QCOMPARE(KyEditorConfig::getConfig()->filePath(), QString());
    QCOMPARE(KyEditorConfig::getConfig()->dataDir(), QString());
    QCOMPARE(KyEditorConfig::dataDir(), m_environment->dataDir());
    QCOMPARE(KyEditorConfig::getRelativePath(path), QStringLiteral("a.png"));
}

void tst_KyEditorConfig::uploadManagerProcess_replaced_isNotDeleted()
{
    const auto first = std::make_unique<QProcess>();
    const auto second = std::make_unique<QProcess>();
    const QPointer<QProcess> guard = first.get();
    KyEditorConfig::setUploadManagerProcess(first.get());
    QCOMPARE(KyEditorConfig::uploadManagerProcess(), first.get());

    KyEditorConfig::setUploadManagerProcess(second.get());

    QVERIFY(guard);
    QCOMPARE(KyEditorConfig::uploadManagerProcess(), second.get());
    QCOMPARE(KyEditorConfig::channelExporterProcess(), nullptr);
}

void tst_KyEditorConfig::channelExporterProcess_replaced_isNotDeleted()
{
    const auto first = std::make_unique<QProcess>();
    const auto second = std::make_unique<QProcess>();
    const QPointer<QProcess> guard = first.get();
    KyEditorConfig::setChannelExporterProcess(first.get());
    QCOMPARE(KyEditorConfig::channelExporterProcess(), first.get());

    KyEditorConfig::setChannelExporterProcess(second.get());

    QVERIFY(guard);
    QCOMPARE(KyEditorConfig::channelExporterProcess(), second.get());
    QCOMPARE(KyEditorConfig::uploadManagerProcess(), nullptr);
}

void tst_KyEditorConfig::productInformation_isTheOneHandedIn()
{
    KyProductInformation first(QStringLiteral("Editor"), QStringLiteral("1.0"));
    KyProductInformation second;

    KyEditorConfig::setProductInformation(&first);
    QCOMPARE(KyEditorConfig::productInformation(), &first);
    KyEditorConfig::setProductInformation(&second);
    QCOMPARE(KyEditorConfig::productInformation(), &second);
    QCOMPARE(first.name(), QStringLiteral("Editor"));
}

KYTE_TEST_MAIN(tst_KyEditorConfig)
#include "tst_KyEditorConfig.moc"
