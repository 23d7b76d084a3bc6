#include "KyTestMain.h"

#include "KyTestEnvironment.h"

#include <KyConfig.h>

#include <random>

#ifdef Q_OS_UNIX
#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace Kyte;

static const QByteArray WHOLE_FILE =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<Pelmora>\n"
    "    <dataDir>data</dataDir>\n"
    "    <logDir>/var/log/kyte</logDir>\n"
    "    <destinations>\n"
    "        <destination id=\"3\" name=\"Lobby\" address=\"10.0.0.3\" shared=\"media\" user=\"kyte\" "
    "password=\"a&amp;b\"/>\n"
    "        <destination id=\"1\" name=\"Hall\" address=\"hall\" shared=\"s\" user=\"u\" password=\"p\"/>\n"
    "    </destinations>\n"
    "</Pelmora>\n";

static QString describe(const KyConfig::Destination &destination)
{
    return QStringList({QString::number(destination.id), destination.name, destination.address,
                        destination.sharedFolder, destination.user, destination.password})
        .join(QLatin1Char('|'));
}

static QStringList describe(const KyConfig &config)
{
    QStringList texts;
    for (const KyConfig::Destination &destination : config.destinationList())
        texts.append(describe(destination));
    return texts;
}

class tst_KyConfig : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newConfig_isEmpty();
    void setters_replaceOneField();
    void readFile_takesEverythingOver();
    void readFile_again_replacesTheDestinations();
    void missingElement_leavesItsValueAlone_data();
    void missingElement_leavesItsValueAlone();
    void folder_isAbsolute_data();
    void folder_isAbsolute();
    void destination_data();
    void destination();
    void unknownElements_arePassedOver();
    void missingAttributes_areEmptyAndNotNull();
    void longTexts_areKept();
    void badFile_isRefusedAndChangesNothing_data();
    void badFile_isRefusedAndChangesNothing();
    void harmlessFile_isAccepted_data();
    void harmlessFile_isAccepted();
    void whatIsNoFile_isRefused();
#ifdef Q_OS_UNIX
    void unreadableFile_isRefused();
#endif
    void hugeFile_isRefused();
    void truncatedFile_isRefusedAtEveryLength();
    void mutatedFiles_neitherCrashNorHang();
    void success_clearsTheError();
    void clearFilePath_keepsTheValues();

    void standardFile_isTheOneThatTheEnvironmentNames();
    void standardFile_liesInTheConfigurationFolder();
    void missingStandardFile_isAnError();
    void defaultLogDir_isBesideTheFileThatTheEnvironmentNames();
    void defaultLogDir_liesInTheDataFolder();

    void createDefaultEnvironment_makesEverything();
    void createDefaultEnvironment_besideTheFileThatTheEnvironmentNames();
    void createDefaultEnvironment_isWrittenRelocatable();
    void createDefaultEnvironment_leavesAnExistingFileAlone();
    void createDefaultEnvironment_refusesABadExistingFile();
    void createDefaultEnvironment_failsWhereNothingCanBeMade_data();
    void createDefaultEnvironment_failsWhereNothingCanBeMade();
#ifdef Q_OS_UNIX
    void createDefaultEnvironment_failsOnAFullDisk();
#endif

private:
    QString path(const QString &name = QStringLiteral("config.xml")) const;
    /** Reads \a content as a file of its own, on top of what \a config holds. */
    bool read(KyConfig *config, const QByteArray &content) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_KyConfig::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void tst_KyConfig::cleanup()
{
    qunsetenv("KYTE_CONFIG_FILE");
    m_folder.reset();
}

QString tst_KyConfig::path(const QString &name) const
{
    return m_folder->filePath(name);
}

bool tst_KyConfig::read(KyConfig *config, const QByteArray &content) const
{
    Test::writeFile(path(), content);
    return config->readFile(path());
}

static QByteArray withDestinations(const QByteArray &destinations)
{
    return "<Pelmora><destinations>" + destinations + "</destinations></Pelmora>";
}

void tst_KyConfig::newConfig_isEmpty()
{
    const KyConfig config;

    QCOMPARE(int(KyConfig::Editor), 1);
    QCOMPARE(config.configType(), KyConfig::Editor);
    QCOMPARE(config.filePath(), QString());
    QCOMPARE(config.dataDir(), QString());
    QCOMPARE(config.logDir(), QString());
    QVERIFY(config.destinationList().isEmpty());
    QVERIFY(!config.hasError());
}

