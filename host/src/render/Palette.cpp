#include <lwpanel.h>

#include <algorithm>
#include <cstdlib>

#include "lwhost/Raster.h"

namespace lwhost {

namespace {

// Indexed by code - LWP_NONE; the header comment of PaletteColour explains the choices.
// clang-format off
constexpr RGB kPalette[] = {
    {178, 178, 178},  // LWP_NONE
    {24, 24, 24},     // LWP_INVERT (GRAY3)
    {178, 178, 178},  // LWP_BG (GRAY6)
    {150, 150, 150},  // LWP_NORMAL
    {255, 255, 255},  // LWP_HEADLINE (WHITE)
    {200, 200, 200},  // LWP_INFO_BG (GRAY5)
    {0, 0, 0},        // LWP_INFO_IMG
    {110, 110, 110},  // LWP_INFO_DIS (GRAY1)
    {235, 235, 235},  // LWP_EDIT_BG (GRAY4)
    {0, 0, 0},        // LWP_EDIT_IMG (GRAY8)
    {96, 120, 170},   // LWP_EDIT_SEL
    {140, 140, 140},  // LWP_EDIT_DIS (GRAY7)
    {0, 0, 0},        // LWP_BLACK
    {84, 84, 84},     // LWP_SHADOW (GRAY2)
    {128, 128, 128},  // LWP_LOWERED
    {205, 205, 205},  // LWP_RAISED
    {240, 240, 240},  // LWP_HILIGHT
    {255, 250, 200}, {250, 235, 150}, {240, 215, 100},  // LWP_0..2_STAT (CANARY1..3)
    {220, 190, 60},  {190, 160, 30},  {150, 120, 10},   // LWP_3..5_STAT
    {210, 245, 245}, {160, 230, 230}, {110, 210, 215},  // LWP_0..2_DLOG (AQUA1..3)
    {70, 180, 190},  {40, 145, 160},  {20, 105, 120},   // LWP_3..5_DLOG
    {235, 225, 250}, {210, 195, 240}, {185, 165, 225},  // LWP_0..2_DOIT (LAVENDER1..3)
    {155, 135, 205}, {125, 105, 180}, {95, 75, 150},    // LWP_3..5_DOIT
    {230, 235, 200}, {205, 215, 160}, {175, 190, 120},  // LWP_0..2_DRAG (OLIVE1..3)
    {145, 160, 85},  {115, 130, 55},  {85, 100, 35},    // LWP_3..5_DRAG
    {190, 190, 190},  // LWP_1_BG
    {166, 166, 166},  // LWP_2_BG
    {154, 154, 154},  // LWP_3_BG
};
// clang-format on
constexpr int kPaletteSize = sizeof(kPalette) / sizeof(kPalette[0]);
static_assert(LWP_NONE + kPaletteSize - 1 == LWP_3_BG, "one palette entry per LWP_ code");

constexpr RGB kUnknown{255, 0, 255};

}  // namespace

RGB PaletteColour(int code) {
  auto bits = static_cast<unsigned int>(code);
  if ((bits & 0xFF000000u) == 0x01000000u) {
    return RGB{static_cast<std::uint8_t>(bits >> 16), static_cast<std::uint8_t>(bits),
               static_cast<std::uint8_t>(bits >> 8)};
  }
  if (code >= LWP_NONE && code < LWP_NONE + kPaletteSize) return kPalette[code - LWP_NONE];
  return kUnknown;
}

}  // namespace lwhost

namespace lwhost {

void DrawBevel(Raster& raster, int indent, int x, int y, int w, int h) {
  const RGB shadow = PaletteColour(LWP_SHADOW), light = PaletteColour(LWP_HILIGHT);
  if (h == 0) {
    raster.fillRect(x, y, w, 1, shadow);
    raster.fillRect(x, y + 1, w, 1, light);
    return;
  }
  const RGB topLeft = indent >= 0 ? shadow : light;
  const RGB bottomRight = indent >= 0 ? light : shadow;
  // Thicker than half the box would only paint it over.
  const long long wanted = std::llabs(static_cast<long long>(indent));
  const int thickness = static_cast<int>(std::max(1LL, std::min({wanted, w / 2LL, h / 2LL})));
  for (int i = 0; i < thickness; ++i) {
    raster.fillRect(x + i, y + i, w - 2 * i, 1, topLeft);
    raster.fillRect(x + i, y + i, 1, h - 2 * i, topLeft);
    raster.fillRect(x + i, y + h - 1 - i, w - 2 * i, 1, bottomRight);
    raster.fillRect(x + w - 1 - i, y + i, 1, h - 2 * i, bottomRight);
  }
}

}  // namespace lwhost
