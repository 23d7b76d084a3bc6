function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        list(JOIN ARGN " " command)
        message(FATAL_ERROR "failed (${result}): ${command}")
    endif()
endfunction()

file(REMOVE_RECURSE "${PREFIX}" "${CONSUMER_BUILD}")
run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${PREFIX}")

set(flags "")
if(SANITIZE)
    set(flags "-fsanitize=${SANITIZE}")
endif()
run("${CMAKE_COMMAND}" -S "${CONSUMER_SOURCE}" -B "${CONSUMER_BUILD}" -G "${GENERATOR}"
    "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_PREFIX_PATH=${PREFIX}" "-DKyEditorCommon_ROOT=${PREFIX}"
    "-DCMAKE_CXX_FLAGS=${flags}" ${CROSS})
run("${CMAKE_COMMAND}" --build "${CONSUMER_BUILD}")
run(${EMULATOR} "${CONSUMER_BUILD}/consumer${SUFFIX}")

run("${CMAKE_COMMAND}" -S "${PRODUCT_SOURCE}" -B "${CONSUMER_BUILD}-product" -G "${GENERATOR}"
    "-DCMAKE_CXX_COMPILER=${CXX}" "-DKYTE_SOURCE_DIR=${KYTE_SOURCE_DIR}"
    "-DPACKAGE_DIR=${PREFIX}/${LIBDIR}/cmake/KyEditorCommon" ${CROSS})

if(NOT PKG_CONFIG OR CROSS)
    return()
endif()
set(ENV{PKG_CONFIG_PATH} "${PREFIX}/${LIBDIR}/pkgconfig")
execute_process(COMMAND "${PKG_CONFIG}" --cflags --libs KyEditorCommon
                OUTPUT_VARIABLE arguments RESULT_VARIABLE result OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "pkg-config does not find KyEditorCommon")
endif()
separate_arguments(arguments UNIX_COMMAND "${arguments}")
separate_arguments(flags UNIX_COMMAND "${flags}")
run("${CXX}" -std=c++17 -fPIC ${flags} "${CONSUMER_SOURCE}/main.cpp" -o "${CONSUMER_BUILD}/consumer-pkgconfig"
    ${arguments} "-Wl,-rpath,${PREFIX}/${LIBDIR}")
run("${CONSUMER_BUILD}/consumer-pkgconfig")
