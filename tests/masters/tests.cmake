# Master plug-ins in Layout sessions: the Growl Notifier heard through its forwarded program and
# through a real notification daemon on a private bus, and the session itself.
add_executable(arg_recorder ${CMAKE_CURRENT_LIST_DIR}/ArgRecorder.cpp)

vorn_add_test_suite(master_tests
  ${CMAKE_CURRENT_LIST_DIR}/growl_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/session_test.cpp)
target_link_libraries(master_tests PRIVATE vorn_platform)
target_compile_definitions(master_tests PRIVATE
  ARG_RECORDER_PATH="$<TARGET_FILE:arg_recorder>"
  NOTIFICATION_DAEMON_SCRIPT="${CMAKE_CURRENT_LIST_DIR}/with_notification_daemon.sh"
  MASTER_TEST_DIR="${CMAKE_CURRENT_BINARY_DIR}/master_output"
  CLI_TEST_OUTPUT_DIR="${CMAKE_CURRENT_BINARY_DIR}/master_output")
add_dependencies(master_tests arg_recorder)

# Command Statistics in Layout sessions: commands counted, its settings file, its classic panel.
vorn_add_test_suite(command_stats_tests
  ${CMAKE_CURRENT_LIST_DIR}/command_stats_test.cpp)
target_compile_definitions(command_stats_tests PRIVATE CLI_TEST_OUTPUT_DIR="${CMAKE_CURRENT_BINARY_DIR}/master_output")
