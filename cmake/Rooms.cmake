# room(NAME FOLDER SEES...) makes the static library of one room out of every source in its folder.
# A room whose folder holds only headers is an interface library.
function(room name folder)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/${folder}/*.cpp")
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
