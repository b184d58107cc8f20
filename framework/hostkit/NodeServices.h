#pragma once

#include <lwnodes.h>

#include "hostkit/GlobalBase.h"
#include "hostkit/ServiceNames.h"

namespace hostkit {

template <>
struct GlobalName<LWNodeFuncs> {
  static constexpr const char* value = service::NodeFuncs;
};
template <>
struct GlobalName<LWNodeOutputFuncs> {
  static constexpr const char* value = service::NodeOutputFuncs;
};
template <>
struct GlobalName<LWNodeUtilityFuncs> {
  static constexpr const char* value = service::NodeUtilityFuncs;
};

// The host's node utilities; the blend function is the one nodes use.
class LWNodeUtility : public GlobalBase<LWNodeUtilityFuncs> {
 public:
  // Per sample: the shared pointer read directly, not through the virtual getGlobal.
  void Blend(LWDVector result, LWDVector bg, LWDVector fg, double alpha, BlendingMode mode) const {
    globPtr->Blend(result, bg, fg, alpha, mode);
  }
};

using LWNodeOutputService = GlobalBase<LWNodeOutputFuncs>;

}  // namespace hostkit
