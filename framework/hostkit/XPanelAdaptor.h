#pragma once

#include <lwhandler.h>

#include "hostkit/ExceptionGuard.h"
#include "hostkit/InstanceAdaptor.h"
#include "hostkit/LightWave.h"

namespace hostkit {

// The "…Interface" activation of class T: hands the host T's form panel.
template <class T>
struct XPanelAdaptor {
  static int Interface(int version, GlobalFunc* global, void* local, void* serverData) {
    if (version < LWINTERFACE_VERSION) return AFUNC_BADVERSION;
    if (!local) return AFUNC_OK;
    return Guarded(guard::XPanelInterface, AFUNC_BADAPP, [&] {
      SetSuperGlobal(global);
      auto* record = static_cast<LWInterface*>(local);
      return InstanceAdaptor<T>::Self(record->inst)->Interface(version, record, serverData);
    });
  }
};

}  // namespace hostkit
