#pragma once

#include <functional>
#include <string>
#include <vector>

#include "lwhost/NetworkFile.h"

namespace lwhost::scenelines {

// The scene statements of a network file: camera, object and light lines, and the settings
// depth, threads, frames, size, ambient and backdrop. `fail` reports a fault of the line and
// does not return.
using Fail = std::function<void(const std::string& reason)>;

bool IsItemLine(const std::string& keyword);
bool IsSettingLine(const std::string& keyword);
ItemStatement ParseItem(const std::vector<std::string>& words, const Fail& fail);
void ParseSetting(const std::vector<std::string>& words, SceneSettings& settings, const Fail& fail);

}  // namespace lwhost::scenelines
