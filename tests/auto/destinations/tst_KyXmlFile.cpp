#include "KyTestMain.h"

#include "KyTestEnvironment.h"

#include <KyXmlFile_p.h>

#ifdef Q_OS_UNIX
#include "KyFullDevice.h"

#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>
#endif

using namespace Kyte;

static const int LIMIT = 1 << 20;
static const int FOREIGN_LIMIT = 32 << 10;

static QByteArray attributes(int count, const QByteArray &begin = " a", const QByteArray &value = "=\"\"")
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += begin + QByteArray::number(i) + value;
    return text;
}

/** \a document with a comment that brings it to \a size bytes. */
static QByteArray padded(const QByteArray &document, int size)
{
    return document + "<!--" + QByteArray(size - document.size() - 7, 'x') + "-->";
}

class tst_KyXmlFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void read_givesTheBytesOfTheFile_data();
    void read_givesTheBytesOfTheFile();
    void read_acceptsWhatAReaderCanHandle_data();
    void read_acceptsWhatAReaderCanHandle();
    void read_cutsOffWhatKeepsAReaderBusy_data();
    void read_cutsOffWhatKeepsAReaderBusy();
    void read_refusesMoreThanTheLimit();
    void read_ofWhatIsNoFile_isRefused();
    void read_ofAnUnreadableFile_isRefused();
#ifdef Q_OS_LINUX
    void read_ofAFileThatGrows_isRefused();
    void read_thatFailsHalfway_isRefused();
#endif

    void write_makesTheFile();
    void write_replacesTheFile();
    void write_keepsThePermissions();
    void write_ofNothing_makesAnEmptyFile();
    void write_toWhatIsNoFile_isRefused();
    void write_toAReadOnlyFile_isRefused();
#ifdef Q_OS_UNIX
    void write_throughALink_replacesItsTarget();
    void write_toADevice_isRefusedAndLeavesTheDevice();
    void write_beyondTheDisk_keepsTheFormerFile_data();
    void write_beyondTheDisk_keepsTheFormerFile();
#endif
    void write_onAFullDisk_keepsTheFormerFile();

private:
    QString path(const QString &name = QStringLiteral("file.xml")) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_KyXmlFile::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void tst_KyXmlFile::cleanup()
{
    m_folder.reset();
}

QString tst_KyXmlFile::path(const QString &name) const
{
    return m_folder->filePath(name);
}

void tst_KyXmlFile::read_givesTheBytesOfTheFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("empty") << QByteArray("") << QByteArray("");
    QTest::newRow("one line") << QByteArray("<a/>") << QByteArray("<a/>");
    QTest::newRow("line ends of this system") << QByteArray("<a>\n</a>\n") << QByteArray("<a>\n</a>\n");
    QTest::newRow("line ends of another") << QByteArray("<a>\r\n</a>\r\n") << QByteArray("<a>\n</a>\n");
    QTest::newRow("UTF-8") << QByteArray("<a b=\"\xE3\x81\x82\"/>") << QByteArray("<a b=\"\xE3\x81\x82\"/>");
    QTest::newRow("no XML") << QByteArray("\x01\x02 garbage <<<") << QByteArray("\x01\x02 garbage <<<");
}

void tst_KyXmlFile::read_givesTheBytesOfTheFile()
{
    QFETCH(QByteArray, content);
    Test::writeFile(path(), content);
    QByteArray read = "former";

    QVERIFY(XmlFile::read(path(), LIMIT, &read));

    QTEST(read, "expected");
}

