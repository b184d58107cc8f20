#pragma once

#include <cstdint>

namespace lwhost {
namespace font {

// The host's one panel font: fixed-pitch cells, 5-pixel-wide glyphs with two rows of descender
// below the baseline. Every byte of a string takes one cell, so widths are just counts.
constexpr int kCellWidth = 6;
constexpr int kCellHeight = 11;
constexpr int kGlyphWidth = 5;
constexpr int kGlyphRows = 9;
// Glyph row 0 sits this far below the top of the cell.
constexpr int kTopPadding = 1;

// Latin-1 degree sign, the one glyph beyond printable ASCII (angles are shown in degrees).
constexpr unsigned char kDegreeSign = 0xB0;

// The rows of a byte's glyph, bit 4 the leftmost pixel. Bytes without a glyph of their own get a
// hollow box, so that they still show and still take their cell.
const std::uint8_t* Glyph(unsigned char c);

}  // namespace font
}  // namespace lwhost
