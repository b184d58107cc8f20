#pragma once

// The Panels component's state and operations; internal to the host.

#include <lwpanel.h>

#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "Control.h"
#include "Panel.h"
#include "ProblemLog.h"
#include "lwhost/Raster.h"
#include "lwhost/UserAction.h"

namespace lwhost {
class Panels;
}

namespace lwhost::panels {

// Everything the Panels component keeps, and the operations shared by the plug-ins' C calls and
// the host's C++ calls. Operations that can run plug-in code are entered through an Entry, so a
// panel destroyed from inside a callback stays readable until the outermost call returns.
class Registry {
 public:
  explicit Registry(Panels& owner);

  Panels& owner;
  LWPanelFuncs table{};
  DrawFuncs drawFuncs{};
  ProblemLog log;
  std::deque<std::vector<UserAction>> sessions;

  class Entry {
   public:
    explicit Entry(Registry& registry) : registry_(registry) { ++registry_.depth_; }
    ~Entry() {
      if (--registry_.depth_ == 0) registry_.graveyard_.clear();
    }
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;

   private:
    Registry& registry_;
  };

  // Live objects by handle, or null.
  Panel* findPanel(const void* id) const;
  Control* findControl(const void* id) const;
  // As above, but throw PanelError naming the handle.
  Panel& requirePanel(const void* id) const;
  Control& requireControl(const void* id) const;
  Control& requireLabel(Panel& panel, const std::string& label) const;
  const std::vector<std::unique_ptr<Panel>>& panels() const { return panels_; }

  // ---- LWPanelFuncs ----
  Panel& create(const char* title, void* panf);
  void destroy(Panel& panel);
  int open(Panel& panel, int flags);
  int handle(Panel& panel, int flags);
  void draw(Panel& panel, int mode);
  void close(Panel& panel, int result);
  void get(Panel& panel, int tag, void* value);
  void set(Panel& panel, int tag, void* value);
  Control* addControl(Panel& panel, const char* className, const ControlDesc* desc, const char* label);
  Control* nextControl(Panel& panel, const void* after);

  // ---- LWControl ----
  void drawControl(Control& control, int mode);
  void get(Control& control, int tag, LWValue* value);
  void set(Control& control, int tag, LWValue* value);

  // ---- the user ----
  void selectRow(Control& control, int row);
  void press(Control& control);
  void chooseFile(Control& control, const std::string& fileName);
  void userClose(Panel& panel, bool ok);
  void perform(Panel& panel, const UserAction& action);
  std::vector<std::string> listRows(Control& control);

  // ---- drawing ----
  // Redraws the panel's surface: the host's look of each control, then the plug-in's hooks.
  void repaint(Panel& panel, int mode);
  Raster render(Panel& panel);

 private:
  int runSession(Panel& panel);
  void fireEvent(Control& control);
  void callPanelHook(Panel& panel, int tag, const char* what);
  void callDrawHook(Control& control, int mode);
  void requireUsable(const Control& control) const;
  void forget(Panel& panel);

  std::vector<std::unique_ptr<Panel>> panels_;
  std::unordered_map<const void*, Control*> controls_;
  std::vector<std::unique_ptr<Panel>> graveyard_;
  int depth_ = 0;
};

// Fills the tables handed to plug-ins (PanelServices.cpp).
void InstallServices(LWPanelFuncs& table, DrawFuncs& drawFuncs);

}  // namespace lwhost::panels
