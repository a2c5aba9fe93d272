# The toolchain of OrvSys itself: the users' toolchain, and the flags that we build with.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ORV_SCRIPTS)
if(NOT DEFINED ORV_SCRIPTS OR ORV_SCRIPTS)
  include(${CMAKE_CURRENT_LIST_DIR}/Llvm.cmake) # the same LLVM that all our other tools use
  orv_find_llvm(
    ORV_CLANG_CL clang-cl
    ORV_LLD_LINK lld-link
    ORV_LLVM_LIB llvm-lib
    ORV_LLVM_RC llvm-rc
    ORV_LLVM_MT llvm-mt
    ORV_DLLTOOL llvm-dlltool
    ORV_READOBJ llvm-readobj)
endif()
include(${CMAKE_CURRENT_LIST_DIR}/i686-windows.cmake)
find_program(ORV_DLLTOOL llvm-dlltool${suffix} DOC "LLVM's llvm-dlltool" REQUIRED)
find_program(ORV_READOBJ llvm-readobj${suffix} DOC "LLVM's llvm-readobj")
mark_as_advanced(ORV_DLLTOOL ORV_READOBJ)
if(NOT ORV_LLVM_RC)
  message(FATAL_ERROR "LLVM's llvm-rc is missing.")
endif()

# Our own flags replace CMake's defaults, which assume a C runtime. They are set in the cache, because CMake adds its
# defaults to variables that are not. /GS stays on: the library has its own cookie. -msse2 is needed beside /arch:SSE2, which
# names a processor for which clang 19 does not inline the vector functions of its own headers. The C of the dependencies is
# compiled without warnings.
set(orv_common "/nologo /Zl /Z7 /GS /Gy /Gw /arch:SSE2 -msse2 /clang:-ffreestanding /clang:-ffile-compilation-dir=.")
set(CMAKE_C_FLAGS "${orv_common} /W0" CACHE STRING "")
set(CMAKE_CXX_FLAGS "${orv_common} /W4 /WX /GR- /EHs-c- /Zc:threadSafeInit-" CACHE STRING "")
# The types of functions are not checked at calls through pointers: we declare the platform's functions ourselves, and C
# calls back C++ functions, although the two name the character type differently.
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
