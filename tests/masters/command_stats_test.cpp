// Command Statistics through vorn.p: counting Layout's commands, the settings file from one
// instance to the next, and the classic panel with its Clear and Save... buttons.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "lwhost/Session.h"
#include "support/ModulePaths.h"
#include "support/RawHandler.h"

namespace {

namespace fs = std::filesystem;
using lwhost::UserAction;
using Rows = std::vector<std::string>;

class CommandStatsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "cmdstats-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    dir = pattern;
    session.scene().directories().setSettingsDirectory(dir);
    ASSERT_EQ(raw.activate(vorn, "CommandStatistics", LWMASTER_VERSION), AFUNC_OK);
  }
  void TearDown() override { fs::remove_all(dir); }

  void start() { master = std::make_unique<lwhost::HandlerInstance>(vorn, raw.inst, &raw.item, nullptr, "CommandStatistics"); }
  void command(const char* line, int code = LWEVNT_COMMAND) {
    LWMasterAccess access{};
    access.eventCode = code;
    access.eventData = const_cast<char*>(line);
    EXPECT_EQ(raw.handler.event(master->get(), &access), 0.0);
  }
  // Opens the panel, reads its rows, then plays `actions` on it.
  Rows options(std::vector<UserAction> actions = {}) {
    Rows rows;
    actions.insert(actions.begin(), UserAction::inspect([&](lwhost::Panels& p, LWPanelID panel) {
      rows = p.listRows(p.findControl(panel, "Command Statistics"));
    }));
    actions.push_back(UserAction::close());
    session.panels().script(actions);
    lwhost::InterfaceActivation ui = master->activateInterface(vorn.require(LWMASTER_ICLASS, "CommandStatistics"));
    EXPECT_EQ(ui.local.options(master->get()), nullptr);
    return rows;
  }
  std::string stats() const { return Read(dir / "CommandStats.txt"); }
  void setStats(const std::string& text) const { std::ofstream(dir / "CommandStats.txt") << text; }
  static std::string Read(const fs::path& file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
  }

  lwhost::Session session;
  const lwhost::ModuleFile& vorn = session.load(testpaths::kVorn);
  fs::path dir;
  RawMasterHandler raw;
  std::unique_ptr<lwhost::HandlerInstance> master;
};

TEST_F(CommandStatsTest, CountsCommandsByNameAndRefusesBareNames) {
  start();
  EXPECT_EQ(raw.handler.flags(master->get()), LWMASTF_LAYOUT);
  for (const char* line : {"MoveTool 1 2", "MoveTool", "RotateTool 0", "MoveTool 3"}) command(line);
  command("Ignored 1", LWEVNT_TIME);
  const std::vector<lwhost::Message> errors = session.host().messages().errors();
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0].first, "An exception occured in MasterAdaptor::Event():");
  EXPECT_EQ(errors[0].second.rfind("basic_string::erase", 0), 0u) << errors[0].second;
  EXPECT_EQ(options(), (Rows{"    2 - MoveTool\n", "    1 - RotateTool\n"}));
  master.reset();
  EXPECT_EQ(stats(), "2\tMoveTool\n1\tRotateTool\n");
}

TEST_F(CommandStatsTest, LoadsEveryWellFormedLineAndWritesThemBackByCount) {
  for (const std::string end : {"", "\n"}) {
    setStats("5\tb\n0\tzero\n123456\t  six digits\t\n5\ta\n7\t \t\nnot a number 8\n9\tc\n3\tb\n1\tlast" + end);
    start();
    command("last 2");
    EXPECT_EQ(options(), (Rows{"123456 - six digits\n", "    9 - c\n", "    5 - a\n", "    3 - b\n", "    2 - last\n"}));
    master.reset();
    EXPECT_EQ(stats(), "123456\tsix digits\n9\tc\n5\ta\n3\tb\n2\tlast\n") << "last line end: " << end.size();
  }
  setStats("5\tb\n5\ta\n9\tc\n");
  start();
  master.reset();
  EXPECT_EQ(stats(), "9\tc\n5\tb\n5\ta\n");
  EXPECT_TRUE(session.host().messages().messages().empty());
}

