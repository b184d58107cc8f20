# lwhost validate against a module of nodes with one fault each, and the host's answers to bad
# input: damaged module files, module paths without a folder, strings with a NUL.
vorn_add_plugin_module(faulty_module faulty ${CMAKE_CURRENT_LIST_DIR}/FaultyModule.cpp)

vorn_add_test_suite(validate_tests ${CMAKE_CURRENT_LIST_DIR}/validate_test.cpp)
target_compile_definitions(validate_tests PRIVATE
  FAULTY_MODULE_PATH="$<TARGET_FILE:faulty_module>"
  CLI_TEST_OUTPUT_DIR="${CMAKE_CURRENT_BINARY_DIR}/validate_output")
target_include_directories(validate_tests PRIVATE ${PROJECT_SOURCE_DIR}/tests/cli)
add_dependencies(validate_tests faulty_module)

# vorn.p itself, at the highest level, in every build the suite runs in.
add_test(NAME vorn_validates COMMAND lwhost validate $<TARGET_FILE:vorn> --level 5)
