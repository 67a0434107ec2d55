# Finds the commit of a source tree: from git where the tree is a work tree, else from the file that an archive made by
# git has filled in. Included, it sets VORTAN_COMMIT and VORTAN_COMMIT_TIME (seconds since 1970; both empty if unknown).
# As a script it writes OUTPUT, a header, when that has changed: cmake -D SOURCE=... -D OUTPUT=... -P Commit.cmake
cmake_minimum_required(VERSION 3.25)

function(vortan_find_commit source)
  set(commit "")
  set(time "")
  execute_process(COMMAND git -C ${source} rev-parse --show-toplevel
    OUTPUT_VARIABLE top OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE failed)
  file(REAL_PATH ${source} source)
  if(NOT failed AND top STREQUAL source)
    execute_process(COMMAND git -C ${source} log -1 --format=%H\ %ct HEAD
      OUTPUT_VARIABLE found OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    execute_process(COMMAND git -C ${source} diff --quiet HEAD RESULT_VARIABLE changed)
  else()
    file(READ ${source}/cmake/commit.txt found)
    set(changed 0)
  endif()
  if(found MATCHES "^([0-9a-f]+) ([0-9]+)")
    string(SUBSTRING ${CMAKE_MATCH_1} 0 12 commit)
    set(time ${CMAKE_MATCH_2})
    if(changed)
      string(APPEND commit " with changes")
    endif()
  endif()
  set(VORTAN_COMMIT "${commit}" PARENT_SCOPE)
  set(VORTAN_COMMIT_TIME "${time}" PARENT_SCOPE)
endfunction()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
  vortan_find_commit(${SOURCE})
  if(NOT VORTAN_COMMIT)
    set(VORTAN_COMMIT unknown)
  endif()
  file(CONFIGURE OUTPUT ${OUTPUT} CONTENT "#define VORTAN_COMMIT \"@VORTAN_COMMIT@\"\n" @ONLY)
endif()
