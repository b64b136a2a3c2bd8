# Installs the manual: every file of ZORVIK_HELP_SOURCE (the repository's help/ folder) into
# ZORVIK_HELP_DESTINATION (Help/ in the program folder). Run at install time, so that a manual
# added or changed after configuring is installed as it stands; an absent or empty folder
# installs nothing (the program then shows its page saying the manual is missing).
#
# Also usable on its own:
#   cmake -DZORVIK_HELP_SOURCE=help -DZORVIK_HELP_DESTINATION=/tmp/x/Help -P InstallHelp.cmake
if(NOT DEFINED ZORVIK_HELP_SOURCE OR NOT DEFINED ZORVIK_HELP_DESTINATION)
    message(FATAL_ERROR "InstallHelp.cmake needs ZORVIK_HELP_SOURCE and ZORVIK_HELP_DESTINATION")
endif()

if(NOT IS_DIRECTORY "${ZORVIK_HELP_SOURCE}")
    message(STATUS "No manual to install: ${ZORVIK_HELP_SOURCE} does not exist")
    return()
endif()

# Files that build or describe the manual, not pages of it.
file(GLOB_RECURSE zorvik_help_files LIST_DIRECTORIES false RELATIVE "${ZORVIK_HELP_SOURCE}"
     "${ZORVIK_HELP_SOURCE}/*")
list(FILTER zorvik_help_files EXCLUDE REGEX "(^|/)\\.")
list(FILTER zorvik_help_files EXCLUDE REGEX "(^|/)CMakeLists\\.txt$")
list(FILTER zorvik_help_files EXCLUDE REGEX "\\.cmake$")
if(NOT zorvik_help_files)
    message(STATUS "No manual to install: ${ZORVIK_HELP_SOURCE} holds no pages")
    return()
endif()
list(FIND zorvik_help_files "index.html" zorvik_index_at)
if(zorvik_index_at EQUAL -1)
    message(WARNING "The manual in ${ZORVIK_HELP_SOURCE} has no index.html, the page HELP opens")
endif()

list(SORT zorvik_help_files)
foreach(file IN LISTS zorvik_help_files)
    get_filename_component(subfolder "${file}" DIRECTORY)
    # file(INSTALL) adds DESTDIR itself and records the file in the install manifest.
    file(INSTALL DESTINATION "${ZORVIK_HELP_DESTINATION}/${subfolder}" TYPE FILE
         FILES "${ZORVIK_HELP_SOURCE}/${file}")
endforeach()
