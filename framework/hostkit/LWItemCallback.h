#pragma once

#include <lwrender.h>

#include "hostkit/LWItem.h"
#include "hostkit/PopUpCallback.h"

namespace hostkit {

// A flat pop-up of the scene's items of one type, optionally led by "(none)".
class LWItemCallback : public PopUpCallback {
 public:
  LWItemCallback(LWItemType type, bool withNone) : withNone(withNone ? 1 : 0) { item.type = type; }

  int popCount() override;
  const char* popName(int index) override;

  int index = 0;
  LWItem item;  // the selected item; its type is the type listed
  int withNone;
};

}  // namespace hostkit
