#pragma once

#include <lwrender.h>

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "lwhost/Scene.h"

namespace lwhost {

// One item of the scene. Items live at fixed addresses (strings handed to plug-ins point into
// them) and refer to each other by pointer, so renumbering only rewrites `id`.
struct SceneItem {
  LWItemID id = LWITEM_NULL;
  LWItemType type = LWI_OBJECT;
  std::string name;
  SceneItem* parent = nullptr;
  SceneItem* object = nullptr;                     // a bone's object
  std::vector<std::unique_ptr<SceneItem>> bones;   // an object's bones, in order

  // Rebuilt with the host order.
  std::size_t listPosition = 0;  // within its type list (bones: within the object's bones)
  std::size_t childPosition = 0;
  std::vector<SceneItem*> children;

  ObjectGeometry geometry;
  double position[3] = {0.0, 0.0, 0.0};
  double rotation[3] = {0.0, 0.0, 0.0};  // heading, pitch, bank
  ObjectLook objectLook;
  LightLook lightLook;
  CameraLook cameraLook;
  std::deque<std::string> tags;  // a deque: adding a tag keeps the others' strings in place
  std::map<std::string, std::deque<std::string>, std::less<>> servers;
  LWChanGroupID group = nullptr;
  char groupStandIn = 0;  // its address is the group handle without an envelope service

  bool hasColour = false;  // else the type's colour
  ItemColour colour;
  unsigned int flags = 0;  // LWITEMF_SHOWCHILDREN | LWITEMF_SHOWCHANNELS | LWITEMF_LOCKED
  int visibility = 0;
  double schemaX = 0.0, schemaY = 0.0;
  float iconScale = 1.0f;
};

}  // namespace lwhost
