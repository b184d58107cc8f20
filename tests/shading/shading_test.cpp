// Single Light Lambert and the Cache through vorn.p: the light chooser, the Lambert weighting of
// what the host's illumination reports and the chosen light kept in scenes by name; what the
// Cache passes through and when it goes upstream, counted by the host's evaluations of the
// upstream node; and both in whole renders on every render thread (ThreadSanitizer runs those).
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <thread>
#include <utility>
#include <vector>

#include "lwhost/SceneRenderer.h"
#include "support/VornNodeTest.h"

namespace {

using Colour = std::array<double, 3>;
constexpr unsigned int kLight = 0x9000, kPassThrough = 0x9000;  // each node's first control

// The host's illumination as each case wants it; it remembers which light it was asked for.
Colour arriving{0.5, 0.4, 0.2}, direction;
int lit;
LWItemID asked;
int Illuminate(LWItemID light, const LWDVector, LWDVector dir, LWDVector col) {
  asked = light;
  for (int i = 0; i < 3; ++i) dir[i] = direction[i], col[i] = arriving[i];
  return lit;
}

class LambertTest : public VornNodeTest {
 protected:
  lwhost::Scene& scene = session.scene();
  lwhost::PluginNode& node = add("vornSingleLambertNode");
  lwhost::XPanel& form = panel(node);

  // Both outputs for one report of the light; -7 shows an output left alone.
  std::pair<Colour, int> shade(Colour towardsSpot, int reached = 1, LWIlluminateFunc* host = Illuminate) {
    direction = towardsSpot;
    lit = reached;
    access.illuminate = host;
    std::pair<Colour, int> out{{-7, -7, -7}, -7};
    editor.evaluate(node, "Colour", access, out.first.data(), NOT_COLOR);
    editor.evaluate(node, "isLit", access, &out.second, NOT_INTEGER);
    return out;
  }
};

TEST_F(LambertTest, ChoosesALightAndWeightsItByTheClampedCosine) {
  const LWItemID key = scene.addLight("Key"), fill = scene.addLight("Fill");
  scene.addLight("Rim");
  EXPECT_THAT(form.popupEntries(kLight), ::testing::ElementsAre("(none)", "Key", "Fill", "Rim"));
  EXPECT_EQ(shade({0, 0, -1}), std::make_pair(Colour{-7, -7, -7}, -7)) << "(none) sets nothing";
  ASSERT_TRUE(form.choose(kLight, 2));
  EXPECT_EQ(shade({0, 0, -1}, 1, nullptr), std::make_pair(Colour{-7, -7, -7}, -7)) << "no illumination";

  EXPECT_EQ(shade({0.6, 0, -0.8}), std::make_pair(Colour{0.4, 0.32000000000000006, 0.16000000000000003}, 1));
  EXPECT_EQ(asked, fill);
  EXPECT_EQ(shade({0, 0, -3}).first, arriving) << "N.L of 3 counts as 1";
  EXPECT_EQ(shade({0, 0.6, 0.8}), std::make_pair(Colour{0, 0, 0}, 1)) << "a light behind the surface";
  EXPECT_EQ(shade({0, 0, -1}, 0), std::make_pair(Colour{-7, -7, -7}, 0)) << "an unlit spot keeps its colour";

  // Key goes and Fill is renumbered into its place: the choice follows, at its new position.
  scene.remove(key);
  scene.compactIds();
  EXPECT_EQ(form.value(kLight).integer[0], 1);
  shade({0, 0, -1});
  EXPECT_EQ(asked, scene.find("Fill"));
  lwhost::PluginNode& copy = add("vornSingleLambertNode");
  ASSERT_EQ(copy.instance().copyFrom(node.instance()), "");
  EXPECT_EQ(copy.instance().useItems(), std::vector<LWItemID>{scene.find("Fill")});
}

TEST_F(LambertTest, KeepsTheLightInScenesByName) {
  const LWItemID key = scene.addLight("Key");
  scene.addLight("Fill");
  ASSERT_TRUE(form.choose(kLight, 2));
  const std::string saved = node.instance().save(lwhost::IOMode::Ascii);
  EXPECT_THAT(saved, ::testing::HasSubstr("{ Light\n  Item \"Fill\""));
  // Reloaded after the scene renumbered Fill into Key's place, behind a block it does not know.
  scene.remove(key);
  scene.compactIds();
  lwhost::PluginNode& loaded = add("vornSingleLambertNode");
  ASSERT_EQ(loaded.instance().load(lwhost::IOMode::Ascii, "Extra 1\n" + saved), "");
  EXPECT_EQ(loaded.instance().useItems(), std::vector<LWItemID>{scene.find("Fill")});
  const std::string binary = loaded.instance().save(lwhost::IOMode::Binary);
  ASSERT_EQ(node.instance().load(lwhost::IOMode::Binary, binary), "");
  EXPECT_EQ(node.instance().save(lwhost::IOMode::Binary), binary);
}

TEST_F(LambertTest, BothShadingNodesNeedLightWave92) {
  session.host().setVersion(9, 1);
  for (const char* server : {"vornSingleLambertNode", "vornCache"})
    EXPECT_THROW(add(server), lwhost::CreationError) << server;
}


class CacheTest : public VornNodeTest {
 protected:
  lwhost::PluginNode& cache = add("vornCache");
  lwhost::XPanel& form = panel(cache);
  lwhost::Node& colour = editor.addColor(0.25, 0.5, 0.75);

