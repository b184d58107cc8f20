#include "SceneFrameRenderer.h"

#include <cstdio>

#include "lwhost/Session.h"

namespace lwhost {

void SceneFrameRenderer::renderFrame(Session& session, LWFrame frame) {
  SceneRenderer renderer(session.nodes(), session.scene(), surfaces_);
  const Raster picture = renderer.renderFrame(options_, frame);
  char number[16];
  std::snprintf(number, sizeof number, "%04d", static_cast<int>(frame));
  const std::string path = prefix_ + number + ".png";
  std::string error;
  if (!picture.writePng(path, &error)) throw RenderError("cannot write " + path + ": " + error);
}

}  // namespace lwhost
