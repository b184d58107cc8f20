#include "Png.h"

#include <algorithm>
#include <array>

namespace lwhost {
namespace png {

namespace {

constexpr std::array<std::uint32_t, 256> MakeCrcTable() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t n = 0; n < 256; ++n) {
    std::uint32_t c = n;
    for (int k = 0; k < 8; ++k) c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
    table[n] = c;
  }
  return table;
}
constexpr std::array<std::uint32_t, 256> kCrcTable = MakeCrcTable();

void PutU32(std::string& out, std::uint32_t v) {
  out.push_back(static_cast<char>(v >> 24));
  out.push_back(static_cast<char>(v >> 16));
  out.push_back(static_cast<char>(v >> 8));
  out.push_back(static_cast<char>(v));
}

void PutChunk(std::string& out, const char type[4], const std::string& data) {
  PutU32(out, static_cast<std::uint32_t>(data.size()));
  std::size_t start = out.size();
  out.append(type, 4);
  out += data;
  auto bytes = reinterpret_cast<const unsigned char*>(out.data());
  PutU32(out, Crc32(bytes + start, out.size() - start));
}

// Deflate's stored blocks hold at most 65535 bytes each.
constexpr std::size_t kStoredBlockMax = 65535;

std::string ZlibStored(const std::string& raw) {
  std::string z;
  z.reserve(raw.size() + raw.size() / kStoredBlockMax * 5 + 16);
  z.push_back(0x78);  // deflate, 32 KiB window
  z.push_back(0x01);  // no preset dictionary, lowest level; 0x7801 is a multiple of 31
  std::size_t pos = 0;
  do {
    std::size_t n = std::min(kStoredBlockMax, raw.size() - pos);
    bool last = pos + n == raw.size();
    z.push_back(last ? 1 : 0);  // BFINAL, BTYPE 00; the block header's bits end on a byte boundary
    auto len = static_cast<std::uint16_t>(n);
    auto nlen = static_cast<std::uint16_t>(~len);
    z.push_back(static_cast<char>(len & 0xFF));
    z.push_back(static_cast<char>(len >> 8));
    z.push_back(static_cast<char>(nlen & 0xFF));
    z.push_back(static_cast<char>(nlen >> 8));
    z.append(raw, pos, n);
    pos += n;
  } while (pos < raw.size());
  PutU32(z, Adler32(reinterpret_cast<const unsigned char*>(raw.data()), raw.size()));
  return z;
}

}  // namespace

std::uint32_t Crc32(const unsigned char* data, std::size_t size, std::uint32_t seed) {
  std::uint32_t c = seed ^ 0xFFFFFFFFu;
  for (std::size_t i = 0; i < size; ++i) c = kCrcTable[(c ^ data[i]) & 0xFF] ^ (c >> 8);
  return c ^ 0xFFFFFFFFu;
}

std::uint32_t Adler32(const unsigned char* data, std::size_t size, std::uint32_t seed) {
  constexpr std::uint32_t kMod = 65521;
  std::uint32_t a = seed & 0xFFFF, b = seed >> 16;
  while (size > 0) {
    // 5552 is the longest run whose sums cannot overflow 32 bits before the reduction.
    std::size_t run = std::min<std::size_t>(size, 5552);
    size -= run;
    while (run--) {
      a += *data++;
      b += a;
    }
    a %= kMod;
    b %= kMod;
  }
  return (b << 16) | a;
}

std::string EncodeRgb(int width, int height, const unsigned char* rgb) {
  if (width <= 0 || height <= 0 || !rgb) return {};
  const std::size_t rowBytes = static_cast<std::size_t>(width) * 3;

  // Filter type 0 (none) in front of every row.
  std::string raw;
  raw.reserve((rowBytes + 1) * static_cast<std::size_t>(height));
  for (int y = 0; y < height; ++y) {
    raw.push_back(0);
    raw.append(reinterpret_cast<const char*>(rgb + rowBytes * static_cast<std::size_t>(y)), rowBytes);
  }

  std::string header;
  PutU32(header, static_cast<std::uint32_t>(width));
  PutU32(header, static_cast<std::uint32_t>(height));
  header.push_back(8);  // bits per sample
  header.push_back(2);  // colour type: RGB
  header.push_back(0);  // compression: deflate
  header.push_back(0);  // filter method 0
  header.push_back(0);  // not interlaced

  std::string out("\x89PNG\r\n\x1a\n", 8);
  PutChunk(out, "IHDR", header);
  PutChunk(out, "IDAT", ZlibStored(raw));
  PutChunk(out, "IEND", std::string());
  return out;
}

}  // namespace png
}  // namespace lwhost
