#include "lwhost/NodalAccess.h"

#include <cmath>
#include <cstddef>
#include <cstring>

namespace lwhost {

namespace {
// Scene-file item ids: kind in the top hex digit (1 object, 3 camera), then the index.
const LWItemID kFirstObject = reinterpret_cast<LWItemID>(static_cast<std::size_t>(0x10000000u));
const LWItemID kFirstCamera = reinterpret_cast<LWItemID>(static_cast<std::size_t>(0x30000000u));
}  // namespace

LWNodalAccess MakeNodalAccess(const double position[3], const double normal[3]) {
  LWNodalAccess na;
  std::memset(&na, 0, sizeof na);

  double n[3] = {0.0, 0.0, 1.0};
  const double length = std::sqrt(normal[0] * normal[0] + normal[1] * normal[1] + normal[2] * normal[2]);
  if (length > 0.0 && std::isfinite(length))
    for (int i = 0; i < 3; ++i) n[i] = normal[i] / length;

  for (int i = 0; i < 3; ++i) {
    na.oPos[i] = na.wPos[i] = position[i];
    na.gNorm[i] = na.wNorm[i] = na.wNorm0[i] = n[i];
    na.raySource[i] = position[i] + n[i];
    na.rayDir[i] = -n[i];
  }
  na.rayLength = 1.0;
  na.cosine = 1.0;
  na.spotSize = 0.01;
  for (int i = 0; i < 3; ++i) na.oXfrm[i * 4] = na.wXfrm[i * 4] = 1.0;
  na.sourceID = kFirstCamera;
  na.objID = kFirstObject;
  na.weights[0] = 1.0f;
  na.incomingEta = 1.0;
  na.flags = LWRT_CAMERA;
  return na;
}

LWNodalAccess MakeNodalAccess() {
  const double origin[3] = {0.0, 0.0, 0.0};
  const double up[3] = {0.0, 0.0, 1.0};
  return MakeNodalAccess(origin, up);
}

}  // namespace lwhost
