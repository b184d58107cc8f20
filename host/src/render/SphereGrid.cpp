#include "SphereGrid.h"

#include <cmath>

namespace lwhost {

namespace {
constexpr double kPi = 3.14159265358979323846;
}

const SphereGrid& SphereGrid::Instance() {
  static const SphereGrid grid;
  return grid;
}

SphereGrid::SphereGrid() {
  for (int r = 1; r < kRings; ++r) ringCos_[r - 1] = std::cos(r * kPi / kRings);
  for (int s = 0; s <= kSegments; ++s) {
    const double a = s * 2.0 * kPi / kSegments;  // from -Z towards -X
    segment_[s][0] = -std::sin(a);
    segment_[s][1] = -std::cos(a);
  }
}

int SphereGrid::polygon(const double p[3]) const noexcept { return ring(p[1]) * kSegments + segment(p[0], p[2]); }

int SphereGrid::ring(double y) const noexcept {
  // Rings: how many boundary cosines lie above p's height, found by halving.
  int ring = 0, count = kRings - 1;
  while (count > 0) {
    const int half = count / 2;
    if (y < ringCos_[ring + half]) {
      ring += half + 1;
      count -= half + 1;
    } else {
      count = half;
    }
  }
  return ring;
}

int SphereGrid::segment(double px, double pz) const noexcept {
  // The second half-turn (+Z through +X back to -Z) mirrors the first.
  const bool second = px > 0.0 || (px == 0.0 && pz > 0.0);
  const double x = second ? -px : px, z = second ? -pz : pz;
  int lo = 0, hi = kSegments / 2;  // the angle from -Z lies between boundaries lo and hi
  while (hi - lo > 1) {
    const int mid = (lo + hi) / 2;
    // sin(angle - boundary angle): not negative once past the boundary.
    const double cross = segment_[mid][1] * x - segment_[mid][0] * z;
    (cross >= 0.0 ? lo : hi) = mid;
  }
  return second ? lo + kSegments / 2 : lo;
}

}  // namespace lwhost
