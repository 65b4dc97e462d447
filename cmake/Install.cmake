# What `cmake --install` installs, in three components: runtime, development, tool. No installed file contains the
# installation prefix, so the installed tree can be moved.
include(CMakePackageConfigHelpers)

set(KEL_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/${PROJECT_NAME})
set(KEL_PKGCONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# KelXmlLib and kelxml find the libraries that they need relative to their own directory.
file(RELATIVE_PATH up ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set_target_properties(KelXmlLib PROPERTIES INSTALL_RPATH $ORIGIN BUILD_WITH_INSTALL_RPATH ON)
set_target_properties(kelxml PROPERTIES INSTALL_RPATH $ORIGIN/${up} BUILD_WITH_INSTALL_RPATH ON)

install(TARGETS KelComWrapper KelXmlLib EXPORT ${PROJECT_NAME}Targets
        LIBRARY COMPONENT runtime NAMELINK_COMPONENT development)
get_filename_component(place ${KEL_TYPE_LIBRARY_PLACE} DIRECTORY)
install(FILES ${KEL_TYPE_LIBRARY} DESTINATION ${CMAKE_INSTALL_LIBDIR}/${place} COMPONENT runtime)

install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(EXPORT ${PROJECT_NAME}Targets NAMESPACE ${PROJECT_NAME}:: DESTINATION ${KEL_PACKAGE_DIR}
        COMPONENT development)
set(KEL_TYPE_LIBRARY_INSTALLED ${CMAKE_INSTALL_LIBDIR}/${KEL_TYPE_LIBRARY_PLACE})
configure_package_config_file(cmake/Config.cmake.in ${PROJECT_NAME}Config.cmake
  INSTALL_DESTINATION ${KEL_PACKAGE_DIR} PATH_VARS KEL_TYPE_LIBRARY_INSTALLED)
write_basic_package_version_file(${PROJECT_NAME}ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/${PROJECT_NAME}Config.cmake
              ${PROJECT_BINARY_DIR}/${PROJECT_NAME}ConfigVersion.cmake
        DESTINATION ${KEL_PACKAGE_DIR} COMPONENT development)

file(RELATIVE_PATH up /${KEL_PKGCONFIG_DIR} /)
string(REGEX REPLACE "/$" "" up ${up})
set(KEL_PREFIX_FROM_PKGCONFIG \${pcfiledir}/${up})
foreach(module KelComWrapper KelXmlLib)
  configure_file(cmake/${module}.pc.in ${module}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${module}.pc DESTINATION ${KEL_PKGCONFIG_DIR} COMPONENT development)
endforeach()

# The user pages, under the name of the Debian package that contains them.
set(KEL_DEVELOPMENT_PACKAGE libkelxmllib-dev)
install(FILES docs/tour.md docs/cookbook.md docs/ownership.md docs/guarantees.md docs/late-bound.md docs/filer.md
              docs/limits.md docs/no-ops.md
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${KEL_DEVELOPMENT_PACKAGE} COMPONENT development)
install(FILES examples/host.py examples/settings.cpp examples/report.cpp examples/merge.cpp
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${KEL_DEVELOPMENT_PACKAGE}/examples COMPONENT development)

install(TARGETS kelxml RUNTIME COMPONENT tool)
configure_file(tools/kelxml/kelxml.1 kelxml.1 @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kelxml.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
install(FILES tools/kelxml/kelxml.bash RENAME kelxml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tool)
