#pragma once

#include <lwnodes.h>

namespace lwhost {

// A shading sample for tests and simple renders: the whole 9.6 record zeroed, then a spot at
// `position` (object and world, identity transforms) with `normal` (normalised; +Z if zero)
// as geometric and shading normal, seen from one unit along the normal by a camera ray:
// rayLength 1, cosine 1, spotSize 0.01, eta 1, first object and camera ids, thread 0,
// bounces 0. No ray or light functions.
LWNodalAccess MakeNodalAccess(const double position[3], const double normal[3]);
LWNodalAccess MakeNodalAccess();  // at the origin facing +Z

}  // namespace lwhost
