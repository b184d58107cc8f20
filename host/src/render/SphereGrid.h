#pragma once

#include "lwhost/ItemLooks.h"

namespace lwhost {

// The quad of a sphere object (kSphereSegments x kSphereRings) that a point of the unit sphere
// lies on, numbered as the sphere preview numbers them: ring times the segment count plus
// segment, rings from +Y down, segments round Y from -Z through -X, +Z and +X. Boundaries are compared as cosines and cross products, so
// no inverse trigonometry runs per sample.
class SphereGrid {
 public:
  static constexpr int kSegments = kSphereSegments, kRings = kSphereRings;

  static const SphereGrid& Instance();
  int polygon(const double p[3]) const noexcept;
  // The two halves of the number: the ring from the height, the segment from x and z.
  int ring(double y) const noexcept;
  int segment(double x, double z) const noexcept;
  // Along a row of the front half (z >= 0, x rising) the segment never falls, so each spot
  // steps on from its left neighbour's segment `from` instead of searching afresh.
  int nextSegment(int from, double x, double z) const noexcept {
    while (from + 1 < kSegments && segment_[from + 1][1] * x - segment_[from + 1][0] * z >= 0.0) ++from;
    return from;
  }

 private:
  SphereGrid();
  double ringCos_[kRings - 1];
  double segment_[kSegments + 1][2];  // (x, z) of the boundaries all round
};

}  // namespace lwhost
