// "LWVParmFuncs 2": the C table over the component's animatable parameters.
#include <string>

#include "CEntryGuard.h"
#include "animation/CurrentAnimation.h"
#include "ServiceTables.h"

namespace lwhost {

namespace {

const char* const kUnknownParameter = "not a parameter of this host";
const char* const kFailed = "the host failed inside LWVParmFuncs";

VParm* Live(LWVParmID id, const char* function) {
  Animation* animation = CurrentAnimation();
  if (!animation) return nullptr;
  VParm* parameter = animation->parameter(id);
  if (!parameter) animation->note(std::string("LWVParmFuncs ") + function + ": " + kUnknownParameter);
  return parameter;
}

LWVParmID Create(int envType, int texType) {
  return Guarded<LWVParmID>(nullptr, [&]() -> LWVParmID {
    Animation* animation = CurrentAnimation();
    return animation ? animation->createParameter(envType, texType) : nullptr;
  });
}

void Destroy(LWVParmID id) {
  Guarded([&] {
    if (VParm* parameter = Live(id, "destroy")) CurrentAnimation()->destroyParameter(parameter);
  });
}

// The texture context is not kept: nothing here evaluates textures.
void Setup(LWVParmID id, const char* name, LWChanGroupID groupID, LWTxtrContextID, LWVP_EventFunc* eventFunc,
           const char* pluginName, void* userData) {
  Guarded([&] {
    VParm* parameter = Live(id, "setup");
    if (!parameter) return;
    Animation* animation = CurrentAnimation();
    ChannelGroup* group = animation->group(groupID);
    if (!group) {
      animation->note("LWVParmFuncs setup: not a channel group of this host; the scene root is used");
      group = animation->root();
    }
    if (!name || !*name) animation->note("LWVParmFuncs setup: a parameter without a name");
    parameter->setup(name ? name : "", group, eventFunc, pluginName ? pluginName : "", userData);
  });
}

LWError Copy(LWVParmID to, LWVParmID from) {
  return Guarded<LWError>(kFailed, [&]() -> LWError {
    VParm* target = Live(to, "copy");
    VParm* source = Live(from, "copy");
    if (!target || !source) return kUnknownParameter;
    target->copyFrom(*source);
    return nullptr;
  });
}

LWError Load(LWVParmID id, const LWLoadState* state) {
  return Guarded<LWError>(kFailed, [&]() -> LWError {
    VParm* parameter = Live(id, "load");
    return parameter ? parameter->load(state) : kUnknownParameter;
  });
}

LWError Save(LWVParmID id, const LWSaveState* state) {
  return Guarded<LWError>(kFailed, [&]() -> LWError {
    VParm* parameter = Live(id, "save");
    return parameter ? parameter->save(state) : kUnknownParameter;
  });
}

// Per sample: no search, no lock, no allocation. The host has no texture evaluator, so the
// opacity is always 0 whatever the micropolygon.
double GetVal(LWVParmID id, LWTime time, LWMicropolID, double* result) {
  if (!result) return 0.0;
  if (!id) {
    result[0] = result[1] = result[2] = 0.0;
    return 0.0;
  }
  static_cast<const VParm*>(id)->valueAt(time, result);
  return 0.0;
}

int SetVal(LWVParmID id, double* value) {
  return Guarded(0, [&] {
    VParm* parameter = Live(id, "setVal");
    return parameter ? parameter->setValue(value) : 0;
  });
}

int GetState(LWVParmID id) { return id ? static_cast<const VParm*>(id)->state() : 0; }

void SetState(LWVParmID id, int state) {
  Guarded([&] {
    if (VParm* parameter = Live(id, "setState")) parameter->setState(state);
  });
}

// Headless: there is no graph or texture editor to open.
void EditEnv(LWVParmID) {}
void EditTex(LWVParmID) {}
// The micropolygon record is opaque to the host; nothing here reads it.
void InitMP(LWMicropolID) {}

void GetEnv(LWVParmID id, LWEnvelopeID envlist[3]) {
  if (!envlist) return;
  const VParm* parameter = static_cast<const VParm*>(id);
  for (int ch = 0; ch < 3; ++ch) envlist[ch] = parameter ? parameter->envelope(ch) : nullptr;
}

LWTextureID GetTex(LWVParmID) { return nullptr; }

}  // namespace

void FillVParmFuncs(LWVParmFuncs& t) {
  t.create = &Create;
  t.destroy = &Destroy;
  t.setup = &Setup;
  t.copy = &Copy;
  t.load = &Load;
  t.save = &Save;
  t.getVal = &GetVal;
  t.setVal = &SetVal;
  t.getState = &GetState;
  t.setState = &SetState;
  t.editEnv = &EditEnv;
  t.editTex = &EditTex;
  t.initMP = &InitMP;
  t.getEnv = &GetEnv;
  t.getTex = &GetTex;
}

}  // namespace lwhost
