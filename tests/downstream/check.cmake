# Installs the build tree into a scratch prefix, then configures, builds and
# runs the downstream project against it, and runs the installed sarn-dump
# with no library path set.
file(REMOVE_RECURSE ${SARN_SCRATCH})
set(prefix ${SARN_SCRATCH}/prefix)

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "failed: ${ARGN}\n${out}\n${err}")
  endif()
  set(last_output "${out}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install ${SARN_BUILD_DIR} --prefix ${prefix})
if(NOT SARN_PKG_CONFIG)
  message(FATAL_ERROR "pkg-config is needed for this check")
endif()
set(ENV{PKG_CONFIG_PATH} "${prefix}/lib/pkgconfig:${prefix}/lib64/pkgconfig")
run(${CMAKE_COMMAND} -S ${SARN_SOURCE_DIR}/tests/downstream -B ${SARN_SCRATCH}/build
    -G "${SARN_GENERATOR}" -DCMAKE_PREFIX_PATH=${prefix}
    -DPKG_CONFIG_EXECUTABLE=${SARN_PKG_CONFIG})
run(${CMAKE_COMMAND} --build ${SARN_SCRATCH}/build)

set(expected "{\"transportStreamId\":737,\"programs\":[{\"programNumber\":23584,\"networkPid\":16,\"programMapPid\":257}]}")
foreach(exe pat_cmake pat_pkgconfig)
  run(${SARN_SCRATCH}/build/${exe})
  string(STRIP "${last_output}" got)
  if(NOT got STREQUAL expected)
    message(FATAL_ERROR "${exe} printed:\n${got}\nexpected:\n${expected}")
  endif()
  message(STATUS "${exe}: ${got}")
endforeach()

# The version macros of the installed headers match the package version.
foreach(exe pat_cmake pat_pkgconfig)
  run(${SARN_SCRATCH}/build/${exe} --version)
  string(STRIP "${last_output}" got)
  if(NOT got STREQUAL "${SARN_VERSION} ${SARN_VERSION}")
    message(FATAL_ERROR "${exe} --version printed \"${got}\", expected \"${SARN_VERSION} ${SARN_VERSION}\"")
  endif()
endforeach()

# The installed tool finds its library (and liblog) from this private prefix
# by itself: no LD_LIBRARY_PATH.
if(SARN_WITH_TOOL)
  set(tool ${prefix}/bin/sarn-dump)
  if(NOT EXISTS ${tool})
    message(FATAL_ERROR "sarn-dump is not installed in ${prefix}/bin")
  endif()
  run(${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ${tool} --help)
  if(NOT last_output MATCHES "sarn-dump")
    message(FATAL_ERROR "sarn-dump --help printed:\n${last_output}")
  endif()
  run(${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ${tool} ${SARN_SOURCE_DIR}/data/sample.ts)
  if(NOT last_output MATCHES "^{\"pid\":0,\"table_id\":0,")
    message(FATAL_ERROR "installed sarn-dump on data/sample.ts printed:\n${last_output}")
  endif()
  message(STATUS "installed sarn-dump runs from ${prefix}")
endif()
