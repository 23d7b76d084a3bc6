#include "KyTestMain.h"

#include "KyTestEnvironment.h"

#include <KyEditorUserConfig.h>
#include <Path.h>

#include <QSettings>
#include <QTextCodec>

#include <type_traits>

using namespace Kyte;

static_assert(!std::is_default_constructible<KyEditorUserConfig>::value, "the constructor is protected");
static_assert(!std::is_copy_constructible<KyEditorUserConfig>::value, "there is only one");

/** Opens what derived classes may use. */
class OpenUserConfig : public KyEditorUserConfig
{
public:
    using KyEditorUserConfig::getInscance;
};

static QString filePath()
{
    return Path::getApplicationDataFolderPath(ExecFunction::Editor) + QStringLiteral("/usersettings.ini");
}

class tst_KyEditorUserConfig : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void instance_isAlwaysTheSame();
    void settings_areAnIniFileInTheApplicationDataFolder();
    void sync_writesTheFile();
    void changes_areWrittenByTheEventLoop();
    void texts_areStoredInUtf8();
    void value_isReadBack_data();
    void value_isReadBack();
    void missingValue_isTheDefault();
    void groups_prefixTheKeys();
    void sync_takesOverWhatOthersWrote();
    void sync_keepsWhatOthersWrote();
    void missingFile_isAnEmptyStore();
    void uselessFile_isAnEmptyStore_data();
    void uselessFile_isAnEmptyStore();
    void unreadableFile_isAnEmptyStore_data();
    void unreadableFile_isAnEmptyStore();
};

void tst_KyEditorUserConfig::init()
{
    while (!KyEditorUserConfig::group().isEmpty())
        KyEditorUserConfig::endGroup();
    KyEditorUserConfig::settings()->clear();
    KyEditorUserConfig::sync();
    QFile::remove(filePath());
    QCOMPARE(KyEditorUserConfig::settings()->allKeys(), QStringList());
}

void tst_KyEditorUserConfig::instance_isAlwaysTheSame()
{
    KyEditorUserConfig *instance = OpenUserConfig::getInscance();
    QSettings *settings = KyEditorUserConfig::settings();

    QVERIFY(instance && settings);
    QCOMPARE(OpenUserConfig::getInscance(), instance);
    QCOMPARE(KyEditorUserConfig::settings(), settings);
}

void tst_KyEditorUserConfig::settings_areAnIniFileInTheApplicationDataFolder()
{
    const QSettings *settings = KyEditorUserConfig::settings();

    QCOMPARE(settings->fileName(), filePath());
    QCOMPARE(settings->format(), QSettings::IniFormat);
    QCOMPARE(settings->iniCodec(), QTextCodec::codecForName("UTF-8"));
    QVERIFY(!settings->parent());
}

void tst_KyEditorUserConfig::sync_writesTheFile()
{
    KyEditorUserConfig::setValue(QStringLiteral("top"), 1);
    KyEditorUserConfig::beginGroup(QStringLiteral("dock"));
    KyEditorUserConfig::setValue(QStringLiteral("name"), QStringLiteral("left"));
    KyEditorUserConfig::setValue(QStringLiteral("width"), 12);
    KyEditorUserConfig::endGroup();
    QVERIFY(!QFile::exists(filePath()));

    KyEditorUserConfig::sync();

    QCOMPARE(Test::readFile(filePath()).replace("\r\n", "\n"),
             QByteArray("[General]\ntop=1\n\n[dock]\nname=left\nwidth=12\n"));
}

void tst_KyEditorUserConfig::changes_areWrittenByTheEventLoop()
{
    KyEditorUserConfig::setValue(QStringLiteral("key"), QStringLiteral("value"));

    QTRY_VERIFY(Test::readFile(filePath()).contains("key=value"));
}

