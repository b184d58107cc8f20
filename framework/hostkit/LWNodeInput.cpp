#include "hostkit/LWNodeInput.h"

#include "hostkit/NodeInputService.h"

namespace hostkit {

LWNodeInput::LWNodeInput(NodeID n, ConnectionType type, const char* name, NodeInputEvent* callback)
    : service(MakeNodeInputService()), node(n) {
  funcs = service->getGlobal();
  evaluateInput = reinterpret_cast<decltype(evaluateInput)>(funcs->evaluate);
  input = funcs->create(node, type, name, callback);
  owned = 1;
}

LWNodeInput::~LWNodeInput() {
  if (owned && input) funcs->destroy(node, input);
}

}  // namespace hostkit
