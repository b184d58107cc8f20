vorn_add_test_suite(framework_tests
  ${CMAKE_CURRENT_LIST_DIR}/form_panel_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/item_selection_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/classic_panel_test.cpp)
# The web button's stand-in browser, one per system.
if(WIN32)
  add_executable(fake_browser ${CMAKE_CURRENT_LIST_DIR}/windows/FakeBrowser.cpp)
  target_sources(framework_tests PRIVATE ${CMAKE_CURRENT_LIST_DIR}/windows/FakeLauncher.cpp)
  target_compile_definitions(framework_tests PRIVATE FAKE_BROWSER_PATH="$<TARGET_FILE:fake_browser>")
  add_dependencies(framework_tests fake_browser)
else()
  target_sources(framework_tests PRIVATE ${CMAKE_CURRENT_LIST_DIR}/posix/FakeLauncher.cpp)
endif()
target_include_directories(framework_tests PRIVATE ${CMAKE_CURRENT_LIST_DIR})
