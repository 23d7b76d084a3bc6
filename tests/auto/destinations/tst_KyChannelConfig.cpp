#include "KyTestMain.h"

#include "KyTestEnvironment.h"

#include <KyChannelConfig.h>
#include <KyEditorConfig.h>

#include <QTextCodec>
#include <QXmlStreamReader>

#include <random>

#ifdef Q_OS_UNIX
#include "KyFullDevice.h"

#include <sys/stat.h>
#endif

using namespace Kyte;

static const QString NO_CONFIGURATION = QStringLiteral("Application configuration file can not be found.");
static const QString NO_CHANNEL_FILES = QStringLiteral("The channel files were not read correctly.");
static const QString NOT_READABLE = QStringLiteral("The channel config file can not be open to read.");
static const QString NOT_WRITABLE = QStringLiteral("The channel config file can not be open to write.");

/** "id|name|index" of every channel. */
static QStringList describe(const QList<KyChannelConfig::ChannelInfo> &channels)
{
    QStringList texts;
    for (const KyChannelConfig::ChannelInfo &channel : channels)
        texts.append(QString::number(channel.id) + QLatin1Char('|') + channel.name + QLatin1Char('|')
                     + QString::number(channel.index));
    return texts;
}

/** "destination=channel" of every assignment. */
static QString describe(const QMap<int, int> &destChannelMap)
{
    QStringList texts;
    for (auto it = destChannelMap.cbegin(); it != destChannelMap.cend(); ++it)
        texts.append(QStringLiteral("%1=%2").arg(it.key()).arg(it.value()));
    return texts.join(QLatin1Char(' '));
}

static QByteArray inRoot(const QByteArray &content)
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Pelmora>" + content + "</Pelmora>\n";
}

static QByteArray nested(int depth, const QByteArray &content)
{
    return QByteArray("<a>").repeated(depth) + content + QByteArray("</a>").repeated(depth);
}

static QByteArray manyAttributes(int count, const QByteArray &name = "a", const QByteArray &value = "")
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += ' ' + name + QByteArray::number(i) + "='" + value + '\'';
    return text;
}

/** UTF-16 in the byte order of this machine. */
static QByteArray utf16(const QString &text)
{
    return QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * int(sizeof(ushort)));
}

static QByteArray entityBomb(const QByteArray &content)
{
    return "<!DOCTYPE Pelmora [<!ENTITY a 'xxxxxxxxxx'><!ENTITY b '&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;'>"
           "<!ENTITY c '&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;'>]><Pelmora>"
        + QByteArray("&c;").repeated(1000) + content + "</Pelmora>";
}

/** \a content with a few random changes. */
static QByteArray mutated(QByteArray content, std::mt19937 *random)
{
    const auto number = [&](int limit) {
        return int((*random)() % unsigned(limit));
    };
    static const QByteArray ALPHABET = "<>/\"'=&;!?-[]x10 \n\t\0\xC3\xFF#";
    for (int change = number(4); change >= 0; --change) {
        const int position = number(content.size());
        switch (number(4)) {
        case 0:
            content[position] = ALPHABET.at(number(ALPHABET.size()));
            break;
        case 1:
            content.remove(position, 1 + number(20));
            break;
        case 2:
            content.insert(position, content.mid(number(content.size()), 1 + number(60)));
            break;
        default:
            content.insert(position, ALPHABET.at(number(ALPHABET.size())));
        }
        if (content.isEmpty())
            content = "<";
    }
    return content;
}

class tst_KyChannelConfig : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newObject_isEmpty();
    void newRecords_haveNeitherIdNorIndex();
    void accessors_exchangeTheMembers();
    void insertDestination_replacesAnEarlierAssignment();
    void messages_areTranslatedInTheContextOfTheClass();

    void channelDir_isBelowTheDataFolder();
    void channelDir_readsTheConfigurationAnew();
    void channelDir_withoutDataFolder_isBelowTheCurrentFolder();
    void channelDir_withoutConfiguration_fails();

    void channelFile_data();
    void channelFile();
    void channelFile_isFoundByItsName_data();
    void channelFile_isFoundByItsName();
    void channelFiles_areReadInTheOrderOfTheFolder();
    void channelFiles_ofOneChannel_areAllKept();
    void channelFiles_thatAreNoFiles_arePassedOver();
    void channelFiles_thatCannotBeRead_arePassedOver();
    void channelFiles_replaceTheFormerList();
    void noChannelFile_isAnErrorAndClearsTheList();
    void missingFolder_isAnErrorAndKeepsTheList_data();
    void missingFolder_isAnErrorAndKeepsTheList();
    void emptyFolderArgument_meansTheChannelFolder();
    void emptyFolderArgument_withoutConfiguration_fails();
    void mutatedChannelFiles_neitherCrashNorHang();

    void mainFile_data();
    void mainFile();
    void largeMainFile_isReadWholeInAnyEncoding_data();
    void largeMainFile_isReadWholeInAnyEncoding();
    void mainFile_replacesTheFormerMap();
    void missingMainFile_isNoError_data();
    void missingMainFile_isNoError();
    void unreadableMainFile_isAnErrorAndClearsTheMap_data();
    void unreadableMainFile_isAnErrorAndClearsTheMap();
    void emptyMainPath_readsFromTheChannelFolder();
    void emptyMainPath_withoutConfiguration_readsNothing();
    void mutatedMainFiles_neitherCrashNorHang();
    void hostileFile_isReadInBoundedTime_data();
    void hostileFile_isReadInBoundedTime();

    void saveFile_writesTheAgreedBytes();
    void saveFile_withoutChannels_writesTheRootAlone();
    void saveFile_writesChannelsInListOrder_data();
    void saveFile_writesChannelsInListOrder();
    void saveFile_replacesTheFileAndLeavesNothingElse();
    void saveFile_afterReadFile_dropsAssignmentsToUnlistedChannels();
    void saveFile_writesWhatAnXmlWriterWrites_data();
    void saveFile_writesWhatAnXmlWriterWrites();
    void saveFile_isReadBack();
    void saveFile_toWhatIsNoFile_fails_data();
    void saveFile_toWhatIsNoFile_fails();
    void saveFile_onAFullDisk_keepsTheFormerFile_data();
    void saveFile_onAFullDisk_keepsTheFormerFile();
    void emptyMainPath_savesIntoTheChannelFolder();
    void emptyMainPath_withoutConfiguration_savesNothing();

private:
    QString path(const QString &name = QStringLiteral("file.xml")) const;
    /** Reads \a content as the only channel file. */
    bool readChannelFile(const QByteArray &content);
    void removeConfiguration();

    std::unique_ptr<Test::Environment> m_environment;
    std::unique_ptr<KyChannelConfig> m_config;
    QString m_currentFolder;
};

void tst_KyChannelConfig::init()
{
    m_environment = std::make_unique<Test::Environment>();
    m_config = std::make_unique<KyChannelConfig>();
    m_currentFolder = QDir::currentPath();
    KyEditorConfig::setDataDir(QString());
}

