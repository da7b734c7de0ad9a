# The fuzz targets: a name, under which corpus, findings and dictionary lie, and the body. Used twice, for
# libFuzzer and for the replay under the tests.
set(FUZZ_TARGETS
  node_text NodeText
  container Container
  effect_library EffectLibrary
  packed_file PackedFile
  effects_header EffectsHeader
  project_locator ProjectLocator
  profile_text ProfileText
  command_line CommandLine
  plugin_table PluginTable
  change_text ChangeText
  journal Journal)

add_library(fuzz_support STATIC
  "${CMAKE_SOURCE_DIR}/bench/plain/PlainNodeReader.cpp" "${CMAKE_SOURCE_DIR}/bench/plain/PlainContainer.cpp")
target_include_directories(fuzz_support PUBLIC "${CMAKE_SOURCE_DIR}/fuzz" "${CMAKE_SOURCE_DIR}/bench"
  "${CMAKE_SOURCE_DIR}/tests")
target_link_libraries(fuzz_support PUBLIC app)

# fuzz_programs(PREFIX LIBRARY SOURCE...) makes the program PREFIXTARGET of each body, with LIBRARY to run it.
function(fuzz_programs prefix library)
  set(targets ${FUZZ_TARGETS})
  set(programs)
  while(targets)
    list(POP_FRONT targets name body)
    add_executable(${prefix}${name} "${CMAKE_SOURCE_DIR}/fuzz/${body}.cpp" ${ARGN})
    target_link_libraries(${prefix}${name} PRIVATE fuzz_support ${library})
    add_dependencies(${prefix}${name} AssertWin32DLL) # looked for beside the program at run time
    list(APPEND programs ${prefix}${name})
  endwhile()
  set(FUZZ_PROGRAMS ${programs} PARENT_SCOPE)
endfunction()
