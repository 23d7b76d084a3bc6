#include "KyTestMain.h"

#include <KyShellPath_p.h>

using namespace Kyte;

class tst_KyShellPath : public QObject
{
    Q_OBJECT

private slots:
    void longShellPath_data();
    void longShellPath();
};

void tst_KyShellPath::longShellPath_data()
{
    const QString longName(300, QLatin1Char('n'));

    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("expected");

    QTest::newRow("folder") << QStringLiteral("C:/media") << QStringLiteral(R"(\\?\C:\media)");
    QTest::newRow("folders") << QStringLiteral("C:/media/old films")
                             << QStringLiteral(R"(\\?\C:\media\old films)");
    QTest::newRow("drive") << QStringLiteral("D:/") << QStringLiteral(R"(\\?\D:\)");
    QTest::newRow("share") << QStringLiteral("//server/share") << QStringLiteral(R"(\\?\UNC\server\share)");
    QTest::newRow("folder in a share")
        << QStringLiteral("//server/share/films/old") << QStringLiteral(R"(\\?\UNC\server\share\films\old)");
    QTest::newRow("native drive path") << QStringLiteral(R"(C:\media)") << QStringLiteral(R"(\\?\C:\media)");
    QTest::newRow("native network path")
        << QStringLiteral(R"(\\server\share)") << QStringLiteral(R"(\\?\UNC\server\share)");
    QTest::newRow("mixed separators")
        << QStringLiteral(R"(/\server/share)") << QStringLiteral(R"(\\?\UNC\server\share)");
    QTest::newRow("one separator in front")
        << QStringLiteral("/home/user") << QStringLiteral(R"(\\?\\home\user)");
    QTest::newRow("other alphabets") << QStringLiteral("C:/f\u00fcr/\u6620\u753b")
                                     << QStringLiteral("\\\\?\\C:\\f\u00fcr\\\u6620\u753b");
    QTest::newRow("long") << QStringLiteral("C:/") + longName << QStringLiteral(R"(\\?\C:\)") + longName;
}

void tst_KyShellPath::longShellPath()
{
    QFETCH(QString, folder);
    QTEST(Kyte::longShellPath(folder), "expected");
}

KYTE_TEST_MAIN(tst_KyShellPath)
#include "tst_KyShellPath.moc"
