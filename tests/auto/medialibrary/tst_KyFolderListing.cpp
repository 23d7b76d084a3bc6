#include <KyFolderListing_p.h>
#include <KyTestEnvironment.h>
#include <KyTestMain.h>

#include <QTemporaryDir>

using namespace Kyte;

class tst_KyFolderListing : public QObject
{
    Q_OBJECT

private slots:
    void entries_areThoseOfQDir_data();
    void entries_areThoseOfQDir();
    void usualOrder_isFoldersFirst();
};

static const QDir::Filters USUAL_FILTER = QDir::AllEntries | QDir::NoDotAndDotDot;
static const QDir::SortFlags USUAL_ORDER = QDir::Name | QDir::DirsFirst | QDir::IgnoreCase;

void tst_KyFolderListing::entries_areThoseOfQDir_data()
{
    QTest::addColumn<QStringList>("names"); // with a separator at the end for folders, "a>b" for links
    QTest::addColumn<QStringList>("nameFilters");
    QTest::addColumn<int>("filter");
    QTest::addColumn<int>("sort");
    const QStringList media{"b.png",  "A.png",          "c.mp4",           "Videos/", "images/", ".hidden",
                            "a.PNG2", QString("Äpfel"), QString("äpfel2"), "10",      "9"};
    QTest::newRow("nothing") << QStringList() << QStringList() << int(USUAL_FILTER) << int(USUAL_ORDER);
    QTest::newRow("media") << media << QStringList() << int(USUAL_FILTER) << int(USUAL_ORDER);
    QTest::newRow("patterns") << media << QStringList{"*.png", "*.mp4"} << int(USUAL_FILTER)
                              << int(USUAL_ORDER);
    QTest::newRow("hidden, dots") << media << QStringList() << int(QDir::AllEntries | QDir::Hidden)
                                  << int(USUAL_ORDER);
    QTest::newRow("folders only") << media << QStringList() << int(QDir::Dirs | QDir::NoDotAndDotDot)
                                  << int(USUAL_ORDER);
    QTest::newRow("filter of the folder object")
        << media << QStringList() << int(QDir::NoFilter) << int(USUAL_ORDER);
    QTest::newRow("links") << QStringList{"folder/", "file", "a>folder", "b>file", "c>missing"}
                           << QStringList() << int(USUAL_FILTER) << int(USUAL_ORDER);
    QTest::newRow("links and what they lost")
        << QStringList{"folder/", "a>folder", "b>missing"} << QStringList()
        << int(USUAL_FILTER | QDir::System) << int(USUAL_ORDER);
    QTest::newRow("letter case alone") << QStringList{"a", "A", "b", "B/", "b2", "B2"} << QStringList()
                                       << int(USUAL_FILTER) << int(USUAL_ORDER);
    for (const QDir::SortFlags sort :
         {QDir::SortFlags(QDir::Name), QDir::SortFlags(QDir::Unsorted), USUAL_ORDER | QDir::Reversed,
          USUAL_ORDER | QDir::LocaleAware, QDir::SortFlags(QDir::Type), QDir::SortFlags(QDir::NoSort)})
        QTest::newRow(qPrintable(QStringLiteral("order %1").arg(int(sort))))
            << media << QStringList() << int(USUAL_FILTER) << int(sort);
}

void tst_KyFolderListing::entries_areThoseOfQDir()
{
    QFETCH(QStringList, names);
    QFETCH(QStringList, nameFilters);
    QFETCH(int, filter);
    QFETCH(int, sort);
    const QTemporaryDir folder;
    for (const QString &name : names) {
        if (name.endsWith('/'))
            QVERIFY(QDir(folder.path()).mkdir(name));
        else if (name.contains('>'))
            QVERIFY(
                QFile::link(folder.filePath(name.section('>', 1)), folder.filePath(name.section('>', 0, 0))));
        else
            Test::writeFile(folder.filePath(name), "x");
    }

    const QFileInfoList entries =
        listFolder(folder.path(), nameFilters, QDir::Filters(filter), QDir::SortFlags(sort));

    QCOMPARE(entries,
             QDir(folder.path()).entryInfoList(nameFilters, QDir::Filters(filter), QDir::SortFlags(sort)));
    QCOMPARE(
        listFolder(folder.filePath("missing"), nameFilters, QDir::Filters(filter), QDir::SortFlags(sort)),
        QFileInfoList());
}

void tst_KyFolderListing::usualOrder_isFoldersFirst()
{
    const QTemporaryDir folder;
    for (int i = 0; i < 300; ++i)
        Test::writeFile(folder.filePath(QString("%1-%2").arg(i % 2 ? 'b' : 'A').arg(i)), "x");
    QVERIFY(QDir(folder.path()).mkdir("z"));

    const QFileInfoList entries = listFolder(folder.path(), {}, USUAL_FILTER, USUAL_ORDER);

    QCOMPARE(entries.size(), 301);
    QCOMPARE(entries.first().fileName(), QString("z"));
    QCOMPARE(entries.at(1).fileName(), QString("A-0"));
    QCOMPARE(entries.last().fileName(), QString("b-99"));
    QCOMPARE(entries, QDir(folder.path()).entryInfoList(USUAL_FILTER, USUAL_ORDER));
}

KYTE_TEST_MAIN(tst_KyFolderListing)
#include "tst_KyFolderListing.moc"
