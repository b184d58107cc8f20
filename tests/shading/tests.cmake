# Shading and caching nodes of vorn.p: Single Light Lambert and the Cache.
vorn_add_test_suite(shading_tests
  ${CMAKE_CURRENT_LIST_DIR}/lambert_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/cache_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/render_test.cpp)
