#pragma once

#include "KyEditorCommonExport.h"

#include <QFontDatabase>
#include <QLocale>
#include <QMap>

namespace Kyte {

/**
 * The font writing system that suits a user-interface language, so that a list of fonts can be filtered to
 * those that are able to show the language. The shared object is created on first use and lives until the
 * process ends; its creation is thread-safe, setMap() on it is not.
 */
class KYEDITORCOMMON_EXPORT KyLanguageWritingSystemMap
{
public:
    static KyLanguageWritingSystemMap *getInstance();
    /** writingSystem() of the shared object. */
    static QFontDatabase::WritingSystem getWritingSystem(const QLocale::Language &language);

    /** The writing system of exactly \a language; QFontDatabase::Latin for a language without an entry. */
    QFontDatabase::WritingSystem writingSystem(const QLocale::Language &language) const;

    QMap<QLocale::Language, QFontDatabase::WritingSystem> map() const;
    void setMap(const QMap<QLocale::Language, QFontDatabase::WritingSystem> &map);

private:
    KyLanguageWritingSystemMap();

    void init();

    QMap<QLocale::Language, QFontDatabase::WritingSystem> m_map;
};

} // namespace Kyte
