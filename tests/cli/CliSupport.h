#pragma once

// Running the real lwhost binary from tests, and where its files go.

#include <filesystem>
#include <string>
#include <vector>

#include "support/ModulePaths.h"
#include "support/RunCommand.h"

namespace cli {

inline std::string ShellQuoted(const std::string& word) {
  std::string quoted = "'";
  for (char c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

// Runs lwhost with these words (each passed as one argument), stdout and stderr together.
// `environment` is prefixed as is, e.g. "VORN_MODULE=/x/vorn.p".
inline CommandResult Lwhost(const std::vector<std::string>& args, const std::string& environment = "") {
  std::string command = environment.empty() ? "" : environment + " ";
  command += ShellQuoted(LWHOST_PATH);
  for (const std::string& a : args) command += " " + ShellQuoted(a);
  return RunCommand(command);
}

// A fresh path in the suite's output folder; any file left there by an earlier run is removed.
inline std::string OutputPath(const std::string& name) {
  const std::filesystem::path dir(CLI_TEST_OUTPUT_DIR);
  std::filesystem::create_directories(dir);
  std::filesystem::remove(dir / name);
  return (dir / name).string();
}

inline bool Exists(const std::string& path) { return std::filesystem::exists(path); }

inline int Lines(const std::string& text) {
  int n = 0;
  for (char c : text) n += c == '\n';
  return n;
}

}  // namespace cli
