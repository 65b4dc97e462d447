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
string(REPLACE "\n" "\n  " changes "${changes}")
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)

set(work ${CPACK_TEMPORARY_DIRECTORY}.files)
file(WRITE ${work}/changelog "${CPACK_PACKAGE_NAME} (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium

  ${changes}

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")
configure_file(${CMAKE_CURRENT_LIST_DIR}/copyright.in ${work}/copyright @ONLY)
execute_process(COMMAND gzip -9nf ${work}/changelog COMMAND_ERROR_IS_FATAL ANY)

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} part)
  set(share ${CPACK_TEMPORARY_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX}/share)
  # Whatever the builder's umask is.
  file(COPY ${work}/changelog.gz ${work}/copyright DESTINATION ${share}/doc/${CPACK_DEBIAN_${part}_PACKAGE_NAME}
       FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ
       DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  file(GLOB pages ${share}/man/man*/*.[1-9])
  foreach(page IN LISTS pages)
    execute_process(COMMAND gzip -9n ${page} COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
endforeach()
