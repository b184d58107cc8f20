#pragma once

#include <lwrender.h>

namespace lwhost {

class Session;

// What a Layout session's render statement calls for each frame, between the master events
// around it. The scene's time is already at `frame`. Throws std::exception to abort the render.
class FrameRenderer {
 public:
  virtual ~FrameRenderer() = default;
  virtual void renderFrame(Session& session, LWFrame frame) = 0;
};

}  // namespace lwhost