void tst_KyConfig::setters_replaceOneField()
{
    KyConfig config;
    config.setConfigType(KyConfig::Editor);
    config.setDataDir(QStringLiteral("/data"));
    config.setLogDir(QStringLiteral("/log"));

    QCOMPARE(config.configType(), KyConfig::Editor);
    QCOMPARE(config.dataDir(), QStringLiteral("/data"));
    QCOMPARE(config.logDir(), QStringLiteral("/log"));
}

void tst_KyConfig::readFile_takesEverythingOver()
{
    KyConfig config;

    QVERIFY(read(&config, WHOLE_FILE));

    QVERIFY(!config.hasError());
    QCOMPARE(config.filePath(), path());
    QCOMPARE(config.dataDir(), path(QStringLiteral("data")));
    QCOMPARE(config.logDir(), Test::rooted("/var/log/kyte"));
    QCOMPARE(describe(config), QStringList({"3|Lobby|10.0.0.3|media|kyte|a&b", "1|Hall|hall|s|u|p"}));
}

void tst_KyConfig::readFile_again_replacesTheDestinations()
{
    KyConfig config;
    QVERIFY(read(&config, WHOLE_FILE));

    QVERIFY(read(&config, withDestinations("<destination id='9'/>")));

    QCOMPARE(describe(config), QStringList({"9|||||"}));
}

void tst_KyConfig::missingElement_leavesItsValueAlone_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("dataDir");
    QTest::addColumn<QString>("logDir");
    QTest::addColumn<int>("destinations");

    const auto file = [](const char *elements) {
        return "<Pelmora>" + QByteArray(elements) + "</Pelmora>";
    };
    QTest::newRow("all missing") << file("") << "/old/data"
                                 << "/old/log" << 1;
    QTest::newRow("data only") << file("<dataDir>/d</dataDir>") << Test::rooted("/d") << "/old/log" << 1;
    QTest::newRow("log only") << file("<logDir>/l</logDir>") << "/old/data" << Test::rooted("/l") << 1;
    QTest::newRow("no destinations listed") << file("<destinations/>") << "/old/data"
                                            << "/old/log" << 0;
    QTest::newRow("elsewhere") << file("<a><dataDir>/d</dataDir><destinations/></a>") << "/old/data"
                               << "/old/log" << 1;
}

void tst_KyConfig::missingElement_leavesItsValueAlone()
{
    QFETCH(QByteArray, content);
    KyConfig config;
    QVERIFY(read(&config, withDestinations("<destination id='1'/>")));
    config.setDataDir(QStringLiteral("/old/data"));
    config.setLogDir(QStringLiteral("/old/log"));

    QVERIFY(read(&config, content));

    QTEST(config.dataDir(), "dataDir");
    QTEST(config.logDir(), "logDir");
    QTEST(config.destinationList().size(), "destinations");
}

void tst_KyConfig::folder_isAbsolute_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected"); // %1 stands for the file's folder

    QTest::newRow("name") << QByteArray("data") << "%1/data";
    QTest::newRow("below") << QByteArray("a/b") << "%1/a/b";
    QTest::newRow("this folder") << QByteArray(".") << "%1";
    QTest::newRow("dots inside") << QByteArray("a/../b/./c/") << "%1/b/c";
    QTest::newRow("absolute") << QByteArray("/srv/data") << Test::rooted("/srv/data");
    QTest::newRow("blanks around") << QByteArray("\n  data \t\n") << "%1/data";
    QTest::newRow("blanks inside") << QByteArray("my data") << "%1/my data";
    QTest::newRow("escaped") << QByteArray("a&amp;&#x62;") << "%1/a&b";
    QTest::newRow("CDATA") << QByteArray("<![CDATA[a<b]]>") << "%1/a<b";
    QTest::newRow("comment inside") << QByteArray("da<!-- ' -->ta") << "%1/data";
    QTest::newRow("other letters") << QByteArray(u8"dät") << QString::fromUtf8(u8"%1/dät");
    QTest::newRow("empty") << QByteArray() << "";
    QTest::newRow("blank") << QByteArray(" \n") << "";
}

