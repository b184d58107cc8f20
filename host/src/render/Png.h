#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace lwhost {
namespace png {

// Checksums as PNG and zlib define them; `seed` continues an earlier run.
std::uint32_t Crc32(const unsigned char* data, std::size_t size, std::uint32_t seed = 0);
std::uint32_t Adler32(const unsigned char* data, std::size_t size, std::uint32_t seed = 1);

// A PNG file of 8-bit RGB pixels, rows top to bottom, 3 bytes a pixel. The image data is a zlib
// stream of stored (uncompressed) deflate blocks: larger files, but nothing to get wrong.
// Empty images have no PNG form; the result is then empty.
std::string EncodeRgb(int width, int height, const unsigned char* rgb);

}  // namespace png
}  // namespace lwhost
