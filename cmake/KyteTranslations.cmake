# resources/translations/kyeditorcommon.ts is the template that translators start from. The target lupdate brings it
# up to date with the sources.

find_program(KYTE_LUPDATE NAMES lupdate lupdate-qt5 HINTS /usr/lib/qt5/bin)
mark_as_advanced(KYTE_LUPDATE)
set(KYTE_TRANSLATION_TEMPLATE "${PROJECT_SOURCE_DIR}/resources/translations/kyeditorcommon.ts")

if(KYTE_LUPDATE)
    add_custom_target(lupdate
        COMMAND "${KYTE_LUPDATE}" -silent -locations relative -no-ui-lines -extensions cpp,h
                "${PROJECT_SOURCE_DIR}/src" -ts "${KYTE_TRANSLATION_TEMPLATE}"
        COMMENT "Updating ${KYTE_TRANSLATION_TEMPLATE}"
        VERBATIM)
endif()
