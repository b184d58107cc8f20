// The scene, its items and the information services, driven through their C tables as plug-ins
// use them: the items a plug-in walks through "LW Item Info", item id changes and who hears
// about them, the scene, time and interface records, and "Directory Info".
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <lwenvel.h>
#include <lwhost.h>
#include <lwrender.h>
#include <lwserver.h>

#include <cstdlib>
#include <limits>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "lwhost/Host.h"
#include "lwhost/ItemId.h"
#include "lwhost/Scene.h"

namespace {

using ::testing::ElementsAre;
using ::testing::Pair;
using lwhost::IdChanges;

// A host with a scene, and the services fetched the way a plug-in fetches them.
class SceneTest : public ::testing::Test {
 protected:
  template <class T>
  T* global(const char* name) {
    return static_cast<T*>(host.globals().lookup(name, GFUSE_ACQUIRE));
  }
  LWItemInfo* itemInfo() { return global<LWItemInfo>("LW Item Info 3"); }
  LWDirInfoFunc* dirInfo() { return reinterpret_cast<LWDirInfoFunc*>(global<void>(LWDIRINFOFUNC_GLOBAL)); }

  static LWItemID Id(unsigned int value) { return lwhost::itemid::FromValue(value); }

  // Everything a plug-in sees of one type, walking first/next, or of an item's children.
  std::vector<LWItemID> walk(LWItemType type, LWItemID boneObject = LWITEM_NULL) {
    std::vector<LWItemID> out;
    for (LWItemID id = itemInfo()->first(type, boneObject); id && out.size() < 1000; id = itemInfo()->next(id))
      out.push_back(id);
    return out;
  }
  std::vector<LWItemID> children(LWItemID parent) {
    std::vector<LWItemID> out;
    for (LWItemID id = itemInfo()->firstChild(parent); id && out.size() < 1000; id = itemInfo()->nextChild(parent, id))
      out.push_back(id);
    return out;
  }

