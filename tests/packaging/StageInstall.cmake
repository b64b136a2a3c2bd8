# Installs the build into the staging folder STAGE with prefix /usr, as a package build does.
# Arguments: BUILD_DIR, STAGE.
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE "${STAGE}")
execute_process(
    COMMAND ${CMAKE_COMMAND} -E env DESTDIR=${STAGE}
            ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix /usr
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "cmake --install failed (${result}):\n${output}\n${errors}")
endif()
message(STATUS "${output}")
