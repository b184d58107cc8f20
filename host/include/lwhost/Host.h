#pragma once

#include <lwserver.h>

#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>
#include <typeindex>
#include <typeinfo>

#include "lwhost/GlobalRegistry.h"
#include "lwhost/MessageLog.h"

namespace lwhost {

// Which LightWave program the host acts as; the codes are the top bits of "System ID".
enum class Application : unsigned int {
  Layout = 0x00000000u,
  Modeler = 0x10000000u,
  ScreamerNet = 0x20000000u,
};

// A headless LightWave host: the global services a module looks up, and who answers them.
// The lookup function handed to modules carries no context, so it answers for the host that
// was constructed last (the current host); a process runs one host at a time.
//
// The host itself serves the program's identity and "Info Messages 2". Further services come
// from components (node editor, animation, panels, scene) that attach themselves to it.
class Host {
 public:
  Host();
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  static Host* current();
  // The function handed to activations as the global lookup.
  static GlobalFunc* lookupFunction();

  GlobalRegistry& globals() { return globals_; }
  MessageLog& messages() { return messages_; }

  // Every (class name, instance) pair a plug-in reported through "Instance Update", in order.
  std::vector<std::pair<std::string, void*>> instanceUpdates() const;
  void clearInstanceUpdates();
  void recordInstanceUpdate(const char* className, void* instance);

  // Default: Layout, LightWave 9.6.
  void actAs(Application app, unsigned int serial = 0);
  void setVersion(unsigned int major, unsigned int minor, unsigned int build = 0);
  Application application() const { return application_; }
  bool isModeler() const { return application_ == Application::Modeler; }
  unsigned int systemID() const { return systemID_; }
  unsigned int productInfo() const { return productInfo_; }

  // Components register themselves so that service functions without a handle can find them.
  template <class T>
  void attach(T* component) { components_[std::type_index(typeid(T))] = component; }
  template <class T>
  void detach(T* component) {
    auto it = components_.find(std::type_index(typeid(T)));
    if (it != components_.end() && it->second == component) components_.erase(it);
  }
  template <class T>
  T* find() const {
    auto it = components_.find(std::type_index(typeid(T)));
    return it == components_.end() ? nullptr : static_cast<T*>(it->second);
  }
  // The current host's component of a kind, or null.
  template <class T>
  static T* currentComponent() {
    Host* host = current();
    return host ? host->find<T>() : nullptr;
  }

 private:
  void publishIdentity();

  GlobalRegistry globals_;
  MessageLog messages_;
  mutable std::mutex updatesMutex_;
  std::vector<std::pair<std::string, void*>> instanceUpdates_;
  Application application_ = Application::Layout;
  unsigned int systemID_ = 0;
  unsigned int productInfo_ = 0;
  std::map<std::type_index, void*> components_;
};

// "Product Info" for a version: LightWave product code 1, the build in bits 4..15.
unsigned int ProductInfoFor(unsigned int major, unsigned int minor, unsigned int build = 0);

}  // namespace lwhost
