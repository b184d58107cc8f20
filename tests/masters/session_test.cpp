// lwhost session: the event stream masters hear as their flags decide, options panels played
// by a script, and faults reported with the script's line.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "cli/CliSupport.h"
#include "lwhost/LayoutSession.h"

namespace {

struct ScriptRun {
  CommandResult result;
  std::string log;
};

// Runs a script with lwhost, with no desktop bus, logging to a file.
ScriptRun Session(const std::string& name, const std::string& script, const std::string& options = "") {
  const std::string dir = std::string(MASTER_TEST_DIR) + "/" + name;
  std::filesystem::create_directories(dir);
  std::ofstream(dir + "/s.session") << "module fx " << testpaths::kFixture << "\nmodule vorn " << testpaths::kVorn << "\n"
                                    << script;
  ScriptRun run;
  run.result = RunCommand("DBUS_SESSION_BUS_ADDRESS= XDG_RUNTIME_DIR= " LWHOST_PATH " session " + dir +
                          "/s.session --log " + dir + "/log " + options);
  std::ifstream in(dir + "/log");
  for (std::string line; std::getline(in, line);)
    if (line.rfind("message info", 0) != 0) run.log += line + "\n";
  return run;
}

TEST(LayoutSession, MastersHearCommandsAlwaysAndNotificationsByTheirFlags) {
  const ScriptRun run = Session("stream",
                          "master fx fixtureMaster\nmaster vorn Growl\nmaster vorn Growl\n"
                          "command \"AddNull Thing\"\nrender 5\nremove \"Growl (2)\"\ncommand throw\n");
  EXPECT_EQ(run.result.status, 0) << run.result.output;
  EXPECT_EQ(run.log,
            "create \"fixtureMaster\" fx fixtureMaster\ncreate \"Growl\" vorn Growl\ncreate \"Growl (2)\" vorn Growl\n"
            "event \"fixtureMaster\" 0x1 \"AddNull Thing\" -> 1\nevent \"Growl\" 0x1 \"AddNull Thing\" -> 0\n"
            "event \"Growl (2)\" 0x1 \"AddNull Thing\" -> 0\n"
            "event \"Growl\" 0x111 -> 0\nevent \"Growl (2)\" 0x111 -> 0\nevent \"Growl\" 0x109 5 -> 0\n"
            "event \"Growl (2)\" 0x109 5 -> 0\nevent \"Growl\" 0x110 5 -> 0\nevent \"Growl (2)\" 0x110 5 -> 0\n"
            "event \"Growl\" 0x112 -> 0\nevent \"Growl (2)\" 0x112 -> 0\ndestroy \"Growl (2)\"\n"
            "event \"fixtureMaster\" 0x1 \"throw\" -> 0\n"
            "message error \"An exception occured in MasterAdaptor::Event():\" \"event failed\"\n"
            "event \"Growl\" 0x1 \"throw\" -> 0\ndestroy \"Growl\"\ndestroy \"fixtureMaster\"\nquit\n");
  EXPECT_NE(run.result.output.find("lwhost: a plug-in reported: \"An exception occured"), std::string::npos);

  // A render node tells its masters only that the render is complete.
  const ScriptRun node = Session("node", "master vorn Growl\nrender 1 3\n", "--screamernet");
  EXPECT_EQ(node.log, "create \"Growl\" vorn Growl\nevent \"Growl\" 0x112 -> 0\ndestroy \"Growl\"\nquit\n");

  // A frame the scene renderer cannot write aborts the render, which still completes.
  std::filesystem::create_directories(MASTER_TEST_DIR "/aborted");
  std::ofstream(MASTER_TEST_DIR "/aborted/scene") << "camera cam position 0 0 -5\nobject ball sphere\n";
  const ScriptRun failed = Session("aborted", "master vorn Growl\nscene scene\npictures no/such/folder/f --size 8x8\nrender 1 2\n");
  EXPECT_EQ(failed.result.status, 1);
  EXPECT_NE(failed.result.output.find("s.session:6: frame 1 failed: cannot write"), std::string::npos) << failed.result.output;
  EXPECT_NE(failed.log.find("0x109 1 -> 0\nevent \"Growl\" 0x123 -> 0\nevent \"Growl\" 0x112 -> 0\ndestroy"), std::string::npos)
      << failed.log;
}

TEST(LayoutSession, ClassicOptionsPlayTheScriptedClicks) {
  lwhost::LayoutSession session;
  session.loadModule("fx", testpaths::kFixture);
  lwhost::MasterInstance& master = session.addMaster("fx", "fixtureClassic");
  using Kind = lwhost::OptionsAction::Kind;
  session.openOptions("fixtureClassic",
                      {{Kind::Select, "Rows", "", 2}, {Kind::Click, "Press", "", -1}, {Kind::File, "Save...", "stats.txt", -1}});
  EXPECT_EQ(master.instance().description(), "row 2;press;file 9;");
}

TEST(LayoutSession, ScenesKeepTheirNameAndWhatTheHostDoesNotRead) {
  const std::string dir = std::string(MASTER_TEST_DIR) + "/scenes";
  std::filesystem::create_directories(dir);
  const std::string text = "LWSC\n3\n\nFirstFrame 5\nLoadObjectLayer 1 Objects/ball.lwo\nFramesPerSecond 25\n";
  std::ofstream(dir + "/shot.lws") << text;
  lwhost::LayoutSession session;
  session.loadScene(dir + "/shot.lws");
  EXPECT_STREQ(session.session().scene().sceneInfo().name, "shot.lws");
  EXPECT_EQ(session.session().scene().sceneInfo().frameStart, 5);
  session.saveScene(dir + "/copy.lws");
  EXPECT_STREQ(session.session().scene().sceneInfo().filename, (dir + "/copy.lws").c_str());
  const int last = session.session().scene().sceneInfo().frameEnd;
  EXPECT_EQ(cli::ReadFile(dir + "/copy.lws"), text + "LastFrame " + std::to_string(last) + "\n");
}

TEST(LayoutSession, FaultsNameTheScriptLine) {
  const struct {
    const char* script;
    const char* options;
    const char* error;
  } cases[] = {
      {"master fx nosuch\n", "", "s.session:3: " FIXTURE_MODULE_PATH " has no MasterHandler server \"nosuch\""},
      {"quit\ncommand x\n", "", "s.session:4: command after quit"},
      {"frobnicate\n", "", "s.session:3: unknown statement frobnicate"},
      {"master vorn Growl\noptions Growl\n  select Rows 1\n", "", "s.session:4: \"Growl\" shows a form panel"},
      {"master fx fixtureClassic\noptions fixtureClassic\n  set Rows 1\n", "", "s.session:4: \"fixtureClassic\" shows a classic panel"},
      {"master vorn Growl\noptions Growl\n", "--screamernet", "s.session:4: a render node has no interface"},
      {"render 5 1\n", "", "s.session:3: the last frame 1 comes before the first 5"},
      {"click Press\n", "", "s.session:3: click belongs under an options statement"},
  };
  for (const auto& c : cases) {
    const ScriptRun run = Session("faults", c.script, c.options);
    EXPECT_EQ(run.result.status, 1) << c.script;
    EXPECT_NE(run.result.output.find(c.error), std::string::npos) << c.script << "\n" << run.result.output;
  }
}

}  // namespace
