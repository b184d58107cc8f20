#pragma once

#include "hostkit/MasterHandler.h"
#include "hostkit/XPanelInterface.h"

namespace hostkit {

// A master plug-in with a form panel.
class XPanelMasterHandler : public MasterHandler, public XPanelInterface {};

}  // namespace hostkit
