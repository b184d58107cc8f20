#include "lwhost/ItemColors.h"

#include <limits>

namespace lwhost::itemcolors {

namespace {
constexpr float C(int byte) { return static_cast<float>(byte) / 255.0f; }

// Read off the swatches Layout shows for indices 0..14.
constexpr float kPalette[kCount][3] = {
    {C(0), C(0), C(0)},       {C(0), C(48), C(132)},    {C(0), C(97), C(0)},
    {C(33), C(97), C(115)},   {C(115), C(0), C(0)},     {C(115), C(32), C(115)},
    {C(115), C(81), C(0)},    {C(181), C(178), C(181)}, {C(33), C(162), C(247)},
    {C(33), C(227), C(33)},   {C(99), C(227), C(247)},  {C(247), C(32), C(33)},
    {C(247), C(97), C(247)},  {C(247), C(195), C(33)},  {C(247), C(243), C(247)}};
}  // namespace

const float* Palette(int index) { return index >= 0 && index < kCount ? kPalette[index] : nullptr; }

int NearestIndex(const float rgb[3]) {
  int best = 0;
  float bestDistance = std::numeric_limits<float>::max();
  for (int i = 0; i < kCount; ++i) {
    float d = 0.0f;
    for (int c = 0; c < 3; ++c) d += (rgb[c] - kPalette[i][c]) * (rgb[c] - kPalette[i][c]);
    if (d < bestDistance) {
      bestDistance = d;
      best = i;
    }
  }
  return best;
}

}  // namespace lwhost::itemcolors
