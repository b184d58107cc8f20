#pragma once

#include <lwnodes.h>

#include <cstdint>

namespace vorn {

// Where a shading sample comes from, as the cache tells spots apart. The fields of the host's
// nodal access that serve here (this SDK's names for the 9.2 record's fields at offsets 460,
// 352, 360 and 448):
//   thread index  ResourceContextIndex   (selects the slot, with the ray level)
//   ray level     bounces
//   id1           objID                  (the object being shaded)
//   id2           polygon                (the polygon being shaded)
//   x, y, z       wPos                   (the spot's world position)
// The 9.2 record holds both identities in 32 bits. On 64-bit hosts they are pointers, and the
// key deliberately keeps them at pointer width, so that two objects whose ids differ only above
// bit 31 never share a cache record.
struct SpotKey {
  std::intptr_t id1;
  std::uintptr_t id2;
  double x, y, z;

  static SpotKey Of(const LWNodalAccess& a) {
    return {reinterpret_cast<std::intptr_t>(a.objID), reinterpret_cast<std::uintptr_t>(a.polygon), a.wPos[0],
            a.wPos[1], a.wPos[2]};
  }
  // Exact equality, in the order that rejects a different spot soonest.
  bool matches(const LWNodalAccess& a) const {
    return id1 == reinterpret_cast<std::intptr_t>(a.objID) && id2 == reinterpret_cast<std::uintptr_t>(a.polygon) &&
           x == a.wPos[0] && y == a.wPos[1] && z == a.wPos[2];
  }
};

struct Triple {
  double v[3];
};

// The last spot one output was computed for, and its value.
template <class V>
struct CacheRecord {
  SpotKey key;
  V value;
};

// One thread's records at one ray level, one per connection. Each slot starts on its own
// cache line, so no two threads ever write to one line.
struct alignas(64) CacheSlot {
  CacheRecord<LWNodalMaterial> material;
  CacheRecord<Triple> colour;
  CacheRecord<Triple> vector;
  CacheRecord<double> scalar;
  CacheRecord<int> integer;
};

}  // namespace vorn
