# The Material Blender through vorn.p: blending, its form, and what it keeps in scenes.
vorn_add_test_suite(material_tests ${CMAKE_CURRENT_LIST_DIR}/material_blender_test.cpp)
