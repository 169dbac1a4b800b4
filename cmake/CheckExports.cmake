# cmake -D NM=... -D LIBRARY=... -D NAMESPACES="10foundation8vexadata;4vexa4data" -D GOLDEN=... [-D HEADER=...]
#   [-D CXXFILT=...] [-D ACCEPT=ON] -P CheckExports.cmake
#
# Fails unless the shared library exports something, and nothing but what is in the given namespaces: functions,
# variables, static variables of inline functions, thunks, vtables and type information; and, when a header of functions with
# C linkage is given, every one of these and no other. Then compares the names with those in the file GOLDEN, one a line, and
# says which appeared and which vanished; or, with ACCEPT, makes them the content of the file.

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

list(SORT lines)
if(ACCEPT)
  list(JOIN lines "\n" text)
  file(WRITE "${GOLDEN}" "${text}\n")
endif()
file(STRINGS "${GOLDEN}" golden)

# Sets `result` to the names in one list that are not in the other, as people read them.
function(only_in result ours theirs)
  set(names ${${ours}})
  list(REMOVE_ITEM names ${${theirs}})
  list(JOIN names "\n" text)
  if(names AND CXXFILT)
    file(WRITE "${LIBRARY}.names" "${text}\n")
    execute_process(COMMAND "${CXXFILT}" INPUT_FILE "${LIBRARY}.names" OUTPUT_VARIABLE text
      OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE "${LIBRARY}.names")
  endif()
  string(REPLACE "\n" "\n  " text "${text}")
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

only_in(vanished golden lines)
only_in(appeared lines golden)
if(vanished)
  message("Vanished; whoever was built against the library misses them:\n  ${vanished}")
endif()
if(appeared)
  message("Appeared; once published they have to stay:\n  ${appeared}")
endif()
if(vanished OR appeared)
  message(FATAL_ERROR "${LIBRARY} does not export what ${GOLDEN} lists.\n"
    "If that is meant: build the target accept_exports, then read and commit the difference.")
endif()
list(LENGTH lines count)
message(STATUS "${count} names exported, those of ${GOLDEN}")
