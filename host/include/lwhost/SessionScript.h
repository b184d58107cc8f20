#pragma once

#include <stdexcept>
#include <string>

namespace lwhost {

class LayoutSession;

// A fault in a session script: what() is "FILE:LINE: reason" ("FILE: reason" for the file as a
// whole, line 0).
class ScriptError : public std::runtime_error {
 public:
  ScriptError(const std::string& file, int line, const std::string& reason)
      : std::runtime_error(file + ":" + (line > 0 ? std::to_string(line) + ":" : std::string()) + " " + reason),
        line_(line) {}
  int line() const { return line_; }

 private:
  int line_;
};

// Runs a session script (format: host/SESSIONS.md) statement by statement, stopping at the first
// fault with a ScriptError. Relative paths are taken from `baseDir` (empty: as given).
void RunSessionScript(LayoutSession& session, const std::string& text, const std::string& file,
                      const std::string& baseDir = "");
// Reads the file and runs it; relative paths are taken from the file's folder.
void RunSessionFile(LayoutSession& session, const std::string& path);

}  // namespace lwhost
