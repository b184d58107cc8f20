#pragma once

namespace hostkit {

// Three values of one kind, laid out as the host's vectors are.
template <class T>
struct Vector3 {
  T x = T(), y = T(), z = T();

  Vector3() = default;
  Vector3(T a, T b, T c) : x(a), y(b), z(c) {}

  T& operator[](int i) { return i == 0 ? x : i == 1 ? y : z; }
  const T& operator[](int i) const { return i == 0 ? x : i == 1 ? y : z; }
};

}  // namespace hostkit
