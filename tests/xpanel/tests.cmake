# Form panels, the raster/PNG/font they draw with, and a probe module that drives a view panel.
vorn_add_plugin_module(panel_probe_module panel_probe ${CMAKE_CURRENT_LIST_DIR}/PanelProbeModule.cpp)

vorn_add_test_suite(xpanel_tests
  ${CMAKE_CURRENT_LIST_DIR}/raster_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/hint_list_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/xpanels_test.cpp)
target_compile_definitions(xpanel_tests PRIVATE
  PANEL_PROBE_MODULE_PATH="$<TARGET_FILE:panel_probe_module>"
  XPANEL_TEST_OUTPUT_DIR="${CMAKE_CURRENT_BINARY_DIR}")
add_dependencies(xpanel_tests panel_probe_module)
