#pragma once

#include <algorithm>
#include <cmath>

namespace vorn {

// The settings of one correction, after connected inputs had their say.
struct CorrectionSettings {
  double brightness = 1.0, contrast = 1.0, hue = 0.0, saturation = 1.0, gamma = 1.0;
  int invert = 0;
};

// Inline, as the corrector runs once per spot: the node's sample reads the settings in place.
namespace detail {

constexpr double kSextant = 1.0471975511965976;         // pi / 3
constexpr double kSextantsPerRadian = 0.954929658551372;  // 3 / pi

// Reduces to [0, 6] by whole turns. The upper end stays reachable: a hue that lands exactly on
// 6 selects the last sextant, as it always has. Huge values skip the loops but land where they
// would: a positive whole number of turns ends on 6, not 0.
inline double WrapSextant(double x) {
  if (!std::isfinite(x)) return 0.0;
  if (std::fabs(x) > 1e6) {
    const double turned = std::fmod(x, 6.0);
    x = turned == 0.0 && x > 0.0 ? 6.0 : turned;
  }
  while (x < 0.0) x += 6.0;
  while (x > 6.0) x -= 6.0;
  return x;
}

}  // namespace detail

// Corrects a colour in place: value scaled by brightness and contrast around 0.5, hue rotated
// (radians), saturation scaled, then gamma and inversion. Neutral settings leave it untouched.
inline void CorrectColour(double c[3], const CorrectionSettings& s) {
  if (!(s.brightness == 1.0 && s.contrast == 1.0 && s.hue == 0.0 && s.saturation == 1.0)) {
    const double r = c[0], g = c[1], b = c[2];
    const double mn = std::min(std::min(g, b), r);
    const double mx = std::max(std::max(g, b), r);
    const double delta = mx - mn;
    double sat = 0.0, h = 0.0;
    if (mx != 0.0) {
      sat = delta / mx;
      if (delta != 0.0) {  // a grey has no hue; its saturation is zero either way
        double sextant = mx == r ? (g - b) / delta : mx == g ? (b - r) / delta + 2.0 : (r - g) / delta + 4.0;
        if (sextant < 0.0) sextant += 6.0;
        h = sextant * detail::kSextant;
      }
    }
    sat *= s.saturation;

    h += s.hue;
    // Contrast 0 moves only V to 0.5; hue and saturation still apply, as the algorithm has it.
    const double v = s.contrast * (mx * s.brightness - 0.5) + 0.5;
    if (sat == 0.0) {
      c[0] = c[1] = c[2] = v;
    } else {
      const double x = detail::WrapSextant(h * detail::kSextantsPerRadian);
      const int i = static_cast<int>(x);
      const double f = x - i;
      const double p = v * (1.0 - sat), q = v * (1.0 - sat * f), t = v * (1.0 - sat * (1.0 - f));
      switch (i) {
        case 0: c[0] = v, c[1] = t, c[2] = p; break;
        case 1: c[0] = q, c[1] = v, c[2] = p; break;
        case 2: c[0] = p, c[1] = v, c[2] = t; break;
        case 3: c[0] = p, c[1] = q, c[2] = v; break;
        case 4: c[0] = t, c[1] = p, c[2] = v; break;
        default: c[0] = v, c[1] = p, c[2] = q; break;
      }
    }
  }
  if (s.gamma != 1.0)
    for (int k = 0; k < 3; ++k) c[k] = std::pow(c[k], 1.0 / s.gamma);
  if (s.invert)
    for (int k = 0; k < 3; ++k) c[k] = 1.0 - c[k];
}

// The scalar form: brightness scales by (1 + B), hue and saturation do not apply.
inline double CorrectScalar(double x, const CorrectionSettings& s) {
  if (s.brightness != 1.0 || s.contrast != 1.0) x = s.contrast * ((s.brightness * x + x) - 0.5) + 0.5;
  if (s.gamma != 1.0) x = std::pow(x, 1.0 / s.gamma);
  if (s.invert) x = 1.0 - x;
  return x;
}


}  // namespace vorn
