#pragma once

#include <lwhost.h>
#include <lwrender.h>

// The C side of the scene: what plug-ins are handed. Every function finds the current host's
// Scene itself and answers null or zero when there is none.
namespace lwhost {
class Scene;
}

namespace lwhost::sceneservices {

// The scene as item queries see it: none in Modeler, which has no scene items.
Scene* ItemScene();

// "LW Object Info", "LW Light Info" and "LW Camera Info": unknown items, items of another
// type and Modeler get zeros and nulls.
LWObjectInfo* ObjectInfo();
LWLightInfo* LightInfo();
LWCameraInfo* CameraInfo();

LWItemInfo* ItemInfo();
LWDirInfoFunc* DirectoryInfo();
// Fill the function members of the records.
void Connect(LWSceneInfo& info);
void Connect(LWInterfaceInfo& info);

}  // namespace lwhost::sceneservices
