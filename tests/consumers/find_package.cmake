include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")

run(${configure} -S "${SOURCE}/find_package" -B "${WORK}" "-DCMAKE_PREFIX_PATH=${PREFIX}" "-DVERSION=${VERSION}"
  "-DROOT=${ROOT}")
run(${CMAKE_COMMAND} --build "${WORK}")
run_program("${WORK}/program")
run("${WORK}/doubles")

# A component that does not exist is refused by name.
execute_process(COMMAND ${configure} -S "${SOURCE}/find_package" -B "${WORK}/unknown"
  "-DCMAKE_PREFIX_PATH=${PREFIX}" "-DVERSION=${VERSION}" -DCOMPONENT=sparkle
  OUTPUT_QUIET ERROR_VARIABLE error RESULT_VARIABLE result)
if(result EQUAL 0 OR NOT error MATCHES "no component 'sparkle'")
  message(FATAL_ERROR "an unknown component gave: ${error}")
endif()
