# The preset "package", with the prefix that Debian has, makes Debian packages.
if(NOT KEL_PACKAGES)
  return()
endif()
find_program(KEL_SHLIBDEPS dpkg-shlibdeps)
find_program(KEL_FILE file)
if(NOT KEL_SHLIBDEPS OR NOT KEL_FILE)
  message(FATAL_ERROR "Packages need `dpkg-shlibdeps` and `file`: install the Debian packages dpkg-dev and file.")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kelxmllib)
set(CPACK_PACKAGE_CONTACT "libKelXmlLib maintainers <maintainers@kelxml.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/DebianFiles.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/DebianScripts.cmake)
set(CPACK_COMPONENTS_ALL runtime development tool)

# Each package's own: the first line is the summary, which one for all would take the place of.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
"XML document object model behind COM interfaces - libraries
The objects are reached through their vtables or by name. Beside them
stands a forward-only writer. Both are thin over Qt 5.
This package holds the shared libraries and the type library.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
"XML document object model behind COM interfaces - development files
The objects are reached through their vtables or by name. Beside them
stands a forward-only writer. Both are thin over Qt 5.
This package holds headers, CMake and pkg-config files, the pages of the
manual, and a host in C++ and one in Python as examples.")
set(CPACK_COMPONENT_TOOL_DESCRIPTION
"shows, searches, changes and writes XML documents
kelxml copies and indents documents, shows their outline, finds elements by
tag name, sets attributes and texts, and calls members of the XML document
object model by name.")

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libkelxmllib${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${KEL_DEVELOPMENT_PACKAGE})
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME kelxml)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION text)
# Other libraries are found by what a package is linked with; our own are named here. Headers and libraries are of one
# version. What runs takes any later one: an incompatible one has another name.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} (= ${PROJECT_VERSION}), qtbase5-dev (>= ${KEL_QT_VERSION})")
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} (>= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_LIST_DIR}/triggers)
include(CPack)
