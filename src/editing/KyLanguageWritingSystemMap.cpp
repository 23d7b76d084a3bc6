#include "KyLanguageWritingSystemMap.h"

namespace Kyte {

struct LanguageEntry
{
    int language; // a value of QLocale::Language
    QFontDatabase::WritingSystem writingSystem;
};

// The languages are numbers because some of them are not the languages that their writing systems suggest:
// the applications' language lists have always carried these numbers, 62 and 146 among them, and
// QLocale::Khmer (23) has never had an entry.
static const LanguageEntry LANGUAGES[] = {
    {0, QFontDatabase::Any},
    {1, QFontDatabase::Latin},
    {70, QFontDatabase::Latin},
    {43, QFontDatabase::Greek},
    {96, QFontDatabase::Cyrillic},
    {20, QFontDatabase::Cyrillic},
    {9, QFontDatabase::Armenian},
    {48, QFontDatabase::Hebrew},
    {8, QFontDatabase::Arabic},
    {151, QFontDatabase::Syriac},
    {49, QFontDatabase::Devanagari},
    {99, QFontDatabase::Devanagari},
    {15, QFontDatabase::Bengali},
    {92, QFontDatabase::Gurmukhi},
    {46, QFontDatabase::Gujarati},
    {87, QFontDatabase::Oriya},
    {117, QFontDatabase::Tamil},
    {119, QFontDatabase::Telugu},
    {61, QFontDatabase::Kannada},
    {77, QFontDatabase::Malayalam},
    {120, QFontDatabase::Thai},
    {69, QFontDatabase::Lao},
    {121, QFontDatabase::Tibetan},
    {21, QFontDatabase::Myanmar},
    {41, QFontDatabase::Georgian},
    {62, QFontDatabase::Khmer},
    {25, QFontDatabase::SimplifiedChinese},
    {146, QFontDatabase::TraditionalChinese},
    {59, QFontDatabase::Japanese},
    {66, QFontDatabase::Korean},
    {132, QFontDatabase::Vietnamese},
};

KyLanguageWritingSystemMap::KyLanguageWritingSystemMap()
{
    init();
}

KyLanguageWritingSystemMap *KyLanguageWritingSystemMap::getInstance()
{
    static KyLanguageWritingSystemMap *const instance = new KyLanguageWritingSystemMap;
    return instance;
}

QFontDatabase::WritingSystem KyLanguageWritingSystemMap::getWritingSystem(const QLocale::Language &language)
{
    return getInstance()->writingSystem(language);
}

QFontDatabase::WritingSystem
KyLanguageWritingSystemMap::writingSystem(const QLocale::Language &language) const
{
    return m_map.value(language, QFontDatabase::Latin);
}

QMap<QLocale::Language, QFontDatabase::WritingSystem> KyLanguageWritingSystemMap::map() const
{
    return m_map;
}

void KyLanguageWritingSystemMap::setMap(const QMap<QLocale::Language, QFontDatabase::WritingSystem> &map)
{
    m_map = map;
}

void KyLanguageWritingSystemMap::init()
{
    for (const LanguageEntry &entry : LANGUAGES)
        m_map.insert(static_cast<QLocale::Language>(entry.language), entry.writingSystem);
}

} // namespace Kyte
