# orvsys_add_program(target [NATIVE] source...): a program without a C runtime, whose sources define OrvMain. It is a console
# program, or with NATIVE one of the native subsystem. orvsys.dll is copied into its folder.
function(orvsys_add_program target)
  cmake_parse_arguments(PARSE_ARGV 1 program "NATIVE" "" "")
  add_executable(${target} ${program_UNPARSED_ARGUMENTS})
  target_link_libraries(${target} PRIVATE OrvSys::start)
  # No default libraries, and none of the exceptions that CMake turns on by default.
  target_compile_options(${target} PRIVATE /Zl /EHs-c-)
  target_link_options(${target} PRIVATE /nodefaultlib $<IF:$<BOOL:${program_NATIVE}>,/subsystem:native,/subsystem:console>)
  # Microsoft's compiler would check the stack through a runtime, which CMake asks for in Debug configurations: in flags
  # of the folder, and from version 4.0 on in a property.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "MSVC")
    string(REGEX REPLACE "[/-]RTC[1cs]+" "" CMAKE_CXX_FLAGS_DEBUG "${CMAKE_CXX_FLAGS_DEBUG}")
    set(CMAKE_CXX_FLAGS_DEBUG "${CMAKE_CXX_FLAGS_DEBUG}" PARENT_SCOPE)
    set_target_properties(${target} PROPERTIES MSVC_RUNTIME_CHECKS "")
  endif()
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND "${CMAKE_COMMAND}" -E copy_if_different $<TARGET_FILE:OrvSys::orvsys> $<TARGET_FILE_DIR:${target}>
    VERBATIM)
endfunction()
