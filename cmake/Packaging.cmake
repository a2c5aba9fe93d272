# Installs, for `cmake --install` and for the archives of `make package`: the DLL with its PDB, the import libraries, the
# start code of programs, the headers, the .natvis file for debuggers, a package that find_package(orvsys) finds, the
# licences, and the bill of materials.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

install(TARGETS orvsys orvstart EXPORT OrvSysTargets
  RUNTIME DESTINATION bin
  ARCHIVE DESTINATION lib)
get_target_property(ntdll ntdll_programs ORV_FILE)
install(FILES ${ntdll} DESTINATION lib RENAME ntdll.lib)
install(TARGETS orvtool RUNTIME DESTINATION bin)
install(FILES $<TARGET_PDB_FILE:orvsys> DESTINATION bin)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/orv DESTINATION include)
install(FILES ${PROJECT_SOURCE_DIR}/src/orvsys.natvis DESTINATION share/orvsys)
add_subdirectory(${PROJECT_SOURCE_DIR}/docs)

# The licences of the libraries in the DLL, and their list in CycloneDX, which needs Python.
set(contents "")
foreach(library zlib bzip2 expat)
  get_target_property(folder orv_${library} ORV_FOLDER)
  get_target_property(library_version orv_${library} ORV_VERSION)
  get_target_property(package orv_${library} ORV_PACKAGE)
  list(APPEND contents ${library} ${library_version} ${package})
  file(STRINGS ${PROJECT_SOURCE_DIR}/cmake/dependencies.txt text REGEX "^${library} text ")
  string(REPLACE "${library} text " "" text "${text}")
  install(FILES ${folder}/${text} DESTINATION share/doc/orvsys/licenses RENAME ${library}.txt)
endforeach()
if(ORV_SCRIPTS)
  set(bill ${PROJECT_BINARY_DIR}/orvsys.cdx.json)
  execute_process(
    COMMAND python3 ${PROJECT_SOURCE_DIR}/tools/bill_of_materials.py ${PROJECT_SOURCE_DIR}/cmake/dependencies.txt
      ${PROJECT_VERSION} ${contents}
    OUTPUT_FILE ${bill} RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "The bill of materials cannot be made.")
  endif()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/bill_of_materials.py)
  install(FILES ${bill} DESTINATION share/orvsys)
endif()

install(EXPORT OrvSysTargets NAMESPACE OrvSys:: DESTINATION lib/cmake/orvsys FILE orvsys-targets.cmake)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/orvsys-config.cmake.in
  ${PROJECT_BINARY_DIR}/orvsys-config.cmake INSTALL_DESTINATION lib/cmake/orvsys)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/orvsys-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/orvsys-config.cmake ${PROJECT_BINARY_DIR}/orvsys-config-version.cmake
  ${PROJECT_SOURCE_DIR}/cmake/orvsys-programs.cmake ${PROJECT_SOURCE_DIR}/cmake/i686-windows.cmake
  DESTINATION lib/cmake/orvsys)

set(CPACK_GENERATOR ZIP)
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGE_FILE_NAME orvsys-${PROJECT_VERSION}-x86)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/package)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