void tst_KyEditorUserConfig::texts_areStoredInUtf8()
{
    KyEditorUserConfig::setValue(QStringLiteral("key"), QStringLiteral("\u540D\u524D \u00E4"));

    KyEditorUserConfig::sync();

    const QByteArray content = Test::readFile(filePath());
    QVERIFY2(content.contains("\xE5\x90\x8D\xE5\x89\x8D \xC3\xA4"), content.constData());
}

void tst_KyEditorUserConfig::value_isReadBack_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("text") << "key" << QVariant("text");
    QTest::newRow("empty text") << "key" << QVariant("");
    QTest::newRow("text in another script") << "key" << QVariant(QStringLiteral("\u540D\u524D \u00E4"));
    QTest::newRow("text with signs") << "key" << QVariant(QStringLiteral("a;b,c=\"d\" %1 [e]\\\n\t#"));
    QTest::newRow("text of 10,000 characters") << "key" << QVariant(QString(10000, QChar(0xE4)));
    QTest::newRow("key in another script")
        << QStringLiteral("\u540D\u524D/\u00E4 \u00F6") << QVariant("text");
    QTest::newRow("key with signs") << "a=b;c%d[e]" << QVariant("text");
    QTest::newRow("number") << "key" << QVariant("-12");
    QTest::newRow("bytes") << "key" << QVariant(QByteArray("\x00\x01\xFF@", 4));
    QTest::newRow("texts") << "key" << QVariant(QStringList({"a", "", "b, c", QStringLiteral("\u00E4")}));
    QTest::newRow("rectangle") << "key" << QVariant(QRect(1, -2, 3, 4));
}

void tst_KyEditorUserConfig::value_isReadBack()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);

    KyEditorUserConfig::setValue(key, value);
    QCOMPARE(KyEditorUserConfig::value(key, QVariant()), value);
    KyEditorUserConfig::sync();

    // A copy under another name is read from the disk and not from what this process remembers.
    const QTemporaryDir folder;
    const QString copy = folder.filePath(QStringLiteral("copy.ini"));
    QVERIFY(QFile::copy(filePath(), copy));
    QSettings settings(copy, QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    QCOMPARE(settings.value(key), value);
}

void tst_KyEditorUserConfig::missingValue_isTheDefault()
{
    QCOMPARE(KyEditorUserConfig::value(QStringLiteral("key"), 7), QVariant(7));
    QCOMPARE(KyEditorUserConfig::value(QStringLiteral("key"), QVariant()), QVariant());

    KyEditorUserConfig::setValue(QStringLiteral("key"), 8);

    QCOMPARE(KyEditorUserConfig::value(QStringLiteral("key"), 7), QVariant(8));
}

void tst_KyEditorUserConfig::groups_prefixTheKeys()
{
    QCOMPARE(KyEditorUserConfig::group(), QString());
    KyEditorUserConfig::beginGroup(QStringLiteral("outer"));
    QCOMPARE(KyEditorUserConfig::group(), QStringLiteral("outer"));
    KyEditorUserConfig::beginGroup(QStringLiteral("inner"));
    QCOMPARE(KyEditorUserConfig::group(), QStringLiteral("outer/inner"));
    KyEditorUserConfig::setValue(QStringLiteral("key"), 1);
    QCOMPARE(KyEditorUserConfig::value(QStringLiteral("key"), 0), QVariant(1));
    KyEditorUserConfig::endGroup();
    QCOMPARE(KyEditorUserConfig::group(), QStringLiteral("outer"));
    QCOMPARE(KyEditorUserConfig::value(QStringLiteral("key"), 0), QVariant(0));
    QCOMPARE(KyEditorUserConfig::value(QStringLiteral("inner/key"), 0), QVariant(1));
    KyEditorUserConfig::endGroup();

    QCOMPARE(KyEditorUserConfig::group(), QString());
    QCOMPARE(KyEditorUserConfig::value(QStringLiteral("outer/inner/key"), 0), QVariant(1));
    QCOMPARE(KyEditorUserConfig::settings()->allKeys(), QStringList({"outer/inner/key"}));
}

