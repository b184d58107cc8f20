#pragma once

#include <lwrender.h>

namespace lwhost {

// What the renderer needs of each scene item, beyond its place in the item list. The host's
// object, light and camera services report these.

enum class ObjectShape {
  Sphere,  // radius 1 about the position, scaled per axis; a UV sphere of quads (below)
  Plane,   // a square 2 x 2 in the XZ plane, facing +Y, scaled along X and Z; one quad
};

// A sphere's quads: segments round Y, rings from +Y down. The sphere preview numbers its
// spots' polygons on the same grid.
constexpr int kSphereSegments = 24, kSphereRings = 12;

struct ObjectLook {
  ObjectShape shape = ObjectShape::Sphere;
  double scale[3] = {1.0, 1.0, 1.0};
  unsigned int shadowOptions = LWOSHAD_SELF | LWOSHAD_CAST | LWOSHAD_RECEIVE;
  unsigned int flags = 0;  // LWOBJF_*: UNSEEN_BY_CAMERA and UNSEEN_BY_RAYS are honoured
};

// LightWave's defaults for a new light: white at 100 %, no falloff, a 30 degree cone with a
// 5 degree soft edge, ray-traced shadows.
struct LightLook {
  int type = LWLIGHT_DISTANT;      // LWLIGHT_DISTANT, _POINT or _SPOT
  double colour[3] = {1.0, 1.0, 1.0};
  double intensity = 1.0;
  int falloff = LWLFALL_OFF;       // point and spot lights
  double range = 1.0;              // metres, where the falloff reaches its nominal value
  double coneAngle = 0.5235987755982988;  // radians, spot only: half the cone
  double edgeAngle = 0.0872664625997165;  // radians, the soft edge inside the cone
  int shadowType = LWLSHAD_RAYTRACE;      // LWLSHAD_OFF or LWLSHAD_RAYTRACE
};

// Zoom factor 3.2 is LightWave's default lens: tan(horizontal fov / 2) = 1 / zoom.
struct CameraLook {
  double zoom = 3.2;
};

}  // namespace lwhost
