# cmake -D NODE=... -D NPM=... -D SOURCE=... -D WORK=... -D FILE=... -P node.cmake
#
# Installs cbor-x as package-lock.json pins it, from the registry that npm is configured for, into WORK, and reads FILE with it. Says
# "left out" when it cannot be had.
cmake_minimum_required(VERSION 3.25)
file(COPY "${SOURCE}/package.json" "${SOURCE}/package-lock.json" DESTINATION "${WORK}")
if(NOT EXISTS "${WORK}/node_modules/cbor-x/package.json")
  execute_process(COMMAND "${NPM}" ci --ignore-scripts --omit=optional --no-audit --no-fund --fetch-retries=0
    WORKING_DIRECTORY "${WORK}" RESULT_VARIABLE failed OUTPUT_VARIABLE output ERROR_VARIABLE output TIMEOUT 100)
  if(failed)
    if(output MATCHES "EINTEGRITY")
      message(FATAL_ERROR "cbor-x is not the package that was pinned:\n${output}")
    endif()
    execute_process(COMMAND "${CMAKE_COMMAND}" -E echo "left out: npm cannot fetch cbor-x")
    return()
  endif()
endif()
execute_process(COMMAND "${NODE}" "${SOURCE}/read.mjs" "${WORK}" "${FILE}" COMMAND_ERROR_IS_FATAL ANY)
