# The lwhost command run as users run it: panels of vorn.p's nodes and of a module of test
# masters, node networks rendered to pictures (module paths and connector names included), and
# the errors bad input gets.
vorn_add_plugin_module(cli_probe_module cli_probe ${CMAKE_CURRENT_LIST_DIR}/CliProbeModule.cpp)

vorn_add_test_suite(cli_tests
  ${CMAKE_CURRENT_LIST_DIR}/panel_command_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/render_command_test.cpp)
target_compile_definitions(cli_tests PRIVATE
  CLI_PROBE_MODULE_PATH="$<TARGET_FILE:cli_probe_module>"
  CLI_TEST_OUTPUT_DIR="${CMAKE_CURRENT_BINARY_DIR}/cli_output")
add_dependencies(cli_tests cli_probe_module)
