#include "lwhost/MasterInstance.h"

#include <utility>

#include "lwhost/ModuleFile.h"

namespace lwhost {

MasterInstance::MasterInstance(const ModuleFile& module, const std::string& server, std::string name, bool itemFuncs)
    : name_(std::move(name)) {
  const ServerRecord& record = module.require(LWMASTER_HCLASS, server);
  handler_.inst = &inst_;
  handler_.item = itemFuncs ? &item_ : nullptr;
  int result = AFUNC_BADVERSION;
  if (!module.activateFirst(record, {LWMASTER_VERSION}, &handler_, &result))
    throw CreationError("master \"" + server + "\" refused activation (answer " + std::to_string(result) + ")");
  if (!handler_.inst || !handler_.event)
    throw CreationError("master \"" + server + "\" left no instance or event function");
  instance_ = std::make_unique<HandlerInstance>(module, *handler_.inst, handler_.item, nullptr, server);
  interface_ = module.find(LWMASTER_ICLASS, server);
}

unsigned int MasterInstance::flags() const { return handler_.flags ? handler_.flags(instance_->get()) : 0u; }

bool MasterInstance::wants(int eventCode) const {
  if (eventCode < LWEVNT_NOTIFY_MOTION_UPDATE_STARTING) return true;
  const unsigned int f = flags();
  if (!(f & LWMASTF_RECEIVE_NOTIFICATIONS)) return false;
  return eventCode != LWEVNT_NOTIFY_MESHPOINTS_ALTERED || (f & LWMASTF_RECEIVE_NOTIFICATIONS_MESHPOINTS);
}

double MasterInstance::event(LWMasterAccess access) const { return handler_.event(instance_->get(), &access); }

}  // namespace lwhost