void tst_KyConfig::folder_isAbsolute()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, expected);
    expected.replace(QLatin1String("%1"), m_folder->path());
    KyConfig config;

    QVERIFY(read(&config, "<Pelmora><dataDir>" + text + "</dataDir><logDir>" + text + "</logDir></Pelmora>"));

    QCOMPARE(config.dataDir(), expected);
    QCOMPARE(config.logDir(), expected);
}

void tst_KyConfig::destination_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("all attributes") << QByteArray(
        "<destination password='6' user='5' shared='4' address='3' name='2' id='1'/>")
                                    << QStringList({"1|2|3|4|5|6"});
    QTest::newRow("id only") << QByteArray("<destination id='1'/>") << QStringList({"1|||||"});
    QTest::newRow("zero") << QByteArray("<destination id='0'/>") << QStringList({"0|||||"});
    QTest::newRow("negative") << QByteArray("<destination id='-4'/>") << QStringList({"-4|||||"});
    QTest::newRow("largest") << QByteArray("<destination id='2147483647'/>")
                             << QStringList({"2147483647|||||"});
    QTest::newRow("too large") << QByteArray("<destination id='2147483648'/>") << QStringList();
    QTest::newRow("no id") << QByteArray("<destination name='2'/>") << QStringList();
    QTest::newRow("empty id") << QByteArray("<destination id='' name='2'/>") << QStringList();
    QTest::newRow("id is a word") << QByteArray("<destination id='x'/>") << QStringList();
    QTest::newRow("id is a fraction") << QByteArray("<destination id='1.5'/>") << QStringList();
    QTest::newRow("the same id twice")
        << QByteArray("<destination id='1' name='a'/><destination id='1' name='b'/>")
        << QStringList({"1|a||||", "1|b||||"});
    QTest::newRow("other element") << QByteArray("<target id='1'/><destination id='2'/>")
                                   << QStringList({"2|||||"});
    QTest::newRow("other attributes")
        << QByteArray("<destination id='1' x='y' Name='z'/>") << QStringList({"1|||||"});
    QTest::newRow("nested ones do not count")
        << QByteArray("<destination id='1'><destination id='2'/></destination><a><destination id='3'/></a>")
        << QStringList({"1|||||"});
    QTest::newRow("order of the file")
        << QByteArray("<destination id='3'/><destination id='1'/><destination id='2'/>")
        << QStringList({"3|||||", "1|||||", "2|||||"});
    QTest::newRow("escaped texts") << QByteArray(
        "<destination id='1' name='&lt;&gt;&amp;&quot;&apos;' address='a;b%1' password='\"&#x20AC;'/>")
                                   << QStringList({QString::fromUtf8(u8"1|<>&\"'|a;b%1|||\"€")});
    QTest::newRow("blanks are kept") << QByteArray("<destination id='1' name='  a  b '/>")
                                     << QStringList({"1|  a  b ||||"});
}

void tst_KyConfig::destination()
{
    QFETCH(QByteArray, element);
    KyConfig config;

    QVERIFY(read(&config, withDestinations(element)));

    QTEST(describe(config), "expected");
}

void tst_KyConfig::unknownElements_arePassedOver()
{
    KyConfig config;

    QVERIFY(read(&config,
                 "<Pelmora version='2'><a><b><dataDir>no</dataDir></b></a><dataDir>/yes</dataDir>"
                 "<x:y z:w='1'><x:y/></x:y><logDir lang='en'>/log</logDir></Pelmora>"));

    QCOMPARE(config.dataDir(), Test::rooted("/yes"));
    QCOMPARE(config.logDir(), Test::rooted("/log"));
}

void tst_KyConfig::missingAttributes_areEmptyAndNotNull()
{
    KyConfig config;

    QVERIFY(read(&config, withDestinations("<destination id='1'/><destination id='2' name='' user=''/>")));

    for (const KyConfig::Destination &destination : config.destinationList()) {
        for (const QString &text : {destination.name, destination.address, destination.sharedFolder,
                                    destination.user, destination.password}) {
            QVERIFY(text.isEmpty());
            QVERIFY(!text.isNull());
        }
    }
}

