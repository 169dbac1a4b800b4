include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")

run(${configure} -S "${SOURCE}/check_backend" -B "${WORK}" "-DCMAKE_PREFIX_PATH=${PREFIX}")
execute_process(COMMAND ${CMAKE_CTEST_COMMAND} --test-dir "${WORK}" --no-tests=error -V
  OUTPUT_VARIABLE output RESULT_VARIABLE result)
if(NOT result EQUAL 0 OR NOT output MATCHES "cells +an element is replaced +holds")
  message(FATAL_ERROR "the test of the back-end gave ${result}: ${output}")
endif()
