# kyte_test(<name> [XSERVER | OFFSCREEN_AND_XSERVER] [SOURCES ...] [LINK ...] [ENVIRONMENT ...] [LABELS ...] [TIMEOUT seconds])
#
# A QtTest program made of <name>.cpp and SOURCES, run offscreen, in UTC and the C locale. A connection that names no
# signal or slot is only a warning to Qt and QtTest still says PASS, so its message fails the run here. XSERVER: the
# program runs on an X server of its own, with a window manager. OFFSCREEN_AND_XSERVER: both, as <name> and <name>_x11.
# A program for Windows runs on the desktop instead, as <name> and <name>_desktop.

set(KYTE_TEST_ENVIRONMENT "QT_QPA_PLATFORM=offscreen;TZ=UTC;LC_ALL=C.UTF-8;KYTE_CONFIG_FILE=;QT_LOGGING_RULES=")
# Where the programs find the files of the machine that they were built on: wine shows them as a drive.
set(KYTE_HOST_ROOT "")
if(WIN32 AND CMAKE_CROSSCOMPILING)
    set(KYTE_HOST_ROOT "Z:")
    set(CMAKE_CROSSCOMPILING_EMULATOR "${PROJECT_SOURCE_DIR}/tests/helpers/wine-program"
        "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}:${KYTE_WINDOWS_QT}/bin")
endif()
set(KYTE_BROKEN_CONNECTION "QObject::connect: (No such|Cannot|signal not found|Incompatible)")
if(KYTE_SANITIZE MATCHES "address")
    list(APPEND KYTE_TEST_ENVIRONMENT
         "LSAN_OPTIONS=suppressions=${CMAKE_CURRENT_SOURCE_DIR}/lsan.supp:print_suppressions=0"
         "UBSAN_OPTIONS=print_stacktrace=1")
endif()
if(KYTE_SANITIZE MATCHES "thread")
    list(APPEND KYTE_TEST_ENVIRONMENT "TSAN_OPTIONS=suppressions=${CMAKE_CURRENT_SOURCE_DIR}/tsan.supp")
endif()

# What kyte_test() knows of a test that it adds; further arguments are added to the environment.
macro(kyte_test_properties test)
    set_tests_properties(${test} PROPERTIES
        ENVIRONMENT "${KYTE_TEST_ENVIRONMENT};${ARGN};${ARG_ENVIRONMENT}"
        FAIL_REGULAR_EXPRESSION "${KYTE_BROKEN_CONNECTION}"
        LABELS "${ARG_LABELS}"
        TIMEOUT ${ARG_TIMEOUT})
    # Parts of these tests expect what only Unix does: that a program is still starting when start() returns, that it ends
    # by a signal, that a folder can be taken away while it is watched, that a drag is driven by the test. Until each part
    # says so itself, ./dev windows leaves the tests out.
    if(WIN32 AND ${test} MATCHES
       "^tst_(KyExecuteProcess|KyPptConversion|KyPptConversionAsync|mediabrowser|KyFileSystemModelWatcher|KyFileSystemModelSlots)$")
        set_tests_properties(${test} PROPERTIES LABELS unix-expectations)
    endif()
    # The user's folders are the same for all programs there: they do not follow the environment.
    if(WIN32 AND ${test} MATCHES "Config|Singletons|FileSystem|Dock|MessageBox|kyec|windowsFiles")
        set_tests_properties(${test} PROPERTIES RESOURCE_LOCK user-folders)
    endif()
endmacro()

# The precompiled header is compiled once, for kytetesthelpers, and used by every test.
function(kyte_test name)
    cmake_parse_arguments(ARG "XSERVER;OFFSCREEN_AND_XSERVER" "TIMEOUT" "SOURCES;LINK;ENVIRONMENT;LABELS" ${ARGN})
    add_executable(${name} ${name}.cpp ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE kytetesthelpers Qt5::Test ${ARG_LINK})
    kyte_defaults(${name})
    if(KYTE_PRECOMPILED_HEADERS)
        target_precompile_headers(${name} REUSE_FROM kytetesthelpers)
    endif()
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 300)
    endif()
    if(NOT ARG_XSERVER)
        add_test(NAME ${name} COMMAND ${name})
        kyte_test_properties(${name})
    endif()
    if(ARG_XSERVER OR ARG_OFFSCREEN_AND_XSERVER)
        set(test ${name})
        if(ARG_OFFSCREEN_AND_XSERVER AND WIN32)
            string(APPEND test _desktop)
        elseif(ARG_OFFSCREEN_AND_XSERVER)
            string(APPEND test _x11)
        endif()
        if(WIN32)
            add_test(NAME ${test} COMMAND ${name})
            kyte_test_properties(${test} QT_QPA_PLATFORM=windows)
        else()
            add_test(NAME ${test}
                COMMAND "${PROJECT_SOURCE_DIR}/tests/helpers/with-xserver" $<TARGET_FILE:${name}>)
            kyte_test_properties(${test} QT_QPA_PLATFORM=xcb)
        endif()
    endif()
endfunction()
