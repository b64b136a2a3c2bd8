# Checks a man page.
#   MODE=render:  PAGE renders with man(1) without a single warning.
#   MODE=options: every option PROGRAM --help lists is described in the OPTIONS section of
#                 PAGE, and every option that section describes is one PROGRAM --help lists.
#                 A program whose --help lists commands (a line "  NAME  what it does" under
#                 "Commands:") has its help read from PROGRAM NAME --help for each too.
# Arguments: MODE, PAGE, and PROGRAM (for MODE=options).
cmake_minimum_required(VERSION 3.25)
if(MODE STREQUAL "render")
    find_program(man_executable man REQUIRED)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C.UTF-8 MANWIDTH=80 MAN_DISABLE_SECCOMP=1
                ${man_executable} --warnings -E UTF-8 -l "${PAGE}"
        RESULT_VARIABLE result OUTPUT_VARIABLE text ERROR_VARIABLE warnings)
    if(NOT result EQUAL 0 OR NOT warnings STREQUAL "")
        message(FATAL_ERROR "man -l ${PAGE} failed (${result}):\n${warnings}")
    endif()
    get_filename_component(name "${PAGE}" NAME)
    string(REGEX REPLACE "\\.1(\\.gz)?$" "" program "${name}")
    if(NOT text MATCHES "\nNAME\n +${program} - ")
        message(FATAL_ERROR "${PAGE} has no NAME section for ${program}:\n${text}")
    endif()
    message(STATUS "${PAGE} renders cleanly")
    return()
endif()

if(NOT MODE STREQUAL "options")
    message(FATAL_ERROR "unknown MODE \"${MODE}\"")
endif()

# Long options in a text: --name, --name-with-dashes.
function(long_options text out)
    string(REGEX MATCHALL "--[a-z][a-z-]*[a-z]" found "${text}")
    list(REMOVE_DUPLICATES found)
    list(SORT found)
    set(${out} "${found}" PARENT_SCOPE)
endfunction()

execute_process(COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen "${PROGRAM}" --help
                RESULT_VARIABLE result OUTPUT_VARIABLE help ERROR_VARIABLE help_errors)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} --help failed (${result}):\n${help}${help_errors}")
endif()
# The commands the overview lists, each with help of its own.
string(FIND "${help}" "\nCommands:\n" commands_at)
if(NOT commands_at EQUAL -1)
    string(SUBSTRING "${help}" ${commands_at} -1 commands_text)
    string(REGEX MATCHALL "\n  [a-z]+" commands "${commands_text}")
    foreach(command IN LISTS commands)
        string(STRIP "${command}" command)
        execute_process(COMMAND "${PROGRAM}" ${command} --help
                        RESULT_VARIABLE result OUTPUT_VARIABLE command_help)
        if(NOT result EQUAL 0)
            message(FATAL_ERROR "${PROGRAM} ${command} --help failed (${result})")
        endif()
        string(APPEND help "${command_help}")
    endforeach()
endif()
long_options("${help}" help_options)
if(NOT help_options)
    message(STATUS "SKIPPED: ${PROGRAM} --help lists no options yet")
    return()
endif()

# The OPTIONS section of the page: from ".SH OPTIONS" to the next section.
file(READ "${PAGE}" page)
string(REPLACE "\\-" "-" page "${page}")
string(FIND "${page}" "\n.SH OPTIONS\n" start)
if(start EQUAL -1)
    message(FATAL_ERROR "${PAGE} has no OPTIONS section")
endif()
math(EXPR start "${start} + 1")
string(SUBSTRING "${page}" ${start} -1 options_section)
string(FIND "${options_section}" "\n.SH " end)
string(SUBSTRING "${options_section}" 0 ${end} options_section)
long_options("${options_section}" page_options)

set(failures "")
foreach(option IN LISTS help_options)
    if(NOT option IN_LIST page_options)
        string(APPEND failures "  ${option} is in --help but not in the man page's OPTIONS\n")
    endif()
endforeach()
foreach(option IN LISTS page_options)
    if(NOT option IN_LIST help_options)
        string(APPEND failures "  ${option} is in the man page's OPTIONS but not in --help\n")
    endif()
endforeach()
if(failures)
    message(FATAL_ERROR "${PAGE} and ${PROGRAM} --help disagree:\n${failures}")
endif()
message(STATUS "${PAGE} describes the options ${help_options}")
