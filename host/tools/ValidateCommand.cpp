// lwhost validate: exercises every server of a module and reports each check.
#include <cstdio>
#include <string>
#include <vector>

#include "Commands.h"
#include "lwhost/Validation.h"

namespace lwhost::tools {

namespace {

unsigned long Number(const std::string& option, const std::string& text, unsigned long low, unsigned long high) {
  std::size_t used = 0;
  unsigned long value = 0;
  try {
    value = std::stoul(text, &used);
  } catch (const std::exception&) {
    used = 0;
  }
  if (used == 0 || used != text.size() || text[0] == '-' || value < low || value > high)
    throw UsageError(option + " expects a whole number from " + std::to_string(low) + " to " + std::to_string(high) +
                     ", not " + text);
  return value;
}

}  // namespace

int ValidateCommand(const std::vector<std::string>& args) {
  Arguments in("validate", args);
  ValidationOptions options;
  std::string module;
  while (!in.done()) {
    if (!in.atOption()) {
      if (!module.empty()) in.unknown(in.next());
      module = in.next();
      continue;
    }
    const std::string option = in.next();
    if (option == "--server")
      options.server = in.valueOf(option);
    else if (option == "--seed")
      options.seed = Number(option, in.valueOf(option), 0, 0xFFFFFFFFul);
    else if (option == "--level")
      options.level = static_cast<int>(Number(option, in.valueOf(option), 1, 5));
    else
      in.unknown(option);
  }
  if (module.empty()) in.missing("a MODULE file");
  return Validate(module, options, stdout) == 0 ? 0 : 1;
}

}  // namespace lwhost::tools
