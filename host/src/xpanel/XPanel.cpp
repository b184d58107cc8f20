#include "lwhost/XPanel.h"

#include <lwpanel.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

#include "lwhost/HintList.h"
#include "lwhost/XPanels.h"

namespace lwhost {

namespace {

// Guards against tables and lists that lack their terminator.
constexpr int kMaxRows = 1024;
constexpr int kMaxPopupEntries = 4096;
constexpr std::size_t kMaxText = 4096;
constexpr std::size_t kMaxProblems = 1000;

std::string Lower(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

bool EndsWith(const std::string& s, const char* tail) {
  std::size_t n = std::strlen(tail);
  return s.size() >= n && s.compare(s.size() - n, n, tail) == 0;
}

std::string Text(const char* s) { return s ? std::string(s, strnlen(s, kMaxText)) : std::string(); }

std::string Id(unsigned int id) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "0x%X", id);
  return buf;
}

template <class F>
F* Func(LWXPanelHint word) {
  return reinterpret_cast<F*>(word);
}

int RoundToInt(double v) {
  if (!(v == v)) return 0;  // NaN
  return static_cast<int>(
      std::lround(std::clamp(v, double(std::numeric_limits<int>::min()), double(std::numeric_limits<int>::max()))));
}

}  // namespace

ValueKind KindOfDataType(const std::string& dataType) {
  const std::string t = Lower(dataType);
  if (EndsWith(t, "-env")) return ValueKind::VParm;
  if (t == "integer" || t == "axis") return ValueKind::Integer;
  if (t == "integer3") return ValueKind::Integer3;
  if (t == "float" || t == "distance" || t == "percent" || t == "angle" || t == "time") return ValueKind::Float;
  if (t == "float3" || t == "distance3" || t == "percent3" || t == "angle3" || t == "color") return ValueKind::Float3;
  if (t == "string") return ValueKind::String;
  return t.empty() ? ValueKind::None : ValueKind::Unknown;
}

ValueKind KindOfControlClass(const std::string& controlClass) {
  const std::string c = Lower(controlClass);
  if (c == "vbutton" || c == "dthumbnail" || c == "vpopcmd") return ValueKind::None;
  if (c == "iboolean" || c == "islider" || c == "islidertext" || c == "ichoice" || c == "ipopchoice" ||
      c == "ichotransform" || c == "ipoptransform")
    return ValueKind::Integer;
  if (c == "spresettext" || c == "sfilename" || c == "sinfo") return ValueKind::String;
  // The remaining classes share their names with their data types.
  return KindOfDataType(controlClass);
}

XPanel::XPanel(XPanels& owner, Kind kind, const LWXPanelControl* controls) : owner_(owner), kind_(kind) {
  if (!controls) return;
  int row = 0;
  for (; row < kMaxRows && controls[row].cid != 0; ++row) {
    XPControl c;
    c.cid = controls[row].cid;
    c.label = Text(controls[row].label);
    c.controlClass = Text(controls[row].ctrlclass);
    if (c.cid < 0x8000) problem("control " + Id(c.cid) + " uses an id below 0x8000, which XPanels reserves");
    controls_.push_back(std::move(c));
  }
  if (row == kMaxRows) problem("control table has no end row within " + std::to_string(kMaxRows) + " rows");
  bindControls();
}

void XPanel::describe(const LWXPanelDataDesc* data, LWXPanelGetFunc* get, LWXPanelSetFunc* set) {
  data_.clear();
  if (data) {
    int row = 0;
    for (; row < kMaxRows && data[row].vid != 0; ++row)
      data_.push_back(DataRow{data[row].vid, Text(data[row].name), Text(data[row].datatype)});
    if (row == kMaxRows) problem("data table has no end row within " + std::to_string(kMaxRows) + " rows");
  }
  if (kind_ == Kind::View) {
    get_ = get;
    set_ = set;
    if (!get || !set) problem("a view panel was described without a get or set callback");
  }
  bindControls();
  for (const XPControl& c : controls_) {
    if (!c.vid) continue;
    const ValueKind shows = KindOfControlClass(c.controlClass), holds = c.kind();
    if (shows == holds || shows == ValueKind::Unknown || shows == ValueKind::None) continue;
    problem("control " + Id(c.cid) + " (" + c.controlClass + ") is bound to data of type \"" + c.dataType + "\"");
  }
}

