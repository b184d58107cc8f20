#pragma once

#include "hostkit/LWPanel.h"
#include "hostkit/MasterHandler.h"

namespace hostkit {

// A master plug-in whose options are a classic panel.
class LWPanelMasterHandler : public MasterHandler, public LWPanelInterface {
 public:
  LWPanelMasterHandler(void* /*priv*/, void* /*context*/, LWError* /*err*/) {}
};

}  // namespace hostkit