void tst_KyXmlFile::read_acceptsWhatAReaderCanHandle_data()
{
    QTest::addColumn<QByteArray>("content");

    const QByteArray utf8 = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
    const QByteArray japanese = "<?xml version=\"1.0\" encoding=\"Shift_JIS\"?>";
    QTest::newRow("64 attributes") << "<a" + attributes(64) + "/>";
    QTest::newRow("64 attributes in every tag") << ("<a" + attributes(64) + ">").repeated(100);
    QTest::newRow("quotes and signs in a value") << "<a b=\"" + QByteArray("'='>").repeated(1000) + "\" c='"
            + QByteArray("\"=>").repeated(1000) + "'/>";
    QTest::newRow("quotes and signs in the text") << "<a>" + QByteArray("='' =\"\" ").repeated(1000) + "</a>";
    QTest::newRow("value of 100,000 characters") << "<a b=\"" + QByteArray(100000, 'x') + "\"/>";
    QTest::newRow("large without declaration") << padded("<a/>", LIMIT);
    QTest::newRow("large, declared without encoding") << padded("<?xml version=\"1.0\"?><a/>", LIMIT);
    QTest::newRow("large, declared as UTF-8") << padded(utf8 + "<a/>", LIMIT);
    QTest::newRow("large, declared in small letters") << padded(utf8.toLower() + "<a/>", LIMIT);
    QTest::newRow("large with byte order mark") << padded("\xEF\xBB\xBF" + utf8 + "<a/>", LIMIT);
    QTest::newRow("quotes in a comment and an instruction") << "<!-- " + QByteArray("'x' ").repeated(1000)
            + "--><?a " + QByteArray("\"x\" ").repeated(1000) + "?><a/>";
    QTest::newRow("cut off behind a tag's begin") << QByteArray("<a><!");
    QTest::newRow("document type without declarations") << QByteArray("<!DOCTYPE a>\n<a b='['/>");
    QTest::newRow("32 KiB in Shift_JIS") << padded(japanese + "<a/>", FOREIGN_LIMIT);
    QTest::newRow("32 KiB in UTF-16")
        << "\xFF\xFE" + QByteArray("<\0a\0/\0>\0", 8) + QByteArray(" \0", 2).repeated(FOREIGN_LIMIT / 2 - 5);
}

void tst_KyXmlFile::read_acceptsWhatAReaderCanHandle()
{
    QFETCH(QByteArray, content);
    Test::writeFile(path(), content);
    QByteArray read;

    QVERIFY(XmlFile::read(path(), LIMIT, &read));

    QCOMPARE(read, content);
}

void tst_KyXmlFile::read_cutsOffWhatKeepsAReaderBusy_data()
{
    QTest::addColumn<QByteArray>("kept");
    QTest::addColumn<QByteArray>("cutOff");

    const QByteArray none;
    const QByteArray declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- -->\n";
    const QByteArray japanese = "<?xml version=\"1.0\" encoding=\"Shift_JIS\"?>";
    const QByteArray foreign =
        "<?xml version=\"1.0\"" + QByteArray(300, ' ') + "encoding=\"Shift_JIS\"?><a/>";
    QTest::newRow("65 attributes") << none << "<a" + attributes(65) + "/>";
    QTest::newRow("65 attributes in single quotes") << none << "<a" + attributes(65, " a", "=''") + "/>";
    QTest::newRow("65 attributes with spaces")
        << none << "<a" + attributes(65, "\n a", " = \t\r\n\"\"") + "/>";
    QTest::newRow("65 attributes with signs") << none << "<a" + attributes(65, " a", "='>\"/'") + "/>";
    QTest::newRow("65 attributes after an open quote")
        << QByteArray("<!-- \" --><a b='\"'>\"") << "<a" + attributes(65) + "/>";
    QTest::newRow("65 attributes in the last tag")
        << QByteArray("<a><b/>") << "<c" + attributes(65) + "/></a>";
    QTest::newRow("65 attributes and no end") << none << "<a" + attributes(65);
    QTest::newRow("100,000 attributes") << QByteArray("<b/>") << "<a" + attributes(100000) + "/>";
    const QByteArray bomb = "<!ENTITY b 'xxxxxxxx'>]><a>" + QByteArray("&b;").repeated(1000) + "</a>";
    QTest::newRow("entity bomb") << QByteArray("<!DOCTYPE a [") << bomb;
    QTest::newRow("entity bomb behind a declaration") << declaration + "<!DOCTYPE a\n[\n" << bomb;
    QTest::newRow("entity bomb behind a comment") << QByteArray("<!-- <!DOCTYPE a> --><!DOCTYPE a [") << bomb;
    QTest::newRow("entity bomb behind a literal") << QByteArray("<!DOCTYPE a SYSTEM \">'\" [") << bomb;
    QTest::newRow("element declaration")
        << QByteArray("<!DOCTYPE a [") << QByteArray("<!ELEMENT a EMPTY>]>\n<a/>");
    QTest::newRow("attribute list") << QByteArray("<!DOCTYPE a [ <!-- -->")
                                    << QByteArray("<!ATTLIST a b CDATA 'c'>");
    QTest::newRow("notation") << QByteArray("<!DOCTYPE a [") << QByteArray("<!NOTATION a SYSTEM 'c'>]><a/>");
    QTest::newRow("more than 32 KiB in Shift_JIS")
        << padded(japanese + "<a/>", FOREIGN_LIMIT) << QByteArray(" ");
    QTest::newRow("more than 32 KiB in UTF-16")
        << "\xFF\xFE" + QByteArray("<\0a\0/\0>\0", 8) + QByteArray(" \0", 2).repeated(FOREIGN_LIMIT / 2 - 5)
        << QByteArray(" \0", 2);
    QTest::newRow("more than 32 KiB in an unknown encoding")
        << padded("<?xml version=\"1.0\" encoding=\"none\"?><a/>", FOREIGN_LIMIT) << QByteArray(" ");
    QTest::newRow("more than 32 KiB behind an endless declaration")
        << padded(foreign, FOREIGN_LIMIT) << QByteArray(" ");
}

