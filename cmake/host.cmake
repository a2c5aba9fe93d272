# Toolchain for this host: the clang of the LLVM that builds the library.
include(${CMAKE_CURRENT_LIST_DIR}/Llvm.cmake)
orv_find_llvm(ORV_CLANG clang ORV_CLANGXX clang++)
set(CMAKE_C_COMPILER ${ORV_CLANG})
set(CMAKE_CXX_COMPILER ${ORV_CLANGXX})
