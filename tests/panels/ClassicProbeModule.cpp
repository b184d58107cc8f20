// A test-only plug-in module that builds a classic panel the way a LightWave plug-in does: raw
// LWPanelFuncs and the lwpanel.h macros, with a handler object found again through its panel.
#include <lwmodule.h>
#include <lwpanel.h>
#include <lwserver.h>

#include <cstring>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "ClassicProbe.h"

namespace {

// The macros work on variables of these names.
LWPanControlDesc desc;
LWValue ival = {LWT_INTEGER};
LWValue sval = {LWT_STRING};

struct Handler {
  LWPanelFuncs* panf;
  LWPanelID panel;
  LWControl *list, *clear, *save, *done;
  std::vector<std::string> rows;
  bool throwFromName;
  ClassicProbeLog* log;
};

Handler g_probe;  // made anew by each "build"

// The handler found as the framework finds it: the control's panel, then that panel's user data.
// Events whose handler is not found this way go unlogged.
bool Found(LWControl* ctl) {
  void* data = nullptr;
  g_probe.panf->get(CON_PAN(ctl), PAN_USERDATA, &data);
  return data == &g_probe;
}

void Note(const std::string& event) {
  auto& events = g_probe.log->events;
  std::strncat(events, (event + "|").c_str(), sizeof events - std::strlen(events) - 1);
}

int ListCount(void* data) {
  if (data != g_probe.list) ++g_probe.log->wrongUserData;
  return static_cast<int>(g_probe.rows.size());
}

char* ListName(void* data, int index) {
  if (data != g_probe.list) ++g_probe.log->wrongUserData;
  if (g_probe.throwFromName) throw std::runtime_error("probe name failure");
  return const_cast<char*>(g_probe.rows.at(static_cast<size_t>(index)).c_str());
}

void ListEvent(LWControl* ctl, void* data) {
  if (!Found(ctl)) return;
  int row = -2;
  GET_INT(ctl, row);
  Note(std::string(data == ctl ? "select:" : "select-wrong-data:") + std::to_string(row));
}

void ButtonEvent(LWControl* ctl, void* data) {
  if (!Found(ctl)) return;
  if (data != &g_probe) Note("wrong-data");
  if (ctl == g_probe.clear) {
    g_probe.rows.clear();
    g_probe.panf->draw(g_probe.panel, DR_REFRESH);
    Note("clear");
  } else if (ctl == g_probe.save) {
    char name[2048] = "";
    GET_STR(ctl, name, sizeof name);
    Note(std::string("save:") + name);
  } else if (ctl == g_probe.done) {
    int result = 7;
    g_probe.panf->set(g_probe.panel, PAN_RESULT, &result);
    g_probe.panf->close(g_probe.panel);
    Note("done");
  }
}

// A red 10 x 10 square in the corner, when the hook is given the panel's user data.
void DrawPanel(LWPanelID panel, void* data, DrMode) {
  if (data == &g_probe) g_probe.panf->drawFuncs->drawRGBBox(panel, 255, 0, 0, 0, 0, 10, 10);
}

int Build(GlobalFunc* global, ClassicProbeRequest* request) {
  auto* panf = static_cast<LWPanelFuncs*>(global(LWPANELFUNCS_GLOBAL, GFUSE_TRANSIENT));
  if (!panf) return AFUNC_BADGLOBAL;
  g_probe = Handler{panf, nullptr, nullptr, nullptr, nullptr, nullptr,
                    {std::begin(kProbeRows), std::end(kProbeRows)}, request->throwFromName != 0, request->log};
  Handler* h = &g_probe;
  panf->globalFun = global;

  h->panel = PAN_CREATE(panf, const_cast<char*>("Probe Statistics"));
  PAN_SETDATA(panf, h->panel, h);
  PAN_SETDRAW(panf, h->panel, &DrawPanel);
  // The macro leaves listbox.top alone: make it garbage, as a stack record's would be.
  std::memset(&desc, 0x5A, sizeof desc);
  h->list = LISTBOX_CTL(panf, h->panel, const_cast<char*>("Rows"), 200, 5, ListName, ListCount);
  h->clear = BUTTON_CTL(panf, h->panel, const_cast<char*>("Clear"));
  h->save = SAVEBUTTON_CTL(panf, h->panel, const_cast<char*>("Save..."), 80);
  h->done = BUTTON_CTL(panf, h->panel, const_cast<char*>("Done"));
  CON_SETEVENT(h->list, ListEvent, h->list);
  CON_SETEVENT(h->clear, ButtonEvent, h);
  CON_SETEVENT(h->done, ButtonEvent, h);
  // Beside "Clear", flush with the list box's right edge. One CON_ read per statement: they all
  // go through `ival`, so two in one expression may read each other's answer.
  int clearY = CON_Y(h->clear);
  int listX = CON_X(h->list);
  int listW = CON_W(h->list);
  int saveW = CON_W(h->save);
  MOVE_CON(h->save, listX + listW - saveW, clearY);
  CON_SETEVENT(h->save, ButtonEvent, h);

  request->panel = h->panel;
  request->handler = h;
  request->buttonEvent = reinterpret_cast<void*>(&ButtonEvent);
  request->list = h->list;
  request->clear = h->clear;
  request->save = h->save;
  return AFUNC_OK;
}

int Activate(int version, GlobalFunc* global, void* local, void*) {
  if (version != 1) return AFUNC_BADVERSION;
  auto* request = static_cast<ClassicProbeRequest*>(local);
  if (!request || !request->op) return AFUNC_BADLOCAL;
  if (std::strcmp(request->op, "build") == 0) return Build(global, request);
  if (!g_probe.panel || std::strcmp(request->op, "open") != 0) return AFUNC_BADLOCAL;
  request->result = g_probe.panf->open(g_probe.panel, request->openFlags);
  return AFUNC_OK;
}

void* Startup() { return reinterpret_cast<void*>(4); }
void Shutdown(void*) {}

ServerTagInfo tags[] = {{"Classic Panel Probe", SRVTAG_USERNAME}, {nullptr, 0}};
ServerRecord servers[] = {{"ClassicProbe", "panels", Activate, tags}, {nullptr, nullptr, nullptr, nullptr}};

}  // namespace

extern "C" {
__attribute__((visibility("default")))
ModuleDescriptor _mod_descrip = {MOD_SYSSYNC, MOD_SYSVER, MOD_MACHINE, Startup, Shutdown, servers};
}
