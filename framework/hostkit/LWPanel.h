#pragma once

#include <lwpanel.h>

#include <string>

#include "hostkit/GlobalBase.h"
#include "hostkit/ServiceNames.h"

namespace hostkit {

template <>
struct GlobalName<st_LWPanelFuncs> {
  static constexpr const char* value = service::PanelServices;
};

// A classic panel of the host. The panel is destroyed with this object when it owns it.
class LWPanel : public GlobalBase<st_LWPanelFuncs> {
 public:
  LWPanel() = default;
  LWPanel(const LWPanel&) = delete;
  LWPanel& operator=(const LWPanel&) { return *this; }
  ~LWPanel() noexcept(false) override;

  // Creates the host panel under `title`; the object owns it.
  bool Create(const std::string& panelTitle);
  void SetUserData(void* data) const { getGlobal()->set(panel, PAN_USERDATA, data); }
  LWControl* AddControl(const char* className, LWPanControlDesc* desc, const char* label) const;
  int Open(int flags) const { return getGlobal()->open(panel, flags); }
  void Draw(DrMode mode) const { getGlobal()->draw(panel, mode); }

  LWPanelID panel = nullptr;
  bool owned = false;
  std::string title;
};

// What the panel hooks can do; every hook does nothing unless overridden.
class LWPanelCallbacks {
 public:
  virtual void panelDraw(const LWPanel&, DrMode) {}
  virtual void panelActivate(const LWPanel&) {}
  virtual void panelOpen(const LWPanel&) {}
  virtual void panelClose(const LWPanel&) {}
  virtual void panelKeyDown(const LWPanel&, unsigned short) {}
  virtual void panelKeyUp(const LWPanel&, unsigned short) {}
  virtual void panelMouseButton(const LWPanel&, int, int, int) {}
  virtual void panelMouseMove(const LWPanel&, int, int, int) {}

 protected:
  ~LWPanelCallbacks() = default;
};

// A handler whose options window is a classic panel.
class LWPanelInterface {
 public:
  // Builds, fills and opens the panel; called when the user asks for the options.
  virtual void Options() {}

  LWPanel lwpanel;

 protected:
  ~LWPanelInterface() = default;
};

}  // namespace hostkit
