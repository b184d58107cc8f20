#include "SharedLibrary.h"

#include <dlfcn.h>

namespace lwhost::library {

void* Open(const std::string& path, std::string& error) {
  // dlopen takes a name without a slash as a library to search for; the user means the file.
  const std::string file = path.find('/') == std::string::npos ? "./" + path : path;
  // Each module keeps its own symbols, as LightWave loads many modules side by side.
  void* h = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!h) {
    const char* why = dlerror();
    error = std::string("not a loadable module (") + (why ? why : "unknown reason") + ")";
  }
  return h;
}

void* Symbol(void* library, const char* name) { return dlsym(library, name); }

void Close(void* library) { dlclose(library); }

}  // namespace lwhost::library
