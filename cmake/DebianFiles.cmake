# Run by CPack on what goes into the packages, before they are made. Debian wants in each of them the copyright and the
# changes in its own format, and manual pages compressed.

file(READ ${CMAKE_CURRENT_LIST_DIR}/../CHANGELOG.md changes)
string(REGEX MATCH "\n## ${CPACK_PACKAGE_VERSION}\n\n([^#]*)" found "${changes}")
if(NOT found)
  message(FATAL_ERROR "CHANGELOG.md has no section ${CPACK_PACKAGE_VERSION}")
endif()
string(STRIP "${CMAKE_MATCH_1}" changes)
string(REGEX REPLACE "\\[([^]]*)\\]\\([^)]*\\)" "\\1" changes "${changes}")
string(REGEX REPLACE "(^|\n)- " "\\1* " changes "${changes}")
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)

# Debian's lines have at most 80 characters.
set(work ${CPACK_TEMPORARY_DIRECTORY}.files)
string(REGEX REPLACE "\n +" " " changes "${changes}")
file(WRITE ${work}/changes "${changes}")
execute_process(COMMAND fold -s -w 76 ${work}/changes OUTPUT_VARIABLE changes COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE " *\n([^*])" "\n  \\1" changes "${changes}")
string(REPLACE "\n" "\n  " changes "${changes}")

file(WRITE ${work}/changelog "${CPACK_PACKAGE_NAME} (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium

  ${changes}

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")
file(READ ${CMAKE_CURRENT_LIST_DIR}/../LICENSE licence)
if(NOT licence MATCHES "^MIT License\n\nCopyright \\(c\\) ([^\n]*)\n\n(.*)\n$")
  message(FATAL_ERROR "LICENSE is not the MIT licence that the packages name")
endif()
set(holder "${CMAKE_MATCH_1}")
set(licence " ${CMAKE_MATCH_2}")
string(REPLACE "\n\n" "\n.\n" licence "${licence}")
string(REPLACE "\n" "\n " licence "${licence}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/copyright.in ${work}/copyright @ONLY)
execute_process(COMMAND gzip -9nf ${work}/changelog COMMAND_ERROR_IS_FATAL ANY)

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} part)
  set(share ${CPACK_TEMPORARY_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX}/share)
  file(COPY ${work}/changelog.gz ${work}/copyright DESTINATION ${share}/doc/${CPACK_DEBIAN_${part}_PACKAGE_NAME}
       FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  file(GLOB pages ${share}/man/man*/*.[1-9])
  foreach(page IN LISTS pages)
    execute_process(COMMAND gzip -9n ${page} COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
  # Whatever the builder's umask is.
  execute_process(COMMAND find ${CPACK_TEMPORARY_DIRECTORY}/${component} -type d -exec chmod 755 {} +
                  COMMAND_ERROR_IS_FATAL ANY)
endforeach()
