#pragma once

#include <lwhandler.h>

#include "hostkit/ExceptionGuard.h"
#include "hostkit/InstanceHandler.h"
#include "hostkit/LoadState.h"
#include "hostkit/SaveState.h"

namespace hostkit {

// The host's instance table for plug-in class T. T is constructed from (private data, creation
// context, error slot) and refuses by writing an error text into the slot.
template <class T>
struct InstanceAdaptor {
  static T* Self(LWInstance instance) { return static_cast<T*>(InstanceHandler::FromHost(instance)); }

  static LWInstance Create(void* priv, void* context, LWError* error) {
    const char* err = "";
    T* object = new T(priv, context, &err);
    if (err && *err) {
      delete object;
      if (error) *error = err;
      return nullptr;
    }
    return object->hostInstance();
  }

  static void Destroy(LWInstance instance) {
    Guarded(guard::InstanceDestroy, [&] {
      if (instance) delete Self(instance);
    });
  }

  static LWError Copy(LWInstance to, LWInstance from) {
    *Self(to) = *Self(from);
    return nullptr;
  }

  static LWError Load(LWInstance instance, const LWLoadState* state) { return Self(instance)->Load(LoadState(state)); }
  static LWError Save(LWInstance instance, const LWSaveState* state) { return Self(instance)->Save(SaveState(state)); }
  static const char* DescLn(LWInstance instance) { return Self(instance)->DescLn(); }

  static void Fill(LWInstanceFuncs* table) {
    table->priv = nullptr;
    table->create = Create;
    table->destroy = Destroy;
    table->copy = Copy;
    table->load = Load;
    table->save = Save;
    table->descln = DescLn;
  }
};

}  // namespace hostkit
