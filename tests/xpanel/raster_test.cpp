// The raster the panels draw into: PNG output, the built-in font, the palette and clipping.
#include "lwhost/Raster.h"

#include <gtest/gtest.h>
#include <lwpanel.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <set>
#include <string>

namespace {

using lwhost::PaletteColour;
using lwhost::Raster;
using lwhost::RGB;

// Independent of the encoder: bit by bit, straight from the definitions.
std::uint32_t Crc32(const std::string& bytes) {
  std::uint32_t crc = 0xFFFFFFFFu;
  for (unsigned char c : bytes) {
    crc ^= c;
    for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
  }
  return ~crc;
}

std::uint32_t Adler32(const std::string& bytes) {
  std::uint64_t a = 1, b = 0;
  for (unsigned char c : bytes) a = (a + c) % 65521, b = (b + a) % 65521;
  return static_cast<std::uint32_t>((b << 16) | a);
}

unsigned Byte(const std::string& s, std::size_t at) { return static_cast<unsigned char>(s.at(at)); }

std::uint32_t BigEndian(const std::string& s, std::size_t at) {
  return Byte(s, at) << 24 | Byte(s, at + 1) << 16 | Byte(s, at + 2) << 8 | Byte(s, at + 3);
}

TEST(RasterPng, EncodedFileDecodesBackToThePixels) {
  // Big enough that the scanlines need two stored blocks (a block holds at most 65535 bytes).
  const int w = 230, h = 97;
  Raster image(w, h);
  std::string scanlines;  // what the image data must inflate to: filter byte 0, then RGB
  for (int y = 0; y < h; ++y) {
    scanlines += '\0';
    for (int x = 0; x < w; ++x) {
      image.set(x, y, RGB{std::uint8_t(x * 7 + y), std::uint8_t(y * 3), std::uint8_t(x ^ y)});
      scanlines += {char(x * 7 + y), char(y * 3), char(x ^ y)};
    }
  }

  const std::string png = image.encodePng();
  ASSERT_EQ(png.substr(0, 8), std::string("\x89PNG\r\n\x1a\n", 8));
  std::string types, ihdr, idat;
  std::size_t at = 8;
  while (at + 12 <= png.size()) {
    const std::uint32_t length = BigEndian(png, at);  // a chunk running past the end throws below
    const std::string type = png.substr(at + 4, 4), data = png.substr(at + 8, length);
    EXPECT_EQ(BigEndian(png, at + 8 + length), Crc32(type + data)) << "CRC of " << type;
    types += type;
    if (type == "IHDR") ihdr = data;
    if (type == "IDAT") idat += data;
    at += 12 + length;
  }
  EXPECT_EQ(at, png.size()) << "bytes after the last chunk";
  EXPECT_EQ(types, "IHDRIDATIEND");
  EXPECT_EQ(BigEndian(ihdr, 0), static_cast<std::uint32_t>(w));
  EXPECT_EQ(BigEndian(ihdr, 4), static_cast<std::uint32_t>(h));
  EXPECT_EQ(ihdr.substr(8), std::string("\x08\x02\x00\x00\x00", 5)) << "8-bit RGB, deflate, no interlace";

  // A zlib stream of stored deflate blocks, then the Adler-32 of what they hold.
  EXPECT_EQ(Byte(idat, 0) & 0x0F, 8u) << "deflate";
  EXPECT_EQ((Byte(idat, 0) * 256 + Byte(idat, 1)) % 31, 0u) << "header check bits";
  EXPECT_EQ(Byte(idat, 1) & 0x20, 0u) << "no preset dictionary";
  std::string raw;
  int blocks = 0;
  at = 2;
  for (bool last = false; !last; ++blocks) {
    last = Byte(idat, at) & 1;
    EXPECT_EQ((Byte(idat, at) >> 1) & 3, 0u) << "stored block";
    const unsigned len = Byte(idat, at + 1) | Byte(idat, at + 2) << 8;
    EXPECT_EQ(len ^ 0xFFFFu, Byte(idat, at + 3) | Byte(idat, at + 4) << 8) << "NLEN of block " << blocks;
    raw += idat.substr(at + 5, len);
    at += 5 + len;
  }
  EXPECT_EQ(blocks, 2);
  ASSERT_EQ(idat.size(), at + 4) << "only the Adler-32 after the last block";
  EXPECT_EQ(BigEndian(idat, at), Adler32(raw));
  EXPECT_TRUE(raw == scanlines) << "the image data differ from the pixels";

  // Written to a file (read back by the command-line tests); an image without pixels has no
  // PNG; failures say why.
  std::string error;
  EXPECT_TRUE(image.writePng(std::string(XPANEL_TEST_OUTPUT_DIR) + "/raster_pattern.png", &error)) << error;
  EXPECT_TRUE(Raster(0, 5).encodePng().empty());
  EXPECT_FALSE(Raster(0, 5).writePng(std::string(XPANEL_TEST_OUTPUT_DIR) + "/empty.png", &error));
  EXPECT_NE(error.find("empty"), std::string::npos) << error;
  EXPECT_FALSE(image.writePng("/nonexistent-dir/x.png", &error));
  EXPECT_NE(error.find("/nonexistent-dir/x.png"), std::string::npos) << error;
}

// A raster's black pixels, row by row, '#' where they are; of `text` drawn at (x, y) on a w x h
// canvas; and how many there are.
std::string Ink(const Raster& r) {
  std::string ink;
  for (int y = 0; y < r.height(); ++y)
    for (int x = 0; x < r.width(); ++x) ink += r.get(x, y) == RGB{0, 0, 0} ? '#' : '.';
  return ink;
}

std::string Ink(const std::string& text, int w, int h, int x = 0, int y = 0) {
  Raster r(w, h);
  r.drawText(x, y, text, RGB{0, 0, 0});
  return Ink(r);
}

long Count(const std::string& ink) { return std::count(ink.begin(), ink.end(), '#'); }

TEST(RasterFont, GlyphsAreDistinctAndStayInsideTheMeasuredBox) {
  const int cell = Raster::textWidth("M"), th = Raster::textHeight();
  // Descenders, bars, bytes without a glyph and the degree sign: the ink of the text drawn with
  // a margin all lies inside its measured box.
  const std::string sample = "gjpqy_|W\x01\x7f\xB0";
  const int tw = Raster::textWidth(sample);
  EXPECT_GT(Count(Ink(sample, tw, th)), 0);
  EXPECT_EQ(Count(Ink(sample, tw + 40, th + 40, 20, 20)), Count(Ink(sample, tw, th)));

  // Every printable character has a glyph of its own (a slip in the table shows as a duplicate
  // or a blank); only the space is blank.
  std::set<std::string> seen;
  for (char c = 33; c <= 126; ++c) {
    const std::string glyph = Ink(std::string(1, c), cell, th);
    EXPECT_NE(glyph.find('#'), std::string::npos) << "blank glyph for '" << c << "'";
    EXPECT_TRUE(seen.insert(glyph).second) << "glyph of '" << c << "' repeats another";
  }
  EXPECT_EQ(Ink(" ", cell, th).find('#'), std::string::npos);

  // Descenders go below the baseline that 'a' and 'X' sit on.
  auto lowest = [&](const char* c) { return static_cast<int>(Ink(c, cell, th).rfind('#')) / cell; };
  EXPECT_EQ(lowest("a"), lowest("X"));
  EXPECT_GT(lowest("g"), lowest("a"));
}

TEST(RasterPalette, CodesMapToColours) {
  // RGB_ keeps blue in the middle byte and green in the low one.
  EXPECT_EQ(PaletteColour(static_cast<int>(RGB_(10, 20, 30))), (RGB{10, 20, 30}));
  EXPECT_EQ(PaletteColour(0x01000000), (RGB{0, 0, 0}));
  // Every palette code has a colour; anything else shows as magenta.
  const RGB magenta{255, 0, 255};
  for (int code = LWP_NONE; code <= LWP_3_BG; ++code) EXPECT_NE(PaletteColour(code), magenta) << code;
  for (int code : {LWP_NONE - 1, LWP_3_BG + 1, -1}) EXPECT_EQ(PaletteColour(code), magenta) << code;

  // The plug-ins' text colour must read on white thumbnails and on the panel background.
  auto luma = [](RGB c) { return (299 * c.r + 587 * c.g + 114 * c.b) / 1000; };
  EXPECT_LT(luma(PaletteColour(LWP_INVERT)), 64);
  EXPECT_GT(luma(PaletteColour(LWP_BG)) - luma(PaletteColour(LWP_INVERT)), 100);
}

TEST(RasterClipping, WildCoordinatesTouchOnlyVisiblePixels) {
  const RGB bg{255, 255, 255}, ink{0, 0, 0};
  Raster r(10, 8, bg);
  r.fillRect(INT_MIN, INT_MIN, INT_MAX, INT_MAX, ink);  // ends at -2, -2: nothing visible
  r.fillRect(8, 6, INT_MAX, INT_MAX, ink);              // the 2 x 2 corner
  r.set(-1, 0, ink);
  r.set(10, 0, ink);
  r.drawText(INT_MAX - 3, 0, "overflow", ink);
  r.drawText(-1000, -1000, "far", ink);
  EXPECT_EQ(Count(Ink(r)), 4);
  EXPECT_EQ(r.get(9, 7), ink);
  EXPECT_EQ(r.get(-1, 0), bg) << "outside reads the background";

  // A line reaching far outside draws exactly its visible part, and quickly; a zero-length line
  // is one pixel.
  Raster d(10, 10, bg);
  d.line(INT_MIN / 2, INT_MIN / 2, INT_MAX / 2, INT_MAX / 2, ink);
  d.line(3, 4, 3, 4, ink);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(d.get(i, i), ink) << i;
  EXPECT_EQ(d.get(3, 4), ink);
  EXPECT_EQ(Count(Ink(d)), 11);

  // Sizes from a plug-in are clamped, not trusted; a blit clips on every side.
  Raster huge(-5, INT_MAX);
  EXPECT_EQ(huge.width(), 0);
  EXPECT_EQ(huge.height(), Raster::kMaxSide);
  Raster target(4, 4, bg), source(3, 3, ink);
  target.blit(source, 2, -1);
  EXPECT_EQ(Count(Ink(target)), 4);
  EXPECT_EQ(target.get(2, 0), ink);
  EXPECT_EQ(target.get(3, 1), ink);
}

}  // namespace
