// Picking scene items from pop-ups and keeping the choice in scenes by name, through the
// fixture module; and the directories the framework hands out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lwhost/Session.h"
#include "support/FixtureProbe.h"
#include "support/ModulePaths.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr unsigned int kLight = 0x9000, kTree = 0x9001, kObjects = 0x9002, kCameras = 0x9003, kBones = 0x9004,
                       kZoom = 0x9005;

class ItemSelectionTest : public ::testing::Test {
 protected:
  lwhost::Session session;
  const lwhost::ModuleFile& fixture = session.load(testpaths::kFixture);
  lwhost::Scene& scene = session.scene();

  lwhost::PluginNode& addNode() { return session.nodes().addPluginNode(fixture, "fixtureItemRef"); }

  lwhost::XPanel& panelOf(lwhost::PluginNode& node) {
    lwhost::InterfaceActivation ia = node.activateInterface();
    return *session.xpanels().find(ia.local.panel);
  }

  int colourOf(LWItemID id) {
    auto* ui = static_cast<LWInterfaceInfo*>(session.host().globals().peek("LW Interface Info 5"));
    return ui->itemColor(id);
  }
};

TEST_F(ItemSelectionTest, FlatPopupListsLightsAfterNone) {
  scene.addLight("Key");
  scene.addLight("Fill");
  scene.addLight("Rim");
  scene.addObject("Box");
  lwhost::PluginNode& node = addNode();
  lwhost::XPanel& panel = panelOf(node);
  EXPECT_THAT(panel.popupEntries(kLight), ElementsAre("(none)", "Key", "Fill", "Rim"));

  ASSERT_TRUE(panel.choose(kLight, 2));
  EXPECT_EQ(node.instance().useItems(), std::vector<LWItemID>{scene.find("Fill")});
  // "(none)": the only identifier is null, which is also the end mark, so nothing is in use.
  ASSERT_TRUE(panel.choose(kLight, 0));
  EXPECT_TRUE(node.instance().useItems().empty());

  // The modeller has no scene items: only "(none)" is offered.
  session.host().actAs(lwhost::Application::Modeler);
  EXPECT_THAT(panel.popupEntries(kLight), ElementsAre("(none)"));
}

TEST_F(ItemSelectionTest, HierarchyIsIndentedWithIconsOnlyInLayout) {
  LWItemID box = scene.addObject("Box");
  LWItemID lamp = scene.addLight("Lamp", box);  // listed although its parent is not
  LWItemID sun = scene.addLight("Sun");
  LWItemID bulb = scene.addLight("Bulb", lamp);
  scene.addCamera("Cam");
  lwhost::PluginNode& node = addNode();
  lwhost::XPanel& panel = panelOf(node);
  auto label = [&](int indent, LWItemID id, const char* name) {
    return " \x03(g:" + std::to_string(indent) + ")\x03(i:159, " + std::to_string(colourOf(id)) + ")" + name;
  };
  EXPECT_THAT(panel.popupEntries(kTree),
              ElementsAre(label(10, lamp, "Lamp"), label(20, bulb, "Bulb"), label(0, sun, "Sun")));
  // Each type has its icon; bones are reached through their objects.
  LWItemID cam = scene.find("Cam"), bone = scene.addBone("Bone", box);
  node.activateInterface();  // rebuilds the lists
  auto icon = [&](int indent, const char* code, LWItemID id, const char* name) {
    return " \x03(g:" + std::to_string(indent) + ")\x03(i:" + code + ", " + std::to_string(colourOf(id)) + ")" + name;
  };
  EXPECT_THAT(panel.popupEntries(kObjects), ElementsAre(icon(0, "160", box, "Box")));
  EXPECT_THAT(panel.popupEntries(kCameras), ElementsAre(icon(0, "162", cam, "Cam")));
  EXPECT_THAT(panel.popupEntries(kBones), ElementsAre(icon(10, "161", bone, "Bone")));

  // A click in the thumbnail reaches the node's zoom handler, found under the control's id.
  ASSERT_TRUE(panel.zoom(kZoom, 12, 30, 2));
  EXPECT_EQ(node.instance().description(), "zoom 9005 12,30 2");

  // A render node lists the same hierarchy without icons.
  session.host().actAs(lwhost::Application::ScreamerNet);
  node.activateInterface();  // rebuilds the list
  EXPECT_THAT(panel.popupEntries(kTree),
              ElementsAre(" \x03(g:10)Lamp", " \x03(g:20)Bulb", " \x03(g:0)Sun"));
}