  lwhost::Host host;
  lwhost::Scene scene{host};
};

// ---- Items as a plug-in walks them through "LW Item Info" ----

TEST_F(SceneTest, IdsFollowSceneFileNumberingIncludingBones) {
  LWItemID first = scene.addObject("First");
  EXPECT_EQ(scene.addLight("Key"), Id(0x20000000));  // each type counts from 0
  // Scene files' own example: bone 0x24 of object 0x0A is 4024000A.
  LWItemID object = LWITEM_NULL, bone = LWITEM_NULL;
  for (int i = 1; i <= 10; ++i) object = scene.addObject("Object " + std::to_string(i));
  for (int i = 0; i <= 0x24; ++i) bone = scene.addBone("Bone", i == 0 ? object : bone);
  EXPECT_EQ(bone, Id(0x4024000A));
  EXPECT_EQ(scene.addBone("Root", first), Id(0x40000000));  // bone numbering is per object

  // A freed id is taken again, lowest first, but the newcomer joins the end of the list.
  scene.remove(Id(0x10000003));
  scene.remove(Id(0x10000002));
  EXPECT_EQ(scene.addObject("Late"), Id(0x10000002));
  EXPECT_EQ(walk(LWI_OBJECT).back(), Id(0x10000002));
  EXPECT_EQ(walk(LWI_OBJECT).size(), 10u);
  EXPECT_EQ(itemInfo()->type(LWITEM_RADIOSITY), -1);  // pseudo-lights name no item
}

TEST_F(SceneTest, WalksFollowHostOrderAndStructuralMistakesChangeNothing) {
  LWItemID ground = scene.addObject("Ground");
  LWItemID robot = scene.addObject("Robot");
  LWItemID key = scene.addLight("Key", robot);
  LWItemID cam = scene.addCamera("Cam", robot);
  LWItemID prop = scene.addObject("Prop", key);  // an object under a light
  LWItemID wheel = scene.addObject("Wheel", robot);
  LWItemID hip = scene.addBone("Hip", robot);
  LWItemID thigh = scene.addBone("Thigh", hip);
  LWItemID spine = scene.addBone("Spine", robot);
  LWItemID anchor = scene.addBone("Anchor", ground);
  LWItemInfo* info = itemInfo();

  // Refused, and (as the walks below show) without changing anything.
  EXPECT_THROW(scene.addBone("Bad", key), std::invalid_argument);
  EXPECT_THROW(scene.addLight("Bad", Id(0x10000055)), std::invalid_argument);
  EXPECT_THROW(scene.reparent(robot, key), std::invalid_argument);    // key is robot's child
  EXPECT_THROW(scene.reparent(robot, thigh), std::invalid_argument);  // through its own bones
  EXPECT_THROW(scene.reparent(robot, robot), std::invalid_argument);
  EXPECT_THROW(scene.reparent(thigh, anchor), std::invalid_argument);  // bones stay home
  EXPECT_THROW(scene.reparent(thigh, ground), std::invalid_argument);
  EXPECT_THROW(scene.remove(Id(0x30000005)), std::invalid_argument);

  EXPECT_THAT(walk(LWI_OBJECT), ElementsAre(ground, robot, prop, wheel));
  EXPECT_THAT(walk(LWI_CAMERA), ElementsAre(cam));
  EXPECT_THAT(walk(LWI_BONE, robot), ElementsAre(hip, thigh, spine));
  EXPECT_TRUE(walk(LWI_BONE, key).empty());  // not an object
  EXPECT_TRUE(walk(7).empty());

  // The wheel was added after the light but objects come first in host order; bones last.
  EXPECT_THAT(children(robot), ElementsAre(wheel, key, cam, hip, spine));
  EXPECT_THAT(children(key), ElementsAre(prop));
  EXPECT_THAT(children(hip), ElementsAre(thigh));
  EXPECT_EQ(info->nextChild(robot, prop), LWITEM_NULL);  // prop is not robot's child
  EXPECT_EQ(info->nextChild(robot, LWITEM_NULL), LWITEM_NULL);
  EXPECT_EQ(info->parent(prop), key);
  EXPECT_EQ(info->parent(robot), LWITEM_NULL);
  EXPECT_EQ(info->type(thigh), LWI_BONE);

  // Reparenting moves an item between child lists, still in host order. Unparenting a bone
  // returns it to its object; an object may hang on another's bone.
  scene.reparent(prop, robot);
  EXPECT_THAT(children(robot), ElementsAre(prop, wheel, key, cam, hip, spine));
  EXPECT_TRUE(children(key).empty());
  scene.reparent(thigh, LWITEM_NULL);
  EXPECT_EQ(info->parent(thigh), robot);
  scene.reparent(robot, anchor);
  EXPECT_EQ(info->parent(robot), anchor);
}

TEST_F(SceneTest, RemovalHandsChildrenToTheGrandparentAndTakesBones) {
  LWItemID robot = scene.addObject("Robot");
  LWItemID key = scene.addLight("Key", robot);
  LWItemID prop = scene.addObject("Prop", key);
  LWItemID arm = scene.addObject("Arm", robot);
  LWItemID shoulder = scene.addBone("Shoulder", arm);
  LWItemID elbow = scene.addBone("Elbow", shoulder);
  LWItemID hand = scene.addObject("Hand", elbow);  // parented to a bone of another object
  LWItemID wrist = scene.addBone("Wrist", elbow);

  scene.remove(key);
  EXPECT_EQ(itemInfo()->parent(prop), robot);
  // A removed bone's children move to its parent bone, within the object.
  scene.remove(elbow);
  EXPECT_EQ(itemInfo()->parent(wrist), shoulder);
  EXPECT_EQ(itemInfo()->parent(hand), shoulder);
  // The object goes with its bones; what hung on them moves to the object's parent.
  scene.remove(arm);
  EXPECT_EQ(itemInfo()->name(wrist), nullptr);
  EXPECT_THAT(children(robot), ElementsAre(prop, hand));
  EXPECT_EQ(scene.size(), 3u);
}

// A stand-in for the envelope service: records the groups asked for.
std::vector<std::string> g_groupNames;
int g_groupHandle;

TEST_F(SceneTest, ItemQueriesAnswerForTheirItemAndNothingForUnknownIds) {
  LWItemID robot = scene.addObject("Robot");
  LWItemID twin = scene.addLight("Robot", robot);
  LWItemInfo* info = itemInfo();
  scene.rename(robot, "Droid");
  EXPECT_STREQ(info->name(robot), "Droid");
  EXPECT_EQ(info->flags(robot), static_cast<unsigned>(LWITEMF_ACTIVE));

  // Tags: 0 appends, an existing number replaces, anything else is ignored.
  info->setTag(robot, 0, "first");
  info->setTag(robot, 0, "second");
  info->setTag(robot, 1, "First");
  info->setTag(robot, 3, "out of range");
  info->setTag(robot, -1, "negative");
  info->setTag(robot, 0, nullptr);
  EXPECT_EQ(info->getTag(robot, 0), nullptr);
  EXPECT_STREQ(info->getTag(robot, 1), "First");
  EXPECT_STREQ(info->getTag(robot, 2), "second");
  EXPECT_EQ(info->getTag(robot, 3), nullptr);
  // A tag string a plug-in holds survives tags added after it.
  const char* held = info->getTag(robot, 2);
  for (int i = 0; i < 64; ++i) info->setTag(robot, 0, "a tag long enough to live on the heap, not inline");
  EXPECT_STREQ(held, "second");

  // Servers: per item and class, 1-based; scene-wide classes answer whatever the item.
  scene.addServer(robot, "ItemMotionHandler", "Wobble");
  scene.addServer(robot, "ItemMotionHandler", "Jitter");
  scene.addServer(LWITEM_NULL, "ImageFilterHandler", "Glow");
  EXPECT_STREQ(info->server(robot, "ItemMotionHandler", 2), "Jitter");
  EXPECT_EQ(info->server(robot, "ItemMotionHandler", 3), nullptr);
  EXPECT_EQ(info->server(robot, "ItemMotionHandler", 0), nullptr);
  EXPECT_EQ(info->server(twin, "ItemMotionHandler", 1), nullptr);
  EXPECT_EQ(info->server(robot, nullptr, 1), nullptr);
  EXPECT_STREQ(info->server(twin, "ImageFilterHandler", 1), "Glow");
  EXPECT_STREQ(info->server(LWITEM_NULL, "ImageFilterHandler", 1), "Glow");
  EXPECT_TRUE(scene.removeServer(robot, "ItemMotionHandler", "Wobble"));
  EXPECT_STREQ(info->server(robot, "ItemMotionHandler", 1), "Jitter");

  // Positions add up through the parent chain, the rest is the identity, unknown parameters are
  // zeros; no limits, keyframed channels.
  scene.setPosition(robot, 1, 2, 3);
  scene.setPosition(twin, 0, 1, 0);
  auto param = [&](LWItemParam which) {
    LWDVector v = {7, 7, 7};
    info->param(twin, which, 0.0, v);
    return std::vector<double>(v, v + 3);
  };
  EXPECT_THAT(param(LWIP_POSITION), ElementsAre(0, 1, 0));
  EXPECT_THAT(param(LWIP_W_POSITION), ElementsAre(1, 3, 3));
  EXPECT_THAT(param(LWIP_FORWARD), ElementsAre(0, 0, 1));
  EXPECT_THAT(param(LWIP_SCALING), ElementsAre(1, 1, 1));
  EXPECT_THAT(param(99), ElementsAre(0, 0, 0));
  LWDVector lo = {5, 5, 5}, hi = {5, 5, 5};
  EXPECT_EQ(info->limits(twin, LWIP_ROTATION, lo, hi), 0u);
  EXPECT_EQ(lo[0] + hi[2], 0.0);
  int controllers[3] = {9, 9, 9};
  info->controller(twin, LWIP_ROTATION, controllers);
  EXPECT_THAT(controllers, ElementsAre(LWMOTCTL_KEYFRAMES, LWMOTCTL_KEYFRAMES, LWMOTCTL_KEYFRAMES));

  // Channel groups: a stand-in without the envelope service, else made through it once and
  // named after the item; a group already made is kept.
  LWChanGroupID standIn = info->chanGroup(twin);
  ASSERT_NE(standIn, nullptr);
  LWEnvelopeFuncs envelopes{};
  envelopes.createGroup = [](LWChanGroupID, const char* name) -> LWChanGroupID {
    g_groupNames.push_back(name);
    return &g_groupHandle;
  };
  host.globals().provide(LWENVELOPEFUNCS_GLOBAL, &envelopes);
  g_groupNames.clear();
  EXPECT_EQ(info->chanGroup(robot), &g_groupHandle);
  EXPECT_EQ(info->chanGroup(robot), &g_groupHandle);
  EXPECT_THAT(g_groupNames, ElementsAre("Droid"));
  EXPECT_EQ(info->chanGroup(twin), standIn);

  // Unknown ids. Only the low 32 bits are an id: garbage above them must not alias the robot.
  std::vector<LWItemID> unknown = {LWITEM_NULL, LWITEM_ALL, Id(0x10000001), Id(0x50000000)};
  if (sizeof(void*) > 4)
    unknown.push_back(reinterpret_cast<LWItemID>(std::uintptr_t{0x10000000} | std::uintptr_t{1} << 31 << 9));
  for (LWItemID id : unknown) {
    SCOPED_TRACE(lwhost::itemid::ToString(id));
    EXPECT_EQ(info->next(id), LWITEM_NULL);
    EXPECT_EQ(info->firstChild(id), LWITEM_NULL);
    EXPECT_EQ(info->parent(id), LWITEM_NULL);
    EXPECT_EQ(info->getTag(id, 1), nullptr);
    info->setTag(id, 0, "ignored");
    EXPECT_EQ(info->server(id, "ItemMotionHandler", 1), nullptr);
    EXPECT_EQ(info->chanGroup(id), nullptr);
    EXPECT_EQ(info->flags(id), 0u);
    LWDVector v = {7, 7, 7};
    info->param(id, LWIP_SCALING, 0.0, v);
    EXPECT_EQ(v[0] + v[1] + v[2], 0.0);
  }
}

TEST_F(SceneTest, ModelerHasNoSceneItemsButDirectories) {
  LWItemID robot = scene.addObject("Robot");
  LWItemID cam = scene.addCamera("Cam");
  scene.directories().setContentDirectory("/content");
  auto* sceneInfo = global<LWSceneInfo>(LWSCENEINFO_GLOBAL);
  auto* interfaceInfo = global<LWInterfaceInfo>(LWINTERFACEINFO_GLOBAL);

  host.actAs(lwhost::Application::Modeler);
  LWItemInfo* info = itemInfo();
  EXPECT_EQ(info->first(LWI_CAMERA, LWITEM_NULL), LWITEM_NULL);
  EXPECT_EQ(info->name(robot), nullptr);
  EXPECT_EQ(info->type(robot), -1);
  EXPECT_EQ(sceneInfo->renderCamera(0.0), LWITEM_NULL);
  EXPECT_EQ(interfaceInfo->itemColor(cam), 0);
  EXPECT_STREQ(dirInfo()("Objects"), "/content/Objects");

  host.actAs(lwhost::Application::Layout);
  EXPECT_EQ(info->first(LWI_OBJECT, LWITEM_NULL), robot);
  EXPECT_EQ(sceneInfo->renderCamera(0.0), cam);
}

TEST(SceneLifetime, AHostOutlivingItsSceneHandsOutNothing) {
  lwhost::Host host;
  LWItemInfo* info = nullptr;
  {
    lwhost::Scene scene(host);
    scene.addObject("Robot");
    info = static_cast<LWItemInfo*>(host.globals().lookup("LW Item Info 5", GFUSE_ACQUIRE));
    ASSERT_NE(info, nullptr);
  }
  for (const char* name : {"LW Item Info 3", "LW Scene Info 3", "LW Scene Info 6", "LW Time Info", "LW Interface Info 5",
                           "Directory Info"})
    EXPECT_EQ(host.globals().lookup(name, GFUSE_TRANSIENT), nullptr) << name;
  // A plug-in that kept the table gets nothing rather than a dangling scene.
  EXPECT_EQ(info->first(LWI_OBJECT, LWITEM_NULL), LWITEM_NULL);
  EXPECT_EQ(info->name(lwhost::itemid::FromValue(0x10000000)), nullptr);
}

// ---- Item id changes and who hears about them ----

class RenumberTest : public SceneTest {
 protected:
  void SetUp() override {
    token = scene.addRenumberListener([this](const IdChanges& c) { heard.push_back(c); });
  }
  lwhost::ListenerToken token = 0;
  std::vector<IdChanges> heard;
};

TEST_F(RenumberTest, ChainsAreOrderedSoBothKindsOfClientAgree) {
  LWItemID a = scene.addObject("A");  // 10000000
  LWItemID b = scene.addObject("B");  // 10000001
  const LWItemID c = Id(0x10000002);

  // A takes B's id while B moves on to a new one. The pair leaving an id comes first, so
  // clients following chains (A->B then B->C gives C) and clients changing each id at most once
  // both end up right.
  IdChanges made = scene.renumber({{a, b}, {b, c}});
  EXPECT_THAT(made, ElementsAre(Pair(b, c), Pair(a, b)));
  EXPECT_THAT(heard, ElementsAre(made));
  EXPECT_EQ(scene.find("A"), b);
  EXPECT_EQ(scene.find("B"), c);
  EXPECT_THAT(walk(LWI_OBJECT), ElementsAre(b, c));  // order is untouched

  // A swap is carried out even though no order helps chain followers.
  EXPECT_EQ(scene.renumber({{b, c}, {c, b}}).size(), 2u);
  EXPECT_EQ(scene.find("A"), c);
  EXPECT_EQ(scene.find("B"), b);
}

TEST_F(RenumberTest, BonesFollowTheirObject) {
  LWItemID robot = scene.addObject("Robot");   // 10000000
  LWItemID hip = scene.addBone("Hip", robot);  // 40000000
  LWItemID knee = scene.addBone("Knee", hip);  // 40010000
  LWItemID key = scene.addLight("Key", knee);

  IdChanges made = scene.renumber({{robot, Id(0x10000005)}});
  EXPECT_THAT(made, ElementsAre(Pair(robot, Id(0x10000005)), Pair(hip, Id(0x40000005)),
                                Pair(knee, Id(0x40010005))));
  EXPECT_EQ(itemInfo()->parent(key), Id(0x40010005));
  EXPECT_EQ(itemInfo()->parent(Id(0x40010005)), Id(0x40000005));
  EXPECT_THAT(walk(LWI_BONE, Id(0x10000005)), ElementsAre(Id(0x40000005), Id(0x40010005)));

  // A bone's new id names its object by the object's current index, and moves with it.
  made = scene.renumber({{Id(0x10000005), Id(0x10000001)}, {Id(0x40010005), Id(0x40070005)}});
  EXPECT_THAT(made, ElementsAre(Pair(Id(0x10000005), Id(0x10000001)), Pair(Id(0x40000005), Id(0x40000001)),
                                Pair(Id(0x40010005), Id(0x40070001))));
  EXPECT_STREQ(itemInfo()->name(Id(0x40070001)), "Knee");
}

TEST_F(RenumberTest, CompactingAfterARemovalRenumbersLikeAReload) {
  LWItemID first = scene.addObject("First");
  LWItemID second = scene.addObject("Second");
  LWItemID third = scene.addObject("Third");
  LWItemID bone = scene.addBone("Bone", third);  // 40000002
  LWItemID cam = scene.addCamera("Cam");
  scene.select({third, cam});
  scene.remove(first);

  IdChanges made = scene.compactIds();
  EXPECT_THAT(made, ElementsAre(Pair(second, first), Pair(third, second), Pair(bone, Id(0x40000001))));
  EXPECT_THAT(heard, ElementsAre(made));
  // Everything the host hands out by id follows: selection, parents.
  auto* interfaceInfo = global<LWInterfaceInfo>("LW Interface Info 5");
  EXPECT_THAT(std::vector<LWItemID>(interfaceInfo->selItems, interfaceInfo->selItems + 3),
              ElementsAre(second, cam, LWITEM_NULL));
  EXPECT_EQ(itemInfo()->parent(Id(0x40000001)), second);

  // Nothing to do is no news.
  EXPECT_TRUE(scene.compactIds().empty());
  EXPECT_EQ(heard.size(), 1u);
}

TEST_F(RenumberTest, ImpossibleMovesAreRefusedWholesale) {
  LWItemID a = scene.addObject("A");
  LWItemID b = scene.addObject("B");
  LWItemID light = scene.addLight("L");
  LWItemID bone = scene.addBone("Bone", a);
  const IdChanges refused[] = {
      {{a, b}},                                    // b keeps its id
      {{a, Id(0x10000007)}, {b, Id(0x10000007)}},  // two items, one id
      {{a, Id(0x10000007)}, {a, Id(0x10000008)}},  // one item, two ids
      {{a, Id(0x20000005)}},                       // another type
      {{light, LWITEM_RADIOSITY}},                 // pseudo light
      {{a, Id(0x10010000)}},                       // beyond what a bone id can name
      {{bone, Id(0x40000001)}},                    // names another object
      {{Id(0x30000000), Id(0x30000001)}},          // no such item
  };
  for (const IdChanges& moves : refused)
    EXPECT_THROW(scene.renumber(moves), std::invalid_argument) << lwhost::itemid::ToString(moves[0].second);
  EXPECT_THROW(scene.notifyRenumbered({{a, LWITEM_NULL}}), std::invalid_argument);
  EXPECT_TRUE(heard.empty());
  EXPECT_EQ(scene.find("A"), a);
  EXPECT_EQ(scene.find("B"), b);
  EXPECT_EQ(scene.find("Bone"), bone);
}

TEST_F(RenumberTest, ListsReachListenersVerbatimAndRemovalMidNotificationIsSafe) {
  std::vector<int> calls;
  lwhost::ListenerToken second = 0, self = 0;
  scene.addRenumberListener([&](const IdChanges&) {
    calls.push_back(1);
    scene.removeRenumberListener(second);
  });
  second = scene.addRenumberListener([&](const IdChanges&) { calls.push_back(2); });
  self = scene.addRenumberListener([&](const IdChanges&) {
    calls.push_back(3);
    scene.removeRenumberListener(self);  // removing itself while running is safe
  });

  // A chain and a "data changed" pair go out as they are.
  const IdChanges chain = {{Id(0x10000000), Id(0x10000001)}, {Id(0x10000001), Id(0x10000002)},
                           {Id(0x10000002), Id(0x10000002)}};
  scene.notifyRenumbered(chain);
  scene.notifyRenumbered(chain);
  EXPECT_THAT(calls, ElementsAre(1, 3, 1));
  EXPECT_THAT(heard, ElementsAre(chain, chain));  // the fixture's listener was called both times
  EXPECT_TRUE(scene.removeRenumberListener(token));
  EXPECT_FALSE(scene.removeRenumberListener(token));
  scene.notifyRenumbered(chain);
  EXPECT_EQ(heard.size(), 2u);
}

// ---- The records plug-ins read: scene, time and interface info ----

TEST_F(SceneTest, RenderCameraSwitchesAtTimesThroughTheSceneInfoFunction) {
  auto* info = global<LWSceneInfo>("LW Scene Info 3");
  EXPECT_EQ(info->renderCamera(0.0), LWITEM_NULL);  // no camera yet
  LWItemID main = scene.addCamera("Main");
  LWItemID close = scene.addCamera("Close");
  LWItemID wide = scene.addCamera("Wide");
  EXPECT_EQ(info->renderCamera(5.0), main);

  const double fps = info->framesPerSecond;
  scene.switchCamera(12 / fps, close);
  scene.switchCamera(24 / fps, wide);
  EXPECT_EQ(info->renderCamera(11 / fps), main);
  EXPECT_EQ(info->renderCamera(12 / fps), close);  // the switch frame itself
  double stepped = 0.0;  // a plug-in stepping frame by frame lands a hair early
  for (int frame = 0; frame < 12; ++frame) stepped += 1.0 / fps;
  ASSERT_LT(stepped, 12 / fps);
  EXPECT_EQ(info->renderCamera(stepped), close);
  EXPECT_EQ(info->renderCamera(23.5 / fps), close);
  EXPECT_EQ(info->renderCamera(24 / fps), wide);

  // A removed camera's switches go with it; ids handed out follow renumbering.
  scene.remove(close);
  EXPECT_EQ(info->renderCamera(18 / fps), main);
  scene.renumber({{wide, Id(0x30000009)}});
  EXPECT_EQ(info->renderCamera(30 / fps), Id(0x30000009));
  EXPECT_THROW(scene.switchCamera(1.0, scene.addLight("Key")), std::invalid_argument);
  scene.clearCameraSwitches();
  EXPECT_EQ(info->renderCamera(30 / fps), main);
}

TEST_F(SceneTest, TimeAndFrameStayConsistentWithTheFrameRate) {
  auto* time = global<LWTimeInfo>(LWTIMEINFO_GLOBAL);
  auto* scn = global<LWSceneInfo>("LW Scene Info 6");
  auto* ui = global<LWInterfaceInfo>("LW Interface Info 7");
  scene.setFrame(12);
  EXPECT_EQ(time->frame, 12);
  EXPECT_DOUBLE_EQ(time->time, 0.4);  // LightWave's default 30 fps
  EXPECT_DOUBLE_EQ(ui->curTime, 0.4);

  // A new rate keeps the frame and moves the time.
  scene.setFramesPerSecond(24.0);
  EXPECT_EQ(scn->framesPerSecond, 24.0);
  EXPECT_EQ(time->frame, 12);
  EXPECT_DOUBLE_EQ(time->time, 0.5);

  // Sub-frame times (motion blur passes) belong to the nearest frame.
  const std::pair<double, int> nearest[] = {{1.0 - 0.3 / 24, 24}, {1.0 + 0.3 / 24, 24}, {-0.5, -12}};
  for (const auto& [t, frame] : nearest) {
    scene.setTime(t);
    EXPECT_EQ(time->frame, frame) << t;
  }
  // A rate changed through the record moves the time too.
  scene.editSceneInfo([](LWSceneInfo& s) { s.framesPerSecond = 25.0; });
  EXPECT_DOUBLE_EQ(time->time, -12 / 25.0);

  EXPECT_THROW(scene.setFramesPerSecond(0.0), std::invalid_argument);
  EXPECT_THROW(scene.setTime(std::numeric_limits<double>::quiet_NaN()), std::invalid_argument);
  EXPECT_THROW(scene.editSceneInfo([](LWSceneInfo& s) { s.framesPerSecond = -1.0; }), std::invalid_argument);
  EXPECT_EQ(scn->framesPerSecond, 25.0);
  EXPECT_EQ(time->frame, -12);
}

TEST_F(SceneTest, SceneInfoIsKeptCurrent) {
  auto* info = global<LWSceneInfo>("LW Scene Info 3");
  EXPECT_EQ(std::make_tuple(info->frameStart, info->frameEnd, info->recursionDepth), std::make_tuple(1, 60, 16));
  for (const char* text : {info->name, info->filename, info->RGBPrefix, info->radiosityFileName})
    EXPECT_NE(text, nullptr);

  // Totals follow the objects.
  LWItemID body = scene.addObject("Body", LWITEM_NULL, {100, 90});
  scene.addObject("Head", LWITEM_NULL, {20, 12});
  EXPECT_EQ(info->numPoints, 120);
  EXPECT_EQ(info->numPolygons, 102);
  scene.remove(body);
  EXPECT_EQ(info->numPoints, 20);
  EXPECT_EQ(info->numPolygons, 12);

  scene.setName("Shot 12");
  scene.setThreadCount(3);
  EXPECT_STREQ(info->name, "Shot 12");
  EXPECT_EQ(info->numThreads, 3);
  EXPECT_THROW(scene.setThreadCount(0), std::invalid_argument);

  // Plain settings can be edited; what the scene owns is put back.
  static const char* const kStray = "not the scene's";
  scene.editSceneInfo([](LWSceneInfo& s) {
    s.frameEnd = 240;
    s.name = kStray;
    s.renderCamera = nullptr;
    s.numPoints = -5;
  });
  EXPECT_EQ(info->frameEnd, 240);
  EXPECT_STREQ(info->name, "Shot 12");
  EXPECT_NE(info->renderCamera, nullptr);
  EXPECT_EQ(info->numPoints, 20);
}

TEST_F(SceneTest, InterfaceInfoReportsSelectionAndItemColours) {
  auto* ui = global<LWInterfaceInfo>("LW Interface Info 5");
  LWItemID robot = scene.addObject("Robot");
  LWItemID key = scene.addLight("Key");
  LWItemID cam = scene.addCamera("Cam");
  LWItemID hip = scene.addBone("Hip", robot);
  auto rgba = [&](LWItemID item, unsigned int state) {
    float c[4] = {-1, -1, -1, -1};
    ui->itemColorRgba(item, state, c);
    return std::vector<float>(c, c + 4);
  };

  EXPECT_EQ(ui->selItems[0], LWITEM_NULL);
  scene.select({key, robot, key});
  EXPECT_THAT(std::vector<LWItemID>(ui->selItems, ui->selItems + 3), ElementsAre(key, robot, LWITEM_NULL));
  EXPECT_EQ(ui->itemFlags(robot), static_cast<unsigned>(LWITEMF_SELECTED));
  scene.setItemFlags(cam, LWITEMF_LOCKED | LWITEMF_SELECTED);  // selection is not a flag to set
  EXPECT_EQ(ui->itemFlags(cam), static_cast<unsigned>(LWITEMF_LOCKED));
  scene.remove(key);
  EXPECT_THAT(std::vector<LWItemID>(ui->selItems, ui->selItems + 2), ElementsAre(robot, LWITEM_NULL));
  EXPECT_THROW(scene.select({Id(0x20000005)}), std::invalid_argument);

  // An index, then a 24-bit colour and a custom colour (clamped); anything else is ignored.
  ui->setItemColorIndex(cam, 11);
  ui->setItemColorIndex(cam, 15);
  ui->setItemColorIndex(cam, 0x0200FF00);
  EXPECT_EQ(ui->itemColor(cam), 11);
  ui->setItemColorIndex(cam, 0x01FFFF00);
  EXPECT_THAT(rgba(cam, LWITEMCOL_NORMAL), ElementsAre(1, 1, 0, 1));
  EXPECT_EQ(ui->itemColor(cam), 13);  // the palette's yellow
  double blue[3] = {0.0, 0.0, 2.0};
  ui->setItemColorCustom(cam, blue);
  EXPECT_THAT(rgba(cam, LWITEMCOL_NORMAL), ElementsAre(0, 0, 1, 1));
  // Selected items are drawn lighter; "current" depends on the selection.
  EXPECT_THAT(rgba(cam, LWITEMCOL_SELECTED), ElementsAre(0.5, 0.5, 1, 1));
  EXPECT_EQ(rgba(cam, LWITEMCOL_CURRENT)[0], 0.0f);
  scene.select({cam});
  EXPECT_EQ(rgba(cam, LWITEMCOL_CURRENT)[0], 0.5f);

  // A type colour changes items of that type without their own colour only.
  const int hipColour = ui->itemColor(hip);
  float red[3] = {1.0f, 0.0f, 0.0f}, got[3] = {};
  ui->defaultItemTypeColor(LWI_OBJECT, red, 1);
  ui->defaultItemTypeColor(LWI_OBJECT, got, 0);
  EXPECT_THAT(got, ElementsAre(1.0f, 0.0f, 0.0f));
  EXPECT_EQ(ui->itemColor(robot), 11);  // nearest palette entry to red
  EXPECT_THAT(rgba(robot, LWITEMCOL_NORMAL), ElementsAre(1, 0, 0, 1));
  EXPECT_EQ(ui->itemColor(hip), hipColour);

  // The other per-item queries, for known and unknown items.
  double x = 9, y = 9;
  scene.setSchemaPosition(robot, 2.5, -1.0);
  ui->schemaPos(robot, &x, &y);
  EXPECT_EQ(std::make_pair(x, y), std::make_pair(2.5, -1.0));
  ui->schemaPos(Id(0x10000042), &x, &y);
  EXPECT_EQ(std::make_pair(x, y), std::make_pair(0.0, 0.0));
  EXPECT_EQ(ui->itemVis(robot), LWOVIS_SHADED);
  EXPECT_EQ(ui->itemVis(cam), LWIVIS_VISIBLE);
  EXPECT_FALSE(scene.setVisibility(cam, LWOVIS_TEXTURED));  // only objects have draw modes
  EXPECT_EQ(ui->itemIconScale(cam), 1.0f);
  EXPECT_EQ(ui->itemIconScale(LWITEM_NULL), 0.0f);
  EXPECT_THAT(rgba(LWITEM_NULL, LWITEMCOL_NORMAL), ElementsAre(0, 0, 0, 0));

  // Editing plain settings leaves the selection and the functions alone.
  scene.editInterfaceInfo([](LWInterfaceInfo& i) {
    i.previewEnd = 90;
    i.selItems = nullptr;
    i.itemColor = nullptr;
  });
  EXPECT_EQ(ui->previewEnd, 90);
  EXPECT_EQ(ui->selItems[0], cam);
  EXPECT_NE(ui->itemColor, nullptr);
}

// ---- "Directory Info": defaults, configuration and the strings handed out ----

TEST_F(SceneTest, ConfiguredPathsNeverEndInASeparatorAndStayPut) {
  LWDirInfoFunc* dir = dirInfo();
  lwhost::Directories& dirs = scene.directories();
  // A root stays a root, and what is under it gets exactly one separator.
  const char* const contents[][3] = {
      {"/projects/show///", "/projects/show", "/projects/show/Objects"}, {"/", "/", "/Objects"}, {"C:\\", "C:\\", "C:\\Objects"},
      {"D:\\Show\\", "D:\\Show", "D:\\Show\\Objects"}};
  for (const auto& c : contents) {
    dirs.setContentDirectory(c[0]);
    EXPECT_STREQ(dir(LWFTYPE_CONTENT), c[1]);
    EXPECT_STREQ(dir(LWFTYPE_OBJECT), c[2]);
  }
  dirs.setContentDirectory("/projects/show");
  EXPECT_STREQ(dir(LWFTYPE_INSTALL), "/projects/show");
  dirs.setSettingsDirectory("/etc/lwhost/");
  EXPECT_STREQ(dir(LWFTYPE_SETTING), "/etc/lwhost");
  dirs.setDirectory("Scripts", "/opt/scripts");  // keys beyond LightWave's list are allowed
  EXPECT_STREQ(dir("Scripts"), "/opt/scripts");
  EXPECT_EQ(dir("objects"), nullptr);  // keys are case-sensitive
  EXPECT_EQ(dir(nullptr), nullptr);
  dirs.setDirectory(LWFTYPE_RADIOSITY, "/radiosity");
  dirs.unsetDirectory(LWFTYPE_RADIOSITY);  // as LightWave leaves some keys without a path
  EXPECT_EQ(dir(LWFTYPE_RADIOSITY), nullptr);
  dirs.resetDirectory(LWFTYPE_RADIOSITY);
  EXPECT_STREQ(dir(LWFTYPE_RADIOSITY), "/projects/show/Radiosity");
  dirs.resetDirectory("Scripts");
  EXPECT_EQ(dir("Scripts"), nullptr);
  EXPECT_THROW(dirs.setContentDirectory(""), std::invalid_argument);
  EXPECT_THROW(dirs.setDirectory(LWFTYPE_IMAGE, ""), std::invalid_argument);
  EXPECT_STREQ(dir(LWFTYPE_CONTENT), "/projects/show");

  // A string handed out stays where it is through unrelated changes and the same content again.
  dirs.setContentDirectory("/a/content/directory/long/enough/for/the/heap");
  const char* scenes = dir(LWFTYPE_SCENE);
  const std::string expected = scenes;
  dirs.setDirectory(LWFTYPE_IMAGE, "/elsewhere");
  dirs.setSettingsDirectory("/settings");
  dirs.setContentDirectory("/a/content/directory/long/enough/for/the/heap/");
  EXPECT_EQ(dir(LWFTYPE_SCENE), scenes);
  EXPECT_EQ(expected, scenes);
}

// Sets, or removes when null, a variable of this process's environment.
void SetVariable(const char* name, const char* value) {
#ifdef _WIN32
  _putenv_s(name, value ? value : "");
#else
  value ? setenv(name, value, 1) : unsetenv(name);
#endif
}

// Puts HOME, XDG_CONFIG_HOME and APPDATA back afterwards.
struct EnvironmentGuard {
  std::pair<const char*, std::optional<std::string>> saved[3] = {{"XDG_CONFIG_HOME", {}}, {"HOME", {}}, {"APPDATA", {}}};
  EnvironmentGuard() {
    for (auto& [name, value] : saved)
      if (const char* old = std::getenv(name)) value = old;
  }
  ~EnvironmentGuard() {
    for (auto& [name, value] : saved) SetVariable(name, value ? value->c_str() : nullptr);
  }
};

#ifdef _WIN32
TEST(DirectoryDefaults, SettingsLiveInTheUsersApplicationData) {
  EnvironmentGuard guard;
  SetVariable("APPDATA", "C:\\Users\\tester\\AppData\\Roaming\\");
  EXPECT_STREQ(lwhost::Directories().lookup(LWFTYPE_SETTING), "C:\\Users\\tester\\AppData\\Roaming\\lwhost");
  SetVariable("APPDATA", "Roaming");  // not a place of its own
  lwhost::Directories dirs;
  dirs.setContentDirectory("D:\\content");
  EXPECT_STREQ(dirs.lookup(LWFTYPE_SETTING), "D:\\content\\Settings");
}
#else
TEST(DirectoryDefaults, SettingsLiveInTheUsersConfigHome) {
  EnvironmentGuard guard;
  SetVariable("XDG_CONFIG_HOME", "/xdg/config/");
  SetVariable("HOME", "/home/tester/");
  EXPECT_STREQ(lwhost::Directories().lookup(LWFTYPE_SETTING), "/xdg/config/lwhost");
  SetVariable("XDG_CONFIG_HOME", "relative/config");  // XDG: relative values are ignored
  EXPECT_STREQ(lwhost::Directories().lookup(LWFTYPE_SETTING), "/home/tester/.config/lwhost");
  SetVariable("XDG_CONFIG_HOME", nullptr);
  SetVariable("HOME", nullptr);
  lwhost::Directories dirs;
  dirs.setContentDirectory("/content");
  EXPECT_STREQ(dirs.lookup(LWFTYPE_SETTING), "/content/Settings");
}
#endif

}  // namespace
