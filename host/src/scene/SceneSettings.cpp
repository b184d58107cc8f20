// Time, the scene and interface records, selection and item colours.
#include <lwhost.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <stdexcept>

#include "SceneItem.h"
#include "SceneServices.h"
#include "lwhost/Scene.h"

namespace lwhost {

namespace {

[[noreturn]] void Fail(const char* operation, const std::string& why) {
  throw std::invalid_argument(std::string("lwhost::Scene::") + operation + ": " + why);
}

bool ValidRate(double fps) { return std::isfinite(fps) && fps > 0.0; }

float Clamp01(double value) {
  if (!(value > 0.0)) return 0.0f;  // NaN too
  return value >= 1.0 ? 1.0f : static_cast<float>(value);
}

}  // namespace

// ---- Time ----

void Scene::publishTime(LWTime time, LWFrame frame) {
  timeInfo_.time = time;
  timeInfo_.frame = frame;
  interfaceInfo_.curTime = time;
}

void Scene::setTime(LWTime time) {
  if (!std::isfinite(time)) Fail("setTime", "the time is not a finite number");
  const double frame = std::floor(time * sceneInfo_.framesPerSecond + 0.5);
  if (frame < INT_MIN || frame > INT_MAX) Fail("setTime", "the time is beyond the last frame number");
  publishTime(time, static_cast<LWFrame>(frame));
}

void Scene::setFrame(LWFrame frame) { publishTime(frame / sceneInfo_.framesPerSecond, frame); }

void Scene::setFramesPerSecond(double fps) {
  if (!ValidRate(fps)) Fail("setFramesPerSecond", "the rate must be a positive number");
  sceneInfo_.framesPerSecond = fps;
  publishTime(timeInfo_.frame / fps, timeInfo_.frame);
}

LWTime Scene::time() const { return timeInfo_.time; }
LWFrame Scene::frame() const { return timeInfo_.frame; }

// ---- Scene info ----

void Scene::publishStrings() {
  sceneInfo_.name = name_.c_str();
  sceneInfo_.filename = filename_.c_str();
  sceneInfo_.animFilename = animFilename_.c_str();
  sceneInfo_.RGBPrefix = rgbPrefix_.c_str();
  sceneInfo_.alphaPrefix = alphaPrefix_.c_str();
  sceneInfo_.radiosityFileName = radiosityFilename_.c_str();
}

void Scene::refreshTotals() {
  long long points = 0, polygons = 0;
  for (auto& object : objects_) {
    points += object->geometry.points;
    polygons += object->geometry.polygons;
  }
  sceneInfo_.numPoints = static_cast<int>(std::min<long long>(points, INT_MAX));
  sceneInfo_.numPolygons = static_cast<int>(std::min<long long>(polygons, INT_MAX));
}

void Scene::setName(const std::string& name) {
  name_ = name;
  publishStrings();
}

void Scene::setFilename(const std::string& filename) {
  filename_ = filename;
  publishStrings();
}

void Scene::setOutputNames(const std::string& animation, const std::string& rgbPrefix,
                           const std::string& alphaPrefix) {
  animFilename_ = animation;
  rgbPrefix_ = rgbPrefix;
  alphaPrefix_ = alphaPrefix;
  publishStrings();
}

void Scene::setRadiosityFilename(const std::string& filename) {
  radiosityFilename_ = filename;
  publishStrings();
}

void Scene::setThreadCount(int threads) {
  if (threads < 1) Fail("setThreadCount", "at least one thread renders");
  sceneInfo_.numThreads = threads;
}

void Scene::editSceneInfo(const std::function<void(LWSceneInfo&)>& edit) {
  LWSceneInfo changed = sceneInfo_;
  edit(changed);
  if (!ValidRate(changed.framesPerSecond)) Fail("editSceneInfo", "the frame rate must be a positive number");
  if (changed.numThreads < 1) Fail("editSceneInfo", "at least one thread renders");
  const bool rateChanged = changed.framesPerSecond != sceneInfo_.framesPerSecond;
  sceneInfo_ = changed;
  publishStrings();
  sceneservices::Connect(sceneInfo_);
  refreshTotals();
  if (rateChanged) publishTime(timeInfo_.frame / sceneInfo_.framesPerSecond, timeInfo_.frame);
}

// ---- Interface info ----

void Scene::refreshSelection() {
  selectedIds_.clear();
  for (SceneItem* item : selected_) selectedIds_.push_back(item->id);
  selectedIds_.push_back(LWITEM_NULL);
  interfaceInfo_.selItems = selectedIds_.data();
}

void Scene::select(const std::vector<LWItemID>& items) {
  std::vector<SceneItem*> chosen;
  for (LWItemID id : items) {
    SceneItem& item = require(id, "select");
    if (std::find(chosen.begin(), chosen.end(), &item) == chosen.end()) chosen.push_back(&item);
  }
  selected_ = std::move(chosen);
  refreshSelection();
}

std::vector<LWItemID> Scene::selection() const {
  return std::vector<LWItemID>(selectedIds_.begin(), selectedIds_.end() - 1);
}

void Scene::editInterfaceInfo(const std::function<void(LWInterfaceInfo&)>& edit) {
  LWInterfaceInfo changed = interfaceInfo_;
  edit(changed);
  changed.curTime = interfaceInfo_.curTime;
  changed.selItems = interfaceInfo_.selItems;
  sceneservices::Connect(changed);
  interfaceInfo_ = changed;
}

unsigned int Scene::itemFlags(LWItemID id) const {
  SceneItem* item = get(id);
  if (!item) return 0;
  const bool selected = std::find(selected_.begin(), selected_.end(), item) != selected_.end();
  return item->flags | (selected ? LWITEMF_SELECTED : 0u);
}

bool Scene::setItemFlags(LWItemID id, unsigned int flags) {
  SceneItem* item = get(id);
  if (!item) return false;
  item->flags = flags & (LWITEMF_SHOWCHILDREN | LWITEMF_SHOWCHANNELS | LWITEMF_LOCKED);
  return true;
}

int Scene::visibility(LWItemID id) const {
  SceneItem* item = get(id);
  return item ? item->visibility : 0;
}

bool Scene::setVisibility(LWItemID id, int visibility) {
  SceneItem* item = get(id);
  if (!item || visibility < 0) return false;
  if (visibility > (item->type == LWI_OBJECT ? LWOVIS_TEXTURED_WIRE : LWIVIS_VISIBLE)) return false;
  item->visibility = visibility;
  return true;
}

bool Scene::schemaPosition(LWItemID id, double* x, double* y) const {
  SceneItem* item = get(id);
  if (x) *x = item ? item->schemaX : 0.0;
  if (y) *y = item ? item->schemaY : 0.0;
  return item != nullptr;
}

bool Scene::setSchemaPosition(LWItemID id, double x, double y) {
  SceneItem* item = get(id);
  if (!item) return false;
  item->schemaX = x;
  item->schemaY = y;
  return true;
}

float Scene::iconScale(LWItemID id) const {
  SceneItem* item = get(id);
  return item ? item->iconScale : 0.0f;
}

bool Scene::setIconScale(LWItemID id, float scale) {
  SceneItem* item = get(id);
  if (!item || !(scale > 0.0f) || !std::isfinite(scale)) return false;
  item->iconScale = scale;
  return true;
}

// ---- Colours ----

int Scene::DefaultColorIndex(LWItemType type) {
  static const int kDefaults[] = {0, 13, 9, 8};
  return type >= LWI_OBJECT && type <= LWI_BONE ? kDefaults[type] : 0;
}

const ItemColour& Scene::colourOf(const SceneItem& item) const {
  return item.hasColour ? item.colour : typeColours_[item.type];
}

int Scene::itemColor(LWItemID id) const {
  SceneItem* item = get(id);
  if (!item) return 0;
  const ItemColour& colour = colourOf(*item);
  return colour.custom ? itemcolors::NearestIndex(colour.rgb) : colour.index;
}

bool Scene::setItemColor(LWItemID id, int color) {
  SceneItem* item = get(id);
  if (!item) return false;
  ItemColour colour;
  const unsigned int bits = static_cast<unsigned int>(color);
  if (color >= 0 && color < itemcolors::kCount) {
    colour.index = color;
  } else if ((bits >> 24) == 0x01u) {  // 0x01RRGGBB
    colour.custom = true;
    for (int c = 0; c < 3; ++c) colour.rgb[c] = static_cast<float>((bits >> (16 - 8 * c)) & 0xFFu) / 255.0f;
  } else {
    return false;
  }
  item->colour = colour;
  item->hasColour = true;
  return true;
}

bool Scene::setItemColorRgb(LWItemID id, const double rgb[3]) {
  SceneItem* item = get(id);
  if (!item || !rgb) return false;
  ItemColour colour;
  colour.custom = true;
  for (int c = 0; c < 3; ++c) colour.rgb[c] = Clamp01(rgb[c]);
  item->colour = colour;
  item->hasColour = true;
  return true;
}

bool Scene::itemColorRgba(LWItemID id, unsigned int state, float rgba[4]) const {
  if (!rgba) return false;
  std::fill(rgba, rgba + 4, 0.0f);
  SceneItem* item = get(id);
  if (!item || state > LWITEMCOL_SELECTED) return false;
  const ItemColour& colour = colourOf(*item);
  const float* rgb = colour.custom ? colour.rgb : itemcolors::Palette(colour.index);
  const bool selected = state == LWITEMCOL_SELECTED ||
                        (state == LWITEMCOL_CURRENT && (itemFlags(id) & LWITEMF_SELECTED));
  for (int c = 0; c < 3; ++c) rgba[c] = selected ? rgb[c] + (1.0f - rgb[c]) * 0.5f : rgb[c];
  rgba[3] = 1.0f;
  return true;
}

bool Scene::typeColor(LWItemType type, float rgb[3]) const {
  if (!rgb || type < LWI_OBJECT || type > LWI_BONE) return false;
  const ItemColour& colour = typeColours_[type];
  const float* source = colour.custom ? colour.rgb : itemcolors::Palette(colour.index);
  std::copy(source, source + 3, rgb);
  return true;
}

bool Scene::setTypeColor(LWItemType type, const float rgb[3]) {
  if (!rgb || type < LWI_OBJECT || type > LWI_BONE) return false;
  ItemColour colour;
  colour.custom = true;
  for (int c = 0; c < 3; ++c) colour.rgb[c] = Clamp01(rgb[c]);
  typeColours_[type] = colour;
  return true;
}

}  // namespace lwhost
