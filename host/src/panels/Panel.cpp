// A panel's size, the place of its next control, and its drawing surface.
#include "Panel.h"

#include <algorithm>

namespace lwhost::panels {

int Panel::width() const {
  int w = std::max(requestedW, 1);
  for (const auto& c : controls) w = std::max(w, c->rect.x + c->rect.w);
  return std::min(w, Metrics::kMaxSide);
}

int Panel::height() const {
  int h = std::max(requestedH, 1);
  for (const auto& c : controls) h = std::max(h, c->rect.y + c->rect.h);
  return std::min(h, Metrics::kMaxSide);
}

PanelRect Panel::nextSlot() const {
  if (controls.empty()) return {};
  const PanelRect& last = controls.back()->rect;
  return {0, last.y + last.h + Metrics::kSpacing, 0, 0};
}

PanelInfo Panel::info() const {
  PanelInfo i;
  i.id = const_cast<Panel*>(this);
  i.title = title;
  i.rect = {x, y, width(), height()};
  i.open = open;
  i.openFlags = openFlags;
  i.opens = opens;
  i.drawRequests = drawRequests;
  i.lastDrawMode = lastDrawMode;
  i.userData = userData();
  return i;
}

Raster& Panel::surface() {
  int w = width(), h = height();
  if (!surface_ || surface_->width() != w || surface_->height() != h)
    surface_ = std::make_unique<Raster>(w, h, PaletteColour(kBackground));
  return *surface_;
}

}  // namespace lwhost::panels
