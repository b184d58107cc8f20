#pragma once

#include <lwnodes.h>
#include <lwshader.h>

#include "RenderWorld.h"

namespace lwhost {

// One render thread's tracer. While it shades a spot it is the thread's current tracer, so
// that the nodal access's functions (illuminate, rayTrace, rayCast, ...) find the scene and the
// ray being shaded without any argument that says so, as LightWave's do.
class RayTracer {
 public:
  RayTracer(const SceneRenderer::World& world, int thread) noexcept;
  RayTracer(const RayTracer&) = delete;
  RayTracer& operator=(const RayTracer&) = delete;

  // A camera ray through pixel (x, y): the colour it sees.
  void pixel(int x, int y, double colour[3]) noexcept;

  // A ray of level `bounce` sent by `source`; -1 when it leaves the scene (colour: backdrop)
  // or the level is past the recursion depth (colour: black).
  double trace(const double origin[3], const double direction[3], int bounce, LWItemID source, double eta,
               double colour[3]) noexcept;
  // Light arriving at a spot from one lamp: its colour after falloff, cone and shadow, and the
  // direction it travels. 0 when none arrives.
  int illuminate(LWItemID light, const double position[3], double direction[3], double colour[3]) const noexcept;
  // The distance to the nearest surface seen by rays, -1 if none.
  double cast(const double origin[3], const double direction[3]) const noexcept;
  // A ray one level below the current spot: fills `spot` with what it hits, the surface
  // evaluated but not lit, and gives the distance; -1 (and `spot` untouched) on a miss or
  // past the recursion depth.
  double shadeInto(const double origin[3], const double direction[3], LWShaderAccess& spot) noexcept;

  // The tracer shading on this thread, or null outside a render.
  static RayTracer* Current() noexcept;
  // The level and object of the spot being shaded: where the next secondary ray starts from.
  int currentBounce() const noexcept { return bounce_; }
  LWItemID currentObject() const noexcept { return object_; }
  double currentEta() const noexcept { return eta_; }

 private:
  template <class Spot>
  void describe(const Hit& hit, const double origin[3], const double direction[3], int bounce, LWItemID source,
                double eta, Spot& spot) const noexcept;
  template <class Work>
  void asCurrentSpot(int bounce, LWItemID object, double eta, Work&& work) noexcept;
  void shade(const Hit& hit, const double origin[3], const double direction[3], int bounce, LWItemID source,
             double eta, double colour[3]) noexcept;
  int arriving(const SceneRenderer::World::Lamp& lamp, const double position[3], bool shadowed, double direction[3],
               double colour[3]) const noexcept;
  void surfaceOf(const Hit& hit, LWNodalAccess& access, LWNodalMaterial& material) noexcept;

  const SceneRenderer::World& world_;
  LWNodalAccess blank_;  // what every sample shares
  int thread_;
  int sx_ = 0, sy_ = 0;
  int bounce_ = 0;
  LWItemID object_ = LWITEM_NULL;
  double eta_ = 1.0;
};

}  // namespace lwhost
