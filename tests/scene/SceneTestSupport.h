#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <lwhost.h>
#include <lwrender.h>
#include <lwserver.h>

#include <vector>

#include "lwhost/Host.h"
#include "lwhost/ItemId.h"
#include "lwhost/Scene.h"

// A host with a scene, and the services fetched the way a plug-in fetches them.
class SceneTest : public ::testing::Test {
 protected:
  template <class T>
  T* global(const char* name) {
    return static_cast<T*>(host.globals().lookup(name, GFUSE_ACQUIRE));
  }
  LWItemInfo* itemInfo() { return global<LWItemInfo>("LW Item Info 3"); }
  LWDirInfoFunc* dirInfo() { return reinterpret_cast<LWDirInfoFunc*>(global<void>(LWDIRINFOFUNC_GLOBAL)); }

  static LWItemID Id(unsigned int value) { return lwhost::itemid::FromValue(value); }

  // Everything a plug-in sees of one type, walking first/next, or of an item's children.
  std::vector<LWItemID> walk(LWItemType type, LWItemID boneObject = LWITEM_NULL) {
    std::vector<LWItemID> out;
    for (LWItemID id = itemInfo()->first(type, boneObject); id && out.size() < 1000; id = itemInfo()->next(id))
      out.push_back(id);
    return out;
  }
  std::vector<LWItemID> children(LWItemID parent) {
    std::vector<LWItemID> out;
    for (LWItemID id = itemInfo()->firstChild(parent); id && out.size() < 1000; id = itemInfo()->nextChild(parent, id))
      out.push_back(id);
    return out;
  }

  lwhost::Host host;
  lwhost::Scene scene{host};
};
