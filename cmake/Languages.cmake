# The phrase files beside the module, in Languages/, as it reads them: in the code page of Windows.
set(folder ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/Languages)
file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/resources/languages/*.Phrases)
set(installed ${sources})
list(TRANSFORM installed REPLACE "^.*/" "${folder}/")
file(MAKE_DIRECTORY ${folder})
if(sources)
  add_custom_command(OUTPUT ${installed} VERBATIM
    COMMAND perl ${PROJECT_SOURCE_DIR}/scripts/phrases.pl install ${folder} ${sources}
    DEPENDS ${sources} ${PROJECT_SOURCE_DIR}/scripts/phrases.pl)
endif()
add_custom_target(zyr_languages ALL DEPENDS ${installed})
add_dependencies(zyrtwain zyr_languages)
