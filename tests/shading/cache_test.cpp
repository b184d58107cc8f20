// The Cache node through vorn.p: what it passes through, and when it goes upstream, counted by
// the host's evaluations of the upstream node.
#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

#include "support/VornNodeTest.h"

namespace {

using Colour = std::array<double, 3>;
constexpr unsigned int kPassThrough = 0x9000;

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
    if (pass == 2) {
      editor.disconnect(cache, "Vector");
      access.wPos[0] = 5;
    }
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

}  // namespace
