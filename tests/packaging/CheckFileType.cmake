# Checks that a Qt program (as file dialogs and Qt file managers) sees .wdf files as Zorvik's
# waveform data files once the installed file type is on the data path.
# Arguments: HELPER (zorvik_packaging_helper), STAGE, WORK (a scratch folder).
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE "${WORK}")
set(wdf "[APPLICATION]\r\nName=Zorvik\r\nVersion=1.1.1\r\n[SETTINGS]\r\nHscaleindex=6\r\n")
file(WRITE "${WORK}/trace.wdf" "${wdf}")
file(WRITE "${WORK}/TRACE.WDF" "${wdf}")
file(WRITE "${WORK}/empty.wdf" "")
file(WRITE "${WORK}/saved trace" "${wdf}")
file(WRITE "${WORK}/notes.txt" "[APPLICATION]\r\nName=Other\r\n")
# Written by hand: comment lines before the section, no extension.
string(REPEAT "; a comment line of a waveform written by hand\r\n" 60 comments)
file(WRITE "${WORK}/bench trace" "${comments}${wdf}")
# The section only after the first 4 KiB: plain text.
string(REPEAT "; a comment line of a waveform written by hand\r\n" 100 long_comments)
file(WRITE "${WORK}/late section" "${long_comments}${wdf}")
file(MAKE_DIRECTORY "${WORK}/data-home")

set(files trace.wdf TRACE.WDF empty.wdf "saved trace" notes.txt "bench trace" "late section")
set(expected
    "application/x-zorvik-wdf\napplication/x-zorvik-wdf\napplication/x-zorvik-wdf\n"
    "application/x-zorvik-wdf\ntext/plain\napplication/x-zorvik-wdf\ntext/plain\n")
string(CONCAT expected ${expected})

execute_process(
    COMMAND ${CMAKE_COMMAND} -E env XDG_DATA_HOME=${WORK}/data-home
            XDG_DATA_DIRS=${STAGE}/usr/share:/usr/local/share:/usr/share
            "${HELPER}" mime ${files}
    WORKING_DIRECTORY "${WORK}"
    RESULT_VARIABLE result OUTPUT_VARIABLE types ERROR_VARIABLE errors)
if(NOT result EQUAL 0 OR NOT types STREQUAL expected)
    message(FATAL_ERROR "file types of ${files}:\n${types}${errors}\nexpected:\n${expected}")
endif()
message(STATUS "file types as expected:\n${types}")
