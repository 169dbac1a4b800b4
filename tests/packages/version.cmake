# cmake -D CHANGELOG=... -D VERSION=... -P version.cmake
#
# Fails unless the newest entry of the Debian changelog is about the version of the project.

cmake_minimum_required(VERSION 3.25)
file(STRINGS "${CHANGELOG}" first LIMIT_COUNT 1)
if(NOT first MATCHES "^vexadata \\(([^)]*)\\) " OR NOT CMAKE_MATCH_1 STREQUAL VERSION)
  message(FATAL_ERROR "${CHANGELOG}: the newest entry is '${first}', but CMakeLists.txt states the version ${VERSION}")
endif()
