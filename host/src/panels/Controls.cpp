// The control classes the host simulates: layout from the description record, CTL_VALUE, looks.
#include <algorithm>
#include <cstring>

#include "Registry.h"

namespace lwhost::panels {

const char* CopyOut(const std::string& text, LWValString& value) {
  if (!value.buf) return "the string buffer is null";
  if (value.bufLen < 1) return "the string buffer length is below 1";
  size_t n = std::min(text.size(), static_cast<size_t>(value.bufLen) - 1);
  std::memcpy(value.buf, text.data(), n);
  value.buf[n] = '\0';
  return nullptr;
}

std::string CopyIn(const LWValString& value) {
  if (!value.buf) return {};
  // A positive bufLen bounds the read even when the plug-in forgot the terminator.
  size_t n = value.bufLen > 0 ? strnlen(value.buf, static_cast<size_t>(value.bufLen)) : std::strlen(value.buf);
  return std::string(value.buf, n);
}

Control::Control(Panel& owner, std::string className, std::string label)
    : panel(owner), className(std::move(className)), label(std::move(label)) {
  InstallControlFunctions(record);
  record.priv_data = this;
}

std::string Control::describe() const {
  return "\"" + label + "\" (" + className + ") on panel \"" + panel.title + "\"";
}

ControlInfo Control::info() const {
  ControlInfo i;
  i.id = const_cast<LWControl*>(&record);
  i.className = className;
  i.label = label;
  i.rect = rect;
  i.hot = hot();
  i.flags = flags;
  i.simulated = simulated();
  i.userData = userData;
  i.hasEvent = event != nullptr;
  i.drawRequests = drawRequests;
  return i;
}

void Control::relabel(std::string text) {
  label = std::move(text);
  if (labelInside()) return;
  int hotWidth = rect.w - labelWidth;
  labelWidth = Metrics::labelWidth(label);
  rect.w = labelWidth + hotWidth;
}

// ---- list box ----

ListBox::ListBox(Panel& owner, std::string label, const ControlDesc* desc, ProblemLog& log)
    : Control(owner, "ListBoxControl", std::move(label)) {
  int width = 0;
  if (desc) {
    width = desc->listbox.width;
    visibleRows_ = desc->listbox.visItems;
    countFn_ = desc->listbox.countFn;
    nameFn_ = desc->listbox.nameFn;
    // listbox.top is not read: LISTBOX_CTL leaves it as the caller's record had it.
  }
  if (width < 1 || width > Metrics::kMaxSide) {
    log.note("list box " + describe() + ": width " + std::to_string(width) + " replaced by " +
             std::to_string(Clamp(width, Metrics::kPlainBoxWidth, Metrics::kMaxSide)));
    width = Clamp(width, Metrics::kPlainBoxWidth, Metrics::kMaxSide);
  }
  int maxRows = (Metrics::kMaxSide - 4) / Metrics::rowHeight();
  if (visibleRows_ < 1 || visibleRows_ > maxRows) {
    log.note("list box " + describe() + ": " + std::to_string(visibleRows_) + " visible rows replaced by " +
             std::to_string(Clamp(visibleRows_, 1, maxRows)));
    visibleRows_ = Clamp(visibleRows_, 1, maxRows);
  }
  if (!countFn_ || !nameFn_) log.note("list box " + describe() + " has no count or name callback; it stays empty");
  labelWidth = Metrics::labelWidth(this->label);
  rect.w = labelWidth + width;
  rect.h = visibleRows_ * Metrics::rowHeight() + 4;
}

int ListBox::count(ProblemLog& log) const {
  int n = 0;
  if (countFn_) CallPlugin(log, "count callback", describe(), [&] { n = countFn_(userData); });
  return Clamp(n, 0, Metrics::kMaxRows);
}

std::string ListBox::name(ProblemLog& log, int index) const {
  std::string text;
  if (nameFn_) {
    CallPlugin(log, "name callback", describe(), [&] {
      const char* s = nameFn_(userData, index);
      if (s) text = s;
    });
  }
  return text;
}

void ListBox::select(int row) {
  selected_ = row;
  if (row < top_) top_ = row;
  if (row >= top_ + visibleRows_) top_ = row - visibleRows_ + 1;
  top_ = std::max(top_, 0);
}

const char* ListBox::getValue(LWValue& value) const {
  value.intv.value = selected_;
  return nullptr;
}

const char* ListBox::setValue(const LWValue& value) {
  if (value.intv.value < -1) return "a list box row below -1";
  if (value.intv.value >= Metrics::kMaxRows) return "a list box row beyond the rows this host reads";
  select(value.intv.value);
  return nullptr;
}

void ListBox::paint(Raster& canvas, ProblemLog& log) const {
  const PanelRect box = hot();
  if (labelWidth > 0) {
    DrawClippedText(canvas, {rect.x, rect.y, labelWidth - Metrics::kLabelGap, Metrics::rowHeight() + 4},
                    Printable(label), TextColour(*this), kBackground);
  }
  Bevel(canvas, box, 1, false);
  canvas.fillRect(box.x + 1, box.y + 1, box.w - 2, box.h - 2, PaletteColour(kListBackground));

  const int n = count(log);
  const int scrollbar = n > visibleRows_ ? 8 : 0;
  const int rowWidth = std::max(0, box.w - 4 - scrollbar);
  const int rowHeight = Metrics::rowHeight();
  for (int i = 0; i < visibleRows_ && top_ + i < n; ++i) {
    int index = top_ + i;
    PanelRect row{box.x + 2, box.y + 2 + i * rowHeight, rowWidth, rowHeight};
    int background = index == selected_ ? kSelection : kListBackground;
    canvas.fillRect(row.x, row.y, row.w, row.h, PaletteColour(background));
    DrawClippedText(canvas, {row.x + 2, row.y, row.w - 2, row.h}, Printable(name(log, index)), TextColour(*this),
                    background);
  }
  if (scrollbar) {
    PanelRect track{box.x + box.w - 2 - scrollbar, box.y + 2, scrollbar, box.h - 4};
    canvas.fillRect(track.x, track.y, track.w, track.h, PaletteColour(kBackground));
    int thumbH = std::max(4, track.h * visibleRows_ / n);
    int thumbY = track.y + (track.h - thumbH) * top_ / std::max(1, n - visibleRows_);
    Bevel(canvas, {track.x, thumbY, track.w, thumbH}, 1, true);
  }
}

// ---- buttons ----

Button::Button(Panel& owner, std::string label, const ControlDesc* desc)
    : Control(owner, "ButtonControl", std::move(label)) {
  rect.w = Metrics::buttonWidth(this->label);
  rect.h = Metrics::buttonHeight();
  // Only WBUTTON_CTL says LWT_AREA; BUTTON_CTL fills nothing but the type.
  if (desc && desc->type == LWT_AREA) {
    if (desc->area.width > 0) rect.w = std::min(desc->area.width, Metrics::kMaxSide);
    if (desc->area.height > 0) rect.h = std::min(desc->area.height, Metrics::kMaxSide);
  }
}

const char* Button::getValue(LWValue& value) const {
  value.intv.value = 0;
  return nullptr;
}

const char* Button::setValue(const LWValue&) { return nullptr; }

void Button::paint(Raster& canvas, ProblemLog&) const { DrawButtonFace(canvas, rect, label, TextColour(*this)); }

FileButton::FileButton(Panel& owner, std::string className, std::string label, const ControlDesc* desc)
    : Control(owner, std::move(className), std::move(label)) {
  rect.w = Metrics::buttonWidth(this->label);
  rect.h = Metrics::buttonHeight();
  if (desc && desc->type == LWT_STRING && desc->string.width > 0)
    rect.w = std::min(desc->string.width, Metrics::kMaxSide);
}

const char* FileButton::getValue(LWValue& value) const {
  if (value.type != LWT_STRING) return "a file button's value is a string (LWT_STRING)";
  return CopyOut(value_, value.str);
}

const char* FileButton::setValue(const LWValue& value) {
  if (value.type != LWT_STRING) return "a file button's value is a string (LWT_STRING)";
  value_ = CopyIn(value.str);
  return nullptr;
}

void FileButton::paint(Raster& canvas, ProblemLog&) const { DrawButtonFace(canvas, rect, label, TextColour(*this)); }

// ---- anything else ----

PlainBox::PlainBox(Panel& owner, std::string className, std::string label)
    : Control(owner, std::move(className), std::move(label)) {
  labelWidth = Metrics::labelWidth(this->label);
  rect.w = labelWidth + Metrics::kPlainBoxWidth;
  rect.h = Metrics::buttonHeight();
}

const char* PlainBox::getValue(LWValue& value) const {
  switch (value.type) {
    case LWT_STRING:
      return CopyOut(string_, value.str);
    case LWT_INTEGER:
    case LWT_BOOLEAN:
    case LWT_CHOICE:
    case LWT_POPUP:
    case LWT_AREA:
    case LWT_RANGE:
      value.intv.value = int_;
      return nullptr;
    case LWT_FLOAT:
    case LWT_DISTANCE:
    case LWT_PERCENT:
      value.flt.value = float_;
      return nullptr;
    case LWT_VINT:
      std::copy(ivec_.begin(), ivec_.end(), value.ivec.val);
      return nullptr;
    case LWT_VFLOAT:
    case LWT_VDIST:
      std::copy(fvec_.begin(), fvec_.end(), value.fvec.val);
      return nullptr;
    case LWT_CUSTOM:
      std::copy(custom_.begin(), custom_.end(), value.cust.val);
      return nullptr;
    case LWT_POINTER:
    case LWT_LWITEM:
    case LWT_TREE:
    case LWT_XPANEL:
      value.ptr.ptr = pointer_;
      return nullptr;
    default:
      return "the value type is not one this host keeps";
  }
}

const char* PlainBox::setValue(const LWValue& value) {
  switch (value.type) {
    case LWT_STRING:
      string_ = CopyIn(value.str);
      return nullptr;
    case LWT_INTEGER:
    case LWT_BOOLEAN:
    case LWT_CHOICE:
    case LWT_POPUP:
    case LWT_AREA:
    case LWT_RANGE:
      int_ = value.intv.value;
      return nullptr;
    case LWT_FLOAT:
    case LWT_DISTANCE:
    case LWT_PERCENT:
      float_ = value.flt.value;
      return nullptr;
    case LWT_VINT:
      std::copy(value.ivec.val, value.ivec.val + 3, ivec_.begin());
      return nullptr;
    case LWT_VFLOAT:
    case LWT_VDIST:
      std::copy(value.fvec.val, value.fvec.val + 3, fvec_.begin());
      return nullptr;
    case LWT_CUSTOM:
      std::copy(value.cust.val, value.cust.val + 4, custom_.begin());
      return nullptr;
    case LWT_POINTER:
    case LWT_LWITEM:
    case LWT_TREE:
    case LWT_XPANEL:
      pointer_ = value.ptr.ptr;
      return nullptr;
    default:
      return "the value type is not one this host keeps";
  }
}

void PlainBox::paint(Raster& canvas, ProblemLog&) const {
  if (labelWidth > 0) {
    DrawClippedText(canvas, {rect.x, rect.y, labelWidth - Metrics::kLabelGap, rect.h}, Printable(label),
                    TextColour(*this), kBackground);
  }
  PanelRect box = hot();
  canvas.fillRect(box.x, box.y, box.w, box.h, PaletteColour(kBackground));
  Bevel(canvas, box, 1, false);
  DrawClippedText(canvas, {box.x + 3, box.y + 1, box.w - 6, box.h - 2}, className, kGhostText, kBackground);
}

std::unique_ptr<Control> MakeControl(Panel& owner, const std::string& className, const ControlDesc* desc,
                                     std::string label, ProblemLog& log) {
  if (className == "ListBoxControl") return std::make_unique<ListBox>(owner, std::move(label), desc, log);
  if (className == "ButtonControl") return std::make_unique<Button>(owner, std::move(label), desc);
  if (className == "SaveButtonControl" || className == "LoadButtonControl" || className == "FileButtonControl" ||
      className == "DirButtonControl") {
    return std::make_unique<FileButton>(owner, className, std::move(label), desc);
  }
  auto box = std::make_unique<PlainBox>(owner, className, std::move(label));
  log.note("control class \"" + className + "\" is not simulated; " + box->describe() + " is a plain box");
  return box;
}

}  // namespace lwhost::panels
