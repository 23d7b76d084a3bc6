#include <KyTestMain.h>
#include <TextTable.h>

using namespace Kyte;

class tst_TextTable : public QObject
{
    Q_OBJECT

private slots:
    void rows_areAlignedBelowTitles();
    void noRows_leavesTitlesAndRule();
    void displayWidth_data();
    void displayWidth();
    void wideTable_fitsInto100Columns();
    void cutCell_endsWithEllipsis();
    void narrowColumns_areLeftWhole();
    void hugeCell_isCut();
    void controlCharacters_areReplaced();
};

static QStringList lines(const TextTable &table)
{
    return table.toString().split(QLatin1Char('\n'));
}

void tst_TextTable::rows_areAlignedBelowTitles()
{
    TextTable table({{QStringLiteral("Id"), TextTable::Right},
                     {QStringLiteral("Name"), TextTable::Left},
                     {QStringLiteral("Count"), TextTable::Right}});
    table.addRow({QStringLiteral("7"), QStringLiteral("Bakery"), QStringLiteral("12")});
    table.addRow({QStringLiteral("1234"), QStringLiteral("Café"), QString()});
    QCOMPARE(table.toString(),
             QStringLiteral("    Id  Name    Count\n"
                            "  ----  ------  -----\n"
                            "     7  Bakery     12\n"
                            "  1234  Café\n"));
}

void tst_TextTable::noRows_leavesTitlesAndRule()
{
    const TextTable table({{QStringLiteral("Id"), TextTable::Right}});
    QCOMPARE(table.toString(), QStringLiteral("  Id\n  --\n"));
}

void tst_TextTable::displayWidth_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("width");
    QTest::newRow("empty") << QString() << 0;
    QTest::newRow("Latin") << QStringLiteral("Größe") << 5;
    QTest::newRow("combining mark") << QStringLiteral("e\u0301") << 1;
    QTest::newRow("Japanese") << QStringLiteral("東京駅") << 6;
    QTest::newRow("Korean") << QStringLiteral("서울") << 4;
    QTest::newRow("beyond the first plane") << QString::fromUtf8("\xF0\xA0\x80\x80") << 2;
    QTest::newRow("zero width joiner") << QStringLiteral("a\u200Db") << 2;
}

void tst_TextTable::displayWidth()
{
    QFETCH(QString, text);
    QTEST(TextTable::displayWidth(text), "width");
}

void tst_TextTable::wideTable_fitsInto100Columns()
{
    TextTable table(
        {{QStringLiteral("First"), TextTable::Left}, {QStringLiteral("Second"), TextTable::Right}});
    table.addRow({QString(80, QLatin1Char('a')), QString(80, QLatin1Char('b'))});
    table.addRow({QString(40, QChar(0x6771)), QString(81, QLatin1Char('c'))});
    const QStringList text = lines(table);
    QCOMPARE(text.size(), 5);
    for (const QString &line : text)
        QVERIFY2(TextTable::displayWidth(line) <= 100, qPrintable(line));
    QCOMPARE(TextTable::displayWidth(text.at(1)), 100);
}

void tst_TextTable::cutCell_endsWithEllipsis()
{
    TextTable table({{QStringLiteral("Text"), TextTable::Left}});
    table.addRow({QString(98, QLatin1Char('a'))});
    table.addRow({QString(99, QLatin1Char('a'))});
    QCOMPARE(lines(table).at(2), QStringLiteral("  ") + QString(98, QLatin1Char('a')));
    QCOMPARE(lines(table).at(3), QStringLiteral("  ") + QString(97, QLatin1Char('a')) + QChar(0x2026));
}

void tst_TextTable::narrowColumns_areLeftWhole()
{
    TextTable table({{QStringLiteral("Id"), TextTable::Right}, {QStringLiteral("Name"), TextTable::Left}});
    table.addRow({QStringLiteral("123456789"), QString(200, QLatin1Char('n'))});
    QVERIFY(lines(table).at(2).startsWith(QStringLiteral("  123456789  nnn")));
}

void tst_TextTable::hugeCell_isCut()
{
    TextTable table({{QStringLiteral("Name"), TextTable::Left}});
    table.addRow({QString(10000, QLatin1Char('n'))});
    QCOMPARE(lines(table).at(2).size(), 100);
}

void tst_TextTable::controlCharacters_areReplaced()
{
    TextTable table({{QStringLiteral("Name"), TextTable::Left}});
    table.addRow({QStringLiteral("a\x1b[31m\nb\tc\u2028d\u0085")});
    QCOMPARE(lines(table).at(2), QStringLiteral("  a\uFFFD[31m\uFFFDb\uFFFDc\uFFFDd\uFFFD"));
}

KYTE_TEST_MAIN(tst_TextTable)
#include "tst_TextTable.moc"
