#pragma once

#include <lwmaster.h>
#include <lwnodes.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "lwhost/Session.h"

namespace lwhost::validate {

// The server a check is about.
struct Target {
  std::string module;     // the module file
  std::string className;  // as its record names it
  std::string name;
  bool hasInterface = false;  // the module has the matching interface server
};

// The handler classes whose instances lwhost can make and drive.
bool IsDrivenClass(const std::string& className);

// A fresh session with the module loaded and instances of one server: the plug-in node, or
// the master. `prepare` sets the host up (program, withheld services) before the module loads.
class ServerProbe {
 public:
  explicit ServerProbe(const Target& target, const std::function<void(Host&)>& prepare = {});
  ~ServerProbe();

  Session& session() { return session_; }
  const ModuleFile& module() const { return *module_; }
  // A new instance, kept until the probe goes. Throws CreationError when the plug-in refuses.
  HandlerInstance& create();
  // The plug-in node an instance of a NodeHandler lives in, or null.
  PluginNode* nodeOf(const HandlerInstance& instance) const;

  // One render pass over every output of every plug-in node: init, newTime, evaluate each
  // output at `samples` spots, cleanup. What the node writes is not judged.
  void render(int samples = 4);
  // Activates the interface for the instance; a form panel gets every control read and then
  // values typed in, in range and well beyond it; an options window is opened and closed.
  // Returns what went wrong, empty when nothing did.
  std::string exercisePanel(HandlerInstance& instance, unsigned long seed);

 private:
  Target target_;
  Session session_;
  const ModuleFile* module_ = nullptr;
  std::vector<PluginNode*> nodes_;
  // Master tables outlive their instances; declared after the session, so instances go first.
  std::vector<std::unique_ptr<LWInstanceFuncs>> instTables_;
  std::vector<std::unique_ptr<LWItemFuncs>> itemTables_;
  std::vector<std::unique_ptr<HandlerInstance>> masters_;
};

// Evaluates one output into a buffer big enough for any value type.
void EvaluateOutput(NodeEditor& editor, NodeOutput& output, LWNodalAccess& access);

}  // namespace lwhost::validate