void XPanel::bindControls() {
  for (XPControl& c : controls_) {
    auto h = hints_.find(c.cid);
    unsigned int vid = h != hints_.end() && h->second.vid ? h->second.vid : c.cid;
    const DataRow* row = dataRow(vid);
    c.vid = row ? vid : 0;
    c.dataType = row ? row->type : std::string();
  }
}

void XPanel::hint(unsigned int id, const LWXPanelHint* hints) {
  HintParse parsed = ParseHints(hints, id);
  for (std::string& p : parsed.problems) problem("hints for id " + Id(id) + ": " + p);
  for (const Hint& h : parsed.hints) applyHint(h);
  bindControls();
}

void XPanel::applyHint(const Hint& h) {
  const LWXPanelHint* a = h.args.data();
  switch (h.tag) {
    case hint_tag::kLabel: {  // id, text, 0
      IdHints& t = hints_[h.target(0)];
      t.label = Text(static_cast<const char*>(a[1]));
      t.hasLabel = true;
      for (XPControl& c : controls_)
        if (c.cid == h.target(0)) c.label = t.label;
      break;
    }
    case hint_tag::kValue:  // cid, vid
      hints_[h.target(0)].vid = h.id(1);
      break;
    case hint_tag::kChangeNotify:  // func
      changeNotify_ = Func<LWXPanelChangeNotifyFunc>(a[0]);
      break;
    case hint_tag::kDestroyNotify:  // func, 0
      destroyNotify_ = Func<LWXPanelDestroyNotifyFunc>(a[0]);
      break;
    case hint_tag::kButtonNotify:  // cid, func
      hints_[h.target(0)].button = Func<LWXPanelBtnClickFunc>(a[1]);
      break;
    case hint_tag::kDrawFunc:  // cid, func
      hints_[h.target(0)].draw = Func<LWXPanelControlDrawFunc>(a[1]);
      break;
    case hint_tag::kZoomFunc:  // cid, func, rect
      hints_[h.target(0)].zoom = Func<LWXPanelControlZoomFunc>(a[1]);
      break;
    case hint_tag::kPopFuncs: {  // cid, count, name
      IdHints& t = hints_[h.target(0)];
      t.popCount = Func<LWXPanelPopCntFunc>(a[1]);
      t.popName = Func<LWXPanelPopNameFunc>(a[2]);
      break;
    }
    case hint_tag::kPopCommand:  // cid, func
      hints_[h.target(0)].popCmd = Func<LWXPanelPopCmdFunc>(a[1]);
      break;
    case hint_tag::kStringList:  // cid, list, 0
      hints_[h.target(0)].strings = static_cast<const char* const*>(a[1]);
      break;
    case hint_tag::kControlConfig:  // cid, 0, options
      hints_[h.target(0)].options = h.id(2);
      break;
    case hint_tag::kDividerAdd:  // id (0 = top, -1 = bottom), more ids
    case hint_tag::kDividerRemove: {
      const bool add = h.tag == hint_tag::kDividerAdd;
      hints_[h.id(0)].divider = add;
      for (LWXPanelHint w : h.list) hints_[HintWord(w)].divider = add;
      break;
    }
    default:
      break;  // layout and behaviour a headless panel has no use for
  }
}

void* XPanel::userData(unsigned int id) const {
  auto it = userData_.find(id);
  return it == userData_.end() ? nullptr : it->second;
}

void XPanel::setUserData(unsigned int id, void* data) { userData_[id] = data; }

const XPanel::DataRow* XPanel::dataRow(unsigned int vid) const {
  for (const DataRow& r : data_)
    if (r.vid == vid) return &r;
  return nullptr;
}

