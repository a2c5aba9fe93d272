# orv_import_library(target file.def): an import library for the names of a module-definition file, made without
# the module itself. Linking to `target` links it.
function(orv_import_library target definition)
  set(library ${CMAKE_ARCHIVE_OUTPUT_DIRECTORY}/${target}.lib)
  add_custom_command(
    OUTPUT ${library}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_ARCHIVE_OUTPUT_DIRECTORY}
    COMMAND ${ORV_DLLTOOL} -m i386 -k -d ${definition} -l ${library} -D ntdll.dll
    DEPENDS ${definition}
    COMMENT "Making the import library ${target}.lib"
    VERBATIM)
  add_custom_target(${target}_file DEPENDS ${library})
  add_library(${target} INTERFACE)
  target_link_libraries(${target} INTERFACE ${library})
  add_dependencies(${target} ${target}_file)
endfunction()
