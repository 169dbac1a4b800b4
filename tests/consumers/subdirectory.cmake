include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")

run(${configure} -S "${SOURCE}/subdirectory" -B "${WORK}" "-DROOT=${ROOT}")
run(${CMAKE_COMMAND} --build "${WORK}" --parallel 2)
run_program("${WORK}/program")

run(${CMAKE_COMMAND} --install "${WORK}" --prefix "${WORK}/prefix")
file(GLOB_RECURSE installed "${WORK}/prefix/*")
if(installed)
  message(FATAL_ERROR "as a subdirectory vexadata installs ${installed}")
endif()