void* XPanel::formGet(unsigned int vid) {
  if (kind_ != Kind::Form) {
    problem("formGet on a view panel");
    return nullptr;
  }
  const DataRow* row = dataRow(vid);
  auto slot = form_.find(vid);
  if (!row || slot == form_.end() || !slot->second.set) return nullptr;
  FormSlot& s = slot->second;
  switch (KindOfDataType(row->type)) {
    case ValueKind::Integer:
    case ValueKind::Integer3:
      return s.integer;
    case ValueKind::Float:
    case ValueKind::Float3:
      return s.number;
    case ValueKind::String:
      return s.text.data();
    case ValueKind::VParm:
      return s.vparm;
    default:
      return nullptr;
  }
}

void XPanel::formSet(unsigned int vid, const void* value) {
  if (kind_ != Kind::Form) {
    problem("formSet on a view panel");
    return;
  }
  const DataRow* row = dataRow(vid);
  if (!row) {
    problem("formSet of value " + Id(vid) + ", which the data table does not list");
    return;
  }
  FormSlot& s = form_[vid];
  s.set = value != nullptr;
  if (!value) return;
  switch (KindOfDataType(row->type)) {
    case ValueKind::Integer:
      s.integer[0] = *static_cast<const int*>(value);
      break;
    case ValueKind::Integer3:
      std::memcpy(s.integer, value, sizeof s.integer);
      break;
    case ValueKind::Float:
      s.number[0] = *static_cast<const double*>(value);
      break;
    case ValueKind::Float3:
      std::memcpy(s.number, value, sizeof s.number);
      break;
    case ValueKind::String:
      s.text = Text(static_cast<const char*>(value));
      break;
    case ValueKind::VParm:
      s.vparm = const_cast<void*>(value);
      break;
    default:
      s.set = false;
      problem("formSet of value " + Id(vid) + " of unknown type \"" + row->type + "\"");
      break;
  }
}

void XPanel::refresh() {
  ++refreshes_;
  for (std::size_t i = 0; i < data_.size() && !destroyed_; ++i) {
    // Copies: a get callback may re-describe the panel.
    const unsigned int vid = data_[i].vid;
    const ValueKind kind = KindOfDataType(data_[i].type);
    XPValue v = readVid(vid, kind);
    shown_[vid] = std::move(v);
  }
}

int XPanel::open() {
  ++opens_;
  return 1;
}

int XPanel::post() {
  ++posts_;
  return 1;
}

std::string XPanel::title() const {
  auto it = hints_.find(0);
  return it != hints_.end() && it->second.hasLabel ? it->second.label : std::string();
}

const XPControl* XPanel::control(unsigned int cid) const {
  for (const XPControl& c : controls_)
    if (c.cid == cid) return &c;
  return nullptr;
}

bool XPanel::hasDividerAfter(unsigned int id) const {
  auto it = hints_.find(id);
  return it != hints_.end() && it->second.divider;
}

unsigned int XPanel::thumbnailOptions(unsigned int cid) const {
  auto it = hints_.find(cid);
  return it == hints_.end() ? 0u : it->second.options;
}

ThumbnailSize XPanel::thumbnailSize(unsigned int cid, int fullWidth) const {
  const unsigned int o = thumbnailOptions(cid);
  int height = 56;
  if (o & THUM_XLG)
    height = 168;
  else if (o & THUM_LRG)
    height = 112;
  else if (o & THUM_MED)
    height = 84;
  else if (o & THUM_SML)
    height = 56;
  else if (o & THUM_SNGL)
    height = 20;

  ThumbnailSize size;
  size.height = height;
  if (o & static_cast<unsigned int>(THUM_FULL)) {
    size.width = std::clamp(fullWidth, 0, Raster::kMaxSide);
    return size;
  }
  double aspect = 4.0 / 3.0;
  if (o & THUM_SQ)
    aspect = 1.0;
  else if (o & THUM_35MM)
    aspect = 3.0 / 2.0;
  else if (o & THUM_PORT)
    aspect = 3.0 / 4.0;
  else if (o & THUM_WIDE)
    aspect = 16.0 / 9.0;
  else if (o & THUM_ANAW)
    aspect = 2.35;
  else if (o & THUM_EURO)
    aspect = 5.0 / 4.0;
  size.width = static_cast<int>(std::lround(height * aspect));
  return size;
}

