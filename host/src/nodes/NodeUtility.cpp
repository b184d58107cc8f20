// "NodeUtilityFuncs". The SDK names these helpers without giving their arithmetic; the
// conventions here are ours and listed in host/NODE_EDITOR.md. Axis arguments: 0 X, 1 Y, 2 Z
// (anything else counts as Z). Mappings give texture coordinates without tiling or offsets.

#include <cmath>

#include "lwhost/Blend.h"
#include "lwhost/Node.h"
#include "lwhost/NodeEditor.h"

namespace lwhost {

namespace {

constexpr double kPi = 3.14159265358979323846;

// Around `axis`: the two coordinates across it (s, t, a right-handed turn) and the one along it.
void AxisFrame(const double p[3], int axis, double& s, double& t, double& h) {
  switch (axis) {
    case 0: s = p[1], t = p[2], h = p[0]; break;
    case 1: s = p[2], t = p[0], h = p[1]; break;
    default: s = p[0], t = p[1], h = p[2]; break;
  }
}

// The angle of (s, t) as a fraction of a turn, in [0, 1).
double Turn(double s, double t) {
  double u = std::atan2(t, s) / (2.0 * kPi);
  if (u < 0.0) u += 1.0;
  return u >= 1.0 ? 0.0 : u;
}

void UtilBlend(LWDVector result, LWDVector bg, LWDVector fg, double alpha, BlendingMode mode) noexcept {
  Blend(result, bg, fg, alpha, static_cast<int>(mode));
}

// No object geometry in this host: every node sits in a unit box at the origin.
void UtilAutosize(NodeID, LWDVector scale, LWDVector position) noexcept {
  for (int i = 0; i < 3; ++i) {
    if (scale) scale[i] = 1.0;
    if (position) position[i] = 0.0;
  }
}

// Planar: the two coordinates across the axis (X: z, y; Y: x, z; Z: x, y).
void UtilPlanar(LWDVector p, int axis, double* u, double* v) noexcept {
  if (!p || !u || !v) return;
  switch (axis) {
    case 0: *u = p[2], *v = p[1]; break;
    case 1: *u = p[0], *v = p[2]; break;
    default: *u = p[0], *v = p[1]; break;
  }
}

// Spherical: u the longitude around the axis in [0, 1), v the latitude from 0 (south pole)
// to 1 (north pole); the centre maps to (0, 0.5).
void UtilSpherical(LWDVector p, int axis, double* u, double* v) noexcept {
  if (!p || !u || !v) return;
  double s, t, h;
  AxisFrame(p, axis, s, t, h);
  *u = Turn(s, t);
  *v = 0.5 + std::atan2(h, std::hypot(s, t)) / kPi;
}

// Cylindrical: u around the axis as spherical, v the distance along it.
void UtilCylindrical(LWDVector p, int axis, double* u, double* v) noexcept {
  if (!p || !u || !v) return;
  double s, t, h;
  AxisFrame(p, axis, s, t, h);
  *u = Turn(s, t);
  *v = h;
}

// Cubic: planar along the dominant axis of the position; `axis` is not used.
void UtilCubic(LWDVector p, int, double* u, double* v) noexcept {
  if (!p || !u || !v) return;
  const double a[3] = {std::fabs(p[0]), std::fabs(p[1]), std::fabs(p[2])};
  const int dominant = a[0] >= a[1] && a[0] >= a[2] ? 0 : (a[1] >= a[2] ? 1 : 2);
  UtilPlanar(p, dominant, u, v);
}

// Front: the position through the camera matrix (row vectors: [x y z 1] * M; null = identity),
// then a perspective divide into [0, 1] screen coordinates, v upward. Points in the camera's
// plane map to the centre.
void UtilFront(LWDVector p, double pixelAspect, double* u, double* v, double m[4][4]) noexcept {
  if (!p || !u || !v) return;
  double c[3] = {p[0], p[1], p[2]};
  if (m)
    for (int j = 0; j < 3; ++j) c[j] = p[0] * m[0][j] + p[1] * m[1][j] + p[2] * m[2][j] + m[3][j];
  if (c[2] == 0.0) {
    *u = *v = 0.5;
    return;
  }
  const double aspect = pixelAspect > 0.0 ? pixelAspect : 1.0;
  *u = 0.5 + 0.5 * c[0] / (c[2] * aspect);
  *v = 0.5 + 0.5 * c[1] / c[2];
}

// Reflection (an environment around Y): u the heading of the direction measured from +Z
// toward +X, less the seam angle, in [0, 1); v from 0 straight down to 1 straight up.
void UtilReflection(double seamAngle, LWDVector d, double* u, double* v) noexcept {
  if (!d || !u || !v) return;
  double heading = (std::atan2(d[0], d[2]) - seamAngle) / (2.0 * kPi);
  heading -= std::floor(heading);
  *u = heading >= 1.0 ? 0.0 : heading;
  *v = 0.5 + std::atan2(d[1], std::hypot(d[0], d[2])) / kPi;
}

// There are no UV maps in this host.
int UtilUV(const char*, LWNodalAccess*, double*, double*) noexcept { return 0; }

// No cameras either: the identity.
void UtilCameraMatrix(LWTime, LWItemID, double m[4][4]) noexcept {
  if (!m) return;
  for (int i = 0; i < 4; ++i)
    for (int j = 0; j < 4; ++j) m[i][j] = i == j ? 1.0 : 0.0;
}

const LWNodeUtilityFuncs kUtilityFuncs = {UtilBlend,       UtilAutosize, UtilPlanar, UtilSpherical,
                                          UtilCylindrical, UtilCubic,    UtilFront,  UtilReflection,
                                          UtilUV,          UtilCameraMatrix};

}  // namespace

const LWNodeUtilityFuncs* NodeEditor::UtilityFuncsTable() { return &kUtilityFuncs; }

}  // namespace lwhost
