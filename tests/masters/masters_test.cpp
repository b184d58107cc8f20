// Master plug-ins in Layout sessions. The Growl Notifier: what each event posts, seen through the
// program VornNotify.cfg names and through a notification daemon on a private session bus, and
// the module's own CoreFoundation subset its records are built from on systems without the
// framework. lwhost session: the event stream masters hear as their flags decide, options panels
// played by a script, faults reported with the script's line. Command Statistics: commands
// counted, the settings file read at the start and written at quit, and its classic panel.
#include <gtest/gtest.h>
#include <lwmaster.h>
#include <stdlib.h>
#include <sys/stat.h>
#ifndef _WIN32
#include <sys/wait.h>
#endif

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "cli/CliSupport.h"
#include "lwhost/LayoutSession.h"
#include "lwhost/SessionScript.h"
#include "platform/CoreFoundation.h"

namespace {

namespace fs = std::filesystem;

std::string Fresh(const std::string& name) {
  const std::string dir = std::string(MASTER_TEST_DIR) + "/" + name;
  fs::remove_all(dir);
  fs::create_directories(dir);
  return dir;
}

using cli::ReadFile;

// The forwarded calls, sorted: the programs run side by side, so their order is not the posts'.
std::vector<std::string> Calls(const std::string& file, std::size_t expected) {
  std::string text = ReadFile(file);
  for (int i = 0; i < 200 && std::count(text.begin(), text.end(), '\x1e') < long(expected); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(25));
    text = ReadFile(file);
  }
  std::vector<std::string> calls;
  std::istringstream in(text);
  for (std::string call; std::getline(in, call, '\x1e');) calls.push_back(call);
  std::sort(calls.begin(), calls.end());
  return calls;
}

TEST(GrowlNotifier, EachEventPostsItsTitleAndDescriptionToTheForwardedProgram) {
  const std::string dir = Fresh("forwarded");
  const std::string calls = dir + "/calls";
  // Arguments a shell would have changed, and one the notifier adds with a blank, quotes and
  // a new line in it.
  std::ofstream(dir + "/VornNotify.cfg") << "# forward to chat\ncommand: " ARG_RECORDER_PATH " \"" << calls
                                         << "\" \"two words\" \"say \\\"hi\\\"\" $HOME;*`id`\n";
  const std::string scene = dir + "/\x80\xDB \xF0\xFF.lws";  // Mac Roman
  std::vector<std::string> log;
  {
    lwhost::LayoutSession session({false, dir});
    session.setLog([&](const std::string& line) { log.push_back(line); });
    session.loadModule("vorn", testpaths::kVorn);
    session.addMaster("vorn", "Growl");
    session.session().scene().setName("");
    session.goToFrame(7);
    session.render(3, 4);
    session.issueCommand("AddNull Thing");
    session.sendEvent(LWEVNT_NOTIFY_SCENE_CLEAR_STARTING, const_cast<char*>("x.lws"));
    session.saveScene(scene);
    session.loadScene(scene);
  }
  for (const std::string& line : log)
    EXPECT_TRUE(line.find("message error") == line.npos && (line.rfind("event", 0) || line.find("-> 0") != line.npos))
        << line;
  const std::string utf8Scene = dir + "/Ä€ \uF8FFˇ.lws";
  const std::string args = "two words\x1fsay \"hi\"\x1f$HOME;*`id`\x1f";
  std::vector<std::string> expected = {
      args + "Render Starting\x1fScene: \x1f",         args + "Starting Frame\x1fScene: \nFrame: 7\x1f",
      args + "Frame Rendered\x1fScene: \nFrame: 3\x1f", args + "Starting Frame\x1fScene: \nFrame: 3\x1f",
      args + "Frame Rendered\x1fScene: \nFrame: 4\x1f", args + "Render Finished\x1fScene: \x1f",
      args + "Scene Saved\x1f" + utf8Scene + "\x1f",    args + "Scene Loaded\x1f" + utf8Scene + "\x1f",
  };
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(Calls(calls, expected.size()), expected);
#ifndef _WIN32
  EXPECT_LE(waitpid(-1, nullptr, WNOHANG), 0) << "a program's parent was left unreaped";
#endif
}

TEST(GrowlNotifier, AMalformedForwardingFileIsReportedOnceAndChangesNothing) {
  const std::string dir = Fresh("malformed");
  std::ofstream(dir + "/VornNotify.cfg") << "command: \"" ARG_RECORDER_PATH "\n";
  std::vector<std::string> reports;
  lwhost::LayoutSession session({false, dir});
  session.setLog([&](const std::string& line) {
    if (line.find("VornNotify.cfg") != std::string::npos) reports.push_back(line);
  });
  session.loadModule("vorn", testpaths::kVorn);
  session.addMaster("vorn", "Growl");
  session.render(1, 2);
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_NE(reports[0].find("line 1: a quote is not closed"), std::string::npos) << reports[0];
}

