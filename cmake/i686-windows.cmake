# Toolchain: 32-bit Windows in the Microsoft C++ ABI, with clang-cl and lld-link on any host.
# There is no C runtime and no SDK: only the compiler's own headers and ntdll.dll.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

include(${CMAKE_CURRENT_LIST_DIR}/Llvm.cmake)
orv_find_llvm(
  ORV_CLANG_CL clang-cl
  ORV_LLD_LINK lld-link
  ORV_LLVM_LIB llvm-lib
  ORV_LLVM_RC llvm-rc
  ORV_LLVM_MT llvm-mt
  ORV_DLLTOOL llvm-dlltool
  ORV_READOBJ llvm-readobj)

set(CMAKE_C_COMPILER ${ORV_CLANG_CL})
set(CMAKE_CXX_COMPILER ${ORV_CLANG_CL})
set(CMAKE_C_COMPILER_TARGET i686-pc-windows-msvc)
set(CMAKE_CXX_COMPILER_TARGET i686-pc-windows-msvc)
set(CMAKE_LINKER ${ORV_LLD_LINK})
set(CMAKE_AR ${ORV_LLVM_LIB})
set(CMAKE_RC_COMPILER ${ORV_LLVM_RC})
set(CMAKE_MT ${ORV_LLVM_MT})

set(CMAKE_C_STANDARD_LIBRARIES "" CACHE STRING "" FORCE)
set(CMAKE_CXX_STANDARD_LIBRARIES "" CACHE STRING "" FORCE)
set(CMAKE_MSVC_RUNTIME_LIBRARY "")

# Our own flags replace CMake's defaults, which assume a C runtime. Set in the cache, because CMake adds its defaults
# to everything else. /GS stays on: the cookie is ours. /arch:SSE2 alone names a processor, for which version 19 does not
# inline the vector functions of its own headers. The plain C of the dependencies keeps its warnings to itself.
set(orv_common "/nologo /Zl /Z7 /GS /Gy /Gw /arch:SSE2 -msse2 /clang:-ffreestanding /clang:-ffile-compilation-dir=.")
set(CMAKE_C_FLAGS "${orv_common} /W0" CACHE STRING "")
set(CMAKE_CXX_FLAGS "${orv_common} /W4 /WX /GR- /EHs-c- /Zc:threadSafeInit-" CACHE STRING "")
# The types of functions are not checked at calls through pointers: the platform's functions have the types that we give
# them, and C calls back C++ functions whose characters have another name there.
foreach(language C CXX)
  set(CMAKE_${language}_FLAGS_DEBUG "/Od -D_DEBUG -fsanitize=undefined -fno-sanitize=function -fsanitize-trap=undefined" CACHE STRING "")
  set(CMAKE_${language}_FLAGS_RELEASE "/O2 -DNDEBUG" CACHE STRING "")
endforeach()
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS "/nodefaultlib /Brepro /debug /pdbaltpath:%_PDB% /pdbsourcepath:/orvsys /safeseh /guard:cf /nxcompat /dynamicbase /manifest:no"
    CACHE STRING "")
  set(CMAKE_${kind}_LINKER_FLAGS_DEBUG "/opt:noref" CACHE STRING "")
  set(CMAKE_${kind}_LINKER_FLAGS_RELEASE "/opt:ref /opt:icf" CACHE STRING "")
endforeach()
