// Network files as lwhost render reads them, parsed without loading anything.
#include <cstddef>
#include <cstdint>
#include <string>

#include "lwhost/NetworkFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  try {
    lwhost::ParseNetwork(text, "fuzz.net", "/nonexistent", [](const std::string& name) -> const char* {
      return name == "VORN_MODULE" ? "vorn.p" : nullptr;
    });
  } catch (const lwhost::NetworkError& e) {
    // The one line lwhost prints must not be empty.
    if (!*e.what()) __builtin_trap();
  }
  return 0;
}
