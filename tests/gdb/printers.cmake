# cmake -D GDB=... -D PROGRAM=... -D PRINTERS=... -D FOLDER=... -D EXPECTED=... -P printers.cmake
#
# Fails unless GDB shows the variables of the program as EXPECTED does: while it runs, and from a core file.

cmake_minimum_required(VERSION 3.25)
set(core "${FOLDER}/variables.core")
set(show -ex "source ${PRINTERS}" -ex "echo ----\\n" -ex up -ex "info locals")

function(expect_variables what)
  execute_process(COMMAND "${GDB}" -nx -batch ${ARGN} OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  string(REGEX REPLACE ".*----\n[^\n]*\n[^\n]*\n" "" variables "${output}")
  string(REGEX REPLACE "Saved corefile[^\n]*\n" "" variables "${variables}")
  file(READ "${EXPECTED}" expected)
  if(NOT variables STREQUAL expected)
    message(FATAL_ERROR "expected of ${what}:\n${expected}\nbut GDB printed:\n${output}\n${errors}")
  endif()
endfunction()

expect_variables("the running program" -ex "break stop" -ex run ${show} -ex "generate-core-file ${core}" "${PROGRAM}")
expect_variables("its core file" ${show} "${PROGRAM}" "${core}")
file(REMOVE "${core}")
