// Command Statistics through vorn.p: counting Layout's commands, the settings file from one run
// to the next, and the classic panel with its Clear and Save... buttons.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "lwhost/Session.h"
#include "support/ModulePaths.h"
#include "support/RawHandler.h"

namespace {

namespace fs = std::filesystem;
using lwhost::UserAction;
using Rows = std::vector<std::string>;

std::string Read(const fs::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

Rows RowsOf(lwhost::Panels& panels, LWPanelID panel) {
  return panels.listRows(panels.findControl(panel, "Command Statistics"));
}

class CommandStatsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(mkdtemp(dir.data()), nullptr);
    file = dir + "/CommandStats.txt";
    session.scene().directories().setSettingsDirectory(dir);
    ASSERT_EQ(raw.activate(vorn, "CommandStatistics", LWMASTER_VERSION), AFUNC_OK);
  }
  void TearDown() override { fs::remove_all(dir); }

  // One run of Layout: the instance loads the settings file (written first unless `stats` is
  // null), hears each command line after a time event carrying the same text, shows its panel
  // to a user who does `actions`, and goes. Gives the panel's rows as first shown.
  Rows layout(const char* stats, const Rows& commands, std::vector<UserAction> actions = {}) {
    if (stats) std::ofstream(file) << stats;
    lwhost::HandlerInstance master(vorn, raw.inst, &raw.item, nullptr, "CommandStatistics");
    EXPECT_EQ(raw.handler.flags(master.get()), LWMASTF_LAYOUT);
    for (const std::string& line : commands)
      for (int code : {LWEVNT_TIME, LWEVNT_COMMAND}) {
        LWMasterAccess access{code, const_cast<char*>(line.c_str()), nullptr, nullptr, nullptr, nullptr};
        EXPECT_EQ(raw.handler.event(master.get(), &access), 0.0);
      }
    Rows rows;
    actions.insert(actions.begin(), UserAction::inspect([&](lwhost::Panels& p, LWPanelID id) { rows = RowsOf(p, id); }));
    session.panels().script(actions);
    master.activateInterface(vorn.require(LWMASTER_ICLASS, "CommandStatistics")).local.options(master.get());
    return rows;
  }

  lwhost::Session session;
  const lwhost::ModuleFile& vorn = session.load(testpaths::kVorn);
  std::string dir = (fs::temp_directory_path() / "cmdstats-XXXXXX").string();
  std::string file;
  RawMasterHandler raw;
};

TEST_F(CommandStatsTest, CountsCommandsByNameRefusesBareNamesAndIgnoresUnusableFiles) {
  EXPECT_EQ(layout(nullptr, {"MoveTool 1 2", "MoveTool", "RotateTool 0", "MoveTool 3"}),
            (Rows{"    2 - MoveTool\n", "    1 - RotateTool\n"}));
  const std::vector<lwhost::Message> errors = session.host().messages().errors();
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0].first, "An exception occured in MasterAdaptor::Event():");
  EXPECT_EQ(errors[0].second.rfind("basic_string::erase", 0), 0u) << errors[0].second;
  EXPECT_EQ(Read(file), "2\tMoveTool\n1\tRotateTool\n");

  session.host().messages().clear();
  fs::remove(file);
  fs::create_directory(file);
  EXPECT_EQ(layout(nullptr, {"MoveTool 1"}), Rows{"    1 - MoveTool\n"});
  session.scene().directories().setSettingsDirectory(dir + "/missing");
  layout(nullptr, {"MoveTool 1"});
  EXPECT_FALSE(fs::exists(dir + "/missing"));
  EXPECT_TRUE(session.host().messages().messages().empty());
}

TEST_F(CommandStatsTest, LoadsEveryWellFormedLineAndWritesThemBackByCount) {
  const std::string stats = "5\tb\n0\tzero\n123456\t  six digits\t\n5\ta\n7\t \t\nnot a number 8\n9\tc\n3\tb\n1\tlast";
  for (const std::string end : {"", "\n"}) {
    EXPECT_EQ(layout((stats + end).c_str(), {"last 2"}),
              (Rows{"123456 - six digits\n", "    9 - c\n", "    5 - a\n", "    3 - b\n", "    2 - last\n"}));
    EXPECT_EQ(Read(file), "123456\tsix digits\n9\tc\n5\ta\n3\tb\n2\tlast\n") << "last line end: " << end.size();
  }
  layout("5\tb\n5\ta\n9\tc\n", {});
  EXPECT_EQ(Read(file), "9\tc\n5\tb\n5\ta\n");
  EXPECT_TRUE(session.host().messages().messages().empty());
}

TEST_F(CommandStatsTest, SaveWritesTextOrCsvAndClearEmptiesTheSettingsFileAtTheEnd) {
  const std::string held = "2\tsay \"hi\", all\n4\tb\n", txt = dir + "/list.txt", csv = dir + "/list.CSV";
  layout(held.c_str(), {}, {UserAction::chooseFile("Save...", txt), UserAction::chooseFile("Save...", csv),
                            UserAction::press("Clear"), UserAction::chooseFile("Save...", dir + "/empty.csv"),
                            UserAction::inspect([&](lwhost::Panels& p, LWPanelID panel) {
                              EXPECT_EQ(p.panel(panel).lastDrawMode, DR_REFRESH);
                              EXPECT_EQ(RowsOf(p, panel), Rows{});
                              EXPECT_EQ(Read(file), held) << "the settings file waits for the end of the run";
                            })});
  EXPECT_EQ(Read(txt), "4\tb\n2\tsay \"hi\", all\n");
  EXPECT_EQ(Read(csv), "count,command\n4,b\n2,\"say \"\"hi\"\", all\"\n");
  EXPECT_EQ(Read(dir + "/empty.csv"), "count,command\n");
  EXPECT_EQ(Read(file), "");
}

TEST_F(CommandStatsTest, PanelListsAboveItsButtons) {
  Rows commands;
  for (int i = 0; i < 300; ++i) commands.push_back("Command" + std::to_string(i % 37) + " x");
  layout(nullptr, commands, {UserAction::inspect([&](lwhost::Panels& p, LWPanelID panel) {
           EXPECT_EQ(p.panel(panel).title, "Vorn Tools: Command Statistics");
           EXPECT_EQ(p.panel(panel).openFlags, PANF_BLOCKING | PANF_FRAME);
           const std::vector<lwhost::ControlInfo> c = p.controls(panel);
           ASSERT_EQ(c.size(), 3u);
           EXPECT_EQ(c[2].className, "SaveButtonControl");
           EXPECT_EQ(c[2].rect.x + c[2].rect.w, c[0].rect.x + c[0].rect.w) << "Save... ends where the list ends";
           EXPECT_EQ(c[2].rect.y, c[1].rect.y) << "on the line of Clear";
           p.renderPanel(panel).writePng(testing::TempDir() + "command_statistics_panel.png");
         })});
}

}  // namespace
