#pragma once

#include <lwtypes.h>

namespace hostkit {

// Render-session bookkeeping: the mode of the session and the time being rendered.
class RenderHandler {
 public:
  virtual LWError Init(int mode) {
    renderMode = mode;
    return nullptr;
  }
  virtual void Cleanup() {}
  virtual LWError NewTime(LWFrame f, LWTime t) {
    frame = f;
    time = t;
    return nullptr;
  }

  int frame = 0;
  double time = 0.0;
  int renderMode = 0;

 protected:
  ~RenderHandler() = default;
};

}  // namespace hostkit
