// A test-only module written straight against the SDK, for the lwhost command.
//
// Masters, one per way a master can (or cannot) show its settings:
//   cliForm     a form panel (LWXP_FORM) with a number, a check box, a pop-up and a line naming
//               the program and version the host claims to be
//   cliClassic  an options window: a blocking classic panel "CLI Classic"
//   cliBare     an interface that offers neither
//   cliNoFace   no MasterInterface server at all
// one server of a class the panel command does not draw (cliFilter, an ImageFilterHandler),
// and a node, cliProbe, with a white "Colour" output that logs its render session: each
// instance appends "N init MODE", "N newTime FRAME TIME" and "N cleanup evaluations=COUNT"
// lines (N = its number in creation order) to the file named by CLI_PROBE_LOG. Instance N
// refuses init when CLI_PROBE_FAIL_INIT is N.
#include <lwhandler.h>
#include <lwhost.h>
#include <lwmaster.h>
#include <lwmodule.h>
#include <lwnodes.h>
#include <lwpanel.h>
#include <lwserver.h>
#include <lwxpanel.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

GlobalFunc* g_global = nullptr;

// The macros work on a variable of this name.
LWPanControlDesc desc;

// An instance holds its form panel, made when its interface is first activated.
LWInstance Create(void*, void*, LWError*) { return new LWXPanelID(nullptr); }
void Destroy(LWInstance instance) { delete static_cast<LWXPanelID*>(instance); }

// Only what drawing a panel needs.
int ActivateHandler(int version, GlobalFunc* global, void* local, void*) {
  if (version != LWMASTER_VERSION) return AFUNC_BADVERSION;
  g_global = global;
  auto* handler = static_cast<LWMasterHandler*>(local);
  handler->inst->create = Create;
  handler->inst->destroy = Destroy;
  return AFUNC_OK;
}

// ---- cliForm ----

LWXPanelControl kControls[] = {{0x8001, "Strength", "percent"}, {0x8002, "Enabled", "iBoolean"},
                               {0x8003, "Style", "iPopChoice"},   {0x8004, "Host", "sInfo"},
                               {0, nullptr, nullptr}};
LWXPanelDataDesc kData[] = {{0x8001, "", "percent"}, {0x8002, "", "integer"}, {0x8003, "", "integer"},
                            {0x8004, "", "string"},  {0, nullptr, nullptr}};
const char* kStyles[] = {"Plain", "Striped", "Dotted", nullptr};

int FormInterface(int version, GlobalFunc* global, void* local, void*) {
  if (version < LWINTERFACE_VERSION) return AFUNC_BADVERSION;
  auto* face = static_cast<LWInterface*>(local);
  LWXPanelID& form = *static_cast<LWXPanelID*>(face->inst);
  auto* xpf = static_cast<LWXPanelFuncs*>(global(LWXPANELFUNCS_GLOBAL, GFUSE_TRANSIENT));
  if (!xpf) return AFUNC_BADGLOBAL;
  if (!form) {
    form = xpf->create(LWXP_FORM, kControls);
    xpf->describe(form, kData, nullptr, nullptr);
    LWXPanelHint hints[] = {XpLABEL(0, "CLI Form"), XpSTRLIST(0x8003, kStyles), XpEND};
    xpf->hint(form, 0, hints);
  }
  const auto system = static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(global(LWSYSTEMID_GLOBAL, 0)));
  const auto product = static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(global(LWPRODUCTINFO_GLOBAL, 0)));
  char host[64];
  std::snprintf(host, sizeof host, "%s %u.%u", (system & LWSYS_TYPEBITS) == LWSYS_MODELER ? "Modeler" : "Layout",
                LWINF_GETMAJOR(product), LWINF_GETMINOR(product));
  xpf->formSet(form, 0x8004, host);
  face->panel = form;
  return AFUNC_OK;
}

// ---- cliClassic ----

LWError ClassicOptions(LWInstance) {
  auto* panf = static_cast<LWPanelFuncs*>(g_global(LWPANELFUNCS_GLOBAL, GFUSE_TRANSIENT));
  if (!panf) return "no panel services";
  panf->globalFun = g_global;
  LWPanelID panel = PAN_CREATE(panf, const_cast<char*>("CLI Classic"));
  if (!panel) return "the host made no panel";
  BUTTON_CTL(panf, panel, const_cast<char*>("Export"));
  panf->open(panel, PANF_BLOCKING | PANF_FRAME);
  PAN_KILL(panf, panel);
  return nullptr;
}

