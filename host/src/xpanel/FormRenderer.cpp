#include "lwhost/FormRenderer.h"

#include <lwpanel.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <vector>

namespace lwhost {

namespace {

constexpr int kLabelRight = 150;  // labels end here, right-aligned
constexpr int kValueX = 160;      // values start here
constexpr int kRowHeight = 22;
constexpr int kTitleHeight = 22;
constexpr int kDividerHeight = 8;
constexpr int kFieldHeight = 16;
constexpr int kButtonHeight = 18;
constexpr int kThumbnailInset = 4;
constexpr int kFieldWidth = 110;
constexpr int kVectorFieldWidth = 64;
constexpr int kPopupWidth = 200;
constexpr unsigned int kBottom = 0xFFFFFFFFu;

std::string Lower(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

// The class without its "-env" ending, lower case: "percent-env" -> "percent".
std::string BaseClass(const std::string& controlClass) {
  std::string c = Lower(controlClass);
  if (c.size() > 4 && c.compare(c.size() - 4, 4, "-env") == 0) c.resize(c.size() - 4);
  return c;
}

bool IsEnvelopeClass(const std::string& controlClass) { return BaseClass(controlClass) != Lower(controlClass); }

// "1.0", "0.25", "3.1416": up to four decimals, at least one.
std::string Number(double v) {
  if (!std::isfinite(v)) return v != v ? "nan" : (v > 0 ? "inf" : "-inf");
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.4f", v);
  std::string s = buf;
  while (s.size() > 1 && s.back() == '0' && s[s.size() - 2] != '.') s.pop_back();
  if (s == "-0.0") s = "0.0";
  return s;
}

std::string Fixed1(double v) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.1f", v);
  return std::string(buf) == "-0.0" ? "0.0" : buf;
}

int Byte(double unit) {
  if (!(unit == unit)) return 0;
  return static_cast<int>(std::lround(std::clamp(unit, 0.0, 1.0) * 255.0));
}

// Pop-up labels may carry LightWave's undocumented "\x03(...)" icon codes: they are dropped,
// as are other control bytes.
std::string Printable(const std::string& s) {
  std::string out;
  for (std::size_t i = 0; i < s.size(); ++i) {
    unsigned char c = static_cast<unsigned char>(s[i]);
    if (c == 0x03 && i + 1 < s.size() && s[i + 1] == '(') {
      std::size_t close = s.find(')', i);
      if (close != std::string::npos) {
        i = close;
        continue;
      }
    }
    if (c >= 32) out.push_back(static_cast<char>(c));
  }
  return out;
}

// How many numbers a value shows: three for vector data and colours.
int Components(const std::string& controlClass, const XPValue& v) {
  if (v.kind == ValueKind::Float3 || v.kind == ValueKind::Integer3) return 3;
  if (v.kind == ValueKind::VParm)
    return BaseClass(controlClass) == "color" || controlClass.find('3') != std::string::npos ? 3 : 1;
  return 1;
}

std::vector<std::string> Fields(const std::string& controlClass, const XPValue& v) {
  std::vector<std::string> out;
  if (v.isNull()) return out;
  switch (v.kind) {
    case ValueKind::String:
      out.push_back(Printable(v.text));
      return out;
    case ValueKind::Integer:
    case ValueKind::Integer3:
      for (int i = 0; i < Components(controlClass, v); ++i) out.push_back(std::to_string(v.integer[i]));
      return out;
    case ValueKind::VParm:
      if (!v.numbersKnown) {
        out.push_back("(envelope)");
        return out;
      }
      break;
    case ValueKind::Float:
    case ValueKind::Float3:
      break;
    default:
      out.push_back("?");
      return out;
  }
  const std::string base = BaseClass(controlClass);
  for (int i = 0; i < Components(controlClass, v); ++i) {
    const double n = v.number[i];
    if (base == "color")
      out.push_back(std::to_string(Byte(n)));
    else if (base.rfind("percent", 0) == 0)
      out.push_back(Fixed1(n * 100.0) + " %");
    else if (base.rfind("angle", 0) == 0)
      out.push_back(Fixed1(n * 180.0 / 3.14159265358979323846) + "\xB0");
    else if (base.rfind("distance", 0) == 0)
      out.push_back(Number(n) + " m");
    else if (base == "time")
      out.push_back(Number(n) + " s");
    else
      out.push_back(Number(n));
  }
  return out;
}

struct Look {
  RGB background = PaletteColour(LWP_BG);
  RGB text = PaletteColour(LWP_INVERT);
  RGB dim = PaletteColour(LWP_INFO_DIS);
  RGB face = PaletteColour(LWP_NORMAL);
  RGB field = PaletteColour(LWP_EDIT_BG);
  RGB fieldText = PaletteColour(LWP_EDIT_IMG);
};

int TextTop(int rowY, int rowHeight) { return rowY + (rowHeight - Raster::textHeight()) / 2; }

void Field(Raster& r, const Look& look, int x, int y, int w, const std::string& text) {
  r.fillRect(x, y, w, kFieldHeight, look.field);
  DrawBevel(r, 1, x, y, w, kFieldHeight);
  r.drawText(x + 4, y + (kFieldHeight - Raster::textHeight()) / 2, text, look.fieldText);
}

void Button(Raster& r, const Look& look, int x, int y, int w, int h, const std::string& label) {
  r.fillRect(x, y, w, h, look.face);
  DrawBevel(r, -1, x, y, w, h);
  r.drawText(x + (w - Raster::textWidth(label)) / 2, y + (h - Raster::textHeight()) / 2, label, look.text);
}

void TickBox(Raster& r, const Look& look, int x, int y, bool on) {
  constexpr int kSize = 13;
  r.fillRect(x, y, kSize, kSize, look.field);
  DrawBevel(r, 1, x, y, kSize, kSize);
  if (!on) return;
  for (int t = 0; t < 2; ++t) {
    r.line(x + 3, y + 6 + t, x + 5, y + 8 + t, look.fieldText);
    r.line(x + 5, y + 8 + t, x + 9, y + 3 + t, look.fieldText);
  }
}

void Popup(Raster& r, const Look& look, int x, int y, const std::string& text) {
  r.fillRect(x, y, kPopupWidth, kFieldHeight, look.face);
  DrawBevel(r, -1, x, y, kPopupWidth, kFieldHeight);
  r.drawText(x + 5, y + (kFieldHeight - Raster::textHeight()) / 2, text, look.text);
  // A small downward arrow at the right end.
  const int ax = x + kPopupWidth - 14, ay = y + 6;
  for (int i = 0; i < 4; ++i) r.fillRect(ax + i, ay + i, 7 - 2 * i, 1, look.text);
}

struct Row {
  enum Type { Title, Control, Divider } type;
  const XPControl* control;
  int height;
  ThumbnailSize thumb;
};

bool IsThumbnail(const XPControl& c) { return Lower(c.controlClass) == "dthumbnail"; }
bool IsButton(const XPControl& c) { return Lower(c.controlClass) == "vbutton"; }

// Returns the thumbnail's x.
int DrawThumbnailRow(Raster& r, XPanel& panel, const Look& look, const Row& row, int y) {
  const XPControl& c = *row.control;
  const unsigned int options = panel.thumbnailOptions(c.cid);
  const bool full = (options & static_cast<unsigned int>(THUM_FULL)) != 0;
  const int x = full ? kFormMargin : kValueX;
  if (!full && !c.label.empty())
    r.drawText(std::max(kFormMargin, kLabelRight - Raster::textWidth(c.label)), TextTop(y, kRowHeight), c.label,
               look.text);
  const int top = y + kThumbnailInset;
  r.blit(panel.drawControl(c.cid, row.thumb.width, row.thumb.height), x, top);
  const unsigned int border = options & static_cast<unsigned int>(THUM_BORDER_NONE);
  if (border != static_cast<unsigned int>(THUM_BORDER_NONE)) {
    DrawBevel(r, border == static_cast<unsigned int>(THUM_BORDER_UP) ? -1 : 1, x - 1, top - 1, row.thumb.width + 2,
              row.thumb.height + 2);
  }
  return x;
}

void DrawValueRow(Raster& r, XPanel& panel, const Look& look, const XPControl& c, int y) {
  const XPValue v = panel.value(c.cid);
  const std::string label = Printable(c.label);
  r.drawText(std::max(kFormMargin, kLabelRight - Raster::textWidth(label)), TextTop(y, kRowHeight), label,
             v.isNull() ? look.dim : look.text);
  if (v.isNull()) return;

  const int fieldY = y + (kRowHeight - kFieldHeight) / 2;
  const std::string cls = Lower(c.controlClass);
  if (cls == "iboolean") {
    TickBox(r, look, kValueX, y + (kRowHeight - 13) / 2, v.integer[0] != 0);
    return;
  }
  if (cls == "ipopchoice" || cls == "ichoice" || cls == "ipoptransform" || cls == "ichotransform") {
    const std::vector<std::string> entries = panel.popupEntries(c.cid);
    const int index = v.integer[0];
    std::string text = index >= 0 && static_cast<std::size_t>(index) < entries.size()
                           ? Printable(entries[index])
                           : "(" + std::to_string(index) + ")";
    Popup(r, look, kValueX, fieldY, text);
    return;
  }

  const std::vector<std::string> fields = Fields(c.controlClass, v);
  const bool colour = BaseClass(c.controlClass) == "color" && v.kind != ValueKind::String &&
                      (v.kind != ValueKind::VParm || v.numbersKnown);
  int x = kValueX;
  if (fields.size() == 1 && v.kind == ValueKind::String) {
    Field(r, look, x, fieldY, kFormWidth - kFormMargin - x, fields[0]);
    return;
  }
  const int width = fields.size() > 1 ? kVectorFieldWidth : kFieldWidth;
  for (const std::string& f : fields) {
    Field(r, look, x, fieldY, width, f);
    x += width + 2;
  }
  if (colour) {
    const RGB swatch{static_cast<std::uint8_t>(Byte(v.number[0])), static_cast<std::uint8_t>(Byte(v.number[1])),
                     static_cast<std::uint8_t>(Byte(v.number[2]))};
    r.fillRect(x + 2, fieldY, 24, kFieldHeight, swatch);
    r.frameRect(x + 2, fieldY, 24, kFieldHeight, PaletteColour(LWP_BLACK));
    x += 28;
  }
  if (IsEnvelopeClass(c.controlClass)) Button(r, look, x + 2, fieldY, 16, kFieldHeight, "E");
}

}  // namespace

std::string FormatValue(const std::string& controlClass, const XPValue& value) {
  std::string out;
  for (const std::string& f : Fields(controlClass, value)) out += (out.empty() ? "" : " ") + f;
  return out;
}

Raster RenderForm(XPanel& panel, std::vector<FormRow>* layout) {
  // Copies: reading values calls the plug-in, which may change the panel while we draw.
  const std::vector<XPControl> controls = panel.controls();
  const std::string title = Printable(panel.title());
  const int fullWidth = kFormWidth - 2 * kFormMargin;

  std::vector<Row> rows;
  if (!title.empty()) rows.push_back({Row::Title, nullptr, kTitleHeight, {}});
  if (panel.hasDividerAfter(0)) rows.push_back({Row::Divider, nullptr, kDividerHeight, {}});
  for (const XPControl& c : controls) {
    if (IsThumbnail(c)) {
      ThumbnailSize size = panel.thumbnailSize(c.cid, fullWidth);
      rows.push_back({Row::Control, &c, std::max(kRowHeight, size.height + 2 * kThumbnailInset), size});
    } else {
      rows.push_back({Row::Control, &c, kRowHeight, {}});
    }
    if (panel.hasDividerAfter(c.cid)) rows.push_back({Row::Divider, nullptr, kDividerHeight, {}});
  }
  if (panel.hasDividerAfter(kBottom)) rows.push_back({Row::Divider, nullptr, kDividerHeight, {}});

  int height = 2 * kFormMargin;
  for (const Row& row : rows) height += row.height;
  const Look look;
  Raster r(kFormWidth, height, look.background);
  DrawBevel(r, -1, 0, 0, r.width(), r.height());

  if (layout) layout->clear();
  int y = kFormMargin;
  for (const Row& row : rows) {
    switch (row.type) {
      case Row::Title:
        r.drawText(kFormMargin, TextTop(y, row.height), title, look.text);
        break;
      case Row::Divider:
        DrawBevel(r, 1, kFormMargin, y + row.height / 2 - 1, fullWidth, 0);
        break;
      case Row::Control: {
        const XPControl& c = *row.control;
        int valueX = kValueX, valueY = y + (kRowHeight - kFieldHeight) / 2;
        if (IsThumbnail(c)) {
          valueX = DrawThumbnailRow(r, panel, look, row, y);
          valueY = y + kThumbnailInset;
        } else if (IsButton(c)) {
          const std::string label = Printable(c.label);
          const int w = std::min(fullWidth, Raster::textWidth(label) + 24);
          valueX = (kFormWidth - w) / 2;
          valueY = y + (kRowHeight - kButtonHeight) / 2;
          Button(r, look, valueX, valueY, w, kButtonHeight, label);
        } else {
          DrawValueRow(r, panel, look, c, y);
        }
        if (layout) layout->push_back(FormRow{c.cid, y, row.height, valueX, valueY});
        break;
      }
    }
    y += row.height;
  }
  return r;
}

}  // namespace lwhost
