// The panel model's operations: what LWPanelFuncs and LWControl calls do, and what the user does.
#include "Registry.h"

#include <algorithm>
#include <cstdio>

#include "lwhost/Panels.h"

namespace lwhost::panels {

namespace {

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

std::string HandleText(const void* id) {
  char text[32];
  std::snprintf(text, sizeof text, "%p", id);
  return text;
}

const char* TagName(int tag) {
  static const char* const kNames[] = {
      "CTL_X",      "CTL_Y",        "CTL_W",         "CTL_H",          "CTL_VALUE",      "CTL_HOTX",
      "CTL_HOTY",   "CTL_HOTW",     "CTL_HOTH",      "CTL_LABELWIDTH", "CTL_MOUSEX",     "CTL_MOUSEY",
      "CTL_FLAGS",  "CTL_USERDRAW", "CTL_USEREVENT", "CTL_LABEL",      "CTL_USERDATA",   "CTL_PANEL",
      "CTL_PANFUN", "CTL_RANGEMIN", "CTL_RANGEMAX",  "CTL_ACTIVATE",   "CTL_MOUSEBUTTON"};
  return tag >= 0 && tag <= CTL_MOUSEBUTTON ? kNames[tag] : "an unknown tag";
}

void* AsPointer(LWCtlEventHook f) { return reinterpret_cast<void*>(f); }
void* AsPointer(LWCtlDrawHook f) { return reinterpret_cast<void*>(f); }

}  // namespace

// ---- look-ups ----

Registry::Registry(Panels& owner) : owner(owner) { InstallServices(table, drawFuncs); }

Panel* Registry::findPanel(const void* id) const {
  for (const auto& p : panels_)
    if (p.get() == id) return p.get();
  return nullptr;
}

Control* Registry::findControl(const void* id) const {
  auto it = controls_.find(id);
  return it == controls_.end() ? nullptr : it->second;
}

Panel& Registry::requirePanel(const void* id) const {
  Panel* panel = findPanel(id);
  if (!panel) throw PanelError("no live panel " + HandleText(id));
  return *panel;
}

Control& Registry::requireControl(const void* id) const {
  Control* control = findControl(id);
  if (!control) throw PanelError("no live control " + HandleText(id));
  return *control;
}

Control& Registry::requireLabel(Panel& panel, const std::string& label) const {
  for (const auto& c : panel.controls)
    if (c->label == label) return *c;
  throw PanelError("panel " + Quoted(panel.title) + " has no control labelled " + Quoted(label));
}

// ---- panels ----

Panel& Registry::create(const char* title, void* panf) {
  panels_.push_back(std::make_unique<Panel>(title ? title : "", panf));
  return *panels_.back();
}

void Registry::forget(Panel& panel) {
  for (const auto& c : panel.controls) controls_.erase(&c->record);
  auto it = std::find_if(panels_.begin(), panels_.end(), [&](const auto& p) { return p.get() == &panel; });
  if (it == panels_.end()) return;
  // Kept until the outermost host call returns: a callback further up may still hold it.
  graveyard_.push_back(std::move(*it));
  panels_.erase(it);
  if (depth_ == 0) graveyard_.clear();
}

void Registry::destroy(Panel& panel) {
  if (panel.open) {
    log.note("destroy: panel " + Quoted(panel.title) + " is open; close it first (the panel is kept)");
    return;
  }
  forget(panel);
}

int Registry::open(Panel& panel, int flags) {
  if (panel.open) {
    log.note("open: panel " + Quoted(panel.title) + " is already open");
    return 0;
  }
  for (const auto& c : panel.controls) {
    if (dynamic_cast<const ListBox*>(c.get()) && !c->userDataSet)
      log.note("open: list box " + c->describe() +
               " has no CTL_USERDATA; the SDK requires setting it, even to NULL, before the panel opens");
  }
  panel.open = true;
  panel.openFlags = flags;
  panel.result = 1;
  ++panel.opens;
  callPanelHook(panel, PAN_USEROPEN, "PAN_USEROPEN hook");
  if (!panel.open) return panel.result;  // the hook closed it again
  callPanelHook(panel, PAN_USERACTIVATE, "PAN_USERACTIVATE hook");
  if (!panel.open) return panel.result;
  repaint(panel, DR_RENDER);
  if (!(flags & PANF_BLOCKING)) return 1;
  return runSession(panel);
}

int Registry::runSession(Panel& panel) {
  ModalSession session;
  panel.session = &session;
  std::vector<UserAction> actions;
  if (!sessions.empty()) {
    actions = std::move(sessions.front());
    sessions.pop_front();
  }
  const std::string title = panel.title;
  for (size_t i = 0; i < actions.size() && !session.ended; ++i) {
    try {
      perform(panel, actions[i]);
    } catch (const std::exception& e) {
      log.note("session on panel " + Quoted(title) + ", action " + std::to_string(i + 1) + " (" +
               actions[i].describe() + "): " + e.what());
    }
  }
  // Nobody is left at the panel: it closes with Continue. `panel` is untouched once the
  // session ended, since the plug-in may have destroyed it after closing it.
  if (!session.ended) close(panel, 1);
  return session.result;
}

int Registry::handle(Panel& panel, int) {
  if (!panel.open) return -1;
  if (panel.session) return 0;  // asked from a callback while a session is running
  runSession(panel);
  return -1;
}

void Registry::draw(Panel& panel, int mode) {
  ++panel.drawRequests;
  panel.lastDrawMode = mode;
  repaint(panel, mode);
}

void Registry::close(Panel& panel, int result) {
  if (!panel.open) return;
  panel.open = false;
  panel.result = result;
  if (ModalSession* session = panel.session) {
    session->result = result;
    session->ended = true;
    panel.session = nullptr;
  }
  callPanelHook(panel, PAN_USERCLOSE, "PAN_USERCLOSE hook");
}

void Registry::callPanelHook(Panel& panel, int tag, const char* what) {
  if (auto hook = reinterpret_cast<LWPanHook>(panel.pointer(tag))) {
    void* data = panel.userData();
    CallPlugin(log, what, "panel " + Quoted(panel.title), [&] { hook(&panel, data); });
  }
}

namespace {
// The hooks and the user data: set and read as pointers, whatever else the tag is.
bool IsPointerTag(int tag) {
  switch (tag) {
    case PAN_USERDRAW:
    case PAN_USERACTIVATE:
    case PAN_USEROPEN:
    case PAN_USERCLOSE:
    case PAN_USERDATA:
    case PAN_USERKEYS:
    case PAN_LWINSTANCE:
    case PAN_MOUSEBUTTON:
    case PAN_MOUSEMOVE:
    case PAN_USERKEYUPS:
    case PAN_MOUSEWHEEL:
      return true;
    default:
      return false;
  }
}
}  // namespace

void Registry::get(Panel& panel, int tag, void* value) {
  if (!value) {
    log.note("get: null value pointer for panel tag " + std::to_string(tag) + " of " + Quoted(panel.title));
    return;
  }
  auto putInt = [&](int v) { *static_cast<int*>(value) = v; };
  auto putPointer = [&](void* v) { *static_cast<void**>(value) = v; };
  if (IsPointerTag(tag)) {
    putPointer(panel.pointer(tag));
    return;
  }
  switch (tag) {
    case PAN_X:
      putInt(panel.x);
      break;
    case PAN_Y:
      putInt(panel.y);
      break;
    case PAN_W:
      putInt(panel.width());
      break;
    case PAN_H:
      putInt(panel.height());
      break;
    case PAN_MOUSEX:
    case PAN_MOUSEY:
    case PAN_QUALIFIERS:
      putInt(0);
      break;  // no mouse at a headless host
    case PAN_FLAGS:
      putInt(panel.openFlags);
      break;
    case PAN_VERSION:
      putInt(LWPANELS_API_VERSION);
      break;
    case PAN_RESULT:
      putInt(panel.result);
      break;
    case PAN_TITLE:
      putPointer(const_cast<char*>(panel.title.c_str()));
      break;
    case PAN_PANFUN:
      putPointer(panel.panf ? panel.panf : &table);
      break;
    case PAN_HOSTDISPLAY:
      putPointer(nullptr);
      break;  // no window system
    default:
      log.note("get: panel tag " + std::to_string(tag) + " cannot be read");
      break;
  }
}

void Registry::set(Panel& panel, int tag, void* value) {
  // Pointer-valued tags take the pointer itself (PAN_SETDATA and friends).
  if (IsPointerTag(tag)) {
    panel.setPointer(tag, value);
    return;
  }
  auto readInt = [&](int* out) {
    if (!value) {
      log.note("set: null value pointer for panel tag " + std::to_string(tag) + " of " + Quoted(panel.title));
      return false;
    }
    *out = *static_cast<const int*>(value);
    return true;
  };
  switch (tag) {
    case PAN_X:
      readInt(&panel.x);
      break;
    case PAN_Y:
      readInt(&panel.y);
      break;
    case PAN_W:
      readInt(&panel.requestedW);
      break;
    case PAN_H:
      readInt(&panel.requestedH);
      break;
    case PAN_RESULT:
      readInt(&panel.result);
      break;
    case PAN_TITLE:
      panel.title = value ? static_cast<const char*>(value) : "";
      break;
    case PAN_TO_FRONT:
      break;  // one panel at a time on a headless host
    default:
      log.note("set: panel tag " + std::to_string(tag) + " cannot be set");
      break;
  }
}

Control* Registry::addControl(Panel& panel, const char* className, const ControlDesc* desc, const char* label) {
  if (!className) {
    log.note("addControl: no class name on panel " + Quoted(panel.title));
    return nullptr;
  }
  if (panel.open) log.note("addControl: panel " + Quoted(panel.title) + " is open; controls belong before open");
  PanelRect slot = panel.nextSlot();
  std::unique_ptr<Control> control = MakeControl(panel, className, desc, label ? label : "", log);
  if (!desc) log.note("addControl: " + control->describe() + " came without a description record");
  control->rect.x = slot.x;
  control->rect.y = slot.y;
  Control* added = control.get();
  panel.controls.push_back(std::move(control));
  controls_[&added->record] = added;
  return added;
}

Control* Registry::nextControl(Panel& panel, const void* after) {
  if (!after) return panel.controls.empty() ? nullptr : panel.controls.front().get();
  for (size_t i = 0; i < panel.controls.size(); ++i) {
    if (&panel.controls[i]->record == after)
      return i + 1 < panel.controls.size() ? panel.controls[i + 1].get() : nullptr;
  }
  log.note("nextControl: " + HandleText(after) + " is not a control of panel " + Quoted(panel.title));
  return nullptr;
}

// ---- controls ----

void Registry::callDrawHook(Control& control, int mode) {
  LWCtlDrawHook hook = control.userDraw;
  void* data = control.userData;
  CallPlugin(log, "CTL_USERDRAW hook", control.describe(),
             [&] { hook(&control.record, data, static_cast<DrMode>(mode)); });
}

void Registry::drawControl(Control& control, int mode) {
  ++control.drawRequests;
  switch (mode) {
    case DR_ERASE:
      control.flags |= CTLF_INVISIBLE;
      break;
    case DR_GHOST:
      control.flags = (control.flags & ~CTLF_INVISIBLE) | CTLF_DISABLE;
      break;
    case DR_RENDER:
      control.flags &= ~(CTLF_INVISIBLE | CTLF_DISABLE);
      break;
    case DR_REFRESH:
      break;
    default:
      log.note("draw: unknown draw mode " + std::to_string(mode) + " for " + control.describe());
      return;
  }
  const PanelRect r = control.rect;
  control.panel.surface().fillRect(r.x, r.y, r.w, r.h, PaletteColour(kBackground));
  if (control.visible()) control.paint(control.panel.surface(), log);
  if (control.userDraw)
    callDrawHook(control, control.visible() ? (control.ghosted() ? DR_GHOST : DR_RENDER) : DR_ERASE);
}

void Registry::get(Control& control, int tag, LWValue* value) {
  if (!value) {
    log.note(std::string("get: null value for ") + TagName(tag) + " of " + control.describe());
    return;
  }
  const PanelRect hot = control.hot();
  switch (tag) {
    case CTL_X:
      value->intv.value = control.rect.x;
      break;
    case CTL_Y:
      value->intv.value = control.rect.y;
      break;
    case CTL_W:
      value->intv.value = control.rect.w;
      break;
    case CTL_H:
      value->intv.value = control.rect.h;
      break;
    case CTL_HOTX:
      value->intv.value = hot.x;
      break;
    case CTL_HOTY:
      value->intv.value = hot.y;
      break;
    case CTL_HOTW:
      value->intv.value = hot.w;
      break;
    case CTL_HOTH:
      value->intv.value = hot.h;
      break;
    case CTL_LABELWIDTH:
      value->intv.value = control.labelWidth;
      break;
    case CTL_MOUSEX:
    case CTL_MOUSEY:
    case CTL_MOUSEBUTTON:
      value->intv.value = 0;
      break;
    case CTL_FLAGS:
      value->intv.value = control.flags;
      break;
    case CTL_RANGEMIN:
      value->intv.value = control.rangeMin;
      break;
    case CTL_RANGEMAX:
      value->intv.value = control.rangeMax;
      break;
    case CTL_VALUE:
      if (const char* why = control.getValue(*value))
        log.note("get: CTL_VALUE of " + control.describe() + " (value type " + std::to_string(value->type) +
                 "): " + why);
      break;
    case CTL_LABEL:
      // Into the caller's buffer when it offers one, else the host's own text.
      if (value->type == LWT_STRING) {
        if (const char* why = CopyOut(control.label, value->str))
          log.note("get: CTL_LABEL of " + control.describe() + ": " + why);
      } else {
        value->ptr.ptr = const_cast<char*>(control.label.c_str());
      }
      break;
    // Pointers always travel in ptr.ptr, whatever the type says: CON_SETEVENT and friends use an
    // LWT_INTEGER record, and on 64-bit builds intv.value does not overlap ptr.ptr.
    case CTL_USERDRAW:
      value->ptr.ptr = AsPointer(control.userDraw);
      break;
    case CTL_USEREVENT:
      value->ptr.ptr = AsPointer(control.event);
      break;
    case CTL_USERDATA:
      value->ptr.ptr = control.userData;
      break;
    case CTL_PANEL:
      value->ptr.ptr = &control.panel;
      break;
    case CTL_PANFUN:
      value->ptr.ptr = control.panel.panf ? control.panel.panf : &table;
      break;
    default:
      log.note(std::string("get: ") + TagName(tag) + " (" + std::to_string(tag) + ") cannot be read from " +
               control.describe());
      break;
  }
}

void Registry::set(Control& control, int tag, LWValue* value) {
  if (!value) {
    log.note(std::string("set: null value for ") + TagName(tag) + " of " + control.describe());
    return;
  }
  const int v = value->intv.value;
  switch (tag) {
    case CTL_X:
      control.rect.x = Clamp(v, -Metrics::kMaxSide, Metrics::kMaxSide);
      break;
    case CTL_Y:
      control.rect.y = Clamp(v, -Metrics::kMaxSide, Metrics::kMaxSide);
      break;
    case CTL_W:
      control.rect.w = Clamp(v, control.labelWidth, Metrics::kMaxSide);
      break;
    case CTL_H:
      control.rect.h = Clamp(v, 0, Metrics::kMaxSide);
      break;
    case CTL_FLAGS:
      control.flags = v;
      break;
    case CTL_RANGEMIN:
      control.rangeMin = v;
      break;
    case CTL_RANGEMAX:
      control.rangeMax = v;
      break;
    case CTL_ACTIVATE:
      break;  // keyboard focus: nothing to do without a keyboard
    case CTL_VALUE:
      if (const char* why = control.setValue(*value))
        log.note("set: CTL_VALUE of " + control.describe() + " (value type " + std::to_string(value->type) +
                 "): " + why);
      break;
    case CTL_LABEL:
      if (value->type == LWT_STRING)
        control.relabel(CopyIn(value->str));
      else
        control.relabel(value->ptr.ptr ? static_cast<const char*>(value->ptr.ptr) : "");
      break;
    case CTL_USERDRAW:
      control.userDraw = reinterpret_cast<LWCtlDrawHook>(value->ptr.ptr);
      break;
    case CTL_USEREVENT:
      control.event = reinterpret_cast<LWCtlEventHook>(value->ptr.ptr);
      break;
    case CTL_USERDATA:
      control.userData = value->ptr.ptr;
      control.userDataSet = true;
      break;
    default:
      log.note(std::string("set: ") + TagName(tag) + " (" + std::to_string(tag) + ") cannot be set on " +
               control.describe());
      break;
  }
}

// ---- the user ----

void Registry::requireUsable(const Control& control) const {
  if (!control.panel.open) throw PanelError("panel " + Quoted(control.panel.title) + " is not open");
  if (!control.visible()) throw PanelError(control.describe() + " is erased (invisible)");
}

void Registry::fireEvent(Control& control) {
  if (!control.event) return;
  LWCtlEventHook hook = control.event;
  void* data = control.userData;
  // Nothing of `control` is used after the hook: the plug-in may close and destroy its panel.
  CallPlugin(log, "CTL_USEREVENT hook", control.describe(), [&] { hook(&control.record, data); });
}

std::vector<std::string> Registry::listRows(Control& control) {
  auto* list = dynamic_cast<ListBox*>(&control);
  if (!list) throw PanelError(control.describe() + " is not a list box");
  std::vector<std::string> rows;
  const int n = list->count(log);
  for (int i = 0; i < n; ++i) rows.push_back(list->name(log, i));
  return rows;
}

void Registry::selectRow(Control& control, int row) {
  auto* list = dynamic_cast<ListBox*>(&control);
  if (!list) throw PanelError(control.describe() + " is not a list box");
  requireUsable(control);
  const int n = list->count(log);
  if (row < 0 || row >= n)
    throw PanelError("row " + std::to_string(row) + " is out of range: " + control.describe() + " has " +
                     std::to_string(n) + " rows");
  list->select(row);
  fireEvent(control);
}

void Registry::press(Control& control) {
  if (dynamic_cast<ListBox*>(&control)) throw PanelError(control.describe() + " is a list box: select a row");
  if (dynamic_cast<FileButton*>(&control))
    throw PanelError(control.describe() + " opens a file dialog: choose a file name");
  requireUsable(control);
  fireEvent(control);
}

void Registry::chooseFile(Control& control, const std::string& fileName) {
  auto* button = dynamic_cast<FileButton*>(&control);
  if (!button) throw PanelError(control.describe() + " is not a file button");
  requireUsable(control);
  button->choose(fileName);
  fireEvent(control);
}

void Registry::userClose(Panel& panel, bool ok) {
  if (!panel.open) throw PanelError("panel " + Quoted(panel.title) + " is not open");
  close(panel, ok ? 1 : 0);
}

void Registry::perform(Panel& panel, const UserAction& action) {
  switch (action.kind) {
    case UserAction::Kind::SelectRow:
      selectRow(requireLabel(panel, action.label), action.row);
      break;
    case UserAction::Kind::Press:
      press(requireLabel(panel, action.label));
      break;
    case UserAction::Kind::ChooseFile:
      chooseFile(requireLabel(panel, action.label), action.fileName);
      break;
    case UserAction::Kind::Close:
      userClose(panel, true);
      break;
    case UserAction::Kind::Cancel:
      userClose(panel, false);
      break;
    case UserAction::Kind::Inspect:
      if (action.inspector) action.inspector(owner, &panel);
      break;
  }
}

}  // namespace lwhost::panels
