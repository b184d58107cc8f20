#include "SceneFrameRenderer.h"

#include <cstdio>
#include <map>

#include "lwhost/Session.h"

namespace lwhost {

void SceneFrameRenderer::renderFrame(Session& session, LWFrame frame) {
  // Objects may have come since the last frame, so the surfaces are handed out each time.
  std::map<LWItemID, Surface> surfaces;
  if (surface_)
    for (LWItemID object : session.scene().items(LWI_OBJECT)) surfaces[object].output = surface_;
  SceneRenderer renderer(session.nodes(), session.scene(), std::move(surfaces));
  const Raster picture = renderer.renderFrame(options_, frame);
  char number[16];
  std::snprintf(number, sizeof number, "%04d", static_cast<int>(frame));
  const std::string path = prefix_ + number + ".png";
  std::string error;
  if (!picture.writePng(path, &error)) throw RenderError("cannot write " + path + ": " + error);
}

}  // namespace lwhost
