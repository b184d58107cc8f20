vorn_add_test_suite(io_tests
  ${CMAKE_CURRENT_LIST_DIR}/observer_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/block_structure_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/round_trip_test.cpp)