void tst_KyChannelConfig::cleanup()
{
    QDir::setCurrent(m_currentFolder);
    m_config.reset();
    m_environment.reset();
}

QString tst_KyChannelConfig::path(const QString &name) const
{
    return m_environment->channelDir() + QLatin1Char('/') + name;
}

bool tst_KyChannelConfig::readChannelFile(const QByteArray &content)
{
    const QString file = path(QStringLiteral("channel1.xml"));
    QFile::remove(file); // a new file waits for no disk, a truncated one does
    Test::writeFile(file, content);
    return m_config->getAllChannelInfoFromFiles(m_environment->channelDir());
}

void tst_KyChannelConfig::removeConfiguration()
{
    QVERIFY(QFile::remove(m_environment->configFile()));
}

void tst_KyChannelConfig::newObject_isEmpty()
{
    QObject parent;
    const auto *config = new KyChannelConfig(&parent);

    QCOMPARE(config->parent(), &parent);
    QVERIFY(config->channelList().isEmpty());
    QVERIFY(config->groupList().isEmpty());
    QVERIFY(config->destChannelMap().isEmpty());
    QCOMPARE(config->lastErrorMessage(), QString());
    QCOMPARE(KyChannelConfig::CHANNEL_CONFIG_FILE_NAME, QStringLiteral("chconfig.xml"));
}

void tst_KyChannelConfig::newRecords_haveNeitherIdNorIndex()
{
    const KyChannelConfig::ChannelInfo channel;
    const KyChannelConfig::GroupInfo group;

    QCOMPARE(channel.id, -1);
    QCOMPARE(channel.name, QString());
    QCOMPARE(channel.index, -1);
    QCOMPARE(group.id, -1);
    QCOMPARE(group.name, QString());
    QCOMPARE(group.index, -1);
}

void tst_KyChannelConfig::accessors_exchangeTheMembers()
{
    m_config->setChannelList({{1, QStringLiteral("One"), 5}, {2, QStringLiteral("Two"), 6}});
    QCOMPARE(describe(m_config->channelList()), QStringList({"1|One|5", "2|Two|6"}));
    m_config->channelListPtr()->removeFirst();
    QCOMPARE(describe(m_config->channelList()), QStringList({"2|Two|6"}));

    m_config->setGroupList({{3, QStringLiteral("Three"), 7}});
    QCOMPARE(m_config->groupList().size(), 1);
    QCOMPARE(m_config->groupList().first().id, 3);
    QCOMPARE(m_config->groupList().first().name, QStringLiteral("Three"));
    QCOMPARE(m_config->groupList().first().index, 7);

    m_config->setDestChannelMap({{8, 1}, {4, 2}});
    QCOMPARE(describe(m_config->destChannelMap()), QStringLiteral("4=2 8=1"));
    m_config->destChannelMapPtr()->remove(4);
    QCOMPARE(describe(m_config->destChannelMap()), QStringLiteral("8=1"));
}

void tst_KyChannelConfig::insertDestination_replacesAnEarlierAssignment()
{
    m_config->insertDestination(4, 1);
    m_config->insertDestination(3, 1);
    m_config->insertDestination(4, 2);

    QCOMPARE(describe(m_config->destChannelMap()), QStringLiteral("3=1 4=2"));
}

/** Answers every text of one class with the text in brackets. */
class BracketTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        return qstrcmp(context, "Kyte::KyChannelConfig") == 0
            ? QLatin1Char('[') + QLatin1String(text) + QLatin1Char(']')
            : QString();
    }
    bool isEmpty() const override
    {
        return false;
    }
};

void tst_KyChannelConfig::messages_areTranslatedInTheContextOfTheClass()
{
    BracketTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const QString folder = m_environment->channelDir();

    QVERIFY(!m_config->getAllChannelInfoFromFiles(folder));
    QCOMPARE(m_config->lastErrorMessage(), QLatin1Char('[') + NO_CHANNEL_FILES + QLatin1Char(']'));
    QVERIFY(!m_config->getAllChannelInfoFromFiles(path(QStringLiteral("missing"))));
    QCOMPARE(m_config->lastErrorMessage(),
             QStringLiteral("[The Channel folder \"%1\" does not exist.]")
                 .arg(QDir::toNativeSeparators(path(QStringLiteral("missing")))));
    QVERIFY(!m_config->readFile(folder));
    QCOMPARE(m_config->lastErrorMessage(), QLatin1Char('[') + NOT_READABLE + QLatin1Char(']'));
    QVERIFY(!m_config->saveFile(folder));
    QCOMPARE(m_config->lastErrorMessage(), QLatin1Char('[') + NOT_WRITABLE + QLatin1Char(']'));
    removeConfiguration();
    QCOMPARE(m_config->channelDir(), QString());
    QCOMPARE(m_config->lastErrorMessage(), QLatin1Char('[') + NO_CONFIGURATION + QLatin1Char(']'));
}

void tst_KyChannelConfig::channelDir_isBelowTheDataFolder()
{
    QVERIFY(!m_config->saveFile(m_environment->root()));

    QCOMPARE(m_config->channelDir(), m_environment->channelDir());

    QCOMPARE(m_config->lastErrorMessage(), NOT_WRITABLE); // an earlier message stays
    m_config->clearLastErrorMessage();
    QCOMPARE(m_config->lastErrorMessage(), QString());
}

void tst_KyChannelConfig::channelDir_readsTheConfigurationAnew()
{
    QCOMPARE(m_config->channelDir(), m_environment->channelDir());
    Test::writeFile(m_environment->configFile(), inRoot("<dataDir>moved</dataDir>"));

    QCOMPARE(m_config->channelDir(), m_environment->root() + QStringLiteral("/moved/channel"));
}

void tst_KyChannelConfig::channelDir_withoutDataFolder_isBelowTheCurrentFolder()
{
    Test::writeFile(m_environment->configFile(), inRoot(""));
    QVERIFY(QDir::setCurrent(m_environment->root()));

    QCOMPARE(m_config->channelDir(), QDir::current().absoluteFilePath(QStringLiteral("channel")));
}

void tst_KyChannelConfig::channelDir_withoutConfiguration_fails()
{
    QCOMPARE(m_config->channelDir(), m_environment->channelDir());
    removeConfiguration(); // a data folder that is still known does not help

    QCOMPARE(m_config->channelDir(), QString());

    QCOMPARE(m_config->lastErrorMessage(), NO_CONFIGURATION);
}

