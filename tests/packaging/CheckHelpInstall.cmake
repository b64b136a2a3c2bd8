# Installs a made-up manual with packaging/InstallHelp.cmake and checks what arrives.
#   CASE=absent: no help folder: nothing installed, no error.
#   CASE=empty:  an empty help folder: nothing installed, no error.
#   CASE=pages:  pages, an image in a subfolder, a build file and a hidden file: the pages and
#                the image arrive as they are, the build file and the hidden file do not.
# Arguments: CASE, SCRIPT (InstallHelp.cmake), WORK (a scratch folder).
cmake_minimum_required(VERSION 3.25)
set(source "${WORK}/help")
set(destination "${WORK}/Help")
file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")

if(CASE STREQUAL "empty" OR CASE STREQUAL "pages")
    file(MAKE_DIRECTORY "${source}")
endif()
if(CASE STREQUAL "pages")
    file(WRITE "${source}/index.html" "<html><body><a href=\"serial.html\">Serial port</a>\n")
    file(WRITE "${source}/serial.html" "<html><body>dialout</body></html>\n")
    file(WRITE "${source}/images/panel.png" "not really a picture\n")
    file(WRITE "${source}/CMakeLists.txt" "# builds nothing\n")
    file(WRITE "${source}/.editorconfig" "root = true\n")
endif()

execute_process(
    COMMAND ${CMAKE_COMMAND} -E env --unset=DESTDIR
            ${CMAKE_COMMAND} -DZORVIK_HELP_SOURCE=${source}
            -DZORVIK_HELP_DESTINATION=${destination} -P "${SCRIPT}"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "InstallHelp.cmake failed (${result}):\n${output}${errors}")
endif()

file(GLOB_RECURSE installed LIST_DIRECTORIES false RELATIVE "${destination}" "${destination}/*")
list(SORT installed)
if(CASE STREQUAL "pages")
    set(expected images/panel.png index.html serial.html)
    foreach(page IN LISTS expected)
        execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files "${source}/${page}"
                                "${destination}/${page}" RESULT_VARIABLE differs)
        if(differs)
            message(FATAL_ERROR "Help/${page} differs from help/${page}")
        endif()
    endforeach()
else()
    set(expected "")
endif()
if(NOT "${installed}" STREQUAL "${expected}")
    message(FATAL_ERROR "installed \"${installed}\", expected \"${expected}\"")
endif()
message(STATUS "help ${CASE}: installed \"${installed}\"")
