#pragma once

#include <lwrender.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "lwhost/Directories.h"
#include "lwhost/ItemColors.h"
#include "lwhost/ItemLooks.h"

namespace lwhost {

class Host;
struct SceneItem;

// One item id change: (old, new). old == new means "the item's data changed".
using IdChange = std::pair<LWItemID, LWItemID>;
using IdChanges = std::vector<IdChange>;
using RenumberListener = std::function<void(const IdChanges&)>;
using ListenerToken = std::uint64_t;

// What an object adds to the scene's point and polygon totals.
struct ObjectGeometry {
  int points = 0;
  int polygons = 0;
};

// The scene Layout would hold, and the information services that report it:
//   "LW Item Info 3/4/5"     the item walk and per-item queries (one table)
//   "LW Scene Info 3/4/5/6"  render settings (one record, kept current)
//   "LW Time Info"           the time and frame being rendered
//   "LW Interface Info 5/7"  selection, preview range, item colours (one record)
//   "LW Object Info 4..7", "LW Light Info 3..5", "LW Camera Info 2..5"
//                            what the renderer sees of objects, lights and cameras (ItemLooks.h)
//   "Directory Info"         the directory list (see Directories)
// Older names are served the newer tables, which extend them. "LW Interface Info 6" is not
// served: its itemColorRgba takes different arguments.
//
// Items get ids as LightWave numbers them (see ItemId.h); a new item takes the lowest free
// index of its type. Host order is the order items were added, by type: objects, lights,
// cameras, then each object's bones. Children are listed in host order.
//
// When the host acts as Modeler, the item services report an empty scene (first() is null and
// every id is unknown), as LightWave's modeller has no scene items; the interface record's
// selection is left as set here.
//
// Threads: plug-ins may query from any thread; the host changes the scene between renders, from
// one thread. Queries take no lock (only a channel group's first creation does).
//
// Errors: setters that return bool refuse an unknown item or a bad value by returning false and
// changing nothing (plug-ins reach several of them through the C tables); every other change
// throws std::invalid_argument naming the fault.
class Scene {
 public:
  explicit Scene(Host& host);
  ~Scene();
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;

  // ---- Items ----
  // Each add throws std::length_error once its type has no id left.
  LWItemID addObject(const std::string& name, LWItemID parent = LWITEM_NULL, ObjectGeometry geometry = {});
  LWItemID addLight(const std::string& name, LWItemID parent = LWITEM_NULL);
  LWItemID addCamera(const std::string& name, LWItemID parent = LWITEM_NULL);
  // The parent is the object the bone belongs to, or another bone of that object.
  LWItemID addBone(const std::string& name, LWItemID parent);
  // An object takes its bones with it; the children of what goes move up to its parent.
  void remove(LWItemID item);
  void rename(LWItemID item, const std::string& name);
  // Null unparents (a bone goes back to its object). A bone stays within its object; nothing
  // may become its own ancestor.
  void reparent(LWItemID item, LWItemID parent);
  void setGeometry(LWItemID object, ObjectGeometry geometry);
  void setPosition(LWItemID item, double x, double y, double z);
  // Heading, pitch and bank in radians, as LightWave orders them (forward +Z, right +X, up +Y).
  void setRotation(LWItemID item, double heading, double pitch, double bank);
  // Turns an item (a light or camera) so that its forward axis points at a world position.
  void aim(LWItemID item, const double target[3]);
  // Looks are set per type; each setter throws for an item of another type or a bad value
  // (a negative scale, intensity or range, a cone outside 0..90 degrees, zoom not above 0).
  void setObjectLook(LWItemID object, const ObjectLook& look);
  void setLightLook(LWItemID light, const LightLook& look);
  void setCameraLook(LWItemID camera, const CameraLook& look);
  // Null for an unknown item or one of another type.
  const ObjectLook* objectLook(LWItemID object) const;
  const LightLook* lightLook(LWItemID light) const;
  const CameraLook* cameraLook(LWItemID camera) const;
  // The scene's ambient light (LightWave's default: white at 5 %).
  void setAmbient(const double colour[3], double intensity);
  void ambient(double colour[3], double* intensity) const;

