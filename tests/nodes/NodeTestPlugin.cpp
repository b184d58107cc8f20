// A small node module for the node editor tests, written straight against the SDK tables.
#include <lwhost.h>
#include <lwnodes.h>
#include <lwserver.h>

#include <cstdio>
#include <cstring>

#include "NodeTestPlugin.h"
#include "hostkit/LWServer.h"

namespace {

const LWNodeInputFuncs* g_inputs;
const LWNodeOutputFuncs* g_outputs;
const LWNodeFuncs* g_nodes;
const LWMessageFuncs* g_messages;
int g_hadItemFuncs;
int g_oldOffered;  // class versions TestOldStyle was offered, as decimal digits in order

int FetchGlobals(int version, int wanted, GlobalFunc* global) {
  if (version != wanted) return AFUNC_BADVERSION;
  g_inputs = static_cast<const LWNodeInputFuncs*>(global(LWNODEINPUTFUNCS_GLOBAL, GFUSE_TRANSIENT));
  g_outputs = static_cast<const LWNodeOutputFuncs*>(global(LWNODEOUTPUTFUNCS_GLOBAL, GFUSE_TRANSIENT));
  g_nodes = static_cast<const LWNodeFuncs*>(global(LWNODEFUNCS_GLOBAL, GFUSE_TRANSIENT));
  g_messages = static_cast<const LWMessageFuncs*>(global(LWMESSAGEFUNCS_GLOBAL, GFUSE_TRANSIENT));
  return g_inputs && g_outputs && g_nodes && g_messages ? AFUNC_OK : AFUNC_BADGLOBAL;
}

MixInstance& Mix(LWInstance inst) { return *static_cast<MixInstance*>(inst); }

// ---- TestMix ----

int MixEventCallback(void* userData, NodeInputID input, LWNodalEvent event, ConnectionType type) {
  auto* mix = static_cast<MixInstance*>(userData);
  const char* name = input == mix->color ? "Color" : input == mix->amount ? "Amount"
                     : input == mix->material ? "Material" : "?";
  if (mix->eventCount < 16) std::snprintf(mix->events[mix->eventCount++], 32, "%s %d %d", name, event, type);
  if (event == NIE_INPUTNODEDESTROY && mix->dropInputsOnLoss) {
    g_inputs->destroy(mix->node, mix->color);
    g_inputs->destroy(mix->node, mix->amount);
    mix->color = mix->amount = nullptr;
  }
  return 1;
}

LWInstance MixCreate(void*, void* context, LWError*) {
  auto* mix = new MixInstance();
  mix->node = context;
  mix->hadItemFuncs = g_hadItemFuncs;
  mix->color = g_inputs->create(context, NOT_COLOR, "Color", MixEventCallback);
  mix->amount = g_inputs->create(context, NOT_SCALAR, "Amount", MixEventCallback);
  mix->material = g_inputs->create(context, NOT_MATERIAL, "Material", MixEventCallback);
  mix->out = g_outputs->create(context, NOT_COLOR, "Color");
  g_outputs->create(context, NOT_COLOR, "Silent");
  mix->materialOut = g_outputs->create(context, NOT_MATERIAL, "Material");
  mix->type = g_outputs->create(context, NOT_INTEGER, "Type");
  mix->direct = g_outputs->create(context, NOT_COLOR, "Direct");
  g_nodes->setNodeColor3(context, 11, 8, 51);
  return mix;
}

void MixEvaluate(LWInstance inst, LWNodalAccess* na, NodeOutputID output, NodeValue value) {
  MixInstance& mix = Mix(inst);
  if (output == mix.out) {
    double c[3] = {0.1, 0.2, 0.3}, a = 1.0;
    mix.colorResult = g_inputs->evaluate(mix.color, na, c);
    mix.amountResult = g_inputs->evaluate(mix.amount, na, &a);
    std::memcpy(mix.colorSeen, c, sizeof c);
    mix.amountSeen = a;
    double result[3] = {c[0] * a, c[1] * a, c[2] * a};
    g_outputs->setValue(value, result);
  } else if (output == mix.materialOut) {
    LWNodalMaterial m{};
    g_inputs->evaluate(mix.material, na, &m);
    g_outputs->setValue(value, &m);
  } else if (output == mix.type) {
    int requested = g_outputs->getType(value);
    g_outputs->setValue(value, &requested);
  } else if (output == mix.direct) {
    auto* p = static_cast<double*>(g_outputs->getValue(value));
    p[0] = 0.3, p[1] = 0.6, p[2] = 0.9;
  }
}

int MixActivate(int version, GlobalFunc* global, void* local, void*) {
  if (int result = FetchGlobals(version, LWNODECLASS_VERSION, global)) return result;
  auto* h = static_cast<LWNodeHandler*>(local);
  g_hadItemFuncs = h->item != nullptr;
  h->inst->create = MixCreate;
  h->inst->destroy = [](LWInstance inst) {
    g_messages->info("TestMix destroyed", nullptr);
    delete &Mix(inst);
  };
  h->inst->load = [](LWInstance, const LWLoadState*) -> LWError { return "TestMix: no such data"; };
  if (h->item) {
    h->item->useItems = [](LWInstance inst) -> const LWItemID* {
      MixInstance& mix = Mix(inst);
      if (mix.useMode == 1) return reinterpret_cast<const LWItemID*>(LWITEM_ALL);
      if (mix.useMode == 3) mix.usedList[1] = LWITEM_ALL;
      return mix.useMode ? mix.usedList : nullptr;
    };
    h->item->changeID = [](LWInstance inst, const LWItemID* ids) {
      MixInstance& mix = Mix(inst);
      for (mix.changedCount = 0; ids[mix.changedCount] && mix.changedCount < 16; mix.changedCount += 2)
        std::memcpy(&mix.changed[mix.changedCount], &ids[mix.changedCount], 2 * sizeof *ids);
    };
  }
  h->rend->init = [](LWInstance inst, int mode) -> LWError {
    if (mode != LWINIT_PREVIEW && mode != LWINIT_RENDER) return "TestMix: unknown render mode";
    Mix(inst).initMode = mode;
    return nullptr;
  };
  h->rend->cleanup = [](LWInstance inst) { ++Mix(inst).cleanupCalls; };
  h->evaluate = MixEvaluate;
  h->customPreview = [](LWInstance inst, int width, int height) {
    Mix(inst).previewWidth = width;
    Mix(inst).previewHeight = height;
  };
  h->flags = [](LWInstance) -> unsigned int { return NF_TRANSP; };
  return AFUNC_OK;
}

int MixInterface(int version, GlobalFunc*, void* local, void*) {
  auto* ui = static_cast<LWInterface*>(local);
  auto* mix = static_cast<MixInstance*>(ui->inst);
  if (mix->interfaceCalls < 8) mix->interfaceVersions[mix->interfaceCalls++] = version;
  if (version <= 3) return AFUNC_BADVERSION;
  ui->panel = &mix->panelToken;
  return AFUNC_OK;
}

// ---- TestRefuse ----

int RefuseActivate(int version, GlobalFunc* global, void* local, void*) {
  if (int result = FetchGlobals(version, LWNODECLASS_VERSION, global)) return result;
  auto* h = static_cast<LWNodeHandler*>(local);
  h->inst->create = [](void*, void* context, LWError* err) -> LWInstance {
    g_inputs->create(context, NOT_SCALAR, "Doomed", nullptr);
    g_outputs->create(context, NOT_COLOR, "Doomed");
    *err = NODE_TEST_REFUSAL_TEXT;
    return nullptr;
  };
  return AFUNC_OK;
}

// ---- TestOldStyle ----

int OldActivate(int version, GlobalFunc* global, void* local, void*) {
  g_oldOffered = g_oldOffered * 10 + version;
  if (int result = FetchGlobals(version, 1, global)) return result;
  auto* h = static_cast<LWNodeHandler*>(local);
  h->inst->create = [](void*, void* context, LWError*) -> LWInstance {
    g_outputs->create(context, NOT_SCALAR, "Offered");
    auto* offered = new int(g_oldOffered);
    g_oldOffered = 0;
    return offered;
  };
  h->inst->destroy = [](LWInstance inst) { delete static_cast<int*>(inst); };
  h->evaluate = [](LWInstance inst, LWNodalAccess*, NodeOutputID, NodeValue value) {
    double offered = *static_cast<int*>(inst);
    g_outputs->setValue(value, &offered);
  };
  return AFUNC_OK;
}

ServerTagInfo mixTags[] = {{"Test Mix", SRVTAG_USERNAME}, {"Tests/Nodes", SRVTAG_NODEGROUP}, {nullptr, 0}};
ServerTagInfo refuseTags[] = {{"Test Refuse", SRVTAG_USERNAME}, {nullptr, 0}};
ServerTagInfo noTags[] = {{nullptr, 0}};

struct Registration {
  Registration() {
    hostkit::LWServer::AddPlugin(LWNODE_HCLASS, "TestMix", MixActivate, mixTags);
    hostkit::LWServer::AddPlugin(LWNODE_ICLASS, "TestMix", MixInterface, mixTags);
    hostkit::LWServer::AddPlugin(LWNODE_HCLASS, "TestRefuse", RefuseActivate, refuseTags);
    hostkit::LWServer::AddPlugin(LWNODE_HCLASS, "TestOldStyle", OldActivate, noTags);
  }
} registration;

}  // namespace
