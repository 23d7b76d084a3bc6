#include "KyTestMain.h"

#include <KyFileSystemItem.h>

#include <KyChildNames_p.h>

#include <QRandomGenerator>

using namespace Kyte;

using Items = QList<KyFileSystemItem *>;

class tst_KyChildNames : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void insertionRow_isThatOfTheWalk_data();
    void insertionRow_isThatOfTheWalk();
    void insertionRow_followsTheCase();
    void rowsLike_holdEveryEqualName_data();
    void rowsLike_holdEveryEqualName();
    void rowsLike_areAscending();
    void rowsLike_ofPartOfAPath();
    void clear_forgets();
    void validate_forgetsAfterAnAssignment();

private:
    KyFileSystemItem *make(const QString &name);

    Items m_items;
};

static const QChar HIGH(0xd801); // of the Deseret letters U+10400 (capital) and U+10428 (small)
static const QString DESERET_CAPITAL = QString(HIGH) + QChar(0xdc00);
static const QString DESERET_SMALL = QString(HIGH) + QChar(0xdc28);

/** The rule itself: behind the first name that the new one is greater than. */
static int walk(const Items &children, const QString &name, Qt::CaseSensitivity cs)
{
    int position = 0;
    for (KyFileSystemItem *child : children) {
        ++position;
        if (QString::compare(name, child->fileName(), cs) > 0)
            return position;
    }
    return children.size();
}

KyFileSystemItem *tst_KyChildNames::make(const QString &name)
{
    m_items.append(new KyFileSystemItem(QFileInfo(QStringLiteral("/none/") + name), nullptr, -1));
    return m_items.last();
}

void tst_KyChildNames::cleanup()
{
    qDeleteAll(m_items);
    m_items.clear();
}

static QStringList alphabet(const QString &kind)
{
    if (kind == QLatin1String("letters"))
        return {"a", "b", "c", "A", "B", "C"};
    if (kind == QLatin1String("non-ASCII"))
        return {QString::fromUtf8("ä"),
                QString::fromUtf8("Ä"),
                QString::fromUtf8("ß"),
                QString::fromUtf8("ẞ"),
                QString::fromUtf8("σ"),
                QString::fromUtf8("ς"),
                QString::fromUtf8("Σ"),
                QString::fromUtf8("İ"),
                "i",
                "I",
                "k",
                QString::fromUtf8("K")};
    return {DESERET_CAPITAL,
            DESERET_SMALL,
            QString(HIGH),
            QString(QChar(0xdc00)),
            QString(QChar(0xdc28)),
            QString(QChar(0xffee)),
            "a"};
}

static QString randomName(QRandomGenerator *random, const QStringList &pieces)
{
    QString name;
    for (int length = random->bounded(1, 4); length > 0; --length)
        name += pieces.at(random->bounded(pieces.size()));
    return name;
}

void tst_KyChildNames::insertionRow_isThatOfTheWalk_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("sensitive");
    for (const char *kind : {"letters", "non-ASCII", "surrogates"}) {
        QTest::addRow("%s, sensitive", kind) << kind << true;
        QTest::addRow("%s, insensitive", kind) << kind << false;
    }
}

void tst_KyChildNames::insertionRow_isThatOfTheWalk()
{
    QFETCH(QString, kind);
    QFETCH(bool, sensitive);
    const Qt::CaseSensitivity cs = sensitive ? Qt::CaseSensitive : Qt::CaseInsensitive;
    const QStringList pieces = alphabet(kind);
    QRandomGenerator random(7);
    for (int round = 0; round < 30; ++round) {
        Items children;
        KyChildNames names;
        for (int i = 0; i < 60; ++i) {
            KyFileSystemItem *item = make(randomName(&random, pieces));
            const QString name = item->fileName();
            const int row = names.insertionRow(children, name, cs);
            QCOMPARE(row, walk(children, name, cs));
            const int count = children.size();
            children.insert(row, item);
            names.noteInsertion(row, count, name);
        }
    }
}