void tst_KyChannelConfig::channelFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("expected"); // empty: no channel

    const auto row = [](const char *name, const QByteArray &content, const char *expected) {
        QTest::newRow(name) << content << QString::fromUtf8(expected);
    };
    row("all attributes", inRoot("<channel id='7' name='Lobby' index='3'/>"), "7|Lobby|3");
    row("attributes in another order", inRoot("<channel index='3' x='' name='Lobby' id='7'/>"), "7|Lobby|3");
    row("no declaration", "<Pelmora><channel id='7' name='Lobby' index='3'/></Pelmora>", "7|Lobby|3");
    row("other line ends", inRoot("\r\n<channel\r\nid='7'\r\nname='Lobby' />\r\n"), "7|Lobby|-1");
    row("byte order mark", "\xEF\xBB\xBF" + inRoot("<channel id='7' name='\xC3\xA4'/>"), "7|\xC3\xA4|-1");

    row("id alone", inRoot("<channel id='7'/>"), "7|Ch.7|-1");
    row("id 0", inRoot("<channel id='0'/>"), "0|Ch.0|-1");
    row("largest id", inRoot("<channel id='2147483647'/>"), "2147483647|Ch.2147483647|-1");
    row("no id", inRoot("<channel name='Lobby' index='3'/>"), "");
    row("empty id", inRoot("<channel id='' name='Lobby'/>"), "");
    row("negative id", inRoot("<channel id='-1' name='Lobby'/>"), "");
    row("id too large", inRoot("<channel id='2147483648' name='Lobby'/>"), "");
    row("id is no number", inRoot("<channel id='7a' name='Lobby'/>"), "");
    row("id is no integer", inRoot("<channel id='7.0' name='Lobby'/>"), "");
    row("id is hexadecimal", inRoot("<channel id='0x7' name='Lobby'/>"), "");

    row("empty name", inRoot("<channel id='7' name=''/>"), "7|Ch.7|-1");
    row("blank name", inRoot("<channel id='7' name=' '/>"), "7| |-1");
    row("escaped name", inRoot("<channel id='7' name='&lt;A&gt; &amp; &quot;B&quot; &#39;%1&apos;'/>"),
        "7|<A> & \"B\" '%1'|-1");
    row("name in another script", inRoot("<channel id='7' name='\xE3\x83\xAD\xE3\x83\x93\xE3\x83\xBC'/>"),
        "7|\xE3\x83\xAD\xE3\x83\x93\xE3\x83\xBC|-1");
    row("name of 10,000 characters", inRoot("<channel id='7' name='" + QByteArray(10000, 'x') + "'/>"),
        ("7|" + QByteArray(10000, 'x') + "|-1").constData());
    row("name of 10,000 escaped quotes",
        inRoot("<channel id='7' name='" + QByteArray("&quot;").repeated(10000) + "'/>"),
        ("7|" + QByteArray(10000, '"') + "|-1").constData());

    row("negative index", inRoot("<channel id='7' index='-5'/>"), "7|Ch.7|-5");
    row("empty index", inRoot("<channel id='7' index=''/>"), "7|Ch.7|-1");
    row("index is no number", inRoot("<channel id='7' index='first'/>"), "7|Ch.7|-1");
    row("index too large", inRoot("<channel id='7' index='2147483648'/>"), "7|Ch.7|-1");

    row("root in other letter case", "<pELMORA><channel id='7'/></pELMORA>", "7|Ch.7|-1");
    row("other root", "<Other><channel id='7'/></Other>", "");
    row("the root inside of another", "<Other><Pelmora><channel id='7'/></Pelmora></Other>", "");
    row("channel as root", "<channel id='7'/>", "");
    row("channel in other letter case", inRoot("<Channel id='7'/><CHANNEL id='8'/>"), "");
    row("channel behind one in other letter case", inRoot("<Channel id='7'/><channel id='8'/>"), "8|Ch.8|-1");
    row("attributes in other letter case", inRoot("<channel id='7' Name='Lobby' INDEX='3'/>"), "7|Ch.7|-1");
    row("id in other letter case", inRoot("<channel ID='7'/>"), "");
    row("inside of other elements", inRoot("<a/><b>text<c><channel id='7'/></c></b>"), "7|Ch.7|-1");
    row("inside of a comment", inRoot("<!-- <channel id='7'/> -->"), "");
    row("inside of literal text", inRoot("<![CDATA[<channel id='7'/>]]>"), "");

    row("first channel only", inRoot("<channel id='7'/><channel id='8'/>"), "7|Ch.7|-1");
    row("first channel without id", inRoot("<channel/><channel id='8'/>"), "");
    row("channel within the first", inRoot("<channel id='7'><channel id='8' name='8'/></channel>"),
        "7|Ch.7|-1");
    row("malformed behind the channel", "<Pelmora><channel id='7'/></Other><<<", "7|Ch.7|-1");
    row("cut off behind the tag", "<Pelmora><channel id='7'>", "7|Ch.7|-1");
    row("cut off in the tag", "<Pelmora><channel id='7'", "");
    row("cut off in front", "<Pelmora>", "");
    row("malformed in front", "<Pelmora></a><channel id='7'/></Pelmora>", "");
    row("attribute twice", inRoot("<channel id='7' id='8'/>"), "");
    row("no channel", inRoot(""), "");
    row("empty file", "", "");
    row("garbage", QByteArray("\x00\x01\xFF\xFEgarbage", 11), "");

    row("UTF-16", utf16(QStringLiteral("\uFEFF<Pelmora><channel id='7' name='\u00E4'/></Pelmora>")),
        "7|\xC3\xA4|-1");
    row("Latin-1",
        "<?xml version='1.0' encoding='ISO-8859-1'?><Pelmora><channel id='7' name='\xE4'/></Pelmora>",
        "7|\xC3\xA4|-1");
    row("unknown encoding", "<?xml version='1.0' encoding='none'?><Pelmora><channel id='7'/></Pelmora>", "");
    row("line end in a name", inRoot("<channel id='7' name='A\r\nB'/>"), "7|A B|-1");
    row("wrong encoding", inRoot("<channel id='7' name='\xE4'/>"), "");
    row("document type", "<!DOCTYPE Pelmora><Pelmora><channel id='7'/></Pelmora>", "7|Ch.7|-1");
    row("entity bomb", entityBomb("<channel id='7'/>"), "");
    row("64 attributes", inRoot("<channel id='7'" + manyAttributes(63) + "/>"), "7|Ch.7|-1");
    row("65 attributes", inRoot("<channel id='7'" + manyAttributes(64) + "/>"), "");
    row("256 deep", inRoot(nested(254, "<channel id='7'/>")), "7|Ch.7|-1");
    row("257 deep", inRoot(nested(255, "<channel id='7'/>")), "");
    row("256 deep in front", inRoot(nested(255, "").repeated(3) + "<channel id='7'/>"), "7|Ch.7|-1");
    row("1 MiB",
        inRoot("<channel id='7'/>") + QByteArray((1 << 20) - inRoot("<channel id='7'/>").size(), ' '),
        "7|Ch.7|-1");
    row("more than 1 MiB",
        inRoot("<channel id='7'/>") + QByteArray((1 << 20) - inRoot("<channel id='7'/>").size() + 1, ' '),
        "");
}

void tst_KyChannelConfig::channelFile()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, expected);

    QCOMPARE(readChannelFile(content), !expected.isEmpty());

    QCOMPARE(describe(m_config->channelList()).join(QLatin1Char('\n')), expected);
    QCOMPARE(m_config->lastErrorMessage(), expected.isEmpty() ? NO_CHANNEL_FILES : QString());
}

