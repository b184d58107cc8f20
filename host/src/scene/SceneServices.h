#pragma once

#include <lwhost.h>
#include <lwrender.h>

// The C side of the scene: what plug-ins are handed. Every function finds the current host's
// Scene itself and answers null or zero when there is none.
namespace lwhost::sceneservices {

LWItemInfo* ItemInfo();
LWDirInfoFunc* DirectoryInfo();
// Fill the function members of the records.
void Connect(LWSceneInfo& info);
void Connect(LWInterfaceInfo& info);

}  // namespace lwhost::sceneservices
