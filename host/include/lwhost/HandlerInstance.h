#pragma once

#include <lwhandler.h>
#include <lwrender.h>
#include <lwserver.h>

#include <string>
#include <utility>
#include <vector>

#include "lwhost/CreationError.h"
#include "lwhost/IOMode.h"

namespace lwhost {

class ModuleFile;

// What an interface activation produced.
struct InterfaceActivation {
  int result = AFUNC_BADVERSION;  // the last activation answer (AFUNC_*)
  int version = 0;                // the version accepted, 0 if none was
  LWInterface local{};            // as the plug-in filled it: panel or options
};

// One live instance of any handler class (node, master, ...), driven through the tables its
// activation filled. The tables are copied, so the activation record may go; the module must
// outlive the instance. Not copyable: the instance belongs to exactly one host object.
class HandlerInstance {
 public:
  // Creates the instance with `context` (the node for node handlers, null for masters). `item`
  // is null when the host acts as Modeler. Throws CreationError with the plug-in's text when
  // create refuses, or a text of ours when the plug-in gives none.
  HandlerInstance(const ModuleFile& module, const LWInstanceFuncs& inst, const LWItemFuncs* item,
                  void* context, std::string serverName);
  // Destroys the panels interface activations returned, then the instance.
  ~HandlerInstance();
  HandlerInstance(const HandlerInstance&) = delete;
  HandlerInstance& operator=(const HandlerInstance&) = delete;

  LWInstance get() const { return instance_; }
  const std::string& serverName() const { return serverName_; }
  const ModuleFile& module() const { return module_; }

  // Copies `from` into this instance; the error text, empty on success.
  std::string copyFrom(const HandlerInstance& from);

  // The instance's data in the block format; empty when the plug-in does not save. `error`
  // gets the plug-in's error text, or ours when it left blocks open.
  std::string save(IOMode mode, std::string* error = nullptr) const;
  // Reads data written by save. Returns the plug-in's error text; when it reports none, the
  // reader's complaints about the data ("source: line N: ..."), joined by "; ". Empty = fine.
  std::string load(IOMode mode, const std::string& data);

  // The short description for lists; empty when the plug-in gives none.
  std::string description() const;

  // The items the instance depends on, without the end mark; {LWITEM_ALL} when it wants to
  // hear about every change. Empty when the instance uses none or has no item functions.
  std::vector<LWItemID> useItems() const;
  // Tells the instance about renumbered items as the flat list old1, new1, ..., null.
  // Pairs whose old id is null are dropped (they would end the list early). Nothing is sent
  // for an empty list. Returns whether the plug-in was called.
  bool changeID(const std::vector<std::pair<LWItemID, LWItemID>>& changes);

  // Activates the interface server for this instance, versions 1 to 4 ascending until one is
  // not refused as unsupported. A returned panel is kept and destroyed with the instance.
  InterfaceActivation activateInterface(const ServerRecord& interfaceRecord);
  // Panels kept from interface activations, each once.
  const std::vector<LWXPanelID>& panels() const { return panels_; }

 private:
  const ModuleFile& module_;
  LWInstanceFuncs inst_;
  LWItemFuncs item_;
  bool hasItem_;
  std::string serverName_;
  LWInstance instance_ = nullptr;
  std::vector<LWXPanelID> panels_;
};

}  // namespace lwhost
