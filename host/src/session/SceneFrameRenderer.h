#pragma once

#include <string>

#include "lwhost/FrameRenderer.h"
#include "lwhost/SceneRenderer.h"

namespace lwhost {

class NodeOutput;

// Renders the session's scene with the scene renderer for each frame of a session's render,
// every object shaded by `surface` (null: LightWave's default grey), and writes the picture as
// PREFIX + four-digit frame + ".png".
class SceneFrameRenderer : public FrameRenderer {
 public:
  SceneFrameRenderer(NodeOutput* surface, SceneRenderOptions options, std::string prefix)
      : surface_(surface), options_(options), prefix_(std::move(prefix)) {}
  void renderFrame(Session& session, LWFrame frame) override;

 private:
  NodeOutput* surface_;
  SceneRenderOptions options_;
  std::string prefix_;
};

}  // namespace lwhost
