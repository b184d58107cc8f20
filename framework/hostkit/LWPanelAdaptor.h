#pragma once

#include <lwhandler.h>

#include "hostkit/ExceptionGuard.h"
#include "hostkit/InstanceAdaptor.h"
#include "hostkit/LightWave.h"

namespace hostkit {

// The "…Interface" activation of class T for a classic-panel options window.
template <class T>
struct LWPanelAdaptor {
  static int Interface(int version, GlobalFunc* global, void* local, void* /*serverData*/) {
    if (version < LWINTERFACE_VERSION) return AFUNC_BADVERSION;
    if (!local) return AFUNC_OK;
    return Guarded(guard::LWPanelActivate, AFUNC_BADAPP, [&] {
      SetSuperGlobal(global);
      auto* record = static_cast<LWInterface*>(local);
      record->panel = nullptr;
      record->options = Options;
      record->command = nullptr;
      return AFUNC_OK;
    });
  }

  static LWError Options(LWInstance instance) {
    InstanceAdaptor<T>::Self(instance)->Options();
    return nullptr;
  }
};

}  // namespace hostkit
