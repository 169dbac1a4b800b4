# cmake -D READELF=... -D LIBRARY=... -D SONAME=... [-D ALSO=libx.so.0] [-D NODELETE=ON] -P CheckNeeded.cmake
#
# Fails unless the shared library has the given name, needs the compiler's and the C library's own libraries alone
# (and ALSO), and, with NODELETE, stays loaded for the life of the process.

cmake_minimum_required(VERSION 3.25)
set(ENV{LC_ALL} C)
execute_process(COMMAND "${READELF}" -dW "${LIBRARY}" OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)

if(NOT output MATCHES "SONAME[^\n]*\\[([^]\n]+)\\]" OR NOT CMAKE_MATCH_1 STREQUAL SONAME)
  message(FATAL_ERROR "${LIBRARY}: soname is '${CMAKE_MATCH_1}', expected ${SONAME}")
endif()
if(NODELETE AND NOT output MATCHES "FLAGS_1[^\n]*NODELETE")
  message(FATAL_ERROR "${LIBRARY} may be unloaded: no NODELETE flag")
endif()

string(REGEX MATCHALL "NEEDED[^\n]*\\[[^]\n]+\\]" lines "${output}")
set(needed "")
foreach(line IN LISTS lines)
  string(REGEX REPLACE ".*\\[(.+)\\]" "\\1" library "${line}")
  list(APPEND needed "${library}")
endforeach()
foreach(library IN LISTS ALSO)
  if(NOT library IN_LIST needed)
    message(FATAL_ERROR "${LIBRARY} does not need ${library}")
  endif()
endforeach()
set(surplus ${needed})
list(REMOVE_ITEM surplus libstdc++.so.6 libm.so.6 libgcc_s.so.1 libc.so.6 ld-linux-x86-64.so.2 ${ALSO})
if(surplus)
  message(FATAL_ERROR "${LIBRARY} needs ${surplus}")
endif()
message(STATUS "needs ${needed}")