TEST(GrowlNotifier, DeliversToTheDesktopNotificationService) {
#ifdef _WIN32
  GTEST_SKIP() << "Windows has no D-Bus session bus to deliver to";
#endif
  if (RunCommand("command -v dbus-run-session && /usr/bin/python3 -c 'import dbusmock'").status != 0)
    GTEST_SKIP() << "dbus-run-session or python3-dbusmock is missing; ./dev installs both";
  const std::string dir = Fresh("desktop");
  std::ofstream(dir + "/shot.session") << "module vorn " << testpaths::kVorn
                                       << "\nmaster vorn Growl\nframe 7\nsave shot.lws\nrender 1 2\nquit\n";
  const CommandResult run = RunCommand("dbus-run-session -- " NOTIFICATION_DAEMON_SCRIPT " " + dir + "/calls.log " +
                                       LWHOST_PATH " session " + dir + "/shot.session");
  ASSERT_EQ(run.status, 0) << run.output;
  EXPECT_EQ(run.output.find("lwhost:"), std::string::npos) << run.output;
  const std::string calls = std::regex_replace(ReadFile(dir + "/calls.log"), std::regex("(^|\n)[0-9.]+ Notify"), "$1Notify");
  auto call = [](int replaces, const std::string& title, const std::string& body, const std::string& name) {
    return "Notify \"LightWave 3D\" " + std::to_string(replaces) + " \"\" \"" + title + "\" \"" + body +
           "\" [] {\"category\": \"" + name + "\"} -1\n";
  };
  // The frames of the render replace the first frame's notice (the daemon's id 3).
  const std::string expected = call(0, "Scene Saved", dir + "/shot.lws", "Scene Saved") +
                               call(0, "Render Starting", "Scene: shot.lws", "Starting Render") +
                               call(0, "Starting Frame", "Scene: shot.lws\nFrame: 7", "Starting Frame Render") +
                               call(3, "Frame Rendered", "Scene: shot.lws\nFrame: 1", "Frame Rendered") +
                               call(3, "Starting Frame", "Scene: shot.lws\nFrame: 1", "Starting Frame Render") +
                               call(3, "Frame Rendered", "Scene: shot.lws\nFrame: 2", "Frame Rendered") +
                               call(0, "Render Finished", "Scene: shot.lws", "Render Done");
  EXPECT_EQ(calls + (calls.empty() || calls.back() == '\n' ? "" : "\n"), expected);
}

TEST(CoreFoundationSubset, CountsBalanceAndMacRomanBecomesUnicode) {
  const std::size_t before = platform::cf::LiveObjects();
  CFMutableStringRef text = CFStringCreateMutable(kCFAllocatorDefault, 0);
  CFStringAppendCString(text, "A\x80\xA5", kCFStringEncodingMacRoman);
  CFStringAppendCString(text, "\xDB\xF0\xFF", kCFStringEncodingMacRoman);
  EXPECT_STREQ(platform::cf::Utf8(text), "AÄ•€\uF8FFˇ");

  const void* values[] = {text, CFSTR("x")};
  CFArrayRef array = CFArrayCreate(kCFAllocatorDefault, values, 2, &kCFTypeArrayCallBacks);
  EXPECT_EQ(CFGetRetainCount(text), 2);
  CFMutableDictionaryRef ticket = CFDictionaryCreateMutable(kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks,
                                                            &kCFTypeDictionaryValueCallBacks);
  CFDictionarySetValue(ticket, CFSTR("All"), array);
  CFDictionarySetValue(ticket, CFSTR("Default"), array);
  EXPECT_EQ(CFGetRetainCount(array), 3);
  // The same value again, while the dictionary holds its only count.
  const int one = 1;
  CFNumberRef version = CFNumberCreate(kCFAllocatorDefault, kCFNumberIntType, &one);
  CFDictionarySetValue(ticket, CFSTR("Version"), version);
  CFRelease(version);
  CFDictionarySetValue(ticket, CFSTR("Version"), version);
  EXPECT_EQ(platform::cf::LiveObjects(), before + 4);
  EXPECT_EQ(CFDictionaryGetCount(ticket), 3);
  EXPECT_EQ(CFDictionaryGetValue(ticket, CFSTR("Default")), array);
  CFRelease(array);
  CFRelease(text);
  EXPECT_EQ(platform::cf::LiveObjects(), before + 4);
  CFRelease(ticket);
  EXPECT_EQ(platform::cf::LiveObjects(), before);
}

struct ScriptRun {
  CommandResult result;
  std::string log;
};

// Runs a script with lwhost, with no desktop bus, logging to a file.
ScriptRun Session(const std::string& name, const std::string& script, const std::string& options = "") {
  const std::string dir = Fresh(name);
  std::ofstream(dir + "/s.session") << "module fx " << testpaths::kFixture << "\nmodule vorn " << testpaths::kVorn << "\n"
                                    << script;
  ScriptRun run;
  std::vector<std::string> words = {LWHOST_PATH, "session", dir + "/s.session", "--log", dir + "/log"};
  if (!options.empty()) words.push_back(options);
  run.result = RunCommand(words, {"DBUS_SESSION_BUS_ADDRESS=", "XDG_RUNTIME_DIR="});
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
  std::ofstream(MASTER_TEST_DIR "/aborted.scene") << "camera cam position 0 0 -5\nobject ball sphere\n";
  const ScriptRun failed = Session("aborted", "master vorn Growl\nscene ../aborted.scene\npictures no/such/folder/f --size 8x8\nrender 1 2\n");
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
  const std::string dir = Fresh("scenes");
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

using Rows = std::vector<std::string>;

class CommandStatsTest : public ::testing::Test {
 protected:
  void SetUp() override { dir = Fresh(std::string("stats-") + testing::UnitTest::GetInstance()->current_test_info()->name()); }
  void TearDown() override { fs::remove_all(dir); }

  // Starts Layout with `stats` as the settings file (none when null) and one Command Statistics
  // instance, plays `script`, and gives the rows of the panel as its options last showed it.
  // Quits unless `stay`.
  Rows play(const char* stats, const std::string& script, bool stay = false, const std::string& settings = "") {
    if (stats) std::ofstream(file(), std::ios::binary) << stats;
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

  std::string dir, log;
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
#ifdef _WIN32
  ASSERT_TRUE(fs::create_directory(file()));  // no FIFOs here; a folder is not a regular file either
#else
  ASSERT_EQ(mkfifo(file().c_str(), 0600), 0);
#endif
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
