#include "hostkit/NodeHandler.h"

namespace hostkit {

NodeHandler::NodeHandler(void* context, const char* hostClass) : InstanceHandler(hostClass), LWNode(context) {}

int NodeHandler::NodeInputEvent(NodeInputID, LWNodalEvent event, ConnectionType) {
  if ((event == NIE_CONNECT || event == NIE_INPUTNODEDESTROY) && instanceUpdate.available() && className)
    instanceUpdate(className, hostInstance());
  return 1;
}

int NodeHandler::CB_NodeInputEvent(void* instance, NodeInputID input, LWNodalEvent event, ConnectionType type) {
  auto* node = static_cast<NodeHandler*>(InstanceHandler::FromHost(instance));
  return node->NodeInputEvent(input, event, type);
}

}  // namespace hostkit
