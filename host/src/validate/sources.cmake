target_sources(lwhost_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/IsolatedRun.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ServerProbe.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ServerChecks.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Validation.cpp)
