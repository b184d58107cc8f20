// The renderer's view of the scene's items: orientation, object shapes, lights and cameras.
#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "SceneItem.h"
#include "lwhost/Orientation.h"
#include "lwhost/Scene.h"

namespace lwhost {

namespace {

[[noreturn]] void Refuse(const char* operation, const std::string& why) {
  throw std::invalid_argument(std::string("lwhost::Scene::") + operation + ": " + why);
}

bool Finite3(const double v[3]) { return std::isfinite(v[0]) && std::isfinite(v[1]) && std::isfinite(v[2]); }

constexpr double kRightAngle = 1.5707963267948966;

}  // namespace

void Scene::setRotation(LWItemID id, double heading, double pitch, double bank) {
  SceneItem& item = require(id, "setRotation");
  const double hpb[3] = {heading, pitch, bank};
  if (!Finite3(hpb)) Refuse("setRotation", "angles must be finite");
  std::copy(hpb, hpb + 3, item.rotation);
}

void Scene::aim(LWItemID id, const double target[3]) {
  SceneItem& item = require(id, "aim");
  if (!Finite3(target)) Refuse("aim", "the target must be finite");
  double from[3];
  param(id, LWIP_W_POSITION, 0.0, from);
  const double direction[3] = {target[0] - from[0], target[1] - from[1], target[2] - from[2]};
  AimAngles(direction, &item.rotation[0], &item.rotation[1]);
  item.rotation[2] = 0.0;
}

void Scene::setObjectLook(LWItemID id, const ObjectLook& look) {
  SceneItem& item = require(id, "setObjectLook");
  if (item.type != LWI_OBJECT) Refuse("setObjectLook", item.name + " is not an object");
  if (!Finite3(look.scale) || look.scale[0] < 0.0 || look.scale[1] < 0.0 || look.scale[2] < 0.0)
    Refuse("setObjectLook", "the scale must be finite and not negative");
  item.objectLook = look;
  // The totals LightWave reports follow the geometry: a UV sphere or a single quad.
  setGeometry(id, look.shape == ObjectShape::Sphere ? ObjectGeometry{kSphereSegments * (kSphereRings - 1) + 2, kSphereSegments * kSphereRings} : ObjectGeometry{4, 1});
}

void Scene::setLightLook(LWItemID id, const LightLook& look) {
  SceneItem& item = require(id, "setLightLook");
  if (item.type != LWI_LIGHT) Refuse("setLightLook", item.name + " is not a light");
  if (look.type != LWLIGHT_DISTANT && look.type != LWLIGHT_POINT && look.type != LWLIGHT_SPOT)
    Refuse("setLightLook", "only distant, point and spot lights are rendered");
  if (!Finite3(look.colour) || !std::isfinite(look.intensity) || look.intensity < 0.0)
    Refuse("setLightLook", "colour and intensity must be finite, the intensity not negative");
  if (look.falloff < LWLFALL_OFF || look.falloff > LWLFALL_INV_DIST_2) Refuse("setLightLook", "unknown falloff");
  if (!std::isfinite(look.range) || look.range <= 0.0) Refuse("setLightLook", "the range must be above 0");
  if (!(look.coneAngle > 0.0 && look.coneAngle <= kRightAngle) || !(look.edgeAngle >= 0.0) ||
      look.edgeAngle > look.coneAngle)
    Refuse("setLightLook", "the cone must be above 0 and at most 90 degrees, its edge within it");
  if (look.shadowType != LWLSHAD_OFF && look.shadowType != LWLSHAD_RAYTRACE)
    Refuse("setLightLook", "shadows are ray traced or off");
  item.lightLook = look;
}

void Scene::setCameraLook(LWItemID id, const CameraLook& look) {
  SceneItem& item = require(id, "setCameraLook");
  if (item.type != LWI_CAMERA) Refuse("setCameraLook", item.name + " is not a camera");
  if (!(look.zoom > 0.0) || !std::isfinite(look.zoom)) Refuse("setCameraLook", "the zoom factor must be above 0");
  item.cameraLook = look;
}

const ObjectLook* Scene::objectLook(LWItemID id) const {
  SceneItem* item = get(id);
  return item && item->type == LWI_OBJECT ? &item->objectLook : nullptr;
}

const LightLook* Scene::lightLook(LWItemID id) const {
  SceneItem* item = get(id);
  return item && item->type == LWI_LIGHT ? &item->lightLook : nullptr;
}

const CameraLook* Scene::cameraLook(LWItemID id) const {
  SceneItem* item = get(id);
  return item && item->type == LWI_CAMERA ? &item->cameraLook : nullptr;
}

void Scene::setAmbient(const double colour[3], double intensity) {
  if (!Finite3(colour) || !std::isfinite(intensity) || intensity < 0.0)
    Refuse("setAmbient", "colour and intensity must be finite, the intensity not negative");
  std::copy(colour, colour + 3, ambientColour_);
  ambientIntensity_ = intensity;
}

void Scene::ambient(double colour[3], double* intensity) const {
  std::copy(ambientColour_, ambientColour_ + 3, colour);
  *intensity = ambientIntensity_;
}

}  // namespace lwhost
