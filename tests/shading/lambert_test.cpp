// Single Light Lambert through vorn.p: the light chooser, the Lambert weighting of what the
// host's illumination reports, and the chosen light kept in scenes by name.
#include <array>
#include <vector>

#include "support/VornNodeTest.h"

namespace {

using ::testing::ElementsAre;
using Colour = std::array<double, 3>;
constexpr unsigned int kLight = 0x9000;

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
  EXPECT_THAT(form.popupEntries(kLight), ElementsAre("(none)", "Key", "Fill", "Rim"));
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

}  // namespace
