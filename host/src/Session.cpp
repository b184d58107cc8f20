#include "lwhost/Session.h"

#include "lwhost/PluginNode.h"

namespace lwhost {

Session::Session()
    : animation_(host_), scene_(host_), xpanels_(host_), panels_(host_), nodes_(host_) {
  renumbering_ = scene_.addRenumberListener([this](const IdChanges& changes) {
    for (const auto& node : nodes_.nodes())
      if (auto* plugin = dynamic_cast<PluginNode*>(node.get())) plugin->instance().changeID(changes);
  });
}

Session::~Session() { scene_.removeRenumberListener(renumbering_); }

ModuleFile& Session::load(const std::string& path) {
  modules_.push_back(std::make_unique<ModuleFile>(path));
  return *modules_.back();
}

}  // namespace lwhost
