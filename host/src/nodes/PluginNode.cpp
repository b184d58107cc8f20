#include "lwhost/PluginNode.h"

#include "lwhost/Host.h"
#include "lwhost/ModuleFile.h"
#include "lwhost/NodeEditor.h"

namespace lwhost {

namespace {

std::string ActivationFailure(const std::string& server, int result) {
  std::string why;
  switch (result) {
    case AFUNC_BADVERSION: why = "supports neither version 2 nor version 1 of the class"; break;
    case AFUNC_BADGLOBAL: why = "a global service it needs is missing"; break;
    case AFUNC_BADLOCAL: why = "it did not accept the host's handler record"; break;
    case AFUNC_BADAPP:
    case AFUNC_BADAPP_SILENT: why = "it does not run in this program"; break;
    default: why = "unknown answer"; break;
  }
  return LWNODE_HCLASS " \"" + server + "\" refused activation: " + why + " (code " + std::to_string(result) + ")";
}

std::string Text(LWError error) { return error ? error : ""; }

}  // namespace

PluginNode::PluginNode(NodeEditor& editor, const ModuleFile& module, const ServerRecord& record, std::string name,
                       std::string userName)
    : Node(editor, std::move(name), std::move(userName)), module_(module), serverName_(record.name) {
  const bool modeler = editor.host().isModeler();
  int result = AFUNC_BADVERSION;
  for (int version : {LWNODECLASS_VERSION, 1}) {
    // Every attempt starts from clean tables: a refusal may have left some members filled.
    inst_ = LWInstanceFuncs{};
    item_ = LWItemFuncs{};
    rend_ = LWRenderFuncs{};
    handler_ = LWNodeHandler{};
    handler_.inst = &inst_;
    handler_.item = modeler ? nullptr : &item_;
    handler_.rend = &rend_;
    result = module.activate(record, version, &handler_);
    if (result != AFUNC_BADVERSION) {
      if (result == AFUNC_OK) version_ = version;
      break;
    }
  }
  if (version_ == 0) throw CreationError(ActivationFailure(serverName_, result));

  // A plug-in may point the record at tables of its own; what counts is what they hold now.
  if (!handler_.inst) throw CreationError(serverName_ + ": the activation left no instance functions");
  if (handler_.inst != &inst_) inst_ = *handler_.inst;
  if (handler_.rend != &rend_) rend_ = handler_.rend ? *handler_.rend : LWRenderFuncs{};
  if (handler_.item && handler_.item != &item_) item_ = *handler_.item;
}

PluginNode::~PluginNode() {
  // The plug-in may still use its node's connectors while it is destroyed.
  instance_.reset();
}

void PluginNode::createInstance() {
  const bool hasItems = handler_.item != nullptr;
  instance_ = std::make_unique<HandlerInstance>(module_, inst_, hasItems ? &item_ : nullptr, id(), serverName_);
}

std::string PluginNode::init(int mode) { return rend_.init ? Text(rend_.init(instance_->get(), mode)) : ""; }

std::string PluginNode::newTime(LWFrame frame, LWTime time) {
  return rend_.newTime ? Text(rend_.newTime(instance_->get(), frame, time)) : "";
}

void PluginNode::cleanup() {
  if (rend_.cleanup) rend_.cleanup(instance_->get());
}

unsigned int PluginNode::flags() const { return handler_.flags ? handler_.flags(instance_->get()) : 0u; }

bool PluginNode::customPreview(int width, int height) {
  if (!handler_.customPreview) return false;
  handler_.customPreview(instance_->get(), width, height);
  return true;
}

bool PluginNode::hasInterface() const { return module_.find(LWNODE_ICLASS, serverName_) != nullptr; }

InterfaceActivation PluginNode::activateInterface() {
  return instance_->activateInterface(module_.require(LWNODE_ICLASS, serverName_));
}

void PluginNode::evaluate(LWNodalAccess& access, NodeOutput& output, NodeValue value) noexcept {
  if (handler_.evaluate && instance_) handler_.evaluate(instance_->get(), &access, &output, value);
}

}  // namespace lwhost
