#pragma once

#include <lwnodes.h>

#include <memory>

#include "hostkit/GlobalBase.h"
#include "hostkit/ServiceNames.h"

namespace hostkit {

// The common base of the two node input services has no name of its own.
template <>
struct GlobalName<LWNodeInputFuncs> {
  static constexpr const char* value = nullptr;
};

using NodeInputFuncsV1 = nGlobalBase<LWNodeInputFuncs, inFuncs>;
using NodeInputFuncsV2 = nGlobalBase<LWNodeInputFuncs, inFuncs2>;

// A holder of the node input service this host offers: the newer one from 9.5 on.
std::unique_ptr<GlobalBase<LWNodeInputFuncs>> MakeNodeInputService();

}  // namespace hostkit
