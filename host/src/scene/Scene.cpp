#include "lwhost/Scene.h"

#include <lwenvel.h>
#include <lwhost.h>
#include <lwserver.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>
#include <stdexcept>
#include <thread>

#include "SceneItem.h"
#include "SceneServices.h"
#include "lwhost/Host.h"
#include "lwhost/ItemId.h"
#include "lwhost/Orientation.h"

namespace lwhost {

namespace {

// Prefix-compatible older names get the same table or record.
const char* const kItemInfoNames[] = {"LW Item Info 3", "LW Item Info 4", LWITEMINFO_GLOBAL};
const char* const kSceneInfoNames[] = {"LW Scene Info 3", "LW Scene Info 4", "LW Scene Info 5",
                                       LWSCENEINFO_GLOBAL};
const char* const kInterfaceInfoNames[] = {"LW Interface Info 5", LWINTERFACEINFO_GLOBAL};
// Each newer table extends the older; LightWave answers the older names with it too.
const char* const kObjectInfoNames[] = {"LW Object Info 4", "LW Object Info 5", "LW Object Info 6", LWOBJECTINFO_GLOBAL};
const char* const kLightInfoNames[] = {"LW Light Info 3", "LW Light Info 4", LWLIGHTINFO_GLOBAL};
const char* const kCameraInfoNames[] = {"LW Camera Info 2", "LW Camera Info 3", "LW Camera Info 4", LWCAMERAINFO_GLOBAL};

// A camera switch set at a computed time must still hold when asked at the same time computed
// a slightly different way.
constexpr double kSwitchTolerance = 1e-9;

const char* TypeName(LWItemType type) {
  switch (type) {
    case LWI_OBJECT: return "object";
    case LWI_LIGHT: return "light";
    case LWI_CAMERA: return "camera";
    case LWI_BONE: return "bone";
    default: return "item";
  }
}

std::string Describe(const SceneItem& item) {
  return std::string(TypeName(item.type)) + " " + itemid::ToString(item.id) + " \"" + item.name + "\"";
}

[[noreturn]] void Fail(const char* operation, const std::string& why) {
  throw std::invalid_argument(std::string("lwhost::Scene::") + operation + ": " + why);
}

std::string Unknown(LWItemID id) { return itemid::ToString(id) + " is not an item of this scene"; }

// Orders changes so that a pair taking an id comes after the pair moving that id away.
IdChanges ChainSafeOrder(const IdChanges& changes) {
  std::map<std::uint32_t, std::size_t> byOld;
  for (std::size_t i = 0; i < changes.size(); ++i) byOld[itemid::Value(changes[i].first)] = i;
  std::vector<bool> placed(changes.size(), false);
  IdChanges out;
  out.reserve(changes.size());
  for (std::size_t i = 0; i < changes.size(); ++i) {
    std::vector<std::size_t> chain;
    for (std::size_t k = i; !placed[k];) {
      placed[k] = true;
      chain.push_back(k);
      auto next = byOld.find(itemid::Value(changes[k].second));
      if (next == byOld.end()) break;
      k = next->second;
    }
    for (auto it = chain.rbegin(); it != chain.rend(); ++it) out.push_back(changes[*it]);
  }
  return out;
}

}  // namespace

Scene::Scene(Host& host) : host_(host) {
  for (LWItemType t = LWI_OBJECT; t <= LWI_BONE; ++t) typeColours_[t].index = DefaultColorIndex(t);

  LWSceneInfo& s = sceneInfo_;
  s.renderType = LWRTYPE_REALISTIC;
  s.frameStart = 1;
  s.frameEnd = 60;
  s.frameStep = 1;
  s.framesPerSecond = 30.0;
  s.frameWidth = 640;
  s.frameHeight = 480;
  s.pixelAspect = 1.0;
  s.minSamplesPerPixel = 1;
  s.maxSamplesPerPixel = 1;
  s.limitedRegion[2] = s.frameWidth - 1;
  s.limitedRegion[3] = s.frameHeight - 1;
  s.recursionDepth = 16;
  s.numThreads = std::max(1u, std::thread::hardware_concurrency());
  s.adaptiveThreshold = 0.1f;
  s.loadInProgress = SI_NoLoad;
  s.radiosityType = LWRT_MonteCarlo;
  s.radiosityIndirectBounceCount = 1;
  s.radiosityRaysPerEvaluation1 = 64;
  s.radiosityIntensity = 1.0;
  s.radiosityMultiplier = 1.0;
  s.causticsIntensity = 1.0;
  s.dynamicsRangeMax = 1.0;
  s.saturation = 1.0;
  s.rendermode = lwrm_None;
  sceneservices::Connect(sceneInfo_);
  publishStrings();

  LWInterfaceInfo& i = interfaceInfo_;
  i.previewStart = 1;
  i.previewEnd = 60;
  i.previewStep = 1;
  i.dynaUpdate = LWDYNUP_INTERACTIVE;
  i.boxThreshold = 100000;
  i.alertLevel = LWALERT_BEGINNER;
  i.autoKeyCreate = LWAKC_OFF;
  sceneservices::Connect(interfaceInfo_);
  refreshSelection();
  publishTime(0.0, 0);

  host_.attach<Scene>(this);
  GlobalRegistry& globals = host_.globals();
  for (const char* name : kItemInfoNames) globals.provide(name, sceneservices::ItemInfo());
  for (const char* name : kSceneInfoNames) globals.provide(name, &sceneInfo_);
  for (const char* name : kInterfaceInfoNames) globals.provide(name, &interfaceInfo_);
  for (const char* name : kObjectInfoNames) globals.provide(name, sceneservices::ObjectInfo());
  for (const char* name : kLightInfoNames) globals.provide(name, sceneservices::LightInfo());
  for (const char* name : kCameraInfoNames) globals.provide(name, sceneservices::CameraInfo());
  globals.provide(LWTIMEINFO_GLOBAL, &timeInfo_);
  globals.provide(LWDIRINFOFUNC_GLOBAL, reinterpret_cast<void*>(sceneservices::DirectoryInfo()));
}

Scene::~Scene() {
  // The records die with us; a host that outlives the scene must stop handing them out.
  if (host_.find<Scene>() == this) {
    GlobalRegistry& globals = host_.globals();
    for (const char* name : kItemInfoNames) globals.provide(name, nullptr);
    for (const char* name : kSceneInfoNames) globals.provide(name, nullptr);
    for (const char* name : kInterfaceInfoNames) globals.provide(name, nullptr);
    for (const char* name : kObjectInfoNames) globals.provide(name, nullptr);
    for (const char* name : kLightInfoNames) globals.provide(name, nullptr);
    for (const char* name : kCameraInfoNames) globals.provide(name, nullptr);
    globals.provide(LWTIMEINFO_GLOBAL, nullptr);
    globals.provide(LWDIRINFOFUNC_GLOBAL, nullptr);
  }
  host_.detach<Scene>(this);
}

// ---- Lookup and order ----

SceneItem* Scene::get(LWItemID id) const {
  if (!id || !itemid::Fits32(id)) return nullptr;
  auto it = byId_.find(itemid::Value(id));
  return it == byId_.end() ? nullptr : it->second;
}

SceneItem& Scene::require(LWItemID id, const char* operation) const {
  SceneItem* item = get(id);
  if (!item) Fail(operation, Unknown(id));
  return *item;
}

std::vector<std::unique_ptr<SceneItem>>* Scene::list(LWItemType type) {
  switch (type) {
    case LWI_OBJECT: return &objects_;
    case LWI_LIGHT: return &lights_;
    case LWI_CAMERA: return &cameras_;
    default: return nullptr;
  }
}

const std::vector<std::unique_ptr<SceneItem>>* Scene::list(LWItemType type) const {
  return const_cast<Scene*>(this)->list(type);
}

const std::vector<std::unique_ptr<SceneItem>>* Scene::listOf(const SceneItem& item) const {
  return item.type == LWI_BONE ? &item.object->bones : list(item.type);
}

void Scene::rebuild() {
  order_.clear();
  for (auto* items : {&objects_, &lights_, &cameras_})
    for (std::size_t i = 0; i < items->size(); ++i) {
      (*items)[i]->listPosition = i;
      order_.push_back((*items)[i].get());
    }
  for (auto& object : objects_)
    for (std::size_t i = 0; i < object->bones.size(); ++i) {
      object->bones[i]->listPosition = i;
      order_.push_back(object->bones[i].get());
    }
  for (SceneItem* item : order_) item->children.clear();
  for (SceneItem* item : order_)
    if (item->parent) {
      item->childPosition = item->parent->children.size();
      item->parent->children.push_back(item);
    }
}

// ---- Items ----

LWItemID Scene::add(LWItemType type, const std::string& name, SceneItem* parent, SceneItem* object) {
  // Freed ids are reused, lowest first, as LightWave does.
  LWItemID id = LWITEM_NULL;
  const unsigned limit = itemid::MaxIndex(type);
  for (unsigned i = 0; i <= limit && !id; ++i) {
    LWItemID candidate = type == LWI_BONE ? itemid::MakeBone(i, itemid::IndexOf(object->id))
                                          : itemid::Make(type, i);
    if (!byId_.count(itemid::Value(candidate))) id = candidate;
  }
  if (!id) throw std::length_error(std::string("lwhost::Scene: no id left for another ") + TypeName(type));

  auto item = std::make_unique<SceneItem>();
  item->id = id;
  item->type = type;
  item->name = name;
  item->parent = parent;
  item->object = object;
  item->visibility = type == LWI_OBJECT ? LWOVIS_SHADED : LWIVIS_VISIBLE;
  SceneItem* raw = item.get();
  if (type == LWI_BONE)
    object->bones.push_back(std::move(item));
  else
    list(type)->push_back(std::move(item));
  byId_[itemid::Value(id)] = raw;
  rebuild();
  return id;
}

namespace {
SceneItem* OptionalParent(SceneItem* found, LWItemID id, const char* operation) {
  if (id && !found) Fail(operation, "parent " + Unknown(id));
  return found;
}
}  // namespace

LWItemID Scene::addObject(const std::string& name, LWItemID parent, ObjectGeometry geometry) {
  SceneItem* p = OptionalParent(get(parent), parent, "addObject");
  if (geometry.points < 0 || geometry.polygons < 0) Fail("addObject", "negative point or polygon count");
  LWItemID id = add(LWI_OBJECT, name, p, nullptr);
  get(id)->geometry = geometry;
  refreshTotals();
  return id;
}

LWItemID Scene::addLight(const std::string& name, LWItemID parent) {
  return add(LWI_LIGHT, name, OptionalParent(get(parent), parent, "addLight"), nullptr);
}

LWItemID Scene::addCamera(const std::string& name, LWItemID parent) {
  return add(LWI_CAMERA, name, OptionalParent(get(parent), parent, "addCamera"), nullptr);
}

LWItemID Scene::addBone(const std::string& name, LWItemID parent) {
  if (!parent) Fail("addBone", "a bone needs an object or a bone as its parent");
  SceneItem& p = require(parent, "addBone");
  if (p.type != LWI_OBJECT && p.type != LWI_BONE)
    Fail("addBone", "a bone's parent must be an object or a bone, not " + Describe(p));
  return add(LWI_BONE, name, &p, p.type == LWI_OBJECT ? &p : p.object);
}

void Scene::remove(LWItemID id) {
  SceneItem& victim = require(id, "remove");
  std::set<SceneItem*> gone{&victim};
  for (auto& bone : victim.bones) gone.insert(bone.get());

  for (SceneItem* item : order_) {
    if (gone.count(item)) continue;
    SceneItem* parent = item->parent;
    while (parent && gone.count(parent)) parent = parent->parent;
    item->parent = parent;
  }
  selected_.erase(std::remove_if(selected_.begin(), selected_.end(),
                                 [&](SceneItem* s) { return gone.count(s) != 0; }),
                  selected_.end());
  for (auto it = cameraSwitches_.begin(); it != cameraSwitches_.end();)
    it = gone.count(it->second) ? cameraSwitches_.erase(it) : std::next(it);
  for (SceneItem* item : gone) byId_.erase(itemid::Value(item->id));

  auto& owner = victim.type == LWI_BONE ? victim.object->bones : *list(victim.type);
  owner.erase(owner.begin() + static_cast<std::ptrdiff_t>(victim.listPosition));  // frees victim
  rebuild();
  refreshSelection();
  refreshTotals();
}

void Scene::rename(LWItemID id, const std::string& name) { require(id, "rename").name = name; }

void Scene::reparent(LWItemID id, LWItemID parentId) {
  SceneItem& item = require(id, "reparent");
  SceneItem* parent = OptionalParent(get(parentId), parentId, "reparent");
  if (item.type == LWI_BONE) {
    if (!parent) parent = item.object;
    const bool sameObject = parent == item.object || (parent->type == LWI_BONE && parent->object == item.object);
    if (!sameObject) Fail("reparent", Describe(item) + " can only be parented within its object");
  }
  for (SceneItem* p = parent; p; p = p->parent)
    if (p == &item) Fail("reparent", Describe(item) + " would become its own ancestor");
  item.parent = parent;
  rebuild();
}

void Scene::setGeometry(LWItemID object, ObjectGeometry geometry) {
  SceneItem& item = require(object, "setGeometry");
  if (item.type != LWI_OBJECT) Fail("setGeometry", Describe(item) + " is not an object");
  if (geometry.points < 0 || geometry.polygons < 0) Fail("setGeometry", "negative point or polygon count");
  item.geometry = geometry;
  refreshTotals();
}

void Scene::setPosition(LWItemID id, double x, double y, double z) {
  SceneItem& item = require(id, "setPosition");
  item.position[0] = x;
  item.position[1] = y;
  item.position[2] = z;
}

bool Scene::contains(LWItemID item) const { return get(item) != nullptr; }

LWItemID Scene::find(const std::string& name) const {
  for (SceneItem* item : order_)
    if (item->name == name) return item->id;
  return LWITEM_NULL;
}

LWItemID Scene::find(const std::string& name, LWItemType type) const {
  for (SceneItem* item : order_)
    if (item->type == type && item->name == name) return item->id;
  return LWITEM_NULL;
}

std::vector<LWItemID> Scene::items(LWItemType type, LWItemID boneObject) const {
  std::vector<LWItemID> out;
  for (LWItemID id = first(type, boneObject); id; id = next(id)) out.push_back(id);
  return out;
}

std::size_t Scene::size() const { return order_.size(); }

// ---- Walks ----

LWItemID Scene::first(LWItemType type, LWItemID boneObject) const {
  if (type == LWI_BONE) {
    SceneItem* object = get(boneObject);
    if (!object || object->type != LWI_OBJECT || object->bones.empty()) return LWITEM_NULL;
    return object->bones.front()->id;
  }
  auto* items = list(type);
  return items && !items->empty() ? items->front()->id : LWITEM_NULL;
}

LWItemID Scene::next(LWItemID id) const {
  SceneItem* item = get(id);
  if (!item) return LWITEM_NULL;
  auto& items = *listOf(*item);
  return item->listPosition + 1 < items.size() ? items[item->listPosition + 1]->id : LWITEM_NULL;
}

LWItemID Scene::firstChild(LWItemID id) const {
  SceneItem* item = get(id);
  return item && !item->children.empty() ? item->children.front()->id : LWITEM_NULL;
}

LWItemID Scene::nextChild(LWItemID parentId, LWItemID previous) const {
  SceneItem* parent = get(parentId);
  SceneItem* child = get(previous);
  if (!parent || !child || child->parent != parent) return LWITEM_NULL;
  const std::size_t next = child->childPosition + 1;
  return next < parent->children.size() ? parent->children[next]->id : LWITEM_NULL;
}

LWItemID Scene::parent(LWItemID id) const {
  SceneItem* item = get(id);
  return item && item->parent ? item->parent->id : LWITEM_NULL;
}

LWItemType Scene::type(LWItemID id) const {
  SceneItem* item = get(id);
  return item ? item->type : -1;
}

const char* Scene::name(LWItemID id) const {
  SceneItem* item = get(id);
  return item ? item->name.c_str() : nullptr;
}

LWItemID Scene::boneObject(LWItemID id) const {
  SceneItem* item = get(id);
  return item && item->object ? item->object->id : LWITEM_NULL;
}

bool Scene::param(LWItemID id, LWItemParam which, LWTime, LWDVector out) const {
  if (!out) return false;
  out[0] = out[1] = out[2] = 0.0;
  SceneItem* item = get(id);
  if (!item) return false;
  switch (which) {
    case LWIP_POSITION:
      std::copy(item->position, item->position + 3, out);
      return true;
    case LWIP_W_POSITION:
      // Unrotated, unscaled parents: world position is the sum along the chain.
      for (SceneItem* p = item; p; p = p->parent)
        for (int c = 0; c < 3; ++c) out[c] += p->position[c];
      return true;
    case LWIP_RIGHT:
    case LWIP_W_RIGHT:
    case LWIP_UP:
    case LWIP_W_UP:
    case LWIP_FORWARD:
    case LWIP_W_FORWARD: {
      double axes[3][3];
      ItemAxes(item->rotation, axes[0], axes[1], axes[2]);
      const int axis = which == LWIP_RIGHT || which == LWIP_W_RIGHT ? 0 : which == LWIP_UP || which == LWIP_W_UP ? 1 : 2;
      std::copy(axes[axis], axes[axis] + 3, out);
      return true;
    }
    case LWIP_SCALING:
      if (item->type == LWI_OBJECT)
        std::copy(item->objectLook.scale, item->objectLook.scale + 3, out);
      else
        out[0] = out[1] = out[2] = 1.0;
      return true;
    case LWIP_ROTATION:
      std::copy(item->rotation, item->rotation + 3, out);
      return true;
    case LWIP_PIVOT:
    case LWIP_PIVOT_ROT:
      return true;
    default:
      return false;
  }
}

// ---- Tags, servers, channel groups ----

const char* Scene::tag(LWItemID id, int number) const {
  SceneItem* item = get(id);
  if (!item || number < 1 || static_cast<std::size_t>(number) > item->tags.size()) return nullptr;
  return item->tags[static_cast<std::size_t>(number) - 1].c_str();
}

bool Scene::setTag(LWItemID id, int number, const char* text) {
  SceneItem* item = get(id);
  if (!item || !text || number < 0 || static_cast<std::size_t>(number) > item->tags.size()) return false;
  if (number == 0)
    item->tags.emplace_back(text);
  else
    item->tags[static_cast<std::size_t>(number) - 1] = text;
  return true;
}

int Scene::tagCount(LWItemID id) const {
  SceneItem* item = get(id);
  return item ? static_cast<int>(item->tags.size()) : 0;
}

void Scene::addServer(LWItemID id, const std::string& className, const std::string& serverName) {
  if (className.empty() || serverName.empty()) Fail("addServer", "empty class or server name");
  auto& servers = id ? require(id, "addServer").servers : sceneServers_;
  servers[className].push_back(serverName);
}

bool Scene::removeServer(LWItemID id, const std::string& className, const std::string& serverName) {
  SceneItem* item = get(id);
  if (id && !item) return false;
  auto& servers = item ? item->servers : sceneServers_;
  auto it = servers.find(className);
  if (it == servers.end()) return false;
  auto found = std::find(it->second.begin(), it->second.end(), serverName);
  if (found == it->second.end()) return false;
  it->second.erase(found);
  if (it->second.empty()) servers.erase(it);
  return true;
}

const char* Scene::server(LWItemID id, const char* className, int index) const {
  if (!className || index < 1) return nullptr;
  const std::deque<std::string>* names = nullptr;
  if (SceneItem* item = get(id)) {
    auto it = item->servers.find(className);
    if (it != item->servers.end()) names = &it->second;
  }
  if (!names) {
    auto it = sceneServers_.find(className);
    if (it != sceneServers_.end()) names = &it->second;
  }
  if (!names || static_cast<std::size_t>(index) > names->size()) return nullptr;
  return (*names)[static_cast<std::size_t>(index) - 1].c_str();
}

LWChanGroupID Scene::channelGroup(LWItemID id) {
  SceneItem* item = get(id);
  if (!item) return nullptr;
  std::lock_guard<std::mutex> lock(groupMutex_);
  if (!item->group) {
    auto* envelopes = static_cast<LWEnvelopeFuncs*>(host_.globals().peek(LWENVELOPEFUNCS_GLOBAL));
    if (envelopes && envelopes->createGroup) item->group = envelopes->createGroup(nullptr, item->name.c_str());
    if (!item->group) item->group = &item->groupStandIn;
  }
  return item->group;
}

// ---- Render camera ----

void Scene::switchCamera(LWTime time, LWItemID camera) {
  if (!std::isfinite(time)) Fail("switchCamera", "the time is not a finite number");
  SceneItem& item = require(camera, "switchCamera");
  if (item.type != LWI_CAMERA) Fail("switchCamera", Describe(item) + " is not a camera");
  cameraSwitches_[time] = &item;
}

void Scene::clearCameraSwitches() { cameraSwitches_.clear(); }

LWItemID Scene::renderCamera(LWTime time) const {
  SceneItem* camera = cameras_.empty() ? nullptr : cameras_.front().get();
  if (!cameraSwitches_.empty() && !std::isnan(time)) {
    auto after = cameraSwitches_.upper_bound(time + kSwitchTolerance);
    if (after != cameraSwitches_.begin()) camera = std::prev(after)->second;
  }
  return camera ? camera->id : LWITEM_NULL;
}

// ---- Renumbering ----

ListenerToken Scene::addRenumberListener(RenumberListener listener) {
  if (!listener) Fail("addRenumberListener", "empty listener");
  const ListenerToken token = nextToken_++;
  listeners_.emplace(token, std::make_shared<RenumberListener>(std::move(listener)));
  return token;
}

bool Scene::removeRenumberListener(ListenerToken token) { return listeners_.erase(token) != 0; }

void Scene::notify(const IdChanges& changes) {
  std::vector<ListenerToken> tokens;
  for (auto& entry : listeners_) tokens.push_back(entry.first);
  for (ListenerToken token : tokens) {
    auto it = listeners_.find(token);
    if (it == listeners_.end()) continue;
    std::shared_ptr<RenumberListener> keep = it->second;  // it may remove itself while running
    (*keep)(changes);
  }
}

void Scene::notifyRenumbered(const IdChanges& changes) {
  for (const IdChange& change : changes)
    if (!change.first || !change.second)
      Fail("notifyRenumbered", "a null id would end the list plug-ins receive");
  if (!changes.empty()) notify(changes);
}

IdChanges Scene::renumber(const IdChanges& moves) {
  std::map<SceneItem*, LWItemID> requested;
  for (const IdChange& move : moves) {
    SceneItem* item = get(move.first);
    if (!item) Fail("renumber", Unknown(move.first));
    const LWItemID to = move.second;
    if (itemid::TypeOf(to) != item->type)
      Fail("renumber", itemid::ToString(to) + " is not a " + TypeName(item->type) + " id, for " + Describe(*item));
    if (item->type == LWI_BONE) {
      if (itemid::BoneObjectIndex(to) != itemid::IndexOf(item->object->id))
        Fail("renumber", itemid::ToString(to) + " does not name the object of " + Describe(*item));
    } else if (itemid::IndexOf(to) > itemid::MaxIndex(item->type)) {
      Fail("renumber", itemid::ToString(to) + " is beyond the " + TypeName(item->type) + " ids");
    }
    if (!requested.emplace(item, to).second) Fail("renumber", Describe(*item) + " is moved twice");
  }

  // Final ids: objects and the others as asked; bones also follow their object.
  std::map<SceneItem*, LWItemID> final;
  for (auto& [item, to] : requested)
    if (item->type != LWI_BONE) final[item] = to;
  for (auto& object : objects_) {
    auto moved = final.find(object.get());
    const unsigned objectIndex = itemid::IndexOf(moved != final.end() ? moved->second : object->id);
    for (auto& bone : object->bones) {
      auto asked = requested.find(bone.get());
      const unsigned boneIndex = itemid::IndexOf(asked != requested.end() ? asked->second : bone->id);
      const LWItemID id = itemid::MakeBone(boneIndex, objectIndex);
      if (asked != requested.end() || id != bone->id) final[bone.get()] = id;
    }
  }

  std::set<std::uint32_t> taken;
  for (auto& [item, id] : final) {
    if (!taken.insert(itemid::Value(id)).second) Fail("renumber", "two items would get " + itemid::ToString(id));
    auto holder = byId_.find(itemid::Value(id));
    if (holder != byId_.end() && holder->second != item && !final.count(holder->second))
      Fail("renumber", itemid::ToString(id) + " stays with " + Describe(*holder->second));
  }

  IdChanges changes;
  for (SceneItem* item : order_) {
    auto f = final.find(item);
    if (f != final.end() && f->second != item->id) changes.emplace_back(item->id, f->second);
  }
  for (auto& [item, id] : final) item->id = id;
  byId_.clear();
  for (SceneItem* item : order_) byId_[itemid::Value(item->id)] = item;
  refreshSelection();

  changes = ChainSafeOrder(changes);
  if (!changes.empty()) notify(changes);
  return changes;
}

IdChanges Scene::compactIds() {
  IdChanges moves;
  for (LWItemType type = LWI_OBJECT; type <= LWI_CAMERA; ++type) {
    const auto& items = *list(type);
    for (std::size_t i = 0; i < items.size(); ++i) {
      const LWItemID want = itemid::Make(type, static_cast<unsigned>(i));
      if (want != items[i]->id) moves.emplace_back(items[i]->id, want);
    }
  }
  // Bone ids name the object's current index; renumber moves them along with the object.
  for (auto& object : objects_)
    for (std::size_t i = 0; i < object->bones.size(); ++i) {
      const LWItemID want = itemid::MakeBone(static_cast<unsigned>(i), itemid::IndexOf(object->id));
      if (want != object->bones[i]->id) moves.emplace_back(object->bones[i]->id, want);
    }
  return renumber(moves);
}

}  // namespace lwhost
