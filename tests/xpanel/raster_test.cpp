// The raster the panels draw into: PNG output, the built-in font, the palette and clipping.
#include "lwhost/Raster.h"

#include <gtest/gtest.h>
#include <lwpanel.h>

#include <climits>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

namespace {

using lwhost::PaletteColour;
using lwhost::Raster;
using lwhost::RGB;

// Independent of the encoder: bit by bit, straight from the definitions.
std::uint32_t BitwiseCrc32(const std::string& bytes) {
  std::uint32_t crc = 0xFFFFFFFFu;
  for (unsigned char c : bytes) {
    crc ^= c;
    for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
  }
  return ~crc;
}

std::uint32_t SlowAdler32(const std::string& bytes) {
  std::uint64_t a = 1, b = 0;
  for (unsigned char c : bytes) {
    a = (a + c) % 65521;
    b = (b + a) % 65521;
  }
  return static_cast<std::uint32_t>((b << 16) | a);
}

std::uint32_t BigEndian(const std::string& s, std::size_t at) {
  auto u = [&](std::size_t i) { return static_cast<std::uint32_t>(static_cast<unsigned char>(s[at + i])); };
  return (u(0) << 24) | (u(1) << 16) | (u(2) << 8) | u(3);
}

struct Chunk {
  std::string type, data;
};

// Splits a PNG into chunks, checking the signature, each length and each CRC on the way.
std::vector<Chunk> ReadChunks(const std::string& png) {
  std::vector<Chunk> chunks;
  EXPECT_EQ(png.substr(0, 8), std::string("\x89PNG\r\n\x1a\n", 8));
  std::size_t at = 8;
  while (at + 12 <= png.size()) {
    const std::uint32_t length = BigEndian(png, at);
    if (at + 12 + length > png.size()) {
      ADD_FAILURE() << "chunk at " << at << " runs past the end";
      break;
    }
    Chunk c{png.substr(at + 4, 4), png.substr(at + 8, length)};
    EXPECT_EQ(BigEndian(png, at + 8 + length), BitwiseCrc32(c.type + c.data)) << "CRC of " << c.type;
    chunks.push_back(c);
    at += 12 + length;
  }
  EXPECT_EQ(at, png.size()) << "bytes after the last chunk";
  return chunks;
}

// Undoes a zlib stream made only of stored deflate blocks.
std::string InflateStored(const std::string& z, int* blocks) {
  EXPECT_GE(z.size(), 6u);
  const unsigned cmf = static_cast<unsigned char>(z[0]), flg = static_cast<unsigned char>(z[1]);
  EXPECT_EQ(cmf & 0x0F, 8u) << "compression method deflate";
  EXPECT_EQ((cmf * 256 + flg) % 31, 0u) << "header check bits";
  EXPECT_EQ(flg & 0x20, 0u) << "no preset dictionary";
  std::string out;
  std::size_t at = 2;
  *blocks = 0;
  for (bool last = false; !last;) {
    if (at + 5 > z.size()) {
      ADD_FAILURE() << "stream ends inside a block header";
      return out;
    }
    const unsigned header = static_cast<unsigned char>(z[at]);
    last = header & 1;
    EXPECT_EQ((header >> 1) & 3, 0u) << "stored block";
    const unsigned len = static_cast<unsigned char>(z[at + 1]) | static_cast<unsigned char>(z[at + 2]) << 8;
    const unsigned nlen = static_cast<unsigned char>(z[at + 3]) | static_cast<unsigned char>(z[at + 4]) << 8;
    EXPECT_EQ(len ^ 0xFFFFu, nlen) << "block " << *blocks;
    at += 5;
    if (at + len > z.size()) {
      ADD_FAILURE() << "block runs past the stream";
      return out;
    }
    out += z.substr(at, len);
    at += len;
    ++*blocks;
  }
  EXPECT_EQ(z.size(), at + 4) << "only the Adler-32 after the last block";
  if (z.size() == at + 4) {
    EXPECT_EQ(BigEndian(z, at), SlowAdler32(out));
  }
  return out;
}

RGB Pattern(int x, int y) {
  return RGB{static_cast<std::uint8_t>(x * 7 + y), static_cast<std::uint8_t>(y * 3), static_cast<std::uint8_t>(x ^ y)};
}

TEST(RasterPng, EncodedFileDecodesBackToThePixels) {
  // Big enough that the scanlines need two stored blocks (a block holds at most 65535 bytes).
  const int w = 230, h = 97;
  Raster image(w, h);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) image.set(x, y, Pattern(x, y));

