#pragma once

// Host functions are called from plug-in C code: no exception may cross back into it.

namespace lwhost {
// Private to each file, so it cannot clash with a helper of the same name elsewhere.
namespace {

template <class R, class F>
R Guarded(R failure, F&& body) noexcept {
  try {
    return body();
  } catch (...) {
    return failure;
  }
}

template <class F>
void Guarded(F&& body) noexcept {
  try {
    body();
  } catch (...) {
  }
}

}  // namespace
}  // namespace lwhost