std::vector<std::string> XPanel::popupEntries(unsigned int cid) {
  std::vector<std::string> entries;
  if (!usable("popupEntries")) return entries;
  auto it = hints_.find(cid);
  if (it == hints_.end()) return entries;
  const IdHints h = it->second;  // a callback may hint the panel again
  if (h.strings) {
    for (int i = 0; i < kMaxPopupEntries && h.strings[i]; ++i) entries.push_back(Text(h.strings[i]));
    return entries;
  }
  if (!h.popCount) return entries;
  Busy busy(*this);
  const int count = std::clamp(h.popCount(userData(cid)), 0, kMaxPopupEntries);
  for (int i = 0; i < count && !destroyed_; ++i)
    entries.push_back(h.popName ? Text(h.popName(userData(cid), i)) : std::string());
  return entries;
}

XPValue XPanel::value(unsigned int cid) {
  if (!usable("value")) return {};
  const XPControl* c = control(cid);
  if (!c) {
    problem("value of " + Id(cid) + ": no such control");
    return {};
  }
  return read(*c);
}

XPValue XPanel::shownValue(unsigned int cid) const {
  const XPControl* c = control(cid);
  if (!c || !c->vid) return {};
  auto it = shown_.find(c->vid);
  return it == shown_.end() ? XPValue{} : it->second;
}

XPValue XPanel::read(const XPControl& control) {
  if (!control.vid) return {};
  return readVid(control.vid, control.kind());
}

XPValue XPanel::readVid(unsigned int vid, ValueKind kind) {
  XPValue v;
  const void* p = nullptr;
  if (kind_ == Kind::View) {
    if (!get_) return v;
    Busy busy(*this);
    p = get_(instance_, vid);
  } else {
    auto slot = form_.find(vid);
    if (slot == form_.end() || !slot->second.set) return v;
    const FormSlot& s = slot->second;
    p = kind == ValueKind::VParm                                    ? s.vparm
        : kind == ValueKind::String                                 ? static_cast<const void*>(s.text.c_str())
        : kind == ValueKind::Integer || kind == ValueKind::Integer3 ? static_cast<const void*>(s.integer)
                                                                    : static_cast<const void*>(s.number);
  }
  if (!p) return v;
  v.kind = kind;
  switch (kind) {
    case ValueKind::Integer:
      v.integer[0] = *static_cast<const int*>(p);
      break;
    case ValueKind::Integer3:
      std::memcpy(v.integer, p, sizeof v.integer);
      break;
    case ValueKind::Float:
      v.number[0] = *static_cast<const double*>(p);
      break;
    case ValueKind::Float3:
      std::memcpy(v.number, p, sizeof v.number);
      break;
    case ValueKind::String:
      v.text = Text(static_cast<const char*>(p));
      break;
    case ValueKind::VParm:
      v.vparm = const_cast<void*>(p);
      readVParm(v);
      break;
    default:
      v.kind = ValueKind::Unknown;
      break;
  }
  return v;
}

void XPanel::readVParm(XPValue& v) const {
  const LWVParmFuncs* f = owner_.vparmFuncs();
  if (!f || !f->getVal) return;
  double r[3] = {0, 0, 0};
  f->getVal(v.vparm, 0.0, nullptr, r);
  std::copy(r, r + 3, v.number);
  v.numbersKnown = true;
}

const XPControl* XPanel::valueControl(unsigned int cid, const char* what) {
  if (!usable(what)) return nullptr;
  const XPControl* c = control(cid);
  if (!c) {
    problem(std::string(what) + " " + Id(cid) + ": no such control");
    return nullptr;
  }
  if (!c->vid) {
    problem(std::string(what) + " " + Id(cid) + ": the control has no value in the data table");
    return nullptr;
  }
  return c;
}

