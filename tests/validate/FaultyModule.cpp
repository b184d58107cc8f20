// A test-only module whose nodes are each wrong in exactly one way, for lwhost validate:
//   faultyCreate     dereferences null in create
//   faultyStore      saves a number one higher than the one it holds, so no save round-trips
//   faultyGlobal     reads "LW Time Info" in create without checking that the host has it
//   faultless        a well-behaved node: store, copy, evaluate
// Everything else they do is correct, so validate must fail exactly those checks.
#include <lwhandler.h>
#include <lwio.h>
#include <lwmodule.h>
#include <lwnodes.h>
#include <lwrender.h>
#include <lwserver.h>

namespace {

GlobalFunc* g_global = nullptr;

struct Instance {
  int value = 7;
};

LWInstance Create(void*, void*, LWError*) { return new Instance; }
void Destroy(LWInstance instance) { delete static_cast<Instance*>(instance); }
LWError Copy(LWInstance to, LWInstance from) {
  *static_cast<Instance*>(to) = *static_cast<Instance*>(from);
  return nullptr;
}
LWError Load(LWInstance instance, const LWLoadState* state) {
  int value = 0;
  if (state->readI4(state->readData, &value, 1) == 1) static_cast<Instance*>(instance)->value = value;
  return nullptr;
}
template <int kOff>
LWError Save(LWInstance instance, const LWSaveState* state) {
  int value = static_cast<Instance*>(instance)->value + kOff;
  state->writeI4(state->writeData, &value, 1);
  return nullptr;
}
LWInstance CreateCrashing(void*, void*, LWError*) {
  volatile int* nowhere = nullptr;
  return new Instance{*nowhere};
}
LWInstance CreateTrusting(void*, void*, LWError*) {
  auto* time = static_cast<LWTimeInfo*>(g_global(LWTIMEINFO_GLOBAL, GFUSE_TRANSIENT));
  return new Instance{static_cast<int>(time->frame)};
}
void Evaluate(void*, LWNodalAccess*, NodeOutputID, NodeValue) {}

template <LWInstance (*create)(void*, void*, LWError*), LWError (*save)(LWInstance, const LWSaveState*)>
int Activate(int version, GlobalFunc* global, void* local, void*) {
  if (version < 1 || version > LWNODECLASS_VERSION) return AFUNC_BADVERSION;
  g_global = global;
  auto* handler = static_cast<LWNodeHandler*>(local);
  handler->inst->create = create;
  handler->inst->destroy = Destroy;
  handler->inst->copy = Copy;
  handler->inst->load = Load;
  handler->inst->save = save;
  handler->evaluate = Evaluate;
  return AFUNC_OK;
}

void* Startup() { return reinterpret_cast<void*>(1); }
void Shutdown(void*) {}

ServerTagInfo tags[] = {{"Faulty", SRVTAG_USERNAME}, {nullptr, 0}};
ServerRecord servers[] = {{LWNODE_HCLASS, "faultyCreate", Activate<CreateCrashing, Save<0>>, tags},
                          {LWNODE_HCLASS, "faultyStore", Activate<Create, Save<1>>, tags},
                          {LWNODE_HCLASS, "faultyGlobal", Activate<CreateTrusting, Save<0>>, tags},
                          {LWNODE_HCLASS, "faultless", Activate<Create, Save<0>>, tags},
                          {nullptr, nullptr, nullptr, nullptr}};

}  // namespace

extern "C" {
__attribute__((visibility("default")))
ModuleDescriptor _mod_descrip = {MOD_SYSSYNC, MOD_SYSVER, MOD_MACHINE, Startup, Shutdown, servers};
}
