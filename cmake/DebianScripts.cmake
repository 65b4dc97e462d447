# Run by CPack on the packages that it made. To each package with libraries it adds scripts that call ldconfig, as the
# trigger does already; Debian wants only the trigger.

foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(work ${CPACK_TEMPORARY_DIRECTORY}.unpacked)
  file(REMOVE_RECURSE ${work})
  execute_process(COMMAND sh -c "umask 022 && dpkg-deb --raw-extract $0 $1" ${package} ${work}
                  COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE ${work}/DEBIAN/postinst ${work}/DEBIAN/postrm)
  execute_process(COMMAND dpkg-deb --root-owner-group --build ${work} ${package}
                  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endforeach()
