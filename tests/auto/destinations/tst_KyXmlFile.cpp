#include "KyTestMain.h"

#include "KyTestEnvironment.h"

#include <KyXmlFile_p.h>

#include <QTextCodec>

#ifdef Q_OS_UNIX
#include "KyFullDevice.h"

#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>
#endif

using namespace Kyte;

static const int LIMIT = 1 << 20;

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

/** \a text in \a encoding, without a byte order mark. */
static QByteArray encoded(const QString &text, const char *encoding)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    return QTextCodec::codecForName(encoding)->fromUnicode(text.constData(), text.size(), &state);
}

class tst_KyXmlFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void read_givesTheTextOfTheFile_data();
    void read_givesTheTextOfTheFile();
    void read_decodesTheWholeFile_data();
    void read_decodesTheWholeFile();
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

void tst_KyXmlFile::read_givesTheTextOfTheFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("expected");

    QTest::newRow("empty") << QByteArray("") << "";
    QTest::newRow("one line") << QByteArray("<a/>") << "<a/>";
    QTest::newRow("line ends") << QByteArray("<a>\n</a>\r\n") << "<a>\n</a>\r\n";
    QTest::newRow("UTF-8") << QByteArray("<a b=\"\xE3\x81\x82\"/>") << QStringLiteral("<a b=\"\u3042\"/>");
    QTest::newRow("beyond 16 bits") << QByteArray("<\xF0\x9F\x98\x80/>") << QStringLiteral("<\U0001F600/>");
    QTest::newRow("replacement character")
        << QByteArray("<a b='\xEF\xBF\xBD'/>") << QStringLiteral("<a b='\uFFFD'/>");
    QTest::newRow("no XML") << QByteArray("\x01\x02 garbage <<<") << "\x01\x02 garbage <<<";

    QTest::newRow("invalid UTF-8") << QByteArray("<a>\xE4</a>") << "<a>";
    QTest::newRow("invalid US-ASCII") << QByteArray("<?xml version='1.0' encoding='US-ASCII'?><a>\xE4</a>")
                                      << "<?xml version='1.0' encoding='US-ASCII'?><a>";
    QTest::newRow("half a pair in UTF-16") << QByteArray("<\0a\0>\0\0\xD8z\0", 10) << "<a>";
    QTest::newRow("second half in UTF-16") << QByteArray("<\0a\0>\0\0\xDCz\0", 10) << "<a>";
    QTest::newRow("half a pair at the end") << QByteArray("<\0a\0>\0\0\xD8", 8) << "<a>";
    QTest::newRow("half a pair in UTF-32") << QByteArray("<\0\0\0\0\xD8\0\0>\0\0\0", 12) << "<";
}

void tst_KyXmlFile::read_givesTheTextOfTheFile()
{
    QFETCH(QByteArray, content);
    Test::writeFile(path(), content);
    QString read = QStringLiteral("former");

    QVERIFY(XmlFile::read(path(), LIMIT, &read));

    QTEST(read, "expected");
}

void tst_KyXmlFile::read_decodesTheWholeFile_data()
{
    QTest::addColumn<QByteArray>("mark");
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<QString>("declared"); // empty: no declaration

    const auto row = [](const char *name, const QByteArray &mark, const char *encoding,
                        const char *declared = "") {
        QTest::newRow(name) << mark << QByteArray(encoding) << declared;
    };
    row("not declared", "", "UTF-8");
    row("UTF-8", "", "UTF-8", "UTF-8");
    row("UTF-8 without hyphen", "", "UTF-8", "utf8");
    row("UTF-8 with mark", "\xEF\xBB\xBF", "UTF-8");
    row("UTF-8 with mark and another declaration", "\xEF\xBB\xBF", "UTF-8", "Shift_JIS");
    row("US-ASCII", "", "US-ASCII", "US-ASCII");
    row("Latin-1", "", "ISO-8859-1", "iso-8859-1");
    row("Shift_JIS", "", "Shift_JIS", "Shift_JIS");
    row("ISO-2022-JP", "", "ISO-2022-JP", "ISO-2022-JP");
    row("UTF-16, low byte first", "", "UTF-16LE");
    row("UTF-16, high byte first", "", "UTF-16BE");
    row("UTF-16, low byte first, declared", "", "UTF-16LE", "UTF-16");
    row("UTF-16, low byte first, with mark", "\xFF\xFE", "UTF-16LE", "UTF-16");
    row("UTF-16, high byte first, with mark", "\xFE\xFF", "UTF-16BE", "UTF-16");
    row("UTF-32, low byte first", "", "UTF-32LE");
    row("UTF-32, high byte first", "", "UTF-32BE");
    row("UTF-32, low byte first, with mark", QByteArray("\xFF\xFE\0\0", 4), "UTF-32LE");
    row("UTF-32, high byte first, with mark", QByteArray("\0\0\xFE\xFF", 4), "UTF-32BE");
}

void tst_KyXmlFile::read_decodesTheWholeFile()
{
    QFETCH(QByteArray, mark);
    QFETCH(QByteArray, encoding);
    QFETCH(QString, declared);
    QString text = QStringLiteral("<a>\r\n");
    if (!declared.isEmpty())
        text.prepend(QStringLiteral("<?xml version='1.0' encoding='%1'?>").arg(declared));
    const QTextCodec *codec = QTextCodec::codecForName(encoding);
    if (!codec)
        QSKIP("A Qt without ICU does not know this encoding");
    for (const QChar sign : {QChar(u'\u00E4'), QChar(u'\u3042'), QChar(u'\u8868')}) {
        if (codec->canEncode(sign))
            text += sign;
    }
    text += QStringLiteral("<b c='1'/>\n").repeated(4000) + QStringLiteral("</a>");
    Test::writeFile(path(), mark + encoded(text, encoding));
    QString read;

    QVERIFY(XmlFile::read(path(), LIMIT, &read));

    QVERIFY2(read == text, qPrintable(read.left(80)));
}

