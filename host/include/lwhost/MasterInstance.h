#pragma once

#include <lwmaster.h>

#include <memory>
#include <string>

#include "lwhost/HandlerInstance.h"

namespace lwhost {

class ModuleFile;


// One master plug-in instance, created and driven as Layout drives it: activation of its
// "MasterHandler" server (version 4), creation, events, flags, and its "MasterInterface".
class MasterInstance {
 public:
  // Throws CreationError when activation or creation is refused; `itemFuncs` false withholds
  // the item table, as Modeler does.
  MasterInstance(const ModuleFile& module, const std::string& server, std::string name, bool itemFuncs = true);
  MasterInstance(const MasterInstance&) = delete;
  MasterInstance& operator=(const MasterInstance&) = delete;

  const std::string& name() const { return name_; }
  const std::string& serverName() const { return instance_->serverName(); }
  HandlerInstance& instance() { return *instance_; }
  // LWMAST_SCENE or LWMAST_LAYOUT, as the activation set it.
  int type() const { return handler_.type; }
  // The plug-in's answer now (0 when it has no flags function).
  unsigned int flags() const;
  // Whether the plug-in asked for the notifications of this event code.
  bool wants(int eventCode) const;
  // Delivers one event; `access` is completed with the code and data.
  double event(LWMasterAccess access) const;
  // The "MasterInterface" record of the same name, or null.
  const ServerRecord* interfaceRecord() const { return interface_; }

 private:
  std::string name_;
  LWInstanceFuncs inst_{};
  LWItemFuncs item_{};
  LWMasterHandler handler_{};
  const ServerRecord* interface_ = nullptr;
  std::unique_ptr<HandlerInstance> instance_;
};

}  // namespace lwhost
