#pragma once

#include <lwrender.h>

#include <string>
#include <vector>

#include "hostkit/ItemInfo.h"
#include "hostkit/PopUpCallback.h"

namespace hostkit {

// A pop-up of the items of one type as an indented hierarchy with the host's item icons.
class StyledItemCallback : public PopUpCallback {
 public:
  struct itemEntry {
    std::string label;
    LWItemID id;
  };

  explicit StyledItemCallback(LWItemType listed) : type(listed) {}

  // Walks the scene from every unparented object, light and camera; bones come as children.
  void buildItemList();
  // Lists `item` when it is of `filter` type, then its children ten steps further in.
  void addChildren(LWItemID item, int indent, LWItemType filter);

  int popCount() override { return static_cast<int>(entries.size()); }
  const char* popName(int index) override {
    return index >= 0 && index < popCount() ? entries[static_cast<size_t>(index)].label.c_str() : "";
  }

  LWItemType type;
  std::vector<itemEntry> entries;

 private:
  ItemInfo info_;
};

}  // namespace hostkit
