#pragma once

#include <lwrender.h>

#include "hostkit/ExceptionGuard.h"
#include "hostkit/InstanceAdaptor.h"

namespace hostkit {

template <class T>
struct RenderAdaptor {
  static LWError Init(LWInstance instance, int mode) { return InstanceAdaptor<T>::Self(instance)->Init(mode); }

  static void Cleanup(LWInstance instance) {
    Guarded(guard::RenderCleanup, [&] { InstanceAdaptor<T>::Self(instance)->Cleanup(); });
  }

  static LWError NewTime(LWInstance instance, LWFrame frame, LWTime time) {
    return InstanceAdaptor<T>::Self(instance)->NewTime(frame, time);
  }

  static void Fill(LWRenderFuncs* table) {
    if (!table) return;
    table->init = Init;
    table->cleanup = Cleanup;
    table->newTime = NewTime;
  }
};

}  // namespace hostkit
