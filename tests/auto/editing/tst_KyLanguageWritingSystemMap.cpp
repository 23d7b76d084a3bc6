#include "KyTestMain.h"

#include <KyLanguageWritingSystemMap.h>

#include <thread>
#include <type_traits>
#include <vector>

using namespace Kyte;

using Map = QMap<QLocale::Language, QFontDatabase::WritingSystem>;

struct Row
{
    const char *name;
    int language; // the number is what counts: some are not the language of that name
    QFontDatabase::WritingSystem writingSystem;
};

static const Row ROWS[] = {
    {"any", 0, QFontDatabase::Any},
    {"C", 1, QFontDatabase::Latin},
    {"Latin", 70, QFontDatabase::Latin},
    {"Greek", 43, QFontDatabase::Greek},
    {"Russian", 96, QFontDatabase::Cyrillic},
    {"Bulgarian", 20, QFontDatabase::Cyrillic},
    {"Armenian", 9, QFontDatabase::Armenian},
    {"Hebrew", 48, QFontDatabase::Hebrew},
    {"Arabic", 8, QFontDatabase::Arabic},
    {"Syriac", 151, QFontDatabase::Syriac},
    {"Hindi", 49, QFontDatabase::Devanagari},
    {"99", 99, QFontDatabase::Devanagari},
    {"Bengali", 15, QFontDatabase::Bengali},
    {"Punjabi", 92, QFontDatabase::Gurmukhi},
    {"Gujarati", 46, QFontDatabase::Gujarati},
    {"Oriya", 87, QFontDatabase::Oriya},
    {"Tamil", 117, QFontDatabase::Tamil},
    {"Telugu", 119, QFontDatabase::Telugu},
    {"Kannada", 61, QFontDatabase::Kannada},
    {"Malayalam", 77, QFontDatabase::Malayalam},
    {"Thai", 120, QFontDatabase::Thai},
    {"Lao", 69, QFontDatabase::Lao},
    {"Tibetan", 121, QFontDatabase::Tibetan},
    {"Burmese", 21, QFontDatabase::Myanmar},
    {"Georgian", 41, QFontDatabase::Georgian},
    {"62", 62, QFontDatabase::Khmer},
    {"Chinese", 25, QFontDatabase::SimplifiedChinese},
    {"146", 146, QFontDatabase::TraditionalChinese},
    {"Japanese", 59, QFontDatabase::Japanese},
    {"Korean", 66, QFontDatabase::Korean},
    {"Vietnamese", 132, QFontDatabase::Vietnamese},
};

class tst_KyLanguageWritingSystemMap : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void map_holdsTheTable();
    void writingSystem_data();
    void writingSystem();
    void writingSystem_ofALanguageWithoutEntry_isLatin_data();
    void writingSystem_ofALanguageWithoutEntry_isLatin();
    void setMap_onACopy_leavesTheSharedObject();
    void setMap_empty_givesLatinForEverything();
    void map_isACopy();

private:
    Map m_table;
};

