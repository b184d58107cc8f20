// The C functions plug-ins call: LWPanelFuncs, each LWControl's draw/get/set, and DrawFuncs.
// Each one checks its handles, runs inside a registry Entry and lets no exception out.
#include <algorithm>
#include <cstdio>

#include "Registry.h"
#include "lwhost/Host.h"
#include "lwhost/Panels.h"

namespace lwhost::panels {

struct Services {
  static Registry* current() {
    Panels* panels = Host::currentComponent<Panels>();
    return panels ? panels->registry_.get() : nullptr;
  }
};

namespace {

std::string HandleText(const void* id) {
  char text[32];
  std::snprintf(text, sizeof text, "%p", id);
  return text;
}

// Runs `body` with the registry of the current host; a missing host, a thrown exception or a
// handle the body rejects all give `failure`.
template <class R, class F>
R Enter(const char* function, R failure, F&& body) noexcept {
  Registry* registry = Services::current();
  if (!registry) return failure;
  try {
    Registry::Entry entry(*registry);
    return body(*registry);
  } catch (const std::exception& e) {
    registry->log.note(std::string(function) + ": " + e.what());
  } catch (...) {
    registry->log.note(std::string(function) + ": unexpected failure");
  }
  return failure;
}

template <class F>
void EnterVoid(const char* function, F&& body) noexcept {
  Enter<int>(function, 0, [&](Registry& r) {
    body(r);
    return 0;
  });
}

Panel* LivePanel(Registry& r, const char* function, LWPanelID id) {
  Panel* panel = r.findPanel(id);
  if (!panel) r.log.note(std::string(function) + ": " + HandleText(id) + " is not a live panel");
  return panel;
}

Control* LiveControl(Registry& r, const char* function, LWControlID id) {
  Control* control = r.findControl(id);
  if (!control) r.log.note(std::string(function) + ": " + HandleText(id) + " is not a live control");
  return control;
}

// ---- LWPanelFuncs ----

LWPanelID Create(char* title, void* panf) {
  return Enter<LWPanelID>("create", nullptr, [&](Registry& r) { return &r.create(title, panf); });
}

void Destroy(LWPanelID id) {
  EnterVoid("destroy", [&](Registry& r) {
    if (Panel* p = LivePanel(r, "destroy", id)) r.destroy(*p);
  });
}

int Open(LWPanelID id, int flags) {
  return Enter("open", 0, [&](Registry& r) {
    Panel* p = LivePanel(r, "open", id);
    return p ? r.open(*p, flags) : 0;
  });
}

int Handle(LWPanelID id, int flags) {
  return Enter("handle", -1, [&](Registry& r) {
    Panel* p = LivePanel(r, "handle", id);
    return p ? r.handle(*p, flags) : -1;
  });
}

void Draw(LWPanelID id, DrMode mode) {
  EnterVoid("draw", [&](Registry& r) {
    if (Panel* p = LivePanel(r, "draw", id)) r.draw(*p, mode);
  });
}

void Close(LWPanelID id) {
  EnterVoid("close", [&](Registry& r) {
    if (Panel* p = LivePanel(r, "close", id)) r.close(*p, p->result);
  });
}

void Get(LWPanelID id, pTag tag, void* value) {
  EnterVoid("get", [&](Registry& r) {
    if (Panel* p = LivePanel(r, "get", id)) r.get(*p, tag, value);
  });
}

void Set(LWPanelID id, pTag tag, void* value) {
  EnterVoid("set", [&](Registry& r) {
    if (Panel* p = LivePanel(r, "set", id)) r.set(*p, tag, value);
  });
}

LWControl* AddControl(LWPanelID id, char* className, ControlDesc* desc, char* label) {
  return Enter<LWControl*>("addControl", nullptr, [&](Registry& r) -> LWControl* {
    Panel* p = LivePanel(r, "addControl", id);
    Control* c = p ? r.addControl(*p, className, desc, label) : nullptr;
    return c ? &c->record : nullptr;
  });
}

LWControl* NextControl(LWPanelID id, LWControlID after) {
  return Enter<LWControl*>("nextControl", nullptr, [&](Registry& r) -> LWControl* {
    Panel* p = LivePanel(r, "nextControl", id);
    Control* c = p ? r.nextControl(*p, after) : nullptr;
    return c ? &c->record : nullptr;
  });
}

// ---- LWControl ----

void ControlDraw(LWControlID id, DrMode mode) {
  EnterVoid("control draw", [&](Registry& r) {
    if (Control* c = LiveControl(r, "control draw", id)) r.drawControl(*c, mode);
  });
}

void ControlGet(LWControlID id, cTag tag, LWValue* value) {
  EnterVoid("control get", [&](Registry& r) {
    if (Control* c = LiveControl(r, "control get", id)) r.get(*c, tag, value);
  });
}

void ControlSet(LWControlID id, cTag tag, LWValue* value) {
  EnterVoid("control set", [&](Registry& r) {
    if (Control* c = LiveControl(r, "control set", id)) r.set(*c, tag, value);
  });
}

// ---- DrawFuncs: into the panel's surface, coordinates relative to its top-left ----

template <class F>
void OnSurface(const char* function, LWPanelID id, F&& draw) noexcept {
  EnterVoid(function, [&](Registry& r) {
    if (Panel* p = LivePanel(r, function, id)) draw(p->surface());
  });
}

std::uint8_t Level(int v) { return static_cast<std::uint8_t>(Clamp(v, 0, 255)); }

void DrawPixel(LWPanelID id, int c, int x, int y) {
  OnSurface("drawPixel", id, [&](Raster& s) { s.set(x, y, PaletteColour(c)); });
}

void DrawRGBPixel(LWPanelID id, int r, int g, int b, int x, int y) {
  OnSurface("drawRGBPixel", id, [&](Raster& s) { s.set(x, y, RGB{Level(r), Level(g), Level(b)}); });
}

void DrawLine(LWPanelID id, int c, int x, int y, int x2, int y2) {
  OnSurface("drawLine", id, [&](Raster& s) { s.line(x, y, x2, y2, PaletteColour(c)); });
}

void DrawBox(LWPanelID id, int c, int x, int y, int w, int h) {
  OnSurface("drawBox", id, [&](Raster& s) { s.fillRect(x, y, w, h, PaletteColour(c)); });
}

void DrawRGBBox(LWPanelID id, int r, int g, int b, int x, int y, int w, int h) {
  OnSurface("drawRGBBox", id, [&](Raster& s) { s.fillRect(x, y, w, h, RGB{Level(r), Level(g), Level(b)}); });
}

void DrawBorder(LWPanelID id, int indent, int x, int y, int w, int h) {
  OnSurface("drawBorder", id, [&](Raster& s) { lwhost::DrawBevel(s, indent, x, y, w, h); });
}

int TextWidth(LWPanelID, char* text) {
  return Enter("textWidth", 0, [&](Registry&) { return text ? Raster::textWidth(text) : 0; });
}

void DrawString(LWPanelID id, char* text, int c, int x, int y) {
  if (!text) return;
  OnSurface("drawText", id, [&](Raster& s) { s.drawText(x, y, text, PaletteColour(c)); });
}

const LWDisplayMetrics* DisplayMetrics() {
  // depth is non-zero for true colour: the header's TRUECOLOR() and PALETTESIZE() read it so
  // (the HTML reference says 0, which those macros would take for a palette display).
  static const LWDisplayMetrics metrics = [] {
    LWDisplayMetrics m{};
    m.width = 1920;
    m.height = 1080;
    m.pixX = m.pixY = 1;
    m.maxColors = 1 << 24;
    m.depth = 24;
    m.textHeight = Raster::textHeight();
    m.textAscent = Raster::textHeight() - 2;
    return m;
  }();
  return &metrics;
}

}  // namespace

void InstallServices(LWPanelFuncs& table, DrawFuncs& drawFuncs) {
  drawFuncs.drawPixel = &DrawPixel;
  drawFuncs.drawRGBPixel = &DrawRGBPixel;
  drawFuncs.drawLine = &DrawLine;
  drawFuncs.drawBox = &DrawBox;
  drawFuncs.drawRGBBox = &DrawRGBBox;
  drawFuncs.drawBorder = &DrawBorder;
  drawFuncs.textWidth = &TextWidth;
  drawFuncs.drawText = &DrawString;
  drawFuncs.dispMetrics = &DisplayMetrics;

  table.create = &Create;
  table.destroy = &Destroy;
  table.open = &Open;
  table.handle = &Handle;
  table.draw = &Draw;
  table.close = &Close;
  table.get = &Get;
  table.set = &Set;
  table.addControl = &AddControl;
  table.nextControl = &NextControl;
  table.drawFuncs = &drawFuncs;
  table.user_data = nullptr;
  table.globalFun = Host::lookupFunction();
}

// Every control record gets the same three functions; the record's address tells them apart.
void InstallControlFunctions(LWControl& record) {
  record.draw = &ControlDraw;
  record.get = &ControlGet;
  record.set = &ControlSet;
}

}  // namespace lwhost::panels
