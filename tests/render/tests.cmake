# Scenes rendered through the host: the object, light and camera services, illuminate and
# ray tracing as a plain-C SDK node sees them, threads, frame ranges and the render command's
# output files.
add_library(light_probe MODULE ${CMAKE_CURRENT_LIST_DIR}/LightProbeModule.c)
target_link_libraries(light_probe PRIVATE vorn_sdk)
set_target_properties(light_probe PROPERTIES PREFIX "" SUFFIX ".p" C_VISIBILITY_PRESET hidden)

vorn_add_test_suite(render_tests
  ${CMAKE_CURRENT_LIST_DIR}/scene_render_test.cpp)
target_compile_definitions(render_tests PRIVATE
  LIGHT_PROBE_PATH="$<TARGET_FILE:light_probe>"
  CLI_TEST_OUTPUT_DIR="${CMAKE_CURRENT_BINARY_DIR}/render_output")
add_dependencies(render_tests light_probe)