bool XPanel::commit(const XPControl& control, void* value, const char* what) {
  // Copies: callbacks may re-describe the panel and move its controls.
  const unsigned int cid = control.cid, vid = control.vid;
  Busy busy(*this);
  int result = 0;
  if (kind_ == Kind::View) {
    if (!set_) {
      problem(std::string(what) + " " + Id(cid) + ": the panel has no set callback");
      return false;
    }
    result = set_(instance_, vid, value);
    lastSetResult_ = result;
  } else {
    formSet(vid, value);
  }
  if (destroyed_) return true;
  changeNotify(cid, vid, kValue);
  if (!destroyed_ && kind_ == Kind::View && result != 0) refresh();
  return true;
}

bool XPanel::setInteger(unsigned int cid, int value) {
  const XPControl* c = valueControl(cid, "setInteger");
  if (!c) return false;
  switch (c->kind()) {
    case ValueKind::Integer: {
      int v = value;
      return commit(*c, &v, "setInteger");
    }
    case ValueKind::Float:
    case ValueKind::VParm:
      return setNumber(cid, value);
    default:
      problem("setInteger " + Id(cid) + ": the value is of type \"" + c->dataType + "\"");
      return false;
  }
}

bool XPanel::setNumber(unsigned int cid, double value) {
  const XPControl* c = valueControl(cid, "setNumber");
  if (!c) return false;
  switch (c->kind()) {
    case ValueKind::Integer: {
      int v = RoundToInt(value);
      return commit(*c, &v, "setNumber");
    }
    case ValueKind::Float: {
      double v = value;
      return commit(*c, &v, "setNumber");
    }
    case ValueKind::VParm: {
      const double v[3] = {value, value, value};
      return setVector(cid, v);
    }
    default:
      problem("setNumber " + Id(cid) + ": the value is of type \"" + c->dataType + "\"");
      return false;
  }
}

bool XPanel::setVector(unsigned int cid, const double value[3]) {
  const XPControl* c = valueControl(cid, "setVector");
  if (!c) return false;
  switch (c->kind()) {
    case ValueKind::Float3: {
      double v[3] = {value[0], value[1], value[2]};
      return commit(*c, v, "setVector");
    }
    case ValueKind::Integer3: {
      int v[3] = {RoundToInt(value[0]), RoundToInt(value[1]), RoundToInt(value[2])};
      return commit(*c, v, "setVector");
    }
    case ValueKind::VParm: {
      // The parameter is edited in place; set then hears of it with the (same) handle.
      void* vparm = nullptr;
      if (kind_ == Kind::View) {
        if (get_) {
          Busy busy(*this);
          vparm = get_(instance_, c->vid);
        }
      } else {
        auto slot = form_.find(c->vid);
        if (slot != form_.end() && slot->second.set) vparm = slot->second.vparm;
      }
      if (!vparm) {
        problem("setVector " + Id(cid) + ": the panel has no parameter for the value");
        return false;
      }
      const LWVParmFuncs* f = owner_.vparmFuncs();
      if (!f || !f->setVal) {
        problem("setVector " + Id(cid) + ": the host has no \"" LWVPARMFUNCS_GLOBAL "\" to edit the parameter");
        return false;
      }
      if (destroyed_) return false;
      double v[3] = {value[0], value[1], value[2]};
      f->setVal(vparm, v);
      const XPControl* again = control(cid);
      return again && commit(*again, vparm, "setVector");
    }
    default:
      problem("setVector " + Id(cid) + ": the value is of type \"" + c->dataType + "\"");
      return false;
  }
}

bool XPanel::setText(unsigned int cid, const std::string& text) {
  const XPControl* c = valueControl(cid, "setText");
  if (!c) return false;
  if (c->kind() != ValueKind::String) {
    problem("setText " + Id(cid) + ": the value is of type \"" + c->dataType + "\"");
    return false;
  }
  std::vector<char> buffer(text.begin(), text.end());
  buffer.push_back('\0');
  return commit(*c, buffer.data(), "setText");
}

