#include "RenderWorld.h"

#include <algorithm>
#include <cmath>

#include "lwhost/NodeConnector.h"
#include "lwhost/Orientation.h"
#include "lwhost/Scene.h"
#include "SphereGrid.h"

namespace lwhost {

namespace {

// Secondary rays start this far from their spot, so that a surface does not hit itself.
constexpr double kOffset = 1e-7;

double Dot(const double a[3], const double b[3]) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

void Normalise(double v[3]) {
  const double length = std::sqrt(Dot(v, v));
  if (length > 0.0)
    for (int i = 0; i < 3; ++i) v[i] /= length;
}


bool HitSphere(const SceneRenderer::World::Body& b, const double o[3], const double d[3], double tMin, double tMax,
               double* t) {
  double lo[3], ld[3];
  for (int i = 0; i < 3; ++i) {
    lo[i] = (o[i] - b.position[i]) * b.inverse[i];
    ld[i] = d[i] * b.inverse[i];
  }
  const double a = Dot(ld, ld), half = Dot(lo, ld), c = Dot(lo, lo) - 1.0;
  const double disc = half * half - a * c;
  if (disc < 0.0) return false;
  const double root = std::sqrt(disc);
  double candidate = (-half - root) / a;
  if (candidate <= tMin) candidate = (-half + root) / a;  // from inside
  if (candidate <= tMin || candidate >= tMax) return false;
  *t = candidate;
  return true;
}

bool HitPlane(const SceneRenderer::World::Body& b, const double o[3], const double d[3], double tMin, double tMax,
              double* t) {
  if (d[1] == 0.0) return false;
  const double candidate = (b.position[1] - o[1]) / d[1];
  if (!(candidate > tMin && candidate < tMax)) return false;
  const double x = o[0] + candidate * d[0] - b.position[0], z = o[2] + candidate * d[2] - b.position[2];
  if (std::fabs(x) > b.scale[0] || std::fabs(z) > b.scale[2]) return false;
  *t = candidate;
  return true;
}

bool HitBody(const SceneRenderer::World::Body& b, const double o[3], const double d[3], double tMin, double tMax,
             double* t) {
  return b.shape == ObjectShape::Sphere ? HitSphere(b, o, d, tMin, tMax, t) : HitPlane(b, o, d, tMin, tMax, t);
}

}  // namespace

SceneRenderer::World::World(const Scene& scene, const std::map<LWItemID, Surface>& surfaces,
                            const SceneRenderOptions& options, const NodeEditor& nodeEditor)
    : depth(options.depth), width(options.width), height(options.height), editor(&nodeEditor) {
  const LWTime time = scene.time();
  const Surface plain;
  for (LWItemID id : scene.items(LWI_OBJECT)) {
    const ObjectLook& look = *scene.objectLook(id);
    Body b;
    b.id = id;
    b.shape = look.shape;
    scene.param(id, LWIP_W_POSITION, time, b.position);
    bool empty = false;
    for (int i = 0; i < 3; ++i) {
      b.scale[i] = look.scale[i];
      const bool flatAxis = look.shape == ObjectShape::Plane && i == 1;
      if (b.scale[i] <= 0.0 && !flatAxis) empty = true;
      b.inverse[i] = b.scale[i] > 0.0 ? 1.0 / b.scale[i] : 0.0;
    }
    if (empty) continue;
    b.castsShadows = (look.shadowOptions & LWOSHAD_CAST) != 0;
    b.receivesShadows = (look.shadowOptions & LWOSHAD_RECEIVE) != 0;
    b.seenByCamera = !(look.flags & LWOBJF_UNSEEN_BY_CAMERA);
    b.seenByRays = !(look.flags & LWOBJF_UNSEEN_BY_RAYS);
    auto found = surfaces.find(id);
    const Surface& s = found == surfaces.end() ? plain : found->second;
    b.output = s.output;
    b.type = s.output ? s.output->type() : NOT_COLOR;
    std::copy(s.colour, s.colour + 3, b.colour);
    b.emit = s.emit;
    bodies.push_back(b);
  }

  for (LWItemID id : scene.items(LWI_LIGHT)) {
    const LightLook& look = *scene.lightLook(id);
    Lamp l;
    l.id = id;
    l.type = look.type;
    scene.param(id, LWIP_W_POSITION, time, l.position);
    scene.param(id, LWIP_W_FORWARD, time, l.forward);
    for (int i = 0; i < 3; ++i) l.colour[i] = look.colour[i] * look.intensity;
    l.falloff = look.type == LWLIGHT_DISTANT ? LWLFALL_OFF : look.falloff;
    l.range = look.range;
    l.cosOuter = std::cos(look.coneAngle);
    l.cosInner = std::cos(look.coneAngle - look.edgeAngle);
    l.shadows = look.shadowType == LWLSHAD_RAYTRACE;
    lamps.push_back(l);
  }

  double ambientColour[3], ambientIntensity = 0.0;
  scene.ambient(ambientColour, &ambientIntensity);
  for (int i = 0; i < 3; ++i) {
    ambient[i] = ambientColour[i] * ambientIntensity;
    backdrop[i] = options.backdrop[i];
  }

  camera = scene.renderCamera(time);
  if (!camera) return;
  scene.param(camera, LWIP_W_POSITION, time, eye);
  scene.param(camera, LWIP_W_RIGHT, time, right);
  scene.param(camera, LWIP_W_UP, time, up);
  scene.param(camera, LWIP_W_FORWARD, time, forward);
  const double aspect = scene.sceneInfo().pixelAspect > 0.0 ? scene.sceneInfo().pixelAspect : 1.0;
  const double tanX = 1.0 / scene.cameraLook(camera)->zoom;
  const double tanY = tanX * height / (width * aspect);
  columnU.resize(width);
  rowV.resize(height);
  for (int x = 0; x < width; ++x) columnU[x] = ((x + 0.5) / width * 2.0 - 1.0) * tanX;
  for (int y = 0; y < height; ++y) rowV[y] = (1.0 - (y + 0.5) / height * 2.0) * tanY;
  spotScale = 2.0 * tanX / width;
}

bool Intersect(const SceneRenderer::World& world, const double origin[3], const double direction[3], bool camera,
               double maxDistance, Hit& hit) noexcept {
  const SceneRenderer::World::Body* best = nullptr;
  double nearest = maxDistance;
  const double tMin = camera ? 0.0 : kOffset;
  for (const auto& b : world.bodies) {
    if (camera ? !b.seenByCamera : !b.seenByRays) continue;
    double t;
    if (HitBody(b, origin, direction, tMin, nearest, &t)) {
      nearest = t;
      best = &b;
    }
  }
  if (!best) return false;
  hit.body = best;
  hit.distance = nearest;
  for (int i = 0; i < 3; ++i) {
    hit.position[i] = origin[i] + nearest * direction[i];
    hit.local[i] = (hit.position[i] - best->position[i]) * best->inverse[i];
  }
  if (best->shape == ObjectShape::Sphere) {
    for (int i = 0; i < 3; ++i) hit.normal[i] = hit.local[i] * best->inverse[i];
    Normalise(hit.normal);
    hit.polygon = SphereGrid::Instance().polygon(hit.local);
  } else {
    hit.normal[0] = hit.normal[2] = 0.0;
    hit.normal[1] = 1.0;
    hit.local[1] = 0.0;
    hit.polygon = 0;
  }
  return true;
}

bool Blocked(const SceneRenderer::World& world, const double origin[3], const double direction[3],
             double distance) noexcept {
  for (const auto& b : world.bodies) {
    double t;
    if (b.castsShadows && HitBody(b, origin, direction, kOffset, distance, &t)) return true;
  }
  return false;
}

}  // namespace lwhost
