#include "lwhost/GlobalRegistry.h"

namespace lwhost {

void GlobalRegistry::provide(const std::string& name, void* service) {
  std::lock_guard<std::mutex> lock(mutex_);
  services_[name] = service;
}

void GlobalRegistry::withhold(const std::string& name, bool withheld) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (withheld)
    withheld_.insert(name);
  else
    withheld_.erase(name);
}

bool GlobalRegistry::provides(const std::string& name) const {
  std::lock_guard<std::mutex> lock(mutex_);
  return services_.count(name) && !withheld_.count(name);
}

void* GlobalRegistry::lookup(const char* name, int use) {
  if (!name) return nullptr;
  std::lock_guard<std::mutex> lock(mutex_);
  auto [it, inserted] = counts_.try_emplace(name);
  if (inserted) asked_.push_back(name);
  LookupCounts& c = it->second;
  if (use == 1)
    ++c.acquire;
  else if (use == 2)
    ++c.release;
  else
    ++c.transient;
  if (withheld_.count(name)) return nullptr;
  auto found = services_.find(name);
  return found == services_.end() ? nullptr : found->second;
}

void* GlobalRegistry::peek(const std::string& name) const {
  std::lock_guard<std::mutex> lock(mutex_);
  if (withheld_.count(name)) return nullptr;
  auto found = services_.find(name);
  return found == services_.end() ? nullptr : found->second;
}

LookupCounts GlobalRegistry::counts(const std::string& name) const {
  std::lock_guard<std::mutex> lock(mutex_);
  auto it = counts_.find(name);
  return it == counts_.end() ? LookupCounts{} : it->second;
}

std::vector<std::string> GlobalRegistry::namesAsked() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return asked_;
}

void GlobalRegistry::resetCounts() {
  std::lock_guard<std::mutex> lock(mutex_);
  counts_.clear();
  asked_.clear();
}

}  // namespace lwhost
