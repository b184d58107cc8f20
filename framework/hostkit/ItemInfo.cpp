#include "hostkit/ItemInfo.h"

#include "hostkit/LWItem.h"
#include "hostkit/LightWave.h"

namespace hostkit {

bool ItemInfo::usable() const { return available() && !LightWave::IsModeler(); }

LWItemID ItemInfo::First(LWItemType type) const { return usable() ? getGlobal()->first(type, LWITEM_NULL) : LWITEM_NULL; }
LWItemID ItemInfo::Next(LWItemID id) const { return usable() && id ? getGlobal()->next(id) : LWITEM_NULL; }
LWItemID ItemInfo::FirstChild(LWItemID id) const { return usable() && id ? getGlobal()->firstChild(id) : LWITEM_NULL; }
LWItemID ItemInfo::NextChild(LWItemID parent, LWItemID child) const {
  return usable() && parent ? getGlobal()->nextChild(parent, child) : LWITEM_NULL;
}
LWItemID ItemInfo::Parent(LWItemID id) const { return usable() && id ? getGlobal()->parent(id) : LWITEM_NULL; }
LWItemType ItemInfo::Type(LWItemID id) const { return usable() && id ? getGlobal()->type(id) : LWI_OBJECT; }
const char* ItemInfo::Name(LWItemID id) const { return usable() && id ? getGlobal()->name(id) : nullptr; }

int ItemInfo::FindIndex(LWItemID id, LWItemType type) const {
  if (!id) return -1;
  int index = 0;
  for (LWItemID it = First(type); it; it = Next(it), ++index)
    if (it == id) return index;
  return -1;
}

int ItemInfo::CountItems(LWItemType type) const {
  int n = 0;
  for (LWItemID it = First(type); it; it = Next(it)) ++n;
  return n;
}

LWItem* ItemInfo::GetItemN(int n, LWItemType type) const {
  if (n < 0) return nullptr;
  LWItemID it = First(type);
  for (int i = 0; it && i < n; ++i) it = Next(it);
  if (!it) return nullptr;
  auto* item = new LWItem;
  item->id = it;
  item->SetName(Name(it));
  return item;
}

LWItemID ItemInfo::FindItemID(const std::string& name, LWItemType type) const {
  if (name.empty()) return LWITEM_NULL;
  for (LWItemID it = First(type); it; it = Next(it)) {
    const char* itemName = Name(it);
    if (itemName && name == itemName) return it;
  }
  return LWITEM_NULL;
}

LWItem* ItemInfo::FindItem(const std::string& name, LWItemType type) const {
  auto* item = new LWItem;
  item->id = FindItemID(name, type);
  item->SetName(name);
  return item;
}

const char* ItemInfo::findServer(LWItemID id, const char* className, int index) const {
  return usable() && id ? getGlobal()->server(id, className, index) : nullptr;
}

}  // namespace hostkit
