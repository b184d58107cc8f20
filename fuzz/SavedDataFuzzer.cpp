// Saved plug-in data into every server of a module, in both modes: the first byte picks the
// server, the second the mode, the rest is what the plug-in is asked to load. The instance
// must then save and load its own data again.
#include <lwmaster.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "FuzzModule.h"

namespace {

struct Harness {
  lwhost::Session session;
  const lwhost::ModuleFile* module = nullptr;
  std::vector<fuzz::FuzzServer> servers;
  LWInstanceFuncs masterInst{};
  LWItemFuncs masterItem{};

  Harness() {
    module = &session.load(fuzz::ModulePath());
    servers = fuzz::InstanceServers(*module);
  }

  void loadInto(lwhost::HandlerInstance& instance, lwhost::IOMode mode, const std::string& data) {
    instance.load(mode, data);
    for (lwhost::IOMode again : {lwhost::IOMode::Ascii, lwhost::IOMode::Binary}) instance.load(again, instance.save(again));
  }

  void run(const fuzz::FuzzServer& server, lwhost::IOMode mode, const std::string& data) {
    if (server.className == "NodeHandler") {
      lwhost::PluginNode& node = session.nodes().addPluginNode(*module, server.name);
      loadInto(node.instance(), mode, data);
      session.nodes().removeNode(node);
      return;
    }
    LWMasterHandler handler{};
    handler.inst = &masterInst;
    handler.item = &masterItem;
    if (!module->activateFirst(module->require(server.className, server.name), {LWMASTER_VERSION}, &handler)) return;
    lwhost::HandlerInstance instance(*module, masterInst, &masterItem, nullptr, server.name);
    loadInto(instance, mode, data);
  }
};

Harness& TheHarness() {
  static Harness* harness = new Harness;  // lives for the whole run; the module is never unloaded
  return *harness;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  Harness& h = TheHarness();
  if (h.servers.empty()) return 0;
  const fuzz::FuzzServer& server = h.servers[data[0] % h.servers.size()];
  const lwhost::IOMode mode = data[1] & 1 ? lwhost::IOMode::Binary : lwhost::IOMode::Ascii;
  try {
    h.run(server, mode, std::string(reinterpret_cast<const char*>(data) + 2, size - 2));
  } catch (const lwhost::CreationError&) {
    // A server may refuse to be created in this host; nothing was loaded.
  }
  return 0;
}
