# cpack runs this on the files that go into the package: stripping leaves the compiler's remarks in them.
file(GLOB programs "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/lib/emberdeck/bin/*")
if(NOT programs)
  message(FATAL_ERROR "There are no programs in ${CPACK_TEMPORARY_INSTALL_DIRECTORY}")
endif()
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note ${programs}
  COMMAND_ERROR_IS_FATAL ANY)
