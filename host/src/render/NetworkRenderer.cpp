#include "lwhost/NetworkRenderer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>

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

// The pixels [begin, end) of a row at height v whose centres lie on the sphere (d <= 1): found
// from the circle's half-width, then settled by the samples' own test so rounding moves no edge.
std::pair<int, int> SphereSpan(double v, double cx, double perPixel, int width) {
  if (!(v * v <= 1.0)) return {0, 0};
  const auto inside = [&](int x) {
    const double u = (x + 0.5 - cx) * perPixel;
    return u * u + v * v <= 1.0;
  };
  const double half = std::sqrt(1.0 - v * v) / perPixel;
  int begin = std::clamp(static_cast<int>(std::ceil(cx - 0.5 - half)), 0, width);
  while (begin > 0 && inside(begin - 1)) --begin;
  while (begin < width && !inside(begin)) ++begin;
  int end = std::clamp(static_cast<int>(std::floor(cx - 0.5 + half)) + 1, begin, width);
  while (end < width && inside(end)) ++end;
  while (end > begin && !inside(end - 1)) --end;
  return {begin, end};
}

}  // namespace

NetworkRenderer::NetworkRenderer(NodeEditor& editor, Scene& scene, NodeOutput& output)
    : scene_(scene), output_(output), type_(output.type()) {
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
  if (type_ != NOT_MATERIAL) {
    // Scalars and integers arrive as grey, vectors as they are.
    NodeEditor::evaluate(output_, access, colour, NOT_COLOR);
    return;
  }
  LWNodalMaterial material{};
  if (NodeEditor::evaluate(output_, access, &material, NOT_MATERIAL))
    for (int i = 0; i < 3; ++i) colour[i] = material.diffuse[i];
}

void NetworkRenderer::shadePixels(Raster& image) const noexcept {
  const int width = image.width(), height = image.height();
  const double radius = 0.5 * kSphereFill * std::min(width, height);
  const double cx = 0.5 * width, cy = 0.5 * height, perPixel = 1.0 / radius;
  const double lightLength = std::sqrt(kLight[0] * kLight[0] + kLight[1] * kLight[1] + kLight[2] * kLight[2]);
  const double light[3] = {kLight[0] / lightLength, kLight[1] / lightLength, kLight[2] / lightLength};
  const SphereGrid& grid = SphereGrid::Instance();

  // One record serves every sample: each sample overwrites only what differs.
  LWNodalAccess access = MakeNodalAccess();
  access.subsx = access.subsy = 0.5;
  access.rayDir[0] = access.rayDir[1] = 0.0;
  access.rayDir[2] = -1.0;
  access.raySource[2] = kCameraZ;
  access.spotSize = 1.0 / radius;
  access.ResourceContextIndex = 0;
  access.bounces = 0;

  for (int y = 0; y < height; ++y) {
    RGB* const row = image.row(y);
    const double v = (cy - (y + 0.5)) * perPixel;
    const int ringStart = v >= -1.0 && v <= 1.0 ? grid.ring(v) * SphereGrid::kSegments : 0;  // the row's height
    const auto checker = [&](int from, int to) {
      for (int x = from; x < to; ++x)
        row[x] = ((x / kCheckerSize) + (y / kCheckerSize)) % 2 == 0 ? kCheckerLight : kCheckerDark;
    };
    const auto [begin, end] = SphereSpan(v, cx, perPixel, width);
    checker(0, begin);
    checker(end, width);
    int segment = -1;  // searched for at the row's first spot, then stepped
    for (int x = begin; x < end; ++x) {
      const double u = (x + 0.5 - cx) * perPixel;
      const double d = u * u + v * v;
      const double z = std::sqrt(1.0 - d);  // on a unit sphere the spot is also the normal
      access.sx = x;
      access.sy = y;
      access.oPos[0] = access.wPos[0] = access.gNorm[0] = access.wNorm[0] = access.wNorm0[0] = u;
      access.oPos[1] = access.wPos[1] = access.gNorm[1] = access.wNorm[1] = access.wNorm0[1] = v;
      access.oPos[2] = access.wPos[2] = access.gNorm[2] = access.wNorm[2] = access.wNorm0[2] = z;
      access.raySource[0] = u;
      access.raySource[1] = v;
      access.rayLength = kCameraZ - z;
      access.cosine = z;
      segment = segment < 0 ? grid.segment(u, z) : grid.nextSegment(segment, u, z);
      access.polNum = ringStart + segment;

      double colour[3] = {0.0, 0.0, 0.0};
      sample(access, colour);
      const double lambert = u * light[0] + v * light[1] + z * light[2];
      const double shade = kAmbient + (1.0 - kAmbient) * (lambert > 0.0 ? lambert : 0.0);
      row[x] = RGB{Byte(colour[0] * shade), Byte(colour[1] * shade), Byte(colour[2] * shade)};
    }
  }
}

}  // namespace lwhost
