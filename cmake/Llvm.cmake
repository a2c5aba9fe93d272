# orv_find_llvm(VARIABLE program ...): sets each variable to the path of that program of the LLVM that tools/llvm.sh chooses.
# A configured build keeps using these paths.
function(orv_find_llvm)
  while(ARGN)
    list(POP_FRONT ARGN variable program)
    if(NOT ${variable})
      execute_process(COMMAND ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../tools/llvm.sh ${program}
        OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE result)
      if(result)
        message(FATAL_ERROR "LLVM's ${program} is missing.")
      endif()
      set(${variable} ${path} CACHE FILEPATH "LLVM's ${program}")
      mark_as_advanced(${variable})
    endif()
  endwhile()
endfunction()
