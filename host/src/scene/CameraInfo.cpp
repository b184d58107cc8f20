// "LW Camera Info": the scene's cameras; each renders at the scene's resolution, as cameras
// that use the global settings do.
#include <cmath>

#include "SceneServices.h"
#include "lwhost/Scene.h"

namespace lwhost::sceneservices {

namespace {

// A 36 mm film back; the focal length is the film's half-width times the zoom factor.
constexpr double kFilmWidth = 0.036;

const CameraLook* Look(LWItemID camera) {
  Scene* s = ItemScene();
  return s ? s->cameraLook(camera) : nullptr;
}

// Film height over width, pixel aspect included.
double Aspect() {
  const LWSceneInfo& info = ItemScene()->sceneInfo();
  return info.frameHeight / (info.frameWidth * info.pixelAspect);
}

double Zoom(LWItemID camera, LWTime) {
  const CameraLook* l = Look(camera);
  return l ? l->zoom : 0.0;
}
double FocalLength(LWItemID camera, LWTime) {
  const CameraLook* l = Look(camera);
  return l ? l->zoom * kFilmWidth * 0.5 * 1000.0 : 0.0;  // millimetres
}
double FocalDistance(LWItemID camera, LWTime) { return Look(camera) ? 1.0 : 0.0; }
double FStop(LWItemID camera, LWTime) { return Look(camera) ? 4.0 : 0.0; }
double ZeroT(LWItemID, LWTime) { return 0.0; }
void Fov(LWItemID camera, LWTime, double* horizontal, double* vertical) {
  const CameraLook* l = Look(camera);
  if (horizontal) *horizontal = l ? 2.0 * std::atan(1.0 / l->zoom) : 0.0;
  if (vertical) *vertical = l ? 2.0 * std::atan(Aspect() / l->zoom) : 0.0;
}
unsigned int UZero(LWItemID) { return 0u; }
void Resolution(LWItemID camera, int* width, int* height) {
  const bool known = Look(camera) != nullptr;
  if (width) *width = known ? ItemScene()->sceneInfo().frameWidth : 0;
  if (height) *height = known ? ItemScene()->sceneInfo().frameHeight : 0;
}
double PixelAspect(LWItemID camera, LWTime) { return Look(camera) ? ItemScene()->sceneInfo().pixelAspect : 0.0; }
void Region(LWItemID camera, int* x0, int* y0, int* x1, int* y1) {
  int w = 0, h = 0;
  Resolution(camera, &w, &h);
  if (x0) *x0 = 0;
  if (y0) *y0 = 0;
  if (x1) *x1 = w > 0 ? w - 1 : 0;
  if (y1) *y1 = h > 0 ? h - 1 : 0;
}
void MaskColour(LWItemID, LWDVector colour) {
  if (colour) colour[0] = colour[1] = colour[2] = 0.0;
}
int IrisPos(LWItemID, LWTime, int, float* x, float* y) {
  if (x) *x = 0.0f;
  if (y) *y = 0.0f;
  return 0;
}
int UsingGlobal(LWItemID camera) { return Look(camera) ? 1 : 0; }
unsigned int Passes(LWItemID camera, LWTime) { return Look(camera) ? 1u : 0u; }
void FilmSize(LWItemID camera, double* width, double* height) {
  const bool known = Look(camera) != nullptr;
  if (width) *width = known ? kFilmWidth : 0.0;
  if (height) *height = known ? kFilmWidth * Aspect() : 0.0;
}
unsigned int FrameTiming(LWItemID camera, LWFrame frame, LWFrameTimingInfo* timing) {
  if (!timing || !Look(camera)) return 0;
  const LWSceneInfo& info = ItemScene()->sceneInfo();
  *timing = LWFrameTimingInfo{};
  const double duration = 1.0 / info.framesPerSecond;
  timing->frame = {1u, frame * duration, duration, duration};
  timing->fields = {1u, 0.0, duration, duration};
  timing->steps = {1u, 0.0, duration, duration};
  timing->scanlines = {static_cast<unsigned>(info.frameHeight), 0.0, 0.0, 0.0};
  timing->pixels = {static_cast<unsigned>(info.frameWidth), 0.0, 0.0, 0.0};
  return 1;
}
double OverSampling(LWItemID, LWTime) { return 0.0; }
void Diaphragm(LWItemID, LWTime, int* sides, double* rotation) {
  if (sides) *sides = 0;
  if (rotation) *rotation = 0.0;
}

LWCameraInfo Make() {
  LWCameraInfo t{};
  t.zoomFactor = Zoom;
  t.focalLength = FocalLength;
  t.focalDistance = FocalDistance;
  t.fStop = FStop;
  t.blurLength = ZeroT;
  t.fovAngles = Fov;
  t.flags = UZero;
  t.resolution = Resolution;
  t.pixelAspect = PixelAspect;
  t.separation = ZeroT;
  t.regionLimits = Region;
  t.maskLimits = Region;
  t.maskColor = MaskColour;
  t.motionBlur = UZero;
  t.fieldRendering = UZero;
  t.irisPos = IrisPos;
  t.usingGlobalResolution = UsingGlobal;
  t.usingGlobalBlur = UsingGlobal;
  t.usingGlobalMask = UsingGlobal;
  t.motionBlurPasses = Passes;
  t.shutterEfficiency = ZeroT;
  t.noiseSampler = UZero;
  t.filmSize = FilmSize;
  t.frameTiming = FrameTiming;
  t.antiAliasing = Passes;
  t.overSampling = OverSampling;
  t.diaphragm = Diaphragm;
  return t;
}

}  // namespace

LWCameraInfo* CameraInfo() {
  static LWCameraInfo table = Make();
  return &table;
}

}  // namespace lwhost::sceneservices
