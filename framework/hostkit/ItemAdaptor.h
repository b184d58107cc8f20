#pragma once

#include <lwrender.h>

#include "hostkit/ExceptionGuard.h"
#include "hostkit/InstanceAdaptor.h"
#include "hostkit/LightWave.h"

namespace hostkit {

template <class T>
struct ItemAdaptor {
  static const LWItemID* UseItems(LWInstance instance) {
    return Guarded<const LWItemID*>(guard::ItemUseItems, nullptr,
                                    [&] { return InstanceAdaptor<T>::Self(instance)->UseItems(); });
  }

  static void ChangeID(LWInstance instance, const LWItemID* list) {
    Guarded(guard::ItemChangeID, [&] { InstanceAdaptor<T>::Self(instance)->ChangeID(list); });
  }

  // The modeller has no scene items: its item table is left as the host gave it.
  static void Fill(LWItemFuncs* table) {
    if (!table || LightWave::IsModeler()) return;
    table->useItems = UseItems;
    table->changeID = ChangeID;
  }
};

}  // namespace hostkit
