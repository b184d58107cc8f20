#include "lwhost/HandlerInstance.h"

#include <lwxpanel.h>

#include <algorithm>

#include "lwhost/BlockReader.h"
#include "lwhost/BlockWriter.h"
#include "lwhost/Host.h"
#include "lwhost/ModuleFile.h"

namespace lwhost {

namespace {
// A list without its end mark would otherwise be read until some zero word turns up.
constexpr std::size_t kMaxUsedItems = 1u << 16;
}  // namespace

HandlerInstance::HandlerInstance(const ModuleFile& module, const LWInstanceFuncs& inst, const LWItemFuncs* item,
                                 void* context, std::string serverName)
    : module_(module),
      inst_(inst),
      item_(item ? *item : LWItemFuncs{}),
      hasItem_(item != nullptr),
      serverName_(std::move(serverName)) {
  if (!inst_.create) throw CreationError(serverName_ + ": the plug-in has no create function");
  LWError error = nullptr;
  instance_ = inst_.create(inst_.priv, context, &error);
  if (!instance_) {
    if (error && *error) throw CreationError(error);
    throw CreationError(serverName_ + ": the plug-in refused to create an instance and gave no reason");
  }
}

HandlerInstance::~HandlerInstance() {
  // Panels call back into the instance, so they go first.
  if (!panels_.empty()) {
    Host* host = Host::current();
    auto* xpanels = host ? static_cast<LWXPanelFuncs*>(host->globals().peek(LWXPANELFUNCS_GLOBAL)) : nullptr;
    if (xpanels && xpanels->destroy)
      for (LWXPanelID panel : panels_) xpanels->destroy(panel);
  }
  if (inst_.destroy) inst_.destroy(instance_);
}

std::string HandlerInstance::copyFrom(const HandlerInstance& from) {
  if (&from == this) return "";
  if (from.inst_.create != inst_.create || from.inst_.priv != inst_.priv)
    return "cannot copy a \"" + from.serverName_ + "\" instance into a \"" + serverName_ + "\" instance";
  if (!inst_.copy) return serverName_ + ": the plug-in cannot copy instances";
  LWError error = inst_.copy(instance_, from.instance_);
  return error ? error : "";
}

std::string HandlerInstance::save(IOMode mode, std::string* error) const {
  if (error) error->clear();
  if (!inst_.save) return "";
  BlockWriter writer(mode);
  LWError failure = inst_.save(instance_, writer.state());
  std::string text = failure ? failure : "";
  if (text.empty() && writer.depth() != 0)
    text = serverName_ + ": save left " + std::to_string(writer.depth()) + " block(s) open";
  if (error) *error = text;
  return writer.data();
}

std::string HandlerInstance::load(IOMode mode, const std::string& data) {
  if (!inst_.load) return data.empty() ? "" : serverName_ + ": the plug-in cannot load instance data";
  BlockReader reader(mode, data, serverName_ + " instance data");
  LWError failure = inst_.load(instance_, reader.state());
  if (failure && *failure) return failure;
  std::string problems;
  for (const std::string& p : reader.problems()) problems += (problems.empty() ? "" : "; ") + p;
  return problems;
}

std::string HandlerInstance::description() const {
  const char* text = inst_.descln ? inst_.descln(instance_) : nullptr;
  return text ? text : "";
}

std::vector<LWItemID> HandlerInstance::useItems() const {
  if (!hasItem_ || !item_.useItems) return {};
  const LWItemID* ids = item_.useItems(instance_);
  if (!ids) return {};
  // "Everything" comes either as the pointer itself or as an entry of the list.
  if (ids == reinterpret_cast<const LWItemID*>(LWITEM_ALL)) return {LWITEM_ALL};
  std::vector<LWItemID> used;
  for (std::size_t i = 0; i < kMaxUsedItems && ids[i] != LWITEM_NULL; ++i) {
    if (ids[i] == LWITEM_ALL) return {LWITEM_ALL};
    used.push_back(ids[i]);
  }
  return used;
}

bool HandlerInstance::changeID(const std::vector<std::pair<LWItemID, LWItemID>>& changes) {
  if (!hasItem_ || !item_.changeID) return false;
  std::vector<LWItemID> list;
  list.reserve(changes.size() * 2 + 1);
  for (const auto& [from, to] : changes) {
    if (from == LWITEM_NULL) continue;
    list.push_back(from);
    list.push_back(to);
  }
  if (list.empty()) return false;
  list.push_back(LWITEM_NULL);
  item_.changeID(instance_, list.data());
  return true;
}

InterfaceActivation HandlerInstance::activateInterface(const ServerRecord& interfaceRecord) {
  InterfaceActivation activation;
  // Interface versions count up, unlike handler versions.
  for (int version = 1; version <= LWINTERFACE_VERSION; ++version) {
    activation.local = LWInterface{};
    activation.local.inst = instance_;
    activation.result = module_.activate(interfaceRecord, version, &activation.local);
    if (activation.result != AFUNC_BADVERSION) {
      if (activation.result == AFUNC_OK) activation.version = version;
      break;
    }
  }
  LWXPanelID panel = activation.local.panel;
  if (activation.result == AFUNC_OK && panel && std::find(panels_.begin(), panels_.end(), panel) == panels_.end())
    panels_.push_back(panel);
  return activation;
}

}  // namespace lwhost
