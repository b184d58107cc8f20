#include "BlockFormat.h"

#include <charconv>
#include <limits>

namespace lwhost::io {

namespace {

void AppendDecimal(std::string& out, long long value) {
  char buf[24];
  auto r = std::to_chars(buf, buf + sizeof buf, value);
  out.append(buf, r.ptr);
}

void AppendHex(std::string& out, unsigned long long value, int digits) {
  static const char kDigits[] = "0123456789ABCDEF";
  for (int i = digits - 1; i >= 0; --i) out += kDigits[(value >> (4 * i)) & 0xF];
}

template <class T>
void AppendFloat(std::string& out, T value, int precision) {
  char buf[48];
  auto r = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::general, precision);
  out.append(buf, r.ptr);
}

bool IsHexPrefix(const char* b, const char* e) {
  return e - b >= 2 && b[0] == '0' && (b[1] == 'x' || b[1] == 'X');
}

template <class T>
Parse ParseSigned(const char* b, const char* e, T* out) {
  if (b < e && *b == '+') {
    ++b;
    if (b < e && *b == '-') return Parse::NotANumber;
  }
  long long v = 0;
  auto r = std::from_chars(b, e, v, 10);
  if (b == e || r.ptr != e) return Parse::NotANumber;
  if (r.ec == std::errc::result_out_of_range) return Parse::OutOfRange;
  if (r.ec != std::errc()) return Parse::NotANumber;
  if (v < std::numeric_limits<T>::min() || v > std::numeric_limits<T>::max()) return Parse::OutOfRange;
  *out = static_cast<T>(v);
  return Parse::Ok;
}

template <class T>
Parse ParseHex(const char* b, const char* e, T* out) {
  if (IsHexPrefix(b, e)) b += 2;
  unsigned long long v = 0;
  auto r = std::from_chars(b, e, v, 16);
  if (b == e || r.ptr != e) return Parse::NotANumber;
  if (r.ec == std::errc::result_out_of_range) return Parse::OutOfRange;
  if (r.ec != std::errc()) return Parse::NotANumber;
  if (v > std::numeric_limits<T>::max()) return Parse::OutOfRange;
  *out = static_cast<T>(v);
  return Parse::Ok;
}

template <class T>
Parse ParseFloat(const char* b, const char* e, T* out) {
  bool negative = false;
  if (b < e && (*b == '+' || *b == '-')) {
    negative = *b == '-';
    ++b;
  }
  std::chars_format format = std::chars_format::general;
  if (IsHexPrefix(b, e)) {
    b += 2;
    format = std::chars_format::hex;
  }
  // from_chars takes a sign of its own; one is all a number may have.
  if (b == e || *b == '+' || *b == '-') return Parse::NotANumber;
  T v = 0;
  auto r = std::from_chars(b, e, v, format);
  if (r.ptr != e) return Parse::NotANumber;
  if (r.ec == std::errc::result_out_of_range) return Parse::OutOfRange;
  if (r.ec != std::errc()) return Parse::NotANumber;
  *out = negative ? -v : v;
  return Parse::Ok;
}

}  // namespace

std::string IdName(LWID id) {
  std::string name;
  for (int shift = 24; shift >= 0; shift -= 8) {
    char c = static_cast<char>((id >> shift) & 0xFF);
    if (c < 0x20 || c > 0x7E) {
      name = "0x";
      AppendHex(name, id, 8);
      return name;
    }
    name += c;
  }
  return name;
}

void AppendText(std::string& out, char value) { AppendDecimal(out, static_cast<signed char>(value)); }
void AppendText(std::string& out, short value) { AppendDecimal(out, value); }
void AppendText(std::string& out, int value) { AppendDecimal(out, value); }
void AppendText(std::string& out, unsigned char value) { AppendHex(out, value, 2); }
void AppendText(std::string& out, unsigned short value) { AppendHex(out, value, 4); }
void AppendText(std::string& out, unsigned int value) { AppendHex(out, value, 8); }
void AppendText(std::string& out, float value) { AppendFloat(out, value, 7); }
void AppendText(std::string& out, double value) { AppendFloat(out, value, 17); }

Parse ParseText(const char* b, const char* e, char* out) {
  signed char v = 0;
  Parse p = ParseSigned(b, e, &v);
  if (p == Parse::Ok) *out = static_cast<char>(v);
  return p;
}
Parse ParseText(const char* b, const char* e, short* out) { return ParseSigned(b, e, out); }
Parse ParseText(const char* b, const char* e, int* out) { return ParseSigned(b, e, out); }
Parse ParseText(const char* b, const char* e, unsigned char* out) { return ParseHex(b, e, out); }
Parse ParseText(const char* b, const char* e, unsigned short* out) { return ParseHex(b, e, out); }
Parse ParseText(const char* b, const char* e, unsigned int* out) { return ParseHex(b, e, out); }
Parse ParseText(const char* b, const char* e, float* out) { return ParseFloat(b, e, out); }
Parse ParseText(const char* b, const char* e, double* out) { return ParseFloat(b, e, out); }

}  // namespace lwhost::io
