# Checks that a Qt program started through a symbolic link (as bin/zorvik is) reports the
# folder of the real executable as its program folder: there it finds Help/ and ZORVIK.INI.
# Arguments: HELPER (zorvik_packaging_helper), WORK (a scratch folder).
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}/bin")
file(RELATIVE_PATH target "${WORK}/bin" "${HELPER}")
file(CREATE_LINK "${target}" "${WORK}/bin/zorvik" SYMBOLIC)

execute_process(COMMAND "${WORK}/bin/zorvik" appdir
                RESULT_VARIABLE result OUTPUT_VARIABLE folder ERROR_VARIABLE errors
                OUTPUT_STRIP_TRAILING_WHITESPACE)
file(REAL_PATH "${HELPER}" real_helper)
get_filename_component(expected "${real_helper}" DIRECTORY)
if(NOT result EQUAL 0 OR NOT folder STREQUAL expected)
    message(FATAL_ERROR "program folder through the link: \"${folder}\" ${errors}\n"
                        "expected: \"${expected}\"")
endif()
message(STATUS "program folder through the link: ${folder}")
