#pragma once

// Reads back the PNG files lwhost writes: 8-bit RGB, one IDAT stream of stored (uncompressed)
// deflate blocks, filter 0 on every row. Anything else is reported as a test failure and gives
// an empty image, so a change of encoder shows up here rather than as wrong pixels.

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "lwhost/Raster.h"

struct PngImage {
  int width = 0, height = 0;
  std::vector<lwhost::RGB> pixels;

  bool empty() const { return pixels.empty(); }
  lwhost::RGB at(int x, int y) const {
    return pixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x));
  }
  bool operator==(const PngImage& o) const { return width == o.width && height == o.height && pixels == o.pixels; }
  bool operator!=(const PngImage& o) const { return !(*this == o); }
};

// Failure messages name the size rather than dumping every pixel.
inline void PrintTo(const PngImage& image, std::ostream* out) {
  *out << image.width << "x" << image.height << " image";
}

inline std::uint32_t PngU32(const std::string& s, std::size_t at) {
  return (std::uint32_t(std::uint8_t(s[at])) << 24) | (std::uint32_t(std::uint8_t(s[at + 1])) << 16) |
         (std::uint32_t(std::uint8_t(s[at + 2])) << 8) | std::uint32_t(std::uint8_t(s[at + 3]));
}

inline PngImage DecodePng(const std::string& png) {
  PngImage image;
  if (png.size() < 8 || png.compare(0, 8, std::string("\x89PNG\r\n\x1a\n", 8)) != 0) {
    ADD_FAILURE() << "not a PNG file";
    return image;
  }
  std::string header, stream;
  for (std::size_t at = 8; at + 12 <= png.size();) {
    const std::uint32_t length = PngU32(png, at);
    if (at + 12 + length > png.size()) {
      ADD_FAILURE() << "truncated chunk";
      return image;
    }
    const std::string type = png.substr(at + 4, 4), data = png.substr(at + 8, length);
    if (type == "IHDR") header = data;
    if (type == "IDAT") stream += data;
    at += 12 + length;
  }
  if (header.size() != 13 || header[8] != 8 || header[9] != 2) {
    ADD_FAILURE() << "expected an 8-bit RGB header";
    return image;
  }
  const int width = static_cast<int>(PngU32(header, 0)), height = static_cast<int>(PngU32(header, 4));

  std::string raw;
  for (std::size_t at = 2; at < stream.size();) {
    const bool last = stream[at] & 1;
    if ((stream[at] & 6) != 0 || at + 5 > stream.size()) {
      ADD_FAILURE() << "expected stored deflate blocks";
      return image;
    }
    const std::size_t n = std::uint8_t(stream[at + 1]) | (std::size_t(std::uint8_t(stream[at + 2])) << 8);
    raw += stream.substr(at + 5, n);
    at += 5 + n;
    if (last) break;
  }
  const std::size_t row = static_cast<std::size_t>(width) * 3 + 1;
  if (raw.size() != row * static_cast<std::size_t>(height)) {
    ADD_FAILURE() << "pixel data of the wrong size";
    return image;
  }
  image.width = width;
  image.height = height;
  for (int y = 0; y < height; ++y) {
    const std::size_t start = row * static_cast<std::size_t>(y);
    if (raw[start] != 0) {
      ADD_FAILURE() << "row " << y << " uses a filter";
      return PngImage{};
    }
    for (int x = 0; x < width; ++x) {
      const std::size_t p = start + 1 + static_cast<std::size_t>(x) * 3;
      image.pixels.push_back({std::uint8_t(raw[p]), std::uint8_t(raw[p + 1]), std::uint8_t(raw[p + 2])});
    }
  }
  return image;
}

inline PngImage ReadPng(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    ADD_FAILURE() << "cannot read " << path;
    return {};
  }
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return DecodePng(bytes.str());
}

inline PngImage FromRaster(const lwhost::Raster& raster) { return DecodePng(raster.encodePng()); }
