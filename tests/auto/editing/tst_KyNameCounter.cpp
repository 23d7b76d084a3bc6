#include "KyTestMain.h"

#include <KyNameCounter_p.h>

#include <QRandomGenerator>
#include <QRegExp>

using namespace Kyte;

using Names = QMap<QString, int>;

class tst_KyNameCounter : public QObject
{
    Q_OBJECT

private slots:
    void baseName_data();
    void baseName();
    void numberedName_data();
    void numberedName();
    void firstFreeNumber_data();
    void firstFreeNumber();
    void firstFreeNumber_passesFarMoreNamesThanItProbes_data();
    void firstFreeNumber_passesFarMoreNamesThanItProbes();
    void firstFreeNumber_equalsProbingOneByOne_data();
    void firstFreeNumber_equalsProbingOneByOne();
};

void tst_KyNameCounter::baseName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");

    QTest::newRow("plain") << QStringLiteral("Screen") << QStringLiteral("Screen");
    QTest::newRow("counter") << QStringLiteral("Screen (12)") << QStringLiteral("Screen");
    QTest::newRow("no digits") << QStringLiteral("Screen ()") << QStringLiteral("Screen");
    QTest::newRow("leading zeros") << QStringLiteral("Screen (007)") << QStringLiteral("Screen");
    QTest::newRow("beyond an int") << QStringLiteral("Screen (99999999999999999999)")
                                   << QStringLiteral("Screen");
    QTest::newRow("last of two counters") << QStringLiteral("Screen (1) (2)") << QStringLiteral("Screen (1)");
    QTest::newRow("counter alone") << QStringLiteral("(1)") << QStringLiteral("(1)");
    QTest::newRow("counter alone among blanks") << QStringLiteral("  (1) ") << QStringLiteral("  (1) ");
    QTest::newRow("two counters alone") << QStringLiteral("(1) (2)") << QStringLiteral("(1)");
    QTest::newRow("blanks collapse with a counter")
        << QStringLiteral("  A   B  (3)  ") << QStringLiteral("A B");
    QTest::newRow("blanks stay without a counter")
        << QStringLiteral("  A   B  ") << QStringLiteral("  A   B  ");
    QTest::newRow("blanks alone") << QStringLiteral("   ") << QStringLiteral("   ");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("tab is no separator") << QStringLiteral("A\t(1)") << QStringLiteral("A\t(1)");
    QTest::newRow("tab inside the base") << QStringLiteral("A\tB (1)") << QStringLiteral("A\tB");
    QTest::newRow("no-break space is no separator")
        << QStringLiteral("A\u00a0(1)") << QStringLiteral("A\u00a0(1)");
    QTest::newRow("line end after the counter") << QStringLiteral("A (1)\n") << QStringLiteral("A (1)\n");
    QTest::newRow("no blank before") << QStringLiteral("A(1)") << QStringLiteral("A(1)");
    QTest::newRow("text behind") << QStringLiteral("A (1)x") << QStringLiteral("A (1)x");
    QTest::newRow("blank inside") << QStringLiteral("A ( 1)") << QStringLiteral("A ( 1)");
    QTest::newRow("letters") << QStringLiteral("A (x)") << QStringLiteral("A (x)");
    QTest::newRow("sign") << QStringLiteral("A (-1)") << QStringLiteral("A (-1)");
    QTest::newRow("digits of another script") << QStringLiteral("A (\u0663)") << QStringLiteral("A (\u0663)");
    QTest::newRow("open") << QStringLiteral("A (") << QStringLiteral("A (");
    QTest::newRow("close") << QStringLiteral("A )") << QStringLiteral("A )");
    QTest::newRow("brackets") << QStringLiteral("A [1]") << QStringLiteral("A [1]");
    QTest::newRow("place markers") << QStringLiteral("%1 %2 (1)") << QStringLiteral("%1 %2");
}

void tst_KyNameCounter::baseName()
{
    QFETCH(QString, name);
    QTEST(NameCounter::baseName(name), "expected");
}

void tst_KyNameCounter::numberedName_data()
{
    QTest::addColumn<QString>("base");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("expected");

    QTest::newRow("first") << QStringLiteral("Screen") << 1 << QStringLiteral("Screen (1)");
    QTest::newRow("last") << QStringLiteral("Screen") << NameCounter::LIMIT - 1
                          << QStringLiteral("Screen (2147483646)");
    QTest::newRow("blanks stay") << QStringLiteral(" A  B ") << 2 << QStringLiteral(" A  B  (2)");
    QTest::newRow("place markers stay")
        << QStringLiteral("%1 %2 %L1") << 3 << QStringLiteral("%1 %2 %L1 (3)");
}

void tst_KyNameCounter::numberedName()
{
    QFETCH(QString, base);
    QFETCH(int, number);
    QTEST(NameCounter::numberedName(base, number), "expected");
}

static Names namesOf(const QStringList &keys)
{
    Names names;
    for (const QString &key : keys)
        names.insert(key, 0);
    return names;
}