  void SetUp() override {
    editor.connect(colour, "Color", cache, "Colour");
    session.scene().setThreadCount(2);
  }
  // Upstream evaluations for two requests of the Colour output at `spot`.
  std::uint64_t twice(LWNodalAccess spot) {
    colour.resetEvaluations();
    for (int i = 0; i < 2; ++i) {
      Colour out{-7, -7, -7};
      editor.evaluate(cache, "Colour", spot, out.data(), NOT_COLOR);
      EXPECT_EQ(out, (Colour{0.25, 0.5, 0.75}));
    }
    return colour.evaluations();
  }
};

TEST_F(CacheTest, PassesEachConnectionThroughAndKeepsPassThrough) {
  const std::string each = "Material/6 Scalar/2 Colour/1 Vector/3 Integer/4";
  EXPECT_EQ(Connectors(cache), each + " > " + each);
  LWNodalMaterial m{}, got;
  m.diffuse[1] = m.transparency = 0.5;
  editor.connect(editor.addMaterial(m), "Material", cache, "Material");
  ASSERT_EQ(cache.init(LWINIT_RENDER), "");
  editor.connect(editor.addVector(1, 2, 3), "Vector", cache, "Vector");
  for (int pass = 0; pass < 3; ++pass) {  // a miss, a hit, then a miss at another spot
    if (pass == 2) editor.disconnect(cache, "Vector"), access.wPos[0] = 5;
    std::memset(&got, 0x55, sizeof got);
    double v[3] = {-7, -7, -7};
    editor.evaluate(cache, "Material", access, &got, NOT_MATERIAL);
    editor.evaluate(cache, "Vector", access, v, NOT_VECTOR);
    EXPECT_EQ(std::memcmp(&got, &m, sizeof m), 0);
    EXPECT_EQ(v[1], pass < 2 ? 2.0 : 0.0) << "an unconnected input gives a cleared value";
  }
  ASSERT_TRUE(form.setInteger(kPassThrough, 5));
  const std::string on = cache.instance().save(lwhost::IOMode::Binary);
  EXPECT_EQ(on, std::string("THRU\0\1\1", 7));
  lwhost::PluginNode& copy = add("vornCache");
  ASSERT_EQ(copy.instance().copyFrom(cache.instance()), "");
  EXPECT_EQ(copy.instance().save(lwhost::IOMode::Binary), on);
  ASSERT_EQ(copy.instance().load(lwhost::IOMode::Binary, std::string("THRU\0\1\2", 7)), "");
  EXPECT_EQ(copy.instance().save(lwhost::IOMode::Binary).back(), '\0') << "on is exactly 1";
}

TEST_F(CacheTest, GoesUpstreamOncePerSpotThreadAndRayLevel) {
  ASSERT_EQ(cache.init(LWINIT_RENDER), "");
  access.wPos[0] = 1.0;
  EXPECT_EQ(twice(access), 1u);
  EXPECT_EQ(twice(access), 0u);
  LWNodalAccess other = access;
  other.ResourceContextIndex = 1;
  EXPECT_EQ(twice(other), 1u);
  other.bounces = 16;  // the deepest level of a recursion depth of 16
  EXPECT_EQ(twice(other), 1u);
  EXPECT_EQ(twice(access), 0u) << "thread 0, level 0 still holds its spot";

  // Every field of the key tells spots apart; on 64-bit hosts the object's upper half too.
  for (void (*change)(LWNodalAccess&) :
       {+[](LWNodalAccess& a) { a.wPos[2] = 1e-300; }, +[](LWNodalAccess& a) { a.wPos[1] = 1e-300; },
        +[](LWNodalAccess& a) { a.polygon = reinterpret_cast<LWPolID>(std::uintptr_t{7}); },
        +[](LWNodalAccess& a) { a.objID = reinterpret_cast<LWItemID>(std::uintptr_t{0x10000001}); },
        +[](LWNodalAccess& a) { a.objID = reinterpret_cast<LWItemID>(std::uintptr_t(0x110000001ull)); }}) {
    change(access);
    EXPECT_EQ(twice(access), 1u);
  }
  // Threads and levels the render did not announce, and negative ones, have no slot.
  for (auto [thread, level] : {std::pair{2, 0}, {0, 17}, {-1, 0}, {0, -1}}) {
    other.ResourceContextIndex = thread;
    other.bounces = level;
    EXPECT_EQ(twice(other), 2u) << thread << " " << level;
  }
}

TEST_F(CacheTest, GoesUpstreamEveryTimeWhenNotCaching) {
  EXPECT_EQ(twice(access), 2u) << "before a render";
  ASSERT_EQ(cache.init(LWINIT_RENDER), "");
  // Right after Init, the zero spot (origin, no ids) matches the cleared key.
  Colour out{-7, -7, -7};
  LWNodalAccess zero = access;
  zero.objID = LWITEM_NULL;
  editor.evaluate(cache, "Colour", zero, out.data(), NOT_COLOR);
  EXPECT_EQ(out, (Colour{0, 0, 0}));
  ASSERT_TRUE(form.setInteger(kPassThrough, 1));
  EXPECT_EQ(twice(access), 2u) << "pass through";
  ASSERT_TRUE(form.setInteger(kPassThrough, 0));
  EXPECT_EQ(twice(access), 1u);
  cache.cleanup();
  EXPECT_EQ(twice(access), 2u) << "after the render";
  ASSERT_EQ(cache.init(LWINIT_PREVIEW), "");
  EXPECT_EQ(twice(access), 2u) << "preview";

  LWSceneInfo noThreads = session.scene().sceneInfo();
  noThreads.numThreads = 0;
  session.host().globals().provide("LW Scene Info 3", &noThreads);
  ASSERT_EQ(cache.init(LWINIT_RENDER), "");
  EXPECT_EQ(twice(access), 2u) << "no threads";
  session.host().globals().provide("LW Scene Info 3", const_cast<LWSceneInfo*>(&session.scene().sceneInfo()));
  session.host().actAs(lwhost::Application::Modeler);
  cache.activateInterface();  // tells the module where it runs
  ASSERT_EQ(cache.init(LWINIT_RENDER), "");
  EXPECT_EQ(twice(access), 2u) << "modeller";
}

using ShadingRender = VornNodeTest;

TEST_F(ShadingRender, LambertAndCacheMatchTheRenderersLightOnAllThreads) {
  lwhost::Scene& scene = session.scene();
  const double origin[3] = {0, 0, 0};
  scene.setAmbient(origin, 0.0);
  const LWItemID camera = scene.addCamera("Camera"), ball = scene.addObject("Ball");
  const LWItemID mirror = scene.addObject("Mirror"), key = scene.addLight("Key");
  scene.setPosition(camera, 0.0, 4.0, -12.0);
  scene.aim(camera, origin);
  scene.setPosition(mirror, 0.0, -1.0, 0.0);
  scene.setObjectLook(mirror, {lwhost::ObjectShape::Plane, {4.0, 1.0, 4.0}});
  scene.setLightLook(key, {LWLIGHT_POINT});
  scene.setPosition(key, -3.0, 5.0, -4.0);
  scene.setPosition(ball, 0.5, 0.0, 0.0);  // so that world and object positions differ

  lwhost::PluginNode &lambert = add("vornSingleLambertNode"), &cache = add("vornCache");
  ASSERT_TRUE(panel(lambert).choose(kLight, 1));
  editor.connect(lambert, "Colour", cache, "Colour");
  const LWNodalMaterial glass{{}, {}, {0.5, 0.5, 0.5}, {}, 0.0};
  const lwhost::Surface mirrorSurface{editor.addMaterial(glass).outputs().front().get()};

  auto render = [&](lwhost::NodeOutput* network) {
    const lwhost::Surface ballSurface{network, {1.0, 1.0, 1.0}, network != nullptr};
    lwhost::SceneRenderOptions options{64, 48, std::max(2, static_cast<int>(std::thread::hardware_concurrency()))};
    return lwhost::SceneRenderer(editor, scene, {{ball, ballSurface}, {mirror, mirrorSurface}})
        .renderFrame(options, 0)
        .encodePng();
  };
  const std::string own = render(nullptr);
  EXPECT_EQ(render(lambert.output("Colour")), own);
  EXPECT_EQ(render(cache.output("Colour")), own);
  EXPECT_EQ(render(cache.output("Colour")), own) << "a second render starts from a fresh cache";
}

}  // namespace
