#pragma once

#include <lwhost.h>

#include "hostkit/GlobalBase.h"
#include "hostkit/ServiceNames.h"

namespace hostkit {

template <>
struct GlobalName<st_LWMessageFuncs> {
  static constexpr const char* value = service::InfoMessages;
};

// The module-wide holder of the host's message service; the exception guards report through it.
class LWMessage : public GlobalBase<st_LWMessageFuncs> {
 public:
  // Two lines in the host's error requester.
  void error(const char* first, const char* second) const { getGlobal()->error(first, second); }

  // Made on the first activation in the life of the module; released when the module unloads.
  static void CreateModuleInstance();
  static LWMessage& ModuleInstance();
};

}  // namespace hostkit
