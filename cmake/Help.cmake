# The user guide as the help file that the module's Help button opens, beside the module.
set(chapters ${PROJECT_SOURCE_DIR}/docs/user-guide)
set(help ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/ZYRTWAIN.CHM)
file(GLOB sources CONFIGURE_DEPENDS ${chapters}/*.md ${chapters}/*.css ${chapters}/pictures/*.png)
add_custom_command(OUTPUT ${help} VERBATIM
  COMMAND perl ${PROJECT_SOURCE_DIR}/scripts/help.pl ${chapters} ${PROJECT_BINARY_DIR}/help ${help}
  DEPENDS ${sources} ${PROJECT_SOURCE_DIR}/scripts/help.pl)
add_custom_target(zyr_help ALL DEPENDS ${help})
add_dependencies(zyrtwain zyr_help)
