#include "RayTracer.h"

#include <cmath>
#include <cstring>
#include <limits>

#include <lwshader.h>

#include "lwhost/NodeEditor.h"

namespace lwhost {

namespace {

thread_local RayTracer* tCurrent = nullptr;

constexpr double kHighlightPower = 32.0;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

double Dot(const double a[3], const double b[3]) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

void Set(double v[3], double x) { v[0] = v[1] = v[2] = x; }

bool Unit(const double* in, double out[3]) {
  if (!in) return false;
  const double length = std::sqrt(Dot(in, in));
  if (!(length > 0.0) || !std::isfinite(length)) return false;
  for (int i = 0; i < 3; ++i) out[i] = in[i] / length;
  return true;
}

// ---- The nodal access's functions: plain C, no exception can leave them ----

int Illuminate(LWItemID light, const LWDVector position, LWDVector direction, LWDVector colour) {
  RayTracer* t = RayTracer::Current();
  double d[3] = {0, 0, 0}, c[3] = {0, 0, 0};
  const int lit = t && position ? t->illuminate(light, position, d, c) : 0;
  if (direction) std::memcpy(direction, d, sizeof d);
  if (colour) std::memcpy(colour, c, sizeof c);
  return lit;
}

int IlluminateNormal(LWItemID light, LWRenderData, const LWDVector position, LWDVector direction,
                     const LWDVector normal, LWDVector colour) {
  double d[3] = {0, 0, 0}, c[3] = {0, 0, 0};
  int lit = Illuminate(light, position, d, c);
  // Light arriving from behind the given normal does not count.
  if (lit && normal && Dot(d, normal) >= 0.0) {
    lit = 0;
    Set(c, 0.0);
  }
  if (direction) std::memcpy(direction, d, sizeof d);
  if (colour) std::memcpy(colour, c, sizeof c);
  return lit;
}

double TraceMode(const LWDVector position, const LWDVector direction, LWDVector colour, double eta, int mode) {
  RayTracer* t = RayTracer::Current();
  double unit[3], c[3] = {0, 0, 0}, distance = -1.0;
  if (t && position && Unit(direction, unit)) {
    switch (mode & RTMODE_MASK) {
      case RTMODE_DISTANCE:
      case RTMODE_SHADOW:
      case RTMODE_OCCLUSION:
      case RTMODE_OCCLUSION_DEPTH:
        distance = t->cast(position, unit);
        break;
      default:
        distance = t->trace(position, unit, t->currentBounce() + 1, t->currentObject(), eta, c);
    }
  }
  if (colour) std::memcpy(colour, c, sizeof c);
  return distance;
}

double Trace(const LWDVector position, const LWDVector direction, LWDVector colour) {
  RayTracer* t = RayTracer::Current();
  return TraceMode(position, direction, colour, t ? t->currentEta() : 1.0, RTMODE_REFLECTION);
}

double Cast(const LWDVector position, const LWDVector direction) {
  return TraceMode(position, direction, nullptr, 1.0, RTMODE_DISTANCE);
}

double RayShade(const LWDVector position, const LWDVector direction, LWShaderAccess* access) {
  RayTracer* t = RayTracer::Current();
  double unit[3];
  if (!t || !position || !access || !Unit(direction, unit)) return -1.0;
  return t->shadeInto(position, unit, *access);
}

}  // namespace

RayTracer* RayTracer::Current() noexcept { return tCurrent; }

RayTracer::RayTracer(const SceneRenderer::World& world, int thread) noexcept : world_(world), thread_(thread) {
  std::memset(&blank_, 0, sizeof blank_);
  blank_.illuminate = Illuminate;
  blank_.illuminateNormal = IlluminateNormal;
  blank_.rayTrace = Trace;
  blank_.rayCast = Cast;
  blank_.rayShade = RayShade;
  blank_.rayTraceMode = TraceMode;
  blank_.weights[0] = 1.0f;
  blank_.ResourceContextIndex = thread;
  blank_.subsx = blank_.subsy = 0.5;
  blank_.render = this;
}

void RayTracer::pixel(int x, int y, double colour[3]) noexcept {
  sx_ = x;
  sy_ = y;
  const double u = world_.columnU[x], v = world_.rowV[y];
  double d[3];
  for (int i = 0; i < 3; ++i) d[i] = world_.forward[i] + u * world_.right[i] + v * world_.up[i];
  const double inverse = 1.0 / std::sqrt(Dot(d, d));
  for (double& c : d) c *= inverse;
  RayTracer* outer = tCurrent;
  tCurrent = this;
  trace(world_.eye, d, 0, world_.camera, 1.0, colour);
  tCurrent = outer;
}

double RayTracer::trace(const double origin[3], const double direction[3], int bounce, LWItemID source, double eta,
                        double colour[3]) noexcept {
  if (bounce > world_.depth) {
    Set(colour, 0.0);
    return -1.0;
  }
  Hit hit;
  if (!Intersect(world_, origin, direction, bounce == 0, kInfinity, hit)) {
    std::memcpy(colour, world_.backdrop, sizeof world_.backdrop);
    return -1.0;
  }
  shade(hit, origin, direction, bounce, source, eta, colour);
  return hit.distance;
}

double RayTracer::cast(const double origin[3], const double direction[3]) const noexcept {
  Hit hit;
  return Intersect(world_, origin, direction, false, kInfinity, hit) ? hit.distance : -1.0;
}

int RayTracer::illuminate(LWItemID light, const double position[3], double direction[3],
                          double colour[3]) const noexcept {
  for (const auto& lamp : world_.lamps)
    if (lamp.id == light) return arriving(lamp, position, true, direction, colour);
  Set(direction, 0.0);
  Set(colour, 0.0);
  return 0;
}

int RayTracer::arriving(const SceneRenderer::World::Lamp& lampRef, const double position[3], bool shadowed,
                        double direction[3], double colour[3]) const noexcept {
  const SceneRenderer::World::Lamp* lamp = &lampRef;
  Set(direction, 0.0);
  Set(colour, 0.0);

  double k = 1.0, distance = kInfinity;
  if (lamp->type == LWLIGHT_DISTANT) {
    std::memcpy(direction, lamp->forward, sizeof lamp->forward);
  } else {
    double v[3];
    for (int i = 0; i < 3; ++i) v[i] = position[i] - lamp->position[i];
    distance = std::sqrt(Dot(v, v));
    if (distance > 0.0)
      for (int i = 0; i < 3; ++i) direction[i] = v[i] / distance;
    else
      std::memcpy(direction, lamp->forward, sizeof lamp->forward);
    switch (lamp->falloff) {
      case LWLFALL_LINEAR: k = 1.0 - distance / lamp->range; break;
      case LWLFALL_INV_DIST: k = distance > 0.0 ? lamp->range / distance : 1.0; break;
      case LWLFALL_INV_DIST_2: k = distance > 0.0 ? (lamp->range / distance) * (lamp->range / distance) : 1.0; break;
      default: break;
    }
    if (lamp->type == LWLIGHT_SPOT) {
      const double c = Dot(direction, lamp->forward);
      if (c <= lamp->cosOuter) k = 0.0;
      else if (c < lamp->cosInner) k *= (c - lamp->cosOuter) / (lamp->cosInner - lamp->cosOuter);
    }
  }
  if (!(k > 0.0)) return 0;
  if (shadowed && lamp->shadows && distance > 0.0) {
    const double back[3] = {-direction[0], -direction[1], -direction[2]};
    if (Blocked(world_, position, back, distance)) return 0;
  }
  for (int i = 0; i < 3; ++i) colour[i] = lamp->colour[i] * k;
  return 1;
}

void RayTracer::surfaceOf(const Hit& hit, LWNodalAccess& access, LWNodalMaterial& material) noexcept {
  const auto& body = *hit.body;
  std::memset(&material, 0, sizeof material);
  if (!body.output) {
    std::memcpy(material.diffuse, body.colour, sizeof body.colour);
  } else if (body.type == NOT_MATERIAL) {
    world_.editor->evaluate(*body.output, access, &material, NOT_MATERIAL);
  } else {
    world_.editor->evaluate(*body.output, access, material.diffuse, NOT_COLOR);  // scalars arrive as grey
  }
}

// The node's record and the classic shader's name the spot's fields alike.
template <class Spot>
void RayTracer::describe(const Hit& hit, const double origin[3], const double direction[3], int bounce,
                         LWItemID source, double eta, Spot& spot) const noexcept {
  const auto& body = *hit.body;
  double n[3] = {hit.normal[0], hit.normal[1], hit.normal[2]};
  int flags = bounce == 0 ? LWRT_CAMERA : 0;
  double cosine = -Dot(direction, n);
  if (cosine < 0.0) {  // the back of the surface faces the ray
    for (double& c : n) c = -c;
    cosine = -cosine;
    flags |= LWRT_POLYSIDE;
  }
  spot.sx = sx_;
  spot.sy = sy_;
  for (int i = 0; i < 3; ++i) {
    spot.oPos[i] = hit.local[i];
    spot.wPos[i] = hit.position[i];
    spot.gNorm[i] = spot.wNorm[i] = spot.wNorm0[i] = n[i];
    spot.raySource[i] = origin[i];
    spot.rayDir[i] = direction[i];
    spot.oXfrm[i * 4] = body.scale[i];
    spot.wXfrm[i * 4] = body.inverse[i];
  }
  spot.rayLength = hit.distance;
  spot.spotSize = hit.distance * world_.spotScale;
  spot.cosine = cosine;
  spot.bounces = bounce;
  spot.sourceID = source;
  spot.objID = body.id;
  spot.polNum = hit.polygon;
  spot.incomingEta = eta;
  spot.flags = flags;
}

// Runs `work` with the spot's level, object and eta as the thread's current ones, so that rays
// a node sends from the spot start from there; the outer spot's come back afterwards.
template <class Work>
void RayTracer::asCurrentSpot(int bounce, LWItemID object, double eta, Work&& work) noexcept {
  const int outerBounce = bounce_;
  const LWItemID outerObject = object_;
  const double outerEta = eta_;
  bounce_ = bounce;
  object_ = object;
  eta_ = eta;
  work();
  bounce_ = outerBounce;
  object_ = outerObject;
  eta_ = outerEta;
}

double RayTracer::shadeInto(const double origin[3], const double direction[3], LWShaderAccess& sa) noexcept {
  const int bounce = bounce_ + 1;
  Hit hit;
  if (bounce > world_.depth || !Intersect(world_, origin, direction, false, kInfinity, hit)) return -1.0;
  LWNodalAccess na;
  std::memcpy(&na, &blank_, sizeof na);
  describe(hit, origin, direction, bounce, object_, eta_, na);
  LWNodalMaterial m;
  asCurrentSpot(bounce, hit.body->id, eta_, [&] { surfaceOf(hit, na, m); });

  // The spot as a classic shader sees it: its surface filled in, nothing lit.
  std::memset(&sa, 0, sizeof sa);
  describe(hit, origin, direction, bounce, object_, eta_, sa);
  sa.illuminate = blank_.illuminate;
  sa.illuminateNormal = blank_.illuminateNormal;
  sa.rayTrace = blank_.rayTrace;
  sa.rayCast = blank_.rayCast;
  sa.rayShade = blank_.rayShade;
  sa.rayTraceMode = blank_.rayTraceMode;
  sa.render = blank_.render;
  sa.ResourceContextIndex = blank_.ResourceContextIndex;
  sa.subsx = blank_.subsx;
  sa.subsy = blank_.subsy;
  sa.weights[0] = blank_.weights[0];
  std::memcpy(sa.color, m.diffuse, sizeof sa.color);
  std::memcpy(sa.diffuse_shade, m.diffuse, sizeof sa.diffuse_shade);
  std::memcpy(sa.specular_shade, m.specular, sizeof sa.specular_shade);
  std::memcpy(sa.reflect_shade, m.reflection, sizeof sa.reflect_shade);
  std::memcpy(sa.refract_shade, m.refraction, sizeof sa.refract_shade);
  const auto strongest = [](const double c[3]) { return std::fmax(c[0], std::fmax(c[1], c[2])); };
  sa.luminous = hit.body->emit ? 1.0 : 0.0;
  sa.diffuse = 1.0;
  sa.specular = strongest(m.specular);
  sa.mirror = strongest(m.reflection);
  sa.transparency = m.transparency;
  sa.eta = eta_;
  sa.roughness = 1.0 / kHighlightPower;
  return hit.distance;
}

void RayTracer::shade(const Hit& hit, const double origin[3], const double direction[3], int bounce, LWItemID source,
                      double eta, double colour[3]) noexcept {
  const auto& body = *hit.body;
  LWNodalAccess na;
  std::memcpy(&na, &blank_, sizeof na);
  describe(hit, origin, direction, bounce, source, eta, na);
  double n[3];  // the spot's own: a node may write to the record's
  std::memcpy(n, na.wNorm, sizeof n);
  LWNodalMaterial m;
  asCurrentSpot(bounce, body.id, eta, [&] { surfaceOf(hit, na, m); });
  if (body.emit) {
    std::memcpy(colour, m.diffuse, sizeof m.diffuse);
  } else {
    double lit[3];
    for (int i = 0; i < 3; ++i) lit[i] = world_.ambient[i] * m.diffuse[i];
    const bool shiny = m.specular[0] > 0.0 || m.specular[1] > 0.0 || m.specular[2] > 0.0;
    for (const auto& lamp : world_.lamps) {
      double d[3], c[3];
      if (!arriving(lamp, hit.position, body.receivesShadows, d, c)) continue;
      const double lambert = -Dot(d, n);
      if (lambert <= 0.0) continue;
      double highlight = 0.0;
      if (shiny) {
        double h[3] = {-d[0] - direction[0], -d[1] - direction[1], -d[2] - direction[2]};
        if (Unit(h, h)) highlight = std::pow(std::fmax(0.0, Dot(n, h)), kHighlightPower);
      }
      for (int i = 0; i < 3; ++i) lit[i] += c[i] * (m.diffuse[i] * lambert + m.specular[i] * highlight);
    }
    const bool deeper = bounce < world_.depth;
    if (deeper && (m.reflection[0] > 0.0 || m.reflection[1] > 0.0 || m.reflection[2] > 0.0)) {
      const double k = 2.0 * Dot(direction, n);
      const double r[3] = {direction[0] - k * n[0], direction[1] - k * n[1], direction[2] - k * n[2]};
      double seen[3];
      trace(hit.position, r, bounce + 1, body.id, eta, seen);
      for (int i = 0; i < 3; ++i) lit[i] += m.reflection[i] * seen[i];
    }
    const double t = m.transparency;
    if (deeper && t > 0.0) {
      double through[3];
      trace(hit.position, direction, bounce + 1, body.id, eta, through);
      const bool tinted = m.refraction[0] > 0.0 || m.refraction[1] > 0.0 || m.refraction[2] > 0.0;
      for (int i = 0; i < 3; ++i) lit[i] = (1.0 - t) * lit[i] + t * through[i] * (tinted ? m.refraction[i] : 1.0);
    }
    std::memcpy(colour, lit, sizeof lit);
  }
}

}  // namespace lwhost