void tst_KyConfig::longTexts_areKept()
{
    const QString text = QStringLiteral("\"<'&").repeated(2500);
    const QByteArray escaped = QByteArray("&#x00000022;&#x0000003C;&#x00000027;&#x00000026;").repeated(2500);
    QByteArray element = "<destination id='1'";
    for (const char *name : {"name", "address", "shared", "user", "password"})
        element += ' ' + QByteArray(name) + "='" + escaped + '\'';
    KyConfig config;

    QVERIFY(read(&config, withDestinations(element + "/>")));

    const KyConfig::Destination destination = config.destinationList().value(0);
    QCOMPARE(destination.name, text);
    QCOMPARE(destination.address, text);
    QCOMPARE(destination.sharedFolder, text);
    QCOMPARE(destination.user, text);
    QCOMPARE(destination.password, text);
}

/** " a0='' a1='' ..." */
static QByteArray manyAttributes(int count)
{
    QByteArray attributes;
    for (int i = 0; i < count; ++i)
        attributes += " a" + QByteArray::number(i) + "=''";
    return attributes;
}

static QByteArray entityBomb()
{
    QByteArray bomb = "<?xml version='1.0'?><!DOCTYPE Pelmora [<!ENTITY e0 'boom'>";
    for (int i = 1; i < 12; ++i) {
        bomb += "<!ENTITY e" + QByteArray::number(i) + " '"
            + ("&e" + QByteArray::number(i - 1) + ';').repeated(10) + "'>";
    }
    return bomb + "]><Pelmora><dataDir>&e11;</dataDir></Pelmora>";
}

void tst_KyConfig::badFile_isRefusedAndChangesNothing_data()
{
    QTest::addColumn<QByteArray>("content");

    const QByteArray good = "<dataDir>/new</dataDir><logDir>/new</logDir><destinations/>";
    const auto row = [](const char *name, const QByteArray &content) {
        QTest::newRow(name) << content;
    };
    row("empty", QByteArray());
    row("blank", " \n");
    row("text", "data=/new");
    row("binary", QByteArray("\0\1\2\3\377\376", 6));
    row("other root", "<Config>" + good + "</Config>");
    row("root in other case", "<pelmora>" + good + "</pelmora>");
    row("root within another", "<a><Pelmora>" + good + "</Pelmora></a>");
    row("root not closed", "<Pelmora>" + good);
    row("other end tag", "<Pelmora>" + good + "</Other>");
    row("element not closed", "<Pelmora>" + good + "<dataDir>/x</Pelmora>");
    row("element in a folder", "<Pelmora>" + good + "<dataDir>/x<b/></dataDir></Pelmora>");
    row("two roots", "<Pelmora>" + good + "</Pelmora><Pelmora/>");
    row("text after the root", "<Pelmora>" + good + "</Pelmora>x");
    row("broken comment at the end", "<Pelmora>" + good + "</Pelmora><!-- ");
    row("attribute twice",
        "<Pelmora>" + good + "<destinations><destination id='1' id='2'/></destinations></Pelmora>");
    row("attribute without quotes", "<Pelmora>" + good + "<a b=c/></Pelmora>");
    row("attribute not closed", "<Pelmora>" + good + "<a b='c/></Pelmora>");
    row("unknown entity", "<Pelmora>" + good + "<dataDir>&x;</dataDir></Pelmora>");
    row("bare ampersand", "<Pelmora>" + good + "<dataDir>a&b</dataDir></Pelmora>");
    row("control character", "<Pelmora>" + good + "<dataDir>a\1b</dataDir></Pelmora>");
    row("not UTF-8",
        "<Pelmora>" + good
            + "<dataDir>a\xFF\xFE"
              "b</dataDir></Pelmora>");
    row("NUL byte at the end", "<Pelmora>" + good + QByteArray("</Pelmora>\0", 11));
    row("declared Latin 1", "<?xml version='1.0' encoding='ISO-8859-1'?><Pelmora>" + good + "</Pelmora>");
    row("UTF-16", QByteArray(reinterpret_cast<const char *>(u"\uFEFF<Pelmora/>"), 22));
    row("document type", "<!DOCTYPE Pelmora><Pelmora>" + good + "</Pelmora>");
    row("entity bomb", entityBomb());
    row("100,000 attributes", "<Pelmora>" + good + "<a" + manyAttributes(100000) + "/></Pelmora>");
    row("100,000 attributes of the root", "<Pelmora" + manyAttributes(100000) + '>' + good + "</Pelmora>");
    // A quote that is none must not hide what follows.
    const QByteArray attack = "<Pelmora>" + good + "<a" + manyAttributes(100000) + "/></Pelmora>";
    row("100,000 attributes after a quote in a comment", "<!-- \" -->" + attack);
    row("100,000 attributes after a quote in an instruction", "<?a \" ?>" + attack);
    row("100,000 attributes after a quote in CDATA",
        "<Pelmora><b><![CDATA[ <\" ]]></b><a" + manyAttributes(100000) + "/></Pelmora>");
    row("100,000 attributes after a quote in text",
        "<Pelmora>\"<a" + manyAttributes(100000) + "/></Pelmora>");
    row("100,000 attributes after a quote in a value",
        "<Pelmora><a b='\"' c='>'" + manyAttributes(100000) + "/></Pelmora>");
    row("nested 100,000 deep",
        "<Pelmora>" + good + QByteArray("<a>").repeated(100000) + QByteArray("</a>").repeated(100000)
            + "</Pelmora>");
    row("destinations nested 100,000 deep",
        "<Pelmora>" + good + "<destinations>" + QByteArray("<destination id='1'>").repeated(100000)
            + QByteArray("</destination>").repeated(100000) + "</destinations></Pelmora>");
}

