# Compile and link settings of all targets.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# The build tree has the layout of the installed tree, so that one RPATH works in both. If the RPATH changed on
# installation, CMake would pad it with empty entries. For an empty entry, the loader searches the current directory.
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_LIBDIR})
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_BINDIR})
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

# All our targets link to `kel_settings`: it enables warnings, disables Qt's implicit conversions and adds our headers.
add_library(kel_settings INTERFACE)
# No program replaces our exported functions, so a library may call its own exported functions directly.
target_compile_options(kel_settings INTERFACE -fno-semantic-interposition)
target_compile_options(kel_settings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                       -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual -Wundef)
target_compile_definitions(kel_settings INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
                           QT_NO_FOREACH QT_NO_KEYWORDS QT_DEPRECATED_WARNINGS)
target_include_directories(kel_settings INTERFACE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)

# Instruments everything with sanitizers: "address,undefined", "thread", ...
set(KEL_SANITIZE "" CACHE STRING "Sanitizers to build with")
if(KEL_SANITIZE)
  add_compile_options(-fsanitize=${KEL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${KEL_SANITIZE})
endif()

# Cheap hardening; packages add what their distribution requires. Sanitizers already check more than _FORTIFY_SOURCE.
add_link_options(-Wl,-z,relro,-z,now)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
  add_compile_options(-fcf-protection)
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64|arm64")
  add_compile_options(-mbranch-protection=standard)
endif()
if(NOT KEL_SANITIZE AND NOT CMAKE_CXX_FLAGS MATCHES _FORTIFY_SOURCE)
  # Undefine the macro first, because some compilers predefine it.
  add_compile_options($<$<CONFIG:Release,RelWithDebInfo>:-U_FORTIFY_SOURCE> $<$<CONFIG:Release,RelWithDebInfo>:-D_FORTIFY_SOURCE=2>)
endif()

# Link options of the shared libraries. A loaded library is never unloaded, because objects may still exist.
set(KEL_LIBRARY_LINK_OPTIONS -Wl,-z,nodelete)
# Undefined symbols are errors, except with Clang's sanitizers, whose runtime is resolved at load time.
if(NOT (KEL_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang"))
  list(APPEND KEL_LIBRARY_LINK_OPTIONS -Wl,--no-undefined)
endif()
