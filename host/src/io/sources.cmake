target_sources(lwhost_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/BlockFormat.cpp
  ${CMAKE_CURRENT_LIST_DIR}/BlockReader.cpp
  ${CMAKE_CURRENT_LIST_DIR}/BlockWriter.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ScriptWords.cpp)
