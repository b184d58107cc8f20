#pragma once

#include <cmath>

namespace lwhost {

// The unit axes of an item turned by heading (about +Y), pitch (about +X) and bank (about
// +Z), applied in LightWave's order: bank, then pitch, then heading.
inline void ItemAxes(const double hpb[3], double right[3], double up[3], double forward[3]) {
  const double ch = std::cos(hpb[0]), sh = std::sin(hpb[0]);
  const double cp = std::cos(hpb[1]), sp = std::sin(hpb[1]);
  const double cb = std::cos(hpb[2]), sb = std::sin(hpb[2]);
  const double r0[3] = {ch, 0.0, -sh};
  const double u0[3] = {sh * sp, cp, ch * sp};
  forward[0] = sh * cp;
  forward[1] = -sp;
  forward[2] = ch * cp;
  for (int i = 0; i < 3; ++i) {
    right[i] = cb * r0[i] + sb * u0[i];
    up[i] = cb * u0[i] - sb * r0[i];
  }
}

// Heading and pitch that turn +Z towards `direction` (which need not be unit length); a null
// direction keeps both 0.
inline void AimAngles(const double direction[3], double* heading, double* pitch) {
  const double flat = std::sqrt(direction[0] * direction[0] + direction[2] * direction[2]);
  *heading = flat > 0.0 ? std::atan2(direction[0], direction[2]) : 0.0;
  *pitch = (flat > 0.0 || direction[1] != 0.0) ? std::atan2(-direction[1], flat) : 0.0;
}

}  // namespace lwhost
