# Every default of the project's targets lives here: a library, a program or a test names its files and what it links
# to, nothing else.

include(GenerateExportHeader)

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)
set(CMAKE_AUTOUIC ON)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
if(MINGW)
    set(CMAKE_SHARED_LIBRARY_PREFIX "") # a DLL has the same name whoever built it
endif()
if(UNIX AND NOT APPLE)
    # An installed tree works wherever it is put.
    set(CMAKE_INSTALL_RPATH "$ORIGIN;$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
endif()

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()

# ccache where it is installed; the sloppiness is what it needs to cache compilations that use a precompiled header, and
# without the folder in its key a second clone is built from the first one's results.
find_program(KYTE_CCACHE ccache)
mark_as_advanced(KYTE_CCACHE)
if(KYTE_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        "${CMAKE_COMMAND};-E;env;CCACHE_SLOPPINESS=pch_defines,time_macros;CCACHE_NOHASHDIR=1;CCACHE_BASEDIR=${PROJECT_SOURCE_DIR};${KYTE_CCACHE}")
endif()

# A warning or sanitizer setting applies to every target of the project alike.
function(kyte_defaults target)
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_FOREACH)
    if(MSVC)
        target_compile_options(${target} PRIVATE /W4 /utf-8 /permissive-)
        target_compile_definitions(${target} PRIVATE NOMINMAX)
        if(KYTE_WARNINGS_AS_ERRORS)
            target_compile_options(${target} PRIVATE /WX)
        endif()
    else()
        target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                                                 -Woverloaded-virtual -Wno-error=deprecated-declarations)
        if(KYTE_PRECOMPILED_HEADERS)
            target_compile_options(${target} PRIVATE -Winvalid-pch)
        endif()
        if(KYTE_WARNINGS_AS_ERRORS)
            target_compile_options(${target} PRIVATE -Werror)
        endif()
    endif()
    if(KYTE_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=${KYTE_SANITIZE} -fno-omit-frame-pointer
                                                 -fno-sanitize-recover=all)
        target_link_options(${target} PRIVATE -fsanitize=${KYTE_SANITIZE})
    elseif(UNIX AND NOT APPLE)
        get_target_property(type ${target} TYPE)
        if(type STREQUAL "SHARED_LIBRARY")
            target_link_options(${target} PRIVATE -Wl,--no-undefined)
        endif()
    endif()
endfunction()

# kyte_precompile(<target> <header>...)
function(kyte_precompile target)
    if(KYTE_PRECOMPILED_HEADERS)
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()

# kyte_library(<name> HEADERS ... SOURCES ... [UNIX ...] [WINDOWS ...] [LINK_PUBLIC ...] [LINK_PRIVATE ...])
#
# A shared library Kyte::<name> whose public headers are included by bare name in the build tree and, from
# include/<name>/, in the install tree.
function(kyte_library name)
    cmake_parse_arguments(ARG "" "" "HEADERS;SOURCES;UNIX;WINDOWS;LINK_PUBLIC;LINK_PRIVATE" ${ARGN})
    if(WIN32)
        list(APPEND ARG_SOURCES ${ARG_WINDOWS})
    else()
        list(APPEND ARG_SOURCES ${ARG_UNIX})
    endif()

    set(folders "")
    foreach(header IN LISTS ARG_HEADERS)
        cmake_path(ABSOLUTE_PATH header OUTPUT_VARIABLE folder)
        cmake_path(GET folder PARENT_PATH folder)
        list(APPEND folders "${folder}")
    endforeach()
    list(REMOVE_DUPLICATES folders)

    string(TOUPPER ${name} upper)
    set(generated "${CMAKE_CURRENT_BINARY_DIR}/include")
    set(export_header "${generated}/${name}Export.h")

    add_library(${name} SHARED ${ARG_SOURCES})
    add_library(Kyte::${name} ALIAS ${name})
    target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${folders} ${generated}
                                  FILES ${ARG_HEADERS} ${export_header})
    generate_export_header(${name} EXPORT_FILE_NAME "${export_header}" EXPORT_MACRO_NAME ${upper}_EXPORT
                           DEPRECATED_MACRO_NAME ${upper}_DEPRECATED NO_EXPORT_MACRO_NAME ${upper}_NO_EXPORT)
    target_compile_definitions(${name} PRIVATE QT_NO_CAST_FROM_ASCII)
    target_compile_features(${name} PUBLIC cxx_std_17)
    target_include_directories(${name} INTERFACE "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/${name}>")
    target_link_libraries(${name} PUBLIC ${ARG_LINK_PUBLIC} PRIVATE ${ARG_LINK_PRIVATE})
    set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
    kyte_defaults(${name})

    install(TARGETS ${name} EXPORT ${name}Targets
            RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
            ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
            FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${name})
endfunction()

# kyte_program(<name> SOURCES ... [LINK ...]): an executable. Who wants it installed says so.
function(kyte_program name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LINK})
    kyte_defaults(${name})
endfunction()
