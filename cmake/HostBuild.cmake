# The computations, built for this host as 32-bit code with 16-bit characters, under the address and
# undefined-behaviour sanitizers; with ORV_COVERAGE, built to count which lines are reached instead. tests/host replaces the
# few functions of ntdll.dll that they call. The C libraries inside pass both sanitizers, too.

if(ORV_COVERAGE)
  # The fuzz targets count, too; what guides them needs a runtime at the link.
  set(instrumentation -fprofile-instr-generate -fcoverage-mapping -fsanitize=fuzzer-no-link)
else()
  # Types of functions are not compared: C calls back C++ functions, and the two name the character type differently.
  set(instrumentation -fsanitize=address,undefined -fno-sanitize=function -fno-sanitize-recover=all)
  # The tests and the fuzz targets share these objects; the instrumentation slows the tests down only a little.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
add_compile_options(-m32 -msse2 -fshort-wchar -fms-extensions -fno-exceptions -fno-rtti -Wall -Wextra -Werror
  -Wno-ignored-attributes -Wno-unused-private-field ${instrumentation})
add_link_options(-m32 ${instrumentation})
add_compile_definitions(ORV_HOST ORV_STATIC)
# tests/host comes first: its nt/teb.h replaces the real one.
include_directories(${PROJECT_SOURCE_DIR}/tests/host ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include
  ${PROJECT_SOURCE_DIR}/tests)

