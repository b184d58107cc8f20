#include "hostkit/NodeInputService.h"

#include "hostkit/HostVersion.h"
#include "hostkit/LightWave.h"

namespace hostkit {

std::unique_ptr<GlobalBase<LWNodeInputFuncs>> MakeNodeInputService() {
  if (UsesNodeInputFuncs2(LightWave::productInfo)) return std::make_unique<NodeInputFuncsV2>();
  return std::make_unique<NodeInputFuncsV1>();
}

}  // namespace hostkit