bool XPanel::click(unsigned int cid) {
  if (!usable("click")) return false;
  const XPControl* c = control(cid);
  if (!c) {
    problem("click " + Id(cid) + ": no such control");
    return false;
  }
  const unsigned int vid = c->vid;
  auto it = hints_.find(cid);
  LWXPanelBtnClickFunc* button = it == hints_.end() ? nullptr : it->second.button;
  Busy busy(*this);
  if (button) button(this, static_cast<int>(cid));
  if (!destroyed_) changeNotify(cid, vid, kHit);
  return true;
}

bool XPanel::choose(unsigned int cid, int index) {
  if (!usable("choose")) return false;
  const XPControl* c = control(cid);
  if (!c) {
    problem("choose " + Id(cid) + ": no such control");
    return false;
  }
  const std::vector<std::string> entries = popupEntries(cid);
  if (index < 0 || (!entries.empty() && static_cast<std::size_t>(index) >= entries.size())) {
    problem("choose " + Id(cid) + ": entry " + std::to_string(index) + " of " + std::to_string(entries.size()));
    return false;
  }
  if (destroyed_) return false;
  if (Lower(c->controlClass) != "vpopcmd") return setInteger(cid, index);

  auto it = hints_.find(cid);
  LWXPanelPopCmdFunc* command = it == hints_.end() ? nullptr : it->second.popCmd;
  const unsigned int vid = c->vid;
  Busy busy(*this);
  if (command) command(this, static_cast<int>(cid), index);
  if (!destroyed_) changeNotify(cid, vid, kHit);
  return true;
}

bool XPanel::notify(unsigned int cid, int event) {
  if (!usable("notify")) return false;
  const XPControl* c = control(cid);
  if (!c) {
    problem("notify " + Id(cid) + ": no such control");
    return false;
  }
  changeNotify(cid, c->vid, event);
  return true;
}

bool XPanel::zoom(unsigned int cid, int x, int y, int clicks) {
  if (!usable("zoom")) return false;
  auto it = hints_.find(cid);
  LWXPanelControlZoomFunc* zoom = it == hints_.end() ? nullptr : it->second.zoom;
  if (!control(cid) || !zoom) {
    problem("zoom " + Id(cid) + ": no such control, or no zoom callback was hinted");
    return false;
  }
  int region[4] = {x, y, x, y};
  Busy busy(*this);
  zoom(this, cid, x, y, region, clicks);
  return true;
}

void XPanel::changeNotify(unsigned int cid, unsigned int vid, int event) {
  if (!changeNotify_) return;
  Busy busy(*this);
  changeNotify_(this, cid, vid, event);  // the result is meaningless (the SDK's text says void)
}

Raster XPanel::drawControl(unsigned int cid, int width, int height) {
  Raster raster(width, height, PaletteColour(LWP_BG));
  if (!usable("draw")) return raster;
  auto it = hints_.find(cid);
  LWXPanelControlDrawFunc* draw = it == hints_.end() ? nullptr : it->second.draw;
  if (!draw) {
    problem("draw " + Id(cid) + ": no draw callback was hinted");
    return raster;
  }
  LWXPDrAreaID area = owner_.openArea(raster);
  {
    Busy busy(*this);
    draw(this, cid, area, raster.width(), raster.height());
  }
  owner_.closeArea(area);
  return raster;
}

Raster XPanel::drawThumbnail(unsigned int cid, int fullWidth) {
  ThumbnailSize size = thumbnailSize(cid, fullWidth);
  return drawControl(cid, size.width, size.height);
}

bool XPanel::usable(const char* what) {
  if (destroyed_) problem(std::string(what) + ": the panel has been destroyed");
  return !destroyed_;
}

void XPanel::problem(std::string text) {
  if (problems_.size() < kMaxProblems) problems_.push_back(std::move(text));
}

}  // namespace lwhost
