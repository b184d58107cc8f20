// "LW Object Info": the scene's objects as the renderer sees them.
#include <algorithm>

#include "SceneServices.h"
#include "lwhost/Scene.h"

namespace lwhost::sceneservices {

namespace {

const ObjectLook* Look(LWItemID object) {
  Scene* s = ItemScene();
  return s ? s->objectLook(object) : nullptr;
}

void Zero(double* v) {
  if (v) v[0] = v[1] = v[2] = 0.0;
}

const char* Filename(LWItemID object) {
  Scene* s = ItemScene();
  return s && s->objectLook(object) ? s->name(object) : nullptr;
}
int NumPoints(LWItemID object) { return Look(object) ? (Look(object)->shape == ObjectShape::Sphere ? 266 : 4) : 0; }
int NumPolygons(LWItemID object) { return Look(object) ? (Look(object)->shape == ObjectShape::Sphere ? kSphereSegments * kSphereRings : 1) : 0; }
unsigned int ShadowOpts(LWItemID object) { return Look(object) ? Look(object)->shadowOptions : 0u; }
unsigned int Flags(LWItemID object) { return Look(object) ? Look(object)->flags : 0u; }
double Zero1(LWItemID) { return 0.0; }
double ZeroT(LWItemID, LWTime) { return 0.0; }
LWMeshInfoID NoMesh(LWItemID, int) { return nullptr; }
LWTextureID NoTexture(LWItemID) { return nullptr; }
void PatchLevel(LWItemID, int* display, int* render) {
  if (display) *display = 3;
  if (render) *render = 3;
}
void MetaballRes(LWItemID, double* display, double* render) {
  if (display) *display = 0.0;
  if (render) *render = 0.0;
}
LWItemID NoItem(LWItemID) { return LWITEM_NULL; }
unsigned int UZero(LWItemID) { return 0u; }
void ZeroColour(LWItemID, LWTime, LWDVector colour) { Zero(colour); }
int IZero(LWItemID) { return 0; }
int Excluded(LWItemID, LWItemID) { return 0; }
double Thickness(LWItemID, LWTime, int) { return 1.0; }
double One(LWItemID, LWTime) { return 1.0; }
NodeEditorID NoEditor(LWItemID) { return nullptr; }
void Bounds(LWItemID object, LWDVector min, LWDVector max) {
  Zero(min);
  Zero(max);
  const ObjectLook* look = Look(object);
  if (!look || !min || !max) return;
  for (int i = 0; i < 3; ++i) {
    const bool flat = look->shape == ObjectShape::Plane && i == 1;
    max[i] = flat ? 0.0 : look->scale[i];
    min[i] = -max[i];
  }
}

LWObjectInfo Make() {
  LWObjectInfo t{};
  t.filename = Filename;
  t.numPoints = NumPoints;
  t.numPolygons = NumPolygons;
  t.shadowOpts = ShadowOpts;
  t.dissolve = ZeroT;
  t.meshInfo = NoMesh;
  t.flags = Flags;
  t.fog = ZeroT;
  t.dispMap = NoTexture;
  t.clipMap = NoTexture;
  t.patchLevel = PatchLevel;
  t.metaballRes = MetaballRes;
  t.boneSource = NoItem;
  t.morphTarget = NoItem;
  t.morphAmount = ZeroT;
  t.edgeOpts = UZero;
  t.edgeColor = ZeroColour;
  t.subdivOrder = IZero;
  t.polygonSize = One;
  t.excluded = Excluded;
  t.matteColor = ZeroColour;
  t.thickness = Thickness;
  t.edgeZScale = One;
  t.shrinkEdgesNominalDistance = ZeroT;
  t.maxDissolveDistance = Zero1;
  t.bumpDistance = Zero1;
  t.getGroupIndex = UZero;
  t.dispMapOrder = IZero;
  t.bumpOrder = IZero;
  t.getNodeEditor = NoEditor;
  t.nodeOrder = IZero;
  t.bounds = Bounds;
  t.shadowoffsetdistance = Zero1;
  return t;
}

}  // namespace

LWObjectInfo* ObjectInfo() {
  static LWObjectInfo table = Make();
  return &table;
}

}  // namespace lwhost::sceneservices
