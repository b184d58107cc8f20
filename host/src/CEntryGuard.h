#pragma once

// Host functions are called from plug-in C code: no exception may cross back into it. A failure
// inside one becomes the SDK's failure value for that function.

namespace lwhost {

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

}  // namespace lwhost