void tst_KyEditorUserConfig::sync_takesOverWhatOthersWrote()
{
    Test::writeFile(filePath(), "[dock]\nname=\xE5\x90\x8D\n");

    KyEditorUserConfig::sync();

    QCOMPARE(KyEditorUserConfig::value(QStringLiteral("dock/name"), QVariant()),
             QVariant(QStringLiteral("\u540D")));
}

void tst_KyEditorUserConfig::sync_keepsWhatOthersWrote()
{
    KyEditorUserConfig::setValue(QStringLiteral("mine"), 1);
    Test::writeFile(filePath(), "[General]\ntheirs=2\n");

    KyEditorUserConfig::sync();

    // In which order depends on the system.
    const QByteArray content = Test::readFile(filePath());
    QVERIFY2(content.contains("mine=1") && content.contains("theirs=2"), content.constData());
}

void tst_KyEditorUserConfig::missingFile_isAnEmptyStore()
{
    const QString folder = QFileInfo(filePath()).absolutePath();
    QVERIFY(QDir(folder).removeRecursively());

    KyEditorUserConfig::sync();
    QCOMPARE(KyEditorUserConfig::settings()->allKeys(), QStringList());
    QCOMPARE(KyEditorUserConfig::value(QStringLiteral("key"), 7), QVariant(7));
    QVERIFY(!QFile::exists(folder)); // reading makes nothing

    KyEditorUserConfig::setValue(QStringLiteral("key"), 8);
    KyEditorUserConfig::sync();
    QCOMPARE(Test::namesIn(folder), QStringList({"usersettings.ini"}));
}

void tst_KyEditorUserConfig::uselessFile_isAnEmptyStore_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("no settings\nat all\n");
    QTest::newRow("bytes") << QByteArray("\x00\xFF\xFE\x01\n\n\x80[[[[", 11);
    QTest::newRow("open section") << QByteArray("[dock\n");
    QTest::newRow("empty sections") << QByteArray("[]\n[a]\n[b]\n");
}

void tst_KyEditorUserConfig::uselessFile_isAnEmptyStore()
{
    QFETCH(QByteArray, content);
    Test::writeFile(filePath(), content);

    KyEditorUserConfig::sync();

    QCOMPARE(KyEditorUserConfig::settings()->allKeys(), QStringList());
    QCOMPARE(KyEditorUserConfig::value(QStringLiteral("key"), 7), QVariant(7));
    KyEditorUserConfig::setValue(QStringLiteral("key"), 8);
    KyEditorUserConfig::sync();
    QVERIFY(Test::readFile(filePath()).contains("key=8"));
}

void tst_KyEditorUserConfig::unreadableFile_isAnEmptyStore_data()
{
    QTest::addColumn<bool>("isFolder");

    QTest::newRow("folder") << true;
    QTest::newRow("permissions") << false;
}

void tst_KyEditorUserConfig::unreadableFile_isAnEmptyStore()
{
    QFETCH(bool, isFolder);
    if (isFolder) {
        QVERIFY(QDir().mkpath(filePath()));
    } else {
        Test::writeFile(filePath(), "[General]\nkey=8\n");
        QVERIFY(QFile::setPermissions(filePath(), QFileDevice::WriteOwner));
        if (QFile(filePath()).open(QIODevice::ReadOnly))
            QSKIP("This user may read every file");
    }

    KyEditorUserConfig::sync();

    QCOMPARE(KyEditorUserConfig::settings()->allKeys(), QStringList());
    QCOMPARE(KyEditorUserConfig::value(QStringLiteral("key"), 7), QVariant(7));
    KyEditorUserConfig::setValue(QStringLiteral("key"), 9);
    KyEditorUserConfig::sync();
    QCOMPARE(KyEditorUserConfig::value(QStringLiteral("key"), 7), QVariant(9)); // remembered all the same
    QVERIFY(isFolder ? QDir().rmdir(filePath()) : QFile::remove(filePath()));
}

KYTE_TEST_MAIN(tst_KyEditorUserConfig)
#include "tst_KyEditorUserConfig.moc"