  const std::string png = image.encodePng();
  const std::vector<Chunk> chunks = ReadChunks(png);
  ASSERT_EQ(chunks.size(), 3u);
  EXPECT_EQ(chunks[0].type, "IHDR");
  EXPECT_EQ(chunks[1].type, "IDAT");
  EXPECT_EQ(chunks[2].type, "IEND");
  EXPECT_TRUE(chunks[2].data.empty());

  const std::string& ihdr = chunks[0].data;
  ASSERT_EQ(ihdr.size(), 13u);
  EXPECT_EQ(BigEndian(ihdr, 0), static_cast<std::uint32_t>(w));
  EXPECT_EQ(BigEndian(ihdr, 4), static_cast<std::uint32_t>(h));
  EXPECT_EQ(ihdr.substr(8), std::string("\x08\x02\x00\x00\x00", 5))
      << "8-bit RGB, deflate, no filter set, no interlace";

  int blocks = 0;
  const std::string raw = InflateStored(chunks[1].data, &blocks);
  EXPECT_EQ(blocks, 2);
  const std::size_t stride = 1 + 3 * static_cast<std::size_t>(w);
  ASSERT_EQ(raw.size(), stride * h);
  int wrong = 0;
  for (int y = 0; y < h; ++y) {
    EXPECT_EQ(raw[stride * y], 0) << "filter byte of row " << y;
    for (int x = 0; x < w; ++x) {
      const char* p = &raw[stride * y + 1 + 3 * x];
      const RGB got{static_cast<std::uint8_t>(p[0]), static_cast<std::uint8_t>(p[1]), static_cast<std::uint8_t>(p[2])};
      if (got != Pattern(x, y) && ++wrong < 5) ADD_FAILURE() << "pixel " << x << "," << y;
    }
  }
  EXPECT_EQ(wrong, 0);

  // The file on disk is the same bytes; an image without pixels has no PNG and says why.
  const std::string path = std::string(XPANEL_TEST_OUTPUT_DIR) + "/raster_pattern.png";
  std::string error;
  ASSERT_TRUE(image.writePng(path, &error)) << error;
  std::ifstream in(path, std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), png);
  Raster empty(0, 5);
  EXPECT_TRUE(empty.encodePng().empty());
  EXPECT_FALSE(empty.writePng(std::string(XPANEL_TEST_OUTPUT_DIR) + "/empty.png", &error));
  EXPECT_NE(error.find("empty"), std::string::npos) << error;
  EXPECT_FALSE(image.writePng("/nonexistent-dir/x.png", &error));
  EXPECT_NE(error.find("/nonexistent-dir/x.png"), std::string::npos) << error;
}

// The pixels set when `text` is drawn alone, as strings of '#'/'.', one per row.
std::vector<std::string> Rendered(const std::string& text) {
  Raster r(Raster::textWidth(text), Raster::textHeight());
  r.drawText(0, 0, text, RGB{0, 0, 0});
  std::vector<std::string> rows;
  for (int y = 0; y < r.height(); ++y) {
    std::string row;
    for (int x = 0; x < r.width(); ++x) row += r.get(x, y) == RGB{0, 0, 0} ? '#' : '.';
    rows.push_back(row);
  }
  return rows;
}

TEST(RasterFont, DrawnTextStaysInsideTheMeasuredBox) {
  const int th = Raster::textHeight();
  EXPECT_GE(th, 9);
  EXPECT_EQ(Raster::textWidth(""), 0);
  const std::string samples[] = {"Hi", "gjpqy_", "|Wg", "V1.4 (OSX-PPC)", "\x01\x7f", std::string(1, '\xB0')};
  for (const std::string& s : samples) {
    const int tw = Raster::textWidth(s);
    EXPECT_EQ(tw, Raster::textWidth(std::string(s.size(), 'M'))) << "fixed pitch: " << s;
    // Draw into a larger canvas and find the ink's bounding box.
    Raster canvas(tw + 40, th + 40, RGB{255, 255, 255});
    canvas.drawText(20, 20, s, RGB{0, 0, 0});
    int minX = INT_MAX, minY = INT_MAX, maxX = -1, maxY = -1;
    for (int y = 0; y < canvas.height(); ++y)
      for (int x = 0; x < canvas.width(); ++x)
        if (canvas.get(x, y) == RGB{0, 0, 0}) {
          minX = std::min(minX, x), maxX = std::max(maxX, x);
          minY = std::min(minY, y), maxY = std::max(maxY, y);
        }
    ASSERT_GE(maxX, 0) << "nothing drawn for \"" << s << "\"";
    EXPECT_GE(minX, 20) << s;
    EXPECT_GE(minY, 20) << s;
    EXPECT_LT(maxX, 20 + tw) << s;
    EXPECT_LT(maxY, 20 + th) << s;
  }

  // Every printable character has a glyph of its own (a slip in the table shows as a duplicate
  // or a blank), and only the space is blank.
  std::set<std::vector<std::string>> seen;
  for (int c = 33; c <= 126; ++c) {
    std::vector<std::string> glyph = Rendered(std::string(1, static_cast<char>(c)));
    bool inked = false;
    for (const std::string& row : glyph) inked |= row.find('#') != std::string::npos;
    EXPECT_TRUE(inked) << "blank glyph for '" << static_cast<char>(c) << "'";
    EXPECT_TRUE(seen.insert(glyph).second) << "glyph of '" << static_cast<char>(c) << "' repeats another";
  }
  for (const std::string& row : Rendered(" ")) EXPECT_EQ(row.find('#'), std::string::npos);

  // Descenders go below the baseline that 'a' and 'x' sit on; caps do not.
  auto lowest = [](const std::vector<std::string>& g) {
    int last = -1;
    for (int y = 0; y < static_cast<int>(g.size()); ++y)
      if (g[y].find('#') != std::string::npos) last = y;
    return last;
  };
  EXPECT_EQ(lowest(Rendered("a")), lowest(Rendered("X")));
  EXPECT_GT(lowest(Rendered("g")), lowest(Rendered("a")));
  EXPECT_GT(lowest(Rendered("y")), lowest(Rendered("X")));
}