/** The first use of all is one by many threads at once: there must be one object, and it must be complete. */
void tst_KyLanguageWritingSystemMap::initTestCase()
{
    std::vector<Map> maps(8);
    std::vector<KyLanguageWritingSystemMap *> instances(maps.size());
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < maps.size(); ++i) {
        threads.emplace_back([&, i] {
            instances[i] = KyLanguageWritingSystemMap::getInstance();
            maps[i] = instances[i]->map();
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    m_table = KyLanguageWritingSystemMap::getInstance()->map();
    for (std::size_t i = 0; i < maps.size(); ++i) {
        QCOMPARE(instances[i], KyLanguageWritingSystemMap::getInstance());
        QCOMPARE(maps[i], m_table);
    }
}

void tst_KyLanguageWritingSystemMap::cleanup()
{
    KyLanguageWritingSystemMap::getInstance()->setMap(m_table);
}

void tst_KyLanguageWritingSystemMap::map_holdsTheTable()
{
    Map expected;
    for (const Row &row : ROWS)
        expected.insert(static_cast<QLocale::Language>(row.language), row.writingSystem);

    QCOMPARE(expected.size(), 31);
    QCOMPARE(KyLanguageWritingSystemMap::getInstance()->map(), expected);
}

void tst_KyLanguageWritingSystemMap::writingSystem_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<int>("expected");
    for (const Row &row : ROWS)
        QTest::newRow(row.name) << row.language << int(row.writingSystem);
}

void tst_KyLanguageWritingSystemMap::writingSystem()
{
    QFETCH(int, language);
    QFETCH(int, expected);
    const auto key = static_cast<QLocale::Language>(language);

    QCOMPARE(int(KyLanguageWritingSystemMap::getWritingSystem(key)), expected);
    QCOMPARE(int(KyLanguageWritingSystemMap::getInstance()->writingSystem(key)), expected);
}

void tst_KyLanguageWritingSystemMap::writingSystem_ofALanguageWithoutEntry_isLatin_data()
{
    QTest::addColumn<int>("language");
    QTest::newRow("English") << int(QLocale::English);
    QTest::newRow("French") << int(QLocale::French);
    QTest::newRow("Khmer, whose number is not the table's") << int(QLocale::Khmer);
    QTest::newRow("Divehi, written in Thaana") << int(QLocale::Divehi);
    QTest::newRow("Sinhala") << int(QLocale::Sinhala);
    QTest::newRow("Nko") << int(QLocale::Nko);
    QTest::newRow("last") << int(QLocale::LastLanguage);
}

void tst_KyLanguageWritingSystemMap::writingSystem_ofALanguageWithoutEntry_isLatin()
{
    QFETCH(int, language);
    const auto key = static_cast<QLocale::Language>(language);

    QCOMPARE(KyLanguageWritingSystemMap::getWritingSystem(key), QFontDatabase::Latin);
}

void tst_KyLanguageWritingSystemMap::setMap_onACopy_leavesTheSharedObject()
{
    static_assert(std::is_copy_assignable<KyLanguageWritingSystemMap>::value
                      && std::is_move_constructible<KyLanguageWritingSystemMap>::value
                      && std::is_move_assignable<KyLanguageWritingSystemMap>::value,
                  "a value");
    KyLanguageWritingSystemMap copy(*KyLanguageWritingSystemMap::getInstance());
    QCOMPARE(copy.map(), m_table);
    const Map map = {{QLocale::Japanese, QFontDatabase::Runic}, {QLocale::Khmer, QFontDatabase::Khmer}};
    copy.setMap(map);

    QCOMPARE(copy.map(), map);
    QCOMPARE(copy.writingSystem(QLocale::Japanese), QFontDatabase::Runic);
    QCOMPARE(copy.writingSystem(QLocale::Khmer), QFontDatabase::Khmer);
    QCOMPARE(copy.writingSystem(QLocale::AnyLanguage), QFontDatabase::Latin);
    QCOMPARE(KyLanguageWritingSystemMap::getWritingSystem(QLocale::Japanese), QFontDatabase::Japanese);
    QCOMPARE(KyLanguageWritingSystemMap::getInstance()->map(), m_table);
}

void tst_KyLanguageWritingSystemMap::setMap_empty_givesLatinForEverything()
{
    KyLanguageWritingSystemMap::getInstance()->setMap(Map());

    for (int language = 0; language <= QLocale::LastLanguage; ++language) {
        QCOMPARE(KyLanguageWritingSystemMap::getWritingSystem(static_cast<QLocale::Language>(language)),
                 QFontDatabase::Latin);
    }
}

void tst_KyLanguageWritingSystemMap::map_isACopy()
{
    Map map = KyLanguageWritingSystemMap::getInstance()->map();
    map.clear();

    QCOMPARE(KyLanguageWritingSystemMap::getInstance()->map(), m_table);
}

KYTE_TEST_MAIN(tst_KyLanguageWritingSystemMap)
#include "tst_KyLanguageWritingSystemMap.moc"
