#pragma once

#include <lwrender.h>

#include "hostkit/GlobalBase.h"
#include "hostkit/ServiceNames.h"

namespace hostkit {

template <>
struct GlobalName<st_LWInterfaceInfo> {
  static constexpr const char* value = service::InterfaceInfo;
};

// The host's interface state; used here for the colours items are drawn in.
class InterfaceInfo : public GlobalBase<st_LWInterfaceInfo> {
 public:
  int ItemColour(LWItemID id) const { return available() && id ? getGlobal()->itemColor(id) : 0; }
};

}  // namespace hostkit
