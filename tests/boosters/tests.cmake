# The Material, Colour and Scalar Boosters through vorn.p.
vorn_add_test_suite(booster_tests ${CMAKE_CURRENT_LIST_DIR}/booster_test.cpp)
