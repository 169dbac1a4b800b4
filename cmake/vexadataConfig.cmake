# find_package(vexadata [COMPONENTS core client interop storage python testing tools])
#
#   core    vexadata::vexadata       the library
#   client  vexadata::client         the embedded back-end; a program that links it can create arrays
#   interop vexadata::interop        headers: ways to and from other libraries, which they want where they are included
#   storage vexadata::storage        saving and loading; with the component client. Installed where libcbor was there
#   python  no target: vexadata_PYTHON_DIR, the folder of the Python package, for PYTHONPATH
#   testing vexadata::testing        headers: doubles of back-ends and failing allocations, for tests
#   tools   vexadata::backend_check  the command that runs a back-end through the contract, and the function
#                                    vexadata_check_backend, which makes a test of it (see vexadataCheckBackend.cmake)
#
# Without COMPONENTS, core and whatever else is installed.

set(vexadata_components core client interop storage python testing tools)
foreach(component IN LISTS vexadata_FIND_COMPONENTS)
  if(NOT component IN_LIST vexadata_components)
    list(JOIN vexadata_components ", " list)
    set(vexadata_FOUND FALSE)
    set(vexadata_NOT_FOUND_MESSAGE "vexadata has no component '${component}'; its components are ${list}")
    return()
  endif()
endforeach()

include("${CMAKE_CURRENT_LIST_DIR}/vexadataCoreTargets.cmake")
set(vexadata_core_FOUND TRUE)

# vexadata_take(COMPONENT FILE): includes what a component installed, if it is wanted and there.
macro(vexadata_take component file)
  if(NOT vexadata_FIND_COMPONENTS OR "${component}" IN_LIST vexadata_FIND_COMPONENTS)
    include("${CMAKE_CURRENT_LIST_DIR}/${file}" OPTIONAL RESULT_VARIABLE vexadata_${component}_FOUND)
    if(NOT vexadata_${component}_FOUND AND vexadata_FIND_REQUIRED_${component})
      set(vexadata_FOUND FALSE)
      set(vexadata_NOT_FOUND_MESSAGE "the component ${component} of vexadata is not installed beside its core")
    endif()
  endif()
endmacro()

if("storage" IN_LIST vexadata_FIND_COMPONENTS AND NOT "client" IN_LIST vexadata_FIND_COMPONENTS)
  list(APPEND vexadata_FIND_COMPONENTS client) # which storage stands upon
  set(vexadata_FIND_REQUIRED_client "${vexadata_FIND_REQUIRED_storage}")
endif()
vexadata_take(client vexadataClientTargets.cmake)
vexadata_take(interop vexadataInteropTargets.cmake)
vexadata_take(storage vexadataStorageTargets.cmake)
vexadata_take(python vexadataPythonPlace.cmake)
vexadata_take(testing vexadataTestingTargets.cmake)
vexadata_take(tools vexadataToolsTargets.cmake)
if(vexadata_tools_FOUND)
  include("${CMAKE_CURRENT_LIST_DIR}/vexadataCheckBackend.cmake" OPTIONAL)
endif()
