// lwhost session: Layout over time, played from a script.
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "lwhost/LayoutSession.h"
#include "lwhost/SessionScript.h"

namespace lwhost::tools {

int SessionCommand(const std::vector<std::string>& args) {
  Arguments in("session", args);
  std::string script, logPath;
  LayoutSessionOptions options;
  while (!in.done()) {
    if (!in.atOption()) {
      const std::string word = in.next();
      if (!script.empty()) in.unknown(word);
      script = word;
      continue;
    }
    const std::string option = in.next();
    if (option == "--settings")
      options.settingsDirectory = in.valueOf(option);
    else if (option == "--log")
      logPath = in.valueOf(option);
    else if (option == "--screamernet")
      options.screamerNet = true;
    else
      in.unknown(option);
  }
  if (script.empty()) in.missing("a SCRIPT file");

  std::ofstream logFile;
  if (!logPath.empty() && logPath != "-") {
    logFile.open(logPath, std::ios::trunc);
    if (!logFile) throw CommandError("cannot write the log " + logPath);
  }
  LayoutSession session(options);
  session.setLog([&](const std::string& line) {
    if (logPath == "-")
      std::printf("%s\n", line.c_str());
    else if (logFile.is_open())
      logFile << line << '\n' << std::flush;
    // Errors are worth seeing whether or not the stream is logged.
    if (line.rfind("message error ", 0) == 0) std::fprintf(stderr, "lwhost: a plug-in reported: %s\n", line.c_str() + 14);
  });
  RunSessionFile(session, script);
  session.quit();
  return 0;
}

}  // namespace lwhost::tools
