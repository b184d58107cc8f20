# Form panels ("LWXPanel"), their hint lists and form pictures.
target_sources(lwhost_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/FormRenderer.cpp
  ${CMAKE_CURRENT_LIST_DIR}/HintList.cpp
  ${CMAKE_CURRENT_LIST_DIR}/XPanel.cpp
  ${CMAKE_CURRENT_LIST_DIR}/XPanels.cpp)
