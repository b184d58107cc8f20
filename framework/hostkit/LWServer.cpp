#include "hostkit/LWServer.h"

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define HOSTKIT_LEAK_CHECKED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define HOSTKIT_LEAK_CHECKED 1
#endif
#endif
#ifdef HOSTKIT_LEAK_CHECKED
#include <sanitizer/lsan_interface.h>
#endif

namespace hostkit {

namespace {
// The leak checker is told these outlive an unload on purpose; what they hold stays reachable.
template <class T>
T* NeverFreed(T* object) {
#ifdef HOSTKIT_LEAK_CHECKED
  __lsan_ignore_object(object);
#endif
  return object;
}
}  // namespace

// Never freed, so that a registration made during static destruction still finds its list.
std::vector<ServerRecord>& LWServer::pluginList() {
  static auto* list = NeverFreed(new std::vector<ServerRecord>);
  return *list;
}

std::vector<LWServer::Hook>& LWServer::startupList() {
  static auto* list = NeverFreed(new std::vector<Hook>);
  return *list;
}

std::vector<LWServer::Hook>& LWServer::shutdownList() {
  static auto* list = NeverFreed(new std::vector<Hook>);
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
