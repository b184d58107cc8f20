#pragma once

#include <lwnodes.h>
#include <lwrender.h>

#include <vector>

#include "lwhost/ItemLooks.h"
#include "lwhost/SceneRenderer.h"

namespace lwhost {

class NodeEditor;
class Scene;

// The scene at one frame, flattened for the pixel loop: nothing in it changes while threads
// render, and nothing in the loop looks anything up.
struct SceneRenderer::World {
  struct Body {
    LWItemID id = LWITEM_NULL;
    ObjectShape shape = ObjectShape::Sphere;
    double position[3] = {0, 0, 0};
    double scale[3] = {1, 1, 1};
    double inverse[3] = {1, 1, 1};  // 1 / scale
    bool castsShadows = true, receivesShadows = true, seenByCamera = true, seenByRays = true;
    NodeOutput* output = nullptr;
    ConnectionType type = NOT_COLOR;
    double colour[3] = {0, 0, 0};
    bool emit = false;
  };
  struct Lamp {
    LWItemID id = LWITEM_NULL;
    int type = LWLIGHT_DISTANT;
    double position[3] = {0, 0, 0};
    double forward[3] = {0, 0, 1};  // the direction light travels (distant, spot)
    double colour[3] = {0, 0, 0};   // times intensity
    int falloff = LWLFALL_OFF;
    double range = 1.0;
    double cosOuter = 0.0, cosInner = 1.0;
    bool shadows = true;
  };

  std::vector<Body> bodies;  // zero-size objects are left out: nothing can hit them
  std::vector<Lamp> lamps;
  LWItemID camera = LWITEM_NULL;
  double eye[3] = {0, 0, 0};
  double right[3] = {1, 0, 0}, up[3] = {0, 1, 0}, forward[3] = {0, 0, 1};
  std::vector<double> columnU, rowV;  // per pixel, the film offsets along right and up
  double spotScale = 0.0;             // spot size per unit of distance
  double ambient[3] = {0, 0, 0};
  double backdrop[3] = {0, 0, 0};
  int depth = 0;
  int width = 0, height = 0;
  const NodeEditor* editor = nullptr;

  // The scene at its current time, seen through the render camera at that time.
  World(const Scene& scene, const std::map<LWItemID, Surface>& surfaces, const SceneRenderOptions& options,
        const NodeEditor& editor);
};

// What a hit ray found.
struct Hit {
  const SceneRenderer::World::Body* body = nullptr;
  double distance = 0.0;
  double position[3];
  double normal[3];  // geometric, unit, as the object's outside faces
  double local[3];   // object coordinates
  int polygon = 0;
};

// The nearest hit beyond a small offset from the origin; `direction` is unit length. Camera
// rays see only objects seen by the camera, other rays only those seen by rays.
bool Intersect(const SceneRenderer::World& world, const double origin[3], const double direction[3], bool camera,
               double maxDistance, Hit& hit) noexcept;
// Whether anything that casts shadows lies between a spot and a point `distance` along `direction`.
bool Blocked(const SceneRenderer::World& world, const double origin[3], const double direction[3],
             double distance) noexcept;

}  // namespace lwhost
