# Shading and caching nodes of vorn.p: Single Light Lambert and the Cache.
vorn_add_test_suite(shading_tests ${CMAKE_CURRENT_LIST_DIR}/shading_test.cpp)
