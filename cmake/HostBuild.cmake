# The computations, built for this host as 32-bit code with 16-bit characters, under the address and
# undefined-behaviour sanitizers, against a stand-in for the few functions of ntdll.dll that they call; or, with
# ORV_COVERAGE, counting which lines are reached. The C libraries inside are clean of both sanitizers, too.

if(ORV_COVERAGE)
  # The fuzz targets count, too; what guides them needs a runtime at the link.
  set(instrumentation -fprofile-instr-generate -fcoverage-mapping -fsanitize=fuzzer-no-link)
else()
  # C calls back C++ functions whose characters have another name there, so types of functions are not compared.
  set(instrumentation -fsanitize=address,undefined -fno-sanitize=function -fno-sanitize-recover=all)
  # The same objects serve the tests, which they slow down little, and the fuzz targets.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
add_compile_options(-m32 -msse2 -fshort-wchar -fms-extensions -fno-exceptions -fno-rtti -Wall -Wextra -Werror
  -Wno-ignored-attributes -Wno-unused-private-field ${instrumentation})
add_link_options(-m32 ${instrumentation})
add_compile_definitions(ORV_HOST ORV_STATIC)
# tests/host stands first: its nt/teb.h takes the place of the real one.
include_directories(${PROJECT_SOURCE_DIR}/tests/host ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include
  ${PROJECT_SOURCE_DIR}/tests)

