#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lwhost/Animation.h"
#include "lwhost/CreationError.h"
#include "lwhost/HandlerInstance.h"
#include "lwhost/Host.h"
#include "lwhost/IOMode.h"
#include "lwhost/ModuleFile.h"
#include "lwhost/NodalAccess.h"
#include "lwhost/NodeEditor.h"
#include "lwhost/Panels.h"
#include "lwhost/PluginNode.h"
#include "lwhost/Scene.h"
#include "lwhost/XPanel.h"
#include "lwhost/XPanels.h"

namespace lwhost {

// A complete headless Layout: the host with every service component, and the modules it
// loaded. When the scene renumbers its items, every plug-in node hears of it through its
// changeID, as in Layout. Members are ordered for teardown: node instances go first (they may still hold
// panels and parameters), modules only after every component, the host last of all (unloading a
// module releases what it still held through the host).
class Session {
 public:
  Session();
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Loads a module file and keeps it for the life of the session. Throws ModuleError.
  ModuleFile& load(const std::string& path);

  Host& host() { return host_; }
  Animation& animation() { return animation_; }
  Scene& scene() { return scene_; }
  XPanels& xpanels() { return xpanels_; }
  Panels& panels() { return panels_; }
  NodeEditor& nodes() { return nodes_; }

 private:
  Host host_;
  std::vector<std::unique_ptr<ModuleFile>> modules_;
  Animation animation_;
  Scene scene_;
  XPanels xpanels_;
  Panels panels_;
  NodeEditor nodes_;
  ListenerToken renumbering_ = 0;
};

}  // namespace lwhost
