#pragma once

#include <lwnodes.h>

#include <utility>

#include "hostkit/ExceptionGuard.h"
#include "hostkit/InstanceAdaptor.h"
#include "hostkit/ItemAdaptor.h"
#include "hostkit/LightWave.h"
#include "hostkit/RenderAdaptor.h"

namespace hostkit {

// The "NodeHandler" activation of node class T, accepting class versions min..max. The flags
// entry exists in the host's record only from version 2 on.
template <class T, int max, int min>
struct NodeAdaptor {
  static int Activate(int version, GlobalFunc* global, void* local, void* /*serverData*/) {
    if (version < min || version > max) return AFUNC_BADVERSION;
    return Guarded(guard::NodeActivate, AFUNC_BADAPP, [&] {
      SetSuperGlobal(global);
      auto* handler = static_cast<LWNodeHandler*>(local);
      if (handler->inst) InstanceAdaptor<T>::Fill(handler->inst);
      RenderAdaptor<T>::Fill(handler->rend);
      ItemAdaptor<T>::Fill(handler->item);
      handler->evaluate = Evaluate;
      handler->customPreview = CustomPreview;
      if (version == 2) handler->flags = Flags;
      return AFUNC_OK;
    });
  }

  // Per sample, T's own Evaluate is called directly (the host made a T). One declared noexcept
  // cannot throw, so it needs no guard and the call becomes a jump.
  static void Evaluate(LWInstance instance, LWNodalAccess* access, NodeOutputID output, NodeValue value) {
    if constexpr (noexcept(std::declval<T&>().T::Evaluate(access, output, value))) {
      if (instance) InstanceAdaptor<T>::Self(instance)->T::Evaluate(access, output, value);
    } else {
      try {
        if (instance) InstanceAdaptor<T>::Self(instance)->T::Evaluate(access, output, value);
      } catch (const std::exception& e) {
        ReportException(guard::NodeEvaluate, e);
      }
    }
  }

  static void CustomPreview(LWInstance instance, int width, int height) {
    Guarded(guard::NodeCustomPreview, [&] { InstanceAdaptor<T>::Self(instance)->CustomPreview(width, height); });
  }

  static unsigned int Flags(LWInstance instance) {
    return Guarded(guard::NodeFlags, 0u, [&] { return InstanceAdaptor<T>::Self(instance)->Flags(); });
  }
};

}  // namespace hostkit
