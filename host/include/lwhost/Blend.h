#pragma once

#include <lwnodes.h>

namespace lwhost {

// The node utility Blend. Per channel:
//
//   result = alpha * bg + (1 - alpha) * M(bg, fg)
//
// so alpha 1 keeps the background and alpha 0 gives the full effect, where M is
//   Normal      fg                      Difference  |bg - fg|
//   Additive    bg + fg                 Negative    1 - |1 - bg - fg|
//   Subtractive bg - fg                 ColorDodge  bg / (1 - fg), 1 where fg >= 1
//   Multiply    bg * fg                 ColorBurn   1 - (1 - bg) / fg, 0 where fg <= 0
//   Screen      1 - (1 - bg)(1 - fg)    Red, Green, Blue: bg with that one channel taken
//   Darken      min(bg, fg)                         from fg (the others stay bg)
//   Lighten     max(bg, fg)
// Nothing is clamped. A mode outside 0..13 blends as Normal. `result` may be `bg` or `fg`.
void Blend(double result[3], const double bg[3], const double fg[3], double alpha, int mode) noexcept;

}  // namespace lwhost