TEST_F(CommandStatsTest, SaveWritesTextOrCsvAndClearEmptiesTheSettingsFile) {
  setStats("2\tsay \"hi\", all\n4\tb\n");
  start();
  const std::string txt = (dir / "list.txt").string(), csv = (dir / "list.CSV").string();
  const Rows rows = options({UserAction::chooseFile("Save...", txt), UserAction::chooseFile("Save...", csv),
                             UserAction::press("Clear"), UserAction::chooseFile("Save...", (dir / "empty.csv").string()),
                             UserAction::inspect([&](lwhost::Panels& p, LWPanelID panel) {
                               EXPECT_EQ(p.panel(panel).lastDrawMode, DR_REFRESH);
                               EXPECT_EQ(p.listRows(p.findControl(panel, "Command Statistics")), Rows{});
                             })});
  EXPECT_EQ(rows, (Rows{"    4 - b\n", "    2 - say \"hi\", all\n"}));
  EXPECT_EQ(Read(txt), "4\tb\n2\tsay \"hi\", all\n");
  EXPECT_EQ(Read(csv), "count,command\n4,b\n2,\"say \"\"hi\"\", all\"\n");
  EXPECT_EQ(Read(dir / "empty.csv"), "count,command\n");
  EXPECT_EQ(stats(), "2\tsay \"hi\", all\n4\tb\n") << "the settings file waits for the end of the session";
  EXPECT_EQ(options(), Rows{});
  master.reset();
  EXPECT_EQ(stats(), "");
}

TEST_F(CommandStatsTest, UnusableSettingsFilesAreIgnoredSilently) {
  fs::create_directory(dir / "CommandStats.txt");
  start();
  command("MoveTool 1");
  EXPECT_EQ(options(), Rows{"    1 - MoveTool\n"});
  master.reset();
  session.scene().directories().setSettingsDirectory((dir / "missing").string());
  start();
  master.reset();
  EXPECT_FALSE(fs::exists(dir / "missing"));
  EXPECT_TRUE(session.host().messages().messages().empty());
  if (geteuid() == 0) return;  // the superuser writes read-only files all the same
  fs::remove(dir / "CommandStats.txt");
  session.scene().directories().setSettingsDirectory(dir.string());
  setStats("3\tkept\n");
  fs::permissions(dir / "CommandStats.txt", fs::perms::owner_read);
  start();
  command("kept 1");
  EXPECT_EQ(options(), Rows{"    4 - kept\n"});
  master.reset();
  EXPECT_EQ(stats(), "3\tkept\n");
}

TEST_F(CommandStatsTest, PanelListsAboveItsButtons) {
  start();
  for (int i = 0; i < 300; ++i) command(("Command" + std::to_string(i % 37) + " x").c_str());
  lwhost::PanelInfo info;
  std::vector<lwhost::ControlInfo> controls;
  options({UserAction::inspect([&](lwhost::Panels& p, LWPanelID panel) {
    info = p.panel(panel);
    controls = p.controls(panel);
    p.renderPanel(panel).writePng(std::string(testing::TempDir()) + "command_statistics_panel.png");
  })});
  EXPECT_EQ(info.title, "Vorn Tools: Command Statistics");
  EXPECT_EQ(info.openFlags, PANF_BLOCKING | PANF_FRAME);
  ASSERT_EQ(controls.size(), 3u);
  const lwhost::PanelRect list = controls[0].rect, clear = controls[1].rect, save = controls[2].rect;
  EXPECT_EQ(controls[2].className, "SaveButtonControl");
  EXPECT_EQ(save.x + save.w, list.x + list.w);
  EXPECT_EQ(save.y, clear.y);
  EXPECT_GT(save.x, clear.x + clear.w);
}

}  // namespace
