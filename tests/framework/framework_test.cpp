// The framework as the host sees it, through vorn.p and the fixture module: form panels (the
// logo, the web button, callbacks without an instance), picking scene items from pop-ups and
// keeping the choice in scenes by name, the directories it hands out, and a master's classic
// options panel driven by a scripted user.
#ifndef _WIN32
#include <sys/wait.h>
#endif

#include <cerrno>
#include <string>
#include <vector>

#include "FakeLauncher.h"
#include "lwhost/FormRenderer.h"
#include "lwhost/UserAction.h"
#include "support/FixtureProbe.h"
#include "support/RawHandler.h"
#include "support/VornNodeTest.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using lwhost::UserAction;

constexpr unsigned int kWebButton = 0x9900, kLogo = 0x9901;

// ---- Form panels ----

using FormPanelTest = VornNodeTest;

TEST_F(FormPanelTest, LogoSitsAtTheCentringOffsetBothWays) {
  lwhost::XPanel& form = panel(add("vornTimeInfo"));
  const int width = 320;
  lwhost::Raster exact = form.drawControl(kLogo, width, 56);
  const lwhost::RGB white{255, 255, 255};
  EXPECT_EQ(form.thumbnailOptions(kLogo), 0x80000601u) << "full width, small, borderless";

  // At 56 pixels the logo starts at x = 0; stored row k lands on y = 56 - k, so the top line
  // stays white and the bottom line carries the first stored row.
  bool inked = false;
  for (int x = 0; x < 104; ++x) {
    EXPECT_EQ(exact.get(x, 0), white) << x;
    inked = inked || exact.get(x, 30) != white;
  }
  EXPECT_TRUE(inked);

  // Taller areas shift it right and down by the same truncated offset.
  for (int height : {57, 58, 80, 99}) {
    const int off = (height - 56) / 2;
    lwhost::Raster taller = form.drawControl(kLogo, width, height);
    for (int y = 1; y < 56; ++y)
      for (int x = 0; x < 104; ++x) ASSERT_EQ(taller.get(x + off, y + off), exact.get(x, y)) << height << " " << x << "," << y;
    for (int x = 0; x < off; ++x) EXPECT_EQ(taller.get(x, 20 + off), white) << height;
  }
}

TEST_F(FormPanelTest, VersionAndDateAreRightAligned) {
  lwhost::XPanel& form = panel(add("vornTimeInfo"));
  const int width = 400, height = 56;
  lwhost::Raster drawn = form.drawControl(kLogo, width, height);

#if defined(__linux__) && defined(__x86_64__)
  const std::string version = "V1.4 (Linux-x86_64)";
#elif defined(_WIN32) && defined(__x86_64__)
  const std::string version = "V1.4 (Windows-x86_64)";
#else
  const std::string version;
  GTEST_SKIP() << "version text names another platform";
#endif
  const std::string date = "Nov 21 2026";
  lwhost::Raster expected(width, height);
  const lwhost::RGB ink = lwhost::PaletteColour(0x1029);
  expected.drawText(width - lwhost::Raster::textWidth(version) - 4, 4, version, ink);
  expected.drawText(width - lwhost::Raster::textWidth(date) - 4, lwhost::Raster::textHeight() + 8, date, ink);
  for (int y = 0; y < height; ++y)
    for (int x = 120; x < width; ++x) ASSERT_EQ(drawn.get(x, y), expected.get(x, y)) << x << "," << y;
}

TEST_F(FormPanelTest, CallbacksWithoutAnInstanceDoNothing) {
  lwhost::PluginNode& node = add("MaterialBlender");
  lwhost::XPanel& form = panel(node);
  const unsigned int diffuseMode = 0x9001;
  ASSERT_FALSE(form.value(diffuseMode).isNull());
  void* instance = form.instance();
  form.setInstance(nullptr);
  EXPECT_TRUE(form.value(diffuseMode).isNull());
  form.setInteger(diffuseMode, 3);
  EXPECT_EQ(form.lastSetResult(), 0);
  form.setInstance(instance);
  EXPECT_EQ(form.value(diffuseMode).integer[0], 0);  // the node never saw the edit

  // Dragging only updates the node's preview; a committed value re-evaluates the node instead.
  session.host().clearInstanceUpdates();
  ASSERT_TRUE(form.notify(diffuseMode, lwhost::XPanel::kTrack));
  EXPECT_EQ(node.previewUpdates(), 1);
  EXPECT_TRUE(session.host().instanceUpdates().empty());
  ASSERT_TRUE(form.setInteger(diffuseMode, 3));
  EXPECT_EQ(node.previewUpdates(), 1);
  EXPECT_EQ(session.host().instanceUpdates().size(), 1u);
}

