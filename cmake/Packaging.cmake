# What `cmake --install` lays out: the DLL with its PDB, the import library, the headers and a package that
# find_package(orvsys) finds.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

install(TARGETS orvsys EXPORT OrvSysTargets
  RUNTIME DESTINATION bin
  ARCHIVE DESTINATION lib)
install(TARGETS orvtool RUNTIME DESTINATION bin)
install(FILES $<TARGET_PDB_FILE:orvsys> DESTINATION bin)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/orv DESTINATION include)
install(EXPORT OrvSysTargets NAMESPACE OrvSys:: DESTINATION lib/cmake/orvsys FILE orvsys-targets.cmake)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/orvsys-config.cmake.in
  ${PROJECT_BINARY_DIR}/orvsys-config.cmake INSTALL_DESTINATION lib/cmake/orvsys)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/orvsys-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/orvsys-config.cmake ${PROJECT_BINARY_DIR}/orvsys-config-version.cmake
  DESTINATION lib/cmake/orvsys)
