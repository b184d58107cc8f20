#pragma once

#include <string>
#include <vector>

namespace platform {

// Starts argv[0] with exactly these arguments, without a shell and without waiting for it; it
// leaves no zombie behind. False when it could not be started.
bool StartProgram(const std::vector<std::string>& argv);

}  // namespace platform
