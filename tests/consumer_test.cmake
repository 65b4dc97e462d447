# Installs the build in BUILD into a prefix below WORK, moves the prefix, and has the project in consumer/ built and run
# from there, by find_package and by pkg-config:
# cmake -DBUILD=... -DWORK=... -DREADME=... -DCXX=... -DGENERATOR=... -DPKG_CONFIG=... -P consumer_test.cmake

# run(COMMAND...): what it prints goes to `output`; it must succeed.
macro(run)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY ${WORK} RESULT_VARIABLE result
                  OUTPUT_VARIABLE output ERROR_VARIABLE errors OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT result EQUAL 0)
    string(REPLACE ";" " " command "${ARGN}")
    message(FATAL_ERROR "${command}: ${result}\n${output}\n${errors}")
  endif()
endmacro()

file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/installed)
file(STRINGS ${BUILD}/install_manifest.txt installed)
foreach(path IN LISTS installed)
  string(FIND "${path}" "${WORK}/installed/" place)
  if(NOT place EQUAL 0)
    message(FATAL_ERROR "Installed outside the prefix: ${path}")
  endif()
endforeach()
# Nothing may know where it was installed first.
set(prefix ${WORK}/prefix)
file(RENAME ${WORK}/installed ${prefix})

set(source ${CMAKE_CURRENT_LIST_DIR}/consumer)
run(${CMAKE_COMMAND} -S ${source} -B by-cmake -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${CXX}
    -DCMAKE_PREFIX_PATH=${prefix} -DREADME=${README})
run(${CMAKE_COMMAND} --build by-cmake)
run(by-cmake/readme)
run(by-cmake/by_name)

file(GLOB_RECURSE module ${prefix}/KelXmlLib.pc)
get_filename_component(directory ${module} DIRECTORY)
set(ENV{PKG_CONFIG_PATH} ${directory})
run(${PKG_CONFIG} --variable=libdir KelXmlLib)
set(libdir ${output})
run(${PKG_CONFIG} --variable=typelib KelXmlLib)
set(typelib ${output})
run(${PKG_CONFIG} --cflags --libs KelXmlLib)
separate_arguments(flags UNIX_COMMAND "${output}")
foreach(program by-cmake/readme ${source}/by_name)
  run(${CXX} -std=c++17 ${program}.cpp -DTYPE_LIBRARY="${typelib}" -o by-pkg-config ${flags} -Wl,-rpath,${libdir})
  run(./by-pkg-config)
endforeach()

# The installed tool finds the installed library and its type library.
file(WRITE ${WORK}/file.xml "<a><b/></a>")
run(${prefix}/bin/kelxml call file.xml documentElement.firstChild.nodeName)
if(NOT output STREQUAL "b")
  message(FATAL_ERROR "The installed kelxml says: ${output}")
endif()
file(GLOB_RECURSE texts ${prefix}/*.pc ${prefix}/*.cmake)
foreach(text IN LISTS texts)
  file(READ ${text} contents)
  if(contents MATCHES "${BUILD}")
    message(FATAL_ERROR "${text} refers to the build folder")
  endif()
endforeach()
