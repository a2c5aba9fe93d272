# orv_fetch_sources(folder dependencies.txt): puts the sources of the libraries that the file names into subfolders, by
# CMake alone: the archives as their authors published them, which the file has the digests of, without the
# distribution's patches. ORV_DEBIAN_MIRROR is where they come from.
set(ORV_DEBIAN_MIRROR "" CACHE STRING "The address of a mirror of Debian, from which the sources are fetched")

function(orv_fetch_sources folder dependencies)
  file(STRINGS ${dependencies} archives REGEX "^[a-z0-9]+ archive [0-9a-f]+ [^ ]+[.]orig[.]tar[.][a-z0-9]+$")
  foreach(archive ${archives})
    string(REPLACE " " ";" archive "${archive}")
    list(GET archive 0 library)
    list(GET archive 2 digest)
    list(GET archive 3 name)
    if(EXISTS ${folder}/${library}.${digest})
      continue()
    endif()
    if(NOT ORV_DEBIAN_MIRROR)
      message(FATAL_ERROR "The sources of zlib, bzip2 and expat are missing. Say where they are, in subfolders of these "
        "names (-DORV_SOURCES=FOLDER), or name a mirror of Debian to fetch them from (-DORV_DEBIAN_MIRROR=ADDRESS).")
    endif()
    string(SUBSTRING ${library} 0 1 initial)
    set(download ${folder}/download)
    file(REMOVE_RECURSE ${download} ${folder}/${library})
    file(DOWNLOAD ${ORV_DEBIAN_MIRROR}/pool/main/${initial}/${library}/${name} ${download}/${name}
      EXPECTED_HASH SHA256=${digest} STATUS status)
    file(ARCHIVE_EXTRACT INPUT ${download}/${name} DESTINATION ${download}/unpacked)
    file(GLOB unpacked ${download}/unpacked/*)
    file(RENAME ${unpacked} ${folder}/${library})
    file(REMOVE_RECURSE ${download})
    file(TOUCH ${folder}/${library}.${digest})
  endforeach()
endfunction()
