# resources/translations/kyeditorcommon.ts is the template that translators start from: every text of the library and no
# translation. The target lupdate brings it up to date with the sources. It carries no line numbers, which would change
# with every edit.

find_program(KYTE_LUPDATE NAMES lupdate lupdate-qt5 HINTS /usr/lib/qt5/bin)
find_program(KYTE_LRELEASE NAMES lrelease lrelease-qt5 HINTS /usr/lib/qt5/bin)
mark_as_advanced(KYTE_LUPDATE KYTE_LRELEASE)
set(KYTE_TRANSLATION_TEMPLATE "${PROJECT_SOURCE_DIR}/resources/translations/kyeditorcommon.ts")
set(KYTE_LUPDATE_ARGUMENTS -silent -no-obsolete -locations none -no-ui-lines -extensions "cpp,h,ui"
    "${PROJECT_SOURCE_DIR}/src" -ts)

if(KYTE_LUPDATE)
    add_custom_target(lupdate
        COMMAND "${KYTE_LUPDATE}" ${KYTE_LUPDATE_ARGUMENTS} "${KYTE_TRANSLATION_TEMPLATE}"
        COMMENT "Updating ${KYTE_TRANSLATION_TEMPLATE}"
        VERBATIM)
endif()
