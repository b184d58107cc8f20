#pragma once

#include <map>
#include <string>

#include "lwhost/FrameRenderer.h"
#include "lwhost/SceneRenderer.h"

namespace lwhost {

// Renders the session's scene with the scene renderer for each frame of a session's render,
// the objects shaded by their surfaces, and writes the picture as PREFIX + four-digit frame +
// ".png", as LightWave names its RGB files.
class SceneFrameRenderer : public FrameRenderer {
 public:
  SceneFrameRenderer(std::map<LWItemID, Surface> surfaces, SceneRenderOptions options, std::string prefix)
      : surfaces_(std::move(surfaces)), options_(options), prefix_(std::move(prefix)) {}
  void renderFrame(Session& session, LWFrame frame) override;

 private:
  std::map<LWItemID, Surface> surfaces_;
  SceneRenderOptions options_;
  std::string prefix_;
};

}  // namespace lwhost
