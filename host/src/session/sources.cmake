# Layout over time: master plug-in instances, their events and options, driven by scripts.
target_sources(lwhost_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/LayoutSession.cpp
  ${CMAKE_CURRENT_LIST_DIR}/MasterInstance.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SceneFrameRenderer.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SessionScript.cpp)
