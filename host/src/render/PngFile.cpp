#include "lwhost/PngFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "Png.h"
#include "lwhost/Raster.h"

namespace lwhost {

namespace {

// Deflate's stored blocks hold at most this many bytes.
constexpr std::size_t kBlock = 65535;

void Be32(unsigned char* out, std::uint32_t v) {
  out[0] = static_cast<unsigned char>(v >> 24);
  out[1] = static_cast<unsigned char>(v >> 16);
  out[2] = static_cast<unsigned char>(v >> 8);
  out[3] = static_cast<unsigned char>(v);
}

// Only regular files (or none yet) can be replaced by renaming.
bool Replaceable(const std::string& path) {
  struct stat st;
  if (::stat(path.c_str(), &st) != 0) return errno == ENOENT;
  return S_ISREG(st.st_mode);
}

}  // namespace

PngFile::PngFile(const std::string& path, int width, int height)
    : path_(path), width_(width), height_(height), block_(kBlock) {
  if (width < 1 || height < 1 || width > Raster::kMaxSide || height > Raster::kMaxSide)
    throw PngFileError("cannot write " + path + ": a PNG image here is 1 to " + std::to_string(Raster::kMaxSide) +
                       " pixels a side, not " + std::to_string(width) + "x" + std::to_string(height));
  writing_ = Replaceable(path) ? path + ".partial" : path;
  file_ = std::fopen(writing_.c_str(), "wb");
  if (!file_) {
    // Name the file the user asked for, not our temporary one.
    const int saved = errno;
    throw PngFileError("cannot write " + path + ": " + std::strerror(saved));
  }
  static const unsigned char kSignature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
  put(kSignature, sizeof kSignature);
  unsigned char header[13];
  Be32(header, static_cast<std::uint32_t>(width));
  Be32(header + 4, static_cast<std::uint32_t>(height));
  header[8] = 8;  // bits per sample
  header[9] = 2;  // RGB
  header[10] = header[11] = header[12] = 0;  // deflate, filter method 0, not interlaced
  chunk("IHDR", header, sizeof header);

  // The image data is one IDAT chunk, whose length is known before its first byte: the zlib
  // header, a 5-byte header per stored block, the rows, the Adler-32. Its CRC follows the data,
  // so it can be reckoned on the way.
  const std::size_t raw = static_cast<std::size_t>(height) * (static_cast<std::size_t>(width) * 3 + 1);
  const std::size_t blocks = (raw + kBlock - 1) / kBlock;
  unsigned char head[10];
  Be32(head, static_cast<std::uint32_t>(2 + raw + 5 * blocks + 4));
  std::memcpy(head + 4, "IDAT", 4);
  head[8] = 0x78;  // deflate, 32 KiB window; 0x7801 is a multiple of 31
  head[9] = 0x01;
  put(head, sizeof head);
  crc_ = png::Crc32(head + 4, 6);
  // A full disk or a broken pipe shows now, not after the render.
  if (std::fflush(file_) != 0) fail(std::strerror(errno));
}

PngFile::~PngFile() {
  if (file_) std::fclose(file_);
  if (!finished_ && writing_ != path_) std::remove(writing_.c_str());
}

void PngFile::fail(const std::string& why) { throw PngFileError("cannot write " + path_ + ": " + why); }

void PngFile::put(const void* data, std::size_t size) {
  if (size && std::fwrite(data, 1, size, file_) != size) fail(std::strerror(errno));
}

void PngFile::chunk(const char type[4], const unsigned char* data, std::size_t size) {
  unsigned char head[8];
  Be32(head, static_cast<std::uint32_t>(size));
  std::memcpy(head + 4, type, 4);
  put(head, sizeof head);
  put(data, size);
  unsigned char crc[4];
  Be32(crc, png::Crc32(data, size, png::Crc32(head + 4, 4)));
  put(crc, sizeof crc);
}

void PngFile::data(const unsigned char* bytes, std::size_t size) {
  put(bytes, size);
  crc_ = png::Crc32(bytes, size, crc_);
}

void PngFile::flushBlock(bool last) {
  const auto n = static_cast<std::uint16_t>(used_);
  const auto complement = static_cast<std::uint16_t>(~n);
  const unsigned char head[5] = {static_cast<unsigned char>(last ? 1 : 0), static_cast<unsigned char>(n & 0xFF),
                                 static_cast<unsigned char>(n >> 8), static_cast<unsigned char>(complement & 0xFF),
                                 static_cast<unsigned char>(complement >> 8)};
  data(head, sizeof head);
  data(block_.data(), used_);
  used_ = 0;
}

void PngFile::raw(const unsigned char* data, std::size_t size) {
  adler_ = png::Adler32(data, size, adler_);
  while (size > 0) {
    // A full block waits for more data, so that the last block is the one marked last.
    if (used_ == kBlock) flushBlock(false);
    const std::size_t n = std::min(size, kBlock - used_);
    std::memcpy(block_.data() + used_, data, n);
    used_ += n;
    data += n;
    size -= n;
  }
}

void PngFile::writeRow(const unsigned char* rgb) {
  if (finished_ || rows_ >= height_) fail("more rows than the image has");
  const unsigned char filter = 0;
  raw(&filter, 1);
  raw(rgb, static_cast<std::size_t>(width_) * 3);
  ++rows_;
}

void PngFile::writeImage(const Raster& image) {
  if (image.width() != width_ || image.height() != height_)
    fail("the image is " + std::to_string(image.width()) + "x" + std::to_string(image.height()) + ", the file " +
         std::to_string(width_) + "x" + std::to_string(height_));
  std::vector<unsigned char> row(static_cast<std::size_t>(width_) * 3);
  for (int y = 0; y < height_; ++y) {
    for (int x = 0; x < width_; ++x) {
      const RGB p = image.get(x, y);
      row[x * 3] = p.r;
      row[x * 3 + 1] = p.g;
      row[x * 3 + 2] = p.b;
    }
    writeRow(row.data());
  }
}

void PngFile::finish() {
  if (finished_) return;
  if (rows_ != height_) fail(std::to_string(height_ - rows_) + " rows were never written");
  flushBlock(true);
  unsigned char tail[8];
  Be32(tail, adler_);
  data(tail, 4);
  Be32(tail + 4, crc_);
  put(tail + 4, 4);
  chunk("IEND", nullptr, 0);
  std::FILE* f = file_;
  file_ = nullptr;
  const bool flushed = std::fflush(f) == 0;
  const int saved = errno;
  if (std::fclose(f) != 0 || !flushed) fail(std::strerror(flushed ? errno : saved));
  // std::rename will not replace a file on Windows; the filesystem library's does.
  std::error_code renamed;
  if (writing_ != path_) std::filesystem::rename(writing_, path_, renamed);
  if (renamed) fail(renamed.message());
  finished_ = true;
}

}  // namespace lwhost
