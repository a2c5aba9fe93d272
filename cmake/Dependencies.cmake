# The C libraries inside orvsys.dll: zlib, libbzip2 and expat, from the distribution's source packages, which the
# set-up puts into the cache folder (dependencies.txt says which). They are built with our flags against the few C
# headers of src/crt/include, and only the units that use them see them. The host build has them too, against the host's
# own C headers.
#
# orv_dependencies is what those units link. Of orv_zlib, orv_bzip2 and orv_expat the property ORV_FOLDER is
# where the sources are, ORV_VERSION and ORV_PACKAGE are what its sources and the distribution call the version that is built.

set(ORV_SOURCES "" CACHE PATH "A folder with the sources in zlib, bzip2 and expat, instead of those that are fetched")
if(ORV_SOURCES)
  file(REAL_PATH ${ORV_SOURCES} sources BASE_DIRECTORY ${PROJECT_SOURCE_DIR})
elseif(ORV_SCRIPTS)
  execute_process(
    COMMAND ${PROJECT_SOURCE_DIR}/tools/get_sources.sh
    OUTPUT_VARIABLE sources OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "The sources of zlib, bzip2 and expat are missing.")
  endif()
else()
  include(FetchSources)
  orv_fetch_sources(${PROJECT_BINARY_DIR}/fetched ${PROJECT_SOURCE_DIR}/cmake/dependencies.txt)
  set(sources ${PROJECT_BINARY_DIR}/fetched)
endif()

set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
  ${PROJECT_SOURCE_DIR}/cmake/dependencies.txt)

# By way of the build folder they have the same names wherever they are. Windows lets few users make such a link.
if(NOT CMAKE_HOST_WIN32)
  file(CREATE_LINK ${sources} ${PROJECT_BINARY_DIR}/sources SYMBOLIC)
  set(sources ${PROJECT_BINARY_DIR}/sources)
endif()

set(zlib ${sources}/zlib)
add_library(orv_zlib STATIC
  ${zlib}/adler32.c ${zlib}/crc32.c ${zlib}/deflate.c ${zlib}/inffast.c ${zlib}/inflate.c ${zlib}/inftrees.c
  ${zlib}/trees.c ${zlib}/zutil.c)
# Without the convenience functions that allocate by themselves or open files.
target_compile_definitions(orv_zlib PUBLIC Z_SOLO)

# Two tables of bzip2 lack a const, without which whoever can write could change what is constant.
set(bzip2 ${PROJECT_BINARY_DIR}/bzip2)
set(files blocksort.c bzlib.c bzlib.h bzlib_private.h compress.c crctable.c decompress.c huffman.c randtable.c)
foreach(file ${files})
  file(READ ${sources}/bzip2/${file} text)
  string(REGEX REPLACE "U?Int32 BZ2_(rNums|crc32Table)\\[" "const \\0" text "${text}")
  file(CONFIGURE OUTPUT ${bzip2}/${file} CONTENT "${text}" @ONLY)
endforeach()
list(TRANSFORM files PREPEND ${bzip2}/)
add_library(orv_bzip2 STATIC ${files})
target_compile_definitions(orv_bzip2 PUBLIC BZ_NO_STDIO)

# To itself its characters are 16-bit numbers, because the host's functions take wchar_t for a wider one, and the DLL
# has none of them.
set(expat ${sources}/expat/expat/lib)
add_library(orv_expat STATIC
  ${expat}/random_arc4random_buf.c ${expat}/xmlparse.c ${expat}/xmlrole.c ${expat}/xmltok.c)
set(definitions XML_CONTEXT_BYTES=1024 XML_DTD XML_GE=1 XML_LARGE_SIZE XML_NS XML_STATIC HAVE_ARC4RANDOM_BUF)
target_compile_definitions(orv_expat PUBLIC ${definitions} XML_UNICODE INTERFACE XML_UNICODE_WCHAR_T)
set_target_properties(orv_expat PROPERTIES ORV_COMMON_DEFINITIONS "${definitions}") # whatever its characters are

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

# orv_find_version(library header expression): the groups of its first match in that header of its sources are the
# parts of its version.
function(orv_find_version library header expression)
  file(READ ${sources}/${library}/${header} text)
  if(NOT text MATCHES "${expression}")
    message(FATAL_ERROR "The sources of ${library} do not say their version.")
  endif()
  set(version ${CMAKE_MATCH_1})
  if(CMAKE_MATCH_COUNT EQUAL 3)
    string(APPEND version .${CMAKE_MATCH_2}.${CMAKE_MATCH_3})
  endif()
  set(package "sources of the builder's")
  if(EXISTS ${sources}/versions)
    file(STRINGS ${sources}/versions package REGEX "^${library} ")
    string(REPLACE "${library} " "" package "${package}")
  endif()
  set_target_properties(orv_${library} PROPERTIES ORV_FOLDER ${sources}/${library}
    ORV_VERSION ${version} ORV_PACKAGE "${package}")
endfunction()

orv_find_version(zlib zlib.h "ZLIB_VERSION \"([0-9.]+)\"")
orv_find_version(bzip2 bzlib_private.h "BZ_VERSION +\"([0-9.]+)")
orv_find_version(expat expat/lib/expat.h
  "XML_MAJOR_VERSION ([0-9]+).*XML_MINOR_VERSION ([0-9]+).*XML_MICRO_VERSION ([0-9]+)")
