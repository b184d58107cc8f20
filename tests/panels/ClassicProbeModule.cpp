// A test-only plug-in module that builds a classic panel the way a LightWave plug-in does: raw
// LWPanelFuncs and the lwpanel.h macros, with a handler object found again through its panel.
#include <lwmodule.h>
#include <lwpanel.h>
#include <lwserver.h>

#include <cstring>
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
  LWPanelFuncs* panf = nullptr;
  LWPanelID panel = nullptr;
  LWControl* list = nullptr;
  LWControl* clear = nullptr;
  LWControl* save = nullptr;
  LWControl* done = nullptr;
  std::vector<std::string> rows;
  bool throwFromName = false;
  ClassicProbeLog* log = nullptr;
};

Handler* g_handler = nullptr;

void Note(Handler* h, const std::string& event) {
  if (!h || !h->log) return;
  std::strncat(h->log->events, (event + "|").c_str(), sizeof h->log->events - std::strlen(h->log->events) - 1);
}

// As the framework does it: the control's panel, then that panel's user data.
Handler* FindHandler(LWControl* ctl) {
  if (!ctl || !g_handler) return nullptr;
  LWPanelID pan = CON_PAN(ctl);
  void* data = nullptr;
  g_handler->panf->get(pan, PAN_USERDATA, &data);
  return static_cast<Handler*>(data);
}

int ListCount(void* data) {
  Handler* h = g_handler;
  ++h->log->countCalls;
  if (data != h->list) ++h->log->wrongUserData;
  return static_cast<int>(h->rows.size());
}

char* ListName(void* data, int index) {
  Handler* h = g_handler;
  ++h->log->nameCalls;
  if (data != h->list) ++h->log->wrongUserData;
  if (h->throwFromName) throw std::runtime_error("probe name failure");
  return const_cast<char*>(h->rows.at(static_cast<size_t>(index)).c_str());
}

void ListEvent(LWControl* ctl, void* data) {
  Handler* h = FindHandler(ctl);
  if (h != g_handler) {
    ++g_handler->log->handlerMisses;
    return;
  }
  int row = -2;
  GET_INT(ctl, row);
  Note(h, std::string(data == ctl ? "select:" : "select-wrong-data:") + std::to_string(row));
}

void ButtonEvent(LWControl* ctl, void* data) {
  Handler* h = FindHandler(ctl);
  if (h != g_handler) {
    ++g_handler->log->handlerMisses;
    return;
  }
  if (data != h) Note(h, "wrong-data");
  if (ctl == h->clear) {
    h->rows.clear();
    h->panf->draw(h->panel, DR_REFRESH);
    Note(h, "clear");
  } else if (ctl == h->save) {
    char name[2048] = "";
    GET_STR(ctl, name, sizeof name);
    Note(h, std::string("save:") + name);
  } else if (ctl == h->done) {
    int result = 7;
    h->panf->set(h->panel, PAN_RESULT, &result);
    h->panf->close(h->panel);
    Note(h, "done");
  }
}

