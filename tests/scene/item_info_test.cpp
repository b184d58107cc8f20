// The scene's items as a plug-in walks them through "LW Item Info".
#include <lwenvel.h>

#include <string>
#include <vector>

#include "SceneTestSupport.h"

namespace {

using ::testing::ElementsAre;

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

}  // namespace
