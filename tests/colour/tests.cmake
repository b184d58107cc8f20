# The Simple Colour Corrector node, driven through the real vorn.p in a headless session.
vorn_add_test_suite(colour_tests ${CMAKE_CURRENT_LIST_DIR}/corrector_test.cpp)