void tst_KyChannelConfig::channelFile_isFoundByItsName_data()
{
    QTest::addColumn<bool>("isChannelFile");

    for (const char *name : {"channel1.xml", "channel0012.xml", "channelx.xml", "channel 1 (copy).xml",
                             "channel.1.xml", "channelchannel.xml", "channel..xml", "CHANNEL1.XML",
                             "Channel1.Xml", "channel\xC3\xA4.xml", "channel%1.xml"})
        QTest::newRow(name) << true;
    for (const char *name :
         {"channel.xml", "CHANNEL.XML", "Channel.Xml", "chconfig.xml", "channe1.xml", "xchannel1.xml",
          "channel1.xml.bak", "channel1.txt", "channel1xml", ".channel1.xml"})
        QTest::newRow(name) << false;
}

void tst_KyChannelConfig::channelFile_isFoundByItsName()
{
    QFETCH(bool, isChannelFile);
    Test::writeFile(path(QString::fromUtf8(QTest::currentDataTag())), inRoot("<channel id='7'/>"));

    QCOMPARE(m_config->getAllChannelInfoFromFiles(m_environment->channelDir()), isChannelFile);

    QCOMPARE(m_config->channelList().size(), int(isChannelFile));
}

void tst_KyChannelConfig::channelFiles_areReadInTheOrderOfTheFolder()
{
    for (int i = 0; i < 60; ++i)
        m_environment->writeChannel(i * 37 % 60, QString(), i);
    const QStringList expected = QDir(m_environment->channelDir()).entryList(QDir::Files, QDir::Unsorted);

    QVERIFY(m_config->getAllChannelInfoFromFiles(m_environment->channelDir()));

    QStringList read;
    for (const KyChannelConfig::ChannelInfo &channel : m_config->channelList())
        read.append(QStringLiteral("channel%1.xml").arg(channel.id));
    QCOMPARE(read, expected);
}

void tst_KyChannelConfig::channelFiles_ofOneChannel_areAllKept()
{
    m_environment->writeChannel(1, QStringLiteral("One"), 0);
    QVERIFY(QFile::copy(path(QStringLiteral("channel1.xml")), path(QStringLiteral("channel2.xml"))));

    QVERIFY(m_config->getAllChannelInfoFromFiles(m_environment->channelDir()));

    QCOMPARE(describe(m_config->channelList()), QStringList({"1|One|0", "1|One|0"}));
}

void tst_KyChannelConfig::channelFiles_thatAreNoFiles_arePassedOver()
{
    m_environment->writeChannel(1, QStringLiteral("One"), 0);
    QVERIFY(QDir().mkpath(path(QStringLiteral("channel2.xml"))));
#ifdef Q_OS_UNIX
    QCOMPARE(::mkfifo(QFile::encodeName(path(QStringLiteral("channel3.xml"))).constData(), 0600), 0);
    QVERIFY(QFile::link(path(QStringLiteral("missing")), path(QStringLiteral("channel4.xml"))));
    QVERIFY(QFile::link(path(QStringLiteral("channel3.xml")), path(QStringLiteral("channel5.xml"))));
    QVERIFY(QFile::link(QStringLiteral("/dev/zero"), path(QStringLiteral("channel6.xml"))));
#endif

    QVERIFY(m_config->getAllChannelInfoFromFiles(m_environment->channelDir()));

    QCOMPARE(describe(m_config->channelList()), QStringList({"1|One|0"}));
}

void tst_KyChannelConfig::channelFiles_thatCannotBeRead_arePassedOver()
{
    m_environment->writeChannel(1, QStringLiteral("One"), 0);
    m_environment->writeChannel(2, QStringLiteral("Two"), 0);
    QVERIFY(QFile::setPermissions(path(QStringLiteral("channel2.xml")), QFileDevice::WriteOwner));
    if (QFile(path(QStringLiteral("channel2.xml"))).open(QIODevice::ReadOnly))
        QSKIP("This user may read every file");

    QVERIFY(m_config->getAllChannelInfoFromFiles(m_environment->channelDir()));

    QCOMPARE(describe(m_config->channelList()), QStringList({"1|One|0"}));
}

void tst_KyChannelConfig::channelFiles_replaceTheFormerList()
{
    m_config->setDestChannelMap({{1, 1}});
    QVERIFY(!readChannelFile("garbage"));
    QVERIFY(readChannelFile(inRoot("<channel id='7'/>")));
    QCOMPARE(m_config->lastErrorMessage(), QString()); // the former failure is forgotten

    QVERIFY(readChannelFile(inRoot("<channel id='8'/>")));

    QCOMPARE(describe(m_config->channelList()), QStringList({"8|Ch.8|-1"}));
    QCOMPARE(describe(m_config->destChannelMap()), QStringLiteral("1=1"));
}

void tst_KyChannelConfig::noChannelFile_isAnErrorAndClearsTheList()
{
    m_config->setChannelList({{1, QStringLiteral("One"), 0}});
    Test::writeFile(path(QStringLiteral("channel.xml")), inRoot("<channel id='7'/>"));

    QVERIFY(!m_config->getAllChannelInfoFromFiles(m_environment->channelDir()));

    QCOMPARE(m_config->lastErrorMessage(), NO_CHANNEL_FILES);
    QVERIFY(m_config->channelList().isEmpty());
}

void tst_KyChannelConfig::missingFolder_isAnErrorAndKeepsTheList_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("missing") << "missing/folder";
    QTest::newRow("with signs of a place") << "missing %1 %2";
    QTest::newRow("a file") << "file.xml";
}

void tst_KyChannelConfig::missingFolder_isAnErrorAndKeepsTheList()
{
    QFETCH(QString, name);
    Test::writeFile(path(), "a file");
    m_config->setChannelList({{1, QStringLiteral("One"), 0}});

    QVERIFY(!m_config->getAllChannelInfoFromFiles(path(name)));

    QCOMPARE(m_config->lastErrorMessage(),
             QStringLiteral("The Channel folder \"") + QDir::toNativeSeparators(path(name))
                 + QStringLiteral("\" does not exist."));
    QCOMPARE(describe(m_config->channelList()), QStringList({"1|One|0"}));
}

void tst_KyChannelConfig::emptyFolderArgument_meansTheChannelFolder()
{
    m_environment->writeChannel(1, QStringLiteral("One"), 4);

    QVERIFY(m_config->getAllChannelInfoFromFiles(QString()));

    QCOMPARE(describe(m_config->channelList()), QStringList({"1|One|4"}));
    QVERIFY(QDir(m_environment->channelDir()).removeRecursively());
    QVERIFY(!m_config->getAllChannelInfoFromFiles(QString()));
    QCOMPARE(m_config->lastErrorMessage(),
             QStringLiteral("The Channel folder \"%1\" does not exist.")
                 .arg(QDir::toNativeSeparators(m_environment->channelDir())));
}

