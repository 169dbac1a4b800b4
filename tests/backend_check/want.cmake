# Lets the system refuse memory to COMMAND, which checks LIBRARY, once and from then on, sooner or later: it ends with the report
# that it gives with enough memory, or with one line that says what was missing, and never blames LIBRARY.
execute_process(COMMAND "${COMMAND}" --quiet "${LIBRARY}" OUTPUT_VARIABLE report RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "with enough memory: status ${status}\n${report}")
endif()
set(refusals 0)
foreach(number 1 2 30 200 400 600 800 1000 1200 1500 2000 3000 5000 9000)
  foreach(which REFUSE_AT REFUSE_FROM)
    execute_process(
      COMMAND ${CMAKE_COMMAND} -E env "LD_PRELOAD=${PRELOAD}" ${which}=${number} "${COMMAND}" --quiet "${LIBRARY}"
      OUTPUT_VARIABLE output ERROR_VARIABLE error RESULT_VARIABLE status)
    if(status EQUAL 2 AND output STREQUAL "" AND error MATCHES "^vexadata-backend-check: not enough memory[^\n]*\n$")
      math(EXPR refusals "${refusals} + 1")
    elseif(NOT status EQUAL 0 OR NOT output STREQUAL report)
      message(FATAL_ERROR "${which}=${number}: status ${status}\n${output}${error}")
    endif()
  endforeach()
endforeach()
if(refusals LESS 10)
  message(FATAL_ERROR "only ${refusals} refusals were noticed")
endif()
