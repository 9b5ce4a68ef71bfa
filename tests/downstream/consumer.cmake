# A user's first build: a fresh Release configure of the source tree with the
# default options, built with its default target. It must build the library
# and sarn-dump only (no test, fuzz or cross build) and without a single
# compiler warning, so that a warning only the optimiser at -O3 finds cannot
# break a user's build that treats warnings as errors.
cmake_minimum_required(VERSION 3.18)

file(REMOVE_RECURSE ${SARN_SCRATCH})

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "failed: ${ARGN}\n${out}")
  endif()
  set(last_output "${out}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} -S ${SARN_SOURCE_DIR} -B ${SARN_SCRATCH} -G "${SARN_GENERATOR}"
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_C_COMPILER=${SARN_C_COMPILER}
    -DCMAKE_CXX_COMPILER=${SARN_CXX_COMPILER})
run(${CMAKE_COMMAND} --build ${SARN_SCRATCH} --parallel 2)
set(build_output "${last_output}")

if(build_output MATCHES "warning:")
  message(FATAL_ERROR "the Release build warns:\n${build_output}")
endif()
foreach(built libSarnISDBTUtils.so tools/sarn-dump)
  if(NOT EXISTS ${SARN_SCRATCH}/${built})
    message(FATAL_ERROR "the default build did not make ${built}")
  endif()
endforeach()
file(GLOB_RECURSE extra LIST_DIRECTORIES false ${SARN_SCRATCH}/sarn_tests* ${SARN_SCRATCH}/fuzz_*)
if(extra OR EXISTS ${SARN_SCRATCH}/armhf OR EXISTS ${SARN_SCRATCH}/fuzz OR EXISTS ${SARN_SCRATCH}/tests)
  message(FATAL_ERROR "the default build made development targets: ${extra}")
endif()
message(STATUS "consumer Release build: library and sarn-dump, no warning")
