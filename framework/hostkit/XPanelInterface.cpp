#include "hostkit/XPanelInterface.h"

namespace hostkit {

namespace {
// The object stored under `id` of a panel. The service is held only for the call.
XPanelInterface* Owner(LWXPanelID panel, unsigned int id) {
  XPanel held(panel);
  return static_cast<XPanelInterface*>(held.getData(id));
}
}  // namespace

XPanelInterface::~XPanelInterface() noexcept(false) {
  if (destroyNotify && panel && xpanelFuncs.available()) {
    LWXPanelID doomed = panel;
    panel = nullptr;
    xpanelFuncs.getGlobal()->destroy(doomed);
  }
}

void XPanelInterface::CreateViewXPanel(LWXPanelControl* controls, LWXPanelDataDesc* data, LWXPanelHint* hints,
                                       bool notify) {
  const st_LWXPanelFuncs* xp = xpanelFuncs.getGlobal();
  panel = xp->create(LWXP_VIEW, controls);
  destroyNotify = notify;
  if (!panel) return;  // no panel: no view instance or user data to hand over
  xp->describe(panel, data, CB_DataGet, CB_DataSet);
  xp->viewInst(panel, this);
  xp->setData(panel, 0, this);
  if (hints) xp->hint(panel, 0, hints);
  {
    static LWXPanelHint change[] = {XpCHGNOTIFY(LWXPanelChangeNotifyFunc), XpEND};
    xp->hint(panel, 0, change);
  }
  if (destroyNotify) {
    static LWXPanelHint destroy[] = {XpDESTROYNOTIFY(LWXPanelDestroyNotifyFunc), XpEND};
    xp->hint(panel, 0, destroy);
  }
}

void XPanelInterface::RefreshPanel() const {
  if (panel && xpanelFuncs.available()) xpanelFuncs.getGlobal()->viewRefresh(panel);
}

void* XPanelInterface::CB_DataGet(void* instance, unsigned int id) {
  return instance ? static_cast<XPanelInterface*>(instance)->DataGet(id) : nullptr;
}

LWXPRefreshCode XPanelInterface::CB_DataSet(void* instance, unsigned int id, void* value) {
  if (!instance) return LWXPRC_NONE;
  return static_cast<LWXPRefreshCode>(static_cast<XPanelInterface*>(instance)->DataSet(id, value));
}

void XPanelInterface::LWXPanelDestroyNotifyFunc(void* instance) {
  if (instance) static_cast<XPanelInterface*>(instance)->PanelDestroyNotify();
}

LWXPRefreshCode XPanelInterface::LWXPanelChangeNotifyFunc(LWXPanelID panel, unsigned int cid, unsigned int vid,
                                                          int event) {
  if (XPanelInterface* owner = Owner(panel, 0)) owner->ChangeNotify(panel, cid, vid, event);
  return LWXPRC_NONE;
}

void XPanelInterface::LWXPanelControlDrawFunc(LWXPanelID panel, unsigned int cid, LWXPDrAreaID region, int w,
                                              int h) {
  XPanel held(panel);
  auto* owner = static_cast<XPanelInterface*>(held.getData(0));
  if (!owner) return;
  XPDrawArea area{held.funcs.getGlobal()->drawf, region, w, h};
  owner->ControlDraw(cid, area);
}

// The only callback that looks its object up under the control's own id.
void XPanelInterface::LWXPanelControlZoomFunc(LWXPanelID panel, unsigned int cid, int x, int y, int* region,
                                              int clicks) {
  if (XPanelInterface* owner = Owner(panel, cid)) owner->ControlZoom(cid, x, y, region, clicks);
}

void XPanelInterface::LWXPanelBtnClickFunc(LWXPanelID panel, int cid) {
  if (XPanelInterface* owner = Owner(panel, 0)) owner->ButtonClick(static_cast<unsigned int>(cid));
}

void XPanelInterface::LWXPanelPopCmdFunc(LWXPanelID panel, int, int) { Owner(panel, 0); }

}  // namespace hostkit
