#include "support/RunCommand.h"

#include <sys/wait.h>

#include <cstdio>

namespace {

std::string ShellQuoted(const std::string& word) {
  std::string quoted = "'";
  for (char c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

}  // namespace

CommandResult RunCommand(const std::vector<std::string>& words, const std::vector<std::string>& environment) {
  std::string command = "env";
  for (const std::string& e : environment) command += " " + ShellQuoted(e);
  for (const std::string& w : words) command += " " + ShellQuoted(w);
  return RunCommand(command);
}

CommandResult RunCommand(const std::string& commandLine) {
  CommandResult result;
  FILE* pipe = popen((commandLine + " 2>&1").c_str(), "r");
  if (!pipe) return result;
  char buffer[512];
  while (fgets(buffer, sizeof buffer, pipe)) result.output += buffer;
  int status = pclose(pipe);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}
