# The shared library exports the classes declared in include/ and nothing
# else: every exported symbol belongs to one of them (its members, vtable or
# type information), none to an internal helper, and their number is the one
# the README gives. A change of the public API changes the number: update
# both then.
cmake_minimum_required(VERSION 3.18)

execute_process(COMMAND ${SARN_NM} -D --defined-only -C ${SARN_LIBRARY}
                RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "${SARN_NM} failed on ${SARN_LIBRARY}:\n${err}")
endif()

# The classes and structs that the public headers declare.
file(GLOB headers ${SARN_SOURCE_DIR}/include/*.h)
set(public)
foreach(h ${headers})
  file(STRINGS ${h} lines REGEX "^[ \t]*(class|struct)[ \t]+[A-Za-z_0-9]+[ \t]*(final)?[ \t]*[:{]")
  foreach(line ${lines})
    string(REGEX REPLACE "^[ \t]*(class|struct)[ \t]+([A-Za-z_0-9]+).*" "\\2" name "${line}")
    list(APPEND public ${name})
  endforeach()
endforeach()

string(REPLACE "\n" ";" symbols "${out}")
set(count 0)
set(strays)
foreach(line ${symbols})
  if(line STREQUAL "")
    continue()
  endif()
  math(EXPR count "${count} + 1")
  # "0000000000012340 T Sarn::TPATTable::parse(...)": drop address and type.
  string(REGEX REPLACE "^[0-9a-fA-F]+ [A-Za-z] " "" name "${line}")
  string(REGEX REPLACE "^(typeinfo name for |typeinfo for |vtable for |VTT for |construction vtable for [^ ]+ )" "" owner "${name}")
  set(ok FALSE)
  if(owner MATCHES "^Sarn::([A-Za-z_0-9]+)(::|$)")
    list(FIND public ${CMAKE_MATCH_1} index)
    if(NOT index EQUAL -1)
      set(ok TRUE)
    endif()
  endif()
  if(NOT ok)
    list(APPEND strays "${name}")
  endif()
endforeach()

if(strays)
  list(JOIN strays "\n  " text)
  message(FATAL_ERROR "exported but not declared in include/:\n  ${text}")
endif()
# The figure holds for g++ on x86-64; other compilers only get the first check.
if(SARN_EXPECTED_EXPORTS AND NOT count EQUAL SARN_EXPECTED_EXPORTS)
  message(FATAL_ERROR "${count} exported symbols, expected ${SARN_EXPECTED_EXPORTS}")
endif()
message(STATUS "${count} exported symbols, all of public classes")
