#include "lwhost/XPanels.h"

#include <lwpanel.h>
#include <lwserver.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>

#include "lwhost/Host.h"

namespace lwhost {

namespace {

std::string Pointer(const void* p) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%p", p);
  return buf;
}

std::uint8_t Channel(int v) { return static_cast<std::uint8_t>(std::clamp(v, 0, 255)); }

std::string Text(const char* s) { return s ? std::string(s, strnlen(s, 4096)) : std::string(); }

// No exception may unwind into the plug-in: each C entry runs its body through one of these.
void Report(const char* entry, const char* what) noexcept {
  try {
    if (Host* host = Host::current())
      if (XPanels* self = host->find<XPanels>())
        self->noteProblem(std::string(entry) + ": " + (what ? what : "unknown exception"));
  } catch (...) {
  }
}

template <class R, class F>
R Guard(const char* entry, R failure, F&& body) noexcept {
  try {
    return body();
  } catch (const std::exception& e) {
    Report(entry, e.what());
  } catch (...) {
    Report(entry, nullptr);
  }
  return failure;
}

template <class F>
void Guard(const char* entry, F&& body) noexcept {
  try {
    body();
  } catch (const std::exception& e) {
    Report(entry, e.what());
  } catch (...) {
    Report(entry, nullptr);
  }
}

}  // namespace

XPanels::XPanels(Host& host) : host_(host) {
  drawFuncs_.drawPixel = &DrawPixel;
  drawFuncs_.drawRGBPixel = &DrawRGBPixel;
  drawFuncs_.drawLine = &DrawLine;
  drawFuncs_.drawBox = &DrawBox;
  drawFuncs_.drawRGBBox = &DrawRGBBox;
  drawFuncs_.drawBorder = &DrawBorder;
  drawFuncs_.textWidth = &TextWidth;
  drawFuncs_.textHeight = &TextHeight;
  drawFuncs_.drawText = &DrawText;

  funcs_.version = kInterfaceVersion;
  funcs_.drawf = &drawFuncs_;
  funcs_.create = &Create;
  funcs_.destroy = &Destroy;
  funcs_.describe = &Describe;
  funcs_.hint = &HintEntry;
  funcs_.getData = &GetData;
  funcs_.setData = &SetData;
  funcs_.formGet = &FormGet;
  funcs_.formSet = &FormSet;
  funcs_.viewInst = &ViewInst;
  funcs_.viewRefresh = &ViewRefresh;
  funcs_.post = &Post;
  funcs_.open = &Open;

  host_.attach(this);
  host_.globals().provide(LWXPANELFUNCS_GLOBAL, &funcs_);
}

XPanels::~XPanels() {
  // The table dies with us; a module still holding it must not find it through the host.
  if (host_.find<XPanels>() == this) host_.globals().provide(LWXPANELFUNCS_GLOBAL, nullptr);
  host_.detach(this);
}

std::vector<XPanel*> XPanels::panels() const {
  std::vector<XPanel*> out;
  for (const auto& p : live_) out.push_back(p.get());
  return out;
}

XPanel* XPanels::find(LWXPanelID handle) const {
  for (const auto& p : live_)
    if (p.get() == handle) return p.get();
  return nullptr;
}

XPanel* XPanels::create(int type, const LWXPanelControl* controls) {
  collect();
  if (type != LWXP_VIEW && type != LWXP_FORM) {
    noteProblem("create: panel type " + std::to_string(type) + " is neither LWXP_VIEW (1) nor LWXP_FORM (2)");
    return nullptr;
  }
  live_.push_back(std::make_unique<XPanel>(*this, static_cast<XPanel::Kind>(type), controls));
  return live_.back().get();
}

