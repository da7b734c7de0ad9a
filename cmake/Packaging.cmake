# What is installed, and the Debian package that cpack makes of it. The target "deb" builds what the package
# needs, no tests, and then the package. See docs/packaging.md.

set(EMBERDECK_MAINTAINER "The Emberdeck developers <emberdeck@harrowgate.works>" CACHE STRING
  "Who answers for the package, as Debian writes it")

# The programs lie in a folder of their own beside the libraries that they load by name; /usr/bin holds links.
# One folder deeper than /usr/lib/emberdeck, where CPack would call ldconfig for private libraries too.
set(private lib/emberdeck/bin)
set(made "${CMAKE_BINARY_DIR}/packaging")
set(packaging "${CMAKE_SOURCE_DIR}/packaging")

# What users run is hardened, with the flags that Debian's own packages are built with.
if(NOT EMBERDECK_SANITIZE AND NOT EMBERDECK_BENCH)
  target_compile_options(emberdeck_options INTERFACE
    "$<$<CONFIG:Release>:-fstack-protector-strong;-fstack-clash-protection;-Wformat;-Wformat-security>"
    "$<$<CONFIG:Release>:-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=>")
  target_compile_definitions(emberdeck_options INTERFACE "$<$<CONFIG:Release>:_FORTIFY_SOURCE=2>")
  target_link_options(emberdeck_options INTERFACE
    "$<$<CONFIG:Release>:-Wl,-z,relro;-Wl,-z,now;-Wl,--as-needed>")
endif()

if(NOT EMBERDECK_WINDOW) # half of the package would be missing
  return()
endif()

# compressed(FILE NAME) makes NAME.gz of a file, the same bytes each time.
set(made_files)
function(compressed file name)
  add_custom_command(OUTPUT "${made}/${name}.gz"
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${made}"
    COMMAND gzip -9n < "${file}" > "${made}/${name}.gz"
    DEPENDS "${file}" VERBATIM)
  set(made_files ${made_files} "${made}/${name}.gz" PARENT_SCOPE)
endfunction()
compressed("${packaging}/emberdeck.1" emberdeck.1)
compressed("${packaging}/emberdeck-batch.1" emberdeck-batch.1)
compressed("${packaging}/bonfire.1" bonfire.1)
compressed("${packaging}/changelog" changelog)

find_package(Qt6 REQUIRED COMPONENTS Gui)
add_executable(make_icons "${packaging}/MakeIcons.cpp")
target_include_directories(make_icons PRIVATE "${CMAKE_SOURCE_DIR}/Engine"
  "${CMAKE_SOURCE_DIR}/Engine/sdk/inc" "${CMAKE_SOURCE_DIR}/Engine/tools/Emberdeck")