TEST_F(ItemSelectionTest, ChoiceIsFoundAgainByNameAfterIdsChange) {
  LWItemID key = scene.addLight("Key");
  lwhost::PluginNode& node = addNode();
  ASSERT_TRUE(panelOf(node).choose(kLight, 1));
  const std::string saved = node.instance().save(lwhost::IOMode::Ascii);
  EXPECT_THAT(saved, HasSubstr("Item \"Key\""));
  EXPECT_THAT(saved, HasSubstr("ItemID 20000000"));
  EXPECT_THAT(saved, HasSubstr("ItemType 00000001"));

  // Another light takes Key's old number; Key comes back under a new one.
  scene.remove(key);
  LWItemID other = scene.addLight("Other");
  LWItemID key2 = scene.addLight("Key");
  ASSERT_EQ(other, key);
  ASSERT_NE(key2, key);
  lwhost::PluginNode& reloaded = addNode();
  EXPECT_EQ(reloaded.instance().load(lwhost::IOMode::Ascii, saved), "");
  EXPECT_EQ(reloaded.instance().useItems(), std::vector<LWItemID>{key2});

  // Two items of that name: the first in the host's order wins.
  LWItemID twin = scene.addLight("Key");
  lwhost::PluginNode& first = addNode();
  EXPECT_EQ(first.instance().load(lwhost::IOMode::Ascii, saved), "");
  EXPECT_EQ(first.instance().useItems(), std::vector<LWItemID>{key2});
  scene.remove(twin);

  // Without an item of that name the stored number is kept.
  scene.rename(key2, "Gone");
  lwhost::PluginNode& orphan = addNode();
  EXPECT_EQ(orphan.instance().load(lwhost::IOMode::Binary, node.instance().save(lwhost::IOMode::Binary)), "");
  EXPECT_EQ(orphan.instance().useItems(), std::vector<LWItemID>{key});

  // In the modeller the stored number is kept as it is, even when the name would be found (the
  // modeller gives plug-ins no item functions, so ask the description).
  scene.rename(key2, "Key");
  session.host().actAs(lwhost::Application::Modeler);
  lwhost::PluginNode& modelled = addNode();
  EXPECT_EQ(modelled.instance().load(lwhost::IOMode::Ascii, saved), "");
  EXPECT_EQ(modelled.instance().description(), "Key 20000000");
}

TEST_F(ItemSelectionTest, EmptyOrVanishedChoiceIsSavedWithoutItsOldName) {
  LWItemID key = scene.addLight("Key");
  lwhost::PluginNode& node = addNode();
  const std::string saved = node.instance().save(lwhost::IOMode::Ascii);
  EXPECT_THAT(saved, HasSubstr("Item \"(none)\""));
  EXPECT_THAT(saved, HasSubstr("ItemID 00000000"));
  lwhost::PluginNode& loaded = addNode();
  EXPECT_EQ(loaded.instance().load(lwhost::IOMode::Ascii, saved), "");
  EXPECT_EQ(loaded.instance().description(), "(none) 00000000");

  // An item the host no longer names loses its name before saving; its number is kept.
  ASSERT_TRUE(panelOf(node).choose(kLight, 1));
  scene.remove(key);
  const std::string stale = node.instance().save(lwhost::IOMode::Ascii);
  EXPECT_THAT(stale, Not(HasSubstr("Item \"")));
  EXPECT_THAT(stale, HasSubstr("ItemID 20000000"));
}

TEST_F(ItemSelectionTest, RenumberedItemsFollowThroughTheHost) {
  LWItemID a = scene.addLight("A");
  LWItemID b = scene.addLight("B");
  lwhost::PluginNode& node = addNode();
  ASSERT_TRUE(panelOf(node).choose(kLight, 2));
  // The scene renumbers B, and the node's reference follows through its changeID.
  scene.remove(a);
  lwhost::IdChanges changes = scene.compactIds();
  ASSERT_EQ(changes, (lwhost::IdChanges{{b, a}}));
  EXPECT_EQ(node.instance().useItems(), std::vector<LWItemID>{a});
  EXPECT_EQ(node.instance().description(), "B 20000000");
}

TEST(DirectoryInfo, EveryDirectoryEndsInOneSlash) {
  lwhost::Session session;
  FixtureProbe probe;
  lwhost::Directories& dirs = session.scene().directories();
  struct Case {
    const char* key;
    const char* configured;  // null: leave the host's answer alone
    const char* expected;
  };
  const Case cases[] = {{"Settings", "/home/user/.config/lw", "/home/user/.config/lw/"},
                        {"Settings", "/srv/lw/", "/srv/lw/"},
                        {"Settings", "/", "/"},
                        {"Settings", "C:\\LightWave\\Settings", "C:\\LightWave\\Settings\\"},
                        {"Settings", "C:\\", "C:\\"},
                        {"Scenes", "relative/scenes", "relative/scenes/"},
                        {"NoSuchKind", nullptr, ""}};
  for (const Case& c : cases) {
    if (c.configured) dirs.setDirectory(c.key, c.configured);
    ProbeRequest r = probe.run("dir", 0, c.key);
    EXPECT_STREQ(r.text, c.expected) << c.key << " " << (c.configured ? c.configured : "");
  }
  // A null type asks for the default one, "Settings".
  dirs.setDirectory("Settings", "/opt/settings");
  EXPECT_STREQ(probe.run("dir", 0, nullptr).text, "/opt/settings/");
}

}  // namespace
