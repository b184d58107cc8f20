#pragma once

#include <lwmodule.h>
#include <lwserver.h>

#include <vector>

namespace hostkit {

// The module's registry of server records, filled by static initialisers while the host loads
// the file and published through the module descriptor at startup.
class LWServer {
 public:
  using Hook = void (*)();

  // Appends a record. The texts and the tag array are static data of the module and are not copied.
  static void AddPlugin(const char* className, const char* name, ActivateFunc* activate,
                        ServerTagInfo* tags);

  // The descriptor's startup entry: runs the startup hooks, then builds the terminated array.
  static void* Startup();
  // The descriptor's shutdown entry, given what Startup returned.
  static void Shutdown(void* serverData);

  // Created empty on first use, so registration works whatever order the initialisers run in.
  static std::vector<ServerRecord>& pluginList();
  static std::vector<Hook>& startupList();
  static std::vector<Hook>& shutdownList();
};

}  // namespace hostkit

// Defined once per module (module/ModuleDescriptor.cpp); Startup publishes the records in it.
extern "C" ModuleDescriptor _mod_descrip;
