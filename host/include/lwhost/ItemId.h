#pragma once

#include <lwrender.h>

#include <cstdint>
#include <string>

namespace lwhost {

// Item ids numbered as LightWave numbers them in scene files: the top hex digit is the item
// type + 1, the rest an index. Bones carry two indices: the bone's in bits 16..27 and its
// object's in bits 0..15, so an object's id change renumbers all of its bones.
namespace itemid {

inline constexpr unsigned kTypeShift = 28;
inline constexpr unsigned kBoneShift = 16;
// Largest index per type. Lights stop below 0x01000000: LWITEM_RADIOSITY and LWITEM_CAUSTICS
// sit in the light range just above.
inline constexpr unsigned kMaxObject = 0xFFFFu;
inline constexpr unsigned kMaxLight = 0x00FFFFFFu;
inline constexpr unsigned kMaxCamera = 0x0FFFFFFFu;
inline constexpr unsigned kMaxBone = 0x0FFFu;

inline constexpr unsigned MaxIndex(LWItemType type) {
  return type == LWI_OBJECT ? kMaxObject
         : type == LWI_LIGHT ? kMaxLight
         : type == LWI_CAMERA ? kMaxCamera
         : type == LWI_BONE ? kMaxBone
                             : 0u;
}

// The 32 bits an id carries; ids with anything above them are not ours.
inline bool Fits32(LWItemID id) { return (reinterpret_cast<std::uintptr_t>(id) >> 31 >> 1) == 0; }
inline std::uint32_t Value(LWItemID id) {
  return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(id));
}
inline LWItemID FromValue(std::uint32_t value) {
  return reinterpret_cast<LWItemID>(static_cast<std::uintptr_t>(value));
}

// Objects, lights and cameras; null when the index is out of range for the type.
inline LWItemID Make(LWItemType type, unsigned index) {
  if (type < LWI_OBJECT || type > LWI_CAMERA || index > MaxIndex(type)) return LWITEM_NULL;
  return FromValue((static_cast<std::uint32_t>(type) + 1u) << kTypeShift | index);
}
inline LWItemID MakeBone(unsigned boneIndex, unsigned objectIndex) {
  if (boneIndex > kMaxBone || objectIndex > kMaxObject) return LWITEM_NULL;
  return FromValue((static_cast<std::uint32_t>(LWI_BONE) + 1u) << kTypeShift |
                   boneIndex << kBoneShift | objectIndex);
}

// The type encoded in an id, or -1 for null, LWITEM_ALL and values no item can have.
inline LWItemType TypeOf(LWItemID id) {
  if (!id || !Fits32(id)) return -1;
  const int digit = static_cast<int>(Value(id) >> kTypeShift) - 1;
  if (digit < LWI_OBJECT || digit > LWI_BONE) return -1;
  return digit;
}
// The index within the type; for a bone, the bone index.
inline unsigned IndexOf(LWItemID id) {
  const std::uint32_t v = Value(id);
  if (TypeOf(id) == LWI_BONE) return (v >> kBoneShift) & kMaxBone;
  return v & ((1u << kTypeShift) - 1u);
}
// The owning object's index for a bone id.
inline unsigned BoneObjectIndex(LWItemID id) { return Value(id) & kMaxObject; }

// "10000000", the spelling scene files and error messages use.
std::string ToString(LWItemID id);

}  // namespace itemid
}  // namespace lwhost
