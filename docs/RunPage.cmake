# Runs the program of a page in an empty place where only the files are that it reads, and compares what it writes:
# cmake -DPROGRAM=... -DPLACE=... -DREADS=... -DWRITES=... -DTEXTS=... -P RunPage.cmake
file(REMOVE_RECURSE ${PLACE})
file(MAKE_DIRECTORY ${PLACE})
foreach(name IN LISTS READS)
  list(POP_FRONT TEXTS text)
  configure_file(${text} ${PLACE}/${name} COPYONLY)
endforeach()

string(REGEX REPLACE "^;" "" PROGRAM "${PROGRAM}") # no runner
execute_process(COMMAND ${PROGRAM} WORKING_DIRECTORY ${PLACE} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "The program answers ${result}")
endif()

foreach(name IN LISTS WRITES)
  list(POP_FRONT TEXTS text)
  file(READ ${text} expected)
  file(READ ${PLACE}/${name} written)
  if(NOT written STREQUAL expected)
    message(FATAL_ERROR "${name} is\n${written}\nand not\n${expected}")
  endif()
endforeach()
