// The Growl Notifier in Layout sessions: what each event posts, seen through the program
// VornNotify.cfg names and through a notification daemon on a private session bus; and the
// module's own CoreFoundation subset, which the notifier's records are built from on systems
// without the framework: counts balance and Mac Roman text arrives as Unicode.
#include <gtest/gtest.h>
#include <lwmaster.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "cli/CliSupport.h"
#include "lwhost/LayoutSession.h"
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
  EXPECT_LE(waitpid(-1, nullptr, WNOHANG), 0) << "a program's parent was left unreaped";
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

}  // namespace