  bool contains(LWItemID item) const;
  // The first item of that name in host order, or null.
  LWItemID find(const std::string& name) const;
  LWItemID find(const std::string& name, LWItemType type) const;
  // Items of a type in host order; bones are listed per object.
  std::vector<LWItemID> items(LWItemType type, LWItemID boneObject = LWITEM_NULL) const;
  std::size_t size() const;

  // ---- Queries as item info answers them: null, 0 or -1 for an unknown id ----
  LWItemID first(LWItemType type, LWItemID boneObject) const;
  LWItemID next(LWItemID item) const;
  LWItemID firstChild(LWItemID parent) const;
  LWItemID nextChild(LWItemID parent, LWItemID previous) const;
  LWItemID parent(LWItemID item) const;
  // -1, which is no LWI_* type, for an unknown id.
  LWItemType type(LWItemID item) const;
  const char* name(LWItemID item) const;
  LWItemID boneObject(LWItemID bone) const;
  // Position, rotation and (objects') scale as set; world position adds the parents', whose
  // rotation is not applied.
  // Unknown items and parameters give zeros; false then.
  bool param(LWItemID item, LWItemParam which, LWTime time, LWDVector out) const;

  // Tags, numbered from 1. setTag: 0 adds, an existing number replaces, others are ignored.
  const char* tag(LWItemID item, int number) const;
  bool setTag(LWItemID item, int number, const char* text);
  int tagCount(LWItemID item) const;

  // Plug-ins applied to an item, per class, in order. A server added to LWITEM_NULL belongs to
  // the scene (image filters, volumetrics, ...): lookups of that class then ignore the item,
  // as LightWave's do, unless the item has servers of the class itself.
  void addServer(LWItemID item, const std::string& className, const std::string& serverName);
  bool removeServer(LWItemID item, const std::string& className, const std::string& serverName);
  // index is 1-based.
  const char* server(LWItemID item, const char* className, int index) const;

  // The item's channel group, made on first use through "Animation Envelopes" createGroup
  // (a transient lookup, counted as such) or, without that service, a stand-in handle unique
  // to the item. Groups belong to the envelope service, which frees them.
  LWChanGroupID channelGroup(LWItemID item);

  // ---- Render camera ----
  // From `time` on, `camera` renders, until the next switch; before the first switch the first
  // camera in host order does.
  void switchCamera(LWTime time, LWItemID camera);
  void clearCameraSwitches();
  LWItemID renderCamera(LWTime time) const;

  // ---- Renumbering ----
  // Listeners hear every id change after it is made, in registration order; a listener removed
  // during a notification is not called after its removal.
  ListenerToken addRenumberListener(RenumberListener listener);
  bool removeRenumberListener(ListenerToken token);
  // Moves items to new ids at once (swaps allowed). An object's bones follow it; a bone's new id
  // names its object by the object's current index. Returns every change made, ordered so
  // that a pair leaving an id comes before the pair taking it: clients that follow chains and
  // clients that apply each pair once both end up right (a swap cannot be ordered so).
  IdChanges renumber(const IdChanges& moves);
  // Numbers each type densely in host order, as a reload would.
  IdChanges compactIds();
  // Sends a list as is (chains, old == new, ids of no item); changes nothing.
  void notifyRenumbered(const IdChanges& changes);

  // ---- Time ----
  // The frame is the nearest whole frame at the scene's rate; setFrame sets the exact time.
  void setTime(LWTime time);
  void setFrame(LWFrame frame);
  // Keeps the frame, moving the time.
  void setFramesPerSecond(double fps);
  LWTime time() const;
  LWFrame frame() const;

  // ---- Scene info ----
  // Defaults: LightWave's new scene (frames 1-60 at 30 fps, 640x480, ray recursion 16), one
  // thread per processor of this machine.
  const LWSceneInfo& sceneInfo() const { return sceneInfo_; }
  void setName(const std::string& name);
  void setFilename(const std::string& filename);
  void setOutputNames(const std::string& animation, const std::string& rgbPrefix,
                      const std::string& alphaPrefix);
  void setRadiosityFilename(const std::string& filename);
  void setThreadCount(int threads);
  // Change plain settings in place. Strings, renderCamera and the point and polygon totals are
  // the scene's and are put back; an invalid frame rate throws and leaves the record as it was.
  void editSceneInfo(const std::function<void(LWSceneInfo&)>& edit);

