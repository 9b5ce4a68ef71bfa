# sarn_public_classes(<var> <include dir>): the classes and structs that the
# public headers declare at namespace level, and the free functions they
# declare there (at the start of a line), sorted. They make the exported
# interface of the shared library (cmake/SarnISDBTUtils.map.in).
function(sarn_public_classes out dir)
  file(GLOB headers ${dir}/*.h)
  set(classes)
  foreach(h ${headers})
    file(STRINGS ${h} lines REGEX "^(class|struct)[ \t]+[A-Za-z_0-9]+[ \t]*(final)?[ \t]*[:{]")
    foreach(line ${lines})
      string(REGEX REPLACE "^(class|struct)[ \t]+([A-Za-z_0-9]+).*" "\\2" name "${line}")
      list(APPEND classes ${name})
    endforeach()
    file(STRINGS ${h} lines REGEX "^[A-Za-z_][A-Za-z_0-9:<>]*[ \t*&]+[a-z][A-Za-z_0-9]*\\(")
    foreach(line ${lines})
      string(REGEX REPLACE "^[A-Za-z_][A-Za-z_0-9:<>]*[ \t*&]+([a-z][A-Za-z_0-9]*)\\(.*" "\\1" name "${line}")
      list(APPEND classes ${name})
    endforeach()
  endforeach()
  if(NOT CMAKE_SCRIPT_MODE_FILE)
    # A class added to a header changes the list: configure again.
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${headers})
  endif()
  list(SORT classes)
  list(REMOVE_DUPLICATES classes)
  set(${out} ${classes} PARENT_SCOPE)
endfunction()
