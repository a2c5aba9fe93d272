# orv_version_resource(target file description type): adds a version resource to the binary. The type is 1 for a program and
# 2 for a DLL. The compiler gets bare file names in its working folder: it takes a path that begins with "/c" for an option.
function(orv_version_resource target file description type)
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}.res)
  configure_file(${PROJECT_SOURCE_DIR}/src/version.rc.in ${script} @ONLY)
  add_custom_command(
    OUTPUT ${resource}
    COMMAND ${ORV_LLVM_RC} /no-preprocess /fo ${target}.res ${target}.rc
    WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
    DEPENDS ${script}
    COMMENT "Making the version resource of ${file}"
    VERBATIM)
  set_source_files_properties(${resource} PROPERTIES EXTERNAL_OBJECT TRUE GENERATED TRUE)
  target_sources(${target} PRIVATE ${resource})
endfunction()
