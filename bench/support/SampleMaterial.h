#pragma once

#include <lwnodes.h>

#include <cstring>

// A material whose five components all differ, so a blend or boost that mixes them up shows.
inline LWNodalMaterial SampleMaterial(double base) {
  LWNodalMaterial m;
  std::memset(&m, 0, sizeof m);
  for (int k = 0; k < 3; ++k) {
    m.diffuse[k] = base + 0.1 * k;
    m.specular[k] = base * 0.5 + 0.05 * k;
    m.reflection[k] = base * 0.25;
    m.refraction[k] = 1.0 - base;
  }
  m.transparency = base * 0.3;
  return m;
}