target_link_libraries(make_icons PRIVATE emberdeck_options Qt6::Gui)
set_target_properties(make_icons PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${made}")
add_custom_command(OUTPUT "${made}/icons/scalable/apps/emberdeck.svg"
  COMMAND make_icons "${made}/icons" DEPENDS make_icons VERBATIM)

# The sample plays at once, before anybody has packed it.
set(project "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/bonfire-project")
add_custom_command(OUTPUT "${made}/bonfire.Fx00p"
  COMMAND emberdeck-batch --quiet pack "${project}/bonfire.Fx00a" -o "${made}/bonfire.Fx00p"
  DEPENDS emberdeck-batch fireglass bonfire_project "${project}/bonfire.Fx00a" VERBATIM)

# The project's locator leads to the installed plug-in, also from a copy that somebody made for themselves.
file(READ "${CMAKE_SOURCE_DIR}/samples/bonfire/project/bonfire.proj00" locator)
string(REPLACE "..\\..\\..\\build\\release\\bin\\" "/usr/${private}/" locator "${locator}")
string(REPLACE "..\\..\\..\\build\\release\\bin" "/usr/${private}" locator "${locator}")
file(GENERATE OUTPUT "${made}/bonfire.proj00" CONTENT "${locator}")

add_custom_target(package_files DEPENDS ${made_files} "${made}/icons/scalable/apps/emberdeck.svg"
  "${made}/bonfire.Fx00p")
add_dependencies(package_files emberdeck emberdeck-batch bonfire fireglass AssertWin32DLL)
add_custom_target(deb COMMAND "${CMAKE_CPACK_COMMAND}" -G DEB WORKING_DIRECTORY "${CMAKE_BINARY_DIR}"
  USES_TERMINAL VERBATIM)
add_dependencies(deb package_files)
# Installing takes what is there, so that a package doesn't wait for the tests to be built.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

install(TARGETS emberdeck emberdeck-batch bonfire RUNTIME DESTINATION ${private})
install(TARGETS fireglass AssertWin32DLL LIBRARY DESTINATION ${private})
file(MAKE_DIRECTORY "${made}/bin")
foreach(program emberdeck emberdeck-batch bonfire)
  file(CREATE_LINK "../${private}/${program}" "${made}/bin/${program}" SYMBOLIC)
  install(FILES "${made}/bin/${program}" DESTINATION bin)
  install(FILES "${made}/${program}.1.gz" DESTINATION share/man/man1)
endforeach()
foreach(program emberdeck emberdeck-batch)
  install(FILES "${packaging}/completions/${program}" DESTINATION share/bash-completion/completions)
endforeach()
install(FILES Engine/sdk/inc/effecttypes.h Engine/sdk/inc/emberdeck_effects.h DESTINATION include/emberdeck)
install(FILES samples/bonfire/plugin/fireglass.c samples/bonfire/plugin/fields.h
  DESTINATION share/doc/emberdeck/examples/fireglass)

set(sample share/emberdeck/samples/bonfire)
install(FILES samples/bonfire/project/bonfire.Fx00a samples/bonfire/project/inferno.Fx00c
  "${made}/bonfire.proj00" "${made}/bonfire.Fx00p" DESTINATION ${sample})
install(PROGRAMS samples/bonfire/project/play DESTINATION ${sample})
install(DIRECTORY samples/bonfire/project/resources DESTINATION ${sample}
  FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ
  DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

install(FILES "${packaging}/emberdeck.desktop" "${packaging}/emberdeck-bonfire.desktop"
  DESTINATION share/applications)
install(FILES "${packaging}/emberdeck.xml" DESTINATION share/mime/packages)
# Where the owner publishes docs/pictures is the owner's to say: an address that leads nowhere helps nobody.
set(EMBERDECK_PICTURES_URL "" CACHE STRING
  "Web folder that holds docs/pictures, without a slash at its end; empty: software centres show no picture")
set(METAINFO "${made}/emberdeck.metainfo.xml")
include("${CMAKE_CURRENT_LIST_DIR}/MetaInfo.cmake")
install(FILES "${METAINFO}" DESTINATION share/metainfo)
install(DIRECTORY "${made}/icons/" DESTINATION share/icons/hicolor
  FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ
  DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
install(FILES "${packaging}/copyright" "${made}/changelog.gz" DESTINATION share/doc/emberdeck)

# The manual, where Help looks for it, the pictures that its pages show, and the pages beside it that they lead to. The
# folder of documentation may be left out of a machine, so it only holds links to them.
set(pages source-control.md architecture.md performance.md packaging.md)
install(DIRECTORY docs/manual docs/pictures DESTINATION share/emberdeck
  FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ
  DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE
  FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "*.c")
list(TRANSFORM pages PREPEND docs/ OUTPUT_VARIABLE page_files)
install(FILES ${page_files} DESTINATION share/emberdeck)
file(MAKE_DIRECTORY "${made}/doc")
foreach(name manual pictures ${pages})
  file(CREATE_LINK "../../emberdeck/${name}" "${made}/doc/${name}" SYMBOLIC)
  install(FILES "${made}/doc/${name}" DESTINATION share/doc/emberdeck)
endforeach()

install(FILES "${packaging}/lintian-overrides" DESTINATION share/lintian/overrides RENAME emberdeck)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME emberdeck)
set(CPACK_PACKAGE_VENDOR "The Emberdeck developers")
set(CPACK_PACKAGE_CONTACT "${EMBERDECK_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "editor for the visual effects of a game")
set(CPACK_PACKAGE_DESCRIPTION_FILE "${packaging}/description.txt")
file(READ "${packaging}/description.txt" CPACK_DEBIAN_PACKAGE_DESCRIPTION)
string(STRIP "${CPACK_DEBIAN_PACKAGE_DESCRIPTION}" CPACK_DEBIAN_PACKAGE_DESCRIPTION)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_SOURCE_DIR}/cmake/StripComments.cmake")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION non-free/graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "git, subversion")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
