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
int g_version;
int g_hadItemFuncs;
int g_oldOffered[4];
int g_oldOfferedCount;

bool FetchGlobals(GlobalFunc* global) {
  g_inputs = static_cast<const LWNodeInputFuncs*>(global(LWNODEINPUTFUNCS_GLOBAL, GFUSE_TRANSIENT));
  g_outputs = static_cast<const LWNodeOutputFuncs*>(global(LWNODEOUTPUTFUNCS_GLOBAL, GFUSE_TRANSIENT));
  g_nodes = static_cast<const LWNodeFuncs*>(global(LWNODEFUNCS_GLOBAL, GFUSE_TRANSIENT));
  g_messages = static_cast<const LWMessageFuncs*>(global(LWMESSAGEFUNCS_GLOBAL, GFUSE_TRANSIENT));
  return g_inputs && g_outputs && g_nodes && g_messages;
}

// ---- TestMix ----

int MixEventCallback(void* userData, NodeInputID input, LWNodalEvent event, ConnectionType type) {
  auto* mix = static_cast<MixInstance*>(userData);
  if (!mix) return 0;
  if (mix->eventCount < 16) mix->events[mix->eventCount++] = {userData, input, event, type};
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
  mix->version = g_version;
  mix->hadItemFuncs = g_hadItemFuncs;
  mix->gain = 1.0;
  mix->defaultColor[0] = 0.1;
  mix->defaultColor[1] = 0.2;
  mix->defaultColor[2] = 0.3;
  mix->color = g_inputs->create(context, NOT_COLOR, "Color", MixEventCallback);
  mix->amount = g_inputs->create(context, NOT_SCALAR, "Amount", MixEventCallback);
  mix->material = g_inputs->create(context, NOT_MATERIAL, "Material", MixEventCallback);
  mix->out = g_outputs->create(context, NOT_COLOR, "Color");
  mix->silent = g_outputs->create(context, NOT_COLOR, "Silent");
  mix->materialOut = g_outputs->create(context, NOT_MATERIAL, "Material");
  mix->type = g_outputs->create(context, NOT_INTEGER, "Type");
  mix->direct = g_outputs->create(context, NOT_COLOR, "Direct");
  g_nodes->setNodeColor3(context, 11, 8, 51);
  return mix;
}

void MixDestroy(LWInstance inst) {
  g_messages->info("TestMix destroyed", nullptr);
  delete static_cast<MixInstance*>(inst);
}

LWError MixCopy(LWInstance to, LWInstance from) {
  auto* a = static_cast<MixInstance*>(to);
  auto* b = static_cast<const MixInstance*>(from);
  a->gain = b->gain;
  a->mode = b->mode;
  std::memcpy(a->label, b->label, sizeof a->label);
  return nullptr;
}

const LWBlockIdent kGain = {LWID_('G', 'A', 'I', 'N'), "Gain"};
const LWBlockIdent kMode = {LWID_('M', 'O', 'D', 'E'), "Mode"};
const LWBlockIdent kLabel = {LWID_('L', 'A', 'B', 'L'), "Label"};
const LWBlockIdent kSettings[] = {kGain, kMode, kLabel, {0, nullptr}};

LWError MixSave(LWInstance inst, const LWSaveState* ss) {
  auto* mix = static_cast<MixInstance*>(inst);
  LWSAVE_BEGIN(ss, &kGain, 1);
  LWSAVE_DP(ss, &mix->gain, 1);
  LWSAVE_END(ss);
  LWSAVE_BEGIN(ss, &kMode, 1);
  LWSAVE_I4(ss, &mix->mode, 1);
  LWSAVE_END(ss);
  LWSAVE_BEGIN(ss, &kLabel, 1);
  LWSAVE_STR(ss, mix->label);
  LWSAVE_END(ss);
  return nullptr;
}

LWError MixLoad(LWInstance inst, const LWLoadState* ls) {
  auto* mix = static_cast<MixInstance*>(inst);
  bool gotGain = false;
  while (LWID id = LWLOAD_FIND(ls, kSettings)) {
    if (id == kGain.id) gotGain = LWLOAD_DP(ls, &mix->gain, 1) == 1;
    if (id == kMode.id) LWLOAD_I4(ls, &mix->mode, 1);
    if (id == kLabel.id) LWLOAD_STR(ls, mix->label, sizeof mix->label);
    LWLOAD_END(ls);
  }
  return gotGain ? nullptr : "TestMix: the data has no gain";
}

const char* MixDescribe(LWInstance inst) {
  auto* mix = static_cast<MixInstance*>(inst);
  std::snprintf(mix->description, sizeof mix->description, "gain %g, mode %d, %s", mix->gain, mix->mode,
                mix->label);
  return mix->description;
}

const LWItemID* MixUseItems(LWInstance inst) {
  auto* mix = static_cast<MixInstance*>(inst);
  switch (mix->useMode) {
    case 1: return reinterpret_cast<const LWItemID*>(LWITEM_ALL);
    case 2: return mix->usedList;
    case 3:
      mix->usedList[1] = LWITEM_ALL;
      return mix->usedList;
    default: return nullptr;
  }
}

void MixChangeID(LWInstance inst, const LWItemID* ids) {
  auto* mix = static_cast<MixInstance*>(inst);
  ++mix->changeCalls;
  mix->changedCount = 0;
  for (int i = 0; ids[i] && i + 1 < 16; i += 2) {
    mix->changed[i] = ids[i];
    mix->changed[i + 1] = ids[i + 1];
    mix->changedCount = i + 2;
  }
}

