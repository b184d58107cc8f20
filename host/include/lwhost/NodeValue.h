#pragma once

#include <lwnodes.h>

#include <cstddef>

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

// Bytes of a value of `type`; 0 for NOT_FUNCTION and anything outside ConnectionType.
std::size_t NodeValueSize(ConnectionType type);
// Whether a value of type `from` can feed an input of type `to`.
bool CanConvert(ConnectionType from, ConnectionType to);
// Converts by the rules above; does nothing for a pairing CanConvert refuses. No allocation.
void ConvertNodeValue(const void* from, ConnectionType fromType, void* to, ConnectionType toType) noexcept;
// "colour", "scalar", ... for messages.
const char* ConnectionTypeName(ConnectionType type);

}  // namespace lwhost
