# 64-bit Windows, with Debian's mingw-w64. KYTE_WINDOWS_QT is the folder of a Qt that was built so, and
# KYTE_WINDOWS_LIBRARIES the folder of the other libraries; ./dev windows brings both.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KYTE_WINDOWS_QT KYTE_WINDOWS_LIBRARIES)
foreach(folder IN ITEMS KYTE_WINDOWS_QT KYTE_WINDOWS_LIBRARIES)
    if(NOT IS_DIRECTORY "${${folder}}")
        message(FATAL_ERROR "${folder} is no folder: \"${${folder}}\"; ./dev windows sets it")
    endif()
endforeach()

# Programs are the host's; everything else is for Windows, or else it is not there.
set(CMAKE_PREFIX_PATH "${KYTE_WINDOWS_QT}" "${KYTE_WINDOWS_LIBRARIES}")
set(CMAKE_FIND_ROOT_PATH "${KYTE_WINDOWS_QT}" "${KYTE_WINDOWS_LIBRARIES}" /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} "${KYTE_WINDOWS_LIBRARIES}/lib/pkgconfig")
