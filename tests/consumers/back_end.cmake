# A back-end and a client of the installed library, each built by this build's compiler and by OTHER_CXX, in all pairs.
include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")

set(flags -std=c++17 -O2 "-I${PREFIX}/include" "-L${PREFIX}/${LIBDIR}" "-Wl,-rpath,${PREFIX}/${LIBDIR}")
set(compilers "${CXX}" ${OTHER_CXX})
foreach(back_end IN LISTS compilers)
  cmake_path(GET back_end FILENAME name)
  file(MAKE_DIRECTORY "${WORK}/${name}")
  run("${back_end}" ${flags} -fPIC -shared -fvisibility=hidden -fvisibility-inlines-hidden
    "${SOURCE}/back_end/BackEnd.cpp" "${ROOT}/examples/own_backend/doubles.cpp" -o "${WORK}/${name}/libback_end.so" -lvexadata)
  foreach(client IN LISTS compilers)
    cmake_path(GET client FILENAME client_name)
    set(program "${WORK}/${name}/client-${client_name}")
    run("${client}" ${flags} "${SOURCE}/back_end/Main.cpp" -o "${program}"
      "-L${WORK}/${name}" "-Wl,-rpath,${WORK}/${name}" -lback_end -lvexadata)
    run("${program}")
  endforeach()
endforeach()