void tst_KyChannelConfig::emptyFolderArgument_withoutConfiguration_fails()
{
    m_environment->writeChannel(1, QStringLiteral("One"), 4);
    m_config->setChannelList({{1, QStringLiteral("One"), 0}});
    removeConfiguration();

    QVERIFY(!m_config->getAllChannelInfoFromFiles(QString()));

    QCOMPARE(m_config->lastErrorMessage(), NO_CONFIGURATION);
    QCOMPARE(describe(m_config->channelList()), QStringList({"1|One|0"}));
}

void tst_KyChannelConfig::mutatedChannelFiles_neitherCrashNorHang()
{
    std::mt19937 random(20240301);
    const QByteArray whole =
        inRoot("\n  <!-- a channel -->\n  <channel id=\"7\" name=\"A &amp; B\" index=\"3\">\n"
               "    <other/>\n  </channel>\n");
    QElapsedTimer timer;
    timer.start();
    int accepted = 0;
    for (int round = 0; round < 1000; ++round) {
        const bool isRead = readChannelFile(mutated(whole, &random));
        QCOMPARE(m_config->channelList().size(), int(isRead));
        QCOMPARE(m_config->lastErrorMessage(), isRead ? QString() : NO_CHANNEL_FILES);
        if (isRead)
            QVERIFY(m_config->channelList().first().id >= 0
                    && !m_config->channelList().first().name.isEmpty());
        accepted += isRead;
    }
    QVERIFY2(timer.elapsed() < 60000, "no file keeps the reader busy");
    QVERIFY(accepted > 0 && accepted < 1000);
}

void tst_KyChannelConfig::mainFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const QByteArray &content, const char *expected) {
        QTest::newRow(name) << content << QString::fromLatin1(expected);
    };
    row("two channels",
        inRoot("<channel id='0'><destination id='3'/><destination id='7'/></channel>"
               "<channel id='1'><destination id='4'/></channel>"),
        "3=0 4=1 7=0");
    row("no channel", inRoot(""), "");
    row("channel without destinations", inRoot("<channel id='1'/>"), "");
    row("names in other letter case",
        "<PELMORA><CHANNEL id='1'><Destination id='2'/><DESTINATION id='3'/></CHANNEL></PELMORA>", "2=1 3=1");
    row("other root", "<Other><channel id='1'><destination id='2'/></channel></Other>", "");
    row("no root element", "<channel id='1'><destination id='2'/></channel>", "");
    row("other attributes",
        inRoot("<channel name='x' id='1' index='9'><destination a='5' id='2'/></channel>"), "2=1");
    row("attributes in other letter case", inRoot("<channel id='1'><destination ID='2'/></channel>"), "");

    row("destination under two channels",
        inRoot(
            "<channel id='1'><destination id='2'/></channel><channel id='0'><destination id='2'/></channel>"),
        "2=0");
    row("channel twice",
        inRoot(
            "<channel id='1'><destination id='2'/></channel><channel id='1'><destination id='3'/></channel>"),
        "2=1 3=1");
    row("destination outside of a channel",
        inRoot("<destination id='1'/><channel id='5'><destination id='2'/></channel><destination id='3'/>"),
        "2=5");
    row("destination behind an empty channel", inRoot("<channel id='5'/><destination id='3'/>"), "");
    row("content of a destination",
        inRoot("<channel id='5'><destination id='3'>x<y/></destination></channel>"), "3=5");

    row("channel id 0", inRoot("<channel id='0'><destination id='0'/></channel>"), "0=0");
    row("channel without id", inRoot("<channel><destination id='2'/></channel>"), "");
    row("channel with empty id", inRoot("<channel id=''><destination id='2'/></channel>"), "");
    row("channel with negative id", inRoot("<channel id='-1'><destination id='2'/></channel>"), "");
    row("channel id is no number", inRoot("<channel id='one'><destination id='2'/></channel>"), "");
    row("channel id too large", inRoot("<channel id='2147483648'><destination id='2'/></channel>"), "");
    row("invalid channel behind a valid one",
        inRoot(
            "<channel id='1'><destination id='2'/></channel><channel id='x'><destination id='3'/></channel>"),
        "2=1");
    row("destination without id", inRoot("<channel id='1'><destination/><destination id='2'/></channel>"),
        "2=1");
    row("destination with negative id", inRoot("<channel id='1'><destination id='-2'/></channel>"), "");
    row("destination id is no number", inRoot("<channel id='1'><destination id='2x'/></channel>"), "");
    row("destination id too large", inRoot("<channel id='1'><destination id='99999999999'/></channel>"), "");
    row("largest ids", inRoot("<channel id='2147483647'><destination id='2147483647'/></channel>"),
        "2147483647=2147483647");

    row("elements of other names",
        inRoot("<a><channel id='1'><b id='9'><c><destination id='2'/></c></b><destination "
               "id='3'/></channel></a>"),
        "2=1 3=1");
    row("comments and text",
        inRoot("x<!-- <channel id='1'> -->&amp;<channel id='1'>y<destination id='2'/></channel>"), "2=1");

    row("empty file", "", "");
    row("garbage", QByteArray("\x00\x01\xFF\xFEgarbage", 11), "");
    row("cut off in a tag", "<Pelmora><channel id='1'><destination id='2'/><destination id='3'", "2=1");
    row("malformed in the middle",
        "<Pelmora><channel id='1'><destination id='2'/></wrong><destination id='3'/></channel></Pelmora>",
        "2=1");
    row("malformed behind the root", inRoot("<channel id='1'><destination id='2'/></channel>") + "<a>",
        "2=1");
    row("unknown entity", inRoot("<channel id='1'><destination id='2'/>&x;<destination id='3'/></channel>"),
        "2=1");
    row("256 deep", inRoot(nested(253, "<channel id='1'><destination id='2'/></channel>")), "2=1");
    row("257 deep",
        inRoot("<channel id='1'><destination id='3'/></channel>"
               + nested(254, "<channel id='1'><destination id='2'/></channel>")),
        "3=1");
    row("64 attributes", inRoot("<channel id='1'><destination id='2'" + manyAttributes(63) + "/></channel>"),
        "2=1");
    row("65 attributes",
        inRoot("<channel id='1'><destination id='3'/><destination id='2'" + manyAttributes(64)
               + "/></channel>"),
        "3=1");
    row("document type",
        "<!DOCTYPE Pelmora><Pelmora><channel id='1'><destination id='2'/></channel></Pelmora>", "2=1");
    row("entity bomb", entityBomb("<channel id='1'><destination id='2'/></channel>"), "");
    row("declarations in a comment",
        inRoot("<!-- <!DOCTYPE a [<!ENTITY b 'c'>]> --><channel id='1'><destination id='2'/></channel>"),
        "2=1");
    row("many attributes in a comment",
        inRoot("<!-- <a" + manyAttributes(65) + "/> --><channel id='1'><destination id='2'/></channel>"),
        "2=1");

    row("channel within a channel",
        inRoot("<channel id='1'><channel id='2'/><destination id='5'/></channel><destination id='6'/>"),
        "5=1");
    row("destination of an inner channel",
        inRoot(
            "<channel id='1'><channel id='2'><destination id='4'/></channel><destination id='5'/></channel>"),
        "4=2 5=1");
    row("invalid channel within a valid one",
        inRoot(
            "<channel id='1'><channel id='x'><destination id='4'/></channel><destination id='5'/></channel>"),
        "5=1");
    row("valid channel within an invalid one",
        inRoot("<channel><channel id='2'><destination id='4'/></channel><destination id='5'/></channel>"),
        "4=2");
    row("channels three deep",
        inRoot("<channel id='1'><channel id='2'><channel id='3'><destination id='6'/></channel>"
               "<destination id='7'/></channel><destination id='8'/></channel>"),
        "6=3 7=2 8=1");
}

