#pragma once

// What the host reports about a classic panel and its controls.

#include <lwpanel.h>

#include <string>

namespace lwhost {

// A rectangle in panel coordinates: pixels from the top-left corner of the panel's content.
struct PanelRect {
  int x = 0, y = 0, w = 0, h = 0;
  bool operator==(const PanelRect& o) const { return x == o.x && y == o.y && w == o.w && h == o.h; }
  bool operator!=(const PanelRect& o) const { return !(*this == o); }
};

// A classic panel as the host sees it.
struct PanelInfo {
  LWPanelID id = nullptr;
  std::string title;
  PanelRect rect;  // PAN_X/PAN_Y and the content size
  bool open = false;
  int openFlags = 0;      // PANF_* of the latest open
  int opens = 0;          // how often it was opened
  int drawRequests = 0;   // draw() calls by the plug-in
  int lastDrawMode = -1;  // DrMode of the latest one, -1 before any
  void* userData = nullptr;
};

// One control on a classic panel.
struct ControlInfo {
  LWControlID id = nullptr;  // the LWControl * addControl returned
  std::string className;     // as the plug-in named it
  std::string label;
  PanelRect rect;            // the whole control, label included
  PanelRect hot;             // the part that reacts to the mouse
  int flags = 0;             // CTLF_*
  bool simulated = true;     // false: a class this host only shows as a plain box
  void* userData = nullptr;  // CTL_USERDATA
  bool hasEvent = false;     // a CTL_USEREVENT hook is set
  int drawRequests = 0;      // draw() calls by the plug-in
};

}  // namespace lwhost