void tst_KyConfig::badFile_isRefusedAndChangesNothing()
{
    QFETCH(QByteArray, content);
    KyConfig config;
    QVERIFY(read(&config, WHOLE_FILE));
    const QString dataDir = config.dataDir();
    const QString logDir = config.logDir();
    const QStringList destinations = describe(config);
    QElapsedTimer timer;
    timer.start();

    QVERIFY(!read(&config, content));

    QVERIFY2(timer.elapsed() < 10000, "a bad file must not keep the reader busy");
    QVERIFY(config.hasError());
    QCOMPARE(config.dataDir(), dataDir);
    QCOMPARE(config.logDir(), logDir);
    QCOMPARE(describe(config), destinations);
}

void tst_KyConfig::harmlessFile_isAccepted_data()
{
    QTest::addColumn<QByteArray>("content");

    const QByteArray good = "<dataDir>/new</dataDir>";
    const auto row = [](const char *name, const QByteArray &content) {
        QTest::newRow(name) << content;
    };
    row("no declaration", "<Pelmora>" + good + "</Pelmora>");
    row("byte order mark",
        "\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8'?><Pelmora>" + good + "</Pelmora>");
    row("standalone",
        "<?xml version='1.0' encoding='UTF-8' standalone='yes'?><Pelmora>" + good + "</Pelmora>");
    row("other line ends", "<?xml version='1.0'?>\r\n<Pelmora>\r\n" + good + "\r\n</Pelmora>\r\n");
    row("comments with tags and quotes",
        "<!-- don't <a b=\" --><Pelmora><!-- <!DOCTYPE --> " + good + "</Pelmora><!-- \" -->");
    row("CDATA with a document type", "<Pelmora><a><![CDATA[<!DOCTYPE '\"]]></a>" + good + "</Pelmora>");
    row("processing instruction", "<?style \"x'?><Pelmora><?y <!?>" + good + "</Pelmora>");
    row("quotes in text", "<Pelmora>'\"" + good + "'</Pelmora>");
    row("sharp signs in quotes", "<Pelmora a='>' b=\">'>\">" + good + "</Pelmora>");
    row("64 attributes", "<Pelmora" + manyAttributes(64) + '>' + good + "</Pelmora>");
    row("nested 200 deep",
        "<Pelmora>" + QByteArray("<a>").repeated(200) + QByteArray("</a>").repeated(200) + good
            + "</Pelmora>");
}

void tst_KyConfig::harmlessFile_isAccepted()
{
    QFETCH(QByteArray, content);
    KyConfig config;

    QVERIFY(read(&config, content));

    QCOMPARE(config.dataDir(), Test::rooted("/new"));
}

void tst_KyConfig::whatIsNoFile_isRefused()
{
    KyConfig config;

    QVERIFY(!config.readFile(QString()));
    QVERIFY(config.hasError());
    QVERIFY(!config.readFile(path(QStringLiteral("missing.xml"))));
    QCOMPARE(config.filePath(), path(QStringLiteral("missing.xml")));
    QVERIFY(!config.readFile(m_folder->path()));
#ifdef Q_OS_UNIX
    const QString pipe = path(QStringLiteral("pipe"));
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(!config.readFile(pipe));
    QVERIFY(!config.readFile(QStringLiteral("/dev/zero")));
#endif
    QVERIFY(config.hasError());
}

