# What makes an installed tree usable: a CMake package, which brings the targets of the product's other libraries that
# were built here, and a pkg-config file.

include(CMakePackageConfigHelpers)

set(KYTE_PACKAGE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/KyEditorCommon")

set(KYTE_BUNDLED_LIBRARIES "")
foreach(library IN ITEMS KyCore KyView KyMediaTool Jocrypt)
    if(TARGET ${library})
        list(APPEND KYTE_BUNDLED_LIBRARIES ${library})
    endif()
endforeach()

foreach(library IN LISTS KYTE_BUNDLED_LIBRARIES ITEMS KyEditorCommon)
    install(EXPORT ${library}Targets NAMESPACE Kyte:: DESTINATION ${KYTE_PACKAGE_DIR})
endforeach()

configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/KyEditorCommonConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/KyEditorCommonConfig.cmake"
    INSTALL_DESTINATION ${KYTE_PACKAGE_DIR}
    PATH_VARS KYTE_TRANSLATIONS_DIR)
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/KyEditorCommonConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/KyEditorCommonConfig.cmake"
              "${PROJECT_BINARY_DIR}/KyEditorCommonConfigVersion.cmake"
        DESTINATION ${KYTE_PACKAGE_DIR})

set(KYTE_PKGCONFIG_INCLUDES "")
set(KYTE_PKGCONFIG_LIBRARIES "")
foreach(library IN LISTS KYTE_BUNDLED_LIBRARIES)
    string(APPEND KYTE_PKGCONFIG_INCLUDES " -I\${includedir}/${library}")
    string(APPEND KYTE_PKGCONFIG_LIBRARIES " -l${library}")
endforeach()
file(RELATIVE_PATH KYTE_PKGCONFIG_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
configure_file("${PROJECT_SOURCE_DIR}/cmake/KyEditorCommon.pc.in" "${PROJECT_BINARY_DIR}/KyEditorCommon.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/KyEditorCommon.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# A tree for Windows holds what its programs need beside the system: the DLLs of Qt and of the compiler, and the
# plug-ins that Qt loads by itself, where an application's folder is searched for them.
if(WIN32 AND KYTE_WINDOWS_QT)
    foreach(plugin IN ITEMS iconengines/qsvgicon imageformats/qgif imageformats/qico imageformats/qjpeg imageformats/qsvg
                            platforms/qoffscreen platforms/qwindows sqldrivers/qsqlite styles/qwindowsvistastyle)
        get_filename_component(folder ${plugin} DIRECTORY)
        install(FILES "${KYTE_WINDOWS_QT}/plugins/${plugin}.dll" DESTINATION "${CMAKE_INSTALL_BINDIR}/${folder}")
    endforeach()
    foreach(library IN ITEMS Qt5Core Qt5Gui Qt5Sql Qt5Svg Qt5Widgets libgcc_s_seh-1 libstdc++-6 libwinpthread-1)
        install(FILES "${KYTE_WINDOWS_QT}/bin/${library}.dll" DESTINATION "${CMAKE_INSTALL_BINDIR}")
    endforeach()
endif()

# A program's manual page, and what a desktop needs to show it, are installed with the program.
foreach(program IN ITEMS kyec KyPptCnv kystudio)
    if(TARGET ${program} AND UNIX)
        get_target_property(suffix ${program} SUFFIX)
        if(NOT suffix)
            set(suffix "")
        endif()
        install(FILES "${PROJECT_SOURCE_DIR}/docs/man/${program}${suffix}.1"
                DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
    endif()
endforeach()
if(TARGET kystudio AND UNIX AND NOT APPLE)
    install(FILES "${PROJECT_SOURCE_DIR}/resources/desktop/kystudio.desktop"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
    install(FILES "${PROJECT_SOURCE_DIR}/resources/desktop/kystudio.svg"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")
endif()

if(PROJECT_IS_TOP_LEVEL)
    set(CPACK_GENERATOR TGZ)
    set(CPACK_PACKAGE_NAME "${PROJECT_NAME}")
    set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
    set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
    set(CPACK_PACKAGE_VENDOR "Kyte")
    set(CPACK_VERBATIM_VARIABLES ON)
    include(CPack)
endif()
