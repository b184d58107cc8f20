#pragma once

// How the host lays out and draws panels: sizes, palette choices and shared drawing helpers
// (PanelDrawing.cpp).

#include <lwpanel.h>

#include <string>

#include "lwhost/PanelInfo.h"
#include "lwhost/Raster.h"

namespace lwhost::panels {

class Control;

// Layout of every panel, in pixels.
struct Metrics {
  static constexpr int kSpacing = 4;         // between stacked controls
  static constexpr int kLabelGap = 8;        // between a label and its control
  static constexpr int kButtonPadding = 16;  // around a button's label
  static constexpr int kMinButtonWidth = 40;
  static constexpr int kPlainBoxWidth = 100;
  static constexpr int kMaxSide = 4096;    // no panel or control grows beyond this
  static constexpr int kMaxRows = 100000;  // rows read from a list box at most
  static int rowHeight();
  static int buttonHeight();
  // Room taken by a label left of its control: 0 for no label.
  static int labelWidth(const std::string& label);
  // A button that fits its label.
  static int buttonWidth(const std::string& label);
};

int Clamp(int value, int low, int high);

// A raised or sunken border inside the rectangle.
void Bevel(Raster& canvas, const PanelRect& rect, int thickness, bool raised);
// Text clipped to a box, vertically centred.
void DrawClippedText(Raster& canvas, const PanelRect& box, const std::string& text, int colour, int background);
void DrawButtonFace(Raster& canvas, const PanelRect& rect, const std::string& label, int textColour);
// Drops line ends and other control characters a row or label may carry.
std::string Printable(const std::string& text);
int TextColour(const Control& control);

// Palette codes of the host's look.
constexpr int kBackground = LWP_BG;
constexpr int kText = LWP_INVERT;  // the plug-ins' own text colour
constexpr int kGhostText = LWP_INFO_DIS;
constexpr int kListBackground = LWP_EDIT_BG;
constexpr int kSelection = LWP_EDIT_SEL;
constexpr int kButtonFace = LWP_NORMAL;
constexpr int kTitleBar = LWP_SHADOW;
constexpr int kTitleText = LWP_HEADLINE;

}  // namespace lwhost::panels
