#pragma once

#include <lwmaster.h>

#include "hostkit/InstanceHandler.h"
#include "hostkit/ItemHandler.h"

namespace hostkit {

// The base of scene-wide master plug-ins.
class MasterHandler : public InstanceHandler, public ItemHandler {
 public:
  MasterHandler() : InstanceHandler("MasterHandler") {}

  virtual double Event(const LWMasterAccess* /*access*/) { return 0.0; }
  virtual unsigned int Flags() { return 0; }
};

}  // namespace hostkit