void tst_KyChannelConfig::mainFile()
{
    QFETCH(QByteArray, content);
    Test::writeFile(path(), content);

    QVERIFY(m_config->readFile(path()));

    QTEST(describe(m_config->destChannelMap()), "expected");
    QCOMPARE(m_config->lastErrorMessage(), QString());
}

void tst_KyChannelConfig::largeMainFile_isReadWholeInAnyEncoding_data()
{
    QTest::addColumn<QByteArray>("encoding");

    for (const char *encoding : {"UTF-8", "utf8", "US-ASCII", "ISO-8859-1", "Shift_JIS", "UTF-16"})
        QTest::newRow(encoding) << QByteArray(encoding);
}

void tst_KyChannelConfig::largeMainFile_isReadWholeInAnyEncoding()
{
    QFETCH(QByteArray, encoding);
    QMap<int, int> expected;
    QString text = QStringLiteral("<?xml version='1.0' encoding='%1'?>\r\n<Pelmora><channel id='1'>\r\n")
                       .arg(QString::fromLatin1(encoding));
    for (int id = 0; id < 3000; ++id) {
        text += QStringLiteral("<destination id='%1'/>\r\n").arg(id);
        expected.insert(id, 1);
    }
    text += QStringLiteral("</channel></Pelmora>");
    const QTextCodec *codec = QTextCodec::codecForName(encoding);
    if (!codec)
        QSKIP("A Qt without ICU does not know this encoding");
    Test::writeFile(path(), codec->fromUnicode(text));

    QVERIFY(m_config->readFile(path()));

    QCOMPARE(m_config->destChannelMap(), expected);
}

void tst_KyChannelConfig::mainFile_replacesTheFormerMap()
{
    m_config->setDestChannelMap({{8, 8}});
    m_config->setChannelList({{1, QStringLiteral("One"), 0}});
    m_environment->writeMainFile({{1, {2}}});

    QVERIFY(m_config->readFile(m_environment->mainFile()));

    QCOMPARE(describe(m_config->destChannelMap()), QStringLiteral("2=1"));
    QCOMPARE(describe(m_config->channelList()), QStringList({"1|One|0"}));
}

void tst_KyChannelConfig::missingMainFile_isNoError_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("missing") << "missing.xml";
    QTest::newRow("in a missing folder") << "missing/file.xml";
#ifdef Q_OS_UNIX
    QTest::newRow("link to nothing") << "link.xml";
#endif
}

void tst_KyChannelConfig::missingMainFile_isNoError()
{
    QFETCH(QString, name);
    QFile::link(path(QStringLiteral("nothing")), path(QStringLiteral("link.xml")));
    m_config->setDestChannelMap({{8, 8}});

    QVERIFY(m_config->readFile(path(name)));

    QVERIFY(m_config->destChannelMap().isEmpty());
    QCOMPARE(m_config->lastErrorMessage(), QString());
}

void tst_KyChannelConfig::unreadableMainFile_isAnErrorAndClearsTheMap_data()
{
    QTest::addColumn<QString>("kind");

    for (const char *kind : {"folder", "too large"})
        QTest::newRow(kind) << kind;
#ifdef Q_OS_UNIX
    for (const char *kind : {"pipe", "device", "permissions"})
        QTest::newRow(kind) << kind;
#endif
}

