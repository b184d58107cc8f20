#pragma once

#include <lwvparm.h>
#include <lwxpanel.h>

#include <memory>
#include <string>
#include <vector>

#include "lwhost/XPanel.h"

namespace lwhost {

class Host;

// The host's form panels: serves "LWXPanel" (LWXPanelFuncs with its drawing table) and keeps
// every panel the plug-ins make. Panels are headless; XPanel's own API plays the user.
//
// Panel handles from plug-ins are checked against the live panels, so a stale or foreign handle
// gets the SDK's failure value (NULL, 0, nothing done) and a noted problem, never a crash.
class XPanels {
 public:
  // LWXPanelFuncs.version; the SDK gives no value and no known plug-in reads it.
  static constexpr int kInterfaceVersion = 1;

  explicit XPanels(Host& host);
  // Frees the remaining panels without calling their destroy notifications: by then the modules
  // that made them may be gone.
  ~XPanels();
  XPanels(const XPanels&) = delete;
  XPanels& operator=(const XPanels&) = delete;

  Host& host() { return host_; }
  LWXPanelFuncs* table() { return &funcs_; }

  // Live panels in creation order.
  std::vector<XPanel*> panels() const;
  XPanel* find(LWXPanelID handle) const;
  // Null (with a problem noted) for a type other than LWXP_VIEW / LWXP_FORM.
  XPanel* create(int type, const LWXPanelControl* controls);
  // As the SDK's destroy: the panel goes, then its destroy notification (if hinted) is called
  // with the panel's user data of id 0. A panel destroyed from inside one of its own callbacks
  // is freed once that callback has returned.
  void destroy(XPanel& panel);

  // "LWVParmFuncs 2" if the host has it; "-env" values are read and edited through it.
  const LWVParmFuncs* vparmFuncs();

  // Misuse seen at the C entry points (unknown handles, bad arguments, exceptions).
  const std::vector<std::string>& problems() const { return problems_; }
  void noteProblem(std::string text);

 private:
  friend class XPanel;
  struct DrawArea {
    Raster* raster;
  };
  // The area handle a draw callback gets; valid until closeArea.
  LWXPDrAreaID openArea(Raster& raster);
  void closeArea(LWXPDrAreaID area);
  Raster* areaRaster(LWXPDrAreaID area) const;
  void collect();

  static XPanels* Current();
  static XPanel* Panel(LWXPanelID handle, const char* entry);
  static Raster* Area(LWXPDrAreaID area, const char* entry);

  // The C entry points of the two tables.
  static LWXPanelID Create(int type, LWXPanelControl* controls);
  static void Destroy(LWXPanelID panel);
  static void Describe(LWXPanelID panel, LWXPanelDataDesc* data, LWXPanelGetFunc* get, LWXPanelSetFunc* set);
  static void HintEntry(LWXPanelID panel, unsigned int id, LWXPanelHint* hints);
  static void* GetData(LWXPanelID panel, unsigned int id);
  static void SetData(LWXPanelID panel, unsigned int id, void* data);
  static void* FormGet(LWXPanelID panel, unsigned int vid);
  static void FormSet(LWXPanelID panel, unsigned int vid, void* value);
  static void ViewInst(LWXPanelID panel, void* instance);
  static void ViewRefresh(LWXPanelID panel);
  static int Post(LWXPanelID panel);
  static int Open(LWXPanelID panel);
  static void DrawPixel(LWXPDrAreaID area, int c, int x, int y);
  static void DrawRGBPixel(LWXPDrAreaID area, int r, int g, int b, int x, int y);
  static void DrawLine(LWXPDrAreaID area, int c, int x, int y, int x2, int y2);
  static void DrawBox(LWXPDrAreaID area, int c, int x, int y, int w, int h);
  static void DrawRGBBox(LWXPDrAreaID area, int r, int g, int b, int x, int y, int w, int h);
  static void DrawBorder(LWXPDrAreaID area, int indent, int x, int y, int w, int h);
  static int TextWidth(LWXPDrAreaID area, char* text);
  static int TextHeight(LWXPDrAreaID area, char* text);
  static void DrawText(LWXPDrAreaID area, char* text, int c, int x, int y);

  Host& host_;
  LWXPDrawFuncs drawFuncs_;
  LWXPanelFuncs funcs_;
  std::vector<std::unique_ptr<XPanel>> live_;
  // Destroyed while busy; freed by collect() once no callback of theirs runs.
  std::vector<std::unique_ptr<XPanel>> dying_;
  std::vector<std::unique_ptr<DrawArea>> areas_;
  std::vector<std::string> problems_;
};

}  // namespace lwhost
