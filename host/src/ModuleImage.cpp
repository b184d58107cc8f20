#include "lwhost/ModuleImage.h"

#include <cstdint>
#include <cstring>

namespace lwhost {

namespace {

// Reads an unsigned field of `width` bytes; false when it lies past the end.
bool Field(const unsigned char* bytes, std::size_t size, std::uint64_t at, int width, bool bigEndian,
           std::uint64_t* value) {
  if (at > size || size - at < static_cast<std::uint64_t>(width)) return false;
  std::uint64_t v = 0;
  for (int i = 0; i < width; ++i) {
    const unsigned char b = bytes[at + (bigEndian ? i : width - 1 - i)];
    v = v << 8 | b;
  }
  *value = v;
  return true;
}

bool Within(std::uint64_t offset, std::uint64_t length, std::size_t size) {
  return offset <= size && length <= size - offset;
}

}  // namespace

std::string CheckElfImage(const unsigned char* bytes, std::size_t size) {
  if (size < 4 || std::memcmp(bytes, "\x7f" "ELF", 4) != 0) return "";
  const std::string truncated = "truncated ELF file (";
  if (size < 6) return truncated + "the header is cut short)";
  const bool wide = bytes[4] == 2;
  const bool big = bytes[5] == 2;
  if ((bytes[4] != 1 && bytes[4] != 2) || (bytes[5] != 1 && bytes[5] != 2)) return "";  // the loader says why
  std::uint64_t phoff = 0, phentsize = 0, phnum = 0;
  const bool header = wide ? Field(bytes, size, 0x20, 8, big, &phoff) && Field(bytes, size, 0x36, 2, big, &phentsize) &&
                                 Field(bytes, size, 0x38, 2, big, &phnum)
                           : Field(bytes, size, 0x1C, 4, big, &phoff) && Field(bytes, size, 0x2A, 2, big, &phentsize) &&
                                 Field(bytes, size, 0x2C, 2, big, &phnum);
  if (!header) return truncated + "the header is cut short)";
  const std::uint64_t minimum = wide ? 56 : 32;
  if (phnum == 0) return "";
  if (phentsize < minimum) return "damaged ELF file (program headers of " + std::to_string(phentsize) + " bytes)";
  if (!Within(phoff, phentsize * phnum, size)) return truncated + "the program headers lie past its end)";
  for (std::uint64_t i = 0; i < phnum; ++i) {
    const std::uint64_t at = phoff + i * phentsize;
    std::uint64_t offset = 0, filesz = 0;
    if (wide) {
      Field(bytes, size, at + 8, 8, big, &offset);
      Field(bytes, size, at + 32, 8, big, &filesz);
    } else {
      Field(bytes, size, at + 4, 4, big, &offset);
      Field(bytes, size, at + 16, 4, big, &filesz);
    }
    if (!Within(offset, filesz, size))
      return truncated + std::to_string(size) + " bytes, but segment " + std::to_string(i) + " ends at byte " +
             std::to_string(offset + filesz) + ")";
  }
  return "";
}

std::string CheckPeImage(const unsigned char* bytes, std::size_t size) {
  if (size < 2 || bytes[0] != 'M' || bytes[1] != 'Z') return "";
  const std::string truncated = "truncated PE file (";
  std::uint64_t pe = 0, sections = 0, optional = 0;
  if (!Field(bytes, size, 0x3C, 4, false, &pe)) return truncated + "the DOS header is cut short)";
  if (!Within(pe, 24, size)) return truncated + "the PE header lies past its end)";
  if (std::memcmp(bytes + pe, "PE\0\0", 4) != 0) return "";
  Field(bytes, size, pe + 6, 2, false, &sections);
  Field(bytes, size, pe + 20, 2, false, &optional);
  const std::uint64_t table = pe + 24 + optional;
  if (!Within(table, sections * 40, size)) return truncated + "the section table lies past its end)";
  for (std::uint64_t i = 0; i < sections; ++i) {
    std::uint64_t rawSize = 0, rawOffset = 0;
    Field(bytes, size, table + i * 40 + 16, 4, false, &rawSize);
    Field(bytes, size, table + i * 40 + 20, 4, false, &rawOffset);
    if (rawSize && !Within(rawOffset, rawSize, size))
      return truncated + std::to_string(size) + " bytes, but section " + std::to_string(i) + " ends at byte " +
             std::to_string(rawOffset + rawSize) + ")";
  }
  return "";
}

}  // namespace lwhost