int ClassicInterface(int version, GlobalFunc*, void* local, void*) {
  if (version < LWINTERFACE_VERSION) return AFUNC_BADVERSION;
  auto* face = static_cast<LWInterface*>(local);
  face->panel = nullptr;
  face->options = ClassicOptions;
  return AFUNC_OK;
}

// ---- cliBare ----

// Also cliFilter's activation, which the panel command never calls.
int BareInterface(int v, GlobalFunc*, void*, void*) { return v < LWINTERFACE_VERSION ? AFUNC_BADVERSION : AFUNC_OK; }

// ---- cliProbe ----

struct Probe {
  int number = 0;
  NodeOutputID colour = nullptr;
  long evaluations = 0;
};

int g_probes = 0;
LWNodeOutputFuncs* g_outputs = nullptr;

template <class... Values>
void Log(const char* format, Values... values) {
  const char* path = std::getenv("CLI_PROBE_LOG");
  if (FILE* log = path ? std::fopen(path, "ab") : nullptr) {
    std::fprintf(log, format, values...);
    std::fclose(log);
  }
}

LWInstance ProbeCreate(void*, void* context, LWError*) {
  auto* probe = new Probe;
  probe->number = ++g_probes;
  probe->colour = g_outputs->create(static_cast<NodeID>(context), NOT_COLOR, "Colour");
  return probe;
}

void ProbeDestroy(LWInstance instance) { delete static_cast<Probe*>(instance); }

LWError ProbeInit(LWInstance instance, int mode) {
  auto* probe = static_cast<Probe*>(instance);
  Log("%d init %d\n", probe->number, mode);
  const char* fail = std::getenv("CLI_PROBE_FAIL_INIT");
  return fail && std::atoi(fail) == probe->number ? "cliProbe refuses to render" : nullptr;
}

LWError ProbeNewTime(LWInstance instance, LWFrame frame, LWTime time) {
  Log("%d newTime %d %g\n", static_cast<Probe*>(instance)->number, frame, time);
  return nullptr;
}

void ProbeCleanup(LWInstance instance) {
  auto* probe = static_cast<Probe*>(instance);
  Log("%d cleanup evaluations=%ld\n", probe->number, probe->evaluations);
}

void ProbeEvaluate(LWInstance instance, LWNodalAccess*, NodeOutputID output, NodeValue value) {
  auto* probe = static_cast<Probe*>(instance);
  ++probe->evaluations;
  double white[3] = {1.0, 1.0, 1.0};
  if (output == probe->colour) g_outputs->setValue(value, white);
}

int ProbeActivate(int version, GlobalFunc* global, void* local, void*) {
  if (version != LWNODECLASS_VERSION) return AFUNC_BADVERSION;
  g_outputs = static_cast<LWNodeOutputFuncs*>(global(LWNODEOUTPUTFUNCS_GLOBAL, GFUSE_TRANSIENT));
  if (!g_outputs) return AFUNC_BADGLOBAL;
  auto* handler = static_cast<LWNodeHandler*>(local);
  handler->inst->create = ProbeCreate;
  handler->inst->destroy = ProbeDestroy;
  handler->rend->init = ProbeInit;
  handler->rend->newTime = ProbeNewTime;
  handler->rend->cleanup = ProbeCleanup;
  handler->evaluate = ProbeEvaluate;
  return AFUNC_OK;
}

void* Startup() { return reinterpret_cast<void*>(4); }
void Shutdown(void*) {}

ServerTagInfo tags[] = {{"CLI Test Server", SRVTAG_USERNAME}, {nullptr, 0}};
ServerRecord servers[] = {
    {LWMASTER_HCLASS, "cliForm", ActivateHandler, tags},    {LWMASTER_ICLASS, "cliForm", FormInterface, tags},
    {LWMASTER_HCLASS, "cliClassic", ActivateHandler, tags}, {LWMASTER_ICLASS, "cliClassic", ClassicInterface, tags},
    {LWMASTER_HCLASS, "cliBare", ActivateHandler, tags},    {LWMASTER_ICLASS, "cliBare", BareInterface, tags},
    {LWMASTER_HCLASS, "cliNoFace", ActivateHandler, tags},  {"ImageFilterHandler", "cliFilter", BareInterface, tags},
    {LWNODE_HCLASS, "cliProbe", ProbeActivate, tags},  {nullptr, nullptr, nullptr, nullptr}};

}  // namespace

extern "C" {
__attribute__((visibility("default")))
ModuleDescriptor _mod_descrip = {MOD_SYSSYNC, MOD_SYSVER, MOD_MACHINE, Startup, Shutdown, servers};
}
