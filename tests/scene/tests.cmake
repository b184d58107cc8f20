# The scene, its items and the information services, driven through their C tables.
vorn_add_test_suite(scene_tests ${CMAKE_CURRENT_LIST_DIR}/scene_test.cpp)
