#pragma once

#include <string>
#include <vector>

namespace platform {

// "VornNotify.cfg" in the host's Settings directory: one line
//   command: PATH ARG...
// Words are separated by blanks; double quotes group blanks into one word (\" and \\ inside
// them stand for a quote and a backslash). Blank lines and lines starting with '#' are
// skipped. Each notification then also runs PATH ARG... TITLE DESCRIPTION.
struct ForwardingConfig {
  std::vector<std::string> command;  // empty: nothing to run
  std::string problem;               // why there is nothing to run, when there is a file
  bool missing = false;              // no file at all
};

ForwardingConfig ParseForwardingConfig(const std::string& text);
ForwardingConfig ReadForwardingConfig(const std::string& settingsDirectory);

}  // namespace platform
