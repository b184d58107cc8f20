#pragma once

#include <lwpanel.h>

#include <string>

#include "hostkit/LWPanel.h"

namespace hostkit {

// One control of a classic panel (a null control is allowed and reads as nothing).
class PanelControl {
 public:
  explicit PanelControl(LWControl* c = nullptr) : control(c) {}
  explicit PanelControl(void* c) : control(static_cast<LWControl*>(c)) {}

  int GetInt(int tag) const;
  void SetInt(int tag, int value) const;
  // Pointer-valued tags travel in the value's pointer member, whatever its type says.
  void* GetPointer(int tag) const;
  void SetPointer(int tag, void* value) const;
  // The control's text value, read into a buffer sized from `current` (2048 bytes when that is
  // shorter than two characters' room).
  std::string GetString(const std::string& current) const;

  LWControl* control;
};

// A handler that owns controls of a classic panel.
class PanelControlHandler {
 public:
  virtual void controlEvent(PanelControl&) {}
  virtual int controlCount(PanelControl&) { return 0; }
  virtual const char* controlName(PanelControl&, int) { return ""; }

 protected:
  ~PanelControlHandler() = default;
};

// The handler of a control: the user data of the panel that owns it, or null.
template <class T>
T* getEventHandler(PanelControl& control) {
  if (!control.control) return nullptr;
  void* panel = control.GetPointer(CTL_PANEL);
  if (!panel) return nullptr;
  LWPanel services;
  if (!services.available()) return nullptr;
  void* handler = nullptr;
  services.getGlobal()->get(panel, PAN_USERDATA, &handler);
  return static_cast<T*>(handler);
}

// Control callbacks for handler class T. List controls get themselves as user data, so every
// callback resolves its handler through the owning panel.
template <class T>
struct PanelControlAdaptor {
  static int cb_Count(void* data) {
    PanelControl control(data);
    T* handler = getEventHandler<T>(control);
    return handler ? handler->controlCount(control) : 0;
  }
  static char* cb_Name(void* data, int index) {
    PanelControl control(data);
    T* handler = getEventHandler<T>(control);
    return const_cast<char*>(handler ? handler->controlName(control, index) : "");
  }
  static void cb_Event(LWControlID id, void*) {
    PanelControl control(id);
    if (T* handler = getEventHandler<T>(control)) handler->controlEvent(control);
  }
};

}  // namespace hostkit
