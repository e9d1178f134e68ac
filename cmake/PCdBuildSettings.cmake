# Settings for all targets of the tree, and the functions that create targets.

include_guard(GLOBAL)

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTOUIC ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# A library exports what PCore/PExport.h marks, and nothing else.
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

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
    # In sources that are compiled as one, GCC mistakes a file's unnamed namespace for a header's.
    $<$<AND:$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>,$<COMPILE_LANG_AND_ID:CXX,GNU>>:-Wno-subobject-linkage>
    # GCC collects its garbage less often: a tenth less time for a quarter more memory (1.2 GB for the largest unit).
    "$<$<COMPILE_LANG_AND_ID:CXX,GNU>:--param=ggc-min-expand=1000;--param=ggc-min-heapsize=1048576>"
    # Log records name source files relative to the tree, the same wherever it was built.
    "-fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=")
target_compile_definitions(pcd_settings INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH)
if(PCD_BUILD_TESTS OR PCD_BUILD_FUZZ)
    target_compile_definitions(pcd_settings INTERFACE PCD_BUILD_TESTS)
endif()
if(PCD_SANITIZE)
    target_compile_options(pcd_settings INTERFACE
        "-fsanitize=${PCD_SANITIZE}" -fno-omit-frame-pointer)
    # Where it is installed, LLVM's linker: it takes a quarter of the time.
    include(CheckLinkerFlag)
    check_linker_flag(CXX -fuse-ld=lld PCD_HAS_LLD)
    target_link_options(pcd_settings INTERFACE
        "-fsanitize=${PCD_SANITIZE}" $<$<BOOL:${PCD_HAS_LLD}>:-fuse-ld=lld>)
    if(PCD_SANITIZE MATCHES "undefined")
        target_compile_options(pcd_settings INTERFACE -fno-sanitize-recover=undefined)
    endif()
endif()

# pcd_optimise_pixels(TARGET [sources…]): for code that does much work for every pixel of every test, which would be too
# slow under a sanitizer: all of the target, or some sources, which are then compiled each by itself. Everything else is
# not optimised there: compiling takes twice as long, longer than running it.
function(pcd_optimise_pixels name)
    if(NOT PCD_SANITIZE)
        return()
    endif()
    if(ARGN)
        set_property(SOURCE ${ARGN} APPEND PROPERTY COMPILE_OPTIONS -O1)
    else()
        target_compile_options(${name} PRIVATE -O1)
    endif()
endfunction()

# pcd_set_face(TARGET HEADERS headers…): which headers of a library others may include; all others
# are private. scripts/check reads these lists and compares the includes with them.
function(pcd_set_face name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS")
    get_target_property(type ${name} TYPE)
    set(scope PUBLIC)
    if(type STREQUAL "INTERFACE_LIBRARY")
        set(scope INTERFACE)
    endif()
    target_sources(${name} ${scope}
        FILE_SET HEADERS BASE_DIRS "${CMAKE_SOURCE_DIR}/src" FILES ${arg_HEADERS})
endfunction()

# pcd_add_library(NAME SOURCES… HEADERS… LINK libraries…): a shared library of the framework; HEADERS
# are its face.
function(pcd_add_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;HEADERS;LINK")
    # The headers are listed as sources too, because moc processes no others.
    add_library(${name} SHARED ${arg_SOURCES} ${arg_HEADERS})
    pcd_set_face(${name} HEADERS ${arg_HEADERS})
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:pcd_settings> PUBLIC ${arg_LINK})
    pcd_hide_templates(${name})
endfunction()

# pcd_hide_templates(TARGET): keeps inside a library what the compiler exports of other libraries'
# templates.
function(pcd_hide_templates name)
    set(map "${CMAKE_SOURCE_DIR}/cmake/exports.map")
    target_link_options(${name} PRIVATE "-Wl,--version-script=${map}")
    set_target_properties(${name} PROPERTIES LINK_DEPENDS "${map}")
endfunction()

# pcd_compile_as_test(TARGET): for what only tests link. Most of their build time would go into optimising what runs once,
# into what a debugger would like to know of it (lines are enough), and into reading what they all include: that is
# compiled once, which takes half the time of a small program.
function(pcd_compile_as_test name)
    target_compile_options(${name} PRIVATE -O0 -g1)
    if(NOT name STREQUAL "pcd_test_support")
        target_precompile_headers(${name} REUSE_FROM pcd_test_support)
        # Nearly always empty, as sources include what moc makes of them.
        set_source_files_properties("${CMAKE_CURRENT_BINARY_DIR}/${name}_autogen/mocs_compilation.cpp"
            PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
    endif()
endfunction()

# pcd_add_test(NAME [SHARDS number] [COST seconds] SOURCES… LINK libraries…): a GoogleTest program. ctest runs it once as
# a whole; a long one in parallel shards, each with a part of the tests. What costs more starts earlier, until ctest has
# seen how long each takes.
function(pcd_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "SHARDS;COST" "SOURCES;LINK")
    add_executable(${name} ${arg_SOURCES})
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
    pcd_compile_as_test(${name})
    # What the tests include takes longest: read it once for up to 64 of them.
    set_target_properties(${name} PROPERTIES UNITY_BUILD_BATCH_SIZE 64)
    target_link_libraries(${name} PRIVATE pcd_settings pcd_test_support GTest::gtest GTest::gmock Qt6::Test ${arg_LINK})
    if(NOT arg_SHARDS)
        pcd_add_test_run(${name} ${name} "")
        if(arg_COST)
            set_tests_properties(${name} PROPERTIES COST ${arg_COST})
        endif()
        return()
    endif()
    if(NOT arg_COST)
        set(arg_COST 10)
    endif()
    math(EXPR last "${arg_SHARDS} - 1")
    foreach(shard RANGE ${last})
        pcd_add_test_run(${name} "${name}.${shard}"
            "GTEST_TOTAL_SHARDS=${arg_SHARDS};GTEST_SHARD_INDEX=${shard};")
        set_tests_properties("${name}.${shard}" PROPERTIES COST ${arg_COST})
    endforeach()
endfunction()

# pcd_add_test_run(PROGRAM RUN environment): a test of ctest that runs a test program.
function(pcd_add_test_run program run environment)
    add_test(NAME ${run} COMMAND ${program})
    set_tests_properties(${run} PROPERTIES
        TIMEOUT 300
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;${environment}${PCD_TEST_ENVIRONMENT}")
endfunction()
