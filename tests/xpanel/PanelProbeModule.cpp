// A plug-in module written straight against the SDK headers, whose one server builds a view
// panel that uses every panel feature the host must honour, and logs each callback it gets.
#include <lwmodule.h>
#include <lwpanel.h>
#include <lwserver.h>
#include <lwvparm.h>

#include <cstdarg>
#include <cstdio>

#include "PanelProbe.h"

namespace {

GlobalFunc* g_global = nullptr;
LWXPanelFuncs* g_xpanel = nullptr;
LWXPanelID g_panel = nullptr;
PanelProbeRequest g_request;  // where to log
PanelProbeState g_state;
const char* g_lights[] = {"Key", "Fill", "Rim"};

__attribute__((format(printf, 1, 2))) void Log(const char* format, ...) {
  char line[128];
  va_list args;
  va_start(args, format);
  std::vsnprintf(line, sizeof line, format, args);
  va_end(args);
  g_request.log(g_request.logContext, line);
}

// Where each value lives, indexed by id; null for the valueless controls.
void* Slot(PanelProbeState* s, unsigned int vid) {
  void* slots[] = {&s->count, &s->mode, &s->light, s->opacity, nullptr, nullptr, &s->scale, &s->spin, s->tint, s->name};
  return vid >= kProbeCount && vid <= kProbeName ? slots[vid - kProbeCount] : nullptr;
}

void* Get(void* inst, unsigned int vid) {
  Log("get 0x%X", vid);
  auto* s = static_cast<PanelProbeState*>(inst);
  return vid == kProbeScale && s->hideScale ? nullptr : Slot(s, vid);
}

LWXPRefreshCode Set(void* inst, unsigned int vid, void* value) {
  auto* s = static_cast<PanelProbeState*>(inst);
  void* slot = Slot(s, vid);
  if (!slot) return LWXPRC_NONE;
  // Numbers and text are logged as they arrive; parameters are edited by the host itself, which
  // then passes the same handle back.
  if (vid == kProbeOpacity || vid == kProbeTint)
    Log(value == slot ? "set 0x%X same-parameter" : "set 0x%X other-parameter", vid);
  else if (vid == kProbeName)
    Log("set 0x%X %s", vid, static_cast<const char*>(value));
  else if (vid == kProbeScale || vid == kProbeSpin)
    Log("set 0x%X %g", vid, *static_cast<double*>(value));
  else
    Log("set 0x%X %d", vid, *static_cast<int*>(slot) = *static_cast<int*>(value));
  return static_cast<LWXPRefreshCode>(s->setResult);
}

LWXPRefreshCode ChangeNotify(LWXPanelID panel, unsigned int cid, unsigned int vid, int event) {
  Log(panel == g_panel ? "notify 0x%X 0x%X %d" : "notify-other-panel 0x%X 0x%X %d", cid, vid, event);
  return LWXPRC_NONE;
}

void DestroyNotify(void* data) { Log(data == &g_state ? "destroyed with-state" : "destroyed with-other"); }

// Refreshes the view from inside the callback, or destroys the panel there.
void ClickReset(LWXPanelID panel, int cid) {
  Log("click 0x%X", static_cast<unsigned int>(cid));
  if (g_state.destroyOnClick)
    g_xpanel->destroy(panel);
  else
    g_xpanel->viewRefresh(panel);
}

int LightCount(void* data) {
  Log("popcount");
  return data == g_lights ? 3 : 0;
}

const char* LightName(void* data, int index) {
  return data == g_lights && index >= 0 && index < 3 ? g_lights[index] : nullptr;
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

LWXPanelControl g_controls[] = {
    {kProbePreview, "", "dThumbnail"}, {kProbeReset, "Reset", "vButton"}, {kProbeCount, "Count", "integer"},
    {kProbeMode, "Mode", "iPopChoice"}, {kProbeLight, "Light", "iPopChoice"},
    {kProbeOpacity, "Opacity", "percent-env"}, {kProbeScale, "Scale", "float"}, {kProbeSpin, "Spin", "angle"},
    {kProbeTint, "Tint", "color-env"}, {kProbeName, "Name", "string"}, {0, nullptr, nullptr}};

LWXPanelDataDesc g_data[] = {
    {kProbeCount, "", "integer"},     {kProbeMode, "", "integer"}, {kProbeLight, "", "integer"},
    {kProbeOpacity, "", "float-env"}, {kProbeScale, "", "float"},  {kProbeSpin, "", "angle"},
    {kProbeTint, "", "float3-env"},   {kProbeName, "", "string"},  {0, nullptr, nullptr}};

const char* g_modes[] = {"Add", "Multiply", "Screen", nullptr};

LWXPanelHint g_hints[] = {
    XpLABEL(0, "Panel Probe"), XpBUTNOTIFY(kProbeReset, ClickReset), XpDRAWCBFUNC(kProbePreview, DrawPreview),
    XpZOOMCBFUNC(kProbePreview, ZoomPreview, 0), XpDIVADD(kProbeReset), XpCHGNOTIFY(ChangeNotify),
    XpSTRLIST(kProbeMode, g_modes), XpPOPFUNCS(kProbeLight, LightCount, LightName), XpDIVADD_(kProbeLight),
    XpH(kProbeOpacity), XpEND, XpDESTROYNOTIFY(DestroyNotify), XpEND};

// Applied to the thumbnail alone: id 0 stands for it.
LWXPanelHint g_previewHints[] = {XpCTRLCFG(0, THUM_FULL | THUM_BORDER_NONE | THUM_SML), XpEND};

void* CreateParameter(int type, double r, double g = 0, double b = 0) {
  auto* vp = static_cast<LWVParmFuncs*>(g_global(LWVPARMFUNCS_GLOBAL, GFUSE_TRANSIENT));
  LWVParmID parameter = vp ? vp->create(type, LWVPDT_NOTXTR) : nullptr;
  double value[3] = {r, g, b};
  if (parameter) vp->setVal(parameter, value);
  return parameter;
}

int Build(PanelProbeRequest* request) {
  g_xpanel = static_cast<LWXPanelFuncs*>(g_global(LWXPANELFUNCS_GLOBAL, GFUSE_TRANSIENT));
  if (!g_xpanel) return 0;
  // Count 3, mode 1, light 2, 75 % opacity, an orange tint, scale 1.5, a right angle, "probe";
  // set answers 1 (refresh).
  g_state = PanelProbeState{3, 1, 2, CreateParameter(LWVP_PERCENT, 0.75), CreateParameter(LWVP_COLOR, 1, 0.5), 1.5,
                            3.14159265358979323846 / 2, "probe", 0, /*setResult=*/1, 0, nullptr};
  g_panel = g_xpanel->create(LWXP_VIEW, g_controls);
  if (!g_panel) return 0;
  g_xpanel->describe(g_panel, g_data, Get, Set);
  g_xpanel->viewInst(g_panel, &g_state);
  g_xpanel->setData(g_panel, 0, &g_state);
  g_xpanel->setData(g_panel, kProbeLight, g_lights);
  g_xpanel->hint(g_panel, 0, g_hints);
  g_xpanel->hint(g_panel, kProbePreview, g_previewHints);
  request->panel = g_panel;
  request->state = &g_state;
  return 1;
}

int Activate(int version, GlobalFunc* global, void* local, void*) {
  if (version != 1) return AFUNC_BADVERSION;
  auto* request = static_cast<PanelProbeRequest*>(local);
  if (!request) return AFUNC_BADLOCAL;
  g_global = global;
  g_request = *request;
  return Build(request) ? AFUNC_OK : AFUNC_BADGLOBAL;
}

ServerTagInfo g_tags[] = {{"Panel Probe", SRVTAG_USERNAME}, {nullptr, 0}};
ServerRecord g_records[] = {{"XPanelProbe", "view", Activate, g_tags}, {nullptr, nullptr, nullptr, nullptr}};

void* Startup() { return reinterpret_cast<void*>(4); }
void Shutdown(void*) {}

}  // namespace

extern "C" {
__attribute__((visibility("default")))
ModuleDescriptor _mod_descrip = {MOD_SYSSYNC, MOD_SYSVER, MOD_MACHINE, Startup, Shutdown, g_records};
}
