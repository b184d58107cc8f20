#include "lwhost/NodeValue.h"

#include <climits>
#include <cmath>
#include <cstring>

namespace lwhost {

namespace {

// Every numeric type reduced to one double: the route for all scalar-like conversions.
double AsScalar(const void* from, ConnectionType type) {
  if (type == NOT_INTEGER) {
    int i;
    std::memcpy(&i, from, sizeof i);
    return i;
  }
  double d[3];
  std::memcpy(d, from, NodeValueSize(type));
  return type == NOT_SCALAR ? d[0] : (d[0] + d[1] + d[2]) / 3.0;
}

int TruncateToInt(double v) {
  if (std::isnan(v)) return 0;
  if (v >= static_cast<double>(INT_MAX)) return INT_MAX;
  if (v <= static_cast<double>(INT_MIN)) return INT_MIN;
  return static_cast<int>(v);  // toward zero
}

}  // namespace

void ConvertThroughScalar(const void* from, ConnectionType fromType, void* to, ConnectionType toType) noexcept {
  const double s = AsScalar(from, fromType);
  if (toType == NOT_INTEGER) {
    const int i = TruncateToInt(s);
    std::memcpy(to, &i, sizeof i);
  } else if (toType == NOT_SCALAR) {
    std::memcpy(to, &s, sizeof s);
  } else {
    const double d[3] = {s, s, s};
    std::memcpy(to, d, sizeof d);
  }
}

const char* ConnectionTypeName(ConnectionType type) {
  switch (type) {
    case NOT_COLOR: return "colour";
    case NOT_SCALAR: return "scalar";
    case NOT_VECTOR: return "vector";
    case NOT_INTEGER: return "integer";
    case NOT_FUNCTION: return "function";
    case NOT_MATERIAL: return "material";
    default: return "unknown";
  }
}

}  // namespace lwhost
