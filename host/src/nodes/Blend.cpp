#include "lwhost/Blend.h"

#include <algorithm>
#include <cmath>

namespace lwhost {

namespace {

double Mix(int mode, double bg, double fg) {
  switch (mode) {
    case Blend_Additive: return bg + fg;
    case Blend_Subtractive: return bg - fg;
    case Blend_Multiply: return bg * fg;
    case Blend_Screen: return 1.0 - (1.0 - bg) * (1.0 - fg);
    case Blend_Darken: return std::min(bg, fg);
    case Blend_Lighten: return std::max(bg, fg);
    case Blend_Difference: return std::fabs(bg - fg);
    case Blend_Negative: return 1.0 - std::fabs(1.0 - bg - fg);
    case Blend_ColorDodge: return fg >= 1.0 ? 1.0 : bg / (1.0 - fg);
    case Blend_ColorBurn: return fg <= 0.0 ? 0.0 : 1.0 - (1.0 - bg) / fg;
    default: return fg;  // Normal, and modes we do not know
  }
}

}  // namespace

void Blend(double result[3], const double bg[3], const double fg[3], double alpha, int mode) noexcept {
  if (!result || !bg || !fg) return;
  double effect[3];
  if (mode == Blend_Red || mode == Blend_Green || mode == Blend_Blue) {
    const int channel = mode - Blend_Red;
    for (int i = 0; i < 3; ++i) effect[i] = i == channel ? fg[i] : bg[i];
  } else {
    for (int i = 0; i < 3; ++i) effect[i] = Mix(mode, bg[i], fg[i]);
  }
  // bg is read again here, so compute everything before writing: result may be bg.
  double out[3];
  for (int i = 0; i < 3; ++i) out[i] = alpha * bg[i] + (1.0 - alpha) * effect[i];
  for (int i = 0; i < 3; ++i) result[i] = out[i];
}

}  // namespace lwhost
