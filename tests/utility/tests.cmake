# The registry of vorn.p and its information nodes, Time Info and Extended Spot Info.
vorn_add_test_suite(utility_tests
  ${CMAKE_CURRENT_LIST_DIR}/utility_test.cpp)
target_compile_definitions(utility_tests PRIVATE UTILITY_TEST_OUTPUT_DIR="${CMAKE_CURRENT_BINARY_DIR}")
