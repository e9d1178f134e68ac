# SPDX-License-Identifier: MIT
# Fails unless a translation has exactly the texts of its sources, all translated. Needs LUPDATE (the
# program), CATALOGUE (the .ts file), SOURCES (folders, with commas), SCRATCH (a file to work on).

get_filename_component(name "${CATALOGUE}" NAME)
string(REPLACE "," ";" folders "${SOURCES}")
set(texts "")
foreach(folder IN LISTS folders)
    file(GLOB_RECURSE found "${folder}/*.cpp" "${folder}/*.h" "${folder}/*.ui")
    list(APPEND texts ${found})
endforeach()
set(advice "lupdate -locations none -no-obsolete SOURCES -ts ${name}, of the folders ${folders}")
configure_file("${CATALOGUE}" "${SCRATCH}" COPYONLY)
execute_process(
    COMMAND "${LUPDATE}" -locations none -no-obsolete ${texts} -ts "${SCRATCH}"
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
if(NOT result EQUAL 0 OR NOT output MATCHES "Found ([0-9]+) source")
    message(FATAL_ERROR "lupdate failed: ${output}")
endif()
set(used "${CMAKE_MATCH_1}")
if(NOT output MATCHES "\\(0 new and ${used} already existing\\)")
    message(FATAL_ERROR "Texts are missing in ${name}: ${output}Add them with\n  ${advice}")
endif()

file(READ "${CATALOGUE}" text)
string(REGEX MATCHALL "<message" messages "${text}")
list(LENGTH messages present)
if(NOT present EQUAL used)
    message(FATAL_ERROR "${name} has ${present} texts, the sources have ${used}:\n  ${advice}")
endif()
if(text MATCHES "type=\"|<translation/>|<translation></translation>")
    message(FATAL_ERROR "${name} has texts that are not translated")
endif()
