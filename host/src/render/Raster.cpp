#include "lwhost/Raster.h"
#include "lwhost/PngFile.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "BitmapFont.h"
#include "Png.h"

namespace lwhost {

namespace {
int ClampSide(int side) { return std::clamp(side, 0, Raster::kMaxSide); }
}  // namespace

Raster::Raster(int width, int height, RGB background)
    : width_(ClampSide(width)),
      height_(ClampSide(height)),
      background_(background),
      pixels_(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_), background) {}

void Raster::set(int x, int y, RGB colour) {
  if (x < 0 || y < 0 || x >= width_ || y >= height_) return;
  pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)] = colour;
}

RGB Raster::get(int x, int y) const {
  if (x < 0 || y < 0 || x >= width_ || y >= height_) return background_;
  return pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)];
}

void Raster::fillRect(int x, int y, int w, int h, RGB colour) {
  if (w <= 0 || h <= 0) return;
  // Clip in 64 bits: x + w may overflow an int for wild arguments.
  long long x0 = std::max<long long>(x, 0), y0 = std::max<long long>(y, 0);
  long long x1 = std::min<long long>(static_cast<long long>(x) + w, width_);
  long long y1 = std::min<long long>(static_cast<long long>(y) + h, height_);
  for (long long py = y0; py < y1; ++py)
    for (long long px = x0; px < x1; ++px) set(static_cast<int>(px), static_cast<int>(py), colour);
}

void Raster::frameRect(int x, int y, int w, int h, RGB colour) {
  if (w <= 0 || h <= 0) return;
  fillRect(x, y, w, 1, colour);
  fillRect(x, y + h - 1, w, 1, colour);
  fillRect(x, y, 1, h, colour);
  fillRect(x + w - 1, y, 1, h, colour);
}

namespace {

// Liang-Barsky: shortens the segment to the part inside [lo, hi] on both axes; false if none is.
bool ClipSegment(double& x0, double& y0, double& x1, double& y1, double lo, double hiX, double hiY) {
  double t0 = 0, t1 = 1;
  const double dx = x1 - x0, dy = y1 - y0;
  const double p[4] = {-dx, dx, -dy, dy};
  const double q[4] = {x0 - lo, hiX - x0, y0 - lo, hiY - y0};
  for (int i = 0; i < 4; ++i) {
    if (p[i] == 0) {
      if (q[i] < 0) return false;
      continue;
    }
    double t = q[i] / p[i];
    if (p[i] < 0)
      t0 = std::max(t0, t);
    else
      t1 = std::min(t1, t);
    if (t0 > t1) return false;
  }
  const double sx = x0, sy = y0;
  x0 = sx + t0 * dx;
  y0 = sy + t0 * dy;
  x1 = sx + t1 * dx;
  y1 = sy + t1 * dy;
  return true;
}

}  // namespace

void Raster::line(int x0, int y0, int x1, int y1, RGB colour) {
  // A segment reaching far outside is first cut to the image (plus a pixel), so that wild
  // coordinates cost no more than the pixels that can show.
  auto inside = [&](int x, int y) { return x >= -1 && y >= -1 && x <= width_ && y <= height_; };
  if (!inside(x0, y0) || !inside(x1, y1)) {
    double fx0 = x0, fy0 = y0, fx1 = x1, fy1 = y1;
    if (!ClipSegment(fx0, fy0, fx1, fy1, -1.0, width_, height_)) return;
    x0 = static_cast<int>(std::lround(fx0));
    y0 = static_cast<int>(std::lround(fy0));
    x1 = static_cast<int>(std::lround(fx1));
    y1 = static_cast<int>(std::lround(fy1));
  }
  const int dx = std::abs(x1 - x0), sx = x0 < x1 ? 1 : -1;
  const int dy = -std::abs(y1 - y0), sy = y0 < y1 ? 1 : -1;
  int err = dx + dy;
  for (;;) {
    set(x0, y0, colour);
    if (x0 == x1 && y0 == y1) break;
    const int e2 = 2 * err;
    if (e2 >= dy) {
      err += dy;
      x0 += sx;
    }
    if (e2 <= dx) {
      err += dx;
      y0 += sy;
    }
  }
}

void Raster::drawText(int x, int y, const std::string& text, RGB colour) {
  long long cellX = x;
  for (unsigned char c : text) {
    if (cellX >= width_) break;
    const std::uint8_t* rows = font::Glyph(c);
    for (int row = 0; row < font::kGlyphRows; ++row) {
      for (int col = 0; col < font::kGlyphWidth; ++col) {
        if (rows[row] & (1u << (font::kGlyphWidth - 1 - col)))
          set(static_cast<int>(cellX + col), y + font::kTopPadding + row, colour);
      }
    }
    cellX += font::kCellWidth;
  }
}

void Raster::blit(const Raster& source, int x, int y) {
  for (int sy = 0; sy < source.height_; ++sy)
    for (int sx = 0; sx < source.width_; ++sx) set(x + sx, y + sy, source.get(sx, sy));
}

int Raster::textWidth(const std::string& text) {
  // Panel strings are short; the cap keeps the product inside an int.
  std::size_t n = std::min<std::size_t>(text.size(), 1u << 20);
  return static_cast<int>(n) * font::kCellWidth;
}

int Raster::textHeight() { return font::kCellHeight; }

std::string Raster::encodePng() const {
  std::vector<unsigned char> rgb;
  rgb.reserve(pixels_.size() * 3);
  for (const RGB& p : pixels_) {
    rgb.push_back(p.r);
    rgb.push_back(p.g);
    rgb.push_back(p.b);
  }
  return png::EncodeRgb(width_, height_, rgb.data());
}

bool Raster::writePng(const std::string& path, std::string* error) const {
  if (width_ < 1 || height_ < 1) {
    if (error)
      *error = "cannot write " + path + ": the image is empty (" + std::to_string(width_) + "x" +
               std::to_string(height_) + ")";
    return false;
  }
  try {
    PngFile file(path, width_, height_);
    file.writeImage(*this);
    file.finish();
    return true;
  } catch (const PngFileError& e) {
    if (error) *error = e.what();
    return false;
  }
}

}  // namespace lwhost
