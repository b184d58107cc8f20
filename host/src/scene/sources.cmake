# The scene, its items and the information services that report them.
target_sources(lwhost_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/CameraInfo.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Directories.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ItemColors.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ItemId.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ItemLooks.cpp
  ${CMAKE_CURRENT_LIST_DIR}/LightInfo.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ObjectInfo.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Scene.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SceneSettings.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SceneServices.cpp)
