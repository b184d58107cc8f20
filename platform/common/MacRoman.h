#pragma once

#include <string>

namespace platform {

// Mac OS Roman to UTF-8 (Apple's mapping, with the euro sign at 0xDB).
std::string MacRomanToUtf8(const char* text);

}  // namespace platform
