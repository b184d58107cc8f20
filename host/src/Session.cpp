#include "lwhost/Session.h"

namespace lwhost {

Session::Session()
    : animation_(host_), scene_(host_), xpanels_(host_), panels_(host_), nodes_(host_) {}

Session::~Session() = default;

ModuleFile& Session::load(const std::string& path) {
  modules_.push_back(std::make_unique<ModuleFile>(path));
  return *modules_.back();
}

}  // namespace lwhost
