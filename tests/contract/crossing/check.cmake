# A back-end and clients built by CXX with the headers of a published contract, over the libraries of today. NUMBERS is a client
# that was built with the headers of today, CHECK the command that checks back-ends; it and DOUBLES, the back-end of today, may
# be empty.
cmake_minimum_required(VERSION 3.25)

if(NOT CXX)
  message("not run: there is no second compiler, neither clang++ nor g++ beside this build's")
  return()
endif()

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
function(build source output) # with the published headers
  run(${LAUNCHER} "${CXX}" -std=c++17 -O1 -fPIC -fvisibility=hidden -fvisibility-inlines-hidden "-I${PUBLISHED}/include"
    -c "${source}" -o "${WORK}/${output}.o")
  cmake_path(GET LIBRARY PARENT_PATH folder)
  cmake_path(GET CLIENT_LIBRARY PARENT_PATH client_folder)
  run("${CXX}" "${WORK}/${output}.o" -o "${WORK}/${output}" ${ARGN} "${LIBRARY}" "-Wl,-rpath,${folder}:${client_folder}")
endfunction()
build("${PUBLISHED}/doubles.cpp" libdoubles.so -shared -Wl,-z,nodelete)
build("${SOURCE}/NumbersClient.cpp" numbers)
build("${SOURCE}/Client.cpp" client "${CLIENT_LIBRARY}")
build("${SOURCE}/Inline.cpp" inline)

run("${WORK}/client")
run("${WORK}/inline")
run(${CMAKE_COMMAND} -E env "LD_PRELOAD=${WORK}/libdoubles.so" "${WORK}/numbers")
run(${CMAKE_COMMAND} -E env "LD_PRELOAD=${WORK}/libdoubles.so" "${NUMBERS}")
if(DOUBLES)
  run(${CMAKE_COMMAND} -E env "LD_PRELOAD=${DOUBLES}" "${WORK}/numbers")
endif()
if(CHECK)
  run("${CHECK}" --require double "${WORK}/libdoubles.so")
endif()
