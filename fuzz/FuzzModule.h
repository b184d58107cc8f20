#pragma once

// The module the saved-data fuzzer and the seed writer drive: $VORN_FUZZ_MODULE, else vorn.p
// as built beside them. Its servers are those lwhost can make instances of, in record order.

#include <cstdlib>
#include <string>
#include <vector>

#include "lwhost/Session.h"

namespace fuzz {

inline std::string ModulePath() {
  const char* chosen = std::getenv("VORN_FUZZ_MODULE");
  return chosen && *chosen ? chosen : VORN_MODULE_PATH;
}

struct FuzzServer {
  std::string className, name;
};

inline std::vector<FuzzServer> InstanceServers(const lwhost::ModuleFile& module) {
  std::vector<FuzzServer> servers;
  for (const ServerRecord* r : module.records())
    if (r->name && (std::string(r->className) == "NodeHandler" || std::string(r->className) == "MasterHandler"))
      servers.push_back({r->className, r->name});
  return servers;
}

}  // namespace fuzz
