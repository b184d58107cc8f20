// lwhost: a headless LightWave host for plug-in modules.
#include <cstdio>
#include <cstring>
#include <string>

#include "lwhost/Host.h"
#include "lwhost/ModuleFile.h"
#include "lwhost/ServerTable.h"

namespace {

int Usage() {
  std::fprintf(stderr,
               "usage: lwhost servers MODULE     list the module's server records\n");
  return 2;
}

int Servers(const char* path) {
  lwhost::Host host;
  lwhost::ModuleFile module(path);
  std::fputs(lwhost::FormatServerTable(module).c_str(), stdout);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return Usage();
  std::string command = argv[1];
  try {
    if (command == "servers" && argc == 3) return Servers(argv[2]);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "lwhost: %s\n", e.what());
    return 1;
  }
  return Usage();
}