int Build(GlobalFunc* global, ClassicProbeRequest* request) {
  auto* panf = static_cast<LWPanelFuncs*>(global(LWPANELFUNCS_GLOBAL, GFUSE_TRANSIENT));
  if (!panf) return AFUNC_BADGLOBAL;
  delete g_handler;
  g_handler = new Handler;
  Handler* h = g_handler;
  h->panf = panf;
  h->log = request->log;
  h->throwFromName = request->throwFromName != 0;
  for (int i = 0; i < request->rowCount; ++i) h->rows.push_back(request->rows[i]);
  panf->globalFun = global;

  h->panel = PAN_CREATE(panf, const_cast<char*>("Probe Statistics"));
  PAN_SETDATA(panf, h->panel, h);
  // The macro leaves listbox.top alone: make it garbage, as a stack record's would be.
  std::memset(&desc, 0x5A, sizeof desc);
  h->list = LISTBOX_CTL(panf, h->panel, const_cast<char*>("Rows"), 200, 5, ListName, ListCount);
  h->clear = BUTTON_CTL(panf, h->panel, const_cast<char*>("Clear"));
  h->save = SAVEBUTTON_CTL(panf, h->panel, const_cast<char*>("Save..."), 80);
  h->done = BUTTON_CTL(panf, h->panel, const_cast<char*>("Done"));
  CON_SETEVENT(h->list, ListEvent, h->list);
  CON_SETEVENT(h->clear, ButtonEvent, h);
  CON_SETEVENT(h->done, ButtonEvent, h);
  // Beside "Clear", then flush with the list box's right edge. One CON_ read per statement:
  // they all go through `ival`, so two in one expression may read each other's answer.
  int clearX = CON_X(h->clear);
  int clearW = CON_W(h->clear);
  int clearY = CON_Y(h->clear);
  MOVE_CON(h->save, clearX + clearW + 4, clearY);
  int listX = CON_X(h->list);
  int listW = CON_W(h->list);
  int saveW = CON_W(h->save);
  MOVE_CON(h->save, listX + listW - saveW, clearY);
  CON_SETEVENT(h->save, ButtonEvent, h);

  request->panel = h->panel;
  request->handler = h;
  request->list = h->list;
  request->clear = h->clear;
  request->save = h->save;
  request->done = h->done;
  return AFUNC_OK;
}

int Readback(ClassicProbeRequest* request) {
  Handler* h = g_handler;
  if (!h) return AFUNC_BADLOCAL;
  int bits = 0;
  LWValue v = {LWT_INTEGER};
  h->save->get(h->save, CTL_USERDATA, &v);
  if (v.ptr.ptr == h) bits |= PROBE_USERDATA_OK;
  v = LWValue{LWT_INTEGER};
  h->save->get(h->save, CTL_USEREVENT, &v);
  if (v.ptr.ptr == reinterpret_cast<void*>(&ButtonEvent)) bits |= PROBE_USEREVENT_OK;
  LWPanelID pan = CON_PAN(h->save);
  if (pan == h->panel) bits |= PROBE_PANEL_OK;
  void* data = nullptr;
  h->panf->get(pan, PAN_USERDATA, &data);
  if (data == h) bits |= PROBE_PANDATA_OK;
  v = LWValue{LWT_INTEGER};
  h->list->get(h->list, CTL_USERDATA, &v);
  if (v.ptr.ptr == h->list) bits |= PROBE_LISTDATA_OK;
  request->result = bits;
  return AFUNC_OK;
}

int Activate(int version, GlobalFunc* global, void* local, void*) {
  if (version != 1) return AFUNC_BADVERSION;
  auto* request = static_cast<ClassicProbeRequest*>(local);
  if (!request || !request->op) return AFUNC_BADLOCAL;
  std::string op = request->op;
  if (op == "build") return Build(global, request);
  if (!g_handler) return AFUNC_BADLOCAL;
  if (op == "open") {
    request->result = g_handler->panf->open(g_handler->panel, request->openFlags);
    return AFUNC_OK;
  }
  if (op == "readback") return Readback(request);
  if (op == "destroy") {
    PAN_KILL(g_handler->panf, g_handler->panel);
    delete g_handler;
    g_handler = nullptr;
    return AFUNC_OK;
  }
  return AFUNC_BADLOCAL;
}

void* Startup() { return reinterpret_cast<void*>(4); }

void Shutdown(void*) {
  delete g_handler;
  g_handler = nullptr;
}

ServerTagInfo tags[] = {{"Classic Panel Probe", SRVTAG_USERNAME}, {nullptr, 0}};
ServerRecord servers[] = {{"ClassicProbe", "panels", Activate, tags}, {nullptr, nullptr, nullptr, nullptr}};

}  // namespace

extern "C" {
__attribute__((visibility("default")))
ModuleDescriptor _mod_descrip = {MOD_SYSSYNC, MOD_SYSVER, MOD_MACHINE, Startup, Shutdown, servers};
}
