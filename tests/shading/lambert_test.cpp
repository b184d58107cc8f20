// Single Light Lambert through vorn.p: the light chooser, the Lambert weighting of what the
// host's illumination reports, and the chosen light kept in scenes by name.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <lwnodes.h>

#include <array>
#include <string>
#include <vector>

#include "lwhost/Session.h"
#include "support/ModulePaths.h"

namespace {

using ::testing::ElementsAre;
using Colour = std::array<double, 3>;
constexpr unsigned int kLight = 0x9000;

// The host's illumination as the test wants it: what arrives, from where, and whether it does.
struct Illumination {
  static inline Colour colour, direction;
  static inline int lit;
  static inline LWItemID asked;
  static inline Colour askedAt;

  static int Illuminate(LWItemID light, const LWDVector position, LWDVector dir, LWDVector col) {
    asked = light;
    for (int i = 0; i < 3; ++i) askedAt[i] = position[i], dir[i] = direction[i], col[i] = colour[i];
    return lit;
  }
};

class LambertTest : public ::testing::Test {
 protected:
  lwhost::Session session;
  lwhost::ModuleFile& vorn = session.load(testpaths::kVorn);
  lwhost::Scene& scene = session.scene();
  LWNodalAccess access = Spot();

  static LWNodalAccess Spot() {
    const double at[3] = {1.0, 2.0, 3.0}, up[3] = {0.0, 0.0, 1.0};
    LWNodalAccess a = lwhost::MakeNodalAccess(at, up);
    a.illuminate = Illumination::Illuminate;
    return a;
  }
  lwhost::PluginNode& add() { return session.nodes().addPluginNode(vorn, "vornSingleLambertNode"); }
  lwhost::XPanel& panelOf(lwhost::PluginNode& node) {
    return *session.xpanels().find(node.activateInterface().local.panel);
  }
  // What the node writes for one light report; -7 shows an output left alone.
  std::pair<Colour, int> shade(lwhost::PluginNode& node, Colour direction, int lit = 1) {
    Illumination::colour = {0.5, 0.4, 0.2};
    Illumination::direction = direction;
    Illumination::lit = lit;
    Colour colour{-7, -7, -7};
    int isLit = -7;
    EXPECT_TRUE(session.nodes().evaluate(node, "Colour", access, colour.data(), NOT_COLOR));
    EXPECT_TRUE(session.nodes().evaluate(node, "isLit", access, &isLit, NOT_INTEGER));
    return {colour, isLit};
  }
};

TEST_F(LambertTest, ChooserListsTheScenesLightsAndFollowsThem) {
  const LWItemID key = scene.addLight("Key"), fill = scene.addLight("Fill");
  scene.addLight("Rim");
  scene.addObject("Ball");
  lwhost::PluginNode& node = add();
  EXPECT_THAT(node.outputs(), ::testing::SizeIs(2));
  EXPECT_EQ(node.outputs()[0]->name() + node.outputs()[1]->name(), "ColourisLit");
  EXPECT_EQ(node.color(), (std::array<int, 3>{11, 8, 51}));
  lwhost::XPanel& panel = panelOf(node);
  EXPECT_THAT(panel.popupEntries(kLight), ElementsAre("(none)", "Key", "Fill", "Rim"));
  EXPECT_EQ(panel.control(kLight)->controlClass, "iPopChoice");

  ASSERT_TRUE(panel.choose(kLight, 2));
  shade(node, {0, 0, -1});
  EXPECT_EQ(Illumination::asked, fill);
  EXPECT_EQ(Illumination::askedAt, (Colour{1, 2, 3})) << "asked for the spot's world position";

  // Key goes and Fill is renumbered into its place: the choice follows, and the panel shows
  // Fill at its new position.
  scene.remove(key);
  scene.compactIds();
  EXPECT_EQ(panel.value(kLight).integer[0], 1);
  shade(node, {0, 0, -1});
  EXPECT_EQ(Illumination::asked, scene.find("Fill"));
  // Choosing past the last light keeps the light; a copy keeps it too.
  ASSERT_TRUE(panel.setInteger(kLight, 9));
  lwhost::PluginNode& copy = add();
  ASSERT_EQ(copy.instance().copyFrom(node.instance()), "");
  shade(copy, {0, 0, -1});
  EXPECT_EQ(Illumination::asked, scene.find("Fill"));

  session.host().actAs(lwhost::Application::Modeler);
  EXPECT_THAT(panel.popupEntries(kLight), ElementsAre("(none)"));
}

TEST_F(LambertTest, WeightsTheArrivingLightByTheClampedCosine) {
  scene.addLight("Key");
  lwhost::PluginNode& node = add();
  lwhost::XPanel& panel = panelOf(node);

  // "(none)" and a host without illumination set nothing.
  EXPECT_EQ(shade(node, {0, 0, -1}), std::make_pair(Colour{-7, -7, -7}, -7));
  ASSERT_TRUE(panel.choose(kLight, 1));
  access.illuminate = nullptr;
  EXPECT_EQ(shade(node, {0, 0, -1}), std::make_pair(Colour{-7, -7, -7}, -7));
  access.illuminate = Illumination::Illuminate;

  const auto [oblique, lit] = shade(node, {0.6, 0.0, -0.8});
  EXPECT_EQ(lit, 1);
  for (int i = 0; i < 3; ++i) EXPECT_DOUBLE_EQ(oblique[i], Illumination::colour[i] * 0.8);
  EXPECT_EQ(shade(node, {0, 0, -1}).first, (Colour{0.5, 0.4, 0.2}));
  EXPECT_EQ(shade(node, {0, 0, -3}).first, (Colour{0.5, 0.4, 0.2})) << "N.L of 3 counts as 1";
  EXPECT_EQ(shade(node, {0, 0.6, 0.8}).first, (Colour{0, 0, 0})) << "a light behind the surface";
  // A light that does not reach the spot leaves the colour as the requester had it.
  EXPECT_EQ(shade(node, {0, 0, -1}, 0), std::make_pair(Colour{-7, -7, -7}, 0));
  EXPECT_EQ(shade(node, {0, 0, -1}, 2).second, 2) << "isLit is the host's answer as it is";
}

TEST_F(LambertTest, KeepsTheLightInScenesByName) {
  const LWItemID key = scene.addLight("Key");
  scene.addLight("Fill");
  lwhost::PluginNode& node = add();
  ASSERT_TRUE(panelOf(node).choose(kLight, 2));
  for (lwhost::IOMode mode : {lwhost::IOMode::Ascii, lwhost::IOMode::Binary}) {
    const std::string saved = node.instance().save(mode);
    lwhost::PluginNode& loaded = add();
    ASSERT_EQ(loaded.instance().load(mode, saved), "");
    EXPECT_EQ(loaded.instance().save(mode), saved);
  }
  const std::string saved = node.instance().save(lwhost::IOMode::Ascii);
  EXPECT_THAT(saved, ::testing::HasSubstr("{ Light\n"));
  EXPECT_THAT(saved, ::testing::HasSubstr("Item \"Fill\""));

  // Reloaded after the scene renumbered Fill into Key's place, and behind an unknown block.
  scene.remove(key);
  scene.compactIds();
  lwhost::PluginNode& reloaded = add();
  ASSERT_EQ(reloaded.instance().load(lwhost::IOMode::Ascii, "Extra 1\n" + saved), "");
  EXPECT_EQ(reloaded.instance().useItems(), std::vector<LWItemID>{scene.find("Fill")});
  EXPECT_EQ(panelOf(reloaded).value(kLight).integer[0], 1);
}

TEST_F(LambertTest, BothNodesNeedLightWave92) {
  for (const char* server : {"vornSingleLambertNode", "vornCache"}) {
    session.host().setVersion(9, 1);
    EXPECT_THROW(
        try { session.nodes().addPluginNode(vorn, server); } catch (const lwhost::CreationError& e) {
          EXPECT_STREQ(e.what(), "This plugin needs a newer version of LightWave 3D (9.2 as a minimum)");
          throw;
        },
        lwhost::CreationError);
    session.host().setVersion(9, 2);
    EXPECT_NO_THROW(session.nodes().addPluginNode(vorn, server)) << server;
  }
}

}  // namespace
