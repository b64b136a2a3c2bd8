# Starts each installed program through its link in bin/ with --version and checks that it
# answers "<program> <version>". A program whose --version prints nothing yet is noted.
# Arguments: STAGE, FACTS, PROGRAMS.
cmake_minimum_required(VERSION 3.25)
string(REPLACE "," ";" PROGRAMS "${PROGRAMS}")
include("${FACTS}")
set(checked "")
set(failures "")
foreach(program IN LISTS PROGRAMS)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen
                "${STAGE}/usr/bin/${program}" --version
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors TIMEOUT 30)
    if(NOT result EQUAL 0)
        string(APPEND failures "  ${program} --version failed (${result}): ${errors}\n")
    elseif(output STREQUAL "")
        message(STATUS "NOTE: ${program} --version prints nothing yet")
    elseif(NOT output STREQUAL "${program} ${ZORVIK_VERSION}\n")
        string(APPEND failures "  ${program} --version printed \"${output}\"\n")
    else()
        list(APPEND checked ${program})
    endif()
endforeach()
if(failures)
    message(FATAL_ERROR "Installed programs:\n${failures}")
endif()
if(NOT checked)
    message(STATUS "SKIPPED: no installed program answers --version yet")
endif()
message(STATUS "Installed programs answering --version: ${checked}")
