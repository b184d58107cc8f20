#include "SceneServices.h"

#include "CEntryGuard.h"

#include "lwhost/Host.h"
#include "lwhost/Scene.h"

namespace lwhost::sceneservices {

Scene* ItemScene() {
  Host* host = Host::current();
  return host && !host->isModeler() ? host->find<Scene>() : nullptr;
}

namespace {

Scene* AnyScene() { return Host::currentComponent<Scene>(); }

void Zero(double* v) {
  if (v) v[0] = v[1] = v[2] = 0.0;
}

// ---- LWItemInfo ----

LWItemID First(LWItemType type, LWItemID boneObject) {
  Scene* s = ItemScene();
  return s ? s->first(type, boneObject) : LWITEM_NULL;
}
LWItemID Next(LWItemID item) {
  Scene* s = ItemScene();
  return s ? s->next(item) : LWITEM_NULL;
}
LWItemID FirstChild(LWItemID parent) {
  Scene* s = ItemScene();
  return s ? s->firstChild(parent) : LWITEM_NULL;
}
LWItemID NextChild(LWItemID parent, LWItemID previous) {
  Scene* s = ItemScene();
  return s ? s->nextChild(parent, previous) : LWITEM_NULL;
}
LWItemID Parent(LWItemID item) {
  Scene* s = ItemScene();
  return s ? s->parent(item) : LWITEM_NULL;
}
LWItemID NoItem(LWItemID) { return LWITEM_NULL; }
LWItemType Type(LWItemID item) {
  Scene* s = ItemScene();
  return s ? s->type(item) : -1;
}
const char* Name(LWItemID item) {
  Scene* s = ItemScene();
  return s ? s->name(item) : nullptr;
}
void Param(LWItemID item, LWItemParam which, LWTime time, LWDVector out) {
  Scene* s = ItemScene();
  if (s)
    s->param(item, which, time, out);
  else
    Zero(out);
}
unsigned int Limits(LWItemID, LWItemParam, LWDVector min, LWDVector max) {
  Zero(min);
  Zero(max);
  return 0;
}
const char* GetTag(LWItemID item, int number) {
  Scene* s = ItemScene();
  return s ? s->tag(item, number) : nullptr;
}
void SetTag(LWItemID item, int number, const char* text) {
  Guarded([&] {
    if (Scene* s = ItemScene()) s->setTag(item, number, text);
  });
}
LWChanGroupID ChanGroup(LWItemID item) {
  return Guarded<LWChanGroupID>(nullptr, [&] {
    Scene* s = ItemScene();
    return s ? s->channelGroup(item) : nullptr;
  });
}
const char* Server(LWItemID item, const char* className, int index) {
  Scene* s = ItemScene();
  return s ? s->server(item, className, index) : nullptr;
}
unsigned int ServerFlags(LWItemID, const char*, int) { return 0; }
void Controller(LWItemID, LWItemParam, int type[3]) {
  if (type) type[0] = type[1] = type[2] = LWMOTCTL_KEYFRAMES;
}
unsigned int Flags(LWItemID item) {
  Scene* s = ItemScene();
  return s && s->contains(item) ? LWITEMF_ACTIVE : 0u;
}
LWTime LookAhead(LWItemID) { return 0.0; }
double ItemTimeZero(LWItemID, LWTime) { return 0.0; }
void Stiffness(LWItemID, LWItemParam, LWDVector out) { Zero(out); }
unsigned int ParamZero(LWItemID, LWItemParam) { return 0; }
unsigned int ItemZero(LWItemID) { return 0; }
double ItemDoubleZero(LWItemID) { return 0.0; }
LWFrame InitialStateFrame(LWItemID, LWTime) { return 0; }
unsigned int SoftIK(LWItemID, LWTime, unsigned int* distanceType, double* min, double* max) {
  if (distanceType) *distanceType = LWMOTIK_SOFT_CHAINCHORD;
  if (min) *min = 0.0;
  if (max) *max = 0.0;
  return LWMOTIK_SOFT_OFF;
}
LWItemID SameItem(LWItemID, LWItemParam) { return LWITEM_NULL; }
double SameItemBlend(LWItemID, LWItemParam, LWTime) { return 0.0; }

LWItemInfo MakeItemInfo() {
  LWItemInfo t{};
  t.first = First;
  t.next = Next;
  t.firstChild = FirstChild;
  t.nextChild = NextChild;
  t.parent = Parent;
  t.target = NoItem;
  t.goal = NoItem;
  t.type = Type;
  t.name = Name;
  t.param = Param;
  t.limits = Limits;
  t.getTag = GetTag;
  t.setTag = SetTag;
  t.chanGroup = ChanGroup;
  t.server = Server;
  t.serverFlags = ServerFlags;
  t.controller = Controller;
  t.flags = Flags;
  t.lookAhead = LookAhead;
  t.goalStrength = ItemTimeZero;
  t.stiffness = Stiffness;
  t.axisLocks = ParamZero;
  t.maxLookSteps = ItemZero;
  t.reliableDistance = ItemDoubleZero;
  t.goalObjective = ItemZero;
  t.ikfkBlending = ItemTimeZero;
  t.ikInitialState = ItemZero;
  t.ikInitialStateFrame = InitialStateFrame;
  t.ikSoft = SoftIK;
  t.pole = NoItem;
  t.sameItem = SameItem;
  t.sameItemBlend = SameItemBlend;
  t.sameItemBlendMethod = ParamZero;
  t.sameItemFlags = ParamZero;
  return t;
}

// ---- LWSceneInfo ----

LWItemID RenderCamera(LWTime time) {
  Scene* s = ItemScene();
  return s ? s->renderCamera(time) : LWITEM_NULL;
}

// ---- LWInterfaceInfo ----

unsigned int ItemFlags(LWItemID item) {
  Scene* s = ItemScene();
  return s ? s->itemFlags(item) : 0u;
}
void SchemaPos(LWItemID item, double* x, double* y) {
  Scene* s = ItemScene();
  if (s) {
    s->schemaPosition(item, x, y);
    return;
  }
  if (x) *x = 0.0;
  if (y) *y = 0.0;
}
int ItemVis(LWItemID item) {
  Scene* s = ItemScene();
  return s ? s->visibility(item) : 0;
}
int ItemColor(LWItemID item) {
  Scene* s = ItemScene();
  return s ? s->itemColor(item) : 0;
}
void SetItemColorIndex(LWItemID item, int color) {
  if (Scene* s = ItemScene()) s->setItemColor(item, color);
}
void SetItemColorCustom(LWItemID item, double* rgb) {
  if (Scene* s = ItemScene()) s->setItemColorRgb(item, rgb);
}
void DefaultItemTypeColor(LWItemType type, float* rgb, int set) {
  Scene* s = AnyScene();
  if (!s || !rgb) return;
  if (set)
    s->setTypeColor(type, rgb);
  else
    s->typeColor(type, rgb);
}
void ItemColorRgba(LWItemID item, unsigned int state, float rgba[4]) {
  Scene* s = ItemScene();
  if (s)
    s->itemColorRgba(item, state, rgba);
  else if (rgba)
    rgba[0] = rgba[1] = rgba[2] = rgba[3] = 0.0f;
}
float ItemIconScale(LWItemID item) {
  Scene* s = ItemScene();
  return s ? s->iconScale(item) : 0.0f;
}

// ---- Directory Info ----

const char* DirInfo(const char* key) {
  Scene* s = AnyScene();
  return s ? s->directories().lookup(key) : nullptr;
}

}  // namespace

LWItemInfo* ItemInfo() {
  static LWItemInfo table = MakeItemInfo();
  return &table;
}

LWDirInfoFunc* DirectoryInfo() { return &DirInfo; }

void Connect(LWSceneInfo& info) { info.renderCamera = RenderCamera; }

void Connect(LWInterfaceInfo& info) {
  info.itemFlags = ItemFlags;
  info.schemaPos = SchemaPos;
  info.itemVis = ItemVis;
  info.itemColor = ItemColor;
  info.setItemColorIndex = SetItemColorIndex;
  info.setItemColorCustom = SetItemColorCustom;
  info.defaultItemTypeColor = DefaultItemTypeColor;
  info.itemColorRgba = ItemColorRgba;
  info.itemIconScale = ItemIconScale;
}

}  // namespace lwhost::sceneservices
