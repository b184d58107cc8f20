#pragma once

#include <lwhandler.h>
#include <lwxpanel.h>

#include <cstdint>

#include "hostkit/XPanelFuncs.h"

namespace hostkit {

// Control ids shared by every panel of the module: its own controls count up from 0x9000; the
// logo and the web-page button head every form.
inline constexpr unsigned int kFirstControl = 0x9000;
inline constexpr unsigned int kWebButton = 0x9900;
inline constexpr unsigned int kLogo = 0x9901;

// Hint words are pointer sized; ids and options widen to them without sign extension.
constexpr std::uintptr_t HintWord(unsigned int value) { return value; }

// Owns one form panel of the host and turns the host's plain callbacks into virtual calls.
// Every static callback finds the object in the panel's user data (id 0) or view instance.
class XPanelInterface {
 public:
  XPanelInterface() = default;
  XPanelInterface(const XPanelInterface&) = delete;
  XPanelInterface& operator=(const XPanelInterface&) { return *this; }  // a panel is not copied
  virtual ~XPanelInterface() noexcept(false);

  // The value of data item `id` as its data type expects it: a parameter handle for "-env"
  // items, the address of an integer or of three doubles otherwise. Null shows no value.
  virtual void* DataGet(unsigned int /*id*/) { return nullptr; }
  // Stores a value the user edited; non-zero asks the host to refresh the panel.
  virtual int DataSet(unsigned int /*id*/, void* /*value*/) { return 0; }
  virtual void ButtonClick(unsigned int /*id*/) {}
  virtual void ChangeNotify(LWXPanelID /*panel*/, unsigned int /*controlId*/, unsigned int /*valueId*/, int /*event*/) {}
  virtual void PanelDestroyNotify() {
    panel = nullptr;
    destroyNotify = false;
  }
  virtual void ControlDraw(unsigned int /*id*/, XPDrawArea& /*area*/) {}
  virtual void ControlZoom(unsigned int /*id*/, int /*x*/, int /*y*/, int* /*region*/, int /*clicks*/) {}
  // Makes a view panel bound to this object. With `destroyNotify` the object owns the panel.
  virtual void CreateViewXPanel(LWXPanelControl* controls, LWXPanelDataDesc* data, LWXPanelHint* hints,
                                bool destroyNotify);
  virtual int Interface(int /*version*/, LWInterface* /*local*/, void* /*serverData*/) { return 0; }

  // Re-reads every value of an open panel, e.g. after an input was (dis)connected.
  void RefreshPanel() const;

  static void* CB_DataGet(void* instance, unsigned int id);
  static LWXPRefreshCode CB_DataSet(void* instance, unsigned int id, void* value);
  static void LWXPanelDestroyNotifyFunc(void* instance);
  static LWXPRefreshCode LWXPanelChangeNotifyFunc(LWXPanelID panel, unsigned int cid, unsigned int vid, int event);
  static void LWXPanelControlDrawFunc(LWXPanelID panel, unsigned int cid, LWXPDrAreaID region, int w, int h);
  static void LWXPanelControlZoomFunc(LWXPanelID panel, unsigned int cid, int x, int y, int* region, int clicks);
  static void LWXPanelBtnClickFunc(LWXPanelID panel, int cid);
  static void LWXPanelPopCmdFunc(LWXPanelID panel, int cid, int cmd);

  XPanelFuncs xpanelFuncs;
  LWXPanelID panel = nullptr;
  bool destroyNotify = false;
};

}  // namespace hostkit
