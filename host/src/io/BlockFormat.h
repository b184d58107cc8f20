#pragma once

// The number forms shared by the block reader and writer: big-endian images for binary data,
// and the text forms of scene files.

#include <lwtypes.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>

namespace lwhost::io {

// Enough to diagnose any input; a hostile file must not grow the list without bound.
constexpr std::size_t kMaxProblems = 200;

// "TZON" when all four characters are printable, else the hexadecimal code.
std::string IdName(LWID id);

// The bit image of a value, ready to be written most significant byte first.
template <class T>
std::uint64_t Bits(T value) {
  static_assert(sizeof(T) <= 8);
  if constexpr (std::is_floating_point_v<T>) {
    using U = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
    U u;
    std::memcpy(&u, &value, sizeof u);
    return u;
  } else {
    return static_cast<std::make_unsigned_t<T>>(value);
  }
}

// The value of a bit image read most significant byte first.
template <class T>
T FromBits(std::uint64_t bits) {
  if constexpr (std::is_floating_point_v<T>) {
    using U = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
    U u = static_cast<U>(bits);
    T value;
    std::memcpy(&value, &u, sizeof value);
    return value;
  } else {
    return static_cast<T>(static_cast<std::make_unsigned_t<T>>(bits));
  }
}

// Text forms: signed types in decimal, unsigned in fixed-width upper-case hex (2, 4 or 8
// digits), FP with 7 significant digits and DP with 17 (so doubles survive a round trip).
// Independent of the C locale, which a host application may have changed.
void AppendText(std::string& out, char value);
void AppendText(std::string& out, short value);
void AppendText(std::string& out, int value);
void AppendText(std::string& out, unsigned char value);
void AppendText(std::string& out, unsigned short value);
void AppendText(std::string& out, unsigned int value);
void AppendText(std::string& out, float value);
void AppendText(std::string& out, double value);

enum class Parse { Ok, NotANumber, OutOfRange };

// Parses a whole token. Signed types: decimal with an optional sign. Unsigned types:
// hexadecimal of any width and case, with an optional "0x". Floating point: decimal,
// exponent, "inf"/"nan" or "0x" hexadecimal forms.
Parse ParseText(const char* begin, const char* end, char* out);
Parse ParseText(const char* begin, const char* end, short* out);
Parse ParseText(const char* begin, const char* end, int* out);
Parse ParseText(const char* begin, const char* end, unsigned char* out);
Parse ParseText(const char* begin, const char* end, unsigned short* out);
Parse ParseText(const char* begin, const char* end, unsigned int* out);
Parse ParseText(const char* begin, const char* end, float* out);
Parse ParseText(const char* begin, const char* end, double* out);

}  // namespace lwhost::io
