#pragma once

// The arithmetic of the bench's scale node. The node and the direct measurement both call it,
// so the two sides of the comparison do exactly the same work per sample.
namespace benchnodes {

inline double ScaleScalar(double x, double factor) { return x * factor; }

// The colour times the tint, times the factor.
inline void TintColour(const double colour[3], const double tint[3], double factor, double out[3]) {
  for (int k = 0; k < 3; ++k) out[k] = colour[k] * tint[k] * factor;
}

}  // namespace benchnodes
