// How panels look: the host's drawing of controls and the composed picture of a whole panel.
#include <algorithm>

#include "Registry.h"

namespace lwhost::panels {

int Metrics::rowHeight() { return Raster::textHeight() + 2; }
int Metrics::buttonHeight() { return Raster::textHeight() + 8; }
int Metrics::labelWidth(const std::string& label) {
  return label.empty() ? 0 : std::min(Raster::textWidth(Printable(label)) + kLabelGap, kMaxSide);
}
int Metrics::buttonWidth(const std::string& label) {
  return Clamp(Raster::textWidth(Printable(label)) + kButtonPadding, kMinButtonWidth, kMaxSide);
}

int Clamp(int value, int low, int high) { return std::max(low, std::min(value, high)); }

void Bevel(Raster& canvas, const PanelRect& r, int thickness, bool raised) {
  lwhost::DrawBevel(canvas, raised ? -thickness : thickness, r.x, r.y, r.w, r.h);
}

void DrawClippedText(Raster& canvas, const PanelRect& box, const std::string& text, int colour, int background) {
  // Drawn on a raster the size of the box's visible part, so that long text stops at its edge;
  // the text keeps its place relative to the box.
  const int x0 = std::max(box.x, 0), y0 = std::max(box.y, 0);
  const int x1 = std::min(box.x + box.w, canvas.width()), y1 = std::min(box.y + box.h, canvas.height());
  if (x1 <= x0 || y1 <= y0 || text.empty()) return;
  Raster clip(x1 - x0, y1 - y0, PaletteColour(background));
  clip.drawText(box.x - x0, box.y - y0 + (box.h - Raster::textHeight()) / 2, text, PaletteColour(colour));
  canvas.blit(clip, x0, y0);
}

void DrawButtonFace(Raster& canvas, const PanelRect& r, const std::string& label, int textColour) {
  canvas.fillRect(r.x, r.y, r.w, r.h, PaletteColour(kButtonFace));
  Bevel(canvas, r, 1, true);
  std::string text = Printable(label);
  int left = r.x + std::max(2, (r.w - Raster::textWidth(text)) / 2);
  DrawClippedText(canvas, {left, r.y + 1, r.x + r.w - 2 - left, r.h - 2}, text, textColour, kButtonFace);
}

std::string Printable(const std::string& text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    if (c == '\t')
      out += ' ';
    else if (static_cast<unsigned char>(c) >= 0x20)
      out += c;
  }
  return out;
}

int TextColour(const Control& control) { return control.ghosted() ? kGhostText : kText; }

void Registry::repaint(Panel& panel, int mode) {
  {
    Raster& canvas = panel.surface();
    canvas.fillRect(0, 0, canvas.width(), canvas.height(), PaletteColour(kBackground));
  }
  // By index, and the surface fetched each time: plug-in callbacks may add controls meanwhile.
  for (size_t i = 0; i < panel.controls.size(); ++i) {
    Control& control = *panel.controls[i];
    if (control.visible()) control.paint(panel.surface(), log);
  }
  for (size_t i = 0; i < panel.controls.size(); ++i) {
    Control& control = *panel.controls[i];
    if (control.userDraw)
      callDrawHook(control, control.visible() ? (control.ghosted() ? DR_GHOST : DR_RENDER) : DR_ERASE);
  }
  if (auto hook = reinterpret_cast<LWPanDrawHook>(panel.pointer(PAN_USERDRAW))) {
    void* data = panel.userData();
    CallPlugin(log, "PAN_USERDRAW hook", "panel \"" + panel.title + "\"",
               [&] { hook(&panel, data, static_cast<DrMode>(mode)); });
  }
}

Raster Registry::render(Panel& panel) {
  repaint(panel, DR_REFRESH);
  const Raster content = panel.surface();
  const std::string title = Printable(panel.title);

  std::vector<std::string> buttons;
  if (!(panel.openFlags & PANF_NOBUTT)) {
    buttons.push_back("Continue");
    if (panel.openFlags & PANF_CANCEL) buttons.push_back(panel.openFlags & PANF_ABORT ? "Abort" : "Cancel");
  }
  int buttonsW = 0;
  for (const std::string& b : buttons) buttonsW += Metrics::buttonWidth(b) + Metrics::kSpacing;

  const int margin = 6;
  const int titleH = Raster::textHeight() + 8;
  const int footerH = buttons.empty() ? 0 : Metrics::buttonHeight() + 2 * margin;
  const int w = std::max({content.width() + 2 * margin, Raster::textWidth(title) + 2 * margin, buttonsW + 2 * margin});
  const int h = titleH + content.height() + 2 * margin + footerH;

  Raster image(w, h, PaletteColour(kBackground));
  image.fillRect(0, 0, w, titleH, PaletteColour(kTitleBar));
  image.drawText(margin, (titleH - Raster::textHeight()) / 2, title, PaletteColour(kTitleText));
  image.blit(content, margin, titleH + margin);
  if (!buttons.empty()) {
    int y = titleH + content.height() + 2 * margin;
    lwhost::DrawBevel(image, 1, 0, y, w, 0);  // divider
    int x = w - margin - buttonsW + Metrics::kSpacing;
    for (const std::string& b : buttons) {
      PanelRect r{x, y + margin, Metrics::buttonWidth(b), Metrics::buttonHeight()};
      DrawButtonFace(image, r, b, kText);
      x += r.w + Metrics::kSpacing;
    }
  }
  Bevel(image, {0, 0, w, h}, 1, true);
  return image;
}

}  // namespace lwhost::panels
