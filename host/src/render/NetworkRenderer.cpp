#include "lwhost/NetworkRenderer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>

#include "lwhost/NodalAccess.h"
#include "lwhost/NodeEditor.h"
#include "lwhost/NodeValue.h"
#include "lwhost/PluginNode.h"
#include "lwhost/Scene.h"
#include "SphereGrid.h"

namespace lwhost {

namespace {

// c is not negative here, so adding a half and truncating rounds as lround would.
std::uint8_t Byte(double c) {
  if (!(c > 0.0)) return 0;  // NaN as well
  return static_cast<std::uint8_t>(std::min(c, 1.0) * 255.0 + 0.5);
}

}  // namespace

NetworkRenderer::NetworkRenderer(NodeEditor& editor, Scene& scene, NodeOutput& output)
    : editor_(editor), scene_(scene), output_(output), type_(output.type()) {
  if (type_ == NOT_FUNCTION || NodeValueSize(type_) == 0)
    throw RenderError("output \"" + output.name() + "\" of \"" + output.node().name() + "\" is a " +
                      ConnectionTypeName(type_) + ", which cannot be shown as a picture");
  for (const auto& node : editor.nodes())
    if (auto* plugin = dynamic_cast<PluginNode*>(node.get())) plugins_.push_back(plugin);
}

double NetworkRenderer::Shade(const double normal[3]) {
  const double length = std::sqrt(kLight[0] * kLight[0] + kLight[1] * kLight[1] + kLight[2] * kLight[2]);
  const double lambert = (normal[0] * kLight[0] + normal[1] * kLight[1] + normal[2] * kLight[2]) / length;
  return kAmbient + (1.0 - kAmbient) * std::max(0.0, lambert);
}

Raster NetworkRenderer::render(const RenderOptions& options) {
  if (options.width < 1 || options.height < 1 || options.width > Raster::kMaxSide || options.height > Raster::kMaxSide)
    throw RenderError("the image must be 1 to " + std::to_string(Raster::kMaxSide) + " pixels a side, not " +
                      std::to_string(options.width) + "x" + std::to_string(options.height));

  scene_.setFrame(options.frame);
  const LWTime time = scene_.time();

  std::vector<PluginNode*> started;
  auto stop = [&started] {
    for (auto it = started.rbegin(); it != started.rend(); ++it) (*it)->cleanup();
    started.clear();
  };
  for (PluginNode* node : plugins_) {
    const std::string error = node->init(LWINIT_RENDER);
    if (!error.empty()) {
      stop();
      throw RenderError("node \"" + node->name() + "\" could not start rendering: " + error);
    }
    started.push_back(node);
  }
  for (PluginNode* node : plugins_) {
    const std::string error = node->newTime(options.frame, time);
    if (!error.empty()) {
      stop();
      throw RenderError("node \"" + node->name() + "\" failed at frame " + std::to_string(options.frame) + ": " +
                        error);
    }
  }

  Raster image(options.width, options.height);
  shadePixels(image);
  stop();
  return image;
}

void NetworkRenderer::sample(LWNodalAccess& access, double colour[3]) const noexcept {
  if (type_ == NOT_MATERIAL) {
    LWNodalMaterial material{};
    if (editor_.evaluate(output_, access, &material, NOT_MATERIAL))
      for (int i = 0; i < 3; ++i) colour[i] = material.diffuse[i];
    return;
  }
  // Scalars and integers arrive as grey, vectors as they are.
  editor_.evaluate(output_, access, colour, NOT_COLOR);
}

void NetworkRenderer::shadePixels(Raster& image) const noexcept {
  const int width = image.width(), height = image.height();
  const double radius = 0.5 * kSphereFill * std::min(width, height);
  const double cx = 0.5 * width, cy = 0.5 * height, perPixel = 1.0 / radius;
  const double lightLength = std::sqrt(kLight[0] * kLight[0] + kLight[1] * kLight[1] + kLight[2] * kLight[2]);
  const double light[3] = {kLight[0] / lightLength, kLight[1] / lightLength, kLight[2] / lightLength};
  const SphereGrid& grid = SphereGrid::Instance();

  // What every sample shares is filled once; each sample then writes only what differs.
  LWNodalAccess blank = MakeNodalAccess();
  blank.subsx = blank.subsy = 0.5;
  blank.rayDir[0] = blank.rayDir[1] = 0.0;
  blank.rayDir[2] = -1.0;
  blank.raySource[2] = kCameraZ;
  blank.spotSize = 1.0 / radius;
  blank.ResourceContextIndex = 0;
  blank.bounces = 0;

  for (int y = 0; y < height; ++y) {
    const double v = (cy - (y + 0.5)) * perPixel;
    const int ringStart = v >= -1.0 && v <= 1.0 ? grid.ring(v) * SphereGrid::kSegments : 0;  // the row's height
    for (int x = 0; x < width; ++x) {
      const double u = (x + 0.5 - cx) * perPixel;
      const double d = u * u + v * v;
      if (d > 1.0) {
        const bool lightSquare = ((x / kCheckerSize) + (y / kCheckerSize)) % 2 == 0;
        image.set(x, y, lightSquare ? kCheckerLight : kCheckerDark);
        continue;
      }
      const double spot[3] = {u, v, std::sqrt(1.0 - d)};  // on a unit sphere, also the normal
      LWNodalAccess access;
      std::memcpy(&access, &blank, sizeof access);
      access.sx = x;
      access.sy = y;
      for (int i = 0; i < 3; ++i) access.oPos[i] = access.wPos[i] = access.gNorm[i] = access.wNorm[i] = access.wNorm0[i] = spot[i];
      access.raySource[0] = u;
      access.raySource[1] = v;
      access.rayLength = kCameraZ - spot[2];
      access.cosine = spot[2];
      access.polNum = ringStart + grid.segment(spot[0], spot[2]);

      double colour[3] = {0.0, 0.0, 0.0};
      sample(access, colour);
      const double lambert = spot[0] * light[0] + spot[1] * light[1] + spot[2] * light[2];
      const double shade = kAmbient + (1.0 - kAmbient) * (lambert > 0.0 ? lambert : 0.0);
      image.set(x, y, RGB{Byte(colour[0] * shade), Byte(colour[1] * shade), Byte(colour[2] * shade)});
    }
  }
}

}  // namespace lwhost
