vorn_add_test_suite(masters_tests
  ${CMAKE_CURRENT_LIST_DIR}/command_stats_test.cpp)