void tst_KyXmlFile::read_acceptsWhatAReaderCanHandle_data()
{
    QTest::addColumn<QByteArray>("content");

    const QByteArray utf8 = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
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
    for (const QByteArray &harmless :
         {QByteArray("<!ENTITY b 'c'>"), QByteArray("<!ATTLIST a b CDATA 'c'>"), QByteArray("<!DOCTYPE a ["),
          "<a" + attributes(65) + ">", QByteArray("<a \"")}) {
        const QByteArray name = harmless.left(12);
        QTest::addRow("%s in a comment", name.constData()) << "<a><!-- " + harmless + " --></a>";
        QTest::addRow("%s in literal text", name.constData()) << "<a><![CDATA[" + harmless + "]]></a>";
        QTest::addRow("%s in an instruction", name.constData()) << "<a><?b " + harmless + "?></a>";
        QTest::addRow("%s in an open comment", name.constData()) << "<a><!-- " + harmless;
    }
    QTest::newRow("bracket in the name of a document type") << QByteArray("<!DOCTYPE a SYSTEM '['><a/>");
    QTest::newRow("brackets in the text") << QByteArray("<a b='['>[<b [/></a>");
}

void tst_KyXmlFile::read_acceptsWhatAReaderCanHandle()
{
    QFETCH(QByteArray, content);
    Test::writeFile(path(), content);
    QString read;

    QVERIFY(XmlFile::read(path(), LIMIT, &read));

    QCOMPARE(read, QString::fromUtf8(content));
}

void tst_KyXmlFile::read_cutsOffWhatKeepsAReaderBusy_data()
{
    QTest::addColumn<QByteArray>("kept");
    QTest::addColumn<QByteArray>("cutOff");

    const QByteArray none;
    const QByteArray declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- -->\n";
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
    const QByteArray begin = "<!DOCTYPE a [";
    const QByteArray bomb = "<!ENTITY b 'xxxxxxxx'>]><a>" + QByteArray("&b;").repeated(1000) + "</a>";
    QTest::newRow("entity bomb") << none << begin + bomb;
    QTest::newRow("entity bomb behind a declaration") << declaration << "<!DOCTYPE a\n[\n" + bomb;
    QTest::newRow("entity bomb behind a comment") << QByteArray("<!-- <!DOCTYPE a> -->") << begin + bomb;
    QTest::newRow("entity bomb behind an empty comment") << QByteArray("<!---->") << begin + bomb;
    QTest::newRow("entity bomb behind literal text") << QByteArray("<![CDATA[<a '-->]]>") << begin + bomb;
    QTest::newRow("entity bomb behind an instruction") << QByteArray("<?b '\"<!--?>") << begin + bomb;
    QTest::newRow("entity bomb behind a literal") << none << "<!DOCTYPE a SYSTEM \">'\" [" + bomb;
    QTest::newRow("element declaration") << none << begin + "<!ELEMENT a EMPTY>]>\n<a/>";
    QTest::newRow("attribute list") << none << begin + " <!-- --><!ATTLIST a b CDATA 'c'>";
    QTest::newRow("notation") << none << begin + "<!NOTATION a SYSTEM 'c'>]><a/>";
    QTest::newRow("no declaration yet") << none << QByteArray("<!DOCTYPE a []><a/>");
}

void tst_KyXmlFile::read_cutsOffWhatKeepsAReaderBusy()
{
    QFETCH(QByteArray, kept);
    QFETCH(QByteArray, cutOff);
    Test::writeFile(path(), kept + cutOff);
    QString read = QStringLiteral("former");

    QVERIFY(kept.size() + cutOff.size() <= LIMIT);
    QVERIFY(XmlFile::read(path(), LIMIT, &read));

    QCOMPARE(read, QString::fromUtf8(kept));
}

void tst_KyXmlFile::read_refusesMoreThanTheLimit()
{
    QString read;
    Test::writeFile(path(), "<a/>");

    QVERIFY(XmlFile::read(path(), 4, &read));
    QVERIFY(!XmlFile::read(path(), 3, &read));
}

void tst_KyXmlFile::read_ofWhatIsNoFile_isRefused()
{
    QString read;

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
    QString read;

    QVERIFY(!XmlFile::read(path(), LIMIT, &read));
}

#ifdef Q_OS_LINUX
void tst_KyXmlFile::read_ofAFileThatGrows_isRefused()
{
    // A file that has more than its size tells, as one has that grows after the question.
    const QString growing = QStringLiteral("/proc/self/status");
    QCOMPARE(QFileInfo(growing).size(), 0);
    QString read;

    QVERIFY(!XmlFile::read(growing, LIMIT, &read));
}

void tst_KyXmlFile::read_thatFailsHalfway_isRefused()
{
    const QString failing = QStringLiteral("/proc/self/mem"); // can be opened, but page 0 cannot be read
    QFile file(failing);
    if (!file.open(QIODevice::ReadOnly))
        QSKIP("This process may not open its memory");
    QString read;

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
