#pragma once

// One classic panel as the host keeps it.

#include <lwpanel.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "Control.h"
#include "lwhost/PanelInfo.h"
#include "lwhost/Raster.h"

namespace lwhost::panels {

// A blocking open in progress: how it ends.
struct ModalSession {
  int result = 1;
  bool ended = false;
};

class Panel {
 public:
  Panel(std::string title, void* panf) : title(std::move(title)), panf(panf) {}

  std::string title;
  void* panf;  // as given to create (may be null)
  std::vector<std::unique_ptr<Control>> controls;
  int x = 0, y = 0;
  int requestedW = 0, requestedH = 0;
  bool open = false;
  int openFlags = 0;
  int opens = 0;
  int result = 1;  // what open returns when the plug-in closes the panel itself
  int drawRequests = 0;
  int lastDrawMode = -1;
  ModalSession* session = nullptr;

  // Pointer-valued panel tags (user data, hooks, instance), stored as given.
  void* pointer(int tag) const { return tag >= 0 && tag < kTags ? pointers_[tag] : nullptr; }
  void setPointer(int tag, void* value) {
    if (tag >= 0 && tag < kTags) pointers_[tag] = value;
  }
  void* userData() const { return pointer(PAN_USERDATA); }

  // Content size: grown to hold every control, at least what the plug-in asked for.
  int width() const;
  int height() const;
  // Where the next control goes.
  PanelRect nextSlot() const;
  // The drawing surface at the current size (cleared when the size changed).
  Raster& surface();
  PanelInfo info() const;

 private:
  static constexpr int kTags = PAN_MOUSEWHEEL + 1;
  std::array<void*, kTags> pointers_{};
  std::unique_ptr<Raster> surface_;
};

}  // namespace lwhost::panels
