// Session scripts as lwhost session plays them, against the real module.
//
// A script may save scenes and pictures wherever its paths point, so inputs that could name a
// place outside the fuzzer's own folder (a slash, a backslash, "..", or any variable but
// VORN_MODULE) are passed over: what remains still reaches every statement.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <dlfcn.h>
#include <string>

#include "lwhost/LayoutSession.h"
#include "lwhost/SessionScript.h"

namespace {

bool StaysInItsFolder(const std::string& text) {
  if (text.find_first_of("/\\") != std::string::npos || text.find("..") != std::string::npos) return false;
  for (std::size_t at = text.find('$'); at != std::string::npos; at = text.find('$', at + 1))
    if (text.compare(at, 14, "${VORN_MODULE}") != 0) return false;
  return true;
}

const std::string& WorkFolder() {
  static const std::string folder = [] {
    char name[] = "/tmp/vorn-session-fuzz-XXXXXX";
    const char* made = mkdtemp(name);
    if (!made) __builtin_trap();
    return std::string(made);
  }();
  return folder;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  setenv("VORN_MODULE", VORN_MODULE_PATH, 1);
  // Sessions load and unload the module; held open here, its coverage counters stay mapped for
  // the fuzzer to read after each run.
  if (!dlopen(VORN_MODULE_PATH, RTLD_NOW | RTLD_LOCAL)) __builtin_trap();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  if (!StaysInItsFolder(text)) return 0;
  lwhost::LayoutSessionOptions options;
  options.settingsDirectory = WorkFolder();
  try {
    lwhost::LayoutSession session(options);
    lwhost::RunSessionScript(session, text, "fuzz.session", WorkFolder());
  } catch (const lwhost::ScriptError& e) {
    // Every fault comes back as one line naming the script; it must not be empty.
    if (!*e.what()) __builtin_trap();
  }
  return 0;
}
