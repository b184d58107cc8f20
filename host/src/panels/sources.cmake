# Classic panels: "LWPanelServices" and the scripted user.
target_sources(lwhost_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/Controls.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Panel.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PanelDrawing.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PanelServices.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Panels.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Registry.cpp
  ${CMAKE_CURRENT_LIST_DIR}/UserAction.cpp)
