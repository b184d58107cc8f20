// The Cache node through vorn.p: what it passes through, when it goes upstream (counted by the
// host's evaluations of the upstream nodes) and what it keeps in scenes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <lwnodes.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "lwhost/Session.h"
#include "support/ModulePaths.h"

namespace {

using Colour = std::array<double, 3>;
constexpr unsigned int kPassThrough = 0x9000;

class CacheTest : public ::testing::Test {
 protected:
  lwhost::Session session;
  lwhost::ModuleFile& vorn = session.load(testpaths::kVorn);
  lwhost::NodeEditor& editor = session.nodes();
  lwhost::PluginNode& cache = editor.addPluginNode(vorn, "vornCache");
  lwhost::Node& colour = editor.addColor(0.25, 0.5, 0.75);
  lwhost::Node& scalar = editor.addScalar(0.125);
  LWNodalAccess access = Spot(1.0, 2.0, 3.0);

  static LWNodalAccess Spot(double x, double y, double z) {
    const double at[3] = {x, y, z}, up[3] = {0.0, 0.0, 1.0};
    return lwhost::MakeNodalAccess(at, up);
  }
  void SetUp() override {
    editor.connect(colour, "Color", cache, "Colour");
    editor.connect(scalar, "Scalar", cache, "Scalar");
    session.scene().setThreadCount(2);
  }
  // How often one request for the Cache's Colour output went upstream.
  std::uint64_t upstreamFor(const LWNodalAccess& spot) {
    colour.resetEvaluations();
    Colour out{-7, -7, -7};
    LWNodalAccess a = spot;
    EXPECT_TRUE(editor.evaluate(cache, "Colour", a, out.data(), NOT_COLOR));
    EXPECT_EQ(out, (Colour{0.25, 0.5, 0.75}));
    return colour.evaluations();
  }
};

TEST_F(CacheTest, PassesEveryConnectionThroughInOrder) {
  std::vector<std::string> in, out;
  for (const auto& i : cache.inputs()) in.push_back(i->name() + ":" + std::to_string(i->type()));
  for (const auto& o : cache.outputs()) out.push_back(o->name() + ":" + std::to_string(o->type()));
  EXPECT_THAT(in, ::testing::ElementsAre("Material:6", "Scalar:2", "Colour:1", "Vector:3", "Integer:4"));
  EXPECT_EQ(in, out);
  EXPECT_EQ(cache.color(), (std::array<int, 3>{11, 8, 51}));
  EXPECT_EQ(cache.flags(), 1u);

  LWNodalMaterial m{};
  m.diffuse[1] = 0.5;
  m.transparency = 0.25;
  editor.connect(editor.addMaterial(m), "Material", cache, "Material");
  editor.connect(editor.addVector(1, -2, 3), "Vector", cache, "Vector");
  editor.connect(editor.addInteger(-42), "Integer", cache, "Integer");
  ASSERT_EQ(cache.init(LWINIT_RENDER), "");
  for (int pass = 0; pass < 2; ++pass) {  // a miss, then a hit
    LWNodalMaterial got;
    std::memset(&got, 0x55, sizeof got);
    Colour vector{}, c{};
    double s = 0;
    int i = 0;
    ASSERT_TRUE(editor.evaluate(cache, "Material", access, &got, NOT_MATERIAL));
    EXPECT_EQ(std::memcmp(&got, &m, sizeof m), 0);
    ASSERT_TRUE(editor.evaluate(cache, "Vector", access, vector.data(), NOT_VECTOR));
    ASSERT_TRUE(editor.evaluate(cache, "Integer", access, &i, NOT_INTEGER));
    ASSERT_TRUE(editor.evaluate(cache, "Scalar", access, &s, NOT_SCALAR));
    ASSERT_TRUE(editor.evaluate(cache, "Colour", access, c.data(), NOT_COLOR));
    EXPECT_EQ(vector, (Colour{1, -2, 3}));
    EXPECT_EQ(i, -42);
    EXPECT_EQ(s, 0.125);
    EXPECT_EQ(c, (Colour{0.25, 0.5, 0.75}));
  }
  // An unconnected input gives a cleared value, not the requester's.
  editor.disconnect(cache, "Integer");
  int i = -7;
  access.wPos[0] = 9;
  ASSERT_TRUE(editor.evaluate(cache, "Integer", access, &i, NOT_INTEGER));
  EXPECT_EQ(i, 0);
}

TEST_F(CacheTest, GoesUpstreamOncePerSpotThreadAndRayLevel) {
  EXPECT_EQ(upstreamFor(access) + upstreamFor(access), 2u) << "no render yet";
  ASSERT_EQ(cache.init(LWINIT_RENDER), "");
  EXPECT_EQ(upstreamFor(access), 1u);
  EXPECT_EQ(upstreamFor(access), 0u);
  scalar.resetEvaluations();
  double s = 0;
  editor.evaluate(cache, "Scalar", access, &s, NOT_SCALAR);
  EXPECT_EQ(scalar.evaluations(), 1u) << "each output keeps its own record";

  LWNodalAccess other = access;
  other.ResourceContextIndex = 1;
  EXPECT_EQ(upstreamFor(other), 1u);
  other.bounces = 16;  // the deepest level of a recursion depth of 16
  EXPECT_EQ(upstreamFor(other), 1u);
  EXPECT_EQ(upstreamFor(other), 0u);
  EXPECT_EQ(upstreamFor(access), 0u) << "thread 0, level 0 still holds its spot";

  // Any field of the key tells spots apart; on 64-bit hosts that includes the object id's
  // upper half.
  std::vector<void (*)(LWNodalAccess&)> changes{
      [](LWNodalAccess& a) { a.wPos[2] += 1e-9; },
      [](LWNodalAccess& a) { a.polygon = reinterpret_cast<LWPolID>(std::uintptr_t{7}); },
      [](LWNodalAccess& a) { a.objID = reinterpret_cast<LWItemID>(std::uintptr_t{0x10000001}); }};
  if (sizeof(void*) == 8)
    changes.push_back([](LWNodalAccess& a) { a.objID = reinterpret_cast<LWItemID>(std::uintptr_t(0xFFFFFFFF10000001ull)); });
  for (auto change : changes) {
    change(access);
    EXPECT_EQ(upstreamFor(access), 1u);
  }

  // Threads and levels the render did not announce, and negative ones, go upstream every time.
  for (auto [thread, level] : {std::pair{2, 0}, {0, 17}, {-1, 0}, {0, -1}}) {
    other.ResourceContextIndex = thread;
    other.bounces = level;
    EXPECT_EQ(upstreamFor(other) + upstreamFor(other), 2u) << thread << " " << level;
  }
}

TEST_F(CacheTest, GoesUpstreamEveryTimeWhenNotCaching) {
  auto twice = [&] { return upstreamFor(access) + upstreamFor(access); };
  lwhost::XPanel& panel = *session.xpanels().find(cache.activateInterface().local.panel);
  ASSERT_EQ(cache.init(LWINIT_RENDER), "");
  ASSERT_TRUE(panel.setInteger(kPassThrough, 1));
  EXPECT_EQ(twice(), 2u) << "pass through";
  ASSERT_TRUE(panel.setInteger(kPassThrough, 0));
  EXPECT_EQ(twice(), 1u);
  cache.cleanup();
  EXPECT_EQ(twice(), 2u) << "after the render";
  ASSERT_EQ(cache.init(LWINIT_PREVIEW), "");
  EXPECT_EQ(twice(), 2u) << "preview";

  LWSceneInfo noThreads = session.scene().sceneInfo();
  noThreads.numThreads = 0;
  session.host().globals().provide("LW Scene Info 3", &noThreads);
  ASSERT_EQ(cache.init(LWINIT_RENDER), "");
  EXPECT_EQ(twice(), 2u) << "no threads";
  session.host().globals().provide("LW Scene Info 3", const_cast<LWSceneInfo*>(&session.scene().sceneInfo()));

  session.host().actAs(lwhost::Application::Modeler);
  cache.activateInterface();
  ASSERT_EQ(cache.init(LWINIT_RENDER), "");
  EXPECT_EQ(twice(), 2u) << "modeller";
}

TEST_F(CacheTest, AFreshRenderTakesTheZeroSpotForCached) {
  ASSERT_EQ(cache.init(LWINIT_RENDER), "");
  LWNodalAccess zero = Spot(0, 0, 0);
  zero.objID = LWITEM_NULL;
  Colour out{-7, -7, -7};
  colour.resetEvaluations();
  ASSERT_TRUE(editor.evaluate(cache, "Colour", zero, out.data(), NOT_COLOR));
  EXPECT_EQ(colour.evaluations(), 0u);
  EXPECT_EQ(out, (Colour{0, 0, 0}));
}

TEST_F(CacheTest, KeepsPassThroughInScenesAndCopies) {
  lwhost::XPanel& panel = *session.xpanels().find(cache.activateInterface().local.panel);
  ASSERT_TRUE(panel.setInteger(kPassThrough, 5));
  EXPECT_EQ(panel.value(kPassThrough).integer[0], 1);
  const std::string on = cache.instance().save(lwhost::IOMode::Binary);
  EXPECT_EQ(on, std::string("THRU\0\1\1", 7));
  lwhost::PluginNode& loaded = editor.addPluginNode(vorn, "vornCache");
  for (const auto& [data, expected] : {std::pair{on, 1}, {std::string("THRU\0\1\2", 7), 0}, {on, 1}}) {
    ASSERT_EQ(loaded.instance().load(lwhost::IOMode::Binary, data), "");
    EXPECT_EQ(session.xpanels().find(loaded.activateInterface().local.panel)->value(kPassThrough).integer[0],
              expected);
  }
  lwhost::PluginNode& copy = editor.addPluginNode(vorn, "vornCache");
  ASSERT_EQ(copy.instance().copyFrom(cache.instance()), "");
  EXPECT_EQ(copy.instance().save(lwhost::IOMode::Binary), on);
}

// Two threads shade the same spots at once: each goes upstream once per spot, into its own
// slot (ThreadSanitizer watches this one too), while a Single Light Lambert lights the spots.
TEST_F(CacheTest, RendersOnTwoThreadsAtOnce) {
  lwhost::PluginNode& lambert = editor.addPluginNode(vorn, "vornSingleLambertNode");
  session.scene().addLight("Key");
  ASSERT_TRUE(session.xpanels().find(lambert.activateInterface().local.panel)->choose(0x9000, 1));
  ASSERT_EQ(cache.init(LWINIT_RENDER), "");
  constexpr int kSpots = 3000;
  auto render = [&](int thread) {
    LWNodalAccess a = access;
    a.ResourceContextIndex = thread;
    a.illuminate = [](LWItemID, const LWDVector, LWDVector dir, LWDVector col) {
      dir[2] = -0.5, col[0] = col[1] = col[2] = 1.0;
      return 1;
    };
    for (int i = 0; i < kSpots; ++i) {
      a.wPos[0] = i;
      Colour c{}, lit{};
      for (int twice = 0; twice < 2; ++twice) editor.evaluate(cache, "Colour", a, c.data(), NOT_COLOR);
      editor.evaluate(lambert, "Colour", a, lit.data(), NOT_COLOR);
      if (c != Colour{0.25, 0.5, 0.75} || lit != Colour{0.5, 0.5, 0.5}) ADD_FAILURE() << "thread " << thread << " spot " << i;
    }
  };
  colour.resetEvaluations();
  std::thread other(render, 1);
  render(0);
  other.join();
  EXPECT_EQ(colour.evaluations(), 2u * kSpots);
}

}  // namespace