void tst_KyXmlFile::read_cutsOffWhatKeepsAReaderBusy()
{
    QFETCH(QByteArray, kept);
    QFETCH(QByteArray, cutOff);
    Test::writeFile(path(), kept + cutOff);
    QByteArray read = "former";

    QVERIFY(kept.size() + cutOff.size() <= LIMIT);
    QVERIFY(XmlFile::read(path(), LIMIT, &read));

    QCOMPARE(read, kept);
}

void tst_KyXmlFile::read_refusesMoreThanTheLimit()
{
    QByteArray read;
    Test::writeFile(path(), "<a/>");

    QVERIFY(XmlFile::read(path(), 4, &read));
    QVERIFY(!XmlFile::read(path(), 3, &read));
}

void tst_KyXmlFile::read_ofWhatIsNoFile_isRefused()
{
    QByteArray read;

    QVERIFY(!XmlFile::read(QString(), LIMIT, &read));
    QVERIFY(!XmlFile::read(path(), LIMIT, &read));
    QVERIFY(!XmlFile::read(m_folder->path(), LIMIT, &read));
#ifdef Q_OS_UNIX
    QCOMPARE(::mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
    QVERIFY(!XmlFile::read(path(), LIMIT, &read));
    QVERIFY(!XmlFile::read(QStringLiteral("/dev/zero"), LIMIT, &read));
#endif
}

void tst_KyXmlFile::read_ofAnUnreadableFile_isRefused()
{
    Test::writeFile(path(), "<a/>");
    QVERIFY(QFile::setPermissions(path(), QFileDevice::WriteOwner));
    if (QFile(path()).open(QIODevice::ReadOnly))
        QSKIP("This user may read every file");
    QByteArray read;

    QVERIFY(!XmlFile::read(path(), LIMIT, &read));
}

#ifdef Q_OS_LINUX
void tst_KyXmlFile::read_ofAFileThatGrows_isRefused()
{
    // A file that has more than its size tells, as one has that grows after the question.
    const QString growing = QStringLiteral("/proc/self/status");
    QCOMPARE(QFileInfo(growing).size(), 0);
    QByteArray read;

    QVERIFY(!XmlFile::read(growing, LIMIT, &read));
}

void tst_KyXmlFile::read_thatFailsHalfway_isRefused()
{
    const QString failing = QStringLiteral("/proc/self/mem"); // can be opened, but page 0 cannot be read
    QFile file(failing);
    if (!file.open(QIODevice::ReadOnly))
        QSKIP("This process may not open its memory");
    QByteArray read;

    QVERIFY(!XmlFile::read(failing, LIMIT, &read));
}
#endif

void tst_KyXmlFile::write_makesTheFile()
{
    QVERIFY(XmlFile::write(path(), "<a>\n</a>\n"));

    QCOMPARE(Test::readFile(path()), QByteArray("<a>\n</a>\n"));
    QCOMPARE(Test::namesIn(m_folder->path()), QStringList({"file.xml"}));
}

void tst_KyXmlFile::write_replacesTheFile()
{
    Test::writeFile(path(), QByteArray(100000, 'x'));

    QVERIFY(XmlFile::write(path(), "<a/>"));

    QCOMPARE(Test::readFile(path()), QByteArray("<a/>"));
    QCOMPARE(Test::namesIn(m_folder->path()), QStringList({"file.xml"}));
}

void tst_KyXmlFile::write_keepsThePermissions()
{
    Test::writeFile(path(), "former");
    const QFileDevice::Permissions permissions =
        QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup;
    QVERIFY(QFile::setPermissions(path(), permissions));
    const QFileDevice::Permissions former = QFile::permissions(path());

    QVERIFY(XmlFile::write(path(), "<a/>"));

    QCOMPARE(QFile::permissions(path()), former);
}

void tst_KyXmlFile::write_ofNothing_makesAnEmptyFile()
{
    Test::writeFile(path(), "former");

    QVERIFY(XmlFile::write(path(), QByteArray()));

    QVERIFY(QFileInfo(path()).isFile());
    QCOMPARE(QFileInfo(path()).size(), 0);
}

void tst_KyXmlFile::write_toWhatIsNoFile_isRefused()
{
    QVERIFY(!XmlFile::write(QString(), "<a/>"));
    QVERIFY(!XmlFile::write(m_folder->path(), "<a/>"));
    QVERIFY(!XmlFile::write(path(QStringLiteral("missing/file.xml")), "<a/>"));
#ifdef Q_OS_UNIX
    QCOMPARE(::mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
    QVERIFY(!XmlFile::write(path(), "<a/>"));
    QVERIFY(!QFileInfo(path()).isFile());
    QVERIFY(QFile::remove(path()));
#endif
    QCOMPARE(Test::namesIn(m_folder->path()), QStringList());
}

void tst_KyXmlFile::write_toAReadOnlyFile_isRefused()
{
    Test::writeFile(path(), "former");
    QVERIFY(QFile::setPermissions(path(), QFileDevice::ReadOwner));
    if (QFileInfo(path()).isWritable())
        QSKIP("This user may write every file");

    QVERIFY(!XmlFile::write(path(), "<a/>"));

    QCOMPARE(Test::readFile(path()), QByteArray("former"));
}

#ifdef Q_OS_UNIX
void tst_KyXmlFile::write_throughALink_replacesItsTarget()
{
    const QString target = path(QStringLiteral("target.xml"));
    Test::writeFile(target, "former");
    QVERIFY(QFile::link(target, path()));

    QVERIFY(XmlFile::write(path(), "<a/>"));

    QVERIFY(QFileInfo(path()).isSymLink());
    QCOMPARE(Test::readFile(target), QByteArray("<a/>"));
    QCOMPARE(Test::namesIn(m_folder->path()), QStringList({"file.xml", "target.xml"}));
}

void tst_KyXmlFile::write_toADevice_isRefusedAndLeavesTheDevice()
{
    const QString device = m_folder->filePath(QStringLiteral("device"));
    QVERIFY(Test::makeFullDevice(device));
    QVERIFY(QFile::link(device, path()));
    const QStringList former = Test::namesIn(m_folder->path());

    QVERIFY(!XmlFile::write(path(), "<a/>"));

    QVERIFY(QFile::exists(device) && !QFileInfo(device).isFile());
    QVERIFY(QFileInfo(path()).isSymLink());
    QCOMPARE(Test::namesIn(m_folder->path()), former);
}

void tst_KyXmlFile::write_beyondTheDisk_keepsTheFormerFile_data()
{
    QTest::addColumn<int>("size");

    QTest::newRow("only the last buffer does not fit") << 1000;
    QTest::newRow("half of it does not fit") << 100000;
}

void tst_KyXmlFile::write_beyondTheDisk_keepsTheFormerFile()
{
    QFETCH(int, size);
    Test::writeFile(path(), "former");

    // Files may not grow: as on a full disk, opening succeeds and writing does not.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit former = {};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &former), 0);
    const rlimit tiny = {rlim_t(size - 1), former.rlim_max};
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &tiny), 0);
    const bool isWritten = XmlFile::write(path(), QByteArray(size, 'x'));
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &former), 0);

    QVERIFY(!isWritten);
    QCOMPARE(Test::readFile(path()), QByteArray("former"));
    QCOMPARE(Test::namesIn(m_folder->path()), QStringList({"file.xml"}));
}
#endif

void tst_KyXmlFile::write_onAFullDisk_keepsTheFormerFile()
{
    Test::SmallDisk disk(64);
    if (!disk.isValid())
        QSKIP("No file system can be mounted here");
    const QString file = disk.path() + QStringLiteral("/file.xml");
    Test::writeFile(file, "former");
    disk.fill();

    QVERIFY(!XmlFile::write(file, "<a/>"));

    QCOMPARE(Test::readFile(file), QByteArray("former"));
    QCOMPARE(Test::namesIn(disk.path()), QStringList({"ballast", "file.xml"}));
    QVERIFY(QFile::remove(disk.path() + QStringLiteral("/ballast")));
    QVERIFY(XmlFile::write(file, "<a/>"));
    QCOMPARE(Test::readFile(file), QByteArray("<a/>"));
}

KYTE_TEST_MAIN(tst_KyXmlFile)
#include "tst_KyXmlFile.moc"
