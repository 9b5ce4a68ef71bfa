# The shared library exports the classes and free functions declared in
# include/ and nothing else: every exported symbol is one of those functions
# or belongs to one of those classes (its members, vtable or type
# information), none to an internal helper, and their number is the one the
# README gives. A change of the public API changes the number: update
# both then.
cmake_minimum_required(VERSION 3.18)

execute_process(COMMAND ${SARN_NM} -D --defined-only -C ${SARN_LIBRARY}
                RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "${SARN_NM} failed on ${SARN_LIBRARY}:\n${err}")
endif()

# The classes and structs that the public headers declare.
include(${SARN_SOURCE_DIR}/cmake/PublicClasses.cmake)
sarn_public_classes(public ${SARN_SOURCE_DIR}/include)

string(REPLACE "\n" ";" symbols "${out}")
set(count 0)
set(strays)
foreach(line ${symbols})
  if(line STREQUAL "")
    continue()
  endif()
  # Inline static constants (type u) are emitted only where an unoptimised
  # build takes their address: checked below, not counted.
  if(NOT line MATCHES "^[0-9a-fA-F]+ u ")
    math(EXPR count "${count} + 1")
  endif()
  # "0000000000012340 T Sarn::TPATTable::parse(...)": drop address and type.
  string(REGEX REPLACE "^[0-9a-fA-F]+ [A-Za-z] " "" name "${line}")
  string(REGEX REPLACE "^(typeinfo name for |typeinfo for |vtable for |VTT for |construction vtable for [^ ]+ )" "" owner "${name}")
  set(ok FALSE)
  # A standard template instance whose demangled name begins with its
  # return type ("Sarn::TProgramMap** std::...") is not ours to export.
  if(NOT owner MATCHES "^[^(]* std::" AND owner MATCHES "^Sarn::([A-Za-z_0-9]+)(::|\\(|$)")
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
