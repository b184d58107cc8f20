# Animation services: channel groups, "Animation Envelopes", "LWVParmFuncs 2".
target_sources(lwhost_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/Animation.cpp
  ${CMAKE_CURRENT_LIST_DIR}/AnimationIO.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ChannelGroup.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Envelope.cpp
  ${CMAKE_CURRENT_LIST_DIR}/EnvelopeFuncs.cpp
  ${CMAKE_CURRENT_LIST_DIR}/VParm.cpp
  ${CMAKE_CURRENT_LIST_DIR}/VParmFuncs.cpp)
