#pragma once

#include <cstdio>
#include <string>
#include <sys/wait.h>

// Runs a shell command, capturing what it printed on both streams.
struct CommandResult {
  int status = -1;  // exit code; -1 when it did not exit normally
  std::string output;
};

inline CommandResult RunCommand(const std::string& command) {
  CommandResult result;
  FILE* pipe = popen((command + " 2>&1").c_str(), "r");
  if (!pipe) return result;
  char buffer[512];
  while (fgets(buffer, sizeof buffer, pipe)) result.output += buffer;
  int status = pclose(pipe);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}
