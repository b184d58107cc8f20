vorn_add_test_suite(animation_tests
  ${CMAKE_CURRENT_LIST_DIR}/animation_test.cpp)
