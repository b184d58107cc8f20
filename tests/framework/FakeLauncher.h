#pragma once

#include <chrono>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

// A stand-in for the system's browser launcher: it waits for the test's word before answering,
// so a click that blocked the host would show as "blocked". It answers "ok ADDRESS|N" (N: the
// number of arguments it was given) in a file of its folder. One implementation per system.
class FakeLauncher {
 public:
  FakeLauncher();
  ~FakeLauncher();
  void install();         // the launcher the system uses from now on
  void installNothing();  // no launcher at all
  void go() { std::ofstream(dir_ + "/go").put('\n'); }
  std::string answer() {
    for (int i = 0; i < 200; ++i) {
      std::ifstream in(dir_ + "/args");
      std::stringstream text;
      if (in) {
        text << in.rdbuf();
        return text.str();
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return "";
  }

 private:
  std::string dir_, previous_;
};