void XPanels::destroy(XPanel& panel) {
  auto it = std::find_if(live_.begin(), live_.end(), [&](const auto& p) { return p.get() == &panel; });
  if (it == live_.end()) {
    noteProblem("destroy: panel " + Pointer(&panel) + " is not alive");
    return;
  }
  dying_.push_back(std::move(*it));
  live_.erase(it);
  panel.destroyed_ = true;
  LWXPanelDestroyNotifyFunc* notify = panel.destroyNotify_;
  void* data = panel.userData(0);
  if (notify) {
    XPanel::Busy busy(panel);
    notify(data);
  }
  collect();
}

void XPanels::collect() {
  dying_.erase(std::remove_if(dying_.begin(), dying_.end(), [](const auto& p) { return p->busy_ == 0; }), dying_.end());
}

const LWVParmFuncs* XPanels::vparmFuncs() {
  // Asking first keeps a host without the service from counting look-ups of it.
  if (!host_.globals().provides(LWVPARMFUNCS_GLOBAL)) return nullptr;
  return static_cast<const LWVParmFuncs*>(host_.globals().peek(LWVPARMFUNCS_GLOBAL));
}

void XPanels::noteProblem(std::string text) {
  if (problems_.size() < 1000) problems_.push_back(std::move(text));
}

LWXPDrAreaID XPanels::openArea(Raster& raster) {
  areas_.push_back(std::make_unique<DrawArea>(DrawArea{&raster}));
  return areas_.back().get();
}

void XPanels::closeArea(LWXPDrAreaID area) {
  areas_.erase(std::remove_if(areas_.begin(), areas_.end(), [&](const auto& a) { return a.get() == area; }),
               areas_.end());
}

Raster* XPanels::areaRaster(LWXPDrAreaID area) const {
  for (const auto& a : areas_)
    if (a.get() == area) return a->raster;
  return nullptr;
}

XPanels* XPanels::Current() { return Host::currentComponent<XPanels>(); }

XPanel* XPanels::Panel(LWXPanelID handle, const char* entry) {
  XPanels* self = Current();
  if (!self) return nullptr;
  XPanel* panel = self->find(handle);
  if (!panel) self->noteProblem(std::string(entry) + ": " + Pointer(handle) + " is not a live panel");
  return panel;
}

Raster* XPanels::Area(LWXPDrAreaID area, const char* entry) {
  XPanels* self = Current();
  if (!self) return nullptr;
  Raster* raster = self->areaRaster(area);
  if (!raster) self->noteProblem(std::string(entry) + ": " + Pointer(area) + " is not a drawing area being drawn");
  return raster;
}

// ---- LWXPanelFuncs

LWXPanelID XPanels::Create(int type, LWXPanelControl* controls) {
  return Guard("create", LWXPanelID{}, [&]() -> LWXPanelID {
    XPanels* self = Current();
    XPanel* panel = self ? self->create(type, controls) : nullptr;
    return panel ? panel->handle() : nullptr;
  });
}

void XPanels::Destroy(LWXPanelID handle) {
  Guard("destroy", [&] {
    if (XPanel* panel = Panel(handle, "destroy")) Current()->destroy(*panel);
  });
}

void XPanels::Describe(LWXPanelID handle, LWXPanelDataDesc* data, LWXPanelGetFunc* get, LWXPanelSetFunc* set) {
  Guard("describe", [&] {
    if (XPanel* panel = Panel(handle, "describe")) panel->describe(data, get, set);
  });
}

void XPanels::HintEntry(LWXPanelID handle, unsigned int id, LWXPanelHint* hints) {
  Guard("hint", [&] {
    if (XPanel* panel = Panel(handle, "hint")) panel->hint(id, hints);
  });
}

void* XPanels::GetData(LWXPanelID handle, unsigned int id) {
  return Guard("getData", static_cast<void*>(nullptr), [&]() -> void* {
    XPanel* panel = Panel(handle, "getData");
    return panel ? panel->userData(id) : nullptr;
  });
}

