#pragma once

#include <string>

#include "lwhost/FrameRenderer.h"
#include "lwhost/NetworkFile.h"
#include "lwhost/NetworkRenderer.h"

namespace lwhost {

// Renders a node network's output for each frame of a session's render, writing
// PREFIX + four-digit frame + ".png" when a prefix is given.
class NetworkFrameRenderer : public FrameRenderer {
 public:
  NetworkFrameRenderer(BuiltNetwork network, RenderOptions options, std::string prefix)
      : network_(std::move(network)), options_(options), prefix_(std::move(prefix)) {}
  void renderFrame(Session& session, LWFrame frame) override;

 private:
  BuiltNetwork network_;
  RenderOptions options_;
  std::string prefix_;
};

}  // namespace lwhost
