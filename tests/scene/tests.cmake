# The scene, its items and the information services, driven through their C tables.
vorn_add_test_suite(scene_tests
  ${CMAKE_CURRENT_LIST_DIR}/item_info_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/renumber_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/records_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/directory_info_test.cpp)
