#pragma once

#include <lwrender.h>

#include "hostkit/ItemInfo.h"
#include "hostkit/Nameable.h"
#include "hostkit/Storeable.h"

namespace hostkit {

// A reference to a scene item that survives reloads: kept by name and type, re-found by name
// when a scene is loaded, because item IDs change between sessions.
class LWItem : public Storeable, public Nameable {
 public:
  LWItem() = default;
  LWItem(LWItemID itemID, LWItemType itemType) : id(itemID), type(itemType) {}
  LWItem(const LWItem& other) : Storeable(), Nameable(other), id(other.id), type(other.type) {}
  LWItem& operator=(const LWItem& other) {
    Nameable::operator=(other);
    id = other.id;
    type = other.type;
    return *this;
  }
  virtual ~LWItem() noexcept(false) {}  // holds a host service

  LWError Load(const LoadState& state) override;
  LWError Save(const SaveState& state) override;

  LWItemID id = LWITEM_NULL;
  LWItemType type = LWI_OBJECT;
  ItemInfo info;
};

}  // namespace hostkit