void tst_KyChannelConfig::unreadableMainFile_isAnErrorAndClearsTheMap()
{
    QFETCH(QString, kind);
    const QByteArray good = inRoot("<channel id='1'><destination id='2'/></channel>");
    if (kind == QLatin1String("folder")) {
        QVERIFY(QDir().mkpath(path()));
    } else if (kind == QLatin1String("too large")) {
        Test::writeFile(path(), good);
        QVERIFY(QFile::resize(path(), (64 << 20) + 1)); // sparse
#ifdef Q_OS_UNIX
    } else if (kind == QLatin1String("pipe")) {
        QCOMPARE(::mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
    } else if (kind == QLatin1String("device")) {
        QVERIFY(QFile::link(QStringLiteral("/dev/zero"), path()));
    } else {
        Test::writeFile(path(), good);
        QVERIFY(QFile::setPermissions(path(), QFileDevice::WriteOwner));
        if (QFile(path()).open(QIODevice::ReadOnly))
            QSKIP("This user may read every file");
#endif
    }
    m_config->setDestChannelMap({{8, 8}});

    QVERIFY(!m_config->readFile(path()));

    QCOMPARE(m_config->lastErrorMessage(), NOT_READABLE);
    QVERIFY(m_config->destChannelMap().isEmpty());
}

void tst_KyChannelConfig::emptyMainPath_readsFromTheChannelFolder()
{
    m_environment->writeMainFile({{1, {2}}});

    QVERIFY(m_config->readFile(QString()));

    QCOMPARE(describe(m_config->destChannelMap()), QStringLiteral("2=1"));
}

void tst_KyChannelConfig::emptyMainPath_withoutConfiguration_readsNothing()
{
    m_environment->writeMainFile({{1, {2}}});
    m_config->setDestChannelMap({{8, 8}});
    QVERIFY(QDir::setCurrent(m_environment->channelDir()));
    removeConfiguration();

    QVERIFY(!m_config->readFile(QString()));

    QCOMPARE(m_config->lastErrorMessage(), NO_CONFIGURATION);
    QCOMPARE(describe(m_config->destChannelMap()), QStringLiteral("8=8"));
}

void tst_KyChannelConfig::mutatedMainFiles_neitherCrashNorHang()
{
    std::mt19937 random(20240302);
    const QByteArray whole =
        inRoot("\n  <channel id=\"0\">\n    <destination id=\"3\"/>\n    <destination id=\"7\"/>\n"
               "  </channel>\n  <channel id=\"1\">\n    <destination id=\"4\"/>\n  </channel>\n");
    QElapsedTimer timer;
    timer.start();
    int complete = 0;
    for (int round = 0; round < 1000; ++round) {
        QFile::remove(path());
        Test::writeFile(path(), mutated(whole, &random));
        if (!m_config->readFile(path()))
            QCOMPARE(m_config->lastErrorMessage(), NOT_READABLE);
        const QMap<int, int> map = m_config->destChannelMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            QVERIFY(it.key() >= 0 && it.value() >= 0);
        complete += describe(map) == QLatin1String("3=0 4=1 7=0");
    }
    QVERIFY2(timer.elapsed() < 60000, "no file keeps the reader busy");
    QVERIFY(complete > 0 && complete < 1000);
}

void tst_KyChannelConfig::hostileFile_isReadInBoundedTime_data()
{
    QTest::addColumn<QByteArray>("content");

    const int size = 4 << 20;
    const auto row = [](const char *name, const QByteArray &begin, const QByteArray &part) {
        QTest::newRow(name) << begin + part.repeated((size - begin.size()) / part.size());
    };
    row("nested elements", "<Pelmora>", "<a>");
    row("nested name spaces", "<Pelmora>", "<a xmlns:b='c'>");
    row("name spaces around all elements",
        "<Pelmora>" + ("<a" + manyAttributes(60, "xmlns:b", "c") + ">").repeated(250), "<a/>");
    row("many attributes", "<Pelmora>", "<a" + manyAttributes(64) + "/>");
    row("one tag", "<Pelmora" + manyAttributes(300000), " ");
    row("attribute lists", "<!DOCTYPE a [", "<!ATTLIST a b CDATA 'c'>");
    row("parentheses", "<!DOCTYPE a [<!ELEMENT a (", "(");
    const QString bomb =
        QStringLiteral("<!DOCTYPE a [<!ENTITY e '%1'>]><Pelmora>").arg(QString(4000, QLatin1Char('x')));
    row("entities", bomb.toLatin1(), "&e;");
    row("entities behind a comment", "<!-- <!DOCTYPE a> -->" + bomb.toLatin1(), "&e;");
    row("entities in UTF-16", utf16(QStringLiteral("\uFEFF") + bomb), utf16(QStringLiteral("&e;")));

    // Half a surrogate pair must not turn into the "?" that makes an instruction of a tag.
    row("entities behind half a pair",
        utf16(QStringLiteral("<") + QChar(0xD800) + QStringLiteral("a '?>") + bomb),
        utf16(QStringLiteral("&e;")));
    row("attributes of the declaration", "<?xml version='1.0'" + manyAttributes(300000), " ");
    row("open comments", "<Pelmora>", "<!-- ");
    row("open instructions", "<Pelmora>", "<?a ");
    row("open quotes", "<Pelmora>", "<a \"");

    // In this encoding the bytes of "<" are parts of other characters, here of the attributes' names.
    QByteArray japanese = "<?xml version='1.0' encoding='ISO-2022-JP'?><Pelmora";
    for (char a = '!'; a <= '~'; ++a) {
        for (char b = '!'; b <= '~'; ++b) {
            for (char c = '0'; c <= '7'; ++c)
                japanese += QByteArray(" \x1B$B<") + c + '<' + a + '<' + b + "\x1B(B=''";
        }
    }
    row("attributes in a foreign encoding", japanese, " ");
}

void tst_KyChannelConfig::hostileFile_isReadInBoundedTime()
{
    QFETCH(QByteArray, content);
    QElapsedTimer timer;
    timer.start();

    Test::writeFile(path(), content);
    m_config->readFile(path());
    QVERIFY(m_config->destChannelMap().isEmpty());
    QVERIFY(!readChannelFile(content.left(1 << 20)));

    QVERIFY2(timer.elapsed() < 30000, "a file keeps the reader busy");
}

void tst_KyChannelConfig::saveFile_writesTheAgreedBytes()
{
    m_config->setChannelList(
        {{0, QStringLiteral("Zero"), 5}, {1, QStringLiteral("One"), 4}, {12, QString(), 3}});
    m_config->setDestChannelMap({{7, 0}, {3, 0}, {10, 1}, {2147483647, 1}});

    QVERIFY(m_config->saveFile(path()));

    QCOMPARE(Test::readFile(path()),
             QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                        "<Pelmora>\n"
                        "    <channel id=\"0\">\n"
                        "        <destination id=\"3\"/>\n"
                        "        <destination id=\"7\"/>\n"
                        "    </channel>\n"
                        "    <channel id=\"1\">\n"
                        "        <destination id=\"10\"/>\n"
                        "        <destination id=\"2147483647\"/>\n"
                        "    </channel>\n"
                        "    <channel id=\"12\"/>\n"
                        "</Pelmora>\n"));
    QCOMPARE(m_config->lastErrorMessage(), QString());
}

void tst_KyChannelConfig::saveFile_withoutChannels_writesTheRootAlone()
{
    m_config->setDestChannelMap({{7, 0}});

    QVERIFY(m_config->saveFile(path()));

    QCOMPARE(Test::readFile(path()),
             QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<Pelmora/>\n"));
}

void tst_KyChannelConfig::saveFile_writesChannelsInListOrder_data()
{
    QTest::addColumn<QVector<int>>("channels");
    QTest::addColumn<QString>("expected"); // "channel:destination,destination,"

    QTest::newRow("ascending") << QVector<int>({1, 2}) << "1:10,30, 2:20,";
    QTest::newRow("descending") << QVector<int>({2, 1}) << "2:20, 1:10,30,";
    QTest::newRow("unlisted channels") << QVector<int>({2}) << "2:20,";
    QTest::newRow("channel twice") << QVector<int>({1, 2, 1}) << "1:10,30, 2:20, 1:10,30,";
    QTest::newRow("channel without destinations") << QVector<int>({5, 1}) << "5: 1:10,30,";
    QTest::newRow("negative id") << QVector<int>({-1}) << "-1:40,";
}

void tst_KyChannelConfig::saveFile_writesChannelsInListOrder()
{
    QFETCH(QVector<int>, channels);
    m_config->setDestChannelMap({{30, 1}, {10, 1}, {20, 2}, {40, -1}, {50, 6}});
    for (int id : channels)
        m_config->channelListPtr()->append({id, QStringLiteral("x"), 0});

    QVERIFY(m_config->saveFile(path()));

    QStringList written;
    QXmlStreamReader reader(Test::readFile(path()));
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QString id = reader.attributes().value(QLatin1String("id")).toString();
        if (reader.name() == QLatin1String("channel"))
            written.append(id + QLatin1Char(':'));
        else if (reader.name() == QLatin1String("destination"))
            written.last() += id + QLatin1Char(',');
    }
    QTEST(written.join(QLatin1Char(' ')), "expected");
}

void tst_KyChannelConfig::saveFile_replacesTheFileAndLeavesNothingElse()
{
    Test::writeFile(path(), QByteArray(100000, 'x'));

    QVERIFY(m_config->saveFile(path()));

    QVERIFY(Test::readFile(path()).endsWith("<Pelmora/>\n"));
    QCOMPARE(Test::namesIn(m_environment->channelDir()), QStringList({"file.xml"}));
}

