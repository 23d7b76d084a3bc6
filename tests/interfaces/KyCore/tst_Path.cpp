#include "KyTestMain.h"

#include "KyTestEnvironment.h"

#include <Path.h>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace Kyte;

class tst_Path : public QObject
{
    Q_OBJECT

private slots:
    void combine_data();
    void combine();
    void parts_data();
    void parts();
    void name_isBaseNameAndExtension();
    void replaceSepalator_data();
    void replaceSepalator();
    void hash_data();
    void hash();
    void hashOfAFileLargerThanOneRead_isItsDigest();
    void hashOfWhatIsNoReadableFile_isEmpty();
    void applicationFolders_lieInTheUsersFolders();
    void dataFolderOfStageFile_data();
    void dataFolderOfStageFile();
};

void tst_Path::combine_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("expected");

    QTest::newRow("plain") << "/a"
                           << "b"
                           << "/a/b";
    QTest::newRow("trailing") << "/a/"
                              << "b"
                              << "/a/b";
    QTest::newRow("leading") << "/a"
                             << "/b"
                             << "/a/b";
    QTest::newRow("both") << "/a/"
                          << "/b"
                          << "/a/b";
    QTest::newRow("many") << "/a//\\"
                          << "\\//b"
                          << "/a/b";
    QTest::newRow("back-slashes") << "C:\\a\\b\\"
                                  << "\\c\\d"
                                  << "C:/a/b/c/d";
    QTest::newRow("trailing of the second stays") << "a"
                                                  << "b/"
                                                  << "a/b/";
    QTest::newRow("leading of the first stays") << "//server/share"
                                                << "b"
                                                << "//server/share/b";
    QTest::newRow("root") << "/"
                          << "b"
                          << "/b";
    QTest::newRow("drive") << "C:/"
                           << "b"
                           << "C:/b";
    QTest::newRow("inner doubles stay") << "a//b"
                                        << "c//d"
                                        << "a//b/c//d";
    QTest::newRow("first empty") << ""
                                 << "b"
                                 << "b";
    QTest::newRow("first empty, second absolute") << ""
                                                  << "/b"
                                                  << "b";
    QTest::newRow("second empty") << "/a/"
                                  << ""
                                  << "/a";
    QTest::newRow("second only separators") << "/a"
                                            << "/\\"
                                            << "/a";
    QTest::newRow("root and nothing") << "/"
                                      << ""
                                      << "/";
    QTest::newRow("both empty") << ""
                                << ""
                                << "";
    QTest::newRow("text with a place mark") << "/%2"
                                            << "%1"
                                            << "/%2/%1";
}

void tst_Path::combine()
{
    QFETCH(QString, first);
    QFETCH(QString, second);

    QTEST(Path::combine(first, second), "expected");
}

void tst_Path::parts_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("baseName");
    QTest::addColumn<QString>("extension");

    QTest::newRow("file") << "/a/b.txt"
                          << "/a"
                          << "b.txt"
                          << "b"
                          << "txt";
    QTest::newRow("upper case") << "/a/B.TXT"
                                << "/a"
                                << "B.TXT"
                                << "B"
                                << "txt";
    QTest::newRow("two dots") << "/a/b.tar.gz"
                              << "/a"
                              << "b.tar.gz"
                              << "b.tar"
                              << "gz";
    QTest::newRow("no extension") << "/a/b"
                                  << "/a"
                                  << "b"
                                  << "b"
                                  << "";
    QTest::newRow("dot in the folder") << "/a.d/b"
                                       << "/a.d"
                                       << "b"
                                       << "b"
                                       << "";
    QTest::newRow("hidden") << "/a/.hidden"
                            << "/a"
                            << ".hidden"
                            << ".hidden"
                            << "";
    QTest::newRow("hidden with extension") << "/a/.h.png"
                                           << "/a"
                                           << ".h.png"
                                           << ".h"
                                           << "png";
    QTest::newRow("last dot") << "/a/name."
                              << "/a"
                              << "name."
                              << "name."
                              << "";
    QTest::newRow("trailing separator") << "/a/b.d/"
                                        << "/a"
                                        << "b.d"
                                        << "b"
                                        << "d";
    QTest::newRow("many separators") << "/a//b.d//"
                                     << "/a"
                                     << "b.d"
                                     << "b"
                                     << "d";
    QTest::newRow("back-slashes") << "C:\\a\\b.txt"
                                  << "C:/a"
                                  << "b.txt"
                                  << "b"
                                  << "txt";
    QTest::newRow("below the root") << "/a.b"
                                    << "/"
                                    << "a.b"
                                    << "a"
                                    << "b";
    QTest::newRow("below a drive") << "C:\\a.b"
                                   << "C:/"
                                   << "a.b"
                                   << "a"
                                   << "b";
    QTest::newRow("network") << "\\\\server\\a.b"
                             << "//server"
                             << "a.b"
                             << "a"
                             << "b";
    QTest::newRow("bare name") << "b.txt"
                               << ""
                               << "b.txt"
                               << "b"
                               << "txt";
    QTest::newRow("relative") << "a/b.txt"
                              << "a"
                              << "b.txt"
                              << "b"
                              << "txt";
    QTest::newRow("root") << "/"
                          << ""
                          << ""
                          << ""
                          << "";
    QTest::newRow("drive") << "C:\\"
                           << ""
                           << ""
                           << ""
                           << "";
    QTest::newRow("two dots alone") << "/a/.."
                                    << "/a"
                                    << ".."
                                    << ".."
                                    << "";
    QTest::newRow("empty") << ""
                           << ""
                           << ""
                           << ""
                           << "";
    QTest::newRow("other letters") << u8"/ä/ö.ÜÄ" << u8"/ä" << u8"ö.ÜÄ" << u8"ö" << u8"üä";
}

