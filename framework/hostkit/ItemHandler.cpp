#include "hostkit/ItemHandler.h"

#include "hostkit/LWItem.h"

namespace hostkit {

ItemHandler::~ItemHandler() { delete[] idCache; }

const LWItemID* ItemHandler::UseItems() {
  delete[] idCache;
  idCache = new LWItemID[items.size() + 1];
  for (size_t i = 0; i < items.size(); ++i) idCache[i] = items[i]->id;
  idCache[items.size()] = LWITEM_NULL;
  return idCache;
}

void ItemHandler::ChangeID(const LWItemID* list) {
  if (!list) return;
  for (LWItem* item : items)
    for (const LWItemID* pair = list; pair[0] != LWITEM_NULL; pair += 2)
      if (item->id == pair[0]) item->id = pair[1];
}

}  // namespace hostkit
