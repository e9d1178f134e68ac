# SPDX-License-Identifier: MIT
# Fails unless the plugin's translation has exactly the texts of its sources, all translated.
# Needs LUPDATE (the program), SOURCES (the folder), SCRATCH (a file to work on).

set(catalogue "${SOURCES}/ptdevice_96.ts")
set(advice "lupdate -locations none -no-obsolete *.cpp *.h *.ui -ts ptdevice_96.ts")
file(GLOB texts "${SOURCES}/*.cpp" "${SOURCES}/*.h" "${SOURCES}/*.ui")
configure_file("${catalogue}" "${SCRATCH}" COPYONLY)
execute_process(
    COMMAND "${LUPDATE}" -locations none -no-obsolete ${texts} -ts "${SCRATCH}"
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
if(NOT result EQUAL 0 OR NOT output MATCHES "Found ([0-9]+) source")
    message(FATAL_ERROR "lupdate failed: ${output}")
endif()
set(used "${CMAKE_MATCH_1}")
if(NOT output MATCHES "\\(0 new and ${used} already existing\\)")
    message(FATAL_ERROR "Texts are missing in ptdevice_96.ts: ${output}Add them with\n  ${advice}")
endif()

file(READ "${catalogue}" text)
string(REGEX MATCHALL "<message>" messages "${text}")
list(LENGTH messages present)
if(NOT present EQUAL used)
    message(FATAL_ERROR "ptdevice_96.ts has ${present} texts, the sources have ${used}:\n  ${advice}")
endif()
if(text MATCHES "type=\"|<translation/>|<translation></translation>")
    message(FATAL_ERROR "ptdevice_96.ts has texts that are not translated")
endif()
