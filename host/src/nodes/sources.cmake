# The node editor and the driving of handler instances.
target_sources(lwhost_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/Blend.cpp
  ${CMAKE_CURRENT_LIST_DIR}/HandlerInstance.cpp
  ${CMAKE_CURRENT_LIST_DIR}/NodalAccess.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Node.cpp
  ${CMAKE_CURRENT_LIST_DIR}/NodeEditor.cpp
  ${CMAKE_CURRENT_LIST_DIR}/NodeServices.cpp
  ${CMAKE_CURRENT_LIST_DIR}/NodeUtility.cpp
  ${CMAKE_CURRENT_LIST_DIR}/NodeValue.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PluginNode.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SourceNodes.cpp)
