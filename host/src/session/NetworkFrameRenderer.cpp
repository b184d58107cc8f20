#include "NetworkFrameRenderer.h"

#include <cstdio>

#include "lwhost/Session.h"

namespace lwhost {

void NetworkFrameRenderer::renderFrame(Session& session, LWFrame frame) {
  RenderOptions options = options_;
  options.frame = frame;
  NetworkRenderer renderer(session.nodes(), session.scene(), *network_.output);
  Raster picture(0, 0);
  try {
    picture = renderer.render(options);
  } catch (const RenderError& e) {
    throw RenderError(network_.withFileNames(e.what()));
  }
  if (prefix_.empty()) return;
  char number[16];
  std::snprintf(number, sizeof number, "%04d", static_cast<int>(frame));
  const std::string path = prefix_ + number + ".png";
  std::string error;
  if (!picture.writePng(path, &error)) throw RenderError("cannot write " + path + ": " + error);
}

}  // namespace lwhost
