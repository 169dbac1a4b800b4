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

# The component storage is there where its libraries were, and its absence is told where they were not.
execute_process(COMMAND ${configure} -S "${SOURCE}/find_package" -B "${WORK}/storage"
  "-DCMAKE_PREFIX_PATH=${PREFIX}" "-DVERSION=${VERSION}" "-DROOT=${ROOT}" -DCOMPONENT=storage
  OUTPUT_QUIET ERROR_VARIABLE error RESULT_VARIABLE result)
if(STORAGE)
  run(${CMAKE_COMMAND} --build "${WORK}/storage")
  run("${WORK}/storage/checkpoint")
elseif(result EQUAL 0 OR NOT error MATCHES "component storage of vexadata is not installed")
  message(FATAL_ERROR "the component storage, which is not installed, gave: ${error}")
endif()
