#pragma once

#include "hostkit/NodeHandler.h"
#include "hostkit/XPanelInterface.h"

namespace hostkit {

// The base of every node of this module: a node with a form panel.
class XPanelNodeHandler : public NodeHandler, public XPanelInterface {
 public:
  explicit XPanelNodeHandler(void* context) : NodeHandler(context, "NodeHandler") {}

  // Dragging a value updates the node's preview; a committed value or a button re-evaluates.
  void ChangeNotify(LWXPanelID panel, unsigned int controlId, unsigned int valueId, int event) override;
  // Refreshes an open panel first, so that values of connected inputs disappear from it.
  int NodeInputEvent(NodeInputID input, LWNodalEvent event, ConnectionType type) override;
};

}  // namespace hostkit
