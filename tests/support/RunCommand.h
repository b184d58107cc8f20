#pragma once

#include <string>
#include <vector>

// Runs a program, capturing what it printed on both streams.
struct CommandResult {
  int status = -1;  // exit code; -1 when it did not exit normally (a signal, an exception)
  std::string output;
};

// A command line for the system's shell: sh, or cmd.exe on Windows.
CommandResult RunCommand(const std::string& commandLine);

// `words` are the program and its arguments, each reaching it as one argument whatever it holds;
// `environment` holds "NAME=value" entries set for the program on top of this process's own.
CommandResult RunCommand(const std::vector<std::string>& words, const std::vector<std::string>& environment = {});
