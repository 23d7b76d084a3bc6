#include "KyTestMain.h"

#include <KyPatternSize_p.h>

using namespace Kyte;

class tst_KyPatternSize : public QObject
{
    Q_OBJECT

private slots:
    void size_data();
    void size();
};

void tst_KyPatternSize::size_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<int>("expected");

    QTest::newRow("empty") << QString() << 0;
    QTest::newRow("characters") << QStringLiteral("abc") << 3;
    QTest::newRow("escape") << QStringLiteral("\\(\\{9}") << 4;
    QTest::newRow("class") << QStringLiteral("[a(){9}]") << 1;
    QTest::newRow("class with its end in it") << QStringLiteral("[]a][^]b][\\]c]") << 3;
    QTest::newRow("open class") << QStringLiteral("a[bcd") << 2;
    QTest::newRow("repeated character") << QStringLiteral("ab{5}") << 6;
    QTest::newRow("from and to") << QStringLiteral("a{2,7}") << 7;
    QTest::newRow("open end") << QStringLiteral("a{3,}") << 3;
    QTest::newRow("none") << QStringLiteral("a{0}") << 1;
    QTest::newRow("repeated group") << QStringLiteral("(ab){5}c") << 11;
    QTest::newRow("repeated repetition") << QStringLiteral("((ab){5}){4}") << 40;
    QTest::newRow("parenthesis in a class") << QStringLiteral("(aaaa[(]){10}") << 50;
    QTest::newRow("too large") << QStringLiteral("(a{40}){40}") << 101;
    QTest::newRow("far too large") << QStringLiteral("((((a{999999999}){999999999}){999999999}){999999999})")
                                   << 101;
    QTest::newRow("long") << QString(200, QLatin1Char('a')) << 101;
    QTest::newRow("deep") << QString(101, QLatin1Char('(')) << 101;
    QTest::newRow("not closed") << QStringLiteral("((ab") << 2;
    QTest::newRow("not opened") << QStringLiteral("ab)") << 3;
}

void tst_KyPatternSize::size()
{
    QFETCH(QString, pattern);
    QTEST(regExpPatternSize(pattern, 100), "expected");
}

KYTE_TEST_MAIN(tst_KyPatternSize)
#include "tst_KyPatternSize.moc"
