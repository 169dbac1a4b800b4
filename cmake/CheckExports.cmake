# cmake -D NM=... -D LIBRARY=... -D NAMESPACES="10foundation8vexadata;4vexa4data" [-D HEADER=...] -P CheckExports.cmake
#
# Fails unless the shared library exports something, and nothing but what is in the given namespaces: functions,
# variables, static variables of inline functions, thunks, vtables and type information; and, when a header of functions with
# C linkage is given, every one of these and no other.

cmake_minimum_required(VERSION 3.25)
execute_process(COMMAND "${NM}" -D --defined-only --format=posix "${LIBRARY}"
  OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" lines "${output}")
list(TRANSFORM lines REPLACE " .*" "")

list(JOIN NAMESPACES "|" namespaces)
set(allowed "${lines}")
list(FILTER allowed INCLUDE REGEX "^_Z(Z|GVZ?|T[VTIS]|T[hvc].*_)?N[KRO]*(${namespaces})")
list(LENGTH allowed count)
if(count EQUAL 0)
  message(FATAL_ERROR "${LIBRARY} exports nothing of ${NAMESPACES}")
endif()

set(unintended "${lines}")
list(REMOVE_ITEM unintended ${allowed})
if(HEADER)
  file(STRINGS "${HEADER}" declared REGEX "^VEXA_FUNCTION")
  list(TRANSFORM declared REPLACE "^VEXA_FUNCTION [^(]*[ *]([a-z_]+)\\(.*" "\\1")
  set(missing "${declared}")
  list(REMOVE_ITEM missing ${unintended})
  if(missing OR NOT declared)
    message(FATAL_ERROR "${LIBRARY} does not export: ${missing}")
  endif()
  list(REMOVE_ITEM unintended ${declared})
endif()
if(unintended)
  list(JOIN unintended "\n  " text)
  message(FATAL_ERROR "${LIBRARY} exports more than ${NAMESPACES}:\n  ${text}")
endif()
message(STATUS "${count} names exported")
