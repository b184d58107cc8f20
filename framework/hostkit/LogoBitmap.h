#pragma once

#include <array>
#include <cstddef>

namespace hostkit {

// The logo drawn at the head of every panel: 104 × 56 pixels, three bytes a pixel in blue,
// green, red order, rows of 312 bytes, the first stored row being the bottom line.
inline constexpr int kLogoWidth = 104;
inline constexpr int kLogoHeight = 56;
inline constexpr std::size_t kLogoRowBytes = kLogoWidth * 3;

const std::array<unsigned char, kLogoRowBytes * kLogoHeight>& LogoBitmap();

}  // namespace hostkit
