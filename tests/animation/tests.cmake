vorn_add_test_suite(animation_tests
  ${CMAKE_CURRENT_LIST_DIR}/envelope_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/vparm_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/animation_io_test.cpp)
