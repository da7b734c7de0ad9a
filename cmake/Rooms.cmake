# Makes the targets of the rooms in cmake/RoomList.cmake.

# Takes the copy with planted faults for each source that has one (tests/mutants/run).
function(take_planted list)
  set(taken)
  foreach(source IN LISTS ${list})
    file(RELATIVE_PATH copy "${CMAKE_SOURCE_DIR}" "${source}")
    if(EXISTS "${EMBERDECK_MUTANTS}/${copy}")
      set(source "${EMBERDECK_MUTANTS}/${copy}")
      set_property(SOURCE "${source}" PROPERTY INCLUDE_DIRECTORIES "${CMAKE_SOURCE_DIR}/tests")
    endif()
    list(APPEND taken "${source}")
  endforeach()
  set(${list} "${taken}" PARENT_SCOPE)
endfunction()

# Makes the static library of a room out of every source below its folder. A room whose folder holds only headers
# is an interface library.
function(room_library name folder)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/${folder}/*.cpp")
  if(EMBERDECK_MUTANTS)
    take_planted(sources)
  endif()
  if(sources)
    add_library(${name} STATIC ${sources})
    set(scope PUBLIC)
  else()
    add_library(${name} INTERFACE)
    set(scope INTERFACE)
  endif()
  target_include_directories(${name} ${scope}
    "${CMAKE_SOURCE_DIR}/Engine/sdk/inc"        # "qsassert.h"
    "${CMAKE_SOURCE_DIR}/Engine/libs"           # "qsamgr/qsanode.h"
    "${CMAKE_SOURCE_DIR}/Engine"                # "platform/Paths.h"
    "${CMAKE_SOURCE_DIR}/Engine/tools"          # "shared/engine/ProjectLocator.h"
    "${CMAKE_SOURCE_DIR}/Engine/tools/Emberdeck") # "model/Spell.h"
  target_link_libraries(${name} ${scope} emberdeck_options ${ARGN})
endfunction()

# The same for a room of windows.
if(EMBERDECK_WINDOW)
  find_package(Qt6 REQUIRED COMPONENTS Widgets)
endif()
function(window_library name folder)
  room_library(${name} "${folder}" ${ARGN} Qt6::Widgets)
  set_target_properties(${name} PROPERTIES AUTOMOC ON AUTOGEN_ORIGIN_DEPENDS OFF)
  if(name STREQUAL "qt_toolkit")
    target_precompile_headers(${name} PRIVATE <QtWidgets> <string> <vector> <memory>)
  else()
    target_precompile_headers(${name} REUSE_FROM qt_toolkit)
  endif()
endfunction()

# A room with a build file of its own makes its targets there, and finds what it sees in ROOM_SEES.
function(room name folder)
  if(name MATCHES "^qt_" AND NOT EMBERDECK_WINDOW)
    return()
  endif()
  set(ROOM_SEES ${ARGN})
  if(EXISTS "${CMAKE_SOURCE_DIR}/${folder}/CMakeLists.txt")
    add_subdirectory("${CMAKE_SOURCE_DIR}/${folder}")
  elseif(name MATCHES "^qt_")
    window_library(${name} "${folder}" ${ROOM_SEES})
  else()
    room_library(${name} "${folder}" ${ROOM_SEES})
  endif()
endfunction()
