# Runs the program of a page in a directory with only the files that the program reads. Compares what the program prints
# and writes with the page:
# cmake -DPROGRAM=... -DPLACE=... -DREADS=... -DWRITES=... -DTEXTS=... -DPRINTS=... -P RunPage.cmake
file(REMOVE_RECURSE ${PLACE})
file(MAKE_DIRECTORY ${PLACE})
foreach(name IN LISTS READS)
  list(POP_FRONT TEXTS text)
  configure_file(${text} ${PLACE}/${name} COPYONLY)
endforeach()

# Without a test runner, the list PROGRAM begins with an empty element. Remove that element.
string(REGEX REPLACE "^;" "" PROGRAM "${PROGRAM}")
execute_process(COMMAND ${PROGRAM} WORKING_DIRECTORY ${PLACE} RESULT_VARIABLE result OUTPUT_VARIABLE printed)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "The program returns ${result} and prints\n${printed}")
endif()

set(expected "")
foreach(text IN LISTS PRINTS)
  file(READ ${text} part)
  string(APPEND expected "${part}")
endforeach()
if(NOT printed STREQUAL expected)
  message(FATAL_ERROR "The program prints\n${printed}\nand not\n${expected}")
endif()

foreach(name IN LISTS WRITES)
  list(POP_FRONT TEXTS text)
  file(READ ${text} expected)
  file(READ ${PLACE}/${name} written)
  if(NOT written STREQUAL expected)
    message(FATAL_ERROR "${name} is\n${written}\nand not\n${expected}")
  endif()
endforeach()