void tst_KyNameCounter::firstFreeNumber_data()
{
    const auto numbered = [](int first, int last) {
        QStringList keys;
        for (int number = first; number <= last; ++number)
            keys.append(QStringLiteral("A (%1)").arg(number));
        return keys;
    };
    const QStringList eight = numbered(1, 8);

    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<int>("expected");

    QTest::newRow("none") << QStringList() << 1;
    QTest::newRow("the base itself") << QStringList(QStringLiteral("A")) << 1;
    QTest::newRow("gap among the first") << numbered(1, 2) + numbered(4, 8) << 3;
    QTest::newRow("no gap") << eight << 9;
    QTest::newRow("gap farther on") << eight + numbered(10, 20) << 9;
    QTest::newRow("next is taken in the order of texts, not of numbers") << numbered(1, 12) << 13;
    QTest::newRow("leading zeros are other names")
        << eight + QStringList({QStringLiteral("A (09)"), QStringLiteral("A (0)")}) << 9;
    QTest::newRow("other names between") << eight
            + QStringList({QStringLiteral("A (9"), QStringLiteral("A (9) "), QStringLiteral("A (9x)"),
                           QStringLiteral("A (9)(9)"), QStringLiteral("A ()"), QStringLiteral("A ("),
                           QStringLiteral("A (-9)"), QStringLiteral("A (+9)"), QStringLiteral("A (\u0669)")})
                                         << 9;
    QTest::newRow("other bases") << eight
            + QStringList({QStringLiteral("a (9)"), QStringLiteral("A  (9)"), QStringLiteral("AA (9)"),
                           QStringLiteral(" A (9)"), QStringLiteral("A (9) (9)"), QStringLiteral("A B (9)")})
                                 << 9;
    QTest::newRow("numbers at and beyond the limit") << eight
            + QStringList({QStringLiteral("A (2147483645)"), QStringLiteral("A (2147483646)"),
                           QStringLiteral("A (2147483647)"), QStringLiteral("A (2147483648)"),
                           QStringLiteral("A (4294967305)"), QStringLiteral("A (9999999999)"),
                           QStringLiteral("A (18446744073709551625)")}) // 9 in 64 bits
                                                     << 9;
}

void tst_KyNameCounter::firstFreeNumber()
{
    QFETCH(QStringList, keys);
    QTEST(NameCounter::firstFreeNumber(QStringLiteral("A"), namesOf(keys)), "expected");
}

void tst_KyNameCounter::firstFreeNumber_passesFarMoreNamesThanItProbes_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("gap"); // a number that is free, 0 for none
    QTest::addColumn<int>("expected");
    for (int count : {4, 5, 1022, 1023, 1024, 1025, 2048, 9999, 10000}) {
        QTest::addRow("%d names", count) << count << 0 << count + 1;
        QTest::addRow("%d names, one missing", count) << count << count / 2 << count / 2;
    }
}

void tst_KyNameCounter::firstFreeNumber_passesFarMoreNamesThanItProbes()
{
    QFETCH(int, count);
    QFETCH(int, gap);
    Names names;
    for (int number = 1; number <= count; ++number) {
        if (number != gap)
            names.insert(QStringLiteral("A (%1)").arg(number), number);
    }
    QTEST(NameCounter::firstFreeNumber(QStringLiteral("A"), names), "expected");
}

/** A name that is made unique by the rules alone, which the tested functions must agree with. */
static QString plainUniqueName(const QString &name, const Names &names)
{
    QString base = name;
    QStringList words = name.split(QStringLiteral(" "), Qt::SkipEmptyParts);
    if (words.size() >= 2 && QRegExp(QStringLiteral("^\\([0-9]*\\)$")).exactMatch(words.last())) {
        words.removeLast();
        base = words.join(QStringLiteral(" "));
    }
    int number = 1;
    while (names.contains(base + QStringLiteral(" (") + QString::number(number) + QStringLiteral(")")))
        ++number;
    return base + QStringLiteral(" (") + QString::number(number) + QStringLiteral(")");
}

static QString randomName(QRandomGenerator *random)
{
    static const QStringList BASES = {
        QStringLiteral("A"),   QStringLiteral("A"),     QStringLiteral("A"),   QStringLiteral("AA"),
        QStringLiteral(" A "), QStringLiteral("A  B"),  QStringLiteral("A B"), QStringLiteral("A\tB"),
        QStringLiteral("(1)"), QStringLiteral("A (1)"), QStringLiteral("()"),  QStringLiteral("%1"),
        QStringLiteral("%2"),  QStringLiteral("A (x)"), QStringLiteral(" "),   QStringLiteral("\u6620\u753b"),
    };
    static const QStringList COUNTERS = {
        QString(),
        QStringLiteral(" ()"),
        QStringLiteral("\t(1)"),
        QStringLiteral(" (%1)"),
        QStringLiteral(" (%1)"),
        QStringLiteral("  (%1) "),
        QStringLiteral(" (0%1)"),
        QStringLiteral("(%1)"),
        QStringLiteral(" (%1"),
        QStringLiteral(" (%1)x"),
        QStringLiteral(" (99999999999%1)"),
        QStringLiteral(" (21474836%1)"),
    };
    const QString &base = BASES.at(random->bounded(BASES.size()));
    QString counter = COUNTERS.at(random->bounded(COUNTERS.size()));
    return base + counter.replace(QStringLiteral("%1"), QString::number(random->bounded(60)));
}

void tst_KyNameCounter::firstFreeNumber_equalsProbingOneByOne_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 10; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void tst_KyNameCounter::firstFreeNumber_equalsProbingOneByOne()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    Names names;
    for (int step = 0; step < 3000; ++step) {
        const QString name = randomName(&random);
        const QString base = NameCounter::baseName(name);
        const QString unique = NameCounter::numberedName(base, NameCounter::firstFreeNumber(base, names));
        QCOMPARE(unique, plainUniqueName(name, names));
        names.insert(random.bounded(2) == 0 ? name : unique, step);
        if (random.bounded(3) == 0)
            names.erase(names.begin() + random.bounded(names.size())); // leaves gaps
    }
    QVERIFY(names.size() > 500);
}

KYTE_TEST_MAIN(tst_KyNameCounter)
#include "tst_KyNameCounter.moc"