void tst_Path::parts()
{
    QFETCH(QString, path);

    QTEST(Path::getParentDirectory(path), "parent");
    QTEST(Path::getName(path, true), "name");
    QTEST(Path::getName(path, false), "baseName");
    QTEST(Path::getExtension(path), "extension");
}

void tst_Path::name_isBaseNameAndExtension()
{
    for (const char *name : {"a", "a.b", ".a", "a.", "..", ".", "...", ".a.b", "a..b", "..b"}) {
        const QString text = QString::fromLatin1(name);
        const QString extension = Path::getExtension(text);
        const QString tail = extension.isEmpty() ? QString() : QLatin1Char('.') + extension;
        QCOMPARE(Path::getName(text, false) + tail, Path::getName(text, true));
    }
}

void tst_Path::replaceSepalator_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");

    QTest::newRow("back-slashes") << "C:\\a\\b"
                                  << "C:/a/b";
    QTest::newRow("mixed") << "C:\\a/b"
                           << "C:/a/b";
    QTest::newRow("already normal") << "/a/b"
                                    << "/a/b";
    QTest::newRow("nothing is collapsed") << "\\\\server\\\\share\\"
                                          << "//server//share/";
    QTest::newRow("empty") << ""
                           << "";
}

void tst_Path::replaceSepalator()
{
    QFETCH(QString, path);

    QTEST(Path::replaceSepalator(path), "expected");
}

void tst_Path::hash_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("expected");

    QTest::newRow("empty file") << QByteArray() << "da39a3ee5e6b4b0d3255bfef95601890afd80709";
    QTest::newRow("abc") << QByteArray("abc") << "a9993e364706816aba3e25717850c26c9cd0d89d";
    QTest::newRow("lines are bytes") << QByteArray("a\r\nb\n") << "044e9f44623a4d52ed40c2b3dbcff10322a52d97";
    QTest::newRow("NUL byte") << QByteArray("\0", 1) << "5ba93c9db0cff93f52b521d7420e43f6eda2784f";
}

void tst_Path::hash()
{
    QFETCH(QByteArray, content);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("file"));
    Test::writeFile(path, content);

    QTEST(Path::getHashSha1(path), "expected");
}

void tst_Path::hashOfAFileLargerThanOneRead_isItsDigest()
{
    const QByteArray content = QByteArray("0123456789").repeated(100001);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("file"));
    Test::writeFile(path, content);

    QCOMPARE(Path::getHashSha1(path).toLatin1(),
             QCryptographicHash::hash(content, QCryptographicHash::Sha1).toHex());
}

void tst_Path::hashOfWhatIsNoReadableFile_isEmpty()
{
    const QTemporaryDir folder;

    QCOMPARE(Path::getHashSha1(folder.path()), QString());
    QCOMPARE(Path::getHashSha1(folder.filePath(QStringLiteral("missing"))), QString());
    QCOMPARE(Path::getHashSha1(QString()), QString());
#ifdef Q_OS_UNIX
    const QString pipe = folder.filePath(QStringLiteral("pipe"));
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QCOMPARE(Path::getHashSha1(pipe), QString());
#endif
#ifdef Q_OS_LINUX
    QCOMPARE(Path::getHashSha1(QStringLiteral("/proc/self/mem")), QString()); // opens, but cannot be read
#endif
}

void tst_Path::applicationFolders_lieInTheUsersFolders()
{
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);

    QCOMPARE(int(ExecFunction::Editor), 1);
    QCOMPARE(Path::getApplicationDataFolderPath(ExecFunction::Editor), data + QStringLiteral("/kyte/Editor"));
    QCOMPARE(Path::getApplicationDataFolderPath(static_cast<ExecFunction::ExecFunctions>(2)), QString());
    QCOMPARE(Path::getApplicationCacheFolderPath(), cache + QStringLiteral("/kyte"));
    QVERIFY(!QFileInfo::exists(Path::getApplicationCacheFolderPath()));
}

void tst_Path::dataFolderOfStageFile_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("expected");

    QTest::newRow("plain") << "/a/b.kystage"
                           << "/a/b_data";
    QTest::newRow("back-slashes") << "C:\\a\\b.kystage"
                                  << "C:/a/b_data";
    QTest::newRow("two dots") << "/a/b.c.kystage"
                              << "/a/b.c_data";
    QTest::newRow("no extension") << "/a/b"
                                  << "/a/b_data";
    QTest::newRow("below the root") << "/b.kystage"
                                    << "/b_data";
    QTest::newRow("bare name") << "b.kystage"
                               << "b_data";
    QTest::newRow("empty") << ""
                           << "";
}

void tst_Path::dataFolderOfStageFile()
{
    QFETCH(QString, file);

    QTEST(Path::getDataFolderByStageFile(file), "expected");
}

KYTE_TEST_MAIN(tst_Path)
#include "tst_Path.moc"