#ifdef Q_OS_UNIX
void tst_KyConfig::unreadableFile_isRefused()
{
    Test::writeFile(path(), WHOLE_FILE);
    QVERIFY(QFile::setPermissions(path(), QFileDevice::WriteOwner));
    QVERIFY(QFile::setPermissions(m_folder->path(), QFileDevice::Permissions(0x7755)));
    KyConfig config;

    // The superuser may read every file, so the reading is somebody else's.
    const uid_t user = ::geteuid();
    const bool isSuperuser = user == 0;
    QVERIFY(!isSuperuser || ::seteuid(65534) == 0);
    const bool isThere = QFileInfo(path()).isFile();
    const bool isRead = config.readFile(path());
    QCOMPARE(::seteuid(user), 0);

    QVERIFY(isThere);
    QVERIFY(!isRead);
    QVERIFY(config.hasError());
}
#endif

void tst_KyConfig::hugeFile_isRefused()
{
    Test::writeFile(path(), "<Pelmora/>" + QByteArray(64 * 1024 * 1024 - 10, ' '));
    KyConfig config;
    QVERIFY(config.readFile(path()));

    Test::writeFile(path(), "<Pelmora/>" + QByteArray(64 * 1024 * 1024 - 9, ' '));
    QVERIFY(!config.readFile(path()));
    QVERIFY(config.hasError());
}

void tst_KyConfig::truncatedFile_isRefusedAtEveryLength()
{
    const int end = WHOLE_FILE.lastIndexOf('>');
    for (int length = 0; length <= end; ++length) {
        KyConfig config;
        QVERIFY2(!read(&config, WHOLE_FILE.left(length)), qPrintable(QString::number(length)));
        QCOMPARE(config.dataDir(), QString());
        QVERIFY(config.destinationList().isEmpty());
    }
}

void tst_KyConfig::mutatedFiles_neitherCrashNorHang()
{
    std::mt19937 random(20240229);
    const auto number = [&](int limit) {
        return int(random() % unsigned(limit));
    };
    const QByteArray alphabet = "<>/\"'=&;!?-[]x1 \n\t\0\xC3\xFF#";
    int accepted = 0;
    QElapsedTimer timer;
    timer.start();
    for (int round = 0; round < 1000; ++round) {
        QByteArray content = WHOLE_FILE;
        for (int change = number(4); change >= 0; --change) {
            const int position = number(content.size());
            switch (number(4)) {
            case 0:
                content[position] = alphabet.at(number(alphabet.size()));
                break;
            case 1:
                content.remove(position, 1 + number(20));
                break;
            case 2:
                content.insert(position, content.mid(number(content.size()), 1 + number(60)));
                break;
            default:
                content.insert(position, alphabet.at(number(alphabet.size())));
            }
            if (content.isEmpty())
                content = "<";
        }
        KyConfig config;
        const bool isRead = read(&config, content);
        QCOMPARE(config.hasError(), !isRead);
        if (!isRead)
            QVERIFY(config.dataDir().isEmpty() && config.logDir().isEmpty()
                    && config.destinationList().isEmpty());
        accepted += isRead;
    }
    QVERIFY2(timer.elapsed() < 60000, "no file keeps the reader busy");
    QVERIFY(accepted > 0 && accepted < 1000);
}

void tst_KyConfig::success_clearsTheError()
{
    KyConfig config;
    QVERIFY(!config.readFile(path(QStringLiteral("missing.xml"))));
    QVERIFY(config.hasError());

    QVERIFY(read(&config, WHOLE_FILE));
    QVERIFY(!config.hasError());
}

void tst_KyConfig::clearFilePath_keepsTheValues()
{
    KyConfig config;
    QVERIFY(read(&config, WHOLE_FILE));

    config.clearFilePath();

    QCOMPARE(config.filePath(), QString());
    QCOMPARE(config.dataDir(), path(QStringLiteral("data")));
    QCOMPARE(config.destinationList().size(), 2);
    QVERIFY(!config.hasError());
}

