# Fails when libKrGeL.so exports a dynamic symbol that is not one of the library's own public
# names. Run as: cmake -DLIBRARY=<path> -P CheckExports.cmake
#
# Allowed: names of the Kr/Krs/KrGe families (classes, members, free functions, template
# instantiations of the public containers), their vtables, typeinfo, VTTs, thunks and guard
# variables, the root finders methodDecart/methodFindAllRoot, operators taking Kr types, the
# linker's own section markers, and symbols that an enabled sanitizer adds.
if(NOT LIBRARY OR NOT EXISTS "${LIBRARY}")
  message(FATAL_ERROR "LIBRARY not given or missing: '${LIBRARY}'")
endif()
find_program(NM_PROGRAM NAMES nm REQUIRED)
execute_process(COMMAND ${NM_PROGRAM} -D --defined-only -C "${LIBRARY}"
  OUTPUT_VARIABLE listing RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "nm failed on ${LIBRARY}")
endif()

include(${CMAKE_CURRENT_LIST_DIR}/PublicNamePatterns.cmake)

string(REPLACE ";" "\\;" listing "${listing}")
string(REPLACE "\n" ";" lines "${listing}")
set(count 0)
set(leaks "")
foreach(line IN LISTS lines)
  # "<address> <type> <name>"; version definitions (type A) are the linker's.
  if(NOT line MATCHES "^[0-9a-fA-F]+ ([A-Za-z]) (.*)$")
    continue()
  endif()
  set(type "${CMAKE_MATCH_1}")
  set(name "${CMAKE_MATCH_2}")
  if(type STREQUAL "A")
    continue()
  endif()
  math(EXPR count "${count} + 1")
  set(ok FALSE)
  foreach(pattern IN LISTS allowed)
    if(name MATCHES "${pattern}")
      set(ok TRUE)
      break()
    endif()
  endforeach()
  if(NOT ok)
    string(APPEND leaks "  ${type} ${name}\n")
  endif()
endforeach()

if(count EQUAL 0)
  message(FATAL_ERROR "no exported symbols found in ${LIBRARY}: is this the library?")
endif()
if(leaks)
  message(FATAL_ERROR "libKrGeL exports names that are not its public interface:\n${leaks}")
endif()
message(STATUS "${count} exported symbols, all public names")
