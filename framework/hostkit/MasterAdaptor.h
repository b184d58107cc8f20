#pragma once

#include <lwmaster.h>

#include "hostkit/ExceptionGuard.h"
#include "hostkit/InstanceAdaptor.h"
#include "hostkit/ItemAdaptor.h"
#include "hostkit/LightWave.h"

namespace hostkit {

// The "MasterHandler" activation of master class T; `type` is the host's master type
// (1: survives clearing the scene).
template <class T, int type>
struct MasterAdaptor {
  static int Activate(int version, GlobalFunc* global, void* local, void* /*serverData*/) {
    if (version != LWMASTER_VERSION) return AFUNC_BADVERSION;
    return Guarded(guard::MasterActivate, AFUNC_BADAPP, [&] {
      SetSuperGlobal(global);
      auto* handler = static_cast<LWMasterHandler*>(local);
      if (handler->inst) InstanceAdaptor<T>::Fill(handler->inst);
      ItemAdaptor<T>::Fill(handler->item);
      handler->type = type;
      handler->event = Event;
      handler->flags = Flags;
      return AFUNC_OK;
    });
  }

  static double Event(LWInstance instance, const LWMasterAccess* access) {
    return Guarded(guard::MasterEvent, 0.0, [&] { return InstanceAdaptor<T>::Self(instance)->Event(access); });
  }

  static unsigned int Flags(LWInstance instance) {
    return Guarded(guard::MasterFlags, 0u, [&] { return InstanceAdaptor<T>::Self(instance)->Flags(); });
  }
};

}  // namespace hostkit
