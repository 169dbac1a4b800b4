# Compiles SNIPPET with CXX, and once more with REFUSED, which must fail for the reason that the snippet gives.

file(STRINGS "${SNIPPET}" reason REGEX "^// refused: ")
string(REPLACE "// refused: " "" reason "${reason}")
if(reason STREQUAL "")
  message(FATAL_ERROR "${SNIPPET} does not say why it is refused")
endif()

set(compile "${CXX}" -std=c++17 -fsyntax-only "-I${INCLUDE}")
execute_process(COMMAND ${compile} "${SNIPPET}" COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${compile} -DREFUSED "${SNIPPET}" RESULT_VARIABLE status ERROR_VARIABLE errors)
if(status EQUAL 0)
  message(FATAL_ERROR "${SNIPPET} compiles with REFUSED")
endif()
string(FIND "${errors}" "${reason}" place)
if(place EQUAL -1)
  message(FATAL_ERROR "${SNIPPET} is refused, but without '${reason}':\n${errors}")
endif()
