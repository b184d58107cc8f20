#include "lwhost/Host.h"

#include <lwhandler.h>
#include <lwhost.h>

#include <atomic>
#include <cstdint>

namespace lwhost {

namespace {
std::atomic<Host*> g_current{nullptr};

void* Lookup(const char* name, int use) {
  Host* host = g_current.load();
  return host ? host->globals().lookup(name, use) : nullptr;
}

void InstanceUpdate(const char* className, LWInstance instance) {
  if (Host* host = g_current.load()) host->recordInstanceUpdate(className, instance);
}

void* AsPointer(unsigned int value) { return reinterpret_cast<void*>(static_cast<std::uintptr_t>(value)); }
}  // namespace

unsigned int ProductInfoFor(unsigned int major, unsigned int minor, unsigned int build) {
  return ((major & 0xF) << 20) | ((minor & 0xF) << 16) | ((build & 0xFFF) << 4) | LWINF_PRODLWAV;
}

Host::Host() {
  productInfo_ = ProductInfoFor(9, 6);
  globals_.provide(LWMESSAGEFUNCS_GLOBAL, MessageLog::Table());
  globals_.provide(LWINSTUPDATE_GLOBAL, reinterpret_cast<void*>(&InstanceUpdate));
  publishIdentity();
  g_current.store(this);
}

Host::~Host() {
  Host* self = this;
  g_current.compare_exchange_strong(self, nullptr);
}

Host* Host::current() { return g_current.load(); }

GlobalFunc* Host::lookupFunction() { return &Lookup; }

void Host::actAs(Application app, unsigned int serial) {
  application_ = app;
  systemID_ = static_cast<unsigned int>(app) | (serial & LWSYS_SERIALBITS);
  publishIdentity();
}

void Host::setVersion(unsigned int major, unsigned int minor, unsigned int build) {
  productInfo_ = ProductInfoFor(major, minor, build);
  publishIdentity();
}

void Host::publishIdentity() {
  globals_.provide(LWSYSTEMID_GLOBAL, AsPointer(systemID_));
  globals_.provide(LWPRODUCTINFO_GLOBAL, AsPointer(productInfo_));
}

}  // namespace lwhost

namespace lwhost {

std::vector<std::pair<std::string, void*>> Host::instanceUpdates() const {
  std::lock_guard<std::mutex> lock(updatesMutex_);
  return instanceUpdates_;
}

void Host::clearInstanceUpdates() {
  std::lock_guard<std::mutex> lock(updatesMutex_);
  instanceUpdates_.clear();
}

void Host::recordInstanceUpdate(const char* className, void* instance) {
  std::lock_guard<std::mutex> lock(updatesMutex_);
  instanceUpdates_.emplace_back(className ? className : "", instance);
}

}  // namespace lwhost
