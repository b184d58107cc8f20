#pragma once

#include <lwnodes.h>
#include <lwrender.h>

#include <stdexcept>
#include <vector>

#include "lwhost/Raster.h"

namespace lwhost {

class NodeEditor;
class NodeOutput;
class PluginNode;
class Scene;

// A render the host could not carry out (an output it cannot show, a plug-in's init or newTime
// failing); what() is one line naming the node and the plug-in's text.
class RenderError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct RenderOptions {
  int width = 256;
  int height = 256;
  LWFrame frame = 0;
};

// Renders one output of a node network the way a material preview does: a unit sphere at the
// origin, seen along -Z by an orthographic camera, over a checker background.
//
// The sphere fills kSphereFill of the image's smaller side. Each pixel whose centre falls on it
// is one shading sample: the spot's position (object and world alike) and its normal, which on a
// unit sphere is the position; sx/sy the pixel; a camera ray from z = kCameraZ; thread 0, ray
// level 0. The sphere counts as a sphere object's grid of quads (kSphereSegments x
// kSphereRings, ItemLooks.h), so polNum is the quad the spot lies on: ring times kSphereSegments plus
// segment, rings counted from the top (+Y) down, segments round the Y axis from -Z through -X,
// +Z and +X.
//
// The output's value becomes the pixel's colour: colours and vectors as they are, scalars and
// integers as grey (through the host's usual conversion), materials by their diffuse colour.
// That colour is lit by a fixed Lambert term so that the sphere reads as round:
//   shade = kAmbient + (1 - kAmbient) * max(0, N . L),  L = normalize(kLight)
// and each channel is clamped to 0..1 and stored as round(255 * c); no gamma is applied.
//
// Around the pixels every plug-in node of the editor gets init(LWINIT_RENDER), then
// newTime(frame, frame / fps) with the scene set to that frame, and cleanup at the end.
class NetworkRenderer {
 public:
  static constexpr double kSphereFill = 0.9;
  static constexpr double kCameraZ = 5.0;
  static constexpr double kAmbient = 0.15;
  static constexpr double kLight[3] = {-1.0, 1.0, 2.0};  // towards the light: upper left, in front
  static constexpr int kCheckerSize = 16;
  static constexpr RGB kCheckerLight{112, 112, 112};
  static constexpr RGB kCheckerDark{72, 72, 72};

  // Throws RenderError for an output whose type cannot be shown (functions).
  NetworkRenderer(NodeEditor& editor, Scene& scene, NodeOutput& output);

  // Throws RenderError for a size outside 1..Raster::kMaxSide or a plug-in refusing init or
  // newTime (the nodes already initialised are cleaned up first).
  Raster render(const RenderOptions& options);

  // The lit share of a colour at a spot with this (unit) normal.
  static double Shade(const double normal[3]);

 private:
  // One sample's colour, unlit. Runs per pixel: no allocation, no locks, no look-ups.
  void sample(LWNodalAccess& access, double colour[3]) const noexcept;
  void shadePixels(Raster& image) const noexcept;

  Scene& scene_;
  NodeOutput& output_;
  ConnectionType type_;
  std::vector<PluginNode*> plugins_;
};

}  // namespace lwhost
