# The C libraries inside orvsys.dll: zlib, libbzip2 and expat, from the distribution's source packages, which the
# set-up puts into the cache folder (dependencies.txt names them). They are built with our flags and with the few C headers
# of src/crt/include, and only the units that use them see them. The host build has them too, with the host's own C headers.
#
# Those units link orv_dependencies. orv_zlib, orv_bzip2 and orv_expat have these properties: ORV_FOLDER, the folder of the
# sources; ORV_VERSION, the version as the sources name it; ORV_PACKAGE, the same as the distribution names it.

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

# A link in the build folder gives the sources the same names wherever they are. Windows lets few users make such a link.
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

# Two tables of bzip2 lack a const, which is added here: without it they would be in writable memory.
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

# Built without namespaces, which the reader leaves to its caller. Inside expat characters are 16-bit numbers: on the
# host wchar_t is wider, and the DLL has no wchar_t functions.
set(expat ${sources}/expat/expat/lib)
add_library(orv_expat STATIC
  ${expat}/random_arc4random_buf.c ${expat}/xmlparse.c ${expat}/xmlrole.c ${expat}/xmltok.c)
set(definitions XML_CONTEXT_BYTES=1024 XML_DTD XML_GE=1 XML_LARGE_SIZE XML_STATIC HAVE_ARC4RANDOM_BUF)
target_compile_definitions(orv_expat PUBLIC ${definitions} XML_UNICODE INTERFACE XML_UNICODE_WCHAR_T)
set_target_properties(orv_expat PROPERTIES ORV_COMMON_DEFINITIONS "${definitions}") # for characters of any width

# Those that are no slower as small code.
set(small_files blocksort.c bzlib.c compress.c decompress.c huffman.c deflate.c trees.c xmlrole.c)

add_library(orv_dependencies INTERFACE)
target_include_directories(orv_dependencies SYSTEM INTERFACE ${zlib} ${bzip2} ${expat})
if(WIN32)
  target_include_directories(orv_dependencies SYSTEM INTERFACE ${PROJECT_SOURCE_DIR}/src/crt/include)
endif()
foreach(library zlib bzip2 expat)
  target_link_libraries(orv_dependencies INTERFACE orv_${library})
  if(WIN32)
    target_include_directories(orv_${library} PRIVATE ${PROJECT_SOURCE_DIR}/src/crt/include)
    get_target_property(files orv_${library} SOURCES)
    foreach(file ${files})
      get_filename_component(name ${file} NAME)
      set(options /clang:-falign-functions=32 /clang:-falign-loops=32) # aligned loops run at the same speed at any address
      if(name IN_LIST small_files AND CMAKE_BUILD_TYPE STREQUAL Release)
        set(options /O1)
      elseif(name STREQUAL xmlparse.c)
        list(APPEND options /clang:-mllvm /clang:-inline-threshold=100) # the usual 225 makes it no faster, only larger
      endif()
      set_source_files_properties(${file} PROPERTIES COMPILE_OPTIONS "${options}")
    endforeach()
  else()
    # Our headers are searched after the host's, which lack only expat's configuration.
    target_compile_options(orv_${library} PRIVATE -w -idirafter ${PROJECT_SOURCE_DIR}/src/crt/include)
  endif()
endforeach()

# orv_find_version(library header expression): the groups of the expression's first match in that header of the library are
# the parts of the version.
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
