# What the consumer tests share: run a command or stop, and run the consumer's program.

cmake_minimum_required(VERSION 3.25)

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(run_program)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
  if(NOT output STREQUAL "6 elements, the last is 5\n")
    message(FATAL_ERROR "the program printed: ${output}")
  endif()
endfunction()

file(REMOVE_RECURSE "${WORK}")
set(configure ${CMAKE_COMMAND} -G "${GENERATOR}" "-DCMAKE_CXX_COMPILER=${CXX}"
  "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}" -DCMAKE_BUILD_TYPE=Release -DCMAKE_EXE_LINKER_FLAGS=-Wl,--as-needed)
