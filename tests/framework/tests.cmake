vorn_add_test_suite(framework_tests
  ${CMAKE_CURRENT_LIST_DIR}/form_panel_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/item_selection_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/classic_panel_test.cpp)
