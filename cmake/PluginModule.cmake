# vorn_add_plugin_module(<target> <output-name> SOURCES...)
#
# A LightWave plug-in module: a shared object named <output-name>.p on every platform that
# exports _mod_descrip and nothing else, built on the hostkit framework.
function(vorn_add_plugin_module target output_name)
  set(sources ${ARGN})
  if(MINGW)
    # mingw's runtime runs static initialisers in reverse link order; the records must come out
    # in the order the sources are listed, as they do elsewhere.
    list(REVERSE sources)
  endif()
  add_library(${target} MODULE ${sources})
  set_target_properties(${target} PROPERTIES
    PREFIX ""
    OUTPUT_NAME ${output_name}
    SUFFIX ".p"
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  target_link_libraries(${target} PRIVATE hostkit)
  if(NOT WIN32 AND NOT APPLE)
    # Instantiations from the standard headers default to visible; the script keeps them local.
    target_link_options(${target} PRIVATE "-Wl,--version-script=${PROJECT_SOURCE_DIR}/module/exports.map")
    # clang links its sanitizer runtimes into the executable only, so an instrumented module
    # leaves their symbols for the host to provide.
    if(NOT (CMAKE_CXX_COMPILER_ID MATCHES "Clang" AND (VORN_SANITIZE OR VORN_FUZZ)))
      target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
  endif()
  # Let the host unload the module for real, so each load starts from fresh statics.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(${target} PRIVATE -fno-gnu-unique)
  endif()
endfunction()