TEST(RasterPalette, CodesMapToColours) {
  // RGB_ keeps blue in the middle byte and green in the low one.
  EXPECT_EQ(PaletteColour(static_cast<int>(RGB_(10, 20, 30))), (RGB{10, 20, 30}));
  EXPECT_EQ(PaletteColour(static_cast<int>(RGB_(255, 0, 128))), (RGB{255, 0, 128}));
  EXPECT_EQ(PaletteColour(0x01000000), (RGB{0, 0, 0}));

  const RGB magenta{255, 0, 255};
  for (int code = LWP_NONE; code <= LWP_3_BG; ++code) EXPECT_NE(PaletteColour(code), magenta) << code;
  EXPECT_EQ(PaletteColour(LWP_NONE - 1), magenta);
  EXPECT_EQ(PaletteColour(LWP_3_BG + 1), magenta);
  EXPECT_EQ(PaletteColour(0), magenta);
  EXPECT_EQ(PaletteColour(-1), magenta);

  // The plug-ins' text colour must read on white thumbnails and on the panel background.
  auto luma = [](RGB c) { return (299 * c.r + 587 * c.g + 114 * c.b) / 1000; };
  EXPECT_LT(luma(PaletteColour(LWP_INVERT)), 64);
  EXPECT_GT(luma(PaletteColour(LWP_BG)) - luma(PaletteColour(LWP_INVERT)), 100);
  EXPECT_EQ(PaletteColour(LWP_WHITE), (RGB{255, 255, 255}));
  EXPECT_EQ(PaletteColour(LWP_BLACK), (RGB{0, 0, 0}));
  EXPECT_EQ(PaletteColour(LWP_GRAY3), PaletteColour(LWP_INVERT));
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
  int inked = 0;
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 10; ++x) inked += r.get(x, y) == ink;
  EXPECT_EQ(inked, 4);
  EXPECT_EQ(r.get(9, 7), ink);
  EXPECT_EQ(r.get(-1, 0), bg) << "outside reads the background";

  // A line reaching far outside draws exactly its visible part, and quickly.
  Raster d(10, 10, bg);
  d.line(INT_MIN / 2, INT_MIN / 2, INT_MAX / 2, INT_MAX / 2, ink);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(d.get(i, i), ink) << i;
  int diagonal = 0;
  for (int y = 0; y < 10; ++y)
    for (int x = 0; x < 10; ++x) diagonal += d.get(x, y) == ink;
  EXPECT_EQ(diagonal, 10);
  Raster e(10, 10, bg);
  e.line(3, 4, 3, 4, ink);
  EXPECT_EQ(e.get(3, 4), ink) << "a zero-length line is one pixel";

  // Sizes from a plug-in are clamped, not trusted.
  Raster huge(-5, INT_MAX);
  EXPECT_EQ(huge.width(), 0);
  EXPECT_EQ(huge.height(), Raster::kMaxSide);

  Raster target(4, 4, bg), source(3, 3, ink);
  target.blit(source, 2, -1);
  EXPECT_EQ(target.get(2, 0), ink);
  EXPECT_EQ(target.get(3, 1), ink);
  EXPECT_EQ(target.get(1, 0), bg);
  EXPECT_EQ(target.get(2, 2), bg);
}

}  // namespace
