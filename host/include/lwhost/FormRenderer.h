#pragma once

#include <string>
#include <vector>

#include "lwhost/Raster.h"
#include "lwhost/XPanel.h"

namespace lwhost {

// Width of a rendered form; THUM_FULL thumbnails get it less the margins.
constexpr int kFormWidth = 420;
constexpr int kFormMargin = 8;

// Where a control landed in a rendered form: its row, and the top-left corner of its value,
// button or thumbnail (labels end left of valueX).
struct FormRow {
  unsigned int cid = 0;
  int top = 0, height = 0;
  int valueX = 0, valueY = 0;
};

// A picture of a panel as a user would see it, one control a row in table order: the label on
// the left, the current value on the right as LightWave shows it (percent as "100.0 %", angles
// in degrees, colours as 0..255 triples with a swatch, booleans as a tick box, pop-ups as their
// chosen entry); nothing beside the label when the plug-in gives no value. Buttons are boxes
// carrying their label, each "dThumbnail" is drawn by the plug-in's own callback at its size, and
// XpDIVADD dividers appear where hinted. Values are read as the user would see them, through
// the panel's get callback (view) or its store (form), so rendering calls into the plug-in.
Raster RenderForm(XPanel& panel, std::vector<FormRow>* layout = nullptr);

// A value as a control of this class shows it ("100.0 %", "45.0\xB0", "255 128 0"); pop-ups
// show an entry's text, which needs the panel, so they are not formatted here.
std::string FormatValue(const std::string& controlClass, const XPValue& value);

}  // namespace lwhost
