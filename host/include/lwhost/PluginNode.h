#pragma once

#include <lwnodes.h>
#include <lwserver.h>

#include <memory>
#include <string>

#include "lwhost/HandlerInstance.h"
#include "lwhost/Node.h"

namespace lwhost {

class ModuleFile;

// A node backed by a plug-in's NodeHandler. Made by NodeEditor::addPluginNode, which builds the
// node first and then the instance with the node as create context, so that the plug-in can
// add its inputs and outputs during create. The module must outlive the node.
class PluginNode : public Node {
 public:
  ~PluginNode() override;

  // The instance: copy, save/load, description, items, interface.
  HandlerInstance& instance() { return *instance_; }
  const HandlerInstance& instance() const { return *instance_; }
  const ModuleFile& module() const { return module_; }
  const std::string& serverName() const { return serverName_; }
  // The NodeHandler version the plug-in accepted (2 or 1).
  int version() const { return version_; }

  // A render session: init before the first frame, newTime for each sampling pass, cleanup
  // after the last. init and newTime return the plug-in's error text, empty on success.
  std::string init(int mode);
  std::string newTime(LWFrame frame, LWTime time);
  void cleanup();
  // NF_* bits; 0 when the plug-in accepted version 1 or gives no flags function.
  unsigned int flags() const;
  // Asks the plug-in to draw its custom preview; false if it has no such function.
  bool customPreview(int width, int height);

  // The NodeInterface server of the same name, if the module has one.
  bool hasInterface() const;
  // Activates it for this instance; throws ModuleError when the module has none.
  InterfaceActivation activateInterface();

  void evaluate(LWNodalAccess& access, NodeOutput& output, NodeValue value) noexcept override;
  void* eventUserData() const override { return instance_ ? instance_->get() : nullptr; }

 private:
  friend class NodeEditor;
  // Activates the handler (versions 2, then 1) into zeroed tables. Throws CreationError.
  PluginNode(NodeEditor& editor, const ModuleFile& module, const ServerRecord& record, std::string name,
             std::string userName);
  // Creates the instance with this node as context. Throws CreationError.
  void createInstance();

  const ModuleFile& module_;
  std::string serverName_;
  int version_ = 0;
  LWInstanceFuncs inst_{};
  LWItemFuncs item_{};
  LWRenderFuncs rend_{};
  LWNodeHandler handler_{};  // always the full version 2 record
  std::unique_ptr<HandlerInstance> instance_;
};

}  // namespace lwhost
