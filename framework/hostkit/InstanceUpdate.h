#pragma once

#include <lwhandler.h>

#include "hostkit/GlobalBase.h"
#include "hostkit/ServiceNames.h"

namespace hostkit {

template <>
struct GlobalName<LWInstUpdate> {
  static constexpr const char* value = service::InstanceUpdate;
};

// Tells the host that an instance changed, so that it redraws and re-evaluates.
class InstanceUpdate : public GlobalBase<LWInstUpdate> {
 public:
  void operator()(const char* className, LWInstance instance) const { getGlobal()(className, instance); }
};

}  // namespace hostkit
