# Master plug-ins in Layout sessions: the Growl Notifier heard through its forwarded program and
# through a real notification daemon on a private bus, Command Statistics, and the session itself.
add_executable(arg_recorder ${CMAKE_CURRENT_LIST_DIR}/ArgRecorder.cpp)

vorn_add_test_suite(master_tests ${CMAKE_CURRENT_LIST_DIR}/masters_test.cpp)
target_link_libraries(master_tests PRIVATE vorn_platform)
target_compile_definitions(master_tests PRIVATE
  ARG_RECORDER_PATH="$<TARGET_FILE:arg_recorder>"
  NOTIFICATION_DAEMON_SCRIPT="${CMAKE_CURRENT_LIST_DIR}/with_notification_daemon.sh"
  MASTER_TEST_DIR="${CMAKE_CURRENT_BINARY_DIR}/master_output"
  CLI_TEST_OUTPUT_DIR="${CMAKE_CURRENT_BINARY_DIR}/master_output")
add_dependencies(master_tests arg_recorder)
