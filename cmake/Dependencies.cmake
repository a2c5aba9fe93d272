# The C libraries inside orvsys.dll: zlib, libbzip2 and expat, from the distribution's source packages, which the
# set-up puts into the cache folder. They are built with our flags against the few C headers of src/crt/include, and
# stay behind the units that use them. The host build has them too, against the host's own C headers.
#
# orv_dependencies is what those units link.

execute_process(
  COMMAND ${PROJECT_SOURCE_DIR}/tools/get_sources.sh
  OUTPUT_VARIABLE ORV_SOURCES OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "The sources of zlib, bzip2 and expat are missing.")
endif()

# By way of the build folder they have the same names wherever the cache is.
file(CREATE_LINK ${ORV_SOURCES} ${PROJECT_BINARY_DIR}/sources SYMBOLIC)
set(ORV_SOURCES ${PROJECT_BINARY_DIR}/sources)

set(zlib ${ORV_SOURCES}/zlib)
add_library(orv_zlib STATIC
  ${zlib}/adler32.c ${zlib}/crc32.c ${zlib}/deflate.c ${zlib}/inffast.c ${zlib}/inflate.c ${zlib}/inftrees.c
  ${zlib}/trees.c ${zlib}/zutil.c)
# Without the convenience functions that allocate by themselves or open files.
target_compile_definitions(orv_zlib PUBLIC Z_SOLO)

# Two tables of bzip2 lack a const, without which whoever can write could change what is constant.
set(bzip2 ${PROJECT_BINARY_DIR}/bzip2)
set(files blocksort.c bzlib.c bzlib.h bzlib_private.h compress.c crctable.c decompress.c huffman.c randtable.c)
foreach(file ${files})
  file(READ ${ORV_SOURCES}/bzip2/${file} text)
  string(REGEX REPLACE "U?Int32 BZ2_(rNums|crc32Table)\\[" "const \\0" text "${text}")
  file(CONFIGURE OUTPUT ${bzip2}/${file} CONTENT "${text}" @ONLY)
endforeach()
list(TRANSFORM files PREPEND ${bzip2}/)
add_library(orv_bzip2 STATIC ${files})
target_compile_definitions(orv_bzip2 PUBLIC BZ_NO_STDIO)

set(expat ${ORV_SOURCES}/expat/expat/lib)
add_library(orv_expat STATIC ${expat}/xmlparse.c ${expat}/xmlrole.c ${expat}/xmltok.c)
target_compile_definitions(orv_expat
  PUBLIC XML_UNICODE XML_UNICODE_WCHAR_T XML_STATIC
  PRIVATE XML_CONTEXT_BYTES=1024 XML_NS XML_DTD XML_GE HAVE_ARC4RANDOM_BUF)

add_library(orv_dependencies INTERFACE)
target_include_directories(orv_dependencies SYSTEM INTERFACE ${zlib} ${bzip2} ${expat})
if(WIN32)
  target_include_directories(orv_dependencies SYSTEM INTERFACE ${PROJECT_SOURCE_DIR}/src/crt/include)
endif()
foreach(library zlib bzip2 expat)
  target_link_libraries(orv_dependencies INTERFACE orv_${library})
  if(WIN32)
    target_include_directories(orv_${library} PRIVATE ${PROJECT_SOURCE_DIR}/src/crt/include)
    # Aligned loops run alike wherever the linker puts them.
    target_compile_options(orv_${library} PRIVATE /clang:-falign-functions=32 /clang:-falign-loops=32)
  else()
    # Ours stand behind the host's, where expat's configuration alone is missing.
    target_compile_options(orv_${library} PRIVATE -w -idirafter ${PROJECT_SOURCE_DIR}/src/crt/include)
  endif()
endforeach()
