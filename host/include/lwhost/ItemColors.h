#pragma once

namespace lwhost {

// How an item is drawn: a palette index, or a custom colour.
struct ItemColour {
  int index = 0;
  bool custom = false;
  float rgb[3] = {0.0f, 0.0f, 0.0f};  // used when custom
};

// Layout's wireframe palette: the 15 colours "itemColor" indices name, as 0..1 RGB.
namespace itemcolors {

inline constexpr int kCount = 15;

// Null for an index outside 0..14.
const float* Palette(int index);
// The palette entry closest to a colour (Euclidean in RGB); used to report an index for items
// given a custom colour, which LightWave leaves undefined.
int NearestIndex(const float rgb[3]);

}  // namespace itemcolors
}  // namespace lwhost
