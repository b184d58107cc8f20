#pragma once

#include <lwrender.h>

#include <vector>

namespace hostkit {

class LWItem;

// Tells the host which scene items an instance depends on and follows their renumbering.
class ItemHandler {
 public:
  ItemHandler() = default;
  ItemHandler(const ItemHandler&) = delete;
  ItemHandler& operator=(const ItemHandler&) { return *this; }  // the list points into its owner

  // The identifiers of `items`, ending with the host's null mark; valid until the next call.
  virtual const LWItemID* UseItems();
  // Applies the host's (old, new) pairs to every item. Pairs are applied in order without
  // stopping at the first match, so a chain A→B, B→C moves A to C in one call.
  virtual void ChangeID(const LWItemID* list);

  std::vector<LWItem*> items;
  LWItemID* idCache = nullptr;

 protected:
  ~ItemHandler();
};

}  // namespace hostkit
