#pragma once

namespace vorn {

// The settings of one correction, after connected inputs had their say.
struct CorrectionSettings {
  double brightness = 1.0, contrast = 1.0, hue = 0.0, saturation = 1.0, gamma = 1.0;
  int invert = 0;
};

// Corrects a colour in place: value scaled by brightness and contrast around 0.5, hue rotated
// (radians), saturation scaled, then gamma and inversion. Neutral settings leave it untouched.
void CorrectColour(double rgb[3], const CorrectionSettings& s);

// The scalar form: brightness scales by (1 + B), hue and saturation do not apply.
double CorrectScalar(double x, const CorrectionSettings& s);

}  // namespace vorn