void tst_KyConfig::standardFile_isTheOneThatTheEnvironmentNames()
{
    Test::writeFile(path(), WHOLE_FILE);
    qputenv("KYTE_CONFIG_FILE", QFile::encodeName(path()));
    KyConfig config;
    QVERIFY(!config.readFile(path(QStringLiteral("missing.xml"))));

    QVERIFY(config.readStandardConfigFile(KyConfig::Editor));

    QCOMPARE(config.filePath(), path());
    QCOMPARE(config.dataDir(), path(QStringLiteral("data")));
}

void tst_KyConfig::standardFile_liesInTheConfigurationFolder()
{
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/kyte");
    QVERIFY(QDir().mkpath(folder));
    Test::writeFile(folder + QStringLiteral("/kyteconfig.xml"), WHOLE_FILE);
    qputenv("KYTE_CONFIG_FILE", QByteArray()); // an empty name counts as none
    KyConfig config;

    QVERIFY(config.readStandardConfigFile(KyConfig::Editor));

    QCOMPARE(config.filePath(), folder + QStringLiteral("/kyteconfig.xml"));
    QCOMPARE(config.dataDir(), folder + QStringLiteral("/data"));
    QVERIFY(QDir(folder).removeRecursively());
}

void tst_KyConfig::missingStandardFile_isAnError()
{
    qputenv("KYTE_CONFIG_FILE", QFile::encodeName(path()));
    KyConfig config;

    QVERIFY(!config.readStandardConfigFile(KyConfig::Editor));

    QVERIFY(config.hasError());
    QVERIFY(!QFile::exists(path()));
}

void tst_KyConfig::defaultLogDir_isBesideTheFileThatTheEnvironmentNames()
{
    qputenv("KYTE_CONFIG_FILE", QFile::encodeName(path()));
    KyConfig config;

    config.setDefaultToLogDir();

    QCOMPARE(config.logDir(), path(QStringLiteral("log")));
    QVERIFY(!QFile::exists(config.logDir()));
}

void tst_KyConfig::defaultLogDir_liesInTheDataFolder()
{
    KyConfig config;

    config.setDefaultToLogDir();

    QCOMPARE(config.logDir(),
             QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
                 + QStringLiteral("/kyte/log"));
}

void tst_KyConfig::createDefaultEnvironment_makesEverything()
{
    const QString data =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/kyte");
    const QString file = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/kyte/kyteconfig.xml");
    QVERIFY(!QFile::exists(file));
    KyConfig config;

    QVERIFY(config.createDefaultEnvironment(KyConfig::Editor));

    QVERIFY(!config.hasError());
    QCOMPARE(config.filePath(), file);
    QCOMPARE(config.dataDir(), data + QStringLiteral("/data"));
    QCOMPARE(config.logDir(), data + QStringLiteral("/log"));
    QVERIFY(config.destinationList().isEmpty());
    QVERIFY(QFileInfo(data + QStringLiteral("/data/channel")).isDir());
    QVERIFY(QFileInfo(data + QStringLiteral("/log")).isDir());

    KyConfig other;
    QVERIFY(other.readStandardConfigFile(KyConfig::Editor));
    QCOMPARE(other.dataDir(), config.dataDir());
    QCOMPARE(other.logDir(), config.logDir());
    QVERIFY(QFile::remove(file));
    QVERIFY(QDir(data).removeRecursively());
}

void tst_KyConfig::createDefaultEnvironment_besideTheFileThatTheEnvironmentNames()
{
    const QString file = path(QStringLiteral("new folder/config.xml"));
    qputenv("KYTE_CONFIG_FILE", QFile::encodeName(file));
    KyConfig config;

    QVERIFY(config.createDefaultEnvironment(KyConfig::Editor));

    QCOMPARE(config.filePath(), file);
    QCOMPARE(config.dataDir(), path(QStringLiteral("new folder/data")));
    QCOMPARE(config.logDir(), path(QStringLiteral("new folder/log")));
    QVERIFY(QFileInfo(path(QStringLiteral("new folder/data/channel"))).isDir());
    QVERIFY(QFileInfo(path(QStringLiteral("new folder/log"))).isDir());
    QCOMPARE(QDir(path(QStringLiteral("new folder")))
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList({"config.xml", "data", "log"}));
}

