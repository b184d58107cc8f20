#pragma once

#include <lwxpanel.h>

#include "hostkit/GlobalBase.h"
#include "hostkit/ServiceNames.h"

namespace hostkit {

template <>
struct GlobalName<st_LWXPanelFuncs> {
  static constexpr const char* value = service::XPanel;
};

// The host's form-panel service.
class XPanelFuncs : public GlobalBase<st_LWXPanelFuncs> {};

// A panel handle with the service that made it.
class XPanel {
 public:
  explicit XPanel(LWXPanelID panel = nullptr) : id(panel) {}
  void* getData(unsigned int cid) const { return id && funcs.available() ? funcs.getGlobal()->getData(id, cid) : nullptr; }
  void refresh() const {
    if (id && funcs.available()) funcs.getGlobal()->viewRefresh(id);
  }

  LWXPanelID id;
  XPanelFuncs funcs;
};

// Where a custom-drawn control draws: the host's drawing functions and the region.
struct XPDrawArea {
  LWXPDrawFuncs* funcs;
  LWXPDrAreaID region;
  int width;
  int height;
};

}  // namespace hostkit
