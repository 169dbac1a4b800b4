include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")
find_program(PKG_CONFIG NAMES pkg-config pkgconf REQUIRED)

set(ENV{PKG_CONFIG_PATH} "${PREFIX}/${LIBDIR}/pkgconfig")
file(MAKE_DIRECTORY "${WORK}")
set(packages vexadata vexadata-client)
if(EXISTS "${PREFIX}/${LIBDIR}/pkgconfig/vexadata-storage.pc")
  list(APPEND packages vexadata-storage)
endif()
foreach(package IN LISTS packages)
  execute_process(COMMAND ${PKG_CONFIG} --modversion ${package}
    OUTPUT_VARIABLE version OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  if(NOT version STREQUAL VERSION)
    message(FATAL_ERROR "${package} has version ${version}, not ${VERSION}")
  endif()
endforeach()

execute_process(COMMAND ${PKG_CONFIG} --cflags --libs vexadata-client
  OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND "${flags}")
run("${CXX}" -std=c++17 -Wl,--as-needed "${SOURCE}/main.cpp" -o "${WORK}/program" ${flags}
  "-Wl,-rpath,${PREFIX}/${LIBDIR}")
run_program("${WORK}/program")