void XPanels::SetData(LWXPanelID handle, unsigned int id, void* data) {
  Guard("setData", [&] {
    if (XPanel* panel = Panel(handle, "setData")) panel->setUserData(id, data);
  });
}

void* XPanels::FormGet(LWXPanelID handle, unsigned int vid) {
  return Guard("formGet", static_cast<void*>(nullptr), [&]() -> void* {
    XPanel* panel = Panel(handle, "formGet");
    return panel ? panel->formGet(vid) : nullptr;
  });
}

void XPanels::FormSet(LWXPanelID handle, unsigned int vid, void* value) {
  Guard("formSet", [&] {
    if (XPanel* panel = Panel(handle, "formSet")) panel->formSet(vid, value);
  });
}

void XPanels::ViewInst(LWXPanelID handle, void* instance) {
  Guard("viewInst", [&] {
    if (XPanel* panel = Panel(handle, "viewInst")) panel->setInstance(instance);
  });
}

void XPanels::ViewRefresh(LWXPanelID handle) {
  Guard("viewRefresh", [&] {
    if (XPanel* panel = Panel(handle, "viewRefresh")) panel->refresh();
  });
}

int XPanels::Post(LWXPanelID handle) {
  return Guard("post", 0, [&] {
    XPanel* panel = Panel(handle, "post");
    return panel ? panel->post() : 0;
  });
}

int XPanels::Open(LWXPanelID handle) {
  return Guard("open", 0, [&] {
    XPanel* panel = Panel(handle, "open");
    return panel ? panel->open() : 0;
  });
}

// ---- LWXPDrawFuncs

void XPanels::DrawPixel(LWXPDrAreaID area, int c, int x, int y) {
  Guard("drawPixel", [&] {
    if (Raster* r = Area(area, "drawPixel")) r->set(x, y, PaletteColour(c));
  });
}

void XPanels::DrawRGBPixel(LWXPDrAreaID area, int red, int green, int blue, int x, int y) {
  Guard("drawRGBPixel", [&] {
    if (Raster* r = Area(area, "drawRGBPixel")) r->set(x, y, RGB{Channel(red), Channel(green), Channel(blue)});
  });
}

void XPanels::DrawLine(LWXPDrAreaID area, int c, int x, int y, int x2, int y2) {
  Guard("drawLine", [&] {
    if (Raster* r = Area(area, "drawLine")) r->line(x, y, x2, y2, PaletteColour(c));
  });
}

void XPanels::DrawBox(LWXPDrAreaID area, int c, int x, int y, int w, int h) {
  Guard("drawBox", [&] {
    if (Raster* r = Area(area, "drawBox")) r->fillRect(x, y, w, h, PaletteColour(c));
  });
}

void XPanels::DrawRGBBox(LWXPDrAreaID area, int red, int green, int blue, int x, int y, int w, int h) {
  Guard("drawRGBBox", [&] {
    if (Raster* r = Area(area, "drawRGBBox")) r->fillRect(x, y, w, h, RGB{Channel(red), Channel(green), Channel(blue)});
  });
}

void XPanels::DrawBorder(LWXPDrAreaID area, int indent, int x, int y, int w, int h) {
  Guard("drawBorder", [&] {
    if (Raster* r = Area(area, "drawBorder")) DrawBevel(*r, indent, x, y, w, h);
  });
}

// Text metrics do not depend on the area, so they answer even outside a draw callback.
int XPanels::TextWidth(LWXPDrAreaID, char* text) {
  return Guard("textWidth", 0, [&] { return Raster::textWidth(Text(text)); });
}

int XPanels::TextHeight(LWXPDrAreaID, char*) { return Raster::textHeight(); }

void XPanels::DrawText(LWXPDrAreaID area, char* text, int c, int x, int y) {
  Guard("drawText", [&] {
    if (Raster* r = Area(area, "drawText")) r->drawText(x, y, Text(text), PaletteColour(c));
  });
}

}  // namespace lwhost
