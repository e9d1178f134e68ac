# Settings every target of the tree is built with, and the functions that make targets of them.

include_guard(GLOBAL)

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTOUIC ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
# The build tree can be moved or copied as a whole: libraries find each other by relative path.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

find_program(PCD_CCACHE ccache)
if(PCD_CCACHE)
    set(CMAKE_C_COMPILER_LAUNCHER "${PCD_CCACHE}")
    set(CMAKE_CXX_COMPILER_LAUNCHER "${PCD_CCACHE}")
endif()

option(PCD_WERROR "Treat warnings as errors" OFF)
set(PCD_SANITIZE "" CACHE STRING "Sanitizers to build with, as for -fsanitize= (empty: none)")

add_library(pcd_settings INTERFACE)
target_include_directories(pcd_settings INTERFACE "${CMAKE_SOURCE_DIR}/src")
target_compile_options(pcd_settings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow
    $<$<BOOL:${PCD_WERROR}>:-Werror>
    # Of sources that are compiled as one, GCC takes what a file keeps to itself for a header's.
    $<$<AND:$<BOOL:${CMAKE_UNITY_BUILD}>,$<CXX_COMPILER_ID:GNU>>:-Wno-subobject-linkage>
    # Log records name source files relative to the tree, the same wherever it was built.
    "-fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=")
target_compile_definitions(pcd_settings INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH)
if(PCD_SANITIZE)
    target_compile_options(pcd_settings INTERFACE
        "-fsanitize=${PCD_SANITIZE}" -fno-omit-frame-pointer)
    target_link_options(pcd_settings INTERFACE "-fsanitize=${PCD_SANITIZE}")
    if(PCD_SANITIZE MATCHES "undefined")
        target_compile_options(pcd_settings INTERFACE -fno-sanitize-recover=undefined)
    endif()
endif()

# pcd_add_library(NAME SOURCES… LINK libraries…): a shared library of the framework.
function(pcd_add_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
    add_library(${name} SHARED ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC pcd_settings ${arg_LINK})
endfunction()

# pcd_add_test(NAME SOURCES… LINK libraries…): a GoogleTest program, run once as a whole by ctest.
function(pcd_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
    add_executable(${name} ${arg_SOURCES})
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
    # Most of a build went into optimising assertions that run once. (Not where the thread sanitizer
    # watches every access: there, optimised tests are the faster ones in all.)
    if(NOT PCD_SANITIZE MATCHES "thread")
        target_compile_options(${name} PRIVATE -O0)
    endif()
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        # It then takes a quarter of the time for a test. GCC's are so large that they gain nothing.
        target_precompile_headers(${name} PRIVATE <gmock/gmock.h> <gtest/gtest.h> <QTest>)
    endif()
    target_link_libraries(${name} PRIVATE pcd_settings pcd_test_support GTest::gtest GTest::gmock Qt6::Test ${arg_LINK})
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
        TIMEOUT 300
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;${PCD_TEST_ENVIRONMENT}")
endfunction()
