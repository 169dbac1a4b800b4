# Runs COMMAND with ARGUMENTS under the fault FAULT; its exit status must be STATUS, and what it prints must match every
# expression of OUTPUT. Both lists are separated by |AND|.
cmake_minimum_required(VERSION 3.25)

string(REPLACE "|AND|" ";" arguments "${ARGUMENTS}")
set(ENV{VEXADATA_FAULT} "${FAULT}")
execute_process(COMMAND "${COMMAND}" ${arguments} OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE status)
message("${output}")
if(NOT status STREQUAL STATUS)
  message(FATAL_ERROR "exit status ${status}, expected ${STATUS}")
endif()

# Reasons that were broken into several lines are put together again.
string(REGEX REPLACE "\n        +" " " output "\n${output}")
string(REPLACE "|AND|" ";" expressions "${OUTPUT}")
foreach(expression IN LISTS expressions)
  if(NOT output MATCHES "${expression}")
    message(FATAL_ERROR "the output does not match: ${expression}")
  endif()
endforeach()