LWError MixInit(LWInstance inst, int mode) {
  auto* mix = static_cast<MixInstance*>(inst);
  if (mode != LWINIT_PREVIEW && mode != LWINIT_RENDER) return "TestMix: unknown render mode";
  ++mix->initCalls;
  mix->initMode = mode;
  return nullptr;
}

void MixCleanup(LWInstance inst) { ++static_cast<MixInstance*>(inst)->cleanupCalls; }

LWError MixNewTime(LWInstance inst, LWFrame frame, LWTime time) {
  auto* mix = static_cast<MixInstance*>(inst);
  mix->newTimeFrame = frame;
  mix->newTimeTime = time;
  return nullptr;
}

void MixEvaluate(LWInstance inst, LWNodalAccess* na, NodeOutputID output, NodeValue value) {
  auto* mix = static_cast<MixInstance*>(inst);
  if (output == mix->out) {
    double c[3] = {mix->defaultColor[0], mix->defaultColor[1], mix->defaultColor[2]};
    double a = 1.0;
    mix->colorResult = g_inputs->evaluate(mix->color, na, c);
    mix->amountResult = g_inputs->evaluate(mix->amount, na, &a);
    std::memcpy(mix->colorSeen, c, sizeof c);
    mix->amountSeen = a;
    double result[3];
    for (int i = 0; i < 3; ++i) result[i] = c[i] * a * mix->gain;
    g_outputs->setValue(value, result);
  } else if (output == mix->materialOut) {
    LWNodalMaterial m;
    std::memset(&m, 0, sizeof m);
    m.transparency = 0.25;
    mix->materialResult = g_inputs->evaluate(mix->material, na, &m);
    g_outputs->setValue(value, &m);
  } else if (output == mix->type) {
    int requested = g_outputs->getType(value);
    g_outputs->setValue(value, &requested);
  } else if (output == mix->direct) {
    auto* p = static_cast<double*>(g_outputs->getValue(value));
    p[0] = 0.3, p[1] = 0.6, p[2] = 0.9;
  }
}

void MixPreview(LWInstance inst, int width, int height) {
  auto* mix = static_cast<MixInstance*>(inst);
  mix->previewWidth = width;
  mix->previewHeight = height;
}

unsigned int MixFlags(LWInstance) { return NF_TRANSP; }

int MixActivate(int version, GlobalFunc* global, void* local, void*) {
  if (version != LWNODECLASS_VERSION) return AFUNC_BADVERSION;
  if (!FetchGlobals(global)) return AFUNC_BADGLOBAL;
  auto* h = static_cast<LWNodeHandler*>(local);
  g_version = version;
  g_hadItemFuncs = h->item != nullptr;
  h->inst->create = MixCreate;
  h->inst->destroy = MixDestroy;
  h->inst->copy = MixCopy;
  h->inst->load = MixLoad;
  h->inst->save = MixSave;
  h->inst->descln = MixDescribe;
  if (h->item) {
    h->item->useItems = MixUseItems;
    h->item->changeID = MixChangeID;
  }
  h->rend->init = MixInit;
  h->rend->cleanup = MixCleanup;
  h->rend->newTime = MixNewTime;
  h->evaluate = MixEvaluate;
  h->customPreview = MixPreview;
  h->flags = MixFlags;
  return AFUNC_OK;
}

int MixInterface(int version, GlobalFunc*, void* local, void*) {
  auto* ui = static_cast<LWInterface*>(local);
  auto* mix = static_cast<MixInstance*>(ui->inst);
  if (!mix) return AFUNC_BADLOCAL;
  if (mix->interfaceCalls < 8) mix->interfaceVersions[mix->interfaceCalls++] = version;
  if (version <= 3) return AFUNC_BADVERSION;
  ui->panel = &mix->panelToken;
  ui->options = nullptr;
  ui->command = nullptr;
  return AFUNC_OK;
}

// ---- TestRefuse ----

LWInstance RefuseCreate(void*, void* context, LWError* err) {
  g_inputs->create(context, NOT_SCALAR, "Doomed", nullptr);
  g_outputs->create(context, NOT_COLOR, "Doomed");
  *err = NODE_TEST_REFUSAL_TEXT;
  return nullptr;
}

void RefuseDestroy(LWInstance) {}

int RefuseActivate(int version, GlobalFunc* global, void* local, void*) {
  if (version != LWNODECLASS_VERSION) return AFUNC_BADVERSION;
  if (!FetchGlobals(global)) return AFUNC_BADGLOBAL;
  auto* h = static_cast<LWNodeHandler*>(local);
  h->inst->create = RefuseCreate;
  h->inst->destroy = RefuseDestroy;
  return AFUNC_OK;
}

// ---- TestOldStyle ----

LWInstance OldCreate(void*, void* context, LWError*) {
  auto* old = new OldStyleInstance();
  std::memcpy(old->offered, g_oldOffered, sizeof old->offered);
  old->offeredCount = g_oldOfferedCount;
  g_oldOfferedCount = 0;
  g_outputs->create(context, NOT_SCALAR, "Seven");
  return old;
}

void OldDestroy(LWInstance inst) { delete static_cast<OldStyleInstance*>(inst); }

void OldEvaluate(LWInstance, LWNodalAccess*, NodeOutputID, NodeValue value) {
  double seven = 7.0;
  g_outputs->setValue(value, &seven);
}

int OldActivate(int version, GlobalFunc* global, void* local, void*) {
  if (g_oldOfferedCount < 4) g_oldOffered[g_oldOfferedCount++] = version;
  if (version != 1) return AFUNC_BADVERSION;
  if (!FetchGlobals(global)) return AFUNC_BADGLOBAL;
  auto* h = static_cast<LWNodeHandler*>(local);
  h->inst->create = OldCreate;
  h->inst->destroy = OldDestroy;
  h->evaluate = OldEvaluate;
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
