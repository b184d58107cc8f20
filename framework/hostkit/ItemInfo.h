#pragma once

#include <lwrender.h>

#include <string>

#include "hostkit/GlobalBase.h"
#include "hostkit/ServiceNames.h"

namespace hostkit {

class LWItem;

template <>
struct GlobalName<st_LWItemInfo> {
  static constexpr const char* value = service::ItemInfo;
};

// Look-ups of scene items through the host's item information. The modeller has no scene
// items, so every look-up there finds nothing.
class ItemInfo : public GlobalBase<st_LWItemInfo> {
 public:
  // 0-based position of `id` among the items of `type`; -1 for null or not found.
  int FindIndex(LWItemID id, LWItemType type) const;
  int CountItems(LWItemType type) const;
  // A new item (caller owns it) for the n-th item of `type`, or null. Its type field is 0.
  LWItem* GetItemN(int n, LWItemType type) const;
  // The first item of `type` whose name is exactly `name`; null for "" or no match.
  LWItemID FindItemID(const std::string& name, LWItemType type) const;
  // A new item (caller owns it) holding FindItemID's answer, possibly null.
  LWItem* FindItem(const std::string& name, LWItemType type) const;
  // The name of the index-th (1-based) server of a class attached to an item, or null.
  const char* findServer(LWItemID id, const char* className, int index) const;

  const char* Name(LWItemID id) const;
  LWItemType Type(LWItemID id) const;
  LWItemID Parent(LWItemID id) const;
  LWItemID First(LWItemType type) const;
  LWItemID Next(LWItemID id) const;
  LWItemID FirstChild(LWItemID id) const;
  LWItemID NextChild(LWItemID parent, LWItemID child) const;

 private:
  bool usable() const;
};

}  // namespace hostkit
