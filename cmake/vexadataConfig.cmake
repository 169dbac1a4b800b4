# find_package(vexadata [COMPONENTS core client interop storage testing tools])
#
#   core    vexadata::vexadata       the library
#   client  vexadata::client         the embedded back-end; a program that links it can create arrays
#   interop vexadata::interop        headers: ways to and from other libraries, which they want where they are included
#   storage vexadata::storage        saving and loading; with the component client. Installed where libcbor was there
#   testing vexadata::testing        headers: doubles of back-ends and failing allocations, for tests
#   tools   vexadata::backend_check  the command that runs a back-end through the contract, and the function
#                                    vexadata_check_backend, which makes a test of it (see vexadataCheckBackend.cmake)
#
# Without COMPONENTS, core and, where they are installed, client, interop, storage, testing and tools.

foreach(component IN LISTS vexadata_FIND_COMPONENTS)
  if(NOT component MATCHES "^(core|client|interop|storage|testing|tools)$")
    set(vexadata_FOUND FALSE)
    set(vexadata_NOT_FOUND_MESSAGE "vexadata has no component '${component}'; its components are core, client, interop, storage, testing and tools")
    return()
  endif()
endforeach()

include("${CMAKE_CURRENT_LIST_DIR}/vexadataCoreTargets.cmake")
set(vexadata_core_FOUND TRUE)

if(NOT vexadata_FIND_COMPONENTS OR "client" IN_LIST vexadata_FIND_COMPONENTS OR "storage" IN_LIST vexadata_FIND_COMPONENTS)
  include("${CMAKE_CURRENT_LIST_DIR}/vexadataClientTargets.cmake" OPTIONAL RESULT_VARIABLE vexadata_client_FOUND)
  if(NOT vexadata_client_FOUND AND vexadata_FIND_REQUIRED_client)
    set(vexadata_FOUND FALSE)
    set(vexadata_NOT_FOUND_MESSAGE "the component client of vexadata is not installed beside its core")
  endif()
endif()

if(NOT vexadata_FIND_COMPONENTS OR "interop" IN_LIST vexadata_FIND_COMPONENTS)
  include("${CMAKE_CURRENT_LIST_DIR}/vexadataInteropTargets.cmake" OPTIONAL RESULT_VARIABLE vexadata_interop_FOUND)
  if(NOT vexadata_interop_FOUND AND vexadata_FIND_REQUIRED_interop)
    set(vexadata_FOUND FALSE)
    set(vexadata_NOT_FOUND_MESSAGE "the component interop of vexadata is not installed beside its core")
  endif()
endif()

if(NOT vexadata_FIND_COMPONENTS OR "storage" IN_LIST vexadata_FIND_COMPONENTS)
  set(vexadata_storage_FOUND FALSE)
  if(vexadata_client_FOUND)
    include("${CMAKE_CURRENT_LIST_DIR}/vexadataStorageTargets.cmake" OPTIONAL RESULT_VARIABLE vexadata_storage_FOUND)
  endif()
  if(NOT vexadata_storage_FOUND AND vexadata_FIND_REQUIRED_storage)
    set(vexadata_FOUND FALSE)
    set(vexadata_NOT_FOUND_MESSAGE "the component storage of vexadata is not installed beside its core and client")
  endif()
endif()

if(NOT vexadata_FIND_COMPONENTS OR "testing" IN_LIST vexadata_FIND_COMPONENTS)
  include("${CMAKE_CURRENT_LIST_DIR}/vexadataTestingTargets.cmake" OPTIONAL RESULT_VARIABLE vexadata_testing_FOUND)
  if(NOT vexadata_testing_FOUND AND vexadata_FIND_REQUIRED_testing)
    set(vexadata_FOUND FALSE)
    set(vexadata_NOT_FOUND_MESSAGE "the component testing of vexadata is not installed beside its core")
  endif()
endif()

if(NOT vexadata_FIND_COMPONENTS OR "tools" IN_LIST vexadata_FIND_COMPONENTS)
  include("${CMAKE_CURRENT_LIST_DIR}/vexadataToolsTargets.cmake" OPTIONAL RESULT_VARIABLE vexadata_tools_FOUND)
  include("${CMAKE_CURRENT_LIST_DIR}/vexadataCheckBackend.cmake" OPTIONAL)
  if(NOT vexadata_tools_FOUND AND vexadata_FIND_REQUIRED_tools)
    set(vexadata_FOUND FALSE)
    set(vexadata_NOT_FOUND_MESSAGE "the component tools of vexadata is not installed beside its core")
  endif()
endif()
