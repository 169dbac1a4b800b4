# vexadata_check_backend(<target> [NAME <test>] [REQUIRE <capability>...] [FAMILY <family>...] [TIMEOUT <seconds>])
#
# Adds a test that runs the back-end which the shared library or module <target> registers through the contract with
# vexadata-backend-check. The test fails when a check fails.
#
#   NAME      name of the test; <target>.contract by default
#   REQUIRE   capabilities that the back-end means to offer, or "all". One that it does not offer fails the test
#             instead of being left out: without this a back-end that creates nothing would pass
#             everything but its loading. `vexadata-backend-check --list` prints the names.
#   FAMILY    only these families of checks
#   TIMEOUT   seconds that one check may take; 10 by default
#
#   find_package(vexadata REQUIRED COMPONENTS core tools)
#   enable_testing()
#   add_library(my_backend MODULE my_backend.cpp)
#   target_link_libraries(my_backend PRIVATE vexadata::vexadata)
#   vexadata_check_backend(my_backend REQUIRE double buffer)
function(vexadata_check_backend target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "NAME;TIMEOUT" "REQUIRE;FAMILY")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "vexadata_check_backend: unknown arguments: ${arg_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT TARGET ${target})
    message(FATAL_ERROR "vexadata_check_backend: '${target}' is no target")
  endif()
  if(NOT arg_NAME)
    set(arg_NAME "${target}.contract")
  endif()
  set(options "")
  foreach(capability IN LISTS arg_REQUIRE)
    list(APPEND options --require "${capability}")
  endforeach()
  foreach(family IN LISTS arg_FAMILY)
    list(APPEND options --family "${family}")
  endforeach()
  if(arg_TIMEOUT)
    list(APPEND options --timeout "${arg_TIMEOUT}")
  endif()
  add_test(NAME ${arg_NAME} COMMAND vexadata::backend_check ${options} "$<TARGET_FILE:${target}>")
endfunction()
