#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lwhost {

struct RGB {
  std::uint8_t r = 0, g = 0, b = 0;
  bool operator==(const RGB& o) const { return r == o.r && g == o.g && b == o.b; }
  bool operator!=(const RGB& o) const { return !(*this == o); }
};

// An RGB image, origin top-left, that panels and renders draw into and that can be saved as PNG.
// Drawing outside the image is clipped, never an error.
class Raster {
 public:
  // Sizes are clamped to 0..kMaxSide, so a wild size from a plug-in cannot exhaust memory.
  static constexpr int kMaxSide = 8192;

  Raster(int width, int height, RGB background = {255, 255, 255});

  int width() const { return width_; }
  int height() const { return height_; }
  RGB background() const { return background_; }

  void set(int x, int y, RGB colour);
  // Row y's pixels, width() of them, for renderers that fill whole rows; y must lie inside.
  RGB* row(int y) { return pixels_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width_); }
  // Outside the image: the background colour.
  RGB get(int x, int y) const;
  void fillRect(int x, int y, int w, int h, RGB colour);
  // The one-pixel outline of a rectangle.
  void frameRect(int x, int y, int w, int h, RGB colour);
  void line(int x0, int y0, int x1, int y1, RGB colour);
  // Text in the built-in bitmap font, (x, y) the top-left of the text box. The font has glyphs
  // for printable ASCII and the Latin-1 degree sign (0xB0); every byte takes one fixed-width
  // cell, and bytes without a glyph show as a hollow box.
  void drawText(int x, int y, const std::string& text, RGB colour);
  // Copies another raster with its top-left at (x, y).
  void blit(const Raster& source, int x, int y);

  static int textWidth(const std::string& text);
  static int textHeight();

  // PNG (8-bit RGB) of the image; empty for an image without pixels, which PNG cannot hold.
  std::string encodePng() const;
  // Writes the PNG; false with a reason on failure.
  bool writePng(const std::string& path, std::string* error = nullptr) const;

 private:
  int width_, height_;
  RGB background_;
  std::vector<RGB> pixels_;
};

// The colour LightWave's panel palette code (LWP_*, 0x1028 + i, or RGB_(r,g,b)) stands for here.
//
// RGB_(r,g,b) is 0x1000000 | r<<16 | b<<8 | g: blue sits in the middle byte, green in the low one.
// The palette is the host's own, a light theme in which the plug-ins' text colour LWP_INVERT is
// near-black so that text drawn on white thumbnails reads:
//   LWP_NONE, LWP_BG (GRAY6)    panel background 178,178,178
//   LWP_INVERT (GRAY3)          text              24,24,24
//   LWP_NORMAL                  control face     150,150,150
//   LWP_HEADLINE (WHITE)                         255,255,255
//   LWP_INFO_BG (GRAY5) / _IMG / _DIS (GRAY1)    200,200,200 / 0,0,0 / 110,110,110
//   LWP_EDIT_BG (GRAY4) / _IMG (GRAY8) / _SEL / _DIS (GRAY7)
//                                                235,235,235 / 0,0,0 / 96,120,170 / 140,140,140
//   LWP_BLACK 0,0,0; LWP_SHADOW (GRAY2) 84,84,84; LWP_LOWERED 128,128,128; LWP_RAISED 205,205,205;
//   LWP_HILIGHT 240,240,240
//   LWP_0..5_STAT (CANARY1..6), _DLOG (AQUA1..6), _DOIT (LAVENDER1..6), _DRAG (OLIVE1..6): six
//   steps from light to dark of yellow, aqua, lavender and olive
//   LWP_1_BG, LWP_2_BG, LWP_3_BG  alternative backgrounds 190 / 166 / 154 grey
// Any other code draws in magenta, so that a wrong code shows up in a rendered image.
RGB PaletteColour(int code);

// A panel-style bevelled border in the palette's LWP_SHADOW and LWP_HILIGHT, as the panels'
// drawBorder draws it: sunken for a positive indent, raised for a negative one, |indent| pixels
// thick (at least one); with h == 0, a horizontal divider w wide.
void DrawBevel(Raster& raster, int indent, int x, int y, int w, int h);

}  // namespace lwhost