TEST_F(FormPanelTest, WebButtonOpensTheMakersPageWithoutWaiting) {
  lwhost::XPanel& form = panel(add("vornExSpotInfo"));
  FakeLauncher launcher;
  launcher.install();
  EXPECT_TRUE(form.click(kWebButton));
  launcher.go();  // only now may the launcher answer: the click must already have returned
  EXPECT_EQ(launcher.answer(), "ok http://www.vorn.example/|1\n");
#ifndef _WIN32
  // No child is left for the host to reap.
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
#endif

  // Without any launcher the click is silent.
  launcher.installNothing();
  EXPECT_TRUE(form.click(kWebButton));
  EXPECT_TRUE(session.host().messages().messages().empty());
}

// ---- Picking scene items from pop-ups and keeping the choice in scenes by name ----

constexpr unsigned int kLight = 0x9000, kTree = 0x9001, kObjects = 0x9002, kCameras = 0x9003, kBones = 0x9004,
                       kZoom = 0x9005;

// A session with the fixture module loaded.
class FixtureSessionTest : public ::testing::Test {
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

using ItemSelectionTest = FixtureSessionTest;

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

// ---- A master plug-in's classic options panel, driven by a scripted user ----

using ClassicPanelTest = FixtureSessionTest;

TEST_F(ClassicPanelTest, InterfaceGivesAnOptionsCallbackFromVersionFour) {
  const ServerRecord& record = fixture.require(LWMASTER_ICLASS, "fixtureClassic");
  LWInterface local{};
  local.panel = reinterpret_cast<LWXPanelID>(0x1);
  for (int version : {1, 2, 3}) EXPECT_EQ(fixture.activate(record, version, &local), AFUNC_BADVERSION);
  EXPECT_EQ(fixture.activate(record, 4, nullptr), AFUNC_OK);
  ASSERT_EQ(fixture.activate(record, 4, &local), AFUNC_OK);
  EXPECT_EQ(local.panel, nullptr);
  EXPECT_NE(local.options, nullptr);
  EXPECT_EQ(local.command, nullptr);
}

TEST_F(ClassicPanelTest, ControlsFindTheirHandlerThroughThePanel) {
  RawMasterHandler raw;
  ASSERT_EQ(raw.activate(fixture, "fixtureClassic", LWMASTER_VERSION), AFUNC_OK);
  lwhost::HandlerInstance master(fixture, raw.inst, &raw.item, nullptr, "fixtureClassic");
  lwhost::InterfaceActivation ia = master.activateInterface(fixture.require(LWMASTER_ICLASS, "fixtureClassic"));
  ASSERT_NE(ia.local.options, nullptr);

  std::vector<std::string> rows;
  const std::string longName(3000, 'n');
  session.panels().script({UserAction::inspect([&](lwhost::Panels& panels, LWPanelID panel) {
                             rows = panels.listRows(panels.findControl(panel, "Rows"));
                           }),
                           UserAction::selectRow("Rows", 1), UserAction::press("Press"),
                           UserAction::chooseFile("Save...", longName), UserAction::close()});
  EXPECT_EQ(ia.local.options(master.get()), nullptr);
  EXPECT_EQ(rows, (std::vector<std::string>{"alpha", "beta", "gamma"}));
  // With no name held yet the buffer is 2048 bytes: the long name is cut to 2047 characters.
  EXPECT_EQ(master.description(), "row 1;press;file 2047;");

  // Later reads size the buffer from the name held so far.
  session.panels().script({UserAction::chooseFile("Save...", "short.txt"), UserAction::close()});
  ia.local.options(master.get());
  EXPECT_EQ(master.description(), "row 1;press;file 2047;file 9;");
  session.panels().script({UserAction::chooseFile("Save...", "a-much-longer-name.txt"), UserAction::close()});
  ia.local.options(master.get());
  EXPECT_EQ(master.description(), "row 1;press;file 2047;file 9;file 9;");
  EXPECT_TRUE(session.panels().problems().empty());
}

}  // namespace
