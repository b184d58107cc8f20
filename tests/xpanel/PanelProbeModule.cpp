// A plug-in module written straight against the SDK headers, whose one server builds a view
// panel that uses every panel feature the host must honour, and logs each callback it gets.
#include <lwmodule.h>
#include <lwpanel.h>
#include <lwserver.h>
#include <lwvparm.h>
#include <lwxpanel.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "PanelProbe.h"

namespace {

GlobalFunc* g_global = nullptr;
LWXPanelFuncs* g_xpanel = nullptr;
LWXPanelID g_panel = nullptr;
PanelProbeLog* g_log = nullptr;
void* g_logContext = nullptr;
PanelProbeState g_state;

struct LightList {
  int count;
  const char* names[3];
};
LightList g_lights = {3, {"Key", "Fill", "Rim"}};

__attribute__((format(printf, 1, 2))) void Log(const char* format, ...) {
  if (!g_log) return;
  char line[128];
  va_list args;
  va_start(args, format);
  std::vsnprintf(line, sizeof line, format, args);
  va_end(args);
  g_log(g_logContext, line);
}

extern "C" {

void* Get(void* inst, unsigned int vid) {
  Log("get 0x%X", vid);
  auto* s = static_cast<PanelProbeState*>(inst);
  if (!s) return nullptr;
  switch (vid) {
    case kProbeCount:
      return &s->count;
    case kProbeEnabled:
      return &s->enabled;
    case kProbeMode:
      return &s->mode;
    case kProbeLight:
      return &s->light;
    case kProbeOpacity:
      return s->opacity;
    case kProbeScale:
      return s->hideScale ? nullptr : &s->scale;
    case kProbeSpin:
      return &s->spin;
    case kProbeTint:
      return s->tint;
    case kProbeName:
      return s->name;
    default:
      return nullptr;
  }
}

LWXPRefreshCode Set(void* inst, unsigned int vid, void* value) {
  auto* s = static_cast<PanelProbeState*>(inst);
  switch (vid) {
    case kProbeCount:
      s->count = *static_cast<int*>(value);
      Log("set 0x%X %d", vid, s->count);
      break;
    case kProbeEnabled:
      s->enabled = *static_cast<int*>(value);
      Log("set 0x%X %d", vid, s->enabled);
      break;
    case kProbeMode:
      s->mode = *static_cast<int*>(value);
      Log("set 0x%X %d", vid, s->mode);
      break;
    case kProbeLight:
      s->light = *static_cast<int*>(value);
      Log("set 0x%X %d", vid, s->light);
      break;
    case kProbeScale:
      s->scale = *static_cast<double*>(value);
      Log("set 0x%X", vid);
      break;
    case kProbeSpin:
      s->spin = *static_cast<double*>(value);
      Log("set 0x%X", vid);
      break;
    case kProbeName:
      std::snprintf(s->name, sizeof s->name, "%s", static_cast<const char*>(value));
      Log("set 0x%X", vid);
      break;
    case kProbeOpacity:
    case kProbeTint: {
      // The host edits the parameter itself and passes the same handle back.
      void* mine = vid == kProbeOpacity ? s->opacity : s->tint;
      Log(value == mine ? "set 0x%X same-parameter" : "set 0x%X other-parameter", vid);
      break;
    }
    default:
      return LWXPRC_NONE;
  }
  return static_cast<LWXPRefreshCode>(s->setResult);
}

LWXPRefreshCode ChangeNotify(LWXPanelID panel, unsigned int cid, unsigned int vid, int event) {
  Log(panel == g_panel ? "notify 0x%X 0x%X %d" : "notify-other-panel 0x%X 0x%X %d", cid, vid, event);
  return LWXPRC_NONE;
}

void DestroyNotify(void* data) { Log(data == &g_state ? "destroyed with-state" : "destroyed with-other"); }

void ClickReset(LWXPanelID panel, int cid) {
  Log("click 0x%X", static_cast<unsigned int>(cid));
  if (g_state.destroyOnClick) {
    g_xpanel->destroy(panel);
    g_panel = nullptr;
    return;
  }
  g_state.count = 0;
  g_xpanel->viewRefresh(panel);
}

int LightCount(void* data) {
  Log("popcount");
  return data == &g_lights ? g_lights.count : 0;
}

const char* LightName(void* data, int index) {
  if (data != &g_lights || index < 0 || index >= g_lights.count) return nullptr;
  return g_lights.names[index];
}

void DrawPreview(LWXPanelID panel, unsigned int cid, LWXPDrAreaID area, int w, int h) {
  Log("draw 0x%X %dx%d", cid, w, h);
  if (panel != g_panel) return;
  g_state.lastArea = area;
  LWXPDrawFuncs* d = g_xpanel->drawf;
  d->drawRGBBox(area, 255, 255, 255, 0, 0, w, h);
  d->drawRGBPixel(area, 255, 0, 0, 0, 0);
  d->drawBox(area, static_cast<int>(RGB_(10, 20, 30)), 2, 2, 3, 3);
  d->drawLine(area, LWP_BLACK, 0, h - 1, w - 1, h - 1);
  d->drawPixel(area, LWP_INVERT, w - 1, 0);
  char text[] = "Hi";
  int tw = d->textWidth(area, text), th = d->textHeight(area, text);
  Log("text %dx%d", tw, th);
  d->drawText(area, text, LWP_INVERT, w - tw - 4, 4);
  // Clipped, never a fault.
  d->drawRGBPixel(area, 300, -20, 0, -5, h + 7);
  d->drawLine(area, LWP_BLACK, -100000, 100020, 100020, -100000);  // through (10, 10)
}

void ZoomPreview(LWXPanelID panel, unsigned int cid, int x, int y, int* region, int clicks) {
  Log(panel == g_panel ? "zoom 0x%X %d,%d %d region %d,%d,%d,%d" : "zoom-other-panel 0x%X %d,%d %d region %d,%d,%d,%d",
      cid, x, y, clicks, region[0], region[1], region[2], region[3]);
}

}  // extern "C"

LWXPanelControl g_controls[] = {
    {kProbePreview, "", "dThumbnail"},         {kProbeReset, "Reset", "vButton"},  {kProbeCount, "Count", "integer"},
    {kProbeEnabled, "Enabled", "iBoolean"},    {kProbeMode, "Mode", "iPopChoice"}, {kProbeLight, "Light", "iPopChoice"},
    {kProbeOpacity, "Opacity", "percent-env"}, {kProbeScale, "Scale", "float"},    {kProbeSpin, "Spin", "angle"},
    {kProbeTint, "Tint", "color-env"},         {kProbeName, "Name", "string"},     {0, nullptr, nullptr},
};

LWXPanelDataDesc g_data[] = {
    {kProbeCount, "", "integer"}, {kProbeEnabled, "", "Integer"},   {kProbeMode, "", "integer"},
    {kProbeLight, "", "integer"}, {kProbeOpacity, "", "float-env"}, {kProbeScale, "", "float"},
    {kProbeSpin, "", "angle"},    {kProbeTint, "", "float3-env"},   {kProbeName, "", "string"},
    {0, nullptr, nullptr},
};

const char* g_modes[] = {"Add", "Multiply", "Screen", nullptr};

// Shared by reference, the way the module's logo list is.
LWXPanelHint g_common[] = {
    XpBUTNOTIFY(kProbeReset, ClickReset),
    XpDRAWCBFUNC(kProbePreview, DrawPreview),
    XpZOOMCBFUNC(kProbePreview, ZoomPreview, 0),
    XpDIVADD(kProbeReset),
    XpEND,
};

LWXPanelHint g_hints[] = {
    XpLABEL(0, "Panel Probe"),
    XpCALL(g_common),
    XpSTRLIST(kProbeMode, g_modes),
    XpPOPFUNCS(kProbeLight, LightCount, LightName),
    XpDIVADD_(kProbeLight),
    XpH(kProbeOpacity),
    XpEND,
    XpDESTROYNOTIFY(DestroyNotify),
    XpEND,
};

LWXPanelHint g_notify[] = {XpCHGNOTIFY(ChangeNotify), XpEND};

// Applied to the thumbnail alone: id 0 stands for it.
LWXPanelHint g_previewHints[] = {XpCTRLCFG(0, THUM_FULL | THUM_BORDER_NONE | THUM_SML), XpEND};

void* CreateParameter(int type) {
  auto* vp = static_cast<LWVParmFuncs*>(g_global(LWVPARMFUNCS_GLOBAL, GFUSE_TRANSIENT));
  return vp ? vp->create(type, LWVPDT_NOTXTR) : nullptr;
}

int Build(PanelProbeRequest* request) {
  g_xpanel = static_cast<LWXPanelFuncs*>(g_global(LWXPANELFUNCS_GLOBAL, GFUSE_TRANSIENT));
  if (!g_xpanel) return 0;
  std::memset(&g_state, 0, sizeof g_state);
  g_state.count = 3;
  g_state.enabled = 1;
  g_state.mode = 1;
  g_state.light = 2;
  g_state.scale = 1.5;
  g_state.spin = 3.14159265358979323846 / 2;
  std::snprintf(g_state.name, sizeof g_state.name, "probe");
  g_state.setResult = 1;
  g_state.opacity = CreateParameter(LWVP_PERCENT);
  g_state.tint = CreateParameter(LWVP_COLOR);

  g_panel = g_xpanel->create(LWXP_VIEW, g_controls);
  if (!g_panel) return 0;
  g_xpanel->describe(g_panel, g_data, Get, Set);
  g_xpanel->viewInst(g_panel, &g_state);
  g_xpanel->setData(g_panel, 0, &g_state);
  g_xpanel->setData(g_panel, kProbeLight, &g_lights);
  g_xpanel->hint(g_panel, 0, g_hints);
  g_xpanel->hint(g_panel, 0, g_notify);
  g_xpanel->hint(g_panel, kProbePreview, g_previewHints);
  request->panel = g_panel;
  request->state = &g_state;
  return 1;
}

int Activate(int version, GlobalFunc* global, void* local, void*) {
  if (version != 1) return AFUNC_BADVERSION;
  auto* request = static_cast<PanelProbeRequest*>(local);
  if (!request || !request->op) return AFUNC_BADLOCAL;
  g_global = global;
  g_log = request->log;
  g_logContext = request->logContext;
  request->result = 0;
  if (std::strcmp(request->op, "build") == 0) {
    request->result = Build(request);
  } else if (std::strcmp(request->op, "draw-stale") == 0 && g_xpanel && g_state.lastArea) {
    g_xpanel->drawf->drawPixel(g_state.lastArea, LWP_BLACK, 0, 0);
    g_xpanel->drawf->drawText(g_state.lastArea, const_cast<char*>("late"), LWP_BLACK, 0, 0);
    request->result = 1;
  }
  return AFUNC_OK;
}

ServerTagInfo g_tags[] = {{"Panel Probe", SRVTAG_USERNAME}, {nullptr, 0}};
ServerRecord g_records[] = {{PANEL_PROBE_CLASS, PANEL_PROBE_NAME, Activate, g_tags},
                            {nullptr, nullptr, nullptr, nullptr}};

void* Startup() { return reinterpret_cast<void*>(4); }
void Shutdown(void*) {}

}  // namespace

extern "C" {
__attribute__((visibility("default")))
ModuleDescriptor _mod_descrip = {MOD_SYSSYNC, MOD_SYSVER, MOD_MACHINE, Startup, Shutdown, g_records};
}
