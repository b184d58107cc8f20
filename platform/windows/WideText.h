#pragma once

#include <string>

namespace platform {

// UTF-8 as the UTF-16 the Windows API takes.
std::wstring Wide(const std::string& utf8);

}  // namespace platform
