# resources/translations/kyeditorcommon.ts is the template that translators start from: every text of the library and no
# translation. kyeditorcommon_LANGUAGE.ts beside it are translations. The target lupdate brings them up to date with the
# sources. They carry no line numbers, which would change with every edit.

find_program(KYTE_LUPDATE NAMES lupdate lupdate-qt5 HINTS /usr/lib/qt5/bin)
find_program(KYTE_LRELEASE NAMES lrelease lrelease-qt5 HINTS /usr/lib/qt5/bin)
mark_as_advanced(KYTE_LUPDATE KYTE_LRELEASE)
set(KYTE_TRANSLATION_TEMPLATE "${PROJECT_SOURCE_DIR}/resources/translations/kyeditorcommon.ts")
set(KYTE_LUPDATE_ARGUMENTS -silent -no-obsolete -locations none -no-ui-lines -extensions "cpp,h,ui"
    "${PROJECT_SOURCE_DIR}/src" -ts)

set(KYTE_TRANSLATIONS "${PROJECT_SOURCE_DIR}/resources/translations/kyeditorcommon_de.ts")
set(KYTE_TRANSLATIONS_DIR "${CMAKE_INSTALL_DATADIR}/KyEditorCommon/translations")

if(KYTE_LUPDATE)
    add_custom_target(lupdate
        COMMAND "${KYTE_LUPDATE}" ${KYTE_LUPDATE_ARGUMENTS} "${KYTE_TRANSLATION_TEMPLATE}" ${KYTE_TRANSLATIONS}
        COMMENT "Updating resources/translations"
        VERBATIM)
endif()

if(KYTE_LRELEASE)
    set(compiled "")
    foreach(source IN LISTS KYTE_TRANSLATIONS)
        cmake_path(GET source STEM name)
        set(target "${PROJECT_BINARY_DIR}/translations/${name}.qm")
        add_custom_command(OUTPUT "${target}"
            COMMAND "${CMAKE_COMMAND}" -E make_directory "${PROJECT_BINARY_DIR}/translations"
            COMMAND "${KYTE_LRELEASE}" -silent "${source}" -qm "${target}"
            DEPENDS "${source}"
            VERBATIM)
        list(APPEND compiled "${target}")
    endforeach()
    add_custom_target(translations ALL DEPENDS ${compiled})
    install(FILES ${compiled} DESTINATION "${KYTE_TRANSLATIONS_DIR}")
endif()
