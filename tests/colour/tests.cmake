# The Simple Colour Corrector node, driven through the real vorn.p in a headless session.
vorn_add_test_suite(colour_tests
  ${CMAKE_CURRENT_LIST_DIR}/correction_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/node_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/storage_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/render_path_test.cpp)
