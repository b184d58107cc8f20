#pragma once

#include <lwpanel.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "lwhost/PanelInfo.h"
#include "lwhost/Raster.h"
#include "lwhost/UserAction.h"

namespace lwhost {

class Host;

namespace panels {
class Registry;
struct Services;
}  // namespace panels

// A request the host cannot carry out on a classic panel (unknown panel or control, a control
// of the wrong class for the action, a panel that is not open). what() says which and why.
class PanelError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The classic panel service, "LWPanelServices", and a scripted user in front of its panels.
//
// Plug-ins build panels through the LWPanelFuncs table; the host lays the controls out
// (stacked downwards: x 0, y below the previous control), keeps their values and draws them
// into a Raster. Nobody sits at a headless host, so a blocking open plays the next session
// queued with script() and closes the panel; the C++ calls below do the same things directly.
//
// Whatever a plug-in hands in is checked: unknown handles, wrong value types, unknown classes
// and tags are noted in problems() and answered with the SDK's failure value; an exception from
// a plug-in callback is caught and noted. Everything runs on the interface thread.
class Panels {
 public:
  explicit Panels(Host& host);
  ~Panels();
  Panels(const Panels&) = delete;
  Panels& operator=(const Panels&) = delete;

  // The table served as "LWPanelServices".
  LWPanelFuncs* table();

  // ---- what plug-ins built (an id that is not live throws PanelError) ----

  // Live panels, oldest first.
  std::vector<LWPanelID> panels() const;
  // The newest live panel with this title, or null.
  LWPanelID findPanel(const std::string& title) const;
  PanelInfo panel(LWPanelID panel) const;
  // Controls in the order they were added.
  std::vector<ControlInfo> controls(LWPanelID panel) const;
  ControlInfo control(LWControlID control) const;
  // The first control with this label, or null.
  LWControlID findControl(LWPanelID panel, const std::string& label) const;

  // A list box's rows, asked from its callbacks with its CTL_USERDATA.
  std::vector<std::string> listRows(LWControlID listBox);
  // CTL_VALUE as a number (list box: the selected row, -1 for none) or as text (file buttons).
  int intValue(LWControlID control) const;
  std::string stringValue(LWControlID control) const;

  // The panel as the user would see it: title bar, every visible control, the plug-in's own
  // drawing, and the Continue/Cancel buttons of its open flags.
  Raster renderPanel(LWPanelID panel);

  // ---- the user ----

  // Queues one session for the next blocking open (or handle() of a non-blocking panel).
  // Without a queued session the user presses Continue at once.
  void script(std::vector<UserAction> session);
  size_t pendingSessions() const;

  // These act on an open panel, as a click would: set the value, then call the control's
  // CTL_USEREVENT hook with its CTL_USERDATA. They throw PanelError when the action is not
  // possible.
  void selectRow(LWControlID listBox, int row);
  void press(LWControlID button);
  // A file button: the dialog answers `fileName`, which becomes the control's value.
  void chooseFile(LWControlID fileButton, const std::string& fileName);
  // The user closes the panel with Continue (ok) or Cancel.
  void userClose(LWPanelID panel, bool ok = true);
  // Runs one action on a panel (what a scripted session does for each of its actions).
  void perform(LWPanelID panel, const UserAction& action);

  // ---- what went wrong ----

  std::vector<std::string> problems() const;
  void clearProblems();

 private:
  friend struct panels::Services;

  Host& host_;
  std::unique_ptr<panels::Registry> registry_;
};

}  // namespace lwhost
