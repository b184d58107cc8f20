#include "hostkit/LWServer.h"

#include <cstddef>

namespace hostkit {

// Never freed, so that a registration made during static destruction still finds its list.
std::vector<ServerRecord>& LWServer::pluginList() {
  static auto* list = new std::vector<ServerRecord>;
  return *list;
}

std::vector<LWServer::Hook>& LWServer::startupList() {
  static auto* list = new std::vector<Hook>;
  return *list;
}

std::vector<LWServer::Hook>& LWServer::shutdownList() {
  static auto* list = new std::vector<Hook>;
  return *list;
}

void LWServer::AddPlugin(const char* className, const char* name, ActivateFunc* activate,
                         ServerTagInfo* tags) {
  pluginList().push_back(ServerRecord{className, name, activate, tags});
}

void* LWServer::Startup() {
  for (Hook hook : startupList()) hook();
  const std::vector<ServerRecord>& records = pluginList();
  auto* array = new ServerRecord[records.size() + 1];
  for (std::size_t i = 0; i < records.size(); ++i) array[i] = records[i];
  array[records.size()] = ServerRecord{nullptr, nullptr, nullptr, nullptr};
  _mod_descrip.serverDefs = array;
  return array;
}

void LWServer::Shutdown(void* serverData) {
  auto* array = static_cast<ServerRecord*>(serverData);
  if (_mod_descrip.serverDefs == array) _mod_descrip.serverDefs = nullptr;  // no dangling publication
  delete[] array;
  for (Hook hook : shutdownList()) hook();
}

}  // namespace hostkit
