#pragma once

#include <lwnodes.h>

#include <cstddef>
#include <cstring>

namespace lwhost {

// Node values and how they travel between connectors of different types.
//
// Buffers: colour and vector double[3], scalar double, integer int, material LWNodalMaterial.
// NOT_FUNCTION has no documented buffer; this host neither connects nor evaluates it.
//
// When an output feeds an input of another type the host converts the value the output wrote:
//   scalar  -> colour, vector : the value in all three channels
//   colour, vector -> scalar  : the mean of the three channels
//   colour <-> vector         : same layout, copied
//   integer -> scalar         : by value
//   scalar  -> integer        : truncated toward zero; NaN gives 0, values beyond int's range
//                               give INT_MIN or INT_MAX
//   integer -> colour, vector : through scalar (the value in all three channels)
//   colour, vector -> integer : through scalar (the mean, then truncated)
//   material                  : only to and from material
// Any other pairing cannot be connected.

// These run for every evaluation on render threads, so the common cases stay inline.

// Bytes of a value of `type`; 0 for NOT_FUNCTION and anything outside ConnectionType.
inline std::size_t NodeValueSize(ConnectionType type) {
  switch (type) {
    case NOT_COLOR:
    case NOT_VECTOR: return 3 * sizeof(double);
    case NOT_SCALAR: return sizeof(double);
    case NOT_INTEGER: return sizeof(int);
    case NOT_MATERIAL: return sizeof(LWNodalMaterial);
    default: return 0;
  }
}

inline bool IsTripleType(ConnectionType t) { return t == NOT_COLOR || t == NOT_VECTOR; }

// Whether a value of type `from` can feed an input of type `to`.
inline bool CanConvert(ConnectionType from, ConnectionType to) {
  if (from == to) return NodeValueSize(from) != 0;
  if (from == NOT_MATERIAL || to == NOT_MATERIAL) return false;
  return NodeValueSize(from) != 0 && NodeValueSize(to) != 0;
}

namespace detail {
// Through a temporary: overlap-safe like memmove, yet a fixed-size copy the compiler inlines.
template <std::size_t N>
inline void CopyBytes(void* to, const void* from) noexcept {
  unsigned char bytes[N];
  std::memcpy(bytes, from, N);
  std::memcpy(to, bytes, N);
}
}  // namespace detail

// Copies a value of `type`; `to` and `from` may overlap.
inline void CopyNodeValue(void* to, const void* from, ConnectionType type) noexcept {
  switch (type) {
    case NOT_COLOR:
    case NOT_VECTOR: detail::CopyBytes<3 * sizeof(double)>(to, from); break;
    case NOT_SCALAR: detail::CopyBytes<sizeof(double)>(to, from); break;
    case NOT_INTEGER: detail::CopyBytes<sizeof(int)>(to, from); break;
    case NOT_MATERIAL: detail::CopyBytes<sizeof(LWNodalMaterial)>(to, from); break;
    default: break;
  }
}

// The routes through a scalar, out of line: they are the rare case.
void ConvertThroughScalar(const void* from, ConnectionType fromType, void* to, ConnectionType toType) noexcept;

// Converts by the rules above, for a pairing CanConvert accepts. No allocation.
inline void ConvertNodeValue(const void* from, ConnectionType fromType, void* to, ConnectionType toType) noexcept {
  if (fromType == toType || (IsTripleType(fromType) && IsTripleType(toType)))
    CopyNodeValue(to, from, toType);
  else
    ConvertThroughScalar(from, fromType, to, toType);
}

// "colour", "scalar", ... for messages.
const char* ConnectionTypeName(ConnectionType type);

}  // namespace lwhost