  // ---- Interface info ----
  const LWInterfaceInfo& interfaceInfo() const { return interfaceInfo_; }
  // Throws for unknown ids; duplicates are dropped.
  void select(const std::vector<LWItemID>& items);
  std::vector<LWItemID> selection() const;
  // Plain settings (preview range, flags, alert level, ...); the selection, curTime (which
  // follows setTime) and the functions are put back.
  void editInterfaceInfo(const std::function<void(LWInterfaceInfo&)>& edit);
  // LWITEMF_SELECTED follows the selection; the other bits are kept per item.
  unsigned int itemFlags(LWItemID item) const;
  bool setItemFlags(LWItemID item, unsigned int flags);
  // Default: objects LWOVIS_SHADED, other items LWIVIS_VISIBLE.
  int visibility(LWItemID item) const;
  bool setVisibility(LWItemID item, int visibility);
  bool schemaPosition(LWItemID item, double* x, double* y) const;
  bool setSchemaPosition(LWItemID item, double x, double y);
  float iconScale(LWItemID item) const;
  bool setIconScale(LWItemID item, float scale);

  // Item colours. Each item follows its type's colour until given its own. Type defaults:
  // objects 0 (black), lights 13 (yellow), cameras 9 (green), bones 8 (blue).
  static int DefaultColorIndex(LWItemType type);
  // A palette index; for a custom colour the nearest palette entry.
  int itemColor(LWItemID item) const;
  // 0..14, or 0x01RRGGBB for a custom colour.
  bool setItemColor(LWItemID item, int color);
  bool setItemColorRgb(LWItemID item, const double rgb[3]);
  // The colour shown in a LWITEMCOL_* state; selected items are drawn halfway to white.
  bool itemColorRgba(LWItemID item, unsigned int state, float rgba[4]) const;
  bool typeColor(LWItemType type, float rgb[3]) const;
  bool setTypeColor(LWItemType type, const float rgb[3]);

  // ---- Directories ----
  Directories& directories() { return directories_; }
  const Directories& directories() const { return directories_; }

  Host& host() const { return host_; }

 private:
  SceneItem* get(LWItemID id) const;
  SceneItem& require(LWItemID id, const char* operation) const;
  LWItemID add(LWItemType type, const std::string& name, SceneItem* parent, SceneItem* object);
  std::vector<std::unique_ptr<SceneItem>>* list(LWItemType type);
  const std::vector<std::unique_ptr<SceneItem>>* list(LWItemType type) const;
  const std::vector<std::unique_ptr<SceneItem>>* listOf(const SceneItem& item) const;
  void rebuild();
  void refreshSelection();
  void refreshTotals();
  void publishTime(LWTime time, LWFrame frame);
  void notify(const IdChanges& changes);
  const ItemColour& colourOf(const SceneItem& item) const;
  void publishStrings();

  Host& host_;
  std::vector<std::unique_ptr<SceneItem>> objects_, lights_, cameras_;
  std::vector<SceneItem*> order_;  // every item, host order
  std::map<std::uint32_t, SceneItem*> byId_;
  std::map<std::string, std::deque<std::string>, std::less<>> sceneServers_;
  std::map<LWTime, SceneItem*> cameraSwitches_;
  std::vector<SceneItem*> selected_;
  std::vector<LWItemID> selectedIds_;  // null-terminated, for selItems
  ItemColour typeColours_[4];

  std::map<ListenerToken, std::shared_ptr<RenumberListener>> listeners_;
  ListenerToken nextToken_ = 1;
  std::mutex groupMutex_;

  std::string name_, filename_, animFilename_, rgbPrefix_, alphaPrefix_, radiosityFilename_;
  LWSceneInfo sceneInfo_{};
  LWTimeInfo timeInfo_{};
  LWInterfaceInfo interfaceInfo_{};
  Directories directories_;
  double ambientColour_[3] = {1.0, 1.0, 1.0};
  double ambientIntensity_ = 0.05;
};

}  // namespace lwhost
