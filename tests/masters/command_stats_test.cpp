// Command Statistics through vorn.p in Layout sessions: commands counted, the settings file read
// at the start and written at quit, and the classic panel with its Clear and Save... buttons.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <memory>

#include "cli/CliSupport.h"
#include "lwhost/LayoutSession.h"
#include "lwhost/SessionScript.h"

namespace {

namespace fs = std::filesystem;
using Rows = std::vector<std::string>;
using cli::ReadFile;

class CommandStatsTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(mkdtemp(dir.data()), nullptr); }
  void TearDown() override { fs::remove_all(dir); }

  // Starts Layout with `stats` as the settings file (none when null) and one Command Statistics
  // instance, plays `script`, and gives the rows of the panel as its options last showed it.
  // Quits unless `stay`.
  Rows play(const char* stats, const std::string& script, bool stay = false, const std::string& settings = "") {
    if (stats) std::ofstream(file()) << stats;
    layout = std::make_unique<lwhost::LayoutSession>(lwhost::LayoutSessionOptions{false, dir});
    if (!settings.empty()) layout->session().scene().directories().setSettingsDirectory(settings);
    layout->setLog([this](const std::string& line) { log += line + "\n"; });
    lwhost::RunSessionScript(*layout, "module vorn " VORN_MODULE_PATH "\nmaster vorn CommandStatistics\n" + script, "test", dir);
    EXPECT_EQ(layout->findMaster("CommandStatistics")->flags(), unsigned{LWMASTF_LAYOUT});
    lwhost::Panels& panels = layout->session().panels();
    panel = panels.findPanel("Vorn Tools: Command Statistics");
    const Rows rows = panel ? panels.listRows(panels.findControl(panel, "Command Statistics")) : Rows{};
    if (!stay) layout->quit();
    return rows;
  }

  std::string file() const { return dir + "/CommandStats.txt"; }

  std::string dir = (fs::temp_directory_path() / "cmdstats-XXXXXX").string(), log;
  std::unique_ptr<lwhost::LayoutSession> layout;
  LWPanelID panel = nullptr;
};

TEST_F(CommandStatsTest, CountsCommandsByNameAndListsThemAboveTheButtons) {
  EXPECT_EQ(play(nullptr, "command \"MoveTool 1 2\"\ncommand MoveTool\nframe 3\ncommand \"RotateTool 0\"\n"
                          "command \"MoveTool 3\"\noptions CommandStatistics\n", true),
            (Rows{"    2 - MoveTool\n", "    1 - RotateTool\n"}));
  EXPECT_EQ(layout->session().panels().panel(panel).openFlags, PANF_BLOCKING | PANF_FRAME);
  const std::vector<lwhost::ControlInfo> c = layout->session().panels().controls(panel);
  ASSERT_EQ(c.size(), 3u);
  EXPECT_EQ(c[2].className, "SaveButtonControl");
  EXPECT_EQ(c[2].rect.x + c[2].rect.w, c[0].rect.x + c[0].rect.w) << "Save... ends where the list ends";
  EXPECT_EQ(c[2].rect.y, c[1].rect.y) << "on the line of Clear";
  layout->quit();
  EXPECT_EQ(ReadFile(file()), "2\tMoveTool\n1\tRotateTool\n");
  const std::string refusal = "message error \"An exception occured in MasterAdaptor::Event():\" \"basic_string::erase";
  EXPECT_EQ(log.find(refusal), log.rfind("message ")) << log;
}

TEST_F(CommandStatsTest, LoadsEveryWellFormedLineWritesThemBackByCountAndIgnoresUnusableFiles) {
  const std::string stats = "5\tb\n0\tzero\n123456\t  six digits\t\n5\ta\n7\t \t\nnot a number 8\n9\tc\n3\tb\n1\tlast";
  for (const std::string end : {"", "\n"}) {
    EXPECT_EQ(play((stats + end).c_str(), "command \"last 2\"\noptions CommandStatistics\n"),
              (Rows{"123456 - six digits\n", "    9 - c\n", "    5 - a\n", "    3 - b\n", "    2 - last\n"}));
    EXPECT_EQ(ReadFile(file()), "123456\tsix digits\n9\tc\n5\ta\n3\tb\n2\tlast\n") << "last line end: " << end.size();
  }
  play("5\tb\n5\ta\n9\tc\n", "");
  EXPECT_EQ(ReadFile(file()), "9\tc\n5\tb\n5\ta\n");
  fs::remove(file());
  ASSERT_EQ(mkfifo(file().c_str(), 0600), 0);
  EXPECT_EQ(play(nullptr, "command \"MoveTool 1\"\noptions CommandStatistics\n"), Rows{"    1 - MoveTool\n"});
  play(nullptr, "command \"MoveTool 1\"\n", false, dir + "/missing");
  EXPECT_FALSE(fs::exists(dir + "/missing"));
  EXPECT_EQ(log.find("message "), std::string::npos) << log;
}

TEST_F(CommandStatsTest, SaveWritesTextOrCsvAndClearEmptiesTheSettingsFileAtQuit) {
  const std::string held = "2\tsay \"hi\", all\n4\tb\n";
  EXPECT_EQ(play(held.c_str(), "options CommandStatistics\nfile Save... list.txt\nfile Save... list.CSV\n"
                               "click Clear\nfile Save... empty.csv\n", true),
            Rows{});
  EXPECT_EQ(layout->session().panels().panel(panel).lastDrawMode, DR_REFRESH);
  EXPECT_EQ(ReadFile(dir + "/list.txt"), "4\tb\n2\tsay \"hi\", all\n");
  EXPECT_EQ(ReadFile(dir + "/list.CSV"), "count,command\n4,b\n2,\"say \"\"hi\"\", all\"\n");
  EXPECT_EQ(ReadFile(dir + "/empty.csv"), "count,command\n");
  EXPECT_EQ(ReadFile(file()), held) << "the settings file waits for the end of the session";
  layout->quit();
  EXPECT_EQ(ReadFile(file()), "");
}

}  // namespace
