# Runs a program that must fail with a report of a sanitizer. To show that the sanitizer's gate can fail.
#   -D PROGRAM=...  the program
#   -D REPORT=...   what the report says, a regular expression

cmake_minimum_required(VERSION 3.25)
execute_process(COMMAND "${PROGRAM}" RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(result EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} succeeded; the sanitizer saw nothing:\n${output}")
endif()
if(NOT output MATCHES "${REPORT}")
  message(FATAL_ERROR "${PROGRAM} failed with ${result}, but without '${REPORT}':\n${output}")
endif()
message(STATUS "seen: ${CMAKE_MATCH_0}")
