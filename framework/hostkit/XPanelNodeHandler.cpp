#include "hostkit/XPanelNodeHandler.h"

namespace hostkit {

void XPanelNodeHandler::ChangeNotify(LWXPanelID, unsigned int, unsigned int, int event) {
  if (event == LWXPEVENT_TRACK)
    updatePreview();
  else if ((event == LWXPEVENT_VALUE || event == LWXPEVENT_HIT) && instanceUpdate.available())
    instanceUpdate("NodeHandler", hostInstance());
}

int XPanelNodeHandler::NodeInputEvent(NodeInputID input, LWNodalEvent event, ConnectionType type) {
  RefreshPanel();
  return NodeHandler::NodeInputEvent(input, event, type);
}

}  // namespace hostkit
