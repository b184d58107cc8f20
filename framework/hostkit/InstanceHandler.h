#pragma once

#include <lwtypes.h>

#include <string>

#include "hostkit/InstanceUpdate.h"
#include "hostkit/Storeable.h"

namespace hostkit {

// The root of every plug-in class: what the host creates, copies, saves and destroys.
//
// The host holds an instance as the address of this base; the adaptors convert back through it,
// so callbacks that know only the base (input events, panels) find the same object.
class InstanceHandler : public virtual Storeable {
 public:
  explicit InstanceHandler(const char* hostClass = nullptr) : className(hostClass) {}
  // May throw: the host's destroy call is guarded.
  virtual ~InstanceHandler() noexcept(false) {}
  virtual const char* DescLn() { return description.c_str(); }

  // Copies between instances are the plug-in's business; the host bookkeeping stays put.
  InstanceHandler& operator=(const InstanceHandler&) { return *this; }

  LWInstance hostInstance() { return static_cast<InstanceHandler*>(this); }
  static InstanceHandler* FromHost(LWInstance instance) { return static_cast<InstanceHandler*>(instance); }

  std::string description;
  const char* className;
  InstanceUpdate instanceUpdate;
};

}  // namespace hostkit