void tst_KyChannelConfig::saveFile_afterReadFile_dropsAssignmentsToUnlistedChannels()
{
    m_environment->writeChannel(1, QStringLiteral("One"), 0);
    m_environment->writeMainFile({{1, {10}}, {2, {20}}});
    QVERIFY(m_config->getAllChannelInfoFromFiles(QString()));
    QVERIFY(m_config->readFile(QString()));
    QCOMPARE(describe(m_config->destChannelMap()), QStringLiteral("10=1 20=2"));

    QVERIFY(m_config->saveFile(QString()));

    QCOMPARE(describe(m_config->destChannelMap()), QStringLiteral("10=1 20=2"));
    QVERIFY(m_config->readFile(QString()));
    QCOMPARE(describe(m_config->destChannelMap()), QStringLiteral("10=1"));
}

/** The main file as QXmlStreamWriter writes it, one look-up per channel and destination. */
static QByteArray mainFileByWriter(const KyChannelConfig &config)
{
    QByteArray content;
    QXmlStreamWriter writer(&content);
    writer.setCodec("utf-8");
    writer.setAutoFormatting(true);
    writer.writeStartDocument(QStringLiteral("1.0"), true);
    writer.writeStartElement(QStringLiteral("Pelmora"));
    const QMap<int, int> assignment = config.destChannelMap();
    for (const KyChannelConfig::ChannelInfo &channel : config.channelList()) {
        writer.writeStartElement(QStringLiteral("channel"));
        writer.writeAttribute(QStringLiteral("id"), QString::number(channel.id));
        for (auto it = assignment.cbegin(); it != assignment.cend(); ++it) {
            if (it.value() != channel.id)
                continue;
            writer.writeEmptyElement(QStringLiteral("destination"));
            writer.writeAttribute(QStringLiteral("id"), QString::number(it.key()));
        }
        writer.writeEndElement();
    }
    writer.writeEndElement();
    writer.writeEndDocument();
    return content;
}

void tst_KyChannelConfig::saveFile_writesWhatAnXmlWriterWrites_data()
{
    QTest::addColumn<int>("channels");
    QTest::addColumn<int>("destinations");

    QTest::newRow("nothing") << 0 << 0;
    QTest::newRow("destinations alone") << 0 << 10;
    QTest::newRow("channels alone") << 10 << 0;
    QTest::newRow("few channels") << 5 << 1000;
    QTest::newRow("many channels") << 300 << 300;
}

void tst_KyChannelConfig::saveFile_writesWhatAnXmlWriterWrites()
{
    QFETCH(int, channels);
    QFETCH(int, destinations);
    std::mt19937 random(20240303);
    const auto number = [&](int limit) {
        return int(random() % unsigned(limit));
    };
    for (int i = 0; i < channels; ++i)
        m_config->channelListPtr()->append({number(channels) - 2, QStringLiteral("<\"&>"), i});
    for (int i = 0; i < destinations; ++i)
        m_config->insertDestination(int(random()), number(channels + 2) - 2);

    QVERIFY(m_config->saveFile(path()));

    QCOMPARE(Test::readFile(path()), mainFileByWriter(*m_config));
}

void tst_KyChannelConfig::saveFile_isReadBack()
{
    for (int channel = 0; channel < 50; ++channel)
        m_config->channelListPtr()->append({channel, QString(), channel});
    for (int id = 0; id < 20000; ++id)
        m_config->insertDestination(id, id * 31 % 50);
    const QMap<int, int> map = m_config->destChannelMap();
    QVERIFY(m_config->saveFile(path()));
    KyChannelConfig other;

    QVERIFY(other.readFile(path()));

    QCOMPARE(other.destChannelMap(), map);
}

void tst_KyChannelConfig::saveFile_toWhatIsNoFile_fails_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("folder") << "folder";
    QTest::newRow("in a missing folder") << "missing/file.xml";
    QTest::newRow("in a file") << "file.xml/file.xml";
#ifdef Q_OS_UNIX
    QTest::newRow("pipe") << "pipe";
    QTest::newRow("device") << "device";
#endif
}

void tst_KyChannelConfig::saveFile_toWhatIsNoFile_fails()
{
    QFETCH(QString, name);
    QVERIFY(QDir().mkpath(path(QStringLiteral("folder"))));
    Test::writeFile(path(), "former");
#ifdef Q_OS_UNIX
    QCOMPARE(::mkfifo(QFile::encodeName(path(QStringLiteral("pipe"))).constData(), 0600), 0);
    QVERIFY(Test::makeFullDevice(path(QStringLiteral("device"))));
#endif
    const QStringList former = Test::namesIn(m_environment->channelDir());

    QVERIFY(!m_config->saveFile(path(name)));

    QCOMPARE(m_config->lastErrorMessage(), NOT_WRITABLE);
    QCOMPARE(Test::namesIn(m_environment->channelDir()), former);
    QCOMPARE(Test::readFile(path()), QByteArray("former"));
}

void tst_KyChannelConfig::saveFile_onAFullDisk_keepsTheFormerFile_data()
{
    QTest::addColumn<int>("destinations");

    QTest::newRow("only the last buffer does not fit") << 3;
    QTest::newRow("a part does not fit") << 5000;
}

void tst_KyChannelConfig::saveFile_onAFullDisk_keepsTheFormerFile()
{
    QFETCH(int, destinations);
    Test::SmallDisk disk(64);
    if (!disk.isValid())
        QSKIP("No file system can be mounted here");
    const QString file = disk.path() + QStringLiteral("/chconfig.xml");
    m_config->setChannelList({{1, QStringLiteral("One"), 0}});
    QVERIFY(m_config->saveFile(file));
    const QByteArray former = Test::readFile(file);
    for (int id = 0; id < destinations; ++id)
        m_config->insertDestination(id, 1);
    if (destinations < 100)
        disk.fill(); // else the disk itself is too small

    QVERIFY(!m_config->saveFile(file));

    QCOMPARE(m_config->lastErrorMessage(), NOT_WRITABLE);
    QCOMPARE(Test::readFile(file), former);
    QFile::remove(disk.path() + QStringLiteral("/ballast"));
    QCOMPARE(Test::namesIn(disk.path()), QStringList({"chconfig.xml"}));
}

void tst_KyChannelConfig::emptyMainPath_savesIntoTheChannelFolder()
{
    m_config->setChannelList({{1, QStringLiteral("One"), 0}});
    m_config->insertDestination(2, 1);

    QVERIFY(m_config->saveFile(QString()));

    QCOMPARE(Test::namesIn(m_environment->channelDir()), QStringList({"chconfig.xml"}));
    QVERIFY(Test::readFile(m_environment->mainFile()).contains("<destination id=\"2\"/>"));
}

void tst_KyChannelConfig::emptyMainPath_withoutConfiguration_savesNothing()
{
    const QString current = path(QStringLiteral("current"));
    QVERIFY(QDir().mkpath(current) && QDir::setCurrent(current));
    removeConfiguration();

    QVERIFY(!m_config->saveFile(QString()));

    QCOMPARE(m_config->lastErrorMessage(), NO_CONFIGURATION);
    QCOMPARE(Test::namesIn(current), QStringList());
    QCOMPARE(Test::namesIn(m_environment->channelDir()), QStringList({"current"}));
}

KYTE_TEST_MAIN(tst_KyChannelConfig)
#include "tst_KyChannelConfig.moc"
