# cmake -D PROGRAM=... -D EXPECTED=... -P CompareOutput.cmake
#
# Fails unless the program succeeds and prints exactly what the file EXPECTED holds.

cmake_minimum_required(VERSION 3.25)
execute_process(COMMAND "${PROGRAM}" OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
file(READ "${EXPECTED}" expected)
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "expected:\n${expected}\nbut the program printed:\n${output}")
endif()
