# find_package(vexadata [COMPONENTS core client])
#
#   core    vexadata::vexadata  the library
#   client  vexadata::client    the embedded back-end; a program that links it can create arrays
#
# Without COMPONENTS, core and, where it is installed, client.

foreach(component IN LISTS vexadata_FIND_COMPONENTS)
  if(NOT component MATCHES "^(core|client)$")
    set(vexadata_FOUND FALSE)
    set(vexadata_NOT_FOUND_MESSAGE "vexadata has no component '${component}'; its components are core and client")
    return()
  endif()
endforeach()

include("${CMAKE_CURRENT_LIST_DIR}/vexadataCoreTargets.cmake")
set(vexadata_core_FOUND TRUE)

if(NOT vexadata_FIND_COMPONENTS OR "client" IN_LIST vexadata_FIND_COMPONENTS)
  include("${CMAKE_CURRENT_LIST_DIR}/vexadataClientTargets.cmake" OPTIONAL RESULT_VARIABLE vexadata_client_FOUND)
  if(NOT vexadata_client_FOUND AND vexadata_FIND_REQUIRED_client)
    set(vexadata_FOUND FALSE)
    set(vexadata_NOT_FOUND_MESSAGE "the component client of vexadata is not installed beside its core")
  endif()
endif()
