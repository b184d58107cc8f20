#pragma once

namespace lwhost {

// The quad of a 24 x 12 UV sphere that a point of the unit sphere lies on, numbered as the
// sphere preview numbers them: ring times 24 plus segment, rings from +Y down, segments round
// Y from -Z through -X, +Z and +X. Boundaries are compared as cosines and cross products, so
// no inverse trigonometry runs per sample.
class SphereGrid {
 public:
  static constexpr int kSegments = 24, kRings = 12;

  static const SphereGrid& Instance();
  int polygon(const double p[3]) const noexcept;
  // The two halves of the number: the ring from the height, the segment from x and z.
  int ring(double y) const noexcept;
  int segment(double x, double z) const noexcept;

 private:
  SphereGrid();
  double ringCos_[kRings - 1];
  double segment_[kSegments / 2 + 1][2];  // (x, z) of the half-turn's boundaries
};

}  // namespace lwhost
