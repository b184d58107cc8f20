#include "hostkit/LogoBitmap.h"

#include <cstring>

namespace hostkit {

namespace {

// The source image, one character a cell, each cell drawn as a 4 × 4 block; top row first.
constexpr int kScale = 4;
constexpr int kCols = kLogoWidth / kScale;
constexpr int kRows = kLogoHeight / kScale;
constexpr const char* kSource[kRows] = {
    "..........................",
    "..........................",
    ".#...#..###..####..#...#..",
    ".#...#.#...#.#...#.##..#..",
    ".#...#.#...#.#...#.#.#.#..",
    "..#.#..#...#.####..#..##..",
    "..#.#..#...#.#..#..#...#..",
    "...#....###..#...#.#...#..",
    "..........................",
    ".oooooooooooooooooooooooo.",
    "..........................",
    "...t.t.t.t.t.t.t.t.t.t....",
    "..........................",
    "..........................",
};

struct BGR {
  unsigned char b, g, r;
};

constexpr BGR Colour(char cell) {
  switch (cell) {
    case '#': return {51, 8, 11};    // the module's node colour
    case 'o': return {32, 128, 240};  // orange rule
    case 't': return {160, 160, 160};  // grey dots
    default: return {255, 255, 255};
  }
}

constexpr std::array<unsigned char, kLogoRowBytes * kLogoHeight> Build() {
  std::array<unsigned char, kLogoRowBytes * kLogoHeight> bits{};
  for (int k = 0; k < kLogoHeight; ++k) {
    // Stored bottom-up: stored row k is image line (height - 1 - k).
    const char* line = kSource[(kLogoHeight - 1 - k) / kScale];
    for (int c = 0; c < kLogoWidth; ++c) {
      int col = c / kScale;
      char cell = col < kCols && line[col] ? line[col] : '.';
      BGR p = Colour(cell);
      std::size_t at = static_cast<std::size_t>(k) * kLogoRowBytes + static_cast<std::size_t>(c) * 3;
      bits[at] = p.b;
      bits[at + 1] = p.g;
      bits[at + 2] = p.r;
    }
  }
  return bits;
}

constexpr auto kBits = Build();

}  // namespace

const std::array<unsigned char, kLogoRowBytes * kLogoHeight>& LogoBitmap() { return kBits; }

}  // namespace hostkit
