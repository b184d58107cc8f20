#pragma once

#include "lwhost/Animation.h"
#include "lwhost/Host.h"

namespace lwhost {
// Private to each of this area's files, so it can never clash with a helper of the same name
// elsewhere in the host.
namespace {

// Every service function is called from plug-in C code: no exception may leave it. A failure
// inside becomes the SDK's failure value for that function.
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

Animation* CurrentAnimation() { return Host::currentComponent<Animation>(); }

}  // namespace
}  // namespace lwhost
