# orv_import_library(target file.def...): an import library for the names of module-definition files, made without the
# module itself. Linking to `target` links it; its property ORV_FILE is the library's path.
function(orv_import_library target)
  set(library ${CMAKE_ARCHIVE_OUTPUT_DIRECTORY}/${target}.lib)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${ARGN})
  set(names)
  foreach(definition ${ARGN})
    file(STRINGS ${definition} lines REGEX "^[^;]")
    list(FILTER lines EXCLUDE REGEX "^(LIBRARY|EXPORTS)")
    list(APPEND names ${lines})
  endforeach()
  list(REMOVE_DUPLICATES names)
  list(SORT names)
  list(JOIN names "\n" names)
  set(joined ${CMAKE_CURRENT_BINARY_DIR}/${target}.def)
  file(CONFIGURE OUTPUT ${joined} CONTENT "LIBRARY ntdll.dll\nEXPORTS\n${names}\n" @ONLY)
  add_custom_command(
    OUTPUT ${library}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_ARCHIVE_OUTPUT_DIRECTORY}
    COMMAND ${ORV_DLLTOOL} -m i386 -k -d ${joined} -l ${library} -D ntdll.dll
    DEPENDS ${joined}
    COMMENT "Making the import library ${target}.lib"
    VERBATIM)
  add_custom_target(${target}_file DEPENDS ${library})
  add_library(${target} INTERFACE)
  target_link_libraries(${target} INTERFACE $<BUILD_INTERFACE:${library}>)
  add_dependencies(${target} ${target}_file)
  set_target_properties(${target} PROPERTIES ORV_FILE ${library})
endfunction()
