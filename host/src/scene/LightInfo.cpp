// "LW Light Info": the scene's lights and its ambient light.
#include "SceneServices.h"
#include "lwhost/Scene.h"

namespace lwhost::sceneservices {

namespace {

const LightLook* Look(LWItemID light) {
  Scene* s = ItemScene();
  return s ? s->lightLook(light) : nullptr;
}

void Put(double* out, const double* v, double k) {
  if (!out) return;
  for (int i = 0; i < 3; ++i) out[i] = v ? v[i] * k : 0.0;
}

void AmbientRaw(LWTime, LWDVector colour) {
  Scene* s = ItemScene();
  double c[3] = {0.0, 0.0, 0.0}, k = 0.0;
  if (s) s->ambient(c, &k);
  Put(colour, c, 1.0);
}
double AmbientIntensity(LWTime) {
  Scene* s = ItemScene();
  double c[3], k = 0.0;
  if (s) s->ambient(c, &k);
  return k;
}
void Ambient(LWTime, LWDVector colour) {
  Scene* s = ItemScene();
  double c[3] = {0.0, 0.0, 0.0}, k = 0.0;
  if (s) s->ambient(c, &k);
  Put(colour, c, k);
}
int Type(LWItemID light) {
  const LightLook* l = Look(light);
  return l ? l->type : 0;
}
void Colour(LWItemID light, LWTime, LWDVector colour) {
  const LightLook* l = Look(light);
  Put(colour, l ? l->colour : nullptr, l ? l->intensity : 0.0);
}
void RawColour(LWItemID light, LWTime, LWDVector colour) {
  const LightLook* l = Look(light);
  Put(colour, l ? l->colour : nullptr, 1.0);
}
double Intensity(LWItemID light, LWTime) {
  const LightLook* l = Look(light);
  return l ? l->intensity : 0.0;
}
int ShadowType(LWItemID light) {
  const LightLook* l = Look(light);
  return l ? l->shadowType : LWLSHAD_OFF;
}
void ConeAngles(LWItemID light, LWTime, double* radius, double* edge) {
  const LightLook* l = Look(light);
  if (radius) *radius = l ? l->coneAngle : 0.0;
  if (edge) *edge = l ? l->edgeAngle : 0.0;
}
unsigned int Flags(LWItemID light) {
  const LightLook* l = Look(light);
  return l && l->falloff != LWLFALL_OFF ? LWLFL_LIMITED_RANGE : 0u;
}
double Range(LWItemID light, LWTime) {
  const LightLook* l = Look(light);
  return l ? l->range : 0.0;
}
int Falloff(LWItemID light) {
  const LightLook* l = Look(light);
  return l ? l->falloff : LWLFALL_OFF;
}
LWImageID NoImage(LWItemID) { return nullptr; }
int ShadMapSize(LWItemID light) { return Look(light) ? 512 : 0; }
double ZeroT(LWItemID, LWTime) { return 0.0; }
int Quality(LWItemID light, LWTime) { return Look(light) ? 1 : 0; }
void ShadowColour(LWItemID, LWTime, LWDVector colour) { Put(colour, nullptr, 0.0); }

LWLightInfo Make() {
  LWLightInfo t{};
  t.ambient = Ambient;
  t.type = Type;
  t.color = Colour;
  t.shadowType = ShadowType;
  t.coneAngles = ConeAngles;
  t.flags = Flags;
  t.range = Range;
  t.falloff = Falloff;
  t.projImage = NoImage;
  t.shadMapSize = ShadMapSize;
  t.shadMapAngle = ZeroT;
  t.shadMapFuzz = ZeroT;
  t.quality = Quality;
  t.rawColor = RawColour;
  t.intensity = Intensity;
  t.shadowColor = ShadowColour;
  t.ambientIntensity = AmbientIntensity;
  t.ambientRaw = AmbientRaw;
  return t;
}

}  // namespace

LWLightInfo* LightInfo() {
  static LWLightInfo table = Make();
  return &table;
}

}  // namespace lwhost::sceneservices
