# Classic panels ("LWPanelServices"), driven through a probe module that builds its panel the way
# a plug-in does.
vorn_add_plugin_module(classic_probe_module classic_probe ${CMAKE_CURRENT_LIST_DIR}/ClassicProbeModule.cpp)

vorn_add_test_suite(panel_tests ${CMAKE_CURRENT_LIST_DIR}/panels_test.cpp)
target_compile_definitions(panel_tests PRIVATE CLASSIC_PROBE_PATH="$<TARGET_FILE:classic_probe_module>")
add_dependencies(panel_tests classic_probe_module)
