# The node editor and handler instances, driven through a small module of test nodes.
vorn_add_plugin_module(node_test_module nodetest
  ${PROJECT_SOURCE_DIR}/module/ModuleDescriptor.cpp
  ${CMAKE_CURRENT_LIST_DIR}/NodeTestPlugin.cpp)

vorn_add_test_suite(node_tests ${CMAKE_CURRENT_LIST_DIR}/node_editor_test.cpp)
target_compile_definitions(node_tests PRIVATE NODE_TEST_MODULE_PATH="$<TARGET_FILE:node_test_module>")
add_dependencies(node_tests node_test_module)