void tst_KyChildNames::insertionRow_followsTheCase()
{
    const Items children = {make(QStringLiteral("b")), make(QStringLiteral("A"))};
    KyChildNames names;
    QCOMPARE(names.insertionRow(children, QStringLiteral("B"), Qt::CaseSensitive), 2);
    QCOMPARE(names.insertionRow(children, QStringLiteral("C"), Qt::CaseInsensitive), 1);
    QCOMPARE(names.insertionRow(children, QStringLiteral("C"), Qt::CaseSensitive), 2);
}

void tst_KyChildNames::rowsLike_holdEveryEqualName_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"letters", "non-ASCII", "surrogates"})
        QTest::newRow(kind) << kind;
}

void tst_KyChildNames::rowsLike_holdEveryEqualName()
{
    QFETCH(QString, kind);
    const QStringList pieces = alphabet(kind);
    QRandomGenerator random(11);
    Items children;
    for (int i = 0; i < 300; ++i)
        children.append(make(randomName(&random, pieces)));
    KyChildNames names;
    int found = 0;
    for (int i = 0; i < 300; ++i) {
        const QString name = randomName(&random, pieces);
        const QVector<int> rows = names.rowsLike(children, QStringRef(&name));
        for (int row = 0; row < children.size(); ++row) {
            if (children.at(row)->fileName().compare(name, Qt::CaseInsensitive) == 0) {
                QVERIFY2(rows.contains(row), qPrintable(name));
                ++found;
            }
        }
        QVERIFY(rows.size() < 100); // few others
    }
    QVERIFY(found > 300);
}

void tst_KyChildNames::rowsLike_areAscending()
{
    const Items children = {make(QStringLiteral("a")), make(QStringLiteral("b")), make(QStringLiteral("A")),
                            make(QStringLiteral("a"))};
    KyChildNames names;
    const QString name = QStringLiteral("A");
    QCOMPARE(names.rowsLike(children, QStringRef(&name)), QVector<int>({0, 2, 3}));
    const QString none = QStringLiteral("c");
    QCOMPARE(names.rowsLike(children, QStringRef(&none)), QVector<int>());
    QCOMPARE(names.rowsLike(children, QStringRef()), QVector<int>());
}

void tst_KyChildNames::rowsLike_ofPartOfAPath()
{
    const Items children = {make(QStringLiteral("bc")), make(DESERET_CAPITAL)};
    KyChildNames names;
    const QString path = QStringLiteral("/a/BC/d");
    QCOMPARE(names.rowsLike(children, path.midRef(3, 2)), QVector<int>({0}));
    // The reference ends in the middle of a pair: the rest of the path is not looked at.
    const QString pair = QStringLiteral("x") + DESERET_SMALL;
    QCOMPARE(names.rowsLike(children, pair.midRef(1, 2)), QVector<int>({1}));
    QCOMPARE(names.rowsLike(children, pair.midRef(1, 1)), QVector<int>());
}

void tst_KyChildNames::clear_forgets()
{
    Items children = {make(QStringLiteral("b")), make(QStringLiteral("c"))};
    KyChildNames names;
    const QString c = QStringLiteral("c");
    QCOMPARE(names.rowsLike(children, QStringRef(&c)), QVector<int>({1}));
    QCOMPARE(names.insertionRow(children, c, Qt::CaseSensitive), 1);
    children.removeFirst();
    names.clear();
    QCOMPARE(names.rowsLike(children, QStringRef(&c)), QVector<int>({0}));
    QCOMPARE(names.insertionRow(children, QStringLiteral("b"), Qt::CaseSensitive), 1);
    QCOMPARE(names.insertionRow(children, QStringLiteral("d"), Qt::CaseSensitive), 1);
}

void tst_KyChildNames::validate_forgetsAfterAnAssignment()
{
    const Items children = {make(QStringLiteral("b"))};
    KyChildNames names;
    names.validate(0);
    const QString c = QStringLiteral("c");
    QCOMPARE(names.rowsLike(children, QStringRef(&c)), QVector<int>());
    *children.first() = KyFileSystemItem(QFileInfo(QStringLiteral("/none/c")), nullptr, -1);
    names.validate(0);
    QCOMPARE(names.rowsLike(children, QStringRef(&c)), QVector<int>()); // kept
    names.validate(1);
    QCOMPARE(names.rowsLike(children, QStringRef(&c)), QVector<int>({0}));
}

KYTE_TEST_MAIN(tst_KyChildNames)
#include "tst_KyChildNames.moc"