void tst_KyConfig::createDefaultEnvironment_isWrittenRelocatable()
{
    qputenv("KYTE_CONFIG_FILE", QFile::encodeName(path(QStringLiteral("a/config.xml"))));
    QVERIFY(KyConfig().createDefaultEnvironment(KyConfig::Editor));
    QVERIFY(QDir(m_folder->path()).rename(QStringLiteral("a"), QStringLiteral("b")));
    KyConfig config;

    QVERIFY(config.readFile(path(QStringLiteral("b/config.xml"))));

    QCOMPARE(config.dataDir(), path(QStringLiteral("b/data")));
    QCOMPARE(config.logDir(), path(QStringLiteral("b/log")));
}

void tst_KyConfig::createDefaultEnvironment_leavesAnExistingFileAlone()
{
    const QByteArray content =
        "<Pelmora><dataDir>/mine</dataDir><destinations><destination id='4'/></destinations></Pelmora>";
    Test::writeFile(path(), content);
    qputenv("KYTE_CONFIG_FILE", QFile::encodeName(path()));
    KyConfig config;

    QVERIFY(config.createDefaultEnvironment(KyConfig::Editor));
    QVERIFY(config.createDefaultEnvironment(KyConfig::Editor));

    QCOMPARE(Test::readFile(path()), content);
    QCOMPARE(config.dataDir(), Test::rooted("/mine"));
    QCOMPARE(config.logDir(), path(QStringLiteral("log"))); // not given: the default
    QCOMPARE(describe(config), QStringList({"4|||||"}));
}

void tst_KyConfig::createDefaultEnvironment_refusesABadExistingFile()
{
    KyConfig config;
    QVERIFY(read(&config, WHOLE_FILE));
    const QByteArray content = "<Pelmora>";
    Test::writeFile(path(), content);
    qputenv("KYTE_CONFIG_FILE", QFile::encodeName(path()));

    QVERIFY(!config.createDefaultEnvironment(KyConfig::Editor));

    QVERIFY(config.hasError());
    QCOMPARE(Test::readFile(path()), content);
    QCOMPARE(config.logDir(), Test::rooted("/var/log/kyte"));
    QCOMPARE(config.destinationList().size(), 2);
}

void tst_KyConfig::createDefaultEnvironment_failsWhereNothingCanBeMade_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("inTheWay");

    QTest::newRow("file for the folder") << "a/config.xml"
                                         << "a";
    QTest::newRow("file for the data folder") << "a/config.xml"
                                              << "a/data";
    QTest::newRow("file for the channel folder") << "a/config.xml"
                                                 << "a/data/channel";
    QTest::newRow("file for the log folder") << "a/config.xml"
                                             << "a/log";
    QTest::newRow("folder for the file") << "a/config.xml"
                                         << "a/config.xml/";
}

void tst_KyConfig::createDefaultEnvironment_failsWhereNothingCanBeMade()
{
    QFETCH(QString, file);
    QFETCH(QString, inTheWay);
    const QFileInfo obstacle(path(inTheWay));
    QVERIFY(QDir().mkpath(obstacle.absolutePath()));
    if (!inTheWay.endsWith(QLatin1Char('/')))
        Test::writeFile(path(inTheWay), "in the way");
    qputenv("KYTE_CONFIG_FILE", QFile::encodeName(path(file)));
    KyConfig config;
    config.setDataDir(QStringLiteral("/old"));

    QVERIFY(!config.createDefaultEnvironment(KyConfig::Editor));

    QVERIFY(config.hasError());
    QCOMPARE(config.dataDir(), QStringLiteral("/old"));
    QVERIFY(!QFileInfo(path(file)).isFile());
}

#ifdef Q_OS_UNIX
void tst_KyConfig::createDefaultEnvironment_failsOnAFullDisk()
{
    qputenv("KYTE_CONFIG_FILE", QFile::encodeName(path()));
    KyConfig config;

    // Files that may not grow: as on a full disk, opening succeeds and only the last buffer cannot be
    // written.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit former = {};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &former), 0);
    const rlimit tiny = {16, former.rlim_max};
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &tiny), 0);
    const bool isCreated = config.createDefaultEnvironment(KyConfig::Editor);
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &former), 0);

    QVERIFY(!isCreated);
    QVERIFY(config.hasError());
    QCOMPARE(config.dataDir(), QString());
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden), QStringList());
}
#endif

KYTE_TEST_MAIN(tst_KyConfig)
#include "tst_KyConfig.moc"
